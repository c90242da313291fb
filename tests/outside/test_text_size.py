"""The window on a desktop whose text size changes while the program runs."""

import pytest

from rig import Gnome, Mate, TextSize, wait_for

READY = "Started and ready"
USUAL = 96  # dpi


@pytest.fixture
def text_size(desktop):
    return TextSize(desktop)


@pytest.fixture
def ready(text_size, install):
    app = install().start()
    app.wait_until_shows(READY)
    return app


def size(app):
    return app.place()[2:]


def middle(app):
    x, y, width, height = app.place()
    return x + width / 2, y + height / 2


def cut_off(app):
    """Which controls are not wholly within the window."""
    x, y, width, height = app.place()
    return [item for item in app.controls()
            if item.x < x or item.x + item.width > x + width
            or item.y < y or item.y + item.height > y + height]


def fits(app):
    wait_for(lambda: app.controls() and not cut_off(app),
             what=lambda: f"all in the window; cut off: {cut_off(app)}")


def test_window_grows_and_shrinks_with_the_texts(install, text_size):
    """To the size that it has when it is started at that text size."""
    app = install()
    sizes = {}
    for dpi in (USUAL, 120, 192):
        text_size.set(dpi)
        app.start()
        app.wait_until_shows(READY)
        sizes[dpi] = size(app)
        fits(app)
        assert app.quit() == 0
    assert sizes[192][1] > sizes[120][1] > sizes[USUAL][1]
    text_size.set(USUAL)
    app.start()
    app.wait_until_shows(READY)
    at_first = middle(app)
    for dpi in (120, 192, USUAL):
        text_size.set(dpi)
        wait_for(lambda: size(app) == sizes[dpi],
                 what=lambda: f"the size {sizes[dpi]} at {dpi} dpi, not {size(app)}")
        fits(app)
        wait_for(lambda: all(abs(now - then) <= 2 for now, then in zip(middle(app), at_first)),
                 what=lambda: f"the middle {at_first}, not {middle(app)}")
    app.click("Settings")
    app.wait_for_control("Correct Offset")


@pytest.mark.parametrize("make_desktop", [Mate, Gnome])
def test_real_desktops_let_it_grow_and_shrink_in_place(ready, text_size):
    at_first, usual = middle(ready), size(ready)
    height = usual[1]
    for dpi in (120, 144, 192):
        text_size.set(dpi)
        wait_for(lambda: size(ready)[1] > height, what=f"a larger window at {dpi} dpi")
        height = size(ready)[1]
        fits(ready)
    text_size.set(USUAL)
    wait_for(lambda: size(ready) == usual, what=lambda: f"{usual}, not {size(ready)}")
    # A window manager moves it, too, when it comes to frame it.
    wait_for(lambda: all(abs(now - then) <= 10 for now, then in zip(middle(ready), at_first)),
             what=lambda: f"the middle {at_first}, not {middle(ready)}")


def test_window_stays_on_the_screen_when_it_grows(ready, text_size, desktop):
    desktop.run("xdotool", "windowmove", ready.windows()[-1], 1200, 790)
    wait_for(lambda: ready.place()[:2] >= (1190, 780), what="the window at the lower right")
    text_size.set(192)
    wait_for(lambda: size(ready)[0] >= 2 * 680, what="a larger window")
    fits(ready)

    def on_screen():
        x, y, width, height = ready.place()
        return x >= 0 and y >= 0 and x + width <= 1920 and y + height <= 1080
    wait_for(on_screen, what=lambda: f"all of it on the screen, not {ready.place()}")


def test_hidden_window_grows_unseen(ready, text_size, desktop, bus):
    width, _ = size(ready)
    ready.hide()
    text_size.set(192)
    assert ready.windows() == []
    bus.call("com.corvanthel.Vireon", "/com/corvanthel/Vireon", "org.freedesktop.Application",
             "Activate", "(a{sv})", {})
    wait_for(lambda: size(ready)[0] == 2 * width, what="a larger window")
    fits(ready)

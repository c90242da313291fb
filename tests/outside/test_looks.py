"""How the window is drawn on a real screen."""

import time

import pytest
from PIL import Image

from rig import wait_for
from rig.processes import maps_of

FRAMES = {"QT_LOGGING_RULES": "qt.scenegraph.time.renderloop=true"}
LONG = 2  # s in which an animation would have drawn very often


def frames(app):
    return app.log_count("[Ff]rame rendered")


def stands_still(app):
    """Whether nothing is drawn for a while."""
    before = frames(app)
    time.sleep(LONG)
    return frames(app) == before


@pytest.fixture
def ready(install):
    app = install(scenario="at 0 status 0\non m status 2\n", environment=FRAMES).start()
    app.wait_until_shows("Started and ready")
    return app


def test_nothing_is_drawn_while_nothing_happens(ready):
    wait_for(lambda: stands_still(ready), what="a picture that stands still")


def test_nothing_is_drawn_while_nobody_sees_it(ready, desktop):
    ready.click("Manual Calibration")
    ready.wait_until_shows("Loading...")
    assert not stands_still(ready)
    window = ready.windows()[-1]
    desktop.run("xdotool", "windowminimize", window)
    wait_for(lambda: stands_still(ready), what="no drawing of a minimised window")
    desktop.run("xdotool", "windowmap", window)
    wait_for(lambda: not stands_still(ready), what="an animation that goes on")
    ready.click("File")
    ready.click("Hide")
    wait_for(lambda: stands_still(ready), what="no drawing of a hidden window")


def test_view_is_drawn_without_gl(install):
    app = install(environment={**FRAMES, "QT_QUICK_BACKEND": None}).start()
    app.wait_until_shows("Started and ready")
    wait_for(lambda: frames(app), what="a picture")
    assert frames(app) == app.log_count("with 'software' renderloop")
    # Menus and boxes neither: the driver stays out of the program.
    app.hide()
    assert not [name for name in maps_of(app.pid) if name.startswith(("libGLX_", "libqxcb-glx"))]


@pytest.mark.parametrize("desktop_name", (None, "GNOME", "MATE"))
def test_frame_has_one_colour_whatever_the_theme(install, desktop, directory, desktop_name):
    """There is no edge between the menu bar, the view and the window's border."""
    app = install(environment={"XDG_CURRENT_DESKTOP": desktop_name}).start()
    app.wait_until_shows("Started and ready")
    path = directory / "window.png"
    window = app.windows()[-1]

    def colours():
        desktop.run("import", "-window", window, path)
        picture = Image.open(path).convert("RGB")
        right, bottom = picture.width - 1, picture.height - 1
        edges = ((0, 0, 1, bottom), (right - 1, 0, right, bottom), (0, bottom - 1, right, bottom))
        return {colour for edge in edges for _, colour in picture.crop(edge).getcolors()}

    wait_for(lambda: colours() == {(0x1d, 0x27, 0x33)}, what=lambda: f"one colour, not {colours()}")

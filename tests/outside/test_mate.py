"""The tray icon and its messages on a real MATE, whose panel takes icons in two ways."""

import functools
import re
import subprocess

import pytest

from rig import Mate, wait_for
from rig.notifications import NAME as NOTIFICATIONS

WATCHER = "org.kde.StatusNotifierWatcher"
HINT = "Running in background, you can open and quit the window from the icon-tray."
NOT_CALIBRATED = "Vireon not calibrated. Please Calibrate!"


@pytest.fixture(params=[True, False], ids=["item", "embedded"])
def items(request):
    """Whether the icon is an item on the bus, or a window that the panel embeds."""
    return request.param


@pytest.fixture
def make_desktop(items):
    return functools.partial(Mate, items=items)


@pytest.fixture
def start(desktop, bus, items, install):
    """start(scenario=...): the started program, after the panel's notification area.

    The panel takes room away from the screen. A second after the start the program hears of the
    screen's full size and shows its window anew, which would close a menu that is open then.
    """
    bus.wait_for_owner("org.mate.panel.applet.NotificationAreaAppletFactory")
    if items:
        bus.wait_for_owner(WATCHER)
    assert desktop.icon() is None

    def started(**options):
        app = install(**options).start()
        wait_for(lambda: app.log_count("Resolution changed"), what="the screen's full size")
        return app

    return started


@pytest.fixture
def menu(desktop, bus, items):
    """menu(app): what the icon's menu holds while it is shown."""
    def entries(app):
        if items:
            return [item.name for item in desktop.reader.items(bus.owner_pid(WATCHER))
                    if item.role == "menu item" and item.enabled]
        # A menu of the program's own, which belongs to no window: only its frame can be found.
        shown = desktop.run("xwininfo", "-root", "-tree")
        return ["Exit"] if any(is_menu(desktop, window)
                               for window in re.findall(r'(0x\w+) "vireon": \("vireon"', shown)) else []

    return entries


def is_menu(desktop, window):
    """Whether the window is a menu on the screen; it may be gone by now."""
    try:
        return ("_MENU" in desktop.run("xprop", "-id", window, "_NET_WM_WINDOW_TYPE")
                and desktop.is_shown(window))
    except subprocess.CalledProcessError:
        return False


def balloon(desktop, bus, items, app, text):
    """The place of the message on the screen, once it is there."""
    def found():
        if items and not bus.has_owner(NOTIFICATIONS):
            return None
        pid = bus.owner_pid(NOTIFICATIONS) if items else app.pid
        return next((item for item in desktop.reader.items(pid) if item.name == text), None)
    return wait_for(found, what=f"the message {text!r}")


def has_size_of_icon(box):
    return box and all(12 <= box[axis + 2] - box[axis] <= 24 for axis in (0, 1))


def test_icon_is_on_the_panel(desktop, start):
    app = start()
    wait_for(lambda: has_size_of_icon(desktop.icon()), what=lambda: f"an icon, not {desktop.icon()}")
    app.wait_until_shows("Started and ready")
    app.quit()
    wait_for(lambda: desktop.icon() is None, what="a panel without the icon")


def test_engine_ends_by_its_own_handler_after_the_icons_menu(desktop, menu, start):
    app = start(scenario="at 0 status -1\n")
    app.wait_until_shows("Not connected to Vireon")
    desktop.click_icon(3)
    wait_for(lambda: menu(app), what="a menu")
    app.desktop.key("Down", "Return")
    assert app.wait() == 0
    app.wait_for_end_of_all()
    assert app.letters() == [] and app.engine_signals() == ["TERM"] and app.engine_ends() == ["0"]


def test_clicks_on_balloon_and_icon_show_the_window(desktop, bus, items, menu, start):
    app = start()
    app.wait_until_shows("Started and ready")
    app.hide()
    desktop.click(*balloon(desktop, bus, items, app, HINT).centre)
    wait_for(app.windows, what="the window")
    app.hide()
    desktop.click_icon(2)
    desktop.click_icon(3)
    wait_for(lambda: menu(app), what="a menu")
    # Two clicks later, and the middle button has done nothing.
    assert not app.windows()
    app.desktop.key("Escape")
    wait_for(lambda: not menu(app), what="an end of the menu")
    desktop.click_icon()
    wait_for(app.windows, what="the window")


def test_menu_of_the_icon_quits(desktop, menu, start):
    app = start()
    app.wait_until_shows("Started and ready")
    desktop.click_icon(3)
    assert wait_for(lambda: menu(app), what="a menu") == ["Exit"]
    app.desktop.key("Down", "Return")
    assert app.wait() == 0
    assert app.letters() == ["Q"]
    wait_for(lambda: desktop.icon() is None, what="a panel without the icon")


def test_balloon_shows_the_messages(desktop, bus, items, start):
    app = start(scenario="at 0 status -6\n")
    balloon(desktop, bus, items, app, NOT_CALIBRATED)
    app.wait_until_shows("not calibrated.")
    app.hide()
    balloon(desktop, bus, items, app, HINT)

"""The window comes up for the user, over another one that is in use, and gets the keyboard."""

import re

import pytest

from rig import Busy, Desktop, Gnome, Mate, wait_for

WATCHER = "org.kde.StatusNotifierWatcher"


@pytest.fixture
def first(desktop, bus, install):
    """A started program on MATE, after the panel's notification area, and its window."""
    bus.wait_for_owner(WATCHER)
    first = install().start()
    first.wait_until_shows("Started and ready")
    # It hears of the screen's full size a second after the start, and shows its window anew.
    wait_for(lambda: first.log_count("Resolution changed"), what="the screen's full size")
    return first


@pytest.fixture
def start_again(install):
    def act(first):
        second = install(home=first.home, environment={"TMPDIR": str(first.temporary)}).start()
        second.wait_until_shows("Vireon application is already running.")
        second.act("OK")
        assert second.wait() == 0

    return act


@pytest.fixture
def click_the_icon(desktop):
    return lambda first: desktop.click_icon()


@pytest.fixture
def out_of_the_way(desktop):
    """How a window gets out of the user's sight, by what is to be seen then."""
    def minimise(window):
        desktop.run("xdotool", "windowminimize", int(window, 16))
        wait_for(lambda: not desktop.is_shown(window), what="a minimised window")

    def hide(window):
        desktop.run("wmctrl", "-i", "-c", window)
        wait_for(lambda: not desktop.is_shown(window), what="a hidden window")

    return {"covered": lambda window: None, "minimised": minimise, "hidden": hide}


@pytest.mark.parametrize("make_desktop", [Mate])
@pytest.mark.parametrize("way", ["start_again", "click_the_icon"])
@pytest.mark.parametrize("state", ["covered", "minimised", "hidden"])
def test_window_comes_over_one_in_use(desktop, first, out_of_the_way, state, way, request):
    call = request.getfixturevalue(way)
    (window,) = first.windows()
    busy = Busy(desktop)
    busy.use()
    out_of_the_way[state](window)
    busy.use()
    assert not desktop.is_shown(window) or busy.covers(window)
    call(first)
    wait_for(lambda: desktop.is_shown(window) and not busy.covers(window),
             what="the window over the other one")
    wait_for(lambda: desktop.active_window() == window, what="the window with the keyboard")
    # The keyboard is not only the window's but its view's.
    wait_for(lambda: desktop.key("Tab") or first.focus(), what="a control with the keyboard")


@pytest.fixture
def activate(bus):
    """By the session bus, as the desktop does for an entry of its menu."""
    return lambda first: bus.call("com.corvanthel.Vireon", "/com/corvanthel/Vireon",
                                  "org.freedesktop.Application", "Activate", "(a{sv})", {})


@pytest.mark.parametrize("make_desktop", [Gnome])
@pytest.mark.parametrize("way", ["start_again", "activate"])
@pytest.mark.parametrize("state", ["covered", "minimised", "hidden"])
def test_window_comes_over_one_in_use_on_gnome(desktop, install, state, way, request):
    call = request.getfixturevalue(way)
    first = install().start()
    first.wait_until_shows("Started and ready")
    (window,) = first.windows()
    busy = Busy(desktop)
    busy.use()
    if state == "minimised":
        desktop.run("xdotool", "windowminimize", int(window, 16))
        wait_for(lambda: "_HIDDEN" in desktop.run("xprop", "-id", window, "_NET_WM_STATE"),
                 what="a minimised window")
    elif state == "hidden":
        desktop.run("wmctrl", "-i", "-c", window)
        wait_for(lambda: not desktop.is_shown(window), what="a hidden window")
    busy.use()
    call(first)
    wait_for(lambda: desktop.is_shown(window) and not busy.covers(window),
             what="the window over the other one")
    wait_for(lambda: desktop.active_window() == window, what="the window with the keyboard")


@pytest.mark.parametrize("make_desktop", [Desktop, Mate])
def test_hiding_and_reports_in_a_row_leave_no_errors(desktop, subject):
    hub = subject("mainwindowsubject").ready()
    wait_for(lambda: "Vireon" in desktop.run("wmctrl", "-l"), what="the window")
    for _ in range(60):
        for line in (("call", "hideWindow"), ("status", "0"), ("call", "hideWindow"),
                     ("status", "0"), ("call", "onTrayIconClicked")):
            assert hub.ask(*line) == "done"
        desktop.key("Tab")
    # What the server says comes before the answer to this.
    wait_for(lambda: "Vireon" in desktop.run("wmctrl", "-l"), what="the window")
    assert not any("XCB error" in line for line in hub.log())


@pytest.mark.parametrize("make_desktop", [Desktop, Mate])
def test_window_that_was_lost_comes_back(desktop, subject):
    hub = subject("mainwindowsubject").ready()
    assert hub.ask("status", "0") == "done"  # and the splash is gone
    (window,) = wait_for(
        lambda: re.findall(r"(0x\w+) .* Vireon$", desktop.run("wmctrl", "-l"), re.M),
        what="the window")
    desktop.run("xdotool", "windowunmap", int(window, 16))
    wait_for(lambda: not desktop.is_shown(window), what="a lost window")
    wait_for(lambda: desktop.is_shown(window), what="the window again")
    assert hub.ask("call", "hideWindow") == "done"
    wait_for(lambda: not desktop.is_shown(window), what="a hidden window")

"""The program's messages as a notification daemon takes them: texts, order, pace."""

import pytest

from rig import Dunst, Mate, wait_for

HINT = "Running in background, you can open and quit the window from the icon-tray."
HINT_WITHOUT_TRAY = "Running in background. Start Vireon again to open the window."
NOT_CALIBRATED = "Vireon not calibrated. Please Calibrate!"
OLD_FIRMWARE = ("Camera unit firmware is old version. "
                "Please click 'File' in the task bar to update it.")
PACE = 5  # s from one message to the next
WATCHER = "org.kde.StatusNotifierWatcher"
GNOME = {"XDG_CURRENT_DESKTOP": "GNOME"}
UNITY = {"XDG_CURRENT_DESKTOP": "Unity"}

# Old firmware; not calibrated, in both of its kinds; away and back. The first report is one that
# has no message, since it comes twice: for its status and for its firmware.
BURST = """at 0 status -1 firmware 1
at 1500 status -6
at 3000 status -14
at 4500 status -1
at 6000 status 0
"""


@pytest.fixture
def daemon(desktop):
    return Dunst(desktop)


def close(app):
    """Closes the window with its close button."""
    wait_for(app.windows, what="the window")
    app.desktop.run("wmctrl", "-c", "Vireon")
    app.wait_until_hidden()


def bodies(daemon):
    return [message.body for message in daemon.messages()]


def expect_burst(install, daemon, environment, hint):
    """Four messages in 2 s and nothing twice that is to come once; each for its 5 s."""
    app = install(scenario=BURST, environment=environment).start()
    app.wait_until_shows("Started and ready")
    close(app)
    expected = [OLD_FIRMWARE, NOT_CALIBRATED, NOT_CALIBRATED, hint]
    wait_for(lambda: len(daemon.messages()) >= len(expected), what=lambda: daemon.messages())
    messages = daemon.messages()
    assert [message.body for message in messages] == expected
    assert {message.summary for message in messages} == {"Vireon"}
    gaps = [later.time - earlier.time for earlier, later in zip(messages, messages[1:])]
    assert min(gaps) > PACE - 1, gaps
    return app


def test_burst_keeps_order_and_pace_on_gnome(install, daemon):
    expect_burst(install, daemon, GNOME, HINT_WITHOUT_TRAY)


def test_burst_keeps_order_and_pace_on_unity(install, daemon):
    expect_burst(install, daemon, UNITY, HINT)


@pytest.mark.parametrize("make_desktop", [Mate])
def test_burst_keeps_order_and_pace_on_mate(install, daemon, bus):
    bus.wait_for_owner(WATCHER)
    expect_burst(install, daemon, {}, HINT)


def test_hint_comes_once(install, daemon):
    app = install(environment=GNOME,
                  scenario="at 0 status 0\nat 6000 status -6\nat 12000 status -14\n").start()
    app.wait_until_shows("Started and ready")
    close(app)
    # Each report shows the window again.
    app.wait_until_shows("not calibrated")
    close(app)
    wait_for(lambda: len(bodies(daemon)) >= 3, what="three messages")
    assert bodies(daemon) == [HINT_WITHOUT_TRAY, NOT_CALIBRATED, NOT_CALIBRATED]


@pytest.mark.parametrize("environment", [GNOME, {"XDG_CURRENT_DESKTOP": None}])
def test_second_start_is_the_way_back(desktop, install, daemon, environment):
    first = install(environment=environment).start()
    first.wait_until_shows("Started and ready")
    (window,) = first.windows()
    for away in (lambda: desktop.run("wmctrl", "-c", "Vireon"),
                 lambda: desktop.run("xdotool", "windowminimize", window)):
        away()
        wait_for(lambda: not desktop.is_shown(window), what="a window out of sight")
        second = install(home=first.home, environment={
            **environment, "TMPDIR": str(first.temporary)}).start()
        second.wait_until_shows("Vireon application is already running.")
        second.key("Return")
        assert second.wait() == 0
        wait_for(lambda: desktop.is_shown(window), what="the first copy's window")
        active = wait_for(lambda: desktop.run("xdotool", "getactivewindow"))
        assert int(active) == int(window, 16)
    assert bodies(daemon) == [HINT_WITHOUT_TRAY]


def test_click_on_the_message_is_the_way_back(desktop, install, daemon):
    app = install(environment=GNOME).start()
    app.wait_until_shows("Started and ready")
    (window,) = app.windows()
    close(app)
    wait_for(daemon.click, what="a message")
    wait_for(lambda: desktop.is_shown(window), what="the window")
    wait_for(lambda: desktop.active_window() == window, what="the window with the keyboard")

"""The window and its screen: sizes and rates that change."""

import pytest

from rig import wait_for

# Name, and a mode line of 30 or 60 Hz.
SLOW = ("slow", "74.25", 1920, 2008, 2052, 2200, 1080, 1084, 1089, 1125)
SMALL = ("small", "74.25", 1280, 1390, 1430, 1650, 720, 725, 730, 750)
LARGE = ("large", "148.50", 1920, 2008, 2052, 2200, 1080, 1084, 1089, 1125)
RATE_WARNING = "refresh rate"


@pytest.fixture
def set_mode(desktop):
    """set_mode(mode): the screen in another mode."""
    known = set()

    def change(mode):
        if mode not in known:
            desktop.run("xrandr", "--newmode", *mode)
            desktop.run("xrandr", "--addmode", "screen", mode[0])
            known.add(mode)
        desktop.run("xrandr", "--output", "screen", "--mode", mode[0])
    return change


def warns_of_the_rate(app):
    return any(RATE_WARNING in text.lower() for text in app.texts())


def test_slow_screen_is_warned_of(set_mode, install):
    set_mode(SLOW)
    app = install().start()
    app.wait_until_shows("Started and ready")
    assert app.log_count("show freq error") == 1
    wait_for(lambda: warns_of_the_rate(app), what=lambda: f"the warning; shown: {app.texts()}")


def test_fast_screen_is_not_warned_of(set_mode, install):
    set_mode(LARGE)
    app = install().start()
    app.wait_until_shows("Started and ready")
    assert app.log_count("show freq error") == 0
    assert not warns_of_the_rate(app)


def test_hidden_window_stays_hidden(set_mode, install):
    set_mode(LARGE)
    app = install().start()
    app.wait_until_shows("Started and ready")
    window = wait_for(app.windows, what="a window")
    # Shown, it is shown anew: hidden, and shown again with the splash told once more to go.
    closings = app.log_count("closing splash")
    set_mode(SMALL)
    wait_for(lambda: app.log_count(r"aspect ratio changed to.*1280x720"), what="the new size")
    assert app.log_count("closing splash") == closings + 1
    wait_for(lambda: app.windows() == window, what="the window")
    app.click("File")
    app.click("Hide")
    wait_for(lambda: not app.windows(), what="a hidden window")
    set_mode(LARGE)
    wait_for(lambda: app.log_count(r"aspect ratio changed to.*1920x1080"), what="the new size")
    assert app.windows() == []
    assert app.log_count("closing splash") == closings + 1

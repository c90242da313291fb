"""The window and its screen: sizes and rates that change."""

from rig import wait_for

SMALL, LARGE = (1280, 720), (1920, 1080)
SLOW_RATE = 30  # Hz
RATE_WARNING = "refresh rate"


def warns_of_the_rate(app):
    return any(RATE_WARNING in text.lower() for text in app.texts())


def test_slow_screen_is_warned_of(desktop, install):
    desktop.set_mode(*LARGE, SLOW_RATE)
    app = install().start()
    app.wait_until_shows("Started and ready")
    assert app.log_count("show freq error") == 1
    wait_for(lambda: warns_of_the_rate(app), what=lambda: f"the warning; shown: {app.texts()}")


def test_fast_screen_is_not_warned_of(desktop, install):
    desktop.set_mode(*LARGE)
    app = install().start()
    app.wait_until_shows("Started and ready")
    assert app.log_count("show freq error") == 0
    assert not warns_of_the_rate(app)


def test_hidden_window_stays_hidden(desktop, install):
    desktop.set_mode(*LARGE)
    app = install().start()
    app.wait_until_shows("Started and ready")
    window = wait_for(app.windows, what="a window")
    # Shown, it is shown anew: hidden, and shown again with the splash told once more to go.
    closings = app.log_count("closing splash")
    desktop.set_mode(*SMALL)
    wait_for(lambda: app.log_count(r"aspect ratio changed to.*1280x720"), what="the new size")
    assert app.log_count("closing splash") == closings + 1
    wait_for(lambda: app.windows() == window, what="the window")
    app.hide()
    desktop.set_mode(*LARGE)
    wait_for(lambda: app.log_count(r"aspect ratio changed to.*1920x1080"), what="the new size")
    assert app.windows() == []
    assert app.log_count("closing splash") == closings + 1

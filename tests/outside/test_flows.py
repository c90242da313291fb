"""Each view from end to end: what is pressed, by whatever hand, and what comes of it."""

import subprocess

import pytest

from rig import HANDS, step, views, wait_for

READY = "Started and ready"
AUTOSTART, CPU_STATE, RATIO_WARNED, ADVICE_WANTED = 2, 4, 13, 14  # lines of the user's settings
KEEP_AWAKE, AT_REST = "2", "0"  # values of CPU_STATE
DONT_SHOW = "Don't show this message again."
ADVICE = "Auto calibration depends on the type of your screen"
RATE = "sure that your external display is running"
RATIO = "This Screen is not set to a widescreen (16:9) resolution."
RATIO_ADVICE = "Apply one of the following changes"


@pytest.fixture(params=HANDS)
def hand(request):
    return HANDS[request.param]


@pytest.fixture
def ready(install):
    app = install().start()
    app.wait_until_shows(READY)
    return app


@pytest.fixture
def slow_screen(desktop):
    desktop.set_mode(1920, 1080, 30)


@pytest.fixture
def warned(ready, desktop):
    """A program on whose screen the ratio has just changed."""
    desktop.set_mode(1024, 768)
    ready.wait_until_shows(RATIO)
    return ready


def letters(app, expected):
    wait_for(lambda: app.letters() == list(expected),
             what=lambda: f"the letters {expected}; taken: {app.letters()}")


def setting(app, line, value):
    wait_for(lambda: app.setting(line) == value,
             what=lambda: f"{value!r} in line {line}; there: {app.setting(line)!r}")


def gone(app, text):
    wait_for(lambda: not app.shows(text), what=f"an end of {text!r}")


def checked(app, name):
    return app.wait_for_control(name).checked


def picture(app, path, item, right, below):
    """What can be seen in a place beside an item."""
    app.desktop.run("import", "-window", "root", "-crop",
                    f"{item.width}x40+{item.x + right}+{item.y + item.height + below}",
                    "+repage", path)
    return subprocess.run(["identify", "-format", "%#", path], check=True,
                          stdout=subprocess.PIPE).stdout


def test_calibrations(ready, hand):
    hand.press(ready, "Manual Calibration")
    letters(ready, "m")
    ready.wait_until_shows(READY)
    hand.press(ready, "Touch Calibration")
    letters(ready, "mt")
    ready.wait_until_shows(READY)


def test_advice_is_followed(ready, hand):
    hand.press(ready, "Auto Calibration")
    ready.wait_until_shows(ADVICE)
    assert checked(ready, DONT_SHOW)
    hand.press(ready, "Continue")
    letters(ready, "a")
    setting(ready, ADVICE_WANTED, "0")
    ready.wait_until_shows(READY)
    # It was not to be shown again.
    hand.press(ready, "Auto Calibration")
    letters(ready, "aa")


def test_advice_is_cancelled(ready, hand):
    hand.press(ready, "Auto Calibration")
    ready.wait_until_shows(ADVICE)
    hand.press(ready, DONT_SHOW)
    wait_for(lambda: not checked(ready, DONT_SHOW), what="a box without its mark")
    hand.press(ready, "Cancel")
    gone(ready, ADVICE)
    assert ready.setting(ADVICE_WANTED) == "1"
    # It comes again, and again until its mark is set.
    hand.press(ready, "Auto Calibration")
    ready.wait_until_shows(ADVICE)
    assert not checked(ready, DONT_SHOW)
    hand.press(ready, DONT_SHOW)
    wait_for(lambda: checked(ready, DONT_SHOW), what="the mark")
    hand.press(ready, "Cancel")
    setting(ready, ADVICE_WANTED, "0")
    assert ready.letters() == []
    hand.press(ready, "Auto Calibration")
    letters(ready, "a")
    assert not ready.shows(ADVICE)


def test_advice_stays_away_in_the_next_run(ready):
    ready.click("Auto Calibration")
    ready.click("Cancel")
    setting(ready, ADVICE_WANTED, "0")
    assert ready.quit() == 0
    ready.start()
    ready.wait_until_shows(READY)
    ready.click("Auto Calibration")
    letters(ready, "Qa")


def test_input_panel(ready, hand):
    hand.press(ready, "Stylus")
    ready.wait_until_shows("Select Input")
    assert checked(ready, "Stylus") and not checked(ready, "Finger")
    hand.press(ready, "Finger")
    letters(ready, "f")
    gone(ready, "Select Input")
    # The button tells what is chosen, and so does the panel.
    hand.press(ready, "Finger")
    ready.wait_until_shows("Select Input")
    assert checked(ready, "Finger") and not checked(ready, "Stylus")
    hand.press(ready, "Stylus")
    letters(ready, "fs")
    gone(ready, "Select Input")
    hand.press(ready, "Stylus")
    ready.wait_until_shows("Select Input")
    hand.press(ready, "Back")
    gone(ready, "Select Input")
    assert ready.letters() == ["f", "s"]


def test_settings_panel(ready, hand):
    hand.press(ready, "Settings")
    ready.wait_for_control("Autostart")
    assert checked(ready, "Autostart") and ready.setting(AUTOSTART) == "1"
    for mark in (False, True):
        hand.press(ready, "Autostart")
        setting(ready, AUTOSTART, str(int(mark)))
        wait_for(lambda: checked(ready, "Autostart") == mark, what=f"the mark: {mark}")
    hand.press(ready, "Sensor Viewer")
    letters(ready, "v")
    hand.press(ready, "Correct Offset")
    letters(ready, "v7")
    hand.press(ready, "Back")
    ready.wait_for_control("Manual Calibration")


def test_keep_awake(install, hand):
    app = install()
    app.data.mkdir()
    # Switched off, whatever the number of processors would make of it.
    (app.data / "user.ini").write_text("1\n0\n1\n0\n0\n")
    app.start()
    app.wait_until_shows(READY)
    hand.press(app, "Settings")
    assert not checked(app, "Optimize USB bandwidth")
    for mark in (True, False):
        hand.press(app, "Optimize USB bandwidth")
        setting(app, CPU_STATE, KEEP_AWAKE if mark else AT_REST)
        wait_for(lambda: checked(app, "Optimize USB bandwidth") == mark, what=f"the mark: {mark}")
    assert app.log_count(" Keep a CPU running") == 1
    assert app.log_count(" Disabled Processor idle state") == 1


def test_tooltip_shows_under_the_mouse_only(ready, directory):
    ready.click("Settings")
    item = ready.wait_for_control("Optimize USB bandwidth")
    assert "Uses more power" in item.description

    def seen():
        return picture(ready, directory / "picture.png", item, item.width + 20, -60)
    ready.desktop.run("xdotool", "mousemove", 5, 5)  # away from what it has clicked
    wait_for(lambda: ready.focused() == "Back", what="the keyboard at Back")
    # At rest: what the mouse has left fades out.
    without = wait_for(lambda: (picture_now := seen()) == seen() and picture_now, what="rest")
    ready.desktop.run("xdotool", "mousemove", *item.centre)
    wait_for(lambda: seen() != without, what="the tooltip")
    ready.desktop.run("xdotool", "mousemove", 5, 5)
    wait_for(lambda: seen() == without, what="an end of the tooltip")
    # A screen reader says what it says; on its way the keyboard does not bring it up.
    step(ready, "Tab")
    assert step(ready, "Tab") == "Optimize USB bandwidth"
    for _ in range(3):
        assert seen() == without
    assert step(ready, "Tab") == "Sensor Viewer"


def test_rate_warning(slow_screen, ready, hand):
    ready.wait_until_shows(RATE)
    assert ready.log_count("show freq error") == 1
    assert ready.log_count(r"show freq warning popup width: \d+ +ht: \d+") == 1
    hand.press(ready, "OK")
    gone(ready, RATE)
    assert ready.log_count("Settings Button clicked") == 1
    # What it has covered works again.
    hand.press(ready, "Manual Calibration")
    letters(ready, "m")


def test_rate_warning_comes_with_the_next_mode(ready, desktop):
    desktop.set_mode(1600, 900, 50)
    ready.wait_until_shows(RATE)
    assert not ready.shows(RATIO)
    ready.click("OK")
    gone(ready, RATE)
    # Its rate is not what is looked at, but the change of its size.
    desktop.set_mode(1280, 720, 60)
    wait_for(lambda: ready.log_count("aspect ratio changed to: .*1280x720"), what="the change")
    wait_for(lambda: ready.log_count("optimumDispFrequency:  true") == 2, what="a good rate")
    desktop.set_mode(1920, 1080, 30)
    ready.wait_until_shows(RATE)


def test_both_warnings_one_after_the_other(ready, desktop):
    desktop.set_mode(1024, 768, 30)
    ready.wait_until_shows(RATE)
    ready.click("OK")
    gone(ready, RATE)
    ready.click("Ignore")
    gone(ready, RATIO)
    ready.click("Settings")
    ready.wait_for_control("Autostart")


def test_ratio_warning_is_ignored(warned, desktop, hand):
    setting(warned, RATIO_WARNED, "1")
    hand.press(warned, "Ignore")
    gone(warned, RATIO)
    # Once is enough.
    desktop.set_mode(800, 600)
    wait_for(lambda: warned.log_count("show warning, if not done so already!") == 2,
             what="another ratio")
    hand.press(warned, "Manual Calibration")
    letters(warned, "m")
    assert not warned.shows(RATIO)


def test_ratio_warning_corrects_the_offset(warned, hand):
    hand.press(warned, "Correct Offset")
    letters(warned, "7")
    gone(warned, RATIO)


def test_ratio_warning_and_its_second_screen(warned, hand):
    for _ in range(2):
        hand.press(warned, "Change graphics settings")
        warned.wait_until_shows(RATIO_ADVICE)
        assert not warned.shows(RATIO)
        hand.press(warned, "Go back")
        warned.wait_until_shows(RATIO)
        assert not warned.shows(RATIO_ADVICE)
    hand.press(warned, "Change graphics settings")
    hand.press(warned, "Close this dialog")
    gone(warned, RATIO_ADVICE)
    assert [item.name for item in warned.controls()] == [one.english for one in views.MAIN]
    assert warned.letters() == []


def test_ratio_warning_stays_away_in_the_next_run(warned, desktop):
    setting(warned, RATIO_WARNED, "1")
    assert warned.quit() == 0
    desktop.set_mode(1920, 1080)
    warned.start()
    warned.wait_until_shows(READY)
    desktop.set_mode(1024, 768)
    wait_for(lambda: warned.log_count("show warning, if not done so already!") == 2,
             what="another ratio")
    warned.click("Settings")
    warned.wait_for_control("Autostart")
    assert not warned.shows(RATIO)


def test_window_stays_on_a_screen_that_shrinks(warned):
    def outside():
        return [item for item in warned.items()
                if item.x < 0 or item.x + item.width > 1024
                or item.y < 0 or item.y + item.height > 768]
    wait_for(lambda: not outside(), what=lambda: f"all on the screen; outside: {outside()}")

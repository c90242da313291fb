"""The queue of messages, as a notification service takes them: texts, order, times."""

import time

import pytest

from rig import NotificationService, wait_for

UNITY = {"XDG_CURRENT_DESKTOP": "Unity"}
NO_TRAY = {"XDG_CURRENT_DESKTOP": None}
SHOWN_S = 5
NOT_CALIBRATED = "Vireon not calibrated. Please Calibrate!"
OLD_FIRMWARE = ("Camera unit firmware is old version. Please click 'File' in the task bar to "
                "update it.")
TRAY_HINT = "Running in background, you can open and quit the window from the icon-tray."
NO_TRAY_HINT = "Running in background. Start Vireon again to open the window."


@pytest.fixture
def service(desktop, bus):
    return NotificationService(desktop, bus)


def seen(service, *texts):
    """Waits for exactly these, and tells when the last one was seen."""
    wait_for(lambda: len(service.texts()) >= len(texts),
             what=lambda: f"{texts}; shown: {service.texts()}")
    assert service.texts() == list(texts)
    return time.monotonic()


@pytest.fixture
def window(subject, service):
    """window(environment): the main window, without an engine."""
    def start(environment):
        return subject("mainwindowsubject", environment=environment).ready()
    return start


@pytest.mark.parametrize("environment", [NO_TRAY, UNITY], ids=["no-tray", "unity"])
def test_burst_is_shown_one_by_one(service, window, environment):
    hub = window(environment)
    for text in "ABC":
        hub.ask("message", text)
    times = [seen(service, *"ABC"[:count]) for count in (1, 2, 3)]
    for earlier, later in zip(times, times[1:]):
        assert SHOWN_S - 0.5 < later - earlier < SHOWN_S + 15
    # All calls have the program's name as their title.
    assert {arguments[3] for arguments in service.calls_of("Notify")} == {"Vireon"}


def test_empty_text_shows_the_next(service, window):
    hub = window(NO_TRAY)
    begin = time.monotonic()
    for text in "ABC":
        hub.ask("message", text)
    hub.ask("message", "")
    hub.ask("call", "showMessage")
    assert seen(service, *"ABC") - begin < SHOWN_S
    # One text more than there are leaves nothing behind.
    hub.ask("message", "")
    hub.ask("message", "D")
    seen(service, *"ABCD")


def test_message_is_taken_away_where_no_tray_shows_it(service, window):
    hub = window(NO_TRAY)
    for text in "AB":
        hub.ask("message", text)
    seen(service, "A")
    hub.ask("call", "hideMessage")
    wait_for(lambda: service.calls_of("CloseNotification") == [[1]], what="a closed message")
    # The queue continues.
    seen(service, *"AB")


def test_message_stays_on_unity(service, window):
    hub = window(UNITY)
    hub.ask("message", "A")
    hub.ask("call", "hideMessage")
    hub.ask("message", "B")
    seen(service, *"AB")
    assert service.calls_of("CloseNotification") == []


@pytest.mark.parametrize("environment, hint", [(NO_TRAY, NO_TRAY_HINT), (UNITY, TRAY_HINT)],
                         ids=["no-tray", "unity"])
def test_hint_of_the_background_comes_once(service, window, environment, hint):
    hub = window(environment)
    hub.ask("call", "onClosing")
    seen(service, hint)
    hub.ask("call", "showWindow")
    hub.ask("call", "onClosing")
    hub.ask("message", "next")
    hub.ask("call", "showMessage")
    seen(service, hint, "next")


@pytest.mark.parametrize("slot, texts", [
    ("singlePointerMode", ["Single Input(Mouse) mode is active"] * 2),
    ("multiPointerMode", ["Multi Input (Touch) mode is active"] * 2),
    ("pauseResumeCalibration", ["Calibration is paused! Mouse/Touch will not work",
                                "Calibration resumed"]),
    ("resetCalibration", [NOT_CALIBRATED] * 2),
])
def test_commands_say_what_they_did(service, window, slot, texts):
    hub = window(NO_TRAY)
    for _ in texts:
        hub.ask("call", slot)
        hub.ask("call", "showMessage")
    seen(service, *texts)


def test_refused_reset_says_nothing(service, window):
    hub = window(NO_TRAY)
    for status in ("-1", "-12"):
        hub.ask("status", status)
        hub.ask("call", "resetCalibration")
    hub.ask("message", "next")
    seen(service, "next")


def test_hint_comes_before_not_calibrated(service, install):
    app = install(scenario="at 0 status -1 firmware 1\nat 3000 status -6\n").start()
    app.wait_until_shows("Not connected to Vireon.")
    assert service.texts() == []
    first = seen(service, OLD_FIRMWARE)
    second = seen(service, OLD_FIRMWARE, NOT_CALIBRATED)
    assert SHOWN_S - 0.5 < second - first < SHOWN_S + 15


def test_not_calibrated_is_said_each_time(service, install):
    # The status comes first and the firmware's version a moment later: two reports of -6.
    app = install(scenario="at 500 status -6\n").start()
    first = seen(service, NOT_CALIBRATED)
    second = seen(service, NOT_CALIBRATED, NOT_CALIBRATED)
    assert SHOWN_S - 0.5 < second - first < SHOWN_S + 15
    assert app.log_count(r"^\[debug\] status -6$") == 2


def test_old_firmware_is_said_once(service, install):
    app = install(scenario="at 0 status -1 firmware 1\nat 4000 status 0\nat 5000 status 3\n"
                           "at 6000 status -6\n").start()
    app.wait_until_shows("Not connected to Vireon.")
    app.click("File")
    assert not wait_for(lambda: app.clickable("Update Firmware"), what="the entry").enabled
    seen(service, OLD_FIRMWARE)
    wait_for(lambda: app.clickable("Update Firmware").enabled, what="an entry to choose")
    app.desktop.key("Escape")
    seen(service, OLD_FIRMWARE, NOT_CALIBRATED)


def test_hiding_by_the_menu_never_quits(service, install, desktop):
    app = install().start()
    app.wait_until_shows("Started and ready")
    app.click("File")
    app.click("Hide")
    seen(service, NO_TRAY_HINT)
    app.wait_until_hidden()
    assert app.is_running() and not app.log_count("Quit Vireon clicked")

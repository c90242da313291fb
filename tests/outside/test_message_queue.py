"""The queue of messages, as a notification service takes them: texts, order, times."""

import time

import pytest

from rig import wait_for

SERVICE = ("org.freedesktop.Notifications", "/org/freedesktop/Notifications")
UNITY = {"XDG_CURRENT_DESKTOP": "Unity"}
NO_TRAY = {"XDG_CURRENT_DESKTOP": None}
SHOWN_S = 5
NOT_CALIBRATED = "Vireon not calibrated. Please Calibrate!"
OLD_FIRMWARE = ("Camera unit firmware is old version. Please click 'File' in the task bar to "
                "update it.")
TRAY_HINT = "Running in background, you can open and quit the window from the icon-tray."
NO_TRAY_HINT = "Running in background. Start Vireon again to open the window."


class Service:
    """A notification service that keeps what it is told."""

    def __init__(self, desktop, bus):
        self._bus = bus
        desktop.start("/usr/bin/python3", "-m", "dbusmock", "--session",
                      "--template", "notification_daemon")
        bus.wait_for_owner(SERVICE[0])

    def calls(self, method):
        """The arguments of all calls of this method."""
        return [arguments for name, arguments in self._bus.mock_calls(*SERVICE) if name == method]

    def texts(self):
        return [arguments[4] for arguments in self.calls("Notify")]

    def wait_for(self, *texts):
        """Waits for exactly these, and tells when the last one was seen."""
        wait_for(lambda: len(self.texts()) >= len(texts), what=f"{texts}; shown: {self.texts()}")
        assert self.texts() == list(texts)
        return time.monotonic()


@pytest.fixture
def service(desktop, bus):
    return Service(desktop, bus)


@pytest.fixture
def window(subject, service):
    """window(environment): the main window, without an engine."""
    def start(environment):
        return subject("mainwindowsubject", environment=environment).ready()
    return start


@pytest.mark.parametrize("environment", [NO_TRAY, UNITY])
def test_burst_is_shown_one_by_one(service, window, environment):
    hub = window(environment)
    for text in "ABC":
        hub.ask("message", text)
    times = [service.wait_for(*"ABC"[:count]) for count in (1, 2, 3)]
    for earlier, later in zip(times, times[1:]):
        assert SHOWN_S - 0.5 < later - earlier < SHOWN_S + 15
    # All calls have the program's name as their title.
    assert {arguments[3] for arguments in service.calls("Notify")} == {"Vireon"}


def test_empty_text_shows_the_next(service, window):
    hub = window(NO_TRAY)
    begin = time.monotonic()
    for text in "ABC":
        hub.ask("message", text)
    hub.ask("message", "")
    hub.ask("call", "showMessage")
    assert service.wait_for(*"ABC") - begin < SHOWN_S
    # One text more than there are leaves nothing behind.
    hub.ask("message", "")
    hub.ask("message", "D")
    service.wait_for(*"ABCD")


def test_message_is_taken_away_where_no_tray_shows_it(service, window):
    hub = window(NO_TRAY)
    for text in "AB":
        hub.ask("message", text)
    service.wait_for("A")
    hub.ask("call", "hideMessage")
    wait_for(lambda: service.calls("CloseNotification") == [[1]], what="a closed message")
    # The queue continues.
    service.wait_for(*"AB")


def test_message_stays_on_unity(service, window):
    hub = window(UNITY)
    hub.ask("message", "A")
    hub.ask("call", "hideMessage")
    hub.ask("message", "B")
    service.wait_for(*"AB")
    assert service.calls("CloseNotification") == []


@pytest.mark.parametrize("environment, hint", [(NO_TRAY, NO_TRAY_HINT), (UNITY, TRAY_HINT)])
def test_hint_of_the_background_comes_once(service, window, environment, hint):
    hub = window(environment)
    hub.ask("call", "onClosing")
    service.wait_for(hint)
    hub.ask("call", "showWindow")
    hub.ask("call", "onClosing")
    hub.ask("message", "next")
    hub.ask("call", "showMessage")
    service.wait_for(hint, "next")


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
    service.wait_for(*texts)


def test_refused_reset_says_nothing(service, window):
    hub = window(NO_TRAY)
    for status in ("-1", "-12"):
        hub.ask("status", status)
        hub.ask("call", "resetCalibration")
    hub.ask("message", "next")
    service.wait_for("next")


def test_hint_comes_before_not_calibrated(service, install):
    app = install(scenario="at 0 status -1 firmware 1\nat 3000 status -6\n").start()
    app.wait_until_shows("Not connected to Vireon.")
    assert service.texts() == []
    first = service.wait_for(OLD_FIRMWARE)
    second = service.wait_for(OLD_FIRMWARE, NOT_CALIBRATED)
    assert SHOWN_S - 0.5 < second - first < SHOWN_S + 15


def test_not_calibrated_is_said_each_time(service, install):
    # The status comes first and the firmware's version a moment later: two reports of -6.
    app = install(scenario="at 500 status -6\n").start()
    first = service.wait_for(NOT_CALIBRATED)
    second = service.wait_for(NOT_CALIBRATED, NOT_CALIBRATED)
    assert SHOWN_S - 0.5 < second - first < SHOWN_S + 15
    assert app.log_count(r"^\[debug\] status -6$") == 2


def test_old_firmware_is_said_once(service, install):
    app = install(scenario="at 0 status -1 firmware 1\nat 4000 status 0\nat 5000 status 3\n"
                           "at 6000 status -6\n").start()
    app.wait_until_shows("Not connected to Vireon.")
    app.click("File")
    assert not wait_for(lambda: app.clickable("Update Firmware"), what="the entry").enabled
    service.wait_for(OLD_FIRMWARE)
    wait_for(lambda: app.clickable("Update Firmware").enabled, what="an entry to choose")
    app.desktop.key("Escape")
    service.wait_for(OLD_FIRMWARE, NOT_CALIBRATED)


def test_hiding_by_the_menu_never_quits(service, install, desktop):
    app = install().start()
    app.wait_until_shows("Started and ready")
    app.click("File")
    app.click("Hide")
    service.wait_for(NO_TRAY_HINT)
    wait_for(lambda: not app.windows(), what="a hidden window")
    assert app.is_running() and not app.log_count("Quit Vireon clicked")

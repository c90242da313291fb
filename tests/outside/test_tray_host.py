"""A tray whose host hangs, goes away and comes back."""

import os
import pathlib
import signal

import pytest

from rig import Mate, wait_for

WATCHER = "org.kde.StatusNotifierWatcher"
WATCHER_PATH = "/StatusNotifierWatcher"
MOCK = "org.freedesktop.DBus.Mock"
PROGRAM = ("com.corvanthel.Vireon", "/com/corvanthel/Vireon", "org.freedesktop.Application")
SERVICE = ("org.freedesktop.Notifications", "/org/freedesktop/Notifications")
TEMPLATE = pathlib.Path(__file__).parent / "rig/trayhost.py"
AT_ONCE = 12  # s, on a busy machine; an unanswered call is waited for twice as long


@pytest.fixture
def hung_host(bus):
    """hung_host(): stops the tray's host, which takes calls and answers none."""
    stopped = []

    def stop():
        stopped.append(bus.owner_pid(WATCHER))
        os.kill(stopped[-1], signal.SIGSTOP)

    yield stop
    for pid in stopped:
        os.kill(pid, signal.SIGCONT)


@pytest.mark.parametrize("make_desktop", [Mate])
def test_hung_host_holds_nothing_up(desktop, bus, install, hung_host):
    bus.wait_for_owner(WATCHER)
    app = install(scenario="at 0 status 0\n").start()
    app.wait_until_shows("Started and ready")
    wait_for(lambda: app.log_count("Resolution changed"), what="the screen's full size")
    wait_for(desktop.icon, what="the icon")
    hung_host()
    # A message, with which the view is told as well.
    (app.data / "pensettings.ini").write_text("Result=-6\nFirmware=5\n")
    app.wait_until_shows("not calibrated.", AT_ONCE)
    # The hint of the closed window; then the program hears of the next start.
    desktop.run("wmctrl", "-c", "Vireon")
    wait_for(lambda: not app.windows(), AT_ONCE, what="a hidden window")
    bus.send(*PROGRAM, "Activate", "(a{sv})", {})
    wait_for(app.windows, AT_ONCE, what="the window again")
    app.signal(signal.SIGTERM)
    assert app.wait(AT_ONCE) == 0


class FakeHost:
    """A tray's host that may come and go, beside its watcher."""

    def __init__(self, desktop, bus):
        self._bus = bus
        self.process = desktop.start("/usr/bin/python3", "-B", "-m", "dbusmock", "--session",
                                     "--template", TEMPLATE)
        bus.wait_for_owner(WATCHER)

    def set_there(self, there):
        self._bus.call(WATCHER, WATCHER_PATH, "org.freedesktop.DBus.Properties", "Set", "(ssv)",
                       WATCHER, "IsStatusNotifierHostRegistered", self._bus.variant("b", there))
        self._bus.call(WATCHER, WATCHER_PATH, MOCK, "EmitSignal", "(sssav)", WATCHER,
                       f"StatusNotifierHost{'R' if there else 'Unr'}egistered", "", [])


def test_messages_follow_the_host(desktop, bus, subject):
    desktop.start("/usr/bin/python3", "-m", "dbusmock", "--session",
                  "--template", "notification_daemon")
    bus.wait_for_owner(SERVICE[0])
    host = FakeHost(desktop, bus)
    hub = subject("mainwindowsubject").ready()

    def messages():
        return [arguments for method, arguments in bus.mock_calls(*SERVICE) if method == "Notify"]

    def is_shown_by_the_tray():
        """Whether the tray shows the next message; where it does not, the program gives its name."""
        count = len(messages())
        hub.ask("message", "text")
        hub.ask("message", "")
        wait_for(lambda: len(messages()) > count, what="a message")
        return messages()[count][0] != "Vireon"

    wait_for(is_shown_by_the_tray, what="a message by the tray")
    host.set_there(False)
    wait_for(lambda: not is_shown_by_the_tray(), what="a message without a tray")
    host.set_there(True)
    wait_for(is_shown_by_the_tray, what="a message by the tray again")
    host.process.terminate()
    wait_for(lambda: not is_shown_by_the_tray(), what="a message after the watcher's end")
    FakeHost(desktop, bus)
    wait_for(is_shown_by_the_tray, what="a message by the new tray")

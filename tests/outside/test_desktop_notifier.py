"""Messages without a tray, as the notification service takes them."""

import signal

import pytest

from rig import NotificationService

QUICK_MS = 1000
NO_BUS = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}


@pytest.fixture
def service(desktop, bus):
    return NotificationService(desktop, bus)


@pytest.fixture
def notifier(subject):
    return subject("notifiersubject").ready()


def do(notifier, *words):
    """Tells it what to do, which must not take any time."""
    said, duration = notifier.ask(*words).split()
    assert said == "done" and int(duration) < QUICK_MS


def test_message_is_shown_for_five_seconds(service, notifier):
    do(notifier, "show", "Vireon", "Läuft im Hintergrund 実行中")
    ((method, arguments),) = service.wait_for_calls(1)
    assert method == "Notify"
    assert arguments == ["Vireon", 0, "/usr/local/bin/Vireon/Corvanthel.png", "Vireon",
                         "Läuft im Hintergrund 実行中", ["default", "Open"],
                         {"desktop-entry": "com.corvanthel.Vireon"}, 5000]


def test_click_on_a_message_is_told_once_for_each(service, notifier):
    for text in "AB":
        do(notifier, "show", "Vireon", text)
    service.wait_for_calls(2)
    for number in (1, 2):
        service.emit("ActionInvoked", "us", number, "default")
        assert notifier.answer() == "clicked"
    # Another program's message, another action, and a message that is gone.
    service.emit("ActionInvoked", "us", 3, "default")
    service.emit("ActionInvoked", "us", 1, "other")
    service.emit("NotificationClosed", "uu", 1, 2)
    service.emit("ActionInvoked", "us", 1, "default")
    service.emit("ActionInvoked", "us", 2, "default")
    assert notifier.answer() == "clicked"
    do(notifier, "show", "Vireon", "C")


def test_messages_keep_their_order(service, notifier):
    for text in "ABC":
        do(notifier, "show", "Vireon", text)
    assert [arguments[4] for _, arguments in service.wait_for_calls(3)] == list("ABC")


def test_last_message_is_closed(service, notifier):
    for text in "AB":
        do(notifier, "show", "Vireon", text)
    service.wait_for_calls(2)
    do(notifier, "close")
    do(notifier, "close")
    do(notifier, "show", "Vireon", "C")
    found = service.wait_for_calls(4)
    assert found[2] == ("CloseNotification", [2])
    assert found[3][1][4] == "C"


def test_message_is_closed_before_its_number_is_known(service, notifier):
    service.process.send_signal(signal.SIGSTOP)
    do(notifier, "show", "Vireon", "A")
    do(notifier, "showclose", "Vireon", "B")
    do(notifier, "show", "Vireon", "C")
    service.process.send_signal(signal.SIGCONT)
    found = service.wait_for_calls(4)
    assert [arguments[4] for method, arguments in found if method == "Notify"] == list("ABC")
    assert [arguments for method, arguments in found if method == "CloseNotification"] == [[2]]


def test_closing_without_a_message_does_nothing(service, notifier):
    do(notifier, "close")
    do(notifier, "show", "Vireon", "A")
    assert service.wait_for_calls(1)[0][0] == "Notify"


def test_stopped_service_holds_nothing_up(service, notifier):
    service.process.send_signal(signal.SIGSTOP)
    for text in "AB":
        do(notifier, "show", "Vireon", text)
    do(notifier, "close")
    notifier.send("leave")
    assert notifier.process.wait(20) == 0
    service.process.send_signal(signal.SIGCONT)
    assert [arguments[4] for _, arguments in service.wait_for_calls(2)] == list("AB")


@pytest.mark.parametrize("environment", [None, NO_BUS])
def test_missing_service_is_no_matter(subject, environment):
    notifier = subject("notifiersubject", environment=environment).ready()
    do(notifier, "show", "Vireon", "A")
    do(notifier, "close")
    do(notifier, "showclose", "Vireon", "B")
    assert notifier.is_running() and notifier.log() == []

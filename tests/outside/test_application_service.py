"""The program on the session bus, as the desktop and as a second copy see it."""

import signal
import xml.etree.ElementTree

import pytest

from rig import Bus, wait_for
from rig.bus import add_service, write_configuration

NAME = "com.corvanthel.Vireon"
PATH = "/com/corvanthel/Vireon"
INTERFACE = "org.freedesktop.Application"
NO_BUS = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
LIMIT_MS = 2000


@pytest.fixture
def first(bus, subject):
    """A first copy that holds the name."""
    first = subject("servicesubject", "first").ready()
    bus.wait_for_owner(NAME)
    return first


def second_copy(subject, startup_id=None, environment=None):
    """What a second copy says: (answered or unanswered, ms)."""
    program = subject("servicesubject", "second",
                      environment={"DESKTOP_STARTUP_ID": startup_id, **(environment or {})})
    outcome, duration = program.answer().split()
    assert program.process.wait() == 0
    assert program.log() == []
    return outcome, int(duration)


def activations(first):
    return int(first.ask("count"))


def test_interface_is_the_standard_one(bus, first):
    assert bus.owner_pid(NAME) == first.pid
    text = bus.call(NAME, PATH, "org.freedesktop.DBus.Introspectable", "Introspect")
    (node,) = [node for node in xml.etree.ElementTree.fromstring(text).findall("interface")
               if node.get("name") == INTERFACE]
    assert {method.get("name"): "".join(argument.get("type") for argument in method.findall("arg"))
            for method in node} == {"Activate": "a{sv}", "Open": "asa{sv}",
                                    "ActivateAction": "sava{sv}"}


def test_desktop_activates(bus, first):
    bus.call(NAME, PATH, INTERFACE, "Activate", "(a{sv})", {})
    assert activations(first) == 1
    bus.call(NAME, PATH, INTERFACE, "Open", "(asa{sv})", ["file:///x"],
             {"desktop-startup-id": bus.variant("s", "id_TIME7")})
    assert activations(first) == 2
    bus.call(NAME, PATH, INTERFACE, "ActivateAction", "(sava{sv})", "new", [], {})
    assert activations(first) == 2
    # What is not a text, as a foreign caller may send it.
    bus.call(NAME, PATH, INTERFACE, "Activate", "(a{sv})", {"desktop-startup-id":
                                                            bus.variant("a{sv}", {})})
    assert activations(first) == 3


def test_second_copy_activates_the_first(first, subject):
    outcome, duration = second_copy(subject, "id_TIME1")
    assert outcome == "answered" and duration < LIMIT_MS
    assert activations(first) == 1


@pytest.mark.parametrize("startup_id", [None, "shell/vireon/1-2-host_TIME123", "Größe_TIME1"])
def test_second_copy_passes_its_start_up_id(desktop, bus, subject, startup_id):
    desktop.start("/usr/bin/python3", "-m", "dbusmock", "--session", NAME, PATH, INTERFACE)
    bus.wait_for_owner(NAME)
    bus.add_mock_method(NAME, PATH, INTERFACE, "Activate", "a{sv}")
    outcome, _ = second_copy(subject, startup_id)
    assert outcome == "answered"
    data = {"desktop-startup-id": startup_id} if startup_id else {}
    assert bus.mock_calls(NAME, PATH) == [("Activate", [data])]


def test_stopped_first_copy_holds_nobody_up(bus, first, subject):
    first.signal(signal.SIGSTOP)
    outcome, duration = second_copy(subject, "id_TIME1")
    assert outcome == "unanswered"
    assert LIMIT_MS * 0.9 < duration < LIMIT_MS * 5
    first.signal(signal.SIGCONT)
    wait_for(lambda: activations(first) == 1, what="the call")


def test_second_copy_without_a_first_is_silent(subject, bus):
    outcome, duration = second_copy(subject)
    assert outcome == "unanswered" and duration < LIMIT_MS
    assert not bus.has_owner(NAME)


def test_without_a_bus_all_goes_on(subject):
    program = subject("servicesubject", "first", environment=NO_BUS).ready()
    outcome, duration = second_copy(subject, environment=NO_BUS)
    assert outcome == "unanswered" and duration < LIMIT_MS
    assert program.is_running() and program.log() == []


def test_name_is_taken_at_once_or_not_at_all(bus, first, subject):
    late = subject("servicesubject", "first").ready()
    assert bus.owner_pid(NAME) == first.pid
    first.end()
    wait_for(lambda: not bus.has_owner(NAME), what="a free name")
    assert late.is_running() and late.log() == []


def test_second_copy_starts_no_program(desktop, directory, subject):
    place = directory / "bus"
    started = directory / "started"
    add_service(place / "services", NAME, f"/usr/bin/touch {started}")
    write_configuration(place / "bus.conf", f"unix:path={place / 'socket'}", place / "services")
    desktop.start("dbus-daemon", "--nofork", "--nopidfile", f"--config-file={place / 'bus.conf'}")
    wait_for((place / "socket").exists, what="a bus")
    address = {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={place / 'socket'}"}
    outcome, _ = second_copy(subject, environment=address)
    assert outcome == "unanswered"
    assert not started.exists()
    # This bus would have done it.
    activated = Bus(address["DBUS_SESSION_BUS_ADDRESS"])
    activated.send(NAME, PATH, INTERFACE, "Activate", "(a{sv})", {})
    wait_for(started.exists, what="a started service")

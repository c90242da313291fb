"""Buses, and calls on them."""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .processes import PATIENCE, wait_for

_BUS = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
_MOCK = "org.freedesktop.DBus.Mock"
_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <keep_umask/>
  <listen>{address}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


def write_configuration(path, address, services):
    """Writes the configuration of a bus on which nothing is started that was not asked for: its
    only services are those of the directory `services`."""
    path.write_text(_CONFIGURATION.format(address=address, services=services))


def add_service(services, name, program):
    """Names a program that the bus of this directory starts when this name is asked for."""
    services.mkdir(parents=True, exist_ok=True)
    (services / f"{name}.service").write_text(f"[D-BUS Service]\nName={name}\nExec={program}\n")


class Bus:
    """A connection of the test's own to the bus at this address."""

    def __init__(self, address):
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self._connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def call(self, name, path, interface, method, signature="()", *arguments):
        """Calls a method; its results, one alone by itself."""
        answer = self._connection.call_sync(
            name, path, interface, method, GLib.Variant(signature, arguments), None,
            Gio.DBusCallFlags.NO_AUTO_START, int(PATIENCE * 1000), None).unpack()
        return answer[0] if len(answer) == 1 else answer

    def send(self, name, path, interface, method, signature="()", *arguments):
        """Calls a method, which may start its service, and does not wait."""
        self._connection.call(name, path, interface, method, GLib.Variant(signature, arguments),
                              None, Gio.DBusCallFlags.NONE, -1, None, None)
        self._connection.flush_sync(None)

    def emit(self, path, interface, name, signature="()", *arguments):
        """Emits a signal of its own."""
        self._connection.emit_signal(None, path, interface, name, GLib.Variant(signature, arguments))
        self._connection.flush_sync(None)

    @staticmethod
    def variant(signature, value):
        """An argument of the signature "v"."""
        return GLib.Variant(signature, value)

    def property(self, name, path, interface, member):
        return self.call(name, path, "org.freedesktop.DBus.Properties", "Get", "(ss)",
                         interface, member)

    def has_owner(self, name):
        return self.call(*_BUS, "NameHasOwner", "(s)", name)

    def owner_pid(self, name):
        return self.call(*_BUS, "GetConnectionUnixProcessID", "(s)", name)

    def wait_for_owner(self, name):
        wait_for(lambda: self.has_owner(name), what=f"an owner of {name}")

    def add_mock_method(self, name, path, interface, method, signature):
        """Gives a dbusmock object a method that answers nothing."""
        self.call(name, path, _MOCK, "AddMethod", "(sssss)", interface, method, signature, "", "")

    def mock_calls(self, name, path):
        """What was called on a dbusmock object: (method, arguments), the oldest first."""
        return [(method, arguments)
                for _, method, arguments in self.call(name, path, _MOCK, "GetCalls")]

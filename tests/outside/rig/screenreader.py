"""What a window shows, read and operated the way a screen reader does it."""

import dataclasses

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from . import processes  # noqa: E402

_ACCESSIBLE = "org.a11y.atspi.Accessible"
_ROOT = "/org/a11y/atspi/accessible/root"
_ACTION = "org.a11y.atspi.Action"
_SHOWING, _VISIBLE, _ENABLED, _CHECKED, _FOCUSED = 25, 30, 8, 4, 12
_ANSWER_MS = 20000


@dataclasses.dataclass(frozen=True)
class Item:
    """One visible item: its name (for a text, the text), role, place on the screen in px.

    `owner` and `path` are its address on the accessibility bus.
    """

    name: str
    role: str
    x: int
    y: int
    width: int
    height: int
    enabled: bool
    checked: bool
    focused: bool
    description: str
    owner: str
    path: str

    @property
    def centre(self):
        return self.x + self.width // 2, self.y + self.height // 2


class ScreenReader:
    """Walks the accessible objects of a program. Plain D-Bus: no state but the connection."""

    def __init__(self, session_address):
        session = self._connect(session_address)
        address = processes.wait_for(lambda: self._accessibility_address(session),
                                     what="the accessibility bus")
        session.close_sync(None)
        self._bus = self._connect(address)

    def items(self, pid):
        """All visible items of the program with this process id, top first."""
        found = []
        try:
            for name, path in self._children("org.a11y.atspi.Registry", _ROOT):
                if self._pid_of(name) == pid:
                    self._collect(name, path, found)
        except GLib.Error:
            # The program ended, or an item went away while it was looked at.
            return []
        return found

    def actions(self, item):
        """The names of what the item offers to do."""
        return [action[0] for action in self._call(item.owner, item.path, _ACTION, "GetActions")[0]]

    def act(self, item, action="Press"):
        """Has the item do it. Nobody waits for an answer: it comes after a box that opens."""
        index = GLib.Variant("(i)", (self.actions(item).index(action),))
        self._bus.call(item.owner, item.path, _ACTION, "DoAction", index, None,
                       Gio.DBusCallFlags.NONE, -1, None, None)
        self._bus.flush_sync(None)

    def listen(self, pid):
        """A list of what this program says by itself from now on: the names of notifications that
        come up. hear() fills it."""
        said = []

        def shown(_bus, sender, path, _interface, _signal, arguments):
            if arguments.unpack()[1] != 1 or self._pid_of(sender) != pid:
                return
            if self._call(sender, path, _ACCESSIBLE, "GetRoleName")[0] == "notification":
                said.append(self._property(sender, path, "Name"))

        self._call("org.a11y.atspi.Registry", "/org/a11y/atspi/registry",
                   "org.a11y.atspi.Registry", "RegisterEvent",
                   GLib.Variant("(sass)", ("object:state-changed:showing", [], "")))
        self._bus.signal_subscribe(None, "org.a11y.atspi.Event.Object", "StateChanged", None,
                                   "showing", Gio.DBusSignalFlags.NONE, shown)
        return said

    @staticmethod
    def hear():
        """Takes in what has been said."""
        while GLib.MainContext.default().iteration(False):
            pass

    @staticmethod
    def _connect(address):
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        connection.set_exit_on_close(False)
        return connection

    @staticmethod
    def _accessibility_address(session):
        try:
            reply = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                                      None, None, Gio.DBusCallFlags.NONE, _ANSWER_MS, None)
            return reply.unpack()[0]
        except GLib.Error:
            return None

    def _call(self, name, path, interface, method, arguments=None):
        return self._bus.call_sync(name, path, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, _ANSWER_MS, None).unpack()

    def _pid_of(self, name):
        return self._call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                          "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))[0]

    def _children(self, name, path):
        return self._call(name, path, _ACCESSIBLE, "GetChildren")[0]

    def _collect(self, name, path, found):
        if path != _ROOT:
            low, high = self._call(name, path, _ACCESSIBLE, "GetState")[0]
            states = low | high << 32
            if states >> _VISIBLE & 1 and states >> _SHOWING & 1:
                found.append(self._item(name, path, states))
        for child_name, child_path in self._children(name, path):
            self._collect(child_name, child_path, found)

    def _item(self, name, path, states):
        role = self._call(name, path, _ACCESSIBLE, "GetRoleName")[0]
        try:
            place = self._call(name, path, "org.a11y.atspi.Component", "GetExtents",
                               GLib.Variant("(u)", (0,)))[0]
        except GLib.Error:
            place = (0, 0, 0, 0)
        return Item(self._property(name, path, "Name"), role, *place,
                    *(bool(states >> state & 1) for state in (_ENABLED, _CHECKED, _FOCUSED)),
                    self._property(name, path, "Description"), name, path)

    def _property(self, name, path, member):
        return self._call(name, path, "org.freedesktop.DBus.Properties", "Get",
                          GLib.Variant("(ss)", (_ACCESSIBLE, member)))[0]

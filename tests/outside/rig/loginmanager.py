"""A login manager, for the machine's sleep."""

_MANAGER = ("org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager")
_MOCK = "org.freedesktop.DBus.Mock"


class LoginManager:
    """The login manager of a desktop, which ends with it. One bus is both the session's and the
    system's here: programs find it where they get DBUS_SYSTEM_BUS_ADDRESS with the session's."""

    def __init__(self, desktop, bus):
        self._bus = bus
        address = desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = address
        desktop.start("/usr/bin/python3", "-m", "dbusmock", "--template", "logind")
        bus.wait_for_owner(_MANAGER[0])

    def delays(self):
        """What delays a sleep: what, who, why and how."""
        return [inhibitor[:4] for inhibitor in self._bus.call(*_MANAGER, "ListInhibitors")]

    def announce(self, begins):
        """What it says when a sleep begins, and when it is over."""
        self._bus.call(*_MANAGER[:2], _MOCK, "EmitSignal", "(sssav)", _MANAGER[2],
                       "PrepareForSleep", "b", [self._bus.variant("b", begins)])

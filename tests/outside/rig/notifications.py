"""A notification service that keeps what it is told."""

from .processes import wait_for

NAME = "org.freedesktop.Notifications"
_OBJECT = (NAME, "/org/freedesktop/Notifications")


class NotificationService:
    """The service of a desktop, which ends with it.

    process  its process
    """

    def __init__(self, desktop, bus):
        self._bus = bus
        self.process = desktop.start("/usr/bin/python3", "-m", "dbusmock", "--session",
                                     "--template", "notification_daemon")
        bus.wait_for_owner(NAME)

    def calls(self):
        """All calls, the oldest first: (method, arguments)."""
        return self._bus.mock_calls(*_OBJECT)

    def calls_of(self, method):
        """The arguments of all calls of this method."""
        return [arguments for name, arguments in self.calls() if name == method]

    def texts(self):
        """The texts of all messages."""
        return [arguments[4] for arguments in self.calls_of("Notify")]

    def wait_for_calls(self, count):
        """The first calls, which must be no more than these."""
        wait_for(lambda: len(self.calls()) >= count, what=f"{count} calls")
        found = self.calls()
        assert len(found) == count
        return found

    def emit(self, name, signature, *arguments):
        """Has it send a signal."""
        values = [self._bus.variant(kind, value) for kind, value in zip(signature, arguments)]
        self._bus.call(*_OBJECT, "org.freedesktop.DBus.Mock", "EmitSignal", "(sssav)", NAME, name,
                       signature, values)

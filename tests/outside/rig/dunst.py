"""A notification daemon that remembers what it showed."""

import dataclasses

from .notifications import NAME as _NAME

_PATH = "/org/freedesktop/Notifications"
_COMMANDS = "org.dunstproject.cmd0"
_CONFIGURATION = "[global]\nhistory_length = 100\nnotification_limit = 100\nshow_age_threshold = -1\n"


@dataclasses.dataclass(frozen=True)
class Message:
    """One message, and when it came: in s, of a clock that never jumps."""

    summary: str
    body: str
    time: float


class Dunst:
    """The daemon of a desktop, which ends with it."""

    def __init__(self, desktop):
        configuration = desktop.directory / "dunstrc"
        configuration.write_text(_CONFIGURATION)
        desktop.start("dunst", "-conf", configuration)
        self._bus = desktop.bus()
        self._bus.wait_for_owner(_NAME)

    def messages(self):
        """All messages, the oldest first. None of them stays on the screen."""
        self._bus.call(_NAME, _PATH, _COMMANDS, "NotificationCloseAll")
        history = self._bus.call(_NAME, _PATH, _COMMANDS, "NotificationListHistory")
        found = [Message(one["summary"], one["body"], one["timestamp"] / 1e6) for one in history]
        return sorted(found, key=lambda message: message.time)

    def click(self):
        """Clicks the upper one of the messages on the screen; whether there was one."""
        if not self._bus.property(_NAME, _PATH, _COMMANDS, "displayedLength"):
            return False
        self._bus.call(_NAME, _PATH, _COMMANDS, "NotificationAction", "(u)", 0)
        return True

"""The indicator area, and the one item in it."""

from .processes import wait_for

HOST = "/usr/libexec/ayatana-indicator-application/ayatana-indicator-application-service"
WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"


def start_host(desktop, bus):
    """Starts the indicator area; its process."""
    host = desktop.start(HOST)
    bus.wait_for_owner(WATCHER)
    return host


class Indicator:
    """The one item of the indicator area."""

    def __init__(self, bus):
        self.bus = bus
        item = wait_for(lambda: bus.property(WATCHER, "/StatusNotifierWatcher", WATCHER,
                                             "RegisteredStatusNotifierItems"), what="an item")
        assert len(item) == 1
        self.name, _, path = item[0].partition("/")
        self.path = "/" + path

    def property(self, member):
        return self.bus.property(self.name, self.path, ITEM, member)

    def entries(self):
        """The menu's entries: (id, properties)."""
        _, (_, _, children) = self.bus.call(self.name, self.property("Menu"), MENU, "GetLayout",
                                            "(iias)", 0, -1, [])
        return [(number, properties) for number, properties, _ in children]

    def click(self, number):
        self.bus.call(self.name, self.property("Menu"), MENU, "Event", "(isvu)", number,
                      "clicked", self.bus.variant("i", 0), 0)

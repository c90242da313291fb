"""A dbusmock template: the watcher of a tray's items, and its host, who may come and go."""

BUS_NAME = "org.kde.StatusNotifierWatcher"
MAIN_OBJ = "/StatusNotifierWatcher"
MAIN_IFACE = BUS_NAME
SYSTEM_BUS = False


def load(mock, _parameters):
    mock.AddMethod(MAIN_IFACE, "RegisterStatusNotifierItem", "s", "", "")
    mock.AddProperty(MAIN_IFACE, "IsStatusNotifierHostRegistered", True)

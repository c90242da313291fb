"""The desktops that are tried, each with its own hands and eyes for what lies outside our window."""

import json
import time

from rig import Desktop, Gnome, Indicator, Mate, MateSession, wait_for
from rig.indicator import start_host
from rig.mate import INDICATORS
from rig.processes import name_of

WATCHER = "org.kde.StatusNotifierWatcher"
NOTIFICATIONS = "org.freedesktop.Notifications"
EXTENSION = "ubuntu-appindicators@ubuntu.com"
_GNOME_NOTIFICATIONS = "/usr/bin/gjs /usr/share/gnome-shell/org.gnome.Shell.Notifications"
_POINTER = ("(global.vireonPointer ??= imports.gi.Clutter.get_default_backend()"
            ".get_default_seat().create_virtual_device("
            "imports.gi.Clutter.InputDeviceType.POINTER_DEVICE))")
_NOW = "imports.gi.GLib.get_monotonic_time()"
_SETTINGS = """[org/gnome/shell]
enabled-extensions={extensions}
welcome-dialog-last-shown-version='99'
"""


class NotTried(Exception):
    """What cannot be tried on a desktop; the text says why."""


class Bare(Desktop):
    """openbox and nothing else."""

    def prepare(self):
        """What has to be there before the program starts."""

    def picture(self, path):
        self.run("import", "-window", "root", path)

    def tray(self):
        """Where the icon is: its centre, in px; None while there is none."""
        raise NotTried("there is no tray")

    def click_tray(self):
        """The plain click; what it takes where that is something else."""

    def tray_menu(self):
        """Opens the icon's menu; what is in it."""
        raise NotTried("there is no tray")

    def close_menu(self):
        """Closes it again."""
        self.key("Escape")

    def choose_exit(self, app):
        """Quits the program by the icon's menu, or its own where there is none."""
        app.click("File")
        app.click("Exit")

    def messages(self):
        """The texts that are to be seen as notifications now, or to be read again."""
        raise NotTried("there is no notification daemon")

    def click_message(self, text):
        raise NotTried("there is no notification daemon")

    def end_session(self):
        """Ends it as its user would; how."""
        screen = self._processes[0]
        screen.terminate()
        screen.wait()
        return "by the end of the X server: there is no session manager"


class MatePanel(Mate):
    """MATE's window manager, panel and notification daemon."""

    def prepare(self):
        self.bus().wait_for_owner(WATCHER)

    def picture(self, path):
        self.run("import", "-window", "root", path)

    def tray(self):
        box = self.icon()
        return box and ((box[0] + box[2]) // 2, (box[1] + box[3]) // 2)

    def click_tray(self):
        self.click_icon()

    def tray_menu(self):
        self.click_icon(3)

        def entries():
            items = self.reader.items(self.bus().owner_pid(WATCHER))
            return [item.name for item in items if item.role == "menu item" and item.enabled]
        return wait_for(entries, 10, what="a menu")

    close_menu = Bare.close_menu

    def choose_exit(self, app):
        self.tray_menu()
        self.key("Down", "Return")

    def messages(self):
        return [item.name for item in self._balloons() if item.name]

    def click_message(self, text):
        def found():
            return next((item for item in self._balloons() if item.name == text), None)
        self.click(*wait_for(found, 10, what=f"the message {text!r}").centre)

    def _balloons(self):
        bus = self.bus()
        return (self.reader.items(bus.owner_pid(NOTIFICATIONS)) if bus.has_owner(NOTIFICATIONS)
                else [])


class MateLogin(MateSession):
    """The same as a session, which is logged out of."""

    def end_session(self):
        self.bus().call("org.gnome.SessionManager", "/org/gnome/SessionManager",
                        "org.gnome.SessionManager", "Logout", "(u)", 1)
        return "by the session manager"


class UnityIndicators(MatePanel):
    """The indicator host of Unity, on a panel of MATE, which shows what is in it."""

    def __init__(self, directory):
        super().__init__(directory, applet=INDICATORS)

    def prepare(self):
        start_host(self, self.bus())

    def tray(self):
        return Indicator(self.bus()).property("Status") == "Active" and super().tray()

    def click_tray(self):
        """A click opens the menu, whose first entry opens the window."""
        self.click_icon()
        time.sleep(1)
        self.key("Down", "Return")
        return "by \"Open\" of the menu, which is what a click on an indicator opens"

    def tray_menu(self):
        entries = wait_for(Indicator(self.bus()).entries, 10, what="a menu")
        self.click_icon()
        return [properties["label"] for _, properties in entries]

    def choose_exit(self, app):
        self.click_icon()
        time.sleep(1)
        self.key("Down", "Down", "Return")

    def click_message(self, text):
        raise NotTried("a click does nothing there: the messages have no action")

    end_session = Bare.end_session


class GnomeShell(Gnome):
    """GNOME Shell, worked by a pointer of its own, since X programs cannot reach it."""

    _extensions = []
    _at = 5

    def prepare(self):
        self._evaluate("Main.messageTray.getSources().forEach(source => source.destroy())")

    def picture(self, path):
        self.run("gdbus", "call", "--session", "-d", "org.gnome.Shell.Screenshot", "-o",
                 "/org/gnome/Shell/Screenshot", "-m", "org.gnome.Shell.Screenshot.Screenshot",
                 "false", "false", path)

    def tray(self):
        raise NotTried("GNOME has no tray without an extension")

    def click_tray(self):
        """See tray()."""

    def tray_menu(self):
        raise NotTried("GNOME has no tray without an extension")

    def choose_exit(self, app):
        Bare.choose_exit(self, app)

    def messages(self):
        self._move()
        return self._evaluate("Main.messageTray.getSources().flatMap(source => "
                              "source.notifications.map(one => one.bannerBodyText))")

    def click_message(self, text):
        """Its banner, when it has come to that."""
        banner = ("(banner => banner && banner.notification.bannerBodyText === %s "
                  "? [...banner.get_transformed_position(), ...banner.get_transformed_size()] "
                  ": null)(Main.messageTray._banner)" % json.dumps(text))

        def found():
            self._move()
            return self._evaluate(banner)
        x, y, width, height = wait_for(found, 30, what="a banner")
        # It slides in, and stays while the pointer is on it.
        self._point(x + width / 2, y + height / 2)
        time.sleep(1)
        x, y, width, height = wait_for(lambda: self._evaluate(banner), 1, what="the banner still")
        self._click(x + width / 2, y + height / 2)

    def end_session(self):
        shell = next(one for one in self._processes if name_of(one.pid) == "gnome-shell")
        shell.terminate()
        shell.wait()
        return "by the end of the shell: gnome-session needs systemd"

    def _prepare(self):
        super()._prepare()
        self.environment["GSETTINGS_BACKEND"] = "keyfile"
        settings = self.directory / "desktop-home/.config/glib-2.0/settings"
        settings.mkdir(parents=True)
        (settings / "keyfile").write_text(_SETTINGS.format(extensions=self._extensions))
        for name in ("org.gnome.Shell.Notifications", NOTIFICATIONS):
            self._service(name, _GNOME_NOTIFICATIONS)

    def _spawn(self, environment, *command):
        # So that it can be asked what it shows.
        more = ("--unsafe-mode",) if command[0] == "gnome-shell" else ()
        return super()._spawn(environment, *command, *more)

    def _evaluate(self, code):
        good, text = self.bus().call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell",
                                     "Eval", "(s)", code)
        assert good, text
        return json.loads(text or "null")

    def _move(self):
        """Moves the pointer a bit, as a user does: without one at work a banner stays for ever."""
        self._at = 6 if self._at == 5 else 5
        self._point(self._at, 500)

    def _point(self, x, y):
        self._evaluate(f"{_POINTER}.notify_absolute_motion({_NOW}, {x}, {y})")

    def _click(self, x, y, button=1, times=1):
        self._point(x, y)
        for state in ("PRESSED", "RELEASED") * times:
            self._evaluate(f"{_POINTER}.notify_button({_NOW}, {button}, "
                           f"imports.gi.Clutter.ButtonState.{state})")
            time.sleep(0.03)  # as a finger


class GnomeWithIndicators(GnomeShell):
    """The same with the extension that shows indicators."""

    _extensions = [EXTENSION]
    _ICON = ("Object.entries(Main.panel.statusArea).filter(([name, one]) => "
             "name.startsWith('appindicator-') && one.visible).map(([name, one]) => "
             "[...one.get_transformed_position(), one.width, one.height])")

    def prepare(self):
        self.bus().wait_for_owner(WATCHER)
        super().prepare()

    def tray(self):
        icons = self._evaluate(self._ICON)
        return icons and (icons[0][0] + icons[0][2] / 2, icons[0][1] + icons[0][3] / 2)

    def click_tray(self):
        self._click(*self.tray(), times=2)
        return "by a double click, as the extension has it: a plain one opens the menu"

    def click_message(self, text):
        """In the list below the clock, where it is."""
        self._click(960, 12)
        shown = ("Main.panel.statusArea.dateMenu._messageList._notificationSection._messages"
                 ".filter(one => one.mapped && one.notification.bannerBodyText === %s).map(one => "
                 "[...one.get_transformed_position(), one.width, one.height])" % json.dumps(text))
        wait_for(lambda: self._evaluate(shown), 10, what="it in the list")
        time.sleep(1)  # the list unfolds
        x, y, width, height = self._evaluate(shown)[0]
        self._click(x + width / 2, y + height / 2)
        return ("in the list below the clock: Qt sends an icon's messages with a low urgency, for which "
                "the shell shows no banner, and without an action for a click")

    def tray_menu(self):
        self._click(*self.tray(), button=3)
        return wait_for(lambda: self._evaluate(
            "Object.entries(Main.panel.statusArea).filter(([name, one]) => "
            "name.startsWith('appindicator-') && one.menu.isOpen).flatMap(([name, one]) => "
            "one.menu._getMenuItems().map(entry => entry.label?.text).filter(text => text))"),
            10, what="a menu")

    def close_menu(self):
        self._click(5, 500)

    def choose_exit(self, app):
        self.tray_menu()
        entry = ("Object.entries(Main.panel.statusArea).filter(([name, one]) => "
                 "name.startsWith('appindicator-')).flatMap(([name, one]) => "
                 "one.menu._getMenuItems().filter(entry => entry.label?.text))"
                 ".map(entry => [...entry.get_transformed_position(), entry.width, entry.height])[0]")
        x, y, width, height = self._evaluate(entry)
        self._click(x + width / 2, y + height / 2)

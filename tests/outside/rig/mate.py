"""A private MATE desktop."""

import io
import os
import re
import shutil
import subprocess

from PIL import Image

from .desktop import Desktop
from .processes import wait_for

NOTIFICATION_AREA = "NotificationAreaAppletFactory::NotificationArea"
INDICATORS = "IndicatorAppletFactory::IndicatorApplet"
_APPLETS = {
    NOTIFICATION_AREA: "mate-panel/notification-area-applet",
    INDICATORS: "mate-indicator-applet/mate-indicator-applet",
}
_NOTIFICATION_DAEMON = "mate-notification-daemon/mate-notification-daemon"
_PLACES = ("/usr/lib", "/usr/libexec")  # of these programs, by the release of Debian
_HEIGHT = 24  # of the panel, in px; it lies at the lower edge
_GREYISH = 80  # the highest saturation of the panel itself
_SETTINGS = """[org/mate/panel/general]
toplevel-id-list=['bottom']
object-id-list=['applet']
enable-sni-support={items}

[org/mate/panel/toplevels/bottom]
expand=true
orientation='bottom'
size={height}

[org/mate/panel/objects/applet]
object-type='applet'
applet-iid='{applet}'
toplevel-id='bottom'
position=0
relative-to-edge='end'
"""
_SESSION = """
[org/mate/desktop/session]
required-components-list=['windowmanager']
default-session=['mate-settings-daemon']
gnome-compat-startup=@as []
logout-prompt=false
"""


def _installed(program):
    """Where this one of the programs is."""
    directory, _, name = program.rpartition("/")
    return shutil.which(name, path=os.pathsep.join(f"{place}/{directory}" for place in _PLACES))


class Mate(Desktop):
    """marco, a panel with one applet at its right end and, as soon as it is asked for, the
    notification daemon.

    applet  what the panel shows
    items   whether its notification area takes items over the bus, too, or just embeds windows
    """

    _window_manager = ("marco", "--sm-disable", "--no-composite")

    def __init__(self, directory, applet=NOTIFICATION_AREA, items=True):
        self._applet = applet
        self._items = items
        super().__init__(directory)
        try:
            self._start_panel()
            wait_for(self._panel_is_there, what="a panel")
        except BaseException:
            self.stop()
            raise

    def icon(self):
        """Where the panel has something coloured: (left, upper, right, lower) in px, or None."""
        width, height = self.size()
        panel = f"{width}x{_HEIGHT}+0+{height - _HEIGHT}"
        png = subprocess.run(["import", "-window", "root", "-crop", panel, "+repage", "png:-"],
                             env=self.environment, check=True, stdout=subprocess.PIPE).stdout
        saturation = Image.open(io.BytesIO(png)).convert("RGB").convert("HSV").getchannel("S")
        box = saturation.point(lambda value: 255 if value > _GREYISH else 0).getbbox()
        return box and (box[0], box[1] + height - _HEIGHT, box[2], box[3] + height - _HEIGHT)

    def click_icon(self, button=1):
        """Clicks the icon on the panel."""
        left, upper, right, lower = wait_for(self.icon, what="an icon on the panel")
        self.run("xdotool", "mousemove", (left + right) // 2, (upper + lower) // 2, "click", button)

    def _start_panel(self):
        self.start("mate-panel")

    def _panel_is_there(self):
        """Whether the window manager keeps its room free."""
        _, height = self.size()
        return f", {height - _HEIGHT}" in self.run("xprop", "-root", "_NET_WORKAREA")

    def _prepare(self):
        self.environment["XDG_CURRENT_DESKTOP"] = "MATE"
        # Settings in a file of this HOME: those of the user are not even looked at.
        self.environment["GSETTINGS_BACKEND"] = "keyfile"
        settings = self.directory / "desktop-home/.config/glib-2.0/settings"
        settings.mkdir(parents=True)
        (settings / "keyfile").write_text(_SETTINGS.format(
            applet=self._applet, items=str(self._items).lower(), height=_HEIGHT))
        factory, _, _ = self._applet.partition("::")
        self._service(f"org.mate.panel.applet.{factory}", _installed(_APPLETS[self._applet]))
        self._service("org.freedesktop.Notifications", _installed(_NOTIFICATION_DAEMON))


class MateSession(Mate):
    """The same as a session, which the session manager starts and ends: the window manager, the
    settings daemon, then the panel and what else is in the user's autostart directory.

    programs  by their names, what starts with the session beside the panel
    """

    _window_manager = ("sh", "-c", "exec mate-session --debug --disable-acceleration-check "
                                   "2> $HOME/session.log")

    def __init__(self, directory, **programs):
        self._programs = {"panel": "mate-panel", **programs}
        super().__init__(directory)

    def saves(self, program):
        """How often the session manager has told this program to save its state, and it did."""
        log = (self.directory / "desktop-home/session.log").read_text(errors="replace")
        return len(re.findall(rf"\[{re.escape(program)} \w+\]' received SaveYourselfDone", log))

    def _start_panel(self):
        """The session has done it."""

    def _prepare(self):
        super()._prepare()
        configuration = self.directory / "desktop-home/.config"
        with open(configuration / "glib-2.0/settings/keyfile", "a") as settings:
            settings.write(_SESSION)
        # For programs with another HOME than the desktop's.
        self.environment["ICEAUTHORITY"] = str(self.directory / "ICEauthority")
        # Of what the machine starts for all users, only this.
        self.environment["XDG_CONFIG_DIRS"] = str(configuration / "none")
        autostart = configuration / "autostart"
        autostart.mkdir()
        shutil.copy2("/etc/xdg/autostart/mate-settings-daemon.desktop", autostart)
        for name, program in self._programs.items():
            (autostart / f"{name}.desktop").write_text(
                f"[Desktop Entry]\nType=Application\nName={name}\nExec={program}\n")

"""GNOME Shell without a screen, on a Wayland display of its own with an X server in it."""

import re
import shutil
import subprocess

import pytest

from . import processes
from .bus import write_configuration
from .desktop import Desktop

_SHELL = ("org.gnome.Shell", "/org/gnome/Shell", "org.freedesktop.DBus.Properties")
_OVERVIEW = ("org.gnome.Shell", "OverviewActive")


class Gnome(Desktop):
    """The desktop of GNOME. A test that needs it is skipped where it is not installed, or does not
    come up."""

    def _start_screen(self):
        if not shutil.which("gnome-shell") or not shutil.which("Xwayland"):
            pytest.skip("GNOME Shell or Xwayland is not installed")
        # The shell brings it.

    def _start_accessibility(self):
        self._start_shell()
        super()._start_accessibility()

    def _start_shell(self):
        configuration = self.directory / "system-bus.conf"
        write_configuration(configuration, f"unix:dir={self.directory / 'run'}",
                            self.directory / "services")
        system_bus = self._start(
            "dbus-daemon", "--nofork", "--nopidfile", f"--config-file={configuration}",
            report="--print-address={}")
        environment = {**self.environment, "DBUS_SYSTEM_BUS_ADDRESS": system_bus,
                       "XDG_SESSION_TYPE": "wayland", "XDG_CURRENT_DESKTOP": "GNOME"}
        # It asks for a login manager as soon as it starts.
        self._spawn(environment, "/usr/bin/python3", "-m", "dbusmock", "--system", "--template",
                    "logind")
        processes.wait_for(lambda: self._asks_login_manager(environment), what="a login manager")
        log = self._spawn(environment, "gnome-shell", "--headless", "--virtual-monitor",
                          "1920x1080")
        try:
            display = processes.wait_for(
                lambda: re.search(r"public X11 display (:\d+)", log.read_text(errors="replace")),
                what="GNOME Shell's X display")
            (authority,) = processes.wait_for(
                lambda: list((self.directory / "run").glob(".mutter-Xwaylandauth.*")),
                what="the authority for it")
        except AssertionError as fault:
            pytest.skip(f"GNOME Shell does not come up: {fault}")
        # Only the shell is told of Wayland: the program is one for X.
        self.environment |= {"DISPLAY": display.group(1), "XAUTHORITY": str(authority),
                             "XDG_CURRENT_DESKTOP": "GNOME", "GDK_BACKEND": "x11"}

    def _start_window_manager(self):
        processes.wait_for(
            lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
            what="a window manager")
        # It begins with the overview, in which no window is in use.
        processes.wait_for(lambda: "true" in self._overview("Get"), what="the overview")
        self._overview("Set", "<false>")

    def _overview(self, act, *value):
        name, path, interface = _SHELL
        return self.run("gdbus", "call", "--session", "-d", name, "-o", path, "-m",
                        f"{interface}.{act}", *_OVERVIEW, *value)

    @staticmethod
    def _asks_login_manager(environment):
        return subprocess.run(
            ["gdbus", "call", "--system", "-d", "org.freedesktop.login1", "-o",
             "/org/freedesktop/login1", "-m", "org.freedesktop.DBus.Peer.Ping"],
            env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0

    def _spawn(self, environment, *command):
        """Starts a part of it in an environment of its own; where its output goes."""
        log = self.directory / f"{command[0].rpartition('/')[2]}.log"
        with open(log, "wb") as output:
            self._processes.append(processes.spawn(
                command, env=environment, stdin=subprocess.DEVNULL, stdout=output, stderr=output))
        return log

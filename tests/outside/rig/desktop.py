"""A private desktop without hardware."""

import os
import re
import subprocess

from . import processes
from .bus import Bus, add_service, write_configuration
from .screenreader import ScreenReader

_ACCESSIBILITY_LAUNCHER = "/usr/libexec/at-spi-bus-launcher"


class Desktop:
    """A screen of 1920x1080 px in memory with openbox, a session bus and the accessibility bus on it.

    `directory` must exist and be short (sockets are made in it). `environment` is what a program
    on this desktop needs; it starts from nothing, so that nobody's settings leak in.
    """

    _window_manager = ("openbox", "--sm-disable")

    def __init__(self, directory):
        self.directory = directory
        self._processes = []
        self._modes = set()
        runtime = directory / "run"
        runtime.mkdir(mode=0o700)
        home = directory / "desktop-home"
        home.mkdir()
        self.environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin",
            "LANG": "C.UTF-8",
            "HOME": str(home),
            "XDG_RUNTIME_DIR": str(runtime),
            "GSETTINGS_BACKEND": "memory",
        }
        self._prepare()
        try:
            self._start_screen()
            self._start_bus()
            self._start_accessibility()
            self._start_window_manager()
        except BaseException:
            self.stop()
            raise

    def stop(self):
        while self._processes:
            process = self._processes.pop()
            processes.end(process.pid)
            process.wait()

    def run(self, *command):
        """Runs a tool on this desktop; its standard output."""
        return subprocess.run([str(word) for word in command], env=self.environment, check=True,
                              stdout=subprocess.PIPE, timeout=60, text=True).stdout

    def is_shown(self, window):
        """Whether this window is on the screen. Its frame may go while that is looked up."""
        told = subprocess.run(["xwininfo", "-id", str(window)], env=self.environment, timeout=60,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        return "IsViewable" in told.stdout

    def start(self, *command):
        """Starts one more part of it, such as a panel, which ends with the desktop; its process."""
        self._start(*command)
        return self._processes[-1]

    def bus(self):
        """A new connection to its session bus."""
        return Bus(self.environment["DBUS_SESSION_BUS_ADDRESS"])

    def size(self):
        """Of its screen: width, height in px."""
        width, height = self.run("xdotool", "getdisplaygeometry").split()
        return int(width), int(height)

    def set_mode(self, width, height, rate=60):
        """Gives the screen another size and refresh rate (Hz)."""
        name = f"{width}x{height}-{rate}"
        if name not in self._modes:
            self._modes.add(name)
            across, down = width + 280, height + 45  # with the blanks around the picture
            self.run("xrandr", "--newmode", name, across * down * rate / 1e6,
                     width, width + 88, width + 132, across,
                     height, height + 4, height + 9, down)
            self.run("xrandr", "--addmode", "screen", name)
        self.run("xrandr", "--output", "screen", "--mode", name)

    def click(self, x, y):
        self.run("xdotool", "mousemove", x, y, "click", 1)

    def key(self, *keys):
        self.run("xdotool", "key", *keys)

    def windows(self):
        """X ids of all programs' windows on the screen, the lowest first."""
        return self._listed("_NET_CLIENT_LIST_STACKING")

    def active_window(self):
        """The X id of the window in use, or None."""
        return next(iter(self._listed("_NET_ACTIVE_WINDOW")), None)

    def _listed(self, name):
        return re.findall(r"0x[0-9a-f]+", self.run("xprop", "-root", name))

    def _prepare(self):
        """Of another kind of desktop: its settings, before anything runs."""

    def _service(self, name, program):
        """Names a program that the bus starts when this name is asked for."""
        add_service(self.directory / "services", name, program)

    def _start(self, *command, report=None):
        """Starts a part of the desktop; with `report`, waits for the line that it writes there."""
        options = {"env": self.environment, "stdin": subprocess.DEVNULL,
                   "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        if report is None:
            self._processes.append(processes.spawn(command, **options))
            return None
        reading, writing = os.pipe()
        command = [*command, report.format(writing)] if "{" in report else [*command, report, writing]
        self._processes.append(processes.spawn(command, pass_fds=[writing], **options))
        os.close(writing)
        with os.fdopen(reading) as pipe:
            line = pipe.readline().strip()
        assert line, f"{command[0]} did not start"
        return line

    def _start_screen(self):
        number = self._start("Xvfb", "-screen", "0", "1920x1080x24", "-nolisten", "tcp", "-noreset",
                             report="-displayfd")
        self.environment["DISPLAY"] = ":" + number

    def _start_window_manager(self):
        self._start(*self._window_manager)
        processes.wait_for(lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
                           what="a window manager")

    def _start_bus(self):
        configuration = self.directory / "bus.conf"
        write_configuration(configuration, f"unix:dir={self.directory / 'run'}",
                            self.directory / "services")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start(
            "dbus-daemon", "--nofork", "--nopidfile", f"--config-file={configuration}",
            report="--print-address={}")

    def _start_accessibility(self):
        self._start(_ACCESSIBILITY_LAUNCHER, "--launch-immediately")
        self.reader = ScreenReader(self.environment["DBUS_SESSION_BUS_ADDRESS"])

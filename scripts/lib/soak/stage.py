"""The stage of a run: two screens, all that a desktop has, the program and its engine."""

import contextlib
import os
import pathlib
import signal
import subprocess
import sys

from rig import App, Bus, Dunst, TextSize, processes
from rig.app import built_programs
from rig.bus import write_configuration
from rig.screenreader import ScreenReader
from rig.twoscreens import TwoScreens

import machine

LOGIN = ("org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager")
NOTIFICATIONS = "org.freedesktop.Notifications"
PROGRAM = ("com.corvanthel.Vireon", "/com/corvanthel/Vireon", "org.freedesktop.Application")
WATCHER = "org.kde.StatusNotifierWatcher"
_DISK = 64 << 20  # bytes
_MOCK = ("/usr/bin/python3", "-B", "-m", "dbusmock")
_PATTERN = "[%{type}] %{time boot} %{message}"  # by the monotonic clock
_TRAY_HOST = pathlib.Path(sys.modules["rig"].__file__).parent / "trayhost.py"

# Reports of the simulated engine, by the letter of a run that brings them about. The program itself
# sends other letters.
LETTERS = {0: "A", 5: "B", -2: "C", -3: "D", -4: "E", -5: "F", -6: "G", -14: "H", -20: "I", -1: "J",
           2: "K"}
READY = 0
ENGINE = "\n".join([
    "on a|m|t status 2", "on a|m after 700 status 5", "on t after 700 status -4", "on 0 status -6",
    "answer v after 2500", "on W exit 3", "on X exit 0", "on Y signal SEGV", "on Z signal KILL",
    "on U status -1 then signal KILL",
    *(f"on {letter} status {code}" for code, letter in LETTERS.items()), ""])


class SoakDesktop(TwoScreens):
    """Whose accessibility bus does not depend on the session bus, which a run stops."""

    def _start_accessibility(self):
        configuration = self.directory / "second-bus.conf"
        write_configuration(configuration, f"unix:dir={self.directory / 'run'}",
                            self.directory / "no-services")
        second = self._start(
            "dbus-daemon", "--nofork", "--nopidfile", f"--config-file={configuration}",
            report="--print-address={}")
        self._processes.append(processes.spawn(
            ["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"],
            env={**self.environment, "DBUS_SESSION_BUS_ADDRESS": second},
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        self.reader = ScreenReader(second)
        self.environment["AT_SPI_BUS_ADDRESS"] = Bus(second).call(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")


class Stage:
    """All of it, in a directory that must be short.

    desktop, bus, app  as in the rig; the program has still to be started
    second             another copy of it, which finds the first one
    text_size          of the desktop
    disk, clock        what the program's files are on, and what it takes the time from; or None
    lacks              what there is not, by what an event calls it: the reason
    """

    def __init__(self, directory, separated, sanitized):
        self.lacks = {}
        self.separated = separated
        self.directory = directory
        place = directory / "desktop"
        place.mkdir()
        home = directory / "home"
        home.mkdir()
        self.disk = self._small_disk(home, separated)
        self.clock = self._clock(sanitized)
        self.desktop = SoakDesktop(place)
        self.bus = self.desktop.bus()
        self._start_services()
        self.app = self._install("copy", home, {})
        self.second = self._install("again", home, {"TMPDIR": str(self.app.temporary)})
        self.app.switch_on("sleep")
        # Out of reach of the events that take the program's own away.
        self._tool = os.path.join(built_programs(), "../simulator/vireon-sdk")
        self._tool_environment = {**self.app.environment(), "LD_PRELOAD": ""}
        self.set_engine()

    def set_engine(self, first=f"at 0 status -1\nat 400 status {READY}", rest=""):
        """What engines that start from now on do; without arguments, as usual."""
        self.app.scenario_path.write_text(f"{first}\n{ENGINE}{rest}")

    def order(self, letter):
        """Has the engine do what the letter of a run stands for."""
        subprocess.run([self._tool, letter], env=self._tool_environment, timeout=60,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def start_tray_host(self):
        self.desktop.start(*_MOCK, "--session", "--template", _TRAY_HOST)
        self.bus.wait_for_owner(WATCHER)

    def start_notifications(self):
        Dunst(self.desktop)

    def bus_pid(self):
        return self.bus.owner_pid("org.freedesktop.DBus")

    @contextlib.contextmanager
    def hung(self, pid):
        """Stops a process for a while."""
        os.kill(pid, signal.SIGSTOP)
        try:
            yield
        finally:
            os.kill(pid, signal.SIGCONT)

    @contextlib.contextmanager
    def without(self, program, way):
        """Takes a program of the engine away, in one of two ways, for a while."""
        path = self.app.programs / program
        aside = path.with_name(f"{program}.aside")
        path.rename(aside)
        if way == "not executable":
            path.write_bytes(b"no program")
            path.chmod(0o644)
        try:
            yield
        finally:
            aside.replace(path)

    def children(self):
        return processes.children_of(self.app.pid)

    def left_over(self):
        """What is still there of a program that has ended."""
        found = [f"process {name}" for name in self.app.programs_running()]
        if self.separated:
            found += [f"{kind} object" for kind in ("shm", "sem", "msg")
                      for _ in pathlib.Path(f"/proc/sysvipc/{kind}").read_text().splitlines()[1:]]
        return found

    def stop(self):
        for app in (self.second, self.app):
            app.cleanup()
        self.desktop.stop()
        if self.disk:
            self.disk.unmount()

    def _start_services(self):
        # One bus is both the session's and the system's here.
        self.desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = \
            self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.desktop.start(*_MOCK, "--template", "logind")
        self.bus.wait_for_owner(LOGIN[0])
        self.start_tray_host()
        self.start_notifications()
        self.text_size = TextSize(self.desktop)

    def _install(self, name, home, variables):
        clock = self.clock.environment if self.clock else {}
        return App(self.desktop, self.directory / name, home=home,
                   environment={"QT_MESSAGE_PATTERN": _PATTERN, **clock, **variables})

    def _small_disk(self, home, separated):
        if separated:
            return machine.SmallDisk(home, _DISK)
        self.lacks["disk"] = "only root can mount a file system"
        return None

    def _clock(self, sanitized):
        library = machine.Clock.library()
        if library and not sanitized:
            return machine.Clock(library, self.directory / "clock")
        self.lacks["clock"] = ("a sanitizer has to be the first library" if sanitized
                               else "libfaketime is not installed")
        return None

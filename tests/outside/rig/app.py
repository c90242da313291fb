"""The program under test: a copy of it in an application directory of its own."""

import os
import re
import shlex
import shutil
import signal
import subprocess

from . import log, processes
from .journal import read_journal

_CLICKABLE = ("push button", "menu item", "check box", "radio button")
_LEFT_AFTER = 15  # s after its end in which its engine and tools end
_PROGRAMS = ("vireon", "vireonctl", "../simulator/vireon-main", "../simulator/vireon-sdk")


def built_programs():
    """The directory of the programs to test: what CTest says, else the release build."""
    default = os.path.join(os.path.dirname(__file__), "../../../build/release/bin")
    return os.path.realpath(os.environ.get("VIREON_BIN", default))


class App:
    """One installation of the program and, once started, its process.

    directory    where everything of it goes: "app" (programs, configuration), "tmp", the logs
    home         its HOME; "Documents" is made in it
    environment  variables on top of the desktop's; None removes one
    scenario     text of the simulated engine's scenario
    """

    def __init__(self, desktop, directory, home=None, environment=None, scenario=None):
        self.desktop = desktop
        self.directory = directory
        self.home = home or directory / "home"
        self.programs = directory / "app"
        self.temporary = directory / "tmp"
        self.journal_path = directory / "journal"
        self.scenario_path = directory / "engine.scenario"
        self.process = None
        self._allowed = []
        self._environment = dict(environment or {})
        self._log_path = directory / "stderr"
        self._output_path = directory / "stdout"
        self._status_path = directory / "status"
        (self.home / "Documents").mkdir(parents=True, exist_ok=True)
        self.temporary.mkdir(parents=True, exist_ok=True)
        self._install(built_programs())
        if scenario is not None:
            self.scenario_path.write_text(scenario)

    # --- The program ------------------------------------------------------------------------

    def start(self, *arguments, by=()):
        """Starts it, by way of a command that becomes it; returns at once. Its log and output go on
        in the same files."""
        with open(self._log_path, "ab") as errors, open(self._output_path, "ab") as output:
            self.process = processes.spawn(
                [*by, self.programs / "vireon", *arguments], env=self.environment(),
                cwd=self.programs, stdin=subprocess.DEVNULL, stdout=output, stderr=errors)
        return self

    def switch_on(self, *lines):
        """What its administrator wrote into its file of switches, in place of the shipped one."""
        text = "\n".join(line if "=" in line else f"{line}=true" for line in lines)
        (self.programs / "config/integration.conf").write_text(text + "\n")
        return self

    def control(self, *words, environment=None, by=()):
        """What vireonctl answers to these words, once it has ended; run by way of a command."""
        return subprocess.run([str(word) for word in (*by, self.programs / "vireonctl", *words)],
                              env={**self.environment(), **(environment or {})},
                              capture_output=True, text=True, timeout=processes.PATIENCE)

    def start_control(self, *words):
        """vireonctl with these words, which goes on; its lines come into the file "controlled"."""
        with open(self.directory / "controlled", "wb") as output:
            return processes.spawn([self.programs / "vireonctl", *words], env=self.environment(),
                                   stdout=output)

    def controlled(self):
        """The lines of the vireonctl that was started last."""
        return (self.directory / "controlled").read_text().splitlines()

    def starter(self, launcher):
        """A script that starts it by this launcher, for others to run: they bring the desktop's
        variables. found() waits until they have."""
        shutil.copy2(launcher, self.programs)
        variables = [f"export {name}={shlex.quote(value)}"
                     for name, value in self._own_environment().items() if value is not None]
        path = self.directory / "starter"
        path.write_text("\n".join([
            "#!/bin/sh", *variables,
            f"{self.programs / os.path.basename(launcher)} >{self._output_path} 2>{self._log_path}",
            f"echo $? >{self._status_path}\n"]))
        path.chmod(0o755)
        return path

    def found(self):
        """Itself, once it runs by way of its starter."""
        (pid,) = processes.wait_for(lambda: self.programs_running().get("vireon"),
                                    what="the program, by its starter")
        self.process = processes.Foreign(pid, self._status_path)
        return self

    def environment(self):
        variables = {**self.desktop.environment, **self._own_environment()}
        return {name: value for name, value in variables.items() if value is not None}

    def _own_environment(self):
        """What it needs beside the desktop's variables; None for what it must not get."""
        variables = {
            "HOME": str(self.home),
            "TMPDIR": str(self.temporary),
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QUICK_BACKEND": "software",
            "LIBGL_ALWAYS_SOFTWARE": "1",
            "QT_MESSAGE_PATTERN": log.MESSAGE_PATTERN,
            "VIREON_SIM_JOURNAL": str(self.journal_path),
        }
        if self.scenario_path.exists():
            variables["VIREON_SIM_SCENARIO"] = str(self.scenario_path)
        variables.update(processes.sanitizer_options(self.directory))
        variables.update(self._environment)
        return variables

    @property
    def pid(self):
        return self.process.pid

    def is_running(self):
        return self.process is not None and self.process.poll() is None

    def wait(self, timeout=processes.PATIENCE):
        """Waits for its end; the exit status, negative for a signal."""
        return self.process.wait(timeout)

    def signal(self, number):
        os.kill(self.pid, number)

    def quit(self):
        """Asks it to leave, as the session does at its end; the exit status."""
        self.signal(signal.SIGTERM)
        return self.wait()

    def wait_for_end_of_all(self):
        """Waits until its engine and tools have gone, too: soon after the program itself."""
        processes.wait_for(lambda: not self.programs_running(), _LEFT_AFTER,
                           what=lambda: f"an end of {self.programs_running()}")

    def programs_running(self):
        """The ids of all running processes that are programs of this installation, by name."""
        found = {}
        for pid in processes.descendants_of(os.getpid()):
            try:
                path = os.readlink(f"/proc/{pid}/exe").removesuffix(" (deleted)")
            except OSError:
                continue
            if os.path.dirname(path) == str(self.programs):
                found.setdefault(os.path.basename(path), []).append(pid)
        return found

    def engine_pids(self):
        return self.programs_running().get("vireon-main", [])

    def engine_pid(self):
        """The id of the one running engine, once there is one."""
        return processes.wait_for(lambda: self.engine_pids(), what="a running engine")[0]

    # --- Its window -------------------------------------------------------------------------

    def items(self):
        """All visible items, empty when there is no window."""
        return self.desktop.reader.items(self.pid)

    def texts(self):
        """The visible texts."""
        return [item.name for item in self.items()
                if item.name and item.role in ("label", "static", "text", "heading", "notification")]

    def shows(self, text):
        """Whether one of the visible texts contains this."""
        return any(text in shown for shown in self.texts())

    def wait_until_shows(self, text, timeout=processes.PATIENCE):
        def seen():
            assert self.is_running(), f"ended with {self.process.returncode} before {text!r}"
            return self.shows(text)
        processes.wait_for(seen, timeout, what=lambda: f"the text {text!r}; shown: {self.texts()}")

    def clickable(self, name):
        """The visible button or menu entry of this name, once it has come to rest, or None."""
        def found():
            return next((item for item in self.items()
                         if item.name == name and item.role in _CLICKABLE), None)
        first = found()
        return first if first == found() else None

    def click(self, name):
        """Clicks the button or menu entry of this name with the mouse."""
        self.desktop.click(*self.wait_for_control(name).centre)

    def act(self, name, action="Press"):
        """Has the button or menu entry of this name do it, as a screen reader can."""
        self.desktop.reader.act(self.wait_for_control(name), action)

    def key(self, *keys):
        """Presses keys, once its window has the keyboard."""
        processes.wait_for(self._is_active, what="its window to be the active one")
        self.desktop.key(*keys)

    def controls(self):
        """Its visible controls, without the menu bar's."""
        return [item for item in self.items()
                if item.role in _CLICKABLE and item.role != "menu item"]

    def wait_for_control(self, name):
        """The button or menu entry of this name, once it has come to rest."""
        return processes.wait_for(lambda: self.clickable(name), what=f"a control {name!r}")

    def focus(self):
        """The names of the visible controls and menu entries that have the keyboard."""
        return [item.name for item in self.items()
                if item.focused and item.name and item.role in _CLICKABLE]

    def is_in_menus(self):
        """Whether a menu or an entry of one has the keyboard."""
        return any(item.focused and item.role == "menu item" for item in self.items())

    def focused(self):
        """The name of the control that has the keyboard, or None."""
        names = self.focus()
        return names[0] if names else None

    def has_focus(self, name):
        return name in self.focus()

    def windows(self):
        """X ids of its windows on the screen, the lowest first."""
        return [window for window in self.desktop.windows()
                if f"= {self.pid}\n" in self.desktop.run("xprop", "-id", window, "_NET_WM_PID")]

    def hide(self):
        """Hides the window by the menu."""
        self.click("File")
        self.click("Hide")
        self.wait_until_hidden()

    def wait_until_hidden(self):
        processes.wait_for(lambda: not self.windows(), what="a hidden window")

    def place(self):
        """Where its topmost window is, without the frame: (x, y, width, height) in px."""
        window = processes.wait_for(self.windows, what="a window")[-1]
        told = self.desktop.run("xwininfo", "-id", window)
        return tuple(int(re.search(rf"{name}: +(-?\d+)", told).group(1)) for name in
                     ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def _is_active(self):
        """Whether one of its windows is the active one."""
        return self.desktop.active_window() in self.windows()

    def screenshot(self, path):
        """Saves a picture of its topmost window with the frame around it."""
        window = processes.wait_for(self.windows, what="a window")[-1]
        self.desktop.run("import", "-window", window, "-frame", path)

    # --- What it left -----------------------------------------------------------------------

    @property
    def data(self):
        """The data directory, which the program and the engine share."""
        return self.home / "Documents" / "Vireon"

    def setting(self, line):
        """A line of the user's settings, from 0, or None."""
        path = self.data / "user.ini"
        lines = path.read_text().splitlines() if path.exists() else []
        return lines[line] if line < len(lines) else None

    def files(self):
        return sorted(entry.name for entry in self.data.iterdir())

    def log(self):
        """The lines of its message log, each with its kind in brackets."""
        return self._log_path.read_text(errors="replace").splitlines()

    def log_count(self, pattern):
        return sum(bool(re.search(pattern, line)) for line in self.log())

    def output(self):
        """What it printed on standard output."""
        return self._output_path.read_text(errors="replace")

    def journal(self, kind=None):
        """What the engine wrote down: all events, the tool's too, or the engine's of one kind."""
        events = read_journal(self.journal_path)
        return [event for event in events
                if kind is None or (event.who == "engine" and event.kind == kind)]

    def letters(self, start=None):
        """The letters that engines took: all, or those of one start (from 1)."""
        return [event.letter for event in self.journal("letter") if start in (None, event.start)]

    def wait_for_ready_engine(self):
        """Waits until the engine that runs has reported to be ready, and the window says so; after
        a waking up it does so before."""
        engine = self.engine_pid()
        processes.wait_for(lambda: any(event.pid == engine and event.fields["result"] == "0"
                                       for event in self.journal("status")), what="a ready engine")
        self.wait_until_shows("Started and ready")

    def engine_signals(self):
        """The signals that asked engines to end."""
        return [event.fields["signal"] for event in self.requests_to_end()]

    def requests_to_end(self):
        """The journal's entries of these. In the program's end the kernel asks its children once
        for each thread that passes them on: a thread of the thread sanitizer's own, which nothing
        ends earlier, makes that twice."""
        events = self.journal("asked")
        if "TSAN_OPTIONS" not in os.environ:
            return events
        return list({event.pid: event for event in reversed(events)}.values())[::-1]

    def engine_ends(self):
        """How engines ended: their exit codes, and the names of signals."""
        return [event.fields.get("code") or event.fields["signal"] for event in self.journal("exit")]

    def engines_killed(self):
        """How many of the engines that ran have left without a word."""
        return len(self.journal("start")) - len(self.journal("exit"))

    def allow(self, pattern):
        """Expects lines like this on its standard error: they are no faults then."""
        self._allowed.append(re.compile(pattern))

    def faults(self):
        """Warnings nobody allowed and sanitizer reports: what fails a test by itself."""
        found = []
        if self._log_path.exists():
            found += log.unexpected(self.log(), self._allowed)
        for report in sorted(self.directory.glob("sanitizer.*")):
            found += [f"{report.name}:\n{report.read_text(errors='replace')[:6000]}"]
        return found

    def cleanup(self):
        """Ends whatever runs of it."""
        if self.is_running():
            processes.end(self.pid)
            self.wait()
        for pids in self.programs_running().values():
            for pid in pids:
                processes.end(pid)

    def _install(self, built):
        self.programs.mkdir(parents=True)
        for name in _PROGRAMS:
            shutil.copy2(os.path.join(built, name), self.programs)
        shutil.copytree(os.path.join(built, "config"), self.programs / "config")

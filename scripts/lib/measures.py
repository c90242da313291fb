"""What scripts/bench measures: each function plays the program on a screen of its own and gives the
rows of the table."""

import contextlib
import dataclasses
import os
import pathlib
import random
import re
import shutil
import signal
import statistics
import subprocess
import sys
import time

from eyes import Eyes, now
from rig import Desktop, stage, wait_for

PLAIN = {  # as a user has it, without what the tests need
    "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": None,
    "QT_QUICK_BACKEND": None,
}
READY = "at 0 status 0\n"
SETTLED = 5.0  # s after its start at which the memory is looked at
HAND_OVER = 310  # ms: a poll of the reader and one look of who waits for it
QUIT_GRACE = 800  # ms
POLLS = 1000 / 300 + 1  # per second: the status file and the screens


@dataclasses.dataclass
class Row:
    """A line of the table. `goal` is the limit of the median as `judged` takes it: its ratio to the
    baseline's, its difference from it, or itself."""

    name: str
    unit: str
    values: list
    baseline: str = "–"
    base_values: list = dataclasses.field(default_factory=list)
    goal: float = None
    judged: str = "ratio"

    def verdict(self):
        """The figure that the goal is about."""
        median = statistics.median(self.values)
        if self.judged == "ratio":
            return median / statistics.median(self.base_values)
        if self.judged == "difference":
            return median - statistics.median(self.base_values)
        if self.judged == "maximum":
            return max(self.values)
        if self.judged == "99th":
            return percentile(self.values, 99)
        return median


def percentile(values, percent):
    ranked = sorted(values)
    return ranked[min(len(ranked) - 1, len(ranked) * percent // 100)]


# --- Where it is played -----------------------------------------------------------------------


class Watched(Desktop):
    """A screen with window manager and session bus, and eyes on it. No screen reader runs."""

    size, density = "1920x1080", None

    def _start_screen(self):
        number = self._start("Xvfb", "-screen", "0", f"{self.size}x24", "-nolisten", "tcp",
                             "-noreset", report="-displayfd")
        self.environment["DISPLAY"] = ":" + number
        if self.density:
            self.environment["QT_FONT_DPI"] = self.density

    def _start_accessibility(self):
        pass

    def _start_window_manager(self):
        super()._start_window_manager()
        self.eyes = Eyes(self.environment["DISPLAY"])

    def stop(self):
        super().stop()
        if hasattr(self, "eyes"):
            self.eyes.close()


class FourK(Watched):
    size = "4096x2160"


class Dense(Watched):
    """192 dpi."""

    density = "192"


class EightScreens(Watched):
    """Eight screens of 1024x768 side by side, on Xorg's driver without hardware."""

    _configuration = """
Section "ServerFlags"
    Option "AutoAddDevices" "false"
    Option "AutoAddGPU" "false"
EndSection
Section "Device"
    Identifier "device"
    Driver "dummy"
    VideoRam 256000
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
    Modeline "small" 65 1024 1048 1184 1344 768 771 777 806
EndSection
Section "Screen"
    Identifier "screen"
    Device "device"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "small"
        Virtual 8192 1024
    EndSubSection
EndSection
"""

    def _start_screen(self):
        path = self.directory / "screens.conf"
        path.write_text(self._configuration)
        number = self._start("Xorg", "-noreset", "-novtswitch", "-sharevts", "-nolisten", "tcp",
                             "-config", path, "-logfile", self.directory / "screens.log",
                             report="-displayfd")
        self.environment["DISPLAY"] = ":" + number
        self.run("xrandr", "--output", "DUMMY0", "--primary", "--mode", "small")
        for number in range(1, 8):
            output = f"DUMMY{number}"
            self.run("xrandr", "--addmode", output, "small")
            self.run("xrandr", "--output", output, "--mode", "small",
                     "--right-of", f"DUMMY{number - 1}")
        assert self.run("xrandr", "--query").count(" connected") == 8


class Loaded(Watched):
    """Two busy loops run meanwhile."""

    def _prepare(self):
        for _ in range(2):
            self._start("python3", "-c", "while True: pass")


@dataclasses.dataclass
class Place:
    """The build that is measured, and the desktop on which."""

    build: pathlib.Path
    desktop: type = Watched
    preloaded: str = None

    def tool(self, name):
        return self.build / "bin" / name

    @contextlib.contextmanager
    def program(self, scenario=READY, environment=None, stand_ins=()):
        """An installation; these of its programs are replaced by bench-stamp."""
        variables = {**PLAIN, **(environment or {})}
        with stage(scenario, kind=self.desktop, environment=variables) as app:
            if self.preloaded:
                app._environment["LD_PRELOAD"] = str(self.build / "bench" / self.preloaded)
            for name in stand_ins:
                shutil.copy2(self.tool("bench-stamp"), app.programs / name)
            yield app


class Running:
    """A process that was just executed."""

    def __init__(self, command, environment, log):
        descriptor = os.open(log, os.O_WRONLY | os.O_CREAT | os.O_APPEND, 0o600)
        redirections = [(os.POSIX_SPAWN_DUP2, descriptor, number) for number in (1, 2)]
        words = [str(word) for word in command]
        self.begin = now()
        self.pid = os.posix_spawn(words[0], words, environment, file_actions=redirections)
        os.close(descriptor)
        self._status = None

    def poll(self):
        if self._status is None:
            pid, status = os.waitpid(self.pid, os.WNOHANG)
            self._status = status if pid else None
        return self._status

    def wait(self, timeout=60):
        wait_for(lambda: self.poll() is not None, timeout, what=f"an end of process {self.pid}",
                 interval=0.005)

    def end(self):
        if self.poll() is None:
            os.kill(self.pid, signal.SIGTERM)
            self.wait()


def begin(app, command=None):
    """Starts the program, or another one in its place; it and its view, once it is there."""
    eyes = app.desktop.eyes
    eyes.forget()
    running = Running(command or [app.programs / "vireon"], app.environment(),
                      app.directory / "stderr")
    if not command:
        app.process = running
    found = eyes.wait_for_window()
    if not found:
        # The eyes were too late for its only drawing.
        print("A start was not seen, and is made again.", file=sys.stderr)
        running.end()
        return begin(app, command)
    return (running, *found)


def tasks(pid):
    return list(pathlib.Path(f"/proc/{pid}/task").iterdir())


def processor_time(pid):
    """ms, of all its threads that live."""
    total = 0
    for task in tasks(pid):
        with contextlib.suppress(FileNotFoundError, ProcessLookupError):
            total += int((task / "schedstat").read_text().split()[0])
    return total / 1e6


def wake_ups(pid):
    total = 0
    for task in tasks(pid):
        with contextlib.suppress(FileNotFoundError, ProcessLookupError):
            text = (task / "status").read_text()
            total += int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", text, re.MULTILINE)[1])
    return total


def memory(pid):
    """Its proportional share, MiB."""
    text = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return int(re.search(r"^Pss:\s+(\d+)", text, re.MULTILINE)[1]) / 1024


def stamps(path, name):
    """What stand-ins of this name have left: (process id, ms)."""
    lines = path.read_text().splitlines() if path.exists() else []
    return [(int(pid), int(ns) / 1e6) for who, pid, ns in map(str.split, lines) if who == name]


def next_stamp(path, name, before):
    return wait_for(lambda: stamps(path, name)[before:], what=f"the main() of {name}",
                    interval=0.002)[0]


# --- Start and memory -------------------------------------------------------------------------


def starts(place, rounds, memory_rounds):
    """The program and the two floors in turn; the first round only warms up."""
    kinds = {"program": None, "GL": [place.tool("bench-floor"), "gl"],
             "software": [place.tool("bench-floor"), "software"]}
    picture, processor, pss = ({kind: [] for kind in kinds} for _ in range(3))
    with place.program() as app:
        for number in range(rounds + 1):
            for kind, command in kinds.items():
                running, _, moment = begin(app, command)
                busy = processor_time(running.pid)
                if number:
                    picture[kind].append(moment - running.begin)
                    processor[kind].append(busy)
                if 0 < number <= memory_rounds:
                    time.sleep(max(0.0, SETTLED - (now() - running.begin) / 1000))
                    pss[kind].append(memory(running.pid))
                running.end()
    against = {"GL": ("bench-floor, GL", 1.0), "software": ("bench-floor, software", 1.1)}
    rows = [Row("exec to window painted", "ms", picture["program"], name, picture[kind], goal)
            for kind, (name, goal) in against.items()]
    rows += [Row("processor time until then", "ms", processor["program"], name, processor[kind])
             for kind, (name, _) in against.items()]
    rows += [Row("PSS 5 s after the start", "MiB", pss["program"], "bench-floor, software",
                 pss["software"], 1.0),
             Row("the same", "MiB", pss["program"], "bench-floor, GL", pss["GL"])]
    return rows


def open_everything(app, view):
    """Each panel, warning, menu and box once, by the keyboard; the engine's firmware is old."""
    eyes = app.desktop.eyes
    wait_for(app._is_active, what="the keyboard")
    for key in 5 * ["Tab"] + ["space", "Escape"]:
        eyes.changes(view, key)  # the settings
    for _ in range(2):  # the input, the advice
        eyes.changes(view, "Shift_L", "Tab")
        eyes.changes(view, "space")
        eyes.changes(view, "Escape")
    for key in ("F10", "Right", "Right"):
        eyes.opens(key)
    for key in ("Escape", "Escape"):
        eyes.press(key)
        time.sleep(0.3)
    eyes.opens("F10")
    eyes.press("Down")
    eyes.press("Down")
    eyes.opens("Return")  # the box of the firmware
    eyes.press("Escape")
    app.desktop.set_mode(1280, 1024, 50)
    wait_for(lambda: app.log_count("show freq warning popup"), what="the warning of the rate")
    wait_for(lambda: app.log_count("Ratio is not 16:9"), what="the warning of the ratio")
    for _ in range(2):
        eyes.changes(view, "Escape")
    app.desktop.set_mode(1920, 1080)
    time.sleep(2)


def panels(place, rounds):
    before, after = [], []
    for _ in range(rounds):
        with place.program("at 0 firmware 1\n" + READY) as app:
            running, view, _ = begin(app)
            app.desktop.eyes.follow(view)
            wait_for(lambda: app.log_count("status 0"), what="the engine")
            time.sleep(max(0.0, SETTLED - (now() - running.begin) / 1000))
            before.append(memory(running.pid))
            open_everything(app, view)
            after.append(memory(running.pid))
            running.end()
    return [Row("PSS after all panels, warnings, menus and boxes", "MiB", after, "PSS before", before,
                6.0, "difference")]


def idle(place, seconds):
    busy, woken, parts = [], [], 4
    with place.program() as app:
        running, _, _ = begin(app)
        wait_for(lambda: app.log_count("status 0"), what="the engine")
        time.sleep(4)
        for _ in range(parts):
            before = now(), processor_time(running.pid), wake_ups(running.pid)
            time.sleep(seconds / parts)
            after = now(), processor_time(running.pid), wake_ups(running.pid)
            passed = (after[0] - before[0]) / 1000
            busy.append((after[1] - before[1]) / passed)
            woken.append((after[2] - before[2]) / passed)
        running.end()
    return [Row("processor time while idle", "ms/s", busy, goal=0.35, judged="median"),
            Row("wake-ups while idle", "1/s", woken, "the two polls", [POLLS], 1.8)]


# --- How soon it answers ----------------------------------------------------------------------


def write_status(app, code):
    """As an engine does: a new file in the place of the old one."""
    path = app.data / "pensettings.ini"
    fresh = path.with_suffix(".new")
    fresh.write_text(f"Result={code}\nFirmware=2\n")
    fresh.rename(path)
    return now()


def status_changes(place, count):
    waited = []
    with place.program("unwritten\n") as app:
        running, view, _ = begin(app)
        eyes = app.desktop.eyes
        eyes.follow(view)
        write_status(app, 0)
        wait_for(lambda: app.log_count("status 0"), what="the first status")
        for number in range(count):
            eyes.expect(view)
            time.sleep(random.uniform(0, 0.3))
            moment = write_status(app, -3 - number % 2)
            waited.append(eyes.wait_for_drawing(view) - moment)
        running.end()
    uniform = [300 * (number + 0.5) / count for number in range(count)]
    name = "status written to text in the view"
    return [Row(name, "ms", waited, "uniform 0 to 300 ms", uniform, 160, "median"),
            Row(name + ", 99th percentile", "ms", waited, "uniform 0 to 300 ms", uniform, 310,
                "99th")]


def commands(place, count):
    """The button "Correct Offset", by the keyboard, and the same tool by itself in turn."""
    pressed, bare = [], []
    with place.program(stand_ins=["vireon-sdk"]) as app:
        path = app.directory / "stamps"
        app._environment["VIREON_BENCH_STAMPS"] = str(path)
        running, view, _ = begin(app)
        eyes = app.desktop.eyes
        eyes.follow(view)
        wait_for(lambda: app.log_count("status 0"), what="the engine")
        wait_for(app._is_active, what="the keyboard")
        for key in 5 * ["Tab"] + ["space"] + 4 * ["Tab"]:
            eyes.changes(view, key)
        for _ in range(count):
            for values, act in ((pressed, lambda: eyes.press("space")),
                                (bare, lambda: spawn_tool(app))):
                before = len(stamps(path, "vireon-sdk"))
                moment = act()
                values.append(next_stamp(path, "vireon-sdk", before)[1] - moment)
                time.sleep(0.15)
        running.end()
    return [Row("button pressed to the tool's main()", "ms", pressed, "bare posix_spawn", bare, 2.0)]


def spawn_tool(app):
    tool = Running([app.programs / "vireon-sdk", "7"], app.environment(), os.devnull)
    tool.wait()
    return tool.begin


def hand_overs(app):
    """How long each took, ms, by the log, whose lines begin with the time in s."""
    lines = [line.split(None, 1) for line in app.log()]
    found, since = [], None
    for moment, text in (line for line in lines if len(line) == 2):
        if text.startswith("vireon-main crashed"):
            since = float(moment)
        elif since is not None and text.startswith("firmware version"):
            found.append((float(moment) - since) * 1000)
            since = None
    return found


TIMED_LOG = {"QT_MESSAGE_PATTERN": "%{time process} %{message}"}


def restarts(place, count):
    """The engine is killed; 30 times at most in a run, after which it would be given up."""
    taken, path = [], None
    with place.program(environment=TIMED_LOG, stand_ins=["vireon-main"]) as app:
        path = app.directory / "stamps"
        app._environment["VIREON_BENCH_STAMPS"] = str(path)
        running, _, _ = begin(app)
        for number in range(min(count, 30)):
            pid, _ = next_stamp(path, "vireon-main", number)
            time.sleep(random.uniform(0.2, 0.5))
            moment = now()
            os.kill(pid, signal.SIGKILL)
            taken.append(next_stamp(path, "vireon-main", number + 1)[1] - moment)
        waited = hand_overs(app)
        running.end()
    over = [whole - wait for whole, wait in zip(taken, waited)]
    return [Row("engine's exit to the next one's main()", "ms", taken, "the reader's hand-over", waited),
            Row("of it, over the hand-over", "ms", over, goal=10, judged="median")]


# --- How long it does not answer --------------------------------------------------------------


class Phases:
    """What the program did when, and the blocks of its GUI thread meanwhile."""

    def __init__(self, path):
        self._path = path
        self._spans = {}

    @contextlib.contextmanager
    def span(self, name, since=None):
        start = since or now()
        yield
        self._spans.setdefault(name, []).append((start, now()))

    def longest(self, name):
        """Of each span: the longest block that began in it, by the clock and by its own time, ms."""
        lines = self._path.read_text().splitlines()
        blocks = [[int(word) / 1e6 for word in line.split()] for line in lines]
        return [max(((end - start, own) for start, end, own in blocks if since <= start < until),
                    default=(0.0, 0.0)) for since, until in self._spans[name]]


def play_phases(app, phases, path):
    with contextlib.ExitStack() as stack:
        running, view, moment = begin(app)
        stack.enter_context(phases.span("start-up after the first picture", moment))
        time.sleep(3)
    for number in range(5):
        pid, _ = next_stamp(path, "vireon-main", number)
        time.sleep(0.4)
        with phases.span("restart"):
            os.kill(pid, signal.SIGKILL)
            next_stamp(path, "vireon-main", number + 1)
    for code in (0, -3, -4, -5, -3):
        with phases.span("status change"):
            write_status(app, code)
            time.sleep(0.7)
    with phases.span("message"):
        write_status(app, -6)
        time.sleep(1)
    wait_for(app._is_active, what="the keyboard")
    with phases.span("close"):
        app.desktop.eyes.press("Control_L", "w")
        time.sleep(1)
    with phases.span("quit"):
        running.end()


def blocks(place, rounds):
    names = ("start-up after the first picture", "restart", "status change", "close", "message",
             "quit")
    found = {name: [] for name in names}
    for _ in range(rounds):
        with place.program("unwritten\n", TIMED_LOG, ["vireon-main"]) as app:
            path, report = app.directory / "stamps", app.directory / "blocks"
            app._environment.update({"VIREON_BENCH_STAMPS": str(path),
                                     "VIREON_BENCH_BLOCKS": str(report),
                                     "LD_PRELOAD": str(place.build / "bench/libbench-blocks.so")})
            phases = Phases(report)
            play_phases(app, phases, path)
            granted = {"restart": hand_overs(app), "quit": [QUIT_GRACE]}
            for name in names:
                longest = phases.longest(name)
                allowed = granted.get(name, [0] * len(longest))
                found[name] += [(block - grant, own) for (block, own), grant in zip(longest, allowed)]
    beyond = {"restart": ", beyond the hand-over", "quit": f", beyond {QUIT_GRACE} ms"}
    rows = []
    for name, pairs in found.items():
        rows.append(Row(f"GUI thread's longest block: {name}{beyond.get(name, '')}", "ms",
                        [block for block, _ in pairs], "its own processor time",
                        [own for _, own in pairs], 10, "median"))
    return rows


# --- The rest ---------------------------------------------------------------------------------


def mailbox(place, count):
    told = subprocess.run([place.tool("bench-mailbox"), str(count)], check=True, text=True,
                          capture_output=True, timeout=600).stdout
    late = float(re.search(r"99th percentile ([\d.]+) ms", told)[1])
    return [Row("mailbox: command written to signal, 99th percentile", "ms", [late], "the poll", [60],
                65, "median")]


def size(place):
    stripped = place.build / "bench/vireon.stripped"
    subprocess.run(["strip", "-o", stripped, place.tool("vireon")], check=True)
    found = stripped.stat().st_size / 2**20
    stripped.unlink()
    return [Row("the executable, stripped", "MiB", [found])]

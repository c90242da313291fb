"""Processes: started, looked at and ended by their id, whatever becomes of the test."""

import ctypes
import os
import pathlib
import signal
import subprocess
import time

_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36
_PTRACE_SEIZE = 0x4206
_libc = ctypes.CDLL(None, use_errno=True)

# s; long enough for a sanitizer's build on a busy machine. Waiting ends when there is no need for it.
PATIENCE = 90.0


def adopt_orphans():
    """What a killed program leaves running becomes a child of this process, where it is found."""
    _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def _die_with_parent():
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)


def spawn(command, **options):
    """Popen, of a process that does not outlive this one."""
    return subprocess.Popen([str(word) for word in command], preexec_fn=_die_with_parent, **options)


def _stat(pid):
    """State, parent, ... of a process (the fields after its name), or None."""
    try:
        return pathlib.Path(f"/proc/{pid}/stat").read_text(errors="replace").rpartition(")")[2].split()
    except (FileNotFoundError, ProcessLookupError):
        return None


def is_running(pid):
    """Whether the process exists and is more than an exit status nobody fetched yet."""
    fields = _stat(pid)
    return fields is not None and fields[0] not in "ZX"


def children_of(pid):
    """The ids of the running children of a process."""
    found = []
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            fields = _stat(int(entry))
            if fields and fields[0] not in "ZX" and int(fields[1]) == pid:
                found.append(int(entry))
    return found


def descendants_of(pid):
    found = []
    for child in children_of(pid):
        found += [child] + descendants_of(child)
    return found


def name_of(pid):
    try:
        return os.path.basename(os.readlink(f"/proc/{pid}/exe"))
    except OSError:
        return "?"


def maps_of(pid):
    """The names of the files that are mapped into a process."""
    lines = pathlib.Path(f"/proc/{pid}/maps").read_text(errors="replace").splitlines()
    return {os.path.basename(line.split()[-1]) for line in lines if "/" in line}


def memory_of(pid):
    """Resident memory in bytes."""
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith("VmRSS:"):
            return int(line.split()[1]) * 1024
    raise AssertionError(f"no memory figure for process {pid}")


def end(pid):
    """Ends a process: by SIGTERM or, after 10 s, by SIGKILL."""
    for number in (signal.SIGTERM, signal.SIGKILL):
        try:
            os.kill(pid, number)
        except ProcessLookupError:
            return
        deadline = time.monotonic() + 10.0
        while is_running(pid) and time.monotonic() < deadline:
            time.sleep(0.02)


class Traced:
    """A process of others whose end comes to them when the block is left, and no sooner."""

    def __init__(self, pid):
        self._pid = pid

    def __enter__(self):
        if _libc.ptrace(ctypes.c_long(_PTRACE_SEIZE), self._pid, None, None) != 0:
            raise OSError(ctypes.get_errno(), f"process {self._pid} cannot be traced")
        return self

    def __exit__(self, *_):
        os.waitpid(self._pid, 0)

    def wait_for_end(self):
        wait_for(lambda: not is_running(self._pid), what=f"an end of process {self._pid}")


class Foreign:
    """A running process that somebody else started, with the part of Popen that is of use.

    status_path  where its starter writes its exit status, the shell's way
    """

    def __init__(self, pid, status_path):
        self.pid = pid
        self.returncode = None
        self._status_path = status_path

    def poll(self):
        if self.returncode is None and not is_running(self.pid) and self._status_path.exists():
            text = self._status_path.read_text()
            self.returncode = int(text) if text.endswith("\n") else None
        return self.returncode

    def wait(self, timeout):
        wait_for(lambda: self.poll() is not None, timeout, what=f"an end of process {self.pid}")
        return self.returncode


def sanitizer_options(directory):
    """The sanitizers' own variables, with their reports sent to files in this directory."""
    options = {}
    for name in ("ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"):
        given = os.environ.get(name)
        place = f"log_path='{directory / 'sanitizer'}'"
        options[name] = f"{given}:{place}" if given else place
    return options


def wait_for(condition, timeout=PATIENCE, what=None, interval=0.03):
    """The first true result of condition(); fails when the time is up."""
    deadline = time.monotonic() + timeout
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > deadline:
            what = what() if callable(what) else what
            raise AssertionError(f"not within {timeout} s: {what or condition}; last: {result!r}")
        time.sleep(interval)

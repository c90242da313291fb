"""What a run reads while the program runs: files that grow, and the status it has to show."""

import re

from rig.journal import parse_journal

# What the window says of each status that a run brings about.
_PROBLEM = "A problem occured, please wait..."
_SAID = {
    -1: "Not connected to Vireon",
    -2: "Light disturbance detected.",
    -3: "Calibration aborted.",
    -4: "Calibration failed, please try again.",
    -5: "Last action failed please try again.",
    -6: "Started, Vireon not calibrated.",
    -14: "Started, Vireon not calibrated.",
    -12: "A problem occured, please restart Vireon.",
    2: "Loading...",
}
_ALL = {*_SAID.values(), _PROBLEM, "Started and ready", "Starting up..."}
_INTEGER = re.compile(r"[+-]?\d+")
_LIMIT = 1 << 31


def said(code):
    """The text that stands for a status."""
    return _SAID.get(code, _PROBLEM if code < 0 else "Started and ready")


def statuses_in(texts):
    """Which of the texts for a status are among those shown."""
    return {one for one in _ALL for shown in texts if one in shown}


def read_status(path, before):
    """What a reader that keeps to the contract takes from the status file; what it knew before when
    there is nothing to be taken."""
    try:
        with open(path, "rb") as file:
            line = file.readline(1 << 16).decode(errors="replace").strip()
    except OSError:
        return before
    text = line.replace("Result=", "", 1)
    if not _INTEGER.fullmatch(text) or len(text) > 11 or not -_LIMIT <= int(text) < _LIMIT:
        return before
    return int(text)


def waited_by(pid):
    """For how long a process's first thread has been ready to run and waited for a processor since its
    start, in s; 0 for one that has gone."""
    try:
        with open(f"/proc/{pid}/task/{pid}/schedstat", encoding="ascii") as file:
            return int(file.read().split()[1]) / 1e9
    except OSError:
        return 0.0


class Growing:
    """The whole lines of a file that only grows, each of them once."""

    def __init__(self, path):
        self._path = path
        self._at = 0

    def new(self):
        if not self._path.exists():
            return ""
        with open(self._path, "rb") as file:
            file.seek(self._at)
            text = file.read()
        whole = text[:text.rfind(b"\n") + 1]
        self._at += len(whole)
        return whole.decode(errors="replace")


class Journal:
    """The engine's journal as far as a run asks about it.

    starts   how many engines there were
    letters  what engines took of the program: not what the run itself ordered
    reports  how many reports were written
    status   the last of them, of the engine that runs; or None
    """

    def __init__(self, path, own):
        self._growing = Growing(path)
        self._own = own
        self.starts = self.reports = 0
        self.letters = []
        self.status = None

    def read(self):
        """Takes in what is new; itself."""
        for event in parse_journal(self._growing.new()):
            if event.who != "engine":
                continue
            if event.kind == "start":
                self.starts, self.status = self.starts + 1, None
            elif event.kind == "letter" and event.letter not in self._own:
                self.letters.append(event.letter)
            elif event.kind == "status" and "result" in event.fields:
                self.reports += 1
                self.status = int(event.fields["result"])
        return self

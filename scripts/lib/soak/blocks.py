"""How long the program's GUI thread was held up, as ping.py measures it."""

import dataclasses
import pathlib
import re
import subprocess
import sys

from rig import processes

_PROGRAM = pathlib.Path(__file__).with_name("ping.py")
THRESHOLD = 100  # ms
HAND_OVER = 0.310  # s between two readers of the status file, before an engine is started
_START = re.compile(r"^\[debug\] +(\d+\.\d+) starting ", re.M)
_NEAR = 0.05  # s between what the log and the ping call the same moment


@dataclasses.dataclass(frozen=True)
class Block:
    """From when to when, in s of the monotonic clock, and the part of it that is the program's."""

    begin: float
    end: float
    net: float

    def is_hand_over(self, starts):
        """Whether an engine was started in it, and it is no longer than that may take."""
        return (self.net <= HAND_OVER + THRESHOLD / 1000
                and any(self.begin - _NEAR < start < self.end + _NEAR for start in starts))


class Pings:
    """The measuring process of one life of the program."""

    def __init__(self, app, path):
        self._path = path
        with open(path, "wb") as output:
            self._process = processes.spawn(
                [sys.executable, "-B", _PROGRAM, app.pid,
                 app.desktop.environment["AT_SPI_BUS_ADDRESS"], THRESHOLD], stdin=subprocess.DEVNULL, stdout=output)

    def stop(self):
        processes.end(self._process.pid)
        self._process.wait()

    def result(self):
        """How many there were, and the blocks."""
        lines = [line.split() for line in self._path.read_text().splitlines()]
        count = sum(int(words[1]) for words in lines if words[0] == "pings")
        blocks = [Block(*map(float, words)) for words in lines if words[0] != "pings"]
        return count, blocks


def engine_starts(log):
    """When engines were started, by the program's log."""
    return [float(found) for found in _START.findall(log)]

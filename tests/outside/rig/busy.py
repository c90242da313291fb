"""Another program's window, with which the user is at work."""

import os
import re

from .processes import wait_for

_PROGRAM = os.path.join(os.path.dirname(__file__), "busywindow.py")
_ENTRY = 100, 15  # a point in it, from the window's upper left corner
_SIZE = 1400, 900


class Busy:
    """A large window in the middle of a desktop, with an entry to type into."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._process = desktop.start("/usr/bin/python3", "-B", _PROGRAM, *_SIZE)
        self._window = wait_for(self._found, what="the other window")

    def use(self):
        """Brings it up and types into it: now it is the one in use."""
        typed = self._title()
        self._desktop.run("wmctrl", "-i", "-a", self._window)
        wait_for(lambda: self._desktop.active_window() == self._window, what="the other window")
        place = self._desktop.run("xwininfo", "-id", self._window)
        x, y = (int(re.search(rf"Absolute upper-left {axis}:\s+(-?\d+)", place).group(1))
                for axis in "XY")
        self._desktop.click(x + _ENTRY[0], y + _ENTRY[1])
        wait_for(lambda: self._desktop.key("a") or self._title() != typed,
                 what=lambda: f"a letter after {typed!r}", interval=0.3)

    def covers(self, window):
        """Whether it lies above this window."""
        stack = self._desktop.windows()
        return stack.index(self._window) > stack.index(window)

    def close(self):
        """Takes it away again."""
        self._process.kill()
        wait_for(lambda: self._window not in self._desktop.windows(), what="it to be gone")

    def _found(self):
        lines = self._desktop.run("wmctrl", "-l").splitlines()
        return next((hex(int(line.split()[0], 16)) for line in lines if " busy:" in line), None)

    def _title(self):
        shown = self._desktop.run("xprop", "-id", self._window, "WM_NAME")
        return shown.partition('"')[2].rpartition('"')[0]

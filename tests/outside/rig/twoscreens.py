"""A private desktop with two screens, one of which can be unplugged."""

import pathlib

from .desktop import Desktop

_CONFIGURATION = pathlib.Path(__file__).parents[2] / "support/dummy-screens.conf"
_LEFT, _RIGHT = "DUMMY0", "DUMMY1"


class TwoScreens(Desktop):
    """Two screens of 1920x1080 side by side; the left one is the primary screen."""

    def unplug(self):
        """Takes the right one away."""
        self.run("xrandr", "--output", _RIGHT, "--off")

    def plug(self):
        """Puts it in."""
        self.run("xrandr", "--output", _RIGHT, "--mode", "full_60", "--right-of", _LEFT)

    def _start_screen(self):
        log = self.directory / "screens.log"
        number = self._start("Xorg", "-noreset", "-novtswitch", "-sharevts", "-nolisten", "tcp",
                             "-config", _CONFIGURATION, "-logfile", log, report="-displayfd")
        self.environment["DISPLAY"] = ":" + number
        self.run("xrandr", "--output", _LEFT, "--primary", "--mode", "full_60")
        self.run("xrandr", "--addmode", _RIGHT, "full_60")
        self.plug()
        # The driver knows that it is connected as soon as somebody looks.
        assert f"{_RIGHT} connected" in self.run("xrandr", "--query")

"""The window after its screen was unplugged, and where the user has put it."""

import re

import pytest

from rig import TwoScreens, wait_for

PROGRAM = ("com.corvanthel.Vireon", "/com/corvanthel/Vireon", "org.freedesktop.Application")
WIDTH = 1920  # of each screen, px


@pytest.fixture
def make_desktop():
    return TwoScreens


@pytest.fixture
def window(desktop, install):
    """A started program's window."""
    app = install().start()
    app.wait_until_shows("Started and ready")
    (found,) = app.windows()
    return Window(desktop, app, found)


class Window:
    def __init__(self, desktop, app, number):
        self._desktop = desktop
        self._app = app
        self._number = number

    def edges(self):
        """Its left and right edge, px."""
        shown = self._desktop.run("xwininfo", "-id", self._number)
        left, width = (int(re.search(rf"{what}:\s+(-?\d+)", shown).group(1))
                       for what in ("Absolute upper-left X", "Width"))
        return left, left + width

    def move(self, left):
        self._desktop.run("xdotool", "windowmove", int(self._number, 16), left, 300)
        wait_for(lambda: abs(self.edges()[0] - left) < 10, what="a moved window")

    def hide(self):
        self._desktop.run("wmctrl", "-i", "-c", self._number)
        wait_for(lambda: not self._app.windows(), what="a hidden window")

    def report(self, status, text):
        """Has the engine report, with which the window is shown."""
        (self._app.data / "pensettings.ini").write_text(f"Result={status}\nFirmware=5\n")
        self._app.wait_until_shows(text)

    def wait_until_whole(self):
        """Waits until it lies on the first screen, as a whole."""
        def is_whole():
            left, right = self.edges()
            return self._app.windows() and left >= 0 and right <= WIDTH
        wait_for(is_whole, what=lambda: f"a window on the screen, not at {self.edges()}")


@pytest.mark.parametrize("left", [WIDTH + 400, WIDTH - 200], ids=["away", "between"])
@pytest.mark.parametrize("hidden", [True, False], ids=["hidden", "shown"])
def test_window_comes_back_from_an_unplugged_screen(desktop, bus, window, left, hidden):
    window.move(left)
    if hidden:
        window.hide()
    desktop.unplug()
    if hidden:
        bus.call(*PROGRAM, "Activate", "(a{sv})", {})
    else:
        window.report(-5, "Last action failed")
    window.wait_until_whole()


def test_window_stays_where_the_user_has_put_it(window):
    window.report(-5, "Last action failed")
    window.move(-200)
    window.report(-3, "Calibration aborted")
    window.report(-5, "Last action failed")
    left, _ = window.edges()
    assert abs(left + 200) < 10

"""What the desktop, the user and the machine do to the program."""

import contextlib
import os
import signal
import subprocess
import sys
import time

from plan import Kind
from rig import Busy, processes, wait_for
from stage import NOTIFICATIONS, WATCHER

_MESSAGES = (-6, -14)  # reports that the user is told of by a message, too
_HOG = ("import sys, time; taken = bytearray(b'1') * int(sys.argv[1]); "
        "time.sleep(float(sys.argv[2]))")


def _reports_under(player, codes):
    for code in codes:
        player.check(player.report(code))


# --- Services -----------------------------------------------------------------------------------

def tray_hangs(player, codes):
    with player.stage.hung(player.stage.bus.owner_pid(WATCHER)):
        _reports_under(player, codes)
        _close(player)
        player.check(player.report(5))


def tray_ends(player, codes):
    _end_owner(player, WATCHER)
    _reports_under(player, codes)
    player.stage.start_tray_host()
    player.check(player.report(-3))


def notifications_hang(player, codes):
    with player.stage.hung(player.stage.bus.owner_pid(NOTIFICATIONS)):
        _reports_under(player, codes)


def notifications_end(player, codes):
    _end_owner(player, NOTIFICATIONS)
    _reports_under(player, codes)
    player.stage.start_notifications()
    player.check(player.report(-2))


def bus_hangs(player, codes, closed):
    """Also while the window is closed, and a report brings it back."""
    with player.stage.hung(player.stage.bus_pid()):
        if closed:
            _close(player)
        _reports_under(player, codes)


def _end_owner(player, name):
    pid = player.stage.bus.owner_pid(name)
    os.kill(pid, signal.SIGKILL)
    wait_for(lambda: not player.stage.bus.has_owner(name), player.patient, what=f"no {name}")


# --- The window ---------------------------------------------------------------------------------

def _close(player):
    player.stage.desktop.run("wmctrl", "-i", "-c", player.window())
    player.wait(lambda: not player.app.windows(), "a closed window")


def is_closed(player, back):
    _close(player)
    _bring_back(player, back)


def is_minimised(player, back):
    window = player.window()
    player.stage.desktop.run("xdotool", "windowminimize", int(window, 16))
    player.wait(lambda: not player.stage.desktop.is_shown(window), "a minimised window")
    _bring_back(player, back, window)


def is_covered(player, back):
    """By a window that is in use."""
    window = player.window()
    busy = Busy(player.stage.desktop)
    try:
        busy.use()
        _bring_back(player, back, window)
        player.wait(lambda: not busy.covers(window), "the window on top")
    finally:
        busy.close()


def starts_again(player):
    _start_again(player)
    player.check()


def _bring_back(player, way, window=None):
    _BACK[way](player)
    window = window or player.window()
    player.wait_until_on_screen(window)
    player.check()


def _start_again(player):
    second = player.stage.second.start()
    wait_for(lambda: second.shows("already running"), player.patient, what="the second's box")
    second.act("OK")
    assert second.wait(player.patient) == 0, "the second start failed"


def _report_another(player):
    player.report(-3 if player.current() == -5 else -5)


_BACK = {"report": _report_another, "menu": lambda player: player.activate(),
         "second start": _start_again}


# --- Screens ------------------------------------------------------------------------------------

def mode_changes(player, modes, rest):
    for mode in (*modes, "full_60"):
        player.stage.desktop.run("xrandr", "--output", "DUMMY0", "--mode", mode)
        time.sleep(rest)
    player.check(player.report(5))


def output_is_unplugged(player, left, rest):
    """The one that the window is on, or half on."""
    desktop = player.stage.desktop
    desktop.run("xdotool", "windowmove", int(player.window(), 16), left, 300)
    desktop.unplug()
    time.sleep(rest)
    player.check(player.report(-3))
    wait_for(lambda: 0 <= player.app.place()[0] < 1920, player.patient, what="it on the other one")
    desktop.plug()
    player.check(player.report(5))


def text_size_changes(player, sizes):
    for dpi in (*sizes, 96):
        player.stage.text_size.set(dpi)
        player.check()


# --- The machine --------------------------------------------------------------------------------

def clock_jumps(player, offsets):
    for offset in (*offsets, 0):
        player.stage.clock.set(offset)
        time.sleep(1.1)  # until it is looked at
        player.check(player.report(-3 if player.current() == 5 else 5))


def memory_is_short(player, part, seconds):
    """Another program takes a part of what is free, but no more than 2 GiB."""
    with open("/proc/meminfo", encoding="ascii") as file:
        free = next(int(line.split()[1]) for line in file if line.startswith("MemAvailable"))
    size = int(min(free * 1024 * part, 2 << 30))
    hog = processes.spawn([sys.executable, "-c", _HOG, size, seconds], stdin=subprocess.DEVNULL)
    with contextlib.ExitStack() as stack:
        stack.callback(hog.wait)
        _reports_under(player, (-2, -6, 5))


_CODES = {"codes": ((5, -6), (-6, -14, -6), (-2, -14), (-5, -1, 0))}
_WAYS_BACK = {"back": tuple(_BACK)}
_DAY = 86400
KINDS = (
    Kind("tray host hangs", tray_hangs, choices=_CODES),
    Kind("tray host ends", tray_ends, choices=_CODES),
    Kind("notifications hang", notifications_hang, choices=_CODES),
    Kind("notifications end", notifications_end, choices=_CODES),
    Kind("session bus hangs", bus_hangs, choices={**_CODES, "closed": (True, False)}),
    Kind("window closed", is_closed, choices=_WAYS_BACK),
    Kind("window minimised", is_minimised, choices=_WAYS_BACK),
    Kind("window covered", is_covered, choices=_WAYS_BACK),
    Kind("second start", starts_again),
    Kind("screen's mode changes", mode_changes, choices={
        "modes": (("small_60",), ("small_60", "full_59.94", "small_60"), ("full_50", "full_30")),
        "rest": (0.3, 1.5)}),
    Kind("output unplugged", output_is_unplugged, choices={"left": (2300, 1700),
                                                           "rest": (0.0, 1.5)}),
    Kind("text size changes", text_size_changes, choices={
        "sizes": ((120,), (192,), (144, 120), (192, 72))}),
    Kind("clock jumps", clock_jumps, "clock", {"offsets": (
        (3600,), (-3600,), (-400 * _DAY, 400 * _DAY), (30 * _DAY, -1))}),
    Kind("memory is short", memory_is_short, choices={"part": (0.3, 0.6), "seconds": (1.0, 3.0)}),
)

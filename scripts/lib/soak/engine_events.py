"""What engines, their programs and their files do to the program."""

import os
import shutil
import signal
import time

from plan import Kind
from rig import wait_for
from watch import said

REPORTS = (0, 5, -2, -3, -4, -5, -6, -14, -20, -1, 2)
_SIGNALS = ("SIGKILL", "SIGSEGV", "SIGABRT", "SIGTERM")
_DEAF = "on sigterm|Q ignore\n"
_STORM = tuple(range(100, 140))  # reports without a message


def _settle(player):
    """Has the window show a text of its own: a report that is still on its way would end the loading
    of a command."""
    player.check(player.report(-3 if player.current() == -5 else -5))


def reports(player, codes):
    for code in codes:
        player.check(player.report(code))


def exits(player, letter, slow):
    """By itself; the next one may take its time."""
    player.stage.set_engine(f"at 0 status -1\nat {slow} status 0")
    player.end_engine(lambda: player.stage.order(letter))
    player.check()


def is_killed(player, name):
    pid = player.app.engine_pid()
    player.end_engine(lambda: os.kill(pid, getattr(signal, name)))
    player.check()


def hangs(player, seconds):
    """With a command on its way to it."""
    _settle(player)
    with player.stage.hung(player.app.engine_pid()):
        player.expect("m")
        player.press("Manual Calibration")
        time.sleep(seconds)
        player.check(2)
    player.wait_for_letters()
    player.wait(lambda: player.current() == 5, "the calibration's end")
    player.check()


def is_deaf(player):
    """To SIGTERM, when the machine goes to sleep."""
    player.stage.set_engine(rest=_DEAF)
    player.end_engine(lambda: player.stage.order("W"))
    player.stage.set_engine()
    player.sleep_and_wake()
    player.check()


def never_stays(player):
    """Until it is given up; a command that succeeds gives the restarts back."""
    player.stage.set_engine("unwritten\nat 0 exit 1")
    player.stage.order("Z")
    player.wait(lambda: player.app.shows(said(-12)), "an engine given up")
    player.check(-12)
    player.stage.set_engine()
    player.sleep_and_wake()
    player.check()
    calibrates(player, ("Touch Calibration", "t", -4))


def calibrates(player, which):
    button, letter, result = which
    _settle(player)
    player.expect(letter)
    player.press(button)
    if letter == "a":
        # The advice comes until somebody has read it.
        player.wait(lambda: player.app.clickable("Continue") or player.app.shows(said(2)),
                    "the advice, or the calibration")
        if not player.app.shows(said(2)):
            player.press("Continue")
    player.wait_for_letters()
    player.wait(lambda: player.current() == result, "the calibration's end")
    player.check()


def is_reset(player, slow):
    """While the next engine starts: the command waits for it."""
    starts = player.journal.read().starts
    _settle(player)
    player.stage.set_engine(f"unwritten\nat {slow} status 0")
    player.stage.order("X")
    player.wait(lambda: player.app.shows(said(-10)), "a restart")
    player.expect("0")
    player.choose("Calibration", "Reset")
    player.wait(lambda: player.journal.read().starts > starts, "another engine")
    player.wait_for_letters()
    player.wait(lambda: player.current() == -6, "what the engine says to it")
    player.stage.set_engine()
    player.check()


def is_sent_settings(player, which):
    button, letter = which
    _settle(player)
    player.press("Settings")
    player.expect(letter)
    player.press(button)
    player.wait_for_letters()
    player.press("Back")
    player.check()


def is_missing(player, way):
    """When it has to be started; no exit, so that the program does not try again."""
    with player.stage.without("vireon-main", way):
        _settle(player)
        player.stage.order("Z")
        player.wait(lambda: not player.app.engine_pids(), "no engine")
        player.check(-10)
    player.sleep_and_wake()
    player.check()


def tool_is_missing(player, way):
    """A command is not delivered then; the next report ends its loading."""
    _settle(player)
    with player.stage.without("vireon-sdk", way):
        player.press("Manual Calibration")
        player.check(2)
        player.check(player.report(-2))


def writes_torn(player, text):
    """What a reader finds that comes too early."""
    _write(player, text.encode())
    player.check()
    _settle(player)


def writes_huge(player, begin, size):
    block = begin.encode() + b"1" * (size << 20)
    _write(player, block)
    player.check()
    player.check(player.report(-2))


def storms(player, seconds, every):
    """A change at every poll, or faster."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        for code in _STORM:
            _write(player, b"Result=%d\nFirmware=2\n" % code)
            time.sleep(every)
            if time.monotonic() >= end:
                break
    player.check()


def disk_is_full(player, letter):
    _settle(player)
    player.stage.disk.fill()
    try:
        player.stage.order(letter)
        player.check()
    finally:
        player.stage.disk.empty()
    player.check(player.report(-2))


def disk_is_read_only(player, seconds):
    _settle(player)
    player.stage.disk.set_writable(False)
    try:
        player.stage.order("E")
        time.sleep(seconds)
        player.check()
    finally:
        player.stage.disk.set_writable(True)
    player.check(player.report(-3))


def data_are_deleted(player, by_hand):
    """And made anew by hand, or by the next engine."""
    _settle(player)
    shutil.rmtree(player.app.data)
    player.check()
    if by_hand:
        player.app.data.mkdir()
    # Nobody reaches the engine any more, whose socket was there.
    pid = player.app.engine_pid()
    player.end_engine(lambda: os.kill(pid, signal.SIGKILL))
    player.check()


def machine_sleeps(player, seconds):
    player.sleep(True)
    wait_for(lambda: not player.app.engine_pids(), player.patient, what="no engine")
    time.sleep(seconds)
    starts = player.journal.read().starts
    player.sleep(False)
    player.wait_for_engine(starts)
    player.check()


def _write(player, content):
    path = player.app.data / "pensettings.ini"
    unfinished = path.with_name("from-a-run")
    unfinished.write_bytes(content)
    unfinished.replace(path)


_WAYS = {"way": ("missing", "not executable")}
KINDS = (
    Kind("engine reports", reports, choices={"codes": tuple(
        tuple(REPORTS[(at + step * way) % len(REPORTS)] for step in range(4))
        for at in range(len(REPORTS)) for way in (1, 3))}),
    Kind("engine exits", exits, choices={"letter": ("W", "X"), "slow": (0, 400, 1500)}),
    Kind("engine is signalled", is_killed, choices={"name": _SIGNALS}),
    Kind("engine dies of a report", exits, choices={"letter": ("U", "Y"), "slow": (400,)}),
    Kind("engine hangs", hangs, choices={"seconds": (0.5, 1.5, 3.0)}),
    Kind("engine is deaf to SIGTERM", is_deaf),
    Kind("engine never stays", never_stays),
    Kind("engine is missing", is_missing, choices=_WAYS),
    Kind("tool is missing", tool_is_missing, choices=_WAYS),
    Kind("calibration", calibrates, choices={"which": (
        ("Manual Calibration", "m", 5), ("Touch Calibration", "t", -4),
        ("Auto Calibration", "a", 5))}),
    Kind("reset during a restart", is_reset, choices={"slow": (1000, 2000)}),
    Kind("command from the settings", is_sent_settings, choices={"which": (
        ("Sensor Viewer", "v"), ("Correct Offset", "7"))}),
    Kind("torn status file", writes_torn, choices={"text": (
        "", "Resu", "Result=", "Result=-", "Result=-1", "Result=-14\nFirm", "Result=5\n",
        "\0\0\0\0\0\0\0", "Result=0x5\nFirmware=2\n", "Firmware=2\nResult=7\n",
        "Result=99999999999\nFirmware=2\n", "Result=-4\r\nFirmware=2\r\n")}),
    Kind("huge status file", writes_huge, choices={
        "begin": ("", "Result=", "Result=-14\n", "Result=-14\nFirmware=", "Result=5\nFirmware=2\n"),
        "size": (1, 8, 40)}),
    Kind("status storm", storms, choices={"seconds": (2.0, 5.0), "every": (0.05, 0.15, 0.3)}),
    Kind("full disk", disk_is_full, "disk", {"letter": ("G", "C")}),
    Kind("read-only data", disk_is_read_only, "disk", {"seconds": (0.5, 2.0)}),
    Kind("deleted data", data_are_deleted, choices={"by_hand": (True, False)}),
    Kind("machine sleeps", machine_sleeps, choices={"seconds": (0.0, 1.0, 2.0)}),
)

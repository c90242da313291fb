"""One run: the program's lives in it, the events, and what was found."""

import collections
import os
import signal
import subprocess
import time
import traceback

import blocks
from resources import Sampler

# What the engine and libraries say while an event takes their ground away.
_ALLOWED = (
    r"^vireon-main: ",
    r"cannot start .*vireon-(main|sdk)",
    r"failed to unregister service",  # on a bus that has gone
)
_LONGEST_START = 60  # s
_LEFT_AFTER = 2.0  # s


class Run:
    """Plays events one after the other for a time.

    player   plays them
    played   how often each kind was, by its name
    skipped  which kinds were not, and why
    failed   events in which something did not come about: what and where
    crashes  how the program ended where it had to run
    left     what was still there after its end
    blocks   of the GUI thread, the hand-over's left out; and how often it was asked
    lives    the samples of each life of the program
    """

    def __init__(self, stage, player):
        self.stage = stage
        self.player = player
        self.played = collections.Counter()
        self.skipped = {}
        self.failed = []
        self.crashes = []
        self.left = []
        self.blocks, self.hand_overs, self.asked = [], [], 0
        self.lives = []
        self._begun = []
        self._pings = self._sampler = None
        for pattern in _ALLOWED:
            stage.app.allow(pattern)

    def play(self, events, seconds, tell):
        """Plays as many as the time allows."""
        self._begin_life()
        begin = time.monotonic()
        for number, event in enumerate(events, 1):
            if time.monotonic() - begin > seconds:
                break
            if event.kind.needs in self.stage.lacks:
                self.skipped[event.kind.name] = self.stage.lacks[event.kind.needs]
                continue
            tell(f"{time.monotonic() - begin:6.0f} s  {number:4}  {event}")
            self.played[event.kind.name] += 1
            self._begun.append((time.monotonic(), event))
            self._play_one(event, tell)
            time.sleep(event.pause)
        self._end_life(self._last_quit)

    def event_at(self, moment):
        """The event that was played then."""
        return next((event for begin, event in reversed(self._begun) if begin <= moment), None)

    def _play_one(self, event, tell):
        problems = len(self.player.wrong)
        try:
            event.kind.play(self.player, **event.drawn)
            self.player.wait(lambda: len(self.stage.children()) == 1, "one engine and no tool")
            self._sampler.take()
        except (AssertionError, OSError, subprocess.SubprocessError) as fault:
            where = traceback.extract_tb(fault.__traceback__)
            line = next(one for one in reversed(where) if "_events" in one.filename or one is where[0])
            self.failed.append(f"{event}: {fault} ({line.name}:{line.lineno})")
            tell(f"failed: {self.failed[-1]}")
            self._end_life(self._kill)
            self._begin_life()
        for text in self.player.wrong[problems:]:
            tell(f"wrong: {text}")

    # --- A life of the program ------------------------------------------------------------------

    def _begin_life(self):
        self.stage.set_engine()
        app = self.stage.app.start()
        self.player.begin_life()
        app.wait_until_shows("Started and ready", _LONGEST_START)
        window = self.player.window()
        self._sampler = Sampler(self.stage.desktop.environment["DISPLAY"], app.pid, window)
        self._pings = blocks.Pings(app, self.stage.directory / "pings")

    def _end_life(self, end):
        if not self.stage.app.is_running():
            self.crashes.append(f"exit status {self.stage.app.process.returncode}")
        self._pings.stop()
        self._sampler.close()
        asked, found = self._pings.result()
        self.asked += asked
        starts = blocks.engine_starts("\n".join(self.stage.app.log()))
        for block in found:
            (self.hand_overs if block.is_hand_over(starts) else self.blocks).append(block)
        self.lives.append(self._sampler.samples)
        self.player.end_life()
        end()

    def _kill(self):
        """What an event has left half done is not to spoil the next."""
        self.stage.app.cleanup()
        self.stage.second.cleanup()

    def _last_quit(self):
        """After the session bus has gone, with an engine that does not want to end."""
        if not self.stage.app.is_running():
            return
        try:
            self.stage.set_engine(rest="on sigterm|Q ignore\n")
            self.player.end_engine(lambda: self.stage.order("Z"))
            os.kill(self.stage.bus_pid(), signal.SIGKILL)
            for code in (-3, 5):
                self.player.check(self.player.report(code))
            status = self.stage.app.quit()
            self.stage.app.wait_for_end_of_all()
            if status != 0:
                self.crashes.append(f"exit status {status} of the quit")
        except AssertionError as fault:
            self.failed.append(f"the last quit: {fault}")
        time.sleep(_LEFT_AFTER)
        self.left += self.stage.left_over()

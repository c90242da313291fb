"""Plays events on a stage and holds what the program does against what the engine says."""

import collections
import os
import time

from rig import wait_for
from rig.hands import Reader

from stage import LETTERS, LOGIN, PROGRAM, READY
from watch import Journal, read_status, said, statuses_in, waited_by

_MOCK = "org.freedesktop.DBus.Mock"
_POPUPS = ("Ignore", "OK", "Go back", "Close this dialog")  # what takes a warning away
_HANDS = Reader()


class Player:
    """What events are made of.

    stage   where it is played
    within  s in which the state shown has to be the engine's, once that is quiet
    patient s for all that has no goal of its own
    sent    the letters of this life's commands
    lost, doubled  how many commands of earlier lives the engine did not get, or too often
    wrong   what was shown in place of what, where it was wrong
    late    by how much the right state was shown, in s
    """

    def __init__(self, stage, within, patient):
        self.stage = stage
        self.within = within
        self.patient = patient
        self.app = stage.app
        self.journal = Journal(self.app.journal_path, set(LETTERS.values()) | set("WXYZU"))
        self.sent = []
        self.lost = self.doubled = 0
        self.wrong = []
        self.late = []
        self._status = None

    # --- The engine -----------------------------------------------------------------------------

    def wait(self, condition, what):
        """Waits for it, as long as the program runs."""
        def seen():
            assert self.app.is_running(), f"the program ended while there was to be {what}"
            return condition()
        return wait_for(seen, self.patient, what=what, interval=0.02)

    def report(self, code):
        """Has the engine report this, or READY where it has done so already; what it reported."""
        code = READY if code == self.current() else code
        count = self.journal.read().reports
        self.stage.order(LETTERS[code])
        self.wait(lambda: self.journal.read().reports > count and self.current() == code,
                  f"a report of {code}")
        return code

    def current(self):
        """The engine's last report, as its status file tells it."""
        self._status = read_status(self.app.data / "pensettings.ini", self._status)
        return self._status

    def end_engine(self, act):
        """Ends the engine and waits until the next one is ready."""
        starts = self.journal.read().starts
        act()
        self.wait_for_engine(starts)

    def wait_for_engine(self, starts):
        """Waits until there is one more engine than these, and it is ready."""
        self.wait(lambda: self.journal.read().starts > starts, "another engine")
        self.wait(lambda: self.journal.read().status == READY and self.current() == READY,
                  "a ready engine")

    def sleep(self, begins):
        """Tells of the machine's sleep, or of its end."""
        self.stage.bus.call(*LOGIN[:2], _MOCK, "EmitSignal", "(sssav)", LOGIN[2],
                            "PrepareForSleep", "b", [self.stage.bus.variant("b", begins)])

    def sleep_and_wake(self):
        """The way to a new engine that the program is not restarted for."""
        self.sleep(True)
        self.wait(lambda: not self.app.engine_pids(), "no engine during the sleep")
        starts = self.journal.read().starts
        self.sleep(False)
        self.wait_for_engine(starts)

    # --- The user -------------------------------------------------------------------------------

    def press(self, name):
        _HANDS.press(self.app, name)

    def choose(self, menu, entry):
        _HANDS.choose(self.app, menu, entry)

    def expect(self, letter):
        """The program is about to send this once."""
        self.sent.append(letter)

    def wait_for_letters(self):
        """Waits until the engine has taken all that was sent. What is too many is seen at the end."""
        self.wait(lambda: len(self.journal.read().letters) >= len(self.sent), "all letters")

    def window(self):
        """The id of the program's window on the screen."""
        return self.wait(self.app.windows, "a window")[-1]

    def wait_until_on_screen(self, window):
        self.wait(lambda: self.stage.desktop.is_shown(window), "the window on the screen")

    def activate(self):
        """Brings the window up the way that the desktop's menu does."""
        self.stage.bus.send(*PROGRAM, "Activate", "(a{sv})", {})

    # --- What has to hold -----------------------------------------------------------------------

    def check(self, code=None):
        """The window has to show this status, or the one that the engine reported last. For how long
        it, or this program, waited for a processor does not count."""
        text = said(self.current() if code is None else code)
        waited, quiet = self._waited(), time.monotonic()
        begin, shown = quiet, self._shown()
        while shown != {text} and time.monotonic() < quiet + self.patient:
            assert self.app.is_running(), f"the program ended where it had to show {text!r}"
            begin, shown = time.monotonic(), self._shown()
        took = begin - quiet - (self._waited() - waited)
        if shown != {text} or took > self.within:
            self.wrong.append(f"{sorted(shown) if shown != {text} else 'late'} in place of {text!r} "
                              f"after {took:.1f} s")
        else:
            self.late.append(max(0.0, took))

    def begin_life(self):
        """The program starts, with an engine that knows nothing of earlier commands."""
        self.journal.read().letters.clear()
        self.sent.clear()

    def end_life(self):
        """Counts this life's commands."""
        sent, came = collections.Counter(self.sent), collections.Counter(self.journal.read().letters)
        self.lost += sum((sent - came).values())
        self.doubled += sum((came - sent).values())

    def _waited(self):
        return waited_by(self.app.pid) + waited_by(os.getpid())

    def _shown(self):
        """The statuses that are to be read in the window; warnings in front of them are closed."""
        items = self.app.items()
        shown = statuses_in([item.name for item in items])
        if not shown:
            for item in items:
                if item.name in _POPUPS and item.role == "push button":
                    self.app.desktop.reader.act(item)
                    break
        return shown

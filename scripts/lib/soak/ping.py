"""Measures from outside how long the program's GUI thread answers nothing.

usage: ping.py PID BUS-ADDRESS THRESHOLD-MS

Asks the program on the accessibility bus, every 40 ms, what its root object is: Qt answers that on the
GUI thread. A question to the bus itself goes with each, again and again while the answer is out: what
that one takes too long, and the time for which the program's thread was ready to run and waited for a
processor, is not the program's. On standard output a line "BEGIN END NET" for each answer whose net
time is above the threshold, in s of the monotonic clock; after SIGTERM "pings COUNT".
"""

import signal
import sys
import time

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

INTERVAL = 0.04  # s
CONTROL = 20  # ms from one question to the bus to the next
USUAL = 0.005  # s that such a question may take
LONGEST = 30000  # ms after which an answer is waited for no more
_BUS = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
_ROOT = ("/org/a11y/atspi/accessible/root", "org.a11y.atspi.Accessible", "GetRole")


class Ping:
    def __init__(self, pid, address):
        self._pid = pid
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self._bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self._name = next(name for name in self._ask_bus("ListNames") if self._is_program(name))
        self._context = GLib.MainContext.default()

    def once(self):
        """One question: when it went out, how long the answer took, how much of that is not the
        program's."""
        controls = Controls(self._bus)
        answers = []
        waited, begin = self._delay(), time.monotonic()
        self._bus.call(self._name, *_ROOT, None, None, Gio.DBusCallFlags.NONE, LONGEST, None,
                       lambda bus, result: answers.append(time.monotonic()))
        controls.ask()
        timer = GLib.timeout_add(CONTROL, controls.ask)
        while not answers:
            self._context.iteration(True)
        GLib.source_remove(timer)
        return begin, answers[0] - begin, controls.late(answers[0]) + self._delay() - waited

    def _ask_bus(self, method, arguments=None):
        return self._bus.call_sync(*_BUS, method, arguments, None, Gio.DBusCallFlags.NONE, LONGEST,
                                   None).unpack()[0]

    def _is_program(self, name):
        try:
            return self._pid == self._ask_bus("GetConnectionUnixProcessID",
                                              GLib.Variant("(s)", (name,)))
        except GLib.Error:
            return False

    def _delay(self):
        """How long the thread has waited for a processor since its start, in s."""
        with open(f"/proc/{self._pid}/task/{self._pid}/schedstat", encoding="ascii") as file:
            return int(file.read().split()[1]) / 1e9


class Controls:
    """The questions to the bus itself, one after the other."""

    def __init__(self, bus):
        self._bus = bus
        self._late = 0.0
        self._out = None  # since when there is one

    def ask(self):
        if self._out is None:
            self._out = time.monotonic()
            self._bus.call(*_BUS, "GetId", None, None, Gio.DBusCallFlags.NONE, LONGEST, None,
                           self._answered)
        return True

    def late(self, now):
        """How much longer than usual all of them have taken."""
        return self._late + (max(0.0, now - self._out - USUAL) if self._out else 0.0)

    def _answered(self, _bus, _result):
        self._late, self._out = self.late(time.monotonic()), None


def main():
    pid, address, threshold = int(sys.argv[1]), sys.argv[2], float(sys.argv[3]) / 1000
    ends = []
    signal.signal(signal.SIGTERM, lambda *_: ends.append(True))
    ping = Ping(pid, address)
    count = 0
    try:
        while not ends:
            begin, took, foreign = ping.once()
            count += 1
            if took - foreign > threshold:
                print(f"{begin:.3f} {begin + took:.3f} {took - foreign:.3f}", flush=True)
            time.sleep(INTERVAL)
    except (FileNotFoundError, ProcessLookupError):
        pass  # The program has gone.
    print(f"pings {count}", flush=True)


if __name__ == "__main__":
    main()

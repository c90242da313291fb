"""Eyes on a screen and a hand on its keyboard, for scripts/bench: when a program's window is there,
and when it draws. All times are of the monotonic clock, in ms."""

import contextlib
import select
import time

from Xlib import X, XK, display, error
from Xlib.ext import damage, xtest

_OWNER_BITS = 21  # of a window's id; what is above them tells whose it is
_LEAST_VIEW = 400  # px; narrower windows within windows are no views


def now():
    return time.monotonic_ns() / 1e6


class Window:
    """What is known of a window; `mapped` and `drawn` are times, None before."""

    def __init__(self, resource, parent, width):
        self.resource, self.parent, self.width = resource, parent, width
        self.mapped = self.drawn = None


class Eyes:
    """Follows the windows of the programs that come up after it was made."""

    def __init__(self, name):
        self._display = display.Display(name)
        # Windows go away while they are looked at.
        self._display.set_error_handler(lambda *_: None)
        self._display.damage_query_version()
        root = self._display.screen().root
        self._others = {self._owner(window.id) for window in root.query_tree().children}
        self._others.add(self._owner(self._display.display.info.resource_id_base))
        self._windows = {}
        self._maps = 0
        self._handlers = {
            X.CreateNotify: self._see,
            X.MapNotify: self._map,
            X.ReparentNotify: self._reparent,
            X.ConfigureNotify: self._resize,
            self._display.extension_event.DamageNotify: self._draw,
        }
        root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self._display.sync()

    def close(self):
        self._display.close()

    def forget(self):
        """The windows that have come up so far are looked at no more."""
        self._look(0)
        self._windows.clear()

    def wait_for_window(self, timeout=10):
        """A view in a window, once both have been drawn: the view, and when that was; or None."""
        view = self._wait(self._complete_view, timeout)
        return (view, max(view.drawn, self._windows[view.parent].drawn)) if view else None

    def follow(self, view):
        """From now on every drawing into this view is noticed, and not only the first."""
        damage.damage_create(view.resource, damage.DamageReportRawRectangles)
        self._display.sync()

    def expect(self, view):
        """Waits until the view rests. What is drawn from now on is what wait_for_drawing() tells."""
        while self._look(0.1):
            pass
        view.drawn = None

    def wait_for_drawing(self, view, timeout=5):
        """When this view was drawn into, or None."""
        return self._wait(lambda: view.drawn, timeout)

    def opens(self, *keys):
        """Presses keys, which must bring up a window."""
        self._look(0.3)
        before = self._maps
        self.press(*keys)
        assert self._wait(lambda: self._maps > before, 5), f"{keys} brought up no window"

    def changes(self, view, *keys):
        """Presses keys, which must change what this followed view shows."""
        self.expect(view)
        self.press(*keys)
        assert self.wait_for_drawing(view), f"{keys} changed nothing"

    def press(self, *keys):
        """Presses keys, together; when the last one was."""
        codes = [self._display.keysym_to_keycode(XK.string_to_keysym(key)) for key in keys]
        for code in codes:
            xtest.fake_input(self._display, X.KeyPress, code)
        self._display.flush()
        moment = now()
        for code in reversed(codes):
            xtest.fake_input(self._display, X.KeyRelease, code)
        self._display.flush()
        return moment

    def _complete_view(self):
        for view in self._windows.values():
            around = self._windows.get(view.parent)
            if around and view.width > _LEAST_VIEW and view.drawn and around.mapped and around.drawn:
                return view
        return None

    def _wait(self, condition, timeout):
        deadline = time.monotonic() + timeout
        while time.monotonic() < deadline:
            result = condition()
            if result:
                return result
            self._look(min(0.2, deadline - time.monotonic()))
        return None

    def _look(self, timeout):
        """Takes in what the X server has to tell within this time, in s; whether it was anything."""
        if not self._display.pending_events():
            select.select([self._display], [], [], max(0.0, timeout))
        told = False
        while self._display.pending_events():
            told = True
            event = self._display.next_event()
            handler = self._handlers.get(event.type)
            if handler:
                handler(event, now())
        return told

    def _see(self, event, _):
        self._add(event.window, event.parent.id, event.width)

    def _add(self, window, parent, width):
        if self._owner(window.id) in self._others or window.id in self._windows:
            return
        self._windows[window.id] = Window(window, parent, width)
        window.change_attributes(event_mask=X.SubstructureNotifyMask | X.StructureNotifyMask)
        damage.damage_create(window, damage.DamageReportNonEmpty)
        # Those that were made in it before that; it may be gone already.
        with contextlib.suppress(error.XError):
            for child in window.query_tree().children:
                self._add(child, window.id, child.get_geometry().width)

    def _map(self, event, moment):
        window = self._windows.get(event.window.id)
        if window:
            window.mapped = window.mapped or moment
            self._maps += 1

    def _reparent(self, event, _):
        window = self._windows.get(event.window.id)
        if window:
            window.parent = event.parent.id

    def _resize(self, event, _):
        window = self._windows.get(event.window.id)
        if window:
            window.width = event.width

    def _draw(self, event, moment):
        window = self._windows.get(event.drawable.id)
        if window:
            window.drawn = window.drawn or moment

    @staticmethod
    def _owner(number):
        return number >> _OWNER_BITS

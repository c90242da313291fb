"""What is tried on a desktop, in this order, with one run of the program but for the last row."""

import time

from PIL import Image, ImageChops

from rig import App, Busy, wait_for
from rig.processes import maps_of

PROGRAM = ("com.corvanthel.Vireon", "/com/corvanthel/Vireon", "org.freedesktop.Application")
READY = "Started and ready"
# Three messages of the program's start, each a moment after the one before.
SCENARIO = "at 0 status -1 firmware 1\nat 2000 status -6\nat 4000 status 0\n"
_FIRMWARE = "Camera unit firmware is old version."
_NOT_CALIBRATED = "Vireon not calibrated."
_HINT = "Running in background"
_ANSWER = 15  # s
_LONGEST_LOG_OUT = 5  # s
_LAST_MESSAGE = 45  # s: three of them, 5 s each, after what else the desktop tells first
_SETTLED = 1.5  # s until a window manager's effects are over
_GTK = {"GTK 2": "libgtk-x11-2.0.so", "GTK 3": "libgtk-3.so"}


class Trial:
    """A desktop under trial.

    desktop     of kinds.py
    app         the program on it
    text_size   of the desktop
    place       where pictures go, with the beginning of their names
    variables   of the program, beside the desktop's
    """

    def __init__(self, app, text_size, place, variables):
        self.desktop = app.desktop
        self.app = app
        self.text_size = text_size
        self.place = place
        self.variables = variables
        self.gtk = set()

    def wait(self, condition, what, seconds=_ANSWER):
        return wait_for(condition, seconds, what=what)

    def window(self):
        return self.wait(self.app.windows, "a window")[-1]

    def show(self):
        if not self.app.windows():
            self.desktop.bus().call(*PROGRAM, "Activate", "(a{sv})", {})
        return self.window()

    def close(self):
        window = self.show()
        self.desktop.run("wmctrl", "-i", "-c", window)
        self.wait(lambda: not self.app.windows(), "a hidden window")
        return window

    def picture(self, name):
        path = f"{self.place}-{name}.png"
        self.desktop.picture(path)
        return path

    def look_at_gtk(self):
        """Remembers which of the two are in the program."""
        self.gtk |= {name for name, library in _GTK.items()
                     if any(one.startswith(library) for one in maps_of(self.app.pid))}


def tray_shown(trial):
    trial.wait(trial.desktop.tray, "an icon")


def messages_in_order(trial):
    expected = (_FIRMWARE, _NOT_CALIBRATED, _HINT)
    seen = []

    def all_seen():
        for text in trial.desktop.messages():
            found = next((one for one in expected if one in text), None)
            if found and found not in seen:
                seen.append(found)
                if len(seen) == 1:
                    trial.picture("message")
        return len(seen) == len(expected)

    trial.desktop.messages()
    trial.close()
    trial.wait(all_seen, lambda: f"three messages, not {seen}", _LAST_MESSAGE)
    assert tuple(seen) == expected, f"in the order {seen}"


def message_opens(trial):
    texts = trial.desktop.messages()
    hint = next((text for text in texts if _HINT in text), _HINT)
    if trial.app.windows():
        trial.close()
    way = trial.desktop.click_message(hint)
    trial.wait(trial.app.windows, f"the window, after a click {way or 'on it'}")
    return way


def click_opens(trial):
    trial.desktop.tray()
    trial.close()
    way = trial.desktop.click_tray()
    trial.wait(trial.app.windows, "the window")
    return way


def menu_works(trial):
    entries = trial.desktop.tray_menu()
    assert "Exit" in entries, f"in it: {entries}"
    time.sleep(_SETTLED)
    trial.picture("menu")
    trial.desktop.close_menu()
    return ", ".join(entries)


def comes_back_painted(trial):
    def view():
        trial.desktop.run("xdotool", "mousemove", 5, 500)
        time.sleep(_SETTLED)
        x, y, width, height = trial.app.place()
        whole = Image.open(trial.picture("window")).convert("RGB")
        return whole.crop((x, y, x + width, y + height))

    trial.show()
    before = view()
    trial.close()
    trial.show()
    after = view()
    assert before.size == after.size, f"{after.size} px, not {before.size}"
    histogram = ImageChops.difference(before, after).convert("L").histogram()
    same = sum(histogram[:16]) / sum(histogram)
    assert same > 0.99, f"{100 - 100 * same:.0f} % of it look different"
    assert len(after.getcolors(1 << 24)) > 50, "it is empty"


def second_start(away):
    """What tries it on a window that is out of sight in this way."""
    def check(trial):
        window = trial.show()
        busy = Busy(trial.desktop)
        try:
            busy.use()
            away(trial, window)
            busy.use()
            second = App(trial.desktop, trial.app.directory / f"again-{away.__name__}",
                         home=trial.app.home, environment={
                             **trial.variables, "TMPDIR": str(trial.app.temporary)}).start()
            second.wait_until_shows("already running", _ANSWER)
            second.act("OK")
            assert second.wait(_ANSWER) == 0, f"it left with {second.process.returncode}"
            trial.wait(lambda: trial.desktop.is_shown(window) and not busy.covers(window),
                       "the window on top")
            trial.wait(lambda: trial.desktop.active_window() == window, "the keyboard in it")
        finally:
            busy.close()
    return check


def covered(_trial, _window):
    """The other window does it."""


def hidden(trial, _window):
    trial.close()


def minimised(trial, window):
    trial.desktop.run("xdotool", "windowminimize", int(window, 16))
    # A shell may leave it mapped.
    trial.wait(lambda: "_HIDDEN" in trial.desktop.run("xprop", "-id", window, "_NET_WM_STATE"),
               "a minimised window")


def text_size_changes(trial):
    trial.show()
    small = trial.app.place()[2]
    trial.text_size.set(192)
    trial.wait(lambda: trial.app.place()[2] > 1.8 * small, "a larger window")
    trial.picture("large-text")
    trial.text_size.set(96)
    trial.wait(lambda: trial.app.place()[2] == small, "the usual window")


def gtk_alone(trial):
    trial.look_at_gtk()
    assert len(trial.gtk) < 2, "both"
    return next(iter(trial.gtk), "neither")


def quit_leaves_nothing(trial):
    trial.show()
    trial.look_at_gtk()
    trial.desktop.choose_exit(trial.app)
    status = trial.app.wait(_ANSWER)
    assert status == 0, f"exit status {status}"
    trial.wait(lambda: not trial.app.programs_running(), "an end of the engine")
    assert trial.app.letters()[-1:] == ["Q"], f"letters {trial.app.letters()}"
    left = [path.name for path in trial.app.temporary.iterdir() if not path.name.endswith(".lock")]
    assert not left, f"left: {left}"
    assert not trial.app.faults(), trial.app.faults()[0]


# The rows of the table but the last.
CHECKS = {
    "the tray icon is shown": tray_shown,
    "messages arrive in order": messages_in_order,
    "a click on a message opens the window": message_opens,
    "a plain click on the icon opens it": click_opens,
    "the icon's menu works": menu_works,
    "the window hides and comes back painted": comes_back_painted,
    "a second start raises it, covered": second_start(covered),
    "a second start raises it, hidden": second_start(hidden),
    "a second start raises it, minimised": second_start(minimised),
    "the text size changes": text_size_changes,
    "GTK 2 and 3 never together": gtk_alone,
    "quit leaves nothing": quit_leaves_nothing,
}
LOG_OUT = "log-out is not held up, the engine ends by its own handler"


def log_out(app):
    """The engine is one that does not take commands: nothing but its handler can end it."""
    begin = time.monotonic()
    how = app.desktop.end_session()
    wait_for(lambda: not app.is_running(), _ANSWER, what="an end of the program")
    took = time.monotonic() - begin
    app.wait_for_end_of_all()
    assert app.engine_signals() == ["TERM"], f"the engine was sent {app.engine_signals()}"
    assert app.engine_ends() == ["0"], f"the engine ended with {app.engine_ends()}"
    assert took < _LONGEST_LOG_OUT, f"{took:.1f} s"
    return how

"""Plays the demonstration on a virtual screen and tells what happens; scripts/run calls it.

usage: play.py SECONDS SCENARIO PICTURES-DIRECTORY
"""

import pathlib
import re
import signal
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests/outside"))

from rig import adopt_orphans, stage  # noqa: E402

# A changed text is painted within this time, in s.
PAINTING = 0.1


def told(event):
    """An event of the journal in words; None for what is not worth a line."""
    fields = event.fields
    if event.who == "tool":
        return None
    if event.kind == "start":
        return "engine started" if event.start == 1 else f"engine restarted, start {event.start}"
    if event.kind == "letter":
        return f"command received: {event.letter}"
    if event.kind == "status":
        return f"engine reports status {fields.get('result', fields.get('raw'))}"
    if event.kind == "exit":
        how = f"signal {fields['signal']}" if "signal" in fields else f"code {fields['code']}"
        return f"engine ended, {how}"
    return None


class Show:
    """One run: prints what is new, takes a picture of each text, clicks once."""

    def __init__(self, app, pictures):
        self.app = app
        self.pictures = pictures
        self.saved = []
        self._begin = time.monotonic()
        self._events_told = 0
        self._shown = None
        self._clicked = False

    def run(self, seconds):
        """Whether the program was still alive at the end."""
        while time.monotonic() - self._begin < seconds:
            if not self.app.is_running():
                return False
            # In this order, so that the cause is told before what it brought about.
            shown = self._text_shown()
            self._tell_events()
            self._follow(shown)
            time.sleep(0.02)
        return True

    def say(self, text):
        print(f"{time.monotonic() - self._begin:6.1f} s  {text}", flush=True)

    def finish(self):
        """Quits the program; its exit status."""
        self.say("quitting")
        status = self.app.quit()
        self._tell_events()
        self.say(f"program left with exit status {status}")
        return status

    def _tell_events(self):
        events = self.app.journal()
        for event in events[self._events_told:]:
            text = told(event)
            if text:
                self.say(text)
        self._events_told = len(events)

    def _text_shown(self):
        """The status line or what stands in its place; None while there is no window."""
        return next((text for text in self.app.texts() if not re.fullmatch(r"[\d.]+", text)), None)

    def _follow(self, shown):
        if shown is None or shown == self._shown:
            return
        self._shown = shown
        self.say(f"status shown: {shown.replace('<br>', '')}")
        self._take_picture(shown)
        if shown == "Started and ready" and not self._clicked:
            self._clicked = True
            self.say("clicking Manual Calibration")
            self.app.click("Manual Calibration")

    def _take_picture(self, shown):
        words = re.sub(r"\W+", "-", shown.lower().replace("<br>", " ")).strip("-")
        path = self.pictures / f"{len(self.saved) + 1}-{words}.png"
        time.sleep(PAINTING)
        self.app.screenshot(path)
        if self._text_shown() == shown:
            self.saved.append(path)
        else:
            # Too late: it may show what came next.
            path.unlink()


def main():
    seconds, scenario, pictures = float(sys.argv[1]), *map(pathlib.Path, sys.argv[2:4])
    # So that everything is cleared away also when the run is ended from outside.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    adopt_orphans()
    pictures.mkdir(parents=True, exist_ok=True)
    for old in pictures.glob("*.png"):
        old.unlink()
    with stage(scenario.read_text()) as app:
        app.start()
        show = Show(app, pictures)
        show.say("program started on a virtual screen")
        alive = show.run(seconds)
        status = show.finish() if alive else app.wait()
        print("Screenshots:", *show.saved, sep="\n  ")
        if not alive:
            print(f"The program died with exit status {status}. The end of its log:",
                  *app.log()[-20:], sep="\n  ", file=sys.stderr)
    return 0 if alive and status == 0 else 1


if __name__ == "__main__":
    sys.exit(main())

"""Takes a picture of the window in each of its states, and of what else the program puts on a
desktop; scripts/screenshots calls it.

usage: pictures.py DIRECTORY [NAME...]    only those of these names
"""

import functools
import os
import pathlib
import signal
import sys
import time

from PIL import Image

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests/outside"))

from language import stage  # noqa: E402
from rig import adopt_orphans, wait_for  # noqa: E402
from scenes import SCENES  # noqa: E402

COLOURS = 96  # of a picture, which keeps it small
PAINTING = 1.2  # s until what is told is painted, and an animation has something to show
SLOW_RATE = 30  # Hz


def click_splash_away(app):
    app.wait_until_shows("Starting up...")
    wait_for(lambda: len(app.windows()) == 2, what="the splash over the window")
    width, height = app.desktop.size()
    app.desktop.click(width // 2, height // 2)
    wait_for(lambda: len(app.windows()) == 1, what="an end of the splash")


def click_calibration(app):
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")


def ask_for_auto_calibration(app):
    app.wait_until_shows("Started and ready")
    app.click("Auto Calibration")


def open_settings(app):
    app.wait_until_shows("Started and ready")
    app.click("Settings")
    wait_for(lambda: app.clickable("Sensor Viewer"), what="the settings")


def slow_down(app):
    """The window looks at the display's rate when it is made, so the program is started again."""
    app.quit()
    app.desktop.set_mode(1920, 1080, SLOW_RATE)
    app.start()


def kill_engine(app):
    app.wait_until_shows("Started and ready")
    os.kill(app.engine_pid(), signal.SIGKILL)


# Name, scenario, what brings the state about, the text that tells it has come.
STATES = (
    ("starting", "unwritten\n", click_splash_away, "Starting up..."),
    ("not-connected", "at 0 status -1\n", None, "Not connected"),
    ("ready", "at 0 status 0\n", None, "Started and ready"),
    ("loading", "at 0 status 0\non m status 2\n", click_calibration, "Loading..."),
    ("not-calibrated", "at 0 status -6\n", None, "not calibrated"),
    ("restarting", "start 2-\nunwritten\n", kill_engine, "please wait"),
    ("given-up", "unwritten\nat 0 exit 1\n", None, "please restart"),
    ("settings", "at 0 status 0\n", open_settings, None),
    ("advice", "at 0 status 0\n", ask_for_auto_calibration, "Auto calibration depends"),
    ("rate-warning", "at 0 status 0\n", slow_down, "To get real-time"),
)


def state(scenario, act, text, path):
    """Saves the window in one state."""
    with stage(scenario) as app:
        app.start()
        if act:
            act(app)
        if text:
            app.wait_until_shows(text)
        app.desktop.run("xdotool", "mousemove", 5, 5)
        time.sleep(PAINTING)
        app.screenshot(path)
    Image.open(path).convert("RGB").quantize(COLOURS, dither=Image.Dither.NONE).save(
        path, optimize=True)


def main():
    directory = pathlib.Path(sys.argv[1])
    directory.mkdir(parents=True, exist_ok=True)
    adopt_orphans()
    pictures = {name: functools.partial(state, *how) for name, *how in STATES}
    pictures.update(SCENES)
    for name in sys.argv[2:] or pictures:
        path = directory / f"{name}.png"
        pictures[name](path)
        print(path, flush=True)


if __name__ == "__main__":
    main()

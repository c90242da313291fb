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

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests/outside"))

from rig import adopt_orphans, stage, wait_for  # noqa: E402
from scenes import SCENES  # noqa: E402


def click_splash_away(app):
    app.wait_until_shows("Starting up...")
    wait_for(lambda: len(app.windows()) == 2, what="the splash over the window")
    width, height = map(int, app.desktop.run("xdotool", "getdisplaygeometry").split())
    app.desktop.click(width // 2, height // 2)
    wait_for(lambda: len(app.windows()) == 1, what="an end of the splash")


def click_calibration(app):
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")


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
)


def state(scenario, act, text, path):
    """Saves the window in one state."""
    with stage(scenario) as app:
        app.start()
        if act:
            act(app)
        app.wait_until_shows(text)
        time.sleep(0.5)  # until what is told is painted, too
        app.screenshot(path)


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

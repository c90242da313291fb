"""Takes a picture of the window in each of its states; scripts/screenshots calls it.

usage: pictures.py DIRECTORY
"""

import os
import pathlib
import signal
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests/outside"))

from rig import adopt_orphans, stage  # noqa: E402


def click_calibration(app):
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")


def kill_engine(app):
    app.wait_until_shows("Started and ready")
    os.kill(app.engine_pid(), signal.SIGKILL)


# Name, scenario, what brings the state about, the text that tells it has come.
STATES = (
    ("starting", "unwritten\n", None, "Starting up..."),
    ("not-connected", "at 0 status -1\n", None, "Not connected"),
    ("ready", "at 0 status 0\n", None, "Started and ready"),
    ("loading", "at 0 status 0\non m status 2\n", click_calibration, "Loading..."),
    ("not-calibrated", "at 0 status -6\n", None, "not calibrated"),
    ("restarting", "start 2-\nunwritten\n", kill_engine, "please wait"),
    ("given-up", "unwritten\nat 0 exit 1\n", None, "please restart"),
)


def main():
    directory = pathlib.Path(sys.argv[1])
    directory.mkdir(parents=True, exist_ok=True)
    adopt_orphans()
    for name, scenario, act, text in STATES:
        with stage(scenario) as app:
            app.start()
            if act:
                act(app)
            app.wait_until_shows(text)
            time.sleep(0.5)  # until what is told is painted, too
            app.screenshot(directory / f"{name}.png")
        print(directory / f"{name}.png", flush=True)


if __name__ == "__main__":
    main()

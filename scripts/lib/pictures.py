"""Takes a picture of the window in each of its states; scripts/screenshots calls it.

usage: pictures.py DIRECTORY [STATE...]
"""

import os
import pathlib
import signal
import sys
import time

from PIL import Image

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests/outside"))

from rig import adopt_orphans, stage, wait_for  # noqa: E402

COLOURS = 96  # of a picture, which keeps it small
PAINTING = 1.2  # s until what is told is painted, and an animation has something to show
SLOW_MODE = ("slow", "79.75", "1920", "1976", "2168", "2416", "1080", "1083", "1088", "1102")  # 30 Hz


def slow_down(desktop):
    desktop.run("xrandr", "--newmode", *SLOW_MODE)
    desktop.run("xrandr", "--addmode", "screen", "slow")
    desktop.run("xrandr", "--output", "screen", "--mode", "slow")


def click_splash_away(app):
    app.wait_until_shows("Starting up...")
    app.desktop.click(960, 540)


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


def kill_engine(app):
    app.wait_until_shows("Started and ready")
    os.kill(app.engine_pid(), signal.SIGKILL)


# By name: scenario, what brings the state about, the text that tells it has come.
STATES = {
    "splash": ("unwritten\n", None, "Starting up..."),
    "starting": ("unwritten\n", click_splash_away, "Starting up..."),
    "not-connected": ("at 0 status -1\n", None, "Not connected"),
    "ready": ("at 0 status 0\n", None, "Started and ready"),
    "loading": ("at 0 status 0\non m status 2\n", click_calibration, "Loading..."),
    "not-calibrated": ("at 0 status -6\n", None, "not calibrated"),
    "restarting": ("start 2-\nunwritten\n", kill_engine, "please wait"),
    "given-up": ("unwritten\nat 0 exit 1\n", None, "please restart"),
    "settings": ("at 0 status 0\n", open_settings, None),
    "advice": ("at 0 status 0\n", ask_for_auto_calibration, "Auto calibration depends"),
    "rate-warning": ("at 0 status 0\n", None, "To get real-time"),
}


def take(app, state, path):
    _, act, text = STATES[state]
    if state == "rate-warning":
        slow_down(app.desktop)
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
    for state in sys.argv[2:] or STATES:
        with stage(STATES[state][0]) as app:
            take(app, state, directory / f"{state}.png")
        print(directory / f"{state}.png", flush=True)


if __name__ == "__main__":
    main()

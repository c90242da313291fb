"""Every entry of the menus, chosen by mouse, screen reader and keyboard."""

import pytest

from rig import HANDS, wait_for

READY = "Started and ready"
SUPPORT = "https://support.vireon.example/"
PAGES = {"Troubleshoot": SUPPORT + "kb", "Video Tutorial": SUPPORT + "kb/installation-videos",
         "Get Help": SUPPORT + "tickets/new?department=1"}


@pytest.fixture(params=["mouse", "reader", "enter"])
def hand(request):
    return HANDS[request.param]


@pytest.fixture
def ready(app):
    app.wait_until_shows(READY)
    return app


def test_hide(ready, hand):
    hand.choose(ready, "File", "Hide")
    ready.wait_until_hidden()
    assert ready.is_running() and ready.letters() == []


def test_exit(ready, hand):
    hand.choose(ready, "File", "Exit")
    assert ready.wait() == 0
    assert ready.letters() == ["Q"]


def test_update_firmware(install, hand):
    app = install(scenario="at 0 firmware 1\n").start()
    app.wait_until_shows(READY)
    hand.choose(app, "File", "Update Firmware")
    app.wait_until_shows("A new firmware (Ver. 1.2) is available (you have Ver. 1.1).")
    hand.press(app, "Exit")
    wait_for(lambda: not app.shows("A new firmware"), what="a closed box")
    assert app.is_running() and app.letters() == []


def test_reset(ready, hand):
    hand.choose(ready, "Calibration", "Reset")
    ready.wait_until_shows("Started, Vireon not calibrated.")
    wait_for(lambda: ready.letters() == ["0"], what="the letter 0")


def test_pages_of_the_support(install, directory, hand):
    opened = directory / "opened"
    browser = directory / "bin" / "xdg-open"
    browser.parent.mkdir()
    browser.write_text(f'#!/bin/sh\necho "$1" >> {opened}\n')
    browser.chmod(0o755)
    app = install(environment={"PATH": f"{browser.parent}:/usr/bin:/bin"}).start()
    app.wait_until_shows(READY)
    for count, entry in enumerate(PAGES, start=1):
        hand.choose(app, "Help", entry)
        wait_for(lambda: opened.exists() and len(opened.read_text().splitlines()) == count,
                 what=f"the page of {entry}")
    assert opened.read_text().splitlines() == list(PAGES.values())

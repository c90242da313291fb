"""Messages in a tray that only embeds windows, where no notification service shows them."""

import re

import pytest
from PIL import Image

from rig import wait_for

PAPER = (0xff, 0xff, 0xe1)  # of Qt's own balloon
OURS = {(0x1d, 0x27, 0x33), (0x2c, 0x3d, 0x50), (0x00, 0x77, 0xca), (0x00, 0x58, 0x96)}
READABLE = 4.5


def luminance(colour):
    parts = [part / 255 for part in colour]
    linear = [part / 12.92 if part <= 0.03928 else ((part + 0.055) / 1.055) ** 2.4
              for part in parts]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def contrast(one, other):
    darker, lighter = sorted((luminance(one), luminance(other)))
    return (lighter + 0.05) / (darker + 0.05)


@pytest.fixture
def tray(desktop):
    desktop.start("trayer", "--edge", "bottom", "--align", "right", "--height", "28")
    wait_for(lambda: "_NET_SYSTEM_TRAY_S0" in desktop.run("xlsatoms")
             and "panel" in desktop.run("xwininfo", "-root", "-tree"), what="a tray")


def balloon(app):
    """The picture of it, or None."""
    for found in re.finditer(r'(0x[0-9a-f]+) "vireon": .*?\)  (\d+)x(\d+)\+',
                             app.desktop.run("xwininfo", "-root", "-tree")):
        path = app.directory / "balloon.png"
        window, height = found[1], int(found[3])
        if 40 < height < 200 and "IsViewable" in app.desktop.run("xwininfo", "-id", window):
            app.desktop.run("import", "-window", window, path)
            picture = Image.open(path).convert("RGB")
            if picture.getpixel((picture.width // 2, 8)) == PAPER:
                return picture
    return None


def test_balloon_can_be_read(tray, install):
    app = install(scenario="at 0 status -6\n").start()
    app.wait_until_shows("not calibrated")
    picture = wait_for(lambda: balloon(app), what="the balloon")
    colours = [colour for _, colour in sorted(picture.getcolors(1 << 20), reverse=True)]
    assert colours[0] == PAPER
    assert not OURS & set(colours)
    # The letters: no colour but the paper's and what lies between it and theirs.
    left, upper, right, lower = 0, picture.height // 2, picture.width, picture.height - 12
    letters = picture.crop((left, upper, right, lower)).getcolors(1 << 20)
    assert max(contrast(colour, PAPER) for _, colour in letters) >= READABLE

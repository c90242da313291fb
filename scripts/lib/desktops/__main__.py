"""Tries the program on real desktops and writes what came of it; scripts/desktops calls it.

usage: desktops PAGE [NAME...]    only the desktops whose names begin so
"""

import contextlib
import functools
import pathlib
import platform
import shutil
import signal
import subprocess
import sys
import tempfile

import pytest
from PIL import Image

sys.path[:0] = [str(pathlib.Path(__file__).parents[1]),
                str(pathlib.Path(__file__).parents[3] / "tests/outside")]

import checks  # noqa: E402
import kinds  # noqa: E402
import machine  # noqa: E402
from page import Page  # noqa: E402
from rig import App, TextSize, adopt_orphans, stage  # noqa: E402
from rig.app import built_programs  # noqa: E402

LAUNCHER = pathlib.Path(__file__).parents[3] / "packaging/Vireon.sh"
GNOME = ("gnome-shell", "gjs", "xwayland", "python3-dbusmock")
MATE = ("marco", "mate-panel", "mate-notification-daemon")
SESSION = (*MATE, "mate-session-manager", "mate-settings-daemon")
UNITY = {"XDG_CURRENT_DESKTOP": "Unity"}
# Name, kind, kind of the log-out's, variables of the program, packages.
DESKTOPS = (
    ("GNOME with indicators", kinds.GnomeWithIndicators, kinds.GnomeWithIndicators, {},
     (*GNOME, "gnome-shell-extension-appindicator")),
    ("GNOME", kinds.GnomeShell, kinds.GnomeShell, {}, GNOME),
    ("MATE", kinds.MatePanel, kinds.MateLogin, {}, SESSION),
    ("Unity's indicators", kinds.UnityIndicators, kinds.UnityIndicators, UNITY,
     (*MATE, "ayatana-indicator-application", "mate-indicator-applet")),
    ("openbox", kinds.Bare, kinds.Bare, {}, ("xvfb", "openbox")),
)
# Where the indicator's icon is looked for, and the directory above that every machine has.
INSTALLED, ABOVE = pathlib.Path("/usr/local/bin/Vireon"), pathlib.Path("/usr/local/bin")
WIDTH = 960  # px of a picture
COLOURS = 128
# Those for the page, by the ends of their names.
PICTURES = ("message", "menu", "window", "large-text")


def missing_of(packages):
    told = subprocess.run(["dpkg-query", "-W", "-f", "${db:Status-Status} ${Package}\n", *packages],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
    there = {line.split()[1] for line in told.splitlines() if line.startswith("installed ")}
    return [name for name in packages if name not in there]


def judged(page, desktop, row, check):
    """Tries one thing and writes its cell."""
    try:
        note = check()
        verdict = "yes"
    except kinds.NotTried as why:
        verdict, note = "not tried", str(why)
    except (AssertionError, OSError, subprocess.SubprocessError) as fault:
        verdict, note = "**no**", str(fault).splitlines()[0].partition("; last: ")[0]
    page.add(desktop, row, verdict, note)
    print(f"{desktop:<24}{row:<60}{verdict}{': ' + note if note else ''}", flush=True)
    return verdict != "**no**"


def try_all(page, name, kind, variables, place):
    """All rows but the log-out; whether none failed."""
    with stage(checks.SCENARIO, kind, environment=variables) as app:
        text_size = TextSize(app.desktop)
        app.desktop.prepare()
        app.start()
        trial = checks.Trial(app, text_size, place, variables)
        app.wait_until_shows(checks.READY)
        return all([judged(page, name, row, functools.partial(check, trial))
                    for row, check in checks.CHECKS.items()])


@contextlib.contextmanager
def logged_in(kind, variables):
    """Gives the started program on a desktop that can be logged out of: started by the session where
    there is one. Its engine takes no commands."""
    directory = pathlib.Path(tempfile.mkdtemp(prefix="vireon-"))
    place = directory / "desktop"
    place.mkdir()
    app = App(None, directory / "copy", environment=variables, scenario="at 0 status -1\n")
    try:
        if kind is kinds.MateLogin:
            app.desktop = kind(place, vireon=app.starter(LAUNCHER))
            app.found()
        else:
            app.desktop = kind(place)
            app.desktop.prepare()
            app.start()
        yield app
    finally:
        app.cleanup()
        if app.desktop:
            app.desktop.stop()
        shutil.rmtree(directory)


def try_log_out(page, name, kind, variables):
    """The last row."""
    with logged_in(kind, variables) as app:
        app.wait_until_shows("Not connected")
        return judged(page, name, checks.LOG_OUT, functools.partial(checks.log_out, app))


def small(path):
    """Makes a picture one for a page."""
    picture = Image.open(path).convert("RGB")
    picture.thumbnail((WIDTH, WIDTH), Image.LANCZOS)
    picture.quantize(COLOURS, dither=Image.Dither.NONE).save(path, optimize=True)


def try_desktop(page, place, name, kind, log_out_kind, variables, packages):
    """A column of the table; whether nothing in it failed."""
    missing = missing_of(packages)
    why = f"not installed: {', '.join(missing)}"
    if not missing:
        try:
            good = try_all(page, name, kind, variables, place)
            return try_log_out(page, name, log_out_kind, variables) and good
        except pytest.skip.Exception as fault:
            why = str(fault)
    for row in (*checks.CHECKS, checks.LOG_OUT):
        page.add(name, row, "not tried", why if row == next(iter(checks.CHECKS)) else None)
    print(f"{name:<24}not tried: {why}", flush=True)
    return True


def show_icons():
    """Puts the icons where an installed program has them, for this process and its children alone."""
    if machine.separate():
        machine.SmallDisk(ABOVE, 1 << 20)
        INSTALLED.mkdir()
        for icon in pathlib.Path(built_programs()).parent.glob("share/vireon/*.png"):
            shutil.copy(icon, INSTALLED)


def main():
    path = pathlib.Path(sys.argv[1])
    wanted = sys.argv[2:]
    # So that everything is cleared away also when the run is ended from outside.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    adopt_orphans()
    show_icons()
    pictures = path.with_suffix("")
    shutil.rmtree(pictures, ignore_errors=True)
    pictures.mkdir(parents=True)
    page = Page(platform.freedesktop_os_release()["PRETTY_NAME"])
    good = []
    found = []
    for name, *how in DESKTOPS:
        if wanted and not any(name.startswith(one) for one in wanted):
            continue
        place = pictures / name.lower().replace("'", "").replace(" ", "-")
        good.append(try_desktop(page, place, name, *how))
        for picture in sorted(pictures.glob(f"{place.name}-*.png")):
            if picture.stem.removeprefix(f"{place.name}-") in PICTURES:
                small(picture)
                found.append((name, f"{pictures.name}/{picture.name}"))
    page.write(path, found)
    return 0 if all(good) else 1


if __name__ == "__main__":
    sys.exit(main())

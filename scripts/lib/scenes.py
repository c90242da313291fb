"""What the program puts on a desktop beside its window's states: one function per picture.

Each one takes the path of its picture. SCENES names them.
"""

import contextlib
import functools
import re
import subprocess
import tempfile
import time

from language import stage
from rig import App, Indicator, Mate, Subject, TextSize, views, wait_for
from rig.indicator import start_host
from rig.mate import INDICATORS

READY = "Started and ready"
LOCALES = {"german": "de_DE", "japanese": "ja_JP"}
# What the menus and the prompt are also shown in: by the ending of a picture's name, the language
# and the dots per inch.
VARIANTS = {"": ("english", 96), "-de": ("german", 96), "-ja": ("japanese", 96),
            "-192": ("english", 192)}
BRANDS = {"qor": 0, "tal": 1, "wendle": 2, "marrowby": 4}
MARGIN = 40  # px of the desktop around what a picture is about
PAINTING = 0.7  # s until what is told is painted, too


def picture(desktop, path, left, upper, right, lower):
    """Saves this part of the screen."""
    time.sleep(PAINTING)
    left, upper = max(0, left), max(0, upper)
    desktop.run("import", "-window", "root", "-crop",
                f"{right - left}x{lower - upper}+{left}+{upper}", "+repage", path)


def corner(desktop, path, lower):
    """Saves the lower or upper right corner of the screen."""
    width, height = desktop.size()
    picture(desktop, path, width - 500, height - 200 if lower else 0, width,
            height if lower else 200)


def around_window(app, path, margin=MARGIN, window=None):
    """Saves a window, the program's topmost one, with the desktop around it."""
    window = window or wait_for(app.windows, what="a window")[-1]
    told = app.desktop.run("xdotool", "getwindowgeometry", "--shell", window)
    place = {name: int(value) for name, value in re.findall(r"(X|Y|WIDTH|HEIGHT)=(\d+)", told)}
    picture(app.desktop, path, place["X"] - margin, place["Y"] - margin,
            place["X"] + place["WIDTH"] + margin, place["Y"] + place["HEIGHT"] + margin)


def set_brand(app, brand):
    path = app.programs / "config/vireon.conf"
    path.write_text(re.sub(r"(?m)^brand=.*", f"brand={brand}", path.read_text()))


@contextlib.contextmanager
def variant_stage(scenario, language, dpi):
    """A stage in another language and text size."""
    with tempfile.TemporaryDirectory(prefix="vireon-") as place:
        variables = {}
        if language in LOCALES:
            locale = LOCALES[language]
            subprocess.run(["localedef", "-i", locale, "-f", "UTF-8", f"{place}/{locale}.UTF-8"],
                           check=True)
            variables = {"LANG": f"{locale}.UTF-8", "LOCPATH": place}
        with stage(scenario, environment=variables) as app:
            TextSize(app.desktop, dpi)
            yield app


def menu(title, variant, path):
    language, dpi = VARIANTS[variant]
    with variant_stage("at 0 status 0\n", language, dpi) as app:
        app.start().wait_until_shows(views.READY[language])
        app.click(title.called(language))
        around_window(app, path)


def splash(code, path):
    with stage("unwritten\n") as app:
        set_brand(app, BRANDS[code])
        app.start()
        wait_for(lambda: app.log_count("Run Vireon"), what="the program's start")
        around_window(app, path, 100)


def firmware_prompt(code, variant, path):
    language, dpi = VARIANTS[variant]
    with variant_stage("at 0 status 0 firmware 1\n", language, dpi) as app:
        set_brand(app, BRANDS[code])
        app.start().wait_until_shows(views.READY[language])
        app.click(next(iter(views.MENUS)).called(language))
        app.click(views.FIRMWARE.called(language))
        app.wait_until_shows("1.2")  # the version that it offers
        around_window(app, path)


def second_start(path):
    with stage("at 0 status 0\n") as app:
        app.start().wait_until_shows(READY)
        second = App(app.desktop, app.directory / "second", home=app.home,
                     environment={"TMPDIR": str(app.temporary)})
        second.start().wait_until_shows("already running")
        around_window(second, path)
        second.cleanup()


def log_window(path):
    with stage() as app:
        app.start().wait_until_shows(READY)
        lines = app.log()
        app.quit()
        windows = Subject(app.desktop, app.directory / "windows", "windowsubject").ready()
        for line in lines:
            windows.send("append", line)
        windows.send("show")
        wait_for(lambda: "Log Window" in app.desktop.run("wmctrl", "-l"), what="the log window")
        frame = app.desktop.run("xdotool", "search", "--name", "Log Window").split()[0]
        around_window(app, path, window=frame)
        windows.end()


def tray(path):
    with stage("at 0 status 0\n", Mate) as app:
        start_in_tray(app)
        corner(app.desktop, path, lower=True)


def tray_menu(path):
    with stage("at 0 status 0\n", Mate) as app:
        start_in_tray(app)
        app.desktop.click_icon(3)
        corner(app.desktop, path, lower=True)


def balloon(path):
    with stage("at 0 status -6\n", Mate) as app:
        start_in_tray(app)
        bus = app.desktop.bus()
        bus.wait_for_owner("org.freedesktop.Notifications")
        corner(app.desktop, path, lower=False)


def start_in_tray(app):
    bus = app.desktop.bus()
    bus.wait_for_owner("org.kde.StatusNotifierWatcher")
    app.start()
    wait_for(app.desktop.icon, what="an icon")
    wait_for(lambda: app.log_count("statuslistener"), what="a report")


def indicator_menu(path):
    kind = functools.partial(Mate, applet=INDICATORS)
    with stage("at 0 status 0\n", kind, environment={"XDG_CURRENT_DESKTOP": "Unity"}) as app:
        bus = app.desktop.bus()
        start_host(app.desktop, bus)
        app.start().wait_until_shows(READY)
        wait_for(Indicator(bus).entries, what="a menu")
        time.sleep(PAINTING)
        app.desktop.click(1910, 1068)
        corner(app.desktop, path, lower=True)


SCENES = {
    **{f"menu-{title.english.lower()}{variant}": functools.partial(menu, title, variant)
       for variant in VARIANTS for title in views.MENUS},
    **{f"splash-{code}": functools.partial(splash, code) for code in BRANDS},
    **{f"firmware-prompt{variant}": functools.partial(firmware_prompt, "qor", variant)
       for variant in VARIANTS},
    "firmware-prompt-tal": functools.partial(firmware_prompt, "tal", ""),
    "second-start": second_start,
    "log-window": log_window,
    "tray": tray,
    "tray-menu": tray_menu,
    "balloon": balloon,
    "indicator-menu": indicator_menu,
}

"""The program in the indicator area, as on Unity, from the other side of the bus."""

import pathlib

import pytest

from rig import Dunst, Indicator, wait_for
from rig.indicator import start_host
from rig.processes import maps_of

UNITY = {"XDG_CURRENT_DESKTOP": "Unity"}
LIBRARY = "libayatana-appindicator.so.1"
HINT_WITHOUT_TRAY = "Running in background. Start Vireon again to open the window."

LABELS = {"C.UTF-8": ["Open", "Exit"], "de_DE.UTF-8": ["Öffnen", "Beenden"],
          "ja_JP.UTF-8": ["開く", "終了"]}


@pytest.fixture
def start(desktop, bus, install, locales):
    """start(language): the started program and its indicator."""
    start_host(desktop, bus)

    def start(language):
        app = install(environment={**UNITY, "LANG": language,
                                   "LOCPATH": str(locales)}).start()
        wait_for(lambda: app.log_count(r"statuslistener\s+\"?0"), what="the ready engine")
        return app, Indicator(bus)

    return start


@pytest.mark.parametrize("language", LABELS)
def test_entries_show_the_window_and_quit(desktop, start, language):
    app, indicator = start(language)
    entries = wait_for(indicator.entries, what="a menu")
    assert [properties["label"] for _, properties in entries] == LABELS[language]
    (open_entry, _), (exit_entry, _) = entries
    wait_for(app.windows, what="the window")
    desktop.run("wmctrl", "-c", "Vireon")
    app.wait_until_hidden()
    indicator.click(open_entry)
    wait_for(app.windows, what="the window again")
    assert app.letters() == []
    indicator.click(exit_entry)
    assert app.wait() == 0
    assert app.letters() == ["Q"]


def test_item_has_the_installed_icon(start):
    _, indicator = start("C.UTF-8")
    assert indicator.property("IconName") == "/usr/local/bin/Vireon/CorvanthelSmall.png"
    assert indicator.property("Status") == "Active"


def test_named_theme_brings_no_other_gtk(bus, desktop, install):
    start_host(desktop, bus)
    app = install(environment={**UNITY, "QT_QPA_PLATFORMTHEME": "gtk3"}).start()
    assert Indicator(bus).property("Status") == "Active"
    mapped = maps_of(app.pid)
    assert not any(name.startswith("libgtk-3.so") for name in mapped)
    assert any(name.startswith("libgtk-x11-2.0.so") for name in mapped)
    # What the program starts gets the variable as it was.
    variables = pathlib.Path(f"/proc/{app.engine_pid()}/environ").read_text().split("\0")
    assert "QT_QPA_PLATFORMTHEME=gtk3" in variables
    assert "XDG_CURRENT_DESKTOP=Unity" in variables


def test_hint_without_an_indicator_tells_another_way_back(desktop, install, directory):
    daemon = Dunst(desktop)
    (directory / LIBRARY).write_text("no library")
    app = install(environment={**UNITY, "LD_LIBRARY_PATH": str(directory)}).start()
    app.wait_until_shows("Started and ready")
    assert app.log_count("no indicator: ") == 1
    wait_for(app.windows, what="the window")
    desktop.run("wmctrl", "-c", "Vireon")
    messages = wait_for(daemon.messages, what="the hint")
    assert [message.body for message in messages] == [HINT_WITHOUT_TRAY]

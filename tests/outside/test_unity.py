"""The program in the indicator area, as on Unity, from the other side of the bus."""

import pytest

from rig import Indicator, wait_for
from rig.indicator import start_host

LABELS = {"C.UTF-8": ["Open", "Exit"], "de_DE.UTF-8": ["Öffnen", "Beenden"],
          "ja_JP.UTF-8": ["開く", "終了"]}


@pytest.fixture
def start(desktop, bus, install, locales):
    """start(language): the started program and its indicator."""
    start_host(desktop, bus)

    def start(language):
        app = install(environment={"XDG_CURRENT_DESKTOP": "Unity", "LANG": language,
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

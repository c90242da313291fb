"""GTK 2 and GTK 3 never meet in the program, where Qt's GTK 3 theme is installed."""

import pytest

from rig import wait_for
from rig.indicator import start_host
from rig.processes import maps_of


@pytest.mark.parametrize("name, gtk2, gtk3", [("GNOME", False, True), ("MATE", False, True),
                                              ("Unity", True, False), (None, False, False)])
def test_desktop_has_its_own_gtk(desktop, bus, install, name, gtk2, gtk3):
    start_host(desktop, bus)
    app = install(environment={"XDG_CURRENT_DESKTOP": name}, scenario="at 0 status 0 firmware 1\n")
    app.start()
    app.wait_until_shows("Started and ready")

    def loaded(library):
        return any(mapped.startswith(library) for mapped in maps_of(app.pid))
    # What each desktop brings, once everything that could bring it has been used.
    app.click("File")
    app.click("Update Firmware")
    app.wait_until_shows("A new firmware (Ver. 1.2) is available")
    app.key("Escape")
    wait_for(lambda: not app.shows("A new firmware"), what="an end of the box")
    app.hide()
    assert (loaded("libgtk-x11-2.0.so"), loaded("libgtk-3.so")) == (gtk2, gtk3)
    assert app.quit() == 0
    assert app.letters() == ["Q"]

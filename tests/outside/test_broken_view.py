"""A program whose main view cannot be loaded, as after an update of Qt alone."""

import shutil

import pytest

from rig import Mate, wait_for

TEXT = "The main view cannot be loaded. Please install Vireon again."
WATCHER = "org.kde.StatusNotifierWatcher"


@pytest.fixture
def broken(install):
    """A copy beside which lies a QtQuick module that lacks its plug-in: it is found first."""
    app = install()
    app.allow(r"QtQuick|^ +\^?$|" + TEXT)
    module = app.programs / "QtQuick.2"
    module.mkdir()
    (module / "qmldir").write_text("module QtQuick\nplugin missing\n")
    return app


@pytest.mark.parametrize("make_desktop", [Mate])
@pytest.mark.parametrize("end", ["box", "signal"])
def test_program_says_so_and_ends(desktop, bus, broken, end):
    bus.wait_for_owner(WATCHER)
    broken.start()
    broken.wait_until_shows(TEXT)
    # Neither splash nor window nor icon: nothing is there to be used but the box.
    (box,) = wait_for(lambda: len(broken.windows()) == 1 and broken.windows(), what="a box alone")
    assert "_NET_WM_STATE_ABOVE" in desktop.run("xprop", "-id", box, "_NET_WM_STATE")
    assert "Vireon" in desktop.run("xprop", "-id", box, "_NET_WM_NAME")
    wait_for(lambda: not desktop.icon(), what="a panel without the icon")
    if end == "box":
        broken.act("OK")
        assert broken.wait() == 1
    else:
        assert broken.quit() == 1
    assert broken.log_count("starting") == 0 and broken.journal() == []
    # The next start finds no marker.
    shutil.rmtree(broken.programs / "QtQuick.2")
    broken.start()
    broken.wait_until_shows("Started and ready")

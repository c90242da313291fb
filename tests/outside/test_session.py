"""A whole MATE session: the program starts with it and never holds its end up."""

import os
import pathlib
import signal
import time

import pytest

from rig import App, MateSession, wait_for

LAUNCHER = pathlib.Path(__file__).parents[2] / "packaging/Vireon.sh"
MANAGER = ("org.gnome.SessionManager", "/org/gnome/SessionManager", "org.gnome.SessionManager")
FORCED = 1  # how to log out: without asking anybody


@pytest.fixture
def scenario():
    """The simulated engine's; a test may replace it."""
    return None


@pytest.fixture
def installed(directory, scenario):
    """The copy that starts with the session, before there is one."""
    app = App(None, directory / "autostarted", scenario=scenario)
    yield app
    app.cleanup()


@pytest.fixture
def make_desktop(installed):
    return lambda place: MateSession(place, vireon=installed.starter(LAUNCHER))


@pytest.fixture
def app(desktop, installed, scenario):
    """The copy that started with the session. As every new one it was told to save its state."""
    installed.desktop = desktop
    app = installed.found()
    app.wait_until_shows("Not connected" if scenario else "Started and ready")
    wait_for(lambda: desktop.saves("./vireon"), what="a saved state")
    return app


def log_out(bus):
    """Ends the session; how long that took, in s."""
    begin = time.monotonic()
    bus.call(*MANAGER, "Logout", "(u)", FORCED)
    wait_for(lambda: not bus.has_owner(MANAGER[0]), what="an end of the session")
    return time.monotonic() - begin


def expect_clean_end(app):
    assert app.wait() == 0
    assert app.log_count("Quit Vireon clicked") == 1
    app.wait_for_end_of_all()
    assert app.letters() == ["Q"] and app.engine_signals() == [] and app.engine_ends() == ["0"]
    assert app.faults() == []


def test_tray_icon_is_there_after_log_in(desktop, app):
    wait_for(desktop.icon, what="an icon on the panel")
    # Saving alone is no end.
    assert app.is_running() and app.letters() == []


def test_log_out_runs_the_quit_sequence(bus, app):
    assert log_out(bus) < 10
    expect_clean_end(app)


@pytest.mark.parametrize("scenario", ["at 0 status -1\non sigterm after 3000 exit 0\n"])
def test_log_out_leaves_an_engine_its_time(bus, app):
    assert log_out(bus) < 10
    assert app.wait() == 0
    app.wait_for_end_of_all()
    assert app.letters() == [] and app.engine_signals() == ["TERM"] and app.engine_ends() == ["0"]


def test_log_out_with_a_hidden_window(bus, desktop, app):
    desktop.run("wmctrl", "-c", "Vireon")
    app.wait_until_hidden()
    assert log_out(bus) < 10
    expect_clean_end(app)


def test_log_out_under_an_open_box(bus, desktop, app):
    (app.data / "pensettings.ini").write_text("Result=0\nFirmware=1\n")
    wait_for(lambda: app.log_count("firmware version: 1"), what="the old firmware")
    app.click("File")
    app.click("Update Firmware")
    app.wait_until_shows("A new firmware (Ver. 1.2) is available")
    assert log_out(bus) < 10
    expect_clean_end(app)


def test_death_of_the_session_manager_is_the_end(bus, app):
    manager = bus.owner_pid(MANAGER[0])
    os.kill(manager, signal.SIGKILL)
    expect_clean_end(app)
    # It had no time to do this itself.
    pathlib.Path(f"/tmp/.ICE-unix/{manager}").unlink(missing_ok=True)

"""The machine's sleep, where an administrator lets the program take part in it."""

import pytest

from rig import LoginManager, Traced, wait_for

DELAYS = [("sleep", "Vireon", "The engine has to let go of the camera", "delay")]


@pytest.fixture
def address(desktop):
    """One bus is both the session's and the system's here."""
    return desktop.environment["DBUS_SESSION_BUS_ADDRESS"]


@pytest.fixture
def start_manager(desktop, bus):
    return lambda: LoginManager(desktop, bus)


def start(install, address, *switches):
    app = install(environment={"DBUS_SYSTEM_BUS_ADDRESS": address}).switch_on(*switches).start()
    app.wait_until_shows("Started and ready")
    return app


def test_engine_ends_before_the_sleep_and_starts_after_it(install, address, start_manager):
    manager = start_manager()
    app = start(install, address, "sleep")
    wait_for(lambda: manager.delays() == DELAYS, what="a delay")
    for _ in range(2):
        first = app.engine_pid()
        manager.announce(True)
        wait_for(lambda: manager.delays() == [], what="no delay any more")
        assert app.engine_pids() == []
        manager.announce(False)
        wait_for(lambda: manager.delays() == DELAYS, what="a delay for the next sleep")
        assert app.engine_pid() != first
        app.wait_for_ready_engine()
    assert app.log_count("Vireon exited") == 0


def test_sleep_waits_for_the_engines_end_and_no_longer(install, address, start_manager):
    manager = start_manager()
    app = start(install, address, "sleep", "mailbox")
    wait_for(lambda: manager.delays() == DELAYS, what="a delay")
    with Traced(app.engine_pid()) as engine:
        manager.announce(True)
        engine.wait_for_end()
        # It has been told to end, and its end has not come to the program.
        assert app.control("hide").returncode == 0
        assert manager.delays() == DELAYS
    wait_for(lambda: manager.delays() == [], what="no delay any more")
    manager.announce(False)
    wait_for(lambda: manager.delays() == DELAYS, what="a delay for the next sleep")
    app.wait_for_ready_engine()


def test_engine_that_a_script_stops_allows_no_sleep(install, address, start_manager):
    manager = start_manager()
    app = start(install, address, "sleep", "mailbox")
    wait_for(lambda: manager.delays() == DELAYS, what="a delay")
    assert app.control("sleep").returncode == 0
    wait_for(lambda: app.engine_pids() == [], what="the engine's end")
    assert app.control("show").returncode == 0
    assert manager.delays() == DELAYS
    assert app.control("wake").returncode == 0
    app.wait_for_ready_engine()


def test_signals_of_others_are_passed_over(install, bus, address, start_manager):
    manager = start_manager()
    app = start(install, address, "sleep")
    wait_for(lambda: manager.delays() == DELAYS, what="a delay")
    before = app.engine_pid()
    bus.emit("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
             "(b)", True)
    manager.announce(False)  # behind it
    wait_for(lambda: app.log_count("woken up"), what="the login manager's word")
    assert app.log_count("going to sleep") == 0
    wait_for(lambda: app.engine_pids() and app.engine_pid() != before, what="the engine it starts")
    app.wait_for_ready_engine()


def test_login_manager_may_come_later(install, address, start_manager):
    app = start(install, address, "sleep")
    assert app.log_count("sleep is not delayed") == 1
    manager = start_manager()
    wait_for(lambda: manager.delays() == DELAYS, what="a delay")


def test_switched_off_takes_no_part(install, address, start_manager):
    manager = start_manager()
    app = start(install, address)
    before = app.engine_pid()
    manager.announce(True)
    app.click("Manual Calibration")
    wait_for(lambda: app.letters() == ["m"], what="the engine's letter")
    assert manager.delays() == [] and app.engine_pid() == before

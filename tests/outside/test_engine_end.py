"""What the engine and its tool meet when the program leaves, by the engine's own journal."""

import os
import signal

import pytest

from rig import wait_for

NEEDS_TIME = "on Q ignore\non sigterm after 3000 exit 0\n"
DEAF = "on Q|sigterm ignore\n"

# By the status at which the program quits: the engine, what the window says then, what is sent.
STATES = {
    -99: ("unwritten\n", "Starting up...", []),
    -1: ("at 0 status -1\n", "Not connected to Vireon", []),
    -10: ("unwritten\nstart 1\nat 500 exit 0\n", "A problem occured, please wait...", []),
    0: ("at 0 status 0\n", "Started and ready", ["Q"]),
    2: ("at 0 status 2\n", "Loading...", ["Q"]),
}


def quit_by_menu(app):
    app.click("File")
    app.click("Exit")
    return app.wait()


@pytest.mark.parametrize("status", STATES)
def test_engine_gets_one_sigterm_and_its_time(install, status):
    scenario, text, letters = STATES[status]
    app = install(scenario=NEEDS_TIME + scenario).start()
    app.wait_until_shows(text)
    engine = app.engine_pid()
    assert app.quit() == 0
    app.wait_for_end_of_all()
    (term,) = [event for event in app.requests_to_end() if event.pid == engine]
    (end,) = [event for event in app.journal("exit") if event.pid == engine]
    assert term.fields["signal"] == "TERM" and end.fields["code"] == "0"
    assert end.ms - term.ms >= 2900, "it had no time for its devices"
    assert app.letters() == letters


def test_engine_that_ends_on_the_command_gets_no_signal(app):
    app.wait_until_shows("Started and ready")
    assert quit_by_menu(app) == 0
    app.wait_for_end_of_all()
    assert app.letters() == ["Q"] and app.engine_signals() == []
    assert app.engine_ends() == ["0"]


def test_engine_ends_by_its_own_handler_after_the_menu(install):
    app = install(scenario="at 0 status -1\n").start()
    app.wait_until_shows("Not connected to Vireon")
    assert quit_by_menu(app) == 0
    app.wait_for_end_of_all()
    assert app.letters() == [] and app.engine_signals() == ["TERM"]
    assert app.engine_ends() == ["0"]


def test_deaf_engine_is_killed_in_the_end(install):
    app = install(scenario="at 0 status 0\n" + DEAF).start()
    app.wait_until_shows("Started and ready")
    engine = app.engine_pid()
    assert app.quit() == 0
    # The program did not wait for it.
    assert engine in app.engine_pids()
    app.wait_for_end_of_all()
    assert app.engine_signals() == ["TERM"] and app.engine_ends() == []


def test_frozen_engine_is_killed_in_the_end(app):
    app.wait_until_shows("Started and ready")
    engine = app.engine_pid()
    os.kill(engine, signal.SIGSTOP)
    assert app.quit() == 0
    assert engine in app.engine_pids()
    app.wait_for_end_of_all()
    assert app.engine_signals() == []


@pytest.mark.parametrize("freeze", [False, True], ids=["hangs", "frozen"])
def test_tool_does_not_outlive_the_quit(install, freeze):
    app = install(scenario="at 0 status 0\non m ignore\nanswer m hang\n").start()
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")
    wait_for(lambda: app.letters() == ["m"], what="the tool's letter")
    (tool,) = app.programs_running()["vireon-sdk"]
    if freeze:
        os.kill(tool, signal.SIGSTOP)
    assert app.quit() == 0
    app.wait_for_end_of_all()
    assert app.log_count("returned from") <= 1, "the quit's own tool alone has returned"
    assert app.faults() == []

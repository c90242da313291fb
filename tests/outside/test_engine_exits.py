"""Engines that end, and what becomes of the command that was under way."""

import os
import signal
import time

import pytest

from rig import is_running, wait_for

PROBLEM = "A problem occured, please wait..."


def test_killed_engine_is_replaced(install):
    # The second engine keeps silent at first, so that the message is there to be seen.
    app = install(scenario="start 2\nat 4000 status 0\n").start()
    app.wait_until_shows("Started and ready")
    engine = app.engine_pid()
    os.kill(engine, signal.SIGKILL)
    app.wait_until_shows(PROBLEM)
    app.wait_until_shows("Started and ready")
    assert app.engine_pid() != engine
    assert len(app.journal("start")) == 2
    assert app.letters() == []
    assert app.log_count(r"lastAction:\s+-1") == 1
    assert app.log_count(r"Send last action again") == 0


def test_engine_that_dies_of_a_command_does_not_get_it_again(install):
    app = install(scenario="start 1\non m signal SIGSEGV\nanswer m hang\n"
                           "start 2\nat 3000 status 0\n").start()
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")
    app.wait_until_shows(PROBLEM)
    app.wait_until_shows("Started and ready")
    assert app.log_count(r"lastAction:\s+-1") == 1
    assert app.letters() == ["m"]


@pytest.mark.parametrize("end", ["exit 1", "signal KILL"])
def test_engine_not_ready_and_dead_in_one_act_gets_the_command_again(install, end):
    # When the reader happens to look between the report and the death, the report itself ends
    # the command, and nothing is there to be sent again: the log tells, and the next try counts.
    for _ in range(6):
        app = install(scenario=f"start 1\non m status -1 then {end}\nanswer m hang\n").start()
        app.wait_until_shows("Started and ready")
        app.click("Manual Calibration")
        wait_for(lambda: app.log_count(r"lastAction:"), what="the exit of the engine")
        if not app.log_count(r"lastAction:\s+-1"):
            break
        app.quit()
    wait_for(lambda: app.letters(2), what="the command sent again")
    wait_for(lambda: app.log_count(r"Sdk successful") == 1, what="the end of the second tool")
    app.wait_until_shows("Started and ready")
    assert app.letters() == ["m", "m"]
    assert app.log_count(r"Send last action again") == 1
    assert len(app.journal("start")) == 2


def test_gives_up_at_the_37th_exit(install):
    app = install(scenario="unwritten\nat 0 exit 1\n").start()
    app.wait_until_shows(PROBLEM)
    app.wait_until_shows("A problem occured, please restart Vireon.")
    assert len(app.journal("start")) == 37
    assert app.log_count(r"Vireon exited, code =\s+1\s+status =\s+QProcess::NormalExit") == 36
    # Later than the next start would have been.
    time.sleep(2)
    assert len(app.journal("start")) == 37
    assert not app.programs_running().get("vireon-main")
    assert app.shows("A problem occured, please restart Vireon.")


def test_command_gives_the_whole_budget_back(install):
    # Ten exits, a command, and then the 37 exits that a fresh engine has.
    app = install(scenario="start 1-10\nunwritten\nat 0 exit 1\n"
                           "start 11\nat 0 status 0\non m after 1000 exit 1\n"
                           "start 12-\nunwritten\nat 0 exit 1\n").start()
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")
    app.wait_until_shows("A problem occured, please restart Vireon.")
    assert len(app.journal("start")) == 10 + 37


def test_engine_that_hangs_is_not_noticed(install):
    app = install(scenario="start 1\nat 0 status 0\nat 1000 signal STOP\n").start()
    app.wait_until_shows("Started and ready")
    wait_for(lambda: app.journal("stop"), what="an engine that stands still")
    time.sleep(2)
    assert app.shows("Started and ready")
    assert len(app.journal("start")) == 1
    os.kill(app.engine_pid(), signal.SIGKILL)
    wait_for(lambda: len(app.journal("start")) == 2, what="the next engine")
    app.wait_until_shows("Started and ready")


@pytest.mark.parametrize("scenario, code", [("", "0"), ("on sigterm after 500 exit 3\n", "3")])
def test_engine_of_a_killed_controller_is_told_to_end(install, scenario, code):
    app = install(scenario=scenario).start()
    app.wait_until_shows("Started and ready")
    engine = app.engine_pid()
    app.signal(signal.SIGKILL)
    assert app.wait() == -signal.SIGKILL
    # It has the time to put its devices in order.
    wait_for(lambda: not is_running(engine), 15, what="the end of the engine")
    # Perhaps anew for each thread of the controller that dies after the first.
    assert set(app.engine_signals()) == {"TERM"}
    assert [event.fields["code"] for event in app.journal("exit")] == [code]

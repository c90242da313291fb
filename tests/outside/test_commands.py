"""Commands: from the button to the letter that the engine takes."""

import time

import pytest

from rig import is_running, wait_for

CONTINUE = "Continue"  # of the advice that comes before an automatic calibration


@pytest.mark.parametrize("buttons, letter", [(["Manual Calibration"], "m"),
                                             (["Touch Calibration"], "t"),
                                             (["Auto Calibration", CONTINUE], "a")])
def test_calibration_from_button_to_ready(app, buttons, letter):
    app.wait_until_shows("Started and ready")
    (app.data / "mcCache").write_text("old")
    for button in buttons:
        app.click(button)
    app.wait_until_shows("Loading...")
    wait_for(lambda: app.letters() == [letter], what=f"the letter {letter}")
    assert ("mcCache" in app.files()) == (letter == "a")
    app.wait_until_shows("Started and ready")
    assert app.letters() == [letter]
    wait_for(lambda: not app.programs_running().get("vireon-sdk"), what="the end of the tool")
    assert app.log_count(r"Sdk successful for command:") == 1


def test_command_given_before_the_first_report_waits(install):
    app = install(scenario="at 8000 status 0\n").start()
    app.click("Manual Calibration")  # takes the splash away, which is in front until the report
    app.click("Manual Calibration")
    app.wait_until_shows("Loading...")
    assert app.letters() == []
    wait_for(lambda: app.letters() == ["m"], what="the letter m")


def test_exit_code_of_the_tool_is_not_examined(install):
    app = install(scenario="answer m exit 7\n").start()
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")
    wait_for(lambda: app.log_count(r"Sdk successful for command:"), what="a success")
    app.wait_until_shows("Loading...")
    app.wait_until_shows("Started and ready")


def test_two_tools_at_once(install):
    # A report other than "calibrating" frees the buttons while the first tool still waits.
    app = install(scenario="on m status 3\nanswer m after 12000\n"
                           "on t status 4\nanswer t after 12000\n").start()
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")
    wait_for(lambda: app.log_count(r"statuslistener\s+\"?3"), what="the first report")
    app.wait_until_shows("Started and ready")
    app.click("Touch Calibration")
    wait_for(lambda: len(app.programs_running().get("vireon-sdk", [])) == 2, what="two tools")
    wait_for(lambda: app.log_count(r"Sdk successful for command:") == 2, what="both to end")
    assert app.letters() == ["m", "t"]


def test_tool_that_hangs_is_ended_after_its_limit(install):
    app = install(scenario="on m ignore\nanswer m never\n").start()
    app.wait_until_shows("Started and ready")
    begin = time.monotonic()
    app.click("Manual Calibration")
    tool = wait_for(lambda: app.programs_running().get("vireon-sdk"), what="the tool")[0]
    wait_for(lambda: not is_running(tool), 60, what="the end of the tool")
    assert 29 < time.monotonic() - begin < 40
    wait_for(lambda: app.log_count(r"returned from.*false"), what="the log line")
    assert app.log_count(r"Sdk successful") == 0
    assert app.shows("Loading...")
    app.wait_until_shows("Last action failed please try again.")
    assert 59 < time.monotonic() - begin < 80
    assert app.letters() == ["m"]

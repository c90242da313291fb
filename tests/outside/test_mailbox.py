"""Commands of other programs, where an administrator lets them in."""

import os

import pytest

from rig import Mailbox, wait_for

# A command in front that binds root to the files' permissions, too.
BOUND = ("setpriv", "--bounding-set=-dac_override", "--inh-caps=-dac_override", "--")


@pytest.fixture
def app(install):
    app = install().switch_on("mailbox").start()
    app.wait_until_shows("Started and ready")
    return app


@pytest.fixture
def mailbox(app):
    return Mailbox(app.data)


@pytest.mark.parametrize("command, letter", [
    ("m", "m"), ("t", "t"), ("a", "a"), ("p", "t"), ("s", "s"), ("f", "f"), ("v", "v"), ("0", "0"),
    ("8", "8"), ("4", "4"), ("5", "5"), ("6", "6"), ("7", "7"), ("9", "9")])
def test_command_reaches_the_engine(app, mailbox, command, letter):
    mailbox.ask(command)
    wait_for(lambda: app.letters() == [letter], what=f"the letter {letter}")


def test_calibrations_load_and_correction_does_not(app, mailbox):
    (app.data / "mcCache").write_text("old")
    mailbox.ask("p")
    wait_for(lambda: app.letters() == ["t"], what="the correction")
    assert "mcCache" in app.files()
    mailbox.ask("m")
    assert "mcCache" not in app.files()
    app.wait_until_shows("Loading...")


def test_input_is_shown(app, mailbox):
    mailbox.ask("f")
    app.wait_for_control("Finger")
    mailbox.ask("s")
    app.wait_for_control("Stylus")


def test_window_hides_and_shows(app, mailbox):
    mailbox.ask("h")
    app.wait_until_hidden()
    mailbox.ask("w")
    wait_for(app.windows, what="the window")


def test_engine_sleeps_and_wakes(app, mailbox):
    first = app.engine_pid()
    mailbox.ask("z")
    wait_for(lambda: not app.engine_pids(), what="the engine's end")
    mailbox.ask("u")
    assert app.engine_pid() != first
    app.wait_until_shows("Started and ready")
    assert app.log_count("Vireon exited") == 0


@pytest.mark.parametrize("command", ["q", "Q"])
def test_quits(app, mailbox, command):
    mailbox.ask(command)
    assert app.wait() == 0
    assert app.letters() == ["Q"]


@pytest.mark.parametrize("command, logged", [("x", 1), ("1", 1), ("?", 0)])
def test_other_commands_do_nothing(app, mailbox, command, logged):
    mailbox.send(command)
    mailbox.ask("5")  # behind it: it was looked at
    wait_for(lambda: app.letters() == ["5"], what="the letter 5")
    assert app.log_count("mailbox: nothing to do for code") == logged


def test_reply_comes_for_what_was_acted_on_alone(app, mailbox):
    mailbox.send("x")
    wait_for(lambda: app.log_count("mailbox: nothing to do for code 13"), what="its log line")
    assert not mailbox.replied()
    mailbox.ask("5")


def test_left_over_of_an_earlier_run_does_nothing(app, mailbox):
    # The files are cleaned away at the start, all but what is written right after it.
    app.quit()
    mailbox.put("m")
    app.start().wait_until_shows("Started and ready")
    mailbox.ask("5")
    wait_for(lambda: app.letters(2) == ["5"], what="the letter 5")


def test_command_that_cannot_be_deleted_acts_once(install):
    # Its user may write the files that are there, but has lost the right to the directory.
    app = install().switch_on("mailbox").start(by=BOUND)
    app.wait_until_shows("Started and ready")
    mailbox = Mailbox(app.data)
    mailbox.ask("5")
    mailbox.command.write_text("")
    app.data.chmod(0o555)
    try:
        mailbox.command.write_text("6")
        wait_for(lambda: app.letters() == ["5", "6"], what="the letter 6")
        count = app.log_count("ipc read:")
        os.utime(mailbox.command)
        wait_for(lambda: app.letters() == ["5", "6", "6"], what="it again, since it was touched")
        assert app.log_count("ipc read:") == count + 1
    finally:
        app.data.chmod(0o755)


def test_switched_off_takes_nothing(install):
    app = install().start()
    app.wait_until_shows("Started and ready")
    Mailbox(app.data).put("m")
    app.click("Manual Calibration")
    wait_for(lambda: app.letters() == ["m"], what="the button's letter")
    app.wait_until_shows("Started and ready")
    assert "fifo1" in app.files() and "fifo1.open" not in app.files()
    assert app.log_count("Fifo position|ipc read") == 0

"""vireonctl: the program driven from a script."""

import fcntl
import json
import os
import pathlib
import re
import signal
import subprocess

import pytest

from rig import Mailbox, wait_for
from rig.processes import PATIENCE

PACKAGING = pathlib.Path(__file__).parents[2] / "packaging"
DONE, USAGE, NO_CONTROLLER, NOT_IN_TIME, MAILBOX_OFF, ANOTHER_USERS = 0, 2, 3, 4, 5, 6
OTHER = 65534  # a user


@pytest.fixture
def app(install):
    app = install().switch_on("mailbox").start()
    app.wait_until_shows("Started and ready")
    return app


@pytest.mark.parametrize("words, letter", [
    ("calibrate manual", "m"), ("calibrate touch", "t"), ("calibrate auto", "a"), ("reset", "0"),
    ("pause", "8"), ("input stylus", "s"), ("input finger", "f"), ("pointer single", "5"),
    ("pointer multi", "6"), ("offset", "7"), ("rayline", "4"), ("parallax", "t"),
    ("sensor-viewer", "v"), ("reload", "9")])
def test_command_reaches_the_engine(app, words, letter):
    answer = app.control(*words.split())
    assert (answer.returncode, answer.stdout, answer.stderr) == (DONE, "", "")
    wait_for(lambda: app.letters() == [letter], what=f"the letter {letter}")


def test_hides_and_shows(app):
    assert app.control("hide").returncode == DONE
    app.wait_until_hidden()
    assert app.control("show").returncode == DONE
    wait_for(app.windows, what="the window")


def test_sleeps_and_wakes(app):
    assert app.control("sleep").returncode == DONE
    wait_for(lambda: not app.engine_pids(), what="the engine's end")
    assert app.control("wake").returncode == DONE
    app.wait_for_ready_engine()


def test_quits_and_waits_for_the_end(app):
    assert app.control("wait", "gone", "--timeout", 0).returncode == NOT_IN_TIME
    assert app.control("quit").returncode == DONE
    assert app.control("wait", "gone").returncode == DONE
    assert app.wait() == 0
    assert app.control("wait", "gone", "--timeout", 0).returncode == DONE


def test_tells_that_nothing_runs(install):
    app = install().switch_on("mailbox")
    answer = app.control("status")
    assert (answer.returncode, answer.stdout) == (NO_CONTROLLER, "Vireon is not running.\n")
    assert json.loads(app.control("status", "--json").stdout)["running"] is False
    assert app.control("pause").returncode == NO_CONTROLLER
    assert app.control("wait", "ready", "--timeout", 0).returncode == NO_CONTROLLER


def test_tells_that_the_mailbox_is_off(install):
    app = install().start()
    app.wait_until_shows("Started and ready")
    assert app.control("pause").returncode == MAILBOX_OFF
    assert app.control("status").stdout == "Started and ready\n"
    assert "fifo1" not in app.files() and "fifo1.turn" not in app.files()


def test_sender_that_looks_during_the_start_does_not_switch_it_off(install):
    app = install().switch_on("mailbox")
    app.data.mkdir()
    with open(app.data / "fifo1.open", "w") as looking:
        fcntl.flock(looking, fcntl.LOCK_EX)
        app.start()
        wait_for(lambda: app.log_count("Fifo position"), what="the listener")
    wait_for(lambda: app.control("pointer", "single").returncode == DONE, what="an open mailbox")


@pytest.fixture
def other(directory, app):
    """What runs a program as another user, who shares the directory of temporary files."""
    if os.geteuid() != 0:
        pytest.skip("only root can be another user")
    for place in (directory, app.directory):
        place.chmod(0o755)
    app.temporary.chmod(0o1777)
    home = directory / "other"
    home.mkdir()
    os.chown(home, OTHER, OTHER)

    def control(*words):
        return app.control(*words, environment={"HOME": str(home)},
                           by=("setpriv", f"--reuid={OTHER}", f"--regid={OTHER}", "--clear-groups"))
    return control


def test_tells_that_it_is_another_users(app, other):
    text = "Vireon is running for another user."
    answer = other("status")
    assert (answer.returncode, answer.stdout, answer.stderr) == (ANOTHER_USERS, f"{text}\n", "")
    assert json.loads(other("status", "--json").stdout) == {
        "running": False, "anotherUsers": True, "text": text}
    assert other("status", "--follow").returncode == ANOTHER_USERS
    answer = other("pause")
    assert (answer.returncode, answer.stdout) == (ANOTHER_USERS, "")
    assert answer.stderr == "vireonctl: the Vireon that runs is another user's\n"
    assert other("wait", "ready", "--timeout", 0).returncode == ANOTHER_USERS
    assert other("wait", "gone", "--timeout", 0).returncode == NOT_IN_TIME
    assert app.control("status").stdout == "Started and ready\n"
    assert app.quit() == 0
    assert other("status").returncode == NO_CONTROLLER


def test_command_that_nobody_takes_is_taken_back(app):
    mailbox = Mailbox(app.data)
    mailbox.command.mkdir()  # in the way of every command
    answer = app.control("pause", "--timeout", 1)
    assert answer.returncode == NOT_IN_TIME and "not taken" in answer.stderr
    mailbox.command.rmdir()
    assert app.control("pointer", "single").returncode == DONE
    wait_for(lambda: app.letters() == ["5"], what="the letter 5")
    assert [name for name in app.files() if name.startswith("fifo1")] == ["fifo1.open", "fifo1.turn"]


def test_waiting_command_of_another_sender_is_not_overwritten(app):
    mailbox = Mailbox(app.data)
    for _ in range(5):
        mailbox.put("6")
        assert app.control("pointer", "single").returncode == DONE
    wait_for(lambda: len(app.letters()) == 10, what="all letters")
    assert sorted(app.letters()) == ["5"] * 5 + ["6"] * 5


@pytest.mark.parametrize("words", ["", "calibrate", "calibrate nothing", "pause now", "wait",
                                   "wait forever", "--unknown", "wait ready --timeout soon", "report",
                                   "report a b"])
def test_wrong_usage(install, words):
    assert install().control(*words.split()).returncode == USAGE


def test_help_tells_all_and_links_no_screen(install):
    app = install()
    text = app.control("--help").stdout
    for word in ("calibrate manual", "sensor-viewer", "wait gone", "--follow", "5 when the mailbox", "report FILE"):
        assert word in text
    assert app.control("--version").stdout == "vireonctl 1.4.121\n"
    libraries = subprocess.run(["ldd", app.programs / "vireonctl"], check=True,
                               capture_output=True, text=True).stdout
    assert set(re.findall(r"libQt5\w+", libraries)) == {"libQt5Core"}


def completions(*words):
    """What bash offers after these words."""
    script = (f"source {PACKAGING}/vireonctl.bash; COMP_WORDS=(vireonctl \"$@\");"
              "COMP_CWORD=$#; _vireonctl; printf '%s\\n' \"${COMPREPLY[@]}\"")
    return set(subprocess.run(["bash", "-c", script, "bash", *words], check=True, text=True,
                              capture_output=True).stdout.split())


def test_manual_page_and_completion_know_every_command(install):
    commands = re.findall(r"^  ([a-z][a-z-]*(?: [a-z]+)?)(?: FILE)?  ",
                          install().control("--help").stdout, re.M)
    assert len(commands) == 25
    page = (PACKAGING / "vireonctl.1").read_text().replace("\\-", "-")
    for command in commands:
        assert re.search(rf'^\.B[IR]?\b.*(?<!\w){command}(?!\w)', page, re.M), command
        *before, last = command.split()
        assert last in completions(*before, last[:2])
    assert completions("wait", "") == {"ready", "calibrated", "gone"}


@pytest.mark.parametrize("status, text, ready, calibrated", [
    (0, "Started and ready", True, True), (-6, "Started, Vireon not calibrated.", True, False),
    (-1, "Not connected to Vireon. Please connect the USB cable.", False, False),
    (-4, "Calibration failed, please try again.", True, False), (2, "Loading...", False, False)])
def test_status_says_what_the_window_says(install, status, text, ready, calibrated):
    app = install(scenario=f"at 0 status {status} firmware 3\n").start()
    wait_for(lambda: app.log_count(f'statuslistener\\s+"{status}"'), what="the report")
    answer = app.control("status")
    assert (answer.returncode, answer.stdout) == (DONE, text + "\n")
    assert json.loads(app.control("status", "--json").stdout) == {
        "running": True, "status": status, "text": text, "ready": ready, "firmware": 3,
        "calibrated": calibrated}


@pytest.mark.parametrize("locale, text", [("de_DE.UTF-8", "Vireon läuft nicht."),
                                          ("ja_JP.UTF-8", "Vireonは起動していません。")])
def test_status_is_in_the_users_language(install, locales, locale, text):
    answer = install().control("status", environment={"LANG": locale, "LOCPATH": str(locales)})
    assert answer.stdout == text + "\n"


def test_waits_for_a_start_and_for_a_calibration(install):
    app = install(scenario="at 2000 status -6\non a status 2\non a after 2000 status 0\n")
    app.switch_on("mailbox")
    waiting = app.start_control("wait", "ready", "--timeout", "60")
    app.start()
    assert waiting.wait(PATIENCE) == DONE
    assert app.control("wait", "calibrated", "--timeout", 2).returncode == NOT_IN_TIME
    assert app.control("calibrate", "auto").returncode == DONE
    assert app.control("wait", "calibrated").returncode == DONE
    app.wait_until_shows("Started and ready")


def test_follows_through_a_crash_to_the_end(app):
    def texts():
        return [line[9:] for line in app.controlled()]
    following = app.start_control("status", "--follow")
    wait_for(lambda: texts() == ["Started and ready"], what="the state")
    os.kill(app.engine_pid(), signal.SIGKILL)
    wait_for(lambda: len(texts()) > 1 and texts()[-1] == "Started and ready", what="the recovery")
    assert "Not connected to Vireon. Please connect the USB cable." in texts()
    app.quit()
    assert following.wait(PATIENCE) == NO_CONTROLLER
    assert texts()[-1] == "Vireon is not running."
    assert all(re.match(r"\d\d:\d\d:\d\d ", line) for line in app.controlled())


def test_four_senders_lose_nothing(app):
    senders = [[app.start_control("pointer", kind) for kind in ("single", "multi")]
               for _ in range(2)]
    assert all(one.wait(PATIENCE) == DONE for pair in senders for one in pair)
    wait_for(lambda: len(app.letters()) == 4, what="all letters")
    assert sorted(app.letters()) == ["5", "5", "6", "6"]

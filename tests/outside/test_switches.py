"""The file of switches, and the command line."""

import subprocess

import pytest

from rig import wait_for


def run_alone(app, *arguments):
    """What it answers where there is no screen, no bus and no home."""
    return subprocess.run([app.programs / "vireon", *arguments], env={}, cwd=app.programs,
                          capture_output=True, text=True, timeout=60)


@pytest.mark.parametrize("option, text", [("--help", "--annotationToolbar <true or false>"),
                                          ("-h", "--logFileSize <1024 to 1073741824>"),
                                          ("--version", "Vireon 1.4.121\n")])
def test_answers_at_once_beside_a_running_copy(app, option, text):
    app.wait_until_shows("Started and ready")
    before = app.files()
    answer = run_alone(app, option)
    assert (answer.returncode, answer.stderr) == (0, "")
    assert text in answer.stdout and "stylesheet" not in answer.stdout
    assert app.files() == before and len(app.journal("start")) == 1


def test_unknown_option_is_told(install):
    app = install()
    answer = run_alone(app, "--mailbx=true")
    assert (answer.returncode, answer.stdout) == (2, "")
    assert answer.stderr == "vireon: Unknown option 'mailbx'.\n"
    assert not app.data.exists()


def test_options_of_qt_stay(install):
    app = install()
    app.allow("This plugin does not support|systemTrayWindowChanged")
    app.start("-platform", "offscreen", "--reverse")
    wait_for(lambda: app.log_count(r"statuslistener\s+\"?0"), what="the ready engine")
    assert app.windows() == []


def test_wrong_lines_are_told_once_each(install):
    app = install().switch_on("mailbx=true", "sleep=perhaps", "logFileSize=1", "updater=false")
    for fault in ('unknown key "mailbx"', 'sleep: "perhaps" is wrong, true or false wanted',
                  'logFileSize: "1" is wrong, 1024 to 1073741824 wanted'):
        app.allow("^config/integration.conf: " + fault)
    app.start().wait_until_shows("Started and ready")
    assert len([line for line in app.log() if line.startswith("config/")]) == 3


def log_of_a_run(app):
    """The lines from start to quit, in no order since several threads write them, and without
    what differs between two homes or depends on which thread comes first."""
    app.start().engine_pid()
    app.wait_until_shows("Started and ready")
    app.quit()
    return {line.replace(str(app.directory), "") for line in app.log() if "firmware" not in line}


def test_all_off_logs_what_a_run_without_the_file_does(install):
    without, shipped = install(), install()
    (without.programs / "config/integration.conf").unlink()
    assert log_of_a_run(shipped) == log_of_a_run(without)
    assert shipped.files() == without.files()

"""A technician's morning, from a script: each step is printed as he would see it."""

import os
import re
import signal

from rig import LoginManager, wait_for
from rig.processes import PATIENCE

SCENARIO = """
start 1
at 500 status -6
on a status 2
on a after 3000 status 0
start 2-
at 500 status 0
"""


class Script:
    """What he types, and what he gets to see."""

    def __init__(self, app):
        self._app = app

    def run(self, line):
        """vireonctl with these words, which must do it; what it prints."""
        answer = self._app.control(*line.split())
        print(f"$ vireonctl {line}\n{answer.stdout}{answer.stderr}", end="")
        assert answer.returncode == 0
        return answer.stdout

    def begin(self, line):
        """The same, beside what follows."""
        print(f"$ vireonctl {line} &")
        return self._app.start_control(*line.split())

    def end(self, process, line, code):
        """Waits for what was begun; its lines."""
        assert process.wait(PATIENCE) == code
        print(f"# vireonctl {line} has ended with {code}:", *self._app.controlled(), sep="\n")
        return self._app.controlled()


def test_morning_of_a_technician(desktop, bus, install, directory):
    manager = LoginManager(desktop, bus)
    app = install(scenario=SCENARIO).switch_on("mailbox", "sleep", "logFile=vireon.log")
    script = Script(app)
    waiting = script.begin("wait ready --timeout 120")
    print("# the user logs in")
    app.start()
    script.end(waiting, "wait ready", 0)
    following = script.begin("status --follow")
    wait_for(app.controlled, what="the first state")
    assert script.run("status") == "Started, Vireon not calibrated.\n"
    script.run("calibrate auto")
    script.run("wait calibrated")
    print("# the engine crashes")
    first = app.engine_pid()
    os.kill(first, signal.SIGKILL)
    wait_for(lambda: app.engine_pid() != first, what="the next engine")
    script.run("wait ready")
    script.run("hide")
    app.wait_until_hidden()
    print("# the lid is closed")
    manager.announce(True)
    wait_for(lambda: manager.delays() == [], what="leave to sleep")
    assert app.engine_pids() == []
    print("# and opened")
    manager.announce(False)
    app.engine_pid()
    script.run("wait ready")
    report = directory / "morning.tar.gz"
    assert "log/vireon.log" in script.run(f"report {report}")
    assert report.exists()
    script.run("quit")
    script.run("wait gone")
    lines = script.end(following, "status --follow", 3)
    told = [re.sub(r"^\d\d:\d\d:\d\d ", "", line) for line in lines]
    assert told[0] == "Started, Vireon not calibrated." and told[-1] == "Vireon is not running."
    assert [text for text in told if text in ("Loading...", "Started and ready")] == [
        "Loading...", "Started and ready", "Started and ready", "Started and ready"]
    assert app.wait() == 0

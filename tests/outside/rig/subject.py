"""A small program of the tests on a desktop: lines go in, lines come out."""

import os
import subprocess
import threading

from . import log, processes
from .app import built_programs


class Subject:
    """One of tests/subjects, started.

    desktop      where it runs
    name         the program
    arguments    its arguments
    environment  variables on top of the desktop's; None removes one
    """

    def __init__(self, desktop, directory, name, *arguments, environment=None):
        self.name = name
        self._directory = directory
        self._lines = []
        self._changed = threading.Condition()
        self._log_path = directory / "stderr"
        directory.mkdir()
        program = os.path.join(built_programs(), "../tests/subjects", name)
        with open(self._log_path, "wb") as errors:
            self.process = processes.spawn(
                [program, *arguments], env=self._environment(desktop, environment), cwd=directory,
                stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=errors)
        threading.Thread(target=self._read, daemon=True).start()

    @property
    def pid(self):
        return self.process.pid

    def is_running(self):
        return self.process.poll() is None

    def ready(self):
        """Itself, once it has said so."""
        assert self.answer() == "ready"
        return self

    def signal(self, number):
        os.kill(self.pid, number)

    def send(self, *words):
        self.process.stdin.write("\t".join(words).encode() + b"\n")
        self.process.stdin.flush()

    def lines(self):
        """What it has said and nobody has taken."""
        with self._changed:
            return list(self._lines)

    def answer(self, timeout=processes.PATIENCE):
        """Takes the next line that it says."""
        with self._changed:
            assert self._changed.wait_for(lambda: self._lines, timeout), f"{self.name} says nothing"
            return self._lines.pop(0)

    def ask(self, *words):
        self.send(*words)
        return self.answer()

    def log(self):
        """The lines of its standard error."""
        return self._log_path.read_text(errors="replace").splitlines()

    def maps(self):
        """The names of the files that are mapped into it."""
        return processes.maps_of(self.pid)

    def reports(self):
        """Warnings nobody allowed, and what a sanitizer found in it."""
        return log.warnings(self.log()) + [
            report.read_text(errors="replace")[:6000]
            for report in sorted(self._directory.glob("sanitizer.*"))]

    def end(self):
        processes.end(self.pid)
        self.process.wait()

    def _read(self):
        for line in self.process.stdout:
            with self._changed:
                self._lines.append(line.decode().removesuffix("\n"))
                self._changed.notify_all()

    def _environment(self, desktop, additions):
        variables = dict(desktop.environment)
        variables.update({
            "QT_QUICK_BACKEND": "software",
            "LIBGL_ALWAYS_SOFTWARE": "1",
            "NO_AT_BRIDGE": "1",
            "QT_MESSAGE_PATTERN": log.MARK_WARNINGS,
            "TMPDIR": str(self._directory),
        })
        variables.update(processes.sanitizer_options(self._directory))
        variables.update(additions or {})
        return {name: value for name, value in variables.items() if value is not None}

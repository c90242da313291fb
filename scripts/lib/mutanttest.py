"""A built copy of the tree, and the tests in it that are run for the mutants."""

import ctypes
import filecmp
import hashlib
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import time

OUTSIDE_TARGETS = ("vireon", "vireonctl", "simulator")
PR_SET_CHILD_SUBREAPER = 36

# What can be wrong with a test beside what it says itself.
OUT_OF_TIME = "out of time"
SKIPPED = "skipped"
NOT_BUILT = "not built"

JUDGED = ("src/", "qml/", "ctl/", "sim/", "config/", "packaging/", "tests/")


def target_of(test):
    return test.partition(":")[0]


def targets_of(mutant):
    """What has to be built for its tests."""
    targets = set(mutant.fields.get("Build", "").split())
    for test in mutant.tests:
        targets.update(OUTSIDE_TARGETS if test.startswith("outside-") else [target_of(test)])
    return sorted(targets)


class Workshop:
    """A copy of the tree with a build of its own, below build/mutants. One job works in it."""

    def __init__(self, top, number):
        self.top = top
        self.tree = top / "build/mutants" / str(number)
        self.build_directory = self.tree / "build/release"
        self.known = {}
        self.state = None  # of the files that a test's verdict hangs on
        self.environment = {**os.environ, "CCACHE_BASEDIR": str(self.tree), "CCACHE_NOHASHDIR": "1"}
        if shutil.which("ccache"):
            self.environment["CMAKE_CXX_COMPILER_LAUNCHER"] = "ccache"

    def prepare(self, targets, jobs):
        """Brings the copy up to date and builds it; raises CalledProcessError if that fails."""
        self.copy_tree()
        # Less optimised than what ships: half the time, the same behaviour.
        self.run(["cmake", "--preset", "release", "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG"])
        self.run(["cmake", "--build", "--preset", "release", "-j", str(jobs), "--target", *targets])
        listing = self.run(["ctest", "--preset", "release", "--show-only=json-v1"], None)
        for test in json.loads(listing)["tests"]:
            properties = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
            self.known[test["name"]] = (test.get("command"), properties)

    def copy_tree(self):
        """A file that differs gets the time of the copying: what was built of the old one is older."""
        listed = subprocess.run(["git", "ls-files", "-coz", "--exclude-standard"], cwd=self.top,
                                check=True, capture_output=True, text=True).stdout.split("\0")
        names = {name for name in listed if name and (self.top / name).is_file()}
        state = hashlib.sha256()
        for name in sorted(names):
            source, copy = self.top / name, self.tree / name
            if name.startswith(JUDGED) and not name.startswith("tests/mutants/"):
                state.update(name.encode() + b"\0" + source.read_bytes())
            if not copy.exists() or not filecmp.cmp(source, copy, shallow=False):
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(source, copy)
                shutil.copymode(source, copy)
        for place, directories, files in os.walk(self.tree):
            directories[:] = [name for name in directories if name not in ("build", "__pycache__")]
            for file in (pathlib.Path(place) / name for name in files):
                if str(file.relative_to(self.tree)) not in names:
                    file.unlink()
        self.state = state.hexdigest()

    def run(self, command, errors=subprocess.STDOUT):
        return subprocess.run(command, cwd=self.tree, env=self.environment, check=True, text=True,
                              stdout=subprocess.PIPE, stderr=errors).stdout

    def build(self, targets):
        self.run(["cmake", "--build", "--preset", "release", "-j", "1", "--target", *targets])

    def write(self, texts):
        for file, text in texts.items():
            (self.tree / file).write_text(text)

    def test(self, test, limit):
        """Runs it. Returns what has gone wrong, or None, and the seconds that it took."""
        name, _, functions = test.partition(":")
        command, properties = self.known.get(name, (None, {}))
        if not command:
            return NOT_BUILT, 0
        begin = time.monotonic()
        fault = run_limited([*alone(), *command, *filter(None, functions.split(","))],
                            properties["WORKING_DIRECTORY"], environment_of(properties), limit)
        empty(self.build_directory / "tests" / f"{name}.dir" / "home/tmp")
        return fault, time.monotonic() - begin


def environment_of(properties):
    """What CTest gives the test."""
    environment = dict(os.environ)
    environment.update(entry.split("=", 1) for entry in properties.get("ENVIRONMENT", []))
    for change in properties.get("ENVIRONMENT_MODIFICATION", []):
        name, _, operation = change.partition("=")
        if operation.startswith("unset"):
            environment.pop(name, None)
    return environment


def alone():
    """A prefix: System V objects that a mutant leaves behind end with it."""
    prefix = ["unshare", "--ipc"]
    works = subprocess.run([*prefix, "true"], capture_output=True, check=False).returncode == 0
    return prefix if works else []


def empty(directory):
    if directory.is_dir():
        shutil.rmtree(directory, ignore_errors=True)
        directory.mkdir(exist_ok=True)


def run_limited(command, directory, environment, limit):
    """The first line that tells of a failure; None when all went well."""
    # What the test leaves behind becomes a child of this process.
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)
    with open(pathlib.Path(directory) / "mutant.log", "w+", encoding="utf-8",
              errors="replace") as log:
        process = subprocess.Popen(command, cwd=directory, env=environment, stdout=log,
                                   stderr=subprocess.STDOUT, start_new_session=True)
        try:
            return watch(process, log, time.monotonic() + limit)
        finally:
            end(process)


def watch(process, log, deadline):
    while time.monotonic() < deadline:
        try:
            status = process.wait(0.05)
        except subprocess.TimeoutExpired:
            status = None
        text = pathlib.Path(log.name).read_text(encoding="utf-8", errors="replace")
        # The rest of the test need not be waited for.
        failed = next((line for line in text.splitlines() if line.startswith("FAIL!  : ")), None)
        if failed:
            return re.sub(r"^FAIL!  : .*?::(.*?\(.*?\)) .*", r"\1", failed)
        if status is not None:
            skipped = status == 0 and ("SKIP   : " in text or " skipped in " in text)
            return SKIPPED if skipped else f"status {status}" if status else None
    return OUT_OF_TIME


def end(process):
    """Politely first: the tests from outside put away what they have started."""
    if process.poll() is None:
        os.killpg(process.pid, signal.SIGINT if "pytest" in process.args else signal.SIGTERM)
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
    while children():
        for child in children():
            os.kill(child, signal.SIGKILL)
            os.waitpid(child, 0)


def children():
    return [int(child) for child in
            pathlib.Path(f"/proc/self/task/{os.getpid()}/children").read_text().split()]

"""Fixtures: a desktop and installations of the program on it, gone without a trace afterwards."""

import os
import pathlib
import shutil
import subprocess
import tempfile

import pytest

from rig import App, Desktop, Subject, adopt_orphans, wait_for
from rig.processes import descendants_of, end, name_of

# A library that not every release of Debian has, and the tests that make no sense without it.
INDICATOR = "libayatana-appindicator.so.1"
OF_INDICATOR = ("test_gtk", "test_indicator", "test_unity")


def pytest_configure():
    adopt_orphans()


def pytest_collection_modifyitems(items):
    if any(pathlib.Path("/usr/lib").glob(f"*/{INDICATOR}")):
        return
    for item in items:
        if item.module.__name__ in OF_INDICATOR or "unity" in item.name.lower():
            item.add_marker(pytest.mark.skip(reason=f"{INDICATOR} is not installed"))


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    report = (yield).get_result()
    setattr(item, f"failed_in_{report.when}", report.failed)


@pytest.fixture
def directory():
    """A short-named directory of the test's own."""
    path = pathlib.Path(tempfile.mkdtemp(prefix="vireon-"))
    yield path
    shutil.rmtree(path)


@pytest.fixture
def make_desktop():
    """What makes the desktop in a directory; files of tests on another kind override it."""
    return Desktop


@pytest.fixture
def desktop(directory, make_desktop):
    place = directory / "desktop"
    place.mkdir()
    desktop = make_desktop(place)
    yield desktop
    desktop.stop()
    _expect_no_processes()


@pytest.fixture
def bus(desktop):
    """The desktop's session bus."""
    return desktop.bus()


@pytest.fixture
def subject(desktop, directory):
    """subject(name, argument..., environment=...): one of the tests' small programs, started."""
    started = []

    def start(name, *arguments, environment=None):
        place = directory / f"subject{len(started)}"
        started.append(Subject(desktop, place, name, *arguments, environment=environment))
        return started[-1]

    yield start
    for one in started:
        print(f"{one.name}:", *one.log()[-30:], sep="\n  ")
        one.end()
    reports = [report for one in started for report in one.reports()]
    assert not reports, "\n".join(reports)


@pytest.fixture
def install(desktop, directory, request):
    """install(scenario=..., home=..., environment=...): a copy of the program, not yet started.

    At the end of the test each copy that still runs is told to quit, and must do so cleanly;
    warnings on its log that nobody allowed fail the test.
    """
    apps = []

    def make(**options):
        apps.append(App(desktop, directory / f"copy{len(apps)}", **options))
        return apps[-1]

    yield make
    if getattr(request.node, "failed_in_call", True):
        for app in apps:
            _tell_about(app)
            app.cleanup()
        return
    for app in apps:
        _finish(app)


@pytest.fixture
def app(install):
    """A started program with an engine that behaves well."""
    return install().start()


def _expect_no_processes():
    """What was started on a bus ends by itself, a moment after the bus."""
    try:
        wait_for(lambda: not descendants_of(os.getpid()), 15)
    except AssertionError:
        left = descendants_of(os.getpid())
        names = [name_of(pid) for pid in left]
        for pid in left:
            end(pid)
        raise AssertionError(f"processes left behind: {names}") from None


def _finish(app):
    """Quits the program and looks at what it leaves."""
    try:
        if app.is_running():
            assert app.quit() == 0
        app.wait_for_end_of_all()
        assert not app.faults(), "\n".join(app.faults())
    except BaseException:
        _tell_about(app)
        raise
    finally:
        app.cleanup()


def _tell_about(app):
    """What one wants to know about a program after a failure."""
    if app.process is None:
        return
    print(f"exit status: {app.process.poll()}, running: {app.programs_running()}")
    print("shown:", app.texts() if app.is_running() else "nothing")
    print("journal:", *app.journal(), sep="\n  ")
    log = [line for line in app.log() if "Could not open the file!" not in line]
    print("log:", *log[-60:], sep="\n  ")
    print("faults:", *app.faults(), sep="\n  ")


@pytest.fixture(scope="session")
def locales(tmp_path_factory):
    """A directory for LOCPATH with ja_JP.UTF-8 and de_DE.UTF-8, whatever the machine has."""
    place = tmp_path_factory.mktemp("locales")
    for name in ("ja_JP", "de_DE"):
        subprocess.run(["localedef", "-i", name, "-f", "UTF-8", place / f"{name}.UTF-8"], check=True)
    yield place
    shutil.rmtree(place)

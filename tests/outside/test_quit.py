"""Quitting, asked for by a signal."""

import os
import pathlib
import re
import signal
import time

import pytest

from rig import wait_for

SILENT = "unwritten\n"


def keys_in_use(kind):
    """The keys of the machine's "shm" or "sem"."""
    lines = pathlib.Path("/proc/sysvipc", kind).read_text().splitlines()[1:]
    return {int(line.split()[0]) for line in lines}


def key_of(path):
    """The key that Qt makes from a file."""
    state = path.stat()
    return ord("Q") << 24 | (state.st_dev & 0xff) << 16 | state.st_ino & 0xffff


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
def test_quit_signal_runs_the_quit_sequence(app, number):
    app.wait_until_shows("Started and ready")
    app.signal(number)
    assert app.wait() == 0
    assert app.letters() == ["Q"]
    assert app.log_count(r"Quit Vireon clicked") == 1


def test_quit_from_the_menu(app):
    app.wait_until_shows("Started and ready")
    app.click("File")
    app.click("Exit")
    assert app.wait() == 0
    assert app.letters() == ["Q"]


def test_quit_before_the_first_report_sends_nothing(install):
    app = install(scenario=SILENT).start()
    app.wait_until_shows("Starting up...")
    app.engine_pid()
    begin = time.monotonic()
    assert app.quit() == 0
    assert 0.8 <= time.monotonic() - begin < 10
    app.wait_for_end_of_all()
    assert app.letters() == []


def test_quit_sends_its_command_when_the_engine_gets_ready_meanwhile(install):
    app = install(scenario=SILENT).start()
    app.wait_until_shows("Starting up...")
    app.engine_pid()
    app.signal(signal.SIGTERM)
    wait_for(lambda: app.log_count(r"Quit Vireon clicked"), interval=0.005)
    (app.data / "pensettings.ini").write_text("Result=0\nFirmware=5\n")
    assert app.wait() == 0
    assert app.letters() == ["Q"]


def test_second_request_changes_nothing(app):
    app.wait_until_shows("Started and ready")
    app.signal(signal.SIGTERM)
    wait_for(lambda: app.log_count(r"Quit Vireon clicked"), interval=0.005)
    for number in (signal.SIGTERM, signal.SIGHUP, signal.SIGINT):
        app.signal(number)
    assert app.wait() == 0
    assert app.letters() == ["Q"]
    assert app.log_count(r"Quit Vireon clicked") == 1


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGHUP])
def test_inherited_ignorance_of_a_signal_stays(install, bus, number):
    app = install().start(by=("env", f"--ignore-signal={number.name.removeprefix('SIG')}"))
    app.wait_until_shows("Started and ready")
    app.signal(number)
    # The next requests come after that one: first by the bus, then by another signal.
    bus.call("com.corvanthel.Vireon", "/com/corvanthel/Vireon", "org.freedesktop.Application",
             "Activate", "(a{sv})", {})
    assert app.is_running() and app.log_count("Quit Vireon clicked") == 0
    assert ignores(app.pid, number) and not ignores(app.pid, signal.SIGTERM)
    assert app.quit() == 0


def ignores(pid, number):
    (mask,) = re.findall(r"SigIgn:\s+(\w+)", pathlib.Path(f"/proc/{pid}/status").read_text())
    return bool(int(mask, 16) >> (number - 1) & 1)


@pytest.mark.parametrize("choices, open_item", [(["File"], "Exit"),
                                                (["File", "Update Firmware"], "Start")])
def test_quits_with_a_menu_or_a_box_open(install, choices, open_item):
    app = install(scenario="at 0 status 0 firmware 1\n").start()
    app.wait_until_shows("Started and ready")
    wait_for(lambda: app.log_count("firmware version: 1"), what="the firmware's version")
    for choice in choices:
        app.click(choice)
    wait_for(lambda: app.clickable(open_item), what=f"{open_item!r}")
    assert app.quit() == 0
    assert app.letters() == ["Q"]


@pytest.mark.parametrize("engine_first", [False, True], ids=["program first", "engine first"])
@pytest.mark.parametrize("scenario", ["", SILENT], ids=["ready", "silent"])
def test_interrupt_from_the_keyboard_ends_both(install, scenario, engine_first):
    """Ctrl-C reaches the engine as well, which may be started once more before the program ends."""
    app = install(scenario=scenario).start()
    # The quit's tool may find the engine gone, or going.
    app.allow(r"^vireon-sdk: (no engine listens|the engine has gone)")
    app.wait_until_shows("Starting up..." if scenario else "Started and ready")
    pids = [app.pid, app.engine_pid()]
    wait_for(lambda: app.journal("start"), what="the engine's start")
    for pid in reversed(pids) if engine_first else pids:
        os.kill(pid, signal.SIGINT)
    assert app.wait() == 0
    app.wait_for_end_of_all()
    assert len(app.journal("start")) <= 2
    assert app.log_count(r"Quit Vireon clicked") == 1
    assert app.log_count(r'starting "?\./vireon-main') <= 2
    assert app.log_count(r"status\s+-12") == 0


@pytest.mark.parametrize("scenario", ["", SILENT, "on m ignore\nanswer m hang\n"],
                         ids=["ready", "silent", "a tool hangs"])
def test_hold_on_the_machine_ends_with_the_program(install, scenario):
    app = install(scenario=scenario).start()
    app.wait_until_shows("Starting up..." if scenario == SILENT else "Started and ready")
    if scenario.startswith("on m"):
        app.click("Manual Calibration")
        wait_for(lambda: app.programs_running().get("vireon-sdk"), what="the tool")
    held = {("shm" if "sharedmemory" in path.name else "sem", key_of(path))
            for path in app.temporary.glob("qipc_*")}
    assert [kind for kind, _ in sorted(held)] == ["sem", "sem", "shm"]
    assert all(key in keys_in_use(kind) for kind, key in held)
    assert app.quit() == 0
    assert not any(key in keys_in_use(kind) for kind, key in held)
    assert not list(app.temporary.glob("qipc_*"))


def test_start_during_a_quit_waits_for_its_end(install):
    first = install().start()
    first.wait_until_shows("Started and ready")
    first.signal(signal.SIGTERM)
    wait_for(lambda: first.log_count(r"Quit Vireon clicked"), interval=0.005)
    first.signal(signal.SIGSTOP)
    second = install(home=first.home, environment={"TMPDIR": str(first.temporary)}).start()
    wait_for(lambda: second.log_count("waiting for the end of a copy that is quitting"))
    first.signal(signal.SIGCONT)
    assert first.wait() == 0
    second.wait_until_shows("Started and ready")
    assert not second.shows("Vireon application is already running.")


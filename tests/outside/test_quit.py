"""Quitting, asked for by a signal."""

import os
import pathlib
import re
import signal
import time

import pytest

from rig import wait_for

SILENT = "unwritten\n"


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
    wait_for(lambda: not app.programs_running(), 15, what="an end of all programs")
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
    wait_for(lambda: not app.programs_running(), 15, what="an end of all programs")
    assert len(app.journal("start")) <= 2
    assert app.log_count(r"Quit Vireon clicked") == 1
    assert app.log_count(r'starting "?\./vireon-main') <= 2
    assert app.log_count(r"status\s+-12") == 0

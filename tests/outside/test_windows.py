"""Windows of the program's own under a real window manager."""

import os
import re
import signal

import pytest

from rig import is_running, wait_for

MAXIMISE = 0x10  # of the functions in _MOTIF_WM_HINTS


def titles(desktop):
    return desktop.run("wmctrl", "-l")


def shown(desktop, title):
    wait_for(lambda: title in titles(desktop), what=f"the window {title!r}")


def hints(desktop, title, name):
    return desktop.run("xprop", "-name", title, name)


@pytest.fixture
def windows(desktop, subject):
    """The subject, with its widget on the screen."""
    windows = subject("windowsubject").ready()
    shown(desktop, "widget")
    return windows


def test_widget_announces_a_close_and_stays_open(desktop, windows):
    desktop.run("wmctrl", "-c", "widget")
    assert windows.answer() == "closing"
    assert windows.ask("visible") == "log no, widget yes"
    shown(desktop, "widget")
    # What was queued by the first close would be here by now.
    desktop.run("wmctrl", "-c", "widget")
    assert windows.answer() == "closing"
    assert windows.ask("visible") == "log no, widget yes"


def test_widget_has_no_maximise_button(desktop, windows):
    found = re.search(r"= 0x[0-9a-f]+, 0x([0-9a-f]+)", hints(desktop, "widget", "_MOTIF_WM_HINTS"))
    functions = int(found.group(1), 16)
    assert functions and not functions & MAXIMISE


def test_log_window_is_shown_and_hidden(desktop, windows, directory):
    assert "Log Window" not in titles(desktop)
    for line in ("16.11.2026 05:34:12: Debug: Run Vireon (main.cpp:1, main)", "Größe 日本語"):
        windows.send("append", line)
    windows.send("show")
    shown(desktop, "Log Window")
    assert windows.ask("visible") == "log yes, widget yes"
    assert "_NET_WM_WINDOW_TYPE_UTILITY" in hints(desktop, "Log Window", "_NET_WM_WINDOW_TYPE")
    sizes = hints(desktop, "Log Window", "WM_NORMAL_HINTS")
    assert re.search(r"minimum size: 800 by 400\s.*maximum size: 800 by 400", sizes, re.DOTALL)
    windows.send("hide")
    wait_for(lambda: "Log Window" not in titles(desktop), what="a hidden log window")
    assert windows.ask("visible") == "log no, widget yes"
    assert [line for line in windows.log() if line] == []


def test_closing_the_log_window_hides_it(desktop, windows):
    windows.send("show")
    shown(desktop, "Log Window")
    desktop.run("wmctrl", "-c", "Log Window")
    wait_for(lambda: windows.ask("visible") == "log no, widget yes", what="a hidden log window")
    windows.send("show")
    shown(desktop, "Log Window")
    assert windows.ask("visible") == "log yes, widget yes"


def test_main_window_tells_and_hides_at_the_end(desktop, subject):
    hub = subject("mainwindowsubject").ready()
    shown(desktop, "Vireon")
    assert hub.ask("call", "slotAppQuitting") == "quitting"
    assert hub.answer() == "done"
    wait_for(lambda: "Vireon" not in titles(desktop), what="a hidden window")


def test_main_window_is_hidden_by_its_close_button(desktop, subject):
    hub = subject("mainwindowsubject").ready()
    shown(desktop, "Vireon")
    functions = re.search(r"= 0x[0-9a-f]+, 0x([0-9a-f]+)",
                          hints(desktop, "Vireon", "_MOTIF_WM_HINTS")).group(1)
    assert not int(functions, 16) & MAXIMISE
    desktop.run("wmctrl", "-c", "Vireon")
    wait_for(lambda: "Vireon" not in titles(desktop), what="a hidden window")
    assert hub.ask("call", "showWindow") == "done"
    shown(desktop, "Vireon")


def test_helper_does_not_outlive_a_killed_controller(subject, directory):
    helper = directory / "VireonIdle.exe"
    helper.write_text(f"#!/bin/sh\necho $$ > {directory}/helper.pid\nexec sleep 600\n")
    helper.chmod(0o755)
    hub = subject("mainwindowsubject",
                  environment={"PATH": f"{directory}:/usr/bin:/bin"}).ready()
    # Where it is on by default, which the processor decides, the first click switches it off.
    hub.ask("call", "toggleKeepACpuAwake")
    if not any("Keep a CPU running" in line for line in hub.log()):
        hub.ask("call", "toggleKeepACpuAwake")
    number = directory / "helper.pid"
    pid = int(wait_for(lambda: number.exists() and number.read_text().strip(), what="the helper"))
    assert is_running(pid)
    os.kill(hub.pid, signal.SIGKILL)
    wait_for(lambda: not is_running(pid), what="the helper's end")

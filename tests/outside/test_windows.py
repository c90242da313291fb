"""Windows of the program's own under a real window manager."""

import re

import pytest

from rig import wait_for

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

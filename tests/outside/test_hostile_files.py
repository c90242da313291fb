"""Status files and engine output that no engine should produce, and what comes of them."""

import os
import pathlib
import re
import threading
import time

import pytest

from rig import memory_of, wait_for

MEGABYTE = 1 << 20
READY = "Result=0\nFirmware=5\n"
READY_TEXT = "Started and ready"
SILENT = "unwritten\n"


def put_in_place(path, text):
    """Replaces the file in one step."""
    new = path.with_suffix(".new")
    new.write_text(text)
    os.replace(new, path)


def make_directory(path):
    path.mkdir()


def make_fifo(path):
    os.mkfifo(path)


def make_endless_line(path):
    with open(path, "wb") as file:
        file.truncate(2 << 30)


def make_huge(path):
    with open(path, "wb") as file:
        file.write(b"Result=-6\n")
        file.truncate(2 << 30)


def make_unopenable(path):
    path.symlink_to(path.name)


@pytest.mark.parametrize("make", [make_directory, make_fifo, make_endless_line, make_huge,
                                  make_unopenable])
def test_odd_status_file_does_no_harm(install, make):
    app = install(scenario=SILENT).start()
    app.wait_until_shows("Starting up...")
    app.engine_pid()
    status = app.data / "pensettings.ini"
    before = memory_of(app.pid)
    make(status)
    if make is make_huge:
        app.wait_until_shows("not calibrated")
    else:
        # Several polls.
        time.sleep(2)
        assert app.shows("Starting up...")
    assert memory_of(app.pid) - before < 32 * MEGABYTE
    if make is make_directory:
        status.rmdir()
    put_in_place(status, READY)
    app.wait_until_shows(READY_TEXT)


def test_endless_lines_in_the_settings_do_no_harm(install):
    app = install()
    app.data.mkdir()
    for file in (app.data / "user.ini", app.programs / "config" / "vireon.conf"):
        old = file.read_text() if file.exists() else ""
        make_endless_line(file)
        with open(file, "a") as longer:
            longer.write("\n" + old.partition("\n")[2])
    app.start()
    app.wait_until_shows("Started and ready")
    peak = re.search(r"VmHWM:\s+(\d+) kB", pathlib.Path(f"/proc/{app.pid}/status").read_text())
    assert int(peak[1]) * 1024 < 1000 * MEGABYTE


def test_status_file_rewritten_all_the_time(install):
    app = install(scenario=SILENT).start()
    app.wait_until_shows("Starting up...")
    app.engine_pid()
    status = app.data / "pensettings.ini"
    stop = threading.Event()

    def rewrite():
        number = 0
        while not stop.is_set():
            # Emptied and filled again, in two halves: the reader meets every state of it.
            with open(status, "w") as file:
                file.write("Result=")
                file.flush()
                file.write(f"{-number % 7}\nFirmware={number % 3 + 5}\n")
            number += 1
            time.sleep(0.0005)

    writer = threading.Thread(target=rewrite)
    writer.start()
    try:
        wait_for(lambda: app.log_count("statuslistener") > 3, what="reports")
        before = memory_of(app.pid)
        time.sleep(4)
        assert app.items(), "the window answers"
        assert memory_of(app.pid) - before < 32 * MEGABYTE
    finally:
        stop.set()
        writer.join()
    put_in_place(status, "Result=-2\nFirmware=5\n")
    app.wait_until_shows("Light disturbance detected.")


@pytest.mark.parametrize("words", ["slowly 4000", "halves 1500"])
def test_status_that_is_read_half_written_is_put_right(install, words):
    app = install(scenario=f"at 0 status 0\nat 2000 status -14 firmware 12 {words}\n").start()
    app.wait_until_shows(READY_TEXT)
    wait_for(lambda: app.journal("writing"), what="a half-written file")
    wait_for(lambda: len(app.journal("status")) == 2, what="the whole file")
    app.wait_until_shows("not calibrated")
    wait_for(lambda: app.log_count("firmware version: 12"), what="the whole firmware")
    # Whatever was seen of it before, this is the last word.
    reports = app.log_count("statuslistener")
    time.sleep(2)
    assert app.shows("not calibrated")
    assert app.log_count("statuslistener") == reports
    assert app.log_count(r'statuslistener "-14"') == 1


def test_file_without_a_report_changes_nothing(install):
    others = (r'raw "Result=ready\nFirmware=new\n"', r'raw "result=-2\n"', r'raw "\nResult=-2\n"',
              'raw ""', "remove")
    app = install(scenario="at 0 status 3\n" + "".join(
        f"at {second}000 {action}\n" for second, action in enumerate(others, start=2))).start()
    app.wait_until_shows(READY_TEXT)
    wait_for(lambda: app.journal("remove"), what="the end of the file")
    assert len(app.journal("status")) == len(others)
    time.sleep(1)
    assert app.shows(READY_TEXT)
    assert app.log_count("statuslistener") == 1


def test_lines_after_the_report_are_ignored(install):
    app = install(scenario=r'at 0 raw "Result=-2\nFirmware=5\nResult=-3\n"' "\n").start()
    app.wait_until_shows("Light disturbance detected.")
    time.sleep(1)
    assert app.log_count("statuslistener") == 1


def test_flood_on_the_engines_error_channel_is_not_kept(install):
    line = "x" * 999
    app = install(scenario=f'at 0 status 0\non t print-error "{line}" repeat 50000\n'
                           'on t status -2\n').start()
    app.allow(f"^{line}$")
    app.wait_until_shows(READY_TEXT)
    before = memory_of(app.pid)
    app.click("Touch Calibration")
    app.wait_until_shows("Light disturbance detected.")
    assert os.path.getsize(app.directory / "stderr") > 49 * MEGABYTE * 0.95
    assert memory_of(app.pid) - before < 24 * MEGABYTE


def test_engine_output_is_logged_line_by_line(install):
    app = install(scenario='at 0 status 0\nat 500 print "one\\ntwo\\nthree"\n').start()
    wait_for(lambda: app.log_count(r'\[vireon\]\s+"three\\n"'), what="the last line")
    for word in ("one", "two", "three"):
        assert app.log_count(rf'\[vireon\]\s+"{word}\\n"') == 1


def test_line_without_its_end_is_logged_as_far_as_it_came(install):
    app = install(scenario='at 0 status 0\nat 500 print "half a li" partial\n'
                           'at 2000 print "ne"\n').start()
    wait_for(lambda: app.log_count(r'\[vireon\] "half a li"'), what="the first half")
    wait_for(lambda: app.log_count(r'\[vireon\] "ne\\n"'), what="the second half")

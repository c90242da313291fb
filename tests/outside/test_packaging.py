"""What is installed around the program."""

import configparser
import pathlib
import shutil
import subprocess
import time

import pytest

from rig import wait_for

PACKAGING = pathlib.Path(__file__).parents[2] / "packaging"
NAME = "com.corvanthel.Vireon"
LAUNCHER = "/usr/local/bin/Vireon/Vireon.sh"
WATCHER = "org.kde.StatusNotifierWatcher"


def entries(path):
    parser = configparser.ConfigParser(interpolation=None, delimiters=["="])
    parser.optionxform = str
    parser.read(path, encoding="utf-8")
    (section,) = parser.sections()
    return section, dict(parser[section])


def test_desktop_entry_is_valid():
    path = PACKAGING / f"{NAME}.desktop"
    result = subprocess.run(["desktop-file-validate", path], stdout=subprocess.PIPE, text=True)
    assert (result.returncode, result.stdout) == (0, "")
    section, values = entries(path)
    assert section == "Desktop Entry"
    assert values["Name"] == "Vireon"
    assert values["Exec"] == LAUNCHER
    assert values["DBusActivatable"] == "true"
    assert len({values[key] for key in ("Comment", "Comment[de]", "Comment[ja]")}) == 3


def test_service_starts_the_launcher():
    section, values = entries(PACKAGING / f"{NAME}.service")
    assert section == "D-BUS Service"
    assert values == {"Name": NAME, "Exec": LAUNCHER}


@pytest.fixture
def launch(desktop, directory):
    """launch(argument..., environment=...): the launcher's process, with a program that tells
    where and how it was started, in a directory whose name needs care."""
    place = directory / "Größe $x 日本"
    place.mkdir()
    shutil.copy2(PACKAGING / "Vireon.sh", place)
    (place / "vireon").write_text('#!/bin/sh\npwd\nprintf "%s\\n" "$@"\necho $$\n')
    (place / "vireon").chmod(0o755)
    (directory / "link").symlink_to(place / "Vireon.sh")
    started = []

    def start(*arguments, environment=None):
        started.append(subprocess.Popen(
            [directory / "link", *arguments], env={**desktop.environment, **(environment or {})},
            cwd="/", stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True))
        started[-1].place = place
        return started[-1]

    yield start
    for process in started:
        process.kill()
        process.communicate()


def test_launcher_starts_the_program_in_its_directory(launch):
    process = launch("two words", "-style")
    output, _ = process.communicate(timeout=60)
    # The program has the launcher's place: who ends one ends the other.
    assert output.splitlines() == [str(process.place), "two words", "-style", str(process.pid)]
    assert process.returncode == 0


def test_launcher_waits_for_the_tray_at_log_in(desktop, bus, launch):
    process = launch(environment={"DESKTOP_AUTOSTART_ID": "1"})
    begin = time.monotonic()
    with pytest.raises(subprocess.TimeoutExpired):
        process.wait(2)
    desktop.start("/usr/bin/python3", "-m", "dbusmock", "--session", WATCHER,
                  "/StatusNotifierWatcher", WATCHER)
    wait_for(lambda: bus.has_owner(WATCHER) or process.poll() is not None)
    assert process.wait(60) == 0
    assert process.stdout.readline().strip() == str(process.place)
    assert time.monotonic() - begin < 10 or process.poll() == 0


def test_launcher_waits_for_ten_seconds_at_most(launch):
    begin = time.monotonic()
    process = launch(environment={"DESKTOP_AUTOSTART_ID": "1"})
    assert process.wait(60) == 0
    assert time.monotonic() - begin > 9
    assert process.stdout.read().splitlines()[0] == str(process.place)


def test_launcher_needs_no_bus(launch):
    process = launch(environment={"DESKTOP_AUTOSTART_ID": "1",
                                  "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"})
    assert process.wait(60) == 0
    assert process.stdout.read().splitlines()[0] == str(process.place)

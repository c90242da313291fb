"""What is installed around the program."""

import configparser
import os
import pathlib
import shutil
import subprocess

import pytest

from rig import wait_for
from rig.app import built_programs

PACKAGING = pathlib.Path(__file__).parents[2] / "packaging"
NAME = "com.corvanthel.Vireon"
PLACE = "/usr/local/bin/Vireon"
LAUNCHER = f"{PLACE}/Vireon.sh"
WATCHER = "org.kde.StatusNotifierWatcher"
BUILD = pathlib.Path(built_programs()).parent
ICON_SIZES = [f"{size}x{size}" for size in (16, 22, 24, 32, 48, 64, 128, 256, 512)]
INSTALLED = {
    f"{PLACE}/vireon": 0o755,
    f"{PLACE}/vireonctl": 0o755,
    "/usr/local/bin/vireonctl": 0o755,
    "/usr/local/share/man/man1/vireonctl.1": 0o644,
    "/usr/local/share/bash-completion/completions/vireonctl": 0o644,
    LAUNCHER: 0o755,
    f"{PLACE}/config/integration.conf": 0o644,
    f"{PLACE}/config/vireon.conf": 0o644,
    f"{PLACE}/Corvanthel.png": 0o644,
    f"{PLACE}/CorvanthelSmall.png": 0o644,
    f"/usr/local/share/applications/{NAME}.desktop": 0o644,
    f"/usr/local/share/dbus-1/services/{NAME}.service": 0o644,
    "/usr/local/share/icons/hicolor/scalable/apps/vireon.svg": 0o644,
    **{f"/usr/local/share/icons/hicolor/{size}/apps/vireon.png": 0o644 for size in ICON_SIZES},
}
SIMULATOR = {f"{PLACE}/vireon-main": 0o755, f"{PLACE}/vireon-sdk": 0o755}


def files_in(root):
    """All files below a directory: path from there, permissions."""
    return {"/" + str(path.relative_to(root)): path.stat().st_mode & 0o7777
            for path in root.rglob("*") if not path.is_dir()}


def run(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, stdout=subprocess.PIPE,
                          text=True, **options).stdout


def install_into(root, component):
    run("cmake", "--install", BUILD, "--component", component,
        env={**os.environ, "DESTDIR": str(root)})


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
    assert values["Icon"] == "vireon"
    assert values["DBusActivatable"] == "true"
    # Nobody would end the busy pointer of a start that comes as a call on the bus.
    assert values["StartupNotify"] == "false"
    assert len({values[key] for key in ("Comment", "Comment[de]", "Comment[ja]")}) == 3


def test_service_starts_the_launcher():
    section, values = entries(PACKAGING / f"{NAME}.service")
    assert section == "D-BUS Service"
    assert values == {"Name": NAME, "Exec": LAUNCHER}


def test_package_has_its_files_and_fields(directory):
    run("cpack", "-G", "DEB", "-B", directory / "made", cwd=BUILD)
    (package,) = (directory / "made").glob("*.deb")
    run("dpkg-deb", "-R", package, directory / "root")
    control = directory / "root" / "DEBIAN"
    fields = dict(line.split(": ", 1) for line in (control / "control").read_text().splitlines()
                  if ": " in line)
    assert fields["Package"] == "vireon" and fields["Version"] == "1.4.121"
    depends = fields["Depends"].split(", ")
    # The very Qt whose compiler made the views, as the package of its library calls it.
    abi = run("dpkg-query", "-W", "-f", "${Provides}", "libqt5qml5").strip()
    assert abi.startswith("qtdeclarative-abi-") and abi in depends
    needed = ["qt5-image-formats-plugins", "fonts-dejavu-core", "qml-module-qtquick2",
              "libayatana-appindicator1", "libnotify4", "libglib2.0-bin"]
    assert [name for name in needed if name not in depends] == []
    assert any(name.startswith("libqt5quick5 (>=") for name in depends)
    assert (control / "conffiles").read_text().splitlines() == [
        f"{PLACE}/config/vireon.conf", f"{PLACE}/config/integration.conf"]
    shutil.rmtree(control)
    assert files_in(directory / "root") == INSTALLED


def test_installed_program_runs_beside_an_engine(directory, install):
    root = directory / "root"
    install_into(root, "vireon")
    assert files_in(root) == INSTALLED
    install_into(root, "simulator")
    assert files_in(root) == {**INSTALLED, **SIMULATOR}
    app = install()
    shutil.rmtree(app.programs)
    shutil.copytree(root / PLACE[1:], app.programs)
    app.start()
    app.wait_until_shows("Started and ready")


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


class Waiting:
    """A log-in at which gdbus leaves behind what it was asked and its exit status."""

    def __init__(self, directory):
        self.record = directory / "waiting"
        tools = directory / "tools"
        tools.mkdir()
        (tools / "gdbus").write_text('#!/bin/sh\n/usr/bin/gdbus "$@"\n'
                                     f'echo "$*: $?" > "{self.record}"\n')
        (tools / "gdbus").chmod(0o755)
        self.environment = {"DESKTOP_AUTOSTART_ID": "1",
                            "PATH": f"{tools}:{os.environ['PATH']}"}

    def ending(self):
        return self.record.read_text().strip()


@pytest.fixture
def waiting(directory):
    return Waiting(directory)


def test_launcher_starts_the_program_in_its_directory(launch):
    process = launch("two words", "-style")
    output, _ = process.communicate(timeout=60)
    # The program has the launcher's place: who ends one ends the other.
    assert output.splitlines() == [str(process.place), "two words", "-style", str(process.pid)]
    assert process.returncode == 0


def test_launcher_waits_for_the_tray_at_log_in(desktop, bus, launch, waiting):
    process = launch(environment=waiting.environment)
    with pytest.raises(subprocess.TimeoutExpired):
        process.wait(2)
    desktop.start("/usr/bin/python3", "-m", "dbusmock", "--session", WATCHER,
                  "/StatusNotifierWatcher", WATCHER)
    wait_for(lambda: bus.has_owner(WATCHER) or process.poll() is not None)
    assert process.wait(60) == 0
    assert process.stdout.readline().strip() == str(process.place)
    assert waiting.ending() == f"wait --session --timeout 10 {WATCHER}: 0"


def test_launcher_waits_for_ten_seconds_at_most(launch, waiting):
    process = launch(environment=waiting.environment)
    assert process.wait(60) == 0
    assert process.stdout.read().splitlines()[0] == str(process.place)
    assert waiting.ending() == f"wait --session --timeout 10 {WATCHER}: 1"


def test_launcher_needs_no_bus(launch):
    process = launch(environment={"DESKTOP_AUTOSTART_ID": "1",
                                  "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"})
    assert process.wait(60) == 0
    assert process.stdout.read().splitlines()[0] == str(process.place)

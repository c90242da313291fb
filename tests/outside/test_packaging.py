"""What is installed around the program."""

import configparser
import os
import pathlib
import re
import shutil
import subprocess

import pytest

from rig import wait_for
from rig.app import built_programs

TREE = pathlib.Path(__file__).parents[2]
PACKAGING = TREE / "packaging"
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
    "/usr/local/share/man/man1/vireonctl.1.gz": 0o644,
    "/usr/local/share/bash-completion/completions/vireonctl": 0o644,
    LAUNCHER: 0o755,
    f"{PLACE}/vireon-box": 0o755,
    **{f"{PLACE}/config/{path.name}": 0o644 for path in (TREE / "config").glob("*.conf")},
    f"{PLACE}/Corvanthel.png": 0o644,
    f"{PLACE}/CorvanthelSmall.png": 0o644,
    f"/usr/local/share/applications/{NAME}.desktop": 0o644,
    f"/usr/local/share/dbus-1/services/{NAME}.service": 0o644,
    f"/usr/local/share/metainfo/{NAME}.metainfo.xml": 0o644,
    "/usr/local/share/man/man1/vireon.1.gz": 0o644,
    "/etc/xdg/autostart/Vireon.desktop": 0o644,
    "/usr/local/share/icons/hicolor/scalable/apps/vireon.svg": 0o644,
    **{f"/usr/share/doc/vireon/{path.name[:-3]}.html": 0o644
       for path in (TREE / "docs").glob("user-guide*.md")},
    **{f"/usr/share/doc/vireon/{path.relative_to(TREE / 'docs')}": 0o644
       for path in (TREE / "docs/guide").glob("*/*.png")},
    **{f"/usr/local/share/icons/hicolor/{size}/apps/vireon.png": 0o644 for size in ICON_SIZES},
}
SIMULATOR = {f"{PLACE}/vireon-main": 0o755, f"{PLACE}/vireon-sdk": 0o755}
NEEDED_TOOLS = {"dpkg-shlibdeps": "dpkg-dev", "file": "file", "pandoc": "pandoc"}
# Nobody's: dpkg would remove what it finds empty.
SHARED = {"/usr/local", "/usr/local/bin", "/usr/local/share", "/usr/local/share/man"}


def about(package):
    """What Debian wants beside every package."""
    return {f"/usr/share/doc/{package}/{name}": 0o644 for name in ("changelog.gz", "copyright")} | {
        f"/usr/share/lintian/overrides/{package}": 0o644}


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


@pytest.fixture
def packages(directory):
    """The two packages by name, made as scripts/package does."""
    run("cpack", "-G", "DEB", "-B", directory / "made", cwd=BUILD)
    return {path.name.split("_")[0]: path for path in (directory / "made").glob("*.deb")}


def fields_of(package):
    return dict(line.split(": ", 1) for line in run("dpkg-deb", "-f", package).splitlines()
                if ": " in line)


def version_of_tree():
    return re.search(r"VERSION ([0-9.]+) LANG", (TREE / "CMakeLists.txt").read_text())[1]


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


def test_package_has_its_files_and_fields(directory, packages):
    assert sorted(packages) == ["vireon", "vireon-simulator"]
    run("dpkg-deb", "-R", packages["vireon"], directory / "root")
    control = directory / "root" / "DEBIAN"
    fields = fields_of(packages["vireon"])
    assert fields["Package"] == "vireon" and fields["Version"] == version_of_tree()
    depends = fields["Depends"].split(", ")
    # The very Qt whose compiler made the views, as the package of its library calls it.
    abi = run("dpkg-query", "-W", "-f", "${Provides}", "libqt5qml5").strip()
    assert abi.startswith("qtdeclarative-abi-") and abi in depends
    needed = ["qt5-image-formats-plugins", "fonts-dejavu-core", "qml-module-qtquick2",
              "libglib2.0-bin"]
    assert [name for name in needed if name not in depends] == []
    assert "qml-module-qtquick-controls2" not in depends
    assert any(re.match("libqt5quick5(t64)? [(]>=", name) for name in depends)
    assert fields["Recommends"] == (
        "libayatana-appindicator1, libnotify4, x11-utils, x11-xserver-utils")
    conffiles = (control / "conffiles").read_text().split()
    assert sorted(conffiles) == sorted(path for path in INSTALLED
                                       if path.endswith(".conf") or path.startswith("/etc"))
    for script in ("preinst", "postinst", "postrm"):
        run("shellcheck", control / script)
    shutil.rmtree(control)
    assert files_in(directory / "root") == INSTALLED | about("vireon")
    # The simulated engine has one of its own.
    fields = fields_of(packages["vireon-simulator"])
    assert fields["Version"] == version_of_tree()
    assert fields["Depends"].startswith("vireon, ") and "libqt5core5" in fields["Depends"]
    run("dpkg-deb", "-x", packages["vireon-simulator"], directory / "simulator")
    assert files_in(directory / "simulator") == SIMULATOR | about("vireon-simulator")


def test_packages_keep_the_rules(directory, packages):
    for package in packages.values():
        lines = run("dpkg-deb", "-c", package).splitlines()
        owned = {line.split()[5].strip("./") for line in lines}
        assert "usr/local/bin/Vireon" in owned
        assert not owned & {path.strip("/") for path in SHARED}
        # Whoever builds it, nobody else can write it.
        assert {(line.split()[0], line.split()[1]) for line in lines} <= {
            (mode, "root/root")
            for mode in ("drwxr-xr-x", "-rwxr-xr-x", "-rw-r--r--", "lrwxr-xr-x")}
    result = subprocess.run(
        ["lintian", "--allow-root", "--fail-on", "error,warning", *packages.values()],
        stdout=subprocess.PIPE, text=True)
    assert (result.returncode, result.stdout) == (0, "")
    # Made again by somebody with another umask they are the same.
    os.umask(0o077)
    run("cpack", "-G", "DEB", "-B", directory / "again", cwd=BUILD)
    os.umask(0o022)
    for package in packages.values():
        assert (directory / "again" / package.name).read_bytes() == package.read_bytes()


def test_what_ships_is_hardened():
    if "CMAKE_BUILD_TYPE:STRING=Release\n" not in (BUILD / "CMakeCache.txt").read_text():
        pytest.skip("only the release build ships")
    for name in ("bin/vireon", "bin/vireon-box", "simulator/vireon-main", "simulator/vireon-sdk"):
        assert re.search(r"\(FLAGS_1\).*NOW.*PIE", run("readelf", "-d", BUILD / name)), name
    symbols = run("nm", "-D", BUILD / "bin/vireon")
    assert "__stack_chk_fail@" in symbols and "printf_chk@" in symbols


def test_package_needs_its_tools(directory):
    for tool, package in NEEDED_TOOLS.items():
        tools = directory / tool
        tools.mkdir()
        for name in (*NEEDED_TOOLS, "cmake"):
            if name != tool:
                (tools / name).symlink_to(shutil.which(name))
        result = subprocess.run(
            ["cmake", "-DCMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF",
             "-P", TREE / "cmake/PackageTools.cmake"],
            env={"PATH": str(tools)}, stderr=subprocess.PIPE, text=True)
        assert result.returncode != 0
        assert f"{tool} is missing: install the package {package}" in result.stderr


def test_another_prefix_is_refused(directory):
    result = subprocess.run(
        ["cmake", "-S", TREE, "-B", directory / "build", "-DBUILD_TESTING=OFF",
         "-DCMAKE_INSTALL_PREFIX=/usr"], stderr=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    assert result.returncode != 0
    assert "CMAKE_INSTALL_PREFIX is /usr: " in result.stderr


def test_metainfo_and_manual_are_valid(directory):
    install_into(directory, "vireon")
    share = directory / "usr/local/share"
    run("appstreamcli", "validate", "--no-net", share / f"metainfo/{NAME}.metainfo.xml")
    for page in (share / "man").glob("*/*"):
        result = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", page],
                                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                                env={**os.environ, "MANROFFSEQ": "", "MANWIDTH": "80"})
        assert (result.returncode, result.stderr) == (0, "")


def test_scripts_are_clean():
    scripts = [path for path in TREE.joinpath("scripts").iterdir()
               if path.is_file() and "sh" in path.read_text().split("\n")[0]]
    run("shellcheck", "-x", "-P", TREE / "scripts", TREE / "scripts/lib/common.sh",
        PACKAGING / "Vireon.sh", PACKAGING / "debian/simulator.preinst", *scripts)


def test_autostart_entry_is_the_one_the_program_writes():
    result = subprocess.run(["desktop-file-validate", PACKAGING / "Vireon.desktop"],
                            stdout=subprocess.PIPE, text=True)
    assert (result.returncode, result.stdout) == (0, "")
    assert (PACKAGING / "Vireon.desktop").read_text().splitlines() == [
        "[Desktop Entry]", "Type=Application", f"Exec={LAUNCHER}", "Hidden=false",
        "NoDisplay=false", "X-GNOME-Autostart-enabled=true", "Name=Vireon", "Comment="]


def test_installed_program_runs_beside_an_engine(directory, install):
    root = directory / "root"
    install_into(root, "vireon")
    assert files_in(root) == INSTALLED | about("vireon")
    install_into(root, "simulator")
    assert files_in(root) == (INSTALLED | SIMULATOR | about("vireon") | about("vireon-simulator"))
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
    (place / "vireon").write_text('#!/bin/sh\npwd\nprintf "%s\\n" "$@"\necho $$\n'
                                  'echo "id: $DESKTOP_AUTOSTART_ID"\n')
    (place / "vireon").chmod(0o755)
    shutil.copy2("/bin/true", place / "vireon-main")
    shutil.copy2(pathlib.Path(built_programs(), "vireon-box"), place)
    (directory / "link").symlink_to(place / "Vireon.sh")
    started = []

    def start(*arguments, environment=None):
        started.append(subprocess.Popen(
            [directory / "link", *arguments], env={**desktop.environment, **(environment or {})},
            cwd="/", stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True))
        return started[-1]

    start.place = place
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
    assert output.splitlines() == [str(launch.place), "two words", "-style", str(process.pid),
                                   "id: "]
    assert process.returncode == 0


def test_launcher_waits_for_the_tray_at_log_in(desktop, bus, launch, waiting):
    process = launch(environment=waiting.environment)
    with pytest.raises(subprocess.TimeoutExpired):
        process.wait(2)
    desktop.start("/usr/bin/python3", "-m", "dbusmock", "--session", WATCHER,
                  "/StatusNotifierWatcher", WATCHER)
    wait_for(lambda: bus.has_owner(WATCHER) or process.poll() is not None)
    assert process.wait(60) == 0
    assert process.stdout.readline().strip() == str(launch.place)
    assert waiting.ending() == f"wait --session --timeout 10 {WATCHER}: 0"


def test_launcher_waits_for_ten_seconds_at_most(launch, waiting):
    process = launch(environment=waiting.environment)
    assert process.wait(60) == 0
    lines = process.stdout.read().splitlines()
    assert lines[0] == str(launch.place)
    # It is the launcher's own: the engine would inherit it.
    assert lines[-1] == "id: "
    assert waiting.ending() == f"wait --session --timeout 10 {WATCHER}: 1"


def test_launcher_needs_no_bus(launch):
    process = launch(environment={"DESKTOP_AUTOSTART_ID": "1",
                                  "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"})
    assert process.wait(60) == 0
    assert process.stdout.read().splitlines()[0] == str(launch.place)


@pytest.mark.parametrize("language, words", [
    ("C.UTF-8", "The engine is missing"), ("de_DE.UTF-8", "Die Engine fehlt"),
    ("ja_JP.UTF-8", "エンジンがありません")])
def test_launcher_tells_when_the_engine_is_missing(desktop, launch, locales, language, words):
    (launch.place / "vireon-main").unlink()
    process = launch(environment={"LC_ALL": language, "LOCPATH": str(locales)})
    wait_for(desktop.active_window, what="the box")
    assert process.poll() is None
    desktop.key("Return")
    output, _ = process.communicate(timeout=60)
    assert process.returncode == 1
    assert output.startswith(words) and str(launch.place) in output
    assert "vireon-simulator" in output

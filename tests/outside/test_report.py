"""What a technician gets together for the support."""

import os
import re
import tarfile

import pytest

from rig import wait_for

DONE, FAILED = 0, 1
ALWAYS = {"versions.txt", "desktop.txt", "config/vireon.conf", "config/integration.conf", "status.txt",
          "data-directory.txt"}
SECRET = "nobody-else-may-read-this"


def unpacked(path):
    """The files in the report, by their names."""
    with tarfile.open(path) as archive:
        return {member.name.removeprefix("vireon-report/"): archive.extractfile(member).read().decode()
                for member in archive if member.isfile()}


def listed(answer):
    """The names that were told on the screen, but those of what is not there."""
    return {line.split()[0] for line in answer.stdout.splitlines()[1:]
            if not line.endswith("not there")}


@pytest.fixture
def path(directory):
    return directory / "morning.tar.gz"


@pytest.fixture
def app(install):
    """A run with a log file that has been begun anew, and a crash in it."""
    app = install(environment={"VIREON_SECRET": SECRET, "XDG_SESSION_TYPE": "x11"},
                  scenario="at 0 status -6 firmware 3\n")
    app.switch_on("mailbox", "logFile=vireon.log", "logFileSize=2048")
    app.data.mkdir()
    for place in (app.home / ".netrc", app.home / "Documents/letter.txt", app.data / "notes.txt"):
        place.write_text(SECRET)
    os.symlink(app.home / ".netrc", app.data / "link.log")
    app.start()
    app.wait_until_shows("not calibrated")
    return app


def test_holds_what_the_support_asks_for(app, desktop, path):
    wait_for(lambda: (app.data / "vireon.log.1").exists(), what="a log that was begun anew")
    answer = app.control("report", path)
    assert (answer.returncode, answer.stderr) == (DONE, "")
    assert path.stat().st_mode & 0o777 == 0o600
    files = unpacked(path)
    assert set(files) == listed(answer) == ALWAYS | {"log/vireon.log", "log/vireon.log.1", "user.ini"}
    for line in answer.stdout.splitlines()[1:]:
        name, size = line.split()[0], int(re.search(r"(\d+) bytes$", line)[1])
        assert len(files[name].encode()) == size, name
    assert "vireonctl: 1.4.121\nthe program beside it: Vireon 1.4.121\nQt: 5.15." in files["versions.txt"]
    assert "XDG_SESSION_TYPE: x11" in files["desktop.txt"]
    assert 'window manager: _NET_WM_NAME = "Openbox"' in files["desktop.txt"]
    assert re.search(r"^ +1920x1080 +\d+\.\d\d\*", files["desktop.txt"], re.M)
    for name in ("config/vireon.conf", "config/integration.conf"):
        assert files[name] == (app.programs / name).read_text()
    assert files["user.ini"] == (app.data / "user.ini").read_text()
    assert "now: Started, Vireon not calibrated.\nstatus file: status -6, firmware 3, written 20" \
        in files["status.txt"]
    assert "Debug: " in files["log/vireon.log"] and "Debug: " in files["log/vireon.log.1"]
    names = files["data-directory.txt"]
    assert f"notes.txt  {len(SECRET)} bytes, 20" in names and "link.log  link, 20" in names
    assert not [name for name, text in files.items() if SECRET in text]


def test_tells_the_changes_of_the_log(install, path):
    app = install(scenario="at 0 status -6\non a status 0\n")
    app.switch_on("mailbox").start("--logFile=vireon.log")
    app.wait_until_shows("not calibrated")
    assert app.control("calibrate", "auto").returncode == DONE
    app.wait_until_shows("Started and ready")
    assert app.control("report", path).returncode == DONE
    changes = [line[20:] for line in unpacked(path)["status.txt"].splitlines()
               if re.match(r"\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d ", line)]
    assert changes == ["  -6 Started, Vireon not calibrated.", "   0 Started and ready"]


def test_needs_no_controller_and_no_display(install, path):
    app = install(environment={"DISPLAY": None})
    answer = app.control("report", path)
    assert (answer.returncode, answer.stderr) == (DONE, "")
    assert "  user.ini                 settings of the user, not there\n" in answer.stdout
    files = unpacked(path)
    assert set(files) == ALWAYS
    assert "now: Vireon is not running.\nstatus file: there is none\n" in files["status.txt"]
    assert "The last changes are not known" in files["status.txt"]
    assert "DISPLAY: not set" in files["desktop.txt"]
    assert not app.data.exists()


def test_of_what_is_too_large_it_has_a_part(install, path):
    app = install().switch_on("logFile=vireon.log")
    app.data.mkdir()
    limit = 16777216
    (app.data / "vireon.log").write_bytes(b"first\n" + (limit - 5) * b"x" + b"last\n")
    (app.data / "vireon.log.1").write_bytes(limit * b"y")
    for number in range(2000):
        (app.data / f"{number}").touch()
    assert app.control("report", path).returncode == DONE
    files = unpacked(path)
    assert files["log/vireon.log"] == "[only the end of it]\n" + (limit - 5) * "x" + "last\n"
    assert files["log/vireon.log.1"] == limit * "y"
    lines = files["data-directory.txt"].splitlines()
    assert len(lines) == 2002 and lines[-1] == "[and more]"


def test_tells_which_tools_are_missing(install, directory, path):
    tools = directory / "tools"
    tools.mkdir()
    for name in ("tar", "gzip", "sh"):
        os.symlink(f"/bin/{name}", tools / name)
    app = install()
    assert app.control("report", path, environment={"PATH": str(tools)}).returncode == DONE
    text = unpacked(path)["desktop.txt"]
    assert "window manager: xprop is not installed\n" in text and "\nxrandr is not installed\n" in text


def test_file_that_is_there_stays(install, path):
    path.write_text("before")
    answer = install().control("report", path)
    assert (answer.returncode, answer.stdout) == (FAILED, "")
    assert answer.stderr == f"vireonctl: {path} is there already, and stays as it is\n"
    assert path.read_text() == "before"


def test_full_disk_leaves_nothing(install, directory):
    disk = directory / "disk"
    disk.mkdir()
    app = install()
    app.data.mkdir()
    (app.data / "user.ini").write_bytes(os.urandom(20000))
    rights = ["--map-root-user", "--mount"] if os.geteuid() else ["--mount"]
    script = f'mount -t tmpfs -o size=8k tmpfs {disk}; "$@"; code=$?; ls -A {disk}; exit $code'
    answer = app.control("report", disk / "a.tar.gz",
                         by=("unshare", *rights, "sh", "-c", script, "sh"))
    assert answer.returncode == FAILED
    assert answer.stderr.startswith(f"vireonctl: {disk}/a.tar.gz cannot be written: ")
    assert answer.stdout.splitlines()[-1].startswith("  data-directory.txt ")  # and no file of the disk


@pytest.mark.parametrize("locale, head, line", [
    ("de_DE.UTF-8", "Der Bericht enthält:", "user.ini                 Einstellungen des Benutzers, nicht da"),
    ("ja_JP.UTF-8", "レポートの内容:", "user.ini                 ユーザーの設定, なし")])
def test_list_is_in_the_users_language(install, locales, path, locale, head, line):
    answer = install().control("report", path, environment={"LANG": locale, "LOCPATH": str(locales)})
    assert answer.stdout.splitlines()[0] == head and f"  {line}\n" in answer.stdout

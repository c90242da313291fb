"""The start of the program, up to the engine that is ready."""

import re

import pytest
from PIL import Image

from rig import wait_for
from rig.processes import maps_of

BAD = (0xff, 0x8a, 0x80)  # the colour of what has failed
LEFTOVERS = ("fifo1", "fifo2", "refifo")


def test_starts_up_to_ready(install):
    app = install(scenario="at 4000 status -1\nat 8000 status 0\n").start()
    app.wait_until_shows("Starting up...")
    assert app.shows("1.4.121")
    app.wait_until_shows("Not connected to Vireon.")
    app.wait_until_shows("Started and ready")
    assert len(app.journal("start")) == 1
    assert app.log_count(r"Vireon exited") == 0


def test_loads_no_plug_in_for_pictures(install):
    app = install().start()
    app.wait_until_shows("Started and ready")
    assert not [name for name in maps_of(app.pid) if name.startswith(("libqgif", "libqic", "libqjpeg"))]
    app.click("Auto Calibration")
    app.wait_for_control("Continue")  # with a picture beside it
    wait_for(lambda: "libqicns.so" in maps_of(app.pid), what="the plug-ins")


def test_cleans_the_directory_before_the_engine_starts(install):
    app = install()
    app.data.mkdir()
    for name in (*LEFTOVERS, "mcCache", "notes"):
        (app.data / name).write_text("old")
    (app.data / "pensettings.ini").write_text("Result=5\nFirmware=1\n")
    app.start()
    app.wait_until_shows("Started and ready")
    assert sorted(app.journal("start")[0].files) == ["mcCache", "notes", "user.ini"]
    assert app.log_count(r"statuslistener\s+\"?5") == 0
    app.quit()
    assert app.output().splitlines()[0] == f"directory {app.data} "
    assert "creating directory" not in app.output()


def test_creates_the_missing_directory(app):
    app.wait_until_shows("Started and ready")
    assert app.data.is_dir()
    app.quit()
    assert app.output().splitlines()[:2] == [f"directory {app.data} ", "creating directory "]


def test_second_copy_says_so_and_leaves(install):
    first = install().start()
    first.wait_until_shows("Started and ready")
    # What a start would delete, and what it would leave alone.
    for name in (*LEFTOVERS, "mcCache", "notes"):
        (first.data / name).write_text(f"kept {name}")
    (first.data / "folder").mkdir()
    (first.data / "folder" / "inner").write_text("kept")
    before = state_of(first.data)
    assert {"fifo1", "user.ini", "pensettings.ini", "folder/inner"} <= set(before)

    second = install(home=first.home, environment={"TMPDIR": str(first.temporary)}).start()
    second.wait_until_shows("Vireon application is already running.")
    assert "Error" in {item.name for item in second.items()}
    assert not second.programs_running().get("vireon-main")
    second.key("Return")
    assert second.wait() == 0
    assert second.output() == ""
    assert second.journal() == []
    assert state_of(first.data) == before
    assert first.is_running()
    assert len(first.journal("start")) == 1

    # Its hold ends with the first copy.
    assert first.quit() == 0
    third = install(home=first.home, environment={"TMPDIR": str(first.temporary)}).start()
    third.wait_until_shows("Started and ready")


def test_box_of_a_second_copy_is_ours_and_on_top(install, desktop, directory):
    first = install(scenario="unwritten\n").start()
    wait_for(lambda: len(first.windows()) == 2, what="the window and the splash over it")
    second = install(home=first.home, environment={"TMPDIR": str(first.temporary)}).start()
    second.wait_until_shows("Vireon application is already running.")
    (box,) = wait_for(second.windows, what="the box")
    assert desktop.windows()[-1] == box
    assert len(first.windows()) == 2, "the splash is still there"
    icons = {window: desktop.run("xprop", "-id", window, "32c", "_NET_WM_ICON")
             for window in (box, first.windows()[0])}
    assert "not found" not in icons[box] and len(set(icons.values())) == 1
    assert BAD in colours(second, directory / "box.png", box)
    second.key("Return")
    assert second.wait() == 0


@pytest.mark.parametrize("locale, code", [("C", "C"), ("ja_JP.UTF-8", "ja")])
def test_asks_for_the_translation_of_the_locale(install, locales, locale, code):
    app = install(environment={"LANG": locale, "LOCPATH": str(locales)}).start()
    app.engine_pid()
    line = wait_for(lambda: next((x for x in app.log() if "translation loading" in x), None))
    found = re.search(r'"?(\w+)"?\s+"?\s*translation loading:\s+"?(true|false)', line)
    assert found, line
    assert found.group(1) == code
    assert found.group(2) == ("false" if locale == "C" else "true")


@pytest.mark.parametrize("locale", ["C", "ja_JP.UTF-8", "de_DE.UTF-8"])
@pytest.mark.parametrize("name", ["ホーム 日本", "Größe Straße"])
def test_home_with_letters_of_all_kinds(install, directory, locales, locale, name):
    home = directory / name
    app = install(home=home, environment={"LANG": locale, "LOCPATH": str(locales)})
    app.data.mkdir(parents=True)
    for leftover in LEFTOVERS:
        (app.data / leftover).write_text("old")
    (app.data / "mcCache").write_text("old")
    app.start()
    wait_for(lambda: app.log_count(r"statuslistener\s+\"?0"), what="the ready engine")
    assert not set(LEFTOVERS) & set(app.files())
    click_first_button(app)
    wait_for(lambda: app.letters() == ["m"], what="the letter m")
    assert "mcCache" not in app.files()
    wait_for(lambda: app.log_count(r"statuslistener\s+\"?0") == 2, what="ready again")
    app.quit()
    assert app.output().splitlines()[0] == f"directory {app.data} "


def colours(app, path, window):
    """The colours of which a window shows much."""
    app.desktop.run("import", "-window", window, path)
    return {colour for count, colour in Image.open(path).convert("RGB").getcolors(1 << 20)
            if count > 200}


def state_of(directory):
    """What a directory holds: by name, the content and the times of change of everything in it."""
    state = {}
    for path in [directory, *directory.rglob("*")]:
        status = path.lstat()
        content = path.read_bytes() if path.is_file() else None
        state[str(path.relative_to(directory))] = (
            content, status.st_mode, status.st_ino, status.st_mtime_ns, status.st_ctime_ns)
    return state


def click_first_button(app):
    """Manual calibration, in any language."""
    def first():
        return next((item for item in app.items() if "button" in item.role and item.enabled), None)
    button = wait_for(first, what="a button")
    app.desktop.click(*button.centre)

"""What an administrator may switch on beside the mailbox and the sleep, each by itself."""

import os

import pytest

from rig import NotificationService, wait_for

HIDE = "SDK\\Annotora\\Annotora_SDK_HideAnnotationWindow.exe"
SHOW = "SDK\\Annotora\\Annotora_SDK_ShowAnnotationWindow.exe"
ENTRY = ["[Desktop Entry]", "Type=Application", "Exec=/usr/local/bin/Vireon/Vireon.sh",
         "Hidden=false", "NoDisplay=false", "X-GNOME-Autostart-enabled=true", "Name=Vireon",
         "Comment="]
OFF = [{"Hidden=false": "Hidden=true",
        "X-GNOME-Autostart-enabled=true": "X-GNOME-Autostart-enabled=false"}.get(line, line)
       for line in ENTRY]



def mounted(script):
    """A command in front that gives the program mounts of its own."""
    rights = ["--map-root-user", "--mount"] if os.geteuid() else ["--mount"]
    return ("unshare", *rights, "sh", "-ec", script + '\nexec "$@"', "sh")


# --- The log file -----------------------------------------------------------------------------

def test_log_file_has_every_line(install):
    app = install().switch_on("logFile=vireon.log").start()
    app.wait_until_shows("Started and ready")
    app.quit()
    lines = (app.data / "vireon.log").read_text().splitlines()
    assert len([line for line in lines if ": Debug: Start vireon-main (" in line]) == 1
    assert len([line for line in lines if ": Debug: Quit Vireon clicked (" in line]) == 1
    # The same lines as on standard output, where others may stand between them.
    printed = app.output().splitlines()
    assert [line for line in lines if line not in printed] == []


def test_log_file_keeps_to_its_size(install):
    app = install(scenario='at 3000 print "a long line of the engine" repeat 2000\n')
    app.switch_on("logFile=vireon.log", "logFileSize=20000", "logFileKept=2").start()
    names = ["vireon.log", "vireon.log.1", "vireon.log.2"]
    wait_for(lambda: app.output().count("a long line") == 2000, what="all lines")
    assert [name for name in app.files() if "log" in name] == names
    assert all((app.data / name).stat().st_size <= 20000 for name in names)


def test_full_disk_ends_the_writing_and_not_the_program(install, directory):
    disk = directory / "disk"
    disk.mkdir()
    app = install(scenario='at 3000 print "a long line of the engine" repeat 200\n')
    app.switch_on(f"logFile={disk}/vireon.log")
    app.allow("^log file .*/vireon.log: .*; nothing more is written$")
    app.start(by=mounted(f"mount -t tmpfs -o size=8k tmpfs {disk}"))
    wait_for(lambda: app.log_count("nothing more is written"), what="the end of the writing")
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")
    wait_for(lambda: app.letters() == ["m"], what="a program that works")
    assert os.stat(f"/proc/{app.pid}/root{disk}/vireon.log").st_size == 8192
    assert app.log_count("nothing more is written") == 1


# --- The updater ------------------------------------------------------------------------------

def test_update_quits_once_with_a_message_first(desktop, bus, install, subject):
    service = NotificationService(desktop, bus)
    app = install().switch_on("updater").start()
    app.wait_until_shows("Started and ready")
    updater = subject("updatersubject", "vireon-updater",
                      environment={"TMPDIR": str(app.temporary)})
    assert updater.ask("make 4") == "made"
    assert updater.ask("state 2") == "written"
    wait_for(lambda: app.log_count("wait updater is doing something"), what="a busy updater")
    assert updater.ask("state 1") == "written"
    wait_for(lambda: "Vireon is being updated and quits now." in service.texts(), what="the message")
    assert app.is_running()
    assert app.wait() == 0
    assert app.log_count("Quit Vireon clicked") == 1
    assert app.letters() == ["Q"]
    assert service.texts().count("Vireon is being updated and quits now.") == 1


# --- The autostart entry ----------------------------------------------------------------------

def beside(system_entry=None, writable=False):
    """A command in front that gives the program a directory of system entries of its own."""
    script = "mount -t tmpfs tmpfs /etc/xdg/autostart\n"
    if system_entry is not None:
        text = "\\n".join(system_entry) + "\\n"
        script += f"printf '{text}' >/etc/xdg/autostart/Vireon.desktop\n"
    if not writable:
        script += "mount -o remount,ro /etc/xdg/autostart\n"
    return mounted(script)


def box(app):
    """Whether the check box of the settings is checked."""
    app.wait_for_control("Autostart")
    return next(item for item in app.items() if item.name == "Autostart").checked


def own_entry(app):
    path = app.home / ".config/autostart/Vireon.desktop"
    return path.read_text().splitlines() if path.exists() else None


def system_entry(app):
    path = f"/proc/{app.pid}/root/etc/xdg/autostart/Vireon.desktop"
    return open(path).read().splitlines() if os.path.exists(path) else None


def with_settings(app, command):
    app.start(by=command).wait_until_shows("Started and ready")
    app.click("Settings")
    return app


def test_box_writes_the_own_entry_where_the_system_has_none(install):
    app = with_settings(install().switch_on("autostartEntry"), beside())
    assert not box(app) and own_entry(app) is None
    for entry in (ENTRY, OFF, ENTRY):
        app.click("Autostart")
        wait_for(lambda: own_entry(app) == entry, what="the entry")
        wait_for(lambda: box(app) == (entry == ENTRY), what="the box to show it")
        wait_for(lambda: app.setting(2) == str(int(entry == ENTRY)), what="the setting")
    assert system_entry(app) is None


def test_box_shows_and_takes_over_a_system_entry(install):
    app = with_settings(install().switch_on("autostartEntry"), beside(ENTRY))
    assert box(app) and own_entry(app) is None
    app.click("Autostart")
    wait_for(lambda: own_entry(app) == OFF, what="the own entry over it")
    wait_for(lambda: not box(app), what="the box to show it")
    assert system_entry(app) == ENTRY


def test_box_writes_the_system_entry_where_it_may(install):
    app = with_settings(install().switch_on("autostartEntry"), beside(ENTRY, writable=True))
    app.click("Autostart")
    wait_for(lambda: "X-GNOME-Autostart-enabled=false" in system_entry(app), what="the entry")
    wait_for(lambda: not box(app), what="the box to show it")
    assert own_entry(app) is None


def test_box_stays_where_nothing_can_be_written(install):
    app = install().switch_on("autostartEntry")
    (app.home / ".config").write_text("no directory")
    with_settings(app, beside())
    app.click("Autostart")
    wait_for(lambda: app.log_count("auto Start clicked") >= 3, what="the click and its way back")
    wait_for(lambda: not box(app), what="a box that is off")


# --- The annotation toolbar -------------------------------------------------------------------

@pytest.fixture
def toolbar(install, directory):
    """toolbar(scenario): a started program with the tools that hide and show the toolbar, and what
    they have written down."""
    journal = directory / "tools"

    def start(scenario=None):
        place = directory / "copy0/app"
        app = install(scenario=scenario, environment={"PATH": f"{place}:/usr/bin:/bin"})
        # The one that hides is still at it when the other one is wanted.
        for name, word in ((HIDE, "hide; exec sleep 5"), (SHOW, "show")):
            (app.programs / name).write_text(f"#!/bin/sh\nexec >>{journal}\necho {word}\n")
            (app.programs / name).chmod(0o755)
        return app.switch_on("annotationToolbar").start()

    start.words = lambda: journal.read_text().split() if journal.exists() else []
    return start


def test_toolbar_is_hidden_during_a_calibration(toolbar):
    app = toolbar()
    app.wait_until_shows("Started and ready")
    assert toolbar.words() == []
    app.click("Manual Calibration")
    wait_for(lambda: toolbar.words() == ["hide"], what="a hidden toolbar")
    wait_for(lambda: toolbar.words() == ["hide", "show"], what="a toolbar that is back")
    app.wait_until_shows("Started and ready")


def test_toolbar_is_back_when_the_engine_fails(toolbar):
    app = toolbar("start 1\non m status 2\non m after 3000 signal KILL\n")
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")
    wait_for(lambda: toolbar.words() == ["hide"], what="a hidden toolbar")
    wait_for(lambda: toolbar.words() == ["hide", "show"], what="a toolbar that is back")
    wait_for(lambda: len(app.journal("start")) == 2, what="the next engine")


def test_toolbar_is_back_after_the_quit(toolbar):
    app = toolbar("on m status 2\non m after 600000 status 0\n")
    app.wait_until_shows("Started and ready")
    app.click("Manual Calibration")
    wait_for(lambda: toolbar.words() == ["hide"], what="a hidden toolbar")
    assert app.quit() == 0
    wait_for(lambda: toolbar.words() == ["hide", "show"], what="a toolbar that is back")


# --- The log window ---------------------------------------------------------------------------

def log_text(app):
    """What the log window shows, or None."""
    return next((item.name for item in app.items() if "firmware version" in item.name), None)


def test_log_window_opens_by_its_key(install):
    app = install().switch_on("logWindow").start()
    app.wait_until_shows("Started and ready")
    app.key("ctrl+f")
    wait_for(lambda: len(app.windows()) == 2, what="the log window")
    wait_for(lambda: "Debug: firmware version: 2 (" in (log_text(app) or ""), what="the log")
    wait_for(lambda: app.desktop.active_window() == app.windows()[-1], what="the window in use")
    app.desktop.key("Escape")
    wait_for(lambda: len(app.windows()) == 1, what="the log window's end")


def test_mailbox_opens_the_log_window(install):
    app = install().switch_on("logWindow", "mailbox").start()
    app.wait_until_shows("Started and ready")
    assert app.control("log").returncode == 0
    wait_for(lambda: len(app.windows()) == 2, what="the log window")

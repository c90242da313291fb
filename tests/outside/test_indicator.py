"""The indicator's menu and its notifications, read and clicked from the other side of the bus."""

import pathlib
import re

import pytest

from rig import Indicator, NotificationService, wait_for
from rig.app import built_programs
from rig.indicator import start_host

UNITY = {"XDG_CURRENT_DESKTOP": "Unity"}


@pytest.fixture
def host(desktop, bus):
    """The indicator area."""
    return start_host(desktop, bus)


@pytest.fixture
def service(desktop, bus):
    return NotificationService(desktop, bus)


def has(maps, library):
    return any(name.startswith(library) for name in maps)


@pytest.mark.parametrize("labels", [("Open", "Exit"), ("開く", "終了"), ("Öffnen", "Beenden")])
def test_menu_has_two_entries(bus, host, subject, labels):
    program = subject("indicatorsubject", environment=UNITY).ready()
    assert program.ask("indicate", *labels) == "done"
    indicator = Indicator(bus)
    entries = wait_for(indicator.entries)
    assert [properties["label"] for _, properties in entries] == list(labels)
    assert all(properties.get("type", "standard") == "standard"
               and properties.get("visible", True) and properties.get("enabled", True)
               for _, properties in entries)


def test_item_is_described(bus, host, subject):
    subject("indicatorsubject", environment=UNITY).ready().ask("indicate", "Open", "Exit")
    indicator = Indicator(bus)
    assert indicator.path == "/org/ayatana/NotificationItem/example"
    assert {member: indicator.property(member) for member in
            ("Id", "Category", "Status", "IconName")} == {
                "Id": "example", "Category": "ApplicationStatus", "Status": "Active",
                "IconName": "/usr/local/bin/Vireon/CorvanthelSmall.png"}


@pytest.mark.parametrize("without_glib", [None, "1"])
def test_each_entry_emits_its_signal_once(bus, host, subject, without_glib):
    program = subject("indicatorsubject", environment={**UNITY, "QT_NO_GLIB": without_glib}).ready()
    assert ("Glib" in program.ask("dispatcher")) == (without_glib is None)
    program.ask("indicate", "Open", "Exit")
    indicator = Indicator(bus)
    entries = wait_for(indicator.entries)
    for chosen, said in ((0, "show"), (1, "quit"), (0, "show"), (1, "quit")):
        indicator.click(entries[chosen][0])
        assert program.answer() == said
    # A second signal of one click would have come before this.
    program.ask("dispatcher")
    assert program.lines() == []
    assert len([line for line in program.log() if "gtk_check_menu_item_get_active" in line]) == 2


@pytest.mark.parametrize("desktop_session", ["ubuntu", "gnome"])
def test_gtk2_comes_alone(bus, host, subject, desktop_session):
    session = {"GNOME_DESKTOP_SESSION_ID": "this-is-deprecated", "DESKTOP_SESSION": desktop_session}
    elsewhere = subject("indicatorsubject",
                        environment={**session, "XDG_CURRENT_DESKTOP": "MATE"}).ready()
    # Without Qt's GTK 3 theme on the machine the rest would prove nothing.
    assert has(elsewhere.maps(), "libgtk-3.so") and not has(elsewhere.maps(), "libgtk-x11-2.0.so")
    program = subject("indicatorsubject", environment={**session, **UNITY}).ready()
    assert not has(program.maps(), "libgtk-x11-2.0.so")
    program.ask("indicate", "Open", "Exit")
    assert wait_for(Indicator(bus).entries)
    assert has(program.maps(), "libgtk-x11-2.0.so")
    assert not has(program.maps(), "libgtk-3.so")


def test_gtk2_stays_out_where_gtk3_is(subject):
    program = subject("indicatorsubject", "gtk3", environment=UNITY).ready()
    assert program.ask("indicate", "Open", "Exit") == "done"
    assert program.ask("indicate", "Open", "Exit") == "done"
    assert has(program.maps(), "libgtk-3.so") and not has(program.maps(), "libgtk-x11-2.0.so")
    assert [line for line in program.log() if "indicator" in line] == [
        "no indicator: GTK 3 is loaded"]


def test_what_is_missing_is_not_told_when_switched_off(subject):
    program = subject("indicatorsubject", "gtk3",
                      environment={**UNITY, "QT_LOGGING_RULES": "vireon.desktop=false"}).ready()
    assert program.ask("indicate", "Open", "Exit") == "done"
    assert [line for line in program.log() if "indicator" in line] == []


def test_missing_libraries_are_told_once(service, subject, directory):
    broken = directory / "broken"
    broken.mkdir()
    for name in ("libayatana-appindicator.so.1", "libnotify.so.4"):
        (broken / name).write_bytes(b"")
    program = subject("indicatorsubject",
                      environment={**UNITY, "LD_LIBRARY_PATH": str(broken)}).ready()
    for _ in range(2):
        assert program.ask("indicate", "Open", "Exit") == "done"
        assert program.ask("notify", "Vireon", "text") == "done"
    assert not has(program.maps(), "libgtk-x11-2.0.so")
    told = [line for line in program.log() if line.startswith("no ")]
    assert len(told) == 2
    assert told[0].startswith("no indicator:") and "libayatana-appindicator" in told[0]
    assert told[1].startswith("no notifications:") and "libnotify" in told[1]


def test_gtk_without_a_display_is_harmless(subject):
    environment = {**UNITY, "DISPLAY": None, "QT_QPA_PLATFORM": "offscreen"}
    program = subject("indicatorsubject", environment=environment).ready()
    assert program.ask("indicate", "Open", "Exit") == "done"
    assert program.is_running()
    assert "no indicator: GTK cannot be initialised" in program.log()


def test_x_error_does_not_end_the_program(host, subject):
    program = subject("indicatorsubject", environment=UNITY).ready()
    program.ask("indicate", "Open", "Exit")
    assert program.ask("xerror") == "done"
    assert program.is_running()


def test_notifications_arrive_in_their_order(service, subject):
    program = subject("indicatorsubject", environment=UNITY).ready()
    texts = ["Vireon not calibrated. Please Calibrate!", "Läuft im Hintergrund", "実行中"]
    program.ask("notify", *(word for text in texts for word in ("Vireon", text)))
    wait_for(lambda: len(service.texts()) >= len(texts), what=f"{len(texts)} messages")
    calls = service.calls_of("Notify")
    assert len(calls) == len(texts)
    assert [(call[0], call[3], call[4]) for call in calls] == [
        ("example", "Vireon", text) for text in texts]
    assert {(call[1], call[2]) for call in calls} == {(0, "/usr/local/bin/Vireon/Corvanthel.png")}
    # The time-out comes after the show: the service's own duration holds.
    assert {call[7] for call in calls} == {-1}


def test_each_notification_is_a_life_of_the_library(subject):
    fake = pathlib.Path(built_programs(), "../tests/subjects/fakenotify")
    program = subject("indicatorsubject",
                      environment={**UNITY, "LD_LIBRARY_PATH": str(fake)}).ready()
    program.ask("notify", "Vireon", "first", "Vireon", "zweite Größe")
    icon = "/usr/local/bin/Vireon/Corvanthel.png"
    assert [line for line in program.log() if line.startswith("notify")] == [
        f"notify{step}" for text in ("first", "zweite Größe") for step in
        ("_init example", f"_notification_new Vireon|{text}|{icon}", "_notification_show",
         "_notification_set_timeout 1", "_uninit")]


def test_failed_initialisation_shows_nothing(subject):
    fake = pathlib.Path(built_programs(), "../tests/subjects/fakenotify")
    program = subject("indicatorsubject", environment={
        **UNITY, "LD_LIBRARY_PATH": str(fake), "FAKE_NOTIFY_FAILS": "1"}).ready()
    program.ask("notify", "Vireon", "first", "Vireon", "second")
    assert [line for line in program.log() if line.startswith("notify")] == [
        "notify_init example"] * 2


def test_notifications_without_a_service_are_lost(subject):
    program = subject("indicatorsubject", environment=UNITY).ready()
    assert program.ask("notify", "Vireon", "text") == "done"
    assert program.is_running()
    assert not any(re.match("no ", line) for line in program.log())

"""What a screen reader finds in each view, and what a finger can hit."""

import pytest

from rig import views, wait_for

LOCALES = {"english": "C.UTF-8", "japanese": "ja_JP.UTF-8", "german": "de_DE.UTF-8"}
# An engine that stays where it is: whether its buttons can be used.
STATES = {"at 0 status 0\n": True, "at 0 status -6\n": True, "at 0 status -1\n": False,
          "at 0 status -12\n": False, "at 0 status 2\n": False}


class Tour:
    """Goes from view to view and compares what is shown with the table."""

    def __init__(self, app, language):
        self.app = app
        self.language = language

    def called(self, control):
        return control.called(self.language)

    def press(self, control):
        self.app.act(self.called(control))

    def shows(self, *groups):
        """Expects these controls, and no others."""
        expected = [(control.role, self.called(control), control.checked, control.explained)
                    for group in groups for control in group]
        found = []

        def as_expected():
            found[:] = self.app.controls()
            return [(item.role, item.name, item.checked, bool(item.description))
                    for item in found] == expected
        wait_for(as_expected, what=lambda: f"{expected}; shown: {found}")
        low = [item for item in found if item.height < views.FINGER or item.width < views.FINGER]
        assert not low, "too small for a finger"

    def shows_menu(self, menu, entries):
        self.app.act(self.called(menu), "ShowMenu")
        names = [self.called(entry) for entry in entries]
        bar = [self.called(one) for one in views.MENUS]
        found = []

        def as_expected():
            found[:] = [item for item in self.app.items() if item.role == "menu item"]
            return [item.name for item in found if item.name not in bar] == names
        wait_for(as_expected, what=lambda: f"{names}; shown: {found}")
        disabled = [item.name for item in found if not item.enabled]
        assert disabled == [name for name in names if name == self.called(views.FIRMWARE)]
        self.app.key("Escape")
        self.app.key("Escape")


def look_at_everything(install, desktop, locales, language):
    desktop.set_mode(1920, 1080, 30)
    app = install(environment={"LANG": LOCALES[language], "LOCPATH": str(locales)}).start()
    tour = Tour(app, language)
    app.wait_until_shows(views.READY[language])

    tour.shows(views.MAIN, views.RATE_WARNING)
    tour.press(views.RATE_WARNING[0])
    tour.shows(views.MAIN)
    for menu, entries in views.MENUS.items():
        tour.shows_menu(menu, entries)

    main = {control.english: control for control in views.MAIN}
    for opener, view, leave in (("Auto Calibration", views.ADVICE, 1), ("Stylus", views.INPUT, 0),
                                ("Settings", views.SETTINGS, 0)):
        tour.press(main[opener])
        tour.shows(view)
        tour.press(view[leave])
        tour.shows(views.MAIN)

    desktop.set_mode(1024, 768)
    tour.shows(views.MAIN, views.RATIO_WARNING)
    tour.press(views.RATIO_WARNING[2])
    tour.shows(views.MAIN, views.RATIO_ADVICE)
    tour.press(views.RATIO_ADVICE[1])
    tour.shows(views.MAIN)


def test_everything_in_english(install, desktop, locales):
    look_at_everything(install, desktop, locales, "english")


def test_everything_in_japanese(install, desktop, locales):
    look_at_everything(install, desktop, locales, "japanese")


def test_everything_in_german(install, desktop, locales):
    look_at_everything(install, desktop, locales, "german")


@pytest.mark.parametrize("scenario, usable", STATES.items())
def test_disabled_controls_say_so_and_do_nothing(install, scenario, usable):
    app = install(scenario=scenario).start()
    wait_for(lambda: app.log_count(r"closing splash"), what="the first report")
    told = "" if usable else views.NOT_AVAILABLE["english"]
    expected = {control.english: told for control in views.MAIN} | {"Settings": ""}
    wait_for(lambda: {item.name: item.description for item in app.controls()} == expected,
             what=lambda: f"{expected}; shown: {app.controls()}")
    if usable:
        return
    for control in views.MAIN[:4]:
        app.act(control.english)
    app.act("Settings")
    app.wait_for_control("Autostart")
    assert {item.name: item.description for item in app.controls()
            if item.role == "push button"} == {"Back": "", "Sensor Viewer": told,
                                               "Correct Offset": told}
    app.act("Sensor Viewer")
    app.act("Correct Offset")
    app.act("Back")
    app.wait_for_control("Settings")
    assert {item.name for item in app.controls()} == set(expected)
    assert not app.log_count(r"Action: "), "a command was given"


def test_changed_status_is_said(install):
    """To who does not see it, and without a key."""
    app = install(scenario="at 0 status 0\nat 4000 status -2\nat 5000 status -2\n"
                           "at 6000 status -6\non m status 2\non m after 500 status -4\n").start()
    app.wait_until_shows("Started and ready")
    reader = app.desktop.reader
    said = reader.listen(app.pid)

    def says(*texts):
        wait_for(lambda: reader.hear() or said == list(texts),
                 what=lambda: f"{list(texts)}; said: {said}")
    says("Light disturbance detected.", "Started, Vireon not calibrated.")
    said.clear()
    for _ in range(2):
        app.act("Manual Calibration")
        says("Loading...", "Calibration failed, please try again.")
        said.clear()


def test_controls_behind_a_dialog_do_nothing(install, desktop):
    desktop.set_mode(1920, 1080, 30)
    app = install().start()
    app.wait_until_shows("Started and ready")
    app.wait_for_control("OK")
    for control in views.MAIN:
        app.act(control.english)
    app.act("OK")
    wait_for(lambda: not app.clickable("OK"), what="an end of the warning")
    assert [item.name for item in app.controls()] == [control.english for control in views.MAIN]
    assert app.letters() == []

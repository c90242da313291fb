"""The keyboard, from the first Tab to the last Escape."""

import pytest

from rig import step, views, wait_for

# How each view is reached from the main view, its controls, where the keyboard begins, and
# whether Escape closes it.
VIEWS = {
    "main view": ([], views.MAIN, None),
    "advice": (["Auto Calibration"], views.ADVICE, "Continue"),
    "input": (["Stylus"], views.INPUT, "Back"),
    "settings": (["Settings"], views.SETTINGS, "Back"),
}
WIDE, OLD = (1920, 1080), (1024, 768)


def names(controls):
    return [control.english for control in controls]


def from_here(order, first):
    """The order of the Tab key, as seen from one control."""
    at = order.index(first)
    return order[at:] + order[:at]


def goes_round(app, order):
    """Tab and Shift+Tab go through all of them, and back to where they began."""
    begin = app.focused()
    there = from_here(order, begin)
    assert [step(app, "Tab") for _ in order] == there[1:] + there[:1]
    assert [step(app, "shift+Tab") for _ in order] == there[::-1]


@pytest.fixture
def ready(app):
    app.wait_until_shows("Started and ready")
    return app


@pytest.mark.parametrize("way, controls, first", VIEWS.values(), ids=VIEWS)
def test_tab_goes_round(ready, way, controls, first):
    for name in way:
        ready.click(name)
        ready.wait_for_control(first)
    if first is None:
        first = step(ready, "Tab")
        assert first == controls[0].english
    wait_for(lambda: ready.focused() == first, what=f"the keyboard at {first}")
    goes_round(ready, names(controls))


def test_tab_stays_within_the_warnings(install, desktop):
    desktop.set_mode(*WIDE, 30)
    app = install().start()
    app.wait_until_shows("Started and ready")
    wait_for(lambda: app.focused() == "OK", what="the keyboard at OK")
    app.key("Tab")
    app.key("shift+Tab")
    app.key("Escape")
    wait_for(lambda: not app.clickable("OK"), what="an end of the rate warning")
    desktop.set_mode(*OLD)
    wait_for(lambda: app.focused() == "Ignore", what="the keyboard at Ignore")
    goes_round(app, names(views.RATIO_WARNING))
    app.act("Change graphics settings")
    wait_for(lambda: app.focused() == "Go back", what="the keyboard at Go back")
    order = names(views.RATIO_ADVICE)
    assert [step(app, "Tab") for _ in order] == order[::-1]
    assert [step(app, "shift+Tab") for _ in order] == order[::-1]
    app.key("Escape")
    wait_for(lambda: not app.clickable("Go back"), what="an end of the ratio warning")


@pytest.mark.parametrize("way, controls, first", list(VIEWS.values())[1:], ids=list(VIEWS)[1:])
def test_escape_leads_back(ready, way, controls, first):
    opener = way[-1]
    if controls is views.ADVICE:  # without the mark it comes again
        ready.act(opener)
        ready.act(controls[0].english)
        ready.act("Cancel")
    # With the keyboard: back to the control that has opened it.
    step(ready, "Tab")
    while ready.focused() != opener:
        step(ready, "Tab")
    for _ in range(2):
        ready.key("Return")
        wait_for(lambda: ready.focused() == first, what=f"the keyboard at {first}")
        ready.key("Escape")
        wait_for(lambda: ready.focused() == opener, what=f"the keyboard at {opener}")
    wait_for(lambda: [item.name for item in ready.controls()] == names(views.MAIN),
             what="the main view alone")
    # With the mouse, whatever has had the keyboard: to the main view.
    ready.click(opener)
    wait_for(lambda: ready.focused() == first, what=f"the keyboard at {first}")
    ready.key("Escape")
    ready.wait_for_control(opener)
    assert step(ready, "Tab") in names(views.MAIN)
    assert ready.letters() == []


def test_nothing_hidden_has_the_keyboard(ready):
    # No control has had the keyboard before the mouse opens the advice.
    ready.click("Auto Calibration")
    wait_for(lambda: ready.focused() == "Continue", what="the keyboard at Continue")
    ready.key("Escape")
    ready.wait_for_control("Auto Calibration")
    ready.key("Return")
    ready.key("space")
    assert step(ready, "Tab") == "Manual Calibration"
    assert ready.letters() == [] and not ready.log_count(r"Action: ")


def test_menus_lead_back_to_the_view(ready):
    first = step(ready, "Tab")
    for opened in (lambda: ready.key("F10"), lambda: ready.click("File")):
        opened()
        ready.wait_for_control("Exit")
        ready.key("Escape")
        wait_for(lambda: not ready.clickable("Exit"), what="a closed menu")
        ready.key("Escape")
        wait_for(lambda: ready.focused() == first, what=f"the keyboard at {first}")
    assert step(ready, "Tab") == "Touch Calibration"


def test_control_f_is_taken(ready):
    # It asks for the log window, which the controller never opens.
    ready.key("ctrl+f")
    assert step(ready, "Tab") == "Manual Calibration"
    assert len(ready.windows()) == 1


def test_control_w_closes_and_control_q_quits(ready, bus):
    ready.key("ctrl+w")
    ready.wait_until_hidden()
    assert ready.is_running()
    bus.call("com.corvanthel.Vireon", "/com/corvanthel/Vireon", "org.freedesktop.Application",
             "Activate", "(a{sv})", {})
    # From wherever the keyboard is, also from a panel.
    ready.click("Settings")
    wait_for(lambda: ready.focused() == "Back", what="the keyboard at Back")
    ready.key("ctrl+w")
    ready.wait_until_hidden()
    bus.call("com.corvanthel.Vireon", "/com/corvanthel/Vireon", "org.freedesktop.Application",
             "Activate", "(a{sv})", {})
    ready.key("ctrl+q")
    assert ready.wait() == 0
    assert ready.letters() == ["Q"]


def test_control_q_quits_in_german(install, locales):
    """Its menu calls the key "Strg"."""
    app = install(environment={"LANG": "de_DE.UTF-8", "LOCPATH": str(locales)}).start()
    app.wait_until_shows("Gestartet und bereit")
    app.key("ctrl+q")
    assert app.wait() == 0

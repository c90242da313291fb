"""The ways to operate a control, each of which has to work everywhere."""

from . import processes


class Mouse:
    """Points and clicks."""

    def press(self, app, name):
        app.click(name)

    def choose(self, app, menu, entry):
        app.click(menu)
        app.click(entry)


class Reader:
    """Has a screen reader do it."""

    def press(self, app, name):
        app.act(name)

    def choose(self, app, menu, entry):
        if not app.clickable(entry):  # a menu stays open when an entry is pressed in this way
            app.act(menu, "ShowMenu")
        app.act(entry)


class Keyboard:
    """Goes there with Tab, and with F10 and the arrows in the menus, and presses this key."""

    def __init__(self, key):
        self.key = key

    def press(self, app, name):
        app.wait_for_control(name)
        for _ in range(12):
            if app.focused() == name:
                app.key(self.key)
                return
            step(app, "Tab")
        raise AssertionError(f"Tab does not lead to {name!r}")

    def choose(self, app, menu, entry):
        processes.wait_for(lambda: not app.is_in_menus(), what="the end of the last menu")
        app.key("F10")
        processes.wait_for(lambda: app.has_focus("File"), what="the first menu")
        for key, name in (("Right", menu), ("Down", entry)):
            for _ in range(5):
                if app.has_focus(name):
                    break
                step(app, key)
            assert app.has_focus(name), f"{key} does not lead to {name!r}"
        app.key("Return")


HANDS = {"mouse": Mouse(), "reader": Reader(), "enter": Keyboard("Return"),
         "space": Keyboard("space")}


def step(app, key):
    """Presses a key that moves the focus, and waits until it has moved; where it is now."""
    before = app.focus()
    app.key(key)
    processes.wait_for(lambda: app.focus() and app.focus() != before,
                       what=f"{key} to lead on from {before}")
    return app.focused()

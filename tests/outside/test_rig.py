"""The rig finds the faults that it is for."""

import pytest

BLAMED = ['[warning] QProcess: Destroyed while process ("./vireon-main") is still running.',
          "[warning] qrc:/qml/main.qml:12:5: QML Rectangle: Binding loop detected",
          "[warning] qrc:/qml/main.qml:40: ReferenceError: nothing is not defined",
          "[critical] The main view cannot be loaded.",
          "(vireon:1): Gtk-WARNING **: 05:34:12.000: cannot open display"]
ALLOWED = ["[debug] buttons disabled: true", "[info] a note", ""]


@pytest.mark.parametrize("line", BLAMED)
def test_unexpected_line_is_a_fault(install, line):
    app = install()
    (app.directory / "stderr").write_text("\n".join(ALLOWED))
    assert app.faults() == []
    (app.directory / "stderr").write_text("\n".join([*ALLOWED, line]))
    assert app.faults() == [line]
    app.allow("Destroyed|Binding loop|ReferenceError|cannot")
    assert app.faults() == []

"""The check of the views' colours and fonts finds what it is for."""

import literals
import pytest

COLOURS = 'var primary = "#39000000";\n'
THEME = 'var text = "#ffffff"; // glyphs, too\nvar adviceFamily = "Fine Sans";\n'
VIEW = """import "theme.js" as Theme

// Not "white", nor "#fff".
Text {
    property string url: "qrc:///picture.png"
    color: isThere ? Theme.text : "transparent"
    font.family: Theme.adviceFamily
    text: qsTr("<font color=\\"white\\" family=\\"Fine Sans\\">Red</font>")
}
"""


def check(tmp_path, capsys, line=""):
    (tmp_path / "colors.js").write_text(COLOURS)
    (tmp_path / "theme.js").write_text(THEME)
    (tmp_path / "View.qml").write_text(VIEW.replace("    color:", f"    {line}\n    color:"))
    return literals.main(tmp_path), capsys.readouterr().out


def test_view_in_order(tmp_path, capsys):
    assert check(tmp_path, capsys) == (0, "")


@pytest.mark.parametrize("line, literal", [
    ('property color edge: "#eee"', '"#eee"'),
    ("property color edge: '#33ffffff'", "'#33ffffff'"),
    ('border.color: isThere ? "White" : Theme.text', '"White"'),
    ("property color edge: Qt.rgba(1, 1, 1, 0.5)", "Qt.rgba"),
    ('font.family: "Some Sans"', '"Some Sans"'),
    ('font { bold: true; family: "Some Sans" }', '"Some Sans"'),
    ('property string fontFamily: isThere ? "Some Sans" : ""', '"Some Sans"'),
    ('onClicked: label.font.family = "Some Sans"', '"Some Sans"'),
    ('property string name: "Fine Sans"', '"Fine Sans"'),
])
def test_literal(tmp_path, capsys, line, literal):
    status, told = check(tmp_path, capsys, line)
    assert status == 1 and f"View.qml:6: {literal} belongs into theme.js" in told


def test_script(tmp_path, capsys):
    (tmp_path / "status.js").write_text('var mark = "tomato";\n')
    status, told = check(tmp_path, capsys)
    assert status == 1 and told.endswith('status.js:1: "tomato" belongs into theme.js\n')

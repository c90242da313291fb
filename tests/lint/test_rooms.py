"""The check of the rooms finds what it is for."""

import rooms

README = """
| room | what is in it | may include |
| --- | --- | --- |
| `src/ui` | | `settings` `base` |
| `src/settings` | | `base` |
| `src/display` | | `base` |
| `src/base` | | |

Exception: `settings/all.cpp` includes `display/screens.h`, since it must.
"""

HOUSE = {
    "main.cpp": '#include "ui/window.h"\n',
    "ui/window.h": "",
    "ui/window.cpp": '#include "ui/window.h"\n\n#include "settings/all.h"\n\n#include "window.moc"\n',
    "settings/all.h": "",
    "settings/all.cpp": '#include "settings/all.h"\n#include "display/screens.h"\n',
    "display/screens.h": '#include "base/text.h"\n',
    "base/text.h": "#include <string>\n",
}


def check(tmp_path, capsys, changes=None, readme=README):
    (tmp_path / "README.md").write_text(readme)
    for name, text in {**HOUSE, **(changes or {})}.items():
        file = tmp_path / "src" / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
    return rooms.main(tmp_path), capsys.readouterr().out


def test_house_in_order(tmp_path, capsys):
    assert check(tmp_path, capsys) == (0, "")


def test_uphill(tmp_path, capsys):
    status, told = check(tmp_path, capsys, {"base/text.h": '#include "settings/all.h"\n'})
    assert status == 1 and "base/text.h:1: settings/all.h: base may not include settings" in told


def test_sideways(tmp_path, capsys):
    status, told = check(tmp_path, capsys, {"settings/more.cpp": '#include "display/screens.h"\n'})
    assert status == 1 and "settings may not include display" in told


def test_circle_in_a_room(tmp_path, capsys):
    status, told = check(tmp_path, capsys, {"ui/window.h": '#include "ui/bar.h"\n',
                                            "ui/bar.h": "",
                                            "ui/bar.cpp": '#include "ui/window.h"\n'})
    assert status == 1 and "a circle: ui/bar -> ui/window -> ui/bar" in told


def test_other_style(tmp_path, capsys):
    status, told = check(tmp_path, capsys, {"ui/window.cpp": '#include "window.h"\n'})
    assert status == 1 and "an include names its room" in told


def test_stale_exception(tmp_path, capsys):
    status, told = check(tmp_path, capsys, {"settings/all.cpp": ""})
    assert status == 1 and "the exception is stale" in told


def test_unknown_room_and_file(tmp_path, capsys):
    status, told = check(tmp_path, capsys, {"attic/box.cpp": '#include "base/gone.h"\n'})
    assert status == 1 and "no such room" in told and "no such file" in told


def test_missing_table(tmp_path, capsys):
    status, told = check(tmp_path, capsys, readme="# House\n")
    assert status == 1 and "table of rooms is missing" in told

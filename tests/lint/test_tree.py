"""The check of the README's directories finds what it is for."""

import tree

README = """
| directory | what |
| --- | --- |
| `src` | |
| `src/base` | |
| `.ci` | |
"""
FILES = ("README.md", "src/main.cpp", "src/base/deep/text.h", ".ci/run", "build/release/out",
         ".git/config", "src/base/__pycache__/x.pyc")


def check(tmp_path, capsys, readme=README, more=()):
    for name in (*FILES, *more):
        file = tmp_path / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(readme if name == "README.md" else "")
    return tree.main(tmp_path), capsys.readouterr().out


def test_tree_in_order(tmp_path, capsys):
    assert check(tmp_path, capsys) == (0, "")


def test_directory_without_a_row(tmp_path, capsys):
    assert check(tmp_path, capsys, more=["attic/box/cup", "src/ui/bar.h"]) == (
        1, "attic: the README has no row for it\nattic/box: the README has no row for it\n"
           "src/ui: the README has no row for it\n")


def test_row_without_a_directory(tmp_path, capsys):
    assert check(tmp_path, capsys, README + "| `cellar` | |\n") == (
        1, "cellar: the README names it, and there is no such directory\n")


def test_two_rows_for_one(tmp_path, capsys):
    assert check(tmp_path, capsys, README + "| `src` | |\n") == (
        1, "src: the README has more than one row for it\n")

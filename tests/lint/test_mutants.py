"""The check of the mutants finds what it is for."""

import mutant

SOURCE = "one\ntwo\nthree\ntwo\nfour\n"
HEADER = "What: a slip\nTests: tst_x:first,isSo outside-group-works tst_quick:Case::test_look\n"
DIFF = "--- a/src/x.cpp\n+++ b/src/x.cpp\n@@ -9,2 +9,2 @@\n three\n-two\n+TWO\n"
FILES = {
    "src/x.cpp": SOURCE,
    "tests/unit/base/tst_x.cpp": "    void first();\n    void isSo();\n",
    "tests/outside/test_group.py": "\ndef test_works(app):\n",
    "tests/quick/tst_quick.cpp": "",
    "tests/quick/tst_case.qml": 'name: "Case"\nfunction test_look() {\n',
}


def check(tmp_path, capsys, patch):
    for name, text in {**FILES, "tests/mutants/slip.patch": patch}.items():
        file = tmp_path / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
    return mutant.main(tmp_path), capsys.readouterr().out


def test_patch_in_order(tmp_path, capsys):
    assert check(tmp_path, capsys, HEADER + DIFF) == (0, "")


def test_only_its_place_is_changed(tmp_path, capsys):
    check(tmp_path, capsys, HEADER + DIFF)
    slip = mutant.read(tmp_path / "tests/mutants/slip.patch")
    assert slip.applied(tmp_path) == {"src/x.cpp": (SOURCE, "one\ntwo\nthree\nTWO\nfour\n")}


def test_fields(tmp_path, capsys):
    check(tmp_path, capsys, "What: a\n  slip\nTests: tst_x\nEquivalent: no\n" + DIFF)
    slip = mutant.read(tmp_path / "tests/mutants/slip.patch")
    assert (slip.fields["What"], slip.tests, slip.is_equivalent) == ("a slip", ["tst_x"], True)


def test_place_that_is_gone(tmp_path, capsys):
    assert check(tmp_path, capsys, HEADER + DIFF.replace("three", "five")) == (
        1, "slip.patch: src/x.cpp: 0 places for\nfive\ntwo\n")


def test_two_places(tmp_path, capsys):
    assert check(tmp_path, capsys, HEADER + DIFF.replace(" three\n", "")) == (
        1, "slip.patch: src/x.cpp: 2 places for\ntwo\n")


def test_file_that_is_gone(tmp_path, capsys):
    assert "src/y.cpp: 0 places" in check(tmp_path, capsys, HEADER + DIFF.replace("x.cpp", "y.cpp"))[1]


def test_patch_without_effect(tmp_path, capsys):
    for diff in ("", DIFF.replace("TWO", "two")):
        assert check(tmp_path, capsys, HEADER + diff) == (1, "slip.patch: it changes nothing\n")


def test_header_that_is_wrong(tmp_path, capsys):
    assert "the field Tests is missing" in check(tmp_path, capsys, "What: a slip\n" + DIFF)[1]
    assert "no field: Who: me" in check(tmp_path, capsys, HEADER + "Who: me\n" + DIFF)[1]


def test_tests_that_are_gone(tmp_path, capsys):
    tests = ("tst_y", "tst_x:isNot", "tst_x:isSo,isNot", "outside-group-rests", "outside-club-works",
             "tst_quick:Case::test_feel", "tst_quick:Box::test_look")
    for name in tests:
        assert check(tmp_path, capsys, f"What: a slip\nTests: tst_x {name}\n" + DIFF) == (
            1, f"slip.patch: there is no test {name}\n")

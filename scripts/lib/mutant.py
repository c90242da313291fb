"""The patches of tests/mutants, each a slip that a test has to notice.

usage: mutant.py TREE

A patch is a header, then a unified diff with as little context as makes its place unique; its line
numbers count for nothing, so that it keeps applying when the code around it moves. The header's
fields, a line each, longer ones going on in indented lines:

    What: the slip
    Tests: who has to notice it: CTest's names; "tst_x:function" for one function of a unit test,
      "tst_x:first,function" for one that needs another before it
    Build: targets that the tests need beside their own
    Equivalent: why nobody can notice it; it is expected to survive

Run by itself it holds all patches of a tree against it: each hunk has one place, each test exists.
What is found goes to standard output; exits non-zero then.
"""

import dataclasses
import pathlib
import re
import sys

FIELDS = {"What", "Tests", "Build", "Equivalent"}


class PatchError(Exception):
    """A patch that cannot be read or does not apply."""


@dataclasses.dataclass
class Mutant:
    name: str
    fields: dict
    hunks: list  # of (file, lines before, lines after)

    @property
    def tests(self):
        return self.fields["Tests"].split()

    @property
    def is_equivalent(self):
        return "Equivalent" in self.fields

    def applied(self, tree):
        """The texts of the files that it changes, before and after."""
        texts = {file: ((tree / file).read_text() if (tree / file).is_file() else "")
                 for file, _, _ in self.hunks}
        changed = {file: "\n" + text for file, text in texts.items()}
        for file, before, after in self.hunks:
            old, new = ("".join(f"\n{line}" for line in lines) + "\n" for lines in (before, after))
            places = len(re.findall(f"(?={re.escape(old)})", changed[file]))
            if places != 1:
                raise PatchError(f"{file}: {places} places for\n" + "\n".join(before))
            changed[file] = changed[file].replace(old, new)
        return {file: (text, changed[file][1:]) for file, text in texts.items()}


def fields_of(header):
    fields = {}
    for line in header:
        found = re.fullmatch(r"(\w+): ?(.*)", line)
        if found and found[1] in FIELDS - fields.keys():
            name = found[1]
            fields[name] = found[2]
        elif fields and line.startswith("  "):
            fields[name] = (fields[name] + " " + line.strip()).strip()
        elif line:
            raise PatchError(f"no field: {line}")
    for name in ("What", "Tests"):
        if not fields.get(name):
            raise PatchError(f"the field {name} is missing")
    return fields


def hunks_of(diff):
    hunks = []
    file = None
    for line in diff:
        if line.startswith("+++ b/"):
            file = line[len("+++ b/"):]
        elif line.startswith("@@"):
            hunks.append((file, [], []))
        elif not line.startswith("--- a/"):
            kind, text = line[:1] or " ", line[1:]
            if kind not in " +-" or not hunks:
                raise PatchError(f"no line of a diff: {line}")
            hunks[-1][1].extend([text] if kind in " -" else [])
            hunks[-1][2].extend([text] if kind in " +" else [])
    if not hunks or any(before == after for _, before, after in hunks):
        raise PatchError("it changes nothing")
    return hunks


def read(path):
    lines = path.read_text().splitlines()
    begin = next((i for i, line in enumerate(lines) if line.startswith("--- a/")), len(lines))
    return Mutant(path.stem, fields_of(lines[:begin]), hunks_of(lines[begin:]))


def test_exists(tree, test):
    """Whether CTest has a test of this name, and the test such a function."""
    name, _, functions = test.partition(":")
    outside = re.fullmatch(r"outside-(\w+)-(\w+)", name)
    if outside and not functions:
        group, function = outside.groups()
        file = tree / "tests/outside" / f"test_{group}.py"
        return file.is_file() and f"\ndef test_{function}(" in file.read_text()
    sources = [*tree.glob(f"tests/unit/**/{name}.cpp"), *tree.glob(f"tests/quick/{name}.cpp"),
               *tree.glob(f"sim/tests/{name}.cpp")]
    if name == "tst_quick":
        case, _, functions = functions.partition("::")
        sources += [path for path in tree.glob("tests/quick/*.qml")
                    if re.search(rf'\bname: "{case}"', path.read_text())]
    text = "".join(path.read_text() for path in sources)
    return bool(sources) and all(re.search(rf"(?:void|function) {function}\(", text)
                                 for function in filter(None, functions.split(",")))


def faults_of(tree):
    for path in sorted((tree / "tests/mutants").glob("*.patch")):
        try:
            mutant = read(path)
            mutant.applied(tree)
        except PatchError as error:
            yield f"{path.name}: {error}"
            continue
        for test in mutant.tests:
            if not test_exists(tree, test):
                yield f"{path.name}: there is no test {test}"


def main(tree):
    faults = list(faults_of(tree))
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))

"""Finds colours and font families that a view names itself instead of taking them from the theme.

usage: literals.py DIRECTORY

Looks at all .qml and .js files of the directory but colors.js and theme.js, whose place they are.
"transparent" is no colour, and a text may say of colours and fonts what it likes. What is found
goes to standard output; exits non-zero then.
"""

import pathlib
import re
import sys

from PIL import ImageColor

HOMES = ("colors.js", "theme.js")
TOKEN = re.compile(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'|`(?:\\.|[^`\\])*`'
                   r"|//[^\n]*|/\*.*?\*/|\bQt\.(?:rgba|hsla|hsva|color)\b", re.S)


def shared_in(directory):
    """The texts that the theme has a name for."""
    return {text for home in HOMES
            for text in re.findall(r'^var \w+ = "(.*?)"', (directory / home).read_text(), re.M)}


def is_literal(before, token, shared):
    if token.startswith("Qt."):
        return True
    if token[0] == "/":
        return False
    text = token[1:-1]
    return bool(re.fullmatch(r"#[0-9A-Fa-f]{3,8}", text) or text.lower() in ImageColor.colormap
                or text in shared or re.search(r"family *[:=][^;]*$", before, re.I))


def faults_of(directory):
    shared = shared_in(directory)
    for path in sorted(directory.iterdir()):
        if path.suffix not in (".qml", ".js") or path.name in HOMES:
            continue
        source = path.read_text()
        for found in TOKEN.finditer(source):
            before = source[source.rfind("\n", 0, found.start()) + 1:found.start()]
            if is_literal(before, found[0], shared):
                line = source.count("\n", 0, found.start()) + 1
                yield f"{path}:{line}: {found[0]} belongs into theme.js"


def main(directory):
    faults = list(faults_of(directory))
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))

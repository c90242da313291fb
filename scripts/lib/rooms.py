"""Holds the includes of src/ against the table of rooms in the README.

The table names each directory and those it may include; a sentence below it, "Exception: `A`
includes `B`", allows one more include. What is found goes to standard output.
"""

import pathlib
import re
import sys

GENERATED = {"app/version.h", "ui/supportaddresses.h", "ui/viewcolours.h"}  # from a .h.in each


def table_of(readme):
    """The rooms that each room may include, and the exceptions."""
    rows = re.findall(r"^\| `src/(\w+)` \|[^|]*\|([^|]*)\|$", readme, re.M)
    allowed = {room: set(re.findall(r"`(\w+)`", cell)) for room, cell in rows}
    exceptions = set(re.findall(r"^Exception: `([\w/.]+)` includes `([\w/.]+)`", readme, re.M))
    return allowed, exceptions


def includes_of(source, file):
    """What a file includes of ours, with the lines' numbers."""
    for number, line in enumerate((source / file).read_text().splitlines(), 1):
        found = re.match(r'#include "([^"]+)"', line)
        if found and not found[1].endswith(".moc"):
            yield number, found[1]


def faults_of(source, allowed, exceptions):
    used = set()
    arrows = {}
    files = sorted(str(path.relative_to(source)) for path in source.rglob("*")
                   if path.suffix in (".h", ".cpp") and len(path.relative_to(source).parts) > 1)
    for room in sorted({file.split("/")[0] for file in files} - allowed.keys()):
        yield f"{room}: the README's table has no such room"
    for file in files:
        room = file.split("/")[0]
        for number, target in includes_of(source, file):
            place = f"{file}:{number}: {target}"
            if "/" not in target:
                yield f"{place}: an include names its room"
                continue
            if target not in GENERATED and not (source / target).exists():
                yield f"{place}: there is no such file"
            arrows.setdefault(file.rsplit(".", 1)[0], set()).add(target.rsplit(".", 1)[0])
            other = target.split("/")[0]
            if (file, target) in exceptions:
                used.add((file, target))
            elif other != room and other not in allowed.get(room, set()):
                yield f"{place}: {room} may not include {other}"
    for file, target in sorted(exceptions - used):
        yield f"{file}: does not include {target}, the exception is stale"
    circle = circle_in(arrows, {(a.rsplit(".", 1)[0], b.rsplit(".", 1)[0]) for a, b in exceptions})
    if circle:
        yield "a circle: " + " -> ".join(circle)


def circle_in(arrows, exceptions):
    """A way from a file and its header back to itself, or None."""
    done = set()

    def visit(name, way):
        if name in way:
            return way[way.index(name):] + [name]
        if name in done:
            return None
        for target in sorted(arrows.get(name, set()) - {name}):
            if (name, target) not in exceptions:
                found = visit(target, way + [name])
                if found:
                    return found
        done.add(name)
        return None

    return next(filter(None, (visit(name, []) for name in sorted(arrows))), None)


def main(top):
    allowed, exceptions = table_of((top / "README.md").read_text())
    if not allowed:
        print("README.md: the table of rooms is missing")
        return 1
    faults = list(faults_of(top / "src", allowed, exceptions))
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))

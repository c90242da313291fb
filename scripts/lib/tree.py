"""Holds the README's tables of directories against the tree.

Each directory of the first and second level that holds files has a row that begins with its name,
and each row names a directory. What is found goes to standard output.
"""

import os
import pathlib
import re
import sys

NOT_OURS = {".git", ".cache", "build", "__pycache__"}


def directories_of(top):
    """Those of the first two levels with a file anywhere below them."""
    found = set()
    for place, names, files in os.walk(top):
        names[:] = [name for name in names if name not in NOT_OURS]
        parts = pathlib.Path(place).relative_to(top).parts
        if files:
            found.update("/".join(parts[:level]) for level in range(1, min(len(parts), 2) + 1))
    return found


def main(top):
    named = re.findall(r"^\| `(\.?[\w/-]+)` \|", (top / "README.md").read_text(), re.M)
    faults = [f"{name}: the README has no row for it"
              for name in sorted(directories_of(top) - set(named))]
    faults += [f"{name}: the README names it, and there is no such directory"
               for name in named if not (top / name).is_dir()]
    faults += [f"{name}: the README has more than one row for it"
               for name in sorted(set(named)) if named.count(name) > 1]
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))

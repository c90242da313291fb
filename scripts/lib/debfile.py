"""Finishes Debian packages that CPack has made, in place.

usage: debfile.py SECONDS PACKAGE.deb...

Everything in them gets one order, owner, time (SECONDS since 1970) and one of two modes, so that
the same tree always gives the same bytes, whatever the umask. Directories that other software shares, and no package owns, are left out:
dpkg would remove them with the package when nothing else is in them.
"""

import io
import lzma
import pathlib
import sys
import tarfile

SHARED = {"./usr/local", "./usr/local/bin", "./usr/local/share", "./usr/local/share/man"}
MAGIC = b"!<arch>\n"
HEADER = "{:<16}{:<12}{:<6}{:<6}{:<8}{:<10}`\n"


def members(data):
    """Name and content of each part of a package."""
    place = len(MAGIC)
    while place < len(data):
        head = data[place:place + 60].decode()
        size = int(head[48:58])
        yield head[:16].rstrip(" /"), data[place + 60:place + 60 + size]
        place += 60 + size + size % 2


def finished_tar(content, seconds):
    """The same files, in an archive that depends on nothing else; compressed with xz."""
    made = io.BytesIO()
    with tarfile.open(fileobj=io.BytesIO(content)) as old, \
            tarfile.open(fileobj=made, mode="w", format=tarfile.GNU_FORMAT) as new:
        for entry in sorted(old.getmembers(), key=lambda entry: entry.name):
            name = "./" + entry.name.removeprefix("./") if entry.name != "." else "."
            if name in SHARED:
                continue
            entry.name = name
            entry.mode = 0o755 if entry.isdir() or entry.mode & 0o100 else 0o644
            entry.mtime = seconds
            entry.uid = entry.gid = 0
            entry.uname = entry.gname = "root"
            new.addfile(entry, old.extractfile(entry) if entry.isreg() else None)
    return lzma.compress(made.getvalue(), preset=9)


def finish(path, seconds):
    package = MAGIC
    for name, content in members(path.read_bytes()):
        if name.startswith(("control.tar", "data.tar")):
            name = name.split(".")[0] + ".tar.xz"
            content = finished_tar(content, seconds)
        head = HEADER.format(name, seconds, 0, 0, "100644", len(content))
        package += head.encode() + content + b"\n" * (len(content) % 2)
    path.write_bytes(package)
    path.chmod(0o644)


if __name__ == "__main__":
    for argument in sys.argv[2:]:
        finish(pathlib.Path(argument), int(sys.argv[1]))

"""What of the machine a run has for itself, so that nothing of it is left over or counted wrong."""

import ctypes
import os
import pathlib

_libc = ctypes.CDLL(None, use_errno=True)
_NEW_MOUNTS, _NEW_IPC = 0x00020000, 0x08000000
_PRIVATE = 1 << 18 | 1 << 14  # MS_PRIVATE, MS_REC
_REMOUNT, _READ_ONLY = 32, 1
_FAKE_CLOCKS = pathlib.Path("/usr/lib")


def separate():
    """Gives this process and its children mounts and System V objects of their own, which are gone
    with them; whether that could be had, which takes root."""
    if _libc.unshare(_NEW_MOUNTS | _NEW_IPC) != 0:
        return False
    return _libc.mount(b"none", b"/", None, _PRIVATE, None) == 0


class SmallDisk:
    """A file system of its own at a directory, in memory, of this many bytes."""

    def __init__(self, directory, size):
        self._directory = directory
        self._options = f"size={size}".encode()
        self._filler = directory / "filler"
        self._mount(0)

    def fill(self):
        """Takes all room that is left."""
        with open(self._filler, "wb", buffering=0) as file:
            for size in (1 << 20, 1 << 12):
                try:
                    while True:
                        file.write(bytes(size))
                except OSError:
                    pass

    def empty(self):
        self._filler.unlink(missing_ok=True)

    def set_writable(self, writable):
        self._mount(_REMOUNT | (0 if writable else _READ_ONLY))

    def unmount(self):
        _libc.umount2(os.fsencode(self._directory), 2)  # whoever still uses it

    def _mount(self, flags):
        if _libc.mount(b"tmpfs", os.fsencode(self._directory), b"tmpfs", flags, self._options) != 0:
            raise OSError(ctypes.get_errno(), f"tmpfs at {self._directory}")


class Clock:
    """The wall clock as the program sees it, which may jump; the monotonic one does not.

    environment  what a program needs to see it
    """

    def __init__(self, library, path):
        self._path = path
        self.set(0)
        self.environment = {
            "LD_PRELOAD": str(library), "FAKETIME_TIMESTAMP_FILE": str(path),
            "FAKETIME_CACHE_DURATION": "1", "FAKETIME_DONT_FAKE_MONOTONIC": "1",
            "FAKETIME_DISABLE_SHM": "1", "NO_FAKE_STAT": "1"}

    @staticmethod
    def library():
        """What makes it, or None where it is not installed."""
        return next(_FAKE_CLOCKS.glob("*/faketime/libfaketimeMT.so.1"), None)

    def set(self, offset):
        """Lets it be this many seconds away from the real one."""
        self._path.write_text(f"{offset:+d}\n")

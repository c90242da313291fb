"""The desktop's text size, as its settings change it: "Large Text" and the like."""

import signal
import subprocess

from .processes import wait_for

_UNIT = 1024  # of the setting, per dot per inch


class TextSize:
    """A settings manager, which tells all programs at once. Those that run when it starts may not
    hear of it, so it has to be there before them."""

    def __init__(self, desktop, dpi=96):
        self._desktop = desktop
        self._file = desktop.directory / "xsettings"
        self._write(dpi)
        self._manager = desktop.start("xsettingsd", "-c", self._file)
        self._wait_until_told(dpi)

    def set(self, dpi):
        """Lets texts have this many dots per inch from now on; 96 is the usual size."""
        self._write(dpi)
        self._manager.send_signal(signal.SIGHUP)
        self._wait_until_told(dpi)

    def _write(self, dpi):
        self._file.write_text(f"Xft/DPI {dpi * _UNIT}\n")

    def _wait_until_told(self, dpi):
        wait_for(lambda: f"Xft/DPI {dpi * _UNIT}\n" in self._told(), what=f"{dpi} dpi")

    def _told(self):
        """All settings as text; empty before the manager is there."""
        return subprocess.run(["dump_xsettings"], env=self._desktop.environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

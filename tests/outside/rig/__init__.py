"""Runs the real program on a desktop of its own and tells what it did.

A test gets a `Desktop` (screen, window manager, session bus, accessibility bus) and one or more
`App`s on it (a copy of the program with its engine, in a directory and a HOME of its own). It
judges by the engine's journal, by what the window shows and by the files that are left.
"""

from .app import App
from .bus import Bus
from .busy import Busy
from .desktop import Desktop
from .dunst import Dunst
from .hands import HANDS, step
from .gnome import Gnome
from .indicator import Indicator
from .loginmanager import LoginManager
from .mailbox import Mailbox
from .mate import Mate, MateSession
from .notifications import NotificationService
from .processes import Traced, adopt_orphans, is_running, memory_of, wait_for
from .stage import stage
from .subject import Subject
from .textsize import TextSize
from .twoscreens import TwoScreens

__all__ = ["App", "Bus", "Busy", "Desktop", "Dunst", "Gnome", "HANDS", "Indicator", "LoginManager",
           "Mailbox", "Mate", "MateSession", "NotificationService", "Subject", "TextSize", "Traced",
           "TwoScreens", "adopt_orphans", "is_running", "memory_of", "stage", "step", "wait_for"]

"""A window of another program, for busy.py: an entry, and what was typed into it as its title."""

import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gtk  # noqa: E402

width, height = map(int, sys.argv[1:])
window = Gtk.Window(title="busy:")
window.set_default_size(width, height)
window.set_position(Gtk.WindowPosition.CENTER)
entry = Gtk.Entry()
entry.set_valign(Gtk.Align.START)
entry.connect("changed", lambda changed: window.set_title(f"busy:{changed.get_text()}"))
window.add(entry)
window.show_all()
Gtk.main()

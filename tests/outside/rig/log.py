"""What must not be on a log: any warning but those that are listed here."""

import re

# Each line of Qt's message log tells its kind; what Qt, QML and this program say of a mistake
# (a binding loop, an undefined value, ...) is a warning.
MESSAGE_PATTERN = "[%{type}] %{message}"
# For programs whose debug lines are read without a mark.
MARK_WARNINGS = ("%{if-warning}[warning] %{endif}%{if-critical}[critical] %{endif}"
                 "%{if-fatal}[fatal] %{endif}%{message}")
_WARNING = re.compile(r"^\[(warning|critical|fatal)\]")
_NOTE = re.compile(r"^\[(debug|info)\]")

# Lines that are no fault of the program.
ALLOWED = (
    # The indicator's library asks plain entries for a mark.
    re.compile(r"Gtk-CRITICAL .*gtk_check_menu_item_get_active"),
    # A window that is shown, hidden and shown at once: Qt hears of the first showing after the
    # hiding and takes it for mapped.
    re.compile(r"QXcbWindow::setNetWmStateOnUnmappedWindow\(\) called on mapped window"),
    # When a box closes, Qt asks which window the pointer is over now, and goes down to it through
    # the window manager's frames: one of them may be gone before it is asked.
    re.compile(r"QXcbConnection: XCB error: 3 \(BadWindow\).* \(TranslateCoords\)"),
)


def unexpected(lines, allowed=()):
    """The warnings, and what libraries print past Qt's log, where nobody allowed it."""
    return [line for line in lines if line and not _NOTE.match(line)
            and not any(pattern.search(line) for pattern in (*ALLOWED, *allowed))]


def warnings(lines):
    """The warnings on the log alone, of a program on whose standard error other things may be."""
    return [line for line in unexpected(lines) if _WARNING.match(line)]

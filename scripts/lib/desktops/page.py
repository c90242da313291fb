"""The page that tells what was tried, written anew by each run."""

import datetime

_HEAD = """# On real desktops

Written by `scripts/desktops` on {date}, on {system}: each
desktop without a screen, with one run of the program but for the log-out, which has one of its own.

"""
_SHORT = 12  # a note of so many letters stands in its cell


class Page:
    """A table with a column for each desktop and a row for each check."""

    def __init__(self, system):
        self._system = system
        self._columns = []
        self._cells = {}
        self._notes = []

    def add(self, desktop, row, verdict, note=None):
        """A cell: "yes", "no" or "not tried", and what there is to be said of it."""
        if desktop not in self._columns:
            self._columns.append(desktop)
        if note and len(note) <= _SHORT:
            verdict = f"{verdict}: {note}"
        elif note:
            if note not in self._notes:
                self._notes.append(note)
            verdict = f"{verdict} ({self._notes.index(note) + 1})"
        self._cells.setdefault(row, {})[desktop] = verdict

    def write(self, path, pictures):
        """Writes it; the pictures are (desktop, path beside the page)."""
        lines = [_HEAD.format(date=datetime.date.today(), system=self._system)]
        lines += [f"| | {' | '.join(self._columns)} |\n", "| --- " * (len(self._columns) + 1) + "|\n"]
        for row, cells in self._cells.items():
            told = " | ".join(cells.get(desktop, "not tried") for desktop in self._columns)
            lines.append(f"| {row} | {told} |\n")
        lines.append("\n")
        lines += [f"{number}. {text}\n" for number, text in enumerate(self._notes, 1)]
        for desktop in self._columns:
            shown = [name for of, name in pictures if of == desktop]
            if shown:
                lines.append(f"\n## {desktop}\n\n")
                lines += [f"![{desktop}]({name})\n" for name in shown]
        path.write_text("".join(lines))

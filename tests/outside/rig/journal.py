"""The journal of the simulated engine and its tool; sim/README.md tells its format."""

import dataclasses
import re
import urllib.parse

_LINE = re.compile(r"^(\d+) (\w+)\[(\d+)\] (\S+)(.*)$")


@dataclasses.dataclass(frozen=True)
class Event:
    """One thing that happened. Of the engine, unless `who` says "tool"."""

    ms: int
    who: str
    pid: int
    kind: str
    fields: dict
    start: int  # which start of the engine, from 1, it belongs to; 0 for the tool

    @property
    def letter(self):
        return self.fields["letter"]

    @property
    def files(self):
        """Of a start: what lay in the data directory."""
        return [name for name in self.fields["files"].split(",") if name]


def parse_journal(text):
    """The events of all complete lines."""
    starts = {}
    events = []
    for line in text.splitlines(keepends=True):
        found = _LINE.match(line.rstrip("\n"))
        if not line.endswith("\n") or not found:
            continue
        ms, who, pid, kind, rest = found.groups()
        fields = dict(pair.partition("=")[::2] for pair in rest.split())
        fields = {key: urllib.parse.unquote(value) for key, value in fields.items()}
        if who == "engine" and kind == "start":
            starts[pid] = len(starts) + 1
        start = starts.get(pid, 0) if who == "engine" else 0
        events.append(Event(int(ms), who, int(pid), kind, fields, start))
    return events


def read_journal(path):
    return parse_journal(path.read_text()) if path.exists() else []

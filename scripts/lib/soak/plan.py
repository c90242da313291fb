"""What happens in a run, drawn from its seed before anything is started."""

import dataclasses
import hashlib
import random

# More a minute than any machine can play: a run ends by the clock, not with its list.
A_MINUTE = 60


@dataclasses.dataclass(frozen=True)
class Kind:
    """A kind of event.

    name     as the table calls it
    play     play(player, **drawn): brings it about, and leaves the program in a known state
    needs    what the stage must have for it, or None: see Stage.lacks
    choices  what is drawn for each event: a tuple of values for each argument of play
    """

    name: str
    play: callable
    needs: str = None
    choices: dict = dataclasses.field(default_factory=dict)


@dataclasses.dataclass(frozen=True)
class Event:
    """One event of a run: its kind, what was drawn for it, and the pause in s after it."""

    kind: Kind
    drawn: dict
    pause: float

    def __str__(self):
        words = " ".join(f"{name}={value!r}" for name, value in self.drawn.items())
        return f"{self.kind.name}: {words} pause={self.pause}"


PAUSES = (0.0, 0.0, 0.3, 1.0, 2.5)  # s


def events_of(seed, minutes, kinds):
    """The list of this seed. Each kind comes once before any comes again."""
    draw = random.Random(seed)
    events = []
    while len(events) < minutes * A_MINUTE:
        for kind in draw.sample(kinds, len(kinds)):
            drawn = {name: draw.choice(values) for name, values in kind.choices.items()}
            events.append(Event(kind, drawn, draw.choice(PAUSES)))
    return events


def digest_of(events):
    """What tells one list from another."""
    text = "\n".join(map(str, events))
    return hashlib.sha256(text.encode()).hexdigest()[:12]

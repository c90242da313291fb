"""The table of a run, and whether its goals were met."""

import statistics

from resources import NAMES, growth, rise

_WARM_UP = 600  # s
_SHORTEST = 1200  # s of a run whose growth says anything an hour
_MEMORY = 1024  # KiB an hour
# The rest of the PSS is a share of files that others map and leave, too.
_OWN_MEMORY = "of it anonymous"
_COUNTS = ("threads", "descriptors", "child processes", "System V objects")


class _Goals:
    """Lines of the table that have a goal, and how many missed it."""

    def __init__(self, tell):
        self._tell = tell
        self.missed = 0

    def line(self, name, found, goal=None, holds=True):
        judged = "" if goal is None else f"{goal:>18}  {'good' if holds else 'MISSED'}"
        self._tell(f"{name:<28}{found:>32}{judged}")
        self.missed += not holds

    def none(self, name, count):
        self.line(name, count, "none", not count)


def tell(run, options, digest, tell):
    """Prints it; the exit status."""
    tell("")
    tell(f"seed {options.seed}, {options.minutes:g} minutes, events {digest}, "
         f"{sum(run.played.values())} played")
    for name, count in sorted(run.played.items()):
        tell(f"  {name:<30}{count:>6}")
    for name, why in sorted(run.skipped.items()):
        tell(f"  {name:<30}skipped: {why}")
    tell("")
    goals = _Goals(tell)
    _tell_faults(run, goals)
    _tell_blocks(run, options.loaded, goals)
    _tell_resources(run, options, goals)
    held_up = [f"held up for {block.net * 1000:.0f} ms in: {run.event_at(block.begin)}"
               for block in run.blocks]
    details = (*held_up, *run.crashes, *run.failed, *run.player.wrong, *run.stage.app.faults(), *run.left)
    for text in details[:40]:
        tell(f"  - {text}")
    tell("all goals met" if not goals.missed else f"{goals.missed} goals missed")
    return 1 if goals.missed else 0


def _tell_faults(run, goals):
    player = run.player
    late = sorted(player.late) or [0.0]
    goals.none("crashes", len(run.crashes))
    goals.none("failed events", len(run.failed))
    goals.none("wrong states", len(player.wrong))
    goals.line("right states", len(player.late))
    goals.line("  shown after, median", f"{statistics.median(late):.2f} s")
    goals.line("  shown after, longest", f"{late[-1]:.2f} s")
    goals.none("lost commands", player.lost)
    goals.none("doubled commands", player.doubled)
    goals.none("unexpected lines on the log", len(run.stage.app.faults()))
    goals.none("left after the quit", len(run.left))


def _tell_blocks(run, loaded, goals):
    longest = max((block.net for block in run.blocks), default=0.0) * 1000
    goals.line("asked of the GUI thread", run.asked)
    goals.line("  held up over 100 ms", len(run.blocks), None if loaded else "none",
               loaded or not run.blocks)
    goals.line("    longest", f"{longest:.0f} ms")
    hand_over = max((block.net for block in run.hand_overs), default=0.0) * 1000
    goals.line("  at a hand-over", len(run.hand_overs))
    goals.line("    longest", f"{hand_over:.0f} ms", "410 ms", hand_over <= 410)


def _tell_resources(run, options, goals):
    """Of the longest life of the program: at its begin and end, growth an hour and rise; the first
    ten minutes of a long one are left out of these two."""
    samples = max(run.lives, key=len)
    if not samples:
        return
    long_enough = options.minutes * 60 >= _SHORTEST
    after = samples[0][0] + (_WARM_UP if long_enough else options.minutes * 60 / 3)
    goals.line("samples of the longest life", len(samples))
    for name, unit in NAMES.items():
        slope = growth(samples, name, after)
        risen = rise(samples, name, after)
        told = (f"{samples[0][1][name]} to {samples[-1][1][name]} {unit}, "
                + ("-" if slope is None else f"{slope:+.0f}/h"))
        if name == _OWN_MEMORY and long_enough and not options.loaded:
            goals.line(name, told, "under 1 MiB/h", slope is not None and slope < _MEMORY)
        elif name in _COUNTS:
            goals.line(name, f"{told}, {risen:+}", "+0", risen <= 0)
        else:
            goals.line(name, told)

"""Plays a seeded run of faults and acts and prints its table; scripts/soak calls it.

usage: soak --minutes N --seed N [--loaded] [--sanitized] [--list]
"""

import argparse
import pathlib
import shutil
import signal
import sys
import tempfile

sys.path[:0] = [str(pathlib.Path(__file__).parents[1]),
                str(pathlib.Path(__file__).parents[3] / "tests/outside")]

import desktop_events  # noqa: E402
import engine_events  # noqa: E402
import machine  # noqa: E402
import table  # noqa: E402
from plan import digest_of, events_of  # noqa: E402
from player import Player  # noqa: E402
from rig import adopt_orphans  # noqa: E402
from run import Run  # noqa: E402
from stage import Stage  # noqa: E402

KINDS = (*engine_events.KINDS, *desktop_events.KINDS)
WITHIN, PATIENT = 1.0, 30.0  # s
WITHIN_LOADED, PATIENT_LOADED = 10.0, 90.0  # s


def arguments():
    parser = argparse.ArgumentParser()
    parser.add_argument("--minutes", type=float, required=True)
    parser.add_argument("--seed", type=int, required=True)
    parser.add_argument("--loaded", action="store_true")
    parser.add_argument("--sanitized", action="store_true")
    parser.add_argument("--list", action="store_true")
    return parser.parse_args()


def tell(line):
    print(line, flush=True)


def main():
    options = arguments()
    events = events_of(options.seed, options.minutes, KINDS)
    tell(f"seed {options.seed}, {options.minutes:g} minutes, events {digest_of(events)}")
    if options.list:
        tell("\n".join(map(str, events)))
        return 0
    # So that everything is cleared away also when the run is ended from outside.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    adopt_orphans()
    separated = machine.separate()
    directory = pathlib.Path(tempfile.mkdtemp(prefix="vireon-"))
    stage = None
    try:
        stage = Stage(directory, separated, options.sanitized)
        loaded = options.loaded
        player = Player(stage, *((WITHIN_LOADED, PATIENT_LOADED) if loaded else (WITHIN, PATIENT)))
        run = Run(stage, player)
        run.play(events, options.minutes * 60, tell)
        return table.tell(run, options, digest_of(events), tell)
    finally:
        if stage:
            stage.stop()
        shutil.rmtree(directory)


if __name__ == "__main__":
    sys.exit(main())

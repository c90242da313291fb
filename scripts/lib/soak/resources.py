"""What the program holds, sampled while it is quiet, and how that grows."""

import itertools
import os
import pathlib
import re
import statistics
import time

from Xlib import display

from rig import processes

HOUR = 3600.0
# What is sampled, with its unit.
NAMES = {"memory (PSS)": "KiB", "of it anonymous": "KiB", "threads": "", "descriptors": "",
         "child processes": "", "System V objects": "", "X resources": "", "X pixmaps": "KiB"}


class Sampler:
    """Takes samples of one process: (s of the monotonic clock, figure by name)."""

    def __init__(self, screen, pid, window):
        self._screen = display.Display(screen)
        self._pid = pid
        self._window = int(window, 16)
        self.samples = []

    def take(self):
        self.samples.append((time.monotonic(), dict(zip(NAMES, self._figures()))))

    def close(self):
        self._screen.close()

    def _figures(self):
        place = pathlib.Path(f"/proc/{self._pid}")
        rollup = (place / "smaps_rollup").read_text()
        for name in ("Pss", "Pss_Anon"):
            yield int(re.search(rf"^{name}: +(\d+)", rollup, re.M).group(1))
        yield len(os.listdir(place / "task"))
        yield len(os.listdir(place / "fd"))
        yield len(processes.children_of(self._pid))
        yield self._count_objects()
        told = self._screen.res_query_client_resources(self._window)
        yield sum(one.count for one in told.types)
        yield self._screen.res_query_client_pixmap_bytes(self._window).bytes // 1024

    def _count_objects(self):
        """Of System V: those in memory that were made by the program or by one that has gone, and all
        others, which do not tell who made them."""
        shared, *others = (pathlib.Path(f"/proc/sysvipc/{kind}").read_text().splitlines()[1:]
                           for kind in ("shm", "sem", "msg"))
        makers = [int(line.split()[4]) for line in shared]
        return (sum(maker == self._pid or not processes.is_running(maker) for maker in makers)
                + sum(map(len, others)))


def growth(samples, name, after):
    """How a figure grows an hour, from this moment on: the median of the slopes between all pairs of
    samples, which single outliers do not move. None where there is too little of it."""
    points = [(when, figures[name]) for when, figures in samples if when >= after]
    points = points[::max(1, len(points) // 400)]
    slopes = [(right - left) / (later - earlier) * HOUR
              for (earlier, left), (later, right) in itertools.combinations(points, 2)
              if later - earlier > 1]
    return statistics.median(slopes) if len(points) > 5 else None


def rise(samples, name, after):
    """By how much the lowest of the last third of the figures is above the lowest of the first one,
    from this moment on: what comes and goes is not in it."""
    figures = [figures[name] for when, figures in samples if when >= after]
    third = len(figures) // 3
    return min(figures[-third:]) - min(figures[:third]) if third else 0

"""The jobs of scripts/mutants: each works in a copy of the tree, on one task after the other."""

import multiprocessing
import queue
import subprocess
import sys
import time

import mutant as patches
import mutanttest

FIRST_LIMIT = 240  # s for a test on the tree as it is


def without_slip(workshop, test):
    """Why a test is no judge: it fails on the tree as it is."""
    fault, seconds = workshop.test(test, FIRST_LIMIT)
    return f"{test} without the slip: {fault}" if fault else None, seconds


def first_fault(workshop, mutant, limits):
    """The first of its tests that notices the slip, and how; None when none does."""
    texts = mutant.applied(workshop.tree)
    try:
        workshop.write({file: after for file, (_, after) in texts.items()})
        workshop.build(mutanttest.targets_of(mutant))
        for test in mutant.tests:
            fault, _ = workshop.test(test, limits[test])
            if fault:
                return test, fault
    finally:
        workshop.write({file: before for file, (before, _) in texts.items()})
    return None


def with_slip(workshop, mutant, limits):
    """What became of the mutant: the verdict, and who gave it."""
    found = first_fault(workshop, mutant, limits)
    if not found:
        return (("equivalent", mutant.fields["Equivalent"]) if mutant.is_equivalent
                else ("survived", " ".join(mutant.tests)))
    test, fault = found
    if fault == mutanttest.OUT_OF_TIME:
        # The machine may only have become busier.
        workshop.build(mutanttest.targets_of(mutant))
        again, _ = workshop.test(test, limits[test])
        if again:
            return "error", f"{test} without the slip: {again}"
    is_no_verdict = mutant.is_equivalent or fault in (mutanttest.SKIPPED, mutanttest.NOT_BUILT)
    return "error" if is_no_verdict else "killed", f"{test}: {fault}"


def job(workshop, tasks, results):
    for what, argument in iter(tasks.get, None):
        begin = time.monotonic()
        try:
            if what == "test":
                results.put((what, argument, *without_slip(workshop, argument)))
                continue
            mutant, limits = argument
            verdict, reason = with_slip(workshop, mutant, limits)
        except patches.PatchError as error:
            verdict, reason = "error", str(error)
        except subprocess.CalledProcessError as error:
            verdict, reason = "error", "it does not compile\n" + error.output[-2000:]
        results.put((what, mutant.name, (verdict, reason), time.monotonic() - begin))


def in_jobs(workshops, tasks):
    """What became of the tasks, as they end."""
    todo, done = multiprocessing.Queue(), multiprocessing.Queue()
    for task in [*tasks, *[None] * len(workshops)]:
        todo.put(task)
    workers = [multiprocessing.Process(target=job, args=(workshop, todo, done))
               for workshop in workshops]
    for worker in workers:
        worker.start()
    for _ in tasks:
        while True:
            try:
                yield done.get(timeout=5)
                break
            except queue.Empty:
                if not any(worker.is_alive() for worker in workers):
                    sys.exit("mutants: the jobs have ended early")
    for worker in workers:
        worker.join()

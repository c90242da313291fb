"""What a long run under faults is made of: its events, its measure, its verdict."""

import pathlib
import signal
import sys
import time

import pytest

from rig import wait_for

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "scripts/lib/soak"))

import blocks  # noqa: E402
import plan  # noqa: E402
import resources  # noqa: E402
import watch  # noqa: E402

KINDS = tuple(plan.Kind(name, None, choices={"way": (1, 2, 3)}) for name in "abcde")


def test_seed_decides_what_happens():
    first, again, other = (plan.events_of(seed, 2, KINDS) for seed in (7, 7, 8))
    assert plan.digest_of(first) == plan.digest_of(again) != plan.digest_of(other)
    assert list(map(str, first)) == list(map(str, again))
    # A longer run begins like a shorter one, and each round has every kind once.
    assert list(map(str, plan.events_of(7, 4, KINDS)[:len(first)])) == list(map(str, first))
    assert {event.kind.name for event in first[:5]} == set("abcde")


def test_growth_is_told_from_what_comes_and_goes():
    def samples(figure):
        return [(60.0 * minute, {"x": figure(minute)}) for minute in range(60)]
    assert resources.growth(samples(lambda minute: 7 * minute), "x", 600) == pytest.approx(420)
    assert resources.growth(samples(lambda minute: 5 + 100 * (minute % 20 == 0)), "x", 600) == 0
    assert resources.rise(samples(lambda minute: 3 + (minute > 40)), "x", 600) == 1
    assert resources.rise(samples(lambda minute: 3 + minute % 2), "x", 600) == 0


@pytest.mark.parametrize("content, status", [
    ("Result=5\nFirmware=2\n", 5), ("Result=-14\nFirm", -14), ("Result=-", -99), ("", -99),
    ("Result=99999999999\n", -99), ("-6\n", -6), (None, -99)])
def test_status_file_is_read_by_the_contract(directory, content, status):
    path = directory / "pensettings.ini"
    if content is not None:
        path.write_text(content)
    assert watch.read_status(path, -99) == status


def test_held_up_gui_thread_is_measured(app):
    app.wait_until_shows("Started and ready")
    bus = app.desktop.bus()
    address = bus.call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")
    app.desktop.environment["AT_SPI_BUS_ADDRESS"] = address
    pings = blocks.Pings(app, app.directory / "pings")

    def measured():
        return [block.net for block in pings.result()[1]]
    try:
        # Until it asks, there is nothing to be missed.
        def hold_up():
            app.signal(signal.SIGSTOP)
            time.sleep(0.5)
            app.signal(signal.SIGCONT)
            return any(net > 0.3 for net in measured())
        wait_for(hold_up, what=measured)
    finally:
        pings.stop()
    assert pings.result()[0] > 0

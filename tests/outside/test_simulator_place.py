"""The build puts the simulated engine beside the program, and nothing else out of its place."""

import pathlib
import subprocess

import pytest

from rig.app import built_programs

SCRIPT = pathlib.Path(__file__).parents[2] / "cmake/PlaceSimulator.cmake"
SIMULATOR = pathlib.Path(built_programs(), "../simulator").resolve()
NAMES = ("vireon-main", "vireon-sdk")
LEFT = "is not the simulated engine: it stays as it is"


@pytest.fixture
def place(directory):
    """place(): what the build says; place.into is where it puts the two programs."""
    def run():
        return subprocess.run(
            ["cmake", f"-DFROM={SIMULATOR}", f"-DINTO={run.into}", "-P", SCRIPT],
            check=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True).stdout

    run.into = directory / "bin"
    run.into.mkdir()
    return run


def assert_is_simulator(path):
    built = SIMULATOR / path.name
    assert path.read_bytes() == built.read_bytes() and path.stat().st_mode == built.stat().st_mode


def test_simulator_comes_where_nothing_lies(place):
    assert place() == ""
    for name in NAMES:
        assert_is_simulator(place.into / name)


def test_an_older_simulator_is_replaced_while_it_runs(place):
    place()
    path = place.into / "vireon-main"
    with open(path, "ab") as file:
        file.write(b"older")
    with open(path, "rb") as running:
        assert place() == ""
        assert running.read().endswith(b"older")
    assert_is_simulator(path)


def test_a_real_engine_stays(place):
    engine = place.into / "vireon-main"
    engine.write_text("#!/bin/sh\n")
    said = place()
    assert engine.read_text() == "#!/bin/sh\n"
    assert said.splitlines() == [f"{engine} {LEFT}"]
    assert_is_simulator(place.into / "vireon-sdk")


def test_a_link_stays_even_a_broken_one(place, directory):
    real = directory / "real"
    real.write_bytes((SIMULATOR / "vireon-main").read_bytes() + b"mine")
    (place.into / "vireon-main").symlink_to(real)
    (place.into / "vireon-sdk").symlink_to(directory / "missing")
    said = place()
    assert len(said.splitlines()) == 2 and said.count(LEFT) == 2
    assert real.read_bytes().endswith(b"mine")
    assert (place.into / "vireon-main").is_symlink() and (place.into / "vireon-sdk").is_symlink()
    assert not (directory / "missing").exists()

"""A desktop with one installation on it, for scripts."""

import contextlib
import pathlib
import shutil
import tempfile

from .app import App
from .desktop import Desktop


@contextlib.contextmanager
def stage(scenario=None, kind=Desktop, program=App, **options):
    """Gives an App that is not yet started, on this kind of desktop; the options are the App's, or
    those of the kind of App that is named. Everything of it is gone afterwards."""
    directory = pathlib.Path(tempfile.mkdtemp(prefix="vireon-"))
    try:
        place = directory / "desktop"
        place.mkdir()
        desktop = kind(place)
        try:
            app = program(desktop, directory / "copy", scenario=scenario, **options)
            try:
                yield app
            finally:
                app.cleanup()
        finally:
            desktop.stop()
    finally:
        shutil.rmtree(directory)

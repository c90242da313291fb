"""The program on a desktop in one of its languages: VIREON_LANGUAGE is en, de or ja.

Scripts go on naming its texts in English.
"""

import atexit
import functools
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import xml.etree.ElementTree as ElementTree

import rig

CATALOGUES = pathlib.Path(__file__).parents[2] / "translations"
LANGUAGE = os.environ.get("VIREON_LANGUAGE", "en")
LOCALES = {"de": "de_DE", "ja": "ja_JP"}


@functools.cache
def catalogue():
    """The texts of the language by the English ones, both without mnemonics."""
    tree = ElementTree.parse(CATALOGUES / f"vireon-menu-desktop-{LANGUAGE}.ts")
    return {message.findtext("source").replace("&", ""):
            (message.findtext("translation") or "").replace("&", "")
            for message in tree.iter("message")}


def pieces_of(text):
    """What the language may show for a part of an English text: of each text that has the part, the
    longest piece that stays as it is."""
    texts = [own for english, own in catalogue().items() if text in english]
    return [max(re.split(r"%\d|<[^>]*>|\n", own), key=len).strip() for own in texts]


@functools.cache
def locales():
    """A directory with the language's locale, whatever the machine has."""
    place = tempfile.mkdtemp(prefix="vireon-locales-")
    atexit.register(shutil.rmtree, place)
    name = LOCALES[LANGUAGE]
    subprocess.run(["localedef", "-i", name, "-f", "UTF-8", f"{place}/{name}.UTF-8"], check=True)
    return place


class Speaking(rig.App):
    """A program in the language, to be asked for its texts in English."""

    def __init__(self, *arguments, environment=None, **options):
        spoken = {"LC_ALL": f"{LOCALES[LANGUAGE]}.UTF-8", "LOCPATH": locales(), "LANGUAGE": None}
        super().__init__(*arguments, environment={**spoken, **(environment or {})}, **options)

    def shows(self, text):
        return any(super(Speaking, self).shows(piece) for piece in pieces_of(text))

    def clickable(self, name):
        return super().clickable(catalogue()[name])


def stage(*arguments, **options):
    """As rig's, with a program in the language."""
    program = Speaking if LANGUAGE in LOCALES else rig.App
    return rig.stage(*arguments, program=program, **options)

"""The user guide has what the window shows, in each language."""

import pathlib
import re
import xml.etree.ElementTree as ElementTree

import pytest

TOP = pathlib.Path(__file__).parents[2]
GUIDES = {"en": "user-guide.md", "de": "user-guide.de.md", "ja": "user-guide.ja.md"}
MENUS = ("Manual Calibration", "Auto Calibration", "Touch Calibration", "Select Input", "Finger",
         "Stylus", "Settings", "Autostart", "Optimize USB bandwidth", "Sensor Viewer", "Back",
         "File", "&Hide", "&Exit", "Calibration", "&Reset", "Help", "Get Help", "Update Firmware",
         "Open", "Correct Offset", "Change graphics settings", "Ignore")
OTHER_BRAND = "%1 not connected! "  # the remote-pen product's own


def statuses():
    """The texts of the table of statuses, in English, and what stands there while it loads."""
    table = (TOP / "qml/status.js").read_text()
    texts = re.findall(r'QT_TR_NOOP\("((?:[^"\\]|\\.)*)"\)', table)
    assert len(texts) > 8
    return [text for text in texts if not text.startswith(OTHER_BRAND)] + ["Loading..."]


def in_language(language):
    """The texts of a language by the English ones."""
    if language == "en":
        return lambda text: text
    tree = ElementTree.parse(TOP / f"translations/vireon-menu-desktop-{language}.ts")
    texts = {message.findtext("source"): message.findtext("translation")
             for message in tree.iter("message")}
    return texts.__getitem__


def plain(text):
    """As a reader sees it."""
    text = re.sub(r"\(&\w\)$", "", text).replace("&", "").replace("%1", "Vireon")
    return re.sub(r"\s*<br>\s*", " ", text)


def without_blanks(text):
    return re.sub(r"\s+", "", text)


@pytest.mark.parametrize("language", GUIDES)
def test_guide_has_every_status(language):
    guide = (TOP / "docs" / GUIDES[language]).read_text()
    rows = {without_blanks(cell) for cell in re.findall(r"(?m)^\| ([^|]+) \|", guide)}
    wanted = {without_blanks(plain(in_language(language)(text))) for text in statuses()}
    assert wanted - rows == set()


@pytest.mark.parametrize("language", GUIDES)
def test_guide_calls_menus_and_buttons_by_their_names(language):
    guide = without_blanks((TOP / "docs" / GUIDES[language]).read_text())
    names = [plain(in_language(language)(text)) for text in MENUS]
    bold = re.findall(r"\*\*(.+?)\*\*", guide)
    said = {name for phrase in bold for name in phrase.split("→")}
    assert [name for name in names if without_blanks(name) not in said] == []


@pytest.mark.parametrize("language", GUIDES)
def test_guide_has_its_own_pictures(language):
    guide = (TOP / "docs" / GUIDES[language]).read_text()
    pictures = re.findall(r"!\[[^\]]+\]\(([^)]+)\)", guide)
    assert sorted(pictures) == sorted(
        str(path.relative_to(TOP / "docs")) for path in (TOP / "docs/guide" / language).iterdir())

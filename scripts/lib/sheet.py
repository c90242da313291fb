"""Puts the pictures STATE_LANGUAGE_COUNTRY_DPI.png of a directory on one sheet.

A row is a state; its columns are the languages, each in all densities.
"""

import pathlib
import sys

from PIL import Image, ImageDraw

CELL = (440, 150)  # px
GAP = 10  # px
LABEL = 14  # px
BACKGROUND, INK = "#0c1117", "#8fa3b8"


def sheet(directory):
    rows = {}
    for path in sorted(directory.glob("*.png")):
        state, language, _, dpi = path.stem.rsplit("_", 3)
        rows.setdefault(state, []).append((language, int(dpi), path))
    columns = max(len(row) for row in rows.values())
    width, height = CELL[0] + GAP, CELL[1] + LABEL + GAP
    result = Image.new("RGB", (columns * width + GAP, len(rows) * height + GAP), BACKGROUND)
    draw = ImageDraw.Draw(result)
    for y, (state, row) in enumerate(rows.items()):
        for x, (language, dpi, path) in enumerate(sorted(row)):
            corner = GAP + x * width, GAP + y * height
            picture = Image.open(path).convert("RGB")
            picture.thumbnail(CELL, Image.LANCZOS)
            result.paste(picture, corner)
            draw.text((corner[0], corner[1] + CELL[1]), f"{state}  {language}  {dpi} dpi", fill=INK)
    return result


sheet(pathlib.Path(sys.argv[1])).save(sys.argv[2], optimize=True)

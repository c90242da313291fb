"""Draws the two animations: handwriting on a display that falls behind and on one that keeps up.

Both show the same pen at the same places, picture by picture. They differ in the ink: how old the
display's picture is, and how often it gets a new one. Players round short delays, so the rates are
shown by distances and not by real time.
"""

import io
import math
import pathlib
import re
import subprocess
import tempfile
import xml.etree.ElementTree as ET

from PIL import Image

SVG = "{http://www.w3.org/2000/svg}"
SPEED = 13  # px from one picture to the next while the pen writes
AIR_SPEED = 4  # times as fast between two strokes
LIFT = 14  # px above the surface, half-way between two strokes
DELAY = 40  # ms that a picture stays
LAST_DELAY = 1400  # ms that the finished word stays
COLOURS = 31
PICTURE_SIZE = 246, 160  # px; twice that at which the view shows them
COLUMNS = 10  # of the sheet that all pictures are rendered on at once

# How many pictures the display keeps one image, and how many pictures old it is when it comes.
RATES = {"30hz.gif": (4, 3), "60hz.gif": (1, 0.5)}


def curve_points(path):
    """The points of a path of the form "Mx,yC..." at steps of about a pixel or less."""
    numbers = [float(n) for n in re.findall(r"-?[\d.]+", path)]
    pairs = list(zip(numbers[::2], numbers[1::2]))
    points = pairs[:1]
    for i in range(1, len(pairs), 3):
        start, first, second, end = pairs[i - 1 : i + 3]
        for step in range(1, 101):
            t = step / 100
            weights = ((1 - t) ** 3, 3 * t * (1 - t) ** 2, 3 * t * t * (1 - t), t**3)
            points.append(
                tuple(
                    sum(w * p[axis] for w, p in zip(weights, (start, first, second, end)))
                    for axis in (0, 1)
                )
            )
    return points


def evenly(points, distance):
    """The points of the line through these points that are this distance apart, and its end."""
    even, walked = [points[0]], 0.0
    for (x0, y0), (x1, y1) in zip(points, points[1:]):
        length = math.hypot(x1 - x0, y1 - y0)
        while walked + length >= distance:
            share = (distance - walked) / length
            x0, y0 = x0 + share * (x1 - x0), y0 + share * (y1 - y0)
            length -= distance - walked
            walked = 0.0
            even.append((x0, y0))
        walked += length
    return even + [points[-1]]


def through_the_air(start, end):
    points = evenly([start, end], AIR_SPEED)
    lifts = (LIFT * math.sin(math.pi * i / len(points)) for i in range(len(points)))
    return [(x, y - lift) for (x, y), lift in zip(points, lifts)]


def timeline(strokes, leave_to):
    """Where the pen is, pixel by pixel of its way, and the number of the stroke it writes."""
    moments = [(*strokes[0][0], None)] * (3 * SPEED)
    for number, stroke in enumerate(strokes):
        moments += [(x, y, number) for x, y in evenly(stroke, 1)]
        target = strokes[number + 1][0] if number + 1 < len(strokes) else leave_to
        moments += [(x, y, None) for x, y in through_the_air(stroke[-1], target)]
    return moments


def ink_path(moments):
    """The path data of what was written up to the end of these moments."""
    data, last = [], None
    for i, (x, y, stroke) in enumerate(moments):
        if stroke is not None and (stroke != last or i % 3 == 0 or i + 1 == len(moments)):
            data.append(f"{'L' if stroke == last else 'M'}{x:.1f},{y:.1f}")
        last = stroke
    return "".join(data)


class Drawing:
    """The parts of handwriting.svg: surface, ink, pen."""

    def __init__(self, source):
        root = ET.parse(source).getroot()
        self.size = int(root.get("width")), int(root.get("height"))
        parts = {part.get("id"): part for part in root if part.get("id")}
        strokes = [curve_points(path.get("d")) for path in parts["ink"]]
        # Far enough above the upper edge that nothing of the pen is left in the picture.
        self.moments = timeline(strokes, leave_to=(self.size[0] / 2, -40))
        self.ink_style = {k: v for k, v in parts["ink"].attrib.items() if k != "id"}
        self.surface, self.pen = parts["surface"], parts["pen"]

    def frame(self, number, hold, age):
        """One picture as an SVG element."""
        painted = max(0, int((number // hold * hold - age) * SPEED))
        frame = ET.Element(f"{SVG}svg", viewBox=f"0 0 {self.size[0]} {self.size[1]}",
                           preserveAspectRatio="none")
        frame.append(self.surface)
        ink = ink_path(self.moments[:painted])
        if ink:
            ET.SubElement(frame, f"{SVG}path", self.ink_style, d=ink)
        x, y, _ = self.moments[min(number * SPEED, len(self.moments) - 1)]
        clipped = ET.SubElement(frame, f"{SVG}g", {"clip-path": "url(#edges)"})
        place = ET.SubElement(clipped, f"{SVG}g", transform=f"translate({x:.1f},{y:.1f})")
        place.append(self.pen)
        return frame

    def frames(self, hold, age):
        """All pictures, up to the one that shows all ink at either rate."""
        oldest = max(sum(rate) for rate in RATES.values())
        count = len(self.moments) // SPEED + math.ceil(oldest) + 1
        sheet = ET.Element(f"{SVG}svg")
        ET.SubElement(sheet, f"{SVG}clipPath", id="edges").append(self.surface)
        width, height = PICTURE_SIZE
        sheet.set("width", str(COLUMNS * width))
        sheet.set("height", str(-(-count // COLUMNS) * height))
        places = [(n % COLUMNS * width, n // COLUMNS * height) for n in range(count)]
        for number, (x, y) in enumerate(places):
            frame = self.frame(number, hold, age)
            frame.set("x", str(x))
            frame.set("y", str(y))
            frame.set("width", str(width))
            frame.set("height", str(height))
            sheet.append(frame)
        picture = to_palette(render(sheet))
        return [picture.crop((x, y, x + width, y + height)) for x, y in places]


def render(svg):
    with tempfile.NamedTemporaryFile(suffix=".svg") as file:
        ET.ElementTree(svg).write(file.name)
        png = subprocess.check_output(["rsvg-convert", file.name])
    return Image.open(io.BytesIO(png)).convert("RGBA")


def to_palette(picture):
    """The picture in one palette for all frames; what is outside of the surface is transparent."""
    alpha = picture.getchannel("A")
    colours = picture.convert("RGB").quantize(COLOURS, dither=Image.Dither.NONE)
    outside = alpha.point(lambda a: 255 if a < 128 else 0)
    colours.paste(COLOURS, mask=outside)
    return colours


def write_animation(source, target):
    """Writes the animation of the target's name. Both last equally long and stay side by side."""
    frames = Drawing(source).frames(*RATES[pathlib.Path(target).name])
    frames[0].save(
        target,
        save_all=True,
        append_images=frames[1:],
        duration=[DELAY] * (len(frames) - 1) + [LAST_DELAY],
        loop=0,
        disposal=1,
        transparency=COLOURS,
        optimize=False,
    )

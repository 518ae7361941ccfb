#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Draws the shields of road numbers into the sprite of the map style.

    python3 make_sprite.py FOLDER     writes sprite.png, sprite.json, sprite@2x.png, sprite@2x.json

Each family of numbers has shields for one to five characters, named such as "shield-us-2".
"""
import json
import struct
import sys
import zlib

HEIGHT = 20
WIDTHS = {1: 20, 2: 22, 3: 29, 4: 36, 5: 43}
SAMPLES = 4


def rounded(x, y, width, height, radius):
    """Whether a position is inside a rectangle with round corners."""
    dx = max(radius - x, x - (width - radius), 0)
    dy = max(radius - y, y - (height - radius), 0)
    return 0 <= x <= width and 0 <= y <= height and dx * dx + dy * dy <= radius * radius


def badge(x, y, width, height):
    """A shield with a flat top and a point at the bottom."""
    if not (0 <= x <= width and 0 <= y <= height):
        return False
    bend = max(0.0, (y / height - 0.55) / 0.45)
    side = (width / 2) * (bend ** 2.2) * 0.92
    corner = max(0.0, 2.5 - y) * 0.5
    return side + corner <= x <= width - side - corner


def oval(x, y, width, height):
    return rounded(x, y, width, height, height / 2)


def box(x, y, width, height):
    return rounded(x, y, width, height, 3)


# The shape, the colors of border and inside, and the color of the top band or None.
FAMILIES = {
    "i": (badge, (255, 255, 255), (38, 82, 158), (196, 46, 54)),
    "us": (badge, (60, 60, 60), (255, 255, 255), None),
    "state": (oval, (60, 60, 60), (255, 255, 255), None),
    "county": (box, (60, 60, 60), (255, 255, 255), None),
    "road": (box, (255, 255, 255), (46, 125, 80), None),
}


def color_at(family, width, x, y):
    shape, border, inside, band = FAMILIES[family]
    if not shape(x, y, width, HEIGHT):
        return None
    inset = 1.3
    if not shape(x - inset, y - inset, width - 2 * inset, HEIGHT - 2 * inset):
        return border
    return band if band and y < 5 else inside


def pixel(family, width, column, row, ratio):
    """Returns the color of a pixel as RGBA, from several samples."""
    total, count = [0, 0, 0], 0
    for i in range(SAMPLES * SAMPLES):
        x = (column + (i % SAMPLES + 0.5) / SAMPLES) / ratio
        y = (row + (i // SAMPLES + 0.5) / SAMPLES) / ratio
        color = color_at(family, width, x, y)
        if color:
            count += 1
            total = [a + b for a, b in zip(total, color)]
    if count == 0:
        return bytes(4)
    return bytes([round(part / count) for part in total] + [255 * count // SAMPLES ** 2])


def chunk(kind, data):
    return (struct.pack(">I", len(data)) + kind + data +
            struct.pack(">I", zlib.crc32(kind + data)))


def write(folder, ratio):
    places, rows = {}, []
    sheet_width = (sum(WIDTHS.values()) + len(WIDTHS)) * ratio
    for index, family in enumerate(FAMILIES):
        top = index * (HEIGHT + 1) * ratio
        lines = [b""] * (HEIGHT + 1) * ratio
        x = 0
        for length, width in WIDTHS.items():
            places[f"shield-{family}-{length}"] = {
                "x": x, "y": top, "width": width * ratio, "height": HEIGHT * ratio,
                "pixelRatio": ratio}
            for row in range((HEIGHT + 1) * ratio):
                for column in range((width + 1) * ratio):
                    lines[row] += pixel(family, width, column, row, ratio)
            x += (width + 1) * ratio
        rows += lines
    header = struct.pack(">IIBBBBB", sheet_width, len(rows), 8, 6, 0, 0, 0)
    png = (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
           chunk(b"IDAT", zlib.compress(b"".join(b"\0" + row for row in rows), 9)) +
           chunk(b"IEND", b""))
    name = f"{folder}/sprite" + ("" if ratio == 1 else f"@{ratio}x")
    with open(name + ".png", "wb") as file:
        file.write(png)
    with open(name + ".json", "w", encoding="ascii") as file:
        json.dump(places, file, indent=1)
        file.write("\n")


for pixel_ratio in (1, 2):
    write(sys.argv[1], pixel_ratio)

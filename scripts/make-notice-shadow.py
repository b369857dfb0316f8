#!/usr/bin/env python3
"""Draws the nine-slice shadow of a notice window.

The image is BORDER + 20 + BORDER pixels square: a shadow border around a
transparent middle that the window's panel covers. The gathered notice
window has a 20-pixel border (the default); the single pop-up card a
10-pixel one (--border 10), whose shadow is the same drawing scaled down. The shadow is a blurred
edge (a Gaussian step) measured from the panel's outline, eased in over
its first pixels, lighter above and
deeper below, as if lit from slightly above. Along each edge it does not vary,
so the edge slices stretch cleanly; corners curve around the panel's corner.

Usage: scripts/make-notice-shadow.py OUTPUT.png [--border 10]
"""
import math
import struct
import sys
import zlib

BORDER = 20
MIDDLE = 20
SIZE = 2 * BORDER + MIDDLE
COLOR = (16, 24, 40)
# (strength at the outline, spread) for the top, sides and bottom.
TOP = (0.18, 4.5)
SIDE = (0.26, 5.5)
BOTTOM = (0.38, 7.0)
EASE_IN = 3.0


def falloff(distance, strength, spread):
    # Eased in over the first pixels, so that the shadow's square inner corner
    # doesn't outline the panel's rounded one.
    t = min(distance / EASE_IN, 1.0)
    ease = t * t * (3.0 - 2.0 * t)
    return ease * strength * 0.5 * math.erfc((distance - EASE_IN) / (spread * math.sqrt(2.0)))


def alpha_at(x, y):
    px, py = x + 0.5, y + 0.5
    lo, hi = BORDER, BORDER + MIDDLE
    nx = min(max(px, lo), hi)
    ny = min(max(py, lo), hi)
    dx, dy = px - nx, py - ny
    distance = math.hypot(dx, dy)
    if distance == 0.0:
        return 0.0  # under the panel
    # Blend the side's parameters by the direction away from the panel.
    wx, wy = abs(dx) / distance, dy / distance
    vertical = TOP if wy < 0 else BOTTOM
    wv = abs(wy)
    weight = wx + wv
    strength = (SIDE[0] * wx + vertical[0] * wv) / weight
    spread = (SIDE[1] * wx + vertical[1] * wv) / weight
    return falloff(distance, strength, spread)


def png(width, height, rows):
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)

    raw = b"".join(b"\x00" + bytes(row) for row in rows)
    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b"")


def scale_to(border):
    global BORDER, SIZE, TOP, SIDE, BOTTOM, EASE_IN
    k = border / BORDER
    BORDER = border
    SIZE = 2 * BORDER + MIDDLE
    TOP = (TOP[0], TOP[1] * k)
    SIDE = (SIDE[0], SIDE[1] * k)
    BOTTOM = (BOTTOM[0], BOTTOM[1] * k)
    EASE_IN = EASE_IN * k


def main():
    if len(sys.argv) == 4 and sys.argv[2] == "--border":
        scale_to(int(sys.argv[3]))
    rows = []
    for y in range(SIZE):
        row = []
        for x in range(SIZE):
            a = int(round(255 * alpha_at(x, y)))
            row.extend(COLOR + (a,))
        rows.append(row)
    with open(sys.argv[1], "wb") as out:
        out.write(png(SIZE, SIZE, rows))


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Draws setup.ico: a crate with an arrow that leaves it, in the sizes that Windows asks for.

    python3 make_icon.py setup.ico
"""

import struct
import sys
import zlib

SIZES = (16, 20, 24, 32, 40, 48, 64, 256)
BLUE, PALE, WHITE, NONE = (0x1F, 0x3A, 0x5F, 255), (0x8F, 0xB4, 0xDC, 255), (255, 255, 255, 255), (0, 0, 0, 0)


def colour(x, y):
    """The colour at a point of the unit square."""
    if 0.40 <= x <= 0.60 and 0.22 <= y <= 0.56:
        return WHITE if y > 0.40 else BLUE
    if 0.06 <= y <= 0.26 and abs(x - 0.5) <= (y - 0.06) * 1.15:
        return BLUE
    if 0.08 <= x <= 0.92 and 0.40 <= y <= 0.94:
        return PALE if y < 0.50 else BLUE
    return NONE


def pixel(column, row, size):
    """The mean of sixteen points, so that edges are smooth."""
    points = [colour((column + (i + 0.5) / 4) / size, (row + (j + 0.5) / 4) / size) for i in range(4) for j in range(4)]
    alpha = sum(point[3] for point in points)
    if alpha == 0:
        return NONE
    return tuple(sum(point[k] * point[3] for point in points) // alpha for k in range(3)) + (alpha // 16,)


def png(size):
    rows = b"".join(b"\0" + b"".join(bytes(pixel(x, y, size)) for x in range(size)) for y in range(size))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def bitmap(size):
    """The form that all systems read for the small sizes: 32-bit rows from the bottom up and an empty mask."""
    rows = b"".join(bytes(pixel(x, y, size)[k] for k in (2, 1, 0, 3)) for y in reversed(range(size))
                    for x in range(size))
    mask = b"\0" * (((size + 31) // 32) * 4 * size)
    return struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(rows) + len(mask), 0, 0, 0, 0) + rows + mask


def main():
    images = [png(size) if size == 256 else bitmap(size) for size in SIZES]
    offset = 6 + 16 * len(SIZES)
    with open(sys.argv[1], "wb") as file:
        file.write(struct.pack("<HHH", 0, 1, len(SIZES)))
        for size, image in zip(SIZES, images):
            file.write(struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(image), offset))
            offset += len(image)
        for image in images:
            file.write(image)


if __name__ == "__main__":
    main()

"""Draws setup.ico, the icon of the pages and of Setup.exe: a parcel on a tray, in the sizes that Windows asks for.

    python3 resources/shared/make_icon.py resources/shared/setup.ico     the same bytes on every run
"""

import struct
import sys
import zlib

SIZES = (16, 20, 24, 32, 40, 48, 64, 256)
PARCEL, LID, TAPE, TRAY = (214, 158, 86), (232, 184, 118), (250, 232, 196), (44, 92, 140)


def colour_at(x, y):
    """The colour of a point of the unit square, or None where the icon is clear."""
    if 0.08 <= x <= 0.92 and 0.80 <= y <= 0.90:
        return TRAY
    if 0.18 <= x <= 0.82 and 0.18 <= y <= 0.76:
        if 0.44 <= x <= 0.56 and y <= 0.52:
            return TAPE
        return LID if y <= 0.34 else PARCEL
    return None


def pixel(x, y, size):
    """The mean of a grid of points: smooth edges at every size."""
    grid = 4
    total, covered = [0, 0, 0], 0
    for step in range(grid * grid):
        colour = colour_at((x + (step % grid + 0.5) / grid) / size, (y + (step // grid + 0.5) / grid) / size)
        if colour:
            covered += 1
            total = [sum_ + part for sum_, part in zip(total, colour)]
    if covered == 0:
        return bytes(4)
    return bytes([part // covered for part in total] + [covered * 255 // (grid * grid)])


def png(size):
    rows = b"".join(b"\0" + b"".join(pixel(x, y, size) for x in range(size)) for y in range(size))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b"")


def bitmap(size):
    """The older form, which every loader of small icons reads."""
    rows = b""
    for y in reversed(range(size)):
        for x in range(size):
            red, green, blue, alpha = pixel(x, y, size)
            rows += bytes((blue, green, red, alpha))
    mask = bytes((size + 31) // 32 * 4 * size)
    return struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(rows) + len(mask), 0, 0, 0, 0) + rows + mask


def main(path):
    images = [png(size) if size >= 256 else bitmap(size) for size in SIZES]
    offset = 6 + 16 * len(images)
    directory = struct.pack("<HHH", 0, 1, len(images))
    for size, image in zip(SIZES, images):
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    with open(path, "wb") as file:
        file.write(directory + b"".join(images))


if __name__ == "__main__":
    main(sys.argv[1])

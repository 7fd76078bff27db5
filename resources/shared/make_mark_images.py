"""Draws a mark of the service pack page, 16 by 16 pixels: info or SuccessCheckMark.

    python3 resources/shared/make_mark_images.py resources/shared/info.gif info     the same bytes on every run

What isn't drawn is clear. Edges are hard: a page is white, a tab has the dialog's color.
"""

import struct
import sys

from make_path_images import BLUE, GREEN, WHITE, box, disc, polygon

SIZE = 16
CODE_BITS = 3  # eight colors at most, the first one clear

MARKS = {
    "info": [disc(BLUE, 8, 8, 7.5), disc(WHITE, 8, 4.4, 1.3), box(WHITE, 7, 7, 9, 12.5)],
    "SuccessCheckMark": [disc(GREEN, 8, 8, 7.5),
                             polygon(WHITE, (3.2, 8.2), (4.8, 6.6), (7, 8.8), (11.2, 4.4), (12.8, 6), (7, 12))],
}


def pixel(shapes, x, y):
    """The color that most of a grid of points has; nothing where most are clear."""
    grid = 5
    hits = []
    for step in range(grid * grid):
        px, py = x + (step % grid + 0.5) / grid, y + (step // grid + 0.5) / grid
        hits.append(([None] + [color for color, covers in shapes if covers(px, py)])[-1])
    return max(dict.fromkeys(hits), key=hits.count)


def pack(codes):
    """Codes of one width from the lowest bit on. A clear code now and then keeps the reader's table from growing wider."""
    bits, count, data = 0, 0, bytearray()
    for code in codes:
        bits |= code << count
        count += CODE_BITS + 1
        while count >= 8:
            data.append(bits & 255)
            bits, count = bits >> 8, count - 8
    return bytes(data) + bytes([bits] * (count > 0))


def image(shapes):
    rows = [[pixel(shapes, x, y) for x in range(SIZE)] for y in range(SIZE)]
    colors = [None] + sorted({color for row in rows for color in row if color})
    palette = b"".join(bytes(color or WHITE) for color in colors).ljust(3 * 2 ** CODE_BITS, b"\0")
    clear, end = 2 ** CODE_BITS, 2 ** CODE_BITS + 1
    codes = []
    for number, color in enumerate(color for row in rows for color in row):
        codes += [clear] * (number % 6 == 0) + [colors.index(color)]
    data = pack(codes + [end])
    assert len(colors) <= 2 ** CODE_BITS
    blocks = b"".join(bytes([len(data[at:at + 255])]) + data[at:at + 255] for at in range(0, len(data), 255))
    return (struct.pack("<6sHHBBB", b"GIF89a", SIZE, SIZE, 0x80 | CODE_BITS - 1, 0, 0) + palette +
            struct.pack("<BBBBHBB", 0x21, 0xF9, 4, 1, 0, 0, 0) +  # the first color is clear
            struct.pack("<BHHHHB", 0x2C, 0, 0, SIZE, SIZE, 0) + bytes([CODE_BITS]) + blocks + b"\0;")


if __name__ == "__main__":
    with open(sys.argv[1], "wb") as target:
        target.write(image(MARKS[sys.argv[2]]))

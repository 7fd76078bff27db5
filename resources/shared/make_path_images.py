"""Draws path_images.bmp, the pictures of the paths page's tree: 31 pictures side by side, 20 by 18 pixels each.

    python3 resources/shared/make_path_images.py resources/shared/path_images.bmp     the same bytes on every run

Magenta is clear. Edges are smoothed against white, the ground of the tree. A closed picture stands before its open one.
"""

import struct
import sys

WIDTH, HEIGHT, COUNT = 20, 18, 31
CLEAR, WHITE = (255, 0, 255), (255, 255, 255)
INK, GRAY, LIGHT = (70, 78, 92), (140, 148, 160), (226, 232, 240)
BLUE, SKY, RED, GREEN = (36, 92, 168), (150, 194, 238), (186, 52, 60), (46, 134, 80)
FOLDER, FOLDER_EDGE, FOLDER_INSIDE = (246, 200, 92), (178, 126, 28), (255, 232, 170)
BOX, BOX_EDGE, BOX_INSIDE = (198, 152, 104), (124, 84, 44), (238, 210, 174)


def polygon(color, *points):
    """A filled polygon; it may have any number of corners."""
    def covers(x, y):
        inside = False
        for (x1, y1), (x2, y2) in zip(points, points[1:] + points[:1]):
            if (y1 > y) != (y2 > y) and x < (x2 - x1) * (y - y1) / (y2 - y1) + x1:
                inside = not inside
        return inside
    return color, covers


def box(color, left, top, right, bottom):
    return polygon(color, (left, top), (right, top), (right, bottom), (left, bottom))


def framed(color, edge, left, top, right, bottom):
    return [box(edge, left, top, right, bottom), box(color, left + 1, top + 1, right - 1, bottom - 1)]


def disc(color, x, y, radius):
    return color, lambda px, py: (px - x) ** 2 + (py - y) ** 2 <= radius ** 2


def arrow(color, left, right, y):
    """To the right, with its tip there."""
    return [box(color, left, y - 1, right - 3, y + 1),
            polygon(color, (right - 4, y - 3.5), (right, y), (right - 4, y + 3.5))]


def letter_a(color, left, top, width, height):
    middle, bar = left + width / 2, width * 0.26
    return [polygon(color, (middle - bar / 2, top), (middle + bar / 2, top), (left + width, top + height),
                    (left + width - bar, top + height), (middle, top + height * 0.22), (left + bar, top + height),
                    (left, top + height)),
            box(color, left + width * 0.22, top + height * 0.56, left + width * 0.78, top + height * 0.74)]


def page():
    return [polygon(GRAY, (4, 1), (12, 1), (16, 5), (16, 17), (4, 17)),
            polygon(WHITE, (5, 2), (11.6, 2), (15, 5.4), (15, 16), (5, 16)),
            polygon(GRAY, (11, 1.6), (15.6, 6), (11, 6)), polygon(LIGHT, (12, 3), (14, 5), (12, 5))]


def folder(color, edge, left=2, top=3):
    right, bottom = left + 15, top + 12
    return [polygon(edge, (left, top), (left + 6, top), (left + 8, top + 2), (right, top + 2), (right, bottom), (left, bottom)),
            polygon(color, (left + 1, top + 1), (left + 5.6, top + 1), (left + 7.6, top + 3), (right - 1, top + 3),
                    (right - 1, bottom - 1), (left + 1, bottom - 1))]


def open_folder(color, edge, inside, left=1, top=3):
    right, bottom = left + 14, top + 12
    return [polygon(edge, (left, top), (left + 6, top), (left + 8, top + 2), (right, top + 2), (right, bottom), (left, bottom)),
            polygon(inside, (left + 1, top + 1), (left + 5.6, top + 1), (left + 7.6, top + 3), (right - 1, top + 3),
                    (right - 1, bottom - 1), (left + 1, bottom - 1)),
            polygon(edge, (left + 4, top + 5), (right + 4, top + 5), (right, bottom), (left, bottom)),
            polygon(color, (left + 4.8, top + 6), (right + 2.6, top + 6), (right - 0.6, bottom - 1), (left + 1.4, bottom - 1))]


def crate(is_open):
    """What holds other headings."""
    if not is_open:
        return framed(BOX, BOX_EDGE, 2, 4, 18, 16) + [box(BOX_EDGE, 2, 8, 18, 9), box(BOX_INSIDE, 8, 6, 12, 7),
                                                       box(BOX_INSIDE, 8, 11, 12, 12)]
    return [polygon(BOX_EDGE, (0, 4), (4, 2), (9, 6), (11, 6), (16, 2), (20, 4), (17, 9), (3, 9)),
            polygon(BOX_INSIDE, (1.6, 4.2), (4, 3.2), (8, 6.6), (3.6, 7.8)),
            polygon(BOX_INSIDE, (18.4, 4.2), (16, 3.2), (12, 6.6), (16.4, 7.8))] + framed(BOX, BOX_EDGE, 2, 8, 18, 16) + [
                box(BOX_INSIDE, 8, 11, 12, 12)]


def menu():
    return (framed(WHITE, INK, 2, 2, 18, 16) + [box(BLUE, 3, 3, 17, 6), box(WHITE, 4, 4, 7, 5), box(WHITE, 9, 4, 12, 5)] +
            framed(LIGHT, GRAY, 3, 6, 11, 14) + [box(INK, 5, 8, 9, 9), box(INK, 5, 11, 9, 12)])


def printer():
    return (framed(WHITE, GRAY, 5, 1, 15, 8) + framed(LIGHT, INK, 2, 6, 18, 13) + [box(GREEN, 14, 8, 16, 9)] +
            framed(WHITE, GRAY, 5, 10, 15, 17) + [box(SKY, 7, 12, 13, 13), box(SKY, 7, 14, 13, 15)])


def dictionary():
    return ([polygon(RED, (4, 1), (17, 1), (17, 17), (4, 17), (3, 16), (3, 2)), box(WHITE, 5, 14, 17, 16), box(GRAY, 5, 15, 17, 15.5)] +
            letter_a(WHITE, 6.5, 3, 7, 9))


def font():
    return letter_a(BLUE, 2, 1.5, 15, 15)


def font_map():
    return letter_a(GRAY, 0, 5, 5.5, 8) + arrow(INK, 6, 11.5, 9) + letter_a(BLUE, 11.5, 3, 7, 10)


def network_folder(shape):
    return shape + [box(BLUE, 3, 15.5, 17, 17), box(BLUE, 9, 14, 11, 17), disc(BLUE, 10, 16, 2)]


def value():
    return [disc(SKY, 10, 9, 6.5), disc(WHITE, 10, 9, 5.2)] + arrow(BLUE, 6, 14.5, 9)


def template():
    return page() + [box(BLUE, 7, 8, 13, 9), box(GRAY, 7, 10.5, 13, 11.2), box(BLUE, 10, 13, 14, 15)]


def stack(front):
    """Of a list: a second folder shows behind the first."""
    return folder(FOLDER_INSIDE, FOLDER_EDGE, 4, 0.5) + front


PICTURES = {
    3: menu(), 5: printer(), 10: dictionary(), 11: font(), 12: font_map(),
    17: stack(folder(FOLDER, FOLDER_EDGE, 1, 5)), 18: stack(open_folder(FOLDER, FOLDER_EDGE, FOLDER_INSIDE, 0, 5)),
    19: folder(FOLDER, FOLDER_EDGE), 20: open_folder(FOLDER, FOLDER_EDGE, FOLDER_INSIDE),
    21: crate(False), 22: crate(True),
    25: network_folder(folder(FOLDER, FOLDER_EDGE, 2, 1)),
    26: network_folder(open_folder(FOLDER, FOLDER_EDGE, FOLDER_INSIDE, 1, 1)),
    27: folder(SKY, BLUE), 28: open_folder(SKY, BLUE, LIGHT),
    29: value(), 30: template(),
}


def pixel(shapes, x, y):
    """The mean of a grid of points against white; magenta where nothing is drawn."""
    grid = 4
    total, covered = [0, 0, 0], 0
    for step in range(grid * grid):
        px, py = x + (step % grid + 0.5) / grid, y + (step // grid + 0.5) / grid
        hit = [color for color, covers in shapes if covers(px, py)]
        covered += bool(hit)
        total = [so_far + part for so_far, part in zip(total, hit[-1] if hit else WHITE)]
    return tuple(part // (grid * grid) for part in total) if covered else CLEAR


def main(path):
    rows = b""
    for y in reversed(range(HEIGHT)):
        for index in range(COUNT):
            for x in range(WIDTH):
                red, green, blue = pixel(PICTURES.get(index, page()), x, y)
                rows += bytes((blue, green, red))
    assert WIDTH * COUNT * 3 % 4 == 0  # no filling at a row's end
    header = struct.pack("<2sIHHI", b"BM", 54 + len(rows), 0, 0, 54)
    header += struct.pack("<IiiHHIIiiII", 40, WIDTH * COUNT, HEIGHT, 1, 24, 0, len(rows), 2835, 2835, 0, 0)
    with open(path, "wb") as file:
        file.write(header + rows)


if __name__ == "__main__":
    main(sys.argv[1])

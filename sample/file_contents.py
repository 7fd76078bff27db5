"""Makes the contents of the sample product's files: real text, tables and pictures, the same on every run."""

import struct
import zlib


def _png(width, height, pixel):
    rows = b"".join(b"\0" + b"".join(bytes(pixel(x, y)) for x in range(width)) for y in range(height))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9))
            + chunk(b"IEND", b""))


def _noise(seed, x, y):
    value = (x * 374761393 + y * 668265263 + seed * 2246822519) & 0xFFFFFFFF
    value = ((value ^ (value >> 13)) * 1274126177) & 0xFFFFFFFF
    return (value >> 16) & 0xFF


def _texture(name):
    seed = zlib.crc32(name.encode())
    base = [(seed >> shift) & 0x7F for shift in (0, 8, 16)]

    def pixel(x, y):
        joint = 40 if y % 16 < 2 or (x + (y // 16) * 12) % 24 < 2 else 0
        return [min(255, level + 64 + _noise(seed, x, y) // 8 + joint) for level in base]

    return _png(96, 96, pixel)


def _lines(count, line):
    return "".join(line(index) + "\r\n" for index in range(count))


def _page(title, body):
    return ("<!DOCTYPE html>\r\n<html><head><meta charset=\"utf-8\"><title>%s</title>"
            "<link rel=\"stylesheet\" href=\"Help.css\"></head>\r\n<body><h1>%s</h1>\r\n%s</body></html>\r\n"
            % (title, title, body))


def contents(product, directory, name):
    """The bytes of a file, chosen by its ending."""
    stem, _, ending = name.rpartition(".")
    seed = zlib.crc32((directory + name).encode())
    if ending == "png":
        return _texture(name)
    if ending == "html":
        body = _lines(12, lambda n: "<p>%d. How %s works in %s: choose a command, then follow the prompt.</p>"
                      % (n + 1, stem.lower(), product))
        text = _page(stem, body)
    elif ending == "css":
        text = "body { font-family: sans-serif; margin: 2em; }\r\nh1 { color: #1F3A5F; }\r\n"
    elif ending == "csv":
        text = "Number,Name,Length\r\n" + _lines(40, lambda n: "%d,%s %d,%d" % (n, stem, n, (seed + n * 37) % 900))
    elif ending == "xml":
        text = ("<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<%s>\r\n" % stem
                + _lines(30, lambda n: "  <Entry number=\"%d\" value=\"%d\"/>" % (n, (seed >> 3) % (n + 7)))
                + "</%s>\r\n" % stem)
    elif ending == "dic":
        text = _lines(200, lambda n: "word%04d" % ((seed + n * 7919) % 10000))
    elif ending in ("zdrawing", "ztemplate", "zsheets"):
        text = "%s 27\r\n" % ending.upper() + _lines(
            400, lambda n: "LINE %d %d %d %d" % (n, (seed + n * 31) % 4200, n * 7 % 2970, (seed + n * 17) % 297))
    else:
        text = "; %s of %s\r\n" % (stem, product) + _lines(60, lambda n: "%s.%d=%d" % (stem, n, (seed + n * 13) % 1000))
    return text.encode("utf-8")

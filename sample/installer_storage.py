"""What an installer database or a transform consists of within its storage: packed names, texts, tables and summary.

A database holds its tables by columns, a transform the differences of tables by rows. Both number their texts in a pool of
their own.
"""

import struct

LETTERS = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz._"
TABLE_MARK = "\u4840"
SUMMARY_STREAM = "\x05SummaryInformation"
LONG_TEXT = 0xFFFF
SYSTEM_TABLES = {"_Tables": ([("Name", "s64")], 1),
                 "_Columns": ([("Table", "s64"), ("Number", "i2"), ("Name", "s64"), ("Type", "i2")], 2)}
VALID, PERSISTENT, STRING, LOCALIZABLE, NULLABLE, KEY = 0x100, 0x400, 0x800, 0x200, 0x1000, 0x2000


def packed_name(name):
    """Two letters of a stream's name in one unit."""
    units, rest = "", name
    while rest:
        first = LETTERS.find(rest[0])
        second = LETTERS.find(rest[1]) if len(rest) > 1 else -1
        if first < 0:
            units, rest = units + rest[0], rest[1:]
        elif second < 0:
            units, rest = units + chr(0x4800 + first), rest[1:]
        else:
            units, rest = units + chr(0x3800 + first + (second << 6)), rest[2:]
    return units


def table_stream(table):
    return TABLE_MARK + packed_name(table)


def is_text(kind):
    return kind[0] in "slgSLG"


def is_stream(kind):
    return kind[0] in "vV"


def column_type(kind, is_key):
    """The number by which _Columns knows a column of an archive file's type (s72, L0, i2, ...)."""
    size = int(kind[1:])
    value = VALID | (NULLABLE if kind[0].isupper() else 0) | (KEY if is_key else 0)
    if is_stream(kind):
        return value | STRING
    if is_text(kind):
        return value | STRING | PERSISTENT | (LOCALIZABLE if kind[0] in "lL" else 0) | size
    return value | (PERSISTENT if size == 2 else 0) | size


class TextPool:
    def __init__(self, code_page=1252):
        self.code_page, self.numbers, self.uses = code_page, {}, []

    def number(self, text):
        """Of a text, which is used once more by this; 0 of none."""
        if text in (None, ""):
            return 0
        if text not in self.numbers:
            self.numbers[text] = len(self.uses) + 1
            self.uses.append(0)
        self.uses[self.numbers[text] - 1] += 1
        return self.numbers[text]

    def streams(self):
        assert len(self.uses) <= 0xFFFF, "more texts than a number of two bytes can name"
        encoding = "utf-8" if self.code_page == 65001 else "cp%d" % self.code_page
        pool, data = struct.pack("<HH", self.code_page & 0xFFFF, self.code_page >> 16), b""
        for text, uses in zip(self.numbers, self.uses):
            encoded = text.encode(encoding)
            if len(encoded) >= LONG_TEXT:
                pool += struct.pack("<HHI", 0, min(uses, 0xFFFF), len(encoded))
            else:
                pool += struct.pack("<HH", len(encoded), min(uses, 0xFFFF))
            data += encoded
        return {table_stream("_StringPool"): pool, table_stream("_StringData"): data}


def cell(pool, kind, value):
    if is_stream(kind):
        return struct.pack("<H", 0 if value is None else 1)
    if is_text(kind):
        return struct.pack("<H", pool.number(None if value is None else str(value)))
    if kind[1] == "2":
        return struct.pack("<H", 0 if value is None else value + 0x8000)
    return struct.pack("<I", 0 if value is None else (value & 0xFFFFFFFF) ^ 0x80000000)


def stream_name(table, keys):
    return packed_name(".".join([table] + [str(key) for key in keys]))


def described_tables(schemas):
    """The rows of _Tables and _Columns for these tables."""
    columns = []
    for table, (kinds, keys) in schemas.items():
        columns += [(table, number, name, column_type(kind, number <= keys))
                    for number, (name, kind) in enumerate(kinds, 1)]
    return [(table,) for table in schemas], columns


def database_streams(schemas, rows, code_page=1252):
    """A whole database: {table: rows} by their schemas."""
    pool, streams = TextPool(code_page), {}
    tables, columns = described_tables(schemas)
    for table, content in [("_Tables", tables), ("_Columns", columns)] + list(rows.items()):
        kinds, keys = SYSTEM_TABLES.get(table) or schemas[table]
        by_row = sorted([cell(pool, kind, value) for (_, kind), value in zip(kinds, row)] for row in content)
        streams[table_stream(table)] = b"".join(b"".join(row[place] for row in by_row) for place in range(len(kinds)))
    streams.update(pool.streams())
    return streams


def whole_row(pool, kinds, keys, row):
    return struct.pack("<H", len(kinds) << 8 | 1) + b"".join(cell(pool, kind, value) for (_, kind), value
                                                            in zip(kinds, row))


def changed_row(pool, kinds, keys, old, new):
    """The key and the columns that differ; None when none does."""
    mask = sum(1 << place for place in range(keys, len(kinds)) if old[place] != new[place])
    places = [place for place in range(len(kinds)) if place < keys or mask & 1 << place]
    return mask and struct.pack("<H", mask) + b"".join(cell(pool, kinds[place][1], new[place]) for place in places)


def removed_row(pool, kinds, keys, row):
    return struct.pack("<H", 0) + b"".join(cell(pool, kind, value) for (_, kind), value in zip(kinds[:keys], row))


class Transform:
    """The differences of tables, in the order in which they are added."""

    def __init__(self, code_page=1252):
        self.pool, self.rows, self.streams = TextPool(code_page), {}, {}

    def new_tables(self, schemas):
        tables, columns = described_tables(schemas)
        self.insert("_Tables", SYSTEM_TABLES["_Tables"], tables)
        self.insert("_Columns", SYSTEM_TABLES["_Columns"], columns)

    def insert(self, table, schema, rows):
        for row in rows:
            self.rows[table] = self.rows.get(table, b"") + whole_row(self.pool, *schema, row)

    def compare(self, table, schema, old, new):
        kinds, keys = schema
        before, after = ({row[:keys]: row for row in map(tuple, rows)} for rows in (old, new))
        parts = [removed_row(self.pool, kinds, keys, row) for key, row in before.items() if key not in after]
        for key, row in after.items():
            part = (changed_row(self.pool, kinds, keys, before[key], row) if key in before
                    else whole_row(self.pool, kinds, keys, row))
            parts += [part] if part else []
        if parts:
            self.rows[table] = self.rows.get(table, b"") + b"".join(parts)

    def all_streams(self):
        streams = {table_stream(table): data for table, data in self.rows.items()}
        return {**streams, **self.streams, **self.pool.streams()}


def summary(values, code_page=1252):
    """The stream of the summary information: {property number: text or number}."""
    encoding = "utf-8" if code_page == 65001 else "cp%d" % code_page
    parts = {1: struct.pack("<Ihxx", 2, code_page if code_page < 0x8000 else code_page - 0x10000)}
    for number, value in values.items():
        if isinstance(value, int):
            parts[number] = struct.pack("<Ii", 3, value)
        else:
            text = value.encode(encoding) + b"\0"
            parts[number] = struct.pack("<II", 30, len(text)) + text + bytes(-len(text) % 4)
    offset, index, data = 8 + 8 * len(parts), b"", b""
    for number in sorted(parts):
        index += struct.pack("<II", number, offset + len(data))
        data += parts[number]
    section = struct.pack("<II", 8 + len(index) + len(data), len(parts)) + index + data
    form = bytes.fromhex("E0859FF2F94F6810AB9108002B27B3D9")
    return struct.pack("<HHI16xI", 0xFFFE, 0, 0x00020006, 1) + form + struct.pack("<I", 48) + section

"""Writes compound documents, the container of installer databases and patches: storages and streams within one file.

The same content gives the same bytes: nothing in the file tells a time or a place.
"""

import struct
import uuid

SECTOR, MINI_SECTOR, MINI_CUTOFF = 512, 64, 4096
FREE, END, FAT_MARK, DIFAT_MARK, NONE = 0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFFD, 0xFFFFFFFC, 0xFFFFFFFF
HEADER_FAT_ENTRIES = 109
STORAGE, STREAM, ROOT = 1, 2, 5
RED, BLACK = 0, 1


class Storage:
    """Streams by name, and storages below."""

    def __init__(self, class_id):
        self.class_id, self.streams, self.storages = class_id, {}, {}


class _Entry:
    def __init__(self, name, kind, class_id=None, data=b""):
        self.name, self.kind, self.class_id, self.data = name, kind, class_id, data
        self.left = self.right = self.child = NONE
        self.color, self.start = BLACK, END

    def order(self):
        """The container's own order: shorter names first."""
        name = self.name.upper().encode("utf-16-le")
        return len(name), [name[index + 1] << 8 | name[index] for index in range(0, len(name), 2)]

    def bytes(self, size):
        name = self.name.encode("utf-16-le") + b"\0\0"
        assert len(name) <= 64, self.name
        class_id = uuid.UUID(self.class_id).bytes_le if self.class_id else bytes(16)
        return (name.ljust(64, b"\0") + struct.pack("<HBBIII", len(name), self.kind, self.color, self.left, self.right,
                                                    self.child)
                + class_id + bytes(4 + 8 + 8) + struct.pack("<IQ", self.start, size))


def _link(entries, indices, depth, deepest):
    """Makes a balanced tree of the sorted indices and answers its top; only its last, unfilled level is red."""
    if not indices:
        return NONE
    middle = len(indices) // 2
    top = entries[indices[middle]]
    top.left = _link(entries, indices[:middle], depth + 1, deepest)
    top.right = _link(entries, indices[middle + 1:], depth + 1, deepest)
    top.color = RED if depth == deepest and depth > 0 else BLACK
    return indices[middle]


def _add_children(entries, parent, storage):
    children = []
    for name, data in storage.streams.items():
        children.append(len(entries))
        entries.append(_Entry(name, STREAM, data=data))
    for name, below in storage.storages.items():
        children.append(len(entries))
        entries.append(_Entry(name, STORAGE, below.class_id))
        _add_children(entries, entries[-1], below)
    children.sort(key=lambda index: entries[index].order())
    parent.child = _link(entries, children, 0, len(children).bit_length() - 1)


class _Chains:
    """Sectors in the order in which they are written, and the table that chains them."""

    def __init__(self, size):
        self.size, self.data, self.table = size, bytearray(), []

    def add(self, data):
        """The first sector of a new chain; END for no data."""
        if not data:
            return END
        first, count = len(self.table), -(-len(data) // self.size)
        self.data += data.ljust(count * self.size, b"\0")
        self.table += list(range(first + 1, first + count)) + [END]
        return first


def _padded_table(table, sector):
    table = table + [FREE] * (-len(table) % (sector // 4))
    return struct.pack("<%dI" % len(table), *table)


def _add_allocation_table(sectors):
    """Behind all else, with the list of its own sectors. Answers these and the sectors of that list."""
    per_sector = SECTOR // 4
    tables = lists = 0
    while True:
        total = len(sectors.table) + tables + lists
        needed = -(-total // per_sector)
        needed_lists = -(-max(0, needed - HEADER_FAT_ENTRIES) // (per_sector - 1))
        if (needed, needed_lists) == (tables, lists):
            break
        tables, lists = needed, needed_lists
    first = len(sectors.table)
    places = list(range(first, first + tables))
    list_places = list(range(first + tables, first + tables + lists))
    sectors.table += [FAT_MARK] * tables + [DIFAT_MARK] * lists
    sectors.data += _padded_table(sectors.table, SECTOR)
    rest = places[HEADER_FAT_ENTRIES:]
    for number in range(lists):
        part = rest[number * (per_sector - 1):(number + 1) * (per_sector - 1)]
        part += [FREE] * (per_sector - 1 - len(part))
        following = list_places[number + 1] if number + 1 < lists else END
        sectors.data += struct.pack("<%dI" % per_sector, *part, following)
    return places, list_places


def compose(root):
    """The bytes of the file whose root storage this is."""
    entries = [_Entry("Root Entry", ROOT, root.class_id)]
    _add_children(entries, entries[0], root)
    sectors, small = _Chains(SECTOR), _Chains(MINI_SECTOR)
    for entry in entries:
        if entry.kind == STREAM:
            entry.start = (small if len(entry.data) < MINI_CUTOFF else sectors).add(entry.data)
    entries[0].start = sectors.add(bytes(small.data))
    small_table = _padded_table(small.table, SECTOR) if small.table else b""
    small_start = sectors.add(small_table)
    directory = b"".join(entry.bytes(len(small.data) if entry.kind == ROOT else len(entry.data)) for entry in entries)
    while len(directory) % SECTOR:
        directory += bytes(64) + struct.pack("<HBBIII", 0, 0, 0, NONE, NONE, NONE) + bytes(48)
    directory_start = sectors.add(directory)
    places, list_places = _add_allocation_table(sectors)
    header = (b"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + bytes(16)
              + struct.pack("<HHHHH6x", 0x3E, 3, 0xFFFE, 9, 6)
              + struct.pack("<IIIIIIIII", 0, len(places), directory_start, 0, MINI_CUTOFF, small_start,
                            len(small_table) // SECTOR, list_places[0] if list_places else END, len(list_places)))
    in_header = places[:HEADER_FAT_ENTRIES]
    in_header += [FREE] * (HEADER_FAT_ENTRIES - len(in_header))
    return header + struct.pack("<%dI" % HEADER_FAT_ENTRIES, *in_header) + bytes(sectors.data)

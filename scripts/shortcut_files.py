"""Shortcuts of a workstation: what an installer database promises, what the shell's files hold, and what answers ask for."""

import glob
import os
import re
import struct

# Where the shell has the installer's folders, for all users or for one: below the system drive.
SHELL_FOLDERS = {
    "ProgramMenuFolder": ("ProgramData/Microsoft/Windows/Start Menu/Programs",
                          "users/*/AppData/Roaming/Microsoft/Windows/Start Menu/Programs"),
    "DesktopFolder": ("users/*/Desktop",),
}
SHORTCUT_WORD = "workstation.shortcut"
HAS_ID_LIST, HAS_LINK_INFO, HAS_NAME, HAS_RELATIVE_PATH, HAS_FOLDER, HAS_ARGUMENTS = 1, 2, 4, 8, 16, 32
IS_UNICODE = 128
HEADER_SIZE = 76


def read_link(data):
    """Target, arguments and working folder of a shell link. Raises ValueError for another file."""
    if len(data) < HEADER_SIZE or struct.unpack_from("<I", data)[0] != HEADER_SIZE:
        raise ValueError("no shell link")
    flags, = struct.unpack_from("<I", data, 20)
    place, target = HEADER_SIZE, ""
    if flags & HAS_ID_LIST:
        place += 2 + struct.unpack_from("<H", data, place)[0]
    if flags & HAS_LINK_INFO:
        size, header, _, _, base = struct.unpack_from("<5I", data, place)
        target = link_target(data[place:place + size], header, base)
        place += size
    texts = {}
    for flag in (HAS_NAME, HAS_RELATIVE_PATH, HAS_FOLDER, HAS_ARGUMENTS):
        if flags & flag:
            count, = struct.unpack_from("<H", data, place)
            width = 2 if flags & IS_UNICODE else 1
            raw = data[place + 2:place + 2 + count * width]
            # Wine counts a closing zero, which the format doesn't have.
            texts[flag] = raw.decode("utf-16le" if width == 2 else "cp1252").rstrip("\0")
            place += 2 + count * width
    return target, texts.get(HAS_ARGUMENTS, ""), texts.get(HAS_FOLDER, "")


def link_target(info, header, base):
    """The path in the link's information; its wide form where it has one."""
    if header >= 0x24:
        wide, = struct.unpack_from("<I", info, 28)
        return info[wide:].decode("utf-16le", "replace").split("\0")[0]
    return info[base:].split(b"\0")[0].decode("cp1252")


def holds(condition, properties):
    """Whether a condition of the form NAME="value" holds; none holds always. None for any other form."""
    if not condition:
        return True
    match = re.fullmatch(r'\s*(\w+)\s*=\s*"([^"]*)"\s*', condition)
    return properties.get(match.group(1), "") == match.group(2) if match else None


def formatted(package, text):
    """What the installer makes of a formatted text: directories and properties in square brackets, nothing for an unknown one, and
    a letter behind a backslash as it stands."""
    return re.sub(r"\[\\(.)\]|\[(\w+)\]", lambda found: found.group(1) or package.target_path(found.group(2)), text)


class Shortcut:
    """A row of a database's table: where its file has to be, and what it has to hold."""

    def __init__(self, package, row):
        self.key, self.name = row["Shortcut"], row["Name"].split("|")[-1]
        self.arguments = formatted(package, row["Arguments"])
        self.target = formatted(package, row["Target"])
        self.folder = package.target_path(row["WkDir"]).rstrip("\\") if row["WkDir"] else ""
        self.patterns = [os.path.join(root, *parts, glob.escape(self.name) + ".lnk")
                         for root, parts in shell_places(package, row["Directory_"])]

    def find(self, drive):
        return sorted(path for pattern in self.patterns for path in glob.glob(os.path.join(glob.escape(drive), pattern)))

    def look(self, drive):
        """Empty when the file is there as it should be, else what is wrong."""
        found = self.find(drive)
        if len(found) != 1:
            return "there are %d of them" % len(found)
        with open(found[0], "rb") as file:
            try:
                target, arguments, folder = read_link(file.read())
            except (ValueError, struct.error) as error:
                return str(error)
        wrong = ["%s is \"%s\" instead of \"%s\"" % (what, has, wanted)
                 for what, has, wanted in (("target", target, self.target), ("arguments", arguments, self.arguments),
                                           ("working folder", folder.rstrip("\\"), self.folder)) if has != wanted]
        return ", ".join(wrong)


def shell_places(package, key):
    """(folder of the shell, parts below it) of a directory key; none for one that lies elsewhere."""
    parts = []
    while key and key not in SHELL_FOLDERS:
        row = package.directories.get(key)
        if not row or row["Directory_Parent"] in ("", key):
            return []
        parts.insert(0, glob.escape(row["DefaultDir"].split(":")[0].split("|")[-1]))
        key = row["Directory_Parent"]
    return [(root, [part for part in parts if part != "."]) for root in SHELL_FOLDERS.get(key, ())]


def expected_shortcuts(package, rows):
    """(those that a plain installation brings, those that it leaves out) of the table's rows."""
    wanted, left_out = [], []
    for row in rows:
        component = package.components.get(row["Component_"])
        if not component or row["Component_"] not in package.wanted or row["Target"][:1] != "[":
            continue
        condition = holds(component["Condition"], package.properties)
        shortcut = Shortcut(package, row)
        if condition is not None and shortcut.patterns:
            (wanted if condition else left_out).append(shortcut)
    return wanted, left_out


def custom_shortcuts(package, rows):
    """(name, command line) of the custom shortcuts in the order in which the wizard keeps them."""
    by_key = {row["Shortcut"]: row for row in rows}
    keys = package.properties.get("ZOLT_CUSTOM_SHORTCUT", "").split(";")[1:-1]
    return [(by_key[key]["Name"].split("|")[-1], by_key[key]["Arguments"]) for key in keys if key in by_key]


def quoted_fields(value):
    return [field.replace('""', '"') for field in re.findall(r'"((?:[^"]|"")*)"', value)]


def asked_shortcuts(path, words):
    """Product or "" -> (name, command line) of each shortcut that an answers file, or the command line, which wins, asks for.
    An empty list where none is to be."""
    asked, product, section = {}, "", ""
    with open(path, encoding="utf-8-sig") as file:
        lines = [line.strip() for line in file]
    for line in lines:
        if line.startswith("["):
            section, quote, name = line[1:-1].partition('"')
            product = (quoted_fields(quote + name) or [""])[0]
        elif re.match(r"shortcut\s*=", line) and section.strip() + ".shortcut" == SHORTCUT_WORD:
            asked.setdefault(product, []).append(line.split("=", 1)[1])
    said = {}
    for word in words:
        match = re.fullmatch(r'workstation(?:\s*"(.*?)")?\.shortcut=(.*)', word, re.DOTALL)
        if match:
            said.setdefault(match.group(1) or "", []).append(match.group(2))
    if "" in said:
        asked = {}
    asked.update(said)
    return {owner: [tuple(fields) for fields in map(quoted_fields, values) if any(fields)]
            for owner, values in asked.items()}


def check_asked(asked, products):
    """A sentence for each product whose custom shortcuts aren't those that were asked for. `products`: (name, product code,
    its custom shortcuts)."""
    wrong = []
    for name, code, found in products:
        owner = next((owner for owner in asked if owner and owner.lower() in (name.lower(), code.lower())), "")
        if owner in asked and found != asked[owner]:
            wrong.append("%s has the custom shortcuts %s instead of %s" % (name, found, asked[owner]))
    return wrong

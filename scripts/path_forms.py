"""The two forms of a path once more, for looks at what the wizard stored: no part of the wizard, which is checked with it.

`rows` are those of TarnDirectoryMap: key -> (text, flags).
"""

import re

NO_PATH = "[NULL]"
ESCAPES = (("[\\[]", "["), ("[\\]]", "]"), ("[\\{]", "{"), ("[\\}]", "}"))
USABLE_AS_PREFIX = 2
LONGEST_READ = 1023  # characters; of a longer value the beginning counts


def entries_of(value):
    return [entry.strip() for entry in value.split(";") if entry.strip()]


def shown_path(rows, value):
    """What an administrator sees of a value of the database."""
    value = value[:LONGEST_READ]
    if value.upper() == NO_PATH:
        return ""
    for escaped, plain in ESCAPES:
        value = value.replace(escaped, plain)
    shown = []
    for entry in entries_of(value):
        begin, end = entry.find("["), entry.find("]")
        key = entry[begin + 1:end] if end > begin else entry[begin + 1:]
        rest = entry[end + 1:]
        text = rows[key][0] + ("\\" if rest else "") if key in rows else ""
        shown.append(text + rest)
    return ";".join(shown).rstrip(";").rstrip("\\")


def stored_path(rows, shown):
    """What the database holds of a path that an administrator entered."""
    if not shown or shown.upper() == NO_PATH:
        return shown or NO_PATH
    stored = []
    for entry in entries_of(shown):
        keys = [key for key in sorted(rows) if rows[key][1] & USABLE_AS_PREFIX and rows[key][0]
                and entry.startswith(rows[key][0])]
        if re.match(r"[^\W\d_]:", entry) or not keys:
            stored.append(entry)
        else:
            stored.append("[%s]%s" % (keys[0], entry[len(rows[keys[0]][0]):].strip("\\")))
    return ";".join(stored)

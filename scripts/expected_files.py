"""What a run's answers ask for in additional files, written as the paths on a workstation that have to hold them.

The wizard's own reading of the lines isn't used on purpose, so that it is checked against a second hand.
"""

import ntpath
import os
import re

from expected_properties import full_path, unquoted

ROOT_MARK = "<root>"
SECTION = re.compile(r'\[files(?:\s+"(.*)")?\]')


def read_lines(path):
    """(product or "", word, values) of each line of additional files, in their order."""
    lines, product = [], None
    with open(path, encoding="utf-8-sig") as file:
        for line in (line.strip() for line in file):
            if line.startswith("["):
                section = SECTION.fullmatch(line)
                product = None if not section else section.group(1) or ""
            elif product is not None and "=" in line and not line.startswith("#"):
                word, value = (part.strip() for part in line.split("=", 1))
                quoted = re.findall(r'"((?:[^"]|"")*)"', value)
                values = [text.replace('""', '"') for text in quoted] if value.startswith('"') else [unquoted(value)]
                if not word.startswith("on_question.") and word not in ("show", "leave"):
                    lines.append((product, word, values))
    return lines


def linux_path(path):
    """The file system's own path of one on Wine's drive of the root."""
    if not path.lower().startswith("z:"):
        raise ValueError("%s doesn't lie on the drive of the root" % path)
    return path[2:].replace("\\", "/")


class Tree:
    """The additions by their paths as the answers write them: the source of a file, None for a folder or drive."""

    def __init__(self):
        self.items = {}

    def below(self, path):
        return [item for item in self.items if item == path or item.startswith(path + "\\")]

    def apply(self, word, values, folder):
        """`folder`: of the answers file, which sources count from."""
        place = values[0].rstrip("\\") if values else ""
        if word == "clear":
            self.items = {} if values == ["yes"] else self.items
        elif word == "drive":
            self.items.setdefault(place, None)
        elif word == "folder":
            self.items.setdefault(place + "\\" + values[1], None)
        elif word == "file":
            source = full_path(folder, values[1])
            self.items[place + "\\" + ntpath.basename(source)] = linux_path(source)
        elif word == "folder_tree":
            self.add_tree(place, linux_path(full_path(folder, values[1])))
        elif word == "rename":
            name = (ntpath.dirname(place) + "\\" if "\\" in place else "") + values[1]
            self.items = {name + item[len(place):] if item in self.below(place) else item: source
                          for item, source in self.items.items()}
        elif word == "remove":
            for item in self.below(place):
                del self.items[item]
        else:
            raise ValueError("%s is no word of additional files" % word)

    def add_tree(self, place, source):
        for parent, _, names in os.walk(source):
            inside = os.path.relpath(parent, os.path.dirname(source)).replace("/", "\\")
            self.items.setdefault(place + "\\" + inside, None)
            for name in names:
                self.items[place + "\\" + inside + "\\" + name] = os.path.join(parent, name)


class AskedFiles:
    """Of one product: what has to be there, and what was asked for once and must be gone."""

    def __init__(self, files, folders, gone):
        self.files, self.folders, self.gone = files, folders, gone

    def all(self):
        return sorted(list(self.files) + self.folders + self.gone)


def asked_files(answers, product):
    """What the answers files, one run after the other, ask for of a product."""
    tree, known = Tree(), set()
    for path in answers:
        for owner, word, values in read_lines(path):
            if owner.lower() in ("", product.lower()):
                tree.apply(word, values, os.path.dirname(os.path.abspath(path)))
                known.update(tree.items)
    return AskedFiles({path: source for path, source in tree.items.items() if source is not None},
                      [path for path, source in tree.items.items() if source is None],
                      sorted(known - set(tree.items)))


def place_on(path, root, drives):
    """Where a workstation has it. `root`: of the product's folder there; `drives`: folder of each added drive."""
    first, *rest = path.split("\\")
    if first.lower() == ROOT_MARK:
        return os.path.join(root, *rest)
    return os.path.join(drives, first[0].lower(), *rest)


def find_wrong(asked, root, drives):
    """A sentence for each path that isn't as it was asked for."""
    wrong = []
    for path, source in asked.files.items():
        place = place_on(path, root, drives)
        if not os.path.isfile(place):
            wrong.append("not installed: " + path)
        elif read(place) != read(source):
            wrong.append("%s doesn't hold the bytes of %s" % (path, source))
    wrong += ["no such folder: " + path for path in asked.folders if not os.path.isdir(place_on(path, root, drives))]
    wrong += ["there although it was removed: " + path for path in asked.gone
              if os.path.exists(place_on(path, root, drives))]
    return wrong + find_strays(asked, root, drives)


def find_strays(asked, root, drives):
    """What lies in added folders and was never asked for."""
    known = {place_on(path, root, drives) for path in asked.all()}
    strays = []
    for folder in asked.folders:
        place = place_on(folder, root, drives)
        strays += [os.path.join(place, name) for name in (os.listdir(place) if os.path.isdir(place) else [])
                   if os.path.join(place, name) not in known]
    return ["nobody asked for " + path for path in strays]


def find_left(asked, root, drives):
    """What is still there; the roots of drives are no addition's."""
    return ["left behind: " + path for path in asked.all()
            if "\\" in path and os.path.lexists(place_on(path, root, drives))]


def read(path):
    with open(path, "rb") as file:
        return file.read()

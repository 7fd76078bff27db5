#!/usr/bin/env python3
"""Writes what an unattended ./run on the sample works with: its answers, and beside them the files that they add and the
patch files that they name.

    sample_additions.py FOLDER

The bytes are the same each time. Three files have one name and other bytes; the folder tree has some hundred files, an
empty file among them, and an empty folder.
"""

import hashlib
import os
import shutil
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BUILD = os.environ.get("ROLLOUT_BUILD", os.path.join(ROOT, "build"))
PATCHES = os.path.join(BUILD, "windows", "sample_patches", "x64")
ANSWERS = ("run-answers.txt", "run-changes.txt")
FILES_OF_A_FOLDER = 120
BYTES = (0, 1, 100, 4096, 70000)


def bytes_of(name, count):
    """Neither the same in two files nor something that a cabinet makes much smaller."""
    block = b"".join(hashlib.sha256(("%s %d" % (name, number)).encode()).digest() for number in range(count // 32 + 1))
    return block[:count]


def additions():
    """Path below the folder -> bytes; None for an empty folder."""
    files = {"%s/plan.txt" % folder: bytes_of(folder, 1000) for folder in ("one", "two", "three", "new")}
    files["new/added later.txt"] = bytes_of("later", 10)
    for folder in ("Standards", "Standards/Blocks and symbols", "Standards/Blocks and symbols/Caf\u00e9"):
        for number in range(FILES_OF_A_FOLDER):
            name = "%s/block %03d.dat" % (folder, number)
            files[name] = bytes_of(name, BYTES[number % len(BYTES)])
    files["Standards/Empty"] = None
    return files


def write(folder):
    """Anew, so that nothing of an earlier run is added."""
    target = os.path.join(folder, "additions")
    shutil.rmtree(target, ignore_errors=True)
    for name, data in additions().items():
        path = os.path.join(target, *name.split("/"))
        os.makedirs(path if data is None else os.path.dirname(path), exist_ok=True)
        if data is not None:
            with open(path, "wb") as file:
                file.write(data)
    shutil.rmtree(os.path.join(folder, "patches"), ignore_errors=True)
    if os.path.isdir(PATCHES):  # the checks also run where nothing is built
        shutil.copytree(PATCHES, os.path.join(folder, "patches"))
    for answers in ANSWERS:
        shutil.copy(os.path.join(ROOT, answers), folder)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__.splitlines()[2].strip())
    write(sys.argv[1])

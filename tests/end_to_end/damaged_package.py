#!/usr/bin/env python3
"""A package with a few bytes changed, the same ones for the same seed.

    damaged_package.py PACKAGE TARGET SEED [BYTES]
"""

import random
import sys

BYTES = 60


def damage(package, target, seed, count=BYTES):
    with open(package, "rb") as file:
        data = bytearray(file.read())
    chance = random.Random(seed)
    for _ in range(count):
        data[chance.randrange(len(data))] = chance.randrange(256)
    with open(target, "wb") as file:
        file.write(data)


if __name__ == "__main__":
    damage(sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4]) if len(sys.argv) > 4 else BYTES)

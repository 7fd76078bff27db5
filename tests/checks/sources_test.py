"""Checks of the sources themselves: formatting, layers, and words that don't belong."""

import os
import re
import subprocess
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

# From the bottom up: what a folder may include beside itself.
LAYERS = {
    "base": set(),
    "window": {"base"},
    "slimhtml": {"base", "window"},
    "include": {"base", "window"},
    "controls": {"base", "window", "include"},
    "automation": {"base", "window"},
    "installer": {"base", "include"},
    "catalog": {"base", "include"},
    "frame": {"base", "window", "include", "controls", "slimhtml", "installer"},
    "msi": {"base", "window", "include", "controls", "installer", "frame"},
    "pages": {"base", "window", "include", "controls", "slimhtml", "installer", "frame", "msi"},
    "online": {"base", "window", "include", "controls", "slimhtml", "installer", "frame", "msi"},
    "paths": {"base", "window", "include", "controls", "slimhtml", "installer", "frame", "msi"},
    "files": {"base", "window", "include", "controls", "slimhtml", "installer", "frame", "msi"},
    "patches": {"base", "window", "include", "controls", "slimhtml", "installer", "frame", "msi"},
    "workstation": {"base", "window", "include", "controls", "slimhtml", "installer", "frame", "msi"},
    "builder": {"base", "include", "installer", "msi"},
    "host": {"base", "include", "installer", "msi", "builder"},
    "setup": {"base", "window", "include", "slimhtml", "automation", "host", "builder"},
    # These stand beside the product, and see all of it.
    "benchmarks": None,
    "fuzz": None,
    "resources": {"include"},
    "sample": set(),
    "tests": None,
}
MAXIMUM_LINES = 600


def tracked(*endings):
    listing = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, capture_output=True, check=True).stdout
    return [name for name in listing.decode().split("\0") if name.endswith(endings) and
            os.path.exists(os.path.join(ROOT, name))]


def lines_of(name):
    with open(os.path.join(ROOT, name), encoding="utf-8") as file:
        return file.read().splitlines()


class SourcesTest(unittest.TestCase):
    def test_sources_are_formatted(self):
        """Fix with: clang-format-14 -i FILE"""
        files = tracked(".h", ".cpp", ".c")
        result = subprocess.run(["clang-format-14", "--dry-run", "-Werror", "--ferror-limit=1"] + files, cwd=ROOT,
                                capture_output=True)
        wrong = re.findall(r"^(\S+?):\d+:\d+: error", result.stderr.decode(), re.M)
        self.assertEqual(sorted(set(wrong)), [])

    def test_folders_include_only_the_layers_below(self):
        wrong = []
        for name in tracked(".h", ".cpp"):
            folder = name.split("/")[0]
            if LAYERS.get(folder) is None:
                continue
            for number, line in enumerate(lines_of(name), 1):
                included = re.match(r'\s*#include "([^/"]+)/', line)
                if included and included.group(1) != folder and included.group(1) not in LAYERS[folder]:
                    wrong.append("%s:%d %s" % (name, number, line.strip()))
        self.assertEqual(wrong, [])

    def test_every_folder_with_sources_has_its_layer(self):
        """A folder that the table doesn't know would be held against nothing. None has folders of its own but the tests."""
        folders = {os.path.dirname(name) for name in tracked(".h", ".cpp", ".rc")}
        self.assertEqual(sorted(folder for folder in folders if folder.split("/")[0] not in LAYERS), [])
        self.assertEqual(sorted(folder for folder in folders if "/" in folder and
                                LAYERS[folder.split("/")[0]] is not None and
                                folder not in ("resources/en-US", "resources/shared")), [])

    def test_files_stay_short(self):
        long = ["%s (%d)" % (name, len(lines_of(name))) for name in tracked(".h", ".cpp", ".py")
                if len(lines_of(name)) > MAXIMUM_LINES]
        self.assertEqual(long, [])

    def test_rules_include_no_window_header(self):
        """The files that are compiled natively must not see Windows, not even through a header."""
        wrong = []
        for name in tracked("CMakeLists.txt"):
            folder = os.path.dirname(name)
            text = re.sub(r"#.*", "", "\n".join(lines_of(name)))
            for group in re.findall(r"RULES\s+(.*?)(?:WINDOWS|LINK|\))", text, re.S):
                for word in group.split():
                    file = os.path.join(folder, word)
                    if word.endswith(".cpp") and os.path.exists(os.path.join(ROOT, file)):
                        if any(re.match(r"\s*#include <windows\.h>", line) for line in lines_of(file)):
                            wrong.append(file)
        self.assertEqual(wrong, [])

    def test_headers_are_included_once(self):
        wrong = [name for name in tracked(".h") if not any(
            line.startswith("#pragma once") or line.startswith("#ifndef ROLLOUT_") for line in lines_of(name))]
        self.assertEqual(wrong, [])

    def test_headers_do_not_share_the_name_of_a_class(self):
        """Of two classes of one name in one program the linker keeps the functions of either."""
        places = {}
        for name in tracked(".h"):
            for line in lines_of(name):
                defined = re.match(r"(?:class|struct|union|enum(?: class)?) (\w+)(?![^{]*;)", line)
                if defined and not name.startswith("tests/"):
                    places.setdefault(defined.group(1), set()).add(name)
        self.assertEqual({key: sorted(files) for key, files in places.items() if len(files) > 1}, {})

    def test_no_test_sleeps(self):
        wrong = []
        for name in tracked(".cpp", ".h"):
            if name.startswith("tests/"):
                wrong += ["%s:%d" % (name, number) for number, line in enumerate(lines_of(name), 1)
                          if re.search(r"\bSleep\(\s*[1-9]|sleep_for", line)]
        self.assertEqual(wrong, [])


if __name__ == "__main__":
    unittest.main()

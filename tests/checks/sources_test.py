"""Checks of the sources themselves: formatting, layers, and words that don't belong."""

import os
import re
import subprocess
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

# From the bottom up: what a folder may include beside itself.
LAYERS = {
    "window": set(),
    "slimhtml": {"window"},
    "include": {"window"},
    "controls": {"window", "include"},
    "frame": {"window", "include", "controls", "slimhtml"},
    "msi": {"window", "include", "frame", "controls"},
    "pages": {"window", "include", "controls", "slimhtml", "frame", "msi"},
    "online": {"window", "include", "controls", "slimhtml", "frame", "msi"},
    "host": {"window", "include", "msi"},
    "automation": {"window"},
    "setup": {"window", "include", "host", "automation", "slimhtml"},
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
        """Mend with: clang-format-14 -i FILE"""
        files = tracked(".h", ".cpp", ".c")
        result = subprocess.run(["clang-format-14", "--dry-run", "-Werror", "--ferror-limit=1"] + files, cwd=ROOT,
                                capture_output=True)
        wrong = re.findall(r"^(\S+?):\d+:\d+: error", result.stderr.decode(), re.M)
        self.assertEqual(sorted(set(wrong)), [])

    def test_folders_include_only_the_layers_below(self):
        wrong = []
        for name in tracked(".h", ".cpp"):
            folder = name.split("/")[0]
            if folder not in LAYERS:
                continue
            for number, line in enumerate(lines_of(name), 1):
                included = re.match(r'\s*#include "([^/"]+)/', line)
                if included and included.group(1) != folder and included.group(1) not in LAYERS[folder]:
                    wrong.append("%s:%d %s" % (name, number, line.strip()))
        self.assertEqual(wrong, [])

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

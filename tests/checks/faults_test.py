"""The table of faults: each entry still fits the code and the tests that it names."""

import os
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "scripts"))

from fault_table import AREAS, MAY_BE_EMPTY, Fault, find_entry_trouble, find_source_tests, load_faults  # noqa: E402
from test_lanes import built_programs, program_name  # noqa: E402

BUILD = os.environ.get("ROLLOUT_BUILD", os.path.join(ROOT, "build"))


class FaultTableTest(unittest.TestCase):
    def test_each_entry_fits_the_code_and_the_tests(self):
        programs = {tree: {program_name(path) for path in built_programs(BUILD, tree)} for tree in ("native", "windows")}
        source_tests = find_source_tests(ROOT)
        self.assertEqual(["%s %s" % (fault.label, text) for fault in load_faults(ROOT)
                          for text in find_entry_trouble(ROOT, fault, programs, source_tests)], [])

    def test_no_name_occurs_twice(self):
        labels = [fault.label for fault in load_faults(ROOT)]
        self.assertEqual(sorted({label for label in labels if labels.count(label) > 1}), [])

    def test_each_folder_has_entries(self):
        used = {fault.folder if fault.folder in AREAS["builder"] else fault.folder.split("/")[0]
                for fault in load_faults(ROOT)}
        wanted = {folder for folders in AREAS.values() for folder in folders} - set(MAY_BE_EMPTY)
        self.assertEqual(wanted - used, set())


class EntryTest(unittest.TestCase):
    """Each kind of trouble is seen in an entry of a small checkout."""

    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.root = place.name
        for folder in ("host", "builder"):
            os.makedirs(os.path.join(self.root, folder))
        for name in ("host/a.cpp", "builder/b.cpp"):
            with open(os.path.join(self.root, name), "w", encoding="utf-8") as file:
                file.write("one two two")

    def trouble(self, area="host", **changes):
        entry = {"name": "n", "file": "host/a.cpp", "was": "one", "becomes": "", "tests": ["host_test:Suite.*"]}
        entry.update(changes)
        return find_entry_trouble(self.root, Fault(area, {key: value for key, value in entry.items() if value is not None}),
                                  {"native": {"rules_test"}, "windows": {"host_test"}},
                                  {"gtest": {"Suite.Name"}, "check": {"a_test.ATest.test_a"}})

    def test_a_right_entry_has_no_trouble(self):
        self.assertEqual(self.trouble(), [])
        self.assertEqual(self.trouble(tests=["native:rules_test:Suite.Name", "check:a_test.ATest"]), [])
        self.assertEqual(self.trouble(tests=["host_test:All/Suite.*/3"]), [])
        self.assertEqual(self.trouble(tests=None, equivalent="nobody reads it"), [])

    def test_a_text_that_is_not_there_or_there_twice_is_trouble(self):
        self.assertIn("occurs 0 times", self.trouble(was="three")[0])
        self.assertIn("occurs 2 times", self.trouble(was="two")[0])
        self.assertIn("doesn't exist", self.trouble(file="host/c.cpp")[0])

    def test_a_change_that_changes_nothing_is_trouble(self):
        self.assertEqual(self.trouble(becomes="one"), ["changes nothing"])
        self.assertEqual(self.trouble(becomes=None), ["changes nothing"])

    def test_tests_that_do_not_exist_are_trouble(self):
        for text in ("lost_test:*", "native:host_test:*", "host_test:Lost.*", "check:a_test.ATest.test_b"):
            self.assertEqual(len(self.trouble(tests=[text])), 1, text)

    def test_an_entry_has_either_tests_or_a_reason(self):
        self.assertEqual(self.trouble(tests=None), ["has neither tests nor a reason"])
        self.assertEqual(self.trouble(equivalent="x"), ["has tests and a reason"])

    def test_an_entry_stands_in_the_file_of_its_folder(self):
        self.assertEqual(self.trouble(area="builder", file="builder/b.cpp"), [])
        self.assertIn("another area", self.trouble(file="builder/b.cpp")[0])
        self.assertIn("no area", self.trouble(area="lost")[0])

    def test_an_unknown_key_is_trouble(self):
        self.assertIn("unknown key test", self.trouble(test="x")[0])


if __name__ == "__main__":
    unittest.main()

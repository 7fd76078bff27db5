"""The paths of the sample's products: they are the wizard's, and hold each form of value that the page has to show."""

import os
import re
import sys
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path[:0] = [os.path.join(ROOT, "scripts"), os.path.join(ROOT, "sample")]

import path_action  # noqa: E402
import viewer_product  # noqa: E402
import zolt_product  # noqa: E402
from expected_properties import PROPERTIES  # noqa: E402
from path_forms import LONGEST_READ, shown_path, stored_path  # noqa: E402

PRODUCTS = (zolt_product, viewer_product)


class SamplePathsTest(unittest.TestCase):
    def known(self):
        with open(os.path.join(ROOT, "paths", "path_table.cpp"), encoding="utf-8") as file:
            return sorted(re.findall(r'^    L"(ZOLTProfile_\w+)",$', file.read(), re.MULTILINE))

    def test_the_paths_are_those_of_the_page(self):
        known = self.known()
        self.assertEqual(len(known), 26)
        self.assertEqual(sorted(zolt_product.PATH_PROPERTIES), known)
        self.assertEqual(sorted(name for name, _ in PROPERTIES.values() if name.startswith("ZOLTProfile_")), known)
        for product in PRODUCTS:
            self.assertLess(set(product.PATHS), set(known), "one at least is missing")

    def test_every_path_is_resolved_and_carried_to_the_workstation(self):
        script = path_action.script(zolt_product.PATH_PROPERTIES)
        for product in PRODUCTS:
            values = [value for _, value in product.REGISTRY]
            for name in self.known():
                with self.subTest(product=product.NAME, name=name):
                    self.assertEqual(values.count("[%s]" % name), 1)
                    self.assertIn('"%s"' % name, script)

    def test_zolt_has_its_paths_back_as_they_were_but_for_escapes_one_key_and_what_is_too_long(self):
        for name, value in zolt_product.PATHS.items():
            with self.subTest(name=name):
                stored = stored_path(zolt_product.DIRECTORY_MAP, shown_path(zolt_product.DIRECTORY_MAP, value))
                plain = value.replace("[\\{]", "{").replace("[\\}]", "}")
                plain = plain[:LONGEST_READ]
                plain = plain.replace("[TEXTUREDIR]", "[INSTALLDIR]Textures")  # the same folder by the key that comes first
                self.assertEqual(stored, "[NULL]" if value == "[null]" else plain)

    def test_zolt_has_paths_of_each_length_that_counts_and_none_is_answered(self):
        lengths = {name: len(value) for name, value in zolt_product.PATHS.items() if len(value) > 300}
        self.assertEqual(sorted(lengths.values()), [400, 511, 512, 1023, 1024, 5000])
        for name in lengths:
            ends = zolt_product.PATHS[name][-1] + zolt_product.PATHS[name][:LONGEST_READ][-1]
            self.assertTrue(ends.isalnum(), "what is trimmed at the end of %s makes it shorter" % name)
        with open(os.path.join(ROOT, "run-answers.txt"), encoding="utf-8") as file:
            words = re.findall(r"^(\w+) =", file.read(), re.MULTILINE)
        answered = {PROPERTIES["paths." + word][0] for word in words if "paths." + word in PROPERTIES}
        self.assertGreater(len(answered), 0)
        self.assertEqual(answered & set(lengths), set())

    def test_of_the_viewer_three_paths_come_back_as_something_else(self):
        back = {name: stored_path(viewer_product.DIRECTORY_MAP, shown_path(viewer_product.DIRECTORY_MAP, value))
                for name, value in viewer_product.PATHS.items()}
        self.assertEqual({name: back[name] for name, value in viewer_product.PATHS.items() if back[name] != value},
                         {"ZOLTProfile_WebGrabDir": "Help\\Web", "ZOLTProfile_LogFilePath": "Velkmora",
                          "ZOLTProfile_SaveFilePath": "[NULL]"})

    def test_a_directory_of_each_kind_is_known(self):
        self.assertEqual({flags for _, flags in zolt_product.DIRECTORY_MAP.values()}, {0, 2, 6})
        self.assertEqual([key for key, (text, _) in zolt_product.DIRECTORY_MAP.items() if not text], ["SHAREDMAKERDIR"])
        hidden = [key for key, (_, flags) in zolt_product.DIRECTORY_MAP.items() if flags & 4]
        self.assertEqual([directory for _, directory, _ in zolt_product.FILES if directory in hidden], ["DRIVERDIR"])
        self.assertEqual(zolt_product.DIRECTORIES["DRIVERDIR"][0], "INSTALLDIR", "else the tree would not show it anyway")

    def test_the_text_of_a_directory_begins_with_that_of_another(self):
        rows = {key: row for key, row in zolt_product.DIRECTORY_MAP.items() if row[0]}
        inner = {key for key in rows for other in rows if key != other and rows[key][0].startswith(rows[other][0])}
        self.assertIn("COLORBOOKDIR", inner)
        self.assertEqual(stored_path(rows, "Support Files\\Color Books\\a"), "[COLORBOOKDIR]a")
        self.assertEqual(stored_path(rows, "Zolt 2027\\Textures\\a"), "[INSTALLDIR]Textures\\a")


if __name__ == "__main__":
    unittest.main()

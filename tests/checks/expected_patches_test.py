"""How ./run looks for service packs: what the answers ask for, and what is wrong on a workstation."""

import os
import shutil
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "scripts"))

import expected_patches as patches  # noqa: E402

VIEWER, ZOLT = "Zolt Viewer 2027", "Zolt 2027"
PATCHED = "Support/Units.txt"


class AskedTest(unittest.TestCase):
    def asked(self, product, *texts):
        folder = tempfile.mkdtemp(prefix="rollout-")
        self.addCleanup(shutil.rmtree, folder)
        paths = []
        for number, text in enumerate(texts):
            paths.append(os.path.join(folder, "%d.txt" % number))
            with open(paths[-1], "w", encoding="utf-8") as file:
                file.write("rollout-answers 1\n" + text)
        asked = patches.asked_patches(paths, product)
        return asked.appended, asked.merged

    def test_what_the_service_offers_in_a_run_is_the_first_update(self):
        text = "[service_pack]\nchoice = offered\n"
        self.assertEqual(self.asked(ZOLT, text), (["zolt2027update1"], []))
        self.assertEqual(self.asked(VIEWER, text + "way = merge\n"), ([], ["zoltviewer2027update1"]))

    def test_a_products_own_lines_win(self):
        text = ("[service_pack \"Zolt 2027\"]\nway = merge\nfile = b\\Zolt2027Update2.msp\n"
                "[service_pack]\nchoice = files\nway = append\nfile = \"C:\\a\\Zolt2027Update1.msp\"\n[paths]\nfile = x\n")
        self.assertEqual(self.asked(ZOLT, text), ([], ["zolt2027update2"]))
        self.assertEqual(self.asked(VIEWER, text), (["zolt2027update1"], []))

    def test_a_later_run_removes_what_was_appended_and_keeps_what_was_merged(self):
        first = "[service_pack]\nchoice = files\nfile = Zolt2027Update1.msp\nway = %s\n"
        none = "[service_pack]\nchoice = none\n"
        self.assertEqual(self.asked(ZOLT, first % "append", none), ([], []))
        self.assertEqual(self.asked(ZOLT, first % "merge", none), ([], ["zolt2027update1"]))
        self.assertEqual(self.asked(ZOLT, first % "append", "[settings]\nnetwork_log = no\n"), (["zolt2027update1"], []))

    def test_a_later_run_adds_files_unless_it_clears_the_list(self):
        first = "[service_pack]\nchoice = files\nfile = Zolt2027Update1.msp\nway = %s\n"
        second = "[service_pack]\nchoice = files\n%sfile = Zolt2027Update2.msp\n"
        self.assertEqual(self.asked(ZOLT, first % "append", second % ""), (["zolt2027update1", "zolt2027update2"], []))
        self.assertEqual(self.asked(ZOLT, first % "append", second % "clear = yes\n"), (["zolt2027update2"], []))
        self.assertEqual(self.asked(ZOLT, first % "merge", second % ""), ([], ["zolt2027update1", "zolt2027update2"]))

    def test_nothing_is_asked_of_other_products(self):
        self.assertEqual(self.asked("Another", "[service_pack \"Zolt 2027\"]\nchoice = offered\n"), ([], []))


class Package:
    """As workstation.py reads one."""

    is_pack = False

    def __init__(self, product, version):
        code = patches.make_media.guid(product, 3, 1033, "product", product.NAME)
        self.properties = {"ProductName": product.NAME, "ProductCode": code, "ProductVersion": version}

    def folder(self, key):
        return {"SUPPORTDIR": "Support", "FONTDIR": "Fonts", "HELPDIR": "Help"}[key]


class View:
    def __init__(self, root):
        self.root = root

    def find(self, path):
        place = os.path.join(self.root, path)
        return place if os.path.exists(place) else None


class FoundTest(unittest.TestCase):
    def setUp(self):
        self.drive = tempfile.mkdtemp(prefix="rollout-")
        self.addCleanup(shutil.rmtree, self.drive)
        self.product = patches.product_of(VIEWER)
        self.keys = patches.patch_keys(Package(self.product, "27.0.0"))

    def install(self, stems):
        updates = [patches.UPDATES[stem] for stem in stems]
        for (directory, name), data in patches.contents_of(self.product, updates).items():
            path = os.path.join(self.drive, Package(self.product, "").folder(directory), name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            if data is not None:
                with open(path, "wb") as file:
                    file.write(data)

    def wrong(self, version, text, registered=()):
        path = os.path.join(self.drive, "answers.txt")
        with open(path, "w", encoding="utf-8") as file:
            file.write("rollout-answers 1\n" + text)
        keys = {self.keys[stem] for stem in registered}
        return patches.find_wrong(Package(self.product, version), [path], View(self.drive), lambda key: key in keys)

    OFFERED = "[service_pack]\nchoice = offered\nway = %s\n"

    def test_an_appended_patch_is_registered_and_leaves_the_package_as_it_was(self):
        self.install(["zoltviewer2027update1"])
        self.assertEqual(self.wrong("27.0.0", self.OFFERED % "append", ["zoltviewer2027update1"]), [])
        self.assertEqual(self.wrong("27.0.0", self.OFFERED % "append"),
                         ["zoltviewer2027update1 isn't registered as a patch"])
        self.assertEqual(len(self.wrong("27.0.1", self.OFFERED % "append", ["zoltviewer2027update1"])), 1)

    def test_a_merged_patch_raises_the_version_and_is_not_registered(self):
        self.install(["zoltviewer2027update1"])
        self.assertEqual(self.wrong("27.0.1", self.OFFERED % "merge"), [])
        self.assertEqual(self.wrong("27.0.0", self.OFFERED % "merge"),
                         ["the package of Zolt Viewer 2027 has version 27.0.0 instead of 27.0.1"])
        self.assertEqual(self.wrong("27.0.1", self.OFFERED % "merge", ["zoltviewer2027update1"]),
                         ["zoltviewer2027update1 is registered as a patch"])

    def test_old_bytes_under_a_patch_are_wrong_and_new_ones_without_it(self):
        self.install([])
        self.assertIn("%s doesn't hold the bytes of 27.0.1" % PATCHED,
                      self.wrong("27.0.0", self.OFFERED % "append", ["zoltviewer2027update1"]))
        self.assertEqual(self.wrong("27.0.0", "[service_pack]\nchoice = none\n"), [])
        self.install(["zoltviewer2027update1"])
        self.assertEqual(len(self.wrong("27.0.0", "[service_pack]\nchoice = none\n")), 2)

    def test_a_registration_that_outlives_the_product_is_left_behind(self):
        package = Package(self.product, "27.0.0")
        self.assertEqual(patches.find_left(package, lambda key: False), [])
        self.assertEqual(patches.find_left(package, lambda key: True),
                         ["zoltviewer2027update1 is still registered as a patch"])

    def test_codes_are_turned_round_as_the_installer_does(self):
        self.assertEqual(patches.installer_form("{12345678-9abc-def0-1234-56789abcdef0}"),
                         "87654321CBA90FED21436587A9CBED0F")


if __name__ == "__main__":
    unittest.main()

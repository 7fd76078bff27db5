"""How ./run looks for additional files: what the answers ask for, and what is wrong on a workstation."""

import os
import shutil
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "scripts"))

from expected_files import asked_files, find_left, find_wrong, place_on, read  # noqa: E402
import sample_additions  # noqa: E402


class AdditionsTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="rollout-")
        self.addCleanup(shutil.rmtree, self.folder)

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def put(self, data, *names):
        os.makedirs(os.path.dirname(self.path(*names)), exist_ok=True)
        with open(self.path(*names), "wb") as file:
            file.write(data)

    def asked(self, *texts, product="Zolt"):
        paths = []
        for number, text in enumerate(texts):
            self.put(("rollout-answers 1\n" + text).encode(), "%d.txt" % number)
            paths.append(self.path("%d.txt" % number))
        return asked_files(paths, product)


class AskedTest(AdditionsTest):
    def test_the_lines_count_in_their_order_and_a_later_run_changes_what_an_earlier_one_asked_for(self):
        self.put(b"a", "tree", "inner", "a.txt")
        os.makedirs(self.path("tree", "empty"))
        asked = self.asked('[files]\nfolder = "<root>", "A"\nfile = "<root>\\A", "one.txt"\nrename = "<root>\\A", "B"\n'
                           'folder = "<root>", "A"\nfolder_tree = "<root>\\A", "tree"\ndrive = D:\n'
                           'file = "D:\\", "Z:\\x\\y.txt"\n# file = "D:", "z.txt"\n',
                           '[files "zolt"]\nremove = "<root>\\B\\one.txt"\nfile = "<root>\\B", "Z:\\two.txt"\nshow = yes\n')
        self.assertEqual(asked.files, {"<root>\\A\\tree\\inner\\a.txt": self.path("tree", "inner", "a.txt"),
                                       "D:\\y.txt": "/x/y.txt", "<root>\\B\\two.txt": "/two.txt"})
        self.assertEqual(sorted(asked.folders), ["<root>\\A", "<root>\\A\\tree", "<root>\\A\\tree\\empty",
                                                 "<root>\\A\\tree\\inner", "<root>\\B", "D:"])
        self.assertEqual(asked.gone, ["<root>\\A\\one.txt", "<root>\\B\\one.txt"])

    def test_lines_for_another_product_and_of_other_pages_do_not_count(self):
        text = '[files "Viewer"]\ndrive = D:\n[paths]\ndrive = E:\n[files]\ndrive = F:\n'
        self.assertEqual(self.asked(text).folders, ["F:"])
        self.assertEqual(self.asked(text, product="VIEWER").folders, ["D:", "F:"])

    def test_an_unknown_word_is_not_passed_over(self):
        with self.assertRaises(ValueError):
            self.asked("[files]\nfiles = x\n")


class FoundTest(AdditionsTest):
    def setUp(self):
        super().setUp()
        self.put(b"bytes", "source", "a.txt")
        self.additions = self.asked('[files]\nfolder = "<root>", "New"\nfile = "<root>\\New", "source\\a.txt"\ndrive = D:\n'
                                    'file = "D:", "source\\a.txt"\nfile = "<root>\\Fonts", "source\\a.txt"\n'
                                    'remove = "<root>\\Fonts\\a.txt"\n')
        self.places = (self.path("product"), self.path("drives"))
        self.put(b"bytes", "product", "New", "a.txt")
        self.put(b"bytes", "drives", "d", "a.txt")

    def wrong(self):
        return find_wrong(self.additions, *self.places)

    def test_what_is_as_asked_for_is_not_wrong(self):
        self.assertEqual(self.wrong(), [])

    def test_other_bytes_of_the_same_number_are_wrong(self):
        self.put(b"bytea", "product", "New", "a.txt")
        self.assertEqual(self.wrong(), ["<root>\\New\\a.txt doesn't hold the bytes of " + self.path("source", "a.txt")])

    def test_what_is_missing_is_wrong(self):
        shutil.rmtree(self.path("product", "New"))
        os.remove(self.path("drives", "d", "a.txt"))
        self.assertEqual(self.wrong(), ["not installed: <root>\\New\\a.txt", "not installed: D:\\a.txt",
                                        "no such folder: <root>\\New"])

    def test_what_was_removed_or_never_asked_for_is_wrong(self):
        self.put(b"", "product", "Fonts", "a.txt")
        self.put(b"", "product", "New", "b.txt")
        self.put(b"", "product", "other.txt")  # the product's own
        self.assertEqual(self.wrong(), ["there although it was removed: <root>\\Fonts\\a.txt",
                                        "nobody asked for " + self.path("product", "New", "b.txt")])

    def test_what_is_left_is_named_but_for_roots_of_drives(self):
        self.put(b"", "product", "Fonts", "a.txt")
        self.assertEqual(find_left(self.additions, *self.places),
                         ["left behind: " + path for path in ("<root>\\Fonts\\a.txt", "<root>\\New", "<root>\\New\\a.txt",
                                                              "D:\\a.txt")])
        shutil.rmtree(self.path("product"))
        os.remove(self.path("drives", "d", "a.txt"))
        self.assertEqual(find_left(self.additions, *self.places), [])


class SampleTest(AdditionsTest):
    def test_the_samples_answers_have_additions_of_every_kind(self):
        sample_additions.write(self.folder)
        answers = [self.path(name) for name in sample_additions.ANSWERS]
        first, then = asked_files(answers[:1], "Zolt 2027"), asked_files(answers, "Zolt 2027")
        plans = [path for path in first.files if path.endswith("\\plan.txt")]
        self.assertGreaterEqual(len({read(first.files[path]) for path in plans}), 3)
        self.assertEqual(len({path.rsplit("\\", 1)[0] for path in plans}), len(plans))
        self.assertGreater(len(first.files), 300)
        self.assertTrue(all(os.path.isfile(source) for source in then.files.values()))
        empty = [folder for folder in first.folders if not any(item.startswith(folder + "\\") for item in first.all())]
        self.assertEqual(sorted(empty), ["<root>\\Company\\Empty", "<root>\\Company\\Standards\\Empty"])
        self.assertIn("D:", first.folders)
        self.assertIn("<root>\\Company\\Plans", first.gone, "nothing was renamed")
        self.assertIn("<root>\\Company\\Standards\\block 003.dat", first.gone, "nothing was removed")
        self.assertEqual(set(then.files) - set(first.files), {"<root>\\Company\\Floor plans\\added later.txt"})
        self.assertEqual(set(first.files) - set(then.files), {"<root>\\Fonts\\plan.txt"})
        self.assertNotEqual(first.files["<root>\\plan.txt"], then.files["<root>\\plan.txt"])

    def test_a_drive_lies_beside_the_product(self):
        self.assertEqual(place_on("D:\\a\\b", "/product", "/drives"), "/drives/d/a/b")
        self.assertEqual(place_on("<ROOT>\\a", "/product", "/drives"), "/product/a")


if __name__ == "__main__":
    unittest.main()

"""The pages of a product, walked once for each product of the deployment."""

import os
import re
import shutil
import sys

from wizard import MEDIA, ROOT, WizardTest, property_of, set_property, text_of, windows_path

sys.path.insert(0, os.path.join(ROOT, "scripts"))

from page_table import read_pages  # noqa: E402

PRODUCTS = ("Zolt 2027", "Zolt Viewer 2027")
# The sections of the written pages that belong to a product, in their order.
PAGES = tuple(page.section for page in read_pages() if page.of_product and page.is_written)
VIEWER = "x64/ZoltViewer/ZoltViewer2027.msi"


class ProductsTest(WizardTest):
    def media(self):
        """A copy of the sample media that may be changed."""
        folder = os.path.join(self.folder, "Media")
        shutil.copytree(MEDIA, folder)
        return folder

    def with_answers(self, text):
        path = self.begin("Office", platform="x64")
        with open(path, "a", encoding="utf-8") as file:
            file.write(text)
        return path

    def pages(self, run):
        return re.findall(r"^Page (.*)$", run.output, re.MULTILINE)

    def test_each_page_of_a_product_comes_once_for_each_product_and_the_others_once(self):
        pictures = os.path.join(self.folder, "Pictures")
        run = self.wizard(self.begin("Office"), "--pictures", windows_path(pictures))
        self.assertEqual(run.code, 0, run.output)
        of_products = ["%s of %s" % (page, product) for product in PRODUCTS for page in PAGES]
        self.assertEqual(self.pages(run), ["begin", "settings"] + of_products + ["contact", "complete"])
        for stem in ("NoticeDeskFeedBoard", "OnlineResources"):
            taken = [name for name in os.listdir(pictures) if name.endswith("-%sDialog.png" % stem)]
            self.assertEqual(len(taken), len(PRODUCTS), taken)

    def test_with_one_product_no_page_names_it(self):
        media = self.media()
        path = os.path.join(media, "Setup.xml")
        text, count = re.subn(r' *<Product name="Zolt Viewer 2027".*?</Product>\r?\n', "", text_of(path), flags=re.DOTALL)
        self.assertEqual(count, 1)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        run = self.wizard(self.begin("Office"), media=media)
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(self.pages(run), ["begin", "settings", *PAGES, "contact", "complete"])

    def test_a_product_that_the_chosen_platform_lacks_has_no_pages(self):
        media = self.media()
        path = os.path.join(media, "Setup.xml")
        text, count = re.subn(r' *<Package platform="2" file="ZoltViewer2027.msi"[^\n]*\n', "", text_of(path))
        self.assertEqual(count, 1)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        of_both = ["%s of %s" % (page, product) for product in PRODUCTS for page in PAGES]
        for platform, expected in (("x64", of_both), ("x86", list(PAGES))):
            run = self.wizard(self.begin("Office", platform=platform), "--check", media=media)
            self.assertEqual(run.code, 0, run.output)
            self.assertEqual(self.pages(run), ["begin", "settings"] + expected + ["contact"])

    def test_cancel_on_the_first_products_page_ends_the_run_before_the_second(self):
        run = self.wizard(self.with_answers("[resources]\nleave = cancel\n"))
        self.assertEqual(run.code, 1602, run.output)
        self.assertNotIn("Viewer", run.output)
        self.assertEqual(os.listdir(self.out), [])

    def test_what_the_page_of_the_second_product_refuses_names_the_product(self):
        media = self.media()
        # Its page comes up with a list that it refuses, while the first product's has none.
        for name, value in (("ZOLT_PATCHRELAY_ENABLE", "#1"), ("ZOLT_PATCHRELAY_PATCHNOTIFY", "#2"),
                            ("ZOLT_PATCHRELAY_LISTLOCACTION", "C:\\nowhere\\list.npl")):
            set_property(os.path.join(media, VIEWER), name, value)
        for words in ((), ("--check",)):
            run = self.wizard(self.with_answers("[notices]\nchannel_notices = yes\n"), *words, media=media)
            self.assertEqual(run.code, 22, run.output)
            self.assertRegex(run.output.strip().splitlines()[-1],
                             r"answers\.txt\(\d+\): notices\.update_list: Zolt Viewer 2027: ")
            self.assertIn("Page resources of Zolt 2027\n", run.output)

    def test_what_a_product_has_by_itself_stays_when_the_answers_do_not_say_it(self):
        media = self.media()
        set_property(os.path.join(media, VIEWER), "ZOLT_MEMBERBAY_ENABLE", "#0")
        run = self.wizard(self.with_answers("[resources]\nparts_bay = no\n"), media=media)
        self.assertEqual(run.code, 0, run.output)
        image = os.path.join(self.out, "Office", "Image")
        found = [(property_of(os.path.join(image, package), "ZOLT_PARTSBAY_ENABLE"),
                  property_of(os.path.join(image, package), "ZOLT_MEMBERBAY_ENABLE"))
                 for package in ("x64/Zolt/Zolt2027.msi", VIEWER)]
        self.assertEqual(found, [("#0", "#1"), ("#0", "#0")])

"""The configure dialog in a whole run: where it is offered, and that what its tabs store arrives."""

import os
import re
import shutil

from wizard import MEDIA, WizardTest, property_of, text_of, windows_path

TAB_PAGES = ("WorkstationSetting", "PathCustomization", "AddAdditionalFiles", "OnlineResources", "NoticeDeskFeedBoard",
             "ServicePack")
PRODUCTS = ("Zolt 2027", "Zolt Viewer 2027")


class ConfigureTest(WizardTest):
    def media(self, configure=None, tabs=TAB_PAGES):
        """The sample media with the pages that exist as tabs in its flow, in that order."""
        folder = os.path.join(self.folder, "Media")
        shutil.copytree(MEDIA, folder)
        path = os.path.join(folder, "Setup.xml")
        text = text_of(path)
        for page in TAB_PAGES:
            text = re.sub(r' *<Page name="%sDialog"[^\n]*\n' % page, "", text)
        pages = "".join('    <Page name="%sDialog"/>\n' % page for page in tabs)
        text, count = re.subn(r'( *<Page name="ProductContactDialog")', pages + r"\1", text)
        self.assertEqual(count, 1, text)
        if configure:
            text = text.replace("<Flow>", '<Flow configure="%s">' % configure)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return folder

    def create(self, media, *words):
        run = self.wizard(self.begin("Office", platform="x64"), *words, media=media)
        self.assertEqual(run.code, 0, run.output)
        return run

    def modify(self, *words, more=""):
        answers = self.answers("[begin]\nmode = modify\nbase = Office\non_question.local_location = yes\n" + more)
        return self.wizard(answers, *words, media=os.path.join(self.out, "Office", "Image"))

    def package(self, folder="Zolt", name="Zolt2027.msi"):
        return os.path.join(self.out, "Office", "Image", "x64", folder, name)

    def values(self, name):
        """What each product's database has in the property."""
        return [property_of(path, name)
                for path in (self.package(), self.package("ZoltViewer", "ZoltViewer2027.msi"))]

    def run_without(self, sections, *words):
        answers = self.answers("[begin]\nname = Office\non_question.local_location = yes\n" + sections)
        media = os.path.join(self.folder, "Media")
        return self.wizard(answers, *words, media=media if os.path.exists(media) else self.media(configure="yes"))

    def test_the_dialog_opens_on_the_first_tab_that_is_to_be_shown(self):
        run = self.run_without('[workstation "Zolt 2027"]\nshow = no\n[paths "Zolt 2027"]\nshow = no\n')
        self.assertEqual(run.code, 0, run.output)
        tabs = [line for line in run.output.splitlines() if line.endswith("(tab)")]
        self.assertNotIn("Page paths of Zolt 2027 (tab)", tabs)
        self.assertIn("Page paths of Zolt Viewer 2027 (tab)", tabs)
        text = text_of(os.path.join(self.out, "Office", "Answers.txt"))
        section = text[text.index('[paths "Zolt 2027"]'):].split("\n\n")[0]
        self.assertIn("\nshow = no", section)
        self.assertNotIn("menu_file", section)

    def test_a_dialog_without_any_tab_to_show_is_refused(self):
        run = self.run_without("".join("[%s]\nshow = no\n" % section for section in (
            "workstation", "paths", "files", "resources", "notices", "service_pack")))
        self.assertEqual(run.code, 24, run.output)
        self.assertIn("answers.txt(6): workstation.show: ", run.output.splitlines()[-1])

    def test_answers_beside_show_no_are_refused_with_their_line(self):
        for line, key in (("parts_bay = no", "parts_bay"), ("leave = cancel", "leave")):
            with self.subTest(line=line):
                run = self.run_without('[resources "Zolt Viewer 2027"]\nshow = no\n%s\n' % line)
                self.assertEqual(run.code, 24, run.output)
                self.assertIn("answers.txt(7): resources.%s: " % key, run.output.splitlines()[-1])

    def test_a_tab_that_is_left_out_counts_as_shown_where_it_is_overridden(self):
        for more, words in (('[resources "Zolt 2027"]\nshow = yes\n', ()), ("", ("--set", "resources.show=yes"))):
            with self.subTest(words=words):
                run = self.run_without("[resources]\nshow = no\nparts_bay = no\n" + more, "--check", *words)
                self.assertEqual(run.code, 0, run.output)
                self.assertIn("Page resources of Zolt 2027 (tab)", run.output)
                self.assertIn("parts_bay = no", run.output)

    def test_creating_walks_the_pages_where_the_media_do_not_offer_the_dialog(self):
        run = self.create(self.media())
        self.assertNotIn("(tab)", run.output)
        self.assertNotIn("Configure dialog", run.output)

    def test_creating_jumps_where_the_media_offer_the_dialog(self):
        run = self.create(self.media(configure="yes"))
        self.assertEqual(run.output.count("Configure dialog"), 1, run.output)
        self.assertEqual(re.findall(r"Page (.*) \(tab\)", run.output),
                         ["%s of %s" % (page, product) for product in PRODUCTS
                          for page in ("workstation", "paths", "files", "resources", "notices", "service_pack")])
        self.assertEqual(self.values("ZOLT_PARTSBAY_ENABLE"), ["#1", "#1"])
        self.assertIn('<Flow configure="yes">', text_of(os.path.join(self.out, "Office", "Image", "Setup.xml")))

    def test_modifying_always_offers_the_dialog_and_what_it_stores_is_deployed(self):
        self.create(MEDIA if "OnlineResourcesDialog" in text_of(os.path.join(MEDIA, "Setup.xml")) else self.media())
        pictures = os.path.join(self.folder, "Pictures")
        run = self.modify("--pictures", windows_path(pictures))
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(run.output.count("Configure dialog"), 1, run.output)
        taken = sorted(os.listdir(pictures))
        for page in TAB_PAGES:
            self.assertTrue([name for name in taken if name.endswith("-%sPage.png" % page)], taken)
            self.assertFalse([name for name in taken if name.endswith("-%sDialog.png" % page)], taken)
        self.assertEqual(property_of(self.package(), "ZOLT_PARTSBAY_ENABLE"), "#1")
        self.assertEqual(property_of(self.package(), "ZOLT_RSS_FEEDS_ENABLE"), "#1")

    def test_a_check_goes_through_the_dialog_and_builds_nothing(self):
        self.create(self.media())
        changed = os.stat(self.package()).st_mtime_ns
        run = self.modify("--check")
        self.assertEqual(run.code, 0, run.output)
        self.assertIn("Configure dialog", run.output)
        self.assertNotIn("Building", run.output)
        self.assertEqual(os.stat(self.package()).st_mtime_ns, changed)

    def test_the_same_answers_count_in_either_shape(self):
        online = "[resources]\nparts_bay = %s\n[notices]\nfeeds = %s\n"
        answers = self.begin("Office", platform="x64")
        with open(answers, "a", encoding="utf-8") as file:
            file.write(online % ("no", "yes"))
        run = self.wizard(answers, media=self.media())
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(self.values("ZOLT_PARTSBAY_ENABLE"), ["#0", "#0"])
        self.assertEqual(self.values("ZOLT_RSS_FEEDS_ENABLE"), ["#1", "#1"])
        run = self.modify(more=online % ("yes", "no"))
        self.assertEqual(run.code, 0, run.output)
        self.assertIn("Configure dialog", run.output)
        self.assertEqual(self.values("ZOLT_PARTSBAY_ENABLE"), ["#1", "#1"])
        self.assertEqual(self.values("ZOLT_RSS_FEEDS_ENABLE"), ["#0", "#0"])

    def test_what_a_tab_is_not_told_stays_as_it_was_deployed(self):
        answers = self.begin("Office", platform="x64")
        with open(answers, "a", encoding="utf-8") as file:
            file.write("[resources]\nmember_bay = no\n")
        run = self.wizard(answers, media=self.media())
        self.assertEqual(run.code, 0, run.output)
        run = self.modify(more="[resources]\nparts_bay = no\n")
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(property_of(self.package(), "ZOLT_MEMBERBAY_ENABLE"), "#0")
        self.assertEqual(property_of(self.package(), "ZOLT_PARTSBAY_ENABLE"), "#0")

    def assert_refused(self, tabs):
        """The list file is refused by its page, by a real run and by a check, and the deployment stays."""
        self.create(self.media(tabs=tabs))
        before = os.stat(self.package()).st_mtime_ns
        more = "[notices]\nupdate_source = local_list\nupdate_list = C:\\nowhere\\list.npl\n"
        last = set()
        for words in ((), ("--check",)):
            run = self.modify(*words, more=more)
            self.assertEqual(run.code, 22, run.output)
            last.add(run.output.strip().splitlines()[-1])
        self.assertEqual(len(last), 1, last)
        self.assertRegex(last.pop(), r"answers\.txt\(\d+\): notices\.update_list: ")
        self.assertEqual(os.stat(self.package()).st_mtime_ns, before)

    def test_a_value_that_its_page_refuses_keeps_the_tab(self):
        self.assert_refused(("NoticeDeskFeedBoard", "OnlineResources"))

    def test_a_value_that_its_page_refuses_keeps_the_dialog(self):
        self.assert_refused(("OnlineResources", "NoticeDeskFeedBoard"))

    def test_leaving_by_cancel_on_a_tab_is_1602_and_changes_nothing(self):
        self.create(self.media())
        before = os.stat(self.package()).st_mtime_ns
        run = self.modify(more="[resources]\nparts_bay = no\nleave = cancel\n")
        self.assertEqual(run.code, 1602, run.output)
        self.assertNotIn("NoticeDeskFeedBoard", run.output)
        self.assertEqual(os.stat(self.package()).st_mtime_ns, before)

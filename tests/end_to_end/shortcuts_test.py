"""Custom shortcuts in whole runs: made, changed, removed and added in a deployment that is modified, and refused by name."""

import os
import sys

from wizard import ROOT, WizardTest, property_of, text_of, windows_path

sys.path.insert(0, os.path.join(ROOT, "scripts"))
from workstation import read_table  # noqa: E402 - the folder has to be known first


SETTINGS_OF_THE_TAB = ("ZOLT_IE_REQUIRED", "ZOLT_SHEETX_FORMAT", "ZOLTDEFAULTPROFILENAME")
ON_THE_TAB_ALONE = "The page doesn't offer it here, but only as a tab of the configure dialog"


class ShortcutsTest(WizardTest):
    def package(self, location=None):
        return os.path.join(location or self.out, "Office", "Image", "x64", "Zolt", "Zolt2027.msi")

    def settings(self, location=None):
        return [property_of(self.package(location), name) for name in SETTINGS_OF_THE_TAB]

    def create(self, sections):
        answers = self.begin("Office", platform="x64")
        with open(answers, "a", encoding="utf-8") as file:
            file.write(sections)
        return self.wizard(answers)

    def modify(self, sections, *words):
        answers = self.answers("[begin]\nmode = modify\nbase = Office\non_question.local_location = yes\n" + sections)
        run = self.wizard(answers, *words, media=os.path.join(self.out, "Office", "Image"))
        self.assertEqual(run.code, 0, run.output)
        return run

    def rows(self):
        """Key -> (name, command line) of the custom shortcuts, and the list of their keys."""
        rows = {row["Shortcut"]: (row["Name"].split("|")[-1], row["Arguments"])
                for row in read_table(self.package(), "Shortcut") if row["Shortcut"].startswith("CUSTOM_SHORTCUT_")}
        return rows, property_of(self.package(), "ZOLT_CUSTOM_SHORTCUT")

    def test_a_modified_deployment_shows_them_and_stores_what_is_changed_removed_and_added(self):
        run = self.create('[workstation]\nshortcut = "A", "/b"\nshortcut = "Anne\'s", "/p x"\nshortcut = "C", "/v"\n')
        self.assertEqual(run.code, 0, run.output)
        three = {"CUSTOM_SHORTCUT_1": ("A", "/b"), "CUSTOM_SHORTCUT_2": ("Anne's", "/p x"), "CUSTOM_SHORTCUT_3": ("C", "/v")}
        self.assertEqual(self.rows(), (three, "4;CUSTOM_SHORTCUT_1;CUSTOM_SHORTCUT_2;CUSTOM_SHORTCUT_3;"))
        record = os.path.join(self.out, "Office", "Answers.txt")
        self.assertIn('\nshortcut = "A", "/b"\n', text_of(record).replace("\r", ""))

        self.modify("")  # the tab is gone to and left
        self.assertEqual(self.rows(), (three, "4;CUSTOM_SHORTCUT_1;CUSTOM_SHORTCUT_2;CUSTOM_SHORTCUT_3;"))
        text = text_of(record).replace("\r", "")
        self.assertIn('shortcut = "A", "/b"\nshortcut = "Anne\'s", "/p x"\nshortcut = "C", "/v"\n', text)

        self.modify('[workstation]\nshortcut = "A", "/w y"\nshortcut = "C", "/v"\n')  # one changed, one removed
        self.assertEqual(self.rows(), ({"CUSTOM_SHORTCUT_1": ("A", "/w y"), "CUSTOM_SHORTCUT_2": ("C", "/v")},
                                       "4;CUSTOM_SHORTCUT_1;CUSTOM_SHORTCUT_2;"))

        self.modify('[workstation]\nshortcut = "A", "/w y"\nshortcut = "C", "/v"\nshortcut = "D", "/set z"\n'
                    "browser_required = no\nsheet_format = no\nprofile = <<Office>>\n")
        self.assertEqual(self.rows(), ({"CUSTOM_SHORTCUT_1": ("A", "/w y"), "CUSTOM_SHORTCUT_2": ("C", "/v"),
                                        "CUSTOM_SHORTCUT_4": ("D", "/set z")},
                                       "5;CUSTOM_SHORTCUT_1;CUSTOM_SHORTCUT_2;CUSTOM_SHORTCUT_4;"))
        self.assertEqual(self.settings(), ["0", "#0", "<<Office>>"])

        self.modify('[workstation]\nshortcut = "", ""\n')
        self.assertEqual(self.rows(), ({}, "5;"))

    def assert_refused(self, line, reason, number=6):
        run = self.create("[workstation]\n" + line)
        self.assertEqual(run.code, 22, run.output)
        last = run.output.strip().splitlines()[-1]
        self.assertIn("answers.txt(%d): workstation." % number, last)
        self.assertIn(reason, last)

    def test_what_the_page_refuses_is_refused_with_its_line(self):
        good = 'shortcut = "A", "/b /nologo"\n'
        self.assert_refused('shortcut = "B", "/tool x"\n' + good, "Change or remove this part: tool x", 7)
        self.assert_refused(good + 'shortcut = "a", "/c"\n', "can't have the same name. Change this name: a", 8)
        self.assert_refused(good + 'shortcut = "x|y", "/c"\n', "Change this name: x|y", 8)
        self.assert_refused(good + 'shortcut = "x", ""\n', "needs a name and a command line", 8)
        self.assert_refused(good + 'shortcut = "B", "/p Anne\'s"\n', "can't have an apostrophe", 8)
        self.assert_refused('shortcut = "B", "/set tool x"\nshortcut = "tool x", "/c"\nshortcut = "D", "/b /tool x"\n',
                            "Change or remove this part: tool x", 9)
        self.assert_refused("profile = Office\n", ON_THE_TAB_ALONE, 7)
        self.assert_refused("browser_required = no\n", ON_THE_TAB_ALONE, 7)

    def test_what_stands_on_the_tab_alone_is_good_where_the_product_has_it_already(self):
        """The record of a deployment that was modified could not be built from the maker's media."""
        run = self.create("[workstation]\nprofile = Default\nbrowser_required = yes\nsheet_format = yes\n")
        self.assertEqual(run.code, 0, run.output)

    def test_what_a_tab_recorded_is_built_again_in_tabs_and_refused_on_a_walk(self):
        self.assertEqual(self.create("").code, 0)
        self.modify('[workstation]\nbrowser_required = no\nsheet_format = no\nprofile = Drafting\nshortcut = "A", "/b"\n')
        self.assertEqual(self.settings(), ["0", "#0", "Drafting"])
        record = os.path.join(self.out, "Office", "Answers.txt")
        again = os.path.join(self.folder, "Again")
        os.makedirs(again)
        run = self.wizard(record, out=windows_path(again))
        self.assertEqual(run.code, 22, run.output)
        self.assertIn(ON_THE_TAB_ALONE, run.output.splitlines()[-1])
        run = self.wizard(record, media=self.media_with_tabs(), out=windows_path(again))
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(self.settings(again), ["0", "#0", "Drafting"])
        self.assertEqual(read_table(self.package(again), "Shortcut"), read_table(self.package(), "Shortcut"))
        recorded = [text_of(os.path.join(place, "Office", "Answers.txt")).split("[workstation")[1] for place in (self.out, again)]
        self.assertEqual(recorded[0].split("\n[")[0], recorded[1].split("\n[")[0])

    def test_a_name_beyond_the_code_page_is_refused_before_the_build(self):
        run = self.create('[workstation]\nshortcut = "Plan \u4e2d", "/b"\n')
        self.assertEqual(run.code, 1603, run.output)
        self.assertIn('letters of "Plan \u4e2d" (table Shortcut', run.output)
        self.assertFalse(os.path.exists(os.path.join(self.out, "Office")))

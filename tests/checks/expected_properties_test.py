"""The look at a workstation that asks whether each answer came there."""

import os
import re
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "scripts"))

from expected_properties import PROPERTIES, asked_properties, find_unmet  # noqa: E402

ONLINE_SECTIONS = ("notices", "resources")
MEMBER_BAY = {("ZOLT_MEMBERBAY_ENABLE", ""): ("resources.member_bay", "#0")}


class AskedAnswersTest(unittest.TestCase):
    def asked(self, text, *words):
        with tempfile.TemporaryDirectory() as self.folder:
            path = os.path.join(self.folder, "answers.txt")
            with open(path, "w", encoding="utf-8") as file:
                file.write("rollout-answers 1\n" + text)
            return {name if not product else (name, product): value
                    for (name, product), (_, value) in asked_properties(path, words).items()}

    def test_every_answer_of_the_online_pages_has_a_property(self):
        wanted = set()
        for section in ONLINE_SECTIONS:
            with open(os.path.join(ROOT, "setup", section + "_answers.cpp"), encoding="utf-8") as file:
                wanted.update(section + "." + word for word in re.findall(r'\.word = L"(\w+)"', file.read()))
        self.assertEqual({key for key in PROPERTIES if key.split(".")[0] in ONLINE_SECTIONS}, wanted)

    def test_every_answer_of_the_workstations_has_a_property_but_the_shortcuts(self):
        with open(os.path.join(ROOT, "setup", "workstation_answers.cpp"), encoding="utf-8") as file:
            words = set(re.findall(r'\.word = L"(\w+)"', file.read())) - {"shortcut"}
        self.assertEqual({key for key in PROPERTIES if key.startswith("workstation.")},
                         {"workstation." + word for word in words})
        self.assertEqual(self.asked("[workstation]\ndesktop_shortcut = no\nsheet_format = no\nprofile = <<Office>>\n"
                                    'shortcut = "A", "/b"\n'),
                         {"TARN_DESKTOPSHORTCUT_1": "0", "ZOLT_SHEETX_FORMAT": "#0",
                          "ZOLTDEFAULTPROFILENAME": "<<Office>>"})

    def test_answers_are_told_as_the_properties_hold_them(self):
        self.assertEqual(
            self.asked("# [resources]\n[notices]\nupdates = no\nupdate_source = local_list\n"
                       'site_name = "  A ""b"" "\n'
                       "site_feed = \\\\s\\f=1.xml\non_question.feed_kind = yes\n[begin]\nname = Office\n"),
            {"ZOLT_PATCHRELAY_ENABLE": "#0", "ZOLT_PATCHRELAY_PATCHNOTIFY": "#2",
             "ZOLT_SITEMGR_DISPLAY_NAME": '  A "b" ', "ZOLT_SITEMGR_LOCATION": "\\\\s\\f=1.xml"})

    def test_the_command_line_wins_over_the_file(self):
        self.assertEqual(self.asked("[resources]\nparts_bay = no\n", "resources.parts_bay=yes"),
                         {"ZOLT_PARTSBAY_ENABLE": "#1"})

    def test_a_products_section_is_asked_of_that_product(self):
        asked = self.asked('[resources]\nparts_bay = no\n[resources "Zolt ""Pro"""]\nparts_bay = yes\n')
        self.assertEqual(asked, {"ZOLT_PARTSBAY_ENABLE": "#0", ("ZOLT_PARTSBAY_ENABLE", 'Zolt "Pro"'): "#1"})

    def test_the_command_line_wins_over_a_products_section_too(self):
        text = '[resources "Zolt"]\nparts_bay = no\n'
        self.assertEqual(self.asked(text, "resources.parts_bay=yes"), {"ZOLT_PARTSBAY_ENABLE": "#1"})
        self.assertEqual(self.asked(text, 'resources "Zolt".parts_bay=yes'), {("ZOLT_PARTSBAY_ENABLE", "Zolt"): "#1"})

    def test_what_a_page_keeps_and_what_lies_below_the_media_is_not_looked_for(self):
        self.assertEqual(self.asked("[notices]\nsite_feed.kept = \\\\s\\f.xml\nupdate_list = <media>\\a.npl\n"), {})

    def test_a_literal_location_stays_as_it_stands(self):
        self.assertEqual(self.asked("[notices]\nsite_feed.literal = a.xml\n"), {"ZOLT_SITEMGR_LOCATION": "a.xml"})

    def test_each_product_is_asked_what_its_own_section_says(self):
        asked = {("ZOLT_MEMBERBAY_ENABLE", ""): ("resources.member_bay", "#0"),
                 ("ZOLT_MEMBERBAY_ENABLE", "Viewer"): ("resources.member_bay", "#1")}
        zolt, viewer = ("Zolt", {}, {"ZOLT_MEMBERBAY_ENABLE": "#0"}), ("Viewer", {}, {"ZOLT_MEMBERBAY_ENABLE": "#1"})
        self.assertEqual(find_unmet(asked, [zolt, viewer]), [])
        self.assertEqual(len(find_unmet(asked, [zolt, ("Viewer", {}, {"ZOLT_MEMBERBAY_ENABLE": "#0"})])), 1)
        self.assertEqual(len(find_unmet(asked, [zolt])), 1)

    def test_the_lines_of_a_list_are_one_path_and_those_of_the_command_line_replace_the_files(self):
        text = "[paths]\nsupport_path = Fonts\\a\nsupport_path = C:\\b\nalt_font = a.zfont\n"
        self.assertEqual(self.asked(text), {"ZOLTProfile_SupportPath": "Fonts\\a;C:\\b", "ZOLTProfile_AltFont": "a.zfont"})
        self.assertEqual(self.asked(text, "paths.support_path=x", "paths.support_path=y"),
                         {"ZOLTProfile_SupportPath": "x;y", "ZOLTProfile_AltFont": "a.zfont"})

    def test_the_words_of_the_paths_are_those_of_the_wizard(self):
        with open(os.path.join(ROOT, "setup", "path_words.h"), encoding="utf-8") as file:
            words = re.findall(r'^ +{L"(\w+)",', file.read(), re.MULTILINE)
        self.assertEqual(sorted("paths." + word for word in words), sorted(key for key in PROPERTIES if key.startswith("paths.")))

    def test_a_relative_location_counts_from_the_files_folder(self):
        self.assertEqual(self.asked("[notices]\nupdate_list = ../a/list.npl\n"),
                         {"ZOLT_PATCHRELAY_LISTLOCACTION":
                          "Z:" + os.path.dirname(self.folder).replace("/", "\\") + "\\a\\list.npl"})

    def test_an_answer_that_the_registry_lacks_is_told_by_its_key(self):
        product = ("Zolt", {"ZOLT_MEMBERBAY_ENABLE": [("REG_DWORD", "0x0")]}, {})
        self.assertEqual(find_unmet(MEMBER_BAY, [product]), [])
        product = ("Zolt", {"ZOLT_MEMBERBAY_ENABLE": [("REG_DWORD", "0x1")]}, {"ZOLT_MEMBERBAY_ENABLE": "#0"})
        self.assertEqual(find_unmet(MEMBER_BAY, [product]), [
            'resources.member_bay asks for "#0" in ZOLT_MEMBERBAY_ENABLE, which is REG_DWORD "0x1" in Zolt'])

    def test_the_database_counts_where_no_registry_value_carries_the_property(self):
        self.assertEqual(find_unmet(MEMBER_BAY, [("Zolt", {}, {"ZOLT_MEMBERBAY_ENABLE": "#0"})]), [])
        self.assertEqual(len(find_unmet(MEMBER_BAY, [("Zolt", {}, {"ZOLT_MEMBERBAY_ENABLE": "#1"})])), 1)
        self.assertEqual(len(find_unmet(MEMBER_BAY, [("Zolt", {}, {})])), 1)
        self.assertEqual(len(find_unmet(MEMBER_BAY, [])), 1)

    def test_an_answer_of_a_products_page_is_asked_of_each_product(self):
        good = ("Zolt", {"ZOLT_MEMBERBAY_ENABLE": [("REG_SZ", "#0")]}, {})
        bad = ("Viewer", {}, {"ZOLT_MEMBERBAY_ENABLE": "#1"})
        sentence = 'resources.member_bay asks for "#0" in ZOLT_MEMBERBAY_ENABLE, which is "#1" in Viewer'
        self.assertEqual(find_unmet(MEMBER_BAY, [good, good]), [])
        self.assertEqual(find_unmet(MEMBER_BAY, [good, bad]), [sentence])
        self.assertEqual(find_unmet(MEMBER_BAY, [bad, bad]), [sentence + ' and "#1" in Viewer'])

    def test_a_path_is_asked_for_as_the_product_stores_it_and_the_workstation_resolves_it(self):
        class FontsFolder:
            def stored_path(self, shown):
                return shown.replace("Fonts\\", "[FONTDIR]")

            def resolved(self, name, stored):
                return stored.replace("[FONTDIR]", "C:\\%s\\" % name)

        asked = {("ZOLTProfile_AltFont", ""): ("paths.alt_font", "Fonts\\a.zfont")}
        for carried, properties, good in (
                ({"ZOLTProfile_AltFont": [("REG_SZ", "C:\\ZOLTProfile_AltFont\\a.zfont")]}, {}, True),
                ({"ZOLTProfile_AltFont": [("REG_SZ", "Fonts\\a.zfont")]}, {}, False),
                ({}, {"ZOLTProfile_AltFont": "[FONTDIR]a.zfont"}, True),
                ({}, {"ZOLTProfile_AltFont": "Fonts\\a.zfont"}, False)):
            with self.subTest(carried=carried, properties=properties):
                unmet = find_unmet(asked, [("Zolt", carried, properties, FontsFolder())])
                self.assertEqual(len(unmet), 0 if good else 1)

    def test_the_words_of_the_paths_follow_their_properties(self):
        words = {key: name for key, (name, _) in PROPERTIES.items() if key.startswith("paths.")}
        self.assertEqual(len(words), 26)
        for word, name in (("support_path", "SupportPath"), ("texmaps", "TEXMAPS"), ("dgn_mapping_path", "DGNMappingPath"),
                           ("alternative_page_set_ups_template", "AlternativePageSetUpsTemplate")):
            self.assertEqual(words["paths." + word], "ZOLTProfile_" + name)

    def test_an_answer_for_the_deployment_is_asked_of_one_product(self):
        asked = {("MC3_ENABLED", ""): ("settings.mc3", "#1")}
        carrying, other = ("Zolt", {}, {"MC3_ENABLED": "#1"}), ("Viewer", {}, {})
        self.assertEqual(find_unmet(asked, [carrying, other]), [])
        self.assertEqual(len(find_unmet(asked, [other, other])), 1)

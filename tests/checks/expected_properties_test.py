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
MEMBER_BAY = {"ZOLT_MEMBERBAY_ENABLE": ("resources.member_bay", "#0")}


class AskedAnswersTest(unittest.TestCase):
    def asked(self, text, *words):
        with tempfile.TemporaryDirectory() as self.folder:
            path = os.path.join(self.folder, "answers.txt")
            with open(path, "w", encoding="utf-8") as file:
                file.write("rollout-answers 1\n" + text)
            return {name: value for name, (_, value) in asked_properties(path, words).items()}

    def test_every_answer_of_the_online_pages_has_a_property(self):
        with open(os.path.join(ROOT, "setup", "answer_table.cpp"), encoding="utf-8") as file:
            rows = re.findall(r'\{L"(\w+)", L"(\w+)", AnswerKind::', file.read())
        wanted = {section + "." + word for section, word in rows if section in ONLINE_SECTIONS}
        self.assertEqual({key for key in PROPERTIES if key.split(".")[0] in ONLINE_SECTIONS}, wanted)

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

    def test_an_answer_for_the_deployment_is_asked_of_one_product(self):
        asked = {"MC3_ENABLED": ("settings.mc3", "#1")}
        carrying, other = ("Zolt", {}, {"MC3_ENABLED": "#1"}), ("Viewer", {}, {})
        self.assertEqual(find_unmet(asked, [carrying, other]), [])
        self.assertEqual(len(find_unmet(asked, [other, other])), 1)

"""Each answer of the online pages comes to its own property, from wizard pages and from tabs alike."""

import os

from wizard import WizardTest, properties_of

LIST = "\\\\localhost\\lists\\%s.npl"
FEED = "\\\\server\\feeds\\%s.xml"

# Property, section and key of each box, and what four runs answer. No two rows are alike, so a box that stored for
# another one would be seen in one of the runs. None: the box is off and can't be set, as the feeds are.
BOXES = (
    ("ZOLT_PATCHRELAY_ENABLE", "notices", "updates", ("no", "yes", "yes", "yes")),
    ("ZOLT_CHANNEL_NOTIFY_ENABLE", "notices", "channel_notices", ("no", "no", "yes", "yes")),
    ("ZOLT_SITEMGR_CHANNEL_ENABLE", "notices", "site_channel", ("yes", "yes", "no", "no")),
    ("ZOLT_RSS_FEEDS_ENABLE", "notices", "feeds", ("yes", "yes", "yes", "no")),
    ("ZOLT_RSS_FEEDS_CUSTOM_ENABLE", "notices", "custom_feeds", ("no", "yes", "no", None)),
    ("ZOLT_PARTSBAY_ENABLE", "resources", "parts_bay", ("no", "no", "no", "yes")),
    ("ZOLT_MEMBERBAY_ENABLE", "resources", "member_bay", ("no", "yes", "no", "yes")),
    ("ZOLT_ENABLE_ROUNDTRIP", "resources", "round_trip", ("no", "no", "yes", "no")),
    ("ZOLT_ENABLE_SEND_PC_NAME", "resources", "send_computer_name", ("yes", "no", "yes", "no")),
    ("ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE", "resources", "search_locations", ("yes", "no", "no", "yes")),
)

# What else each run answers, and the properties that come of it; the empty text is a property without a row.
TEXTS = (
    ("site_feed = %s\nsite_name = First name\n" % (FEED % "first"),
     {"ZOLT_PATCHRELAY_PATCHNOTIFY": "#3", "ZOLT_PATCHRELAY_LISTLOCACTION": "",
      "ZOLT_SITEMGR_LOCATION": FEED % "first", "ZOLT_SITEMGR_DISPLAY_NAME": "First name"}),
    ("update_source = local_list\nupdate_list = %s\nsite_feed = %s\nsite_name = Second name\n" % (
        LIST % "second", FEED % "second"),
     {"ZOLT_PATCHRELAY_PATCHNOTIFY": "#2", "ZOLT_PATCHRELAY_LISTLOCACTION": LIST % "second",
      "ZOLT_SITEMGR_LOCATION": FEED % "second", "ZOLT_SITEMGR_DISPLAY_NAME": "Second name"}),
    ("update_source = maker\n",
     {"ZOLT_PATCHRELAY_PATCHNOTIFY": "#1", "ZOLT_PATCHRELAY_LISTLOCACTION": "", "ZOLT_SITEMGR_LOCATION": "",
      "ZOLT_SITEMGR_DISPLAY_NAME": ""}),
    ("update_source = local_list\nupdate_list = %s\n" % (LIST % "fourth"),
     {"ZOLT_PATCHRELAY_PATCHNOTIFY": "#2", "ZOLT_PATCHRELAY_LISTLOCACTION": LIST % "fourth",
      "ZOLT_SITEMGR_LOCATION": "", "ZOLT_SITEMGR_DISPLAY_NAME": ""}),
)


def section(name, run):
    lines = ["%s = %s" % (key, answers[run]) for _, place, key, answers in BOXES if place == name and answers[run]]
    return "[%s]\n%s\n" % (name, "\n".join(lines))


def online_answers(run):
    return section("notices", run) + TEXTS[run][0] + "on_question.feed_not_found = yes\n" + section("resources", run)


def expected_properties(run):
    expected = {name: "#1" if answers[run] == "yes" else "#0" for name, _, _, answers in BOXES}
    expected["ZOLT_PARTSBAY_DISABLE"] = "#0" if expected["ZOLT_PARTSBAY_ENABLE"] == "#1" else "#1"
    return {**expected, **TEXTS[run][1]}


class OnlineAnswersTest(WizardTest):
    def append(self, path, text):
        with open(path, "a", encoding="utf-8") as file:
            file.write(text)
        return path

    def assert_deployed(self, run):
        expected = expected_properties(run)
        for package in ("Zolt/Zolt2027.msi", "ZoltViewer/ZoltViewer2027.msi"):
            found = properties_of(os.path.join(self.out, "Office", "Image", "x64", package))
            self.assertEqual({name: found.get(name, "") for name in expected}, expected, package)

    def create(self, run):
        path = self.begin("Office", platform="x64", **{"on_question.replace": "yes"})
        result = self.wizard(self.append(path, online_answers(run)))
        self.assertEqual(result.code, 0, result.output)
        self.assertNotIn("Configure dialog", result.output)
        self.assert_deployed(run)

    def modify(self, run):
        path = self.answers("[begin]\nmode = modify\nbase = Office\non_question.local_location = yes\n")
        result = self.wizard(self.append(path, online_answers(run)), media=os.path.join(self.out, "Office", "Image"))
        self.assertEqual(result.code, 0, result.output)
        self.assertIn("Configure dialog", result.output)
        self.assert_deployed(run)

    def test_every_answer_comes_to_its_own_property_from_wizard_pages_and_from_tabs(self):
        self.create(0)
        self.modify(1)
        self.create(2)
        self.modify(3)

    def check(self, text):
        return self.wizard(self.append(self.begin("Office"), "[notices]\n" + text), "--check")

    def assert_question(self, word, text, reported):
        """Without an answer the run ends with the box's text, and yes lets it go on."""
        unanswered = self.check(text)
        self.assertEqual(unanswered.code, 23, unanswered.output)
        self.assertIn(reported, unanswered.output)
        self.assertIn("on_question." + word, unanswered.output)
        agreed = self.check(text + "on_question.%s = yes\n" % word)
        self.assertEqual(agreed.code, 0, agreed.output)

    def test_an_empty_list_is_a_question(self):
        self.assert_question("empty_list", "update_source = local_list\nupdate_list =\n", "list")

    def test_a_list_on_an_unknown_server_is_a_question(self):
        self.assert_question("unknown_list_server",
                             "update_source = local_list\nupdate_list = \\\\nowhere.invalid\\lists\\a.npl\n", "server")

    def test_a_feed_of_another_kind_is_a_question(self):
        self.assert_question("feed_kind", "site_channel = yes\nsite_feed = \\\\server\\feeds\\a.txt\n", "feed")

    def test_a_feed_that_is_not_there_is_a_question_that_no_answers_too(self):
        text = "site_channel = yes\nsite_feed = \\\\server\\feeds\\a.xml\n"
        self.assert_question("feed_not_found", text, "feed")
        refused = self.check(text + "on_question.feed_not_found = no\n")
        self.assertEqual(refused.code, 22, refused.output)

    def test_what_a_page_refuses_is_reported_with_its_key(self):
        lists = "update_source = local_list\nupdate_list = "
        feeds = "site_channel = yes\nsite_feed = "
        for text, key in ((lists + "C:\\lists\\a.txt\n", "update_list"), (lists + "C:\\lists\\a.npl\n", "update_list"),
                          (feeds + "\\\\sixteenlettersxx\\feeds\\a.xml\n", "site_feed"),
                          (feeds + "C:\\feeds\\a<b.xml\n", "site_feed")):
            with self.subTest(text=text):
                result = self.check(text)
                self.assertEqual(result.code, 22, result.output)
                self.assertRegex(result.output.strip().splitlines()[-1], r"answers\.txt\(\d+\): notices\.%s: " % key)

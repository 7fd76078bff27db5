"""The texts of the resource scripts against the code that shows them: what is filled in, which figures they name, and
that each stands under its own id. What is built is looked at by resources_test."""

import glob
import os
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
PAGE_FOLDERS = ("frame", "pages", "online", "paths", "files", "patches", "workstation")

# The numbers among what is filled in; all else is text.
NUMBERS = {"IDS_NEW_FOLDER_NUMBERED": {"d"}, "IDS_PATCH_MARK": {"d"}}
# Ids that reach SetupText by a variable, with the number of texts that are filled in there.
PASSED_ON = {"IDS_CONFIGURE_NO_DATABASE_SAVE": 2, "IDS_BUILD_TITLE": 1, "IDS_BUILD_TITLE_SHARE": 2, "IDS_CHECK_TITLE": 1,
             "IDS_DECIDING_TITLE": 1, "IDS_DECIDING_TITLE_SHARE": 2,
             "IDS_CHECK_TITLE_SHARE": 2, "IDS_BASE_DIFFERS": 2, "IDS_BASE_UNDETERMINED": 2}

# Words without which a text is not the one of its id: what it is about, and the unit of what is filled in.
PAGE_WORDS = {
    "IDS_OTHER_PRODUCTS_DEPLOYMENT": "another product", "IDS_LOCATION_MISSING": "No location",
    "IDS_PATH_TOO_LONG": "longest path", "IDS_PLATFORM_NOT_ALLOWED": "platform",
    "IDS_PDF_NO_VIEWER_TITLE": "No program", "IDS_PDF_NO_VIEWER": "PDF", "IDS_PAGE_COUNTER": "Page",
    "IDS_ERROR_TITLE": "Error", "IDS_CONFIRM_FOLDER": "other files", "IDS_NAME_INVALID": "This name",
    "IDS_BROWSE_LOG_FOLDER": "logs", "IDS_COMPLETE_LINE1": "Deployment created", "IDS_FAILURE": "not created",
    "IDS_LOCATION_NOT_NETWORK": "not on the network", "IDS_LOCATION_UNUSABLE": "can't be used",
    "IDS_CANCEL_OTHER": "Nothing has been changed", "IDS_CANCEL_INSTALL": "stop the installation",
    "IDS_CANCEL_MAINTAIN": "stop changing", "IDS_CANCEL_DEPLOYMENT": "without creating the deployment",
    "IDS_COMPLETE_LINE2": "Folder", "IDS_LOG_FOLDER_NOT_NETWORK": "logs to this folder",
    "IDS_LOG_FOLDER_UNUSABLE": "keeps its log", "IDS_COMPLETE_TEXT": "What to do next",
    "IDS_REPLACE_DEPLOYMENT": "replace it", "IDS_LOCATION_ACCESS_DENIED": "permission to write",
    "IDS_BROWSE_LOCATION": "for the deployment", "IDS_FEED_SERVER_TOO_LONG": "too long", "IDS_LIST_EMPTY": "is empty",
    "IDS_ALL_FILES_FILTER": "All files", "IDS_ALL_FILES_FILTER_PATTERN": "*.*", "IDS_BROWSE_FILE_TITLE": "file for",
    "IDS_LIST_BROWSED_WRONG_KIND": "selected file is not an update list", "IDS_FEED_FILTER": "Feeds",
    "IDS_FEED_FILTER_PATTERN": ".rdf", "IDS_LIST_FILTER": "Update lists", "IDS_LIST_FILTER_PATTERN": ".npl",
    "IDS_FEED_BROWSED_WRONG_KIND": "selected file is not a feed", "IDS_DEFAULT_DISPLAY_NAME": "Site manager",
    "IDS_UPDATE_SOURCE_MAKER": "maker", "IDS_UPDATE_SOURCE_LIST": "list",
    "IDS_LIST_WRONG_KIND": "location of the update list is not", "IDS_FEED_WRONG_KIND": "might not be a feed",
    "IDS_LIST_HOST_UNKNOWN": "server in the location of the update list",
    "IDS_FEED_NOT_FOUND": "feed can't be found", "IDS_FEED_INVALID": "feed is not a valid path",
    "IDS_LIST_MISSING": "list doesn't exist",
    "IDS_SUPPORT_PATH": "Support folders", "IDS_SUPPORT_PATH_TEXT": "support files", "IDS_MENU_FILES": "Menu files",
    "IDS_MENU_FILES_TEXT": "define the menus", "IDS_MENU_FILE": "Main menu",
    "IDS_MENU_FILE_TEXT": "users change when they customize", "IDS_ENTERPRISE_MENU_FILE": "Enterprise",
    "IDS_ENTERPRISE_MENU_FILE_TEXT": "all users share", "IDS_CUSTOM_DICTIONARY": "dictionary",
    "IDS_CUSTOM_DICTIONARY_TEXT": "spelling", "IDS_ALT_FONT": "Alternate font",
    "IDS_ALT_FONT_TEXT": "doesn't have to exist", "IDS_FONT_MAP_FILE": "Font mapping",
    "IDS_FONT_MAP_FILE_TEXT": "which font replaces which", "IDS_PRINTER_FOLDERS": "Printer support",
    "IDS_PRINTER_FOLDERS_TEXT": "three folders", "IDS_PRINTER_CONFIG": "configuration",
    "IDS_PRINTER_CONFIG_TEXT": "printers that are set up", "IDS_PRINTER_DESC": "description",
    "IDS_PRINTER_DESC_TEXT": "paper sizes", "IDS_PRINTER_STYLE_SHEET": "Plot style",
    "IDS_PRINTER_STYLE_SHEET_TEXT": "line widths", "IDS_SAVE_FILE": "Automatic save",
    "IDS_SAVE_FILE_TEXT": "saves automatically", "IDS_COLOR_BOOK": "Color book", "IDS_COLOR_BOOK_TEXT": "named colors",
    "IDS_DATABASE_WORKSPACE": "Data sources", "IDS_DATABASE_WORKSPACE_TEXT": "databases",
    "IDS_TEMPLATES": "Template settings", "IDS_TEMPLATES_TEXT": "start new drawings",
    "IDS_TEMPLATE_FOLDER": "Drawing template", "IDS_TEMPLATE_FOLDER_TEXT": "creates a drawing from a template",
    "IDS_SHEET_SET_TEMPLATE": "Sheet set", "IDS_SHEET_SET_TEMPLATE_TEXT": "creates a sheet set",
    "IDS_QNEW_TEMPLATE": "new drawings", "IDS_QNEW_TEMPLATE_TEXT": "a new drawing starts",
    "IDS_PAGE_SETUPS_TEMPLATE": "new sheets", "IDS_PAGE_SETUPS_TEMPLATE_TEXT": "alternative page setups",
    "IDS_TOOL_PALETTE": "Tool palette", "IDS_TOOL_PALETTE_TEXT": "keeps tool palettes", "IDS_LOG_FILE": "Log file",
    "IDS_LOG_FILE_TEXT": "command window", "IDS_PLOT_LOG": "Plot log", "IDS_PLOT_LOG_TEXT": "who plotted",
    "IDS_TEMP": "Temporary file", "IDS_TEMP_TEXT": "its temporary files", "IDS_XREF_TEMP": "external reference folder",
    "IDS_XREF_TEMP_TEXT": "refers to", "IDS_TEXMAPS": "Texture map", "IDS_TEXMAPS_TEXT": "materials",
    "IDS_WEB_GRAB": "Web file", "IDS_WEB_GRAB_TEXT": "web address", "IDS_ACTIONS": "Action recorder",
    "IDS_ACTIONS_TEXT": "folders of the action recorder", "IDS_ACTIONS_RECORDING": "Recorded actions",
    "IDS_ACTIONS_RECORDING_TEXT": "a user records", "IDS_ADDITIONAL_ACTIONS": "Additional actions",
    "IDS_ADDITIONAL_ACTIONS_TEXT": "can play, but not change", "IDS_DGN_MAPPING": "DGN",
    "IDS_DGN_MAPPING_TEXT": "mapping setups", "IDS_ACTION_PATH_EMPTY": "can't be empty",
    "IDS_PATH_FILE_TITLE": "Select a file", "IDS_PATH_FOLDER_INVALID": "folder",
    "IDS_PATH_FILE_INVALID": "path of a file", "IDS_PATH_MISSING": "doesn't exist on this computer",
    "IDS_PATH_UNC": "begins with a server", "IDS_PRINTER_CONFIG_EMPTY": "Printer configuration folder",
    "IDS_PRINTER_DESC_EMPTY": "Printer description folder",
    "IDS_PRINTER_STYLE_SHEET_EMPTY": "Plot style table folder",
    "IDS_NEW_FOLDER": "New folder", "IDS_NEW_FOLDER_NUMBERED": "(%d)", "IDS_FILES_PICKER_TITLE": "Add files",
    "IDS_FILES_PICKER_FILTER": "|*.*|", "IDS_FILES_MISSING": "Select a file that exists",
    "IDS_FILES_REPLACE": "New file", "IDS_FILES_SIBLING_HAS_NAME": "already has this name",
    "IDS_FILES_DRIVE_INVALID": "from C to Z", "IDS_FILES_NAME_INVALID": "valid name for a folder",
    "IDS_FILES_NOTHING_SELECTED": "in bold", "IDS_FILES_PRODUCT_FOLDER": "with the product",
    "IDS_FILES_ADDED_FOLDER": "added this folder", "IDS_FILES_ADDED_DRIVE": "another letter",
    "IDS_FILES_ADDED_FILE": "copied from", "IDS_FILES_SOURCE_GONE": "Restore it there",
    "IDS_FILES_PROGRESS": "so far", "IDS_FILES_NOT_ADDED": "were not added",
    "IDS_FILES_NOT_ADDED_MORE": "not listed", "IDS_FILES_REASON_GONE": "any more",
    "IDS_FILES_REASON_FILE_IN_WAY": "name of this folder", "IDS_FILES_REASON_FOLDER_IN_WAY": "name of this file",
    "IDS_FILES_REASON_LOOP": "leads back", "IDS_FILES_REASON_TOO_LONG": "too long",
    "IDS_FILES_REASON_UNREADABLE": "can't be read", "IDS_FILES_REASON_REFUSED": "can't store it",
    "IDS_WORKSTATION_HEADING": "workstation gets", "IDS_PROFILE_NAME_INVALID": "profile is not valid",
    "IDS_SHORTCUT_NAME_COLUMN": "Name", "IDS_SHORTCUT_SWITCHES_COLUMN": "Command line",
    "IDS_SHORTCUT_NAME_PROMPT": "Type a name", "IDS_SHORTCUT_SWITCHES_PROMPT": "Type switches",
    "IDS_SHORTCUT_INCOMPLETE": "needs a name and a command line", "IDS_SHORTCUT_SWITCH_UNKNOWN": "only these switches",
    "IDS_SHORTCUT_NAME_INVALID": "name of a custom shortcut can't", "IDS_SHORTCUT_NAME_TWICE": "the same name",
    "IDS_PATCH_FILTER": "Patch files", "IDS_PATCH_FILTER_PATTERN": "*.msp", "IDS_PATCH_RETRY": "again",
    "IDS_PATCH_DOWNLOAD": "&Download", "IDS_PATCH_CANCEL_DOWNLOAD": "Cancel download",
    "IDS_PATCH_IS_DOWNLOADED": "has been downloaded", "IDS_PATCH_CONNECT_FAILED": "can't be reached",
    "IDS_PATCH_TIMED_OUT": "in time", "IDS_PATCH_UP_TO_DATE": "up to date",
    "IDS_PATCH_NOT_DOWNLOADED": "hasn't been downloaded", "IDS_PATCH_UNUSABLE": "can't be used as a patch",
    "IDS_PATCH_LISTED_ALREADY": "already on the list", "IDS_PATCHES_NOT_APPLICABLE": "don't apply",
    "IDS_PATCH_OF_OTHER_PRODUCT": "isn't a patch for this product", "IDS_PATCH_CHANGED": "announced",
    "IDS_PATCH_MARK": "<img",
}
PROGRAM_WORDS = {
    "IDS_BUILD_STARTING": "ready", "IDS_BUILD_CANCELLING": "Canceling", "IDS_BUILD_CANCEL_QUESTION": "stop building",
    "IDS_BUILD_SECONDS_LEFT": "seconds left", "IDS_BUILD_MINUTE_LEFT": "a minute left",
    "IDS_BUILD_MINUTES_LEFT": "minutes left", "IDS_BUILD_HOURS_LEFT": "hours left",
    "IDS_BUILD_SHUTDOWN_REASON": "being built", "IDS_BUILD_BROKE_OFF": "error in the program",
    "IDS_ADDITIONS_BLOCK": "can't be created", "IDS_ADDITIONS_NOTE": "Note the following about the additional", "IDS_ADDITION_NOT_STORED": "was not added",
    "IDS_BUILD_WARNINGS": "created", "IDS_BUILD_MORE_WARNINGS": "more", "IDS_PROGRAM_TITLE": "wizard",
    "IDS_CHOOSE_MEDIA": "Select the folder", "IDS_MEDIA_NOT_GIVEN": "No media", "IDS_LIBRARY_MISSING": "can't be loaded",
    "IDS_LIBRARY_FOREIGN": "has no function", "IDS_NO_PAGES": "no page", "IDS_BAD_COMMAND_LINE": "--help",
    "IDS_ANSWERS_UNREADABLE": "answers file", "IDS_ANSWERS_IN_USE": "another program", "IDS_PICTURES_FAILED": "picture", "IDS_OUT_OF_MEMORY": "memory",
    "IDS_SEE_LOG": "see the log", "IDS_RUN_BROKE_OFF": "stopped unexpectedly", "IDS_RUN_ENDED_EARLY": "ended early",
    "IDS_RUN_QUIET": "seconds", "IDS_RUN_NOT_STARTED": "working process", "IDS_RUN_INTERRUPTED": "Ctrl+C", "IDS_REPLACE_UNLISTED": "already contains",
    "IDS_REPLACE_OWN_FILES": "These files", "IDS_REPLACE_KEPT_WHOLE": "whole folder", "IDS_REPLACE_MORE_FILES": "more",
    "IDS_REPLACE_QUESTION": "replace it", "IDS_CONFIGURE_CANCEL_QUESTION": "changes will be lost",
    "IDS_CONFIGURE_NO_PAGE": "other pages", "IDS_CONFIGURE_NO_DATABASE": "can't be saved",
    "IDS_CONFIGURE_NO_DATABASE_SAVE": "can't continue", "IDS_CONFIGURE_NO_WINDOW": "dialog",
    "IDS_CONFIGURE_NO_PRODUCT": "none of the media's products", "IDS_LOG_FAILED": "--log",
    "IDS_SESSION_END_WAITS": "asking", "IDS_FAILURE_PANE": "What happened",
    "IDS_FAILURE_ANSWERS": "Your entries", "IDS_RECORD_FAILED": "written", "IDS_RECORD_IS_ANSWERS": "replace",
    "IDS_RECORD_IS_LOG": "replace the log", "IDS_RECORD_IN_DEPLOYMENT": "outside it", "IDS_KEPT_FAILED": "beside the log",
    "IDS_ANSWERS_NO_FILE": "can hold them", "IDS_REPORT_FAILED": "report can't be written",
    "IDS_REPORT_IS_LOG": "--report", "IDS_OUTPUT_IN_DEPLOYMENT": "only read",
    "IDS_CHECK_TITLE": "Checking", "IDS_CHECK_TITLE_SHARE": "Checking", "IDS_CHECK_CANCELLING": "the check", "IDS_CHECK_CANCEL_QUESTION": "stop checking",
    "IDS_CHECK_SHUTDOWN_REASON": "being checked", "IDS_BASE_DIFFERS": "become part",
    "IDS_BASE_UNDETERMINED": "continue with it",
    "IDS_COMPARE_DIFFERENT": "not equal", "IDS_COMPARE_FAILED": "compared", "IDS_COMPARE_ANSWERS_UNREADABLE": "The answers",
    "IDS_PLAN_FAILED": "written", "IDS_PLAN_IS_OTHER": "replace", "IDS_PLAN_IN_DEPLOYMENT": "outside it",
    "IDS_PLAN_WRITTEN": "Nothing was built",
    "IDS_REVIEW_TITLE": "Review of", "IDS_REVIEW_HEADING": "when you choose Build", "IDS_REVIEW_CHECK_HEADING": "would be built",
    "IDS_REVIEW_REFUSED": "can't be built", "IDS_REVIEW_BUILD": "Build", "IDS_REVIEW_FINISH": "Finish", "IDS_REVIEW_NOT_COPIED": "can't be copied",
    "IDS_REVIEW_CANCEL_QUESTION": "leave the wizard", "IDS_REVIEW_NO_WINDOW": "can't be shown",
    "IDS_DECIDING_TITLE": "Reviewing", "IDS_DECIDING_TITLE_SHARE": "Reviewing", "IDS_DECIDING_CANCELLING": "the review",
    "IDS_DECIDING_CANCEL_QUESTION": "stop the review", "IDS_DECIDING_SHUTDOWN_REASON": "being reviewed",
}
CONTROL_WORDS = {
    "IDYES": "Yes", "IDNO": "No", "IDC_BACK": "Back", "IDC_RESET": "over", "IDC_LINK1": "guide", "IDC_LINK2": "notes",
    "IDC_PREVIOUS_TAB": "vious", "IDC_NEXT_TAB": "Next", "IDC_MODE_CREATE": "a new deployment",
    "IDC_MODE_CREATE_FROM": "from an existing", "IDC_MODE_MODIFY": "Modify", "IDC_LOCATION_HEADING_EXISTING": "location",
    "IDC_LOCATION_HEADING_NEW": "location", "IDC_DEPLOYMENTS_HEADING": "Existing", "IDC_NAME_HEADING": "ame",
    "IDC_PLATFORM_HEADING": "Platform", "IDC_PLATFORM_X86": "32", "IDC_PLATFORM_X64": "64",
    "IDC_NETWORK_LOG": "network folder", "IDC_LOG_FOLDER_HEADING": "Log folder", "IDC_SETTINGS_OPTION": "copy",
    "IDC_INSTALL_SILENT": "Nothing", "IDC_INSTALL_PROGRESS": "progress", "IDC_MC3_HEADING": "MC3", "IDC_MC3": "Turn on",
    "IDC_UPDATES": "updates", "IDC_LIST_HEADING": "List", "IDC_CHANNEL_NOTICES": "channel notices",
    "IDC_SITE_CHANNEL": "site manager", "IDC_FEED_HEADING": "feed", "IDC_DISPLAY_NAME_HEADING": "name",
    "IDC_FEEDS": "feeds", "IDC_CUSTOM_FEEDS": "their own feeds", "IDC_PARTS_BAY": "PartsBay",
    "IDC_MEMBER_BAY": "MemberBay", "IDC_ROUND_TRIP": "Round trip", "IDC_SEND_COMPUTER_NAME": "computer name",
    "IDC_SEARCH_LOCATIONS": "search locations", "IDC_PATH_BROWSE": "Browse", "IDC_PATH_ADD": "Add",
    "IDC_PATH_REMOVE": "Remove", "IDC_PATH_MOVE_UP": "up", "IDC_PATH_MOVE_DOWN": "down",
    "IDC_FILES_ADD": "files", "IDC_FILES_ADD_FOLDER": "folder", "IDC_FILES_ADD_DRIVE": "drive", "IDC_FILES_DELETE": "Delete",
    "IDC_DESKTOP_SHORTCUT": "desktop shortcut", "IDC_SHORTCUTS_HEADING": "Custom shortcuts",
    "IDC_BROWSER_REQUIRED": "browser", "IDC_SHEET_FORMAT": "sheet format",
    "IDC_PATCH_OFFERED": "update service", "IDC_PATCH_LISTED": "you select", "IDC_PATCH_NONE": "No service pack",
    "IDC_PATCH_LIST_HEADING": "Patch files", "IDC_PATCH_BROWSE": "Browse", "IDC_PATCH_REMOVE": "Remove",
    "IDC_PATCH_APPEND": "and then the patches", "IDC_PATCH_MERGE": "files in the deployment",
}


def read(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read()


def source_files(*folders):
    return [path for folder in folders for end in ("cpp", "h")
            for path in sorted(glob.glob(os.path.join(ROOT, folder, "*." + end)))]


def texts_of(path):
    """The texts of a resource script by their ids."""
    rows = re.findall(r'^    (IDS_\w+|FAILURE_TEXT\(\d+\)) "((?:[^"]|"")*)"', read(path), re.MULTILINE)
    return {key: text.replace('""', '"') for key, text in rows}


def arguments_behind(text, at):
    """The arguments of the call whose bracket opens at `at`, split at the commas between them."""
    depth, start, parts, quoted = 0, at + 1, [], False
    for index in range(at, len(text)):
        letter = text[index]
        if letter == '"' and text[index - 1] != "\\":
            quoted = not quoted
        if quoted:
            continue
        depth += letter in "({["
        depth -= letter in ")}]"
        if depth == 0:
            last = text[start:index].strip()
            return parts + ([last] if last else [])
        if depth == 1 and letter == ",":
            parts.append(text[start:index].strip())
            start = index + 1
    raise ValueError("the bracket at %d is never closed" % at)


def calls_of(name, *folders):
    """(file, arguments) of every call of a function; its own declaration and definition don't count."""
    found = []
    for path in source_files(*folders):
        with open(path, encoding="utf-8") as file:
            text = re.sub(r"//.*", "", file.read())
        for match in re.finditer(r"(?<!CString )\b%s\(" % name, text):
            found.append((os.path.relpath(path, ROOT), arguments_behind(text, match.end() - 1)))
    return found


def numbered(text):
    return sorted(set(re.findall(r"%(\d)", text)))


class Placeholders(unittest.TestCase):
    def test_every_page_text_has_one_string_for_each_argument(self):
        texts = texts_of("resources/en-US/strings.rc")
        rules = read("pages/begin_deployment_rules.cpp")
        body = rules[rules.index("unsigned int LocationErrorId("):]
        by_function = set(re.findall(r"\bIDS_\w+", body[:body.index("\n}")]))
        filled = set()
        by_caller = {arguments[0] for _, arguments in calls_of("ShowPatchError", "patches")
                     if arguments[0].startswith("IDS_")}
        self.assertGreaterEqual(len(by_caller), 4)
        passed_on = {"LocationErrorId(": by_function, "message": by_caller}
        for path, arguments in calls_of("FormatResource", *PAGE_FOLDERS):
            ids = next((ids for words, ids in passed_on.items() if arguments[0].startswith(words)), {arguments[0]})
            counts = set()
            for key in ids:
                filled.add(key)
                kinds = re.findall(r"%(.)", texts[key])
                counts.add(len(kinds))
                with self.subTest(file=path, id=key):
                    self.assertEqual(set(kinds) - {"s"}, NUMBERS.get(key, set()), "arguments of another kind")
                    self.assertLessEqual(len(kinds), len(arguments) - 1)
            with self.subTest(file=path, ids=sorted(ids)):
                self.assertEqual(max(counts), len(arguments) - 1, "an argument that no text shows")
        self.assertGreaterEqual(len(filled), 6)
        for key in sorted(set(texts) - filled - {"IDS_CANCEL_TEMPLATE", "IDS_FILES_REPLACE"}):
            with self.subTest(id=key):
                self.assertNotIn("%", texts[key].replace("[%", "["), "nothing is filled in there")

    def test_the_cancel_template_takes_one_of_three_questions(self):
        """FormatMessage reads it, and all three arguments are the same."""
        text = texts_of("resources/en-US/strings.rc")["IDS_CANCEL_TEMPLATE"]
        self.assertRegex(text, r"^%[123]$")

    def test_every_program_text_numbers_what_is_filled_in(self):
        texts = texts_of("setup/setup_en_us.rc")
        counts = {key: {number} for key, number in PASSED_ON.items()}
        for path, arguments in calls_of("SetupText", "setup"):
            if arguments and arguments[0] in texts:
                filled = arguments_behind(arguments[1], 0) if len(arguments) > 1 else []
                counts.setdefault(arguments[0], set()).add(len(filled))
        self.assertGreaterEqual(len(counts), 30)
        for key, text in texts.items():
            with self.subTest(id=key):
                number = counts.get(key, {0})
                self.assertEqual(len(number), 1, "calls fill in different numbers of texts")
                self.assertEqual(numbered(text), [str(one + 1) for one in range(min(number))])

    def test_every_id_of_the_program_names_what_is_filled_in(self):
        header = read("setup/resource.h")
        for key, text in texts_of("setup/setup_en_us.rc").items():
            with self.subTest(id=key):
                line = re.search(r"#define %s \d+(.*)" % key, header)
                self.assertIsNotNone(line)
                self.assertEqual(numbered(line.group(1)), numbered(text))

    def test_every_sentence_of_the_host_numbers_what_is_filled_in(self):
        rows = re.findall(r'\{HostText::(\w+),\s*((?:L"(?:[^"\\]|\\.)*"\s*)+)\}', read("host/host_messages.cpp"))
        texts = dict(rows)
        self.assertGreaterEqual(len(texts), 50)
        for path, arguments in calls_of("HostSentence", "host"):
            match = re.fullmatch(r"HostText::(\w+)", arguments[0])
            if match and len(arguments) > 1 and arguments[1].startswith("{"):
                with self.subTest(file=path, id=match.group(1)):
                    self.assertEqual(max([int(one) for one in numbered(texts[match.group(1)])], default=0),
                                     len(arguments_behind(arguments[1], 0)))


class Words(unittest.TestCase):
    def check_words(self, texts, words):
        for key, word in words.items():
            with self.subTest(id=key):
                self.assertIn(word, texts[key])

    def test_every_page_text_stands_under_its_own_id(self):
        self.check_words(texts_of("resources/en-US/strings.rc"), PAGE_WORDS)

    def test_every_program_text_stands_under_its_own_id(self):
        self.check_words(texts_of("setup/setup_en_us.rc"), PROGRAM_WORDS)

    def test_no_text_is_without_its_words(self):
        bare = {"IDS_BANNER_PREFIX", "IDS_CANCEL_TEMPLATE", "IDS_STEP", "IDS_BUILD_TITLE", "IDS_BUILD_TITLE_SHARE",
                "IDS_BUILD_AMOUNT", "IDS_DECIMAL_POINT", "IDS_RUN_STARTING"}
        texts = {**texts_of("resources/en-US/strings.rc"), **texts_of("setup/setup_en_us.rc")}
        # A tab's caption is held against the page's name by pages_test.
        named = {key for key in texts if key.startswith("IDS_") and not key.startswith("IDS_TAB_")} - bare
        self.assertEqual(named, set(PAGE_WORDS) | set(PROGRAM_WORDS))

    def test_every_control_has_its_own_words(self):
        script = read("resources/en-US/dialogs.rc")
        for key, word in CONTROL_WORDS.items():
            texts = re.findall(r'"((?:[^"]|"")*)", %s,' % key, script)
            with self.subTest(id=key):
                self.assertTrue(texts)
                for text in texts:
                    self.assertIn(word, text.replace("&", ""))

    def test_next_and_cancel_are_called_by_what_they_do(self):
        script = read("resources/en-US/dialogs.rc")
        self.assertEqual(re.findall(r'"([^"]*)", IDC_NEXT,', script), ["&Next >", "&Finish"])
        self.assertEqual(re.findall(r'"([^"]*)", IDC_CANCEL,', script), ["Cancel", "Close"])


class Figures(unittest.TestCase):
    """A figure in a text is the one that the code compares with."""

    def figure(self, path, pattern):
        match = re.search(pattern, read(path))
        self.assertIsNotNone(match, pattern)
        return int(match.group(1))

    def test_the_longest_server_name_is_the_one_that_passes(self):
        limit = self.figure("online/location_rules.cpp", r"HOST_NAME_LIMIT = (\d+)")
        self.assertIn("up to %d characters" % (limit - 1),
                      texts_of("resources/en-US/strings.rc")["IDS_FEED_SERVER_TOO_LONG"])

    def test_the_longest_path_is_the_one_that_passes(self):
        limit = self.figure("pages/begin_deployment_rules.cpp", r"PATH_LIMIT = (\d+)")
        self.assertIn("%d characters or more" % limit, texts_of("resources/en-US/strings.rc")["IDS_PATH_TOO_LONG"])
        self.assertIn("%d characters or more" % limit, read("resources/en-US/Locations.html"))

    def test_the_time_without_a_sign_of_life_is_filled_in_in_seconds(self):
        calls = [arguments for _, arguments in calls_of("SetupText", "setup") if arguments[:1] == ["IDS_RUN_QUIET"]]
        self.assertEqual([re.match(r"\{\s*NumberText\((\w+)\)", call[1]).group(1) for call in calls],
                         ["quietSeconds"])

    def test_each_kind_of_time_left_has_the_text_of_its_unit(self):
        dialog = read("setup/build_dialog.cpp")
        cases = dict(re.findall(r"case TimeLeftKind::(\w+):(.*?)(?=case TimeLeftKind|\n    }\n)", dialog, re.DOTALL))
        self.assertEqual([re.findall(r"IDS_\w+", cases[kind]) for kind in ("Seconds", "Minutes", "Hours")],
                         [["IDS_BUILD_SECONDS_LEFT"], ["IDS_BUILD_MINUTE_LEFT", "IDS_BUILD_MINUTES_LEFT"],
                          ["IDS_BUILD_HOURS_LEFT"]])


class FailureTexts(unittest.TestCase):
    def test_every_code_of_the_builder_has_a_text(self):
        """A system that knows none in the wizard's language would leave the failed page without a reason."""
        codes = set(re.findall(r"^    BUILD_\w+ = (\d+),", read("builder/build_failure.h"), re.MULTILINE))
        codes |= set(re.findall(r'^    \{(\d+), L"', read("builder/build_failure.cpp"), re.MULTILINE))
        self.assertGreaterEqual(len(codes), 30)
        texts = texts_of("resources/en-US/strings.rc")
        missing = [code for code in sorted(codes - {"0"}, key=int) if not texts.get("FAILURE_TEXT(%s)" % code)]
        self.assertEqual(missing, [])


class ProgramDialogs(unittest.TestCase):
    def test_an_ampersand_of_a_name_shows_in_every_label_that_is_filled_in(self):
        labels = re.findall(r'LTEXT "", (IDC_\w+),(.*)', read("setup/setup_en_us.rc"))
        self.assertGreaterEqual(len(labels), 4)
        for key, rest in labels:
            with self.subTest(id=key):
                self.assertIn("SS_NOPREFIX", rest)


class Pictures(unittest.TestCase):
    def expect_drawn(self, script, picture, *words):
        with tempfile.TemporaryDirectory() as folder:
            drawn = os.path.join(folder, "drawn")
            subprocess.run([sys.executable, os.path.join(ROOT, script), drawn, *words], check=True)
            with open(drawn, "rb") as made, open(os.path.join(ROOT, picture), "rb") as kept:
                self.assertEqual(made.read(), kept.read(), "draw it again: " + picture)

    def test_pages_and_program_have_the_icon_that_its_script_draws(self):
        icon = "resources/shared/setup.ico"
        for script in ("resources/wiz_text.rc", "setup/setup.rc"):
            self.assertEqual(re.findall(r'ICON "(.*)"', read(script)), [icon])
        self.expect_drawn("resources/shared/make_icon.py", icon)

    def test_the_paths_have_the_pictures_that_their_script_draws(self):
        self.expect_drawn("resources/shared/make_path_images.py", "resources/shared/path_images.bmp")

    def test_the_service_packs_have_the_marks_that_their_script_draws(self):
        for name in ("info", "SuccessCheckMark"):
            self.expect_drawn("resources/shared/make_mark_images.py", "resources/shared/%s.gif" % name, name)


if __name__ == "__main__":
    unittest.main()

"""Each page of the table has what a page needs, and nothing is a page that the table doesn't know. What concerns built
libraries (exports, dialogs, side panes) is looked at by page_test and resources_test."""

import glob
import os
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "scripts"))

from page_table import HEADER, read_pages, written_pages  # noqa: E402

# Kinds of controls in which something can be entered.
ENTRIES = r"AUTORADIOBUTTON|AUTOCHECKBOX|EDITTEXT|COMBOBOX|LISTBOX"
TREES = r'^ *CONTROL "", (IDC_\w+), "Sys(?:Tree|List)View32"'
# Dialogs that a page or the frame opens.
INNER_DIALOGS = {"IDD_CANCEL", "IDD_FILES_PROGRESS"}
# Where pages are named one by one: the table itself, and the prototypes that a compiler needs.
LISTS = ("include/page_table.h", "include/rollout_ui.h")


def read(name):
    with open(os.path.join(ROOT, name), encoding="utf-8") as file:
        return file.read()


def tracked(*endings):
    listing = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=ROOT, capture_output=True,
                             check=True).stdout
    return [name for name in listing.decode().split("\0")
            if name.endswith(endings) and os.path.exists(os.path.join(ROOT, name))]


def dialogs():
    """The templates of the resource script: id -> text between BEGIN and END."""
    return dict(re.findall(r"^(IDD_\w+) DIALOGEX.*?^BEGIN\n(.*?)^END", read("resources/en-US/dialogs.rc"),
                           re.DOTALL | re.MULTILINE))


def entries_of(template):
    """The controls of a dialog in which something can be entered, those of the macros that it uses included."""
    bodies = dict(re.findall(r"^#define (\w+)(?:\([^)]*\))? ((?:.*\\\n)*.*)", read("resources/en-US/dialogs.rc"), re.MULTILINE))
    text, used = dialogs()[template], set()
    while True:
        more = {name for name in bodies if name not in used and re.search(r"\b%s\b" % name, text)}
        if not more:
            return set(re.findall(r'^ *(?:%s) (?:"[^\n]*?", )?(IDC_\w+)' % ENTRIES, text, re.MULTILINE)
                       + re.findall(TREES, text, re.MULTILINE))
        used |= more
        text += "".join("\n" + bodies[name] for name in more)


def answered_controls():
    """Section -> controls of its answers, and of those lists and trees that its adapter works."""
    answered = {}
    for path in glob.glob(os.path.join(ROOT, "setup", "*_answers.cpp")):
        text = read(os.path.relpath(path, ROOT))
        section = re.search(r'RowOfSection\(L"(\w+)"\)', text)
        if section:
            answered[section.group(1)] = set(re.findall(r"\.control = (IDC_\w+)", text))
            for adapter in glob.glob(os.path.join(ROOT, "setup", section.group(1) + "_*.cpp")):
                answered[section.group(1)] |= set(re.findall(r"m_(?:tree|list)\((?:::GetDlgItem\()?page, (IDC_\w+)\)",
                                                             read(os.path.relpath(adapter, ROOT))))
    return answered


class PagesTest(unittest.TestCase):
    def test_every_shape_of_a_written_page_has_a_prototype_and_nothing_else_has_one(self):
        prototypes = re.findall(r"^ROLLOUTUI_PAGE \w+ (\w+)\(", read("include/rollout_ui.h"), re.MULTILINE)
        exports = [page.wizard_export for page in written_pages()]
        exports += [page.tab_export for page in written_pages() if page.has_tab]
        self.assertEqual(sorted(prototypes), sorted(exports))

    def test_every_dialog_of_the_pages_belongs_to_one(self):
        templates = [page.wizard_template for page in written_pages()]
        templates += [page.tab_template for page in written_pages() if page.has_tab]
        self.assertEqual(sorted(set(dialogs()) - INNER_DIALOGS), sorted(templates))

    def test_every_written_page_has_its_side_pane_in_every_language(self):
        folders = [os.path.dirname(path) for path in glob.glob(os.path.join(ROOT, "resources", "*", "language.rc"))]
        self.assertTrue(folders)
        missing = [os.path.relpath(os.path.join(folder, page.help_file), ROOT) for folder in folders
                   for page in written_pages() if not os.path.exists(os.path.join(folder, page.help_file))]
        self.assertEqual(missing, [])

    def test_what_can_be_entered_on_a_page_can_be_answered_and_the_other_way_round(self):
        answered = answered_controls()
        for page in written_pages():
            with self.subTest(page=page.stem):
                entries = entries_of(page.wizard_template)
                if page.has_tab:
                    entries |= entries_of(page.tab_template)
                self.assertEqual(answered.pop(page.section, set()), entries)
        self.assertEqual(answered, {}, "sections of no page")

    def test_both_shapes_of_a_page_let_the_same_be_entered(self):
        """But for what the tab pages of workstations alone have: the settings of the product's profile."""
        tabs_own = {"WorkstationSetting": {"IDC_BROWSER_REQUIRED", "IDC_SHEET_FORMAT", "IDC_PROFILE_NAME"}}
        for page in written_pages():
            if page.has_tab:
                with self.subTest(page=page.stem):
                    self.assertEqual(entries_of(page.tab_template),
                                     entries_of(page.wizard_template) | tabs_own.get(page.stem, set()))

    def test_every_shape_of_a_written_page_has_a_test_of_its_own(self):
        folders = tuple(os.path.dirname(name) + "/" for name in tracked("CMakeLists.txt")
                        if name.startswith("tests/") and re.search(r"^rollout_add_page_test\(", read(name), re.MULTILINE))
        self.assertIn("tests/pages/", folders)
        tests = "\n".join(read(name) for name in tracked(".cpp", ".h") if name.startswith(folders))
        untested = [export for page in written_pages() for export in (page.wizard_export, page.tab_export)
                    if export and not re.search(r"\b%s\b" % export, tests)]
        self.assertEqual(untested, [])

    def test_a_caption_begins_with_a_word_of_its_page(self):
        texts = dict(re.findall(r'^    (IDS_TAB_\w+) "([^"]*)"', read("resources/en-US/strings.rc"), re.MULTILINE))
        for page in read_pages():
            if page.has_tab:
                with self.subTest(page=page.stem):
                    first = texts.pop(page.caption).split(" ")[0].lower().rstrip("s")
                    words = [word.lower().rstrip("s") for word in re.findall(r"[A-Z][a-z]*", page.stem)]
                    self.assertIn(first, words)
        self.assertEqual(texts, {}, "captions of no page")

    def test_no_second_list_of_pages_is_kept(self):
        """Three pages in one file are a list. Tests name the pages that their story is about."""
        lists = []
        for name in tracked(".cpp", ".h", ".py", ".sh", ".txt", ".cmake", ".rc"):
            if name not in LISTS and not name.startswith(("tests/", "build/")):
                text = re.sub(r"//.*|#include.*", "", read(name))
                named = [page.stem for page in read_pages() if re.search(r"\b%s(Dialog|Page)?\b" % page.stem, text)]
                lists += [(name, named)] if len(named) >= 3 else []
        self.assertEqual(lists, [])


class PageTableReaderTest(unittest.TestCase):
    def rows(self, *changes):
        text = read(os.path.relpath(HEADER, ROOT))
        for was, becomes in changes:
            self.assertIn(was, text)
            text = text.replace(was, becomes, 1)
        with tempfile.NamedTemporaryFile("w", encoding="utf-8", suffix=".h") as file:
            file.write(text)
            file.flush()
            return read_pages(file.name)

    def test_every_row_is_read_with_its_fields(self):
        pages = {page.stem: page for page in self.rows()}
        self.assertEqual(len(pages), read("include/page_table.h").count(".stem = "))
        online = pages["OnlineResources"]
        self.assertEqual((online.tab_export, online.section, online.tab_template, online.of_product),
                         ("OnlineResourcesPage", "resources", "IDD_ONLINE_RESOURCES_TAB", True))
        self.assertEqual((pages["DeploymentFailed"].role, pages["BeginDeployment"].of_product),
                         ("PageRole::Failed", False))

    def test_a_row_of_another_form_is_an_error(self):
        for was, becomes in (('{.stem = L"ServicePack"', '{.section = L"x", .stem = L"ServicePack"'),
                             ('.stem = L"ServicePack"', '.stem = L"Service" L"Pack"'),
                             ('.bTab = true', '.bTab = (1 == 1)'),
                             ("PAGE_TABLE[] = {", "PAGES[] = {")):
            with self.subTest(becomes=becomes), self.assertRaises(ValueError):
                self.rows((was, becomes))


if __name__ == "__main__":
    unittest.main()

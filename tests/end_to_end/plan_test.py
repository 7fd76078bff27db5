"""The review before a build: what --plan writes is what the build then does, and a refusal is the build's own."""

import json
import os
import re
import sys

from wizard import MEDIA, ROOT, WizardTest, text_of, tree_of, windows_path

sys.path.insert(0, os.path.join(ROOT, "scripts"))
from page_table import written_pages

CHANGES = ("--set", "resources.parts_bay=no", "--set", "notices.feeds=no")
# Letters that the database's code page lacks; the page takes them.
REFUSED = ("--set", "notices.site_channel=yes", "--set", "notices.site_feed=\\\\server\\feed.xml", "--set",
           "notices.on_question.feed_not_found=yes", "--set", "notices.site_name=\u4e2d\u6587")

# Something else than proposed on each page that asks for anything; an answer that is only kept, and an empty one, among them.
EACH_PAGE = """[begin]
name = Office
platform = x64
on_question.local_location = yes
[settings]
network_log = yes
log_folder = \\\\server\\logs
install_mode = progress
on_question.doubtful_log_folder = yes
[workstation]
desktop_shortcut = no
shortcut = "Anne's plans", "/p \"\"A b\"\" /set C:\\x"
[workstation "Zolt Viewer 2027"]
shortcut = "V", "/v"
[paths]
support_path = Support Files
support_path = "C:\\Standards, all"
log_file_path =
[files "Zolt 2027"]
folder = "<root>", "Company"
file = "<root>\\Company", "added.txt"
drive = X:
[resources]
parts_bay = no
[notices "Zolt 2027"]
site_channel = yes
site_feed = \\\\server\\feeds\\site.xml
site_name = News
on_question.feed_not_found = yes
[notices "Zolt Viewer 2027"]
feeds = no
site_channel = no
site_name.kept = Kept
[service_pack]
choice = none
"""
QUESTION = "on_question."


class Answer:
    """What an answers file holds of one key: whether it was changed, and its value as far as it stands alone."""

    def __init__(self, key, value, changed):
        self.word, self.value, self.changed = key.split(".")[0], value, changed


def answers_by_page(path):
    """The answers of a file by page and product's name, empty for a page of none."""
    pages = {}
    changed = False
    for line in text_of(path).splitlines():
        section = re.match(r'\[(\w+)(?: "(.*)")?\]$', line)
        if section:
            found = pages.setdefault((section.group(1), section.group(2) or ""), [])
        elif line.startswith("# Changed from "):
            changed = True
        elif line.startswith("# As the page "):
            changed = False
        elif pages and line and not line.startswith(("#", QUESTION)):
            key, value = line.split(" =", 1)
            found.append(Answer(key, value.strip(), changed))
    return pages


def said_by_page(plan):
    """The lines below each page of a plan in JSON, by section and product's name."""
    sections = {page.wizard_export: page.section for page in written_pages()}
    chosen = [line for line in plan["review"] if line["text"] == "What was chosen"][0]
    pages = {}
    for line in chosen["lines"]:
        for page in [line] if "page" in line else line["lines"]:
            pages[sections[page["page"]], "" if page is line else line["text"]] = page["lines"]
    return pages


class Line:
    """A line of a review with those below it."""

    def __init__(self, mark, text):
        self.mark, self.text, self.lines = mark, text, []

    def find(self, beginning):
        found = [line for line in self.lines if line.text.startswith(beginning)]
        assert len(found) == 1, "%d lines begin with %r below %r" % (len(found), beginning, self.text)
        return found[0]

    def texts(self):
        return [line.text for line in self.lines]


def read_text(text):
    """The tree of a review's text, as setup/review_document.h says it is written."""
    top = Line("", "")
    open_lines = [top]
    for line in text.splitlines():
        mark, rest = line[:2], line[2:]
        depth = (len(rest) - len(rest.lstrip(" "))) // 2
        assert mark in ("  ", "* ", "! ") and depth < len(open_lines), line
        read = Line(mark.strip(), rest[2 * depth:])
        open_lines[depth].lines.append(read)
        open_lines[depth + 1:] = [read]
    return top


def read_json(text):
    def line_of(values):
        assert not set(values) - {"text", "changed", "warning", "page", "product", "lines"}, values
        line = Line("!" if values.get("warning") else "*" if values.get("changed") else "", values["text"])
        line.lines = [line_of(below) for below in values.get("lines", [])]
        return line
    values = json.loads(text)
    assert sorted(values) == ["review", "version"] and values["version"] == 1, values.keys()
    top = Line("", "")
    top.lines = [line_of(below) for below in values["review"]]
    return top


def shown(line, depth=0):
    return "".join("%s%s%s\n%s" % (below.mark.ljust(2), "  " * depth, below.text, shown(below, depth + 1))
                   for below in line.lines)


def numbers_of(line):
    """The digits, but for those of a size in MB, which are rounded."""
    return [int(number) for number in re.findall(r"\d+(?! MB)\b", line.text)]


class PlanTest(WizardTest):
    def setUp(self):
        super().setUp()
        self.file = os.path.join(self.folder, "plan.txt")

    def plan(self, answers, *words, code=0, file=None, **options):
        file = file or self.file
        before = tree_of(self.out)
        run = self.wizard(answers, "--plan", windows_path(file), *words, **options)
        self.assertEqual(run.code, code, run.output)
        self.assertEqual(tree_of(self.out), before, "planning changed the location")
        self.assertNotIn("Building", run.output)
        text = text_of(file)
        return read_json(text) if file.lower().endswith(".json") else read_text(text)

    def logged_review(self, run):
        """What the run's output has of the review."""
        lines = run.output.splitlines()
        first = [number for number, line in enumerate(lines) if re.match(r"(  |! )This can('t)? be built", line)]
        self.assertEqual(len(first), 1, run.output)
        last = first[0] + 1
        while last < len(lines) and lines[last][:2] in ("  ", "* ", "! ") and not lines[last].startswith("  Preparing"):
            last += 1
        return "\n".join(lines[first[0]:last]) + "\n"

    def without_free_space(self, text):
        return re.sub(r"; free: \d+ MB", "", text)

    def assert_built_as_planned(self, plan, folder):
        with open(os.path.join(folder, "Changes.json"), encoding="utf-8") as file:
            changes = json.load(file)
        heading = plan.find("What is changed in the databases")
        self.assertEqual(heading.texts(), ["%s (%s)" % (of["file"], of["product"]) for of in changes["databases"]])
        for line, database in zip(heading.lines, changes["databases"]):
            counted = {}
            for row in database["rows"]:
                table = counted.setdefault(row["table"], {"added": 0, "changed": 0, "removed": 0})
                table[row["change"]] += 1
            if database["oldPackageCode"] == database["newPackageCode"]:
                self.assertEqual(line.texts(), ["Not changed: the file is copied byte for byte."])
                continue
            line.find("A new package code in place of " + database["oldPackageCode"])
            said = {}
            for table in line.find("Rows: ").lines:
                name, counts = table.text.split(": ")
                said[name] = {"added": 0, "changed": 0, "removed": 0}
                for count in counts.split(", "):
                    number, what = count.split(" ")
                    said[name][what] = int(number)
            self.assertEqual(said, counted)
        with open(os.path.join(folder, "Manifest.txt"), encoding="utf-8-sig") as file:
            manifest = dict((line.split(" ", 2)[2], int(line.split(" ", 2)[1])) for line in file.read().splitlines()[1:])
        written = {"Install.cmd", "Uninstall.cmd", "ReadMe.txt", "Changes.txt", "Changes.json", "Build.log", "Additions.txt",
                   "Answers.txt", "Deployment.xml", "Image\\Setup.xml"} | {of["file"] for of in changes["databases"]}
        copied = [size for name, size in manifest.items()
                  if name not in written and not re.search(r"\\TARN\d{4}\.cab$|^Image\\LogNames\\", name)]
        amounts = plan.find("What is copied, and where to")
        self.assertEqual(numbers_of(amounts.find("Copied as they are: "))[:2], [len(copied), sum(copied)])
        self.assertEqual(numbers_of(amounts.find("In all, ")), [len(manifest) + 1])
        self.assertEqual(amounts.lines[0].text, 'The deployment: "%s"' % windows_path(folder))

    def assert_plan_holds(self, answers, *words, name, **options):
        """Plans, builds, and holds the two against each other. The plan."""
        plan = self.plan(answers, *words, **options)
        run = self.wizard(answers, *words, **options)
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(self.without_free_space(self.logged_review(run)), self.without_free_space(shown(plan)))
        self.assert_built_as_planned(plan, os.path.join(self.out, name))
        return plan

    def test_what_is_planned_is_built_in_each_mode(self):
        plan = self.assert_plan_holds(self.begin("First"), *CHANGES, name="First")
        self.assertEqual(plan.lines[0].text, "This can be built. Nothing has been built yet.")
        chosen = plan.find("What was chosen")
        name = [line for line in chosen.lines[0].lines if line.text.startswith("Name: ")][0]
        self.assertEqual((name.mark, name.text), ("*", 'Name: "First"'))
        image = os.path.join(self.out, "First", "Image")
        self.assert_plan_holds(self.begin("Second", mode="create_from", base="First"), media=image, name="Second")
        modify = self.answers("[begin]\nmode = modify\nbase = First\non_question.replace = yes\n"
                              "on_question.local_location = yes\n")
        plan = self.assert_plan_holds(modify, "--set", "resources.round_trip=no", media=image, name="First")
        amounts = plan.find("What is copied, and where to")
        self.assertEqual(amounts.find("It replaces the deployment").mark, "!")

    def test_what_is_planned_is_built_of_one_package(self):
        package = os.path.join(MEDIA, "x64", "Zolt", "Zolt2027.msi")
        self.assert_plan_holds(self.begin("One"), *CHANGES, media=package, name="One")

    def test_what_is_planned_is_built_by_tabs(self):
        self.assert_plan_holds(self.begin("Tabs"), *CHANGES, media=self.media_with_tabs(), name="Tabs")

    def test_each_page_says_its_answers_and_marks_those_that_it_did_not_propose(self):
        with open(os.path.join(self.folder, "added.txt"), "w", encoding="utf-8") as file:
            file.write("added")
        answers = self.answers(EACH_PAGE)
        plan = os.path.join(self.folder, "plan.json")
        self.plan(answers, file=plan)
        self.assert_plan_holds(answers, name="Office")
        said = said_by_page(json.loads(text_of(plan)))
        built = answers_by_page(os.path.join(self.out, "Office", "Answers.txt"))
        asked = {page.section for page in written_pages() if page.role in ("PageRole::Target", "PageRole::Choosing")}
        self.assertEqual({section for section, _ in said}, asked)
        self.assertLessEqual(set(built), set(said))
        for page, lines in said.items():
            expected = built.get(page, [])
            if page[0] == "begin":  # the deployment's own answers are those of one that is created, wherever it lies
                lines = [line for line in lines if line["text"].split(":")[0] not in ("Mode", "Name", "Location")]
                expected = [answer for answer in expected if answer.word not in ("mode", "name")]
            lines = [line for line in lines if not line["text"].startswith(("Answer to the question ", "Nothing is entered here."))]
            marked, cut = [], set()
            for line in lines:
                word = line["text"].split(": ")[0]
                rest = re.search(r": and (\d+) more$", line["text"])  # of those that nobody changed
                cut |= {word} if rest else set()
                marked += [(word, line.get("changed", False))] * (int(rest.group(1)) if rest else 1)
            self.assertEqual(sorted(marked), sorted((answer.word.replace("_", " ").capitalize(), answer.changed)
                                            for answer in expected), page)
            texts = {line["text"].replace(" (kept, but not in effect)", "") for line in lines}
            for answer in expected:
                word = answer.word.replace("_", " ").capitalize()
                # Of texts and paths, the two forms differ.
                if not re.search(r'["\\]', answer.value) and (answer.changed or word not in cut):
                    key = word + ": "
                    forms = {key + answer.value.replace("_", " "), key + '"%s"' % answer.value}
                    self.assertTrue(texts & (forms if answer.value else {key + "nothing"}), (page, answer.word, texts))
        changed = {section for (section, product), lines in said.items() for line in lines if line.get("changed")}
        self.assertEqual(asked - changed, {"contact", "service_pack"})

    def test_json_holds_the_same_lines_as_text(self):
        answers = self.begin("Office")
        json_file = os.path.join(self.folder, "plan.JSON")
        as_text = self.plan(answers, *CHANGES)
        as_json = self.plan(answers, *CHANGES, file=json_file)
        self.assertEqual(self.without_free_space(shown(as_json)), self.without_free_space(shown(as_text)))
        with open(json_file, "rb") as file:
            self.assertEqual(file.read(1), b"{")
        with open(self.file, "rb") as file:
            self.assertEqual(file.read(3), b"\xef\xbb\xbf")

    def test_check_logs_the_same_review(self):
        answers = self.begin("Office")
        plan = self.plan(answers)
        run = self.wizard(answers, "--check")
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(self.without_free_space(self.logged_review(run)), self.without_free_space(shown(plan)))

    def test_a_refusal_is_the_builds_own(self):
        answers = self.begin("Office")
        plan = self.plan(answers, *REFUSED, code=1603)
        run = self.wizard(answers, *REFUSED)
        self.assertEqual(run.code, 1603, run.output)
        verdict = plan.lines[0]
        self.assertEqual(verdict.mark, "!")
        self.assertRegex(verdict.text, r"^This can't be built \(code 1113\): ")
        cause = run.output.strip().splitlines()[-1].split(": ", 1)[1]
        self.assertEqual(verdict.text.split(": ", 1)[1], cause)
        self.assertEqual(self.logged_review(run), shown(plan))

    def test_a_run_that_a_page_ends_leaves_no_plan(self):
        with open(self.file, "w", encoding="utf-8") as file:
            file.write("of an earlier run\n")
        run = self.wizard(self.begin("a;b"), "--plan", windows_path(self.file))
        self.assertEqual(run.code, 22, run.output)
        self.assertFalse(os.path.exists(self.file))

    # ---- where it may lie

    def test_a_plan_replaces_none_of_the_runs_other_files(self):
        answers = self.begin("Office")
        log = os.path.join(self.folder, "setup.log")
        record = os.path.join(self.folder, "record.txt")
        words = ("--log", windows_path(log), "--record", windows_path(record))
        before = text_of(answers)
        for file in (answers, log, record):
            with self.subTest(file=file):
                run = self.wizard(answers, *words, "--plan", windows_path(file))
                self.assertEqual(run.code, 20, run.output)
                self.assertIn("--plan would replace", run.output.splitlines()[-1])
                self.assertEqual(text_of(answers), before)

    def test_a_plan_in_a_deployment_is_refused_before_the_run(self):
        folder = self.build("Office")
        run = self.wizard(self.begin("Second"), "--plan", windows_path(os.path.join(folder, "plan.txt")))
        self.assertEqual(run.code, 20, run.output)
        self.assertIn("lies in the deployment", run.output.splitlines()[-1])
        self.assertFalse(os.path.exists(os.path.join(folder, "plan.txt")))

    def test_a_plan_that_cannot_be_written_ends_the_run_before_it_begins(self):
        run = self.wizard(self.begin("Office"), "--plan", windows_path(os.path.join(self.folder, "none", "plan.txt")))
        self.assertEqual(run.code, 1603, run.output)
        self.assertIn("The plan can't be written to", run.output.splitlines()[-1])

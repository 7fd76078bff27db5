"""What Setup.exe --compare says of two deployments that it built: the same answers, a moved one, other answers, and folders that
can't be read."""

import atexit
import json
import os
import re
import shutil
import subprocess
import tempfile

from wizard import PROGRAM_FOLDER, RUN_SECONDS, WizardTest, text_of, tree_of, windows_path

EQUAL, DIFFERENT, UNDETERMINED = 0, 28, 29
HOSTILE = 'a" -> "b'
SAME = '''[settings]
install_mode = silent
[files "Zolt 2027"]
folder = "<root>", "Plans"
file = "<root>\\Plans", "plan.txt"
file = "<root>", "kept.txt"
'''
OTHER = '''[settings]
install_mode = progress
[resources "Zolt 2027"]
parts_bay = no
[notices "Zolt Viewer 2027"]
site_channel = yes
site_feed = \\\\server\\feeds\\site.xml
site_name = %s
on_question.feed_not_found = yes
[files "Zolt 2027"]
folder = "<root>", "Plans"
file = "<root>\\Plans", "plan.txt"
file = "<root>\\Plans", "more.txt"
file = "<root>", "other\\kept.txt"
''' % HOSTILE

KINDS = ("setting", "product", "answer", "command", "row", "added", "patch", "file")
QUOTED = r'"((?:[^"]|"")*)"'


def plain(quoted):
    return re.sub(r"<U\+([0-9A-F]{4})>", lambda code: chr(int(code.group(1), 16)), quoted.replace('""', '"'))


def facts_of_text(text):
    """The facts of a report, read by its grammar."""
    head, _, body = text.lstrip("\ufeff").replace("\r\n", "\n").partition("\n\n")
    assert re.fullmatch(r"What two deployments differ in\nA: .*\nB: .*\nDifferences: \d+\n?(?:Not compared: .*\n?)?", head), head
    facts = []
    for line in body.splitlines():
        match = re.fullmatch(r'(%s)(?: of %s)?((?: %s)*): (?:%s -> %s|only in ([AB])((?:, (?:%s = )?%s)*))' % (
            "|".join(KINDS), QUOTED, QUOTED.replace("(", "(?:", 1), QUOTED, QUOTED, QUOTED.replace("(", "(?:", 1),
            QUOTED.replace("(", "(?:", 1)), line)
        assert match, line
        kind, product, items, old, new, only, values = match.groups()
        values = re.findall(r', (?:%s = )?%s' % (QUOTED, QUOTED), values or "")
        pairs = [[plain(name) or None, plain(value) if only == "A" else None, plain(value) if only == "B" else None]
                 for name, value in values] if only else [[None, plain(old), plain(new)]]
        facts.append([kind, plain(product) if product else None, [plain(item) for item in re.findall(QUOTED, items)], only,
                      pairs])
    assert len(facts) == int(re.search(r"Differences: (\d+)", head).group(1)), head
    return facts


def facts_of_json(text):
    return [[fact["kind"], fact["product"], fact["item"], fact["only"],
             [[value["name"], value["a"], value["b"]] for value in fact["values"]]]
            for fact in json.loads(text)["differences"]]


def swapped(facts):
    return [[kind, product, item, {"A": "B", "B": "A"}.get(only), [[name, new, old] for name, old, new in values]]
            for kind, product, item, only, values in facts]


class CompareTest(WizardTest):
    maxDiff = None

    shared = ""  # each test runs by itself, so that the first one makes it

    def setUp(self):
        super().setUp()
        if CompareTest.shared:
            return
        CompareTest.shared = tempfile.mkdtemp(prefix="rollout-compare-")
        atexit.register(shutil.rmtree, CompareTest.shared, ignore_errors=True)
        for name, content in (("plan.txt", "1"), ("more.txt", "2"), ("kept.txt", "one"), ("other/kept.txt", "two")):
            path = os.path.join(self.shared, *name.split("/"))
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="ascii") as file:
                file.write(content)

    def built(self, name, sections):
        """A deployment, which is built once for all tests."""
        folder = os.path.join(self.shared, "Out", name)
        if not os.path.isdir(folder):
            os.makedirs(os.path.dirname(folder), exist_ok=True)
            answers = os.path.join(self.shared, name + ".txt")
            with open(answers, "w", encoding="utf-8") as file:
                file.write("rollout-answers 1\n[begin]\nname = %s\nplatform = x64\non_question.local_location = yes\n%s" %
                           (name, sections))
            run = self.wizard(answers, out=windows_path(os.path.dirname(folder)))
            self.assertEqual(run.code, 0, run.output)
        return folder

    def compare(self, first, second, *words):
        process = subprocess.run(["taskset", "-c", os.environ.get("ROLLOUT_CORE", "0"), "wine",
                                  os.path.join(PROGRAM_FOLDER, "Setup.exe"), "--compare", windows_path(first),
                                  windows_path(second), *words], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                 timeout=RUN_SECONDS, check=False)
        return self.run_of(process.stdout, process.returncode)

    def facts(self, first, second):
        """The facts of the output, of the text and of the JSON, which are the same."""
        text, data = os.path.join(self.folder, "report.txt"), os.path.join(self.folder, "report.json")
        run = self.compare(first, second, "--report", windows_path(text))
        again = self.compare(first, second, "--report", windows_path(data))
        facts = facts_of_text(text_of(text))
        self.assertEqual(facts_of_json(text_of(data)), facts)
        body = run.output.replace("\r\n", "\n").rpartition("Exit code")[0]
        self.assertEqual(facts_of_text(body), facts)
        self.assertEqual((run.code, again.code), (DIFFERENT if facts else EQUAL,) * 2, run.output)
        return facts

    def copy_of(self, deployment, name="Elsewhere"):
        copy = os.path.join(self.folder, "moved", name)
        shutil.copytree(deployment, copy)
        return copy

    def test_two_builds_of_the_same_answers_are_equal(self):
        self.assertEqual(self.facts(self.built("North", SAME), self.built("South", SAME)), [])

    def test_a_deployment_that_was_moved_and_renamed_is_equal(self):
        deployment = self.built("North", SAME)
        before = tree_of(deployment)
        self.assertEqual(self.facts(deployment, self.copy_of(deployment)), [])
        self.assertEqual(tree_of(deployment), before)

    def test_other_answers_are_named_with_what_came_of_them(self):
        first, second = self.built("North", SAME), self.built("East", OTHER)
        facts = self.facts(first, second)
        self.assertIn(["setting", None, ["installMode"], None, [[None, "2", "3"]]], facts)
        self.assertIn(["answer", None, ["settings", "install_mode"], None, [[None, "silent", "progress"]]], facts)
        self.assertIn(["command", None, ["Install.cmd", "DISPLAY_OPTION"], None, [[None, "/qn", "/qb-!"]]], facts)
        self.assertIn(["answer", "Zolt 2027", ["resources", "parts_bay"], None, [[None, "yes", "no"]]], facts)
        self.assertIn(["row", "Zolt Viewer 2027", ["Property", "ZOLT_SITEMGR_DISPLAY_NAME"], "B"],
                      [fact[:4] for fact in facts])
        self.assertIn(HOSTILE, [value[2] for fact in facts for value in fact[4]])
        added = [fact[2:4] for fact in facts if fact[0] == "added"]
        self.assertEqual([one for one in added if one[0][-1] != "source"], [
            [["file", "Zolt 2027\\Plans\\more.txt"], "B"],
            [["file", "Zolt 2027\\kept.txt", "contents"], None]])
        self.assertEqual([fact for fact in facts if fact[0] in ("file", "product", "patch")], [])
        other_way = self.facts(second, first)
        self.assertEqual(sorted(map(str, swapped(other_way))), sorted(map(str, facts)))

    def test_one_file_and_one_line_of_a_command_are_named_alone(self):
        deployment = self.built("North", SAME)
        copy = self.copy_of(deployment)
        with open(os.path.join(copy, "Image", "own.txt"), "w", encoding="ascii") as file:
            file.write("own")
        path = os.path.join(copy, "Install.cmd")
        text = text_of(path)
        with open(path, "w", encoding="utf-8", newline="") as file:
            file.write(text.replace("/norestart", "/forcerestart", 1))
        self.assertEqual([fact[:4] for fact in self.facts(deployment, copy) if fact[0] != "command"],
                         [["file", None, ["Image\\own.txt"], "B"]])
        commands = [fact for fact in self.facts(deployment, copy) if fact[0] == "command"]
        self.assertEqual(sorted(fact[3] for fact in commands), ["A", "B"], commands)

    def test_what_cannot_be_read_is_named_with_its_reason(self):
        deployment = self.built("North", SAME)
        empty = os.path.join(self.folder, "Empty")
        os.makedirs(empty)
        missing = os.path.join(self.folder, "Missing")
        damaged = self.copy_of(deployment, "Damaged")
        package = os.path.join(damaged, "Image", "x64", "Zolt", "Zolt2027.msi")
        with open(package, "r+b") as file:
            file.write(b"junk" * 128)
        unfit = self.copy_of(deployment, "Unfit")
        with open(os.path.join(unfit, "Answers.txt"), "w", encoding="ascii") as file:
            file.write("something else\n")
        for folder, named in ((empty, empty), (missing, missing), (damaged, package),
                              (unfit, os.path.join(unfit, "Answers.txt"))):
            for pair in ((deployment, folder), (folder, deployment)):
                with self.subTest(pair=pair):
                    report = os.path.join(self.folder, "none.txt")
                    run = self.compare(*pair, "--report", windows_path(report))
                    self.assertEqual(run.code, UNDETERMINED, run.output)
                    self.assertIn(windows_path(named), run.output.strip().splitlines()[-1])
                    self.assertFalse(os.path.exists(report))

    def test_a_deployment_without_answers_has_one_fact_of_them(self):
        deployment = self.built("North", SAME)
        copy = self.copy_of(deployment)
        os.remove(os.path.join(copy, "Answers.txt"))
        self.assertEqual(self.facts(deployment, copy), [["answer", None, ["Answers.txt"], "A", []]])

    def test_the_report_does_not_go_into_a_deployment(self):
        deployment = self.built("North", SAME)
        copy = self.copy_of(deployment)
        run = self.compare(deployment, copy, "--report", windows_path(os.path.join(copy, "report.txt")))
        self.assertEqual(run.code, 20, run.output)
        self.assertFalse(os.path.exists(os.path.join(copy, "report.txt")))

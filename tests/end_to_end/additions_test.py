"""Additional files in whole runs: answered, recorded and answered again, in pages and tabs, created, modified and built upon,
and what arrives on a workstation."""

import os
import re
import shutil
import subprocess
import sys

from wizard import MEDIA, ROOT, WizardTest, text_of, windows_path

BEGIN = "[begin]\nname = Sample\nplatform = x64\non_question.local_location = yes\non_question.replace = yes\n"
CHANGE = "[begin]\nmode = %s\nbase = Sample\non_question.local_location = yes\non_question.replace = yes\n"
LINES = '''[files "Zolt 2027"]
folder = "<root>", "Company"
folder = "<root>\\Company", "Empty"
folder = "<root>\\Company", "Plans"
file = "<root>", "one\\plan.txt"
file = "<root>\\Company\\Plans", "two\\plan.txt"
rename = "<root>\\Company\\Plans", "Floor plans"
folder_tree = "<root>\\Company", "tree"
remove = "<root>\\Company\\tree\\old.txt"
[files "Zolt Viewer 2027"]
drive = D:
file = "D:", "one\\plan.txt"
'''
CHANGES = '''[files "Zolt 2027"]
remove = "<root>\\Company\\tree\\inner"
file = "<root>", "two\\plan.txt"
on_question.replace = yes
folder = "<root>\\Company", "New"
file = "<root>\\Company\\New", "later.txt"
'''
KEPT = ", which is not on this computer; the copy in the earlier deployment was used"


def recorded(path):
    """The additions that a run has written, by section. Whether something was there to be cleared or asked about before depends
    on how they came about."""
    sections, lines = {}, []
    for line in text_of(path).splitlines():
        if line.startswith("["):
            lines = sections.setdefault(line, []) if line.startswith("[files") else []
        elif line and not line.startswith(("#", "clear = ", "on_question.")):
            lines.append(line)
    return {section: lines for section, lines in sections.items() if lines}


class AdditionsTest(WizardTest):
    maxDiff = None

    def setUp(self):
        super().setUp()
        for name in ("one/plan.txt", "two/plan.txt", "later.txt", "tree/old.txt", "tree/top.txt", "tree/inner/deep.txt"):
            os.makedirs(os.path.dirname(self.source(name)), exist_ok=True)
            with open(self.source(name), "w", encoding="utf-8") as file:
                file.write(name)
        os.makedirs(self.source("tree/empty"))

    def source(self, name):
        return os.path.join(self.folder, *name.split("/"))

    def answers_for(self, name, text):
        """A file of that name beside the sources."""
        shutil.move(self.answers(text), self.source(name))
        return self.source(name)

    def run_well(self, answers, *words, media=MEDIA, out=None):
        run = self.wizard(answers, *words, media=media, out=out)
        self.assertEqual(run.code, 0, run.output)
        return run

    def additions(self, deployment):
        """What the deployment says of itself."""
        return [line for line in text_of(os.path.join(deployment, "Additions.txt")).splitlines() if line]

    def assert_built_again(self, deployment, media=MEDIA):
        """From the maker's media by its own answers, elsewhere."""
        place = self.source("again")
        shutil.rmtree(place, ignore_errors=True)
        os.makedirs(place)
        again = os.path.join(place, os.path.basename(deployment))
        self.run_well(os.path.join(deployment, "Answers.txt"), media=media, out=windows_path(place))
        self.assertEqual(recorded(os.path.join(again, "Answers.txt")), recorded(os.path.join(deployment, "Answers.txt")))
        self.assertEqual(self.additions(again), self.additions(deployment))

    def look(self, deployment, *answers):
        words = [word for path in answers for word in ("--answers", path)]
        return subprocess.run([sys.executable, os.path.join(ROOT, "scripts", "workstation.py"), deployment, "--prefix",
                               os.environ["WINEPREFIX"], "--logs", self.source("logs"), *words], capture_output=True, text=True)

    def test_additions_are_recorded_as_they_end_up_and_built_again(self):
        self.run_well(self.answers_for("first.txt", BEGIN + LINES))
        sample = os.path.join(self.out, "Sample")
        # The deployment's place isn't part of its answers; these sources lie beside the folder of deployments.
        source = windows_path(self.folder)
        self.assertEqual(recorded(os.path.join(sample, "Answers.txt")), {
            '[files "Zolt 2027"]': [
                'file = "<root>", "%s\\one\\plan.txt"' % source, 'folder = "<root>", "Company"',
                'folder = "<root>\\Company", "Empty"', 'folder = "<root>\\Company", "Floor plans"',
                'file = "<root>\\Company\\Floor plans", "%s\\two\\plan.txt"' % source,
                'folder = "<root>\\Company", "tree"', 'file = "<root>\\Company\\tree", "%s\\tree\\top.txt"' % source,
                'folder = "<root>\\Company\\tree", "empty"', 'folder = "<root>\\Company\\tree", "inner"',
                'file = "<root>\\Company\\tree\\inner", "%s\\tree\\inner\\deep.txt"' % source],
            '[files "Zolt Viewer 2027"]': ["drive = D:", 'file = "D:", "%s\\one\\plan.txt"' % source]})
        self.assert_built_again(sample)

    def test_tabs_have_the_same_additions_as_pages(self):
        answers = self.answers_for("first.txt", BEGIN + LINES)
        run = self.run_well(answers, media=self.media_with_tabs())
        self.assertIn("Page files of Zolt 2027 (tab)", run.output)
        sample = os.path.join(self.out, "Sample")
        tabs = self.additions(sample), recorded(os.path.join(sample, "Answers.txt"))
        self.run_well(answers)
        self.assertEqual(tabs, (self.additions(sample), recorded(os.path.join(sample, "Answers.txt"))))

    def test_what_was_modified_is_built_again_and_its_record_modifies_again_without_the_base_s_sources(self):
        first = self.answers_for("first.txt", BEGIN + LINES)
        changes = self.answers_for("changes.txt", CHANGE % "modify" + CHANGES)
        self.run_well(first)
        sample, before = os.path.join(self.out, "Sample"), self.source("before")
        shutil.copytree(self.out, before)
        record = self.source("record.txt")
        self.run_well(changes, "--record", windows_path(record), media=os.path.join(sample, "Image"))
        result = self.look(sample, first, changes)
        counted = "Of 5 added files and 7 added folders and drives, "
        self.assertIn(counted + "all are there, byte for byte.", result.stdout, result.stderr)
        self.assertIn(counted + "nothing is left.", result.stdout, result.stderr)
        self.assert_built_again(sample, self.media_with_tabs())  # tabs offer more than pages, and all of it was recorded
        text = text_of(record)
        self.assertIn('clear = yes\nfile = "<root>", "two\\plan.txt"\n', text)
        self.assertNotIn('clear = yes', text[text.index('[files "Zolt Viewer 2027"]'):], "nobody changed those")
        shutil.move(self.source("tree"), self.source("gone"))  # but for what was changed, the base has the bytes
        self.run_well(record, media=os.path.join(before, "Sample", "Image"), out=windows_path(before))
        again = self.additions(os.path.join(before, "Sample"))
        self.assertIn(KEPT, "".join(again))
        self.assertEqual([line.replace(KEPT, "") for line in again], self.additions(sample))

    def test_what_was_built_upon_another_is_built_again_too(self):
        self.run_well(self.answers_for("first.txt", BEGIN + LINES))
        changes = self.answers_for("changes.txt", (CHANGE % "create_from").replace("base", "name = Second\nbase") + CHANGES)
        self.run_well(changes, media=os.path.join(self.out, "Sample", "Image"))
        second = os.path.join(self.out, "Second")
        self.assertNotEqual(self.additions(second), self.additions(os.path.join(self.out, "Sample")))
        self.assert_built_again(second)

    def test_what_cannot_be_added_ends_the_run_with_its_line_also_in_a_check(self):
        for lines, words in (('folder = "<root>\\Nowhere", "x"\n', r'The page has no "<root>\\Nowhere"'),
                             ('file = "<root>", "missing.txt"\n', r'missing\.txt": The file doesn\'t exist'),
                             ('remove = "<root>\\Fonts"\n', r'"<root>\\Fonts" came with the product')):
            with self.subTest(lines=lines):
                run = self.wizard(self.answers_for("bad.txt", BEGIN + '[files "Zolt 2027"]\ndrive = D:\n' + lines), "--check")
                self.assertEqual(run.code, 22, run.output)
                self.assertRegex(run.output.splitlines()[-1],
                                 r"bad\.txt\(9\): files\.%s: Zolt 2027: .*%s" % (lines.split()[0], words))
        self.assertEqual(os.listdir(self.out), [])

    def test_lines_of_the_command_line_replace_those_of_their_word(self):
        first = self.answers_for("first.txt", BEGIN + '[files]\nfile = "<root>", "one\\plan.txt"\nfolder = "<root>", "New"\n')
        run = self.wizard(first, "--check", "--set", 'files.file="<root>\\New", "%s"' % windows_path(self.source("later.txt")))
        self.assertEqual(run.code, 0, run.output)
        entered = re.findall(r"^  (?:file|folder) = .*", run.output, re.MULTILINE)
        self.assertEqual(entered, ["  folder = <root>, New",
                                   "  file = <root>\\New, " + windows_path(self.source("later.txt"))] * 2)

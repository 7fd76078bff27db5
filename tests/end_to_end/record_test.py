"""Where a run may write its answers, and that each run that ends by itself writes them."""

import os
import shutil
import subprocess
import tempfile

from run_ends_test import BEGIN, BrokenProgramTest, broken
from wizard import MEDIA, PROGRAM_FOLDER, WizardTest, text_of, windows_path

UNDER_WAY = "left by an earlier run\n"
MANY_LINES = 100000
LOOK_SECONDS = 0.02
MORE_SECONDS = 5  # of the processor, than a run with few lines; less than one is needed


def processor_seconds(number):
    """Of a process so far; 0 of one that has just ended."""
    try:
        with open("/proc/%d/stat" % number, encoding="utf-8", errors="replace") as file:
            fields = file.read().rpartition(")")[2].split()  # behind the name, which may hold blanks
    except OSError:
        return 0
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def has_ended(process):
    try:
        process.wait(LOOK_SECONDS)
    except subprocess.TimeoutExpired:
        return False
    return True


def write(path, text):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


class RecordTest(WizardTest):
    def setUp(self):
        super().setUp()
        self.record = os.path.join(self.folder, "record.txt")

    def run_recorded(self, *words, answers=None, record=None, **options):
        return self.wizard(answers or self.begin("Sample"), "--record", windows_path(record or self.record), *words, **options)

    def assert_refused(self, run, code, *words):
        self.assertEqual(run.code, code, run.output)
        for word in words:
            self.assertIn(word, run.output.splitlines()[-1])
        self.assertNotIn("Building", run.output)

    # ---- where it may lie

    def test_a_record_does_not_replace_the_log_however_it_is_spelled(self):
        log = os.path.join(self.folder, "setup.log")
        write(log, "earlier lines\n")
        os.link(log, os.path.join(self.folder, "linked.txt"))
        for name in ("setup.log", "SETUP.LOG", "Deployments\\..\\setup.log", "linked.txt"):
            with self.subTest(name=name):
                record = windows_path(self.folder) + "\\" + name
                run = self.wizard(self.begin("Sample"), "--log", windows_path(log), "--record", record)
                self.assert_refused(run, 20, "replace the log")
                self.assertIn("earlier lines", text_of(log))

    def test_a_record_does_not_replace_a_log_that_was_not_there(self):
        log = windows_path(os.path.join(self.folder, "setup.log"))
        run = self.wizard(self.begin("Sample"), "--log", log, "--record", log)
        self.assert_refused(run, 20, "replace the log")

    def test_a_record_does_not_replace_the_answers_under_another_name(self):
        answers = self.begin("Sample")
        before = text_of(answers)
        os.link(answers, self.record)
        self.assert_refused(self.run_recorded(answers=answers), 20, "replace the answers file")
        self.assertEqual(text_of(answers), before)

    def test_a_record_in_a_deployment_is_refused_before_the_run(self):
        deployment = self.build("Office")
        linked = os.path.join(self.folder, "linked")
        os.symlink(os.path.join(deployment, "Image"), linked)
        for record in (os.path.join(deployment, "record.txt"), os.path.join(deployment, "Image", "record.txt"),
                       os.path.join(deployment, "Answers.txt"), os.path.join(linked, "record.txt")):
            with self.subTest(record=record):
                before = os.path.exists(record)
                self.assert_refused(self.run_recorded(record=record), 20, "lies in the deployment", windows_path(deployment))
                self.assertEqual(os.path.exists(record), before)

    def test_a_file_of_the_name_of_the_unfinished_record_stays(self):
        write(self.record + ".tmp", "mine")
        run = self.run_recorded()
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(text_of(self.record + ".tmp"), "mine")
        self.assertIn("[begin]", text_of(self.record))
        self.assertEqual([name for name in os.listdir(self.folder) if name.endswith(".tmp")], ["record.txt.tmp"])

    # ---- how runs end

    def assert_without_pages(self, run, code):
        self.assertEqual(run.code, code, run.output)
        text = text_of(self.record)
        self.assertIn("exit code %d: " % code, text)
        self.assertNotIn("\n[", text)
        self.assertNotIn(UNDER_WAY, text)

    def test_runs_that_end_before_their_first_page_write_that(self):
        begin = self.begin("Sample")
        for code, options in ((21, {"words": ("--set", "begin.nonsense=1")}), (1603, {"media": self.folder}), (21, {"answers": os.path.join(self.folder, "missing.txt")})):
            with self.subTest(options=options):
                write(self.record, UNDER_WAY)
                run = self.run_recorded(*options.get("words", ()), answers=options.get("answers", begin),
                                        media=options.get("media", MEDIA))
                self.assert_without_pages(run, code)

    def test_a_second_failed_build_does_not_replace_the_answers_that_it_was_given(self):
        log = windows_path(os.path.join(self.folder, "setup.log"))
        kept = os.path.join(self.folder, "setup.answers.txt")
        second = os.path.join(self.folder, "setup.answers (2).txt")
        # The pages accept the name; the database's code page lacks its letters.
        bad_name = "notices.site_name=\u4e2d\u6587"
        channel = ("--set", "notices.site_channel=yes", "--set", "notices.site_feed=\\\\server\\a.xml", "--set",
                   "notices.on_question.feed_not_found=yes")
        run = self.wizard(self.begin("Sample"), "--log", log, *channel, "--set", bad_name)
        self.assertEqual(run.code, 1603, run.output)
        before = text_of(kept)
        run = self.wizard(kept, "--log", log, out="")
        self.assertEqual(run.code, 1603, run.output)
        self.assertEqual(text_of(kept), before)
        self.assertIn("\u4e2d\u6587", text_of(second))
        self.assertIn("Answers " + windows_path(second), run.output)

    def test_what_is_wrong_with_the_answers_of_a_base_is_written_without_its_place(self):
        base = self.build("Sample")
        write(os.path.join(base, "Answers.txt"), "rollout-answers 1\n[begin]\nnonsense = 1\n")
        answers = self.begin("Second", mode="create_from", base="Sample")
        run = self.wizard(answers, media=os.path.join(base, "Image"))
        self.assertEqual(run.code, 0, run.output)
        self.assertIn(windows_path(base), [line for line in run.output.splitlines() if line.startswith("Warning: ")][0])
        text = text_of(os.path.join(self.out, "Second", "Answers.txt"))
        self.assertIn("can't be used: Answers.txt(3): begin.nonsense", text)
        self.assertNotIn(windows_path(self.folder), text)

    # ---- large files

    def seconds_of(self, answers, code):
        """The processor's seconds of a check, as its processes have them when they are seen last, and the check. The time of the
        day would count what else the computer does."""
        seconds = {}
        with tempfile.TemporaryFile() as output:
            process = subprocess.Popen(self.command(answers, "--check"), stdout=output, stderr=subprocess.DEVNULL)
            while not has_ended(process):
                for number in self.processes():
                    seconds[number] = max(seconds.get(number, 0), processor_seconds(number))
            output.seek(0)
            run = self.run_of(output.read(), process.returncode)
        self.assertEqual(run.code, code, run.output)
        self.assertGreaterEqual(len(seconds), 2, "the process that works was not seen")
        return sum(seconds.values()), run

    def test_a_hundred_thousand_lines_take_hardly_longer_than_a_few(self):
        plain, _ = self.seconds_of(self.begin("Sample"), 0)
        begin = text_of(self.begin("Sample")).split("\n", 1)[1]
        comments, _ = self.seconds_of(self.answers(begin + "# nothing\n" * MANY_LINES), 0)
        first = 2 + begin.count("\n")
        sections = "".join('[notices "Product %d"]\n' % number for number in range(MANY_LINES))
        unknown, run = self.seconds_of(self.answers(begin + sections), 24)
        self.assertRegex(run.output.splitlines()[-1], r"answers\.txt\(%d\): .*Product 0" % first)
        print("\nplain %.1f s, %d comments %.1f s, %d sections %.1f s" % (plain, MANY_LINES, comments, MANY_LINES, unknown))
        self.assertLess(max(comments, unknown) - plain, MORE_SECONDS)


class BrokenRecordTest(BrokenProgramTest):
    def setUp(self):
        super().setUp()
        self.record = os.path.join(self.folder, "record.txt")

    def test_a_run_that_broke_off_leaves_no_record_that_could_be_taken_for_its_own(self):
        write(self.record, UNDER_WAY)
        run = self.run_with("AccessViolation", words=("--record", windows_path(self.record)))
        self.assertEqual(run.code, 26, run.output)
        self.assertFalse(os.path.exists(self.record))

    def test_a_run_that_an_exception_ends_writes_its_answers(self):
        run = self.run_with("Exception", words=("--record", windows_path(self.record)))
        self.assertEqual(run.code, 1603, run.output)
        self.assertIn("exit code 1603: ", text_of(self.record))
        self.assertIn("\nname = Office\n", text_of(self.record))

    def test_answers_for_a_page_that_is_not_shown_leave_a_record_of_that(self):
        run = self.wizard(self.begin("Sample"), "--record", windows_path(self.record), "--set", "settings.leave=next",
                          media=self.media_with_flow(BEGIN))
        self.assertEqual(run.code, 24, run.output)
        self.assertIn("exit code 24: ", text_of(self.record))

    def test_a_person_is_shown_that_the_record_of_a_canceled_run_can_not_be_written(self):
        reader = os.path.join(PROGRAM_FOLDER, "broken_pages", "box_reader.exe")
        gone = os.path.join(self.folder, "gone")
        os.makedirs(gone)
        result = subprocess.run(
            ["wine", reader, windows_path(self.broken_program()), "--media",
             windows_path(self.media_with_flow(broken("CancelBehindFolder"))), "--record",
             windows_path(os.path.join(gone, "record.txt")), "--log", windows_path(self.log)],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=60,
            env=dict(os.environ, ROLLOUT_FOLDER_THAT_GOES=windows_path(gone)))
        output = result.stdout.decode("utf-8").replace("\r", "")
        self.assertFalse(os.path.exists(gone), output + text_of(self.log))
        self.assertIn("The answers can't be written to ", output)
        self.assertIn("Exit code 1602", text_of(self.log))

"""An unattended run says that it ended and how, whatever happens to it."""

import os
import re
import shutil
import signal
import subprocess
import time

from damaged_package import damage
from wizard import MEDIA, PROGRAM_FOLDER, WizardTest, text_of, tree_of, windows_path

BROKE_OFF, NO_SIGN_OF_LIFE = 26, 27
QUIET_SECONDS = "6"  # of which a busy computer may need some to start a program
PROCESS_SECONDS = 20
SEEDS = 24
PACKAGE = os.path.join(MEDIA, "x64", "Zolt", "Zolt2027.msi")
PROGRAM_FILES = ("Setup.exe", "WizCore.dll", "SlimHtml.dll")
BEGIN = ("BeginDeploymentDialog", "BeginDeployment.html")


def broken(fault):
    """The page that breaks as its help file says (tests/setup/broken_pages). The answers call it "contact"."""
    return "ProductContactDialog", fault


class BrokenProgramTest(WizardTest):
    """A test on a copy of the program whose pages break."""

    def setUp(self):
        super().setUp()
        self.log = os.path.join(self.folder, "setup.log")

    def broken_program(self):
        """A copy of the program with pages that break."""
        folder = os.path.join(self.folder, "program")
        if not os.path.isdir(folder):
            os.makedirs(folder)
            for name in PROGRAM_FILES:
                shutil.copy(os.path.join(PROGRAM_FOLDER, name), folder)
            shutil.copy(os.path.join(PROGRAM_FOLDER, "RolloutUi.dll"), os.path.join(folder, "RealPages.dll"))
            shutil.copy(os.path.join(PROGRAM_FOLDER, "broken_pages", "RolloutUi.dll"), folder)
            shutil.copytree(os.path.join(PROGRAM_FOLDER, "Languages"), os.path.join(folder, "Languages"))
        return os.path.join(folder, "Setup.exe")

    def media_with_flow(self, *pages):
        """Media that show pages, each given by its export and its help file."""
        media = os.path.join(self.folder, "media")
        if not os.path.isdir(media):
            shutil.copytree(MEDIA, media)
        path = os.path.join(media, "Setup.xml")
        flow = "".join('<Page name="%s" help="%s"/>' % page for page in pages)
        text = re.sub(r"<Flow[^>]*>.*</Flow>", "<Flow>" + flow + "</Flow>", text_of(path), flags=re.DOTALL)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return media

    def run_with(self, fault, words=(), answers=None):
        """A run whose second page breaks in that way."""
        return self.wizard(answers or self.begin("Office"), "--log", windows_path(self.log), *words,
                           media=self.media_with_flow(BEGIN, broken(fault)), program=self.broken_program())


class RunEndsTest(BrokenProgramTest):
    def assert_broke_off(self, run, *words):
        self.assertEqual(run.code, BROKE_OFF, run.output)
        last = run.output.strip().splitlines()[-1]
        for word in words:
            self.assertIn(word, last)
        self.assertEqual(run.shell_code, BROKE_OFF, "the process's code differs from the one it reported")
        self.assertEqual(text_of(self.log).strip().splitlines()[-1].split("  ")[-1], last, "the log ends otherwise")

    def test_an_access_violation_is_output_with_its_place_and_the_last_step(self):
        run = self.run_with("AccessViolation")
        self.assert_broke_off(run, "access violation (0xC0000005)", "RolloutUi.dll+0x", "Page contact")

    def test_a_call_of_nothing_is_output_with_its_caller(self):
        # The call of a function that a class only declares is one of these, as this compiler links it.
        for fault in ("CallOfNothing", "PureCall"):
            with self.subTest(fault=fault):
                self.assert_broke_off(self.run_with(fault), "access violation (0xC0000005)",
                                      "called by RolloutUi.dll+0x", "Page contact")

    def test_a_stack_overflow_is_output(self):
        self.assert_broke_off(self.run_with("StackOverflow"), "stack overflow (0xC00000FD)", "Page contact")

    def test_a_program_that_ends_itself_is_output_with_the_library(self):
        for fault in ("Terminate", "ThreadException"):
            with self.subTest(fault=fault):
                self.assert_broke_off(self.run_with(fault), "abort (0x40000015)", "RolloutUi.dll+0x", "Page contact")

    def test_a_broken_heap_does_not_silence_the_last_line(self):
        self.assert_broke_off(self.run_with("BrokenHeap"), "Page contact")

    def test_an_exit_without_a_word_is_output_and_is_no_success(self):
        self.assert_broke_off(self.run_with("EarlyExit"), "code 0x00000000", "Page contact")

    def test_a_page_that_hangs_is_ended_after_the_limit(self):
        run = self.run_with("Hang", words=("--quiet-limit", QUIET_SECONDS))
        self.assertEqual(run.code, NO_SIGN_OF_LIFE, run.output)
        self.assertEqual(run.shell_code, NO_SIGN_OF_LIFE)
        self.assertIn("Page contact", run.output.strip().splitlines()[-1])
        self.assertIn(QUIET_SECONDS + " seconds", run.output.strip().splitlines()[-1])

    def test_a_slow_page_that_still_reads_its_messages_is_not_ended(self):
        run = self.run_with("Slow", words=("--check", "--quiet-limit", QUIET_SECONDS))
        self.assertEqual(run.code, 0, run.output)
        self.assertIn("Page contact", run.output)

    def test_a_killed_guard_takes_the_run_with_it(self):
        command = ["wine", self.broken_program(), "--media", windows_path(self.media_with_flow(broken("Hang"))), "--check",
                   "--log", windows_path(self.log)]
        guard = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        for line in guard.stdout:
            if b"Page contact" in line:
                break
        processes = self.processes()
        guard.kill()
        guard.wait()
        guard.stdout.close()  # an unguarded run would hold it open for ever
        self.assertEqual(len(processes), 2, "the run isn't guarded by a process of its own")
        deadline = time.monotonic() + PROCESS_SECONDS
        while self.processes() and time.monotonic() < deadline:
            time.sleep(0.05)
        left = self.processes()
        for process in left:
            os.kill(process, signal.SIGKILL)
        self.assertEqual(left, [])

    def test_a_person_gets_a_box_with_the_fault_and_the_log(self):
        reader = os.path.join(PROGRAM_FOLDER, "broken_pages", "box_reader.exe")
        result = subprocess.run(
            ["wine", reader, windows_path(self.broken_program()), "--media",
             windows_path(self.media_with_flow(broken("AccessViolation"))), "--log", windows_path(self.log)],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=60)
        output = result.stdout.decode("utf-8").replace("\r", "")
        self.assertIn("The program stopped unexpectedly: access violation (0xC0000005) at RolloutUi.dll+0x", output)
        self.assertIn("For more information, see the log: " + windows_path(self.log), output)
        self.assertEqual(result.returncode, BROKE_OFF, output)

    def test_a_crash_while_building_keeps_the_old_deployment_and_the_next_build_replaces_it(self):
        deployment = self.build("Office")
        before = tree_of(deployment)
        answers = self.begin("Office", **{"on_question.replace": "yes"})
        run = self.run_with("BrokenBuild", answers=answers)
        self.assert_broke_off(run, "access violation (0xC0000005)", "Building Office")
        self.assertEqual(tree_of(deployment), before)
        leftovers = [name for name in os.listdir(self.out) if name.startswith(".")]
        self.assertNotEqual(leftovers, [], "the crash came before or after the build")
        run = self.wizard(answers)
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(os.listdir(self.out), ["Office"])

    def test_a_damaged_package_ends_every_run_with_its_code(self):
        codes = {}
        for seed in range(SEEDS):
            package = os.path.join(self.folder, "media", str(seed), "Zolt2027.msi")
            shutil.copytree(os.path.dirname(PACKAGE), os.path.dirname(package))
            damage(PACKAGE, package, seed)
            for words in (("--check",), ()):
                run = self.wizard(self.begin("Damaged %d" % seed), *words, "--quiet-limit", QUIET_SECONDS, media=package)
                self.assertEqual(run.shell_code, run.code & 255, "seed %d: %s" % (seed, run.output))
                self.assertIn(run.code, (0, 1603, BROKE_OFF, NO_SIGN_OF_LIFE), "seed %d: %s" % (seed, run.output))
                codes.setdefault(run.code, []).append(seed)
        self.assertIn(1603, codes, "no package was damaged enough to be refused")
        left = [name for name in os.listdir(self.out) if name.startswith(".")]
        self.assertEqual([name for name in left if not re.search(r"staging|old", name)], [], codes)

    def test_the_quiet_limit_is_a_number_of_seconds(self):
        run = self.wizard(self.begin("Office"), "--quiet-limit", "soon")
        self.assertEqual(run.code, 20, run.output)
        self.assertIn("--quiet-limit", run.output)


class FlowPagesTest(BrokenProgramTest):
    def assert_refused(self, page, **program):
        run = self.wizard(self.begin("Office"), media=self.media_with_flow(BEGIN, (page, "")), **program)
        self.assertEqual(run.code, 1603, run.output)
        self.assertRegex(run.output, r"Setup\.xml, line \d+: .*" + page + r".*Dialog")

    def test_a_tab_page_in_the_flow_is_refused_with_file_and_line(self):
        # Such a page returns a class by value: called as a dialog, it wrote it to nowhere.
        self.assert_refused("NoticeDeskFeedBoardPage")

    def test_a_tab_page_of_a_foreign_library_is_refused_before_it_is_called(self):
        self.assert_refused("BrokenTabPage", program=self.broken_program())

    def test_an_export_that_is_no_page_is_refused(self):
        for name in ("_ZN8CLangMgr13ShowLanguagesEv", "ForeignDialogue"):
            with self.subTest(name=name):
                self.assert_refused(name)

"""Answers for one of several products, and answers files that can't be read."""

import os
import subprocess
import time

from wizard import WizardTest, property_of, text_of, windows_path

ZOLT = "x64/Zolt/Zolt2027.msi"
VIEWER = "x64/ZoltViewer/ZoltViewer2027.msi"
NAME = "ZOLT_SITEMGR_DISPLAY_NAME"
SITE = "site_channel = yes\nsite_feed = \\\\server\\feeds\\site.xml\non_question.feed_not_found = yes\n"


class AnswersProductsTest(WizardTest):
    def with_answers(self, text):
        path = self.begin("Office", platform="x64")
        with open(path, "a", encoding="utf-8") as file:
            file.write(text)
        return path

    def names(self):
        image = os.path.join(self.out, "Office", "Image")
        return [property_of(os.path.join(image, package), NAME) for package in (ZOLT, VIEWER)]

    def last_line(self, run):
        return run.output.strip().splitlines()[-1]

    def test_answers_for_a_product_win_over_those_for_any(self):
        run = self.wizard(self.with_answers('[notices "Zolt Viewer 2027"]\nsite_name = Viewer news\n'
                                            "[notices]\n" + SITE + "site_name = Site news\n"))
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(self.names(), ["Site news", "Viewer news"])

    def test_the_command_line_answers_for_a_product_too(self):
        run = self.wizard(self.with_answers("[notices]\n" + SITE + "site_name = Site news\n"
                                            '[notices "Zolt Viewer 2027"]\nsite_name = Viewer news\n'),
                          "--set", 'notices "zolt viewer 2027".site_name=Line news')
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(self.names(), ["Site news", "Line news"])

    def test_answers_for_a_product_that_is_not_there_end_the_run_with_their_line(self):
        run = self.wizard(self.with_answers('[contact]\n[notices "Zolt Viewer 2026"]\nupdates = no\n'))
        self.assertEqual(run.code, 24, run.output)
        self.assertRegex(self.last_line(run), r'answers\.txt\(7\): There is no product "Zolt Viewer 2026" in this run\. '
                         r'Its products are: "Zolt 2027", "Zolt Viewer 2027"\.')
        self.assertEqual(os.listdir(self.out), [])

    def test_an_answers_file_that_another_program_has_open_is_refused(self):
        path = self.begin("Office")
        # The command's output is open for writing until its input ends; what it asks with stands there as soon as it is.
        command = "set /p wait=# open>>%s" % windows_path(path)
        writer = subprocess.Popen(["wine", "cmd", "/c", command], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL)
        try:
            deadline = time.monotonic() + 60
            while "# open" not in text_of(path):
                self.assertIsNone(writer.poll(), "the other program has ended")
                self.assertLess(time.monotonic(), deadline, "the other program hasn't opened the file")
            run = self.wizard(path)
        finally:
            writer.communicate(b"\r\n", timeout=60)
        self.assertEqual(run.code, 21, run.output)
        self.assertIn("answers.txt: The answers file is open in another program", self.last_line(run))
        self.assertEqual(os.listdir(self.out), [])
        self.assertEqual(self.wizard(path, "--check").code, 0)

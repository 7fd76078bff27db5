"""The script that runs the tests: one that stops fails alone, and the rest runs."""

import os
import sys
import unittest
from unittest import mock

from wizard import PROGRAM_FOLDER, ROOT

sys.path.insert(0, os.path.join(ROOT, "scripts"))

import run_tests  # noqa: E402
import steady_addresses  # noqa: E402


class NotedResults:
    """What the script counts, kept instead of printed."""

    def __init__(self):
        self.passed, self.failed, self.skipped = [], {}, 0

    def add(self, name, ok, detail=""):
        if ok:
            self.passed.append(name)
        else:
            self.failed[name] = detail


class TestRunnerTest(unittest.TestCase):
    def setUp(self):
        self.results = NotedResults()

    def run_stopping_tests(self, grace, **environment):
        program = os.path.join(PROGRAM_FOLDER, "stopping_tests.exe")
        command = ["taskset", "-c", os.environ.get("ROLLOUT_CORE", "0"), "wine", program]
        with mock.patch.object(run_tests, "TEST_SECONDS", 3), mock.patch.object(run_tests, "GRACE_SECONDS", grace), \
                mock.patch("builtins.print"):
            run_tests.GtestProgram(self.results, "stopping", command, dict(os.environ, **environment)).run("")

    def test_a_test_that_waits_in_a_box_ends_alone_with_the_words_of_its_windows(self):
        self.run_stopping_tests(60, ROLLOUT_TEST_SECONDS="3")
        self.assertEqual(self.results.passed, ["stopping: Stopping.First", "stopping: Stopping.Last"])
        self.assertEqual(list(self.results.failed), ["stopping: Stopping." + name
                                                     for name in ("WaitsInABox", "EndsTheProgram", "Fails")])
        waited = self.results.failed["stopping: Stopping.WaitsInABox"]
        self.assertIn("Stopping.WaitsInABox still runs after 3 seconds", waited)
        self.assertIn("Nobody answers this.", waited)
        self.assertIn("ended with 7", self.results.failed["stopping: Stopping.EndsTheProgram"])
        self.assertIn("as it should", self.results.failed["stopping: Stopping.Fails"])

    def test_a_program_that_keeps_to_no_limit_is_ended_from_outside(self):
        self.run_stopping_tests(7, ROLLOUT_TEST_SECONDS="0")  # of which a busy computer may need some to start
        self.assertEqual(self.results.passed, ["stopping: Stopping.First", "stopping: Stopping.Last"])
        self.assertIn("Ended from outside", self.results.failed["stopping: Stopping.WaitsInABox"])

    def test_lanes_take_each_program_once_and_those_of_a_folder_together(self):
        pages = ["/bin/page_tests/online_test.exe", "/bin/page_tests/page_test.exe"]
        shared = run_tests.SharedPrograms(["/bin/a_test.exe", *pages, "/bin/host_test.exe", "/bin/z_test.exe"])
        taken = list(iter(shared.take, []))
        self.assertEqual(taken, [["/bin/host_test.exe"], pages, ["/bin/a_test.exe"], ["/bin/z_test.exe"]])
        self.assertEqual(shared.take(), [])

    def test_programs_are_started_at_steady_addresses(self):
        if not steady_addresses.keep_addresses_steady():
            self.skipTest("the system refuses them")
        with open("/proc/self/personality", encoding="ascii") as file:
            self.assertTrue(int(file.read(), 16) & steady_addresses.ADDR_NO_RANDOMIZE)

#!/usr/bin/env python3
"""Runs the built tests and counts them; called by ./test.

Three kinds: checks (functions of tests/checks and tests/end_to_end, by Python's unittest), GoogleTest programs (native
and under Wine), and fuzzers for a bounded time. Programs for Wine run in two lanes, each with a prefix, a display and
a core of its own. The second one begins with the end-to-end tests; each takes the next program when it is free. The build
lists its programs.
"""

import fcntl
import glob
import importlib.util
import os
import re
import subprocess
import sys
import threading
import time
import unittest

from steady_addresses import keep_addresses_steady
from test_lanes import Lane, built_programs, program_name, read_program

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BUILD = os.environ.get("ROLLOUT_BUILD", os.path.join(ROOT, "build"))
LOGS = os.path.join(BUILD, "test-logs")
# What takes longest begins first, so that the lanes end at about the same time. Programs, or folders of some.
LONGEST_FIRST = ("build_test", "host_test", "page_tests", "by_hand")
# How long one test may take; the programs for Wine keep to it by themselves and show their windows when it is over.
TEST_SECONDS = int(os.environ.setdefault("ROLLOUT_TEST_SECONDS", "240"))
GRACE_SECONDS = 30  # what a program has to end by itself
CHECK_SECONDS = 600  # of a test in Python that starts programs
MOST_RESTARTS = 10  # of one program whose tests end it
FUZZ_SECONDS = int(os.environ.get("ROLLOUT_FUZZ_SECONDS", "4"))


class Tally:
    """Counts results from several threads and prints each as it comes."""

    def __init__(self):
        self.lock = threading.Lock()
        self.passed = 0
        self.failed = []
        self.skipped = 0

    def add(self, name, ok, detail=""):
        with self.lock:
            if ok:
                self.passed += 1
            else:
                self.failed.append(name)
                print("FAILED  %s\n%s" % (name, detail.rstrip()), flush=True)


class GtestProgram:
    """One program's tests. A program that ends before its tests are over fails the test that was running, and is started
    again for the tests that are left."""

    def __init__(self, tally, label, command, environment, lane=None):
        self.tally, self.label, self.command, self.environment, self.lane = tally, label, command, environment, lane
        self.ended = set()  # names of tests that have a result
        self.failed_any = False

    def run(self, pattern):
        started = time.monotonic()
        wanted = ["--gtest_filter=*%s*" % pattern] if pattern else []
        words, starts = wanted, 0
        with open(os.path.join(LOGS, self.label + ".log"), "wb") as log:
            while words is not None:
                run = read_program(self.command + words, self.environment, ROOT, log, TEST_SECONDS + GRACE_SECONDS,
                                   self.add_result, self.lane)
                starts += 1
                words = None if run.finished else self.words_for_the_rest(run, wanted, starts)
        if run.finished and run.code != 0 and not self.failed_any:
            self.tally.add(self.label + ": (exit)", False, "All tests passed, but the program ended with %d." % run.code)
        print("%-40s %4d tests, %5.1f s" % (self.label, len(self.ended), time.monotonic() - started), flush=True)

    def add_result(self, name, kind, lines):
        self.ended.add(name)
        if kind == "SKIPPED":
            self.tally.skipped += 1
        else:
            self.fail_or_pass(name, kind == "OK", "\n".join(lines))

    def fail_or_pass(self, name, ok, detail):
        self.failed_any = self.failed_any or not ok
        self.tally.add("%s: %s" % (self.label, name), ok, detail)

    def words_for_the_rest(self, run, wanted, starts):
        """Counts what the program's end has cost, and names the tests that are left; None when none can be run."""
        end = "Ended from outside, overdue by %d seconds." % GRACE_SECONDS if run.late else \
            "The program ended with %d before its tests were over." % run.code
        self.fail_or_pass(run.running or "(the program)", False, "\n".join(run.lines[-60:] + [end]))
        if not run.running:
            return None
        self.ended.add(run.running)
        listed = self.list_tests(wanted)
        if run.running not in listed:
            self.fail_or_pass("(the tests behind it)", False, "Not run: the program doesn't list its tests.")
            return None
        rest = [name for name in listed if name not in self.ended]
        if rest and starts > MOST_RESTARTS:
            self.fail_or_pass("(%d tests)" % len(rest), False, "Not run: the program ended early %d times." % starts)
            return None
        return ["--gtest_flagfile=" + self.write_flags("--gtest_filter=" + ":".join(rest))] if rest else None

    def list_tests(self, wanted):
        listed = subprocess.run(self.command + wanted + ["--gtest_list_tests"], stdout=subprocess.PIPE,
                                stderr=subprocess.DEVNULL, env=self.environment, cwd=ROOT, timeout=60)
        names, suite = [], ""
        for line in listed.stdout.decode("utf-8", "replace").splitlines():
            word = line.split("#")[0].strip()
            if not line.startswith(" "):
                suite = word
            elif word:
                names.append(suite + word)
        return names

    def write_flags(self, text):
        path = os.path.join(LOGS, self.label + ".flags")
        with open(path, "w", encoding="ascii") as file:
            file.write(text + "\n")
        return "Z:" + path.replace("/", "\\") if "wine" in self.command else path


class SharedPrograms:
    """Programs that lanes take as they get free. Those of a folder of their own write into it, and stay with one lane."""

    def __init__(self, programs):
        groups = {}
        for program in programs:
            folder = os.path.basename(os.path.dirname(program))
            groups.setdefault(program_name(program) if folder == "bin" else folder, []).append(program)
        long = [groups.pop(name) for name in LONGEST_FIRST if name in groups]
        self.groups = long + list(groups.values())
        self.lock = threading.Lock()

    def take(self):
        """The programs to run next; none are left when it is empty."""
        with self.lock:
            return self.groups.pop(0) if self.groups else []


def run_lane(tally, number, shared, tests, pattern):
    with Lane(number, ROOT, BUILD, "prefix" if number == 0 else "prefix-%d" % number) as lane:
        if tests:
            # The tests of one lane alone start programs by this process's environment.
            os.environ.update({name: value for name, value in lane.environment.items()
                               if name.startswith(("WINE", "DISPLAY", "ROLLOUT_CORE"))})
        for test in tests:
            run_check(tally, test, lane)
        for programs in iter(shared.take, []):
            for program in programs:
                GtestProgram(tally, program_name(program), lane.command(program), lane.environment, lane).run(pattern)


def run_check(tally, test, lane=None):
    """Runs a Python test. What waits in it for a program that doesn't come back goes on when its lane is stopped."""
    started = time.monotonic()
    result = unittest.TestResult()
    limit = threading.Timer(CHECK_SECONDS, lane.stop_programs) if lane else None
    if limit:
        limit.start()
    test.run(result)
    if limit:
        limit.cancel()
        if time.monotonic() - started >= CHECK_SECONDS:
            result.failures.append((test, "Its programs were ended after %d seconds.\n" % CHECK_SECONDS))
    trouble = result.failures + result.errors
    tally.add(test.id(), not trouble, "".join(text for _, text in trouble))
    elapsed = time.monotonic() - started
    if elapsed > 5:
        print("%-60s %5.1f s" % (test.id(), elapsed), flush=True)


def run_fuzzers(tally, pattern):
    for program in built_programs(BUILD, "native", "fuzzers.txt"):
        name = os.path.basename(program)
        if pattern not in "fuzz " + name:
            continue
        found = os.path.join(BUILD, "fuzz-findings", name)
        corpus = os.path.join(BUILD, "fuzz-corpus", name)
        os.makedirs(found, exist_ok=True)
        os.makedirs(corpus, exist_ok=True)
        command = [program, "-max_total_time=%d" % FUZZ_SECONDS, "-timeout=10", "-rss_limit_mb=2048",
                   "-artifact_prefix=" + found + "/", corpus, os.path.join(ROOT, "fuzz", "corpus", name)]
        result = subprocess.run(command, capture_output=True)
        output = result.stderr.decode("utf-8", "replace")
        runs = re.search(r"Done (\d+) runs", output)
        tally.add("fuzz " + name, result.returncode == 0 and bool(runs), output[-3000:])
        print("%-40s %s runs" % ("fuzz " + name, runs.group(1) if runs else "no"), flush=True)


def load_checks(folder):
    tests = []
    for path in sorted(glob.glob(os.path.join(ROOT, "tests", folder, "*_test.py"))):
        name = os.path.splitext(os.path.basename(path))[0]
        spec = importlib.util.spec_from_file_location(name, path)
        module = importlib.util.module_from_spec(spec)
        sys.path.insert(0, os.path.dirname(path))
        spec.loader.exec_module(module)
        suites = unittest.defaultTestLoader.loadTestsFromModule(module)
        tests += [test for suite in suites for test in suite]
    return tests


def main():
    arguments = sys.argv[1:]
    listing = "--list" in arguments
    pattern = next((word for word in arguments if not word.startswith("--")), "")
    os.makedirs(LOGS, exist_ok=True)
    native = built_programs(BUILD, "native")
    windows = built_programs(BUILD, "windows")
    checks = [test for test in load_checks("checks") if pattern in test.id()]
    scenarios = [test for test in load_checks("end_to_end") if pattern in test.id()]
    if listing:
        print("\n".join(native + windows + [test.id() for test in checks + scenarios]))
        return 0
    running = open(os.path.join(BUILD, "test-run.lock"), "w", encoding="ascii")
    try:
        fcntl.flock(running, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        print("Another ./test runs in this checkout, and would be stopped with its prefix. Wait until it has ended.")
        return 1
    keep_addresses_steady()
    tally = Tally()
    for test in checks:
        run_check(tally, test)
    shared = SharedPrograms(windows)
    lanes = [threading.Thread(target=guarded, args=(tally, run_lane, 0, shared, [], pattern)),
             threading.Thread(target=guarded, args=(tally, run_lane, 1, shared, scenarios, pattern))]
    for lane in lanes:
        lane.start()
    for program in native:
        GtestProgram(tally, "native " + os.path.basename(program), [program], dict(os.environ)).run(pattern)
    run_fuzzers(tally, pattern)
    for lane in lanes:
        lane.join()
    if tally.skipped:
        print("%d skipped" % tally.skipped)
    for name in tally.failed:
        print("failed: " + name)
    print("%d passed, %d failed" % (tally.passed, len(tally.failed)))
    return 1 if tally.failed or tally.passed == 0 else 0


def guarded(tally, work, *arguments):
    """A lane that can't start is a failure, not a silent gap."""
    try:
        work(tally, *arguments)
    except Exception as error:  # noqa: BLE001 - whatever it is, it must be counted
        tally.add("lane %s" % arguments[0], False, str(error))


if __name__ == "__main__":
    sys.exit(main())

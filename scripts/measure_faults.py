#!/usr/bin/env python3
"""Measures what the tests notice: puts the faults of tests/faults into a copy of this checkout, one at a time, builds,
runs the tests that could notice, and counts.

    scripts/measure_faults.py                    all faults
    scripts/measure_faults.py --area host        those of one file of the table; may be repeated
    scripts/measure_faults.py --name '*stage*'   those whose name fits; may be repeated
    scripts/measure_faults.py --lanes 2          two copies at once, each with a prefix and a core of its own
    scripts/measure_faults.py --list             names the faults and measures nothing

Ends with 1 when less than 95 % are noticed, or when the table is wrong: a text that isn't there, a fault that doesn't
build, a test that fails without the fault.
"""

import argparse
import collections
import fcntl
import fnmatch
import os
import queue
import re
import sys
import threading
import time

from fault_copy import Copy
from fault_table import find_entry_trouble, find_source_tests, load_faults
from steady_addresses import keep_addresses_steady
from test_lanes import built_programs, program_name

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BUILD = os.environ.get("ROLLOUT_BUILD", os.path.join(ROOT, "build"))
FOLDER = os.path.join(BUILD, "faults")
WANTED_PERCENT = 95
LEAST_SECONDS = 30  # what any program may take to start
# What the Python tests start; the build of Setup makes the libraries that it loads.
CHECK_TARGETS = ("Setup", "sample_media")
NOTICED, LATE, UNNOTICED, UNBUILT, WRONG = (
    "noticed", "noticed by its deadline", "NOT NOTICED", "DIDN'T BUILD", "WRONG ENTRY")


class Measure:
    """The faults that were asked for, their results, and what the tests do without a fault."""

    def __init__(self, faults, lanes, seconds):
        self.faults, self.seconds = faults, seconds
        self.copies = [Copy(number, max(1, (os.cpu_count() or 1) // lanes), FOLDER) for number in range(lanes)]
        self.lock = threading.Lock()
        self.unchanged = {}  # {(kind, program): {test: (kind of result, seconds)}}
        self.results = {}    # {fault: (outcome, detail)}
        self.logs = os.path.join(FOLDER, "logs")

    def in_lanes(self, items, work):
        """Shares the items out to the copies; an error in one of them ends the run."""
        waiting, errors = queue.Queue(), []
        for item in items:
            waiting.put(item)

        def work_off(copy):
            try:
                while not errors:
                    work(copy, waiting.get_nowait())
            except queue.Empty:
                pass
            except Exception as error:  # noqa: BLE001 - shown below
                errors.append(error)

        threads = [threading.Thread(target=work_off, args=(copy,)) for copy in self.copies]
        for thread in threads:
            thread.start()
        try:
            for thread in threads:
                thread.join()
        except KeyboardInterrupt as stop:  # the copies end what they are at
            errors.append(stop)
            for thread in threads:
                thread.join()
        if errors:
            raise errors[0]

    def run(self):
        """Measures all faults. Gives what is wrong with the table; then nothing is measured."""
        try:
            for copy in self.copies:
                copy.prepare()
            trouble = find_table_trouble(self.faults, self.copies[0].build)
            if trouble:
                return trouble
            groups = collections.defaultdict(set)
            for tests in (tests for fault in self.faults for tests in fault.tests):
                groups[tests.kind, tests.program].add(tests)
            print("%d programs on the unchanged code" % len(groups), flush=True)
            self.in_lanes(groups.values(), self.run_unchanged)
            for copy in self.copies:
                copy.keep_prefix()
            self.in_lanes(sorted(self.faults, key=lambda fault: fault.file), self.measure)
            return []
        finally:
            for copy in self.copies:
                copy.take_out()
                if copy.lane:
                    copy.lane.close()

    def run_unchanged(self, copy, group):
        some = next(iter(group))
        # All that the filters name; what each of them leaves out counts for it alone.
        wanted = ":".join(sorted({tests.filter.partition("-")[0] or "*" for tests in group}))
        started = time.monotonic()
        log_path = os.path.join(self.logs, "unchanged-%s-%s.log" % (some.kind, some.program))
        results = copy.run(some, wanted, self.seconds * 5, log_path)
        with self.lock:
            self.unchanged[some.kind, some.program] = results
            print("%-60s %4d tests, %5.1f s" % (some.program, len(results), time.monotonic() - started), flush=True)

    def unchanged_results(self, tests):
        return {name: result for name, result in self.unchanged[tests.kind, tests.program].items()
                if tests.kind == "check" or name == tests.program or tests.matches(name)}

    def find_wrong_tests(self, fault):
        for tests in fault.tests:
            results = self.unchanged_results(tests)
            failing = [name for name, (kind, _) in results.items() if kind in ("FAILED", "LATE")]
            if failing:
                return "%s fails without the fault" % failing[0]
            if not any(kind == "OK" for kind, _ in results.values()):
                return "%s runs no test" % tests.text
        return None

    def limit_of(self, tests):
        """Several times what the tests need without the fault: a test that hangs must not cost minutes each time."""
        needed = sum(seconds for _, seconds in self.unchanged_results(tests).values())
        return min(self.seconds, LEAST_SECONDS + 4 * needed)

    def measure(self, copy, fault):
        started = time.monotonic()
        outcome, detail = self.judge(copy, fault)
        with self.lock:
            self.results[fault] = (outcome, detail)
            print("%-24s %5.1f s  %s%s" % (outcome, time.monotonic() - started, fault.label,
                                          " (%s)" % detail if detail else ""), flush=True)

    def judge(self, copy, fault):
        """The outcome and who noticed it, or why it can't be measured."""
        wrong = self.find_wrong_tests(fault)
        if wrong:
            return WRONG, wrong
        copy.put_in(fault)
        log_path = os.path.join(self.logs, re.sub(r"\W+", "-", fault.label) + ".log")
        for tests in fault.tests:
            targets = CHECK_TARGETS if tests.kind == "check" else (tests.program,)
            built = copy.build_tree("native" if tests.kind == "native" else "windows", targets)
            if built.returncode != 0:
                with open(log_path, "w", encoding="utf-8") as log:
                    log.write(built.stdout)
                errors = re.findall(r"error: .*", built.stdout)
                return UNBUILT, errors[0] if errors else log_path
            results = copy.run(tests, tests.filter or "*", self.limit_of(tests), log_path, True)
            bad = [(kind, name) for name, (kind, _) in results.items() if kind in ("FAILED", "LATE")]
            if bad or not results:
                if tests.kind != "native":
                    copy.restore_prefix()
                if not results:
                    return WRONG, "%s runs no test with the fault" % tests.text
                return (LATE if bad[0][0] == "LATE" else NOTICED), bad[0][1]
        return UNNOTICED, ", ".join(tests.text for tests in fault.tests)

    def report(self):
        """Prints what came out; whether it is good enough."""
        counts = collections.defaultdict(collections.Counter)
        for fault, (outcome, _) in self.results.items():
            counts[fault.folder][outcome in (NOTICED, LATE)] += 1
        print()
        for outcome in (UNNOTICED, UNBUILT, WRONG):
            for fault, (its, detail) in self.results.items():
                if its == outcome:
                    print("%s: %s in %s (%s)" % (outcome, fault.label, fault.file, detail))
        for folder, count in sorted(counts.items()):
            print("%-24s %3d of %3d noticed" % (folder, count[True], sum(count.values())))
        noticed = sum(count[True] for count in counts.values())
        late = sum(outcome == LATE for outcome, _ in self.results.values())
        percent = 100 * noticed / len(self.results) if self.results else 0
        print("%d of %d faults noticed, %.1f %%, %d of them by a deadline" % (noticed, len(self.results), percent, late))
        wrong = any(outcome in (UNBUILT, WRONG) for outcome, _ in self.results.values())
        return percent >= WANTED_PERCENT and not wrong


def print_equivalent(faults):
    for fault in faults:
        if fault.equivalent:
            print("not counted: %s: %s" % (fault.label, fault.equivalent))


def find_table_trouble(faults, build):
    programs = {tree: {program_name(path) for path in built_programs(build, tree)} for tree in ("native", "windows")}
    source_tests = find_source_tests(ROOT)
    return ["%s: %s" % (fault.label, text) for fault in faults
            for text in find_entry_trouble(ROOT, fault, programs, source_tests)]


def read_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--area", action="append", help="a file of tests/faults, without .toml")
    parser.add_argument("--name", action="append", help="a pattern of names")
    parser.add_argument("--lanes", type=int, default=1, choices=(1, 2))
    parser.add_argument("--seconds", type=int, default=180, help="time limit of a test program")
    parser.add_argument("--list", action="store_true")
    return parser.parse_args()


def main():
    arguments = read_arguments()
    faults = [fault for fault in load_faults(ROOT)
              if (not arguments.area or fault.area in arguments.area) and
              (not arguments.name or any(fnmatch.fnmatch(fault.name, pattern) for pattern in arguments.name))]
    if arguments.list:
        for fault in faults:
            print("%-60s %s" % (fault.label, fault.equivalent and "equivalent" or
                                " ".join(tests.text for tests in fault.tests)))
        return 0
    counted = [fault for fault in faults if not fault.equivalent]
    if not counted:
        print("No fault of the table fits. --list names them all.")
        return 1
    os.makedirs(os.path.join(FOLDER, "logs"), exist_ok=True)
    running = open(os.path.join(FOLDER, "run.lock"), "w", encoding="ascii")
    try:
        fcntl.flock(running, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        print("Another run measures in this checkout and works in the same copies. Wait until it has ended.")
        return 1
    keep_addresses_steady()
    measure = Measure(counted, min(arguments.lanes, len(counted)), arguments.seconds)
    stopped = False
    try:
        trouble = measure.run()
    except RuntimeError as error:
        trouble = [str(error)]
    except KeyboardInterrupt:
        trouble, stopped = [], True
    if trouble:
        print("\n".join(trouble))
        return 1
    print_equivalent(faults)
    good = measure.report()
    if stopped:
        print("Stopped after %d of %d faults." % (len(measure.results), len(counted)))
    return 0 if good and not stopped else 1


if __name__ == "__main__":
    sys.exit(main())

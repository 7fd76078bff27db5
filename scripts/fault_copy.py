"""A copy of the checkout in which faults are put in, built and tried by the tests."""

import os
import re
import shutil
import signal
import subprocess
import sys
import threading
import time

from fault_table import read_source
from test_lanes import TEST_LINE, Lane, built_programs, program_name

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


class Copy:
    """A copy of the checkout with a build, a prefix and a display of its own."""

    def __init__(self, number, jobs, folder):
        self.number, self.jobs = number, jobs
        self.root = os.path.join(folder, "lane-%d" % number)
        self.build = os.path.join(self.root, "build")
        self.kept_prefix = os.path.join(self.build, "prefix-kept")
        self.unchanged = None  # the file that a fault is in, and its text without the fault
        self.lane = None

    def prepare(self):
        """Brings the copy to the state of the checkout and builds everything once."""
        listing = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                                 capture_output=True, check=True).stdout.decode()
        names = {name for name in listing.split("\0") if name and os.path.isfile(os.path.join(ROOT, name))}
        for path, folders, files in os.walk(self.root):
            if path == self.root:
                folders[:] = [name for name in folders if name not in ("build", ".git")]
            for name in files:
                if os.path.relpath(os.path.join(path, name), self.root) not in names:
                    os.remove(os.path.join(path, name))
        for name in sorted(names):
            copy_changed(os.path.join(ROOT, name), os.path.join(self.root, name))
        # Some checks ask git for the sources.
        subprocess.run("git init -q . && git add -A", shell=True, cwd=self.root, check=True)
        for tree in ("native", "windows"):
            built = self.build_tree(tree, [])
            if built.returncode != 0:
                raise RuntimeError("The unchanged code doesn't build:\n" + built.stdout[-3000:])
        self.lane = Lane(self.number, self.root, self.build)
        self.lane.environment["ROLLOUT_TEST_SECONDS"] = "0"  # the limit here is that of the whole program

    def build_tree(self, tree, targets):
        environment = dict(os.environ, ROLLOUT_BUILD=self.build)
        if "CCACHE_BASEDIR" in environment:
            environment["CCACHE_BASEDIR"] = self.root
        return subprocess.run(
            ["bash", "-c", '. scripts/environment.sh; rollout_build_%s -j%d "$@"' % (tree, self.jobs), "build", *targets],
            cwd=self.root, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
            errors="replace", stdin=subprocess.DEVNULL)

    def keep_prefix(self):
        self.lane.stop_programs()
        shutil.rmtree(self.kept_prefix, ignore_errors=True)
        shutil.copytree(os.path.join(self.build, "prefix"), self.kept_prefix, symlinks=True)

    def restore_prefix(self):
        """What a broken program left there must not fail the tests of the next fault."""
        self.lane.stop_programs()
        mirror(self.kept_prefix, os.path.join(self.build, "prefix"))

    def write(self, name, text):
        with open(os.path.join(self.root, name), "w", encoding="utf-8", newline="") as file:
            file.write(text)

    def put_in(self, fault):
        """Takes the fault before out and puts this one in, so that one build does both."""
        self.take_out()
        text = read_source(self.root, fault.file)
        self.unchanged = fault.file, text
        self.write(fault.file, text.replace(fault.was, fault.becomes))

    def take_out(self):
        if self.unchanged:
            self.write(*self.unchanged)
            self.unchanged = None

    def path_of(self, tests):
        tree = "native" if tests.kind == "native" else "windows"
        return next(path for path in built_programs(self.build, tree) if program_name(path) == tests.program)

    def run(self, tests, pattern, seconds, log_path, first_failure=False):
        """Runs one set of tests, up to the first failed claim if asked; returns {name: (OK, FAILED, SKIPPED or LATE,
        seconds)}."""
        if tests.kind == "check":
            return self.run_check(tests.program, seconds, log_path)
        path = self.path_of(tests)
        native = tests.kind == "native"
        return self.run_program(([path] if native else self.lane.command(path)) + ["--gtest_filter=" + pattern],
                                tests.program, seconds, log_path, first_failure)

    def run_program(self, command, program, seconds, log_path, first_failure):
        results, running, finished, late = {}, program, False, threading.Event()
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, cwd=self.root,
                                   env=self.lane.environment, stdin=subprocess.DEVNULL)

        def end():
            late.set()
            process.kill()
            self.lane.stop_programs()  # what it started holds its output open

        timer = threading.Timer(seconds, end)
        timer.start()
        with open(log_path, "wb") as log:
            for raw in process.stdout:
                log.write(raw)
                line = raw.decode("utf-8", "replace").rstrip()
                match = TEST_LINE.match(line)
                if match and match.group(1) == "RUN":
                    running = match.group(2)
                elif match and running == match.group(2):
                    took = re.search(r"\((\d+) ms\)$", line)
                    results[running] = match.group(1), int(took.group(1)) / 1000 if took else 0
                    running = program
                elif line.startswith("[==========]") and " ran." in line:
                    finished = True
                elif first_failure and line.endswith(": Failure"):
                    break  # the rest of such a test may wait for a window that never comes
            else:
                process.wait()
        timer.cancel()
        process.stdout.close()
        if process.poll() is None:
            process.kill()
            process.wait()
            results[running] = "FAILED", 0
        elif late.is_set():
            results[running] = "LATE", seconds
        elif not finished or (process.returncode != 0 and not any(kind == "FAILED" for kind, _ in results.values())):
            results[running] = "FAILED", 0
        return results

    def run_check(self, test, seconds, log_path):
        folders = [os.path.join(self.root, *parts) for parts in (["tests", "checks"], ["tests", "end_to_end"], ["scripts"])]
        environment = dict(self.lane.environment, PYTHONPATH=os.pathsep.join(folders), PYTHONDONTWRITEBYTECODE="1")
        started = time.monotonic()
        process = subprocess.Popen([sys.executable, "-m", "unittest", "-f", test], cwd=self.root, env=environment,
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL,
                                   start_new_session=True)
        try:
            output, _ = process.communicate(timeout=seconds)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            self.lane.stop_programs()
            process.communicate()
            return {test: ("LATE", seconds)}
        with open(log_path, "wb") as log:
            log.write(output)
        ran = re.search(rb"^Ran (\d+) test", output, re.M)
        if not ran or ran.group(1) == b"0":
            return {}
        return {test: ("OK" if process.returncode == 0 else "FAILED", time.monotonic() - started)}


def copy_changed(source, target):
    """Copies a file unless the target has its content, so that its time, which the build goes by, stays."""
    with open(source, "rb") as file:
        content = file.read()
    if os.path.isfile(target):
        with open(target, "rb") as file:
            if file.read() == content:
                return
    os.makedirs(os.path.dirname(target), exist_ok=True)
    with open(target, "wb") as file:
        file.write(content)
    shutil.copymode(source, target)


def mirror(source, target):
    """Makes the target folder equal to the source; files of the same size and time count as equal."""
    for path, folders, files in os.walk(target):
        beside = os.path.join(source, os.path.relpath(path, target))
        for name in files + [name for name in folders if os.path.islink(os.path.join(path, name))]:
            if not os.path.lexists(os.path.join(beside, name)):
                os.remove(os.path.join(path, name))
        for name in [name for name in folders if not os.path.lexists(os.path.join(beside, name))]:
            if not os.path.islink(os.path.join(path, name)):
                shutil.rmtree(os.path.join(path, name), ignore_errors=True)
            folders.remove(name)
    for path, folders, files in os.walk(source):
        beside = os.path.join(target, os.path.relpath(path, source))
        os.makedirs(beside, exist_ok=True)
        for name in files + [name for name in folders if os.path.islink(os.path.join(path, name))]:
            here, there = os.path.join(path, name), os.path.join(beside, name)
            if os.path.islink(here):
                if not os.path.islink(there) or os.readlink(there) != os.readlink(here):
                    shutil.rmtree(there, ignore_errors=True) if os.path.isdir(there) else None
                    if os.path.lexists(there):
                        os.remove(there)
                    os.symlink(os.readlink(here), there)
            elif not os.path.isfile(there) or signature(here) != signature(there):
                shutil.copy2(here, there)


def signature(path):
    status = os.stat(path)
    return status.st_size, status.st_mtime_ns

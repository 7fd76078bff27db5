"""What runs tests of a checkout: its programs, a lane to run them in, and one program read result by result."""

import os
import re
import subprocess
import threading

# The line of a GoogleTest program that says what becomes of a test.
TEST_LINE = re.compile(r"\[ +(RUN|OK|FAILED|SKIPPED) +\] ([\w/.]+)")


def built_programs(build, tree, file="tests.txt"):
    """The paths of the programs that the build of one tree (native or windows) lists."""
    with open(os.path.join(build, tree, file), encoding="utf-8") as listed:
        return sorted(listed.read().split("\n")[:-1])


def program_name(path):
    return os.path.splitext(os.path.basename(path))[0]


class Lane:
    """A prefix, a hidden display and a core for one program at a time, made by the script that all entry points
    share. Ends what it started when the `with` is left."""

    def __init__(self, number, root, build, prefix="prefix"):
        self.core = str(number % (os.cpu_count() or 1))
        script = ('. scripts/environment.sh; export ROLLOUT_BUILD ROLLOUT_CORE=%s; rollout_prefix "%s" && '
                  'rollout_display && echo "$ROLLOUT_XVFB" && env -0 >&2' % (self.core, os.path.join(build, prefix)))
        started = subprocess.run(["bash", "-c", script], cwd=root, capture_output=True,
                                 env=dict(os.environ, ROLLOUT_BUILD=build))
        if started.returncode != 0:
            raise RuntimeError("Lane %d did not start: %s" % (number, started.stderr.decode()[-400:]))
        self.environment = dict(entry.split("=", 1) for entry in started.stderr.decode().split("\0") if "=" in entry)
        self.display = int(started.stdout.split()[-1])

    def command(self, program):
        return ["taskset", "-c", self.core, "wine", program]

    def stop_programs(self):
        """Ends every program of the prefix; the next one starts its server anew."""
        subprocess.run(["wineserver", "-k"], env=self.environment, stderr=subprocess.DEVNULL)
        subprocess.run(["wineserver", "-w"], env=self.environment, stderr=subprocess.DEVNULL)

    def close(self):
        self.stop_programs()
        os.kill(self.display, 15)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


class ProgramRun:
    """How a GoogleTest program ended: `running` is the test that it ended in, `lines` the output of the last test,
    `finished` whether all tests were over, `late` whether the time limit ended it."""

    def __init__(self):
        self.running, self.lines, self.finished, self.late, self.code = None, [], False, False, None


class Limit:
    """Ends a program, and what it started in its lane, when it says nothing more of its tests for so many seconds."""

    def __init__(self, run, process, seconds, lane):
        self.run, self.process, self.seconds, self.lane = run, process, seconds, lane
        self.timer = None
        self.start_anew()

    def start_anew(self):
        self.stop()
        self.timer = threading.Timer(self.seconds, self.end)
        self.timer.start()

    def stop(self):
        if self.timer:
            self.timer.cancel()
            self.timer.join()  # one that has fired stops the lane, which the next program must not meet

    def end(self):
        self.run.late = True
        self.process.kill()
        if self.lane:
            self.lane.stop_programs()


def read_program(command, environment, folder, log, test_seconds, on_result, lane=None):
    """Runs a GoogleTest program and calls on_result(name, kind, lines) after each test; kind is OK, FAILED or
    SKIPPED. Its output goes to the open file `log` too. test_seconds: what one test may take before the program is ended."""
    run = ProgramRun()
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=environment, cwd=folder,
                               stdin=subprocess.DEVNULL)
    limit = Limit(run, process, test_seconds, lane)
    over = False
    for raw in process.stdout:
        log.write(raw)
        line = raw.decode("utf-8", "replace").rstrip()
        match = TEST_LINE.match(line)
        kind = match.group(1) if match else ""
        if kind == "RUN":
            limit.start_anew()
            run.running, run.lines = match.group(2), []
        elif kind and run.running == match.group(2):
            on_result(run.running, kind, run.lines)
            run.running = None
        elif line.startswith("[==========]") and " ran." in line:
            over = True
        elif run.running:
            run.lines.append(line)
    run.code = process.wait()
    limit.stop()
    run.finished = over and not run.running
    return run

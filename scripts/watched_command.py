"""Runs a command that may take long or never end: says what it waits for meanwhile, and ends it after a limit."""

import re
import subprocess
import tempfile
import time

LOOK_SECONDS = 0.2
# `Action start 10:15:02: InstallFiles.` and, in some logs, `Action 10:15:02: InstallFiles. Copying new files`.
ACTION_LINE = re.compile(r"^Action (?:start )?\d+:\d+:\d+: (\w+)\.")


def read_log(path):
    """The lines of an installer's log, in whichever encoding it was written."""
    with open(path, "rb") as file:
        data = file.read()
    encoding = "utf-16" if data[:2] in (b"\xff\xfe", b"\xfe\xff") else "cp1252"
    return data.decode(encoding, "replace").splitlines()


def last_action(logs):
    """The action that the newest of these logs names last, in words."""
    for log in reversed(logs):
        for line in reversed(read_log(log)):
            match = ACTION_LINE.match(line)
            if match:
                return "last action in its log: " + match.group(1)
    return "no action in its log yet"


class Patience:
    """How long a command may take, and how often it is said that it is waited for; in seconds."""

    def __init__(self, limit, report):
        self.limit, self.report = limit, report


class CommandOverdue(Exception):
    """The command was ended, as it did not come back within the limit."""


def run_watched(name, command, environment, patience, find_logs, end):
    """Runs the command and gives what it printed. `find_logs` names the logs that have been written so far, the newest
    last; `end` ends all that the command has started."""
    started = time.monotonic()
    reported = started
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen(command, env=environment, stdout=output, stderr=subprocess.DEVNULL,
                                   stdin=subprocess.DEVNULL)
        while True:
            try:
                process.wait(LOOK_SECONDS)
                break
            except subprocess.TimeoutExpired:
                now = time.monotonic()
            if now - started >= patience.limit:
                action = last_action(find_logs())
                end()
                process.kill()
                process.wait()
                raise CommandOverdue("%s did not come back within %g seconds and was ended; %s"
                                     % (name, patience.limit, action))
            if now - reported >= patience.report:
                reported = now
                print("Waiting for %s for %d seconds; %s." % (name, now - started, last_action(find_logs())), flush=True)
        output.seek(0)
        return output.read().decode("utf-8", "replace")

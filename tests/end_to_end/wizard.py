"""What the end-to-end tests share: running Setup.exe on media, and a look at what came out."""

import glob
import hashlib
import os
import shutil
import signal
import subprocess
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
BUILD = os.environ.get("ROLLOUT_BUILD", os.path.join(ROOT, "build"))
PROGRAM_FOLDER = os.path.join(BUILD, "windows", "bin")
MEDIA = os.path.join(BUILD, "windows", "media")
RUN_SECONDS = 240


def windows_path(path):
    return "Z:" + os.path.abspath(path).replace("/", "\\")


class Run:
    """One unattended run of the wizard: its exit code, whole and as the shell has it, and its output."""

    def __init__(self, code, output, shell_code):
        self.code, self.output, self.shell_code = code, output, shell_code


class WizardTest(unittest.TestCase):
    """A test with a scratch folder; self.out is the location of its deployments."""

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="rollout-")
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.out = os.path.join(self.folder, "Deployments")
        os.makedirs(self.out)

    def answers(self, text):
        path = os.path.join(self.folder, "answers.txt")
        with open(path, "w", encoding="utf-8") as file:
            file.write("rollout-answers 1\n" + text)
        return path

    def begin(self, name, **keys):
        """The begin page's answers with a local location confirmed."""
        lines = ["[begin]", "name = " + name, "on_question.local_location = yes"]
        lines += ["%s = %s" % (key, value) for key, value in keys.items()]
        return self.answers("\n".join(lines) + "\n")

    def command(self, answers, *words, media=MEDIA, out=None, program=None):
        """The wizard's command line. out: a Windows path; empty for answers that have their own location."""
        program = program or os.path.join(PROGRAM_FOLDER, "Setup.exe")
        media = media if media.startswith("\\\\") else windows_path(media)
        out = windows_path(self.out) if out is None else out
        return ["taskset", "-c", os.environ.get("ROLLOUT_CORE", "0"), "wine", program, "--media", media, "--answers",
                windows_path(answers), *(["--out", out] if out else []), *words]

    def wizard(self, answers, *words, media=MEDIA, out=None, program=None):
        process = subprocess.Popen(self.command(answers, *words, media=media, out=out, program=program),
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        try:
            output = process.communicate(timeout=RUN_SECONDS)[0]
        except subprocess.TimeoutExpired:
            for number in self.processes():  # both: the guarded one holds the output open
                os.kill(number, signal.SIGKILL)
            output = process.communicate(timeout=30)[0]
            self.fail("The wizard still ran after %d seconds:\n%s" % (RUN_SECONDS, output.decode("utf-8", "replace")))
        return self.run_of(output, process.returncode)

    def run_of(self, output, shell_code):
        output = output.decode("utf-8", "replace").replace("\r\n", "\n")
        last = output.strip().splitlines()[-1] if output.strip() else ""
        self.assertRegex(last, r"^Exit code \d+", "The wizard did not say its exit code. The shell has %d, and this was "
                         "its output:\n%s" % (shell_code, output))
        return Run(int(last.split()[2].rstrip(":")), output, shell_code)

    def processes(self):
        """The numbers of the wizard's processes that have this test's folder on their command line: of a run that is
        under way there are two, the guard and the guarded one."""
        found = []
        for path in glob.glob("/proc/[0-9]*/cmdline"):
            try:
                with open(path, "rb") as file:
                    words = file.read().decode("utf-8", "replace").split("\0")
            except OSError:
                continue  # it has just ended
            if any(word.endswith("Setup.exe") for word in words[:2]) and self.folder in " ".join(words).replace("\\", "/"):
                found.append(int(path.split("/")[2]))
        return found

    def media_with_tabs(self):
        """The sample's media with their pages as tabs of the configure dialog."""
        media = os.path.join(self.folder, "Media")
        shutil.copytree(MEDIA, media)
        path = os.path.join(media, "Setup.xml")
        text = text_of(path)
        self.assertEqual(text.count("<Flow>"), 1)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text.replace("<Flow>", '<Flow configure="yes">'))
        return media

    def build(self, name, **keys):
        run = self.wizard(self.begin(name, **keys))
        self.assertEqual(run.code, 0, run.output)
        return os.path.join(self.out, name)


def tree_of(folder):
    """Every file below a folder with the SHA-256 of its bytes."""
    found = {}
    for parent, _, names in os.walk(folder):
        for name in names:
            path = os.path.join(parent, name)
            with open(path, "rb") as file:
                found[os.path.relpath(path, folder)] = hashlib.sha256(file.read()).hexdigest()
    return found


def properties_of(database):
    """The rows of an installer database's Property table."""
    rows = subprocess.run(["msiinfo", "export", database, "Property"], stdout=subprocess.PIPE, check=True)
    lines = rows.stdout.decode("utf-8").replace("\r", "").split("\n")[3:]
    return dict(line.split("\t", 1) for line in lines if "\t" in line)


def property_of(database, name):
    """The value in the database's Property table; None without a row."""
    return properties_of(database).get(name)


def set_property(database, name, value):
    """Changes or adds a row of the database's Property table; the value may hold anything but an apostrophe."""
    for statement in ("DELETE FROM `Property` WHERE `Property` = '%s'" % name,
                      "INSERT INTO `Property` (`Property`, `Value`) VALUES ('%s', '%s')" % (name, value)):
        subprocess.run(["msibuild", database, "-q", statement], check=True, stdout=subprocess.DEVNULL)


def text_of(path):
    with open(path, encoding="utf-8-sig") as file:
        return file.read()

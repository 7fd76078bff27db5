"""Setup.exe --verify on deployments of the sample: exit codes, output, log and reports."""

import json
import os
import stat
import subprocess
import unittest

from wizard import PROGRAM_FOLDER, RUN_SECONDS, WizardTest, text_of, tree_of, windows_path

AS_BUILT, BAD_COMMAND_LINE, DIFFERS, UNDETERMINED, FAILED = 0, 20, 28, 29, 1603


class VerifyTest(WizardTest):
    def deployment(self, name="Office"):
        folder = os.path.join(self.out, name)
        os.rename(self.build("Built"), folder)
        return folder

    def verify(self, folder, *words):
        program = os.path.join(PROGRAM_FOLDER, "Setup.exe")
        command = ["taskset", "-c", os.environ.get("ROLLOUT_CORE", "0"), "wine", program, "--verify",
                   folder if folder.startswith("\\\\") else windows_path(folder), *words]
        process = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=RUN_SECONDS)
        run = self.run_of(process.stdout, process.returncode)
        self.assertEqual(run.code & 0xFF, run.shell_code & 0xFF)
        return run

    def findings(self, output):
        kinds = ("Missing: ", "Added: ", "Changed: ", "Can't be read: ", "Setting: ")
        return [line for line in output.splitlines() if line.startswith(kinds)]

    def test_a_deployment_is_what_was_built_under_another_name_and_in_another_place(self):
        folder = self.deployment("Renamed äß 中")
        before = tree_of(folder)
        run = self.verify(folder)
        self.assertEqual(run.code, AS_BUILT, run.output)
        self.assertEqual(self.findings(run.output), [])
        self.assertIn("is what was built", run.output)
        self.assertEqual(tree_of(folder), before)

    def test_a_deployment_that_nobody_may_write_to_is_verified(self):
        folder = self.deployment()
        for parent, folders, names in os.walk(folder, topdown=False):
            for name in names + folders:
                path = os.path.join(parent, name)
                os.chmod(path, os.stat(path).st_mode & ~(stat.S_IWUSR | stat.S_IWGRP | stat.S_IWOTH))
        os.chmod(folder, 0o555)
        self.addCleanup(lambda: [os.chmod(parent, 0o755) for parent, _, _ in os.walk(folder)])
        self.assertEqual(self.verify(folder).code, AS_BUILT)

    def test_damage_is_named_in_output_log_and_both_kinds_of_report(self):
        folder = self.deployment()
        with open(os.path.join(folder, "ReadMe.txt"), "ab") as file:
            file.write(b"x")
        os.remove(os.path.join(folder, "Changes.txt"))
        with open(os.path.join(folder, "new \u202egnp.txt"), "wb") as file:
            file.write(b"x")
        log = os.path.join(self.folder, "verify.log")
        report = os.path.join(self.folder, "report.JSON")
        run = self.verify(folder, "--log", windows_path(log), "--report", windows_path(report))
        self.assertEqual(run.code, DIFFERS, run.output)
        lines = self.findings(run.output)
        self.assertEqual([line.split(" (")[0] for line in lines],
                         ["Missing: Changes.txt", "Added: new <U+202E>gnp.txt", "Changed: ReadMe.txt"])
        self.assertEqual(self.findings(text_of(log)), lines)
        self.assertIn("Exit code 28: ", text_of(log))
        with open(report, "rb") as file:
            parsed = json.loads(file.read().decode("utf-8"))
        self.assertEqual([(finding["kind"], finding["path"]) for finding in parsed["findings"]],
                         [("missing", "Changes.txt"), ("added", "new \u202egnp.txt"), ("changed", "ReadMe.txt")])
        self.assertEqual(parsed["verdict"], "differs")
        self.assertTrue(run.output.strip().endswith(parsed["result"]), run.output)
        text = os.path.join(self.folder, "report.txt")
        self.assertEqual(self.verify(folder, "--report", windows_path(text)).code, DIFFERS)
        self.assertEqual(self.findings(text_of(text)), lines)

    def test_changed_settings_of_the_commands_are_good_and_named(self):
        folder = self.deployment()
        for name in ("Install.cmd", "Uninstall.cmd"):
            path = os.path.join(folder, name)
            with open(path, "rb") as file:
                script = file.read()
            start = script.index(b'set "LOG_FOLDER=') + len(b'set "LOG_FOLDER=')
            script = script[:start] + b"\\\\elsewhere\\logs" + script[script.index(b'"', start):]
            with open(path, "wb") as file:
                file.write(script)
        report = os.path.join(self.folder, "report.json")
        run = self.verify(folder, "--report", windows_path(report))
        self.assertEqual(run.code, AS_BUILT, run.output)
        with open(report, encoding="utf-8") as file:
            parsed = json.load(file)
        self.assertEqual([(finding["path"], finding["setting"], finding["now"]) for finding in parsed["findings"]],
                         [(name, "log folder", "\\\\elsewhere\\logs") for name in ("Install.cmd", "Uninstall.cmd")])

    def test_a_product_s_database_is_named_by_its_codes(self):
        folder = self.deployment()
        databases = [os.path.join(parent, name) for parent, _, names in os.walk(folder) for name in names
                     if name.endswith(".msi")]
        subprocess.run(["msibuild", databases[0], "-s", "Other", "Other", "x64;1033",
                        "{0E5D0B7A-0000-4000-8000-00000000000A}"], check=True, stdout=subprocess.DEVNULL)
        run = self.verify(folder)
        self.assertEqual(run.code, DIFFERS, run.output)
        lines = self.findings(run.output)
        self.assertEqual(len(lines), 1, run.output)
        self.assertIn("package code {0E5D0B7A-0000-4000-8000-00000000000A}, built with {", lines[0])

    def test_what_cannot_be_determined_has_a_code_of_its_own(self):
        folder = self.deployment()
        self.assertEqual(self.verify(os.path.join(folder, "Image")).code, UNDETERMINED)
        self.assertEqual(self.verify(os.path.join(self.folder, "nowhere")).code, UNDETERMINED)
        self.assertEqual(self.verify(os.path.join(folder, "ReadMe.txt")).code, UNDETERMINED)
        os.remove(os.path.join(folder, "Manifest.txt"))
        run = self.verify(folder)
        self.assertEqual(run.code, UNDETERMINED, run.output)
        self.assertIn("Manifest.txt is missing", run.output)

    def test_nothing_is_written_into_the_folder_and_no_report_in_the_way_is_replaced(self):
        folder = self.deployment()
        before = tree_of(folder)
        inside = windows_path(os.path.join(folder, "Image", "report.txt"))
        for words in (("--report", inside), ("--log", inside)):
            run = self.verify(folder, *words)
            self.assertEqual(run.code, BAD_COMMAND_LINE, run.output)
            self.assertIn("is only read", run.output)
        self.assertEqual(tree_of(folder), before)
        log = windows_path(os.path.join(self.folder, "both.txt"))
        self.assertEqual(self.verify(folder, "--report", log, "--log", log).code, BAD_COMMAND_LINE)

    def test_a_report_that_cannot_be_written_fails_the_run(self):
        run = self.verify(self.deployment(), "--report", windows_path(os.path.join(self.folder, "no", "r.txt")))
        self.assertEqual(run.code, FAILED, run.output)
        self.assertIn("--report", run.output)


if __name__ == "__main__":
    unittest.main()

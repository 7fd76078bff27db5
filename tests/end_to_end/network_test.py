"""Deployments on a share: \\\\FILES\\Deployments is a real network path in the prefix, answered by the tests' provider."""

import os
import shutil
import subprocess
import sys

from wizard import PROGRAM_FOLDER, ROOT, WizardTest, text_of, windows_path

PROVIDER = "RolloutTestNetwork"
ORDER_KEY = "HKLM\\System\\CurrentControlSet\\Control\\NetworkProvider\\Order"
SERVICE_KEY = "HKLM\\System\\CurrentControlSet\\Services\\%s\\NetworkProvider" % PROVIDER
SHARE = "\\\\FILES\\Deployments"


def set_registry(key, name, value):
    subprocess.run(["wine", "reg", "add", key, "/v", name, "/t", "REG_SZ", "/d", value, "/f"], check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


class NetworkTest(WizardTest):
    def setUp(self):
        super().setUp()
        provider = os.path.join(PROGRAM_FOLDER, "page_tests", "test_network_provider.dll")
        set_registry(SERVICE_KEY, "Name", PROVIDER)
        set_registry(SERVICE_KEY, "ProviderPath", windows_path(provider))
        set_registry(ORDER_KEY, "ProviderOrder", PROVIDER)
        server = os.path.join(os.environ["WINEPREFIX"], "dosdevices", "unc", "FILES")
        os.makedirs(server, exist_ok=True)
        self.addCleanup(shutil.rmtree, server, ignore_errors=True)
        os.symlink(self.out, os.path.join(server, "Deployments"))

    def build_on_share(self, answers, **words):
        run = self.wizard(self.answers("[begin]\n" + answers), out=SHARE, **words)
        self.assertEqual(run.code, 0, run.output)
        return run

    def assert_installs(self, name):
        result = subprocess.run([sys.executable, os.path.join(ROOT, "scripts", "workstation.py"),
                                 os.path.join(self.out, name), "--prefix", os.environ["WINEPREFIX"], "--logs",
                                 os.path.join(self.folder, "logs")], capture_output=True, text=True)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)

    def test_a_share_needs_no_question_and_its_deployment_installs(self):
        run = self.build_on_share("name = Office\n")
        self.assertNotIn("Box", run.output)
        self.assertIn("Deployment %s\\Office\\" % SHARE, run.output)
        self.assertIn('"%s\\Office\\Install.cmd"' % SHARE, text_of(os.path.join(self.out, "Office", "ReadMe.txt")))
        self.assert_installs("Office")

    def test_basing_and_modifying_work_on_a_share(self):
        self.build_on_share("name = Base\n")
        media = SHARE + "\\Base\\Image"
        self.build_on_share("mode = create_from\nbase = Base\nname = Second\n", media=media)
        self.build_on_share("mode = modify\nbase = Base\non_question.replace = yes\n", media=media)
        self.assertEqual(sorted(os.listdir(self.out)), ["Base", "Second"])
        self.assert_installs("Second")

    def test_a_share_that_does_not_answer_is_refused(self):
        run = self.wizard(self.answers("[begin]\nname = Office\n"), out="\\\\FILES\\NoSuchShare")
        self.assertEqual(run.code, 22, run.output)
        self.assertIn("\\\\FILES\\NoSuchShare", run.output)

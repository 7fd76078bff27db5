"""The look at a workstation that ./run ends with, on packages that hang, leave things on purpose, or leave them behind."""

import os
import shutil
import subprocess
import sys
import unittest

from wizard import MEDIA, PROGRAM_FOLDER, ROOT, WizardTest, windows_path

PACKAGE = os.path.join(MEDIA, "x64", "ZoltdeDE", "ZoltdeDE.msi")
LIMIT = "20"  # seconds; the packages here install in one, on a busy computer in ten
RUN_PROGRAM_OF_PROPERTY, RUN_SCRIPT = 50, 37  # types of custom actions
PERMANENT, SIXTY_FOUR_BIT = 16, 256

sys.path.insert(0, os.path.join(ROOT, "scripts"))
from workstation import parse_rows  # noqa: E402 - the folder has to be known first


class TableTest(unittest.TestCase):
    def test_a_cell_of_several_lines_stays_one_cell(self):
        """Such a property ended the look with a traceback, as if the deployment did not install."""
        rows = parse_rows("Property\tValue\r\ns72\tl0\r\nProperty\tProperty\r\n"
                          "ARPCOMMENTS\tFirst line\r\nsecond\u2028 line\nthird\r\nName\tZolt\r\n")
        self.assertEqual(rows, [{"Property": "ARPCOMMENTS", "Value": "First line\nsecond\u2028 line\nthird"},
                                {"Property": "Name", "Value": "Zolt"}])


class WorkstationTest(WizardTest):
    def setUp(self):
        super().setUp()
        # What these packages leave is nothing for the tests that come after.
        installed = os.path.join(os.environ["WINEPREFIX"], "drive_c", "Program Files", "Velkmora")
        self.addCleanup(shutil.rmtree, installed, ignore_errors=True)

    def deployment_of(self, *statements):
        """A deployment of the sample's package with its database changed first."""
        package = os.path.join(self.folder, "media", "Odd.msi")
        os.makedirs(os.path.dirname(package))
        shutil.copy(PACKAGE, package)
        for statement in statements:
            subprocess.run(["msibuild", package, "-q", statement], check=True, stdout=subprocess.DEVNULL)
        run = self.wizard(self.begin("Odd"), media=package)
        self.assertEqual(run.code, 0, run.output)
        return os.path.join(self.out, "Odd")

    def look(self, deployment, *words):
        return subprocess.run([sys.executable, os.path.join(ROOT, "scripts", "workstation.py"), deployment, "--prefix",
                               os.environ["WINEPREFIX"], "--logs", os.path.join(self.folder, "logs"), *words],
                              capture_output=True, text=True)

    def hanging_deployment(self):
        program = windows_path(os.path.join(PROGRAM_FOLDER, "broken_pages", "waits.exe"))
        return self.deployment_of(
            "INSERT INTO `Property` (`Property`, `Value`) VALUES ('WAITS', '%s')" % program,
            "INSERT INTO `CustomAction` (`Action`, `Type`, `Source`) VALUES ('WaitForEver', %d, 'WAITS')"
            % RUN_PROGRAM_OF_PROPERTY,
            "INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('WaitForEver', 4010)")

    def change_component(self, file, assignment):
        """The statement that changes the component of one of the package's files, and makes it another one than the
        sample's, whose registration stays too."""
        return "UPDATE `Component` SET `ComponentId` = '{0B6A5F0E-4C0E-4E5B-9B43-6A6C1D5F1E01}', %s WHERE `Component` = 'LANGUAGEDIR_DE_DE_%s'" % (assignment, file)

    def test_an_installation_that_hangs_is_told_while_it_waits_and_ended_after_the_limit(self):
        # Custom actions that hang held the look for ten silent minutes.
        result = self.look(self.hanging_deployment(), "--limit", LIMIT, "--report", "1")
        self.assertEqual(result.returncode, 1, result.stdout + result.stderr)
        self.assertRegex(result.stdout, r"Waiting for Install.cmd for \d+ seconds; last action in its log: WaitForEver")
        self.assertIn("TROUBLE: Install.cmd did not come back within %s seconds and was ended; " % LIMIT +
                      "last action in its log: WaitForEver", result.stdout)
        self.assertRegex(result.stdout, r"Logs on the workstation: .*_Install_")

    def test_a_short_installation_says_nothing_of_waiting(self):
        result = self.look(self.deployment_of(), "--report", "120")  # which is long, however busy the computer is
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertNotIn("Waiting for", result.stdout)
        self.assertNotIn("Stays on purpose", result.stdout)
        self.assertNotIn("custom actions", result.stdout)

    def test_the_file_of_a_permanent_component_stays_on_purpose(self):
        deployment = self.deployment_of(
            self.change_component("Words_dic", "`Attributes` = %d" % (PERMANENT | SIXTY_FOUR_BIT)))
        result = self.look(deployment)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertRegex(result.stdout, r"Stays on purpose: .*Words\.dic \(its component is permanent\)")
        self.assertIn("0 files and values were left behind", result.stdout)

    def test_a_file_that_only_stays_by_mistake_is_a_trouble(self):
        deployment = self.deployment_of("DELETE FROM `InstallExecuteSequence` WHERE `Action` = 'RemoveFiles'")
        result = self.look(deployment)
        self.assertEqual(result.returncode, 1, result.stdout + result.stderr)
        self.assertIn("4 files and values were left behind", result.stdout)
        self.assertRegex(result.stdout, r"TROUBLE: left behind: .*Words\.dic")
        self.assertNotIn("Stays on purpose", result.stdout)

    def test_what_custom_actions_left_is_said_to_be_unknown(self):
        deployment = self.deployment_of(
            "INSERT INTO `Property` (`Property`, `Value`) VALUES ('GONE', 'C:\\windows\\system32\\hostname.exe')",
            "INSERT INTO `CustomAction` (`Action`, `Type`, `Source`) VALUES ('AskTheName', %d, 'GONE')"
            % RUN_PROGRAM_OF_PROPERTY,
            "INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`) "
            "VALUES ('AskTheName', 'NEVER', 4010)")
        result = self.look(deployment)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertRegex(result.stdout, r"What these custom actions made can't be known .*: AskTheName")

    def deployment_with_paths(self, script):
        """A registry value that carries a property with a directory, which the script is to resolve."""
        return self.deployment_of(
            "INSERT INTO `Property` (`Property`, `Value`) VALUES ('PATHS', '[LANGUAGEDIR_DE_DE]a;[\\[]b[\\]];[NO_SUCH]c')",
            "INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Value`, `Component_`) VALUES ('Paths', 2, "
            "'Software\\Velkmora\\Odd', 'Paths', '[PATHS]', 'LANGUAGEDIR_DE_DE_Words_dic')",
            "INSERT INTO `CustomAction` (`Action`, `Type`, `Target`) VALUES ('Resolve', %d, '%s')" % (RUN_SCRIPT, script),
            "INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('Resolve', 1010)")

    def test_a_path_that_a_script_resolves_has_the_directories_of_the_workstation(self):
        result = self.look(self.deployment_with_paths(
            'Session.Property("PATHS") = Session.Property("LANGUAGEDIR_DE_DE") + "a;[b];c"'))
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertIn("1 of 1 properties stand in the registry", result.stdout)

    def test_a_path_that_a_script_leaves_as_it_is_is_a_trouble(self):
        result = self.look(self.deployment_with_paths('Session.Property("PATHS") = Session.Property("PATHS")'))
        self.assertEqual(result.returncode, 1, result.stdout + result.stderr)
        self.assertRegex(result.stdout, r'TROUBLE: HKLM.Software.Velkmora.Odd.Paths is REG_SZ "\[LANGUAGEDIR_DE_DE\]a;.*" '
                                        r'instead of "C:\\Program Files\\Velkmora\\.*\\a;\[b\];c"')

    def test_a_property_of_two_lines_and_a_package_that_is_only_payload_stop_no_look(self):
        deployment = self.deployment_of(
            "INSERT INTO `Property` (`Property`, `Value`) VALUES ('ARPCOMMENTS', 'First line\nsecond line')")
        shutil.copy(PACKAGE, os.path.join(deployment, "Image", "Payload.msi"))
        result = self.look(deployment)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertIn("0 files and values were left behind.", result.stdout)

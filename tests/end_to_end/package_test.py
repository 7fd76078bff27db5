"""Packages of other makers, made by other tools, without a description."""

import glob
import os
import subprocess
import sys

from update_service import NOBODY, UpdateService, point_products_to
from wizard import MEDIA, ROOT, WizardTest, property_of

sys.path.insert(0, os.path.join(ROOT, "scripts"))
import sample_additions  # noqa: E402 - the folder has to be known first

ACTIONS = ("CostInitialize", "FileCost", "CostFinalize", "InstallValidate", "InstallInitialize", "ProcessComponents",
           "UnpublishFeatures", "RemoveRegistryValues", "RemoveFiles", "InstallFiles", "WriteRegistryValues",
           "RegisterProduct", "PublishFeatures", "PublishProduct", "InstallFinalize")

# Name, types and key columns, as a text archive of a table has them.
HEADS = {
    "Property": ("Property\tValue", "s72\tl0", "Property"),
    "Directory": ("Directory\tDirectory_Parent\tDefaultDir", "s72\tS72\tl255", "Directory"),
    "Feature": ("Feature\tFeature_Parent\tTitle\tDescription\tDisplay\tLevel\tDirectory_\tAttributes",
                "s38\tS38\tL64\tL255\tI2\ti2\tS72\ti2", "Feature"),
    "Component": ("Component\tComponentId\tDirectory_\tAttributes\tCondition\tKeyPath", "s72\tS38\ts72\ti2\tS255\tS72",
                  "Component"),
    "FeatureComponents": ("Feature_\tComponent_", "s38\ts72", "Feature_\tComponent_"),
    "File": ("File\tComponent_\tFileName\tFileSize\tVersion\tLanguage\tAttributes\tSequence",
             "s72\ts72\tl255\ti4\tS72\tS20\tI2\ti2", "File"),
    "Media": ("DiskId\tLastSequence\tDiskPrompt\tCabinet\tVolumeLabel\tSource", "i2\ti2\tL64\tS255\tS32\tS72",
              "DiskId"),
    "Registry": ("Registry\tRoot\tKey\tName\tValue\tComponent_", "s72\ti2\tl255\tL255\tL0\ts72", "Registry"),
    "InstallExecuteSequence": ("Action\tCondition\tSequence", "s72\tS255\tI2", "Action"),
}


class PackageTest(WizardTest):
    def package(self, value="1"):
        """A package with a file in a cabinet beside it and a registry value, its numbers tight and its medium large."""
        folder = os.path.join(self.folder, "downloads")
        os.makedirs(folder)
        path = os.path.join(folder, "quay.msi")
        rows = {
            "Property": [("ProductCode", "{7F3F0B0C-2D6E-4C56-9B1B-2B52A0D5C333}"), ("ProductName", "Quay & Sons Tool"),
                         ("ProductVersion", "2.0.0"), ("ProductLanguage", "1033"), ("Manufacturer", "Quay")],
            "Directory": [("TARGETDIR", "", "SourceDir"), ("ProgramFilesFolder", "TARGETDIR", "."),
                          ("QUAYDIR", "ProgramFilesFolder", "QUAY|Quay Tool")],
            "Feature": [("All", "", "All", "", "2", "1", "QUAYDIR", "0")],
            "Component": [("Main", "{5D1B8F0E-5B43-4F0C-8C2A-5E9D7C1A0B33}", "QUAYDIR", "0", "", "tool")],
            "FeatureComponents": [("All", "Main")],
            "File": [("tool", "Main", "tool.txt", "5", "", "", "16384", "1")],
            "Media": [("1", "32767", "", "quay.cab", "", "")],
            "Registry": [("Set", "2", "Software\\Quay", "Bay", value, "Main")],
            "InstallExecuteSequence": [(name, "", str(10 + 10 * index)) for index, name in enumerate(ACTIONS)],
        }
        tool = os.path.join(self.folder, "tool")
        with open(tool, "w", encoding="ascii") as file:
            file.write("tool\n")
        subprocess.run(["gcab", "-c", os.path.join(folder, "quay.cab"), "tool"], cwd=self.folder, check=True)
        archives = []
        for table, (columns, types, keys) in HEADS.items():
            archives.append(os.path.join(self.folder, table + ".idt"))
            with open(archives[-1], "w", encoding="ascii", newline="\r\n") as file:
                file.write("\n".join([columns, types, table + "\t" + keys] + ["\t".join(row) for row in rows[table]]))
                file.write("\n")
        subprocess.run(["msibuild", path, "-s", "Quay Tool", "Quay", "Intel;1033",
                        "{0F6F9F70-6E0A-4E6A-9B2F-0F3B1C0E4D44}"], check=True)
        for archive in archives:
            subprocess.run(["msibuild", path, "-i", archive], check=True)
        return path

    def walk(self, answers, media, *words):
        """A run with pictures, and the pages that it showed, in their order."""
        pictures = os.path.join(self.folder, "pictures")
        run = self.wizard(answers, "--pictures", "Z:" + pictures.replace("/", "\\"), *words, media=media)
        names = [os.path.basename(path)[3:-4] for path in sorted(glob.glob(os.path.join(pictures, "*.png")))]
        return run, [name for name in names if not name.endswith("-box")]

    def default_answers(self, media):
        """What ./run takes when nobody names an answers file."""
        command = '. "$0/scripts/environment.sh"; rollout_default_answers "$1"'
        return subprocess.run(["bash", "-c", command, ROOT, media], capture_output=True, text=True,
                              check=True).stdout.strip()

    def assert_installs(self, name):
        result = subprocess.run([sys.executable, os.path.join(ROOT, "scripts", "workstation.py"),
                                 os.path.join(self.out, name), "--prefix", os.environ["WINEPREFIX"], "--logs",
                                 os.path.join(self.folder, "logs")], capture_output=True, text=True)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        return result.stdout

    def test_a_package_of_another_maker_is_asked_nothing_that_it_does_not_know(self):
        run, pages = self.walk(self.begin("Quay"), self.package())
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(pages, ["BeginDeploymentDialog", "DeploymentSettingsDialog", "AddAdditionalFilesDialog",
                                 "ServicePackDialog", "DeploymentCompleteDialog"])
        self.assertIn("1 of 1 files are there", self.assert_installs("Quay"))
        database = os.path.join(self.out, "Quay", "Image", "quay.msi")
        self.assertIsNone(property_of(database, "ZOLT_PARTSBAY_ENABLE"))

    def test_a_package_that_names_a_property_is_asked_for_it(self):
        path = self.begin("Quay")
        with open(path, "a", encoding="utf-8") as file:
            file.write("[resources]\nparts_bay = no\n")
        run, pages = self.walk(path, self.package("[ZOLT_PARTSBAY_ENABLE]"))
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(pages, ["BeginDeploymentDialog", "DeploymentSettingsDialog", "AddAdditionalFilesDialog", "OnlineResourcesDialog",
                                 "ServicePackDialog", "DeploymentCompleteDialog"])
        self.assertIn("1 of 1 properties stand in the registry", self.assert_installs("Quay"))
        self.assertEqual(property_of(os.path.join(self.out, "Quay", "Image", "quay.msi"), "ZOLT_PARTSBAY_ENABLE"), "#0")

    def test_answers_for_pages_that_a_package_does_not_have_are_an_error(self):
        package = self.package()
        for section in ("contact", "notices", "resources"):
            with self.subTest(section=section):
                path = self.begin("Quay")
                with open(path, "a", encoding="utf-8") as file:
                    file.write("[%s]\nleave = next\n" % section)
                run = self.wizard(path, "--check", media=package)
                self.assertEqual(run.code, 24, run.output)
                self.assertRegex(run.output, r"answers\.txt\(\d+\).*" + section)
        self.assertEqual(os.listdir(self.out), [])

    def test_a_deployment_of_a_package_keeps_its_pages(self):
        self.assertEqual(self.wizard(self.begin("Quay"), media=self.package()).code, 0)
        image = os.path.join(self.out, "Quay", "Image")
        run, pages = self.walk(self.begin("Second", mode="create_from", base="Quay"), image)
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(pages, ["BeginDeploymentDialog", "DeploymentSettingsDialog", "AddAdditionalFilesDialog",
                                 "ServicePackDialog", "DeploymentCompleteDialog"])

    def test_the_default_answers_suit_the_pages_of_the_media(self):
        logs = os.path.join(self.folder, "all logs")
        os.makedirs(logs)
        words = ("--set", "settings.log_folder=Z:" + logs.replace("/", "\\"))
        package = self.package()
        sample_additions.write(self.folder)
        service = UpdateService()
        self.addCleanup(service.close)
        point_products_to(service.catalog_address(), self.folder)
        self.addCleanup(point_products_to, NOBODY, self.folder)
        for media, answers, folder in ((MEDIA, "run-answers.txt", self.folder), (package, "run-answers-package.txt", ROOT)):
            with self.subTest(media=media):
                self.assertEqual(self.default_answers(media), answers)
                run = self.wizard(os.path.join(folder, answers), "--check", *words, media=media)
                self.assertEqual(run.code, 0, run.output)
        run = self.wizard(os.path.join(ROOT, "run-answers.txt"), "--check", *words, media=package)
        self.assertEqual(run.code, 24, run.output)

    def test_the_default_answers_suit_a_deployment_of_a_package(self):
        self.assertEqual(self.wizard(self.begin("Quay"), media=self.package()).code, 0)
        for media in (os.path.join(self.out, "Quay"), os.path.join(self.out, "Quay", "Image")):
            self.assertEqual(self.default_answers(media), "run-answers-package.txt")

"""What ships holds nothing that only tests need."""

import os
import subprocess
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
BUILD = os.path.join(ROOT, "build", "windows")
TOOL = "x86_64-w64-mingw32-"
# What stands behind builder/file_fault.h, and the call by which it ends a process.
HOOKS = ("IsFaultDue", "CountFlush", "SetFileFault", "g_fault")


def imports_of(name):
    listing = subprocess.run([TOOL + "objdump", "-p", os.path.join(BUILD, "bin", name)], capture_output=True, text=True,
                             check=True).stdout
    return set(listing.split())


def hooks_in(archive):
    symbols = subprocess.run([TOOL + "nm", "-C", os.path.join(BUILD, "builder", archive)], capture_output=True,
                             text=True, check=True).stdout
    return [name for name in HOOKS if name in symbols]


class ShippedTest(unittest.TestCase):
    def test_the_builder_that_ships_has_no_hook_for_faults(self):
        self.assertEqual(hooks_in("librollout_build_with_faults.a"), list(HOOKS), "the check finds them where they are")
        self.assertEqual(hooks_in("librollout_build.a"), [])

    def test_the_host_that_ships_can_not_end_its_process(self):
        self.assertIn("TerminateProcess", imports_of("build_test.exe"), "the check finds it where it is")
        self.assertNotIn("TerminateProcess", imports_of("WizCore.dll"))

    def test_no_variable_of_the_tests_is_known_to_what_ships(self):
        for name in ("WizCore.dll", "RolloutUi.dll", "SlimHtml.dll", "FixMgr.dll", "Kmd32.dll", "Setup.exe"):
            with open(os.path.join(BUILD, "bin", name), "rb") as file:
                self.assertNotIn("BUILD_TEST_".encode("utf-16-le"), file.read(), name)
        with open(os.path.join(BUILD, "bin", "build_test.exe"), "rb") as file:
            self.assertIn("BUILD_TEST_".encode("utf-16-le"), file.read(), "the check finds it where it is")

    def test_the_catalog_exports_plain_names(self):
        for library, names in (("FixMgr.dll", ["CheckPatchFile", "GetPatchInfo"]), ("Kmd32.dll", ["getKMDValue", "setMRFlag"])):
            listing = subprocess.run([TOOL + "objdump", "-p", os.path.join(BUILD, "bin", library)], capture_output=True,
                                     text=True, check=True).stdout
            exported = listing.split("[Ordinal/Name Pointer] Table")[1].split("\n\n")[0]
            self.assertEqual([line.split()[-1] for line in exported.strip().splitlines()], names)

    def test_each_language_has_the_library_that_the_page_looks_for_there(self):
        languages = os.path.join(BUILD, "bin", "Languages")
        self.assertTrue(os.listdir(languages))
        for locale in os.listdir(languages):
            self.assertTrue(os.path.exists(os.path.join(languages, locale, "Kmd32.dll")), locale)


if __name__ == "__main__":
    unittest.main()

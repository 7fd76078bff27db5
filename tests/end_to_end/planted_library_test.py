"""The program loads libraries from its own folder and the system's, never from where somebody else can write."""

import os
import shutil
import subprocess

from run_ends_test import BEGIN, BrokenProgramTest, broken
from wizard import PROGRAM_FOLDER, RUN_SECONDS, windows_path

PLANTED = ("FixMgr.dll", "Kmd32.dll")


class PlantedLibraryTest(BrokenProgramTest):
    def run_in(self, folder):
        """A run from that current folder whose second page loads both libraries by their bare names."""
        self.mark = os.path.join(self.folder, "loaded")
        command = self.command(self.begin("Office"), "--check", media=self.media_with_flow(BEGIN, broken("LoadsByName")),
                               program=self.broken_program())
        done = subprocess.run(command, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=RUN_SECONDS,
                              env=dict(os.environ, ROLLOUT_PLANTED_MARK=windows_path(self.mark)))
        run = self.run_of(done.stdout, done.returncode)
        self.assertEqual(run.code, 0, run.output)
        self.assertIn("Page contact", run.output)

    def plant(self, folder):
        os.makedirs(folder, exist_ok=True)
        for name in PLANTED:
            shutil.copy(os.path.join(PROGRAM_FOLDER, "broken_pages", "planted.dll"), os.path.join(folder, name))

    def test_the_current_folder_the_media_and_the_location_are_not_searched(self):
        current = os.path.join(self.folder, "current")
        for folder in (current, self.media_with_flow(BEGIN, broken("LoadsByName")), self.out):
            self.plant(folder)
        self.run_in(current)
        self.assertFalse(os.path.exists(self.mark))

    def test_the_current_folder_is_not_searched_when_it_is_the_media_or_the_location(self):
        for folder in (self.media_with_flow(BEGIN, broken("LoadsByName")), self.out):
            self.plant(folder)
            self.run_in(folder)
            self.assertFalse(os.path.exists(self.mark), folder)

    def test_what_lies_beside_the_program_is_loaded(self):
        """The mark is made where it may be: a check without one would say nothing."""
        self.plant(os.path.dirname(self.broken_program()))
        self.run_in(self.folder)
        self.assertTrue(os.path.exists(self.mark))

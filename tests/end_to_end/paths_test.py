"""The paths of the sample's products in a real run: those that nobody answers, and those that can't be emptied."""

import os
import sys

from wizard import ROOT, WizardTest, properties_of

sys.path[:0] = [os.path.join(ROOT, "scripts"), os.path.join(ROOT, "sample")]

import viewer_product  # noqa: E402
import zolt_product  # noqa: E402
from path_forms import NO_PATH, shown_path, stored_path  # noqa: E402


class UnansweredPathsTest(WizardTest):
    def test_paths_of_every_form_and_length_are_stored_as_the_page_shows_them(self):
        deployment = self.build("Office", platform="x64")
        for product in (zolt_product, viewer_product):
            found = properties_of(os.path.join(deployment, "Image", "x64", product.FOLDER, product.PACKAGE))
            rows = product.DIRECTORY_MAP
            for name in zolt_product.PATH_PROPERTIES:
                shown = shown_path(rows, product.PATHS.get(name, NO_PATH))
                with self.subTest(product=product.NAME, name=name):
                    self.assertEqual(found[name], stored_path(rows, shown))
            self.assertEqual(found["NIW_Custom_Paths_Are_Set"], "0", product.NAME)


class EmptiedPathsTest(WizardTest):
    def test_an_emptied_path_of_the_actions_or_mapping_setups_gets_its_default_back_and_the_run_says_so(self):
        path = self.begin("Office", platform="x64")
        with open(path, "a", encoding="utf-8") as file:
            file.write("[paths]\nactions_recording_file_path =\ndgn_mapping_path =\nadditional_actions_file_location =\n")
        run = self.wizard(path)
        self.assertEqual(run.code, 0, run.output)
        said = [line.strip() for line in run.output.splitlines() if "default is used" in line]
        self.assertEqual(said, ['Box "The path "%s" can\'t be empty, so its default is used."' % label for label in (
            "Recorded actions folder", "DGN mapping setup folder")], "of the viewer both are empty anyway")
        image = os.path.join(self.out, "Office", "Image", "x64")
        stored = {}
        for product in (zolt_product, viewer_product):
            found = properties_of(os.path.join(image, product.FOLDER, product.PACKAGE))
            stored[product.NAME] = [found["ZOLTProfile_" + name] for name in (
                "ActionsRecordingFilePath", "DGNMappingPath", "AdditionalActionsFileLocation")]
        self.assertEqual(stored, {zolt_product.NAME: ["[SUPPORTDIR]", "[SUPPORTDIR]", NO_PATH],
                                  viewer_product.NAME: [NO_PATH, NO_PATH, NO_PATH]})

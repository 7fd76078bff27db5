"""The paths that nobody answers: the page shows them, and the deployment has them as the page gives them back."""

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

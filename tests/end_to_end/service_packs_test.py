"""Service packs in whole runs: offered and downloaded, browsed, appended and merged, refused, recorded and answered again."""

import os
import shutil
import subprocess
import threading
import time
import unittest

from update_service import NOBODY, PATCHES, UpdateService, point_products_to
from wizard import WizardTest, property_of, text_of, tree_of, windows_path

BEGIN = "[begin]\nname = Sample\nplatform = x64\non_question.local_location = yes\non_question.replace = yes\n"
CHANGE = "[begin]\nmode = modify\nbase = Sample\non_question.local_location = yes\non_question.replace = yes\n"
ZOLT, VIEWER = '[service_pack "Zolt 2027"]\n', '[service_pack "Zolt Viewer 2027"]\n'
ZOLT_DATABASE = "Image/x64/Zolt/Zolt2027.msi"
VIEWER_DATABASE = "Image/x64/ZoltViewer/ZoltViewer2027.msi"
VIEWER_PATCH = "Image/x64/ZoltViewer/ServicePacks/ZoltViewer2027Update1.msp"


def recorded(path):
    """What a run has written of its service packs, by section."""
    sections, lines = {}, []
    for line in text_of(path).splitlines():
        if line.startswith("["):
            lines = sections.setdefault(line, []) if line.startswith("[service_pack") else []
        elif line and not line.startswith("#"):
            lines.append(line)
    return {section: lines for section, lines in sections.items() if lines}


class ServicePackTest(WizardTest):
    maxDiff = None

    def setUp(self):
        super().setUp()
        shutil.copytree(os.path.join(PATCHES, "x64"), os.path.join(self.folder, "patches"))
        self.addCleanup(point_products_to, NOBODY, self.folder)

    def serve(self, **words):
        service = UpdateService(**words)
        self.addCleanup(service.close)
        point_products_to(service.catalog_address(), self.folder)
        return service

    def serve_nobody(self):
        point_products_to(NOBODY, self.folder)

    def answers_for(self, name, text):
        """A file of that name beside the patches."""
        path = os.path.join(self.folder, name)
        shutil.move(self.answers(text), path)
        return path

    def run_well(self, answers, *words, **keys):
        run = self.wizard(answers, *words, **keys)
        self.assertEqual(run.code, 0, run.output)
        return run

    def assert_refused(self, text, line, *reasons, code=22):
        """By check and by a real run alike, at that line; nothing is left in the location."""
        answers = self.answers_for("refused.txt", BEGIN + text)
        number = text_of(answers).splitlines().index(line) + 1
        key = line.split(" = ")[0]
        for words in (["--check"], []):
            run = self.wizard(answers, *words)
            with self.subTest(words=words):
                self.assertEqual(run.code, code, run.output)
                last = run.output.strip().splitlines()[-1]
                self.assertIn("%s(%d): service_pack.%s: " % (windows_path(answers), number, key), last)
                for reason in reasons:
                    self.assertIn(reason, last)
        self.assertEqual(os.listdir(self.out), [])

    def deployment(self, *names):
        return os.path.join(self.out, "Sample", *"/".join(names).split("/"))


class DownloadTest(ServicePackTest):
    def test_what_the_service_offers_is_downloaded_and_appended(self):
        service = self.serve()
        answers = self.answers_for("run.txt", BEGIN + ZOLT + "choice = none\n" + VIEWER + "choice = offered\nway = append\n")
        record = os.path.join(self.folder, "record.txt")
        self.run_well(answers, "--record", windows_path(record))
        self.assertEqual(service.downloads(), ["/patches/x64/ZoltViewer2027Update1.exe"])
        with open(os.path.join(PATCHES, "x64", "ZoltViewer2027Update1.msp"), "rb") as made, \
                open(self.deployment(VIEWER_PATCH), "rb") as built:
            self.assertEqual(made.read(), built.read())
        self.assertEqual(property_of(self.deployment(VIEWER_DATABASE), "ProductVersion"), "27.0.0")
        self.assertRegex(text_of(self.deployment("Install.cmd")), r"(?i)PATCH=.*ZoltViewer2027Update1\.msp")
        self.assertEqual(recorded(record)['[service_pack "Zolt Viewer 2027"]'], ["choice = offered", "way = append"])
        self.assertEqual(recorded(record)['[service_pack "Zolt 2027"]'], ["choice = none"])

    def test_what_was_downloaded_may_be_merged(self):
        self.serve(newest=["x64/ZoltViewer2027Update1.msp"])
        self.run_well(self.answers_for("run.txt", BEGIN + ZOLT + "choice = none\n" + VIEWER
                                       + "choice = offered\nway = merge\n"))
        self.assertEqual(property_of(self.deployment(VIEWER_DATABASE), "ProductVersion"), "27.0.1")
        self.assertNotIn("PATCH=", text_of(self.deployment("Install.cmd")))

    def test_the_deployments_own_answers_build_it_again(self):
        service = self.serve()
        self.run_well(self.answers_for("run.txt", BEGIN + ZOLT + "choice = files\nfile = patches\\Zolt2027Update1.msp\n"
                                       "way = merge\n" + VIEWER + "choice = offered\nway = append\n"))
        place = os.path.join(self.folder, "again")
        os.mkdir(place)
        self.run_well(self.deployment("Answers.txt"), out=windows_path(place))
        self.assertEqual(len(service.downloads()), 2)
        patched = [{path: value for path, value in tree_of(folder).items() if path.endswith(".msp")}
                   for folder in (self.deployment(), os.path.join(place, "Sample"))]
        self.assertIn(VIEWER_PATCH, patched[0])
        self.assertEqual(*patched)
        for database in (ZOLT_DATABASE, VIEWER_DATABASE):
            self.assertEqual(property_of(self.deployment(database), "ProductVersion"),
                             property_of(os.path.join(place, "Sample", database), "ProductVersion"))

    def test_check_downloads_and_builds_nothing(self):
        service = self.serve()
        self.run_well(self.answers_for("run.txt", BEGIN + ZOLT + "choice = none\n" + VIEWER + "choice = offered\n"), "--check")
        self.assertEqual(len(service.downloads()), 1)
        self.assertEqual(os.listdir(self.out), [])


class RefusedOfferTest(ServicePackTest):
    OFFERED = ZOLT + "choice = none\n" + VIEWER + "way = append\nchoice = offered\n"
    LINE = "choice = offered"

    def test_no_service_refuses_an_offered_service_pack(self):
        self.serve_nobody()
        self.assert_refused(self.OFFERED, self.LINE, "Zolt Viewer 2027", "the update service doesn't answer")

    def test_nothing_newer_refuses_an_offered_service_pack(self):
        self.serve().silent = True
        self.assert_refused(self.OFFERED, self.LINE, "Zolt Viewer 2027", "The product is up to date.")

    def test_other_bytes_than_announced_refuse_an_offered_service_pack(self):
        self.serve().spoil = lambda data: data[:-1] + bytes([data[-1] ^ 1])
        self.assert_refused(self.OFFERED, self.LINE, "isn't the file that the update service announced")

    def test_a_file_that_the_service_has_lost_refuses_an_offered_service_pack(self):
        service = self.serve()
        service.spoil = lambda data: None
        self.assert_refused(self.OFFERED, self.LINE, "Zolt Viewer 2027")
        self.assertEqual(len(service.downloads()), 2)

    def test_a_download_beyond_its_limit_ends_the_run_at_the_limit(self):
        stalled, service = threading.Event(), self.serve()
        self.addCleanup(stalled.set)
        service.spoil = lambda data: stalled.wait(120) and data
        started = time.monotonic()
        self.assert_refused(self.OFFERED + "download_limit = 3\n", self.LINE, "Zolt Viewer 2027", "didn't come in time",
                            "waited 3 seconds", code=25)
        self.assertLess(time.monotonic() - started, 100)

    def test_an_offer_that_nobody_answered_refuses_the_page_that_proposes_it(self):
        self.serve()
        run = self.wizard(self.answers_for("run.txt", BEGIN + ZOLT + "way = append\n"))
        self.assertEqual(run.code, 22, run.output)
        self.assertIn("service_pack.choice: Zolt 2027: The service pack is selected but hasn't been downloaded.", run.output)
        self.assertIn("the page proposed the value", run.output)

    def test_none_is_good_whatever_the_service_says(self):
        none = self.answers_for("run.txt", BEGIN + "[service_pack]\nchoice = none\nway = append\n")
        self.serve_nobody()
        self.run_well(none, "--check")
        service = self.serve()
        self.run_well(none, "--check")
        service.silent = True
        self.run_well(none, "--check")
        self.assertEqual(service.downloads(), [])


class FilesTest(ServicePackTest):
    def test_files_are_merged_without_a_service(self):
        self.serve_nobody()
        record = os.path.join(self.folder, "record.txt")
        self.run_well(self.answers_for("run.txt", BEGIN + ZOLT + "choice = files\nfile = patches\\Zolt2027Update1.msp\n"
                                       "way = merge\n"), "--record", windows_path(record))
        self.assertEqual(property_of(self.deployment(ZOLT_DATABASE), "ProductVersion"), "27.0.1")
        self.assertEqual(property_of(self.deployment(VIEWER_DATABASE), "ProductVersion"), "27.0.0")
        self.assertEqual(recorded(record)['[service_pack "Zolt 2027"]'],
                         ["choice = files", "file = patches\\Zolt2027Update1.msp", "way = merge"])

    def test_added_files_of_a_patched_product_have_a_medium_that_is_none_of_the_patches(self):
        self.serve_nobody()
        self.run_well(self.answers_for("run.txt", BEGIN + ZOLT + "choice = files\nfile = patches\\Zolt2027Update1.msp\n"
                                       "way = append\n[files \"Zolt 2027\"]\nfile = \"<root>\", \"run.txt\"\n"))
        media = subprocess.run(["msiinfo", "export", self.deployment(ZOLT_DATABASE), "Media"], stdout=subprocess.PIPE,
                               check=True).stdout.decode().replace("\r", "").split("\n")[3:]
        rows = {row.split("\t")[3]: row.split("\t")[:2] for row in media if row}
        disk, last = map(int, rows["TARN0001.cab"])
        self.assertGreater(disk, 2, "the patch brings medium 2")
        self.assertGreater(last, 1000, "the patch numbers its files from there")

    def test_lines_are_refused_by_name(self):
        self.serve_nobody()
        files = ZOLT + "choice = files\nfile = patches\\Zolt2027Update1.msp\nfile = %s\n"
        for file, reason in (("patches\\none.msp", "The file doesn't exist."), ("patches", "This is a folder."),
                             ("patches\\Zolt2027NoPatch.msp", "isn't a patch for this product"),
                             ("patches\\Zolt2027CutOff.msp", "isn't a patch for this product"),
                             ("patches\\ZoltViewer2027Update1.msp", "isn't a patch for this product")):
            with self.subTest(file=file):
                self.assert_refused(files % file, "file = " + file, reason)

    def test_a_patch_listed_twice_is_refused(self):
        self.serve_nobody()
        shutil.copy(os.path.join(self.folder, "patches", "Zolt2027Update1.msp"), os.path.join(self.folder, "same.msp"))
        self.assert_refused(ZOLT + "choice = files\nfile = patches\\Zolt2027Update1.msp\nfile = same.msp\n",
                            "file = same.msp", "is already on the list")

    def test_files_without_their_choice_are_refused(self):
        self.serve_nobody()
        self.assert_refused(ZOLT + "choice = none\nfile = patches\\Zolt2027Update1.msp\n",
                            "file = patches\\Zolt2027Update1.msp", "Patch files count only with choice = files.")


class ChangeTest(ServicePackTest):
    def modify(self, text):
        return self.wizard(self.answers_for("change.txt", CHANGE + text), media=self.deployment())

    def test_an_appended_patch_is_removed_again_and_another_one_is_appended(self):
        self.serve_nobody()
        self.run_well(self.answers_for("run.txt", BEGIN + ZOLT + "choice = files\nfile = patches\\Zolt2027Update1.msp\n" + VIEWER
                                       + "choice = files\nfile = patches\\ZoltViewer2027Update1.msp\n"))
        self.assertTrue(os.path.exists(self.deployment(VIEWER_PATCH)))
        run = self.modify(VIEWER + "choice = none\n" + ZOLT + "choice = files\nclear = yes\nfile = patches\\Zolt2027Update2.msp\n")
        self.assertEqual(run.code, 0, run.output)
        self.assertFalse(os.path.exists(self.deployment(VIEWER_PATCH)))
        commands = text_of(self.deployment("Install.cmd"))
        self.assertIn("Zolt2027Update2.msp", commands)
        self.assertNotIn("Zolt2027Update1.msp", commands)
        self.assertNotIn("ZoltViewer2027Update1.msp", commands)

    def test_the_way_of_a_deployment_with_patches_is_fixed(self):
        self.serve_nobody()
        self.run_well(self.answers_for("run.txt", BEGIN + ZOLT + "choice = files\nfile = patches\\Zolt2027Update1.msp\n"
                                       "way = merge\n"))
        run = self.modify(ZOLT + "choice = files\nway = append\n")
        self.assertEqual(run.code, 22, run.output)
        self.assertIn("service_pack.way: ", run.output)
        self.assertIn("doesn't let it be changed here", run.output)

    def test_a_merged_patch_is_not_removed(self):
        self.serve_nobody()
        self.run_well(self.answers_for("run.txt", BEGIN + ZOLT + "choice = files\nfile = patches\\Zolt2027Update1.msp\n"
                                       "way = merge\n"))
        before = tree_of(self.deployment())
        run = self.modify(ZOLT + "choice = files\nclear = yes\n")
        self.assertEqual(run.code, 22, run.output)
        self.assertIn("it is part of the image", run.output)
        self.assertEqual(tree_of(self.deployment()), before)


if __name__ == "__main__":
    unittest.main()

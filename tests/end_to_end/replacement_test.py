"""No deployment is replaced but the one that is modified and one that the administrator was asked about."""

import os
import re
import shutil
import signal
import subprocess

from wizard import MEDIA, WizardTest, text_of, tree_of, windows_path

MARK = "MARK.txt"
OTHER_CODE = "{99999999-2222-3333-4444-555555555555}"


class ReplacementTest(WizardTest):
    def setUp(self):
        super().setUp()
        self.first = os.path.join(self.folder, "A")
        self.second = os.path.join(self.folder, "B")
        for location in (self.first, self.second):
            os.makedirs(location)

    def build_in(self, location, name, *settings, **keys):
        """A deployment of the sample media, with a mark that no build knows."""
        path = self.begin(name, platform="x64", **keys)
        if settings:
            with open(path, "a", encoding="utf-8") as file:
                file.write("\n".join(settings) + "\n")
        run = self.wizard(path, out=windows_path(location))
        self.assertEqual(run.code, 0, run.output)
        deployment = os.path.join(location, name)
        with open(os.path.join(deployment, MARK), "w", encoding="ascii") as file:
            file.write("put here by hand")
        return deployment

    def choose(self, *lines, location=None, sections=""):
        """Answers of the first page alone; a location is typed there, not named on the command line."""
        lines = ["[begin]", *lines, "on_question.local_location = yes"]
        if location:
            lines.append('location = "%s"' % windows_path(location))
        return self.answers("\n".join(lines) + "\n" + sections)

    def image(self, deployment):
        return os.path.join(deployment, "Image")

    def assert_asked(self, answers, deployment, **run):
        """Without an answer the run ends with 23, names the folder and leaves all of it."""
        before = tree_of(deployment)
        ended = self.wizard(answers, **{"out": "", **run})
        self.assertEqual(ended.code, 23, ended.output)
        self.assertIn(windows_path(deployment), ended.output)
        self.assertIn("replace_unlisted", ended.output)
        self.assertEqual(tree_of(deployment), before)
        return ended

    def assert_refused(self, answers, deployment, code=22, **run):
        before = tree_of(deployment)
        ended = self.wizard(answers, **{"out": "", **run})
        self.assertEqual(ended.code, code, ended.output)
        self.assertEqual(tree_of(deployment), before)
        return ended

    def kept_files(self, location):
        """What was put aside beside the deployments of a location, by its path below."""
        return [path for path in tree_of(location) if "(kept files" in path]

    def test_a_deployment_of_another_location_is_not_replaced_unasked_on_creating(self):
        office = self.build_in(self.first, "Office")
        lab = self.build_in(self.second, "Lab")
        answers = self.choose("mode = create", "name = Lab", location=self.second)
        self.assert_asked(answers, lab, media=self.image(office))

    def test_a_deployment_of_another_location_is_not_replaced_unasked_on_basing(self):
        office = self.build_in(self.first, "Office")
        lab = self.build_in(self.second, "Lab")
        answers = self.choose("mode = create_from", "base = Office", "name = Lab", location=self.second)
        self.assert_asked(answers, lab, media=self.image(office))

    def test_modifying_into_another_location_does_not_replace_the_one_there_unasked(self):
        office = self.build_in(self.first, "Office")
        other = self.build_in(self.second, "Office")
        before = tree_of(office)
        answers = self.choose("mode = modify", "base = Office", location=self.second)
        self.assert_asked(answers, other, media=self.image(office))
        self.assertEqual(tree_of(office), before)

    def test_a_renamed_deployment_is_asked_about_by_its_folders_name(self):
        office = self.build_in(self.first, "Office")
        lab = os.path.join(self.first, "Lab2")
        os.rename(office, lab)
        before = tree_of(lab)
        ended = self.wizard(self.choose("name = Lab2", "platform = x64", location=self.first), out="")
        self.assertEqual(ended.code, 23, ended.output)
        self.assertEqual(tree_of(lab), before)

    def test_a_deployment_whose_file_is_cut_is_refused_by_name(self):
        office = self.build_in(self.first, "Office")
        with open(os.path.join(office, "Deployment.xml"), "r+b") as file:
            file.truncate(100)
        ended = self.assert_refused(self.choose("name = Office", "platform = x64", location=self.first), office)
        self.assertIn("Deployment.xml", ended.output)

    def test_a_deployment_of_a_newer_program_is_refused_by_name(self):
        office = self.build_in(self.first, "Office")
        path = os.path.join(office, "Deployment.xml")
        text = text_of(path)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text.replace('<Deployment version="2"', '<Deployment version="99"'))
        ended = self.assert_refused(self.choose("name = Office", "platform = x64", location=self.first), office)
        self.assertIn("version 99", ended.output)

    def test_a_deployment_of_another_product_is_refused_even_behind_one_of_this_product(self):
        self.build_in(self.first, "Lab")
        office = self.build_in(self.first, "Office")
        path = os.path.join(office, "Deployment.xml")
        text = text_of(path)
        with open(path, "w", encoding="utf-8") as file:
            file.write(re.sub(r'setupCode="[^"]*"', 'setupCode="%s"' % OTHER_CODE, text))
        answers = self.choose("name = Office", "platform = x64", "on_question.replace = yes",
                              "on_question.replace_unlisted = yes", location=self.first)
        ended = self.assert_refused(answers, office)
        self.assertIn("another product", ended.output)

    def test_a_folder_that_only_holds_a_file_called_deployment_xml_is_refused(self):
        photos = os.path.join(self.first, "Photos")
        os.makedirs(photos)
        for name, text in (("Deployment.xml", "<hello/>"), ("holiday.jpg", "years of work")):
            with open(os.path.join(photos, name), "w", encoding="ascii") as file:
                file.write(text)
        answers = self.choose("name = Photos", "platform = x64", "on_question.replace_unlisted = yes",
                              location=self.first)
        self.assert_refused(answers, photos)

    def test_a_blank_before_the_last_part_of_the_location_hides_no_deployment(self):
        office = self.build_in(self.second, "Office")
        spaced = windows_path(self.folder) + "\\ B"
        before = tree_of(office)
        ended = self.wizard(self.choose("name = Office", "platform = x64"), out=spaced)
        self.assertEqual(ended.code, 23, ended.output)
        self.assertEqual(tree_of(office), before)

    def test_the_short_name_of_another_deployments_folder_is_refused(self):
        north = self.build_in(self.first, "Office of the north")
        listing = subprocess.run(["wine", "cmd", "/c", "dir", "/x", windows_path(self.first)], stdout=subprocess.PIPE,
                                 stderr=subprocess.DEVNULL).stdout.decode("utf-8", "replace")
        short = re.search(r"(\S+~\S+)\s+Office of the north", listing)
        self.assertTrue(short, listing)
        answers = self.choose("name = " + short[1], "platform = x64", "on_question.replace_unlisted = yes",
                              location=self.first)
        ended = self.assert_refused(answers, north)
        self.assertIn("Office of the north", ended.output)

    def signal(self, processes, number):
        for process in processes:
            os.kill(process, number)

    def test_a_deployment_that_another_wizard_built_meanwhile_is_not_replaced_unasked(self):
        answers = self.choose("name = Office", "platform = x64", location=self.first)
        waiting = subprocess.Popen(self.command(answers, out=""), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        output = b""
        for line in waiting.stdout:
            output += line
            if line.startswith(b"Page settings"):
                stopped = self.processes()
                self.signal(stopped, signal.SIGSTOP)
                break
        fresh = self.build_in(self.first, "Office")
        before = tree_of(fresh)
        self.signal(stopped, signal.SIGCONT)
        output += waiting.communicate(timeout=120)[0]
        ended = self.run_of(output, waiting.returncode)
        self.assertEqual(ended.code, 23, ended.output)
        self.assertIn("replace_unlisted", ended.output)
        self.assertEqual(tree_of(fresh), before)

    def test_modifying_a_copy_leaves_the_original(self):
        office = self.build_in(self.first, "Office")
        copy = os.path.join(self.first, "Office - Copy")
        shutil.copytree(office, copy)
        before = tree_of(office)
        run = self.wizard(self.choose("mode = modify", "base = Office - Copy"), media=self.image(copy), out="")
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(tree_of(office), before)
        self.assertEqual(len(self.kept_files(self.first)), 1, os.listdir(self.first))

    def test_a_copy_that_sorts_first_does_not_bring_its_settings(self):
        office = self.build_in(self.first, "Office")
        shutil.copytree(office, os.path.join(self.first, "Backup of Office"))
        change = self.choose("mode = modify", "base = Office", sections="[settings]\ninstall_mode = progress\n")
        run = self.wizard(change, media=self.image(office), out="")
        self.assertEqual(run.code, 0, run.output)
        self.assertIn('installMode="3"', text_of(os.path.join(office, "Deployment.xml")))
        run = self.wizard(self.choose("mode = modify", "base = Office", sections="[resources]\nparts_bay = no\n"),
                          media=self.image(office), out="")
        self.assertEqual(run.code, 0, run.output)
        self.assertIn('installMode="3"', text_of(os.path.join(office, "Deployment.xml")))

    def test_a_renamed_deployment_is_modified_in_its_own_place(self):
        office = self.build_in(self.first, "Office")
        renamed = os.path.join(self.first, "Office2")
        os.rename(office, renamed)
        change = self.choose("mode = modify", "base = Office2", sections="[settings]\ninstall_mode = progress\n")
        run = self.wizard(change, media=self.image(renamed), out="")
        self.assertEqual(run.code, 0, run.output)
        self.assertFalse(os.path.exists(office))
        self.assertIn('installMode="3"', text_of(os.path.join(renamed, "Deployment.xml")))
        self.assertIn('name="Office2"', text_of(os.path.join(renamed, "Deployment.xml")))

    def test_a_location_inside_a_deployment_is_refused(self):
        office = self.build_in(self.first, "Office")
        for inside in (office, self.image(office)):
            with self.subTest(inside=inside):
                ended = self.assert_refused(self.choose("name = Inner", "platform = x64", location=inside), office)
                self.assertIn(windows_path(office), ended.output)

    def test_modifying_keeps_a_deployment_that_lies_inside(self):
        """Earlier versions built into a deployment's folder; modifying the outer one then deleted the inner one."""
        office = self.build_in(self.first, "Office")
        inner = self.build_in(self.second, "Inner")
        before = tree_of(inner)
        shutil.move(inner, os.path.join(office, "Inner"))
        run = self.wizard(self.choose("mode = modify", "base = Office"), media=self.image(office), out="")
        self.assertEqual(run.code, 0, run.output)
        kept = {path.split("Inner" + os.sep, 1)[1]: digest for path, digest in tree_of(self.first).items()
                if "(kept files" in path and "Inner" + os.sep in path}
        self.assertEqual(kept, before)

    def test_a_question_that_is_answered_with_yes_replaces_and_keeps_what_was_put_there(self):
        office = self.build_in(self.first, "Office")
        lab = self.build_in(self.second, "Lab")
        with open(os.path.join(lab, "Install.cmd"), "a", encoding="ascii") as file:
            file.write("rem our own line\r\n")
        answers = self.choose("mode = create", "name = Lab", "on_question.replace_unlisted = yes",
                              location=self.second)
        run = self.wizard(answers, media=self.image(office), out="")
        self.assertEqual(run.code, 0, run.output)
        self.assertIn("MARK.txt", run.output)
        self.assertIn("Install.cmd", run.output)
        kept = self.kept_files(self.second)
        self.assertEqual(sorted(os.path.basename(path) for path in kept), ["Install.cmd", MARK])
        for path in kept:
            self.assertRegex(text_of(os.path.join(self.second, path)), "our own line|put here by hand")
        self.assertNotIn("our own line", text_of(os.path.join(lab, "Install.cmd")))

    def test_a_question_that_is_answered_with_no_ends_the_run_with_22(self):
        office = self.build_in(self.first, "Office")
        lab = self.build_in(self.second, "Lab")
        answers = self.choose("mode = create", "name = Lab", "on_question.replace_unlisted = no",
                              location=self.second)
        self.assert_refused(answers, lab, media=self.image(office))

    def test_check_gives_the_verdict_of_the_real_run(self):
        office = self.build_in(self.first, "Office")
        with open(os.path.join(office, "Deployment.xml"), "r+b") as file:
            file.truncate(100)
        answers = self.choose("name = Office", "platform = x64", location=self.first)
        before = tree_of(office)
        ended = self.wizard(answers, "--check", out="")
        self.assertEqual(ended.code, 22, ended.output)
        self.assertEqual(tree_of(office), before)

    def test_a_replaced_deployment_keeps_what_an_administrator_put_into_it(self):
        office = self.build_in(self.first, "Office")
        answers = self.choose("name = Office", "platform = x64", "on_question.replace = yes", location=self.first)
        run = self.wizard(answers, out="")
        self.assertEqual(run.code, 0, run.output)
        self.assertFalse(os.path.exists(os.path.join(office, MARK)))
        self.assertEqual([os.path.basename(path) for path in self.kept_files(self.first)], [MARK])
        self.assertIn("kept files", run.output)

    def test_a_base_whose_package_cannot_be_opened_ends_the_run_with_the_reason(self):
        """The page stayed without a button and without a word."""
        office = self.build_in(self.first, "Office")
        broken = self.build_in(self.first, "Broken")
        with open(os.path.join(broken, "Image", "x64", "Zolt", "Zolt2027.msi"), "r+b") as file:
            file.truncate(1000)
        answers = self.choose("mode = create_from", "base = Broken", "name = New")
        run = self.wizard(answers, media=self.image(office), out="")
        self.assertEqual(run.code, 1603, run.output)
        self.assertIn("Zolt2027.msi", run.output.splitlines()[-1])

    def test_a_base_whose_image_is_gone_is_not_offered(self):
        office = self.build_in(self.first, "Office")
        shutil.rmtree(self.image(self.build_in(self.first, "Gone")))
        answers = self.choose("mode = create_from", "base = Gone", "name = New")
        run = self.wizard(answers, media=self.image(office), out="")
        self.assertEqual(run.code, 22, run.output)
        self.assertIn('offers "Office"', run.output)

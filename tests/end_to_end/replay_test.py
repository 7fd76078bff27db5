"""What a run was answered with, written down and answered again: the same deployment comes of it."""

import os
import re
import shutil
import subprocess

from wizard import MEDIA, WizardTest, property_of, text_of, tree_of, windows_path

# What says when, where or under which package code something was built.
OF_THE_BUILD = {"Build.log", "Changes.json", "Changes.txt", "Manifest.txt", "ReadMe.txt"}
HOSTILE = '"Caf\u00e9" \u20ac #1, [x] = %s'

# Where deployments are already, nobody is asked whether the place may be on this computer.


def tables_of(database):
    """Every row of every table of a database, without its summary information, which has the package code."""
    def rows(*words):
        return subprocess.run(["msiinfo", *words], stdout=subprocess.PIPE, check=True).stdout

    names = [name for name in rows("tables", database).decode().split() if name != "_SummaryInformation"]
    return {name: sorted(rows("export", database, name).splitlines()) for name in names}


ON_TABS_ALONE = ("browser_required = ", "sheet_format = ", "profile = ")


def answers_of(path):
    """What an answers file answers, by section. Which of it the page proposed depends on how it came about, and whether the place
    may be on this computer is asked only where no deployments are yet. What stands on a tab alone is written where there was one."""
    sections = {}
    for line in text_of(path).splitlines():
        if line.startswith("["):
            lines = sections.setdefault(line, [])
        elif line and not line.startswith(("#",) + ON_TABS_ALONE) and sections:
            lines.append(line)
    return {section: sorted(lines) for section, lines in sections.items()}


class ReplayTest(WizardTest):
    maxDiff = None

    def assert_same(self, first, second):
        trees = []
        for folder in (first, second):
            tree = {path: value for path, value in tree_of(folder).items() if path not in OF_THE_BUILD}
            for path in tree:
                if path.endswith(".msi"):
                    tree[path] = tables_of(os.path.join(folder, path))
                elif path == "Answers.txt":
                    tree[path] = answers_of(os.path.join(folder, path))
                elif path == "Deployment.xml":  # names the deployment that it was built upon
                    tree[path] = re.sub(r' base="[^"]*"', "", text_of(os.path.join(folder, path)))
            trees.append(tree)
        self.assertEqual(sorted(trees[0]), sorted(trees[1]))
        for path in trees[0]:
            self.assertEqual(trees[0][path], trees[1][path], path)
        for name in ("Install.cmd", "Uninstall.cmd", "Answers.txt"):
            self.assertIn(name, trees[0])

    def place(self, name):
        folder = os.path.join(self.folder, name)
        os.makedirs(folder, exist_ok=True)
        return windows_path(folder)

    def run_well(self, answers, *words, media=MEDIA, out=None):
        run = self.wizard(answers, *words, media=media, out=out)
        self.assertEqual(run.code, 0, run.output)
        return run

    def replay(self, answers, *words, media=MEDIA, name="Sample", place="Again"):
        """Answers a file on the media, in a place of its own; the deployment."""
        self.run_well(answers, *words, media=media, out=self.place(place))
        return os.path.join(self.folder, place, name)

    def full(self, name="Sample", more=""):
        """Answers that change something on every page and for each product."""
        return self.answers(
            "[begin]\nname = %s\nplatform = x64\non_question.local_location = yes\non_question.replace = yes\n"
            "[settings]\nnetwork_log = yes\nlog_folder = \\\\server\\logs\nkeep_copy = yes\ninstall_mode = progress\nmc3 = no\n"
            "on_question.doubtful_log_folder = yes\n"
            "[workstation]\ndesktop_shortcut = no\nshortcut = \"Anne's plans\", \"/p \"\"A b\"\" /set C:\\x\"\nshortcut = \"B\", \"/nologo\"\n"
            '[workstation "Zolt Viewer 2027"]\nshortcut = "V", "/v"\n'
            "[paths]\nsupport_path = Support Files\nsupport_path = \"C:\\Standards, all\"\nlog_file_path =\n"
            "custom_dictionary = C:\\Words\\Office.dic\ncolor_book_location =\nprinter_desc_dir =\nprinter_config_dir = C:\\Plotters\n"
            "[paths \"Zolt Viewer 2027\"]\nsupport_path = D:\\Viewer\nmenu_file = \\\\server\\menus\\v.zmenu\non_question.missing_path = yes\n"
            "[resources]\nparts_bay = no\nsend_computer_name = yes\n"
            "[notices \"Zolt 2027\"]\nupdate_source = local_list\nupdate_list = \\\\localhost\\lists\\a.npl\nsite_channel = yes\n"
            "site_feed = \\\\server\\feeds\\site.xml\nsite_name = \"%s\"\non_question.feed_not_found = yes\n"
            "[notices \"Zolt Viewer 2027\"]\nfeeds = no\nsite_channel = no\nsite_feed.kept = \\\\server\\feeds\\kept.xml\n"
            "site_name.kept = Kept\nupdates = no\nupdate_list.kept = \\\\server\\lists\\kept.npl\n"
            "custom_feeds.kept = no\n%s" % (name, HOSTILE.replace('"', '""'), more))

    def test_a_deployment_is_built_again_from_its_own_answers_also_when_it_was_moved(self):
        self.run_well(self.full())
        moved = os.path.join(self.folder, "Moved", "Elsewhere")
        shutil.copytree(os.path.join(self.out, "Sample"), moved)
        again = self.replay(os.path.join(moved, "Answers.txt"))
        self.assert_same(moved, again)
        viewer = os.path.join(again, "Image", "x64", "ZoltViewer", "ZoltViewer2027.msi")
        self.assertEqual(property_of(viewer, "ZOLT_TEMP_SITEMGR_LOCATION"), "\\\\server\\feeds\\kept.xml")
        self.assertEqual(property_of(viewer, "ZOLT_PATCHRELAY_PATCHNOTIFY"), "#3")
        zolt = os.path.join(again, "Image", "x64", "Zolt", "Zolt2027.msi")
        self.assertEqual(property_of(zolt, "ZOLT_SITEMGR_DISPLAY_NAME"), HOSTILE)
        self.assertEqual(property_of(zolt, "ZOLTProfile_SupportPath"), "[SUPPORTDIR];C:\\Standards, all")
        self.assertEqual(property_of(zolt, "ZOLTProfile_LogFilePath"), "[NULL]")
        self.assertEqual(property_of(zolt, "ZOLTProfile_ColorBookLocation"), "[NULL]")
        self.assertEqual(property_of(zolt, "ZOLTProfile_PrinterDescDir"), "[PLOTDESCDIR]", "the default comes back")
        self.assertEqual(property_of(viewer, "ZOLTProfile_SupportPath"), "D:\\Viewer")
        self.assertEqual(property_of(viewer, "ZOLTProfile_MenuFile"), "\\\\server\\menus\\v.zmenu")

    def check_paths(self, text, code):
        """How a run with these answers of the paths page ends: its last line."""
        run = self.wizard(self.answers("[begin]\nname = Sample\non_question.local_location = yes\n[paths]\n" + text))
        self.assertEqual(run.code, code, run.output)
        return run.output.splitlines()[-1]

    def test_a_path_that_the_page_refuses_ends_the_run_with_its_line(self):
        last = self.check_paths("support_path = C:\\a\nsupport_path = Nowhere\nsupport_path = C:\\b\n", 22)
        self.assertRegex(last, r'\(7\): paths\.support_path: Zolt 2027: "Nowhere": The folder "Nowhere" is not valid')
        last = self.check_paths("menu_file = a*b\n", 22)
        self.assertRegex(last, r'\(6\): paths\.menu_file: Zolt 2027: The file path "a\*b" is not valid')

    def test_a_missing_path_is_asked_about_at_its_line(self):
        text = "menu_file = \\\\server\\menus\\v.zmenu\n"
        self.assertRegex(self.check_paths(text, 23), r"\(6\): paths\.menu_file: .* Add on_question\.missing_path = yes or no")
        self.assertRegex(self.check_paths(text + "on_question.missing_path = no\n", 22),
                         r"\(6\): paths\.menu_file: .*The page hasn't accepted it")

    def test_a_deployment_that_nobody_answered_anything_of_is_built_again_too(self):
        self.run_well(self.begin("Sample"))
        self.assert_same(os.path.join(self.out, "Sample"), self.replay(os.path.join(self.out, "Sample", "Answers.txt")))

    def test_a_deployment_of_one_product_is_built_again(self):
        media = os.path.join(self.folder, "Media")
        shutil.copytree(MEDIA, media)
        path = os.path.join(media, "Setup.xml")
        text, count = re.subn(r' *<Product name="Zolt Viewer 2027".*?</Product>\r?\n', "", text_of(path), flags=re.DOTALL)
        self.assertEqual(count, 1)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        self.run_well(self.begin("Sample"), "--set", "notices.feeds=no", media=media)
        answers = os.path.join(self.out, "Sample", "Answers.txt")
        self.assertIn("\n[notices]\n", text_of(answers))
        self.assert_same(os.path.join(self.out, "Sample"), self.replay(answers, media=media))

    def test_what_tabs_were_answered_with_is_answered_in_tabs_again(self):
        media = self.media_with_tabs()
        run = self.run_well(self.full(more='[resources "Zolt Viewer 2027"]\nshow = no\n'), media=media)
        self.assertIn("(tab)", run.output)
        answers = os.path.join(self.out, "Sample", "Answers.txt")
        self.assertIn("show = no", text_of(answers))
        self.assert_same(os.path.join(self.out, "Sample"), self.replay(answers, media=media))

    def test_what_was_built_upon_another_is_built_from_the_makers_media_again(self):
        self.run_well(self.full())
        image = os.path.join(self.out, "Sample", "Image")
        changes = self.answers("[begin]\nmode = create_from\nbase = Sample\nname = Second\non_question.local_location = yes\n"
                               "on_question.doubtful_log_folder = yes\n[settings]\nkeep_copy = no\n"
                               "on_question.doubtful_log_folder = yes\n"
                               "[notices]\non_question.feed_not_found = yes\n"
                               '[notices "Zolt 2027"]\nsite_name = Second\n'.replace(
                                   "on_question.local_location = yes\non_question.doubtful_log_folder = yes\n",
                                   "on_question.local_location = yes\n"))
        record = os.path.join(self.folder, "record.txt")
        self.run_well(changes, "--record", windows_path(record), media=image)
        second = os.path.join(self.out, "Second")
        text = text_of(os.path.join(second, "Answers.txt"))
        self.assertIn("mode = create\n", text)
        self.assertNotIn("\nbase =", text)
        self.assert_same(second, self.replay(os.path.join(second, "Answers.txt"), name="Second"))
        self.assertIn("mode = create_from\n", text_of(record))
        shutil.rmtree(second)
        self.run_well(record, media=image)
        self.assert_same(second, os.path.join(self.folder, "Again", "Second"))

    def test_what_was_modified_is_built_from_the_makers_media_again(self):
        self.run_well(self.full())
        before = os.path.join(self.folder, "Before")
        shutil.copytree(self.out, before)
        changes = self.answers("[begin]\nmode = modify\nbase = Sample\non_question.local_location = yes\non_question.replace = yes\n"
                               "[settings]\ninstall_mode = silent\non_question.doubtful_log_folder = yes\n"
                               "[resources]\nparts_bay = yes\n"
                               '[paths "Zolt 2027"]\nsupport_path = C:\\Modified\n'
                               '[notices "Zolt 2027"]\nshow = no\n'
                               '[notices "Zolt Viewer 2027"]\nfeeds = yes\n')
        record = os.path.join(self.folder, "record.txt")
        sample = os.path.join(self.out, "Sample")
        self.run_well(changes, "--record", windows_path(record), media=os.path.join(sample, "Image"))
        again = self.replay(os.path.join(sample, "Answers.txt"))
        self.assert_same(sample, again)
        self.assertEqual(property_of(os.path.join(again, "Image", "x64", "Zolt", "Zolt2027.msi"), "ZOLT_SITEMGR_DISPLAY_NAME"),
                         HOSTILE, "a page that nobody went to stays as the base's answers have it")
        # The record modifies again what it modified.
        self.assertIn("mode = modify\n", text_of(record))
        self.assertIn("show = no\n", text_of(record))
        run = self.wizard(record, media=os.path.join(before, "Sample", "Image"), out=windows_path(before))
        self.assertEqual(run.code, 0, run.output)
        self.assert_same(sample, os.path.join(before, "Sample"))

    def test_locations_below_the_media_are_written_so_that_other_media_have_them_too(self):
        media = os.path.join(self.folder, "Media")
        shutil.copytree(MEDIA, media)
        os.makedirs(os.path.join(media, "lists"))
        with open(os.path.join(media, "lists", "a.npl"), "w", encoding="utf-8"):
            pass
        answers = self.begin("Sample")
        self.run_well(answers, "--set", "notices.update_source=local_list", "--set", "notices.update_list=<media>\\lists\\a.npl",
                      media=media)
        written = os.path.join(self.out, "Sample", "Answers.txt")
        self.assertIn("update_list = <media>\\lists\\a.npl\n", text_of(written))
        other = os.path.join(self.folder, "OtherMedia")
        os.rename(media, other)
        again = self.replay(written, media=other)
        self.assertEqual(property_of(os.path.join(again, "Image", "x64", "Zolt", "Zolt2027.msi"),
                                     "ZOLT_PATCHRELAY_LISTLOCACTION"), windows_path(other) + "\\lists\\a.npl")

    def test_the_place_of_the_deployment_is_in_its_answers_only_when_asked_for(self):
        self.run_well(self.begin("Sample"))
        text = text_of(os.path.join(self.out, "Sample", "Answers.txt"))
        self.assertNotRegex(text, r"(?m)^#?\s*location")
        self.assertNotIn(windows_path(self.folder), text)
        self.run_well(self.begin("Second"), "--with-location")
        self.assertIn("\nlocation = %s\n" % windows_path(self.out), text_of(os.path.join(self.out, "Second", "Answers.txt")))

    def test_a_question_that_comes_up_on_the_replay_alone_ends_it_with_the_line_to_add(self):
        self.run_well(self.begin("Sample"))
        run = self.wizard(os.path.join(self.out, "Sample", "Answers.txt"))
        self.assertEqual(run.code, 23, run.output)
        self.assertRegex(run.output.splitlines()[-1], r"Add on_question\.replace(_unlisted)? = yes or no")

    def test_a_canceled_run_writes_what_was_answered_until_then(self):
        record = os.path.join(self.folder, "record.txt")
        answers = self.begin("Sample")
        run = self.wizard(answers, "--record", windows_path(record), "--set", "settings.keep_copy=yes", "--set",
                          "settings.leave=cancel")
        self.assertEqual(run.code, 1602, run.output)
        text = text_of(record)
        self.assertIn("name = Sample\n", text)
        self.assertIn("keep_copy = yes\n", text)
        self.assertIn("exit code 1602", text)
        self.assertNotIn("[resources", text)
        self.run_well(record)

    def test_a_run_that_is_refused_writes_its_answers_too(self):
        record = os.path.join(self.folder, "record.txt")
        run = self.wizard(self.begin("Sample"), "--record", windows_path(record), "--set", "notices.update_source=local_list",
                          "--set", "notices.update_list=C:\\nowhere.npl")
        self.assertEqual(run.code, 22, run.output)
        self.assertIn("update_list = C:\\nowhere.npl\n", text_of(record))

    def test_a_record_that_cannot_be_written_ends_the_run_before_it_begins(self):
        record = windows_path(os.path.join(self.folder, "missing", "record.txt"))
        run = self.wizard(self.begin("Sample"), "--record", record)
        self.assertEqual(run.code, 1603, run.output)
        self.assertIn(record, run.output)
        self.assertNotIn("Page ", run.output)

    def test_a_record_does_not_replace_the_answers_that_it_comes_from(self):
        answers = self.begin("Sample")
        before = text_of(answers)
        run = self.wizard(answers, "--record", windows_path(answers))
        self.assertEqual(run.code, 20, run.output)
        self.assertEqual(text_of(answers), before)

    def test_a_build_that_fails_keeps_the_answers_beside_its_log(self):
        log = os.path.join(self.folder, "setup.log")
        # The pages accept the name; the database's code page lacks its letters.
        run = self.wizard(self.full(), "--log", windows_path(log), "--set",
                          'notices "Zolt 2027".site_name=\u4e2d\u6587')
        self.assertEqual(run.code, 1603, run.output)
        self.assertIn("code page", run.output)
        kept = os.path.join(self.folder, "setup.answers.txt")
        text = text_of(kept)
        self.assertIn("\nlocation = ", text)
        self.assertIn("parts_bay = no\n", text)
        self.assertIn("\u4e2d\u6587", text)
        self.assertIn("Answers " + windows_path(kept), text_of(log))
        self.run_well(kept, "--set", 'notices "Zolt 2027".site_name=Site', out="")
        self.assertTrue(os.path.isdir(os.path.join(self.out, "Sample")))

"""From the wizard's first page to a workstation that has the product."""

import json
import os
import re
import shutil
import subprocess
import sys

from wizard import (BUILD, MEDIA, PROGRAM_FOLDER, ROOT, WizardTest, property_of, set_property, text_of, tree_of,
                    windows_path)


class DeploymentTest(WizardTest):
    def workstation(self, deployment):
        """Installs and removes the deployment in the prefix of the tests."""
        return subprocess.run([sys.executable, os.path.join(ROOT, "scripts", "workstation.py"), deployment, "--prefix",
                               os.environ["WINEPREFIX"], "--logs", os.path.join(self.folder, "logs")],
                              capture_output=True, text=True)

    def assert_installs(self, deployment):
        result = self.workstation(deployment)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        return result.stdout

    def test_the_64_bit_sample_installs_and_leaves_nothing_behind(self):
        report = self.assert_installs(self.build("Office", platform="x64"))
        self.assertRegex(report, r"(\d+) of \1 files are there")
        self.assertIn("0 files and values were left behind", report)

    def test_the_32_bit_sample_with_loose_files_installs(self):
        self.assert_installs(self.build("Office32", platform="x86"))

    def test_a_deployment_installs_from_where_it_was_moved(self):
        moved = os.path.join(self.folder, "Elsewhere", "Renamed folder")
        os.makedirs(os.path.dirname(moved))
        os.rename(self.build("Moved"), moved)
        self.assert_installs(moved)

    def test_each_workstation_writes_a_log_of_its_name(self):
        self.assert_installs(self.build("Logged"))
        logs = os.listdir(os.path.join(self.folder, "logs"))
        self.assertTrue([name for name in logs if re.match(r"Zolt 2027_27\.0\.0_Install_\w+\.log", name)], logs)

    def build_with_settings(self, name, *settings, media=MEDIA, **keys):
        path = self.begin(name, **keys)
        with open(path, "a", encoding="utf-8") as file:
            file.write("[settings]\n" + "\n".join(settings) + "\n")
        run = self.wizard(path, media=media)
        self.assertEqual(run.code, 0, run.output)
        return os.path.join(self.out, name)

    def test_the_settings_stand_in_the_description_and_in_the_database(self):
        logs = os.path.join(self.folder, "all logs")
        os.makedirs(logs)
        folder = windows_path(logs) + "\\"
        for mc3, value in (("no", "#0"), ("yes", "#1")):
            deployment = self.build_with_settings(
                "Settings " + mc3, "network_log = yes", "log_folder = " + windows_path(logs), "keep_copy = yes",
                "install_mode = progress", "mc3 = " + mc3)
            self.assertIn(folder.rstrip("\\"), text_of(os.path.join(deployment, "Install.cmd")))
            self.assertIn(folder, text_of(os.path.join(deployment, "Deployment.xml")))
            self.assertEqual(self.mc3_of(deployment), [value])

    def mc3_of(self, deployment):
        """The values of MC3_ENABLED in the deployment's databases."""
        found = []
        for parent, _, names in os.walk(os.path.join(deployment, "Image")):
            for name in names:
                if name.lower().endswith(".msi"):
                    value = property_of(os.path.join(parent, name), "MC3_ENABLED")
                    found += [] if value is None else [value]
        return found

    def test_a_network_log_comes_into_the_folder_that_was_chosen(self):
        logs = os.path.join(self.folder, "all logs")
        os.makedirs(logs)
        report = self.assert_installs(self.build_with_settings(
            "Network log", "network_log = yes", "log_folder = " + windows_path(logs), "keep_copy = no"))
        self.assertRegex(report, r"Network log .*all logs.Zolt 2027_27\.0\.0_Install_\w+\.log, \d+ bytes, ends:\n +Action")
        self.assertEqual(len([name for name in os.listdir(logs) if "_Install_" in name]), 4)
        self.assertIn("Logs on the workstation: none", report)

    def test_a_copy_of_a_network_log_is_kept_when_asked_for(self):
        logs = os.path.join(self.folder, "all logs")
        os.makedirs(logs)
        report = self.assert_installs(self.build_with_settings(
            "Kept log", "network_log = yes", "log_folder = " + windows_path(logs), "keep_copy = yes"))
        self.assertRegex(report, r"Logs on the workstation: .*Zolt 2027_27\.0\.0_Install_")

    def test_a_log_folder_that_went_away_is_report_and_stops_no_installation(self):
        logs = os.path.join(self.folder, "all logs")
        os.makedirs(logs)
        deployment = self.build_with_settings(
            "Lost log", "network_log = yes", "log_folder = " + windows_path(logs))
        os.rmdir(logs)
        with open(logs, "w", encoding="ascii"):
            pass  # a file in its place, so that the script can't make it again
        result = self.workstation(deployment)
        self.assertEqual(result.returncode, 1, result.stdout)
        self.assertIn("Install.cmd ended with 0.", result.stdout)
        self.assertIn("got 0 logs of 4 installations", result.stdout)
        self.assertRegex(result.stdout, r"Logs on the workstation: .*_Install_")

    def test_a_progress_bar_is_all_that_the_second_install_mode_shows(self):
        deployment = self.build_with_settings("Progress", "install_mode = progress")
        self.assertIn('set "DISPLAY_OPTION=/qb-!"', text_of(os.path.join(deployment, "Install.cmd")))
        self.assert_installs(deployment)

    def test_silent_is_silent_on_a_base_that_has_the_progress_bar(self):
        base = self.build_with_settings("Bar", "install_mode = progress")
        self.assertIn('set "DISPLAY_OPTION=/qb-!"', text_of(os.path.join(base, "Install.cmd")))
        second = self.build_with_settings("Silent", "install_mode = silent", mode="create_from", base="Bar",
                                          media=os.path.join(base, "Image"))
        self.assertIn('set "DISPLAY_OPTION=/qn"', text_of(os.path.join(second, "Install.cmd")))

    def test_a_log_folder_out_of_reach_is_stored_on_yes(self):
        deployment = self.build_with_settings("Doubtful", "network_log = yes", "log_folder = \\\\nowhere\\logs",
                                              "on_question.doubtful_log_folder = yes")
        self.assertIn("\\\\nowhere\\logs", text_of(os.path.join(deployment, "Install.cmd")))
        self.assertIn("\\\\nowhere\\logs", text_of(os.path.join(deployment, "Deployment.xml")))

    def test_the_folder_holds_nothing_but_the_deployment(self):
        deployment = self.build("Tidy")
        self.assertEqual(sorted(os.listdir(self.out)), ["Tidy"])
        self.assertEqual(sorted(os.listdir(deployment)), [
            "Answers.txt", "Build.log", "Changes.json", "Changes.txt", "Deployment.xml", "Image", "Install.cmd", "Manifest.txt",
            "ReadMe.txt", "Uninstall.cmd"])

    def test_the_manifest_names_every_file_with_its_hash(self):
        deployment = self.build("Manifest")
        listed = {}
        for line in text_of(os.path.join(deployment, "Manifest.txt")).splitlines():
            if not line.startswith("#"):
                digest, _, path = line.split(" ", 2)
                listed[path.replace("\\", "/")] = digest
        found = tree_of(deployment)
        del found["Manifest.txt"]
        self.assertEqual(listed, found)

    def test_unchanged_databases_are_the_vendors_to_the_byte(self):
        deployment = self.build("Vendor")  # the pages write their switches into the product, and nothing into its packs
        for package in ("x64/ZoltdeDE/ZoltdeDE.msi", "x64/ZoltfrFR/ZoltfrFR.msi"):
            with open(os.path.join(MEDIA, package), "rb") as media:
                with open(os.path.join(deployment, "Image", package), "rb") as image:
                    self.assertEqual(media.read() == image.read(), True, package)

    def test_the_readme_has_the_product_code_and_the_lines_to_paste(self):
        text = text_of(os.path.join(self.build("ReadMe"), "ReadMe.txt"))
        code = property_of(os.path.join(MEDIA, "x64/Zolt/Zolt2027.msi"), "ProductCode")
        for line in (code, "27.0.0", "msiexec /i ", "/qn /norestart", "msiexec /x " + code, "Group policy"):
            self.assertIn(line, text)

    def test_no_file_of_the_deployment_knows_where_it_was_built_but_the_notes(self):
        deployment = self.build("Portable")
        place = windows_path(self.out)
        knowing = []
        for parent, _, names in os.walk(deployment):
            for name in names:
                with open(os.path.join(parent, name), "rb") as file:
                    data = file.read()
                if place.encode() in data or place.encode("utf-16-le") in data:
                    knowing.append(name)
        self.assertEqual(sorted(set(knowing) - {"ReadMe.txt", "Build.log"}), [])

    def test_a_lone_package_becomes_a_deployment(self):
        lone = os.path.join(self.folder, "media", "Lone product.msi")
        os.makedirs(os.path.dirname(lone))
        shutil.copy(os.path.join(MEDIA, "x64/ZoltdeDE/ZoltdeDE.msi"), lone)
        run = self.wizard(self.begin("Lone"), media=lone)
        self.assertEqual(run.code, 0, run.output)
        self.assert_installs(os.path.join(self.out, "Lone"))

    def test_blanks_and_foreign_letters_in_every_path(self):
        media = os.path.join(self.folder, "Medien für Büro")
        shutil.copytree(MEDIA, media)
        self.out = os.path.join(self.folder, "Déploiements à Łódź")
        os.makedirs(self.out)
        run = self.wizard(self.begin("Büro 1"), media=media)
        self.assertEqual(run.code, 0, run.output)
        self.assert_installs(os.path.join(self.out, "Büro 1"))

    def test_no_value_forges_a_line_of_the_reports_or_breaks_the_json(self):
        value = "a\x01\x7f\r\n  Property: FORGED added\r\n      Value: \"b\" \\"
        media = os.path.join(self.folder, "media")
        shutil.copytree(MEDIA, media)
        package = os.path.join(media, "x64/Zolt/Zolt2027.msi")
        set_property(package, "MC3_ENABLED", value)
        deployment = self.build_with_settings("Json", "mc3 = yes", media=media, platform="x64")
        rows = json.loads(text_of(os.path.join(deployment, "Changes.json")))["databases"][0]["rows"]
        row = next(row for row in rows if row["key"] == ["MC3_ENABLED"])
        self.assertEqual(row["columns"], [{"name": "Value", "old": value, "new": "#1"}])
        lines = text_of(os.path.join(deployment, "Changes.txt")).splitlines()
        self.assertEqual([line for line in lines if line.startswith("  Property: FORGED")], [])
        self.assertEqual(len([line for line in lines if "FORGED" in line]), 1)

    def test_replacing_asks_and_leaves_the_old_one_on_no(self):
        deployment = self.build("Twice")
        with open(os.path.join(deployment, "mark.txt"), "w", encoding="ascii") as file:
            file.write("old")
        run = self.wizard(self.begin("Twice", **{"on_question.replace": "no"}))
        self.assertEqual(run.code, 22, run.output)
        self.assertTrue(os.path.exists(os.path.join(deployment, "mark.txt")))
        run = self.wizard(self.begin("Twice", **{"on_question.replace": "yes"}))
        self.assertEqual(run.code, 0, run.output)
        self.assertFalse(os.path.exists(os.path.join(deployment, "mark.txt")))

    def test_basing_on_a_deployment_makes_a_second_one(self):
        base = self.build("Base")
        run = self.wizard(self.begin("Second", mode="create_from", base="Base"), media=os.path.join(base, "Image"))
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(sorted(os.listdir(self.out)), ["Base", "Second"])
        self.assert_installs(os.path.join(self.out, "Second"))

    def test_modifying_keeps_the_name_and_the_rest_of_the_location(self):
        base = self.build("Changed")
        answers = self.answers("[begin]\nmode = modify\nbase = Changed\non_question.replace = yes\n")
        run = self.wizard(answers, media=os.path.join(base, "Image"))
        self.assertEqual(run.code, 0, run.output)
        self.assertEqual(os.listdir(self.out), ["Changed"])
        self.assert_installs(base)


class RefusalTest(WizardTest):
    def assert_refused(self, run, code, *words):
        self.assertEqual(run.code, code, run.output)
        for word in words:
            self.assertIn(word, run.output)
        self.assertEqual(os.listdir(self.out), [])

    def test_a_cancel_is_1602_and_builds_nothing(self):
        run = self.wizard(self.answers("[begin]\nname = Never\nleave = cancel\n"))
        self.assert_refused(run, 1602)

    def test_names_that_no_folder_can_bear_are_refused(self):
        for name in ("a;b", "a/b", "a:b", "a*b", "a?b", "a|b"):
            with self.subTest(name=name):
                self.assert_refused(self.wizard(self.begin(name)), 22, "name")

    def test_names_that_only_the_build_refuses_are_refused_behind_the_first_page(self):
        for name in ("CON", "nul.txt", "Office.", "Off\tice"):
            for words in ((), ("--check",)):
                with self.subTest(name=name, words=words):
                    run = self.wizard(self.begin(name), *words)
                    self.assert_refused(run, 22, "answers.txt(3): begin.name: The name \"%s\"" % name)
                    self.assertNotIn("Page settings", run.output)

    def test_a_log_that_can_not_be_written_ends_the_run_before_it_begins(self):
        log = windows_path(os.path.join(self.folder, "missing", "run.log"))
        for words in ((), ("--check",)):
            run = self.wizard(self.begin("Office"), "--log", log, *words)
            self.assert_refused(run, 1603, "Exit code 1603: The log %s can't be written: " % log, "--log")
            self.assertNotIn("Page begin", run.output)

    def test_a_location_that_is_a_file_is_refused(self):
        path = os.path.join(self.folder, "file")
        with open(path, "w", encoding="ascii"):
            pass
        self.assert_refused(self.wizard(self.begin("Office"), out=windows_path(path)), 22)

    def test_an_unknown_key_is_an_error_with_file_and_line(self):
        run = self.wizard(self.answers("[begin]\nname = Office\ncolour = red\n"))
        self.assert_refused(run, 21, "answers.txt(4)", "colour")

    def settings(self, *lines):
        path = self.begin("Office")
        with open(path, "a", encoding="utf-8") as file:
            file.write("[settings]\nnetwork_log = yes\n" + "\n".join(lines) + "\n")
        return path

    def test_a_log_folder_that_is_no_network_path_is_refused(self):
        self.assert_refused(self.wizard(self.settings("log_folder = Q:\\logs")), 22, "settings.log_folder", "network path")

    def test_a_log_folder_on_a_share_that_does_not_answer_is_a_question(self):
        path = self.settings("log_folder = \\\\nowhere\\logs")
        self.assert_refused(self.wizard(path), 23, "can't be reached", "nowhere")

    def test_a_log_folder_out_of_reach_keeps_the_page_on_no(self):
        path = self.settings("log_folder = \\\\nowhere\\logs", "on_question.doubtful_log_folder = no")
        self.assert_refused(self.wizard(path), 22, "answers.txt(8): settings.on_question.doubtful_log_folder: The page stays",
                            "nowhere")

    def test_a_question_without_an_answer_ends_the_run_with_its_text(self):
        run = self.wizard(self.answers("[begin]\nname = Office\n"))
        self.assert_refused(run, 23, "is on this computer")

    def test_answers_for_a_page_that_is_not_reached_are_an_error(self):
        media = os.path.join(self.folder, "media")
        shutil.copytree(MEDIA, media)
        setup = os.path.join(media, "Setup.xml")
        text = text_of(setup)
        with open(setup, "w", encoding="utf-8") as file:
            file.write(re.sub(r".*ProductContactDialog.*\n", "", text))
        run = self.wizard(self.answers("[begin]\nname = Office\non_question.local_location = yes\n"
                                       "[contact]\nleave = next\n"), media=media)
        self.assert_refused(run, 24, "answers.txt(5)", "contact")

    def test_check_gives_the_verdict_and_builds_nothing(self):
        self.assert_refused(self.wizard(self.begin("Office"), "--check"), 0)
        self.assert_refused(self.wizard(self.begin("a;b"), "--check"), 22)

    def test_media_without_the_package_are_refused_by_name(self):
        media = os.path.join(self.folder, "media")
        shutil.copytree(MEDIA, media)
        os.remove(os.path.join(media, "x64", "Zolt", "Zolt2027.msi"))
        self.assert_refused(self.wizard(self.begin("Office", platform="x64"), media=media), 1603, "Zolt2027.msi")

    def test_the_last_page_is_left_by_either_word(self):
        """The page behind the build shows one button; "cancel" once ended a finished run with 22."""
        for word in ("next", "cancel"):
            with self.subTest(leave=word):
                answers = self.begin("Left by " + word)
                with open(answers, "a", encoding="utf-8") as file:
                    file.write("[complete]\nleave = %s\n" % word)
                run = self.wizard(answers)
                self.assertEqual(run.code, 0, run.output)
                self.assertIn("leave = " + word, run.output)

    def test_media_without_a_cabinet_or_a_loose_file_are_refused_by_its_name(self):
        """Such media once made a deployment that said it was complete and failed on every workstation."""
        for platform, missing, code, report in (
                ("x64", "Data1.cab", 1603, "Data1.cab"),
                ("x86", "Velkmora/Zolt 2027/zolt.ini", 22, "can't be created for the selected platform")):
            with self.subTest(platform=platform):
                media = os.path.join(self.folder, "media " + platform)
                shutil.copytree(MEDIA, media)
                os.remove(os.path.join(media, platform, "Zolt", missing))
                log = os.path.join(self.folder, "setup.log")
                run = self.wizard(self.begin("Office", platform=platform), "--log", windows_path(log), media=media)
                self.assert_refused(run, code, report)
                self.assertIn(os.path.basename(missing), text_of(log))

    def test_a_code_of_the_description_that_is_not_the_packages_is_refused(self):
        """Such media once made an Uninstall.cmd that ended with 0 and removed nothing."""
        media = os.path.join(self.folder, "media")
        shutil.copytree(MEDIA, media)
        setup = os.path.join(media, "Setup.xml")
        text = text_of(setup)
        code = property_of(os.path.join(media, "x64/ZoltdeDE/ZoltdeDE.msi"), "ProductCode")
        wrong = "{00000000-0000-0000-0000-000000000001}"
        self.assertEqual(text.count(code), 1)
        with open(setup, "w", encoding="utf-8") as file:
            file.write(text.replace(code, wrong))
        self.assert_refused(self.wizard(self.begin("Office", platform="x64"), media=media), 1603, "ZoltdeDE.msi", code,
                            wrong)

    def test_a_package_whose_product_code_is_a_command_is_refused(self):
        """Its Uninstall.cmd once ran the command."""
        code = "{12345678-1234-1234-1234-123456789012} & echo pwned>C:\\pwned.txt & rem "
        package = os.path.join(self.folder, "Lone product.msi")
        shutil.copy(os.path.join(MEDIA, "x64/ZoltdeDE/ZoltdeDE.msi"), package)
        set_property(package, "ProductCode", code)
        self.assert_refused(self.wizard(self.begin("Office"), media=package), 1603, "Lone product.msi", code)

    def test_a_products_cabinet_of_a_name_for_added_files_is_refused(self):
        """The build left it out and said that all was well; nothing installed."""
        media = os.path.join(self.folder, "media")
        shutil.copytree(MEDIA, media)
        folder = os.path.join(media, "x64", "Zolt")
        os.rename(os.path.join(folder, "Data1.cab"), os.path.join(folder, "TARN0001.cab"))
        subprocess.run(["msibuild", os.path.join(folder, "Zolt2027.msi"), "-q",
                        "UPDATE `Media` SET `Cabinet` = 'TARN0001.cab'"], check=True, stdout=subprocess.DEVNULL)
        self.assert_refused(self.wizard(self.begin("Office", platform="x64"), media=media), 1603, "TARN0001.cab",
                            "keeps for added files")

    def test_a_cut_off_package_is_refused_by_name(self):
        media = os.path.join(self.folder, "media")
        shutil.copytree(MEDIA, media)
        path = os.path.join(media, "x64", "Zolt", "Zolt2027.msi")
        with open(path, "r+b") as file:
            file.truncate(os.path.getsize(path) // 2)
        self.assert_refused(self.wizard(self.begin("Office", platform="x64"), media=media), 1603, "Zolt2027.msi")

    def test_a_description_that_is_cut_off_is_refused_with_its_line(self):
        media = os.path.join(self.folder, "media")
        os.makedirs(media)
        whole = text_of(os.path.join(MEDIA, "Setup.xml"))
        with open(os.path.join(media, "Setup.xml"), "w", encoding="utf-8") as file:
            file.write(whole[:len(whole) // 2])
        self.assert_refused(self.wizard(self.begin("Office"), media=media), 1603, "Setup.xml")

    def test_a_missing_resource_library_ends_with_1603_and_its_path(self):
        program = os.path.join(self.folder, "program")
        os.makedirs(program)
        for name in ("Setup.exe", "RolloutUi.dll", "WizCore.dll", "SlimHtml.dll"):
            shutil.copy(os.path.join(PROGRAM_FOLDER, name), program)
        run = self.wizard(self.begin("Office"), program=os.path.join(program, "Setup.exe"))
        self.assert_refused(run, 1603, "WizText.dll")


class CommandTest(WizardTest):
    def test_the_package_of_a_release_runs_by_itself(self):
        archive = subprocess.run([os.path.join(ROOT, "package"), self.folder], capture_output=True, text=True)
        self.assertEqual(archive.returncode, 0, archive.stderr)
        subprocess.run(["unzip", "-q", archive.stdout.strip(), "-d", self.folder], check=True)
        folder = next(os.path.join(self.folder, name) for name in os.listdir(self.folder)
                      if name.startswith("rollout-") and os.path.isdir(os.path.join(self.folder, name)))
        run = self.wizard(self.begin("Packed"), media=os.path.join(folder, "Media"),
                          program=os.path.join(folder, "Setup.exe"))
        self.assertEqual(run.code, 0, run.output)

    def test_an_unattended_run_without_media_asks_nobody(self):
        self.assertFalse(os.path.exists(os.path.join(PROGRAM_FOLDER, "Media")))
        program = os.path.join(PROGRAM_FOLDER, "Setup.exe")
        words = ["--answers", windows_path(self.begin("Office")), "--quiet-limit", "20"]
        run = subprocess.run(["wine", program, *words], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=60)
        run = self.run_of(run.stdout, run.returncode)
        self.assertEqual(run.code, 1603, run.output)
        self.assertIn("No media are specified", run.output)

    def test_no_binary_holds_a_path_of_the_building_machine(self):
        for name in ("Setup.exe", "RolloutUi.dll", "WizCore.dll", "SlimHtml.dll", "Languages/en-US/WizText.dll"):
            with open(os.path.join(PROGRAM_FOLDER, name), "rb") as file:
                data = file.read()
            with self.subTest(name=name):
                self.assertNotIn(ROOT.encode(), data)
                self.assertNotIn(BUILD.encode(), data)

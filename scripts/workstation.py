#!/usr/bin/env python3
"""Installs a deployment as a workstation would, looks at what arrived, and removes it again.

    workstation.py DEPLOYMENT --prefix FOLDER --logs FOLDER [--answers FILE ...] [--set page.key=value ...]
                   [--limit SECONDS] [--report SECONDS]

DEPLOYMENT is the folder that the wizard made. It is reached over a network path in a Wine prefix of its own, through
its own Install.cmd and Uninstall.cmd. Every file that the databases name must be there with its size after installing,
and gone after uninstalling; what the package itself asks to leave is told apart from what was left behind. Every registry value
that carries one property to the workstation must hold what the deployed database says, with the directories of the
workstation where a script of the package puts them in. Files whose place can't be known
beforehand, other registry values, services and environment variables are not looked at. Every shortcut of the start menu and
the desktop must be there with its target, arguments and working folder, and gone after uninstalling. With the answers that the wizard was run with, those values must also be what was answered, so
the choices are seen to arrive, and every file that was added must be there byte for byte, with its folders and nothing else in
them; of all that nothing may be left. When the deployment names a folder for logs, each product's log must have come there.
Says what it waits for while it waits. A command that doesn't come back within the limit is ended, with all that runs in
the prefix, and the look ends there. Prints what it found; the exit code is 0 when all was well, otherwise 1.
"""

import argparse
import glob
import os
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree

import expected_patches
from expected_files import asked_files, find_left, find_wrong
from expected_properties import asked_properties, find_unmet, same_value
from path_forms import NO_PATH, stored_path
from shortcut_files import asked_shortcuts, check_asked, custom_shortcuts, expected_shortcuts, formatted
from steady_addresses import keep_addresses_steady
from watched_command import CommandOverdue, Patience, read_log, run_watched

# Where the installer's own folders lie in the prefix; others have no fixed place.
SYSTEM_FOLDERS = {
    "ProgramFilesFolder": "Program Files (x86)", "ProgramFiles64Folder": "Program Files",
    "CommonAppDataFolder": "ProgramData", "WindowsFolder": "windows", "CommonFilesFolder":
    "Program Files (x86)/Common Files", "CommonFiles64Folder": "Program Files/Common Files", "TARGETDIR": "",
    "SystemFolder": "windows/syswow64", "System64Folder": "windows/system32", "FontsFolder": "windows/Fonts",
}
REGISTRY_ROOTS = {"0": "HKCR", "1": "HKCU", "2": "HKLM", "3": "HKU"}
SHARED_COMPONENT, PERMANENT_COMPONENT, SIXTY_FOUR_BIT_COMPONENT = 8, 16, 256
# Kinds of custom actions that run a program, a library or a script, whose work no table shows.
RUNNING_ACTIONS = (1, 2, 5, 6)
COMMAND_SECONDS = 300  # the slowest seen took 20
REPORT_SECONDS = 10
LOG_LINES = 3
ADDED_DRIVE = re.compile(r"DRIVE_([A-Z])")
SCRIPT_IN_TARGET = 37  # a custom action's type: JScript
# Of thousands of lines in a log those that say how it went.
REPORTED_LINE = re.compile(r"^(Action ended|Product: |.*-- (Installation|Configuration) |MSI .*returning|Error )")


def parse_rows(text):
    """The rows of an exported table as dictionaries. A cell may hold line breaks: a line with too few cells goes on with
    the row before."""
    lines = [line.rstrip("\r") for line in text.split("\n")]
    if lines and not lines[-1]:
        lines.pop()
    columns = lines[0].split("\t") if lines else []
    rows = []
    for line in lines[3:]:  # behind names, types and keys
        cells = line.split("\t")
        if rows and len(cells) < len(columns):
            rows[-1][-1] += "\n" + cells[0]
            rows[-1] += cells[1:]
        else:
            rows.append(cells)
    return [dict(zip(columns, row)) for row in rows]


def read_table(database, table):
    """The rows of a table; empty when there is no such table."""
    result = subprocess.run(["msiinfo", "export", database, table], capture_output=True)
    return parse_rows(result.stdout.decode("utf-8", "replace")) if result.returncode == 0 else []


def find_databases(deployment):
    """(path, whether it is a language pack's) of the packages that the image's description names. Others that lie there
    belong to them."""
    image = os.path.join(deployment, "Image")
    setup = xml.etree.ElementTree.parse(os.path.join(image, "Setup.xml"))
    named = {package.get("file").lower() for package in setup.iter("Package")}
    of_packs = {place for pack in setup.iter("LanguagePack") for place in package_places(setup, pack)}
    found = glob.glob(os.path.join(glob.escape(image), "**", "*.[mM][sS][iI]"), recursive=True)
    return [(path, os.path.relpath(path, image).lower() in of_packs) for path in sorted(found)
            if os.path.basename(path).lower() in named]


def package_places(setup, owner):
    """Where the packages of a product or language pack lie in the image, in small letters."""
    folders = {platform.get("id"): platform.get("folder") for platform in setup.iter("Platform")}
    for package in owner.findall("Package"):
        parts = [folders.get(package.get("platform"), ""), owner.get("folder"), package.get("file")]
        yield os.path.join(*[part for part in "\\".join(parts).split("\\") if part]).lower()


def reason_to_stay(component):
    """Why what belongs to a component is not removed with the product; empty when it is."""
    if not component["ComponentId"]:
        return "its component has no code, so it is never removed"
    if int(component["Attributes"]) & PERMANENT_COMPONENT:
        return "its component is permanent"
    if int(component["Attributes"]) & SHARED_COMPONENT:
        return "its component is shared, and may still be in use"
    return ""


class Package:
    """What an installer database promises to put on the disk."""

    def __init__(self, path, is_pack):
        self.path, self.is_pack = path, is_pack
        self.directories = {row["Directory"]: row for row in read_table(path, "Directory")}
        self.components = {row["Component"]: row for row in read_table(path, "Component")}
        self.properties = {row["Property"]: row["Value"] for row in read_table(path, "Property")}
        level = int(self.properties.get("INSTALLLEVEL", "1"))
        features = {row["Feature"] for row in read_table(path, "Feature") if 0 < int(row["Level"] or 0) <= level}
        self.resolving_scripts = [row["Target"] for row in read_table(path, "CustomAction")
                                  if int(row["Type"]) == SCRIPT_IN_TARGET]
        self.wanted = {row["Component_"] for row in read_table(path, "FeatureComponents") if row["Feature_"] in features}

    def folder(self, key):
        """Where a directory key points to, from the drive's root; None when that can't be known beforehand."""
        if key in SYSTEM_FOLDERS:
            return SYSTEM_FOLDERS[key]
        row = self.directories.get(key)
        if not row or not row["Directory_Parent"] or row["Directory_Parent"] == key:
            return None
        if row["DefaultDir"].startswith("DRIVE_"):
            return None  # a drive that was added; not every workstation has it
        above = self.folder(row["Directory_Parent"])
        name = row["DefaultDir"].split(":")[0].split("|")[-1]
        return None if above is None else os.path.join(above, "" if name == "." else name)

    def added_drives(self):
        """The letters of drives that an administrator added."""
        found = [ADDED_DRIVE.fullmatch(row["DefaultDir"]) for row in self.directories.values()]
        return {match.group(1).lower() for match in found if match}

    def files(self):
        """Path, size and reason to stay of each file that a plain installation brings."""
        for row in read_table(self.path, "File"):
            component = self.components.get(row["Component_"])
            if component and row["Component_"] in self.wanted and not component["Condition"]:
                folder = self.folder(component["Directory_"])
                if folder is not None:
                    yield (os.path.join(folder, row["FileName"].split("|")[-1]), int(row["FileSize"]),
                           reason_to_stay(component))

    def running_actions(self):
        """The custom actions of an installation that do what no table shows."""
        sequenced = {row["Action"] for row in read_table(self.path, "InstallExecuteSequence")}
        return [row["Action"] for row in read_table(self.path, "CustomAction")
                if row["Action"] in sequenced and int(row["Type"]) & 7 in RUNNING_ACTIONS]

    def resolved(self, name, text):
        """What a property holds when the registry is written: of those that a script of the package resolves, the
        directories are the workstation's by then."""
        if text.upper() == NO_PATH or not any(re.search(r"\b%s\b" % name, script) for script in self.resolving_scripts):
            return text
        return formatted(self, text)

    def stored_path(self, shown):
        """What the database holds of a path as its page shows it."""
        rows = {row["Directory_"]: (row["LocalString"], int(row["Flags"]))
                for row in read_table(self.path, "TarnDirectoryMap")}
        return stored_path(rows, shown)

    def target_path(self, key):
        """The installed path of a directory key, with its closing backslash; of another key its property."""
        folder = self.folder(key)
        if folder is None:
            return self.properties.get(key, "")
        return "\\".join(["C:"] + [part for part in folder.split("/") if part] + [""])

    def carried_properties(self):
        """(key with its root, bits of the registry's view, name, property, reason to stay) of each value that is one
        property."""
        for row in read_table(self.path, "Registry"):
            reference = re.fullmatch(r"\[([A-Za-z_][\w.]*)\]", row["Value"])
            component = self.components.get(row["Component_"])
            if not reference or not component or row["Component_"] not in self.wanted or component["Condition"]:
                continue
            name = reference.group(1)
            # Directories are properties too, but of the workstation's own making.
            if row["Root"] in REGISTRY_ROOTS and name not in self.directories:
                bits = 64 if int(component["Attributes"]) & SIXTY_FOUR_BIT_COMPONENT else 32
                yield (REGISTRY_ROOTS[row["Root"]] + "\\" + row["Key"], bits, row["Name"], name,
                       reason_to_stay(component))


class FolderView:
    """Files below a folder, whatever the case of their names. Each folder is listed once, so what changes later isn't
    seen."""

    def __init__(self, root):
        self.root = root
        self.listings = {}

    def names(self, folder):
        if folder not in self.listings:
            names = os.listdir(folder) if os.path.isdir(folder) else []
            self.listings[folder] = {name.lower(): name for name in names}
        return self.listings[folder]

    def find(self, path):
        """The real path of a file; None when it isn't there."""
        current = self.root
        for part in path.split("/"):
            if not part:
                continue
            name = self.names(current).get(part.lower())
            if name is None:
                return None
            current = os.path.join(current, name)
        return current


class NewLogs:
    """The logs that were written since the object was made, of those that a list of patterns finds."""

    def __init__(self, patterns):
        self.patterns = patterns
        self.before = self.stamps()

    def stamps(self):
        return {log: os.stat(log).st_mtime_ns for pattern in self.patterns for log in glob.glob(pattern)}

    def find(self):
        """The oldest first."""
        found = self.stamps()
        return sorted((log for log in found if self.before.get(log) != found[log]), key=found.get)


class LogFolder:
    """The folder that Install.cmd names for the logs of all workstations; `name` is empty when it names none."""

    def __init__(self, prefix, deployment):
        with open(os.path.join(deployment, "Install.cmd"), encoding="utf-8") as file:
            setting = re.search(r'^set "LOG_FOLDER=(.*)"\s*$', file.read(), re.MULTILINE)
        self.name = setting.group(1).replace("%%", "%") if setting else ""
        path = self.place(os.path.join(prefix, "dosdevices")) if self.name else ""
        self.logs = NewLogs([os.path.join(glob.escape(path), "*.log")] if path else [])

    def place(self, devices):
        """Where the prefix has that folder; a place that isn't there when the prefix has no such share or drive."""
        parts = [part for part in self.name.split("\\") if part]
        if self.name.startswith("\\\\"):
            parts.insert(0, "unc")
        relative = "/".join(parts)
        return FolderView(devices).find(relative) or os.path.join(devices, relative)

    def report(self):
        for log in self.logs.find():
            print("Network log %s\\%s, %d bytes, ends:" % (self.name.rstrip("\\"), os.path.basename(log),
                                                           os.path.getsize(log)))
            for line in [line for line in read_log(log) if REPORTED_LINE.match(line)][-LOG_LINES:]:
                print("    " + line.strip()[:150])


class Workstation:
    def __init__(self, prefix, deployment, logs, patience):
        self.patience = patience
        self.drive = os.path.join(prefix, "drive_c")
        self.network_logs = LogFolder(prefix, deployment)
        self.local_logs = NewLogs([os.path.join(glob.escape(self.drive), pattern) for pattern in (
            "windows/[Ll]ogs/Software/*.log", "users/*/Temp/*.log", "users/*/AppData/Local/Temp/*.log")])
        self.logs = logs
        self.drives = os.path.join(prefix, "added_drives")
        # The deployment's parent is shared under a name, as on a server.
        share = os.path.join(prefix, "dosdevices", "unc", "server", "deployments")
        os.makedirs(os.path.dirname(share), exist_ok=True)
        if os.path.islink(share):
            os.remove(share)
        os.symlink(os.path.dirname(deployment), share)
        self.folder = "\\\\server\\deployments\\" + os.path.basename(deployment)

    def add_drives(self, letters):
        """Gives the workstation these drives, empty but for the system's own."""
        shutil.rmtree(self.drives, ignore_errors=True)
        os.makedirs(self.drives)
        for letter in letters:
            folder, device = os.path.join(self.drives, letter), os.path.join(self.drive, "..", "dosdevices", letter + ":")
            if letter == "c":
                os.symlink(self.drive, folder)
                continue
            os.mkdir(folder)
            if os.path.lexists(device):
                os.remove(device)
            os.symlink(folder, device)

    def run(self, script):
        """Runs one of the deployment's commands and gives its exit code, whole."""
        wrapper = os.path.join(self.drive, "workstation.cmd")
        with open(wrapper, "w", encoding="ascii", newline="\r\n") as file:
            file.write("@echo off\ncall \"%%WORKSTATION_FOLDER%%\\%s\"\necho ExitCode=%%ERRORLEVEL%%\n" % script)
        environment = dict(os.environ, WORKSTATION_FOLDER=self.folder)
        output = self.run_wine(script, ["cmd", "/c", "C:\\workstation.cmd"], environment)
        codes = [line.split("=")[1].strip() for line in output.splitlines() if line.startswith("ExitCode=")]
        if not codes:
            print("%s said no exit code:\n%s" % (script, output))
        return int(codes[-1]) if codes else -1

    def run_wine(self, name, words, environment):
        command = ["taskset", "-c", os.environ.get("ROLLOUT_CORE", "0"), "wine"] + words
        local, network = self.local_logs, self.network_logs.logs
        return run_watched(name, command, environment, self.patience, lambda: local.find() + network.find(), self.stop)

    def stop(self):
        """Ends all that runs in the prefix, as pulling the plug would."""
        subprocess.run(["wineserver", "-k"], stderr=subprocess.DEVNULL)
        subprocess.run(["wineserver", "-w"], stderr=subprocess.DEVNULL)

    def discard(self):
        """Has the next run begin on a fresh workstation: this one holds half an installation."""
        marker = os.path.join(os.path.dirname(self.drive), ".rollout")
        if os.path.exists(marker):
            os.remove(marker)

    def registry_values(self, key, bits):
        """The values of a registry key by name: (kind, text)."""
        output = self.run_wine("reg query " + key, ["reg", "query", key, "/reg:%d" % bits], dict(os.environ))
        rows = re.findall(r"^    (.*?)    (REG_\w+)(?:    (.*))?$", output.replace("\r", ""), re.MULTILINE)
        return {name: (kind, text) for name, kind, text in rows}

    def has_key(self, key):
        """Of the registry's 64-bit view."""
        output = self.run_wine("reg query " + key, ["reg", "query", key, "/reg:64"], dict(os.environ))
        return key.split("\\", 1)[1].lower() in output.lower()

    def keep_logs(self):
        os.makedirs(self.logs, exist_ok=True)
        kept = []
        for log in self.local_logs.find():
            shutil.copy(log, self.logs)
            kept.append(os.path.basename(log))
        return sorted(kept)


def check_registry(workstation, packages, asked):
    troubles = []
    values, products = {}, []
    good = 0
    for package in packages:
        carried = {}
        for key, bits, name, source, _ in package.carried_properties():
            if (key, bits) not in values:
                values[key, bits] = workstation.registry_values(key, bits)
            kind, found = values[key, bits].get(name, ("none", ""))
            carried.setdefault(source, []).append((kind, found))
            text = package.resolved(source, package.properties.get(source, ""))
            if same_value(kind, found, text):
                good += 1
            else:
                troubles.append("%s\\%s is %s \"%s\" instead of \"%s\"" % (key, name, kind, found, text))
        if not package.is_pack:
            products.append((package.properties.get("ProductName", os.path.basename(package.path)), carried,
                             package.properties, package))
    print("%d of %d properties stand in the registry as the deployment has them." % (good, good + len(troubles)))
    return troubles + check_answers(products, asked)


def check_answers(products, asked):
    if not asked:
        return []
    unmet = find_unmet(asked, products)
    print("%d of %d answers for properties of the product came to the workstation." % (len(asked) - len(unmet),
                                                                                        len(asked)))
    return unmet


def check_shortcuts(workstation, packages, asked):
    """The files that the shell shows, against the databases, and the databases against the answers."""
    troubles, products, good = [], [], 0
    for package in packages:
        rows = read_table(package.path, "Shortcut")
        wanted, left_out = expected_shortcuts(package, rows)
        for shortcut in wanted:
            wrong = shortcut.look(workstation.drive)
            good += not wrong
            troubles += ["shortcut %s (%s): %s" % (shortcut.name, shortcut.key, wrong)] if wrong else []
        troubles += ["shortcut %s (%s) is there, though it was turned off" % (shortcut.name, shortcut.key)
                     for shortcut in left_out if shortcut.find(workstation.drive)]
        if not package.is_pack:
            products.append((package.properties.get("ProductName", ""), package.properties.get("ProductCode", ""),
                             custom_shortcuts(package, rows)))
    print("%d shortcuts are as the deployment has them, %d of them custom ones." %
          (good, sum(len(custom) for _, _, custom in products)))
    return troubles + check_asked(asked, products)


def shortcuts_left(workstation, packages):
    return [path for package in packages
            for shortcuts in expected_shortcuts(package, read_table(package.path, "Shortcut")) for shortcut in shortcuts
            for path in shortcut.find(workstation.drive)]


def check_additions(workstation, packages, answers, find):
    """What `find` finds wrong with the files that the answers add to the products."""
    troubles, files, folders = [], 0, 0
    for package in packages:
        asked = asked_files(answers, package.properties.get("ProductName", ""))
        root = package.folder("INSTALLDIR")
        if package.is_pack or root is None or not asked.all():
            continue
        troubles += find(asked, os.path.join(workstation.drive, root), workstation.drives)
        files, folders = files + len(asked.files), folders + len(asked.folders)
    if files or folders:
        print("Of %d added files and %d added folders and drives, %s." % (
            files, folders, "%d are not as they should be" % len(troubles) if troubles else
            "all are there, byte for byte" if find is find_wrong else "nothing is left"))
    return troubles


def expected_rows(packages, answers):
    """Path, size and reason to stay of each file, as the patches that were asked for leave it."""
    rows = {path: (path, size, reason) for package in packages for path, size, reason in package.files()}
    for package in packages:
        for path, data in expected_patches.patched_files(package, answers).items():
            if data is not None:
                rows[path] = (path, len(data), rows[path][2] if path in rows else "")
    return list(rows.values())


def check_patches(workstation, packages, answers):
    """Of the sample's products: the patched files byte for byte, the patches that are registered, the versions."""
    troubles, appended, merged = [], 0, 0
    view = FolderView(workstation.drive)
    for package in packages:
        troubles += expected_patches.find_wrong(package, answers, view, workstation.has_key)
        if not package.is_pack:
            asked = expected_patches.asked_patches(answers, package.properties.get("ProductName", ""))
            appended, merged = appended + len(asked.appended), merged + len(asked.merged)
    if appended or merged:
        print("Of %d appended and %d merged patches, %s." % (
            appended, merged, "%d things are not as they should be" % len(troubles) if troubles else
            "all files, versions and registrations are as they were asked for"))
    return troubles


def check_leftovers(workstation, packages, expected):
    """What stays on purpose, what was left behind, and what can't be known."""
    view = FolderView(workstation.drive)
    left = [(path, reason) for path, _, reason in expected if view.find(path)]
    left += [(os.path.relpath(path, workstation.drive), "") for path in shortcuts_left(workstation, packages)]
    values = {}
    for package in packages:
        for key, bits, name, _, reason in package.carried_properties():
            if (key, bits) not in values:
                values[key, bits] = workstation.registry_values(key, bits)
            if name in values[key, bits]:
                left.append(("%s\\%s" % (key, name), reason))
    for path, reason in left:
        if reason:
            print("Stays on purpose: %s (%s)" % (path, reason))
    behind = [path for path, reason in left if not reason]
    print("%d files and values were left behind." % len(behind))
    actions = sorted({action for package in packages for action in package.running_actions()})
    if actions:
        print("What these custom actions made can't be known from the tables, and may be there still: "
              + ", ".join(actions))
    return ["left behind: " + path for path in behind]


def check(workstation, packages, asked, shortcuts, answers):
    troubles = []
    workstation.add_drives(set().union(*(package.added_drives() for package in packages)))
    expected = expected_rows(packages, answers)
    view = FolderView(workstation.drive)
    early = [path for path, _, _ in expected if view.find(path)]
    if early:
        print("%d files were there before the installation, so that finding them proves nothing." % len(early))
    for path in shortcuts_left(workstation, packages):
        print("This shortcut was there before the installation: " + path)
    code = workstation.run("Install.cmd")
    print("Install.cmd ended with %d." % code)
    if code not in (0, 3010):
        troubles.append("Install.cmd ended with %d" % code)
    log_folder = workstation.network_logs
    if log_folder.name:
        log_folder.report()
        written = len([log for log in log_folder.logs.find() if "_Install_" in log])
        if written < len(packages):
            troubles.append("the log folder %s got %d logs of %d installations" % (log_folder.name, written,
                                                                                  len(packages)))
    good = 0
    view = FolderView(workstation.drive)
    for path, size, _ in expected:
        found = view.find(path)
        if found is None:
            troubles.append("not installed: " + path)
        elif os.path.getsize(found) != size:
            troubles.append("%s has %d bytes instead of %d" % (path, os.path.getsize(found), size))
        else:
            good += 1
    print("%d of %d files are there, each with its size." % (good, len(expected)))
    troubles += check_additions(workstation, packages, answers, find_wrong)
    troubles += check_patches(workstation, packages, answers)
    troubles += check_registry(workstation, packages, asked)
    troubles += check_shortcuts(workstation, packages, shortcuts)
    code = workstation.run("Uninstall.cmd")
    print("Uninstall.cmd ended with %d." % code)
    if code not in (0, 3010):
        troubles.append("Uninstall.cmd ended with %d" % code)
    troubles += check_leftovers(workstation, packages, expected)
    troubles += check_additions(workstation, packages, answers, find_left)
    troubles += [trouble for package in packages for trouble in expected_patches.find_left(package, workstation.has_key)]
    print("Logs on the workstation: %s" % (", ".join(workstation.keep_logs()) or "none"))
    return troubles


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("deployment")
    parser.add_argument("--prefix", required=True, help="the Wine prefix that stands for the workstation")
    parser.add_argument("--logs", required=True, help="folder for the workstation's logs")
    parser.add_argument("--answers", action="append", default=[], metavar="FILE",
                        help="the answers file that the wizard was run with; several for a deployment that was modified, in "
                        "the order of the runs")
    parser.add_argument("--set", action="append", default=[], metavar="page.key=value",
                        help="an answer that won over the file; may stand several times")
    parser.add_argument("--limit", type=float, default=COMMAND_SECONDS, metavar="SECONDS",
                        help="how long a command may take before it is ended (default: %(default)s)")
    parser.add_argument("--report", type=float, default=REPORT_SECONDS, metavar="SECONDS",
                        help="how often to say what is waited for (default: %(default)s)")
    arguments = parser.parse_args()
    asked, shortcuts = {}, {}
    for number, answers in enumerate(arguments.answers):
        words = arguments.set if number == 0 else []
        asked.update(asked_properties(answers, words))
        shortcuts.update(asked_shortcuts(answers, words))
    sys.stdout.reconfigure(line_buffering=True)
    keep_addresses_steady()
    deployment = os.path.abspath(arguments.deployment)
    databases = find_databases(deployment)
    if not databases:
        print("There is no installer database in %s." % os.path.join(deployment, "Image"))
        return 1
    workstation = Workstation(arguments.prefix, deployment, arguments.logs, Patience(arguments.limit, arguments.report))
    try:
        troubles = check(workstation, [Package(*database) for database in databases], asked, shortcuts, arguments.answers)
    except CommandOverdue as overdue:
        troubles = [str(overdue)]
        workstation.discard()
        print("Logs on the workstation: %s" % (", ".join(workstation.keep_logs()) or "none"))
    for trouble in troubles[:20]:
        print("TROUBLE: " + trouble)
    return 1 if troubles else 0


if __name__ == "__main__":
    sys.exit(main())

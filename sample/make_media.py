#!/usr/bin/env python3
"""Makes the sample's media: installer databases of two products for both platforms, their files, and Setup.xml.

    make_media.py --out FOLDER --programs32 FOLDER --programs64 FOLDER

The folders of programs hold the main program of each product. The 64-bit products' files lie in a cabinet beside the
database, those of the 32-bit products loose in folders, and those of the language packs in a cabinet within the
database, so that each form of media is at hand. Two runs give the same bytes. Needs msibuild (msitools) and gcab.
"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import uuid

import file_contents
import installer_tables as tables
import path_action
import sample_setup as setup
import update_catalog
import viewer_product
import zolt_product

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "scripts"))

from page_table import written_pages  # noqa: E402

COMPRESSED, LOOSE = 16384, 8192
FIXED_TIME = 1767225600  # 2026-01-01 00:00 UTC
HKEY_LOCAL_MACHINE = 2
PRODUCTS = (zolt_product, viewer_product)


def guid(product, *names):
    return "{%s}" % str(uuid.uuid5(uuid.UUID(product.GUID_SEED), "/".join(map(str, names)))).upper()


def write_file(path, data):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(data)
    os.utime(path, (FIXED_TIME, FIXED_TIME))


def short_name(name, taken):
    """An 8.3 name that no other file of the folder has."""
    stem, _, ending = name.rpartition(".")
    clean = "".join(letter for letter in stem.upper() if letter.isalnum() and letter.isascii())
    ending = ending.upper()[:3]
    for number in range(1, 1000):
        mark = "~%d" % number
        candidate = "%s%s.%s" % (clean[:8 - len(mark)], mark, ending)
        if candidate not in taken:
            taken.add(candidate)
            return candidate
    raise ValueError(name)


def is_short(name):
    stem, _, ending = name.rpartition(".")
    return len(stem) <= 8 and len(ending) <= 3 and name.isascii() and " " not in name


class Package:
    """One installer database of a product and the files that go with it."""

    def __init__(self, product, folder, file_name, name, language, platform, source, version=setup.VERSION):
        self.product, self.folder, self.file_name, self.name = product, folder, file_name, name
        self.language, self.platform, self.source, self.version = language, platform, source, version
        self.programs = setup.PLATFORMS[platform]["programs"]
        self.files = []  # key, directory, name, bytes, feature
        self.rows = {table: [] for table in tables.SCHEMAS}

    def guid(self, *names):
        return guid(self.product, self.platform, self.language, *names)

    def directory_path(self, key):
        """The folder of a directory key in uncompressed media."""
        parent, name = self.product.DIRECTORIES[key]
        if not parent:
            return ""
        long_name = name.split("|")[-1]
        above = self.directory_path(self.real(parent)) if parent != "{programs}" else ""
        return above if long_name == "." else os.path.join(above, long_name)

    def real(self, key):
        return "{programs}" if key == self.programs else key

    def add_directories(self, keys):
        wanted = []

        def want(key):
            parent, name = self.product.DIRECTORIES[key]
            if parent:
                want(parent)
            row = (key.format(programs=self.programs), parent.format(programs=self.programs), name)
            if row not in wanted:
                wanted.append(row)

        for key in keys:
            want(key)
        self.rows["Directory"] = wanted

    def add_file(self, feature, directory, name, data):
        key = "".join(letter if letter.isalnum() and letter.isascii() else "_" for letter in directory + "_" + name)
        self.files.append((key, directory, name, data, feature))

    def add_component(self, key, directory, key_path, feature, registry=False):
        attributes = (256 if self.platform == 3 else 0) | (4 if registry else 0)
        self.rows["Component"].append((key, self.guid("component", key), directory, attributes, None, key_path))
        self.rows["FeatureComponents"].append((feature, key))

    def compose_files(self):
        taken = {}
        for sequence, (key, directory, name, data, feature) in enumerate(self.files, 1):
            names = taken.setdefault(directory, set())
            full = name if is_short(name) else "%s|%s" % (short_name(name, names), name)
            attributes = LOOSE if self.source == "loose" else COMPRESSED
            self.rows["File"].append((key, key, full, len(data), None, None, attributes, sequence))
            self.add_component(key, directory, key, feature)
        cabinet = {"loose": None, "beside": "Data1.cab", "inside": "#Data1.cab"}[self.source]
        self.rows["Media"].append((1, len(self.files), "1" if cabinet else None, cabinet, None, None))

    def remove_empty_folders(self, component):
        """The folders that hold only folders have no component of their own to take them away."""
        keys = [row[0] for row in self.rows["Directory"] if row[2] not in (".", "SourceDir")]
        for key in reversed(keys):
            self.rows["RemoveFile"].append(("Remove_" + key, component, None, key, 2))

    def compose_sequences(self):
        for table, actions in (("InstallExecuteSequence", tables.EXECUTE_SEQUENCE),
                               ("InstallUISequence", tables.UI_SEQUENCE),
                               ("AdminExecuteSequence", tables.ADMIN_SEQUENCE),
                               ("AdvtExecuteSequence", tables.ADVERTISE_SEQUENCE)):
            self.rows[table] = [(action, None, sequence) for action, sequence in actions]

    def resolve_paths(self, properties):
        self.rows["CustomAction"].append((path_action.NAME, path_action.SCRIPT_IN_TARGET, None,
                                          path_action.script(properties)))
        self.rows["InstallExecuteSequence"].append((path_action.NAME, path_action.CONDITION, path_action.SEQUENCE))

    def compose_properties(self, values):
        self.product_code = self.guid("product", self.name)
        self.package_code = self.guid("package", self.name, self.version)
        upgrade_code = guid(self.product, "upgrade", self.name, self.platform)
        values = dict({"ProductName": self.name, "ProductCode": self.product_code, "ProductVersion": self.version,
                       "ProductLanguage": self.language, "Manufacturer": setup.MAKER, "UpgradeCode": upgrade_code,
                       "ALLUSERS": "1", "INSTALLLEVEL": "100", "ARPNOREPAIR": "1",
                       "SecureCustomProperties": "OLDERVERSIONFOUND"}, **values)
        self.rows["Property"] = sorted(values.items())
        self.rows["Upgrade"] = [(upgrade_code, None, self.version, None, 0, None, "OLDERVERSIONFOUND")]
        if self.platform == 3:
            self.rows["LaunchCondition"] = [("VersionNT64", "%s needs a 64-bit edition of Windows." % self.name)]

    def write_sources(self, scratch):
        """Puts the files where the Media table says; returns the streams to embed."""
        if self.source == "loose":
            for _, directory, name, data, _ in self.files:
                write_file(os.path.join(self.folder, self.directory_path(self.real(directory)), name), data)
            return []
        for key, _, _, data, _ in self.files:
            write_file(os.path.join(scratch, "cabinet", key), data)
        beside = self.source == "beside"
        cabinet = os.path.join(self.folder if beside else scratch, "Data1.cab")
        if os.path.exists(cabinet):
            os.remove(cabinet)
        subprocess.run(["gcab", "--create", "--zip", "--nopath", cabinet] + [key for key, *_ in self.files], check=True,
                       cwd=os.path.join(scratch, "cabinet"), env=dict(os.environ, TZ="UTC"), stdout=subprocess.DEVNULL)
        os.utime(cabinet, (FIXED_TIME, FIXED_TIME))
        return [] if beside else [("Data1.cab", cabinet)]

    def write(self):
        os.makedirs(self.folder, exist_ok=True)
        path = os.path.join(self.folder, self.file_name)
        with tempfile.TemporaryDirectory() as scratch:
            streams = self.write_sources(scratch)
            template = "%s;%d" % (setup.PLATFORMS[self.platform]["template"], self.language)
            imports = [tables.write_code_page(scratch)]
            imports += [tables.write_table(scratch, table, rows) for table, rows in self.rows.items()]
            subprocess.run(["msibuild", path, "-s", self.name, setup.MAKER, template, self.package_code], check=True)
            subprocess.run(["msibuild", path, "-i"] + imports, check=True)
            for name, file in streams:
                subprocess.run(["msibuild", path, "-a", name, file], check=True)
        os.utime(path, (FIXED_TIME, FIXED_TIME))
        return path


def compose_product(product, media, platform, programs, version=setup.VERSION, newer=()):
    """Nothing is written. `programs`: folder of the main programs. `newer`: files of a newer version, as (feature, directory,
    name, bytes): they stand in place of those of the same name, or behind all others."""
    with open(os.path.join(programs, product.PROGRAM), "rb") as file:
        program = file.read()
    folder = os.path.join(media, setup.PLATFORMS[platform]["folder"], product.FOLDER)
    source = "beside" if platform == 3 else "loose"
    package = Package(product, folder, product.PACKAGE, product.NAME, 1033, platform, source,
                      version)
    package.add_directories(product.DIRECTORIES)
    files = {}
    for feature, directory, names in product.FILES:
        for name in names:
            data = program if name == product.PROGRAM else file_contents.contents(product.NAME, directory, name)
            files[directory, name] = (feature, data)
    files.update({(directory, name): (feature, data) for feature, directory, name, data in newer})
    for (directory, name), (feature, data) in files.items():
        package.add_file(feature, directory, name, data)
    package.compose_files()
    for number, (key, (parent, title, description, level)) in enumerate(product.FEATURES.items()):
        package.rows["Feature"].append((key, parent, title, description, number * 2 + 1, level, "INSTALLDIR", 0))
    main_feature = next(iter(product.FEATURES))
    for key, (directory, name, file, arguments, description, feature) in product.SHORTCUTS.items():
        marker = "Registry_" + key
        package.rows["Registry"].append((marker, 1, product.REGISTRY_KEY + "\\Shortcuts", key, "#1", marker))
        package.add_component(marker, directory, marker, feature, registry=True)
        if key == product.DESKTOP_SHORTCUT:
            row = package.rows["Component"][-1]
            package.rows["Component"][-1] = row[:4] + ("TARN_DESKTOPSHORTCUT_1=\"1\"",) + row[5:]
        package.rows["Shortcut"].append((key, directory, name, marker, "[INSTALLDIR]" + file, arguments, description,
                                         None, None, None, None, "INSTALLDIR"))
    package.add_component("Settings", "INSTALLDIR", "Registry_" + product.REGISTRY[0][0], main_feature,
                          registry=True)
    for name, value in product.REGISTRY:
        package.rows["Registry"].append(("Registry_" + name, HKEY_LOCAL_MACHINE, product.REGISTRY_KEY, name,
                                         version if name == "Version" else value, "Settings"))
    package.remove_empty_folders("Settings")
    package.rows["CreateFolder"] = [("MAKERDIR", "Settings")]
    package.rows["TarnDirectoryMap"] = [(key, text, flags) for key, (text, flags) in product.DIRECTORY_MAP.items()]
    template = product.SHORTCUT_TEMPLATE.format(component="INSTALLDIR_" + product.PROGRAM.replace(".", "_"))
    package.compose_properties(dict(product.PROPERTIES, **product.PATHS, ZOLT_SHORTCUT_TEMPLATE=template,
                                    **{update_catalog.FOLDER_PROPERTY: update_catalog.config_folder(product, platform)}))
    package.compose_sequences()
    package.resolve_paths(zolt_product.PATH_PROPERTIES)
    return package


def make_product(product, media, platform, programs):
    package = compose_product(product, media, platform, programs)
    package.write()
    return package


def make_language_pack(product, media, platform, locale):
    language, name, files = product.LANGUAGE_PACKS[locale]
    folder = pack_folder(product, locale)
    package = Package(product, os.path.join(media, setup.PLATFORMS[platform]["folder"], folder), folder + ".msi", name,
                      language, platform, "inside")
    product.DIRECTORIES.setdefault("LANGUAGEDIR_" + language_key(locale), ("SUPPORTDIR", locale))
    directory = "LANGUAGEDIR_" + language_key(locale)
    package.add_directories([directory])
    for file in files:
        package.add_file("Language", directory, file, file_contents.contents(name, directory, file))
    package.compose_files()
    package.rows["Feature"] = [("Language", None, name, "Menus, dictionary and help.", 1, 1, None, 0)]
    package.remove_empty_folders(package.rows["Component"][0][0])
    package.compose_properties({})
    package.compose_sequences()
    package.write()
    return folder, package


def write_catalog_configs(product, media, platform):
    """Beside the databases that the folder's path may count from."""
    parents = [media] + [os.path.join(media, setup.PLATFORMS[platform]["folder"], pack_folder(product, locale))
                         for locale in product.LANGUAGE_PACKS]
    for parent in parents:
        write_file(os.path.join(parent, *update_catalog.config_folder(product, platform).split("\\"),
                                update_catalog.CONFIG_NAME), update_catalog.config(product, platform))


def pack_folder(product, locale):
    return product.FOLDER + locale.replace("-", "")


def language_key(locale):
    return locale.replace("-", "_").upper()


def package_lines(indent, by_platform):
    return ["%s<Package platform=\"%d\" file=\"%s\" productCode=\"%s\" version=\"%s\"/>"
            % (indent, platform, package.file_name, package.product_code, setup.VERSION)
            for platform, package in sorted(by_platform.items())]


def product_lines(product, packages, packs):
    lines = ["    <Product name=\"%s\" folder=\"%s\" catalogKey=\"%s\" kind=\"%d\" carrier1=\"%d\" carrier2=\"%d\">"
             % (product.NAME, product.FOLDER, product.CATALOG_KEY, product.KIND, product.CARRIER1, product.CARRIER2)]
    lines += package_lines("      ", packages)
    for locale, (folder, by_platform) in packs.items():
        lines.append("      <LanguagePack name=\"%s\" folder=\"%s\" language=\"%s\" catalogKey=\"%s%s\">"
                     % (product.LANGUAGE_PACKS[locale][1], folder, locale, product.CATALOG_KEY, language_key(locale)))
        lines += package_lines("        ", by_platform)
        lines.append("      </LanguagePack>")
    return lines + ["    </Product>"]


def write_setup_xml(media, made):
    """`made`: (product, its packages by platform, its language packs) of each product."""
    lines = ["<?xml version=\"1.0\" encoding=\"utf-8\"?>",
             "<Setup version=\"1\" code=\"%s\" name=\"%s\" maker=\"%s\" productVersion=\"%s\">"
             % (setup.SETUP_CODE, setup.NAME, setup.MAKER, setup.VERSION),
             "  <Resources folder=\"Wizard\"/>"]
    lines += ["  <Link number=\"%d\" target=\"%s\"/>" % pair for pair in enumerate(setup.LINKS, 1)]
    lines += ["  <Step text=\"%s\"/>" % setup.STEP, "  <Languages default=\"en-US\">",
              "    <Language name=\"en-US\"/>"]
    lines += ["    <Language name=\"%s\"/>" % locale for _, _, packs in made for locale in packs]
    lines += ["  </Languages>", "  <Flow>"]
    lines += ["    <Page name=\"%s\" help=\"%s\"/>" % (page.wizard_export, page.help_file) for page in written_pages()]
    lines += ["  </Flow>", "  <Platforms>"]
    lines += ["    <Platform id=\"%d\" folder=\"%s\"/>" % (number, settings["folder"])
              for number, settings in setup.PLATFORMS.items()]
    lines += ["  </Platforms>", "  <Products>"]
    for product, packages, packs in made:
        lines += product_lines(product, packages, packs)
    lines += ["  </Products>", "</Setup>"]
    write_file(os.path.join(media, "Setup.xml"), ("\r\n".join(lines) + "\r\n").encode("utf-8"))


def make(product, media, programs):
    """A product with its language packs; `programs`: folder of the main programs by platform."""
    packages = {platform: make_product(product, media, platform, folder) for platform, folder in programs.items()}
    for platform in programs:
        write_catalog_configs(product, media, platform)
    packs = {}
    for locale in product.LANGUAGE_PACKS:
        made = {platform: make_language_pack(product, media, platform, locale) for platform in programs}
        packs[locale] = (made[3][0], {platform: package for platform, (_, package) in made.items()})
    return product, packages, packs


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--out", required=True)
    parser.add_argument("--programs32", required=True)
    parser.add_argument("--programs64", required=True)
    arguments = parser.parse_args()
    programs = {2: arguments.programs32, 3: arguments.programs64}
    # Made beside the target and swapped in, so that a broken run leaves no half media.
    media = arguments.out + ".new"
    shutil.rmtree(media, ignore_errors=True)
    write_setup_xml(media, [make(product, media, programs) for product in PRODUCTS])
    for link in setup.LINKS:
        write_file(os.path.join(media, "Wizard", "en-US", link), file_contents.contents(setup.NAME, "Wizard", link))
    shutil.rmtree(arguments.out, ignore_errors=True)
    os.rename(media, arguments.out)


if __name__ == "__main__":
    main()

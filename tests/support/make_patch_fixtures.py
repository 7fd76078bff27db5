#!/usr/bin/env python3
"""Makes what tests know patches by: a small product in three forms of package, and patches for it, good and bad.

    make_patch_fixtures.py --out FOLDER --extractor FILE

patch_fixtures.h names each file and its codes. Two runs give the same bytes.
"""

import argparse
import os
import shutil
import sys
import types

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "sample"))

import installer_storage as storage  # noqa: E402
import installer_tables as tables  # noqa: E402
import make_media  # noqa: E402
import make_patches  # noqa: E402
import patch_file  # noqa: E402

X64, ENGLISH = 3, 1033
LAYOUTS = ("beside", "inside", "loose")
FIRST_CODE = "{7C1E0001-2B5D-4E0C-9D41-3A6F00000001}"


def product(name, product_code, seed):
    return types.SimpleNamespace(
        NAME=name, CODE=product_code, GUID_SEED=seed,
        DIRECTORIES={"TARGETDIR": ("", "SourceDir"), "{programs}": ("TARGETDIR", "."),
                     "INSTALLDIR": ("{programs}", name.upper().replace(" ", "")[:8] + "|" + name),
                     "SUPPORTDIR": ("INSTALLDIR", "Support")})


TESTED = product("Patch Test", "{7C1E0000-2B5D-4E0C-9D41-3A6F00000000}", "7c1e0000-2b5d-4e0c-9d41-3a6f000000ff")
OTHER = product("Other Test", "{7C1E0000-2B5D-4E0C-9D41-3A6F00000010}", "7c1e0000-2b5d-4e0c-9d41-3a6f000000ee")

ORIGINAL = {("INSTALLDIR", "kept.txt"): "kept, as it was\r\n",
            ("INSTALLDIR", "replaced.txt"): "replaced, as it was\r\n",
            ("SUPPORTDIR", "second.txt"): "second, as it was\r\n"}
BY_FIRST = {("INSTALLDIR", "replaced.txt"): "replaced by the first patch\r\n",
            ("SUPPORTDIR", "added file.txt"): "added by the first patch\r\n"}
BY_SECOND = {("SUPPORTDIR", "added file.txt"): "added by the first patch, replaced by the second\r\n",
             ("SUPPORTDIR", "second.txt"): "replaced by the second patch\r\n"}
BY_INDEPENDENT = {("SUPPORTDIR", "second.txt"): "replaced by the independent patch\r\n"}
METADATA = {"TargetProductName": "Patch Test", "DisplayName": "First"}
HOSTILE_NAME = "A \"quoted\" & <marked> %s %1 name \u202e\u05d0\t" + 300 * "long "


def compose_package(made, layout, version, files, folder="", properties=()):
    package = make_media.Package(made, folder, "PatchTest.msi", made.NAME, ENGLISH, X64, layout, version)
    package.add_directories(made.DIRECTORIES)
    for (directory, name), text in files.items():
        package.add_file("All", directory, name, text.encode("ascii"))
    package.compose_files()
    package.rows["Feature"] = [("All", None, made.NAME, None, 1, 1, None, 0)]
    package.remove_empty_folders(package.rows["Component"][0][0])
    package.compose_properties(dict({"ProductCode": made.CODE, "TOLD": "as it was"}, **dict(properties)))
    package.compose_sequences()
    # So that a patch has to bring the action that it needs.
    sequence = package.rows["InstallExecuteSequence"]
    package.rows["InstallExecuteSequence"] = [row for row in sequence if row[0] != "PatchFiles"]
    return package


def version_of(made, layout, version, *changes):
    files = dict(ORIGINAL)
    for change in changes:
        files.update(change)
    return compose_package(made, layout, version, files, properties={"TOLD": "by " + version} if changes else ())


def named(code, disk=2, first_sequence=1000, **members):
    patch = patch_file.Patch(code, disk, first_sequence)
    for name, value in members.items():
        setattr(patch, name, value)
    return patch


class Maker:
    def __init__(self, out, extractor):
        self.out, self.extractor = out, extractor

    def write(self, name, data):
        make_media.write_file(os.path.join(self.out, name), data)

    def make_packages(self):
        for layout in LAYOUTS:
            compose_package(TESTED, layout, "1.0.0", ORIGINAL, os.path.join(self.out, layout)).write()

    def make_patches(self, layout):
        """Those that depend on where the files of the package lie."""
        original = version_of(TESTED, layout, "1.0.0")
        first = version_of(TESTED, layout, "1.0.1", BY_FIRST)
        second = version_of(TESTED, layout, "1.0.2", BY_FIRST, BY_SECOND)
        independent = version_of(TESTED, layout, "1.0.0", BY_INDEPENDENT)
        made = patch_file.compose(original, first, named(FIRST_CODE, metadata=METADATA))
        self.write(layout + "/First.msp", made)
        self.write(layout + "/Second.msp", patch_file.compose(first, second, named(
            "{7C1E0001-2B5D-4E0C-9D41-3A6F00000002}", 3, 2000, metadata=dict(METADATA, DisplayName="Second"))))
        self.write(layout + "/Independent.msp", patch_file.compose(original, independent, named(
            "{7C1E0001-2B5D-4E0C-9D41-3A6F00000003}", 4, 3000, metadata=dict(METADATA, DisplayName="Independent"))))
        return original, first, made

    def make_named(self, original, first):
        other = version_of(OTHER, "beside", "1.0.0"), version_of(OTHER, "beside", "1.0.1", BY_FIRST)
        self.write("OtherProduct.msp", patch_file.compose(*other, named("{7C1E0001-2B5D-4E0C-9D41-3A6F00000004}")))
        for name, number, metadata in (
                ("NoMetadata", 5, {}), ("TargetNameOnly", 6, {"TargetProductName": "Patch Test"}),
                ("HostileName", 7, {"TargetProductName": HOSTILE_NAME, "DisplayName": "\r\n" + HOSTILE_NAME})):
            patch = named("{7C1E0001-2B5D-4E0C-9D41-3A6F0000000%d}" % number, metadata=metadata, code_page=65001)
            self.write(name + ".msp", patch_file.compose(original, first, patch))
        superseding = named("{7C1E0001-2B5D-4E0C-9D41-3A6F00000008}", metadata=dict(METADATA, DisplayName="Newer"),
                            replaced_codes=[FIRST_CODE], family="PatchTest", sequence="2.0.0")
        others = version_of(TESTED, "beside", "1.0.1", {place: text + "and more\r\n" for place, text in BY_FIRST.items()})
        self.write("ChangedFirst.msp", patch_file.compose(original, others, named(FIRST_CODE, metadata=METADATA)))
        self.write("Superseding.msp", patch_file.compose(original, first, superseding))

    def make_unmergeable(self, original, first):
        """Patches that the service reads, and that a build can't merge, each for another reason."""
        def write(name, number, new=first, disk=2, first_sequence=1000, **members):
            code = "{7C1E0001-2B5D-4E0C-9D41-3A6F000000%02d}" % number
            self.write(name + ".msp", patch_file.compose(original, new, named(code, disk, first_sequence, **members)))

        def unknown_table(transform):
            transform.insert("Nowhere", ([("Name", "s72"), ("Value", "l0")], 1), [("a", "b")])

        def unknown_column(transform):
            transform.insert("Property", ([("Property", "s72"), ("Value", "l0"), ("More", "l0")], 1), [("a", "b", "c")])

        def cut_off(transform):
            transform.rows["File"] = transform.rows["File"][:-1]

        def invalid_version(transform):
            transform.compare("Property", tables.SCHEMAS["Property"], [("ProductVersion", "1.0.1")],
                              [("ProductVersion", "one")])

        replaced, added = "INSTALLDIR_replaced_txt", "SUPPORTDIR_added_file_txt"
        write("Delta", 21, delta_of=replaced)
        write("WithoutAFile", 22, left_out=[added])
        write("WithoutCabinet", 23, alter_cabinet=lambda cabinet: None)
        write("DamagedCabinet", 24, alter_cabinet=lambda cabinet: b"no cabinet" * 100)
        write("UnknownTable", 25, alter_product=unknown_table)
        write("UnknownColumn", 26, alter_product=unknown_column)
        write("DamagedRows", 27, alter_product=cut_off)
        write("StrayName", 28, version_of(TESTED, "beside", "1.0.1", {("INSTALLDIR", "..\\stray.txt"): "out\r\n"}))
        write("ProductsNumbers", 29, first_sequence=2)
        write("ProductsMedium", 30, disk=1)
        other = compose_package(TESTED, "beside", "1.0.1", {**ORIGINAL, **BY_FIRST}, properties={
            "ProductCode": OTHER.CODE})
        write("MakesAnotherProduct", 31, other)
        write("InvalidVersion", 32, alter_product=invalid_version)

    def make_unusual(self, layout, original):
        """What few patches do: a file that goes, and a table of the patch's own with a stream."""
        extras = ([("Name", "s72"), ("Data", "V0")], 1)

        def new_table(transform):
            transform.new_tables({"Extras": extras})
            transform.insert("Extras", extras, [("extra", 1)])
            transform.streams[storage.stream_name("Extras", ["extra"])] = b"the extra stream"

        without = {place: text for place, text in {**ORIGINAL, **BY_FIRST}.items() if place[1] != "kept.txt"}
        newer = compose_package(TESTED, layout, "1.0.1", without)
        patch = named("{7C1E0001-2B5D-4E0C-9D41-3A6F00000041}", alter_product=new_table)
        self.write(layout + "/Unusual.msp", patch_file.compose(original, newer, patch))

    def make_damaged(self, made):
        self.write("SameCode.msp", made)
        self.write("CutOff.msp", made[:len(made) // 2])
        self.write("Empty.msp", b"")
        self.write("NoPatch.msp", b"This is not a patch.\r\n" * 300)
        self.write("SelfExtracting.exe", make_patches.self_extracting(self.extractor, made))
        self.write("ExtractsNothing.exe", self.extractor)

    def make(self):
        self.make_packages()
        made = [self.make_patches(layout) for layout in LAYOUTS]
        for layout, (original, _, _) in zip(LAYOUTS, made):
            self.make_unusual(layout, original)
        original, first, patch = made[0]
        self.make_named(original, first)
        self.make_unmergeable(original, first)
        self.make_damaged(patch)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--out", required=True)
    parser.add_argument("--extractor", required=True)
    arguments = parser.parse_args()
    with open(arguments.extractor, "rb") as file:
        extractor = file.read()
    made = arguments.out + ".new"
    shutil.rmtree(made, ignore_errors=True)
    Maker(made, extractor).make()
    shutil.rmtree(arguments.out, ignore_errors=True)
    os.rename(made, arguments.out)


if __name__ == "__main__":
    main()

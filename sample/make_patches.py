#!/usr/bin/env python3
"""Makes the sample's patches, in a folder for each platform, and Patches.json, which says what each of them is.

    make_patches.py --out FOLDER --programs32 FOLDER --programs64 FOLDER --extractor FILE

The folders of programs are those of make_media.py; the extractor is the program to which a self-extracting patch is
appended. Two runs give the same bytes.

Beside the updates of the products there are patches as no maker should ship them: one without a name for people, one cut
off in the middle, one that is no patch at all, and a self-extracting program without a patch in it.
"""

import argparse
import json
import os
import shutil
import struct

import make_media
import patch_file
import sample_patches
import sample_setup as setup

EXTRACTOR_MARK = b"ZoltPatchInside1"  # as program/extractor.c looks for it at its own end


def self_extracting(extractor, patch):
    """The program with the patch behind it, then its length and the mark."""
    return extractor + patch + struct.pack("<Q", len(patch)) + EXTRACTOR_MARK


class PatchFolder:
    """The patches of one platform."""

    def __init__(self, out, platform, programs, extractor):
        self.name = setup.PLATFORMS[platform]["folder"]
        self.folder = os.path.join(out, self.name)
        self.platform, self.programs, self.extractor = platform, programs, extractor
        self.listed = []

    def package(self, update, newer):
        product = update.product
        if newer:
            return make_media.compose_product(product, "", self.platform, self.programs, update.version, update.newer())
        return make_media.compose_product(product, "", self.platform, self.programs)

    def code(self, update, *words):
        return make_media.guid(update.product, "patch", self.platform, update.version, *words)

    def compose(self, update, *words, metadata=True):
        old = self.package(update, newer=False)
        patch = patch_file.Patch(self.code(update, *words), disk=1 + update.number, first_sequence=1000 * update.number)
        patch.replaced_codes = [self.code(earlier) for earlier in update.supersedes]
        patch.family, patch.sequence = update.product.PACKAGE[:-len(".msi")], update.version
        if metadata:
            patch.metadata = {"TargetProductName": update.product.NAME, "DisplayName": "Update %d" % update.number,
                              "Description": "%s, version %s" % (update.name, update.version),
                              "ManufacturerName": setup.MAKER, "Classification": "Update", "AllowRemoval": "1"}
        return patch, patch_file.compose(old, self.package(update, newer=True), patch)

    def write(self, name, data, update=None, patch=None):
        make_media.write_file(os.path.join(self.folder, name), data)
        entry = {"file": "%s/%s" % (self.name, name)}
        if patch:
            product_code = make_media.guid(update.product, self.platform, 1033, "product", update.product.NAME)
            entry.update(code=patch.code, product=product_code, version=update.version, name=update.name,
                         supersedes=patch.replaced_codes)
        self.listed.append(entry)

    def make(self):
        for update in (sample_patches.ZOLT_1, sample_patches.ZOLT_2, sample_patches.VIEWER_1):
            patch, data = self.compose(update)
            self.write(update.stem + ".msp", data, update, patch)
            self.write(update.stem + ".exe", self_extracting(self.extractor, data), update, patch)
        first = sample_patches.ZOLT_1
        patch, data = self.compose(first, "unnamed", metadata=False)
        self.write("Zolt2027Unnamed.msp", data, first, patch)
        self.write("Zolt2027CutOff.msp", data[:len(data) * 3 // 5])
        self.write("Zolt2027NoPatch.msp", b"This is not a patch.\r\n" * 300)
        self.write("Zolt2027Empty.exe", self.extractor)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--out", required=True)
    parser.add_argument("--programs32", required=True)
    parser.add_argument("--programs64", required=True)
    parser.add_argument("--extractor", required=True)
    arguments = parser.parse_args()
    with open(arguments.extractor, "rb") as file:
        extractor = file.read()
    made = arguments.out + ".new"
    shutil.rmtree(made, ignore_errors=True)
    folders = [PatchFolder(made, platform, programs, extractor)
               for platform, programs in ((2, arguments.programs32), (3, arguments.programs64))]
    for folder in folders:
        folder.make()
    listed = [entry for folder in folders for entry in folder.listed]
    make_media.write_file(os.path.join(made, "Patches.json"), (json.dumps(listed, indent=2) + "\n").encode("ascii"))
    shutil.rmtree(arguments.out, ignore_errors=True)
    os.rename(made, arguments.out)


if __name__ == "__main__":
    main()

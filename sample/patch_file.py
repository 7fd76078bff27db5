"""Writes patches: the changes from one package to a newer one, with the changed files in a cabinet.

Within a patch lie two transforms. "T1" leads from the old tables to the new ones, but for the medium. "#T1" says how the
changed files come from the patch's cabinet.
"""

import os
import subprocess
import tempfile

import compound_file
import installer_storage as storage
import installer_tables as tables

PATCH_CLASS = "{000C1086-0000-0000-C000-000000000046}"
TRANSFORM_CLASS = "{000C1082-0000-0000-C000-000000000046}"
PATCH_ADDED, COMPRESSED, LOOSE = 0x1000, 0x4000, 0x2000
FIXED_TIME = 1767225600  # 2026-01-01 00:00 UTC
# What a transform requires of the package (its upgrade code, the version that it starts from, platform, product,
# language). The flags of validation stand in the high word.
VALIDATION = 0x09270000
PATCH_TABLES = {
    "PatchPackage": ([("PatchId", "s38"), ("Media_", "i2")], 1),
    "Patch": ([("File_", "s72"), ("Sequence", "i2"), ("PatchSize", "i4"), ("Attributes", "i2"), ("Header", "V0"),
               ("StreamRef_", "S38")], 2),
}
OWN_TABLES = {
    "MsiPatchMetadata": ([("Company", "S72"), ("Property", "s72"), ("Value", "l0")], 2),
    "MsiPatchSequence": ([("PatchFamily", "s72"), ("ProductCode", "S38"), ("Sequence", "s72"), ("Attributes", "I4")], 2),
}
SUPERSEDES_EARLIER = 1
CABINET = "Patch.cab"


class Patch:
    """What a patch says of itself."""

    def __init__(self, code, disk=2, first_sequence=1000):
        self.code, self.disk, self.first_sequence = code, disk, first_sequence
        self.replaced_codes = []  # of patches that this one supersedes
        self.metadata = {}  # nothing: no table either
        self.family = None
        self.sequence = "1.0.0"
        self.other_targets = []  # further product codes that it names
        self.delta_of = None  # key of a file that it changes by a difference of bytes alone
        self.code_page = 1252
        # What tests change: a call with the transform of the product or of the sources, and with the cabinet's bytes, which
        # answers others, or None for no cabinet.
        self.alter_product = self.alter_sources = lambda transform: None
        self.alter_cabinet = lambda cabinet: cabinet
        self.left_out = []  # keys of files that the cabinet lacks


def property_of(package, name):
    return dict(package.rows["Property"])[name]


def changed_files(old, new):
    """The files that differ or are new, by key, in the order of the new package."""
    before = {key: data for key, _, _, data, _ in old.files}
    return {key: data for key, _, _, data, _ in new.files if before.get(key) != data}


def make_cabinet(files):
    """The bytes of a cabinet with these members, as make_media.py makes those of the media."""
    with tempfile.TemporaryDirectory() as scratch:
        for key, data in files.items():
            path = os.path.join(scratch, key)
            with open(path, "wb") as file:
                file.write(data)
            os.utime(path, (FIXED_TIME, FIXED_TIME))
        subprocess.run(["gcab", "--create", "--zip", "--nopath", CABINET] + list(files), check=True, cwd=scratch,
                       env=dict(os.environ, TZ="UTC"), stdout=subprocess.DEVNULL)
        with open(os.path.join(scratch, CABINET), "rb") as file:
            return file.read()


def _transform_storage(transform, old, new):
    part = compound_file.Storage(TRANSFORM_CLASS)
    part.streams = transform.all_streams()
    template = "%s;%d" % ({2: "Intel", 3: "x64"}[old.platform], old.language)
    base, updated = (property_of(package, "ProductCode") + property_of(package, "ProductVersion")
                     for package in (old, new))
    part.streams[storage.SUMMARY_STREAM] = storage.summary({
        2: "Transform", 7: template, 8: template, 14: 200, 16: VALIDATION,
        9: "%s;%s;%s" % (base, updated, property_of(old, "UpgradeCode"))})
    return part


def changes_of_product(old, new):
    transform = storage.Transform()
    for table, schema in tables.SCHEMAS.items():
        if table != "Media":
            transform.compare(table, schema, old.rows[table], new.rows[table])
    return transform


def changes_of_source(old, new, patch, files):
    """Where the changed files come from."""
    transform = storage.Transform()
    added = {table: PATCH_TABLES[table] for table in ("PatchPackage",) + (("Patch",) if patch.delta_of else ())}
    transform.new_tables(added)
    rows, packed = [], [key for key in files if key != patch.delta_of]
    order = {key: patch.first_sequence + number for number, key in enumerate(files)}
    for row in new.rows["File"]:
        if row[0] in packed:
            attributes = (row[6] & ~LOOSE) | COMPRESSED | PATCH_ADDED
            rows.append((row, row[:6] + (attributes, order[row[0]])))
    transform.compare("File", tables.SCHEMAS["File"], [row for row, _ in rows], [row for _, row in rows])
    transform.insert("Media", tables.SCHEMAS["Media"],
                     [(patch.disk, patch.first_sequence + len(files) - 1, None, "#" + CABINET, None,
                       "PatchSource%d" % patch.disk)])
    transform.insert("PatchPackage", PATCH_TABLES["PatchPackage"], [(patch.code, patch.disk)])
    if patch.delta_of:
        transform.insert("Patch", PATCH_TABLES["Patch"], [(patch.delta_of, order[patch.delta_of],
                                                           len(files[patch.delta_of]), 0, 1, None)])
        transform.streams[storage.stream_name("Patch", [patch.delta_of, order[patch.delta_of]])] = b"PA30"
    if "PatchFiles" not in [row[0] for row in old.rows["InstallExecuteSequence"]]:
        transform.insert("InstallExecuteSequence", tables.SCHEMAS["InstallExecuteSequence"],
                         [("PatchFiles", None, 4090)])
    transform.insert("Property", tables.SCHEMAS["Property"], [("PATCHNEWPACKAGECODE", new.package_code)])
    return transform


def _own_tables(old, patch):
    rows = {}
    if patch.metadata:
        rows["MsiPatchMetadata"] = [(None, name, value) for name, value in patch.metadata.items()]
    if patch.family:
        rows["MsiPatchSequence"] = [(patch.family, property_of(old, "ProductCode"), patch.sequence,
                                     SUPERSEDES_EARLIER if patch.replaced_codes else 0)]
    return rows


def compose(old, new, patch):
    """The bytes of the patch from one package (make_media.Package) to the newer one."""
    files = changed_files(old, new)
    root = compound_file.Storage(PATCH_CLASS)
    own = _own_tables(old, patch)
    root.streams = storage.database_streams({table: OWN_TABLES[table] for table in own}, own, patch.code_page)
    cabinet = patch.alter_cabinet(make_cabinet({key: data for key, data in files.items() if key not in patch.left_out}))
    if cabinet is not None:
        root.streams[storage.packed_name(CABINET)] = cabinet
    root.streams[storage.SUMMARY_STREAM] = storage.summary({
        2: "Patch", 3: patch.metadata.get("DisplayName", "")[:200], 4: property_of(old, "Manufacturer"),
        7: ";".join([property_of(old, "ProductCode")] + patch.other_targets), 8: ":T1;:#T1",
        9: patch.code + "".join(patch.replaced_codes), 14: 200, 15: 4}, patch.code_page)
    product, sources = changes_of_product(old, new), changes_of_source(old, new, patch, files)
    patch.alter_product(product)
    patch.alter_sources(sources)
    root.storages["T1"] = _transform_storage(product, old, new)
    root.storages["#T1"] = _transform_storage(sources, old, new)
    return compound_file.compose(root)

"""Writes installer tables as text archive files (.idt), the form that msibuild imports."""

import os

# table: (columns as name and type, number of key columns); the types are the archive format's own
SCHEMAS = {
    "Property": ([("Property", "s72"), ("Value", "l0")], 1),
    "Directory": ([("Directory", "s72"), ("Directory_Parent", "S72"), ("DefaultDir", "l255")], 1),
    "Component": ([("Component", "s72"), ("ComponentId", "S38"), ("Directory_", "s72"), ("Attributes", "i2"),
                   ("Condition", "S255"), ("KeyPath", "S72")], 1),
    "Feature": ([("Feature", "s38"), ("Feature_Parent", "S38"), ("Title", "L64"), ("Description", "L255"),
                 ("Display", "I2"), ("Level", "i2"), ("Directory_", "S72"), ("Attributes", "i2")], 1),
    "FeatureComponents": ([("Feature_", "s38"), ("Component_", "s72")], 2),
    "File": ([("File", "s72"), ("Component_", "s72"), ("FileName", "l255"), ("FileSize", "i4"), ("Version", "S72"),
              ("Language", "S20"), ("Attributes", "I2"), ("Sequence", "i2")], 1),
    "Media": ([("DiskId", "i2"), ("LastSequence", "i2"), ("DiskPrompt", "L64"), ("Cabinet", "S255"),
               ("VolumeLabel", "S32"), ("Source", "S72")], 1),
    "Registry": ([("Registry", "s72"), ("Root", "i2"), ("Key", "l255"), ("Name", "L255"), ("Value", "L0"),
                  ("Component_", "s72")], 1),
    "Shortcut": ([("Shortcut", "s72"), ("Directory_", "s72"), ("Name", "l128"), ("Component_", "s72"),
                  ("Target", "s72"), ("Arguments", "S255"), ("Description", "L255"), ("Hotkey", "I2"),
                  ("Icon_", "S72"), ("IconIndex", "I2"), ("ShowCmd", "I2"), ("WkDir", "S72")], 1),
    "CreateFolder": ([("Directory_", "s72"), ("Component_", "s72")], 2),
    "RemoveFile": ([("FileKey", "s72"), ("Component_", "s72"), ("FileName", "L255"), ("DirProperty", "s72"),
                    ("InstallMode", "i2")], 1),
    "CustomAction": ([("Action", "s72"), ("Type", "i2"), ("Source", "S72"), ("Target", "S0")], 1),
    "Upgrade": ([("UpgradeCode", "s38"), ("VersionMin", "S20"), ("VersionMax", "S20"), ("Language", "S255"),
                 ("Attributes", "i4"), ("Remove", "S255"), ("ActionProperty", "s72")], 5),
    "LaunchCondition": ([("Condition", "s255"), ("Description", "l255")], 1),
    "InstallExecuteSequence": ([("Action", "s72"), ("Condition", "S255"), ("Sequence", "I2")], 1),
    "InstallUISequence": ([("Action", "s72"), ("Condition", "S255"), ("Sequence", "I2")], 1),
    "AdminExecuteSequence": ([("Action", "s72"), ("Condition", "S255"), ("Sequence", "I2")], 1),
    "AdvtExecuteSequence": ([("Action", "s72"), ("Condition", "S255"), ("Sequence", "I2")], 1),
    # The two tables of the deployment wizard's own.
    "TarnCustomFile": ([("Component_", "s72"), ("SourceFileName", "l255"), ("Flags", "i4")], 1),
    "TarnDirectoryMap": ([("Directory_", "s72"), ("LocalString", "L255"), ("Flags", "i4")], 1),
}

EXECUTE_SEQUENCE = [
    ("FindRelatedProducts", 25), ("LaunchConditions", 100), ("ValidateProductID", 700), ("CostInitialize", 800),
    ("FileCost", 900), ("CostFinalize", 1000), ("MigrateFeatureStates", 1200), ("InstallValidate", 1400),
    ("RemoveExistingProducts", 1450), ("InstallInitialize", 1500), ("ProcessComponents", 1600),
    ("UnpublishFeatures", 1800), ("RemoveRegistryValues", 2600), ("RemoveShortcuts", 3200), ("RemoveFiles", 3500),
    ("RemoveFolders", 3600), ("CreateFolders", 3700), ("InstallFiles", 4000), ("PatchFiles", 4090),
    ("CreateShortcuts", 4500), ("WriteRegistryValues", 5000), ("RegisterUser", 6000), ("RegisterProduct", 6100),
    ("PublishFeatures", 6300), ("PublishProduct", 6400), ("InstallFinalize", 6600),
]
UI_SEQUENCE = [("FindRelatedProducts", 25), ("LaunchConditions", 100), ("ValidateProductID", 700),
               ("CostInitialize", 800), ("FileCost", 900), ("CostFinalize", 1000), ("MigrateFeatureStates", 1200),
               ("ExecuteAction", 1300)]
ADMIN_SEQUENCE = [("CostInitialize", 800), ("FileCost", 900), ("CostFinalize", 1000), ("InstallValidate", 1400),
                  ("InstallInitialize", 1500), ("InstallAdminPackage", 3900), ("InstallFiles", 4000),
                  ("InstallFinalize", 6600)]
ADVERTISE_SEQUENCE = [("CostInitialize", 800), ("CostFinalize", 1000), ("InstallValidate", 1400),
                      ("InstallInitialize", 1500), ("PublishFeatures", 6300), ("PublishProduct", 6400),
                      ("InstallFinalize", 6600)]


def write_table(folder, table, rows):
    """Writes one table and returns the file. None is the null value."""
    columns, keys = SCHEMAS[table]
    lines = ["\t".join(name for name, _ in columns), "\t".join(kind for _, kind in columns),
             "\t".join([table] + [name for name, _ in columns[:keys]])]
    for row in rows:
        assert len(row) == len(columns), (table, row)
        lines.append("\t".join("" if value is None else str(value) for value in row))
    path = os.path.join(folder, table + ".idt")
    with open(path, "w", encoding="utf-8", newline="\r\n") as file:
        file.write("\n".join(lines) + "\n")
    return path


def write_code_page(folder):
    path = os.path.join(folder, "_ForceCodepage.idt")
    with open(path, "w", encoding="ascii", newline="\r\n") as file:
        file.write("\n\n1252\t_ForceCodepage\n")
    return path

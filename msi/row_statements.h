// The statement that writes a row: one fixed template a table and action, filled with the row's columns. The action alone
// decides; nothing asks the table first whether the row is there. Values that may hold a user's text are the "?" of the
// statement (see BuildRecord of the row classes); the others are installer keys, numbers and drives, and go in as they are:
// an apostrophe in one of them makes a statement that the service refuses.
#pragma once

#include "msi/row_columns.h"

enum class MsiRowAction : int
{
    Insert = 0,
    Update = 1,
    Delete = 2,
};

// Empty for an action that the table has no template for: Update of CreateFolder, FeatureComponents and File, Delete of
// Feature.
[[nodiscard]] CString BuildRowStatement(MsiRowAction action, const ComponentColumns& row);
[[nodiscard]] CString BuildRowStatement(MsiRowAction action, const CreateFolderColumns& row);
[[nodiscard]] CString BuildRowStatement(MsiRowAction action, const DirectoryColumns& row);
[[nodiscard]] CString BuildRowStatement(MsiRowAction action, const FeatureColumns& row);
[[nodiscard]] CString BuildRowStatement(MsiRowAction action, const FeatureComponentsColumns& row);
[[nodiscard]] CString BuildRowStatement(MsiRowAction action, const FileColumns& row);
[[nodiscard]] CString BuildRowStatement(MsiRowAction action, const ShortcutColumns& row);
[[nodiscard]] CString BuildRowStatement(MsiRowAction action, const CustomFileColumns& row);
[[nodiscard]] CString BuildRowStatement(MsiRowAction action, const CustomActionColumns& row);
[[nodiscard]] CString BuildRowStatement(MsiRowAction action, const InstallExecuteSequenceColumns& row);

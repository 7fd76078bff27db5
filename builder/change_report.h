// What differs between two states of a database, and its report. No window header.
#pragma once

#include "base/string.h"
#include "installer/table_snapshot.h"

#include <vector>

enum class RowChange
{
    Added,
    Changed,
    Removed,
};

struct ColumnChange
{
    CString strColumn;
    CString strOld; // empty for an added row
    CString strNew; // empty for a removed row
};

struct RowDifference
{
    CString strTable;
    RowChange change = RowChange::Changed;
    std::vector<CString> key;
    std::vector<ColumnChange> columns; // of a changed row only the columns that differ
};

// What a merged patch changed in a database, apart from what an administrator chose.
struct PatchChanges
{
    CString strName; // for people
    CString strFile; // last name of the patch
    CString strCode;
    CString strOldVersion; // of the product
    CString strNewVersion;
    std::vector<RowDifference> rows;
};

// One database of a deployment and what the build changed in it.
struct DatabaseChanges
{
    CString strTarget; // relative path in the deployment
    CString strProductName;
    CString strOldPackageCode;
    CString strNewPackageCode; // equal to the old one when nothing changed
    bool bSignatureLost = false;
    std::vector<PatchChanges> patches; // in the order in which they were merged
    std::vector<RowDifference> rows;   // beyond those of the patches
    std::vector<CString> notes;        // of settings that met changes of the patches; sentences
    // With added files the database is made anew even when all its rows come out as they were.
    bool IsChanged() const { return !rows.empty() || !(strOldPackageCode == strNewPackageCode); }
};

// Differences in the order of tables and keys; one pass over both sides.
[[nodiscard]] std::vector<RowDifference> CompareSnapshots(const DatabaseSnapshot& original,
                                                          const DatabaseSnapshot& current);

[[nodiscard]] CString ComposeChangesText(const std::vector<DatabaseChanges>& databases);
[[nodiscard]] CString ComposeChangesJson(const std::vector<DatabaseChanges>& databases);

// A JSON string with its quotes.
[[nodiscard]] CString JsonText(const CString& text);

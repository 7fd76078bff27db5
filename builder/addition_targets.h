// Where the files and folders of a product stand on a workstation, as its tables tell it before anything is installed, and
// how a person reads that. No window header.
#pragma once

#include "builder/change_report.h"

// The folders of a database by their keys. What only the workstation settles (its folder for programs, a property that
// an action sets) stands as `[KEY]` in front. Two keys may lead to one path. Made anew when a row changes.
class CTargetFolders
{
public:
    explicit CTargetFolders(const DatabaseSnapshot& database);

    // Without closing backslash; empty for a directory that isn't there, or whose parents lead nowhere.
    [[nodiscard]] const CString& Find(const CString& directory) const;

    // A path of these folders, or below one, as the page of additional files shows it: the product's own folder under
    // the name that the maker chose for it. `<Installation Directory>\Fonts`.
    [[nodiscard]] CString Shown(const CString& path) const;

private:
    struct Row
    {
        CString strParent;
        CString strName;
        CString strSettled;     // the whole path; empty: below its parent
        bool bResolved = false; // so that a circle of parents ends
        CString strPath;
    };

    void ReadRows(const DatabaseSnapshot& database);
    void SettleByActions(const DatabaseSnapshot& database);
    const CString& Resolve(Row& row);

    std::map<CString, Row> m_rows;
    CString m_rootLabel;
};

// The folder and the name that stand on a disk: Windows drops dots and blanks at the end of a name.
[[nodiscard]] CString TargetBelow(const CString& folder, const CString& name);

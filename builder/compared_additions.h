// Additions under names that two builds agree on: their keys are made anew whenever something is added, so that the rows of
// one file have other keys in each of two deployments. No window header.
#pragma once

#include "builder/compare_rules.h"

#include <set>

struct NamedAddition
{
    CString strKey;
    CString strKind; // "file", "folder" or "drive"
    CString strPath; // on a workstation, as a person reads it
    CString strName; // what its key is replaced by, unique in its database
};

// In the order of their names.
[[nodiscard]] std::vector<NamedAddition> NameAdditions(const DatabaseSnapshot& database);

// The names by their keys.
class CAdditionNames
{
public:
    // `common`: the names that the other database has, too.
    CAdditionNames(const std::vector<NamedAddition>& additions, const std::set<CString>& common);

    // The text with each key in it replaced by the name, and the GUID of an addition's component as a whole. `alone`
    // becomes true where it names an addition that the other database doesn't have.
    [[nodiscard]] CString Rename(const CString& text, bool& alone) const;
    [[nodiscard]] bool IsEmpty() const { return m_names.empty(); }

private:
    struct Name
    {
        CString strName;
        bool bAlone = false;
    };
    std::map<CString, Name> m_names;
};

[[nodiscard]] std::set<CString> CommonNames(const std::vector<NamedAddition>& first,
                                            const std::vector<NamedAddition>& second);

// The database with names for keys, and without what only says where the files are packed and in which order: their numbers
// and sizes, their media, and which of the features for additions has which of them. Rows that name an addition that the
// other database doesn't have are left out, as the addition itself is the difference.
void RenameAdditions(DatabaseSnapshot& database, const CAdditionNames& names);

// Which additions only one has; `product` for the report.
void CompareAdditions(const CString& product, const std::vector<NamedAddition>& first,
                      const std::vector<NamedAddition>& second, Differences& differences);

#include "builder/incomplete_additions.h"

#include "base/guid_text.h"
#include "builder/named_table.h"

#include <set>

namespace {

// The tables with a row, or rows, for each added file or folder, and the column that names it.
const struct
{
    const wchar_t* table;
    const wchar_t* column;
} g_places[] = {{L"File", L"File"},
                {L"Component", L"Component"},
                {L"FeatureComponents", L"Component_"},
                {L"CreateFolder", L"Component_"},
                {L"TarnCustomFile", L"Component_"}};

std::set<CString> UserKeysIn(const DatabaseSnapshot& database, const wchar_t* name, const wchar_t* column)
{
    std::set<CString> keys;
    const ReadTable table = TableToRead(database, name);
    if (table.Exists()) {
        for (const auto& [key, row] : table.Rows()) {
            const CString value = table.Value(row, column);
            if (IsUserKey(value)) {
                keys.insert(value);
            }
        }
    }
    return keys;
}

constexpr std::size_t MAX_DEPTH = 1000; // folders in folders; a path is far shorter

class CIncompleteFinder
{
public:
    explicit CIncompleteFinder(const DatabaseSnapshot& database)
        : m_records(TableToRead(database, L"TarnCustomFile")), m_files(TableToRead(database, L"File")),
          m_components(TableToRead(database, L"Component")),
          m_directories(TableToRead(database, L"Directory")),
          m_actions(TableToRead(database, L"CustomAction")),
          m_steps(TableToRead(database, L"InstallExecuteSequence")),
          m_featureKeys(UserKeysIn(database, L"FeatureComponents", L"Component_"))
    {
    }

    // Whether the installer finds all that the rows of the addition point to.
    bool IsWhole(const CString& key) const
    {
        return m_records.Has(key) && (IsFolder(key) ? m_directories : m_files).Has(key) &&
               m_components.Has(key) && m_featureKeys.count(key) != 0 &&
               LiesInAFolder(m_components.Value(m_components.Rows().at({key}), L"Directory_"));
    }

    // What the user knows it by; the key where nothing else is left.
    CString NameOf(const CString& key) const
    {
        if (m_files.Has(key)) {
            return LongName(m_files.Value(m_files.Rows().at({key}), L"FileName"));
        }
        if (m_records.Has(key)) {
            return m_records.Value(m_records.Rows().at({key}), L"SourceFileName");
        }
        if (m_directories.Has(key)) {
            return LongName(m_directories.Value(m_directories.Rows().at({key}), L"DefaultDir"));
        }
        return key;
    }

private:
    // The directory and all that it lies in are there, as far as they were added, and the drive can be found.
    bool LiesInAFolder(const CString& directory) const
    {
        CString key = directory;
        for (std::size_t depth = 0; depth <= MAX_DEPTH; ++depth) {
            if (!m_directories.Has(key)) {
                return false;
            }
            if (!IsUserKey(key)) {
                return true; // the product's own, wherever that lies
            }
            const RowValues& row = m_directories.Rows().at({key});
            const CString parent = m_directories.Value(row, L"Directory_Parent");
            if (parent == L"TARGETDIR" && !m_records.Has(key)) {
                // A drive: without its step the installer would make a folder DRIVE_X on some other drive.
                return m_actions.Has(key) && m_steps.Has(key);
            }
            key = parent;
        }
        return false;
    }

    bool IsFolder(const CString& key) const
    {
        return m_records.Value(m_records.Rows().at({key}), L"Flags") == FOLDER_FLAGS;
    }

    ReadTable m_records;
    ReadTable m_files;
    ReadTable m_components;
    ReadTable m_directories;
    ReadTable m_actions;
    ReadTable m_steps;
    std::set<CString> m_featureKeys;
};

} // namespace

CString LongName(const CString& fileName)
{
    return fileName.Mid(fileName.Find(L'|') + 1);
}

std::vector<CString> FindOrphanedSteps(const DatabaseSnapshot& database)
{
    const ReadTable actions = TableToRead(database, L"CustomAction");
    std::vector<CString> strays;
    for (const CString& key : UserKeysIn(database, L"InstallExecuteSequence", L"Action")) {
        if (!actions.Has(key)) {
            strays.push_back(key);
        }
    }
    return strays;
}

void RemoveOrphanedSteps(DatabaseSnapshot& database, const std::vector<CString>& steps)
{
    const WriteTable sequence = TableToWrite(database, L"InstallExecuteSequence");
    for (const CString& step : steps) {
        sequence.Rows().erase({step});
    }
}

std::vector<IncompleteAddition> FindIncompleteAdditions(const DatabaseSnapshot& database)
{
    std::set<CString> keys;
    for (const auto& place : g_places) {
        keys.merge(UserKeysIn(database, place.table, place.column));
    }
    const CIncompleteFinder finder(database);
    std::vector<IncompleteAddition> strays;
    for (const CString& key : keys) {
        if (!finder.IsWhole(key)) {
            strays.push_back({key, finder.NameOf(key)});
        }
    }
    return strays;
}

void RemoveIncompleteAdditions(DatabaseSnapshot& database, const std::vector<IncompleteAddition>& strays)
{
    std::set<CString> keys;
    for (const IncompleteAddition& stray : strays) {
        keys.insert(stray.strKey);
    }
    for (const auto& place : g_places) {
        const WriteTable table = TableToWrite(database, place.table);
        if (table.Exists()) {
            std::erase_if(table.Rows(), [&](const auto& row) {
                return keys.count(table.Value(row.second, place.column)) != 0;
            });
        }
    }
}

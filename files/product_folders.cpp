#include "files/product_folders.h"

#include "base/guid_text.h"
#include "files/directory_paths.h"
#include "files/node_rules.h"
#include "msi/msi_rows.h"

#include <set>
#include <utility>

namespace {

constexpr unsigned int PATH_CAPACITY = 261; // characters, the closing zero included
constexpr int HIDES_DIRECTORY = 4;          // in Flags of TarnDirectoryMap
constexpr unsigned int KEY_AND_FLAGS = 5;   // columns of TarnDirectoryMap
constexpr unsigned int DIRECTORY_ONLY = 4;  // column of Component

using PathGetter = bool (CDirectoryManager::*)(const wchar_t*, wchar_t*, unsigned int*);

CString PathOf(CDirectoryManager& manager, const CString& key, PathGetter getter)
{
    wchar_t buffer[PATH_CAPACITY] = L"";
    unsigned int size = PATH_CAPACITY;
    return (manager.*getter)(key, buffer, &size) ? CString(buffer) : CString();
}

bool StartsWith(const CString& text, const CString& start)
{
    return text.Left(start.GetLength()) == start;
}

class CProductFolderLoader
{
public:
    CProductFolderLoader(InstallerHandle database, CDirectoryManager& manager,
                         const CDirectoryManager::DirectoryMap& directories, const TreeRoots& roots)
        : m_database(database), m_manager(manager), m_directories(directories), m_roots(roots)
    {
    }

    DirectoryRows Load()
    {
        ReadHidden();
        ReadUsed();
        for (const auto& [key, entry] : m_directories) {
            Consider(key, entry);
        }
        const DirectoryRows found = m_rows;
        for (const auto& [path, row] : found) {
            AddParents(row);
        }
        return m_rows;
    }

private:
    void ReadHidden()
    {
        MsiRowCursor cursor(m_database, L"SELECT `Directory_`, `Flags` FROM `TarnDirectoryMap`",
                            KEY_AND_FLAGS);
        for (TarnDirectoryMapData row; cursor.Next(row); row = {}) {
            if ((row.Flags & HIDES_DIRECTORY) != 0) {
                m_hidden[row.Directory_] = KnownTargetPath(row.Directory_);
            }
        }
    }

    // The manager reads its tables anew for a key that it doesn't know.
    CString KnownTargetPath(const CString& key) const
    {
        return m_directories.count(key) ? TargetPathOf(m_manager, key) : CString();
    }

    void ReadUsed()
    {
        MsiRowCursor cursor(m_database, L"SELECT DISTINCT `Directory_` FROM `Component`", DIRECTORY_ONLY);
        for (ComponentData row; cursor.Next(row); row = {}) {
            m_used.insert(row.Directory_);
        }
    }

    // A hidden directory whose path is unknown hides itself and its children, but no paths.
    bool IsHidden(const DirectoryColumns& row, const CString& target) const
    {
        if (m_hidden.count(row.Directory) || m_hidden.count(row.Directory_Parent)) {
            return true;
        }
        for (const auto& [key, path] : m_hidden) {
            if (!path.IsEmpty() && StartsWith(target, path)) {
                return true;
            }
        }
        return false;
    }

    void Consider(const CString& key, const DirectoryEntry& entry)
    {
        if (!m_used.count(key) || !entry.pData || IsUserKey(key)) {
            return;
        }
        const CString source = SourcePathOf(m_manager, key).MakeUpper();
        const CString target = TargetPathOf(m_manager, key);
        if (source.IsEmpty() || target.IsEmpty() ||
            !StartsWith(CString(target).MakeUpper(), m_roots.targetUpper) || IsHidden(*entry.pData, target)) {
            return;
        }
        Choose(key, *entry.pData, target, !StartsWith(source, m_roots.sourceUpper));
    }

    // Of several directories with one target the first whose source lies outside the installation source, else the first.
    void Choose(const CString& key, const DirectoryColumns& row, const CString& target, bool differs)
    {
        const CString display = ToDisplayPath(target, m_roots.target, m_roots.label);
        const auto [known, isNew] = m_seen.emplace(target, differs);
        if (isNew) {
            m_rows.emplace(display, row);
        } else if (differs && !known->second) {
            known->second = true;
            m_rows[display] = row;
        } else {
            return;
        }
        DirectoryPathCache[key] = display;
    }

    bool EndsChain(const DirectoryColumns& row) const
    {
        return row.Directory == L"INSTALLDIR" || row.Directory.CompareNoCase(L"INSTALLDIRLocLang") == 0 ||
               row.Directory_Parent == L"TARGETDIR" ||
               TargetPathOf(m_manager, row.Directory).CompareNoCase(m_roots.targetUpper) == 0;
    }

    // The chain of a damaged package may lead back to a directory that it passed.
    void AddParents(DirectoryColumns row)
    {
        std::set<CString> passed;
        while (!EndsChain(row) && passed.insert(row.Directory).second) {
            const CString target = KnownTargetPath(row.Directory_Parent);
            const auto parent = m_directories.find(row.Directory_Parent);
            if (target.IsEmpty() || parent == m_directories.end() || !parent->second.pData) {
                return;
            }
            row = *parent->second.pData;
            if (m_seen.emplace(target, true).second) {
                const CString display = ToDisplayPath(target, m_roots.target, m_roots.label);
                m_rows.emplace(display, row);
                DirectoryPathCache[row.Directory] = display;
            }
        }
    }

    InstallerHandle m_database;
    CDirectoryManager& m_manager;
    const CDirectoryManager::DirectoryMap& m_directories;
    const TreeRoots& m_roots;
    std::map<CString, CString> m_hidden; // target path by key
    std::set<CString> m_used;
    std::map<CString, bool>
        m_seen; // whether the row of a target path has its source outside the installation source
    DirectoryRows m_rows;
};

} // namespace

CString TargetPathOf(CDirectoryManager& manager, const CString& key)
{
    return PathOf(manager, key, &CDirectoryManager::GetTargetPath);
}

CString SourcePathOf(CDirectoryManager& manager, const CString& key)
{
    return PathOf(manager, key, &CDirectoryManager::GetSourcePath);
}

DirectoryRows LoadProductFolders(InstallerHandle database, CDirectoryManager& manager,
                                 const CDirectoryManager::DirectoryMap& directories, const TreeRoots& roots)
{
    return CProductFolderLoader(database, manager, directories, roots).Load();
}

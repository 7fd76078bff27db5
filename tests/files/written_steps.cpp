#include "tests/files/written_steps.h"

#include "msi/msi_rows.h"

#include <commctrl.h>
#include <shlwapi.h>
#include <wchar.h>

#include <deque>
#include <set>

namespace {

// As a file system compares, in all scripts.
struct NoCase
{
    bool operator()(const CString& one, const CString& other) const { return one.CompareNoCase(other) < 0; }
};

struct DirectoryRow
{
    CString Directory;
    CString Directory_Parent;
    CString DefaultDir;
};

struct Node
{
    CString label;
    CString key;
    bool isUserItem = false;
    CString source;
    std::vector<Node*> children;
};

CString TextOf(const CString& column)
{
    return column == NULL_VALUE ? CString() : column;
}

DirectoryRow RowOf(const Row& columns)
{
    return {TextOf(columns[0]), TextOf(columns[1]), TextOf(columns[2])};
}

CString Upper(CString text)
{
    return text.MakeUpper();
}

bool StartsWith(const CString& text, const CString& start)
{
    return text.Left(start.GetLength()) == start;
}

CString Append(const CString& path, const CString& more)
{
    wchar_t buffer[261] = L"";
    wcsncpy(buffer, path, 260);
    PathAppendW(buffer, more);
    return buffer;
}

// 41 characters, of which those behind "TARN_" are a GUID once "_" stands for "-".
bool IsUserKeyAsWritten(const CString& key)
{
    if (key.GetLength() != 41 || !StartsWith(key, L"TARN_")) {
        return false;
    }
    CString guid = key.Mid(5);
    guid.Replace(L'_', L'-');
    GUID parsed = {};
    return SUCCEEDED(CLSIDFromString(L"{" + guid + L"}", &parsed));
}

class CWrittenLoader
{
public:
    explicit CWrittenLoader(const WrittenHost& host) : m_host(host) {}

    std::vector<CString> Load()
    {
        FillRoots();
        LoadProductDirectories();
        LoadUserItems();
        const HWND view =
            CreateWindowExW(0, WC_TREEVIEWW, L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
        Insert(view, TVI_ROOT, m_roots);
        SendMessageW(view, TVM_SORTCHILDREN, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
        Describe(view, TVGN_ROOT, nullptr, 0);
        DestroyWindow(view);
        return m_lines;
    }

private:
    Rows Query(const CString& text) { return ::Select(m_host.database, text); }

    bool PathOf(const CString& key, bool isTarget, CString& path)
    {
        wchar_t buffer[261] = L"";
        unsigned int size = 261;
        const bool found = isTarget ? m_host.directories->GetTargetPath(key, buffer, &size)
                                    : m_host.directories->GetSourcePath(key, buffer, &size);
        path = found ? CString(buffer) : CString();
        return found;
    }
    CString Target(const CString& key)
    {
        CString path;
        PathOf(key, true, path);
        return path;
    }

    void FillRoots()
    {
        if (!m_host.directories) {
            return;
        }
        m_targetRoot = Target(L"INSTALLDIR");
        m_targetRootUpper = Upper(m_targetRoot);
        if (m_targetRoot.Right(1) == L"\\") {
            m_targetRoot = m_targetRoot.Left(m_targetRoot.GetLength() - 1);
        }
        CString source;
        PathOf(L"INSTALLDIR", false, source);
        m_sourceRootUpper = Upper(source);
        const Rows rows =
            Query(L"SELECT `LocalString` FROM `TarnDirectoryMap` where `Directory_`='INSTALLDIR'");
        m_rootLabel = rows.empty() ? CString() : TextOf(rows[0][0]);
        if (m_rootLabel.IsEmpty()) {
            m_rootLabel = L"<Installation Directory>";
        }
    }

    CString ToDisplayPath(CString path) const
    {
        if (path.Right(1) == L"\\") {
            path = path.Left(path.GetLength() - 1);
        }
        // Every path begins with an empty one; a product without the folder has nothing to replace.
        if (!m_targetRoot.IsEmpty() && path.Left(m_targetRoot.GetLength()).CompareNoCase(m_targetRoot) == 0) {
            path = m_rootLabel + path.Mid(m_targetRoot.GetLength());
        }
        return path;
    }

    void LoadProductDirectories()
    {
        if (!m_host.directories) {
            return;
        }
        std::map<CString, CString> hidden;
        for (const Row& row : Query(L"SELECT `Directory_`, `Flags` FROM `TarnDirectoryMap`")) {
            if (row[1] != NULL_VALUE && (_wtoi(row[1]) & 4) != 0) {
                hidden[row[0]] = Target(row[0]);
            }
        }
        std::set<CString> used;
        for (const Row& row : Query(L"SELECT DISTINCT `Directory_` FROM `Component`")) {
            used.insert(row[0]);
        }
        for (const auto& [key, entry] : m_host.directories->GetDirectories()) {
            Consider(key, entry, used, hidden);
        }
        const auto found = m_directoriesByPath;
        for (const auto& [path, row] : found) {
            EnsureParents(row);
        }
    }

    void Consider(const CString& key, const DirectoryEntry& entry, const std::set<CString>& used,
                  const std::map<CString, CString>& hidden)
    {
        if (!used.count(key) || !entry.pData || IsUserKeyAsWritten(key)) {
            return;
        }
        CString source;
        CString target;
        if (!PathOf(key, false, source) || !PathOf(key, true, target) ||
            Upper(target).Find(m_targetRootUpper) != 0) {
            return;
        }
        const DirectoryData& data = *entry.pData;
        if (hidden.count(data.Directory) || hidden.count(data.Directory_Parent)) {
            return;
        }
        for (const auto& [hiddenKey, path] : hidden) {
            if (!path.IsEmpty() && target.Find(path) == 0) {
                return;
            }
        }
        const bool differs = !StartsWith(Upper(source), m_sourceRootUpper);
        const CString display = ToDisplayPath(target);
        const DirectoryRow row = {data.Directory, data.Directory_Parent, data.DefaultDir};
        const auto seen = m_seen.find(target);
        if (seen == m_seen.end()) {
            m_seen[target] = differs;
            m_directoriesByPath.emplace(display, row);
            m_cache[key] = display;
        } else if (differs && !seen->second) {
            seen->second = true;
            m_directoriesByPath[display] = row;
            m_cache[key] = display;
        }
    }

    void EnsureParents(DirectoryRow row)
    {
        for (;;) {
            if (row.Directory == L"INSTALLDIR" || row.Directory.CompareNoCase(L"INSTALLDIRLocLang") == 0 ||
                row.Directory_Parent == L"TARGETDIR" ||
                Target(row.Directory).CompareNoCase(m_targetRootUpper) == 0) {
                return;
            }
            CString target;
            const bool known = PathOf(row.Directory_Parent, true, target);
            const auto parent = m_host.directories->GetDirectories().find(row.Directory_Parent);
            if (!known || parent == m_host.directories->GetDirectories().end() || !parent->second.pData) {
                return;
            }
            const DirectoryData& data = *parent->second.pData;
            row = {data.Directory, data.Directory_Parent, data.DefaultDir};
            if (!m_seen.count(target)) {
                m_seen[target] = true;
                const CString display = ToDisplayPath(target);
                m_directoriesByPath.emplace(display, row);
                m_cache[row.Directory] = display;
            }
        }
    }

    bool ResolveDirectoryPath(const CString& key, CString& path)
    {
        path.Empty();
        if (key.IsEmpty()) {
            return false;
        }
        const auto remembered = m_cache.find(key);
        const auto service = m_host.servicePaths->find(key);
        if (remembered != m_cache.end()) {
            path = remembered->second;
        } else if (service != m_host.servicePaths->end() && !service->second.IsEmpty()) {
            path = service->second;
            if (path.Right(1) == L"\\") {
                path = path.Left(path.GetLength() - 1);
            }
            m_cache[key] = path;
        }
        return !path.IsEmpty();
    }

    void LoadUserItems()
    {
        std::map<CString, DirectoryRow> rows;
        for (const auto& [path, row] : m_directoriesByPath) {
            rows.emplace(row.Directory, row);
            m_cache.emplace(row.Directory, path);
        }
        LoadDrives(rows);
        LoadFolders(rows);
        const auto directories = m_directoriesByPath;
        for (const auto& [path, row] : directories) {
            AddNode(path, row.Directory, IsUserKeyAsWritten(row.Directory), L"");
        }
        for (const Row& row : Query(L"SELECT * FROM `TarnCustomFile` WHERE `Flags`=0")) {
            AddFile(row[0], TextOf(row[1]));
        }
    }

    void LoadDrives(std::map<CString, DirectoryRow>& rows)
    {
        for (const Row& columns :
             Query(L"SELECT `Directory`.`Directory`,`Directory`.`Directory_Parent`,`Directory`.`DefaultDir` "
                   L"FROM `Directory`,`CustomAction` "
                   L"WHERE `CustomAction`.`Action`=`Directory`.`Directory` AND "
                   L"`Directory`.`Directory_Parent` = 'TARGETDIR'")) {
            const DirectoryRow row = RowOf(columns);
            if (!IsUserKeyAsWritten(row.Directory) || row.DefaultDir.Find(L"DRIVE_") < 0) {
                continue;
            }
            const CString path = row.DefaultDir.Right(row.DefaultDir.GetLength() - 6) + L":";
            if (PathGetDriveNumberW(path) < 0) {
                continue;
            }
            m_cache.emplace(row.Directory, path);
            if (!m_directoriesByPath.count(path)) {
                rows.emplace(row.Directory, row);
                m_directoriesByPath.emplace(path, row);
            }
        }
    }

    void LoadFolders(std::map<CString, DirectoryRow>& rows)
    {
        std::map<CString, DirectoryRow> added;
        for (const Row& columns :
             Query(L"SELECT `Directory`.`Directory`,`Directory`.`Directory_Parent`,`Directory`.`DefaultDir` "
                   L"FROM `Directory`,`Component`,`TarnCustomFile` "
                   L"WHERE `TarnCustomFile`.`Component_`=`Component`.`Component` "
                   L"AND `Component`.`Directory_`=`Directory`.`Directory`")) {
            const DirectoryRow row = RowOf(columns);
            if (IsUserKeyAsWritten(row.Directory)) {
                added.emplace(row.Directory, row);
                rows.emplace(row.Directory, row);
            }
        }
        for (const auto& [key, row] : added) {
            CString path;
            if (UserDirectoryPath(row, rows, path)) {
                m_directoriesByPath.emplace(path, row);
            }
        }
    }

    bool UserDirectoryPath(const DirectoryRow& row, const std::map<CString, DirectoryRow>& rows,
                           CString& path)
    {
        if (!IsUserKeyAsWritten(row.Directory)) {
            return ResolveDirectoryPath(row.Directory, path);
        }
        const auto remembered = m_cache.find(row.Directory);
        if (remembered != m_cache.end()) {
            path = remembered->second;
            return true;
        }
        if (row.Directory_Parent.CompareNoCase(L"TARGETDIR") != 0) {
            const auto parent = rows.find(row.Directory_Parent);
            if (parent == rows.end() || !UserDirectoryPath(parent->second, rows, path)) {
                return false;
            }
            path = Append(path, row.DefaultDir);
        } else {
            const auto property = m_host.properties->find(row.Directory + L"_SUBST");
            path = property == m_host.properties->end() ? CString() : property->second;
        }
        m_cache[row.Directory] = path;
        return true;
    }

    void AddFile(const CString& component, const CString& source)
    {
        // A key with an apostrophe makes a statement that can't be opened.
        const CString query = L"SELECT `Directory_` FROM `Component` WHERE `Component`='" + component + L"'";
        if (OpenResult(m_host.database, query) != 0) {
            return;
        }
        const Rows rows = Query(query);
        if (rows.empty()) {
            return;
        }
        CString path;
        ResolveDirectoryPath(TextOf(rows[0][0]), path);
        path = Append(path, PathFindFileNameW(source));
        if (!path.IsEmpty()) {
            m_cache.emplace(component, path);
            AddNode(path, component, true, source);
        }
    }

    bool AddNode(CString path, const CString& key, bool isUserItem, const CString& source)
    {
        if (key.IsEmpty() || path.IsEmpty()) {
            return false;
        }
        while (path.Right(1) == L"\\") {
            path = path.Left(path.GetLength() - 1);
        }
        Node* parent = nullptr;
        const int end = path.ReverseFind(L'\\');
        if (end > 0) {
            const CString parentPath = path.Left(end);
            const auto row = m_directoriesByPath.find(parentPath);
            if (!m_nodesByPath.count(parentPath) && row != m_directoriesByPath.end() &&
                !AddNode(parentPath, row->second.Directory, IsUserKeyAsWritten(row->second.Directory), L"")) {
                return false;
            }
            const auto found = m_nodesByPath.find(parentPath);
            parent = found == m_nodesByPath.end() ? nullptr : found->second;
        }
        if (m_nodesByPath.count(path)) {
            return true;
        }
        Node& node = m_nodes.emplace_back(Node{PathFindFileNameW(path), key, isUserItem, source, {}});
        m_nodesByPath.emplace(path, &node);
        (parent ? parent->children : m_roots).push_back(&node);
        return true;
    }

    // Sorting is the view's own.
    void Insert(HWND view, HTREEITEM parent, const std::vector<Node*>& level)
    {
        for (Node* node : level) {
            TVINSERTSTRUCTW insertion = {};
            insertion.hParent = parent;
            insertion.hInsertAfter = TVI_LAST;
            insertion.item.mask = TVIF_TEXT | TVIF_PARAM;
            insertion.item.pszText = const_cast<wchar_t*>(node->label.GetString());
            insertion.item.lParam = reinterpret_cast<LPARAM>(node);
            const auto item = reinterpret_cast<HTREEITEM>(
                SendMessageW(view, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion)));
            Insert(view, item, node->children);
            SendMessageW(view, TVM_SORTCHILDREN, 0, reinterpret_cast<LPARAM>(item));
        }
    }
    void Describe(HWND view, UINT relation, HTREEITEM item, int depth)
    {
        for (HTREEITEM next = Next(view, relation, item); next; next = Next(view, TVGN_NEXT, next)) {
            TVITEMW found = {};
            found.mask = TVIF_PARAM;
            found.hItem = next;
            SendMessageW(view, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&found));
            const auto* const node = reinterpret_cast<const Node*>(found.lParam);
            m_lines.push_back(
                DescribeTreeNode(depth, node->label, node->key, node->isUserItem, node->source));
            Describe(view, TVGN_CHILD, next, depth + 1);
        }
    }
    static HTREEITEM Next(HWND view, UINT relation, HTREEITEM item)
    {
        return reinterpret_cast<HTREEITEM>(
            SendMessageW(view, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
    }

    const WrittenHost& m_host;
    CString m_targetRoot;
    CString m_targetRootUpper;
    CString m_sourceRootUpper;
    CString m_rootLabel;
    std::map<CString, bool> m_seen;
    std::map<CString, DirectoryRow, NoCase> m_directoriesByPath;
    std::map<CString, CString> m_cache;
    std::map<CString, Node*, NoCase> m_nodesByPath;
    std::deque<Node> m_nodes;
    std::vector<Node*> m_roots;
    std::vector<CString> m_lines;
};

} // namespace

std::vector<CString> LoadByWrittenSteps(const WrittenHost& host)
{
    return CWrittenLoader(host).Load();
}

CString DescribeTreeNode(int depth, const CString& label, const CString& key, bool isUserItem,
                         const CString& sourcePath)
{
    CString line = CString(L' ', depth * 2) + label + L" | " + key;
    if (isUserItem) {
        line += L" | added";
    }
    return sourcePath.IsEmpty() ? line : line + L" | " + sourcePath;
}

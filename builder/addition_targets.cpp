#include "builder/addition_targets.h"

#include "base/path_text.h"
#include "builder/named_table.h"
#include "msi/directory_rules.h"

namespace {

constexpr wchar_t PRODUCT_FOLDER[] = L"INSTALLDIR";
constexpr wchar_t DEFAULT_LABEL[] = L"<Installation Directory>";

// The types of actions that set a property, or a directory, from a text.
constexpr long long ACTION_TYPE_MASK = 0x3F;
constexpr long long ACTION_SET_DIRECTORY = 35;
constexpr long long ACTION_SET_PROPERTY = 51;

bool IsDrive(const CString& text)
{
    return text.GetLength() == 2 && text[1] == L':';
}

CString SettledElsewhere(const CString& key)
{
    return L"[" + key + L"]";
}

CString ReadLabel(const DatabaseSnapshot& database)
{
    const ReadTable names = TableToRead(database, L"TarnDirectoryMap");
    const CString label = names.Has(PRODUCT_FOLDER)
                              ? names.Value(names.Rows().at({PRODUCT_FOLDER}), L"LocalString")
                              : CString();
    return label.IsEmpty() ? CString(DEFAULT_LABEL) : label;
}

} // namespace

CTargetFolders::CTargetFolders(const DatabaseSnapshot& database) : m_rootLabel(ReadLabel(database))
{
    ReadRows(database);
    SettleByActions(database);
    for (auto& [key, row] : m_rows) {
        Resolve(row);
    }
}

void CTargetFolders::ReadRows(const DatabaseSnapshot& database)
{
    const ReadTable directories = TableToRead(database, L"Directory");
    const ReadTable properties = TableToRead(database, L"Property");
    if (!directories.Exists()) {
        return;
    }
    const auto isRoot = [](const CString& key, const CString& parent) {
        return parent.IsEmpty() || parent == key;
    };
    for (const auto& [keys, values] : directories.Rows()) {
        const CString& key = keys.front();
        const CString parent = directories.Value(values, L"Directory_Parent");
        Row& row = m_rows[key];
        row.strParent = parent;
        row.strName = TargetFolderName(directories.Value(values, L"DefaultDir"));
        if (properties.Has(key)) {
            const CString path = properties.Value(properties.Rows().at({key}), L"Value");
            row.strSettled = path.Find(L'[') < 0 ? WithoutClosingBackslash(path) : SettledElsewhere(key);
        } else if (isRoot(key, parent) || (row.strName.IsEmpty() && parent == L"TARGETDIR")) {
            row.strSettled = SettledElsewhere(key); // the system's own folders are rows with "."
        }
    }
}

// A drive that was added is a directory of that name which an action sets to its letter.
void CTargetFolders::SettleByActions(const DatabaseSnapshot& database)
{
    const ReadTable actions = TableToRead(database, L"CustomAction");
    if (!actions.Exists()) {
        return;
    }
    for (const auto& [key, values] : actions.Rows()) {
        const long long type = NumberOf(actions.Value(values, L"Type")) & ACTION_TYPE_MASK;
        const auto row = m_rows.find(actions.Value(values, L"Source"));
        if (row != m_rows.end() && (type == ACTION_SET_DIRECTORY || type == ACTION_SET_PROPERTY)) {
            const CString target = actions.Value(values, L"Target");
            row->second.strSettled = IsDrive(target) ? target : SettledElsewhere(row->first);
        }
    }
}

const CString& CTargetFolders::Resolve(Row& row)
{
    // Chains can be as long as the table: they are walked, not called into.
    std::vector<Row*> chain;
    Row* at = &row;
    while (at && !at->bResolved) {
        at->bResolved = true;
        if (!at->strSettled.IsEmpty()) {
            at->strPath = at->strSettled;
            break;
        }
        chain.push_back(at);
        const auto parent = m_rows.find(at->strParent);
        at = parent == m_rows.end() ? nullptr : &parent->second;
    }
    CString path = at ? at->strPath : CString();
    for (auto below = chain.rbegin(); below != chain.rend(); ++below) {
        if (path.IsEmpty()) {
            break;
        }
        path = TargetBelow(path, (*below)->strName);
        (*below)->strPath = path;
    }
    return row.strPath;
}

const CString& CTargetFolders::Find(const CString& directory) const
{
    static const CString none;
    const auto row = m_rows.find(directory);
    return row == m_rows.end() ? none : row->second.strPath;
}

CString CTargetFolders::Shown(const CString& path) const
{
    const CString& root = Find(PRODUCT_FOLDER);
    return !root.IsEmpty() && IsSameOrBelow(path, root) ? m_rootLabel + path.Mid(root.GetLength()) : path;
}

CString TargetBelow(const CString& folder, const CString& name)
{
    CString shortened = name;
    shortened.TrimRight(L". ");
    const CString& stands = shortened.IsEmpty() ? name : shortened;
    return JoinFolder(folder, stands);
}

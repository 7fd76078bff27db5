#include "builder/compared_additions.h"

#include "base/guid_text.h"
#include "base/path_text.h"
#include "builder/named_table.h"
#include "builder/user_files.h"
#include "installer/user_feature.h"

#include <algorithm>
#include <tuple>

namespace {

constexpr int KEY_LENGTH = 41; // TARN_ and a GUID
constexpr int GUID_IN_BRACES = 38;
constexpr wchar_t DRIVE_MARK[] = L"DRIVE_";

void AddDrives(const DatabaseSnapshot& database, std::vector<NamedAddition>& additions)
{
    const ReadTable directories = TableToRead(database, L"Directory");
    const ReadTable actions = TableToRead(database, L"CustomAction");
    if (!directories.Exists()) {
        return;
    }
    for (const auto& [key, row] : directories.Rows()) {
        const CString name = directories.Value(row, L"DefaultDir");
        if (IsUserKey(key.front()) && actions.Has(key.front()) && name.Find(DRIVE_MARK) == 0) {
            additions.push_back({key.front(), L"drive", name.Mid(TextLength(DRIVE_MARK)) + L":", CString()});
        }
    }
}

// Two additions of one path are told apart by their order.
void MakeNames(std::vector<NamedAddition>& additions)
{
    std::stable_sort(additions.begin(), additions.end(),
                     [](const NamedAddition& left, const NamedAddition& right) {
                         return std::tie(left.strKind, left.strPath) < std::tie(right.strKind, right.strPath);
                     });
    const NamedAddition* before = nullptr;
    int number = 1;
    for (NamedAddition& addition : additions) {
        const bool again =
            before && before->strKind == addition.strKind && before->strPath == addition.strPath;
        number = again ? number + 1 : 1;
        addition.strName = L"added " + addition.strKind + L" " + addition.strPath +
                           (again ? L" (" + NumberText(number) + L")" : CString());
        before = &addition;
    }
}

// What a build decides anew about the rows of additions.
void RemoveOwnNumbers(const CString& table, const TableSnapshot& columns, const std::vector<CString>& oldKey,
                      std::vector<CString>& key, RowValues& values)
{
    const ReadTable named(&columns);
    const auto clear = [&](const wchar_t* column, const wchar_t* value) {
        const int index = named.ColumnOf(column);
        if (index < 0) {
            return;
        }
        values[static_cast<std::size_t>(index)] = value;
        if (static_cast<std::size_t>(index) < key.size()) {
            key[static_cast<std::size_t>(index)] = value;
        }
    };
    if (table == L"File" && IsUserKey(oldKey.front())) {
        clear(L"Sequence", L"");
        clear(L"FileSize", L"");
    }
    if (table == L"FeatureComponents" && IsUserKey(oldKey.back())) {
        clear(L"Feature_", USER_FEATURE);
    }
}

void RemoveOwnMedia(DatabaseSnapshot& database)
{
    const WriteTable media = TableToWrite(database, L"Media");
    if (media.Exists()) {
        std::erase_if(media.Rows(),
                      [&](const auto& row) { return IsUserCabinet(media.Value(row.second, L"Cabinet")); });
    }
}

class CTableRenamer
{
public:
    CTableRenamer(const CString& table, const CAdditionNames& names) : m_table(table), m_names(names) {}

    void Rename(TableSnapshot& table) const
    {
        for (auto row = table.rows.begin(); row != table.rows.end();) {
            std::vector<CString> key = row->first;
            RowValues values = row->second;
            bool alone = false;
            RenameAll(key, alone);
            if (!RenameAll(values, alone)) { // which the key is a part of
                ++row;
                continue;
            }
            RemoveOwnNumbers(m_table, table, row->first, key, values);
            row = table.rows.erase(row);
            if (!alone) {
                m_renamed[std::move(key)] = std::move(values);
            }
        }
        table.rows.merge(m_renamed);
        m_renamed.clear();
    }

private:
    bool RenameAll(std::vector<CString>& texts, bool& alone) const
    {
        bool any = false;
        for (CString& text : texts) {
            CString name = m_names.Rename(text, alone);
            if (!(name == text)) {
                text = std::move(name);
                any = true;
            }
        }
        return any;
    }

    const CString& m_table;
    const CAdditionNames& m_names;
    mutable std::map<std::vector<CString>, RowValues> m_renamed;
};

} // namespace

std::vector<NamedAddition> NameAdditions(const DatabaseSnapshot& database)
{
    const UserAdditions found = FindUserAdditions(database);
    std::vector<NamedAddition> additions;
    for (const UserFile& file : found.files) {
        additions.push_back({file.strKey, L"file", JoinFolder(file.strShownFolder, file.strName), CString()});
    }
    for (const UserFolder& folder : found.folders) {
        additions.push_back({folder.strKey, L"folder", folder.strShown, CString()});
    }
    AddDrives(database, additions);
    MakeNames(additions);
    return additions;
}

CAdditionNames::CAdditionNames(const std::vector<NamedAddition>& additions, const std::set<CString>& common)
{
    for (const NamedAddition& addition : additions) {
        m_names[addition.strKey] = {addition.strName, common.count(addition.strName) == 0};
    }
}

CString CAdditionNames::Rename(const CString& text, bool& alone) const
{
    if (m_names.empty()) {
        return text;
    }
    if (text.GetLength() == GUID_IN_BRACES && text[0] == L'{') {
        CString key = TARN_KEY_PREFIX + text.Mid(1, GUID_IN_BRACES - 2);
        key.Replace(L'-', L'_');
        const auto found = m_names.find(key);
        alone = alone || (found != m_names.end() && found->second.bAlone);
        return found == m_names.end() ? text : found->second.strName;
    }
    CString renamed;
    int copied = 0;
    for (int begin = text.Find(TARN_KEY_PREFIX); begin >= 0; begin = text.Find(TARN_KEY_PREFIX, begin + 1)) {
        const auto found = m_names.find(text.Mid(begin, KEY_LENGTH));
        if (found != m_names.end()) {
            renamed += text.Mid(copied, begin - copied) + found->second.strName;
            copied = begin + KEY_LENGTH;
            alone = alone || found->second.bAlone;
        }
    }
    return copied == 0 ? text : renamed + text.Mid(copied);
}

std::set<CString> CommonNames(const std::vector<NamedAddition>& first,
                              const std::vector<NamedAddition>& second)
{
    std::set<CString> names;
    for (const NamedAddition& addition : first) {
        names.insert(addition.strName);
    }
    std::set<CString> common;
    for (const NamedAddition& addition : second) {
        if (names.count(addition.strName) != 0) {
            common.insert(addition.strName);
        }
    }
    return common;
}

void RenameAdditions(DatabaseSnapshot& database, const CAdditionNames& names)
{
    RemoveOwnMedia(database);
    if (names.IsEmpty()) {
        return;
    }
    for (auto& [name, table] : database) {
        CTableRenamer(name, names).Rename(table);
    }
}

void CompareAdditions(const CString& product, const std::vector<NamedAddition>& first,
                      const std::vector<NamedAddition>& second, Differences& differences)
{
    const std::set<CString> common = CommonNames(first, second);
    const auto add = [&](const std::vector<NamedAddition>& additions, DifferenceSide side) {
        for (const NamedAddition& addition : additions) {
            if (common.count(addition.strName) == 0) {
                differences.push_back(
                    {DifferenceKind::Added, product, {addition.strKind, addition.strPath}, side, {}});
            }
        }
    };
    add(first, DifferenceSide::OnlyFirst);
    add(second, DifferenceSide::OnlySecond);
}

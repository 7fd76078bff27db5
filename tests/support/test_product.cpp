#include "tests/support/test_product.h"

#include <algorithm>

namespace {

bool CopyText(const std::map<CString, CString>& table, const wchar_t* name, wchar_t* buffer, int* size)
{
    const auto row = table.find(name);
    if (row == table.end())
        return false;
    const int length = row->second.GetLength();
    const bool fits = length < *size;
    if (fits)
        std::copy_n(row->second.GetString(), length + 1, buffer);
    *size = length;
    return fits;
}

} // namespace

bool TestProduct::GetMsiProperty(const wchar_t* name, wchar_t* buffer, int* size)
{
    return CopyText(msiProperties, name, buffer, size);
}

bool TestProduct::SetMsiProperty(const wchar_t* name, const wchar_t* value, bool flag)
{
    log.Add(L"Product.SetMsiProperty",
            CString(name) + L", \"" + value + L"\", " + (flag ? L"true" : L"false"));
    if (setMsiPropertyAnswer) {
        msiProperties[name] = value;
    }
    return setMsiPropertyAnswer;
}

bool TestProduct::GetProperty(const wchar_t* name, wchar_t* buffer, int* size)
{
    return CopyText(properties, name, buffer, size);
}

void TestProduct::SetProperty(const wchar_t* name, const wchar_t* value)
{
    log.Add(L"Product.SetProperty", CString(name) + L", \"" + value + L"\"");
    properties[name] = value;
}

void TestProduct::SetPatchState(Setup::tagPATCHSTATE state)
{
    log.Add(L"Product.SetPatchState", NumberText(state));
    patchState = state;
}

bool TestProduct::IsPatchMerged(const CString& file)
{
    ++mergedQuestions;
    return std::find(mergedPatches.begin(), mergedPatches.end(), file) != mergedPatches.end();
}

bool TestProduct::GetCustomShortcuts(std::vector<ShortcutStrings>& list)
{
    log.Add(L"Product.GetCustomShortcuts", L"");
    list = shortcuts;
    return true;
}

void TestProduct::SetIncludeSP(int value)
{
    log.Add(L"Product.SetIncludeSP", NumberText(value));
    m_patchFlag = value;
}

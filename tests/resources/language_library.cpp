#include "tests/resources/language_library.h"

#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <algorithm>

namespace {

constexpr int stringsInABlock = 16;

CString LanguagesFolder()
{
    return ProgramFolder() + L"Languages\\";
}

BOOL CALLBACK CollectBlock(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR blocks) noexcept
{
    reinterpret_cast<std::set<int>*>(blocks)->insert(static_cast<int>(reinterpret_cast<ULONG_PTR>(name)));
    return TRUE;
}

} // namespace

const std::vector<ResourceId>& AllResourceIds()
{
    static const std::vector<ResourceId> ids = {
#include "resource_id_rows.inc"
    };
    return ids;
}

CLanguageLibrary::CLanguageLibrary(const std::string& locale)
{
    m_folder = LanguagesFolder();
    for (const char character : locale) {
        m_folder += static_cast<wchar_t>(character);
    }
    m_folder += L"\\";
    m_module.reset(LoadLibraryW(m_folder + L"WizText.dll"));
    EXPECT_TRUE(m_module) << Utf8(m_folder) << "WizText.dll can't be loaded, error " << GetLastError();
}

CString CLanguageLibrary::GetText(int id) const
{
    const wchar_t* text = nullptr;
    const int length =
        LoadStringW(m_module.get(), static_cast<UINT>(id), reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? CString(text, length) : CString();
}

std::set<int> CLanguageLibrary::GetTextIds() const
{
    std::set<int> blocks;
    EnumResourceNamesW(m_module.get(), RT_STRING, CollectBlock, reinterpret_cast<LONG_PTR>(&blocks));
    std::set<int> ids;
    for (const int block : blocks) {
        const int first = (block - 1) * stringsInABlock;
        for (int id = first; id < first + stringsInABlock; ++id) {
            if (!GetText(id).IsEmpty()) {
                ids.insert(id);
            }
        }
    }
    return ids;
}

bool CLanguageLibrary::HasDialog(int id) const
{
    return FindResourceW(m_module.get(), MAKEINTRESOURCEW(id), RT_DIALOG) != nullptr;
}

std::vector<std::string> BuiltLanguages()
{
    std::vector<std::string> languages;
    WIN32_FIND_DATAW found = {};
    const CFindOwner search(FindFirstFileW(LanguagesFolder() + L"*-*", &found));
    if (search) {
        do {
            languages.push_back(Utf8(CString(found.cFileName)));
        } while (FindNextFileW(search.get(), &found));
    }
    return languages;
}

std::string TestNameOfLanguage(const testing::TestParamInfo<std::string>& locale)
{
    std::string name = locale.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

#include "tests/catalog/catalog_library.h"

#include "base/handle.h"
#include "tests/support/test_folder.h"

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace {

constexpr std::size_t GUARD_BYTES = 64;
constexpr unsigned char GUARD = 0xC5;

class CText
{
public:
    explicit CText(const CString& text) : m_text(SysAllocString(text)) {}
    ~CText() { SysFreeString(m_text); }
    CText(const CText&) = delete;
    CText& operator=(const CText&) = delete;
    BSTR* get() { return &m_text; }

private:
    BSTR m_text;
};

class CFixMgr
{
public:
    CFixMgr()
        : m_library(LoadLibraryExW(ProgramFolder() + L"FixMgr.dll", nullptr, LOAD_WITH_ALTERED_SEARCH_PATH))
    {
    }

    template <class Function>
    Function Find(const char* name) const
    {
        const FARPROC found = m_library ? GetProcAddress(m_library.get(), name) : nullptr;
        if (!found) {
            throw std::runtime_error(std::string("FixMgr.dll lacks ") + name);
        }
        return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
    }

private:
    CModuleOwner m_library;
};

} // namespace

const char CONTENTS[] = "contents of the patch";
const char SHA256_OF_CONTENTS[] = "8a53820c600665f831926af750c583b577c1c1dc50f09133273522eba6617f57";

CString CatalogSaid::Text(std::size_t offset) const
{
    CString text;
    for (std::size_t place = offset; place < offset + 520; place += 2) {
        const auto unit = static_cast<wchar_t>(bytes[place] | bytes[place + 1] << 8);
        if (unit == 0) {
            return text;
        }
        text += unit;
    }
    return text + L" (without a closing zero)";
}

std::uint32_t CatalogSaid::Number(std::size_t offset) const
{
    std::uint32_t number = 0;
    for (std::size_t index = 4; index > 0; --index) {
        number = number << 8 | bytes[offset + index - 1];
    }
    return number;
}

bool CatalogSaid::IsEmptyBeforeError() const
{
    return std::all_of(bytes.begin(), bytes.begin() + 2084, [](unsigned char one) { return one == 0; });
}

CatalogSaid AskCatalog(const CatalogAsk& ask)
{
    using Function = void (*)(std::uint32_t, BSTR*, BSTR*, BSTR*, BSTR*, void*);
    CText key(ask.strKey);
    CText product(ask.strProduct);
    CText addressTemplate(ask.strTemplate);
    CText list(ask.strList);
    std::vector<unsigned char> memory(sizeof(PatchInfoRecord) + 2 * GUARD_BYTES, GUARD);
    CatalogSaid said;
    {
        const CFixMgr library;
        const auto ask6 = library.Find<Function>("GetPatchInfo");
        const ULONGLONG start = GetTickCount64();
        ask6(0, key.get(), product.get(), addressTemplate.get(), list.get(), memory.data() + GUARD_BYTES);
        said.milliseconds = GetTickCount64() - start;
    }
    std::memcpy(said.bytes.data(), memory.data() + GUARD_BYTES, said.bytes.size());
    said.isInBounds = std::count(memory.begin(), memory.begin() + GUARD_BYTES, GUARD) == GUARD_BYTES &&
                      std::count(memory.end() - GUARD_BYTES, memory.end(), GUARD) == GUARD_BYTES;
    return said;
}

std::uint32_t CheckFile(const CString& list, const CString& file)
{
    using Function = std::uint32_t (*)(BSTR*, BSTR*);
    CText listText(list);
    CText fileText(file);
    const CFixMgr library;
    return library.Find<Function>("CheckPatchFile")(listText.get(), fileText.get());
}

std::string GoodAnswer(const char* download, const char* file)
{
    return std::string("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<PatchAnswer version=\"1\">\n  <Patch "
                       "name=\"Zolt 7.1 \xC3\xA4\" "
                       "readme=\"https://127.0.0.1/readme71.html?a=1\" download=\"") +
           download + "\">\n    <File name=\"" + file + "\" size=\"21\" sha256=\"" + SHA256_OF_CONTENTS +
           "\"/>\n  </Patch>\n</PatchAnswer>\n";
}

#include "patches/catalog_library.h"

#include "base/handle.h"
#include "frame/procedure.h"

#include <windows.h>

#include <oleauto.h>

namespace {

struct BstrKind : NullableKind<BSTR>
{
    static void Close(BSTR text) noexcept { ::SysFreeString(text); }
};
using CBstrOwner = CHandleOwner<BstrKind>;

CBstrOwner MakeBstr(const CString& text)
{
    return CBstrOwner(::SysAllocStringLen(text, static_cast<UINT>(text.GetLength())));
}

// By its bare name: the program's own folder is searched first, and the current one not at all (the program's doing).
HMODULE LoadByName(const wchar_t* name)
{
    return ::LoadLibraryExW(name, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

} // namespace

CString ReadProductIdentity(const CString& configurationFile)
{
    using SetFlag = void (*)();
    using GetValue = BSTR (*)(BSTR file);
    const CModuleOwner library(LoadByName(L"Kmd32.dll"));
    if (!library) {
        return CString();
    }
    const auto getValue = FindProcedure<GetValue>(library.get(), "getKMDValue");
    const auto setFlag = FindProcedure<SetFlag>(library.get(), "setMRFlag");
    if (!getValue) {
        return CString();
    }
    const CBstrOwner file = MakeBstr(configurationFile);
    setFlag(); // the library exports both names or neither
    const CBstrOwner value(getValue(file.get()));
    return CString(value.get(), static_cast<int>(::SysStringLen(value.get())));
}

CPatchService::CPatchService() : m_module(LoadByName(L"FixMgr.dll"))
{
}

CPatchService::~CPatchService()
{
    if (m_module) {
        ::FreeLibrary(static_cast<HMODULE>(m_module));
    }
}

void CPatchService::GetPatchInfo(const CatalogQuestion& question, PatchInfoRecord& record) const
{
    using Call = void (*)(int, BSTR* key, BSTR* identity, BSTR* url, BSTR* list, PatchInfoRecord*);
    const auto call = FindProcedure<Call>(static_cast<HMODULE>(m_module), "GetPatchInfo");
    if (!call) {
        return;
    }
    const CBstrOwner key = MakeBstr(question.strCatalogKey);
    const CBstrOwner identity = MakeBstr(question.strIdentity);
    const CBstrOwner url = MakeBstr(question.strUrlTemplate);
    const CBstrOwner list = MakeBstr(question.strPatchList);
    BSTR texts[] = {key.get(), identity.get(), url.get(), list.get()};
    call(0, &texts[0], &texts[1], &texts[2], &texts[3], &record);
}

unsigned int CPatchService::CheckPatchFile(const CString& patchList, const CString& file) const
{
    using Call = std::uint32_t (*)(BSTR * list, BSTR * file);
    const auto call = FindProcedure<Call>(static_cast<HMODULE>(m_module), "CheckPatchFile");
    if (!call) {
        return ERROR_PROC_NOT_FOUND;
    }
    const CBstrOwner list = MakeBstr(patchList);
    const CBstrOwner path = MakeBstr(file);
    BSTR texts[] = {list.get(), path.get()};
    return call(&texts[0], &texts[1]);
}

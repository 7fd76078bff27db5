#include "builder/database_signature.h"

#include "base/com_ptr.h"
#include "builder/build_failure.h"

#include <objbase.h>

namespace {

const wchar_t* const g_signatures[] = {L"\x05"
                                       L"DigitalSignature",
                                       L"\x05"
                                       L"MsiDigitalSignatureEx"};

HRESULT OpenStorage(const CString& path, DWORD mode, ComPtr<IStorage>& storage)
{
    return StgOpenStorage(path, nullptr, mode, nullptr, 0, &storage);
}

unsigned int CodeOf(HRESULT result)
{
    if (SUCCEEDED(result)) {
        return ERROR_SUCCESS;
    }
    return HRESULT_FACILITY(result) == FACILITY_WIN32 ? static_cast<unsigned int>(HRESULT_CODE(result))
                                                      : static_cast<unsigned int>(BUILD_DATABASE_DAMAGED);
}

} // namespace

bool HasSignature(const CString& path)
{
    ComPtr<IStorage> storage;
    ComPtr<IStream> stream;
    return SUCCEEDED(OpenStorage(path, STGM_READ | STGM_SHARE_DENY_WRITE, storage)) &&
           SUCCEEDED(
               storage->OpenStream(g_signatures[0], nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream));
}

unsigned int RemoveSignature(const CString& path)
{
    if (!HasSignature(path)) {
        return ERROR_SUCCESS;
    }
    ComPtr<IStorage> storage;
    HRESULT result = OpenStorage(path, STGM_TRANSACTED | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, storage);
    for (const wchar_t* name : g_signatures) {
        const HRESULT removed = SUCCEEDED(result) ? storage->DestroyElement(name) : result;
        result = removed == STG_E_FILENOTFOUND ? result : removed;
    }
    return CodeOf(SUCCEEDED(result) ? storage->Commit(STGC_DEFAULT) : result);
}

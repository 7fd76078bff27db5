#include "builder/database_signature.h"

#include "builder/build_failure.h"

#include <windows.h>

#include <objbase.h>

#include <utility>

namespace {

const wchar_t* const g_signatures[] = {L"\x05"
                                       L"DigitalSignature",
                                       L"\x05"
                                       L"MsiDigitalSignatureEx"};

// Owns a storage.
class CStorage
{
public:
    CStorage(const CString& path, DWORD mode)
    {
        m_result = StgOpenStorage(path, nullptr, mode, nullptr, 0, &m_storage);
    }
    CStorage(const CStorage&) = delete;
    CStorage& operator=(const CStorage&) = delete;
    ~CStorage()
    {
        if (m_storage) {
            m_storage->Release();
        }
    }
    HRESULT Result() const { return m_result; }
    IStorage* operator->() const { return m_storage; }

private:
    IStorage* m_storage = nullptr;
    HRESULT m_result;
};

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
    CStorage storage(path, STGM_READ | STGM_SHARE_DENY_WRITE);
    IStream* stream = nullptr;
    const bool found = SUCCEEDED(storage.Result()) &&
                       SUCCEEDED(storage->OpenStream(g_signatures[0], nullptr,
                                                     STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream));
    if (found) {
        stream->Release();
    }
    return found;
}

unsigned int RemoveSignature(const CString& path)
{
    if (!HasSignature(path)) {
        return ERROR_SUCCESS;
    }
    CStorage storage(path, STGM_TRANSACTED | STGM_READWRITE | STGM_SHARE_EXCLUSIVE);
    HRESULT result = storage.Result();
    for (const wchar_t* name : g_signatures) {
        const HRESULT removed = SUCCEEDED(result) ? storage->DestroyElement(name) : result;
        result = removed == STG_E_FILENOTFOUND ? result : removed;
    }
    return CodeOf(SUCCEEDED(result) ? storage->Commit(STGC_DEFAULT) : result);
}

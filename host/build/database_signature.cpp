#include "host/build/database_signature.h"

#include "host/build/build_failure.h"
#include "host/build/system_text.h"

#include <windows.h>

#include <objbase.h>

#include <utility>

namespace {

// Owns a storage.
class Storage
{
public:
    explicit Storage(const CString& path)
    {
        m_result = StgOpenStorage(path, nullptr, STGM_TRANSACTED | STGM_READWRITE | STGM_SHARE_EXCLUSIVE,
                                  nullptr, 0, &m_storage);
    }
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;
    ~Storage()
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

void Require(HRESULT result, const CString& path)
{
    if (FAILED(result)) {
        const unsigned int code = HRESULT_FACILITY(result) == FACILITY_WIN32
                                      ? static_cast<unsigned int>(HRESULT_CODE(result))
                                      : static_cast<unsigned int>(BUILD_DATABASE_DAMAGED);
        throw BuildFailure{code,
                           DescribeFailure(L"Removing the old signature of", path, code, SystemText(code))};
    }
}

} // namespace

bool RemoveSignature(const CString& path)
{
    Storage storage(path);
    Require(storage.Result(), path);
    bool found = false;
    for (const wchar_t* name : {L"\x05"
                                L"DigitalSignature",
                                L"\x05"
                                L"MsiDigitalSignatureEx"}) {
        const HRESULT result = storage->DestroyElement(name);
        if (result != STG_E_FILENOTFOUND) {
            Require(result, path);
            found = true;
        }
    }
    if (found) {
        Require(storage->Commit(STGC_DEFAULT), path);
    }
    return found;
}

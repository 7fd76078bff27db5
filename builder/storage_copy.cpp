#include "builder/storage_copy.h"

#include "builder/build_failure.h"

#include <windows.h>

#include <objbase.h>

namespace {

// Owns a storage.
class CStorageFile
{
public:
    CStorageFile() = default;
    CStorageFile(const CStorageFile&) = delete;
    CStorageFile& operator=(const CStorageFile&) = delete;
    ~CStorageFile()
    {
        if (m_storage) {
            m_storage->Release();
        }
    }
    IStorage** Put() { return &m_storage; }
    IStorage* Get() const { return m_storage; }

private:
    IStorage* m_storage = nullptr;
};

} // namespace

unsigned int CopyStorage(const CString& source, const CString& target)
{
    CStorageFile from;
    CStorageFile to;
    HRESULT result =
        StgOpenStorage(source, nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0, from.Put());
    if (SUCCEEDED(result)) {
        result = StgCreateDocfile(target, STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, to.Put());
    }
    if (SUCCEEDED(result)) {
        result = from.Get()->CopyTo(0, nullptr, nullptr, to.Get());
    }
    if (SUCCEEDED(result)) {
        result = to.Get()->Commit(STGC_DEFAULT);
    }
    if (SUCCEEDED(result)) {
        return ERROR_SUCCESS;
    }
    return HRESULT_FACILITY(result) == FACILITY_WIN32 ? static_cast<unsigned int>(HRESULT_CODE(result))
           : result == STG_E_MEDIUMFULL               ? static_cast<unsigned int>(BUILD_DISK_FULL)
                                                      : static_cast<unsigned int>(BUILD_WRITE_FAULT);
}

#include "builder/storage_copy.h"

#include "base/com_ptr.h"
#include "builder/build_failure.h"

#include <objbase.h>

unsigned int CopyStorage(const CString& source, const CString& target)
{
    ComPtr<IStorage> from;
    ComPtr<IStorage> to;
    HRESULT result = StgOpenStorage(source, nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0, &from);
    if (SUCCEEDED(result)) {
        result = StgCreateDocfile(target, STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, &to);
    }
    if (SUCCEEDED(result)) {
        result = from->CopyTo(0, nullptr, nullptr, to.Get());
    }
    if (SUCCEEDED(result)) {
        result = to->Commit(STGC_DEFAULT);
    }
    if (SUCCEEDED(result)) {
        return ERROR_SUCCESS;
    }
    return HRESULT_FACILITY(result) == FACILITY_WIN32 ? static_cast<unsigned int>(HRESULT_CODE(result))
           : result == STG_E_MEDIUMFULL               ? static_cast<unsigned int>(BUILD_DISK_FULL)
                                                      : static_cast<unsigned int>(BUILD_WRITE_FAULT);
}

// Kmd32.dll: under which identity a product is known to the update service.
#include "base/files.h"
#include "catalog/catalog_exports.h"
#include "catalog/catalog_limits.h"
#include "catalog/kmd_config.h"

#include <atomic>
#include <exception>
#include <string>

namespace {

std::atomic<bool> g_prepared = false; // by setMRFlag, for one getKMDValue

CString ReadIdentity(const CString& path)
{
    std::string bytes;
    if (ReadWholeFile(path, CONFIG_BYTES_LIMIT, bytes) != ERROR_SUCCESS) {
        return CString();
    }
    return ReadProductIdentity(bytes.data(), bytes.size());
}

} // namespace

void setMRFlag()
{
    g_prepared = true;
}

BSTR getKMDValue(BSTR configPath)
{
    const bool isPrepared = g_prepared.exchange(false);
    try {
        const CString identity = isPrepared && configPath ? ReadIdentity(configPath) : CString();
        return SysAllocStringLen(identity, static_cast<UINT>(identity.GetLength()));
    } catch (const std::exception&) {
        return nullptr; // a BSTR without text, as every caller reads it
    }
}

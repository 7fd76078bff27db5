// The two libraries that know the update service, each loaded for one operation: Kmd32.dll says who the product is to the
// service, FixMgr.dll asks it and keeps its list of files.
#pragma once

#include "base/string.h"
#include "include/patch_info_record.h"

#include <optional>

// The value that stands for the product in questions to the service, from its configuration file (full path). Empty when the
// library is missing or the file has none.
[[nodiscard]] CString ReadProductIdentity(const CString& configurationFile);

struct CatalogQuestion
{
    CString strCatalogKey;
    CString strIdentity;
    CString strUrlTemplate; // with %s where the query stands
    CString strPatchList;   // full path of the file in which the answer is kept
};

// FixMgr.dll, loaded while the object lives.
class CPatchService
{
public:
    CPatchService();
    ~CPatchService();
    CPatchService(const CPatchService&) = delete;
    CPatchService& operator=(const CPatchService&) = delete;

    [[nodiscard]] bool IsLoaded() const { return m_module != nullptr; }
    // Fills the record; it stays as it was when the library doesn't have the call. Returns when the service has answered, or
    // after the library's own limit.
    void GetPatchInfo(const CatalogQuestion& question, PatchInfoRecord& record) const;
    // Whether a downloaded file is what the list says: 0, or the system's code (docs/catalog.md). Reads the whole file.
    [[nodiscard]] unsigned int CheckPatchFile(const CString& patchList, const CString& file) const;

private:
    void* m_module;
};

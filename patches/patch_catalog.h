// What the update service has for a product: who the product is to the service, the question, and the answer.
#pragma once

#include "base/string.h"
#include "include/patch_info_record.h"
#include "include/setup_enums.h"
#include "patches/patch_stage_rules.h"

#include <windows.h>

class CProduct;
class CSetupManager;

// One object a page; all of it runs on the page's thread, which waits meanwhile.
class CPatchCatalog
{
public:
    // The objects are the host's and outlive the page. `database` is the product's.
    CPatchCatalog(CSetupManager& manager, CProduct& product, InstallerHandle database);

    // True when the service can be asked: the product has a configuration file that says who it is. Reads the overrides of
    // the registry too. Says nothing to the user.
    [[nodiscard]] bool ResolveCatalogIdentity();

    // Asks the service. True exactly when it answered and the current folder is what it was; messages belong to `page`.
    // `DownloadTargetPath` becomes the file that an offered patch is to be written to, and stays without an offer.
    [[nodiscard]] bool FetchPatchCatalog(HWND page, CString& DownloadTargetPath);

    // Whether the download folder has the list that files are held against.
    [[nodiscard]] bool HasPatchList() const;
    // Whether a downloaded file is what the service announced: 0, or why it can't be used. Reads the whole file.
    [[nodiscard]] unsigned int CheckDownloadedFile(const CString& file) const;

    [[nodiscard]] CatalogOutcome Answer() const { return {PatchInfo.ErrorCode, PatchInfo.PatchCount}; }

    PatchInfoRecord PatchInfo = {};
    CString DownloadDir; // ends in a backslash; the page sets it

private:
    [[nodiscard]] CString ReferenceDatabase() const;
    [[nodiscard]] CString PatchListPath() const;
    void SettleConfigurationFolder();
    void ReadRegistryOverrides();
    // False, for the caller to return.
    [[nodiscard]] bool ShowWarning(HWND page, const wchar_t* text) const;

    CSetupManager& m_manager;
    CProduct& m_product;
    InstallerHandle m_hDatabase;

    CString UpdateUrl;     // of the service; empty until overridden or defaulted
    CString KmdValue;      // who the product is to the service; empty for nobody
    DWORD PreviewMode = 0; // only 1 has a meaning
    CString CatalogKey;
    CString KmdConfigDir;
};

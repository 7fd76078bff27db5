// One product over the working copy of its installer database.
#pragma once

#include "host/deployment_file.h"
#include "host/directories.h"
#include "host/product_patches.h"
#include "host/setup_description.h"
#include "include/product.h"
#include "installer/handle.h"

#include <memory>
#include <vector>

// Where a product comes from and where its working copy goes.
struct ProductSource
{
    CString strMediaRoot;      // with backslash
    CString strRelativeFolder; // below the root, with backslash; may be empty
    CString strWorkFolder;     // its own, with backslash
    CString strDownloadFolder; // likewise, for what the pages download; not made yet
    int platform = 3;
};

class CHostProduct final : public CProduct
{
public:
    CHostProduct(const ProductDescription& product, const PackageDescription& package,
                 const ProductSource& source);
    ~CHostProduct() override;

    // Copies the package, opens the copy and readies it for the pages. `warnings` gets what is worth a log line.
    OperationError Open(std::vector<CString>& warnings);

    InstallerHandle GetMsiHandle() override { return m_database.get(); }
    bool GetMsiProperty(const wchar_t* name, wchar_t* buffer, int* size) override;
    bool SetMsiProperty(const wchar_t* name, const wchar_t* value, bool flag) override;
    bool GetProperty(const wchar_t* name, wchar_t* buffer, int* size) override;
    void SetProperty(const wchar_t* name, const wchar_t* value) override;
    Setup::tagPATCHSTATE GetMsiPatchState() override { return m_imagePatchState; }
    Setup::tagPATCHSTATE GetPatchState() override { return m_patchState; }
    void SetPatchState(Setup::tagPATCHSTATE state) override { m_patchState = state; }
    bool IsPatchMerged(const CString& file) override;
    void SetDownloadedMSPPath(const CString& path) override { m_strPatchPath = path; }
    void SetDownloadedPatchName(const CString& name) override { m_strPatchName = name; }
    void SetDownloadedPatchReadmeURL(const CString& url) override { m_strPatchReadme = url; }
    void SetDownloadedPatchSize(const CString& text) override { m_strPatchSize = text; }
    CString GetDownloadedMSPPath() override { return m_strPatchPath; }
    CString GetDownloadedPatchName() override { return m_strPatchName; }
    CString GetDownloadedPatchReadmeURL() override { return m_strPatchReadme; }
    CString GetDownloadedPatchSize() override { return m_strPatchSize; }
    void SetIncludeSP(int value) override { m_patchFlag = value; }
    std::vector<CProduct*>& GetLPChildren() override { return m_packs; }
    bool GetCustomShortcuts(std::vector<ShortcutStrings>& list) override;

    void AddLanguagePack(std::unique_ptr<CHostProduct> pack);
    const std::vector<std::unique_ptr<CHostProduct>>& GetPackObjects() const { return m_packObjects; }
    CHostDirectoryManager* GetDirectoryObject() { return m_directories.get(); }
    const CString& GetWorkFile() const { return m_strWorkFile; }
    const CString& GetRelativeFile() const { return m_strRelativeFile; }
    const CString& GetOriginalFile() const { return m_strOriginalFile; }
    const PackageDescription& GetPackage() const { return m_package; }

    const CString& GetDownloadFolder() const { return m_source.strDownloadFolder; }
    CProductPatches& GetPatches() { return m_patches; }

    // The settings that a deployment file keeps of the product, but for its patches, which a build plans.
    StoredProduct Store() const;
    // `imageRoot`: of the deployment they come from; its patch files lie below it. `warnings` gets what is worth a log line.
    void Load(const StoredProduct& stored, const CString& imageRoot, std::vector<CString>& warnings);
    // The same of a new deployment that is made from the media of another one: nothing that was chosen there counts, but what
    // was merged is merged.
    void LoadMergedPatches(const StoredProduct& stored, const CString& imageRoot,
                           std::vector<CString>& warnings);

private:
    OperationError CopyPackage();
    void ReadDatabase(const SessionTargets& targets);
    std::vector<StoredAddedFile> ReadAddedFiles() const;
    void RestoreSources(const std::vector<StoredAddedFile>& files);
    void LoadPatches(const StoredProduct& stored, const CString& imageRoot, std::vector<CString>& warnings);

    const ProductDescription m_product;
    const PackageDescription m_package;
    const ProductSource m_source;
    CString m_strRelativeFile;
    CString m_strOriginalFile;
    CString m_strWorkFile;
    CInstallerHandle m_database;
    std::unique_ptr<CHostFeatureManager> m_features;
    std::unique_ptr<CHostDirectoryManager> m_directories;
    PropertyStore m_properties;
    CProductPatches m_patches;
    Setup::tagPATCHSTATE m_imagePatchState = Setup::PATCHSTATE_NONE;
    Setup::tagPATCHSTATE m_patchState = Setup::PATCHSTATE_NONE;
    CString m_strPatchPath;
    CString m_strPatchName;
    CString m_strPatchReadme;
    CString m_strPatchSize;
    std::vector<std::unique_ptr<CHostProduct>> m_packObjects;
    std::vector<CProduct*> m_packs;
};

// The product whose database has that handle; null for none.
CHostProduct* FindProductByHandle(InstallerHandle database);
// Gives a value in the service's shape: 0, 234 (more data) or 87 (no size beside a buffer).
unsigned int CopyToBuffer(const CString& value, wchar_t* buffer, unsigned long* size);

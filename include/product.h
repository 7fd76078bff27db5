// One product of the deployment, as the pages see it. The host implements the operations.
#pragma once

#include "base/string.h"
#include "include/directory_manager.h"
#include "include/setup_enums.h"

#include <vector>

struct ShortcutStrings; // a row of the custom shortcuts page (workstation/)

class CProduct
{
public:
    virtual ~CProduct() = default;

    // The open installer database; stays the host's. 0 when the product has none.
    virtual InstallerHandle GetMsiHandle() = 0;

    // A property of the installer database, changes that aren't committed included. `size`: in, the buffer's
    // characters with the closing zero; out, the value's characters without it. False when the property is missing
    // or the buffer is too small (then `size` still says what is needed).
    virtual bool GetMsiProperty(const wchar_t* name, wchar_t* buffer, int* size) = 0;
    // Writes a property into the installer database; an empty value removes it, as the table holds no empty ones.
    // The pages pass false for `flag`.
    virtual bool SetMsiProperty(const wchar_t* name, const wchar_t* value, bool flag) = 0;

    // The product's own property table, kept apart from the installer database; same conventions, but an empty value
    // is kept: GetProperty then gives it and returns true.
    virtual bool GetProperty(const wchar_t* name, wchar_t* buffer, int* size) = 0;
    virtual void SetProperty(const wchar_t* name, const wchar_t* value) = 0;

    // The service pack: the state stored in the database, the one chosen on the page, and its setter.
    virtual Setup::tagPATCHSTATE GetMsiPatchState() = 0;
    virtual Setup::tagPATCHSTATE GetPatchState() = 0;
    virtual void SetPatchState(Setup::tagPATCHSTATE state) = 0;
    // True when the named patch is already merged into the image.
    virtual bool IsPatchMerged(const CString& file) = 0;

    virtual void SetDownloadedMSPPath(const CString& path) = 0;
    virtual void SetDownloadedPatchName(const CString& name) = 0;
    virtual void SetDownloadedPatchReadmeURL(const CString& url) = 0;
    virtual void SetDownloadedPatchSize(const CString& text) = 0;
    virtual CString GetDownloadedMSPPath() = 0;
    virtual CString GetDownloadedPatchName() = 0;
    virtual CString GetDownloadedPatchReadmeURL() = 0;
    virtual CString GetDownloadedPatchSize() = 0;
    // How the patch is included: -1, 0, 1 or 2. Stored in m_patchFlag.
    virtual void SetIncludeSP(int value) = 0;

    // The language packs that go with the product; the vector and what it points to are the host's.
    virtual std::vector<CProduct*>& GetLPChildren() = 0;

    // Fills the list from the database; true on success.
    virtual bool GetCustomShortcuts(std::vector<ShortcutStrings>& list) = 0;

    // Texts are the host's and never move while the object lives; each may be null.
    const wchar_t* m_strFolder = nullptr;      // the product's folder name in the image
    const wchar_t* m_strName = nullptr;        // display name
    const wchar_t* m_strProductCode = nullptr; // with braces
    const wchar_t* m_strCatalogKey = nullptr;  // the patch catalog's name for the product
    const wchar_t* m_strMsiFile = nullptr;     // relative to the media root unless m_bMsiFileIsAbsolute
    const wchar_t* m_strLanguage = nullptr;    // of a language pack: its language
    bool m_bMsiFileIsAbsolute = false;
    bool m_bCarrierFlag1 = false; // these two and the kind 8 pick the products that carry MC3_ENABLED
    bool m_bCarrierFlag2 = false;
    unsigned int m_productKind = 0;
    std::vector<CString> m_patchFiles;
    int m_fileSequence = 0; // running sequence number of the product's File rows
    int m_x64Marker = 0;    // above 0: new components are 64-bit
    CFeatureManager* m_pFeatureManager = nullptr;
    CDirectoryManager* m_pDirectoryManager = nullptr;
    bool m_bPatchDownloaded = false;
    int m_patchFlag = -1; // the include choice of SetIncludeSP
};

// A product that holds nothing and takes nothing, for tests to derive from and answer what they need.
#pragma once

#include "include/product.h"
#include "include/shortcut_strings.h"

#include <vector>

class EmptyProduct : public CProduct
{
public:
    InstallerHandle GetMsiHandle() override { return 0; }
    bool GetMsiProperty(const wchar_t*, wchar_t*, int*) override { return false; }
    bool SetMsiProperty(const wchar_t*, const wchar_t*, bool) override { return false; }
    bool GetProperty(const wchar_t*, wchar_t*, int*) override { return false; }
    void SetProperty(const wchar_t*, const wchar_t*) override {}
    Setup::tagPATCHSTATE GetMsiPatchState() override { return Setup::PATCHSTATE_NONE; }
    Setup::tagPATCHSTATE GetPatchState() override { return Setup::PATCHSTATE_NONE; }
    void SetPatchState(Setup::tagPATCHSTATE) override {}
    bool IsPatchMerged(const CString&) override { return false; }
    void SetDownloadedMSPPath(const CString&) override {}
    void SetDownloadedPatchName(const CString&) override {}
    void SetDownloadedPatchReadmeURL(const CString&) override {}
    void SetDownloadedPatchSize(const CString&) override {}
    CString GetDownloadedMSPPath() override { return {}; }
    CString GetDownloadedPatchName() override { return {}; }
    CString GetDownloadedPatchReadmeURL() override { return {}; }
    CString GetDownloadedPatchSize() override { return {}; }
    void SetIncludeSP(int) override {}
    std::vector<CProduct*>& GetLPChildren() override { return m_packs; }
    bool GetCustomShortcuts(std::vector<ShortcutStrings>&) override { return false; }

private:
    std::vector<CProduct*> m_packs;
};

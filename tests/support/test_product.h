// A product for tests of pages and rules; its calls are recorded, its answers can be set.
#pragma once

#include "include/product.h"
#include "include/shortcut_strings.h"
#include "tests/support/call_log.h"

#include <map>
#include <vector>

// A product with both property stores in memory, for pages and rules that don't need a database.
class TestProduct : public CProduct
{
public:
    explicit TestProduct(CallLog& callLog) : log(callLog) {}

    InstallerHandle GetMsiHandle() override { return database; }
    bool GetMsiProperty(const wchar_t* name, wchar_t* buffer, int* size) override;
    bool SetMsiProperty(const wchar_t* name, const wchar_t* value, bool flag) override;
    bool GetProperty(const wchar_t* name, wchar_t* buffer, int* size) override;
    void SetProperty(const wchar_t* name, const wchar_t* value) override;
    Setup::tagPATCHSTATE GetMsiPatchState() override { return msiPatchState; }
    Setup::tagPATCHSTATE GetPatchState() override { return patchState; }
    void SetPatchState(Setup::tagPATCHSTATE state) override;
    bool IsPatchMerged(const CString& file) override;
    void SetDownloadedMSPPath(const CString& path) override { patchPath = path; }
    void SetDownloadedPatchName(const CString& name) override { patchName = name; }
    void SetDownloadedPatchReadmeURL(const CString& url) override { patchReadme = url; }
    void SetDownloadedPatchSize(const CString& text) override { patchSize = text; }
    CString GetDownloadedMSPPath() override { return patchPath; }
    CString GetDownloadedPatchName() override { return patchName; }
    CString GetDownloadedPatchReadmeURL() override { return patchReadme; }
    CString GetDownloadedPatchSize() override { return patchSize; }
    void SetIncludeSP(int value) override;
    std::vector<CProduct*>& GetLPChildren() override { return children; }
    bool GetCustomShortcuts(std::vector<ShortcutStrings>& list) override;

    InstallerHandle database = 0;
    bool setMsiPropertyAnswer = true; // false: the property isn't stored
    std::map<CString, CString> msiProperties;
    std::map<CString, CString> properties;
    Setup::tagPATCHSTATE msiPatchState = Setup::PATCHSTATE_NONE;
    Setup::tagPATCHSTATE patchState = Setup::PATCHSTATE_NONE;
    std::vector<CString> mergedPatches;
    int mergedQuestions = 0; // how often IsPatchMerged was called
    CString patchPath;
    CString patchName;
    CString patchReadme;
    CString patchSize;
    std::vector<ShortcutStrings> shortcuts; // those that the database is said to hold
    std::vector<CProduct*> children;

    CallLog& log;
};

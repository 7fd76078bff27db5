// The page of service packs in both shapes: a product whose package is a real one, patch libraries whose answers a test scripts,
// and a folder for downloads of the test's own.
//
// Without more the product is known to no service, so that the page has its local choices alone.
#pragma once

#include "installer/handle.h"
#include "tests/online/online_page.h"
#include "tests/patches/patch_library_calls.h"
#include "tests/support/import_redirect.h"

#include <functional>
#include <memory>
#include <vector>

// What GetPatchInfo was handed, and where the process was then.
struct PatchQuery
{
    std::intptr_t zero = -1;
    CString catalogKey;
    CString identity;
    CString address;
    CString listFile;
    CString currentFolder;
};

// A patch as the installer sees one: what its summary and its metadata say. It holds no transforms.
struct PatchForm
{
    CString targets = {};
    CString code = {};
    CString targetName = {};
    CString displayName = {};
    bool bMetadata = true;
};

constexpr unsigned int ANSWER_UNSET = 0xFFFFFFFF; // the record's error number before the first query
constexpr const wchar_t* PATCHED_PRODUCT = L"{5C0FFEE0-0000-4000-8000-0000000000A1}";
constexpr const wchar_t* OTHER_PRODUCT = L"{5C0FFEE0-0000-4000-8000-0000000000A2}";

class PatchPage : public OnlinePage
{
protected:
    using Lines = std::vector<CString>;

    PatchPage();
    void TearDown() override;

    // ---- the world, before the page opens
    void InMode(int mode) { host.manager.m_setupMode = static_cast<Setup::tagSETUPMODE>(mode); }
    // 4, 5 and 6 are those of a deployment.
    bool IsDeploymentMode() const { return host.manager.m_setupMode >= 4 && host.manager.m_setupMode <= 6; }
    // The service knows the product, and answers so.
    void WithAnswer(unsigned int errorCode, int patchCount);
    void WithOffer(const CString& address = L"http://127.0.0.1:9/zolt/ZoltSP1.msp");
    void WithChoice(int includeChoice) { product.m_patchFlag = includeChoice; }
    // A patch was fetched earlier in the run.
    void WithDownloadedPatch(const CString& file);
    // A patch of the product, in the test's folder; its code ends in that number.
    CString AddPatch(const wchar_t* name, int number, const CString& displayName = {});
    CString AddPatch(const wchar_t* name, const PatchForm& form);
    void WithListed(const Lines& files) { product.m_patchFiles = files; }
    // An empty value removes it.
    void SetPackageProperty(const wchar_t* name, const CString& value);
    // Another build of a library; an empty variant is the whole one, null takes it away.
    void UseLibrary(const wchar_t* name, const wchar_t* variant);

    // ---- steps
    void Choose(int radio);
    void Act() { Press(IDC_PATCH_ACTION); }
    void AwaitStage(const wchar_t* stage);
    // The next call of the page's picker answers this file; empty for a cancel.
    void Browse(const CString& file);
    void SelectPatch(int line);
    // A box that comes up before the page can be seen: owned by its window.
    void AnswerAtEntry(const CString& text, UINT icon);
    void ExpectList(const Lines& lines);

    // ---- looks
    // "no service", "connect failed", "timed out", "available", "downloading", "downloaded", "up to date", or "not drawn"
    CString Stage() const;
    // Shown or hidden, enabled or disabled, checked or unchecked: "SEC"; "HDU"
    CString Form(int id) const;
    bool IsShown(int id) const { return Has(id, WS_VISIBLE); }
    RECT Place(int id) const { return Control(id).GetRectangle(); }
    Lines BoxLines() const { return Control(IDC_PATCH_LIST).GetLines(); }
    Lines IncludeCalls() const { return host.log.Of(L"Product.SetIncludeSP"); }
    Lines StateCalls() const { return host.log.Of(L"Product.SetPatchState"); }
    CString DownloadFolder() const { return folder / L"deployment\\ServicePacks\\"; }
    CString Media(const wchar_t* name) const { return folder / L"media\\" + name; }
    CString PackageFile() const { return Media(L"zolt.msi"); }

    TestProduct& product;
    CTestFolder folder;
    CString identity; // what getKMDValue answers
    PatchInfoRecord answer = {};
    std::function<void(PatchInfoRecord&)> onQuery;                                 // in place of the answer
    std::function<unsigned int(const CString& list, const CString& file)> onCheck; // 0 without it
    std::vector<PatchQuery> queries;
    Lines libraryCalls; // of Kmd32.dll and CheckPatchFile, in their order

private:
    static PatchPage* s_current;
    static void NotePreparation();
    static BSTR NoteIdentity(BSTR configFile);
    static void NoteQuery(std::intptr_t zero, BSTR* catalogKey, BSTR* identity, BSTR* address, BSTR* listFile,
                          PatchInfoRecord* record);
    static unsigned int NoteCheck(BSTR* listFile, BSTR* file);
    bool Has(int id, LONG style) const;
    void MakePackage();
    void MeetPageOnce();
    void AllowForDrawingContexts();

    PatchLibraryCalls m_calls = {NotePreparation, NoteIdentity, NoteQuery, NoteCheck};
    CInstallerHandle m_database;
    int m_drawingObjects = 0; // at the start
};

// A text of the record.
void SetField(wchar_t (&field)[PATCH_INFO_CHARACTERS], const CString& text);
// Those names below the folder, folders with a backslash behind; sorted.
std::vector<CString> FilesIn(const CString& folder);

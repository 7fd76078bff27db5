#include "tests/patches/service_pack_page.h"

#include "base/files.h"
#include "installer/summary.h"
#include "msi/msi_property.h"

#include <commdlg.h>
#include <msiquery.h>

#include <algorithm>

PatchPage* PatchPage::s_current = nullptr;

namespace {

constexpr std::uintptr_t CREATE_PATCH = 35; // the service's values for a new file and for a patch
constexpr UINT PAGE_COUNT = 14;             // a summary property

std::unique_ptr<CImportRedirect> g_picker;
CString g_picked;

BOOL WINAPI AnswerPicker(OPENFILENAMEW* dialog)
{
    lstrcpynW(dialog->lpstrFile, g_picked, static_cast<int>(dialog->nMaxFile));
    return !g_picked.IsEmpty();
}

void RunStatement(MSIHANDLE database, const CString& statement)
{
    CInstallerHandle view;
    ASSERT_EQ(MsiDatabaseOpenViewW(database, statement, view.put()), 0u) << Utf8(statement);
    ASSERT_EQ(MsiViewExecute(view.get(), 0), 0u) << Utf8(statement);
}

void SetSummary(MSIHANDLE database, const CString& targets, const CString& code, int pages, int words)
{
    CInstallerHandle summary;
    ASSERT_EQ(MsiGetSummaryInformationW(database, nullptr, 10, summary.put()), 0u);
    if (!targets.IsEmpty()) {
        MsiSummaryInfoSetPropertyW(summary.get(), SUMMARY_TEMPLATE, VT_LPSTR, 0, nullptr, targets);
    }
    if (!code.IsEmpty()) {
        MsiSummaryInfoSetPropertyW(summary.get(), SUMMARY_PACKAGE_CODE, VT_LPSTR, 0, nullptr, code);
    }
    MsiSummaryInfoSetPropertyW(summary.get(), PAGE_COUNT, VT_I4, pages, nullptr, nullptr);
    MsiSummaryInfoSetPropertyW(summary.get(), SUMMARY_WORD_COUNT, VT_I4, words, nullptr, nullptr);
    ASSERT_EQ(MsiSummaryInfoPersist(summary.get()), 0u);
}

} // namespace

void SetField(wchar_t (&field)[PATCH_INFO_CHARACTERS], const CString& text)
{
    lstrcpynW(field, text, PATCH_INFO_CHARACTERS);
}

std::vector<CString> FilesIn(const CString& folder)
{
    std::vector<CString> names;
    std::vector<FolderItem> items;
    EXPECT_EQ(ListFolder(folder, items), 0u) << Utf8(folder);
    for (const FolderItem& item : items) {
        names.push_back(item.strName + (item.isFolder ? L"\\" : L""));
    }
    std::sort(names.begin(), names.end());
    return names;
}

PatchPage::PatchPage()
    : OnlinePage({ServicePackDialog, ServicePackPage}), product(host.AddProduct(L"zolt.msi", L"Zolt"))
{
    s_current = this;
    SetEnvironmentVariableW(PATCH_LIBRARY_CALLS, NumberText(reinterpret_cast<long long>(&m_calls)));
    for (const wchar_t* name : {L"media", L"media\\kmd", L"language", L"deployment", L"files"}) {
        folder.AddFolder(name);
    }
    folder.AddFile(L"media\\kmd\\Kmdconfig.xml", "<kmd/>");
    folder.AddFile(L"language\\Kmd32.dll", "its presence is asked for, and no more");
    UseLibrary(L"Kmd32.dll", L"");
    UseLibrary(L"FixMgr.dll", L"");
    host.manager.m_strMediaRoot = host.Keep(folder / L"media");
    host.manager.m_strResourceFolder = host.Keep(folder / L"language\\");
    host.manager.m_strDeploymentFolder = folder / L"deployment";
    product.m_strProductCode = PATCHED_PRODUCT;
    product.m_strCatalogKey = L"ZOLT-2027";
    product.m_strName = L"Zolt Drafting";
    MakePackage();
    context.pProduct = &product;
    context.hDatabase = m_database.get();
    context.strHelpFile = L"ServicePack.html";
    WithAnswer(ANSWER_UNSET, 0);
    identity.Empty();
    MeetPageOnce();
    m_drawingObjects = ReadProcessState().gdiObjects;
}

// The system keeps as many drawing contexts as were ever needed at a time, with a region and a bitmap each, which depends on
// what overlaps when: it makes two more now and then, and no more than a few in a process. What a page leaves behind at each
// visit exceeds that soon.
void PatchPage::AllowForDrawingContexts()
{
    constexpr int TWO_CONTEXTS = 6;
    static int left = 4 * TWO_CONTEXTS;
    const int more = ReadProcessState().gdiObjects - m_drawingObjects;
    if (more > 0 && more % TWO_CONTEXTS == 0 && more <= left) {
        left -= more;
        CountFromHere();
    }
}

// Fills the system's caches for progress bars, lists, pictures and fonts, once for the program.
void PatchPage::MeetPageOnce()
{
    static bool done = false;
    if (done) {
        return;
    }
    done = true;
    WithChoice(2);
    WithListed({AddPatch(L"first.msp", 1)});
    Browse(AddPatch(L"second.msp", 2)); // lines that are wider than the list
    Await(L"the patch is not listed", [this] { return BoxLines().size() == 2; });
    SelectPatch(0);
    Browse(folder / L"files\\gone.msp");
    Answer(ErrorBox(ResourceText(IDS_PATCH_UNUSABLE, folder / L"files\\gone.msp")), IDOK);
    ShowAndGoBack();
    WithChoice(-1);
    WithAnswer(12002, 0);
    Look([this] {
        RedrawWindow(Page(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        answer.ErrorCode = 0;
        answer.PatchCount = 0;
    });
    Act();
    AwaitStage(L"up to date");
    Look([this] {
        for (const int id :
             {IDC_PATCH_PROGRESS, IDC_PATCH_LINK, IDC_PATCH_DOWNLOADED_MARK, IDC_PATCH_FAILURE_MARK}) {
            ShowWindow(Control(id).GetWindow(), SW_SHOW);
        }
        RedrawWindow(Page(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    });
    ShowAndGoBack();
    WithAnswer(ANSWER_UNSET, 0);
    identity.Empty();
    WithListed({});
    WithChoice(-1);
    queries.clear();
    libraryCalls.clear();
    host.log.Clear();
    RemoveTree(folder / L"deployment\\ServicePacks");
    CountFromHere();
}

void PatchPage::TearDown()
{
    g_picker.reset();
    m_database.reset();
    AllowForDrawingContexts();
    OnlinePage::TearDown();
    UseLibrary(L"Kmd32.dll", nullptr);
    UseLibrary(L"FixMgr.dll", nullptr);
    s_current = nullptr;
}

// ---- the world

void PatchPage::MakePackage()
{
    ASSERT_EQ(MsiOpenDatabaseW(PackageFile(), MSIDBOPEN_CREATE, m_database.put()), 0u);
    RunStatement(m_database.get(),
                 L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL "
                 L"LOCALIZABLE PRIMARY KEY `Property`)");
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"ProductCode", PATCHED_PRODUCT}, {L"ProductName", L"Zolt Drafting"}, {L"ProductVersion", L"27.0.0"},
        {L"ProductLanguage", L"1033"},     {L"Manufacturer", L"Velkmora"},     {L"MEDIAKMD32LOC", L"kmd"}};
    for (const auto& [name, value] : rows) {
        EXPECT_TRUE(WriteProperty(m_database.get(), name, value));
    }
    SetSummary(m_database.get(), L"x64;1033", L"{5C0FFEE0-0000-4000-8000-0000000000B1}", 500, 0);
    ASSERT_EQ(MsiDatabaseCommit(m_database.get()), 0u);
    // As with the host: what the page changes is a copy, and the installer judges by the media's package.
    m_database.reset();
    ASSERT_TRUE(CopyFileW(PackageFile(), folder / L"zolt.msi", TRUE));
    ASSERT_EQ(MsiOpenDatabaseW(folder / L"zolt.msi", MSIDBOPEN_TRANSACT, m_database.put()), 0u);
}

void PatchPage::SetPackageProperty(const wchar_t* name, const CString& value)
{
    // The table holds no empty values: writing one removes the row, and is refused.
    EXPECT_EQ(WriteProperty(m_database.get(), name, value), !value.IsEmpty());
}

void PatchPage::WithAnswer(unsigned int errorCode, int patchCount)
{
    identity = L"zolt-identity";
    answer = {};
    SetField(answer.PatchName, L"Zolt 2027 Service Pack 1");
    SetField(answer.PatchSize, L"2099200");
    SetField(answer.ReadmeUrl, L"http://127.0.0.1:9/zolt/readme.html");
    SetField(answer.DownloadUrl, L"http://127.0.0.1:9/zolt/ZoltSP1.msp");
    answer.ErrorCode = errorCode;
    answer.PatchCount = patchCount;
}

void PatchPage::WithOffer(const CString& address)
{
    WithAnswer(0, 1);
    SetField(answer.DownloadUrl, address);
}

void PatchPage::WithDownloadedPatch(const CString& file)
{
    product.m_bPatchDownloaded = true;
    product.patchPath = file;
    product.patchName = L"Zolt 2027 Service Pack 1";
    product.patchReadme = L"http://127.0.0.1:9/zolt/readme.html";
    product.patchSize = L"2050 kb";
}

CString PatchPage::AddPatch(const wchar_t* name, int number, const CString& displayName)
{
    CString code;
    code.Format(L"{5C0FFEE0-0000-4000-8000-0000000001%02d}", number);
    return AddPatch(name, {PATCHED_PRODUCT, code, L"", displayName, !displayName.IsEmpty()});
}

CString PatchPage::AddPatch(const wchar_t* name, const PatchForm& form)
{
    const CString path = folder / L"files\\" + name;
    DeleteFileW(path);
    CInstallerHandle database;
    EXPECT_EQ(MsiOpenDatabaseW(path, reinterpret_cast<const wchar_t*>(CREATE_PATCH), database.put()), 0u);
    if (form.bMetadata) {
        RunStatement(database.get(),
                     L"CREATE TABLE `MsiPatchMetadata` (`Company` CHAR(72), `Property` CHAR(72) NOT NULL, "
                     L"`Value` LONGCHAR NOT NULL LOCALIZABLE PRIMARY KEY `Company`, `Property`)");
        const std::pair<const wchar_t*, const CString&> rows[] = {{L"TargetProductName", form.targetName},
                                                                  {L"DisplayName", form.displayName}};
        for (const auto& [property, value] : rows) {
            if (!value.IsEmpty()) {
                RunStatement(database.get(),
                             CString(L"INSERT INTO `MsiPatchMetadata` (`Property`,`Value`) VALUES ('") +
                                 property + L"','" + value + L"')");
            }
        }
    }
    SetSummary(database.get(), form.targets, form.code, 200, 4);
    EXPECT_EQ(MsiDatabaseCommit(database.get()), 0u);
    return path;
}

void PatchPage::UseLibrary(const wchar_t* name, const wchar_t* variant)
{
    const CString beside = ProgramFolder() + name;
    DeleteFileW(beside);
    if (!variant) {
        return;
    }
    CString source = ProgramFolder() + L"patch_libraries\\";
    if (*variant) {
        source += CString(variant) + L"\\";
    }
    ASSERT_TRUE(CopyFileW(source + name, beside, FALSE))
        << Utf8(source) << Utf8(name) << ": " << GetLastError();
}

// ---- the libraries

void PatchPage::NotePreparation()
{
    s_current->libraryCalls.push_back(L"setMRFlag");
}

BSTR PatchPage::NoteIdentity(BSTR configFile)
{
    s_current->libraryCalls.push_back(CString(L"getKMDValue ") + configFile);
    return SysAllocString(s_current->identity);
}

void PatchPage::NoteQuery(std::intptr_t zero, BSTR* catalogKey, BSTR* identity, BSTR* address, BSTR* listFile,
                          PatchInfoRecord* record)
{
    wchar_t current[MAX_PATH + 1] = L"";
    GetCurrentDirectoryW(ARRAYSIZE(current), current);
    s_current->queries.push_back({zero, *catalogKey, *identity, *address, *listFile, current});
    if (s_current->onQuery) {
        s_current->onQuery(*record);
    } else {
        *record = s_current->answer;
    }
}

unsigned int PatchPage::NoteCheck(BSTR* listFile, BSTR* file)
{
    s_current->libraryCalls.push_back(CString(L"CheckPatchFile ") + *file);
    return s_current->onCheck ? s_current->onCheck(*listFile, *file) : 0;
}

// ---- steps

void PatchPage::Choose(int radio)
{
    SetChecked(radio, true);
}

void PatchPage::AwaitStage(const wchar_t* stage)
{
    const CString words = CString(L"the page does not show the stage ") + stage;
    Await(host.Keep(words), [this, stage] { return Stage() == stage; });
}

void PatchPage::Browse(const CString& file)
{
    Look([file] {
        g_picked = file;
        g_picker.reset();
        g_picker = std::make_unique<CImportRedirect>(L"RolloutUi.dll", "GetOpenFileNameW",
                                                     reinterpret_cast<void*>(AnswerPicker));
        ASSERT_TRUE(g_picker->IsInPlace());
    });
    Press(IDC_PATCH_BROWSE);
}

void PatchPage::SelectPatch(int line)
{
    SelectEntry(IDC_PATCH_LIST, line);
}

void PatchPage::AnswerAtEntry(const CString& text, UINT icon)
{
    script.Add(L"answer \"" + text + L"\" at the page's entry", [this, text, icon] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        if (!box) {
            return StepOutcome::NotYet(L"no message box is up");
        }
        EXPECT_EQ(box->text, text);
        EXPECT_EQ(box->icon, icon);
        EXPECT_EQ(box->buttons, static_cast<UINT>(MB_OK));
        EXPECT_EQ(box->title, CString(host.manager.m_strProductName));
        EXPECT_TRUE(box->owner && (GetDlgItem(box->owner, IDC_PATCH_LIST) || GetParam() == Shape::Tab))
            << "the box has another owner";
        script.AddNext(L"see the box go", [window = box->window] {
            return Until(!IsWindow(window) || !IsWindowVisible(window), L"the box is still up");
        });
        return AnswerMessageBox(*box, IDOK);
    });
    script.Start(); // a tab page is made before its steps are played
}

void PatchPage::ExpectList(const Lines& lines)
{
    Look([this, lines] { EXPECT_EQ(BoxLines(), lines); });
}

// ---- looks

bool PatchPage::Has(int id, LONG style) const
{
    return (GetWindowLongW(Control(id).GetWindow(), GWL_STYLE) & style) != 0;
}

CString PatchPage::Form(int id) const
{
    CString form = IsShown(id) ? L"S" : L"H";
    form += Control(id).IsEnabled() ? L"E" : L"D";
    switch (id) {
    case IDC_PATCH_NONE:
    case IDC_PATCH_OFFERED:
    case IDC_PATCH_LISTED:
    case IDC_PATCH_APPEND:
    case IDC_PATCH_MERGE:
        form += IsChecked(id) ? L"C" : L"U";
    }
    return form;
}

CString PatchPage::Stage() const
{
    if (!IsShown(IDC_PATCH_OFFERED)) {
        return L"no service";
    }
    if (IsShown(IDC_PATCH_UP_TO_DATE_MARK)) {
        return L"up to date";
    }
    if (IsShown(IDC_PATCH_FAILURE)) {
        return Text(IDC_PATCH_FAILURE) == ResourceText(IDS_PATCH_TIMED_OUT) ? L"timed out"
                                                                            : L"connect failed";
    }
    if (IsShown(IDC_PATCH_PROGRESS)) {
        return L"downloading";
    }
    if (IsShown(IDC_PATCH_DOWNLOADED_MARK)) {
        return L"downloaded";
    }
    return IsShown(IDC_PATCH_OFFER) ? L"available" : L"not drawn";
}

#include "patches/service_pack_page.h"

#include "base/path_text.h"
#include "frame/error_text.h"
#include "frame/file_path.h"
#include "frame/page_entry.h"
#include "frame/page_rules.h"
#include "frame/resource_text.h"
#include "frame/wait_cursor.h"
#include "include/product.h"
#include "include/rollout_ui.h"
#include "patches/aside.h"
#include "patches/patch_extraction.h"
#include "patches/patch_file_dialog.h"
#include "patches/patch_text_rules.h"

#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>

namespace {

constexpr const wchar_t* DOWNLOAD_FOLDER = L"ServicePacks\\";
constexpr int CHOICE_UNSET = -1;
constexpr int CHOICE_NONE = 0;
constexpr int CHOICE_OFFERED = 1;
constexpr int CHOICE_LISTED = 2;

int StoredChoice(PatchChoice choice)
{
    switch (choice) {
    case PatchChoice::None:
        return CHOICE_NONE;
    case PatchChoice::Offered:
        return CHOICE_OFFERED;
    default:
        return CHOICE_LISTED;
    }
}

// A text of the record, whether or not it ends in a zero.
CString RecordText(const wchar_t (&text)[PATCH_INFO_CHARACTERS])
{
    return CString(text, static_cast<int>(::wcsnlen(text, PATCH_INFO_CHARACTERS)));
}

} // namespace

template <class T, template <class> class Impl>
PatchDownload CServicePackPageBase<T, Impl>::s_download;

template <class T, template <class> class Impl>
CServicePackPageBase<T, Impl>::CServicePackPageBase(const PageContext* context)
    : Impl<T>(context), m_catalog(*context->pSetupManager, *context->pProduct, context->hDatabase),
      m_patches(*context->pSetupManager, *context->pProduct)
{
}

// ---- init ----

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnInitDialog()
{
    s_download.PageWindow = this->m_hWnd;
    this->InitFrame();
    m_view.Bind(this->m_hWnd);
    m_patches.Bind(this->m_hWnd);
    m_patches.LoadFromProduct();
    InitWay();
    m_view.LoadMarks(this->m_pSetupManager->GetWizTextPath());
    if (m_view.Choice() == PatchChoice::Unmade && this->m_pProduct->m_patchFlag == CHOICE_UNSET) {
        m_view.Button(IDC_PATCH_NONE).SetCheck(BST_CHECKED);
    }
    if (this->m_pProduct->m_bPatchDownloaded) {
        ShowDownloadedPatch();
    } else if (m_catalog.ResolveCatalogIdentity()) {
        AskServiceAtStart();
    } else {
        ShowStage(StageNoService);
    }
    this->FocusAtStart(FirstControl());
    this->RunHooks(this->m_postInitHooks);
    return FALSE;
}

// How the patches go in.
template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::InitWay()
{
    const PatchWay way = WayAtEntry(this->m_pProduct->GetMsiPatchState(), this->m_pProduct->GetPatchState());
    m_view.Button(IDC_PATCH_APPEND).SetCheck(way.isMerge ? BST_UNCHECKED : BST_CHECKED);
    m_view.Button(IDC_PATCH_MERGE).SetCheck(way.isMerge ? BST_CHECKED : BST_UNCHECKED);
    if (way.isLocked) {
        m_view.Button(IDC_PATCH_APPEND).EnableWindow(FALSE);
        m_view.Button(IDC_PATCH_MERGE).EnableWindow(FALSE);
    }
    if (way.isRemovalLocked || m_patches.IsEmpty()) {
        m_view.Button(IDC_PATCH_REMOVE).EnableWindow(FALSE);
    }
}

// It was fetched earlier in this run: the service isn't asked again.
template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::ShowDownloadedPatch()
{
    DownloadedMspPath = this->m_pProduct->GetDownloadedMSPPath();
    m_catalog.DownloadDir = FolderOfFile(DownloadedMspPath);
    m_view.ShowPatch(this->m_pProduct->GetDownloadedPatchName(),
                     this->m_pProduct->GetDownloadedPatchReadmeURL(),
                     this->m_pProduct->GetDownloadedPatchSize());
    ShowStage(StageDownloaded);
}

template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::AskServiceAtStart()
{
    if (!PrepareDownloadFolder()) {
        return; // silent: the page opens as its template has it
    }
    const bool isFetched = m_catalog.FetchPatchCatalog(this->m_hWnd, s_download.DownloadTargetPath);
    ShowStage(StageAtEntry(isFetched, m_catalog.Answer()));
}

template <class T, template <class> class Impl>
bool CServicePackPageBase<T, Impl>::PrepareDownloadFolder()
{
    const CString folder = IsInDeploymentFlow() ? this->m_pSetupManager->m_strDeploymentFolder
                                                : JoinPath(this->m_pSetupManager->m_strResourceFolder,
                                                           this->m_pProduct->m_strFolder);
    m_catalog.DownloadDir = JoinPath(folder, DOWNLOAD_FOLDER);
    return ::PathFileExistsW(m_catalog.DownloadDir) ||
           ::SHCreateDirectoryExW(nullptr, m_catalog.DownloadDir, nullptr) == ERROR_SUCCESS;
}

// Next is the way on when nothing can be chosen.
template <class T, template <class> class Impl>
int CServicePackPageBase<T, Impl>::FirstControl() const
{
    switch (m_view.Choice()) {
    case PatchChoice::None:
        return IDC_PATCH_NONE;
    case PatchChoice::Offered:
        return IDC_PATCH_OFFERED;
    case PatchChoice::Listed:
        return IDC_PATCH_LISTED;
    case PatchChoice::Unmade:
        break;
    }
    return IDC_NEXT;
}

// ---- stages ----

template <class T, template <class> class Impl>
bool CServicePackPageBase<T, Impl>::IsInDeploymentFlow() const
{
    return IsDeploymentMode(this->m_pSetupManager->m_setupMode);
}

template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::ShowStage(PatchStage stage)
{
    const HWND focus = ::GetFocus();
    SetStage(stage);
    m_isShowingStage = true;
    RenderStage();
    UpdateChoices(false);
    this->RestoreFocus(focus);
    m_isShowingStage = false;
}

template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::RenderStage()
{
    const CPersistentWaitCursor waitCursor;
    const PatchStage stage = Stage();
    m_view.Apply(ControlsBeforeStage(), IsInDeploymentFlow());
    this->EnableLeaving(stage != StageDownloading);
    m_view.Apply(ControlsOfStage(stage), IsInDeploymentFlow());
    switch (stage) {
    case StageNoService:
        m_view.CloseServicePart();
        break;
    case StageConnectFailed:
    case StageTimedOut:
        RenderFailure();
        break;
    case StageAvailable:
        RenderOffer();
        break;
    case StageUpToDate:
        m_view.ShowUpToDate();
        return;
    default:
        break;
    }
    m_view.Apply(ControlsOfChoice(this->m_pProduct->m_patchFlag), IsInDeploymentFlow());
}

// The failure is on show, and the choice of what can't be had is undone.
template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::RenderFailure()
{
    if (this->m_pProduct->m_patchFlag == CHOICE_OFFERED) {
        this->m_pProduct->SetIncludeSP(CHOICE_UNSET);
    }
    if (this->m_pProduct->m_patchFlag == CHOICE_UNSET) {
        m_view.Button(IDC_PATCH_OFFERED).SetCheck(BST_UNCHECKED);
        m_view.Button(IDC_PATCH_NONE).SetCheck(BST_CHECKED);
    }
    SetStage(StageRetryOffered);
}

template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::RenderOffer()
{
    const PatchInfoRecord& offer = m_catalog.PatchInfo;
    CString size;
    size.Format(L"%d kb", SizeInKilobytes(RecordText(offer.PatchSize)));
    m_view.ShowPatch(RecordText(offer.PatchName), RecordText(offer.ReadmeUrl), size);
    this->m_pProduct->SetDownloadedPatchName(RecordText(offer.PatchName));
    this->m_pProduct->SetDownloadedPatchReadmeURL(RecordText(offer.ReadmeUrl));
    this->m_pProduct->SetDownloadedPatchSize(size);
    if (this->m_pProduct->m_patchFlag == CHOICE_UNSET) {
        this->m_pProduct->SetIncludeSP(CHOICE_OFFERED);
        m_view.Button(IDC_PATCH_OFFERED).SetCheck(BST_CHECKED);
    }
}

template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::UpdateChoices(bool fromUser)
{
    const CPersistentWaitCursor waitCursor;
    // A deployment that is modified keeps what its stage and its locks have left of the two, even where that is nothing.
    if (Stage() != StageUpToDate &&
        this->m_pSetupManager->m_setupMode != Setup::SETUPMODE_MODIFY_DEPLOYMENT) {
        m_view.Button(IDC_PATCH_MERGE).EnableWindow();
        m_view.Button(IDC_PATCH_APPEND).EnableWindow();
    }
    const PatchChoice choice = m_view.Choice();
    m_view.Apply(ControlsOfRadio(choice), IsInDeploymentFlow());
    if (const std::optional<bool> enabled = IsActionEnabled(choice, Stage())) {
        m_view.Button(IDC_PATCH_ACTION).EnableWindow(*enabled);
    }
    if (fromUser && choice != PatchChoice::Unmade) {
        this->m_pProduct->SetIncludeSP(StoredChoice(choice));
    }
    if (!IsInDeploymentFlow()) {
        for (const int control : {IDC_PATCH_WAY_HEADING, IDC_PATCH_APPEND, IDC_PATCH_MERGE}) {
            m_view.Button(control).ShowWindow(SW_HIDE);
        }
    }
    if (Stage() == StageRetryOffered || Stage() == StageConnectFailed || Stage() == StageTimedOut) {
        m_view.Button(IDC_PATCH_OFFERED).SetCheck(BST_UNCHECKED);
        m_view.Button(IDC_PATCH_OFFERED).EnableWindow(FALSE);
    }
}

// ---- download ----

template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::AskAgain()
{
    const CPersistentWaitCursor waitCursor;
    // Of the result only what the record says counts here.
    static_cast<void>(m_catalog.FetchPatchCatalog(this->m_hWnd, s_download.DownloadTargetPath));
    ShowStage(StageAtRetry(m_catalog.Answer()));
}

template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::StartDownload()
{
    s_download.DownloadPercent = 0;
    m_view.SetProgress(0);
    StartDownloadRun(s_download, RecordText(m_catalog.PatchInfo.DownloadUrl));
    const HWND focus = ::GetFocus();
    SetStage(StageDownloading);
    m_isShowingStage = true;
    RenderStage();
    this->RestoreFocus(focus);
    m_isShowingStage = false;
}

template <class T, template <class> class Impl>
bool CServicePackPageBase<T, Impl>::ExtractDownloadedPatch()
{
    const CPersistentWaitCursor waitCursor;
    const CString downloaded = s_download.DownloadTargetPath;
    if (!IsAnnounced(downloaded)) {
        return false;
    }
    const CString patch = PatchFileOf(downloaded, m_catalog.DownloadDir);
    if (patch.IsEmpty()) {
        return true; // neither a patch nor a program: whatever was there before is used
    }
    DownloadedMspPath = patch;
    if (!IsSelfExtracting(downloaded)) {
        return true;
    }
    if (!this->IsWindow()) {
        return false; // the page went while the file was read
    }
    ExtractPatch(downloaded, patch);
    // A program that wrote nothing is found out when the page is left.
    return !::PathFileExistsW(patch) || IsAnnounced(patch);
}

template <class T, template <class> class Impl>
bool CServicePackPageBase<T, Impl>::IsAnnounced(const CString& file)
{
    unsigned int error = 0;
    RunAside([&] { error = m_catalog.CheckDownloadedFile(file); });
    if (error != 0) {
        RefuseDownload(file, error);
    }
    return error == 0;
}

// Nothing of it stays, and nothing of another product's download goes.
template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::RefuseDownload(const CString& file, unsigned int error)
{
    for (const CString& path : {file, s_download.DownloadTargetPath}) {
        if (IsSameOrBelow(path, m_catalog.DownloadDir)) {
            ::DeleteFileW(path);
        }
    }
    if (!this->IsWindow()) {
        return;
    }
    if (error == ERROR_CRC || error == ERROR_NOT_FOUND || error == ERROR_INVALID_DATA) {
        this->ShowPageBox(FormatResource(IDS_PATCH_CHANGED, file), MB_OK | MB_ICONERROR);
    } else {
        ShowErrorBox(error, file, this->ProductName(), this->m_hWnd);
    }
}

// ---- leaving ----

template <class T, template <class> class Impl>
bool CServicePackPageBase<T, Impl>::MayLeave()
{
    if (Stage() == StageDownloading) {
        // The handle was closed when the thread had started, so this ends nothing. The page can't be left in this stage.
        ::TerminateThread(s_download.DownloadThread, 0);
    }
    if (m_view.Choice() == PatchChoice::Offered && Stage() != StageDownloaded) {
        this->ShowPageBox(LoadResourceString(IDS_PATCH_NOT_DOWNLOADED), MB_OK | MB_ICONWARNING);
        return false;
    }
    return true;
}

template <class T, template <class> class Impl>
bool CServicePackPageBase<T, Impl>::ValidateAndStore()
{
    if (!MayLeave()) {
        return false;
    }
    const PatchChoice choice = m_view.Choice();
    if (choice == PatchChoice::Offered && !ListDownloadedPatch()) {
        return false;
    }
    const PatchesOnPage page = {choice == PatchChoice::None, m_patches.IsEmpty(),
                                m_view.Button(IDC_PATCH_MERGE).IsChecked()};
    if (const auto state = StateToStore(page, this->m_pProduct->GetPatchState())) {
        this->m_pProduct->SetPatchState(*state);
    }
    if (choice != PatchChoice::None) {
        m_patches.StoreInProduct();
    }
    return true;
}

// The downloaded patch in place of the list. False when it isn't any more what was downloaded.
template <class T, template <class> class Impl>
bool CServicePackPageBase<T, Impl>::ListDownloadedPatch()
{
    if (m_catalog.HasPatchList() && ::PathFileExistsW(DownloadedMspPath)) {
        // The page waits: nothing may be chosen anew while it is left.
        const unsigned int error = m_catalog.CheckDownloadedFile(DownloadedMspPath);
        if (error != 0) {
            RefuseDownload(DownloadedMspPath, error);
            OfferAnotherDownload();
            return false;
        }
    }
    m_patches.ReplaceBy(DownloadedMspPath);
    return true;
}

// A page that opened on a downloaded patch hasn't asked who the product is to the service.
template <class T, template <class> class Impl>
void CServicePackPageBase<T, Impl>::OfferAnotherDownload()
{
    this->m_pProduct->m_bPatchDownloaded = false;
    m_view.Button(IDC_PATCH_DOWNLOADED).ShowWindow(SW_HIDE); // no other stage comes behind the downloaded one
    const bool mayAsk = m_catalog.ResolveCatalogIdentity() && PrepareDownloadFolder();
    ShowStage(mayAsk ? StageConnectFailed : StageNoService);
}

// ---- messages ----

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled)
{
    AbandonDownload(s_download);
    handled = FALSE;
    return 0;
}

// The brush is the frame's.
template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnLabelColor(UINT, WPARAM wParam, LPARAM lParam, BOOL& handled)
{
    const auto dc = reinterpret_cast<HDC>(wParam);
    const int control = ::GetDlgCtrlID(reinterpret_cast<HWND>(lParam));
    if (control == IDC_PATCH_OFFER && Stage() == StageUpToDate) {
        m_view.ColorUpToDate(dc);
    } else if (control == IDC_PATCH_FAILURE) {
        m_view.ColorFailure(dc);
    }
    handled = FALSE;
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnPatchProgress(UINT, WPARAM, LPARAM run, BOOL&)
{
    if (IsOfLastRun(s_download, run)) {
        m_view.SetProgress(s_download.DownloadPercent);
    }
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnPatchCancelled(UINT, WPARAM, LPARAM run, BOOL&)
{
    if (IsOfLastRun(s_download, run)) {
        ShowStage(StageAvailable);
    }
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnPatchFinished(UINT, WPARAM, LPARAM run, BOOL&)
{
    if (!IsOfLastRun(s_download, run)) {
        return 0;
    }
    SetStage(StageDownloaded);
    WaitForDownloadEnd(s_download); // until its file is closed
    const bool isGood = this->IsWindow() && ExtractDownloadedPatch();
    if (!this->IsWindow()) {
        return 0;
    }
    ShowStage(isGood ? StageDownloaded : StageConnectFailed);
    if (isGood) {
        this->m_pProduct->SetDownloadedMSPPath(DownloadedMspPath);
        this->m_pProduct->m_bPatchDownloaded = true;
    }
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnPatchFailed(UINT, WPARAM code, LPARAM run, BOOL&)
{
    if (!IsOfLastRun(s_download, run)) {
        return 0;
    }
    SetStage(StageConnectFailed);
    const CString reason = code ? MessageForCode(static_cast<DWORD>(code)) : CString();
    if (!reason.IsEmpty()) {
        this->ShowPageBox(reason, MB_OK | MB_ICONERROR);
    }
    if (this->IsWindow()) {
        ShowStage(Stage());
    }
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnPatchTimedOut(UINT, WPARAM, LPARAM run, BOOL&)
{
    if (IsOfLastRun(s_download, run)) {
        ShowStage(StageTimedOut);
    }
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnGetPath(UINT, WPARAM line, LPARAM buffer, BOOL&)
{
    const CString path = m_patches.PathAt(line);
    ::lstrcpynW(reinterpret_cast<wchar_t*>(buffer), path, PATCH_PATH_CAPACITY);
    return std::min(path.GetLength(), PATCH_PATH_CAPACITY - 1);
}

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnBrowse(WORD, WORD, HWND, BOOL&)
{
    CString file;
    if (BrowseForPatch(this->m_hWnd, file)) {
        m_patches.Admit(file);
    }
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnRemove(WORD, WORD, HWND, BOOL&)
{
    const HWND focus = ::GetFocus();
    m_patches.RemoveSelected();
    m_view.Button(IDC_PATCH_REMOVE).EnableWindow(!m_patches.IsEmpty());
    this->RestoreFocus(focus);
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnAction(WORD, WORD, HWND, BOOL&)
{
    switch (MeaningOfAction(Stage())) {
    case ActionMeaning::AskAgain:
        AskAgain();
        break;
    case ActionMeaning::Download:
        StartDownload();
        break;
    case ActionMeaning::Cancel:
        SetStage(StageCancelRequested);
        break;
    case ActionMeaning::Nothing:
        break;
    }
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnChoice(WORD, WORD, HWND, BOOL&)
{
    if (!m_isShowingStage) { // a radio that gets the focus clicks itself
        UpdateChoices(true);
    }
    return 0;
}

// A patch that is part of the image can't be removed from it.
template <class T, template <class> class Impl>
LRESULT CServicePackPageBase<T, Impl>::OnListSelection(WORD, WORD, HWND, BOOL&)
{
    const CString selected = m_patches.SelectedPath();
    if (!selected.IsEmpty()) {
        m_view.Button(IDC_PATCH_REMOVE).EnableWindow(!m_patches.IsMerged(selected));
    }
    return 0;
}

int ServicePackDialog(PageContext* context)
{
    return ShowWizardPage<CServicePackDialog>(context);
}

CTabPage ServicePackPage(PageContext* context)
{
    return CreateTabPage<CServicePackPage>(context);
}

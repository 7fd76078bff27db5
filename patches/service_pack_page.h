// The page of a product's service pack.
#pragma once

#include "frame/tab_page.h"
#include "frame/wizard_page.h"
#include "include/patch_list_messages.h"
#include "patches/patch_catalog.h"
#include "patches/patch_download.h"
#include "patches/patch_list.h"
#include "patches/patch_stage_view.h"

// Whether patches go along with the product: none, the one that the update service offers and this page downloads, or files
// that the administrator selects; and whether they are appended to the deployment or merged into its image. The choice among
// the three is stored when it is made, the list and the way when the page is left by Next.
template <class T, template <class> class Impl>
class CServicePackPageBase : public Impl<T>
{
public:
    explicit CServicePackPageBase(const PageContext* context);

    BEGIN_MSG_MAP(CServicePackPageBase)
    MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
    MESSAGE_HANDLER(WM_CTLCOLORSTATIC, OnLabelColor)
    MESSAGE_HANDLER(WM_PATCH_PROGRESS, OnPatchProgress)
    MESSAGE_HANDLER(WM_PATCH_CANCELLED, OnPatchCancelled)
    MESSAGE_HANDLER(WM_PATCH_FINISHED, OnPatchFinished)
    MESSAGE_HANDLER(WM_PATCH_FAILED, OnPatchFailed)
    MESSAGE_HANDLER(WM_PATCH_TIMEDOUT, OnPatchTimedOut)
    MESSAGE_HANDLER(PATCH_MESSAGE_GET_PATH, OnGetPath)
    COMMAND_HANDLER(IDC_PATCH_BROWSE, BN_CLICKED, OnBrowse)
    COMMAND_HANDLER(IDC_PATCH_REMOVE, BN_CLICKED, OnRemove)
    COMMAND_HANDLER(IDC_PATCH_ACTION, BN_CLICKED, OnAction)
    COMMAND_HANDLER(IDC_PATCH_NONE, BN_CLICKED, OnChoice)
    COMMAND_HANDLER(IDC_PATCH_OFFERED, BN_CLICKED, OnChoice)
    COMMAND_HANDLER(IDC_PATCH_LISTED, BN_CLICKED, OnChoice)
    COMMAND_HANDLER(IDC_PATCH_LIST, LBN_SELCHANGE, OnListSelection)
    CHAIN_MSG_MAP(Impl<T>)
    END_MSG_MAP()

    LRESULT OnInitDialog() override;
    bool ValidateAndStore() override;
    bool StoreWithoutValidation() override { return MayLeave(); }

private:
    // ---- init
    void InitWay();
    void ShowDownloadedPatch();
    void AskServiceAtStart();
    [[nodiscard]] bool PrepareDownloadFolder();
    [[nodiscard]] int FirstControl() const;

    // ---- stages
    [[nodiscard]] PatchStage Stage() const { return s_download.Stage(); }
    void SetStage(PatchStage stage) { s_download.PageStage = stage; }
    void ShowStage(PatchStage stage); // sets it, renders it and applies the choice
    void RenderStage();
    void RenderFailure();
    void RenderOffer();
    void UpdateChoices(bool fromUser);
    [[nodiscard]] bool IsInDeploymentFlow() const;

    // ---- download
    void AskAgain();
    void StartDownload();
    // False when the file, or the patch that came out of it, isn't what the service announced.
    [[nodiscard]] bool ExtractDownloadedPatch();
    // False, after a message, when it isn't what the service announced; it is removed then, and what it came out of too.
    [[nodiscard]] bool IsAnnounced(const CString& file);
    // `error`: why the file can't be used.
    void RefuseDownload(const CString& file, unsigned int error);

    // ---- leaving
    [[nodiscard]] bool MayLeave();
    [[nodiscard]] bool ListDownloadedPatch();
    void OfferAnotherDownload();

    // ---- messages
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnLabelColor(UINT, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnPatchProgress(UINT, WPARAM, LPARAM run, BOOL&);
    LRESULT OnPatchCancelled(UINT, WPARAM, LPARAM run, BOOL&);
    LRESULT OnPatchFinished(UINT, WPARAM, LPARAM run, BOOL&);
    LRESULT OnPatchFailed(UINT, WPARAM code, LPARAM run, BOOL&);
    LRESULT OnPatchTimedOut(UINT, WPARAM, LPARAM run, BOOL&);
    LRESULT OnGetPath(UINT, WPARAM line, LPARAM buffer, BOOL&);
    LRESULT OnBrowse(WORD, WORD, HWND, BOOL&);
    LRESULT OnRemove(WORD, WORD, HWND, BOOL&);
    LRESULT OnAction(WORD, WORD, HWND, BOOL&);
    LRESULT OnChoice(WORD, WORD, HWND, BOOL&);
    LRESULT OnListSelection(WORD, WORD, HWND, BOOL&);

    static PatchDownload s_download; // of this kind of page, and of one page at a time

    CPatchCatalog m_catalog;
    CPatchList m_patches;
    CPatchStageView m_view;
    bool m_isShowingStage = false;
    CString DownloadedMspPath; // full path of the patch that the deployment is to use
};

class CServicePackDialog : public CServicePackPageBase<CServicePackDialog, CWizardPageImpl>
{
public:
    enum
    {
        IDD = IDD_SERVICE_PACK
    };
    using CServicePackPageBase::CServicePackPageBase;
};

class CServicePackPage : public CServicePackPageBase<CServicePackPage, CTabPageImpl>
{
public:
    enum
    {
        IDD = IDD_SERVICE_PACK_TAB
    };
    using CServicePackPageBase::CServicePackPageBase;
};

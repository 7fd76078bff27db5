// The controls of the service pack page as its stages show them: a window without the page's decisions.
#pragma once

#include "patches/patch_stage_rules.h"
#include "slimhtml/slim_html.h"
#include "window/controls.h"
#include "window/drawing_handles.h"
#include "window/hyper_link.h"

#include <span>

class CPatchStageView
{
public:
    // Once, when the page's controls are there.
    void Bind(HWND page);
    // Loads the pictures beside the texts of the stages; the folder ends in a backslash.
    void LoadMarks(const CString& pictureFolder);

    // Does what the rows ask; those of the deployment flow alone only within it.
    void Apply(std::span<const StageControl> controls, bool isDeploymentFlow) const;

    // Without an offer: what stands below the service's part moves to its place.
    void CloseServicePart() const;
    // The stage that needs nothing: the label stands beside its mark, in bold type.
    void ShowUpToDate();
    // Name, readme address and size of the patch that is offered or downloaded.
    void ShowPatch(const CString& name, const CString& readme, const CString& size);

    [[nodiscard]] PatchChoice Choice() const;
    [[nodiscard]] CButton Button(int id) const { return CButton(::GetDlgItem(m_page, id)); }
    void SetProgress(int percent) const;

    // The colors of the labels that have some of their own; others stay untouched. The context belongs to the system's message.
    static void ColorUpToDate(HDC dc);
    static void ColorFailure(HDC dc);

private:
    void BindMark(CSlimHtmlCtrl& mark, int control, const CString& picture) const;

    HWND m_page = nullptr;
    CHyperLink m_link;
    CSlimHtmlCtrl m_upToDateMark;
    CSlimHtmlCtrl m_downloadedMark;
    CSlimHtmlCtrl m_failureMark;
    CFontOwner m_upToDateFont;
};

#include "patches/patch_stage_view.h"

#include "frame/resource_text.h"
#include "include/resource_ids.h"
#include "patches/patch_text_rules.h"

#include <cwchar>

namespace {

constexpr const wchar_t* FAILURE_PICTURE = L"WizText\\InfoLink\\Images\\info.gif";
constexpr const wchar_t* SUCCESS_PICTURE = L"WizText\\InfoLink\\Images\\SuccessCheckMark.gif";
constexpr int MARK_MARGIN = 10;        // of the label's own; the text's margins of 0 win over it
constexpr int UP_TO_DATE_DISTANCE = 2; // pixels between mark and label
constexpr COLORREF UP_TO_DATE_COLOR = 0x0F9F3F;
constexpr COLORREF FAILURE_COLOR = 0x0000FF;
constexpr COLORREF FAILURE_BACKGROUND = 0xFA3CFA; // never seen: the background is transparent

RenderFormat MarkFormat()
{
    RenderFormat format;
    format.fTextScale = 1.0f;
    format.clrText = RGB(255, 255, 255);
    format.bParentBackground = TRUE;
    format.nWrap = 1;
    format.nMarginHorizontal = MARK_MARGIN;
    format.nMarginVertical = MARK_MARGIN;
    return format;
}

void MoveControl(HWND control, int right, int down)
{
    const RECT place = CWindow(control).GetRectInParent();
    ::SetWindowPos(control, nullptr, place.left + right, place.top + down, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void ApplyDeeds(CButton control, unsigned int deeds)
{
    if (deeds & (STAGE_ENABLE | STAGE_DISABLE)) {
        control.EnableWindow((deeds & STAGE_ENABLE) != 0);
    }
    if (deeds & (STAGE_SHOW | STAGE_HIDE)) {
        control.ShowWindow(deeds & STAGE_SHOW ? SW_SHOWNA : SW_HIDE);
    }
    if (deeds & (STAGE_CHECK | STAGE_UNCHECK)) {
        control.SetCheck(deeds & STAGE_CHECK ? BST_CHECKED : BST_UNCHECKED);
    }
}

} // namespace

void CPatchStageView::Bind(HWND page)
{
    m_page = page;
    m_link.SubclassWindow(::GetDlgItem(page, IDC_PATCH_LINK));
}

void CPatchStageView::LoadMarks(const CString& pictureFolder)
{
    BindMark(m_failureMark, IDC_PATCH_FAILURE_MARK, pictureFolder + FAILURE_PICTURE);
    BindMark(m_downloadedMark, IDC_PATCH_DOWNLOADED_MARK, pictureFolder + SUCCESS_PICTURE);
    BindMark(m_upToDateMark, IDC_PATCH_UP_TO_DATE_MARK, pictureFolder + SUCCESS_PICTURE);
}

void CPatchStageView::BindMark(CSlimHtmlCtrl& mark, int control, const CString& picture) const
{
    mark.SubclassWindow(::GetDlgItem(m_page, control));
    mark.LoadText(FormatResource(IDS_PATCH_MARK, 0, 0, picture));
    mark.SetRenderFormat(MarkFormat());
}

void CPatchStageView::Apply(std::span<const StageControl> controls, bool isDeploymentFlow) const
{
    for (const StageControl& row : controls) {
        if (row.bInDeploymentFlow && !isDeploymentFlow) {
            continue;
        }
        const CButton control = Button(row.control);
        if (row.text != 0) {
            control.SetText(LoadResourceString(row.text));
        }
        ApplyDeeds(control, row.deeds);
    }
}

void CPatchStageView::CloseServicePart() const
{
    const int down =
        Button(IDC_PATCH_OFFERED).GetWindowRect().top - Button(IDC_PATCH_LISTED).GetWindowRect().top;
    for (const int control : ControlsBelowService()) {
        MoveControl(Button(control), 0, down);
    }
}

void CPatchStageView::ShowUpToDate()
{
    const RECT mark = Button(IDC_PATCH_UP_TO_DATE_MARK).GetWindowRect();
    const CButton label = Button(IDC_PATCH_OFFER);
    MoveControl(label, mark.right - mark.left + UP_TO_DATE_DISTANCE, 0);
    LOGFONTW font = {};
    ::GetObjectW(label.GetFont(), sizeof font, &font);
    font.lfWeight = FW_BOLD;
    std::wcscpy(font.lfFaceName, L"Arial");
    m_upToDateFont.reset(::CreateFontIndirectW(&font));
    label.SetFont(m_upToDateFont.get());
}

// An address that isn't of the web is none: opening it would start whatever it names.
void CPatchStageView::ShowPatch(const CString& name, const CString& readme, const CString& size)
{
    m_link.SetLabel(name);
    m_link.SetHyperLink(IsWebAddress(readme) ? readme : CString());
    Button(IDC_PATCH_SIZE).SetText(size);
    for (const int control : {IDC_PATCH_LINK, IDC_PATCH_SIZE}) {
        Button(control).EnableWindow();
        Button(control).ShowWindow(SW_SHOWNA);
    }
}

PatchChoice CPatchStageView::Choice() const
{
    if (Button(IDC_PATCH_NONE).IsChecked()) {
        return PatchChoice::None;
    }
    if (Button(IDC_PATCH_OFFERED).IsChecked()) {
        return PatchChoice::Offered;
    }
    return Button(IDC_PATCH_LISTED).IsChecked() ? PatchChoice::Listed : PatchChoice::Unmade;
}

void CPatchStageView::SetProgress(int percent) const
{
    Button(IDC_PATCH_PROGRESS).SendMessage(PBM_SETPOS, static_cast<WPARAM>(percent));
}

// The saved state isn't restored: the system resets the context that it hands out for each label.
void CPatchStageView::ColorUpToDate(HDC dc)
{
    ::SaveDC(dc);
    ::SetBkMode(dc, TRANSPARENT);
    ::SetTextColor(dc, UP_TO_DATE_COLOR);
}

void CPatchStageView::ColorFailure(HDC dc)
{
    ::SaveDC(dc);
    ::SetBkMode(dc, TRANSPARENT);
    ::SetBkColor(dc, FAILURE_BACKGROUND);
    ::SetTextColor(dc, FAILURE_COLOR);
}

#include "frame/page_rules.h"

#include "frame/text_rules.h"
#include "include/resource_ids.h"

namespace {

constexpr int LINK_CAPACITY = 2085; // with the closing zero

} // namespace

ScreenRectangle ResizeAroundMiddle(const ScreenRectangle& saved, int width, int height)
{
    const int halfWidth = (width - saved.Width()) / 2; // towards zero
    const int halfHeight = (height - saved.Height()) / 2;
    return {saved.left - halfWidth, saved.top - halfHeight, saved.right + halfWidth,
            saved.bottom + halfHeight};
}

bool IsDeploymentMode(Setup::tagSETUPMODE mode)
{
    return mode == Setup::SETUPMODE_CREATE_DEPLOYMENT || mode == Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT ||
           mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT;
}

CString PageTitle(const wchar_t* productName, Setup::tagSETUPMODE mode, const wchar_t* deploymentName)
{
    CString title(productName);
    if (IsDeploymentMode(mode) && !IsEmptyText(deploymentName)) {
        title += L" - ";
        title += deploymentName;
    }
    return title;
}

unsigned int CancelQuestionId(Setup::tagSETUPMODE mode)
{
    switch (mode) {
    case Setup::SETUPMODE_INSTALL:
        return IDS_CANCEL_INSTALL;
    case Setup::SETUPMODE_MAINTAIN:
        return IDS_CANCEL_MAINTAIN;
    default:
        return IsDeploymentMode(mode) ? IDS_CANCEL_DEPLOYMENT : IDS_CANCEL_OTHER;
    }
}

CString PageCounterText(const CString& text, int index, int total)
{
    CString filled(text);
    ReplaceAll(filled, L"[%INDEX]", NumberText(index + 1));
    ReplaceAll(filled, L"[%TOTAL]", NumberText(total));
    return filled;
}

TabButtons ButtonsToDisable(int index, int total)
{
    if (total == 1) {
        return {true, true};
    }
    return {index == 0, index == total - 1};
}

CString LinkFile(const wchar_t* target)
{
    return TextLength(target) < LINK_CAPACITY - 1 ? CString(target) : CString();
}

LinkKind KindOfLink(const wchar_t* extension)
{
    const CString text(extension);
    if (text.CompareNoCase(L".pdf") == 0) {
        return LinkKind::Document;
    }
    if (text.CompareNoCase(L".html") == 0 || text.CompareNoCase(L".htm") == 0) {
        return LinkKind::Html;
    }
    return LinkKind::Unknown;
}

bool IsEmptyText(const wchar_t* text)
{
    return !text || !*text;
}

#include "patches/patch_list.h"

#include "frame/error_text.h"
#include "frame/file_path.h"
#include "frame/resource_text.h"
#include "include/product.h"
#include "include/resource_ids.h"
#include "include/setup_manager.h"
#include "installer/patch_summary.h"
#include "window/gdi.h"

#include <windows.h>

#include <msi.h>
#include <shlwapi.h>

#include <algorithm>
#include <new>

namespace {

constexpr int LINE_MARGIN = 8; // pixels beside a line's text

// What the box shows for a patch.
CString LineOf(const CString& path)
{
    CString name;
    return ReadPatchDisplayName(path, name) && !name.IsEmpty() ? name : path;
}

// The box scrolls as far as its longest line.
void SetScrollWidth(const CListBox& box, const std::vector<CString>& lines)
{
    const CWindowDC dc(box);
    const CSelectObject font(dc.get(), box.GetFont());
    int width = 0;
    for (const CString& line : lines) {
        SIZE size = {};
        ::GetTextExtentPoint32W(dc.get(), line, line.GetLength(), &size);
        width = std::max(width, static_cast<int>(size.cx));
    }
    box.SendMessage(LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(width + LINE_MARGIN));
}

// The installer's verdict on each patch. False when there is no memory for the question.
bool AskInstaller(const CString& database, std::vector<JudgedPatch>& patches, unsigned int& error)
{
    std::vector<MSIPATCHSEQUENCEINFOW> sequence;
    try {
        sequence.resize(patches.size());
    } catch (const std::bad_alloc&) {
        return false;
    }
    for (std::size_t index = 0; index < patches.size(); ++index) {
        sequence[index].szPatchData = patches[index].strPath;
        sequence[index].ePatchDataType = MSIPATCH_DATATYPE_PATCHFILE;
    }
    error = ::MsiDetermineApplicablePatchesW(database, static_cast<DWORD>(sequence.size()), sequence.data());
    for (std::size_t index = 0; index < patches.size(); ++index) {
        patches[index].status = sequence[index].uStatus;
    }
    return true;
}

} // namespace

void CPatchList::Bind(HWND page)
{
    m_page = page;
    PatchListBox.Attach(::GetDlgItem(page, IDC_PATCH_LIST));
}

void CPatchList::LoadFromProduct()
{
    m_codes.clear();
    PatchList = m_product.m_patchFiles;
    RebuildPatchCodeIndex();
    if (!PatchList.empty()) {
        static_cast<void>(
            RecheckPatches()); // what is to be said has been shown, and the page opens either way
    }
    RefreshPatchListBox();
}

void CPatchList::StoreInProduct() const
{
    m_product.m_patchFiles = PatchList;
}

void CPatchList::Admit(const CString& path)
{
    m_codes.clear();
    if (!::PathFileExistsW(path)) {
        ShowPatchError(IDS_PATCH_UNUSABLE, path);
        return;
    }
    CString targets;
    if (!ReadPatchTargets(path, targets) || !NamesProduct(targets, m_product.m_strProductCode)) {
        ShowPatchError(IDS_PATCH_OF_OTHER_PRODUCT, path);
        return;
    }
    const std::optional<CString>& code = CodeOf(path);
    if (!code) {
        ShowPatchError(IDS_PATCH_UNUSABLE, path);
    } else if (IsKnownPatchCode(*code)) {
        ShowPatchError(IDS_PATCH_LISTED_ALREADY, path);
    } else if (!RecheckPatches(path)) {
        ShowPatchError(IDS_PATCH_UNUSABLE, path);
    } else {
        RefreshPatchListBox();
    }
}

void CPatchList::RemoveSelected()
{
    m_codes.clear();
    const int index = PatchListBox.GetCurSel();
    if (index < 0 || index >= static_cast<int>(PatchList.size())) {
        return;
    }
    PatchListBox.SendMessage(LB_DELETESTRING, static_cast<WPARAM>(index));
    PatchList.erase(PatchList.begin() + index);
    static_cast<void>(RecheckPatches()); // as on entry
    RefreshPatchListBox();
}

void CPatchList::ReplaceBy(const CString& path)
{
    m_codes.clear();
    PatchList.clear();
    if (!path.IsEmpty() && ::PathFileExistsW(path)) {
        static_cast<void>(
            RecheckPatches(path)); // as on entry: the list stays empty, and the message says why
    }
}

CString CPatchList::PathAt(std::size_t line) const
{
    return line < PatchList.size() ? PatchList[line] : CString();
}

CString CPatchList::SelectedPath() const
{
    const int index = PatchListBox.GetCurSel();
    const bool isLine = index >= 0 && index < static_cast<int>(PatchList.size());
    return isLine ? PatchList[static_cast<std::size_t>(index)] : CString();
}

bool CPatchList::IsKnownPatchCode(const CString& code) const
{
    return PatchCodeIndex.contains(code);
}

void CPatchList::RebuildPatchCodeIndex()
{
    PatchCodeIndex.clear();
    for (const CString& path : PatchList) {
        if (const std::optional<CString>& code = CodeOf(path)) {
            PatchCodeIndex.try_emplace(*code, path);
        }
    }
}

const std::optional<CString>& CPatchList::CodeOf(const CString& path)
{
    const auto [known, isNew] = m_codes.try_emplace(path);
    CString code;
    if (isNew && ReadPatchCode(path, code)) {
        known->second = code;
    }
    return known->second;
}

bool CPatchList::RecheckPatches(const CString& newPath)
{
    const CString database = DatabasePath();
    std::vector<CString> candidates = PatchList;
    if (!newPath.IsEmpty()) {
        candidates.push_back(newPath);
    }
    // What is merged is part of the database by now: the installer would refuse it.
    std::vector<CString> merged;
    std::vector<JudgedPatch> judged;
    m_merged.clear();
    for (const CString& path : candidates) {
        if (m_product.IsPatchMerged(path)) {
            merged.push_back(path);
            m_merged.insert(path);
        } else {
            judged.push_back({path});
        }
    }
    if (!judged.empty()) {
        unsigned int error = ERROR_SUCCESS;
        if (!AskInstaller(database, judged, error)) {
            return false;
        }
        if (error != ERROR_SUCCESS) {
            ShowErrorBox(error, database, m_manager.m_strProductName, m_page);
            return false;
        }
    }
    // The list keeps its order, whatever sequence the installer would use.
    PatchVerdict verdict = SettlePatches(merged, judged);
    if (!verdict.strInapplicable.IsEmpty()) {
        ShowPatchError(IDS_PATCHES_NOT_APPLICABLE, verdict.strInapplicable);
    }
    PatchList = std::move(verdict.list);
    RebuildPatchCodeIndex();
    return true;
}

CString CPatchList::DatabasePath() const
{
    return JoinPath(m_manager.m_strMediaRoot, m_product.m_strMsiFile);
}

void CPatchList::RefreshPatchListBox() const
{
    PatchListBox.ResetContent();
    std::vector<CString> lines;
    for (const CString& path : PatchList) {
        lines.push_back(LineOf(path));
        PatchListBox.AddString(lines.back());
    }
    SetScrollWidth(PatchListBox, lines);
}

void CPatchList::ShowPatchError(unsigned int message, const CString& text) const
{
    ::MessageBoxW(m_page, FormatResource(message, text), m_manager.m_strProductName, MB_OK | MB_ICONERROR);
}

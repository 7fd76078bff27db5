#include "online/location_browser.h"

#include "frame/current_folder.h"
#include "frame/resource_text.h"
#include "include/resource_ids.h"
#include "online/location_rules.h"

#include <windows.h>

#include <commdlg.h>
#include <shlobj.h>

const LocationKind LIST_LOCATION_KIND = {IDS_LIST_FILTER, IDS_LIST_FILTER_PATTERN, IsListFile,
                                         IDS_LIST_BROWSED_WRONG_KIND};
const LocationKind FEED_LOCATION_KIND = {IDS_FEED_FILTER, IDS_FEED_FILTER_PATTERN, IsFeedFile,
                                         IDS_FEED_BROWSED_WRONG_KIND};

namespace {

constexpr DWORD FILE_CAPACITY = 520; // characters, the closing zero included

// Descriptions and patterns by turns, a zero behind each; the text's own closing zero ends the list.
CString FilterOf(const LocationKind& kind)
{
    CString filter;
    for (const unsigned int id : {kind.filterText, kind.filterPattern, IDS_ALL_FILES_FILTER + 0u,
                                  IDS_ALL_FILES_FILTER_PATTERN + 0u}) {
        filter += LoadResourceString(id);
        filter += L'\0';
    }
    return filter;
}

CString DocumentsFolder()
{
    wchar_t folder[MAX_PATH] = {};
    return ::SHGetSpecialFolderPathW(nullptr, folder, CSIDL_PERSONAL, FALSE) ? CString(folder) : CString();
}

bool PickFile(HWND owner, const CString& title, const CString& filter, CString& path)
{
    const CCurrentFolderKeeper currentFolder;
    const CString folder = DocumentsFolder();
    wchar_t file[FILE_CAPACITY] = {};
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = filter;
    dialog.lpstrFile = file;
    dialog.nMaxFile = FILE_CAPACITY;
    dialog.lpstrInitialDir = folder;
    dialog.lpstrTitle = title;
    dialog.Flags = OFN_HIDEREADONLY | OFN_FILEMUSTEXIST | OFN_EXPLORER;
    if (!::GetOpenFileNameW(&dialog)) {
        return false;
    }
    path = file;
    return true;
}

} // namespace

bool BrowseForLocation(HWND owner, const LocationKind& kind, const CString& productName, CString& path)
{
    CString picked;
    if (!PickFile(owner, FormatResource(IDS_BROWSE_FILE_TITLE, productName), FilterOf(kind), picked)) {
        return false;
    }
    if (!kind.isOfKind(picked)) {
        ::MessageBoxW(owner, LoadResourceString(kind.wrongKindText), LoadResourceString(IDS_ERROR_TITLE),
                      MB_OK | MB_ICONEXCLAMATION);
        return false;
    }
    path = picked;
    return true;
}

#include "online/location_browser.h"

#include "frame/file_browser.h"
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

constexpr DWORD FILE_CAPACITY = 520;

CString DocumentsFolder()
{
    wchar_t folder[MAX_PATH] = {};
    return ::SHGetSpecialFolderPathW(nullptr, folder, CSIDL_PERSONAL, FALSE) ? CString(folder) : CString();
}

bool PickFile(HWND owner, const LocationKind& kind, const CString& productName, CString& path)
{
    FileDialog dialog;
    dialog.title = FormatResource(IDS_BROWSE_FILE_TITLE, productName);
    dialog.filter =
        FileFilter({kind.filterText, kind.filterPattern, IDS_ALL_FILES_FILTER, IDS_ALL_FILES_FILTER_PATTERN});
    dialog.folder = DocumentsFolder();
    dialog.flags = OFN_HIDEREADONLY | OFN_FILEMUSTEXIST | OFN_EXPLORER;
    dialog.capacity = FILE_CAPACITY;
    return BrowseForFile(owner, dialog, path);
}

} // namespace

bool BrowseForLocation(HWND owner, const LocationKind& kind, const CString& productName, CString& path)
{
    CString picked;
    if (!PickFile(owner, kind, productName, picked)) {
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

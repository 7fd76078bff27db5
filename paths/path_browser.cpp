#include "paths/path_browser.h"

#include "frame/current_folder.h"
#include "frame/folder_browser.h"
#include "frame/resource_text.h"
#include "include/resource_ids.h"

#include <commdlg.h>

namespace {

constexpr DWORD FILE_CAPACITY = 260; // characters, the closing zero included

// A description and its pattern with a zero behind each; the text's own closing zero ends the list.
CString AllFilesFilter()
{
    CString filter = LoadResourceString(IDS_ALL_FILES_FILTER);
    filter += L'\0';
    filter += LoadResourceString(IDS_ALL_FILES_FILTER_PATTERN);
    filter += L'\0';
    return filter;
}

} // namespace

bool PickPathFolder(HWND owner, CString& folder)
{
    return BrowseForFolder(owner, folder, L"", false);
}

bool PickPathFile(HWND owner, CString& file)
{
    const CCurrentFolderKeeper currentFolder;
    const CString filter = AllFilesFilter();
    const CString title = LoadResourceString(IDS_PATH_FILE_TITLE);
    wchar_t picked[FILE_CAPACITY] = {};
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = filter;
    dialog.lpstrFile = picked;
    dialog.nMaxFile = FILE_CAPACITY;
    dialog.lpstrTitle = title;
    dialog.Flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_FILEMUSTEXIST;
    if (!::GetOpenFileNameW(&dialog)) {
        return false;
    }
    file = picked;
    return true;
}

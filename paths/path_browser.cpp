#include "paths/path_browser.h"

#include "frame/file_browser.h"
#include "frame/folder_browser.h"
#include "frame/resource_text.h"
#include "include/resource_ids.h"

#include <commdlg.h>

namespace {

constexpr DWORD FILE_CAPACITY = 260;

} // namespace

bool PickPathFolder(HWND owner, CString& folder)
{
    return BrowseForFolder(owner, folder, L"", false);
}

bool PickPathFile(HWND owner, CString& file)
{
    FileDialog dialog;
    dialog.title = LoadResourceString(IDS_PATH_FILE_TITLE);
    dialog.filter = FileFilter({IDS_ALL_FILES_FILTER, IDS_ALL_FILES_FILTER_PATTERN});
    dialog.flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_FILEMUSTEXIST;
    dialog.capacity = FILE_CAPACITY;
    return BrowseForFile(owner, dialog, file);
}

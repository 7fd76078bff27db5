#include "frame/file_browser.h"

#include "frame/current_folder.h"
#include "frame/resource_text.h"

#include <commdlg.h>

#include <vector>

// A zero behind each text; the whole text's own closing zero ends the list.
CString FileFilter(std::initializer_list<unsigned int> texts)
{
    CString filter;
    for (const unsigned int text : texts) {
        filter += LoadResourceString(text);
        filter += L'\0';
    }
    return filter;
}

bool BrowseForFile(HWND owner, const FileDialog& dialog, CString& file)
{
    const CCurrentFolderKeeper currentFolder;
    std::vector<wchar_t> picked(dialog.capacity);
    OPENFILENAMEW description = {};
    description.lStructSize = sizeof description;
    description.hwndOwner = owner;
    description.lpstrFilter = dialog.filter;
    description.lpstrFile = picked.data();
    description.nMaxFile = dialog.capacity;
    description.lpstrInitialDir = dialog.folder.IsEmpty() ? nullptr : dialog.folder.GetString();
    description.lpstrTitle = dialog.title;
    description.Flags = dialog.flags;
    if (!::GetOpenFileNameW(&description)) {
        return false;
    }
    file = picked.data();
    return true;
}

#include "host/longest_path.h"

#include "base/files.h"

#include <windows.h>

CString LongestPath(const CString& folder, const CString& relative)
{
    CString longest;
    std::vector<CString> open{relative};
    std::vector<FolderItem> items;
    while (!open.empty()) {
        const CString inner = open.back();
        open.pop_back();
        if (ListFolder(folder + inner, items) != ERROR_SUCCESS) {
            continue;
        }
        for (const FolderItem& item : items) {
            const CString path = inner + item.strName;
            if (item.isFolder && !item.isLink) {
                open.push_back(path + L"\\");
            } else if (!item.isFolder && path.GetLength() > longest.GetLength()) {
                longest = path;
            }
        }
    }
    return longest;
}

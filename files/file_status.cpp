#include "files/file_status.h"

#include "frame/resource_text.h"
#include "include/resource_ids.h"

#include <shlwapi.h>

CString FileStatusText(const CAddFilesTreeCtrl& tree, const FileTreeNode* node)
{
    if (!node) {
        return LoadResourceString(IDS_FILES_NOTHING_SELECTED);
    }
    if (node->IsFile()) {
        return ::PathFileExistsW(node->SourcePath) ? FormatResource(IDS_FILES_ADDED_FILE, node->SourcePath)
                                                   : FormatResource(IDS_FILES_SOURCE_GONE, node->SourcePath);
    }
    if (!node->IsUserItem) {
        return LoadResourceString(IDS_FILES_PRODUCT_FOLDER);
    }
    return LoadResourceString(tree.IsDriveNode(*node) ? IDS_FILES_ADDED_DRIVE : IDS_FILES_ADDED_FOLDER);
}

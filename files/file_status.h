// What the line below the tree reports of the selected item: in words what the tree shows by pictures and bold letters.
#pragma once

#include "files/add_files_tree.h"

// `node` may be null, for no selection.
[[nodiscard]] CString FileStatusText(const CAddFilesTreeCtrl& tree, const FileTreeNode* node);

#include "benchmarks/bare_tree.h"

#include "include/resource_ids.h"
#include "paths/path_table.h"
#include "window/drawing_handles.h"

#include <commctrl.h>

namespace {

constexpr wchar_t VALUE[] = L"<Support>\\A folder of the product";

HTREEITEM Insert(HWND tree, HTREEITEM parent, const wchar_t* text, int image)
{
    TVINSERTSTRUCTW insertion = {};
    insertion.hParent = parent;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    insertion.item.pszText = const_cast<wchar_t*>(text);
    insertion.item.iImage = image;
    insertion.item.iSelectedImage = image;
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion)));
}

HTREEITEM InsertHeading(HWND tree, HMODULE texts, HTREEITEM parent, const PathHeading& heading)
{
    wchar_t label[256] = {};
    LoadStringW(texts, heading.label, label, 256);
    return Insert(tree, parent, label, heading.image);
}

} // namespace

void FillBareTree(HWND dialog, HMODULE texts)
{
    static CImageListOwner images;
    const HWND tree = GetDlgItem(dialog, IDC_PATH_TREE);
    if (!tree) {
        return;
    }
    images.reset(ImageList_LoadImageW(texts, MAKEINTRESOURCEW(IDB_PATH_IMAGES), 20, 1, RGB(255, 0, 255),
                                      IMAGE_BITMAP, LR_CREATEDIBSECTION));
    SendMessageW(tree, TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(images.get()));
    SendMessageW(tree, WM_SETREDRAW, FALSE, 0);
    HTREEITEM parent = nullptr;
    unsigned int label = 0;
    for (const PathRow& row : PATH_TABLE) {
        if (row.parent.label != label) {
            parent = row.HasParent() ? InsertHeading(tree, texts, nullptr, row.parent) : nullptr;
            label = row.parent.label;
        }
        const HTREEITEM heading = InsertHeading(tree, texts, parent, row.heading);
        Insert(tree, heading, VALUE, PATH_VALUE_IMAGE);
    }
    SendMessageW(tree, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(tree, nullptr, TRUE);
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0));
    wchar_t description[512] = {};
    LoadStringW(texts, IDS_SUPPORT_PATH_TEXT, description, 512);
    SetDlgItemTextW(dialog, IDC_PATH_DESCRIPTION, description);
}

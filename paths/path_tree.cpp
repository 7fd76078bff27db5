#include "paths/path_tree.h"

#include "base/scope_exit.h"
#include "frame/resource_text.h"
#include "frame/text_rules.h"
#include "include/resource_ids.h"
#include "paths/path_properties.h"
#include "window/module.h"

#include <utility>

namespace {

constexpr int IMAGE_WIDTH = 20;
constexpr COLORREF CLEAR = RGB(255, 0, 255);

} // namespace

// ---- filling

void CPathTree::Fill(const CPathProperties& properties, const CString& productName)
{
    LoadImages();
    m_tree.SetRedraw(FALSE); // inserting would paint each time
    const scope_exit painted([this] {
        m_tree.SetRedraw(TRUE);
        m_tree.Invalidate();
    });
    HTREEITEM parent = nullptr;
    unsigned int parentLabel = 0;
    for (const PathRow& row : PATH_TABLE) {
        if (!row.HasParent()) {
            parent = nullptr;
        } else if (row.parent.label != parentLabel) {
            parent = AddHeading(nullptr, row.parent, PATH_FLAGS_HEADING, productName);
        }
        parentLabel = row.parent.label;
        const HTREEITEM heading = AddHeading(parent, row.heading, row.GetHeadingFlags(), productName);
        if (row.property == PATH_SUPPORT) {
            m_supportHeading = heading;
        }
        AddValues(heading, row, properties[row.property]);
    }
}

void CPathTree::LoadImages()
{
    m_images.reset(ImageList_LoadImageW(_Module.GetResourceInstance(), MAKEINTRESOURCEW(IDB_PATH_IMAGES),
                                        IMAGE_WIDTH, 1, CLEAR, IMAGE_BITMAP, LR_CREATEDIBSECTION));
    m_tree.SetImageList(m_images.get());
    m_tree.SetBkColor(RGB(255, 255, 255));
}

HTREEITEM CPathTree::AddHeading(HTREEITEM parent, const PathHeading& heading, std::uint32_t flags,
                                const CString& productName)
{
    CString description = LoadResourceString(heading.text);
    ReplaceAll(description, L"[ProductName]", productName);
    PathNodeData* data = NewData({LoadResourceString(heading.label), description, flags});
    return Insert(parent, TVI_LAST, heading.image, data, data->label);
}

// Behind the former entry, not behind the last: that one is looked for on some systems.
void CPathTree::AddValues(HTREEITEM heading, const PathRow& row, const CString& value)
{
    const std::vector<CString> texts = row.IsList() ? PathListNodes(value) : std::vector<CString>{value};
    const CString description = GetDescription(heading);
    HTREEITEM after = TVI_FIRST;
    for (const CString& text : texts) {
        after = Insert(heading, after, PATH_VALUE_IMAGE, NewData({text, description, row.valueFlags}), text);
    }
}

// ---- records

PathNodeData* CPathTree::NewData(PathNodeData data)
{
    auto record = std::make_unique<PathNodeData>(std::move(data));
    PathNodeData* const kept = record.get();
    m_records.emplace(kept, std::move(record));
    return kept;
}

PathNodeData* CPathTree::DataOf(HTREEITEM node) const
{
    return node ? reinterpret_cast<PathNodeData*>(m_tree.GetItemData(node)) : nullptr;
}

std::uint32_t CPathTree::GetFlags(HTREEITEM node) const
{
    const PathNodeData* data = DataOf(node);
    return data ? data->flags : 0;
}

CString CPathTree::GetDescription(HTREEITEM node) const
{
    const PathNodeData* data = DataOf(node);
    return data ? data->description : CString();
}

CString CPathTree::GetText(HTREEITEM node) const
{
    return node ? m_tree.GetItemText(node) : CString();
}

// ---- nodes

HTREEITEM CPathTree::Insert(HTREEITEM parent, HTREEITEM after, int image, PathNodeData* data,
                            const CString& text)
{
    TVINSERTSTRUCTW insertion = {};
    insertion.hParent = parent;
    insertion.hInsertAfter = after;
    insertion.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
    insertion.item.pszText = const_cast<wchar_t*>(text.GetString()); // the control only reads it
    insertion.item.iImage = image;
    insertion.item.iSelectedImage = image;
    insertion.item.lParam = reinterpret_cast<LPARAM>(data);
    return m_tree.InsertItem(insertion);
}

HTREEITEM CPathTree::InsertEntry(HTREEITEM heading, HTREEITEM after, std::uint32_t flags)
{
    return Insert(heading, after, PATH_VALUE_IMAGE, NewData({CString(), GetDescription(heading), flags}),
                  CString());
}

HTREEITEM CPathTree::Move(HTREEITEM node, HTREEITEM after)
{
    PathNodeData* const data = DataOf(node);
    const HTREEITEM moved =
        Insert(m_tree.GetParentItem(node), after, GetImage(node), data, MovedEntryText(GetText(node)));
    m_tree.DeleteItem(node); // the record is the new node's now
    return moved;
}

void CPathTree::Delete(HTREEITEM node)
{
    const PathNodeData* const data = DataOf(node);
    m_tree.DeleteItem(node);
    m_records.erase(data);
}

void CPathTree::OpenHeading(HTREEITEM heading)
{
    if ((m_tree.GetItemState(heading, TVIS_EXPANDED) & TVIS_EXPANDED) != 0) {
        return;
    }
    m_tree.Expand(heading);
    SetImage(heading, PathImageAfterBrowse(GetImage(heading)));
}

void CPathTree::SetImage(HTREEITEM node, int image)
{
    TVITEMW item = {};
    item.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    item.hItem = node;
    item.iImage = image;
    item.iSelectedImage = image;
    m_tree.SetItem(item);
}

int CPathTree::GetImage(HTREEITEM node) const
{
    TVITEMW item = {};
    item.mask = TVIF_IMAGE;
    item.hItem = node;
    m_tree.GetItem(&item);
    return item.iImage;
}

// The tree of the paths page: headings and values with their pictures and records. Its nodes are all that the page knows
// of the paths while it is open.
#pragma once

#include "paths/path_node_rules.h"
#include "window/controls.h"
#include "window/drawing_handles.h"

#include <windows.h>

#include <memory>
#include <unordered_map>

class CPathProperties;

// A node's own record, attached to the node as its data. The text that counts is the node's.
struct PathNodeData
{
    CString label; // what the node was made with
    CString description;
    std::uint32_t flags = 0; // PathNodeFlags
};

class CPathTree final : public IPathNodes
{
public:
    void Attach(HWND tree) { m_tree.Attach(tree); }
    // Pictures, ground, and all nodes in the order of the table, with the product's name in their descriptions.
    void Fill(const CPathProperties& properties, const CString& productName);

    const CTreeViewCtrl& Control() const { return m_tree; }
    // Of the one list whose entries may be typed several at once.
    HTREEITEM GetSupportHeading() const { return m_supportHeading; }

    // Of no node: no flags, no text, no neighbor.
    std::uint32_t GetFlags(HTREEITEM node) const;
    CString GetDescription(HTREEITEM node) const;
    CString GetText(HTREEITEM node) const;
    HTREEITEM GetNext(HTREEITEM node) const { return node ? m_tree.GetNextSiblingItem(node) : nullptr; }
    HTREEITEM GetPrevious(HTREEITEM node) const { return node ? m_tree.GetPrevSiblingItem(node) : nullptr; }
    HTREEITEM GetChild(HTREEITEM node) const { return m_tree.GetChildItem(node); }
    bool IsSupportEntry(HTREEITEM node) const { return m_tree.GetParentItem(node) == m_supportHeading; }

    void SetText(HTREEITEM node, const CString& text) { m_tree.SetItemText(node, text); }
    // Expands a heading that isn't yet, and changes its picture.
    void OpenHeading(HTREEITEM heading);
    void SetImage(HTREEITEM node, int image);
    int GetImage(HTREEITEM node) const;

    // A value next to others of its list, behind `after`, which may be TVI_FIRST or TVI_LAST.
    HTREEITEM InsertEntry(HTREEITEM heading, HTREEITEM after, std::uint32_t flags);
    // The same node at another place among its siblings, its text cut to what a move keeps.
    HTREEITEM Move(HTREEITEM node, HTREEITEM after);
    void Delete(HTREEITEM node);

    // The tree for those who read it back.
    Node FirstTop() const override { return m_tree.GetRootItem(); }
    Node FirstChild(Node node) const override { return GetChild(ItemOf(node)); }
    Node NextSibling(Node node) const override { return GetNext(ItemOf(node)); }
    CString Text(Node node) const override { return GetText(ItemOf(node)); }

private:
    static HTREEITEM ItemOf(Node node) { return static_cast<HTREEITEM>(const_cast<void*>(node)); }
    PathNodeData* DataOf(HTREEITEM node) const;
    HTREEITEM Insert(HTREEITEM parent, HTREEITEM after, int image, PathNodeData* data, const CString& text);
    PathNodeData* NewData(PathNodeData data);
    HTREEITEM AddHeading(HTREEITEM parent, const PathHeading& heading, std::uint32_t flags,
                         const CString& productName);
    void AddValues(HTREEITEM heading, const PathRow& row, const CString& value);
    void LoadImages();

    CTreeViewCtrl m_tree;
    CImageListOwner m_images;
    HTREEITEM m_supportHeading = nullptr;
    std::unordered_map<const PathNodeData*, std::unique_ptr<PathNodeData>> m_records; // the live ones
};

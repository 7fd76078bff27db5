#include "paths/path_node_rules.h"

#include "frame/text_rules.h"
#include "include/resource_ids.h"

#include <algorithm>

namespace {

constexpr std::uint32_t READ_ONLY = PNF_READ_ONLY_A | PNF_READ_ONLY_B;
constexpr int MOVED_TEXT_CAPACITY = 260; // characters, the closing zero included
// All of a list entry's flags but the kind of its value.
constexpr std::uint32_t ENTRY_FLAGS = PNF_ADDABLE | PNF_REMOVABLE | PNF_MOVABLE | PNF_LIST_ENTRY;

// A closed picture stands before its open one. Those of Browse come first.
constexpr int CLOSED_IMAGES[] = {17, 19, 21, 25, 27};
constexpr int CLOSED_IMAGES_OF_BROWSE = 4;

bool StartsWith(const CString& text, const wchar_t* start)
{
    return text.Find(start) == 0;
}

CString JoinedEntries(const IPathNodes& nodes, IPathNodes::Node heading)
{
    CString value;
    const IPathNodes::Node first = nodes.FirstChild(heading);
    for (IPathNodes::Node entry = first; entry; entry = nodes.NextSibling(entry)) {
        if (entry != first) {
            value += L';';
        }
        value += nodes.Text(entry);
    }
    return value;
}

} // namespace

PathButtonStates PathButtonsFor(std::uint32_t flags, bool hasPrevious, bool hasNext)
{
    const bool isMovable = (flags & PNF_MOVABLE) != 0;
    PathButtonStates states;
    states.bBrowse = (flags & READ_ONLY) == 0 && (flags & (PNF_GROUP | PNF_FILE | PNF_FOLDER)) != 0;
    states.bAdd = (flags & PNF_ADDABLE) != 0;
    states.bRemove = (flags & PNF_REMOVABLE) != 0;
    states.bMoveUp = isMovable && hasPrevious;
    states.bMoveDown = isMovable && hasNext;
    return states;
}

bool IsPathValue(std::uint32_t flags)
{
    return (flags & (PNF_FOLDER | PNF_FILE)) != 0;
}

bool IsPathListEntry(std::uint32_t flags)
{
    return (flags & PNF_LIST_ENTRY) != 0;
}

bool MayEditPathLabel(std::uint32_t flags)
{
    return (flags & (PNF_GROUP | READ_ONLY)) == 0;
}

int PathImageAfterBrowse(int image)
{
    const auto* end = CLOSED_IMAGES + CLOSED_IMAGES_OF_BROWSE;
    return std::find(CLOSED_IMAGES, end, image) != end ? image + 1 : image;
}

int PathImageAfterExpansion(int image, bool isExpanded)
{
    for (const int closed : CLOSED_IMAGES) {
        if (image == closed || image == closed + 1) {
            return isExpanded ? closed + 1 : closed;
        }
    }
    return image;
}

CString PickedFolderText(const CString& folder)
{
    const int length = folder.GetLength();
    return length > 0 && folder[length - 1] == L'\\' ? folder.Left(length - 1) : folder;
}

CString FileAddress(const CString& folder)
{
    if (StartsWith(folder, L"file://")) {
        return folder;
    }
    const CString rest = StartsWith(folder, L"\\\\") ? folder.Mid(2) : folder;
    return (StartsWith(rest, L"//") ? L"file:" : L"file://") + rest;
}

CString MovedEntryText(const CString& text)
{
    return text.Left(MOVED_TEXT_CAPACITY - 1);
}

std::uint32_t ReAddedEntryFlags(std::uint32_t neighborFlags)
{
    return (neighborFlags & (PNF_URL | PNF_FOLDER)) | ENTRY_FLAGS;
}

std::vector<CString> PathListNodes(const CString& value)
{
    std::vector<CString> entries;
    SplitText(value, L";", entries, 0, true);
    if (entries.empty()) {
        entries.emplace_back();
    }
    return entries;
}

void ReadPathNodes(const IPathNodes& nodes, const std::function<void(PathProperty, const CString&)>& take)
{
    IPathNodes::Node top = nodes.FirstTop();
    IPathNodes::Node heading = nullptr;
    unsigned int parent = 0;
    for (const PathRow& row : PATH_TABLE) {
        if (row.HasParent() && row.parent.label == parent) {
            heading = nodes.NextSibling(heading);
        } else {
            heading = row.HasParent() ? nodes.FirstChild(top) : top;
            top = nodes.NextSibling(top);
        }
        parent = row.parent.label;
        take(row.property,
             row.IsList() ? JoinedEntries(nodes, heading) : nodes.Text(nodes.FirstChild(heading)));
    }
}

const std::array<RequiredPath, 5> REQUIRED_PATHS = {{
    {PATH_PRINTER_CONFIG, true, IDS_PRINTER_CONFIG_EMPTY},
    {PATH_PRINTER_DESC, false, IDS_PRINTER_DESC_EMPTY},
    {PATH_PRINTER_STYLE_SHEET, true, IDS_PRINTER_STYLE_SHEET_EMPTY},
    {PATH_ACTIONS_RECORDING, true, IDS_ACTION_PATH_EMPTY},
    {PATH_DGN_MAPPING, true, IDS_ACTION_PATH_EMPTY},
}};

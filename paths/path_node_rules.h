// What the flags of a node of the paths' tree allow, and how the tree is read back. No window is known here.
#pragma once

#include "base/string.h"
#include "paths/path_table.h"

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

struct PathButtonStates
{
    bool bBrowse = false;
    bool bAdd = false;
    bool bRemove = false;
    bool bMoveUp = false;
    bool bMoveDown = false;
    bool operator==(const PathButtonStates&) const = default;
};
// Of a node with these flags and neighbors. No flags at all stand for no node.
[[nodiscard]] PathButtonStates PathButtonsFor(std::uint32_t flags, bool hasPrevious, bool hasNext);

// A folder or a file: what stands in the node's text.
[[nodiscard]] bool IsPathValue(std::uint32_t flags);
[[nodiscard]] bool IsPathListEntry(std::uint32_t flags);
[[nodiscard]] bool MayEditPathLabel(std::uint32_t flags);

// The picture of a heading that Browse has opened, and of one that was expanded or collapsed. All others stay.
[[nodiscard]] int PathImageAfterBrowse(int image);
[[nodiscard]] int PathImageAfterExpansion(int image, bool isExpanded);

// A picked folder: without the backslash at its end.
[[nodiscard]] CString PickedFolderText(const CString& folder);
// A folder as an address: "file://C:\x", "file://server\share".
[[nodiscard]] CString FileAddress(const CString& folder);
// What an entry keeps of its text when it is moved: the first 259 characters. The rest of a longer one is lost on purpose.
[[nodiscard]] CString MovedEntryText(const CString& text);

// The flags of the entry that Browse puts back next to a node with these flags, after an edit had removed it.
[[nodiscard]] std::uint32_t ReAddedEntryFlags(std::uint32_t neighborFlags);

// The entries of a list's text, each a node. An empty list has one empty entry.
[[nodiscard]] std::vector<CString> PathListNodes(const CString& value);

// A tree as far as reading it back needs one. A null node stands for none.
class IPathNodes
{
public:
    using Node = const void*;

    [[nodiscard]] virtual Node FirstTop() const = 0;
    [[nodiscard]] virtual Node FirstChild(Node node) const = 0;
    [[nodiscard]] virtual Node NextSibling(Node node) const = 0;
    [[nodiscard]] virtual CString Text(Node node) const = 0;

protected:
    ~IPathNodes() = default;
};

// Reads the tree by position, in the order of PATH_TABLE. The entries of a list are joined by ";", empty ones too, which
// leave their place empty.
void ReadPathNodes(const IPathNodes& nodes, const std::function<void(PathProperty, const CString&)>& take);

// A path that Next doesn't leave empty.
struct RequiredPath
{
    PathProperty property;
    bool preferHostValue; // where its default comes from
    unsigned int message; // a string of the resource library
};
// In the order of the checks. Descriptions come from the database, unlike all others, which is how it is to be.
extern const std::array<RequiredPath, 5> REQUIRED_PATHS;

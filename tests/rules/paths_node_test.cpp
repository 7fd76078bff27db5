// What the flags of a node allow, and reading the tree back by position.
#include "paths/path_node_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <ostream>

void PrintTo(const PathButtonStates& states, std::ostream* stream)
{
    *stream << (states.bBrowse ? "B" : "-") << (states.bAdd ? "A" : "-") << (states.bRemove ? "R" : "-")
            << (states.bMoveUp ? "U" : "-") << (states.bMoveDown ? "D" : "-");
}

namespace {

PathButtonStates States(const char* letters)
{
    const std::string text(letters);
    const auto has = [&text](char letter) { return text.find(letter) != std::string::npos; };
    return {has('B'), has('A'), has('R'), has('U'), has('D')};
}

TEST(PathButtons, FollowTheFlagWordsInUse)
{
    EXPECT_EQ(PathButtonsFor(PATH_FLAGS_HEADING, true, true), States("B"));
    EXPECT_EQ(PathButtonsFor(PATH_FLAGS_LIST_HEADING, true, true), States("BA"));
    EXPECT_EQ(PathButtonsFor(PATH_FLAGS_FOLDER, true, true), States("BR"));
    EXPECT_EQ(PathButtonsFor(PATH_FLAGS_FILE | PNF_TEMPLATE, true, true), States("BR"));
    EXPECT_EQ(PathButtonsFor(PATH_FLAGS_LIST_ENTRY, true, true), States("BARUD"));
}

TEST(PathButtons, MoveOnlyTowardsANeighbor)
{
    EXPECT_EQ(PathButtonsFor(PATH_FLAGS_LIST_ENTRY, false, false), States("BAR"));
    EXPECT_EQ(PathButtonsFor(PATH_FLAGS_LIST_ENTRY, true, false), States("BARU"));
    EXPECT_EQ(PathButtonsFor(PATH_FLAGS_LIST_ENTRY, false, true), States("BARD"));
}

TEST(PathButtons, AreAllOffWithoutANode)
{
    EXPECT_EQ(PathButtonsFor(0, true, true), States(""));
}

TEST(PathButtons, EitherReadOnlyFlagTurnsBrowseOffAlone)
{
    for (const std::uint32_t flag : {PNF_READ_ONLY_A, PNF_READ_ONLY_B}) {
        EXPECT_EQ(PathButtonsFor(PATH_FLAGS_LIST_ENTRY | flag, true, true), States("ARUD"));
        EXPECT_EQ(PathButtonsFor(PATH_FLAGS_HEADING | flag, true, true), States(""));
    }
}

TEST(PathLabels, AreEditedUnlessOfAHeadingOrReadOnly)
{
    EXPECT_TRUE(MayEditPathLabel(PATH_FLAGS_LIST_ENTRY));
    EXPECT_TRUE(MayEditPathLabel(PATH_FLAGS_FILE));
    EXPECT_FALSE(MayEditPathLabel(PATH_FLAGS_HEADING));
    EXPECT_FALSE(MayEditPathLabel(PATH_FLAGS_LIST_HEADING));
    EXPECT_FALSE(MayEditPathLabel(PATH_FLAGS_FOLDER | PNF_READ_ONLY_A));
    EXPECT_FALSE(MayEditPathLabel(PATH_FLAGS_FOLDER | PNF_READ_ONLY_B));
}

TEST(PathFlags, AFolderAndAFileAreValues)
{
    EXPECT_TRUE(IsPathValue(PATH_FLAGS_FOLDER));
    EXPECT_TRUE(IsPathValue(PATH_FLAGS_FILE));
    EXPECT_FALSE(IsPathValue(PATH_FLAGS_LIST_HEADING));
    EXPECT_FALSE(IsPathValue(0));
}

TEST(PathFlags, OfAnEntryThatIsPutBackComeFromItsNeighborsKindAlone)
{
    EXPECT_EQ(ReAddedEntryFlags(PATH_FLAGS_LIST_ENTRY), 0x172u);
    EXPECT_EQ(ReAddedEntryFlags(PNF_URL | PNF_FOLDER | PNF_READ_ONLY_A), PNF_URL | 0x172u);
    EXPECT_EQ(ReAddedEntryFlags(0), 0x170u);
}

TEST(PathImages, BrowseOpensFourOfTheClosedOnes)
{
    for (int image = 0; image <= 31; ++image) {
        const bool isClosed = image == 17 || image == 19 || image == 21 || image == 25;
        EXPECT_EQ(PathImageAfterBrowse(image), isClosed ? image + 1 : image) << image;
    }
}

TEST(PathImages, AnExpansionOpensAndACollapseClosesFive)
{
    for (const int closed : {17, 19, 21, 25, 27}) {
        EXPECT_EQ(PathImageAfterExpansion(closed, true), closed + 1);
        EXPECT_EQ(PathImageAfterExpansion(closed + 1, true), closed + 1);
        EXPECT_EQ(PathImageAfterExpansion(closed + 1, false), closed);
        EXPECT_EQ(PathImageAfterExpansion(closed, false), closed);
    }
    for (const int other : {0, 3, 5, 10, 16, 23, 24, 29, 30}) {
        EXPECT_EQ(PathImageAfterExpansion(other, true), other);
        EXPECT_EQ(PathImageAfterExpansion(other, false), other);
    }
}

TEST(PathTexts, APickedFolderLosesOneBackslashAtItsEnd)
{
    EXPECT_EQ(PickedFolderText(L"C:\\"), CString(L"C:"));
    EXPECT_EQ(PickedFolderText(L"C:\\a\\\\"), CString(L"C:\\a\\"));
    EXPECT_EQ(PickedFolderText(L"C:\\a"), CString(L"C:\\a"));
    EXPECT_EQ(PickedFolderText(L"\\"), CString());
    EXPECT_EQ(PickedFolderText(L""), CString());
}

TEST(PathTexts, AFolderIsAnAddressBehindFile)
{
    EXPECT_EQ(FileAddress(L"C:\\x"), CString(L"file://C:\\x"));
    EXPECT_EQ(FileAddress(L"\\\\server\\share"), CString(L"file://server\\share"));
    EXPECT_EQ(FileAddress(L"//server/share"), CString(L"file://server/share"));
    EXPECT_EQ(FileAddress(L"\\\\//server"), CString(L"file://server"));
    EXPECT_EQ(FileAddress(L"file://C:\\x"), CString(L"file://C:\\x"));
    EXPECT_EQ(FileAddress(L"file:C:\\x"), CString(L"file://file:C:\\x"));
    EXPECT_EQ(FileAddress(L"x file://"), CString(L"file://x file://"));
}

TEST(PathTexts, AMoveKeeps259Characters)
{
    EXPECT_EQ(MovedEntryText(CString(L'x', 259)).GetLength(), 259);
    EXPECT_EQ(MovedEntryText(CString(L'x', 260)).GetLength(), 259);
    EXPECT_EQ(MovedEntryText(L"C:\\a"), CString(L"C:\\a"));
}

TEST(PathTexts, AListHasANodeForEachEntryAndOneForNone)
{
    EXPECT_EQ(PathListNodes(L"a; b;;c"), (std::vector<CString>{L"a", L"b", L"c"}));
    EXPECT_EQ(PathListNodes(L""), std::vector<CString>{L""});
    EXPECT_EQ(PathListNodes(L" ; "), std::vector<CString>{L""});
}

// ---- reading back

class PlainNodes final : public IPathNodes
{
public:
    struct Plain
    {
        CString text;
        std::vector<const Plain*> children;
        const Plain* next = nullptr;
    };

    Plain* Add(Plain* parent, const CString& text)
    {
        Plain* node = &m_nodes.emplace_back(Plain{text, {}, nullptr});
        std::vector<const Plain*>& siblings = parent ? parent->children : m_tops;
        if (!siblings.empty()) {
            const_cast<Plain*>(siblings.back())->next = node;
        }
        siblings.push_back(node);
        return node;
    }
    static Node FirstOf(const std::vector<const Plain*>& nodes) { return nodes.empty() ? nullptr : nodes[0]; }

    Node FirstTop() const override { return FirstOf(m_tops); }
    Node FirstChild(Node node) const override
    {
        return node ? FirstOf(static_cast<const Plain*>(node)->children) : nullptr;
    }
    Node NextSibling(Node node) const override
    {
        return node ? static_cast<const Plain*>(node)->next : nullptr;
    }
    CString Text(Node node) const override
    {
        return node ? static_cast<const Plain*>(node)->text : CString();
    }
    const std::vector<const Plain*>& Tops() const { return m_tops; }

private:
    std::deque<Plain> m_nodes;
    std::vector<const Plain*> m_tops;
};

// The tree as the table describes it, each value a text of its own; lists have the given entries.
void FillNodes(PlainNodes& nodes, const std::vector<CString>& entries)
{
    PlainNodes::Plain* parent = nullptr;
    unsigned int label = 0;
    for (const PathRow& row : PATH_TABLE) {
        if (row.parent.label != label) {
            parent = row.HasParent() ? nodes.Add(nullptr, L"parent") : nullptr;
            label = row.parent.label;
        }
        PlainNodes::Plain* heading = nodes.Add(parent, L"heading");
        if (!row.IsList()) {
            nodes.Add(heading, PathPropertyName(row.property));
        }
        for (const CString& entry : row.IsList() ? entries : std::vector<CString>()) {
            nodes.Add(heading, entry);
        }
    }
}

std::map<PathProperty, CString> ReadBack(const PlainNodes& nodes)
{
    std::map<PathProperty, CString> values;
    ReadPathNodes(nodes, [&values](PathProperty property, const CString& value) {
        EXPECT_TRUE(values.emplace(property, value).second) << property << " came twice";
    });
    return values;
}

TEST(PathWalk, EachSingleValueComesBackToItsOwnProperty)
{
    PlainNodes nodes;
    FillNodes(nodes, {L"a"});
    EXPECT_EQ(nodes.Tops().size(), 19u);
    const auto values = ReadBack(nodes);
    ASSERT_EQ(values.size(), 26u);
    for (const PathRow& row : PATH_TABLE) {
        EXPECT_EQ(values.at(row.property), CString(row.IsList() ? L"a" : PathPropertyName(row.property)));
    }
}

TEST(PathWalk, TheEntriesOfAListAreJoinedInTheirOrderAndEmptyOnesKeepTheirPlace)
{
    const std::pair<std::vector<CString>, const wchar_t*> lists[] = {
        {{L""}, L""},         {{L"a", L"", L"b"}, L"a;;b"}, {{L"a", L""}, L"a;"},
        {{L"", L"a"}, L";a"}, {{L"a;b", L"c"}, L"a;b;c"},   {{L" a ", L"a"}, L" a ;a"},
        {{L"", L""}, L";"},
    };
    for (const auto& [entries, value] : lists) {
        PlainNodes nodes;
        FillNodes(nodes, entries);
        const auto values = ReadBack(nodes);
        for (const PathProperty list : {PATH_SUPPORT, PATH_COLOR_BOOK, PATH_TOOL_PALETTE, PATH_TEXMAPS}) {
            EXPECT_EQ(values.at(list), CString(value));
        }
    }
}

TEST(PathWalk, ATreeWithoutNodesGivesEmptyValues)
{
    for (const auto& [property, value] : ReadBack(PlainNodes())) {
        EXPECT_EQ(value, CString()) << property;
    }
}

TEST(PathRequired, FiveAreCheckedInTheirOrderAndOnlyDescriptionsComeFromTheDatabase)
{
    std::vector<PathProperty> properties;
    std::vector<unsigned int> messages;
    for (const RequiredPath& required : REQUIRED_PATHS) {
        properties.push_back(required.property);
        messages.push_back(required.message);
        EXPECT_EQ(required.preferHostValue, required.property != PATH_PRINTER_DESC);
    }
    EXPECT_EQ(properties,
              (std::vector<PathProperty>{PATH_PRINTER_CONFIG, PATH_PRINTER_DESC, PATH_PRINTER_STYLE_SHEET,
                                         PATH_ACTIONS_RECORDING, PATH_DGN_MAPPING}));
    EXPECT_EQ(messages, (std::vector<unsigned int>{479, 480, 481, 251, 251}));
}

} // namespace

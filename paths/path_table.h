// The paths that the page customizes: which installer properties they are, how each is shown, and in which order they are
// read, stored and shown. No more and no fewer than these, whatever a database holds.
#pragma once

#include <array>
#include <cstdint>

// In declared order, an index into the page's strings.
enum PathProperty : int
{
    PATH_MENU_FILE,
    PATH_ENTERPRISE_MENU_FILE,
    PATH_SUPPORT,
    PATH_PRINTER_CONFIG,
    PATH_PRINTER_DESC,
    PATH_PRINTER_STYLE_SHEET,
    PATH_TEMPLATE,
    PATH_TEMP,
    PATH_XREF_TEMP,
    PATH_TOOL_PALETTE,
    PATH_CUSTOM_DICTIONARY,
    PATH_ALT_FONT,
    PATH_QNEW_TEMPLATE,
    PATH_WEB_GRAB,
    PATH_FONT_MAP_FILE,
    PATH_SAVE_FILE,
    PATH_LOG_FILE,
    PATH_PLOT_LOG,
    PATH_COLOR_BOOK,
    PATH_DATABASE_WORKSPACE,
    PATH_SHEET_SET_TEMPLATE,
    PATH_ALTERNATIVE_PAGE_SETUPS_TEMPLATE,
    PATH_TEXMAPS,
    PATH_ACTIONS_RECORDING,
    PATH_ADDITIONAL_ACTIONS,
    PATH_DGN_MAPPING,
    PATH_COUNT,
};

// The name of the installer property.
[[nodiscard]] const wchar_t* PathPropertyName(PathProperty property);

// Reading on entry and storing on leaving go in this order, which is neither the declared one nor that of the tree.
extern const std::array<PathProperty, PATH_COUNT> PATH_STORE_ORDER;

// What the page may do with a node of the tree.
enum PathNodeFlags : std::uint32_t
{
    PNF_GROUP = 0x00000001,          // a heading: no value of its own, no label edit
    PNF_FOLDER = 0x00000002,         // a folder; Browse opens the folder picker
    PNF_FILE = 0x00000004,           // a file; Browse opens the file picker
    PNF_ADDABLE = 0x00000010,        // Add is enabled
    PNF_REMOVABLE = 0x00000020,      // Remove is enabled
    PNF_MOVABLE = 0x00000040,        // Move Up and Move Down are, where there is a neighbor
    PNF_LIST_ENTRY = 0x00000100,     // belongs to a list: an emptied entry goes
    PNF_FONTMAP = 0x00004000,        // a tag that no rule reads
    PNF_NO_EXIST_CHECK = 0x00040000, // the file need not exist on this computer
    PNF_READ_ONLY_A = 0x00200000,    // either forbids label edit and Browse; no row of the table has one
    PNF_READ_ONLY_B = 0x00400000,
    PNF_DICTIONARY = 0x01000000, // a tag that no rule reads
    PNF_URL = 0x08000000,        // a folder kept as a "file:" address; no row of the table has it
    PNF_TEMPLATE = 0x10000000,   // a tag that no rule reads
};

// The flag words in use; a tag may join that of a file.
constexpr std::uint32_t PATH_FLAGS_HEADING = PNF_GROUP;
constexpr std::uint32_t PATH_FLAGS_LIST_HEADING = PNF_GROUP | PNF_ADDABLE | PNF_LIST_ENTRY;
constexpr std::uint32_t PATH_FLAGS_LIST_ENTRY =
    PNF_FOLDER | PNF_ADDABLE | PNF_REMOVABLE | PNF_MOVABLE | PNF_LIST_ENTRY;
constexpr std::uint32_t PATH_FLAGS_FOLDER = PNF_FOLDER | PNF_REMOVABLE;
constexpr std::uint32_t PATH_FLAGS_FILE = PNF_FILE | PNF_REMOVABLE;

// Index of a value's picture in the page's image list.
constexpr int PATH_VALUE_IMAGE = 29;

// A node above values: strings of its label and of its description, index of its picture.
struct PathHeading
{
    unsigned int label = 0;
    unsigned int text = 0;
    int image = 0;
};

struct PathRow
{
    PathHeading
        parent; // rows in turn with the same one share its node; without a label the row's heading is on top
    PathHeading heading;
    PathProperty property;
    std::uint32_t valueFlags; // of the value, or of each of the list's entries

    bool HasParent() const { return parent.label != 0; }
    bool IsList() const { return (valueFlags & PNF_LIST_ENTRY) != 0; }
    std::uint32_t GetHeadingFlags() const { return IsList() ? PATH_FLAGS_LIST_HEADING : PATH_FLAGS_HEADING; }
};

// In the order of the tree, in which the page also walks it back.
extern const std::array<PathRow, PATH_COUNT> PATH_TABLE;

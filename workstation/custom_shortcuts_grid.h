// The custom shortcuts of a page: shown in its grid, read back, checked, and stored as rows of the table Shortcut.
#pragma once

#include "controls/grid.h"
#include "include/setup_enums.h"
#include "include/shortcut_strings.h"
#include "msi/row_columns.h"
#include "workstation/shortcut_row_rules.h"

class CProduct;
struct ShortcutChange;

class CCustomShortcutsGrid
{
public:
    static constexpr int ROWS = 5;

    // Both are the host's.
    CCustomShortcutsGrid(CProduct& product, InstallerHandle database)
        : m_product(product), m_hDatabase(database)
    {
    }

    // Columns and rows of the page's list view, with the prompts in the first row. Without enough rows to fill it, it gets
    // lower.
    void BuildShortcutGrid(HWND page);
    // Fills the grid. Without a template in the product it is hidden with its heading, and nothing is loaded.
    void LoadCustomShortcuts();

    // The keys of the grid, before the dialog sees them.
    BOOL PreTranslateMessage(MSG* message) { return m_grid.PreTranslateMessage(message); }

    // Stores an open cell and fills `rows` with what the grid holds. With `showErrors` the first row that can't be a shortcut
    // is reported by a box and brought to the user, and the result is false; without, such rows are left out.
    [[nodiscard]] bool CollectCustomShortcuts(std::vector<CustomShortcutRow>& rows, bool showErrors);
    // Always true: a row that the database refuses isn't reported, on purpose.
    bool WriteCustomShortcuts(const std::vector<CustomShortcutRow>& rows);

private:
    void FitHeight();
    void Report(const ShortcutVerdict& verdict);
    void Execute(const std::vector<ShortcutChange>& changes);

    CProduct& m_product;
    InstallerHandle m_hDatabase;
    HWND m_page = nullptr;
    CGrid m_grid;
    CustomShortcutRow m_prompts;
    ShortcutColumns m_shortcutTemplate;
    int m_nextShortcutNumber = 1;
    // As they were on entry, also behind a store: the page is left then, and reads anew when it opens again. One that stays
    // open and stores once more starts from here again.
    std::vector<ShortcutStrings> m_existingShortcuts;
};

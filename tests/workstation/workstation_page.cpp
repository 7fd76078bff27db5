#include "tests/workstation/workstation_page.h"

#include "installer/query.h"
#include "installer/record.h"
#include "msi/msi_property.h"

#include <msiquery.h>

WorkstationPage::WorkstationPage()
    : OnlinePage({WorkstationSettingDialog, WorkstationSettingPage}),
      product(host.AddProduct(L"zolt.msi", L"Zolt"))
{
    EXPECT_EQ(MsiOpenDatabaseW(folder / L"zolt.msi", MSIDBOPEN_CREATE, m_database.put()), 0u);
    Run(L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL PRIMARY KEY "
        L"`Property`)");
    Run(L"CREATE TABLE `Shortcut` (`Shortcut` CHAR(72) NOT NULL, `Directory_` CHAR(72) NOT NULL, `Name` "
        L"CHAR(128) NOT NULL LOCALIZABLE, `Component_` CHAR(72) NOT NULL, `Target` CHAR(72) NOT NULL, "
        L"`Arguments` CHAR(255), `Description` CHAR(255) LOCALIZABLE, `Hotkey` SHORT, `Icon_` CHAR(72), "
        L"`IconIndex` SHORT, `ShowCmd` SHORT, `WkDir` CHAR(72) PRIMARY KEY `Shortcut`)");
    product.m_strCatalogKey = L"Zolt & Co";
    WithProperty(L"ZOLT_SHORTCUT_TEMPLATE",
                 L"Template;MENUDIR;CUST|Custom;Main;[INSTALLDIR]zolt.exe;;Starts it;;;;;WORKDIR");
    context.hDatabase = m_database.get();
    context.pProduct = &product;
    context.strHelpFile = L"WorkstationSetting.html";
    MeetGridOnce();
}

// Fills the system's caches for list views, edits and boxes, once for the program.
void WorkstationPage::MeetGridOnce()
{
    static bool done = false;
    if (done) {
        return;
    }
    done = true;
    TypeRow(4, L"a?b", CString(L'x', 300));
    Press(Next());
    AnswerError(IDS_SHORTCUT_NAME_INVALID, L"a?b");
    Look([this] {
        SendMessageW(Control(IDC_SHORTCUTS).GetWindow(), LVM_SETCOLUMNWIDTH, 0, 2000); // scroll bars too
        RedrawWindow(Page(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    });
    ShowAndGoBack();
    product.msiProperties.erase(L"ZOLT_CUSTOM_SHORTCUT");
    Run(L"DELETE FROM `Property`");
    host.log.Clear();
    CountFromHere();
}

void WorkstationPage::TearDown()
{
    m_database.reset();
    OnlinePage::TearDown();
}

// ---- the product

void WorkstationPage::Run(const CString& statement)
{
    CInstallerHandle view;
    ASSERT_EQ(MsiDatabaseOpenViewW(m_database.get(), statement, view.put()), 0u) << Utf8(statement);
    ASSERT_EQ(MsiViewExecute(view.get(), 0), 0u) << Utf8(statement);
}

void WorkstationPage::WithPropertyRow(const wchar_t* name, const CString& value)
{
    EXPECT_TRUE(WriteProperty(m_database.get(), name, value));
}

void WorkstationPage::WithShortcut(const wchar_t* key, const CString& name, const CString& command)
{
    Run(CString(L"INSERT INTO `Shortcut` (`Shortcut`,`Directory_`,`Name`,`Component_`,`Target`,`Arguments`) "
                L"VALUES ('") +
        key + L"','MENUDIR','S|" + name + L"','Main','t','" + command + L"')");
    product.shortcuts.push_back({key, name, command});
}

// ---- steps

void WorkstationPage::BeginCell(int row, int column, const CString& text)
{
    Look([] {}); // once the page is up
    Step(L"type into the cell", [this, row, column, text] { return EditCell(row, column, text); });
}

StepOutcome WorkstationPage::EditCell(int row, int column, const CString& text) const
{
    const CListControl list = Control(IDC_SHORTCUTS);
    if (const StepOutcome usable = list.NeedUsable(); !usable.IsDone()) {
        return usable;
    }
    const RECT cell = CellPlace(row, column);
    SendMessageW(list.GetWindow(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(cell.left + 4, cell.top + 4));
    return Editor() ? CControl(Editor()).SetText(text) : StepOutcome::Failed(L"no cell is being edited");
}

void WorkstationPage::TypeCell(int row, int column, const CString& text)
{
    BeginCell(row, column, text);
    Key(VK_RETURN);
    Await(L"the cell is still being edited", [this] { return !Editor(); });
}

void WorkstationPage::TypeRow(int row, const CString& name, const CString& command)
{
    TypeCell(row, 0, name);
    TypeCell(row, 1, command);
}

void WorkstationPage::ExpectRows(const CString& rows)
{
    EXPECT_EQ(DatabaseRows(), rows);
}

void WorkstationPage::AnswerError(unsigned int text, const CString& refused, std::function<void()> look)
{
    const CString words = ResourceText(text) + (refused.IsEmpty() ? CString() : L": " + refused);
    Answer(ErrorBox(words).Titled(ResourceText(IDS_ERROR_TITLE)).WithoutOwner(), IDOK, std::move(look));
}

void WorkstationPage::Send(UINT message, LRESULT& answer)
{
    answer = -1;
    Look([this, message, &answer] { answer = SendMessageW(Page(), message, 0, 0); });
}

void WorkstationPage::SeeFocus(int control)
{
    Await(L"another control has the focus", [this, control] { return HasFocus(control); });
}

// ---- looks

HWND WorkstationPage::Editor() const
{
    const HWND editor =
        FindWindowExW(Control(IDC_SHORTCUTS).GetWindow(), nullptr, L"RolloutGridEdit", nullptr);
    return editor && IsWindowVisible(editor) ? editor : nullptr;
}

RECT WorkstationPage::CellPlace(int row, int column) const
{
    const HWND grid = Control(IDC_SHORTCUTS).GetWindow();
    RECT cell = {};
    cell.top = column;
    SendMessageW(grid, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&cell));
    cell.right =
        cell.left + static_cast<LONG>(SendMessageW(grid, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    return cell;
}

bool WorkstationPage::IsShown(int id) const
{
    return IsWindowVisible(Control(id).GetWindow()) != FALSE;
}

CString WorkstationPage::Stored(const wchar_t* name) const
{
    const auto row = product.msiProperties.find(name);
    return row != product.msiProperties.end() ? row->second : CString(L"(none)");
}

CString WorkstationPage::InDatabase(const wchar_t* name) const
{
    wchar_t value[300] = L"";
    return ReadTableValue(m_database.get(), L"Property", name, value, ARRAYSIZE(value)) ? CString(value)
                                                                                        : CString(L"(none)");
}

CString WorkstationPage::DatabaseRows() const
{
    CString rows;
    EXPECT_EQ(ForEachRow(m_database.get(), L"SELECT `Shortcut`,`Name`,`Arguments` FROM `Shortcut`", {},
                         [&rows](MSIHANDLE record) {
                             rows += RecordText(record, 1) + L": " + RecordText(record, 2) + L", " +
                                     RecordText(record, 3) + L"\n";
                             return true;
                         }),
              0u);
    return rows;
}

// The page of the workstations in both shapes, on a product whose properties and shortcuts lie in a real database.
#pragma once

#include "installer/handle.h"
#include "tests/online/online_page.h"

#include <vector>

class WorkstationPage : public OnlinePage
{
protected:
    WorkstationPage();
    void TearDown() override;

    // ---- the product, before the page opens
    void Run(const CString& statement);
    // Where the page reads it: at the host.
    void WithProperty(const wchar_t* name, const CString& value) { product.msiProperties[name] = value; }
    // A row of the table Property alone.
    void WithPropertyRow(const wchar_t* name, const CString& value);
    void WithoutTemplate() { product.msiProperties.erase(L"ZOLT_SHORTCUT_TEMPLATE"); }
    // In the database, and among those that the host finds.
    void WithShortcut(const wchar_t* key, const CString& name, const CString& command);

    // ---- steps
    // Opens the cell by a double click, types, and presses Enter.
    void TypeCell(int row, int column, const CString& text);
    void TypeRow(int row, const CString& name, const CString& command);
    // The same without Enter.
    void BeginCell(int row, int column, const CString& text);
    void ExpectRows(const CString& rows); // as DatabaseRows has them
    // Answers an error box of the page's, which has no owner, and runs the look while it is up.
    void AnswerError(unsigned int text, const CString& refused = {}, std::function<void()> look = nullptr);
    // Sends the message and answers what comes up on the way by the steps behind it.
    void Send(UINT message, LRESULT& answer);
    void SeeFocus(int control);
    // What BeginCell does, at once.
    StepOutcome EditCell(int row, int column, const CString& text) const;

    // ---- looks
    CString Cell(int row, int column) const { return Control(IDC_SHORTCUTS).GetCell(row, column); }
    // Name and command of a row, with a bar between them.
    CString Row(int row) const { return Cell(row, 0) + L"|" + Cell(row, 1); }
    RECT CellPlace(int row, int column) const; // in the table's client pixels
    // Null while no cell is being edited.
    HWND Editor() const;
    bool IsShown(int id) const;
    // What was written to the host's and to the database; "(none)" where nothing stands.
    CString Stored(const wchar_t* name) const;
    CString InDatabase(const wchar_t* name) const;
    CString List() const { return Stored(L"ZOLT_CUSTOM_SHORTCUT"); }
    // "key: name, command" of each row of the table Shortcut, in the table's order.
    CString DatabaseRows() const;

    TestProduct& product;
    CTestFolder folder;
    CInstallerHandle m_database;

private:
    void MeetGridOnce();
};

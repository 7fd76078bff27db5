#include "tests/paths/paths_page.h"

#include "automation/file_picker.h"
#include "automation/folder_picker.h"
#include "msi/msi_property.h"
#include "paths/path_node_rules.h"

#include <msiquery.h>

#include <algorithm>
#include <cstring>

PathsPage::PathsPage()
    : OnlinePage({PathCustomizationDialog, PathCustomizationPage}),
      product(host.AddProduct(L"zolt.msi", L"Zolt"))
{
    EXPECT_EQ(MsiOpenDatabaseW(folder / L"zolt.msi", MSIDBOPEN_CREATE, m_database.put()), 0u);
    Run(L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL PRIMARY KEY "
        L"`Property`)");
    Run(L"CREATE TABLE `TarnDirectoryMap` (`Directory_` CHAR(72) NOT NULL, `LocalString` CHAR(255), `Flags` "
        L"SHORT NOT NULL PRIMARY KEY `Directory_`)");
    product.m_strName = L"Zolt & Co";
    context.hDatabase = m_database.get();
    context.pProduct = &product;
    MeetTreeOnce();
}

// Fills the system's caches for trees and their edits, once for the program.
void PathsPage::MeetTreeOnce()
{
    static bool done = false;
    if (done) {
        return;
    }
    done = true;
    WithPath(PATH_SUPPORT, L"C:\\" + CString(L'x', 300)); // scroll bars
    SelectValue(PATH_SUPPORT);
    const auto draw = [this] {
        RedrawWindow(Page(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    };
    Look(draw);
    Edit(PATH_MENU_FILE, L"a*b");
    AnswerPathBox(IDS_PATH_FILE_INVALID, L"a*b");
    AwaitEdit();
    Look(draw); // with an edit too
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ShowAndGoBack();
    product.msiProperties.clear();
    product.properties.clear();
    for (const wchar_t* name : {L"NIW_Custom_Paths_Are_Set", PathPropertyName(PATH_SUPPORT)}) {
        Run(CString(L"DELETE FROM `Property` WHERE `Property`='") + name + L"'");
    }
    host.log.Clear();
    CountFromHere();
}

void PathsPage::TearDown()
{
    m_database.reset();
    OnlinePage::TearDown();
}

// ---- the database

void PathsPage::Run(const CString& statement)
{
    CInstallerHandle view;
    ASSERT_EQ(MsiDatabaseOpenViewW(m_database.get(), statement, view.put()), 0u) << Utf8(statement);
    ASSERT_EQ(MsiViewExecute(view.get(), 0), 0u) << Utf8(statement);
}

void PathsPage::WithPath(PathProperty property, const CString& installerForm)
{
    EXPECT_TRUE(WriteProperty(m_database.get(), PathPropertyName(property), installerForm));
}

void PathsPage::WithDirectory(const wchar_t* key, const wchar_t* text)
{
    Run(CString(L"INSERT INTO `TarnDirectoryMap` (`Directory_`,`LocalString`,`Flags`) VALUES ('") + key +
        L"','" + text + L"',2)");
}

CString PathsPage::Marker() const
{
    return ReadProperty(m_database.get(), L"NIW_Custom_Paths_Are_Set");
}

// ---- steps

void PathsPage::SelectValue(PathProperty property, int entry)
{
    Look([this, property, entry] {
        SetFocus(Tree().GetWindow());
        SendMessageW(Tree().GetWindow(), TVM_SELECTITEM, TVGN_CARET,
                     reinterpret_cast<LPARAM>(Value(property, entry)));
        EXPECT_EQ(Selected(), Value(property, entry));
        EXPECT_NE(Selected(), nullptr);
    });
}

void PathsPage::SelectHeading(PathProperty property)
{
    Look([this, property] {
        SetFocus(Tree().GetWindow());
        SendMessageW(Tree().GetWindow(), TVM_SELECTITEM, TVGN_CARET,
                     reinterpret_cast<LPARAM>(Heading(property)));
    });
}

void PathsPage::BeginEdit()
{
    Key(VK_F2);
    AwaitEdit();
}

void PathsPage::TypeLabel(const CString& text)
{
    Step(L"type into the label", [this, text] { return CControl(EditBox()).SetText(text); });
}

void PathsPage::EndEdit()
{
    Key(VK_RETURN);
}

void PathsPage::Edit(PathProperty property, const CString& text, int entry)
{
    SelectValue(property, entry);
    BeginEdit();
    TypeLabel(text);
    EndEdit();
}

void PathsPage::MouseDown(int button)
{
    Step(L"mouse down", [this, button] {
        const CControl control(Page(), button);
        if (!control.IsUsable()) {
            return control.NeedUsable();
        }
        PostMessageW(control.GetWindow(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        return StepOutcome::Done();
    });
}

void PathsPage::MousePress(int button)
{
    Step(L"mouse press", [this, button] {
        const CControl control(Page(), button);
        if (!control.IsUsable()) {
            return control.NeedUsable();
        }
        PostMessageW(control.GetWindow(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        PostMessageW(control.GetWindow(), WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
        return StepOutcome::Done();
    });
}

void PathsPage::AnswerPathBox(unsigned int text, const CString& path, int button)
{
    Answer(PathBox(text, path), button);
}

void PathsPage::AwaitEdit()
{
    Await(L"no label is being edited", [this] { return EditBox() && GetFocus() == EditBox(); });
}

void PathsPage::AwaitNoEdit()
{
    Await(L"the label is still being edited", [this] { return !EditBox(); });
}

void PathsPage::ExpectValues(PathProperty property, const Texts& texts)
{
    Look([this, property, texts] { EXPECT_EQ(Values(property), texts); });
}

void PathsPage::ExpectSelected(PathProperty property, int entry)
{
    Look([this, property, entry] {
        EXPECT_EQ(Selected(), Value(property, entry))
            << "selected is " << Utf8(Tree().GetItemText(Selected()));
    });
}

void PathsPage::ExpectButtons(const wchar_t* states)
{
    Look([this, states] {
        EXPECT_EQ(
            States({IDC_PATH_BROWSE, IDC_PATH_ADD, IDC_PATH_REMOVE, IDC_PATH_MOVE_UP, IDC_PATH_MOVE_DOWN}),
            CString(states));
    });
}

void PathsPage::PickFolder(const CString& picked)
{
    if (picked.IsEmpty()) {
        Step(L"cancel the picker", [] { return CancelPicker(); });
    } else {
        Step(L"select the folder in the picker", [picked] { return SelectPickerFolder(picked); });
        Step(L"press OK in the picker", [] { return AcceptPicker(); });
    }
    Step(L"see the picker go", [] { return Until(!FindFolderPicker(), L"the picker is still up"); });
    Await(L"the page is still disabled",
          [this] { return IsWindowEnabled(GetAncestor(Page(), GA_ROOT)) != FALSE; });
}

void PathsPage::PickFile(const CString& file)
{
    if (file.IsEmpty()) {
        Step(L"cancel the file dialog", [] { return CancelFilePicker(); });
    } else {
        Step(L"enter the file", [file] { return EnterPickerFiles({file}); });
        Step(L"press Open", [] { return AcceptFilePicker(); });
    }
    Step(L"see the dialog go", [] { return Until(!FindFilePicker(), L"the file dialog is still up"); });
    Await(L"the page is still disabled",
          [this] { return IsWindowEnabled(GetAncestor(Page(), GA_ROOT)) != FALSE; });
}

// ---- looks

HWND PathsPage::EditBox() const
{
    return reinterpret_cast<HWND>(SendMessageW(Tree().GetWindow(), TVM_GETEDITCONTROL, 0, 0));
}

HTREEITEM PathsPage::Relative(HTREEITEM node, UINT relation) const
{
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(Tree().GetWindow(), TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(node)));
}

const PathRow& PathsPage::RowOf(PathProperty property)
{
    return *std::find_if(PATH_TABLE.begin(), PATH_TABLE.end(),
                         [property](const PathRow& row) { return row.property == property; });
}

// By the labels, so that a heading in the wrong place isn't found.
HTREEITEM PathsPage::Heading(PathProperty property) const
{
    const PathRow& row = RowOf(property);
    HTREEITEM node = Relative(nullptr, TVGN_ROOT);
    for (const PathHeading& heading : {row.parent, row.heading}) {
        if (heading.label == 0) {
            continue;
        }
        const CString label = ResourceText(heading.label);
        while (node && Tree().GetItemText(node) != label) {
            node = Relative(node, TVGN_NEXT);
        }
        if (heading.label != row.heading.label) {
            node = Relative(node, TVGN_CHILD);
        }
    }
    return node;
}

HTREEITEM PathsPage::Value(PathProperty property, int entry) const
{
    HTREEITEM node = Relative(Heading(property), TVGN_CHILD);
    for (; node && entry > 0; --entry) {
        node = Relative(node, TVGN_NEXT);
    }
    return node;
}

PathsPage::Texts PathsPage::Values(PathProperty property) const
{
    Texts texts;
    for (HTREEITEM node = Value(property); node; node = Relative(node, TVGN_NEXT)) {
        texts.push_back(Tree().GetItemText(node));
    }
    return texts;
}

TVITEMW PathsPage::Item(HTREEITEM node) const
{
    TVITEMW item = {};
    item.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM | TVIF_STATE;
    item.hItem = node;
    item.stateMask = TVIS_EXPANDED;
    SendMessageW(Tree().GetWindow(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return item;
}

POINT PathsPage::PlaceOf(HTREEITEM node) const
{
    RECT place = {};
    memcpy(&place, &node, sizeof node); // as the message wants it
    SendMessageW(Tree().GetWindow(), TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&place));
    return {place.left + 3, place.top + 3};
}

CString PathsPage::Stored(PathProperty property) const
{
    const auto row = product.msiProperties.find(PathPropertyName(property));
    return row != product.msiProperties.end() ? row->second : CString(L"(none)");
}

ExpectedBox PathBox(unsigned int text, const CString& path)
{
    const bool asks = text == IDS_PATH_MISSING;
    return ExpectedBox{ResourceText(text, path), UINT(asks ? MB_YESNO : MB_OK), MB_ICONWARNING, CString(),
                       true};
}

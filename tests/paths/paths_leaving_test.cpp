// Leaving the page of the paths: what is stored, which paths get their default back, and edits that are still open.
#include "msi/msi_property.h"
#include "tests/paths/paths_page.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

class PathLeaving : public PathsPage
{
protected:
    struct Required
    {
        PathProperty property;
        bool isHosts; // where its default comes from
        unsigned int message;
    };
    static constexpr Required REQUIRED[] = {
        {PATH_PRINTER_CONFIG, true, IDS_PRINTER_CONFIG_EMPTY},
        {PATH_PRINTER_DESC, false, IDS_PRINTER_DESC_EMPTY},
        {PATH_PRINTER_STYLE_SHEET, true, IDS_PRINTER_STYLE_SHEET_EMPTY},
        {PATH_ACTIONS_RECORDING, true, IDS_ACTION_PATH_EMPTY},
        {PATH_DGN_MAPPING, true, IDS_ACTION_PATH_EMPTY},
    };
    // Database and host hold different values, so that it shows which one came back.
    void WithRequiredPaths()
    {
        for (const Required& path : REQUIRED) {
            WithPath(path.property, L"C:\\database");
            product.properties[PathPropertyName(path.property)] = L"C:\\host";
        }
    }
    void Empty(PathProperty property)
    {
        Edit(property, L"");
        AwaitNoEdit();
    }
    void EmptyRequiredPaths()
    {
        for (const Required& path : REQUIRED) {
            Empty(path.property);
        }
    }
    static ExpectedBox DefaultBox(const Required& path)
    {
        const CString text =
            path.message == IDS_ACTION_PATH_EMPTY
                ? ResourceText(path.message, ResourceText(RowOf(path.property).heading.label))
                : ResourceText(path.message);
        return WarningBox(text).Titled(L"");
    }
    void AnswerDefaultBoxes()
    {
        for (const Required& path : REQUIRED) {
            Answer(DefaultBox(path), IDOK);
        }
    }
    void ExpectDefaultsStored()
    {
        for (const Required& path : REQUIRED) {
            EXPECT_EQ(Stored(path.property), CString(path.isHosts ? L"C:\\host" : L"C:\\database"))
                << path.property;
        }
    }
    void ExpectNothingStored() { EXPECT_TRUE(product.msiProperties.empty()); }
};
INSTANTIATE_BOTH_SHAPES(PathLeaving);

// Keys that the page has offered to the window around it.
std::vector<WPARAM> g_offered;
WNDPROC g_paneProcedure = nullptr;

LRESULT CALLBACK NoteOfferedKey(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == PAGE_MESSAGE_KEY && reinterpret_cast<const MSG*>(lParam)->message == WM_KEYDOWN) {
        g_offered.push_back(reinterpret_cast<const MSG*>(lParam)->wParam);
    }
    return CallWindowProcW(g_paneProcedure, window, message, wParam, lParam);
}

class PathTabLeaving : public PathLeaving
{
protected:
    void Send(UINT message, LRESULT& answer)
    {
        Look([this, message, &answer] { answer = SendMessageW(Page(), message, 0, 0); });
    }
    // In a host of the test's, which the test hides and closes itself.
    void OpenWithEdit(const CString& text)
    {
        m_page = tabs.emplace().Open(PathCustomizationPage, context);
        ASSERT_NE(m_page, nullptr);
        SetFocus(Tree().GetWindow());
        SendMessageW(Tree().GetWindow(), TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(Value(PATH_TEMP)));
        ASSERT_NE(EditBox(), nullptr);
        SetWindowTextW(EditBox(), text);
    }
    static void DispatchPosted()
    {
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
        }
    }
    void TearDown() override
    {
        tabs.reset();
        PathsPage::TearDown();
    }

    std::optional<CTabHost> tabs;
};
INSTANTIATE_TEST_SUITE_P(Shapes, PathTabLeaving, testing::Values(Shape::Tab), ShapeName);

class PathDialogLeaving : public PathLeaving
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, PathDialogLeaving, testing::Values(Shape::Wizard), ShapeName);

} // namespace

// ---- what is stored

TEST_P(PathLeaving, NextStoresEveryPathInItsOrder)
{
    for (const PathRow& row : PATH_TABLE) {
        WithPath(row.property, CString(L"C:\\") + PathPropertyName(row.property));
    }
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    std::vector<CString> names;
    for (const PathProperty property : PATH_STORE_ORDER) {
        names.push_back(PathPropertyName(property));
        EXPECT_EQ(Stored(property), CString(L"C:\\") + PathPropertyName(property));
    }
    std::vector<CString> stored;
    for (const CString& call : host.log.Of(L"Product.SetMsiProperty")) {
        stored.push_back(call.Mid(23, call.Find(L',') - 23));
    }
    EXPECT_EQ(stored, names);
    EXPECT_EQ(Marker(), CString(L"0"));
}

TEST_P(PathLeaving, BackStoresAsNextDoes)
{
    WithPath(PATH_TEMP, L"C:\\old");
    Edit(PATH_TEMP, L"C:\\new");
    AwaitNoEdit();
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"C:\\new"));
    EXPECT_EQ(Stored(PATH_MENU_FILE), CString(L"[NULL]"));
    EXPECT_EQ(Marker(), CString(L"1"));
}

TEST_P(PathLeaving, AValueThatIsBroughtBackClearsTheMarkerOnTheNextSave)
{
    WithPath(PATH_TEMP, L"C:\\old");
    Edit(PATH_TEMP, L"C:\\new");
    AwaitNoEdit();
    ShowAndGoBack();
    EXPECT_EQ(Marker(), CString(L"1"));
    WithPath(PATH_TEMP, Stored(PATH_TEMP)); // the host's store, as the next page reads it
    Edit(PATH_TEMP, L"C:\\OLD");
    AwaitNoEdit();
    ShowAndGoBack();
    EXPECT_EQ(Marker(), CString(L"0")) << "letter case is no change";
}

TEST_P(PathLeaving, AVetoStoresNothing)
{
    context.leaveHooks = {[](PageContext*) { return HOOK_VETO; }};
    Press(Next());
    Look([this] {
        ExpectNothingStored();
        context.leaveHooks.clear();
    });
    ShowAndGoBack();
}

// ---- required paths

TEST_P(PathLeaving, NextFillsEachRequiredPathFromItsSourceAndSaysSo)
{
    WithRequiredPaths();
    EmptyRequiredPaths();
    Press(Next());
    AnswerDefaultBoxes();
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    ExpectDefaultsStored();
}

TEST_P(PathLeaving, TheTreeKeepsTheEmptyPathWhoseDefaultIsStored)
{
    WithRequiredPaths();
    Empty(PATH_PRINTER_DESC);
    Press(Next());
    Answer(DefaultBox(REQUIRED[1]), IDOK, [this] {
        EXPECT_EQ(Values(PATH_PRINTER_DESC), Texts{L""});
        EXPECT_EQ(Stored(PATH_PRINTER_DESC), CString(L"(none)"));
    });
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(Stored(PATH_PRINTER_DESC), CString(L"C:\\database"));
}

TEST_P(PathLeaving, BackStoresEmptyRequiredPathsAsNoPaths)
{
    WithRequiredPaths();
    EmptyRequiredPaths();
    ShowAndGoBack();
    for (const Required& path : REQUIRED) {
        EXPECT_EQ(Stored(path.property), CString(L"[NULL]"));
    }
}

TEST_P(PathLeaving, ARequiredPathWithoutADefaultStaysEmptyWithoutAMessage)
{
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    for (const Required& path : REQUIRED) {
        EXPECT_EQ(Stored(path.property), CString(L"[NULL]"));
    }
}

TEST_P(PathLeaving, OtherPathsMayBeEmpty)
{
    WithPath(PATH_ADDITIONAL_ACTIONS, L"C:\\a");
    Empty(PATH_ADDITIONAL_ACTIONS);
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(Stored(PATH_ADDITIONAL_ACTIONS), CString(L"[NULL]"));
}

// ---- an edit that is still open

TEST_P(PathLeaving, NextKeepsWhatIsTypedInAnOpenEdit)
{
    SelectValue(PATH_TEMP);
    BeginEdit();
    TypeLabel(L"C:\\typed");
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"C:\\typed"));
}

TEST_P(PathLeaving, NextStaysWithARefusedTextAndTheEditOpensAnew)
{
    SelectValue(PATH_TEMP);
    BeginEdit();
    TypeLabel(L"a*b");
    Press(Next());
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"a*b");
    AwaitEdit();
    Look([this] {
        EXPECT_EQ(CControl(EditBox()).GetText(), CString(L"a*b"));
        ExpectNothingStored();
    });
    TypeLabel(L"C:\\typed");
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"C:\\typed"));
}

// Enter opens the edit, and goes on to the frame, which leaves the page.
TEST_P(PathLeaving, EnterOnTheTreeDoesNotCheckTheEditInWhichNothingWasTyped)
{
    WithPath(PATH_TEMP, L"\\\\server\\gone");
    SelectValue(PATH_TEMP);
    Key(VK_RETURN);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"\\\\server\\gone"));
}

TEST_P(PathLeaving, TheMnemonicOfNextEndsTheEditToo)
{
    SelectValue(PATH_TEMP);
    BeginEdit();
    TypeLabel(L"a*b");
    Step(L"press a mnemonic", [] {
        PostMessageW(GetFocus(), WM_SYSCHAR, L'n', LPARAM(1) << 29);
        return StepOutcome::Done();
    });
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"a*b");
    AwaitEdit();
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ShowAndGoBack();
}

TEST_P(PathLeaving, BackWithARefusedTextLeavesWithTheOldOne)
{
    WithPath(PATH_TEMP, L"C:\\old");
    SelectValue(PATH_TEMP);
    BeginEdit();
    TypeLabel(L"a*b");
    Press(Back());
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"a*b");
    EXPECT_EQ(ShowPage(), NAVIGATION_BACK);
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"C:\\old"));
}

// ---- messages of a tab page's host

TEST_P(PathTabLeaving, StoringChecksTheRequiredPathsAndAnswersOne)
{
    for (const UINT message : {PAGE_MESSAGE_STORE, PAGE_MESSAGE_STORE_ALL}) {
        LRESULT answer = -1;
        WithRequiredPaths();
        EmptyRequiredPaths();
        Send(message, answer);
        AnswerDefaultBoxes();
        Await(L"there is no answer", [&] { return answer != -1; });
        Look([&] {
            EXPECT_EQ(answer, 1);
            ExpectDefaultsStored();
        });
        // Going back stores the empty tree.
        ShowAndGoBack();
        EXPECT_EQ(Stored(PATH_PRINTER_CONFIG), CString(L"[NULL]"));
    }
}

TEST_P(PathTabLeaving, StoringAnswersZeroForARefusedTextInAnOpenEdit)
{
    for (const UINT message : {PAGE_MESSAGE_STORE, PAGE_MESSAGE_STORE_ALL}) {
        LRESULT answer = -1;
        SelectValue(PATH_TEMP);
        BeginEdit();
        TypeLabel(L"a*b");
        Send(message, answer);
        AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"a*b");
        AwaitEdit();
        Look([&] {
            EXPECT_EQ(answer, 0);
            ExpectNothingStored();
        });
        Key(VK_ESCAPE);
        AwaitNoEdit();
        ShowAndGoBack();
        product.msiProperties.clear();
    }
}

TEST_P(PathTabLeaving, EnterOnAnyControlGoesToTheNextTab)
{
    Look([this] { SetFocus(GetDlgItem(Page(), IDC_PATH_BROWSE)); });
    Key(VK_RETURN);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_P(PathTabLeaving, TheHostIsOfferedNoKeyThatTheEditUsesItself)
{
    SelectValue(PATH_TEMP);
    Look([this] {
        g_offered.clear();
        g_paneProcedure = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(GetParent(Page()), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(NoteOfferedKey)));
    });
    BeginEdit();
    for (const WORD key : {WORD(VK_F2), WORD(VK_ESCAPE)}) {
        Look([] { g_offered.clear(); });
        Key(key);
        Step(L"see the key handled",
             [this, key] { return Until(key == VK_F2 || !EditBox(), L"the label is still being edited"); });
        Look([key] { EXPECT_EQ(std::count(g_offered.begin(), g_offered.end(), key), 0) << key; });
    }
    BeginEdit();
    EndEdit();
    AwaitNoEdit();
    Look([this] {
        EXPECT_EQ(std::count(g_offered.begin(), g_offered.end(), WPARAM(VK_RETURN)), 0);
        SetWindowLongPtrW(GetParent(Page()), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(g_paneProcedure));
    });
    ShowAndGoBack();
}

TEST_P(PathTabLeaving, AnEditThatIsOpenWhenTheHostTakesThePageAwayShowsNoBox)
{
    OpenWithEdit(L"a*b");
    tabs->Close();
    EXPECT_FALSE(FindMessageBox());
    ExpectNothingStored();
}

TEST_P(PathTabLeaving, AGoodTextInAnEditThatIsOpenWhenThePageIsHiddenIsStored)
{
    OpenWithEdit(L"C:\\typed");
    ShowWindow(m_page, SW_HIDE);
    EXPECT_EQ(SendMessageW(m_page, PAGE_MESSAGE_STORE, 0, 0), 1);
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"C:\\typed"));
}

TEST_P(PathTabLeaving, ARefusedTextOnAHiddenPageIsReportedAndEditedAnewWhenThePageIsShown)
{
    for (const wchar_t* text : {L"a*b", L"\\\\server\\gone"}) {
        OpenWithEdit(text);
        ShowWindow(m_page, SW_HIDE);
        for (const UINT message : {PAGE_MESSAGE_STORE, PAGE_MESSAGE_STORE_ALL}) {
            EXPECT_EQ(SendMessageW(m_page, message, 0, 0), 0);
        }
        ExpectNothingStored();
        DispatchPosted();
        EXPECT_EQ(EditBox(), nullptr);
        ShowWindow(m_page, SW_SHOW);
        DispatchPosted();
        ASSERT_NE(EditBox(), nullptr);
        EXPECT_EQ(CControl(EditBox()).GetText(), CString(text));
        SetWindowTextW(EditBox(), L"C:\\typed");
        EXPECT_EQ(SendMessageW(m_page, PAGE_MESSAGE_STORE, 0, 0), 1);
        EXPECT_EQ(Stored(PATH_TEMP), CString(L"C:\\typed"));
        product.msiProperties.clear();
    }
}

// The page gets no message when the window around it is shown again.
TEST_P(PathTabLeaving, ARefusedTextIsEditedAnewByTheNextStoringAfterItsHostWasHidden)
{
    OpenWithEdit(L"a*b");
    ShowWindow(tabs->GetWindow(), SW_HIDE);
    EXPECT_EQ(SendMessageW(m_page, PAGE_MESSAGE_STORE, 0, 0), 0);
    DispatchPosted();
    EXPECT_EQ(EditBox(), nullptr);
    ShowWindow(tabs->GetWindow(), SW_SHOW);
    EXPECT_EQ(SendMessageW(m_page, PAGE_MESSAGE_STORE, 0, 0), 0);
    DispatchPosted();
    ASSERT_NE(EditBox(), nullptr);
    EXPECT_EQ(CControl(EditBox()).GetText(), CString(L"a*b"));
    SendMessageW(EditBox(), WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_EQ(SendMessageW(m_page, PAGE_MESSAGE_STORE, 0, 0), 1);
}

// Only the page's loop notices that the host has closed its dialog.
TEST_P(PathTabLeaving, ARefusedTextIsEditedAnewWhenADialogOfItsHostIsGone)
{
    OpenWithEdit(L"a*b");
    ShowWindow(m_page, SW_HIDE);
    EXPECT_EQ(SendMessageW(m_page, PAGE_MESSAGE_STORE, 0, 0), 0);
    EnableWindow(tabs->GetWindow(), FALSE);
    ShowWindow(m_page, SW_SHOW);
    DispatchPosted();
    EXPECT_EQ(EditBox(), nullptr);
    EnableWindow(tabs->GetWindow(), TRUE);
    AwaitEdit();
    Look([this] { EXPECT_EQ(CControl(EditBox()).GetText(), CString(L"a*b")); });
    Key(VK_ESCAPE);
    AwaitNoEdit();
    Press(Back());
    EXPECT_EQ(RunTab(*tabs), PAGE_MESSAGE_PREVIOUS_TAB);
}

TEST_P(PathTabLeaving, EnteringAndLeavingLeavesNothingBehind)
{
    CTabHost pages;
    const auto visit = [&] {
        m_page = pages.Open(PathCustomizationPage, context);
        SetFocus(Tree().GetWindow());
        SendMessageW(Tree().GetWindow(), TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(Value(PATH_TEMP)));
        EXPECT_EQ(SendMessageW(m_page, PAGE_MESSAGE_STORE, 0, 0), 1);
        pages.Close();
        host.log.Clear();
    };
    visit();
    visit();
    const ProcessState before = ReadProcessState();
    const long long bytesBefore = AllocatedBytes();
    for (int count = 0; count < 50; ++count) {
        visit();
    }
    EXPECT_EQ(DescribeChange(before, ReadProcessState()), CString());
    EXPECT_LT(AllocatedBytes() - bytesBefore, 50 * 200) << "less than 200 bytes a visit";
}

// ---- canceling a wizard page

TEST_P(PathDialogLeaving, ANoToLeavingTheSetupBringsTheOpenEditBackWithItsText)
{
    SelectValue(PATH_TEMP);
    BeginEdit();
    TypeLabel(L"a*b");
    Step(L"press Alt+F4", [this] {
        PostMessageW(Page(), WM_SYSCOMMAND, SC_CLOSE, 0);
        return StepOutcome::Done();
    });
    AnswerCancelQuestion(IDNO, [this](HWND) { EXPECT_EQ(EditBox(), nullptr); });
    AwaitEdit();
    Look([this] {
        EXPECT_EQ(CControl(EditBox()).GetSelectedText(), CString(L"a*b"));
        EXPECT_EQ(Values(PATH_TEMP), Texts{L""});
    });
    TypeLabel(L"C:\\typed");
    EndEdit();
    AwaitNoEdit();
    ExpectValues(PATH_TEMP, {L"C:\\typed"});
    ShowAndGoBack();
}

// The press ends the edit first; what was typed was gone behind the question.
TEST_P(PathDialogLeaving, ANoToLeavingTheSetupBringsARefusedTextBack)
{
    SelectValue(PATH_TEMP);
    BeginEdit();
    TypeLabel(L"a*b");
    Press(IDC_CANCEL);
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"a*b");
    AnswerCancelQuestion(IDNO, [this](HWND) { EXPECT_EQ(EditBox(), nullptr); });
    AwaitEdit();
    Look([this] { EXPECT_EQ(CControl(EditBox()).GetSelectedText(), CString(L"a*b")); });
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ShowAndGoBack();
}

TEST_P(PathDialogLeaving, AYesToLeavingTheSetupWithAnOpenEditStoresNothing)
{
    SelectValue(PATH_TEMP);
    BeginEdit();
    TypeLabel(L"a*b");
    Step(L"press Alt+F4", [this] {
        PostMessageW(Page(), WM_SYSCOMMAND, SC_CLOSE, 0);
        return StepOutcome::Done();
    });
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_CANCEL);
    ExpectNothingStored();
}

TEST_P(PathDialogLeaving, ANewEntryIsStillBeingTypedAfterANoToLeavingTheSetup)
{
    WithPath(PATH_SUPPORT, L"C:\\a");
    SelectValue(PATH_SUPPORT);
    Press(IDC_PATH_ADD);
    AwaitEdit();
    TypeLabel(L"C:\\b");
    Step(L"press Alt+F4", [this] {
        PostMessageW(Page(), WM_SYSCOMMAND, SC_CLOSE, 0);
        return StepOutcome::Done();
    });
    AnswerCancelQuestion(IDNO);
    AwaitEdit();
    EndEdit();
    AwaitNoEdit();
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\b"});
    ShowAndGoBack();
}

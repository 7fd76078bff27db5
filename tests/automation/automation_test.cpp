// The automation against windows of its own: a dialog with one control of each kind, and real message boxes.
#include "automation/keyboard.h"
#include "automation/list_control.h"
#include "automation/message_box.h"
#include "automation/picture.h"
#include "automation/script.h"
#include "automation/tree_control.h"
#include "automation/window_finder.h"
#include "base/handle.h"
#include "tests/automation/dialog_fixture.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>
#include <objidl.h>

#include <gdiplus.h>

namespace {

class Fixture : public CDialogFixture
{
};

TEST_F(Fixture, AnEditNotifiesItsParentOfTheTextItWasGiven)
{
    commands.clear();
    EXPECT_TRUE(CControl(dialog, ID_EDIT).SetText(L"Ärger & Co").IsDone());
    EXPECT_EQ(CControl(dialog, ID_EDIT).GetText(), CString(L"Ärger & Co"));
    EXPECT_EQ(Count({ID_EDIT, EN_CHANGE}), 1);
}

TEST_F(Fixture, AnEditCanBeEmptied)
{
    EXPECT_TRUE(CControl(dialog, ID_EDIT).SetText(L"text").IsDone());
    commands.clear();
    EXPECT_TRUE(CControl(dialog, ID_EDIT).SetText(L"").IsDone());
    EXPECT_EQ(CControl(dialog, ID_EDIT).GetText(), CString());
    EXPECT_GE(Count({ID_EDIT, EN_CHANGE}), 1);
}

TEST_F(Fixture, AnEditThatCanOnlyBeReadIsNotTypedInto)
{
    SetDlgItemTextW(dialog, ID_EDIT, L"as it was");
    SendDlgItemMessageW(dialog, ID_EDIT, EM_SETREADONLY, TRUE, 0);
    EXPECT_TRUE(CControl(dialog, ID_EDIT).SetText(L"typed").IsNotYet());
    EXPECT_EQ(CControl(dialog, ID_EDIT).GetText(), CString(L"as it was"));
}

TEST_F(Fixture, ATextOverAnEditsLimitFails)
{
    SendDlgItemMessageW(dialog, ID_EDIT, EM_LIMITTEXT, 3, 0);
    EXPECT_TRUE(CControl(dialog, ID_EDIT).SetText(L"four").IsFailed());
}

TEST_F(Fixture, AClickIsPostedAndArrivesOnce)
{
    EXPECT_TRUE(CControl(dialog, ID_CHECK).Click().IsDone());
    EXPECT_FALSE(CControl(dialog, ID_CHECK).IsChecked());
    Play();
    EXPECT_TRUE(CControl(dialog, ID_CHECK).IsChecked());
    EXPECT_EQ(Count({ID_CHECK, BN_CLICKED}), 1);
}

TEST_F(Fixture, ADisabledButtonIsNotClicked)
{
    const StepOutcome outcome = CControl(dialog, ID_DISABLED).Click();
    EXPECT_TRUE(outcome.IsNotYet());
    EXPECT_EQ(outcome.GetReason(), CString(L"Button 106 \"O&ff\" (disabled) is disabled"));
}

TEST_F(Fixture, AHiddenButtonIsNotClicked)
{
    ShowWindow(GetDlgItem(dialog, ID_CHECK), SW_HIDE);
    EXPECT_TRUE(CControl(dialog, ID_CHECK).Click().IsNotYet());
}

TEST_F(Fixture, AButtonOfADisabledWindowIsNotClicked)
{
    EnableWindow(dialog, FALSE);
    EXPECT_TRUE(CControl(dialog, ID_CHECK).Click().IsNotYet());
}

TEST_F(Fixture, AListLineIsSelectedWithItsNotification)
{
    for (const wchar_t* line : {L"one", L"two", L"three"})
        SendDlgItemMessageW(dialog, ID_LIST, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
    const CListControl list(dialog, ID_LIST);
    EXPECT_EQ(list.GetSelection(), -1);
    EXPECT_TRUE(list.Select(L"two").IsDone());
    EXPECT_EQ(list.GetSelectedLine(), CString(L"two"));
    EXPECT_EQ(Count({ID_LIST, LBN_SELCHANGE}), 1);
    EXPECT_EQ(list.GetLines(), (std::vector<CString>{L"one", L"two", L"three"}));
    EXPECT_TRUE(list.Select(L"four").IsNotYet());
}

TEST_F(Fixture, AComboLineIsSelectedWithItsNotification)
{
    for (const wchar_t* line : {L"one", L"two"})
        SendDlgItemMessageW(dialog, ID_COMBO, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
    const CListControl combo(dialog, ID_COMBO);
    EXPECT_TRUE(combo.Select(1).IsDone());
    EXPECT_EQ(combo.GetSelectedLine(), CString(L"two"));
    EXPECT_EQ(Count({ID_COMBO, CBN_SELCHANGE}), 1);
}

HTREEITEM AddTreeItem(HWND tree, HTREEITEM parent, const wchar_t* text)
{
    TVINSERTSTRUCTW insert = {};
    insert.hParent = parent;
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT;
    insert.item.pszText = const_cast<wchar_t*>(text);
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
}

TEST_F(Fixture, ATreeItemIsFoundByTheTextsOnItsWay)
{
    const CTreeControl tree(dialog, ID_TREE);
    HTREEITEM root = AddTreeItem(tree.GetWindow(), nullptr, L"root");
    HTREEITEM leaf = AddTreeItem(tree.GetWindow(), root, L"leaf");
    EXPECT_TRUE(tree.Select({L"root", L"leaf"}).IsDone());
    EXPECT_EQ(tree.GetSelection(), leaf);
    EXPECT_TRUE(tree.IsExpanded(root));
    EXPECT_EQ(tree.GetChildren({L"root"}), (std::vector<CString>{L"leaf"}));
    EXPECT_TRUE(tree.Select({L"root", L"other"}).IsNotYet());
}

TEST_F(Fixture, AKeyGoesThroughTheQueueToTheFocus)
{
    EXPECT_TRUE(CControl(dialog, ID_EDIT).Focus().IsDone());
    script.Add(L"press Tab", [] { return PressKey(VK_TAB); });
    script.Add(L"see the focus move",
               [this] { return Until(CControl(dialog, ID_LIST).HasFocus(), L"the list has no focus"); });
    script.Add(L"press Shift+Tab", [] { return PressKey(VK_TAB, KeyModifier::Shift); });
    script.Add(L"see the focus go back",
               [this] { return Until(CControl(dialog, ID_EDIT).HasFocus(), L"the edit has no focus"); });
    script.Add(L"see Shift released",
               [] { return Until(GetKeyState(VK_SHIFT) >= 0, L"Shift is still down"); });
    Play();
    EXPECT_EQ(script.GetFailure(), CString());
}

TEST_F(Fixture, AModifierIsUpAgainForTheNextStep)
{
    bool down = false;
    bool still = true;
    dialogFilter = [&](const MSG& message) {
        down = down || (message.message == WM_KEYDOWN && GetKeyState(VK_SHIFT) < 0);
    };
    script.Add(L"focus", [this] { return CControl(dialog, ID_EDIT).Focus(); });
    script.Add(L"press Shift+Tab", [] { return PressKey(VK_TAB, KeyModifier::Shift); });
    script.Add(L"look at the key", [&] {
        still = GetKeyState(VK_SHIFT) < 0;
        return StepOutcome::Done();
    });
    Play();
    EXPECT_TRUE(down) << "Shift was up when the key was handled";
    EXPECT_FALSE(still) << "Shift stayed down";
}

TEST_F(Fixture, EnterPressesTheDefaultButton)
{
    EXPECT_TRUE(CControl(dialog, IDOK).IsDefaultButton());
    EXPECT_TRUE(CControl(dialog, ID_EDIT).Focus().IsDone());
    commands.clear();
    script.Add(L"press Enter", [] { return PressKey(VK_RETURN); });
    script.Add(L"see OK pressed", [this] {
        return Until(Count({IDOK, BN_CLICKED}) == 1, L"OK was not pressed");
    });
    Play();
    EXPECT_EQ(script.GetFailure(), CString());
}

TEST_F(Fixture, StepsGoOnInTheLoopOfABoxThatAStepOpened)
{
    int answer = 0;
    onCheck = [&] { answer = MessageBoxW(dialog, L"Really?", L"Question", MB_YESNO | MB_ICONQUESTION); };
    script.Add(L"open a box", [this] {
        SendDlgItemMessageW(dialog, ID_CHECK, BM_CLICK, 0, 0); // comes back only when the box has closed
        return StepOutcome::Done();
    });
    script.Add(L"answer it", [] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        return box ? AnswerMessageBox(*box, IDNO) : StepOutcome::NotYet(L"no box is up");
    });
    script.Add(L"see it answered", [&] { return Until(answer != 0, L"the box is still up"); });
    Play();
    EXPECT_EQ(script.GetFailure(), CString());
    EXPECT_EQ(answer, IDNO);
}

TEST_F(Fixture, ADeadlineFailsWithTheReasonAndTheWindowsThatWereThere)
{
    script.SetDeadline(50);
    script.Add(L"press what is disabled", [this] { return CControl(dialog, ID_DISABLED).Click(); });
    Play();
    EXPECT_TRUE(script.HasFailed());
    const CString failure = script.GetFailure();
    EXPECT_GE(failure.Find(L"press what is disabled"), 0) << Utf8(failure);
    EXPECT_GE(failure.Find(L"Button 106 \"O&ff\" (disabled) is disabled"), 0) << Utf8(failure);
    EXPECT_GE(failure.Find(L"#32770 \"Fixture\""), 0) << Utf8(failure);
}

TEST_F(Fixture, AStepThatThrowsFailsTheScript)
{
    script.Add(L"throw", []() -> StepOutcome { throw 1; });
    Play();
    EXPECT_TRUE(script.HasFailed());
}

TEST_F(Fixture, StepsAddedByAStepComeBeforeTheOthersInTheirOrder)
{
    CString order;
    const auto note = [&](const wchar_t* word) {
        return [&order, word] {
            order += word;
            return StepOutcome::Done();
        };
    };
    script.Add(L"first", [&] {
        script.AddNext(L"second", note(L"2"));
        script.AddNext(L"third", note(L"3"));
        order += L"1";
        return StepOutcome::Done();
    });
    script.Add(L"fourth", note(L"4"));
    Play();
    EXPECT_EQ(order, CString(L"1234"));
}

TEST_F(Fixture, AWatcherHoldsTheStepsWhileItIsBusy)
{
    int looks = 0;
    script.SetWatcher([&] { return ++looks < 3 ? StepOutcome::NotYet(L"busy") : StepOutcome::Done(); });
    script.Add(L"look", [&] { return Until(looks >= 3, L"the watcher was passed over"); });
    Play();
    EXPECT_EQ(script.GetFailure(), CString());
    EXPECT_GE(looks, 3);
}

TEST_F(Fixture, AWindowThatStaysBehindTheLastStepFailsTheScriptInsteadOfHoldingIt)
{
    int steps = 0;
    script.SetDeadline(50);
    script.SetEnding(L"the end", [] { return StepOutcome::NotYet(L"the window is still up"); });
    script.Add(L"look", [&] {
        ++steps;
        return StepOutcome::Done();
    });
    PlayUntilTheLoopIsLeft();
    EXPECT_EQ(steps, 1);
    EXPECT_GE(script.GetFailure().Find(L"Step \"the end\" failed: waited"), 0) << Utf8(script.GetFailure());
    EXPECT_GE(script.GetFailure().Find(L"the window is still up"), 0) << Utf8(script.GetFailure());
}

TEST_F(Fixture, AScriptThatWaitsForItsEndingCountsAsFinished)
{
    int looks = 0;
    script.SetEnding(L"the end", [&] {
        if (++looks == 3) {
            EXPECT_TRUE(script.IsFinished());
            EXPECT_EQ(script.GetCurrentStep(), CString());
            PostQuitMessage(0);
        }
        return StepOutcome::NotYet(L"the window is still up");
    });
    PlayUntilTheLoopIsLeft();
    EXPECT_EQ(looks, 3);
    EXPECT_EQ(script.GetFailure(), CString());
}

TEST_F(Fixture, AStoppedScriptForgetsItsEnding)
{
    int looks = 0;
    script.SetEnding(L"the end", [&] {
        ++looks;
        return StepOutcome::NotYet(L"the window is still up");
    });
    script.Stop();
    Play();
    EXPECT_EQ(looks, 0);
    EXPECT_EQ(script.GetFailure(), CString());
}

struct BoxCase
{
    UINT buttons;
    UINT icon;
    int answer;
};

class MessageBoxes : public testing::TestWithParam<BoxCase>
{
};

TEST_P(MessageBoxes, AreReadAsTheyWereAskedFor)
{
    std::optional<MessageBoxView> seen;
    CScript script;
    script.Add(L"read the box", [&] {
        seen = FindMessageBox();
        return Until(seen.has_value(), L"no box is up");
    });
    script.Add(L"answer it", [&] { return AnswerMessageBox(*seen, GetParam().answer); });
    script.SetFailureHandler([] { CloseFrontWindow(); });
    script.Start();
    const int answer = MessageBoxW(nullptr, L"A text", L"A title", GetParam().buttons | GetParam().icon);
    ASSERT_EQ(script.GetFailure(), CString());
    EXPECT_EQ(answer, GetParam().answer);
    EXPECT_EQ(seen->title, CString(L"A title"));
    EXPECT_EQ(seen->text, CString(L"A text"));
    EXPECT_EQ(seen->buttons, GetParam().buttons) << Utf8(seen->Describe());
    EXPECT_EQ(seen->icon, GetParam().icon) << Utf8(seen->Describe());
    EXPECT_EQ(seen->owner, nullptr);
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, MessageBoxes,
                         testing::Values(BoxCase{MB_OK, 0, IDOK}, BoxCase{MB_OK, MB_ICONERROR, IDOK},
                                         BoxCase{MB_OKCANCEL, MB_ICONWARNING, IDCANCEL},
                                         BoxCase{MB_YESNO, MB_ICONQUESTION, IDYES},
                                         BoxCase{MB_YESNOCANCEL, MB_ICONINFORMATION, IDNO},
                                         BoxCase{MB_RETRYCANCEL, 0, IDRETRY},
                                         BoxCase{MB_ABORTRETRYIGNORE, 0, IDIGNORE}));

TEST_F(Fixture, ADialogIsNoMessageBox)
{
    EXPECT_FALSE(ReadMessageBox(dialog).has_value());
}

CString TemporaryFile(const wchar_t* name)
{
    wchar_t folder[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, folder);
    return CString(folder) + name;
}

TEST_F(Fixture, APictureShowsWhatTheWindowShows)
{
    const CString path = TemporaryFile(L"automation_picture.png");
    ASSERT_TRUE(SaveWindowPicture(dialog, path));
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    ASSERT_EQ(Gdiplus::GdiplusStartup(&token, &input, nullptr), Gdiplus::Ok);
    {
        Gdiplus::Bitmap picture(path);
        RECT window = {};
        GetWindowRect(dialog, &window);
        EXPECT_EQ(picture.GetWidth(), static_cast<UINT>(window.right - window.left));
        EXPECT_EQ(picture.GetHeight(), static_cast<UINT>(window.bottom - window.top));
        // The edit is white, the dialog around it isn't.
        RECT edit = {};
        GetWindowRect(GetDlgItem(dialog, ID_EDIT), &edit);
        Gdiplus::Color inside;
        picture.GetPixel((edit.right + edit.left) / 2 - window.left,
                         (edit.top + edit.bottom) / 2 - window.top, &inside);
        EXPECT_EQ(inside.ToCOLORREF(), GetSysColor(COLOR_WINDOW));
        Gdiplus::Color outside;
        picture.GetPixel(edit.left - 3 - window.left, edit.top - window.top, &outside);
        EXPECT_EQ(outside.ToCOLORREF(), GetSysColor(COLOR_BTNFACE));
    }
    Gdiplus::GdiplusShutdown(token);
    DeleteFileW(path);
}

} // namespace

// The dialogs of every language: controls, places, keyboard.
#include "include/resource_ids.h"
#include "tests/resources/layouts.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <utility>

namespace {

class Dialogs : public testing::TestWithParam<std::string>
{
protected:
    CLanguageLibrary m_library{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Languages, Dialogs, testing::ValuesIn(BuiltLanguages()), TestNameOfLanguage);

bool Overlap(const RECT& first, const RECT& second)
{
    RECT common = {};
    return IntersectRect(&common, &first, &second) != FALSE;
}

// Below, or beside it on the right.
bool FollowsForTheEye(const RECT& first, const RECT& next)
{
    return next.top >= first.bottom ||
           (next.top < first.bottom && next.bottom > first.top && next.left >= first.right);
}

// A language may need a third more room than the one that is measured.
int WithoutReserve(int width)
{
    return width * 3 / 4;
}

// Pixels of a button that its text can't have.
int ButtonEdges(const DialogControl& button)
{
    return button.HasMark() ? GetSystemMetrics(SM_CXMENUCHECK) + 4 : 2 * (GetSystemMetrics(SM_CXEDGE) + 2);
}

} // namespace

TEST(Languages, EnglishIsBuilt)
{
    const std::vector<std::string> built = BuiltLanguages();
    EXPECT_NE(std::find(built.begin(), built.end(), "en-US"), built.end()) << built.size() << " languages";
}

TEST_P(Dialogs, EveryDialogIdHasADialog)
{
    for (const ResourceId& id : AllResourceIds()) {
        if (id.IsKind("IDD_")) {
            EXPECT_TRUE(m_library.HasDialog(id.value)) << id.name;
        }
    }
}

TEST_P(Dialogs, EveryControlIdStandsInADialog)
{
    const std::vector<DialogLayout> layouts = AllLayouts(m_library);
    for (const ResourceId& id : AllResourceIds()) {
        if (!id.IsKind("IDC_")) {
            continue;
        }
        const bool bFound = std::any_of(layouts.begin(), layouts.end(), [&id](const DialogLayout& layout) {
            return layout.dialog.Find(id.value) != nullptr;
        });
        EXPECT_TRUE(bFound) << id.name;
    }
}

TEST_P(Dialogs, EveryPageHasTheControlsOfTheFrame)
{
    for (const int dialogId : PageDialogs()) {
        const CDialogModel dialog(m_library.GetModule(), dialogId);
        for (const int id :
             {IDC_NEXT, IDC_CANCEL, IDC_BACK, IDC_RESET, IDC_LINK1, IDC_LINK2, IDC_BANNER, IDC_SIDE_PANE,
              IDC_FOOTER, IDC_STEP_LABEL, IDC_SEPARATOR, IDC_PANEL, IDC_HIDDEN_AT_START}) {
            EXPECT_NE(dialog.Find(id), nullptr) << "dialog " << dialogId << " lacks " << id;
        }
    }
}

TEST_P(Dialogs, EveryTabPageHasTheControlsOfTheFrame)
{
    for (const int dialogId : TabDialogs()) {
        const CDialogModel dialog(m_library.GetModule(), dialogId);
        for (const int id : {IDC_BANNER, IDC_PAGE_COUNTER, IDC_PREVIOUS_TAB, IDC_NEXT_TAB}) {
            EXPECT_NE(dialog.Find(id), nullptr) << "dialog " << dialogId << " lacks " << id;
        }
    }
}

TEST_P(Dialogs, EveryBannerNamesTheProduct)
{
    for (const int dialogId : PageDialogs()) {
        CDialogModel dialog(m_library.GetModule(), dialogId);
        EXPECT_GE(dialog.Get(IDC_BANNER).text.Find(L"[ProductName]"), 0)
            << "dialog " << dialogId << ": " << Utf8(dialog.Get(IDC_BANNER).text);
    }
}

TEST_P(Dialogs, ThePanelOfEveryPageStartsHidden)
{
    for (const int dialogId : PageDialogs()) {
        CDialogModel dialog(m_library.GetModule(), dialogId);
        EXPECT_FALSE(dialog.Get(IDC_PANEL).bVisible) << "dialog " << dialogId;
    }
}

TEST_P(Dialogs, AllPagesHaveOneSizeThatFitsTheScreen)
{
    const SIZE first = CDialogModel(m_library.GetModule(), IDD_BEGIN_DEPLOYMENT).window;
    EXPECT_LE(first.cx, 1024);
    EXPECT_LE(first.cy, 700);
    for (const int dialogId : PageDialogs()) {
        const SIZE size = CDialogModel(m_library.GetModule(), dialogId).window;
        EXPECT_TRUE(size.cx == first.cx && size.cy == first.cy)
            << "dialog " << dialogId << " has " << size.cx << "x" << size.cy << " beside " << first.cx << "x"
            << first.cy;
    }
}

TEST_P(Dialogs, NoControlIdStandsTwiceInADialog)
{
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        std::map<int, int> counts;
        for (const DialogControl& control : layout.dialog.controls) {
            EXPECT_TRUE(control.id == -1 || ++counts[control.id] == 1)
                << layout.name << ": " << control.Describe();
        }
    }
}

TEST_P(Dialogs, EveryLayoutHasOneDefaultButton)
{
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        const auto& controls = layout.dialog.controls;
        const auto count = std::count_if(controls.begin(), controls.end(), [](const DialogControl& control) {
            return control.IsDefaultButton();
        });
        EXPECT_EQ(count, 1) << layout.name;
    }
}

TEST_P(Dialogs, NextIsTheDefaultButtonOfEveryPage)
{
    for (const int dialogId : PageDialogs()) {
        CDialogModel dialog(m_library.GetModule(), dialogId);
        EXPECT_TRUE(dialog.Get(IDC_NEXT).IsDefaultButton()) << "dialog " << dialogId;
    }
}

TEST_P(Dialogs, NoMnemonicStandsTwiceInALayout)
{
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        std::map<wchar_t, std::string> owners;
        for (const DialogControl& control : layout.dialog.controls) {
            const wchar_t mnemonic = control.bVisible && !control.IsHtml() ? control.GetMnemonic() : L'\0';
            if (mnemonic == 0) {
                continue;
            }
            EXPECT_TRUE(owners.emplace(mnemonic, control.Describe()).second)
                << layout.name << ": " << control.Describe() << " and " << owners[mnemonic];
        }
    }
}

TEST_P(Dialogs, NextTabIsTheDefaultButtonOfEveryTabPage)
{
    for (const int dialogId : TabDialogs()) {
        CDialogModel dialog(m_library.GetModule(), dialogId);
        EXPECT_TRUE(dialog.Get(IDC_NEXT_TAB).IsDefaultButton()) << "dialog " << dialogId;
    }
}

// Enter must not throw away what was entered.
TEST_P(Dialogs, NoIsTheDefaultButtonOfTheCancelQuestion)
{
    CDialogModel dialog(m_library.GetModule(), IDD_CANCEL);
    EXPECT_TRUE(dialog.Get(IDNO).IsDefaultButton());
    EXPECT_FALSE(dialog.Get(IDYES).IsDefaultButton());
}

// The arrow keys go round in a group: from the radio with the mark to the control before the next one with a mark.
TEST_P(Dialogs, EveryRadioGroupIsMarkedAtItsFirstRadioAndBehindItsLast)
{
    int groups = 0;
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        const auto& controls = layout.dialog.controls;
        for (size_t index = 0; index < controls.size(); ++index) {
            const bool followsRadio = index > 0 && controls[index - 1].IsRadio();
            const bool starts = (controls[index].style & WS_GROUP) != 0;
            if (controls[index].IsRadio()) {
                EXPECT_EQ(starts, !followsRadio) << layout.name << ": " << controls[index].Describe();
                EXPECT_TRUE(followsRadio || (controls[index].style & WS_TABSTOP))
                    << layout.name << ": " << controls[index].Describe();
                groups += followsRadio ? 0 : 1;
            } else if (followsRadio) {
                EXPECT_TRUE(starts) << layout.name << ": " << controls[index].Describe();
            }
        }
    }
    EXPECT_GT(groups, 0);
}

// What stands in the template is there to be copied.
TEST_P(Dialogs, AnEditIsReadOnlyExactlyWhenTheTemplateFillsIt)
{
    int addresses = 0;
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        for (const DialogControl& control : layout.dialog.controls) {
            if (!control.IsEdit()) {
                continue;
            }
            EXPECT_EQ((control.style & ES_READONLY) != 0, !control.text.IsEmpty())
                << layout.name << ": " << control.Describe();
            addresses += control.text.IsEmpty() ? 0 : 1;
        }
    }
    EXPECT_EQ(addresses, 2);
}

// A path or a name shows its "&". The result lines get it doubled, so there it must not be taken as it stands.
TEST_P(Dialogs, AnAmpersandOfANameShowsInEveryStaticThatIsFilledIn)
{
    const std::pair<int, int> filled[] = {{IDD_CANCEL, IDC_CANCEL_QUESTION},
                                          {IDD_DEPLOYMENT_FAILED, IDC_FAILURE_REASON}};
    for (const auto& [dialogId, id] : filled) {
        CDialogModel dialog(m_library.GetModule(), dialogId);
        EXPECT_TRUE(dialog.Get(id).style & SS_NOPREFIX) << dialog.Get(id).Describe();
    }
    for (const int dialogId : PageDialogs()) {
        const CDialogModel dialog(m_library.GetModule(), dialogId);
        for (const DialogControl& control : dialog.controls) {
            EXPECT_TRUE(!control.IsHtml() || (control.style & SS_NOPREFIX)) << control.Describe();
        }
    }
    CDialogModel complete(m_library.GetModule(), IDD_DEPLOYMENT_COMPLETE);
    for (const int id : {IDC_RESULT_LINE1, IDC_RESULT_LINE2}) {
        EXPECT_FALSE(complete.Get(id).style & SS_NOPREFIX) << complete.Get(id).Describe();
    }
}

// Cancel does what Finish does there, so one of them is enough.
TEST_P(Dialogs, CancelIsShownOnEveryPageButTheOutcomePages)
{
    for (const int dialogId : PageDialogs()) {
        CDialogModel dialog(m_library.GetModule(), dialogId);
        const bool isOutcome = dialogId == IDD_DEPLOYMENT_COMPLETE || dialogId == IDD_DEPLOYMENT_FAILED;
        EXPECT_EQ(dialog.Get(IDC_CANCEL).bVisible, !isOutcome) << "dialog " << dialogId;
    }
}

// Back and Continue of the dialog around the tab pages; a page's own mnemonic would take theirs.
TEST_P(Dialogs, NoTabPageTakesAMnemonicOfTheDialogAroundIt)
{
    const std::vector<int>& tabs = TabDialogs();
    int pages = 0;
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        if (std::find(tabs.begin(), tabs.end(), layout.dialogId) == tabs.end()) {
            continue;
        }
        ++pages;
        for (const DialogControl& control : layout.dialog.controls) {
            const wchar_t mnemonic = control.IsHtml() ? L'\0' : control.GetMnemonic();
            EXPECT_TRUE(mnemonic != L'k' && mnemonic != L'o') << layout.name << ": " << control.Describe();
        }
    }
    EXPECT_GT(pages, 0);
}

TEST_P(Dialogs, TheTabOrderFollowsTheEye)
{
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        const DialogControl* previous = nullptr;
        const DialogControl* previousRadio = nullptr;
        for (const DialogControl& control : layout.dialog.controls) {
            if (!control.bVisible || !control.IsReached()) {
                continue;
            }
            if (control.IsRadio()) {
                // The arrow keys come to one that Tab passes over; what belongs to the radio before may stand between.
                const DialogControl* const radio = std::exchange(previousRadio, &control);
                if ((control.style & WS_TABSTOP) == 0) {
                    EXPECT_TRUE(radio && FollowsForTheEye(radio->place, control.place))
                        << layout.name << ": " << control.Describe();
                    continue;
                }
            }
            EXPECT_TRUE(!previous || FollowsForTheEye(previous->place, control.place))
                << layout.name << ": " << control.Describe() << " comes after " << previous->Describe();
            previous = &control;
        }
    }
}

TEST_P(Dialogs, NoControlLeavesTheDialog)
{
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        const SIZE& client = layout.dialog.client;
        for (const DialogControl& control : layout.dialog.controls) {
            EXPECT_TRUE(control.place.left >= 0 && control.place.top >= 0 &&
                        control.place.right <= client.cx && control.place.bottom <= client.cy)
                << layout.name << ": " << control.Describe() << " in " << client.cx << "x" << client.cy;
        }
    }
}

TEST_P(Dialogs, NoVisibleControlsOverlap)
{
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        const auto& controls = layout.dialog.controls;
        for (size_t first = 0; first < controls.size(); ++first) {
            for (size_t second = first + 1; second < controls.size(); ++second) {
                EXPECT_FALSE(controls[first].bVisible && controls[second].bVisible &&
                             Overlap(controls[first].place, controls[second].place))
                    << layout.name << ": " << controls[first].Describe() << " and "
                    << controls[second].Describe();
            }
        }
    }
}

TEST_P(Dialogs, EveryHeadingStandsRightAboveItsField)
{
    const std::pair<int, int> pairs[] = {{IDC_MODE_HEADING, IDC_MODE_CREATE},
                                         {IDC_LOCATION_HEADING_EXISTING, IDC_LOCATION},
                                         {IDC_LOCATION_HEADING_NEW, IDC_LOCATION},
                                         {IDC_DEPLOYMENTS_HEADING, IDC_DEPLOYMENTS},
                                         {IDC_NAME_HEADING, IDC_NAME},
                                         {IDC_PLATFORM_HEADING, IDC_PLATFORM_X86}};
    constexpr int farthest = 8; // pixels between heading and field
    for (DialogLayout& layout : AllLayouts(m_library)) {
        for (const auto& [headingId, fieldId] : pairs) {
            if (layout.dialogId != IDD_BEGIN_DEPLOYMENT || !layout.dialog.Get(headingId).bVisible) {
                continue;
            }
            const DialogControl& heading = layout.dialog.Get(headingId);
            const DialogControl& field = layout.dialog.Get(fieldId);
            const int gap = field.place.top - heading.place.bottom;
            EXPECT_TRUE(field.bVisible && heading.place.left == field.place.left && gap >= 0 &&
                        gap <= farthest)
                << layout.name << ": " << heading.Describe() << " over " << field.Describe();
        }
    }
}

TEST_P(Dialogs, EveryStaticHasRoomForAThirdMore)
{
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        for (const DialogControl& control : layout.dialog.controls) {
            if (!control.IsStatic() || control.IsHtml() || control.text.IsEmpty()) {
                continue;
            }
            const int width = control.place.right - control.place.left;
            const SIZE needed = layout.dialog.Measure(control.text, WithoutReserve(width));
            EXPECT_TRUE(needed.cx <= WithoutReserve(width) &&
                        needed.cy <= control.place.bottom - control.place.top)
                << layout.name << ": " << control.Describe() << " needs " << needed.cx << "x" << needed.cy
                << " pixels at three quarters of its width";
        }
    }
}

TEST_P(Dialogs, EveryButtonHasRoomForAThirdMore)
{
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        for (const DialogControl& control : layout.dialog.controls) {
            if (!control.IsButton()) {
                continue;
            }
            const int width = control.place.right - control.place.left - ButtonEdges(control);
            const SIZE needed = layout.dialog.Measure(control.text, 0);
            EXPECT_LE(needed.cx, WithoutReserve(width)) << layout.name << ": " << control.Describe();
        }
    }
}

TEST_P(Dialogs, EveryButtonHasAText)
{
    for (const DialogLayout& layout : AllLayouts(m_library)) {
        for (const DialogControl& control : layout.dialog.controls) {
            EXPECT_FALSE(control.IsButton() && control.text.IsEmpty())
                << layout.name << ": " << control.Describe();
        }
    }
}

TEST_P(Dialogs, EveryCancelQuestionFits)
{
    CDialogModel dialog(m_library.GetModule(), IDD_CANCEL);
    const RECT place = dialog.Get(IDC_CANCEL_QUESTION).place;
    for (const int id : {IDS_CANCEL_OTHER, IDS_CANCEL_INSTALL, IDS_CANCEL_MAINTAIN, IDS_CANCEL_DEPLOYMENT}) {
        const CString text = m_library.GetText(id);
        const SIZE needed = dialog.Measure(text, WithoutReserve(place.right - place.left));
        EXPECT_LE(needed.cy, place.bottom - place.top) << id << ": " << Utf8(text);
    }
}

TEST_P(Dialogs, TheResultLinesHoldALongPath)
{
    CDialogModel dialog(m_library.GetModule(), IDD_DEPLOYMENT_COMPLETE);
    const DialogControl& line = dialog.Get(IDC_RESULT_LINE2);
    const CString text = m_library.GetText(IDS_COMPLETE_LINE2) + L"\\\\server.example\\" + CString(L'n', 150);
    const SIZE needed =
        dialog.Measure(text, line.place.right - line.place.left, (line.style & SS_EDITCONTROL) != 0);
    EXPECT_TRUE(needed.cx <= line.place.right - line.place.left &&
                needed.cy <= line.place.bottom - line.place.top)
        << "needs " << needed.cx << "x" << needed.cy << " in " << line.Describe();
}

TEST_P(Dialogs, TheFailureHoldsALongReasonAndPath)
{
    CDialogModel dialog(m_library.GetModule(), IDD_DEPLOYMENT_FAILED);
    const DialogControl& label = dialog.Get(IDC_FAILURE_REASON);
    CString reason;
    for (int count = 0; count < 40; ++count) {
        reason += L"ten words ";
    }
    CString text = m_library.GetText(IDS_FAILURE);
    text.Replace(L"[Reason]", reason);
    text.Replace(L"[LogPath]", L"\\\\server.example\\" + CString(L'n', 240));
    const int width = WithoutReserve(label.place.right - label.place.left);
    const SIZE needed = dialog.Measure(text, width, (label.style & SS_EDITCONTROL) != 0);
    EXPECT_TRUE(needed.cx <= width && needed.cy <= label.place.bottom - label.place.top)
        << "needs " << needed.cx << "x" << needed.cy << " in " << label.Describe();
}

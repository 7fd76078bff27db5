// The ways to cancel before the build, each asked about once and answered by No, by Enter and by Yes.
#include "include/resource_ids.h"
#include "tests/by_hand/by_hand_fixture.h"

namespace {

enum class Way
{
    Button,
    Escape,
    CloseBox
};

struct CancelCase
{
    const wchar_t* name;
    Way way;
    bool laterPage;
};

void PrintTo(const CancelCase& tested, std::ostream* stream)
{
    *stream << Utf8(CString(tested.name));
}

class CancelByHand : public ByHandTest, public testing::WithParamInterface<CancelCase>
{
protected:
    void Cancel(HWND page)
    {
        switch (GetParam().way) {
        case Way::Button:
            ClickOn(GetDlgItem(page, IDC_CANCEL));
            break;
        case Way::Escape:
            StrikeKey(VK_ESCAPE);
            break;
        case Way::CloseBox:
            CloseByBox(page);
            break;
        }
    }

    // It stays, and the focus is where the question came from.
    void ExpectStays(HWND page)
    {
        const Shown shown = GetParam().laterPage ? Shown::SettingsPage : Shown::FirstPage;
        EXPECT_EQ(WaitFor(shown), page);
        WaitForFocus(page, IDC_CANCEL);
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(page, IDC_CANCEL)));
    }
};

TEST_P(CancelByHand, IsAskedAboutAndEndsWithoutASecondBox)
{
    Start(SampleMedia());
    HWND page = WaitFor(Shown::FirstPage);
    Lines boxes;
    Lines log = LogOfOpening();
    if (GetParam().laterPage) {
        EnterFirstPage(L"Office");
        ConfirmLocalLocation();
        page = WaitFor(Shown::SettingsPage);
        boxes.push_back(LocalLocationQuestion());
        log = Join({log, LogOfMode(L"Office")});
    }
    Cancel(page);
    AnswerCancelQuestion('N');
    ExpectStays(page);
    Cancel(page);
    AnswerCancelQuestion(VK_RETURN); // No is the default
    ExpectStays(page);
    Cancel(page);
    AnswerCancelQuestion('Y');
    boxes.insert(boxes.end(), 3, CancelQuestion());
    ExpectEnd(1602, Join({log, LogOfCanceledPage()}), boxes);
    EXPECT_TRUE(ListLocation().empty());
}

INSTANTIATE_TEST_SUITE_P(Ways, CancelByHand,
                         testing::Values(CancelCase{L"ButtonOnFirstPage", Way::Button, false},
                                         CancelCase{L"EscapeOnFirstPage", Way::Escape, false},
                                         CancelCase{L"CloseBoxOnFirstPage", Way::CloseBox, false},
                                         CancelCase{L"ButtonOnLaterPage", Way::Button, true},
                                         CancelCase{L"EscapeOnLaterPage", Way::Escape, true},
                                         CancelCase{L"CloseBoxOnLaterPage", Way::CloseBox, true}),
                         [](const auto& tested) { return Utf8(CString(tested.param.name)); });

} // namespace

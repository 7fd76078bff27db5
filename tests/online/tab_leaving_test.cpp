// The messages by which a host drives the tab shape of the page of notices, and what entering and leaving leaves behind.
#include "tests/online/online_page.h"

namespace {

class TabLeaving : public NoticePage
{
protected:
    // Sends the message with the page up; the answer is there after the boxes that the steps behind it answer.
    void Send(UINT message, LRESULT& answer)
    {
        Look([this, message, &answer] { answer = SendMessageW(Page(), message, 0, 0); });
    }
};
INSTANTIATE_TEST_SUITE_P(Shapes, TabLeaving, testing::Values(Shape::Tab), ShapeName);

class TabStoring : public TabLeaving
{
protected:
    static constexpr UINT MESSAGES[] = {PAGE_MESSAGE_STORE, PAGE_MESSAGE_STORE_ALL};
};
INSTANTIATE_TEST_SUITE_P(Shapes, TabStoring, testing::Values(Shape::Tab), ShapeName);

} // namespace

TEST_P(TabStoring, AnswersOneAndStaysOnThePage)
{
    for (const UINT message : MESSAGES) {
        product.msiProperties.clear();
        LRESULT answer = -1;
        Send(message, answer);
        Look([&] {
            EXPECT_EQ(answer, 1);
            EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_PATCHNOTIFY"), CString(L"#1"));
        });
        ShowAndGoBack();
    }
}

TEST_P(TabStoring, AnswersZeroWhenALocationIsRefusedButHasStoredIt)
{
    for (const UINT message : MESSAGES) {
        LRESULT answer = -1;
        ChooseList(L"bad");
        Send(message, answer);
        Answer(RefusingBox(IDS_LIST_WRONG_KIND), IDOK);
        Await(L"there is no answer", [&] { return answer != -1; });
        Look([&] {
            EXPECT_EQ(answer, 0);
            EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_LISTLOCACTION"), CString(L"bad"));
        });
        ShowAndGoBack();
    }
}

TEST_P(TabStoring, AnswersOneAfterAQuestionIsAnsweredWithYes)
{
    for (const UINT message : MESSAGES) {
        LRESULT answer = -1;
        ChooseList(L"");
        Send(message, answer);
        Answer(AskingBox(IDS_LIST_EMPTY), IDYES);
        Await(L"there is no answer", [&] { return answer != -1; });
        Look([&] { EXPECT_EQ(answer, 1); });
        ShowAndGoBack();
    }
}

TEST_P(TabStoring, AnswersZeroAfterNoAndSelectsTheTextInQuestion)
{
    const CString feed = L"\\\\server\\feeds\\a.txt";
    for (const UINT message : MESSAGES) {
        LRESULT answer = -1;
        ChooseFeed(feed);
        Send(message, answer);
        Answer(AskingBox(IDS_FEED_WRONG_KIND), IDNO);
        Await(L"there is no answer", [&] { return answer != -1; });
        AwaitFocus();
        Look([&] {
            EXPECT_EQ(answer, 0);
            EXPECT_TRUE(HasFocus(IDC_FEED_LOCATION));
            EXPECT_EQ(SendMessageW(GetDlgItem(Page(), IDC_FEED_LOCATION), EM_GETSEL, 0, 0),
                      MAKELRESULT(0, feed.GetLength()));
        });
        ShowAndGoBack();
    }
}

TEST_P(TabStoring, AnswersZeroAndStoresNothingAfterAVeto)
{
    context.leaveHooks = {[](PageContext*) { return HOOK_VETO; }};
    for (const UINT message : MESSAGES) {
        product.msiProperties.clear();
        LRESULT answer = -1;
        Send(message, answer);
        Look([&] {
            EXPECT_EQ(answer, 0);
            EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_PATCHNOTIFY"), CString(L"(none)"));
        });
        ShowAndGoBack();
    }
}

TEST_P(TabStoring, AnswersZeroWhileABoxOfThePageIsUp)
{
    ChooseList(L"");
    Press(Next());
    Answer(AskingBox(IDS_LIST_EMPTY), IDYES,
           [&] { EXPECT_EQ(SendMessageW(Page(), PAGE_MESSAGE_STORE, 0, 0), 0); });
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_P(TabLeaving, TheBoxOfAPageThatIsMadeLongAgoHasItsText)
{
    ChooseList(L"");
    Press(Next());
    Answer(AskingBox(IDS_LIST_EMPTY), IDYES); // with the page's own library: the export has returned
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_P(TabLeaving, TheTabPageLeavesTheFocusToItsHost)
{
    CTabHost tabs;
    SetFocus(tabs.GetWindow());
    ASSERT_NE(tabs.Open(NoticeDeskFeedBoardPage, context), nullptr);
    EXPECT_EQ(GetFocus(), tabs.GetWindow());
}

TEST_P(TabLeaving, EnteringAndLeavingThreeHundredTimesLeavesNothingBehind)
{
    CTabHost tabs;
    const auto visit = [&](TabFunction page) {
        const HWND window = tabs.Open(page, context);
        ASSERT_NE(window, nullptr);
        SendMessageW(window, PAGE_MESSAGE_COUNTER, MAKEWPARAM(1, 3), 0);
        EXPECT_EQ(SendMessageW(window, PAGE_MESSAGE_STORE, 0, 0), 1);
        tabs.Close();
        host.log.Clear();
    };
    const auto handles = [] {
        DWORD count = 0;
        GetProcessHandleCount(GetCurrentProcess(), &count);
        return count;
    };
    visit(NoticeDeskFeedBoardPage);
    visit(OnlineResourcesPage);
    const ProcessState before = ReadProcessState();
    const DWORD handlesBefore = handles();
    const long long bytesBefore = AllocatedBytes();
    for (int count = 0; count < 150; ++count) {
        visit(NoticeDeskFeedBoardPage);
        visit(OnlineResourcesPage);
    }
    EXPECT_EQ(DescribeChange(before, ReadProcessState()), CString());
    EXPECT_EQ(handles(), handlesBefore);
    EXPECT_LT(AllocatedBytes() - bytesBefore, 300 * 100) << "less than 100 bytes a visit";
}

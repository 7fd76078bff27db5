// While a build runs: cancelling it, and a log-off.
#include "automation/message_box.h"
#include "automation/window_finder.h"
#include "base/handle.h"
#include "include/resource_ids.h"
#include "setup/resource.h"
#include "tests/by_hand/by_hand_fixture.h"
#include "tests/support/resource_strings.h"

namespace {

constexpr LONGLONG MEGABYTE = 1024 * 1024;

class BuildingByHand : public ByHandTest
{
protected:
    // Media with so many megabytes in a loose file, which are copied for a while; they take no room before that.
    CString LargeMedia(LONGLONG megabytes)
    {
        const CString media = CopyOfMedia();
        const CFileOwner file(CreateFileW(media + L"\\x86\\Zolt\\Velkmora\\Zolt 2027\\License.txt",
                                          GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                          nullptr));
        LARGE_INTEGER size = {};
        size.QuadPart = megabytes * MEGABYTE;
        EXPECT_TRUE(SetFilePointerEx(file.get(), size, nullptr, FILE_BEGIN) && SetEndOfFile(file.get()));
        return media;
    }

    HWND StartBuilding(LONGLONG megabytes)
    {
        Start(LargeMedia(megabytes));
        HWND page = WaitFor(Shown::FirstPage);
        StrikeKey('3', {VK_MENU}); // 32-bit: its files lie loose
        WaitUntil(L"the 32-bit platform", [&] { return IsDlgButtonChecked(page, IDC_PLATFORM_X86) != 0; });
        StrikeKey('L', {VK_MENU});
        WalkFromFirstPageToBuild(L"Office");
        HWND build = WaitFor(Shown::BuildWindow);
        WaitUntil(L"the copying", [&] {
            return WindowText(GetDlgItem(build, IDC_BUILD_STEP)) == CString(L"Copying Zolt 2027");
        });
        return build;
    }
};

TEST_F(BuildingByHand, IsCanceledByEscapeTheCloseBoxAndTheButtonAndLeavesNothing)
{
    HWND build = StartBuilding(2000); // the copying goes on behind the questions, and must outlast them
    const CString question = ProgramText(IDS_BUILD_CANCEL_QUESTION);
    StrikeKey(VK_ESCAPE);
    AnswerBox('N');
    EXPECT_EQ(WaitFor(Shown::BuildWindow), build);
    CloseByBox(build);
    AnswerBox(VK_RETURN); // No is the default
    EXPECT_EQ(WaitFor(Shown::BuildWindow), build);
    ClickOn(GetDlgItem(build, IDCANCEL));
    AnswerBox('Y');
    WaitFor(Shown::FailedPage);
    StrikeKey(VK_ESCAPE);
    const CString cause = L"The build was canceled. Nothing was changed.";
    ExpectEnd(1602,
              Join({LogOfOpening(),
                    LogOfMode(L"Office", 2),
                    {L"Building Office", L"  Checking the location and the media", L"  Preparing Office",
                     L"  Copying Zolt 2027", L"Build ended with code 1602. " + cause,
                     L"Exit code 1602: " + cause}}),
              {LocalLocationQuestion(), question, question, question});
    EXPECT_EQ(ListLocation(), Lines());
}

TEST_F(BuildingByHand, GoesOnWhenSomebodyLogsOff)
{
    HWND build = StartBuilding(200);
    DWORD_PTR mayEnd = TRUE;
    ASSERT_TRUE(SendMessageTimeoutW(build, WM_QUERYENDSESSION, 0, 0, SMTO_NORMAL, 10000, &mayEnd));
    EXPECT_FALSE(mayEnd);
    SendMessageTimeoutW(build, WM_ENDSESSION, FALSE, 0, SMTO_NORMAL, 10000, &mayEnd);
    WaitFor(Shown::CompletePage);
    StrikeKey(VK_RETURN);
    ExpectEnd(0, Join({LogOfOpening(), LogOfBuild(L"Office", 2), {L"Exit code 0"}}),
              {LocalLocationQuestion()});
    EXPECT_EQ(ListLocation(), Lines{L"Office"});
}

} // namespace

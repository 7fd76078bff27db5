// Where the focus stands after Next was refused on the begin page, and what the next key does then.
#include "automation/keyboard.h"
#include "tests/pages/begin_page.h"

namespace {

class BeginRefusal : public BeginPage
{
protected:
    BeginRefusal()
    {
        WithLocation(folder.GetPath());
        WithName(L"Gamma");
    }

    // Next with the focus on it, as after a click with the mouse.
    void PressFocusedNext()
    {
        FocusOn(IDC_NEXT);
        Key(VK_SPACE);
    }
    void WithAPathThatIsTooLong() { host.manager.m_strMediaFile = host.Keep(CString(L'm', 300)); }
    void AnswerTooLong() { Answer(ErrorBox(ResourceText(IDS_PATH_TOO_LONG)), IDOK); }

    // The caret stands behind the location's last character and nothing is selected.
    void ExpectCaretBehindTheLocation()
    {
        Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
        AwaitFocus();
        Look([&] {
            EXPECT_TRUE(HasFocus(IDC_LOCATION)) << Utf8(DescribeWindow(GetFocus()));
            DWORD start = 0;
            DWORD end = 0;
            SendMessageW(Control(IDC_LOCATION).GetWindow(), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                         reinterpret_cast<LPARAM>(&end));
            const auto length = static_cast<DWORD>(Text(IDC_LOCATION).GetLength());
            EXPECT_EQ(start, length);
            EXPECT_EQ(end, length);
        });
    }
};

// The location was selected as a whole, and whoever typed on lost the path.
TEST_F(BeginRefusal, AKeyAfterAPathThatIsTooLongAddsToTheLocation)
{
    WithAPathThatIsTooLong();
    PressFocusedNext();
    AnswerTooLong();
    ExpectCaretBehindTheLocation();
    Step(L"type a letter", [] { return TypeCharacters(L"x"); });
    Await(L"the letter isn't there", [&] { return Text(IDC_LOCATION) == folder.GetPath() + L"x"; });
    ShowAndLeave();
}

TEST_F(BeginRefusal, APlatformThatIsNotAllowedLeavesTheCaretBehindTheLocation)
{
    host.manager.platformAllowed = false;
    PressFocusedNext();
    Answer(QuestionBox(ResourceText(IDS_LOCATION_NOT_NETWORK)), IDYES);
    Answer(ErrorBox(ResourceText(IDS_PLATFORM_NOT_ALLOWED, L"Gamma")), IDOK);
    ExpectCaretBehindTheLocation();
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
    ShowAndLeave();
}

TEST_F(BeginRefusal, AnotherProductsDeploymentLeavesTheCaretBehindTheLocation)
{
    host.AddDeployment(L"Other", L"{another code}");
    PressFocusedNext();
    Answer(ErrorBox(ResourceText(IDS_OTHER_PRODUCTS_DEPLOYMENT)), IDOK);
    ExpectCaretBehindTheLocation();
    ShowAndLeave();
}

TEST_F(BeginRefusal, TheFieldInWhichEnterWasPressedKeepsTheFocus)
{
    WithAPathThatIsTooLong();
    FocusOn(IDC_NAME);
    Key(VK_RETURN);
    AnswerTooLong();
    Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
    AwaitFocus();
    Look([&] { EXPECT_TRUE(HasFocus(IDC_NAME)) << Utf8(DescribeWindow(GetFocus())); });
    ShowAndLeave();
}

TEST_F(BeginRefusal, ThePlatformOnWhichEnterWasPressedKeepsTheFocus)
{
    WithAPathThatIsTooLong();
    FocusOn(IDC_PLATFORM_X64);
    Key(VK_RETURN);
    AnswerTooLong();
    Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
    AwaitFocus();
    Look([&] { EXPECT_TRUE(HasFocus(IDC_PLATFORM_X64)) << Utf8(DescribeWindow(GetFocus())); });
    ShowAndLeave();
}

TEST_F(BeginRefusal, NoToAQuestionGivesNextTheFocusBack)
{
    PressFocusedNext();
    Answer(QuestionBox(ResourceText(IDS_LOCATION_NOT_NETWORK)), IDNO);
    Await(L"Next is still disabled", [&] { return Control(IDC_NEXT).IsEnabled(); });
    AwaitFocus();
    Look([&] { EXPECT_TRUE(HasFocus(IDC_NEXT)) << Utf8(DescribeWindow(GetFocus())); });
    ShowAndLeave();
}

} // namespace

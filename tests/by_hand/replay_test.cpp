// What a person built is built again from the answers in it, and what a person was doing from the file of --record.
#include "automation/window_finder.h"
#include "base/files.h"
#include "include/resource_ids.h"
#include "tests/by_hand/by_hand_fixture.h"

#include <commctrl.h>

#include <string>

namespace {

constexpr std::size_t LONGEST_TEXT = 1 << 20;
constexpr wchar_t TYPED_PATH[] = L"C:\\\u00C4nderungen & more";

class ReplayByHand : public ByHandTest
{
protected:
    void Check(HWND page, int control, bool checked)
    {
        ClickOn(GetDlgItem(page, control));
        WaitUntil(L"the box as it is wanted",
                  [&] { return (IsDlgButtonChecked(page, control) != 0) == checked; });
    }

    void Enter(HWND page, int control, const CString& text)
    {
        ClickOn(GetDlgItem(page, control));
        WaitForFocus(page, control);
        StrikeKey('A', {VK_CONTROL});
        Type(page, control, text);
    }

    // The first support folder by keys alone: its heading is selected when the page comes.
    void EnterFirstPath(const CString& path)
    {
        HWND page = WaitFor(Shown::PathsPage);
        WaitForFocus(page, IDC_PATH_TREE);
        HWND tree = GetDlgItem(page, IDC_PATH_TREE);
        const auto edit = [tree] {
            return reinterpret_cast<HWND>(SendMessageW(tree, TVM_GETEDITCONTROL, 0, 0));
        };
        StrikeKey(VK_RIGHT);
        StrikeKey(VK_DOWN);
        StrikeKey(VK_F2);
        WaitUntil(L"the path's edit", [&] { return edit() && GetFocused(page) == edit(); });
        TypeText(path);
        WaitUntil(L"the typed path", [&] { return WindowText(edit()) == path; });
        StrikeKey(VK_RETURN);
        WaitUntil(L"the end of the path's edit", [&] { return !edit() && GetFocused(page) == tree; });
    }

    void Next(Shown shown)
    {
        WaitFor(shown);
        StrikeKey(VK_RETURN);
    }

    // From the first page to the end, with something changed on each page and a step back on the way.
    void BuildByHand(const CString& furtherWords)
    {
        Start(SampleMedia(), furtherWords);
        EnterFirstPage(L"Office");
        ConfirmLocalLocation();
        HWND page = WaitFor(Shown::SettingsPage);
        StrikeKey('P', {VK_MENU});
        WaitUntil(L"the progress bar's choice",
                  [&] { return IsDlgButtonChecked(page, IDC_INSTALL_PROGRESS) != 0; });
        StrikeKey(VK_RETURN);
        Next(Shown::WorkstationsPage);
        EnterFirstPath(TYPED_PATH);
        StrikeKey(VK_RETURN);
        Next(Shown::FilesPage);
        Check(WaitFor(Shown::ResourcesPage), IDC_PARTS_BAY, false);
        StrikeKey(VK_RETURN);
        page = WaitFor(Shown::NoticesPage);
        Check(page, IDC_SITE_CHANNEL, true);
        Enter(page, IDC_FEED_LOCATION, L"\\\\server\\feeds\\site.xml");
        Enter(page, IDC_DISPLAY_NAME, L"Site \"A\", 1");
        StrikeKey(VK_RETURN);
        AnswerBox('N'); // stays, and asks again
        WaitFor(Shown::NoticesPage);
        StrikeKey(VK_RETURN);
        AnswerBox('Y');
        Next(Shown::ServicePackPage);
        Next(Shown::WorkstationsPage);
        Next(Shown::PathsPage);
        Next(Shown::FilesPage);
        WaitFor(Shown::ResourcesPage);
        StrikeKey('B', {VK_MENU});
        Next(Shown::FilesPage);
        Next(Shown::ResourcesPage);
        page = WaitFor(Shown::NoticesPage);
        Check(page, IDC_SITE_CHANNEL, true);
        Enter(page, IDC_DISPLAY_NAME, L"Kept");
        Check(page, IDC_SITE_CHANNEL, false);
        StrikeKey(VK_RETURN);
        Next(Shown::ServicePackPage);
        Next(Shown::ContactPage);
        Next(Shown::Review);
        Next(Shown::CompletePage);
        EXPECT_EQ(WaitForEnd(), 0u);
    }

    static CString ReadText(const CString& path)
    {
        std::string bytes;
        EXPECT_EQ(ReadWholeFile(path, LONGEST_TEXT, bytes), 0u) << Utf8(path);
        return TextFromUtf8(bytes.data(), bytes.size());
    }

    // Every row that the deployment changes, and the commands.
    static CString ReadOutcome(const CString& deployment)
    {
        CString rows = ReadText(deployment + L"\\Changes.txt");
        for (int code = rows.Find(L"Package code:"); code >= 0; code = rows.Find(L"Package code:")) {
            rows.Delete(code, rows.Find(L'\n', code) - code);
        }
        return rows + ReadText(deployment + L"\\Install.cmd") + ReadText(deployment + L"\\Deployment.xml");
    }

    void Replay(const CString& answers, const CString& location)
    {
        CreateDirectoryW(location, nullptr);
        RunByAnswers(L"--media \"" + SampleMedia() + L"\" --answers \"" + answers + L"\" --out \"" +
                     location + L"\"");
    }
};

TEST_F(ReplayByHand, WhatAPersonBuiltIsBuiltFromItsAnswersAgain)
{
    BuildByHand(CString());
    const CString first = Deployment(L"Office");
    EXPECT_GE(ReadOutcome(first).Find(L"\"\\\\server\\feeds\\site.xml\""), 0);
    EXPECT_GE(ReadOutcome(first).Find(L"\"Kept\""), 0);
    EXPECT_GE(ReadOutcome(first).Find(L"\"" + CString(TYPED_PATH) + L";"), 0) << Utf8(ReadOutcome(first));
    Replay(first + L"\\Answers.txt", InFolder(L"Again"));
    const CString second = InFolder(L"Again\\Office");
    EXPECT_EQ(ReadOutcome(second), ReadOutcome(first));
    EXPECT_EQ(ReadText(second + L"\\Answers.txt"), ReadText(first + L"\\Answers.txt"));
}

TEST_F(ReplayByHand, WhatAPersonDidIsDoneAgainFromTheRecord)
{
    const CString record = InFolder(L"record.txt");
    BuildByHand(L"--record \"" + record + L"\"");
    EXPECT_LT(ReadText(record).Find(L"feed_not_found = no"), 0) << "the answer that kept the page";
    EXPECT_GE(ReadText(record).Find(CString(L"\nsupport_path = ") + TYPED_PATH + L"\r\n"), 0)
        << Utf8(ReadText(record));
    Replay(record, InFolder(L"Again"));
    EXPECT_EQ(ReadOutcome(InFolder(L"Again\\Office")), ReadOutcome(Deployment(L"Office")));
}

TEST_F(ReplayByHand, WhatAPersonCanceledIsGoneOnWithFromTheRecord)
{
    const CString record = InFolder(L"record.txt");
    Start(SampleMedia(), L"--record \"" + record + L"\"");
    EnterFirstPage(L"Office");
    ConfirmLocalLocation();
    HWND page = WaitFor(Shown::SettingsPage);
    StrikeKey('P', {VK_MENU});
    WaitUntil(L"the progress bar's choice",
              [&] { return IsDlgButtonChecked(page, IDC_INSTALL_PROGRESS) != 0; });
    StrikeKey(VK_ESCAPE);
    AnswerCancelQuestion('Y');
    EXPECT_EQ(WaitForEnd(), 1602u);
    EXPECT_GE(ReadText(record).Find(L"\ninstall_mode = progress\r\n"), 0) << Utf8(ReadText(record));
    Replay(record, InFolder(L"Again"));
    EXPECT_GE(ReadText(InFolder(L"Again\\Office\\Install.cmd")).Find(L"/qb-!"), 0);
}

} // namespace

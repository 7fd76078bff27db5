// The settings page where a call of the system fails.
#include "tests/pages/settings_page.h"
#include "tests/support/import_redirect.h"

#include <vector>

namespace {

class Redirect : public CImportRedirect
{
public:
    template <class Call>
    Redirect(const char* function, Call* call)
        : CImportRedirect(L"RolloutUi.dll", function, reinterpret_cast<void*>(call))
    {
        EXPECT_TRUE(IsInPlace()) << "the page library doesn't import " << function;
    }
};

// ---- a text that can't be written

bool folderIsStuck = false;
std::vector<UINT> beeps;

BOOL WINAPI SetText(HWND dialog, int id, const wchar_t* text)
{
    return folderIsStuck && id == IDC_LOG_FOLDER ? FALSE : SetDlgItemTextW(dialog, id, text);
}

BOOL WINAPI NoteBeep(UINT type)
{
    beeps.push_back(type);
    return TRUE;
}

class SettingsWrite : public SettingsPage
{
protected:
    SettingsWrite()
    {
        folderIsStuck = false;
        beeps.clear();
    }
    // Checks the log, for which the default can't be written.
    void CheckWithoutWriting()
    {
        Look([] { folderIsStuck = true; });
        Press(IDC_NETWORK_LOG);
        Await(L"the log is not checked", [this] { return Control(IDC_NETWORK_LOG).IsChecked(); });
        Look([] { folderIsStuck = false; });
    }

    Redirect setText{"SetDlgItemTextW", SetText};
    Redirect beep{"MessageBeep", NoteBeep};
};

TEST_F(SettingsWrite, AFailureBeepsByTheSpeakerAlone)
{
    CheckWithoutWriting();
    Look([] { EXPECT_EQ(beeps, std::vector<UINT>{0xFFFFFFFF}); });
    ShowAndLeave();
}

TEST_F(SettingsWrite, AFailureSetsTheFocusToTheEdit)
{
    CheckWithoutWriting();
    Look([this] { EXPECT_TRUE(HasFocus(IDC_LOG_FOLDER)); });
    ShowAndLeave();
}

TEST_F(SettingsWrite, ASuccessNeitherBeepsNorMovesTheFocus)
{
    SetChecked(IDC_NETWORK_LOG, true);
    Look([this] {
        EXPECT_EQ(beeps, std::vector<UINT>());
        EXPECT_FALSE(HasFocus(IDC_LOG_FOLDER));
    });
    ShowAndLeave();
}

// ---- a computer without a name

BOOL WINAPI FailComputerName(wchar_t* name, DWORD* size)
{
    wcscpy(name, L"HALF");
    *size = 4;
    return FALSE;
}

BOOL WINAPI EmptyComputerName(wchar_t* name, DWORD* size)
{
    *name = L'\0';
    *size = 0;
    return TRUE;
}

using SettingsComputer = SettingsPage;

TEST_F(SettingsComputer, ANameThatCannotBeReadLeavesTwoBackslashes)
{
    const Redirect name("GetComputerNameW", FailComputerName);
    WithLog(L"");
    Look([this] { EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"\\\\")); });
    ShowAndLeave();
}

TEST_F(SettingsComputer, AnEmptyNameLeavesTwoBackslashes)
{
    const Redirect name("GetComputerNameW", EmptyComputerName);
    WithLog(L"");
    Look([this] { EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"\\\\")); });
    ShowAndLeave();
}

} // namespace

// What leaving the log folder's edit activates, and how the settings page looks. With ROLLOUT_PICTURES set to a folder, a
// picture of every state is saved there.
#include "automation/picture.h"
#include "tests/pages/settings_page.h"
#include "tests/support/import_redirect.h"

#include <vector>

namespace {

// ---- leaving the edit

std::vector<int> activated; // ids of the windows that the page made active

HWND WINAPI NoteActivation(HWND window)
{
    activated.push_back(GetDlgCtrlID(window));
    return SetActiveWindow(window);
}

class SettingsEditLeft : public SettingsPage
{
protected:
    SettingsEditLeft()
    {
        EXPECT_TRUE(redirect.IsInPlace()) << "the page library doesn't import the call";
        WithLog(L"\\\\srv\\logs\\");
    }
    void LeaveEdit()
    {
        FocusOn(IDC_LOG_FOLDER);
        Look([] { activated.clear(); });
        FocusOn(IDC_SETTINGS_OPTION);
    }

    CImportRedirect redirect{L"RolloutUi.dll", "SetActiveWindow", reinterpret_cast<void*>(NoteActivation)};
};

TEST_F(SettingsEditLeft, AFolderActivatesNext)
{
    LeaveEdit();
    Look([&] { EXPECT_EQ(activated, std::vector<int>{IDC_NEXT}); });
    ShowAndLeave();
}

TEST_F(SettingsEditLeft, BlanksAloneActivateNothing)
{
    Type(IDC_LOG_FOLDER, L"  ");
    LeaveEdit();
    Look([&] { EXPECT_EQ(activated, std::vector<int>()); });
    ShowAndLeave();
}

// ---- looks

class SettingsLook : public SettingsPage
{
protected:
    SettingsLook() { context.strHelpFile = L"DeploymentSettings.html"; }

    void Picture(const wchar_t* state)
    {
        Look([this, state] {
            wchar_t target[MAX_PATH] = {};
            if (GetEnvironmentVariableW(L"ROLLOUT_PICTURES", target, MAX_PATH) != 0) {
                EXPECT_TRUE(SaveWindowPicture(Page(), CString(target) + L"\\settings-" + state + L".png"));
            }
        });
    }
};

// The width that the control's text needs fits into the control.
void ExpectTextFits(HWND control, int room)
{
    const CString text = CControl(control).GetText();
    HDC context = GetDC(control);
    const HGDIOBJ former =
        SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT needed = {};
    DrawTextW(context, text, -1, &needed, DT_CALCRECT | DT_SINGLELINE);
    SelectObject(context, former);
    ReleaseDC(control, context);
    RECT given = {};
    GetClientRect(control, &given);
    EXPECT_LE(needed.right + room, given.right) << Utf8(text);
}

TEST_F(SettingsLook, NoTextOfThePageIsCutOff)
{
    constexpr int CHECK_MARK = 18; // pixels that the mark and its gap take
    AddCarrier(L"#1");
    WithLog(L"\\\\srv\\logs\\");
    Look([&] {
        for (const int id :
             {IDC_NETWORK_LOG, IDC_SETTINGS_OPTION, IDC_INSTALL_SILENT, IDC_INSTALL_PROGRESS, IDC_MC3})
            ExpectTextFits(GetDlgItem(Page(), id), CHECK_MARK);
        for (const int id : {IDC_LOG_FOLDER_HEADING, IDC_MC3_HEADING})
            ExpectTextFits(GetDlgItem(Page(), id), 0);
    });
    ShowAndLeave();
}

TEST_F(SettingsLook, PicturesOfEachState)
{
    Picture(L"off");
    ShowAndLeave();
    CountFromHere(); // the picture encoder of the system keeps objects of its own from its first use
    Press(IDC_NETWORK_LOG);
    Picture(L"default");
    Type(IDC_LOG_FOLDER,
         L"\\\\server\\share\\A rather long folder name\\for the logs of all workstations\\Logs\\");
    Picture(L"long");
    ShowAndLeave();
    AddCarrier(L"#1");
    Picture(L"mc3");
    ShowAndLeave();
}

} // namespace

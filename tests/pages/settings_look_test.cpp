// Browsing for the log folder, what leaving its edit activates, and how the settings page looks. With ROLLOUT_PICTURES
// set to a folder, a picture of every state is saved there.
#include "automation/picture.h"
#include "tests/pages/settings_page.h"
#include "tests/support/import_redirect.h"

#include <shlobj.h>

#include <vector>

namespace {

// ---- the picker

// Wine's picker is empty where the page roots it, at the network neighbourhood. So the call itself is looked at, and
// answered with a folder that really is there, or as by Cancel.
struct PickerCall
{
    UINT flags = 0;
    HWND owner = nullptr;
    bool fromNetwork = false;
    CString title;
    CString answer; // empty: cancelled
};
PickerCall pickerCall;

LPITEMIDLIST WINAPI AnswerPicker(BROWSEINFOW* browse)
{
    LPITEMIDLIST network = nullptr;
    SHGetSpecialFolderLocation(nullptr, CSIDL_NETWORK, &network);
    const CTaskOwner owner(network);
    pickerCall.flags = browse->ulFlags;
    pickerCall.owner = browse->hwndOwner;
    pickerCall.title = browse->lpszTitle;
    pickerCall.fromNetwork = browse->pidlRoot && ILIsEqual(browse->pidlRoot, network);
    return pickerCall.answer.IsEmpty() ? nullptr : ILCreateFromPathW(pickerCall.answer);
}

class SettingsBrowse : public SettingsPage
{
protected:
    SettingsBrowse()
    {
        EXPECT_TRUE(redirect.IsInPlace()) << "the page library doesn't import the picker";
        pickerCall = PickerCall();
        WithLog(L"\\\\srv\\logs\\");
    }

    CImportRedirect redirect{L"RolloutUi.dll", "SHBrowseForFolderW", reinterpret_cast<void*>(AnswerPicker)};
};

TEST_F(SettingsBrowse, ThePickerIsOwnedRootedTitledAndStyled)
{
    Press(IDC_LOG_FOLDER_BROWSE);
    Look([&] {
        EXPECT_EQ(pickerCall.flags, 325u);
        EXPECT_TRUE(pickerCall.fromNetwork);
        EXPECT_EQ(pickerCall.owner, Page());
        EXPECT_EQ(pickerCall.title, ResourceText(IDS_BROWSE_LOG_FOLDER));
    });
    ShowAndLeave();
}

TEST_F(SettingsBrowse, ACancelledPickerKeepsTheText)
{
    Press(IDC_LOG_FOLDER_BROWSE);
    Look([&] { EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"\\\\srv\\logs\\")); });
    ShowAndLeave();
}

TEST_F(SettingsBrowse, APickedFolderGetsABackslashAndTheFocus)
{
    pickerCall.answer = folder.AddFolder(L"picked");
    Press(IDC_LOG_FOLDER_BROWSE);
    Await(L"the edit hasn't got the focus", [&] { return HasFocus(IDC_LOG_FOLDER); });
    Look([&] { EXPECT_EQ(Text(IDC_LOG_FOLDER).CompareNoCase(pickerCall.answer + L"\\"), 0); });
    ShowAndLeave();
}

TEST_F(SettingsBrowse, APickedFolderSwitchesNextOn)
{
    pickerCall.answer = folder.AddFolder(L"picked");
    Type(IDC_LOG_FOLDER, L"");
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
    Press(IDC_LOG_FOLDER_BROWSE);
    Await(L"Next is still disabled", [&] { return Control(IDC_NEXT).IsEnabled(); });
    ShowAndLeave();
}

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

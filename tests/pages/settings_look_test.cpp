// What leaving the log folder's edit activates, and how the settings page looks. With ROLLOUT_PICTURES set to a folder, a
// picture of every state is saved there.
#include "automation/picture.h"
#include "tests/pages/settings_page.h"
#include "tests/support/import_redirect.h"

#include <functional>
#include <iterator>
#include <utility>
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

// The folder for pictures, with a backslash at its end; empty when nobody wants any.
CString PictureFolder()
{
    wchar_t target[MAX_PATH] = {};
    return GetEnvironmentVariableW(L"ROLLOUT_PICTURES", target, MAX_PATH) ? CString(target) + L"\\"
                                                                          : CString();
}

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
    EXPECT_LE(needed.bottom, given.bottom) << Utf8(text);
}

// What the administrator reads and sets on this page, from the top down.
constexpr int BUTTONS[] = {IDC_NETWORK_LOG, IDC_SETTINGS_OPTION, IDC_INSTALL_SILENT, IDC_INSTALL_PROGRESS,
                           IDC_MC3};
constexpr int CONTENTS[] = {IDC_NETWORK_LOG,       IDC_LOG_FOLDER_HEADING, IDC_LOG_FOLDER,
                            IDC_LOG_FOLDER_BROWSE, IDC_SETTINGS_OPTION,    IDC_INSTALL_SILENT,
                            IDC_INSTALL_PROGRESS,  IDC_MC3_HEADING,        IDC_MC3};

class SettingsLook : public SettingsPage
{
protected:
    SettingsLook()
    {
        context.strHelpFile = L"DeploymentSettings.html";
        WarmPictureEncoder();
    }

    // Checks what holds in every state and, where pictures are wanted, saves one.
    void LookAt(const wchar_t* state, std::function<void()> look)
    {
        Look([this, state, look = std::move(look)] {
            look();
            ExpectTextsFit();
            ExpectStraightEdges();
            ExpectNoOverlap();
            SavePicture(state);
        });
        ShowAndLeave();
    }

    void SavePicture(const wchar_t* state) const
    {
        if (!PictureFolder().IsEmpty()) {
            EXPECT_TRUE(SaveWindowPicture(Page(), PictureFolder() + L"settings-" + state + L".png"));
        }
    }

private:
    // The system's encoder, and what it makes the page draw, keep objects of their own from the first picture.
    void WarmPictureEncoder()
    {
        static bool done = false;
        if (done || PictureFolder().IsEmpty())
            return;
        done = true;
        const CString file = PictureFolder() + L"first.png";
        Look([&] { EXPECT_TRUE(SaveWindowPicture(Page(), file)); });
        ShowAndLeave();
        DeleteFileW(file);
        CountFromHere();
    }
    void ExpectTextsFit() const
    {
        constexpr int CHECK_MARK = 18; // pixels that the mark and its gap take
        for (const int id : BUTTONS)
            ExpectTextFits(GetDlgItem(Page(), id), CHECK_MARK);
        for (const int id : {IDC_LOG_FOLDER_HEADING, IDC_MC3_HEADING})
            ExpectTextFits(GetDlgItem(Page(), id), 0);
    }
    void ExpectStraightEdges() const
    {
        const RECT first = Control(IDC_NETWORK_LOG).GetRectangle();
        const RECT edit = Control(IDC_LOG_FOLDER).GetRectangle();
        const RECT browse = Control(IDC_LOG_FOLDER_BROWSE).GetRectangle();
        for (const int id : BUTTONS)
            EXPECT_EQ(Control(id).GetRectangle().left, first.left) << Utf8(Control(id).Describe());
        EXPECT_EQ(Control(IDC_MC3_HEADING).GetRectangle().left, first.left);
        EXPECT_EQ(Control(IDC_LOG_FOLDER_HEADING).GetRectangle().left, edit.left);
        EXPECT_EQ(browse.right, first.right);
        EXPECT_EQ(std::pair(edit.top, edit.bottom), std::pair(browse.top, browse.bottom));
    }
    // Nothing stands in another's place or outside the page.
    void ExpectNoOverlap() const
    {
        RECT client = {};
        GetClientRect(Page(), &client);
        for (const int* id = std::begin(CONTENTS); id != std::end(CONTENTS); ++id) {
            const RECT place = Control(*id).GetRectangle();
            RECT common = {};
            UnionRect(&common, &client, &place);
            EXPECT_TRUE(EqualRect(&common, &client)) << Utf8(Control(*id).Describe());
            for (const int* other = id + 1; other != std::end(CONTENTS); ++other) {
                const RECT next = Control(*other).GetRectangle();
                EXPECT_FALSE(IntersectRect(&common, &place, &next))
                    << Utf8(Control(*id).Describe()) << " and " << Utf8(Control(*other).Describe());
            }
        }
    }
};

TEST_F(SettingsLook, WithoutALogTheFolderIsGrey)
{
    LookAt(L"off", [this] {
        ExpectFolderEnabled(false);
        ExpectMc3Shown(false);
        EXPECT_EQ(Text(IDC_LOG_FOLDER), CString());
    });
}

TEST_F(SettingsLook, WithALogTheDefaultCanBeEdited)
{
    Press(IDC_NETWORK_LOG);
    LookAt(L"default", [this] {
        ExpectFolderEnabled(true);
        ExpectMc3Shown(false);
        EXPECT_EQ(Text(IDC_LOG_FOLDER), FolderBelowComputer());
    });
}

TEST_F(SettingsLook, AFolderLongerThanTheEditStandsInItWhole)
{
    const CString logFolder =
        L"\\\\server\\share\\A rather long folder name\\for the logs of all workstations\\Logs\\";
    WithLog(L"\\\\srv\\logs\\");
    Type(IDC_LOG_FOLDER, logFolder);
    LookAt(L"long", [=, this] {
        ExpectFolderEnabled(true);
        EXPECT_EQ(Text(IDC_LOG_FOLDER), logFolder);
    });
}

TEST_F(SettingsLook, AProductThatCarriesMc3ShowsItsBox)
{
    AddCarrier(L"#1");
    LookAt(L"mc3", [this] {
        ExpectFolderEnabled(false);
        ExpectMc3Shown(true);
        EXPECT_TRUE(Control(IDC_MC3).IsChecked());
    });
}

TEST_F(SettingsLook, TheSidePaneNamesEveryChoice)
{
    Look([this] {
        const CString help = Control(IDC_SIDE_PANE).GetText();
        for (const wchar_t* choice :
             {L"network log", L"log folder", L"copy on the workstation", L"Nothing", L"progress bar", L"MC3"})
            EXPECT_GE(help.Find(choice), 0) << Utf8(choice) << " in: " << Utf8(help);
    });
    Look([this] {
        if (!PictureFolder().IsEmpty())
            SendMessageW(Control(IDC_SIDE_PANE).GetWindow(), WM_VSCROLL, SB_BOTTOM, 0);
        SavePicture(L"help");
    });
    ShowAndLeave();
}

} // namespace

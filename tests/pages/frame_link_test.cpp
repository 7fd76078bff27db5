// The links below a page and in its side pane: what they open, and from where.
#include "tests/pages/contact_page.h"

namespace {

// A target that shows that it was opened: a script that writes a file beside itself.
constexpr char marker[] = "@echo opened> \"%~dp0opened.txt\"\r\n";

// As long as the object lives, no program opens PDF files.
class CWithoutPdfViewer
{
public:
    CWithoutPdfViewer()
    {
        DWORD size = sizeof(m_program);
        m_found = RegGetValueW(HKEY_CLASSES_ROOT, extension, nullptr, RRF_RT_REG_SZ, nullptr, m_program,
                               &size) == ERROR_SUCCESS;
        if (m_found)
            RegDeleteKeyValueW(HKEY_CLASSES_ROOT, extension, nullptr);
    }
    ~CWithoutPdfViewer()
    {
        if (m_found)
            RegSetKeyValueW(HKEY_CLASSES_ROOT, extension, nullptr, REG_SZ, m_program,
                            static_cast<DWORD>((CString(m_program).GetLength() + 1) * sizeof(wchar_t)));
    }
    CWithoutPdfViewer(const CWithoutPdfViewer&) = delete;
    CWithoutPdfViewer& operator=(const CWithoutPdfViewer&) = delete;

private:
    static constexpr wchar_t extension[] = L".pdf";

    bool m_found = false;
    wchar_t m_program[260] = {};
};

class Links : public ContactPage
{
protected:
    Links()
    {
        WithResourceFolder();
        host.manager.sourceResourceFolder = source.GetPath();
    }
    void AwaitFile(const CString& path)
    {
        Await(L"the target was not opened", [path] { return FileExists(path); });
    }

    CTestFolder source; // the same folder on the source media
};

TEST_F(Links, ALinkWithoutTargetIsDisabled)
{
    host.manager.m_strLinkTarget2 = L"";
    Look([&] {
        EXPECT_FALSE(Control(IDC_LINK1).IsEnabled());
        EXPECT_FALSE(Control(IDC_LINK2).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(Links, EachLinkWithATargetIsShownAndEnabled)
{
    host.manager.m_strLinkTarget2 = L"notes.html";
    Look([&] {
        EXPECT_FALSE(Control(IDC_LINK1).IsEnabled());
        EXPECT_TRUE(Control(IDC_LINK2).IsEnabled());
        EXPECT_TRUE(Control(IDC_LINK2).IsVisible());
        EXPECT_TRUE(GetWindowLongW(Control(IDC_LINK2).GetWindow(), GWL_STYLE) & SS_NOTIFY);
    });
    ShowAndLeave();
}

TEST_F(Links, ALinkWithoutTargetStaysAPlainStatic)
{
    host.manager.m_strLinkTarget2 = L"";
    Look([&] {
        for (const int id : {IDC_LINK1, IDC_LINK2}) {
            const HWND link = Control(id).GetWindow();
            EXPECT_FALSE(GetWindowLongW(link, GWL_STYLE) & SS_NOTIFY) << id;
            EXPECT_EQ(SendMessageW(link, WM_GETDLGCODE, 0, 0), DLGC_STATIC) << id;
        }
    });
    ShowAndLeave();
}

// The host's member may have changed since: what the link shows is what it opens.
TEST_F(Links, ALinkOpensTheTargetThatItWasSetUpWith)
{
    folder.AddFile(L"guide.bat", marker);
    folder.AddFile(L"other.bat", "@echo opened> \"%~dp0other.txt\"\r\n");
    host.manager.m_strLinkTarget1 = L"guide.bat";
    Look([&] { host.manager.m_strLinkTarget1 = L"other.bat"; });
    FocusOn(IDC_LINK1);
    Key(VK_RETURN);
    AwaitFile(folder / L"opened.txt");
    ShowAndLeave();
    EXPECT_FALSE(FileExists(folder / L"other.txt"));
}

TEST_F(Links, EnterOnALinkOpensTheTargetInTheResourceFolder)
{
    folder.AddFile(L"guide.bat", marker);
    source.AddFile(L"guide.bat", marker);
    host.manager.m_strLinkTarget1 = L"guide.bat";
    FocusOn(IDC_LINK1);
    Key(VK_RETURN);
    AwaitFile(folder / L"opened.txt");
    Look([&] { EXPECT_FALSE(FileExists(source / L"opened.txt")); });
    ShowAndLeave();
}

TEST_F(Links, TheCommandOfALinkOpensItsTarget)
{
    folder.AddFile(L"second.bat", marker);
    host.manager.m_strLinkTarget1 = L"first.bat";
    host.manager.m_strLinkTarget2 = L"second.bat";
    Look([&] { PostMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_LINK2, BN_CLICKED), 0); });
    AwaitFile(folder / L"opened.txt");
    ShowAndLeave();
}

TEST_F(Links, AMouseClickOnALinkOpensItsTarget)
{
    folder.AddFile(L"guide.bat", marker);
    host.manager.m_strLinkTarget1 = L"guide.bat";
    Look([&] {
        HWND link = Control(IDC_LINK1).GetWindow();
        const LPARAM place = MAKELPARAM(8, 5);
        PostMessageW(link, WM_MOUSEMOVE, 0, place);
        PostMessageW(link, WM_LBUTTONDOWN, MK_LBUTTON, place);
        PostMessageW(link, WM_LBUTTONUP, 0, place);
    });
    AwaitFile(folder / L"opened.txt");
    ShowAndLeave();
}

TEST_F(Links, ATargetThatTheResourceFolderLacksIsOpenedFromTheSource)
{
    source.AddFile(L"guide.bat", marker);
    host.manager.m_strLinkTarget1 = L"guide.bat";
    FocusOn(IDC_LINK1);
    Key(VK_RETURN);
    AwaitFile(source / L"opened.txt");
    ShowAndLeave();
}

TEST_F(Links, ATargetThatIsNowhereIsPassedOverWithoutAWord)
{
    host.manager.m_strLinkTarget1 = L"nowhere.bat";
    FocusOn(IDC_LINK1);
    Key(VK_RETURN);
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

// ---- the side pane

class SidePane : public Links
{
protected:
    // A side pane with one link, which the keyboard follows.
    void WithLink(const char* html)
    {
        folder.AddFile(L"help.html", html);
        context.strHelpFile = L"help.html";
    }
    void FollowLink()
    {
        FocusOn(IDC_SIDE_PANE);
        Look([&] {
            HWND pane = Control(IDC_SIDE_PANE).GetWindow();
            RECT area = {};
            GetClientRect(pane, &area);
            // The link fills the first line; wherever the margin ends, one of these places is on it.
            for (int y = 2; y < 40; y += 6) {
                PostMessageW(pane, WM_MOUSEMOVE, 0, MAKELPARAM(30, y));
                PostMessageW(pane, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(30, y));
                PostMessageW(pane, WM_LBUTTONUP, 0, MAKELPARAM(30, y));
            }
        });
    }
    void AwaitPaneText(const wchar_t* words)
    {
        Await(L"the side pane doesn't show the linked file",
              [this, words] { return Control(IDC_SIDE_PANE).GetText().Find(words) >= 0; });
    }
};

TEST_F(SidePane, AnHtmlLinkIsShownInThePane)
{
    WithLink("<a href=\"more.html\">More about deployments</a>");
    folder.AddFile(L"more.html", "<p>Here is more</p>");
    FollowLink();
    AwaitPaneText(L"Here is more");
    ShowAndLeave();
}

TEST_F(SidePane, AnHtmLinkIsShownInAnyCaseAndFromTheSource)
{
    WithLink("<a href=\"more.HTM\">More about deployments</a>");
    source.AddFile(L"more.HTM", "<p>From the source</p>");
    FollowLink();
    AwaitPaneText(L"From the source");
    ShowAndLeave();
}

TEST_F(SidePane, AnotherExtensionDoesNothing)
{
    WithLink("<a href=\"more.bat\">More about deployments</a>");
    folder.AddFile(L"more.bat", marker);
    FollowLink();
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_FALSE(FileExists(folder / L"opened.txt"));
}

TEST_F(SidePane, EnterFollowsTheFocusedLinkInsteadOfPressingNext)
{
    WithLink("<a href=\"more.html\">More about deployments</a>");
    folder.AddFile(L"more.html", "<p>Here is more</p>");
    FocusOn(IDC_SIDE_PANE);
    Key(VK_RETURN);
    AwaitPaneText(L"Here is more");
    ShowAndLeave();
}

// The file stands beside the program, where the second try looks; no program opens it here.
TEST_F(SidePane, APdfWithoutAViewerIsReportedInABox)
{
    const CWithoutPdfViewer noViewer;
    const CString document = ProgramFolder() + L"rollout guide.pdf";
    WriteFileBytes(document, "%PDF-1.4\n");
    WithLink("<a href=\"rollout guide.pdf\">The whole guide</a>");
    FocusOn(IDC_SIDE_PANE);
    Key(VK_RETURN);
    ExpectedBox box = WarningBox(ResourceText(IDS_PDF_NO_VIEWER));
    Answer(box.Titled(ResourceText(IDS_PDF_NO_VIEWER_TITLE)).WithoutOwner(), IDOK);
    ShowAndLeave();
    DeleteFileW(document);
}

TEST_F(SidePane, APdfThatIsNowhereIsPassedOverWithoutAWord)
{
    WithLink("<a href=\"nowhere.pdf\">The whole guide</a>");
    FocusOn(IDC_SIDE_PANE);
    Key(VK_RETURN);
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

} // namespace

#include "tests/window/fixture.h"
#include "window/controls.h"
#include "window/window_impl.h"

namespace {

class ReflectionTest : public WindowTest
{
};

class CReflectingDialog : public CDialogImpl<CReflectingDialog>
{
public:
    enum
    {
        IDD = IDD_TEST
    };
    BEGIN_MSG_MAP(CReflectingDialog)
    REFLECT_NOTIFICATIONS()
    END_MSG_MAP()
};

class CSelfColouredEdit : public CWindowImpl<CSelfColouredEdit, CEdit>
{
public:
    BEGIN_MSG_MAP(CSelfColouredEdit)
    MESSAGE_HANDLER(WM_CTLCOLOREDIT + reflectionOffset, OnColour)
    REFLECTED_COMMAND_CODE_HANDLER(EN_CHANGE, OnChange)
    REFLECTED_NOTIFY_CODE_HANDLER(NM_CLICK, OnClick)
    DEFAULT_REFLECTION_HANDLER()
    END_MSG_MAP()
    int changes = 0;

private:
    LRESULT OnColour(UINT, WPARAM, LPARAM, BOOL&)
    {
        return reinterpret_cast<LRESULT>(GetStockObject(LTGRAY_BRUSH));
    }
    LRESULT OnChange(WORD, WORD, HWND, BOOL&)
    {
        ++changes;
        return 0;
    }
    LRESULT OnClick(int, NMHDR*, BOOL&) { return 55; }
};

TEST_F(ReflectionTest, ACommandComesBackToItsControl)
{
    CReflectingDialog dialog;
    CSelfColouredEdit edit;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    ASSERT_TRUE(edit.SubclassWindow(dialog.GetDlgItem(IDC_NAME)));
    edit.SetText(L"changed");
    EXPECT_EQ(edit.changes, 1);
}

TEST_F(ReflectionTest, ANotificationsAnswerIsTheControls)
{
    CReflectingDialog dialog;
    CSelfColouredEdit edit;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    ASSERT_TRUE(edit.SubclassWindow(dialog.GetDlgItem(IDC_NAME)));
    NMHDR header = {edit, IDC_NAME, static_cast<UINT>(NM_CLICK)};
    EXPECT_EQ(dialog.SendMessage(WM_NOTIFY, IDC_NAME, reinterpret_cast<LPARAM>(&header)), 55);
}

TEST_F(ReflectionTest, AControlCanColourItself)
{
    CReflectingDialog dialog;
    CSelfColouredEdit edit;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    ASSERT_TRUE(edit.SubclassWindow(dialog.GetDlgItem(IDC_NAME)));
    const HDC dc = GetDC(edit);
    EXPECT_EQ(dialog.SendMessage(WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc),
                                 reinterpret_cast<LPARAM>(edit.m_hWnd)),
              reinterpret_cast<LRESULT>(GetStockObject(LTGRAY_BRUSH)));
    ReleaseDC(edit, dc);
}

TEST_F(ReflectionTest, ACommandFromAMenuIsNotReflected)
{
    EXPECT_EQ(NotifyingControl(nullptr, WM_COMMAND, MAKEWPARAM(5, 0), 0), nullptr);
}

TEST_F(ReflectionTest, OtherMessagesAreNoneOfTheDefaultHandlersBusiness)
{
    LRESULT result = 77;
    EXPECT_FALSE(DefaultReflectionHandler(nullptr, WM_SETFOCUS + reflectionOffset, 0, 0, result));
    EXPECT_FALSE(DefaultReflectionHandler(nullptr, WM_COMMAND, 0, 0, result));
    EXPECT_EQ(result, 77);
}

} // namespace

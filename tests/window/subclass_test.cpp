#include "tests/support/text.h"
#include "tests/window/fixture.h"
#include "window/controls.h"
#include "window/window_binding.h"
#include "window/window_impl.h"

#include <memory>
#include <optional>

namespace {

class SubclassTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        m_edit =
            CreateWindowExW(0, L"EDIT", L"text", WS_POPUP, 0, 0, 80, 20, nullptr, nullptr, nullptr, nullptr);
        ASSERT_NE(m_edit, nullptr);
    }
    void TearDown() override
    {
        if (IsWindow(m_edit)) {
            DestroyWindow(m_edit);
        }
        WindowTest::TearDown();
    }
    WNDPROC Procedure() const { return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(m_edit, GWLP_WNDPROC)); }

    HWND m_edit = nullptr;
};

constexpr UINT askMessage = WM_APP + 1;
constexpr UINT leaveMessage = WM_APP + 2;
constexpr UINT chainMessage = WM_APP + 3;

template <int tag>
class CTaggedSubclass : public CWindowImpl<CTaggedSubclass<tag>, CEdit>
{
public:
    BEGIN_MSG_MAP(CTaggedSubclass)
    MESSAGE_HANDLER(askMessage, OnAsk)
    MESSAGE_HANDLER(leaveMessage, OnLeave)
    MESSAGE_HANDLER(chainMessage, OnChain)
    END_MSG_MAP()

    void OnFinalMessage(HWND) override { ++finalMessages; }
    int finalMessages = 0;

private:
    LRESULT OnAsk(UINT, WPARAM, LPARAM, BOOL&) { return tag; }
    LRESULT OnLeave(UINT, WPARAM, LPARAM, BOOL& handled)
    {
        this->UnsubclassWindow();
        handled = FALSE;
        return 0;
    }
    LRESULT OnChain(UINT message, WPARAM wParam, LPARAM lParam, BOOL&)
    {
        return tag + 100 * this->DefWindowProc(message, wParam, lParam);
    }
};
using CFirstSubclass = CTaggedSubclass<1>;
using CSecondSubclass = CTaggedSubclass<2>;

// An edit of a class of its own.
class COwnEdit : public CWindowImpl<COwnEdit, CEdit>
{
public:
    DECLARE_WND_SUPERCLASS(L"RolloutTestEdit", L"EDIT")

    BEGIN_MSG_MAP(COwnEdit)
    MESSAGE_HANDLER(WM_CREATE, OnCreate)
    MESSAGE_HANDLER(askMessage, OnAsk)
    MESSAGE_HANDLER(WM_CHAR, OnChar)
    END_MSG_MAP()

    void OnFinalMessage(HWND) override { ++finalMessages; }
    int finalMessages = 0;
    int created = 0;

private:
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL& handled)
    {
        ++created;
        handled = FALSE;
        return 0;
    }
    LRESULT OnAsk(UINT, WPARAM, LPARAM, BOOL&) { return 1; }
    LRESULT OnChar(UINT message, WPARAM, LPARAM lParam, BOOL&)
    {
        return DefWindowProc(message, L'x', lParam); // whatever is typed
    }
};

class SuperclassTest : public SubclassTest
{
};

TEST_F(SuperclassTest, AWindowOfASuperclassIsAControlFromItsFirstMessageOn)
{
    COwnEdit edit;
    ASSERT_NE(edit.Create(m_edit, nullptr, L"text"), nullptr);
    wchar_t name[32] = {};
    GetClassNameW(edit, name, 32);
    EXPECT_EQ(CString(name), CString(L"RolloutTestEdit"));
    EXPECT_EQ(edit.created, 1);
    EXPECT_EQ(SendMessageW(edit, askMessage, 0, 0), 1);
    edit.SetSelAll();
    SendMessageW(edit, WM_CHAR, L'a', 0);
    EXPECT_EQ(ReadWindowText(edit), CString(L"x"));
}

TEST_F(SuperclassTest, AWindowThatGoesFirstUnbindsItsObject)
{
    COwnEdit edit;
    ASSERT_NE(edit.Create(m_edit), nullptr);
    DestroyWindow(edit);
    EXPECT_EQ(edit.m_hWnd, nullptr);
    EXPECT_EQ(edit.finalMessages, 1);
}

TEST_F(SuperclassTest, AnObjectThatGoesFirstTakesItsWindowAlong)
{
    HWND window = nullptr;
    {
        COwnEdit edit;
        window = edit.Create(m_edit);
        ASSERT_NE(window, nullptr);
    }
    EXPECT_FALSE(IsWindow(window));
}

class COfNothing : public CWindowImpl<COfNothing>
{
public:
    DECLARE_WND_SUPERCLASS(L"RolloutTestNothing", L"RolloutNoSuchClass")
    BEGIN_MSG_MAP(COfNothing)
    END_MSG_MAP()
};

TEST_F(SuperclassTest, ASuperclassOfNothingMakesNoWindow)
{
    COfNothing window;
    EXPECT_EQ(window.Create(m_edit), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_CLASS_DOES_NOT_EXIST));
    EXPECT_EQ(window.m_hWnd, nullptr);
}

TEST_F(SubclassTest, ASubclassAnswersAndTheControlDoesTheRest)
{
    CFirstSubclass subclass;
    ASSERT_TRUE(subclass.SubclassWindow(m_edit));
    EXPECT_EQ(SendMessageW(m_edit, askMessage, 0, 0), 1);
    subclass.SetText(L"still an edit");
    EXPECT_EQ(ReadWindowText(m_edit), CString(L"still an edit"));
}

// A window that comes later can get the same handle.
TEST_F(SubclassTest, AnUnboundWindowIsForgotten)
{
    static const char key = 0;
    const HWND window = GetDesktopWindow();
    ASSERT_TRUE(BindWindow(window, &key, {true, nullptr, nullptr}));
    EXPECT_TRUE(FindBinding(window, &key).bound);
    UnbindWindow(window, &key);
    EXPECT_FALSE(FindBinding(window, &key).bound);
}

TEST_F(SubclassTest, UnsubclassingGivesTheWindowItsProcedureBack)
{
    const WNDPROC before = Procedure();
    CFirstSubclass subclass;
    ASSERT_TRUE(subclass.SubclassWindow(m_edit));
    ASSERT_NE(Procedure(), before);
    EXPECT_EQ(subclass.UnsubclassWindow(), m_edit);
    EXPECT_EQ(Procedure(), before);
    EXPECT_EQ(subclass.m_hWnd, nullptr);
}

TEST_F(SubclassTest, AnObjectThatGoesFirstGivesTheWindowItsProcedureBack)
{
    const WNDPROC before = Procedure();
    {
        CFirstSubclass subclass;
        ASSERT_TRUE(subclass.SubclassWindow(m_edit));
    }
    EXPECT_EQ(Procedure(), before);
    EXPECT_TRUE(IsWindow(m_edit));
}

TEST_F(SubclassTest, AWindowThatGoesFirstUnbindsTheObject)
{
    CFirstSubclass subclass;
    ASSERT_TRUE(subclass.SubclassWindow(m_edit));
    DestroyWindow(m_edit);
    EXPECT_EQ(subclass.m_hWnd, nullptr);
    EXPECT_EQ(subclass.finalMessages, 1);
}

TEST_F(SubclassTest, AHandlerMayUnsubclassItsWindow)
{
    CFirstSubclass subclass;
    ASSERT_TRUE(subclass.SubclassWindow(m_edit));
    SendMessageW(m_edit, leaveMessage, 0, 0);
    EXPECT_EQ(subclass.m_hWnd, nullptr);
    EXPECT_EQ(SendMessageW(m_edit, askMessage, 0, 0), 0);
}

TEST_F(SubclassTest, OfTwoSubclassesTheNewerAnswersAndReachesTheOlder)
{
    CFirstSubclass first;
    CSecondSubclass second;
    ASSERT_TRUE(first.SubclassWindow(m_edit));
    ASSERT_TRUE(second.SubclassWindow(m_edit));
    EXPECT_EQ(SendMessageW(m_edit, askMessage, 0, 0), 2);
    EXPECT_EQ(SendMessageW(m_edit, chainMessage, 0, 0), 2 + 100 * 1);
}

TEST_F(SubclassTest, TheLowerOfTwoSubclassesStaysUntilTheUpperOneLeaves)
{
    CFirstSubclass lower;
    CSecondSubclass upper;
    ASSERT_TRUE(lower.SubclassWindow(m_edit));
    ASSERT_TRUE(upper.SubclassWindow(m_edit));
    EXPECT_EQ(lower.UnsubclassWindow(), nullptr);
    EXPECT_EQ(lower.m_hWnd, m_edit);
    EXPECT_EQ(upper.UnsubclassWindow(), m_edit);
    EXPECT_EQ(lower.UnsubclassWindow(), m_edit);
}

TEST_F(SubclassTest, AnObjectFromTheMiddleOfTheChainGoesAndTheChainHolds)
{
    CSecondSubclass upper;
    {
        CFirstSubclass lower;
        ASSERT_TRUE(lower.SubclassWindow(m_edit));
        ASSERT_TRUE(upper.SubclassWindow(m_edit));
    }
    SetWindowTextW(m_edit, L"reached");
    EXPECT_EQ(ReadWindowText(m_edit), CString(L"reached"));
    EXPECT_EQ(SendMessageW(m_edit, chainMessage, 0, 0), 2);
}

TEST_F(SubclassTest, ASecondObjectOfOneClassIsRefused)
{
    CFirstSubclass subclass;
    CFirstSubclass rival;
    ASSERT_TRUE(subclass.SubclassWindow(m_edit));
    EXPECT_FALSE(rival.SubclassWindow(m_edit));
    EXPECT_EQ(rival.m_hWnd, nullptr);
    EXPECT_EQ(SendMessageW(m_edit, askMessage, 0, 0), 1);
}

TEST_F(SubclassTest, NoWindowCanNotBeSubclassed)
{
    CFirstSubclass subclass;
    EXPECT_FALSE(subclass.SubclassWindow(nullptr));
}

class COwnWindow : public CWindowImpl<COwnWindow>
{
public:
    DECLARE_WND_CLASS(L"SubclassTestOwnWindow")
    BEGIN_MSG_MAP(COwnWindow)
    MESSAGE_HANDLER(WM_CREATE, OnCreate)
    MESSAGE_HANDLER(WM_APP, OnDestroyYourself)
    END_MSG_MAP()

    void OnFinalMessage(HWND) override
    {
        ++*finalMessages;
        if (deletesItself) {
            delete this;
        }
    }
    int* finalMessages = nullptr;
    bool deletesItself = false;
    bool refusesCreation = false;
    void* parameter = nullptr;

private:
    LRESULT OnCreate(UINT, WPARAM, LPARAM lParam, BOOL&)
    {
        parameter = reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams;
        return refusesCreation ? -1 : 0;
    }
    LRESULT OnDestroyYourself(UINT, WPARAM, LPARAM, BOOL&)
    {
        DestroyWindow();
        return *finalMessages; // the object must still be there
    }
};

TEST_F(SubclassTest, ACreatedWindowIsBoundBeforeItsCreateMessage)
{
    int finalMessages = 0;
    COwnWindow window;
    window.finalMessages = &finalMessages;
    ASSERT_NE(window.Create(nullptr, nullptr, L"title", WS_POPUP, 0, 0, &finalMessages), nullptr);
    EXPECT_EQ(window.parameter, &finalMessages);
    EXPECT_EQ(window.GetText(), CString(L"title"));
}

TEST_F(SubclassTest, AWindowThatRefusesItsCreationLeavesTheObjectUnbound)
{
    int finalMessages = 0;
    COwnWindow window;
    window.finalMessages = &finalMessages;
    window.refusesCreation = true;
    EXPECT_EQ(window.Create(nullptr, nullptr, nullptr, WS_POPUP), nullptr);
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(finalMessages, 1);
}

TEST_F(SubclassTest, TheFinalMessageComesAfterTheHandlerThatDestroyedTheWindow)
{
    int finalMessages = 0;
    auto window = std::make_unique<COwnWindow>();
    window->finalMessages = &finalMessages;
    window->deletesItself = true;
    const HWND handle = window->Create(nullptr, nullptr, nullptr, WS_POPUP);
    ASSERT_NE(handle, nullptr);
    (void)window.release(); // deletes itself from here on
    EXPECT_EQ(SendMessageW(handle, WM_APP, 0, 0), 0);
    EXPECT_EQ(finalMessages, 1);
    EXPECT_FALSE(IsWindow(handle));
}

TEST_F(SubclassTest, AnObjectThatGoesFirstTakesItsCreatedWindowAlong)
{
    int finalMessages = 0;
    std::optional<COwnWindow> window(std::in_place);
    window->finalMessages = &finalMessages;
    const HWND handle = window->Create(nullptr, nullptr, nullptr, WS_POPUP);
    ASSERT_TRUE(IsWindow(handle));
    window.reset();
    EXPECT_FALSE(IsWindow(handle));
}

} // namespace

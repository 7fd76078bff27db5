// What screen readers get: the cells as children of the grid, the editor's name, and the events in between.
#include "base/com_ptr.h"
#include "tests/controls/grid_fixture.h"

#include <oleacc.h>

#include <utility>
#include <vector>

namespace {

struct Event
{
    DWORD kind;
    LONG child;

    bool operator==(const Event&) const = default;
};

std::vector<Event> g_events;
HWND g_watched = nullptr;

void CALLBACK NoteEvent(HWINEVENTHOOK, DWORD kind, HWND window, LONG object, LONG child, DWORD, DWORD)
{
    if (window == g_watched && object == OBJID_CLIENT && child != CHILDID_SELF) {
        g_events.push_back({kind, child});
    }
}

VARIANT Child(long number)
{
    VARIANT child = {};
    child.vt = VT_I4;
    child.lVal = number;
    return child;
}

CString Released(BSTR text)
{
    const CString copy(text);
    SysFreeString(text);
    return copy;
}

class GridAccessibility : public GridTest
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
        GridTest::SetUp();
        MakeGrid();
        object = ObjectOf(list);
        ASSERT_NE(object, nullptr);
    }
    void TearDown() override
    {
        object.Reset();
        if (m_hook) {
            UnhookWinEvent(m_hook);
        }
        GridTest::TearDown();
        CoUninitialize();
    }
    static ComPtr<IAccessible> ObjectOf(HWND control)
    {
        void* found = nullptr;
        EXPECT_EQ(AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                             &found),
                  S_OK);
        ComPtr<IAccessible> owner;
        owner.Attach(static_cast<IAccessible*>(found));
        return owner;
    }
    CString Name(long child) const
    {
        BSTR name = nullptr;
        EXPECT_EQ(object->get_accName(Child(child), &name), S_OK) << child;
        return Released(name);
    }
    CString Value(long child) const
    {
        BSTR value = nullptr;
        EXPECT_EQ(object->get_accValue(Child(child), &value), S_OK) << child;
        return Released(value);
    }
    long Role(long child) const
    {
        VARIANT role = {};
        EXPECT_EQ(object->get_accRole(Child(child), &role), S_OK) << child;
        return role.lVal;
    }
    long State(long child) const
    {
        VARIANT state = {};
        EXPECT_EQ(object->get_accState(Child(child), &state), S_OK) << child;
        return state.lVal;
    }
    void Watch()
    {
        g_watched = list;
        g_events.clear();
        m_hook = SetWinEventHook(EVENT_OBJECT_FOCUS, EVENT_OBJECT_VALUECHANGE, nullptr, NoteEvent,
                                 GetCurrentProcessId(), GetCurrentThreadId(), WINEVENT_OUTOFCONTEXT);
        ASSERT_NE(m_hook, nullptr);
    }
    static std::vector<Event> Events()
    {
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
        }
        return std::exchange(g_events, {});
    }

    ComPtr<IAccessible> object;

private:
    HWINEVENTHOOK m_hook = nullptr;
};

void PrintTo(const Event& event, std::ostream* stream)
{
    *stream << "event " << event.kind << " of child " << event.child;
}

} // namespace

TEST_F(GridAccessibility, TheCellsAreTheChildrenOfATable)
{
    EXPECT_EQ(Role(CHILDID_SELF), ROLE_SYSTEM_TABLE);
    long count = 0;
    EXPECT_EQ(object->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 6);
    for (long child = 1; child <= 6; ++child) {
        EXPECT_EQ(Role(child), ROLE_SYSTEM_CELL);
        IDispatch* dispatch = nullptr;
        EXPECT_EQ(object->get_accChild(Child(child), &dispatch), S_FALSE) << "a child without an object";
        EXPECT_EQ(dispatch, nullptr);
    }
}

TEST_F(GridAccessibility, ACellIsNamedByItsColumnAndRowAndItsTextIsItsValue)
{
    EXPECT_EQ(Name(1), CString(L"Name 1"));
    EXPECT_EQ(Value(1), CString(L"A0"));
    EXPECT_EQ(Name(6), CString(L"Command 3"));
    EXPECT_EQ(Value(6), CString(L"B2"));
    grid.SetCellText(2, 1, CString(L'x', 2000));
    EXPECT_EQ(Value(6), CString(L'x', 2000));
}

TEST_F(GridAccessibility, AChildThatIsNotThereIsRefused)
{
    for (const long child : {-1L, 7L}) {
        BSTR text = nullptr;
        VARIANT number = {};
        EXPECT_EQ(object->get_accName(Child(child), &text), E_INVALIDARG) << child;
        EXPECT_EQ(object->get_accValue(Child(child), &text), E_INVALIDARG) << child;
        EXPECT_EQ(object->get_accRole(Child(child), &number), E_INVALIDARG) << child;
        EXPECT_EQ(object->get_accState(Child(child), &number), E_INVALIDARG) << child;
    }
}

TEST_F(GridAccessibility, TheCurrentCellHasTheFocusAndIsSelected)
{
    MakeCurrent(1, 1);
    constexpr long current = STATE_SYSTEM_FOCUSED | STATE_SYSTEM_SELECTED;
    EXPECT_EQ(State(4) & current, current);
    EXPECT_EQ(State(3) & current, 0);
    VARIANT child = {};
    EXPECT_EQ(object->get_accFocus(&child), S_OK);
    EXPECT_EQ(child.lVal, 4);
    EXPECT_EQ(object->get_accSelection(&child), S_OK);
    EXPECT_EQ(child.lVal, 4);
    SetFocus(after);
    EXPECT_EQ(State(4) & current, STATE_SYSTEM_SELECTED);
    MakeCurrent(0, 0);
    Key(VK_LEFT);
    ASSERT_EQ(Current(), NO_GRID_CELL);
    EXPECT_EQ(object->get_accSelection(&child), S_OK);
    EXPECT_EQ(child.vt, VT_EMPTY);
}

TEST_F(GridAccessibility, ACellIsFoundByItsPlaceOnTheScreen)
{
    POINT place = MiddleOf(1, 1);
    ClientToScreen(list, &place);
    VARIANT child = {};
    EXPECT_EQ(object->accHitTest(place.x, place.y, &child), S_OK);
    EXPECT_EQ(child.lVal, 4);
    for (const int column : {0, 1}) {
        long left = 0;
        long top = 0;
        long width = 0;
        long height = 0;
        EXPECT_EQ(object->accLocation(&left, &top, &width, &height, Child(3 + column)), S_OK);
        RECT expected = CellPlace(1, column);
        MapWindowPoints(list, nullptr, reinterpret_cast<POINT*>(&expected), 2);
        EXPECT_EQ((ScreenRectangle{left, top, left + width, top + height}), ScreenRectangleOf(expected));
    }
}

TEST_F(GridAccessibility, ASelectedCellBecomesCurrentAndStoresAnOpenEditor)
{
    Edit(0, 0);
    Type(L"typed");
    EXPECT_EQ(object->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, Child(4)), S_OK);
    EXPECT_EQ(Current(), (GridCell{1, 1}));
    EXPECT_EQ(GetFocus(), list);
    EXPECT_EQ(Cell(0, 0), CString(L"typed"));
    EXPECT_EQ(object->accSelect(SELFLAG_ADDSELECTION, Child(1)), E_INVALIDARG);
    EXPECT_EQ(Current(), (GridCell{1, 1}));
}

TEST_F(GridAccessibility, TheEditorIsNamedAsItsCell)
{
    Edit(2, 1);
    Type(L"typed");
    const ComPtr<IAccessible> editor = ObjectOf(grid.m_edit);
    ASSERT_NE(editor, nullptr);
    BSTR text = nullptr;
    EXPECT_EQ(editor->get_accName(Child(CHILDID_SELF), &text), S_OK);
    EXPECT_EQ(Released(text), CString(L"Command 3"));
    EXPECT_EQ(editor->get_accValue(Child(CHILDID_SELF), &text), S_OK);
    EXPECT_EQ(Released(text), CString(L"typed"));
    VARIANT role = {};
    EXPECT_EQ(editor->get_accRole(Child(CHILDID_SELF), &role), S_OK);
    EXPECT_EQ(role.lVal, ROLE_SYSTEM_TEXT);
}

TEST_F(GridAccessibility, AnObjectThatOutlivesItsWindowSaysSo)
{
    Edit(0, 0);
    const ComPtr<IAccessible> editor = ObjectOf(grid.m_edit);
    DestroyWindow(list);
    BSTR text = nullptr;
    VARIANT number = {};
    long count = 0;
    EXPECT_TRUE(FAILED(object->get_accChildCount(&count)));
    EXPECT_TRUE(FAILED(object->get_accName(Child(1), &text)));
    EXPECT_TRUE(FAILED(object->get_accFocus(&number)));
    EXPECT_TRUE(FAILED(object->get_accSelection(&number)));
    EXPECT_TRUE(FAILED(object->accHitTest(1, 1, &number)));
    EXPECT_TRUE(FAILED(editor->get_accName(Child(CHILDID_SELF), &text)));
    EXPECT_TRUE(FAILED(editor->get_accValue(Child(CHILDID_SELF), &text)));
}

// What a screen reader had asked for once stayed in memory, with the system's object below it.
TEST_F(GridAccessibility, AnObjectWhoseWindowIsGoneIsItsHoldersAlone)
{
    Edit(0, 0);
    const ComPtr<IAccessible> editor = ObjectOf(grid.m_edit);
    DestroyWindow(list);
    for (IAccessible* held : {object.Get(), editor.Get()}) {
        held->AddRef();
        EXPECT_EQ(held->Release(), 1u);
    }
}

// ---- events

TEST_F(GridAccessibility, EachMoveReportsTheNewCell)
{
    MakeCurrent(0, 0);
    Watch();
    Key(VK_RIGHT);
    EXPECT_EQ(Events(), (std::vector<Event>{{EVENT_OBJECT_FOCUS, 2}}));
    Key(VK_DOWN);
    EXPECT_EQ(Events(), (std::vector<Event>{{EVENT_OBJECT_FOCUS, 4}}));
    Click(MiddleOf(2, 0));
    EXPECT_EQ(Events(), (std::vector<Event>{{EVENT_OBJECT_FOCUS, 5}}));
}

TEST_F(GridAccessibility, AFocusThatComesBackReportsTheCurrentCell)
{
    MakeCurrent(1, 0);
    SetFocus(after);
    Watch();
    SetFocus(list);
    EXPECT_EQ(Events(), (std::vector<Event>{{EVENT_OBJECT_FOCUS, 3}}));
}

TEST_F(GridAccessibility, AStoredTextIsReportedAndACanceledOneIsNot)
{
    Edit(1, 0);
    Watch();
    Type(L"typed");
    Key(VK_ESCAPE);
    EXPECT_EQ(Events(), (std::vector<Event>{{EVENT_OBJECT_FOCUS, 3}}));
    Key(VK_F2);
    Type(L"typed");
    SetFocus(after);
    grid.CommitOpenEditor();
    EXPECT_EQ(Events(), (std::vector<Event>{{EVENT_OBJECT_VALUECHANGE, 3}}));
}

TEST_F(GridAccessibility, WithoutTheFocusNoCellIsReported)
{
    MakeCurrent(1, 0);
    SetFocus(after);
    Watch();
    grid.GoToCell({2, 1});
    EXPECT_TRUE(Events().empty());
}

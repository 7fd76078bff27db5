#include "tests/resources/resource_library_fixture.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

INT_PTR CALLBACK IgnoreMessages(HWND, UINT, WPARAM, LPARAM)
{
    return FALSE;
}

struct Control
{
    HWND window;
    int id;
    CString className;
    CString text;
    RECT place; // in the dialog's client pixels
    LONG style;
    bool isShown;
};

bool Overlap(const RECT& left, const RECT& right)
{
    RECT both = {};
    return IntersectRect(&both, &left, &right) != FALSE;
}

wchar_t Mnemonic(const CString& text)
{
    for (int at = text.Find(L'&'); at >= 0; at = text.Find(L'&', at + 2)) {
        if (text[at + 1] != L'&') {
            return text[at + 1] ? CString(text[at + 1]).MakeUpper()[0] : wchar_t(0);
        }
    }
    return 0;
}

// A dialog of the library as a real, hidden window.
class Dialog
{
public:
    Dialog(HMODULE library, int id)
        : m_window(CreateDialogParamW(library, MAKEINTRESOURCEW(id), nullptr, IgnoreMessages, 0))
    {
    }
    ~Dialog() { DestroyWindow(m_window); }
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    explicit operator bool() const { return m_window != nullptr; }
    HWND Get() const { return m_window; }

    std::vector<Control> Controls() const
    {
        std::vector<Control> controls;
        for (HWND child = GetWindow(m_window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
            wchar_t name[64] = {};
            GetClassNameW(child, name, 64);
            Control control = {
                child, GetDlgCtrlID(child), name, ReadWindowText(child), {}, GetWindowLongW(child, GWL_STYLE),
                false};
            GetWindowRect(child, &control.place);
            MapWindowPoints(nullptr, m_window, reinterpret_cast<POINT*>(&control.place), 2);
            control.isShown = (control.style & WS_VISIBLE) != 0;
            controls.push_back(control);
        }
        return controls;
    }

private:
    HWND m_window;
};

// The controls that a layout of the begin page shows, and which anchor gives which control its place.
struct Layout
{
    const char* name;
    std::set<int> hidden;
    std::map<int, int> anchors;
};

const Layout LAYOUTS[] = {
    {"plain",
     {IDC_MODE_HEADING, IDC_MODE_CREATE, IDC_MODE_CREATE_FROM, IDC_MODE_MODIFY, IDC_LOCATION_HEADING_EXISTING,
      IDC_DEPLOYMENTS_HEADING, IDC_DEPLOYMENTS},
     {{IDC_LOCATION, IDC_ANCHOR_LOCATION_PLAIN},
      {IDC_LOCATION_BROWSE, IDC_ANCHOR_BROWSE_PLAIN},
      {IDC_NAME_HEADING, IDC_ANCHOR_NAME_HEADING_PLAIN},
      {IDC_NAME, IDC_ANCHOR_NAME_PLAIN}}},
    {"create",
     {IDC_LOCATION_HEADING_NEW, IDC_DEPLOYMENTS_HEADING, IDC_DEPLOYMENTS},
     {{IDC_NAME_HEADING, IDC_ANCHOR_NAME_HEADING_CREATE}, {IDC_NAME, IDC_ANCHOR_NAME_CREATE}}},
    {"create from",
     {IDC_LOCATION_HEADING_NEW},
     {{IDC_NAME_HEADING, IDC_ANCHOR_NAME_HEADING_CREATE_FROM}, {IDC_NAME, IDC_ANCHOR_NAME_CREATE_FROM}}},
    {"modify", {IDC_LOCATION_HEADING_NEW, IDC_NAME_HEADING, IDC_NAME}, {}},
};

std::vector<Control> LaidOut(const Dialog& dialog, const Layout& layout)
{
    std::vector<Control> controls = dialog.Controls();
    std::map<int, RECT> places;
    for (const Control& control : controls) {
        places[control.id] = control.place;
    }
    for (Control& control : controls) {
        const auto anchor = layout.anchors.find(control.id);
        if (anchor != layout.anchors.end()) {
            control.place = places[anchor->second];
        }
        control.isShown = control.isShown && layout.hidden.count(control.id) == 0;
    }
    return controls;
}

// What the page shows after its init: the frame hides its preparation line, and links and labels appear by themselves.
std::vector<Control> Shown(std::vector<Control> controls)
{
    std::erase_if(controls, [](const Control& control) {
        return !control.isShown || control.id == IDC_HIDDEN_AT_START || control.id == IDC_PANEL;
    });
    return controls;
}

std::string Place(const Control& control)
{
    return std::to_string(control.id) + " \"" + Utf8(control.text) + "\" at " +
           std::to_string(control.place.left) + "," + std::to_string(control.place.top);
}

void ExpectNoOverlap(const std::vector<Control>& controls, const char* name)
{
    for (size_t left = 0; left < controls.size(); ++left) {
        for (size_t right = left + 1; right < controls.size(); ++right) {
            EXPECT_FALSE(Overlap(controls[left].place, controls[right].place))
                << name << ": " << Place(controls[left]) << " and " << Place(controls[right]);
        }
    }
}

void ExpectTabOrderFollowsTheEye(const std::vector<Control>& controls, const char* name)
{
    const Control* before = nullptr;
    for (const Control& control : controls) {
        if (!(control.style & WS_TABSTOP) || control.id == IDC_SIDE_PANE) {
            continue;
        }
        if (before) {
            const bool below = control.place.top >= before->place.bottom - 2;
            const bool rightOf =
                control.place.left >= before->place.right - 2 && control.place.bottom > before->place.top;
            EXPECT_TRUE(below || rightOf) << name << ": " << Place(control) << " after " << Place(*before);
        }
        before = &control;
    }
}

void ExpectNoMnemonicTwice(const std::vector<Control>& controls, const char* name)
{
    std::map<wchar_t, const Control*> taken;
    for (const Control& control : controls) {
        const bool isStatic = control.className.CompareNoCase(L"Static") == 0;
        const wchar_t letter =
            isStatic && (control.style & SS_NOPREFIX) ? wchar_t(0) : Mnemonic(control.text);
        if (letter) {
            EXPECT_EQ(taken.count(letter), 0u)
                << name << ": " << Place(control) << " and " << Place(*taken[letter]);
            taken[letter] = &control;
        }
    }
}

// The height that a text needs in a width, in the dialog's font.
int HeightOf(HWND dialog, const CString& text, int width, UINT format)
{
    const HDC context = GetDC(dialog);
    const HGDIOBJ former =
        SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0)));
    RECT place = {0, 0, width, 0};
    DrawTextW(context, text, text.GetLength(), &place, DT_CALCRECT | format);
    SelectObject(context, former);
    ReleaseDC(dialog, context);
    return place.right > width ? INT_MAX : static_cast<int>(place.bottom);
}

using ResourceDialogs = ResourceLibraryTest;

} // namespace

TEST_P(ResourceDialogs, EveryPageHasTheControlsOfTheFrame)
{
    for (const int id : PAGE_DIALOGS) {
        const Dialog dialog(m_library, id);
        ASSERT_TRUE(dialog) << id;
        for (const int control : {IDC_NEXT, IDC_CANCEL, IDC_BACK, IDC_RESET, IDC_LINK1, IDC_LINK2, IDC_BANNER,
                                  IDC_SIDE_PANE, IDC_FOOTER, IDC_STEP_LABEL, IDC_SEPARATOR, IDC_PANEL}) {
            EXPECT_NE(GetDlgItem(dialog.Get(), control), nullptr) << id << " lacks " << control;
        }
    }
}

TEST_P(ResourceDialogs, TheOtherDialogsHaveTheirControls)
{
    const std::pair<int, std::vector<int>> wanted[] = {
        {IDD_CANCEL, {IDC_CANCEL_QUESTION, IDYES, IDNO}},
        {IDD_DEPLOYMENT_COMPLETE, {IDC_RESULT_LINE1, IDC_RESULT_LINE2, IDC_RESULT_LABEL}},
        {IDD_DEPLOYMENT_FAILED, {IDC_FAILURE_REASON}},
        {IDD_BEGIN_DEPLOYMENT,
         {IDC_MODE_HEADING,
          IDC_MODE_CREATE,
          IDC_MODE_CREATE_FROM,
          IDC_MODE_MODIFY,
          IDC_LOCATION_HEADING_EXISTING,
          IDC_LOCATION_HEADING_NEW,
          IDC_LOCATION,
          IDC_LOCATION_BROWSE,
          IDC_NAME_HEADING,
          IDC_NAME,
          IDC_DEPLOYMENTS_HEADING,
          IDC_DEPLOYMENTS,
          IDC_PLATFORM_HEADING,
          IDC_PLATFORM_X86,
          IDC_PLATFORM_X64,
          IDC_ANCHOR_LOCATION_PLAIN,
          IDC_ANCHOR_BROWSE_PLAIN,
          IDC_ANCHOR_NAME_HEADING_PLAIN,
          IDC_ANCHOR_NAME_PLAIN,
          IDC_ANCHOR_NAME_HEADING_CREATE,
          IDC_ANCHOR_NAME_CREATE,
          IDC_ANCHOR_NAME_HEADING_CREATE_FROM,
          IDC_ANCHOR_NAME_CREATE_FROM}}};
    for (const auto& [id, controls] : wanted) {
        const Dialog dialog(m_library, id);
        for (const int control : controls) {
            EXPECT_NE(GetDlgItem(dialog.Get(), control), nullptr) << id << " lacks " << control;
        }
    }
}

TEST_P(ResourceDialogs, NextIsTheOneDefaultButton)
{
    for (const int id : PAGE_DIALOGS) {
        const Dialog dialog(m_library, id);
        std::vector<int> defaults;
        for (const Control& control : dialog.Controls()) {
            if (control.className.CompareNoCase(L"Button") == 0 &&
                (control.style & BS_TYPEMASK) == BS_DEFPUSHBUTTON) {
                defaults.push_back(control.id);
            }
        }
        EXPECT_EQ(defaults, std::vector<int>{IDC_NEXT}) << id;
    }
}

TEST_P(ResourceDialogs, NoControlLeavesItsDialog)
{
    for (const int id : {IDD_CANCEL, IDD_BEGIN_DEPLOYMENT, IDD_PRODUCT_CONTACT, IDD_DEPLOYMENT_COMPLETE,
                         IDD_DEPLOYMENT_FAILED}) {
        const Dialog dialog(m_library, id);
        RECT client = {};
        GetClientRect(dialog.Get(), &client);
        for (const Control& control : dialog.Controls()) {
            RECT both = {};
            UnionRect(&both, &client, &control.place);
            EXPECT_TRUE(EqualRect(&both, &client)) << id << ": " << Place(control);
        }
    }
}

TEST_P(ResourceDialogs, EachLayoutOfTheBeginPageKeepsItsControlsApartAndInOrder)
{
    const Dialog dialog(m_library, IDD_BEGIN_DEPLOYMENT);
    for (const Layout& layout : LAYOUTS) {
        const std::vector<Control> controls = Shown(LaidOut(dialog, layout));
        ExpectNoOverlap(controls, layout.name);
        ExpectTabOrderFollowsTheEye(controls, layout.name);
        ExpectNoMnemonicTwice(controls, layout.name);
    }
}

TEST_P(ResourceDialogs, TheOtherPagesKeepTheirControlsApartAndInOrder)
{
    for (const int id : {IDD_CANCEL, IDD_PRODUCT_CONTACT, IDD_DEPLOYMENT_COMPLETE, IDD_DEPLOYMENT_FAILED}) {
        const Dialog dialog(m_library, id);
        const std::string name = std::to_string(id);
        const std::vector<Control> controls = Shown(dialog.Controls());
        ExpectNoOverlap(controls, name.c_str());
        ExpectTabOrderFollowsTheEye(controls, name.c_str());
        ExpectNoMnemonicTwice(controls, name.c_str());
    }
}

TEST_P(ResourceDialogs, ATextAThirdLongerStillFits)
{
    for (const int id : {IDD_CANCEL, IDD_BEGIN_DEPLOYMENT, IDD_PRODUCT_CONTACT, IDD_DEPLOYMENT_COMPLETE,
                         IDD_DEPLOYMENT_FAILED}) {
        const Dialog dialog(m_library, id);
        for (const Control& control : dialog.Controls()) {
            const bool isButton = control.className.CompareNoCase(L"Button") == 0;
            const bool isText = control.className.CompareNoCase(L"Static") == 0 && control.id != IDC_BANNER;
            if (control.text.IsEmpty() || (!isButton && !isText)) {
                continue;
            }
            const CString longer = control.text + control.text.Left((control.text.GetLength() + 2) / 3);
            const int width = control.place.right - control.place.left - (isButton ? 16 : 0);
            const int room = control.place.bottom - control.place.top;
            EXPECT_LE(HeightOf(dialog.Get(), longer, width, isButton ? DT_SINGLELINE : DT_WORDBREAK), room)
                << id << ": " << Place(control);
        }
    }
}

TEST_P(ResourceDialogs, TheLongestQuestionFitsTheCancelDialog)
{
    const Dialog dialog(m_library, IDD_CANCEL);
    RECT place = {};
    GetClientRect(GetDlgItem(dialog.Get(), IDC_CANCEL_QUESTION), &place);
    for (const UINT id : {IDS_CANCEL_OTHER, IDS_CANCEL_INSTALL, IDS_CANCEL_MAINTAIN, IDS_CANCEL_DEPLOYMENT}) {
        const CString text = Text(id);
        const CString longer = text + L" " + text.Left(text.GetLength() / 3);
        EXPECT_LE(HeightOf(dialog.Get(), longer, place.right, DT_WORDBREAK), place.bottom) << id;
    }
}

INSTANTIATE_TEST_SUITE_P(OfEachLanguage, ResourceDialogs, testing::ValuesIn(Languages()));

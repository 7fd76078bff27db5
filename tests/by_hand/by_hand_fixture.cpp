#include "tests/by_hand/by_hand_fixture.h"

#include "automation/message_box.h"
#include "automation/window_finder.h"
#include "base/fill_text.h"
#include "base/handle.h"
#include "include/resource_ids.h"
#include "setup/resource.h"
#include "tests/support/resource_strings.h"

#include <algorithm>

namespace {

constexpr DWORD STEP_MILLISECONDS = 60000; // a whole run is one step here, and a computer may be busy
constexpr DWORD LOOK_MILLISECONDS = 10;

struct WindowMark
{
    Shown shown;
    const wchar_t* name;
    int control; // which no window above in the table has
};

// The contact page has no control of its own: it comes behind all other pages.
const WindowMark marks[] = {
    {Shown::CancelQuestion, L"the question whether to leave", IDC_CANCEL_QUESTION},
    {Shown::FirstPage, L"the first page", IDC_NAME_HEADING},
    {Shown::SettingsPage, L"the settings page", IDC_NETWORK_LOG},
    {Shown::WorkstationsPage, L"the workstations page", IDC_SHORTCUTS},
    {Shown::PathsPage, L"the paths page", IDC_PATH_TREE},
    {Shown::FilesPage, L"the page of additional files", IDC_FILES_TREE},
    {Shown::NoticesPage, L"the notices page", IDC_UPDATES},
    {Shown::ServicePackPage, L"the service pack page", IDC_PATCH_LISTED},
    {Shown::ResourcesPage, L"the online resources page", IDC_PARTS_BAY},
    {Shown::CompletePage, L"the page of a finished build", IDC_RESULT_LINE1},
    {Shown::FailedPage, L"the page of a failed build", IDC_FAILURE_REASON},
    {Shown::ContactPage, L"the contact page", IDC_SIDE_PANE},
    {Shown::Review, L"the review", IDC_REVIEW_COPY},
    {Shown::ConfigureDialog, L"the configure dialog", IDC_CONFIGURE_TABS},
    {Shown::BuildWindow, L"the build window", IDC_BUILD_BAR},
};

CString NameOf(Shown shown)
{
    for (const WindowMark& mark : marks) {
        if (mark.shown == shown) {
            return mark.name;
        }
    }
    return shown == Shown::Box ? L"a message box" : L"the folder picker";
}

bool HasTree(HWND window)
{
    const std::vector<HWND> children = ChildWindows(window);
    return std::any_of(children.begin(), children.end(),
                       [](HWND child) { return WindowClass(child) == CString(L"SysTreeView32"); });
}

// Answered once the window's thread reads its messages again: a window that comes up is moved into its place before.
bool CAnswers(HWND window)
{
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, STEP_MILLISECONDS, &result) != 0;
}

bool HasKeyboard(HWND window)
{
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    return GetForegroundWindow() == window && IsWindowEnabled(window) &&
           GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread) &&
           (thread.hwndFocus == window || IsChild(window, thread.hwndFocus));
}

void CopyFolder(const CString& from, const CString& to)
{
    CreateDirectoryW(to, nullptr);
    WIN32_FIND_DATAW found = {};
    const CFindOwner search(FindFirstFileW(from + L"\\*", &found));
    do {
        const CString name = found.cFileName;
        if (name == CString(L".") || name == CString(L"..")) {
            continue;
        }
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            CopyFolder(from + L"\\" + name, to + L"\\" + name);
        } else {
            ASSERT_TRUE(CopyFileW(from + L"\\" + name, to + L"\\" + name, TRUE)) << Utf8(name);
        }
    } while (FindNextFileW(search.get(), &found));
}

// `text` without what stands between two marks, which `word` stands for.
CString ReplaceBetween(const CString& text, const CString& first, const CString& behind, const CString& word)
{
    const int start = text.Find(first);
    const int end = start < 0 ? -1 : text.Find(behind, start + first.GetLength());
    return end < 0 ? text : text.Left(start + first.GetLength()) + word + text.Mid(end);
}

CString JoinLines(const std::vector<CString>& lines)
{
    CString text;
    for (const CString& line : lines) {
        text += line + L"\n";
    }
    return text;
}

} // namespace

Shown WhatIs(HWND window)
{
    for (const WindowMark& mark : marks) {
        if (GetDlgItem(window, mark.control)) {
            return mark.shown;
        }
    }
    if (ReadMessageBox(window)) {
        return Shown::Box;
    }
    return HasTree(window) ? Shown::FolderPicker : Shown::Other;
}

CString ProgramText(unsigned int id, std::initializer_list<CString> arguments)
{
    const CModuleOwner program(LoadLibraryExW(BuiltProgram(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    const wchar_t* text = nullptr;
    const int length = LoadStringW(program.get(), id, reinterpret_cast<wchar_t*>(&text), 0);
    EXPECT_GT(length, 0) << "the program has no string " << id;
    return FillText(CString(text, length), arguments);
}

ByHandTest::ByHandTest() : m_location(m_folder.AddFolder(L"Deployments"))
{
}

CString ByHandTest::SampleMedia()
{
    const CString program = BuiltProgram(); // ...\bin\Setup.exe
    const CString bin = program.Left(program.ReverseFind(L'\\'));
    return bin.Left(bin.ReverseFind(L'\\')) + L"\\media";
}

CString ByHandTest::CopyOfMedia() const
{
    const CString copy = m_folder / L"media";
    CopyFolder(SampleMedia(), copy);
    return copy;
}

void ByHandTest::Start(const CString& media, const CString& furtherWords)
{
    m_boxes.clear();
    m_media = media;
    m_run.reset(); // the log of a run before is that run's
    DeleteFileW(InFolder(L"setup.log"));
    m_run = std::make_unique<CWizardRun>(L"--media \"" + media + L"\" " + furtherWords, m_folder.GetPath());
}

void ByHandTest::StartWithoutMedia()
{
    m_boxes.clear();
    m_run = std::make_unique<CWizardRun>(CString(), m_folder.GetPath());
}

void ByHandTest::Fail(const CString& step, const CString& why) const
{
    const CString text = L"While waiting for " + step + L": " + why + L"\nWindows:" +
                         m_run->DescribeWindows() + L"\nLog:\n" + m_run->ReadLog();
    throw StepFailed(Utf8(text));
}

void ByHandTest::WaitUntil(const CString& what, const std::function<bool()>& condition)
{
    const ULONGLONG deadline = GetTickCount64() + STEP_MILLISECONDS;
    while (!condition()) {
        if (m_run->HasEnded(LOOK_MILLISECONDS)) {
            Fail(what, L"the program has ended with " + NumberText(m_run->GetExitCode()));
        }
        if (GetTickCount64() > deadline) {
            Fail(what, L"it didn't come in time");
        }
    }
}

HWND ByHandTest::FrontWindow(const CString& step) const
{
    const std::vector<HWND> windows = m_run->GetWindows();
    if (windows.empty()) {
        return nullptr;
    }
    const Shown shown = WhatIs(windows.front());
    if ((shown == Shown::Box || shown == Shown::CancelQuestion) && step != NameOf(shown)) {
        Fail(step, NameOf(shown) + L" came, which nobody expects");
    }
    return windows.front();
}

HWND ByHandTest::WaitFor(Shown shown)
{
    const CString name = NameOf(shown);
    HWND window = nullptr;
    WaitUntil(name, [&] {
        window = FrontWindow(name);
        return window && WhatIs(window) == shown && HasKeyboard(window) && CAnswers(window);
    });
    return window;
}

void ByHandTest::CloseByBox(HWND window)
{
    WaitUntil(L"the close box", [&] { return ClickCloseBox(window); });
}

HWND ByHandTest::GetFocused(HWND window) const
{
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    return GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread) ? thread.hwndFocus : nullptr;
}

void ByHandTest::WaitForFocus(HWND window, int control)
{
    WaitUntil(L"the focus on control " + NumberText(control),
              [&] { return GetFocused(window) == GetDlgItem(window, control); });
}

void ByHandTest::Type(HWND window, int control, const CString& text)
{
    WaitForFocus(window, control);
    TypeText(text);
    WaitUntil(L"\"" + text + L"\" in control " + NumberText(control),
              [&] { return WindowText(GetDlgItem(window, control)) == text; });
}

void ByHandTest::EnterFirstPage(const wchar_t* name)
{
    HWND page = WaitFor(Shown::FirstPage);
    Type(page, IDC_LOCATION, m_location);
    StrikeKey(VK_TAB);
    WaitForFocus(page, IDC_LOCATION_BROWSE);
    StrikeKey(VK_TAB);
    Type(page, IDC_NAME, name);
    StrikeKey(VK_RETURN);
}

void ByHandTest::ConfirmLocalLocation()
{
    AnswerBox('Y');
    EXPECT_EQ(m_boxes.back(), LocalLocationQuestion());
}

void ByHandTest::WalkFromFirstPageToBuild(const wchar_t* name)
{
    EnterFirstPage(name);
    ConfirmLocalLocation();
    WalkToBuild();
}

CString ByHandTest::LocalLocationQuestion()
{
    return ResourceText(IDS_LOCATION_NOT_NETWORK);
}

CString ByHandTest::CancelQuestion()
{
    const CString question = ResourceText(IDS_CANCEL_DEPLOYMENT);
    return FillText(ResourceText(IDS_CANCEL_TEMPLATE), {question, question, question});
}

void ByHandTest::BuildByAnswers(const CString& location, const wchar_t* name)
{
    RunByAnswers(L"--media \"" + SampleMedia() + L"\" --out \"" + location + L"\" --set begin.name=" + name +
                 L" --set begin.on_question.local_location=yes");
}

void ByHandTest::RunByAnswers(const CString& words)
{
    m_run = std::make_unique<CWizardRun>(words, m_folder.GetPath());
    ASSERT_EQ(WaitForEnd(false), 0u) << Utf8(m_run->ReadLog());
}

const std::vector<Shown>& ByHandTest::PagesBehindFirst()
{
    static const std::vector<Shown> pages = {Shown::SettingsPage,
                                             // of the first product
                                             Shown::WorkstationsPage, Shown::PathsPage, Shown::FilesPage,
                                             Shown::ResourcesPage, Shown::NoticesPage, Shown::ServicePackPage,
                                             // of the second one
                                             Shown::WorkstationsPage, Shown::PathsPage, Shown::FilesPage,
                                             Shown::ResourcesPage, Shown::NoticesPage, Shown::ServicePackPage,
                                             Shown::ContactPage};
    return pages;
}

HWND ByHandTest::WalkToReview()
{
    for (const Shown page : PagesBehindFirst()) {
        WaitFor(page);
        StrikeKey(VK_RETURN);
    }
    return WaitFor(Shown::Review);
}

void ByHandTest::WalkToBuild()
{
    WalkToReview();
    StrikeKey(VK_RETURN);
}

CString ByHandTest::AnswerBox(WORD key, std::initializer_list<WORD> modifiers)
{
    HWND window = WaitFor(Shown::Box);
    const CString text = ReadMessageBox(window)->text;
    m_boxes.push_back(text);
    StrikeKey(key, modifiers);
    WaitUntilGone(window);
    return text;
}

void ByHandTest::AnswerCancelQuestion(WORD key)
{
    HWND window = WaitFor(Shown::CancelQuestion);
    m_boxes.push_back(WindowText(GetDlgItem(window, IDC_CANCEL_QUESTION)));
    StrikeKey(key);
    WaitUntilGone(window);
}

// With the last window the program may end.
void ByHandTest::WaitUntilGone(HWND window)
{
    const ULONGLONG deadline = GetTickCount64() + STEP_MILLISECONDS;
    while (IsWindow(window) && !m_run->HasEnded(LOOK_MILLISECONDS)) {
        if (GetTickCount64() > deadline) {
            Fail(L"the end of a window", DescribeWindow(window));
        }
    }
}

unsigned int ByHandTest::WaitForEnd(bool watched)
{
    const CString name = L"the end of the program";
    const ULONGLONG deadline = GetTickCount64() + STEP_MILLISECONDS;
    while (!m_run->HasEnded(LOOK_MILLISECONDS)) {
        if (watched) {
            FrontWindow(name);
        }
        if (GetTickCount64() > deadline) {
            Fail(name, L"it didn't come in time");
        }
    }
    return m_run->GetExitCode();
}

CString ByHandTest::WithoutOwnPaths(CString text) const
{
    text.Replace(m_folder.GetPath(), L"<folder>\\");
    text.Replace(SampleMedia(), L"<media>");
    return text;
}

CString ByHandTest::ReadLog() const
{
    return ReplaceBetween(WithoutOwnPaths(m_run->ReadLog()), L", work folder ", L"\n", L"<work>");
}

std::vector<CString> ByHandTest::ListFolder(const CString& folder)
{
    std::vector<CString> names;
    WIN32_FIND_DATAW found = {};
    const CFindOwner search(FindFirstFileW(folder + L"\\*", &found));
    do {
        const CString name = found.cFileName;
        if (name != CString(L".") && name != CString(L"..")) {
            names.push_back(name);
        }
    } while (search && FindNextFileW(search.get(), &found));
    std::sort(names.begin(), names.end());
    return names;
}

ByHandTest::Lines ByHandTest::LogOfOpening() const
{
    const CString media = WithoutOwnPaths(m_media);
    return {L"Media " + media + L", language en-US, work folder <work>", L"Media " + media};
}

ByHandTest::Lines ByHandTest::LogOfMode(const wchar_t* name, int platform) const
{
    return {L"Setup mode 4, platform " + NumberText(platform) + L", deployment \"" + name +
            L"\" in <folder>\\Deployments\\, based on \"\""};
}

ByHandTest::Lines ByHandTest::LogOfBuild(const wchar_t* name, int platform) const
{
    return Join({LogOfMode(name, platform),
                 {CString(L"Building ") + name, L"  Checking the location and the media",
                  CString(L"  Preparing ") + name, L"  Copying Zolt 2027",
                  L"  Writing the settings into Zolt 2027", L"  Writing the settings into Zolt 2027 Deutsch",
                  L"  Writing the settings into Zolt 2027 Fran\x00E7"
                  L"ais",
                  L"  Writing the settings into Zolt Viewer 2027", L"  Writing the commands and notes",
                  CString(L"  Publishing ") + name, L"Build ended with code 0. ",
                  CString(L"Deployment <folder>\\Deployments\\") + name + L"\\"}});
}

ByHandTest::Lines ByHandTest::LogOfCanceledPage()
{
    return {L"Setup property TARN_SETUP_SUCCEEDED = \"\"", LogOfCancel()};
}

CString ByHandTest::LogOfCancel()
{
    return L"Exit code 1602: canceled";
}

ByHandTest::Lines ByHandTest::Join(std::initializer_list<Lines> parts)
{
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

void ByHandTest::ExpectEnd(unsigned int exitCode, const Lines& log, const Lines& boxes)
{
    EXPECT_EQ(WaitForEnd(), exitCode);
    EXPECT_EQ(m_run->ReadConsole(), CString()); // a person looks at windows
    EXPECT_EQ(ReadLog(), JoinLines(log));
    EXPECT_EQ(JoinLines(m_boxes), JoinLines(boxes));
}

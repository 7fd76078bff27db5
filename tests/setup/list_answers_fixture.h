// Runs without a person over the tests' page with lists, in both of its shapes.
#pragma once

#include "setup/page_lists.h"
#include "tests/setup/configure_fixture.h"
#include "tests/setup/list_page.h"
#include "tests/setup/tab_pages/list_page.h"

enum class PageShape
{
    Walked,
    Tab,
};

inline void PrintTo(const ListLine& line, std::ostream* stream)
{
    *stream << Utf8(line.strWord) << " =";
    for (const CString& field : line.fields) {
        *stream << " \"" << Utf8(field) << '"';
    }
}

class ListAnswersTest : public ConfigureTest, public testing::WithParamInterface<PageShape>
{
protected:
    static constexpr wchar_t ANSWERS_FILE[] = L"C:\\jobs\\answers.txt";

    ListAnswersTest();
    ~ListAnswersTest() override;
    void SetUp() override;

    // The file's text behind its first line.
    void UseAnswers(const CString& text);
    // Shows the page, and as a tab those that were added before; notes what it held when it was asked to store.
    void Run();
    // The same, which must go through.
    void RunToItsEnd();
    // The run must end with that code and cause, with no window left open.
    void ExpectFailure(unsigned int exitCode, const CString& cause);

    // "C:\jobs\answers.txt(5): things.file: <what>"
    static CString AtLine(int line, const wchar_t* key, const CString& what);
    CString AddFile(const wchar_t* name) { return files.AddFile(name, "x"); }
    static ListLine Folder(const wchar_t* name, const wchar_t* parent = LIST_ROOT);
    static ListLine File(const CString& path, const CString& folder = LIST_ROOT);
    // Lines of a file of answers.
    static CString Text(const std::vector<ListLine>& lines);

    bool IsWalked() const { return GetParam() == PageShape::Walked; }
    void AddListTab(TestProduct& product) { AddTab(L"ListPage", ListPage, product); }

    // What the page held when it was asked to store last; nothing when it never was.
    std::vector<ListLine> Held() const { return held.empty() ? std::vector<ListLine>() : held.back(); }

    CTestFolder files;
    ListPageRecord& page;
    std::optional<RunOutcome> failure;
    std::vector<std::vector<ListLine>> held; // each time that a page was asked to store
    CString caption;                         // likewise, the last
    CString bannerText;
    bool banner = false;
    bool hasTabs = false;                 // the test has added them itself
    const wchar_t* productName = L"Zolt"; // of the page otherwise

private:
    void WarmUp();
    void Begin();
    void NoteContents(HWND window);

    CAnswers m_answers;
};

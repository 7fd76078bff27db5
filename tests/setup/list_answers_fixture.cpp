#include "tests/setup/list_answers_fixture.h"

#include "automation/control.h"

#include <set>
#include <string>

ListAnswersTest::ListAnswersTest() : page(GetListPageRecord())
{
    Begin();
}

void ListAnswersTest::SetUp()
{
    static std::set<PageShape> warm;
    if (warm.insert(GetParam()).second) {
        WarmUp();
        Begin();
    }
}

// The first picker, its box, the first menu and label edit fill caches of the system's in each shape.
void ListAnswersTest::WarmUp()
{
    productName = L"Warm";
    page.folders = {L"Old"};
    UseAnswers(L"[things]\non_question.delete = yes\nclear = yes\n"
               L"folder = \"<Installation Directory>\", \"Warm\"\ndownload = \"Warm\"\n"
               L"file = \"<Installation Directory>\", \"" +
               AddFile(L"warm.txt") + L"\"\n");
    BeginBehind([this] { RunToItsEnd(); });
    productName = L"Missing";
    UseAnswers(L"[things]\nfile = \"<Installation Directory>\", \"C:\\missing.txt\"\n");
    BeginBehind([this] { Run(); });
    productName = L"Zolt";
}

void ListAnswersTest::Begin()
{
    page = ListPageRecord();
    page.onStore = [this](HWND window) { NoteContents(window); };
    held.clear();
    options.strPlaceKey.Empty();
    UseAnswers(CString());
}

ListAnswersTest::~ListAnswersTest()
{
    page = ListPageRecord();
}

void ListAnswersTest::UseAnswers(const CString& text)
{
    std::string bytes = "rollout-answers 1\n";
    AppendUtf8(bytes, text);
    AnswerSources sources;
    static const PageAnswerTable* const TABLES[] = {&LIST_PAGE_ANSWERS};
    sources.tables = TABLES;
    sources.strFile = ANSWERS_FILE;
    sources.strFileFolder = L"C:\\jobs";
    AnswersError error;
    ASSERT_TRUE(ParseAnswersFile(bytes.data(), bytes.size(), sources.file, error)) << Utf8(error.Text());
    ASSERT_TRUE(JoinAnswers(sources, m_answers, error)) << Utf8(error.Text());
}

void ListAnswersTest::NoteContents(HWND window)
{
    held.push_back(ListPageLists().front().lists->Read(window));
    caption = CControl(window, IDC_LIST_CAPTION).GetText();
    bannerText = CControl(window, IDC_LIST_BANNER_TEXT).GetText();
    banner = CControl(window, IDC_LIST_BANNER).IsChecked();
}

void ListAnswersTest::Run()
{
    CRunLog log(false, CString());
    CPagePictures pictures(CString(), log);
    static const PageAnswerTable* const TABLES[] = {&LIST_PAGE_ANSWERS};
    CUnattendedPages pages(m_answers, pictures, log, TABLES, ListPageLists());
    if (IsWalked()) {
        TestProduct& added = AddProduct(productName);
        PageContext context;
        context.pSetupManager = &host.manager;
        context.pProduct = &added;
        context.hDatabase = added.database;
        static_cast<void>(pages.Show(L"ListDialog", &added, CString(), ListDialog, context));
    } else {
        if (!hasTabs) {
            AddListTab(AddProduct(productName));
        }
        static_cast<void>(RunUnattended(pages));
    }
    failure = pages.GetFailure();
    EXPECT_EQ(DescribeThreadWindows(), CString(L"no windows"));
}

void ListAnswersTest::RunToItsEnd()
{
    Run();
    ASSERT_FALSE(failure) << failure->exitCode << " " << Utf8(failure->strCause);
    ASSERT_FALSE(held.empty());
}

void ListAnswersTest::ExpectFailure(unsigned int exitCode, const CString& cause)
{
    Run();
    ASSERT_TRUE(failure) << "the run went through";
    EXPECT_EQ(failure->exitCode, exitCode);
    EXPECT_EQ(failure->strCause, cause);
}

CString ListAnswersTest::AtLine(int line, const wchar_t* key, const CString& what)
{
    return CString(ANSWERS_FILE) + L"(" + NumberText(line) + L"): things" + (*key ? L"." : L"") + key +
           L": " + what;
}

ListLine ListAnswersTest::Folder(const wchar_t* name, const wchar_t* parent)
{
    return {L"folder", {parent, name}};
}

ListLine ListAnswersTest::File(const CString& path, const CString& folder)
{
    return {L"file", {folder, path}};
}

CString ListAnswersTest::Text(const std::vector<ListLine>& lines)
{
    AnswersFile file;
    file.sections.push_back({L"things", {}, 0, {}, {}, {}});
    for (const ListLine& line : lines) {
        file.sections.back().answers.push_back({line.strWord, line.fields, 0, {}});
    }
    CString text;
    AnswersError error;
    EXPECT_TRUE(WriteAnswersFile(file, text, error)) << Utf8(error.Text());
    return text.Mid(text.Find(L"\n") + 1);
}

// Whatever texts a run's pages held: the file that is written of them enters the same again, and one that lacks what no file
// can hold is refused.
#include "setup/answers_record.h"
#include "fuzz/wide_input.h"

#include <cstdlib>
#include <string>

namespace {

constexpr FieldKind TEXT_AND_PATH[] = {FieldKind::Text, FieldKind::Path};
constexpr AnswerKey KEYS[] = {
    {.word = L"text", .kind = AnswerKind::Text, .control = 1},
    {.word = L"path", .kind = AnswerKind::Path, .control = 2},
    {.word = L"check", .kind = AnswerKind::Check, .control = 3},
    {.word = L"kept", .kind = AnswerKind::Path, .control = 4, .needs = {L"check", L"yes"}},
    {.word = L"line", .kind = AnswerKind::List, .fields = TEXT_AND_PATH},
};
constexpr PageRow ROW = {.stem = L"Any", .bTab = true, .bOfProduct = true, .section = L"any"};
constexpr PageAnswerTable TABLE = {.page = &ROW, .keys = KEYS};
constexpr const PageAnswerTable* TABLES[] = {&TABLE};

// The texts are the lines of the input; the last one stays for all that follow.
class CTexts
{
public:
    explicit CTexts(const CString& text) : m_rest(text) {}
    CString Next()
    {
        if (!m_rest.IsEmpty()) {
            m_last = FirstLine(m_rest, m_rest);
        }
        return m_last;
    }

private:
    CString m_rest;
    CString m_last;
};

RecordedPage PageOf(CTexts& texts)
{
    RecordedPage page;
    page.pTable = &TABLE;
    page.product = {L"x" + texts.Next(), L"{A}"};
    page.strTitle = texts.Next();
    page.values = {{L"text", {texts.Next()}},
                   {L"path", {texts.Next()}},
                   {L"check", {L"no"}},
                   {L"kept", {texts.Next()}, true},
                   {L"line", {texts.Next(), texts.Next()}},
                   {L"line", {texts.Next(), texts.Next()}}};
    return page;
}

void Check(const RecordedPage& page, const RecordForm& form, const CString& text, bool leftOut)
{
    std::string bytes;
    AppendUtf8(bytes, text);
    AnswerSources sources;
    sources.tables = TABLES;
    sources.strFileFolder = form.folders.strBase;
    AnswersError error;
    CAnswers answers;
    if (!ParseAnswersFile(bytes.data(), bytes.size(), sources.file, error) ||
        JoinAnswers(sources, answers, error) == leftOut) {
        std::abort();
    }
    if (leftOut) {
        return;
    }
    answers.UseMediaFolder(form.folders.strMedia);
    const PageAnswers* again = answers.Find(L"any", page.product);
    if (!again || again->entries.size() != page.values.size()) {
        std::abort();
    }
    for (std::size_t index = 0; index < page.values.size(); ++index) {
        if (again->entries[index].fields != page.values[index].fields ||
            !(page.values[index].strWord == again->entries[index].pKey->word)) {
            std::abort();
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CTexts texts(WideInput(data, size));
    RecordForm form;
    form.folders = {L"D:\\Media\\x", L"D:\\Media"};
    const RecordedPage page = PageOf(texts);
    form.products = {page.product, {L"y", L"{B}"}};
    form.strDeployment = size % 2 == 0 ? L"" : L"x";
    form.tables = TABLES;
    std::vector<CString> warnings;
    const AnswersFile file = ComposeAnswers({page}, form, warnings);
    CString text;
    AnswersError error;
    if (WriteAnswersFile(file, text, error)) {
        Check(page, form, text, !warnings.empty());
    } else if (error.strReason.IsEmpty()) { // the product's name alone can do that
        std::abort();
    }
    return 0;
}

#include "setup/answers.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

// What a section that wins replaces: the same word, in whatever form, and of lists all lines of the word; clearing a list
// replaces all of them.
class CReplaced
{
public:
    explicit CReplaced(const PageAnswers& winner)
    {
        for (const PageAnswer& answer : winner.entries) {
            m_words.insert(answer.pKey->word);
            m_bLists = m_bLists || (answer.pKey->kind == AnswerKind::Clear && IsYes(answer.Value()));
        }
    }
    bool Has(const PageAnswer& answer) const
    {
        return m_words.contains(answer.pKey->word) || (m_bLists && IsOfList(*answer.pKey));
    }

private:
    std::set<CString> m_words;
    bool m_bLists = false;
};

void Win(PageAnswers& page, const PageAnswers& winner)
{
    std::erase_if(page.entries,
                  [replaced = CReplaced(winner)](const PageAnswer& answer) { return replaced.Has(answer); });
    page.entries.insert(page.entries.end(), winner.entries.begin(), winner.entries.end());
    std::stable_sort(page.entries.begin(), page.entries.end(),
                     [&table = *page.pTable](const PageAnswer& left, const PageAnswer& right) {
                         return EntryOrder(table, *left.pKey) < EntryOrder(table, *right.pKey);
                     });
    for (const QuestionAnswer& question : winner.questions) {
        std::erase_if(page.questions,
                      [&question](const QuestionAnswer& other) { return other.IsOf(*question.pBox); });
        page.questions.push_back(question);
    }
    if (!winner.leaveOrigin.strSource.IsEmpty()) {
        page.bCancel = winner.bCancel;
        page.leaveOrigin = winner.leaveOrigin;
    }
    if (!winner.showOrigin.strSource.IsEmpty()) {
        page.bShow = winner.bShow;
        page.showOrigin = winner.showOrigin;
    }
}

// The section that names the product wins over the one for any.
void AddSource(const std::vector<PageAnswers>& sections, const CString& section, const AnswerProduct& product,
               bool& found, PageAnswers& answers)
{
    for (const bool named : {false, true}) {
        for (const PageAnswers& page : sections) {
            const bool counts = named ? product.IsNamed(page.strProduct) : page.strProduct.IsEmpty();
            if (!counts || section != page.Page().section) {
                continue;
            }
            if (!found) {
                answers = page;
                found = true;
            } else {
                Win(answers, page);
                answers.origin = page.origin.nLine > 0 ? page.origin : answers.origin;
            }
        }
    }
}

CString ProductNames(const std::vector<AnswerProduct>& products)
{
    CString names;
    for (const AnswerProduct& product : products) {
        names += (names.IsEmpty() ? CString(L"\"") : CString(L", \"")) + product.strName + L"\"";
    }
    return names.IsEmpty() ? CString(L"none") : names;
}

// Where "%s" stands, or "%1" to "%9"; -1 for neither.
int FindHole(const CString& format)
{
    int hole = format.Find(L'%');
    while (hole >= 0 && format[hole + 1] != L's' && (format[hole + 1] < L'1' || format[hole + 1] > L'9')) {
        hole = format.Find(L'%', hole + 1);
    }
    return hole;
}

} // namespace

bool IsYes(const CString& value)
{
    return value == L"yes";
}

CString PageAnswer::QuotedFields() const
{
    CString list;
    for (const CString& field : fields) {
        list += (list.IsEmpty() ? CString(L"\"") : CString(L", \"")) + field + L"\"";
    }
    return list;
}

bool AnswerProduct::IsNamed(const CString& text) const
{
    return !text.IsEmpty() && (text.CompareNoCase(strName) == 0 || text.CompareNoCase(strCode) == 0);
}

const PageAnswers* CAnswers::Find(const CString& section, const AnswerProduct& product) const
{
    for (const Joined& joined : m_joined) {
        if (joined.strSection == section && joined.product == product) {
            return joined.answers.pTable ? &joined.answers : nullptr;
        }
    }
    Joined joined{section, product, {}};
    bool found = false;
    AddSource(fileSections, section, product, found, joined.answers);
    AddSource(lineSections, section, product, found, joined.answers);
    m_joined.push_back(std::move(joined));
    return found ? &m_joined.back().answers : nullptr;
}

void CAnswers::UseMediaFolder(const CString& folder)
{
    for (std::vector<PageAnswers>* sections : {&fileSections, &lineSections}) {
        for (PageAnswers& page : *sections) {
            for (PageAnswer& answer : page.entries) {
                for (std::size_t index = 0; index < answer.fields.size(); ++index) {
                    if (!answer.bLiteral && IsPathField(*answer.pKey, index)) {
                        answer.fields[index] = ResolveMediaMark(folder, answer.fields[index]);
                    }
                }
            }
        }
    }
    m_joined.clear();
}

bool CheckPagesReached(const CAnswers& answers, const std::vector<CString>& pages, AnswersError& error)
{
    for (const std::vector<PageAnswers>* sections : {&answers.fileSections, &answers.lineSections}) {
        for (const PageAnswers& page : *sections) {
            const bool shown =
                std::find(pages.begin(), pages.end(), WizardExport(page.Page())) != pages.end();
            if (!shown && !page.Page().IsOutcome()) {
                error = {
                    page.origin.strSource, page.origin.nLine, CString(),
                    CString(L"The page \"") + page.Page().section +
                        L"\" isn't shown in this run. Take its answers out, or use media whose flow has the "
                        L"page."};
                return false;
            }
        }
    }
    return true;
}

bool CheckProductsReached(const CAnswers& answers, const std::vector<AnswerProduct>& products,
                          AnswersError& error)
{
    for (const std::vector<PageAnswers>* sections : {&answers.fileSections, &answers.lineSections}) {
        std::map<std::pair<const PageAnswerTable*, const AnswerProduct*>, const PageAnswers*> seen;
        for (const PageAnswers& page : *sections) {
            if (page.strProduct.IsEmpty()) {
                continue;
            }
            const auto refuse = [&](const CString& reason) {
                error = {page.origin.strSource, page.origin.nLine, CString(), reason};
                return false;
            };
            const AnswerProduct* named = nullptr;
            for (const AnswerProduct& product : products) {
                if (!product.IsNamed(page.strProduct)) {
                    continue;
                }
                if (named) {
                    return refuse(L"Two products are called \"" + page.strProduct +
                                  L"\". Name the one that is meant by its product code.");
                }
                named = &product;
            }
            if (!named) {
                return refuse(L"There is no product \"" + page.strProduct +
                              L"\" in this run. Its products are: " + ProductNames(products) + L".");
            }
            const auto [place, isNew] = seen.emplace(std::pair(page.pTable, named), &page);
            if (!isNew) {
                const CString first = SectionTitle(page.Page().section, place->second->strProduct);
                return refuse(L"The product is named by its code and by its name: " + first + L" in line " +
                              NumberText(place->second->origin.nLine) +
                              L" is for the same page of it. Keep all answers of a page together.");
            }
        }
    }
    return true;
}

AnswersError RefusedAnswer(const PageAnswers& page, const wchar_t* key, const AnswerOrigin& origin,
                           const CString& reason)
{
    return {origin.strSource, origin.nLine, CString(page.Page().section) + L"." + key, reason};
}

bool MatchesFormat(const CString& format, const CString& text)
{
    const int hole = FindHole(format);
    if (hole < 0) {
        return format == text;
    }
    if (text.Left(hole) != format.Left(hole)) {
        return false;
    }
    const CString rest = format.Mid(hole + 2);
    for (int start = hole; start <= text.GetLength(); ++start) {
        if (MatchesFormat(rest, text.Mid(start))) {
            return true;
        }
    }
    return false;
}

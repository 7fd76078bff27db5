#include "setup/answers_comparison.h"

#include "builder/compare_rules.h"
#include "setup/record_comments.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace {

// The lines of one key: one, or those of a list.
struct KeyLines
{
    std::vector<CString> lines;
    bool bList = false;
};
using PageLines = std::map<CString, KeyLines>;                      // by key
using AllLines = std::map<std::tuple<CString, CString>, PageLines>; // by product and section

CString FieldsText(const AnswerLine& line)
{
    if (line.fields.size() == 1) {
        return line.Value();
    }
    CString text;
    for (CString field : line.fields) {
        field.Replace(L"\"", L"\"\"");
        text += (text.IsEmpty() ? L"\"" : L", \"") + field + L"\"";
    }
    return text;
}

bool IsOfRun(const AnswerSection& section, const AnswerLine& line)
{
    const CString questionPrefix = QUESTION_PREFIX;
    if (line.strKey == LEAVE_KEY || line.strKey == SHOW_KEY ||
        line.strKey.Left(questionPrefix.GetLength()) == questionPrefix) {
        return true;
    }
    const CString word = AnswerKeyForm(line.strKey).strWord;
    const PageAnswerTable* const table = FindAnswerTable(PageAnswerTables(), section.strName);
    const AnswerKey* const key = table ? FindAnswerKey(*table, word) : nullptr;
    if (key && key->kind == AnswerKind::Clear) {
        return true;
    }
    const PageRow* const page = FindPageOfSection(section.strName);
    return page && page->role == PageRole::Target &&
           (word == MODE_WORD || word == BASE_WORD || word == NAME_WORD || word == LOCATION_WORD);
}

class CLineCollector
{
public:
    CLineCollector(const ComparedAnswers& answers, const ComparedAnswers& other)
        : m_answers(answers), m_other(other)
    {
    }

    AllLines Collect() const
    {
        AllLines all;
        for (const AnswerSection& section : m_answers.file.sections) {
            PageLines& page = all[{ProductOf(section), section.strName}];
            for (const AnswerLine& line : section.answers) {
                if (!IsOfRun(section, line)) {
                    KeyLines& key = page[line.strKey];
                    key.lines.push_back(FieldsText(line));
                    key.bList = key.bList || key.lines.size() > 1 || IsList(section, line);
                }
            }
        }
        return all;
    }

private:
    static bool IsList(const AnswerSection& section, const AnswerLine& line)
    {
        const PageAnswerTable* const table = FindAnswerTable(PageAnswerTables(), section.strName);
        return table && IsListKey(*table, AnswerKeyForm(line.strKey).strWord);
    }

    // A file for one product doesn't name it, one for several does, by name or code.
    CString ProductOf(const AnswerSection& section) const
    {
        const std::vector<AnswerProduct>& products = m_answers.products;
        const PageRow* const page = FindPageOfSection(section.strName);
        if (section.strProduct.IsEmpty()) {
            return page && page->bOfProduct && products.size() == 1 ? NameInBoth(products.front())
                                                                    : CString();
        }
        const auto found = std::find_if(products.begin(), products.end(), [&](const AnswerProduct& product) {
            return product.IsNamed(section.strProduct);
        });
        return found == products.end() ? section.strProduct : NameInBoth(*found);
    }

    // One name for both deployments, whichever of the two is named first.
    CString NameInBoth(const AnswerProduct& product) const
    {
        for (const AnswerProduct& other : m_other.products) {
            if (other.strCode.CompareNoCase(product.strCode) == 0) {
                return std::min(product.strName, other.strName);
            }
        }
        return product.strName;
    }

    const ComparedAnswers& m_answers;
    const ComparedAnswers& m_other;
};

void CompareKey(const ComparedPart& part, const KeyLines& first, const KeyLines& second,
                Differences& differences)
{
    if (first.bList || second.bList) {
        CompareLists(part, first.lines, second.lines, differences);
    } else if (first.lines.empty() || second.lines.empty()) {
        const bool onlyFirst = second.lines.empty();
        AddMissing(part, onlyFirst ? DifferenceSide::OnlyFirst : DifferenceSide::OnlySecond,
                   onlyFirst ? first.lines.front() : second.lines.front(), differences);
    } else {
        CompareValue(part, first.lines.front(), second.lines.front(), differences);
    }
}

} // namespace

std::vector<DeploymentDifference> CompareAnswers(const ComparedAnswers& first, const ComparedAnswers& second)
{
    const AllLines before = CLineCollector(first, second).Collect();
    const AllLines after = CLineCollector(second, first).Collect();
    // Both sides of each key of either.
    std::map<std::tuple<CString, CString, CString>, std::pair<KeyLines, KeyLines>> keys;
    const auto collect = [&keys](const AllLines& all, KeyLines std::pair<KeyLines, KeyLines>::*side) {
        for (const auto& [place, page] : all) {
            for (const auto& [key, lines] : page) {
                keys[{std::get<0>(place), std::get<1>(place), key}].*side = lines;
            }
        }
    };
    collect(before, &std::pair<KeyLines, KeyLines>::first);
    collect(after, &std::pair<KeyLines, KeyLines>::second);
    Differences differences;
    for (const auto& [place, sides] : keys) {
        const auto& [product, section, key] = place;
        CompareKey({DifferenceKind::Answer, product, {section, key}}, sides.first, sides.second, differences);
    }
    return differences;
}

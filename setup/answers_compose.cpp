#include "setup/answers_record.h"

#include "setup/record_comments.h"

#include <algorithm>

namespace {

bool HasTwin(const std::vector<AnswerProduct>& products, const AnswerProduct& product)
{
    return std::count_if(products.begin(), products.end(), [&product](const AnswerProduct& other) {
               return other.IsNamed(product.strName);
           }) > 1;
}

class CSectionComposer
{
public:
    CSectionComposer(const RecordedPage& page, const RecordForm& form, std::vector<CString>& warnings)
        : m_page(page), m_form(form), m_warnings(warnings)
    {
    }

    AnswerSection Compose()
    {
        m_section.strName = m_page.pTable->page->section;
        if (m_form.products.size() > 1 && !m_page.product.strName.IsEmpty()) {
            m_section.strProduct =
                HasTwin(m_form.products, m_page.product) ? m_page.product.strCode : m_page.product.strName;
        }
        m_section.comments.push_back(m_page.Title());
        if (!m_page.bShown) {
            m_section.answers.push_back({SHOW_KEY, {L"no"}, 0, {L"Nobody went to its tab."}});
        }
        AddGroup(false, RECORD_CHANGED);
        AddGroup(true, RECORD_PROPOSED);
        AddQuestions();
        return std::move(m_section);
    }

private:
    bool IsOwnPlace(const RecordedValue& value) const
    {
        return !m_form.bWithLocation && m_page.Page().role == PageRole::Target &&
               value.strWord == LOCATION_WORD;
    }

    void AddGroup(bool proposed, const wchar_t* title)
    {
        m_strTitle = title;
        for (const RecordedValue& value : m_page.values) {
            if (value.bProposed != proposed) {
                continue;
            }
            if (!IsOwnPlace(value)) {
                Add(Written(value));
            }
        }
    }

    void AddQuestions()
    {
        m_strTitle = RECORD_QUESTIONS;
        for (const RecordedQuestion& question : m_page.questions) {
            Add({CString(QUESTION_PREFIX) + question.pBox->role, {question.bYes ? L"yes" : L"no"}, 0, {}});
        }
    }

    AnswerLine Written(const RecordedValue& value) const
    {
        const AnswerKey* key = FindAnswerKey(*m_page.pTable, value.strWord);
        AnswerLine line{value.strWord + (value.bKept ? KEPT_SUFFIX : L""), value.fields, 0, {}};
        if (!key || value.bAsWritten) {
            return line;
        }
        bool literal = false;
        std::vector<CString> portable;
        for (std::size_t field = 0; field < line.fields.size(); ++field) {
            PortablePath path{line.fields[field], false};
            if (IsPathField(*key, field)) {
                path = MakePortable(m_form.folders, line.fields[field], !m_form.strDeployment.IsEmpty());
            }
            literal = literal || path.bLiteral;
            portable.push_back(path.strText);
        }
        if (literal) { // of all fields, as the mark is of the whole line
            line.strKey += LITERAL_SUFFIX;
        } else {
            line.fields = portable;
        }
        return line;
    }

    // The title stands above the first line of its group.
    void Add(AnswerLine line)
    {
        if (!m_strTitle.IsEmpty()) {
            line.comments.push_back(m_strTitle);
        }
        AnswersError error;
        if (CanBeWritten(m_section.strName, line, error)) {
            m_section.answers.push_back(std::move(line));
            m_strTitle.Empty();
            return;
        }
        m_warnings.push_back(error.Text());
        line.comments.push_back(error.Text());
        m_section.answers.push_back(
            {AnswerKeyForm(line.strKey).strWord + LEFT_OUT_SUFFIX, {CString()}, 0, line.comments});
        m_strTitle.Empty();
    }

    const RecordedPage& m_page;
    const RecordForm& m_form;
    std::vector<CString>& m_warnings;
    AnswerSection m_section;
    CString m_strTitle; // of the group, until it has a line
};

// The same deployment comes of it wherever it was made from: it is created, under its name.
RecordedPage CreatedPage(RecordedPage page, const CString& deployment)
{
    std::erase_if(page.values, [](const RecordedValue& value) {
        return value.strWord == MODE_WORD || value.strWord == BASE_WORD || value.strWord == NAME_WORD;
    });
    page.values.insert(page.values.begin(), {{MODE_WORD, {L"create"}}, {NAME_WORD, {deployment}}});
    return page;
}

bool SaysNothing(const AnswerSection& section)
{
    return section.answers.empty() && section.closingComments.empty();
}

} // namespace

AnswersFile ComposeAnswers(const std::vector<RecordedPage>& pages, const RecordForm& form,
                           std::vector<CString>& warnings)
{
    AnswersFile file;
    file.comments = form.comments;
    for (const RecordedPage& recorded : pages) {
        const bool isTarget = recorded.Page().role == PageRole::Target;
        const RecordedPage page =
            isTarget && !form.strDeployment.IsEmpty() ? CreatedPage(recorded, form.strDeployment) : recorded;
        AnswerSection section = CSectionComposer(page, form, warnings).Compose();
        if (!SaysNothing(section)) {
            file.sections.push_back(std::move(section));
        }
    }
    return file;
}

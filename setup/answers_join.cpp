// From the file and the command line to answers whose words the table knows.
#include "setup/answers.h"

#include "base/number_text.h"

#include <algorithm>
#include <map>

namespace {

void AddToList(CString& list, const CString& word)
{
    list += (list.IsEmpty() ? CString() : CString(L", ")) + word;
}

CString Choices(const PageAnswerTable& table, const AnswerKey& key)
{
    if (key.kind == AnswerKind::Check || key.kind == AnswerKind::Clear) {
        return L"yes, no";
    }
    if (key.kind == AnswerKind::WorkLimit) {
        return L"1 to " + NumberText(MOST_WORK_SECONDS) + L" seconds";
    }
    CString list;
    for (const AnswerKey& row : table.keys) {
        if (CString(row.word) == key.word) {
            AddToList(list, row.choice);
        }
    }
    return list;
}

CString KnownSections(AnswerTables tables)
{
    CString list;
    for (const PageAnswerTable* table : tables) {
        AddToList(list, table->page->section);
    }
    return list;
}

// The words of a section, for the complaint about an unknown one.
CString KnownKeys(const PageAnswerTable& table)
{
    CString list;
    const wchar_t* last = L"";
    for (const AnswerKey& row : table.keys) {
        if (CString(row.word) != last) {
            last = row.word;
            AddToList(list, row.word);
        }
    }
    for (const AnswerBox& row : table.boxes) {
        if (row.kind == BoxKind::Question) {
            AddToList(list, CString(QUESTION_PREFIX) + row.role);
        }
    }
    if (table.page->bTab) {
        AddToList(list, SHOW_KEY);
    }
    AddToList(list, LEAVE_KEY);
    return list;
}

// What a row of a word says to a value: any text, one choice, or yes and no.
bool AcceptsValue(const AnswerKey& row, const CString& value)
{
    switch (row.kind) {
    case AnswerKind::Radio:
    case AnswerKind::Entry:
    case AnswerKind::Choice:
        return value == row.choice;
    case AnswerKind::WorkLimit:
        return ReadWholeNumber(value, 1, MOST_WORK_SECONDS).has_value();
    case AnswerKind::Check:
    case AnswerKind::Clear:
        return value == L"yes" || value == L"no";
    default:
        return true;
    }
}

// The sections of one source, the file or the command line. Each key counts once, but for a list's.
class CSectionsMaker
{
public:
    CSectionsMaker(AnswerTables tables, const CString& folder, std::vector<PageAnswers>& sections,
                   AnswersError& error)
        : m_tables(tables), m_folder(folder), m_sections(sections), m_error(error)
    {
    }

    bool AddSection(const CString& section, const CString& product, const AnswerOrigin& origin)
    {
        return SectionOf(section, product, origin) != nullptr;
    }

    bool Add(const CString& section, const CString& product, const CString& key,
             const std::vector<CString>& fields, const AnswerOrigin& origin)
    {
        PageAnswers* page = SectionOf(section, product, origin);
        if (!page) {
            return false;
        }
        const AnswerKeyForm form(key);
        const AnswerKey* row = FindAnswerKey(*page->pTable, form.strWord);
        const bool isList = row && row->kind == AnswerKind::List;
        if (!isList && fields.size() != 1) {
            return Refuse(*page, key, origin,
                          L"The key has one value, but several stand here with commas between them.");
        }
        if (!isList && !CheckOnce(*page, form.strWord, key, origin)) {
            return false;
        }
        if (form.bLeftOut) {
            return Refuse(
                *page, key, origin,
                L"A value could not be written here, as the comment above says. Enter one, or take the line "
                L"out to go on without it.");
        }
        if (row) {
            return AddEntry(*page, *row, form, key, fields, origin);
        }
        const CString& value = fields.front();
        if (key == LEAVE_KEY) {
            return AddLeave(*page, value, origin);
        }
        if (key == SHOW_KEY && page->Page().bTab) {
            return AddShow(*page, value, origin);
        }
        const int prefix = TextLength(QUESTION_PREFIX);
        const AnswerBox* box =
            key.Left(prefix) == QUESTION_PREFIX ? FindQuestion(*page->pTable, key.Mid(prefix)) : nullptr;
        return box ? AddQuestion(*page, *box, key, value, origin) : RefuseUnknown(*page, key, origin);
    }

private:
    bool Refuse(const PageAnswers& page, const CString& key, const AnswerOrigin& origin,
                const CString& reason)
    {
        m_error = RefusedAnswer(page, key, origin, reason);
        return false;
    }

    bool RefuseUnknown(const PageAnswers& page, const CString& key, const AnswerOrigin& origin)
    {
        return Refuse(page, key, origin,
                      L"The page has no such key. Known are: " + KnownKeys(*page.pTable) + L".");
    }

    PageAnswers* SectionOf(const CString& section, const CString& product, const AnswerOrigin& origin)
    {
        const auto known = m_places.find({section, product});
        if (known != m_places.end()) {
            return &m_sections[known->second];
        }
        const PageAnswerTable* table = FindAnswerTable(m_tables, section);
        if (!table) {
            m_error = {origin.strSource, origin.nLine, CString(),
                       L"There is no page \"" + section + L"\". Known are: " + KnownSections(m_tables) +
                           L"."};
            return nullptr;
        }
        if (!product.IsEmpty() && !table->page->bOfProduct) {
            m_error = {origin.strSource, origin.nLine, CString(),
                       L"The page \"" + section + L"\" belongs to no product. Write " +
                           SectionTitle(section, CString()) + L"."};
            return nullptr;
        }
        m_places.emplace(std::pair(section, product), m_sections.size());
        PageAnswers page;
        page.pTable = table;
        page.strProduct = product;
        page.origin = origin;
        m_sections.push_back(std::move(page));
        return &m_sections.back();
    }

    bool CheckOnce(const PageAnswers& page, const CString& word, const CString& key,
                   const AnswerOrigin& origin)
    {
        const CString name = SectionTitle(page.Page().section, page.strProduct) + word;
        const auto [place, isNew] = m_lines.emplace(name, origin);
        if (isNew) {
            return true;
        }
        return Refuse(page, key, origin,
                      place->second.nLine > 0
                          ? L"The key stands in line " + NumberText(place->second.nLine) +
                                L" already. Keep one of the two."
                          : CString(L"The command line has the key twice. Keep one of the two."));
    }

    bool AddLeave(PageAnswers& page, const CString& value, const AnswerOrigin& origin)
    {
        if (value != L"next" && value != L"cancel") {
            return Refuse(page, LEAVE_KEY, origin,
                          L"\"" + value + L"\" is not a way to leave a page. Known are: next, cancel.");
        }
        page.bCancel = value == L"cancel";
        page.leaveOrigin = origin;
        return true;
    }

    bool AddShow(PageAnswers& page, const CString& value, const AnswerOrigin& origin)
    {
        if (value != L"yes" && value != L"no") {
            return Refuse(page, SHOW_KEY, origin,
                          L"\"" + value + L"\" is none of its values. Known are: yes, no.");
        }
        page.bShow = IsYes(value);
        page.showOrigin = origin;
        return true;
    }

    bool AddQuestion(PageAnswers& page, const AnswerBox& box, const CString& key, const CString& value,
                     const AnswerOrigin& origin)
    {
        if (value != L"yes" && value != L"no") {
            return Refuse(page, key, origin,
                          L"\"" + value + L"\" doesn't answer a question. Known are: yes, no.");
        }
        page.questions.push_back({&box, IsYes(value), origin});
        return true;
    }

    bool AddEntry(PageAnswers& page, const AnswerKey& first, const AnswerKeyForm& form, const CString& key,
                  std::vector<CString> fields, const AnswerOrigin& origin)
    {
        const PageAnswerTable& table = *page.pTable;
        if (form.bKept && !first.needs.word) {
            return RefuseUnknown(page, key, origin);
        }
        const auto picked = std::find_if(table.keys.begin(), table.keys.end(), [&](const AnswerKey& row) {
            return form.strWord == row.word && AcceptsValue(row, fields.front());
        });
        if (picked == table.keys.end()) {
            return Refuse(page, key, origin,
                          L"\"" + fields.front() + L"\" is none of its values. Known are: " +
                              Choices(table, first) + L".");
        }
        if (picked->kind == AnswerKind::List && fields.size() != picked->fields.size()) {
            return Refuse(page, key, origin,
                          L"The key has " + NumberText(static_cast<long long>(picked->fields.size())) +
                              L" values, each in quotes and with commas between them, but " +
                              NumberText(static_cast<long long>(fields.size())) + L" stand here.");
        }
        if (!form.bLiteral) {
            MakePathsFull(*picked, fields);
        }
        const auto place =
            std::upper_bound(page.entries.begin(), page.entries.end(), EntryOrder(table, *picked),
                             [&table](std::size_t wanted, const PageAnswer& answer) {
                                 return wanted < EntryOrder(table, *answer.pKey);
                             });
        page.entries.insert(place, {&*picked, std::move(fields), form.bKept, form.bLiteral, origin});
        return true;
    }

    void MakePathsFull(const AnswerKey& key, std::vector<CString>& fields) const
    {
        for (std::size_t index = 0; index < fields.size(); ++index) {
            if (IsPathField(key, index)) {
                fields[index] = ResolveAnswerPath({m_folder, CString()}, fields[index]);
            }
        }
    }

    // Products are named without regard to case.
    struct PlaceLess
    {
        bool operator()(const std::pair<CString, CString>& left,
                        const std::pair<CString, CString>& right) const
        {
            const int section = left.first.Compare(right.first);
            return section != 0 ? section < 0 : left.second.CompareNoCase(right.second) < 0;
        }
    };

    AnswerTables m_tables;
    CString m_folder;
    std::vector<PageAnswers>& m_sections;
    AnswersError& m_error;
    std::map<std::pair<CString, CString>, std::size_t, PlaceLess> m_places;
    std::map<CString, AnswerOrigin, CompareNoCaseLess> m_lines; // of the keys that count once
};

} // namespace

bool JoinAnswers(const AnswerSources& sources, CAnswers& answers, AnswersError& error)
{
    answers = CAnswers();
    error = AnswersError();
    CSectionsMaker file(sources.tables, sources.strFileFolder, answers.fileSections, error);
    for (const AnswerSection& section : sources.file.sections) {
        if (!file.AddSection(section.strName, section.strProduct, {sources.strFile, section.nLine})) {
            return false;
        }
        for (const AnswerLine& answer : section.answers) {
            if (!file.Add(section.strName, section.strProduct, answer.strKey, answer.fields,
                          {sources.strFile, answer.nLine})) {
                return false;
            }
        }
    }
    CSectionsMaker line(sources.tables, sources.strCurrentFolder, answers.lineSections, error);
    // --set begin.location is the more exact word of the two, and wins over --out.
    const bool setsLocation = std::any_of(
        sources.line.answers.begin(), sources.line.answers.end(), [](const CommandLineAnswer& answer) {
            return answer.strPage == L"begin" && AnswerKeyForm(answer.strKey).strWord == L"location";
        });
    if (!sources.line.strOut.IsEmpty() && !setsLocation &&
        !line.Add(L"begin", CString(), L"location", {sources.line.strOut}, {L"--out", 0})) {
        return false;
    }
    for (const CommandLineAnswer& answer : sources.line.answers) {
        std::vector<CString> fields = {answer.strValue};
        const PageAnswerTable* table = FindAnswerTable(sources.tables, answer.strPage);
        if (table && IsListKey(*table, AnswerKeyForm(answer.strKey).strWord)) {
            const CString complaint = ParseAnswerValue(answer.strValue, fields);
            if (!complaint.IsEmpty()) {
                error = {L"--set", 0, answer.strPage + L"." + answer.strKey, complaint};
                return false;
            }
        }
        if (!line.Add(answer.strPage, answer.strProduct, answer.strKey, fields, {L"--set", 0})) {
            return false;
        }
    }
    return true;
}

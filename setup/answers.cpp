#include "setup/answers.h"

#include "base/path_text.h"

#include <algorithm>

namespace {

CString Choices(const AnswerKey& key)
{
    if (key.kind == AnswerKind::Check) {
        return L"yes, no";
    }
    CString list;
    for (const AnswerKey& row : AnswerKeys()) {
        if (CString(row.section) == key.section && CString(row.word) == key.word) {
            list += (list.IsEmpty() ? CString() : CString(L", ")) + row.choice;
        }
    }
    return list;
}

CString KnownSections()
{
    CString list;
    for (const PageRow& page : PAGE_TABLE) {
        if (page.section) {
            list += (list.IsEmpty() ? CString() : CString(L", ")) + page.section;
        }
    }
    return list;
}

// The words of a section, for the complaint about an unknown one.
CString KnownKeys(const PageRow& page)
{
    CString list;
    const wchar_t* last = L"";
    for (const AnswerKey& row : AnswerKeys()) {
        if (CString(row.section) == page.section && CString(row.word) != last) {
            last = row.word;
            list += CString(row.word) + L", ";
        }
    }
    for (const AnswerBox& row : AnswerBoxes()) {
        if (CString(row.section) == page.section && row.kind == BoxKind::Question) {
            list += CString(QUESTION_PREFIX) + row.role + L", ";
        }
    }
    return list + LEAVE_KEY;
}

// What a row of a word says to a value: any text, one choice, or yes and no.
bool TakesValue(const AnswerKey& row, const CString& value)
{
    switch (row.kind) {
    case AnswerKind::Radio:
    case AnswerKind::Entry:
        return value == row.choice;
    case AnswerKind::Check:
        return value == L"yes" || value == L"no";
    default:
        return true;
    }
}

// Joins one answer after the other; a later one of the same key wins over an earlier one.
class CAnswersJoiner
{
public:
    CAnswersJoiner(CAnswers& answers, AnswersError& error) : m_answers(answers), m_error(error) {}

    bool AddSection(const CString& section, const AnswerOrigin& origin)
    {
        return PageOf(section, origin) != nullptr;
    }

    bool Add(const CString& section, const CString& key, const CString& value, const AnswerOrigin& origin,
             const CString& folder)
    {
        PageAnswers* page = PageOf(section, origin);
        if (!page) {
            return false;
        }
        if (key == LEAVE_KEY) {
            return AddLeave(*page, value, origin);
        }
        const int prefix = TextLength(QUESTION_PREFIX);
        if (key.Left(prefix) == QUESTION_PREFIX) {
            return AddQuestion(*page, key, key.Mid(prefix), value, origin);
        }
        return AddEntry(*page, key, value, origin, folder);
    }

private:
    bool Refuse(const CString& key, const AnswerOrigin& origin, const CString& reason)
    {
        m_error = {origin.strSource, origin.nLine, key, reason};
        return false;
    }

    PageAnswers* PageOf(const CString& section, const AnswerOrigin& origin)
    {
        for (PageAnswers& page : m_answers.pages) {
            if (section == page.pPage->section) {
                return &page;
            }
        }
        const PageRow* known = FindPageOfSection(section);
        if (!known) {
            Refuse(CString(), origin,
                   L"There is no page \"" + section + L"\". Known are: " + KnownSections() + L".");
            return nullptr;
        }
        m_answers.pages.push_back({known, origin, {}, {}, false, {}});
        return &m_answers.pages.back();
    }

    bool AddLeave(PageAnswers& page, const CString& value, const AnswerOrigin& origin)
    {
        if (value != L"next" && value != L"cancel") {
            return Refuse(Named(page, LEAVE_KEY), origin,
                          L"\"" + value + L"\" is not a way to leave a page. Known are: next, cancel.");
        }
        page.bCancel = value == L"cancel";
        page.leaveOrigin = origin;
        return true;
    }

    bool AddQuestion(PageAnswers& page, const CString& key, const CString& role, const CString& value,
                     const AnswerOrigin& origin)
    {
        const AnswerBox* box = nullptr;
        for (const AnswerBox& row : AnswerBoxes()) {
            if (row.kind == BoxKind::Question && CString(row.section) == page.pPage->section &&
                role == row.role) {
                box = &row;
            }
        }
        if (!box) {
            return RefuseUnknown(page, key, origin);
        }
        if (value != L"yes" && value != L"no") {
            return Refuse(Named(page, key), origin,
                          L"\"" + value + L"\" doesn't answer a question. Known are: yes, no.");
        }
        std::erase_if(page.questions, [box](const QuestionAnswer& answer) { return answer.pBox == box; });
        page.questions.push_back({box, IsYes(value), origin});
        return true;
    }

    bool AddEntry(PageAnswers& page, const CString& key, const CString& value, const AnswerOrigin& origin,
                  const CString& folder)
    {
        const AnswerKey* known = nullptr;
        const AnswerKey* picked = nullptr;
        for (const AnswerKey& row : AnswerKeys()) {
            if (CString(row.section) == page.pPage->section && key == row.word) {
                known = &row;
                if (TakesValue(row, value)) {
                    picked = &row;
                }
            }
        }
        if (!known) {
            return RefuseUnknown(page, key, origin);
        }
        if (!picked) {
            return Refuse(Named(page, key), origin,
                          L"\"" + value + L"\" is none of its values. Known are: " + Choices(*known) + L".");
        }
        std::erase_if(page.entries, [&key](const PageAnswer& answer) { return key == answer.pKey->word; });
        const CString entered = picked->kind == AnswerKind::Path ? ResolveAnswerPath(folder, value) : value;
        // The rows lie in one array, so their addresses are the order of entry.
        const auto place = std::find_if(page.entries.begin(), page.entries.end(),
                                        [picked](const PageAnswer& answer) { return answer.pKey > picked; });
        page.entries.insert(place, {picked, entered, origin});
        return true;
    }

    bool RefuseUnknown(const PageAnswers& page, const CString& key, const AnswerOrigin& origin)
    {
        return Refuse(Named(page, key), origin,
                      L"The page has no such key. Known are: " + KnownKeys(*page.pPage) + L".");
    }

    static CString Named(const PageAnswers& page, const CString& key)
    {
        return CString(page.pPage->section) + L"." + key;
    }

    CAnswers& m_answers;
    AnswersError& m_error;
};

bool IsDriveLetter(wchar_t character)
{
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

// Length of what ".." can't climb over: "\\server\share\", "C:\". 0 for a path without a root.
int RootLength(const CString& path)
{
    if (path.Left(2) == L"\\\\") {
        const int server = path.Find(L'\\', 2);
        const int share = server < 0 ? -1 : path.Find(L'\\', server + 1);
        return share < 0 ? path.GetLength() : share + 1;
    }
    const bool drive = path.GetLength() >= 3 && IsDriveLetter(path[0]) && path[1] == L':' && path[2] == L'\\';
    return drive ? 3 : 0;
}

// The part that ".." leaves goes, with the empty parts behind it.
void DropLastPart(std::vector<CString>& parts)
{
    while (!parts.empty() && parts.back().IsEmpty()) {
        parts.pop_back();
    }
    if (!parts.empty()) {
        parts.pop_back();
    }
}

// Takes "." and ".." out of a path with a root; the root stays. Two backslashes have an empty part between them, and so
// has a closing one behind it.
CString CollapseDots(const CString& path)
{
    const int root = RootLength(path);
    const bool onlyRoot = root == path.GetLength();
    std::vector<CString> parts;
    for (int start = root; !onlyRoot && start <= path.GetLength();) {
        const int found = path.Find(L'\\', start);
        const int end = found < 0 ? path.GetLength() : found;
        const CString part = path.Mid(start, end - start);
        start = end + 1;
        if (part == L"..") {
            DropLastPart(parts);
        } else if (part != L".") {
            parts.push_back(part);
        }
    }
    CString result = path.Left(root);
    for (std::size_t index = 0; index < parts.size(); ++index) {
        result += (index == 0 ? CString() : CString(L"\\")) + parts[index];
    }
    return result;
}

} // namespace

bool IsYes(const CString& value)
{
    return value == L"yes";
}

const PageAnswers* CAnswers::Find(const CString& section) const
{
    for (const PageAnswers& page : pages) {
        if (section == page.pPage->section) {
            return &page;
        }
    }
    return nullptr;
}

bool JoinAnswers(const AnswerSources& sources, CAnswers& answers, AnswersError& error)
{
    answers = CAnswers();
    error = AnswersError();
    CAnswersJoiner joiner(answers, error);
    for (const AnswerSection& section : sources.file.sections) {
        if (!joiner.AddSection(section.strName, {sources.strFile, section.nLine})) {
            return false;
        }
        for (const AnswerLine& answer : section.answers) {
            if (!joiner.Add(section.strName, answer.strKey, answer.strValue, {sources.strFile, answer.nLine},
                            sources.strFileFolder)) {
                return false;
            }
        }
    }
    if (!sources.line.strOut.IsEmpty() &&
        !joiner.Add(L"begin", L"location", sources.line.strOut, {L"--out", 0}, sources.strCurrentFolder)) {
        return false;
    }
    for (const CommandLineAnswer& answer : sources.line.answers) {
        if (!joiner.Add(answer.strPage, answer.strKey, answer.strValue, {L"--set", 0},
                        sources.strCurrentFolder)) {
            return false;
        }
    }
    return true;
}

bool CheckPagesReached(const CAnswers& answers, const std::vector<CString>& pages, AnswersError& error)
{
    for (const PageAnswers& page : answers.pages) {
        const bool shown = std::find(pages.begin(), pages.end(), WizardExport(*page.pPage)) != pages.end();
        if (!shown && !page.pPage->IsOutcome()) {
            error = {page.origin.strSource, page.origin.nLine, CString(),
                     CString(L"The page \"") + page.pPage->section +
                         L"\" isn't shown in this run. Take its answers out, or use media whose flow has the "
                         L"page."};
            return false;
        }
    }
    return true;
}

AnswersError RefusedAnswer(const PageAnswers& page, const wchar_t* key, const AnswerOrigin& origin,
                           const CString& reason)
{
    return {origin.strSource, origin.nLine, CString(page.pPage->section) + L"." + key, reason};
}

CString ResolveAnswerPath(const CString& folder, const CString& path)
{
    CString text = path;
    text.Replace(L'/', L'\\');
    if (text.IsEmpty()) {
        return text;
    }
    if (text.GetLength() >= 2 && text[1] == L':' && RootLength(text) == 0) {
        return text;
    }
    if (RootLength(text) == 0) {
        // "\x" counts from the root of the folder's drive or share.
        const bool fromRoot = text[0] == L'\\';
        text = fromRoot ? WithClosingBackslash(folder.Left(RootLength(folder))) + text.Mid(1)
                        : WithClosingBackslash(folder) + text;
    }
    return CollapseDots(text);
}

bool MatchesFormat(const CString& format, const CString& text)
{
    const int hole = format.Find(L"%s");
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

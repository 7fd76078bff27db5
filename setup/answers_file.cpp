#include "setup/answers_file.h"

#include "base/ascii.h"

#include <map>
#include <string_view>
#include <utility>

namespace {

constexpr wchar_t HEADER_WORD[] = L"rollout-answers";
constexpr wchar_t HEADER_VERSION[] = L"1";
constexpr wchar_t BLANKS[] = L" \t";

CString TrimBlanks(CString text)
{
    return text.Trim(BLANKS);
}

bool IsSmallLetter(wchar_t character)
{
    return character >= L'a' && character <= L'z';
}

bool IsWord(const CString& text)
{
    if (text.IsEmpty() || !IsSmallLetter(text[0])) {
        return false;
    }
    for (int index = 1; index < text.GetLength(); ++index) {
        const wchar_t character = text[index];
        if (!IsSmallLetter(character) && !IsAsciiDigit(character) && character != L'_') {
            return false;
        }
    }
    return true;
}

bool IsKey(const CString& text)
{
    for (int start = 0;;) {
        const int dot = text.Find(L'.', start);
        if (!IsWord(dot < 0 ? text.Mid(start) : text.Mid(start, dot - start))) {
            return false;
        }
        if (dot < 0) {
            return true;
        }
        start = dot + 1;
    }
}

bool HoldsControlCharacter(const CString& text)
{
    for (int index = 0; index < text.GetLength(); ++index) {
        const wchar_t character = text[index];
        if ((character < 0x20 && character != L'\t') || character == 0x7F) {
            return true;
        }
    }
    return false;
}

// How many bytes a well-formed sequence at the start of `bytes` has; 0 when it is broken. Longer forms of a short
// character, surrogates and code points above U+10FFFF are broken.
std::size_t Utf8SequenceLength(std::string_view bytes)
{
    const auto at = [&bytes](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
    const unsigned lead = at(0);
    if (lead < 0x80) {
        return 1;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) {
        return 0;
    }
    for (std::size_t index = 1; index < length; ++index) {
        if ((at(index) & 0xC0) != 0x80) {
            return 0;
        }
    }
    const unsigned second = at(1);
    const bool outside = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                         (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return outside ? 0 : length;
}

bool IsUtf8(std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::size_t length = Utf8SequenceLength(bytes);
        if (length == 0) {
            return false;
        }
        bytes.remove_prefix(length);
    }
    return true;
}

// One function a rule of the grammar; each returns the complaint about its line, empty when there is none.
class CAnswersParser
{
public:
    explicit CAnswersParser(AnswersFile& file) : m_file(file) {}

    bool Parse(std::string_view bytes, AnswersError& error)
    {
        if (bytes.size() > LONGEST_ANSWERS_FILE) {
            error.strReason = L"The file is larger than 16 MB, so it is not an answers file.";
            return false;
        }
        if (bytes.substr(0, 2) == "\xFF\xFE" || bytes.substr(0, 2) == "\xFE\xFF") {
            error.strReason = L"The file is UTF-16. Save it as UTF-8.";
            return false;
        }
        if (bytes.substr(0, 3) == "\xEF\xBB\xBF") {
            bytes.remove_prefix(3);
        }
        while (!bytes.empty()) {
            const std::size_t end = bytes.find('\n');
            std::string_view line = bytes.substr(0, end);
            bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
            if (!line.empty() && line.back() == '\r') {
                line.remove_suffix(1);
            }
            ++m_nLine;
            if (Fails(ParseLine(line), error)) {
                return false;
            }
        }
        CloseComments();
        return m_bHeaderSeen || !Fails(MissingHeader(), error);
    }

private:
    bool Fails(const CString& complaint, AnswersError& error) const
    {
        if (complaint.IsEmpty()) {
            return false;
        }
        error.nLine = m_nLine;
        error.strKey = m_strKey;
        error.strReason = complaint;
        return true;
    }

    CString ParseLine(std::string_view bytes)
    {
        m_strKey.Empty();
        if (!IsUtf8(bytes)) {
            return L"The line isn't UTF-8 text. Save the file as UTF-8.";
        }
        const CString line = TrimBlanks(TextFromUtf8(bytes.data(), bytes.size()));
        if (HoldsControlCharacter(line)) {
            return L"The line holds a control character. Only printable text and tabs may stand in the file.";
        }
        if (line.IsEmpty()) {
            CloseComments();
            return CString();
        }
        if (line[0] == L'#') {
            m_comments.push_back(TrimBlanks(line.Mid(1)));
            return CString();
        }
        if (!m_bHeaderSeen) {
            return ParseHeader(line);
        }
        return line[0] == L'[' ? ParseSection(line) : ParseAnswer(line);
    }

    // Comments that an empty line parts from what follows belong to what stands before.
    void CloseComments()
    {
        std::vector<CString>& owner =
            m_file.sections.empty() ? m_file.comments : m_file.sections.back().closingComments;
        owner.insert(owner.end(), m_comments.begin(), m_comments.end());
        m_comments.clear();
    }

    static CString MissingHeader()
    {
        return L"The first line that is not a comment must be \"rollout-answers 1\".";
    }

    CString ParseHeader(const CString& line)
    {
        const int blank = line.FindOneOf(BLANKS);
        if ((blank < 0 ? line : line.Left(blank)) != HEADER_WORD) {
            return MissingHeader();
        }
        const CString version = blank < 0 ? CString() : TrimBlanks(line.Mid(blank));
        if (version != HEADER_VERSION) {
            return L"The file's version is \"" + version + L"\"; this program reads version 1.";
        }
        m_bHeaderSeen = true;
        CloseComments();
        return CString();
    }

    CString ParseSection(const CString& line)
    {
        if (line.GetLength() < 2 || line[line.GetLength() - 1] != L']') {
            return L"A section is a word in square brackets on a line of its own, such as [begin].";
        }
        const CString title = TrimBlanks(line.Mid(1, line.GetLength() - 2));
        const int quote = title.Find(L'"');
        const CString name = quote < 0 ? title : TrimBlanks(title.Left(quote));
        if (!IsWord(name)) {
            return L"\"" + name +
                   L"\" is not a section name: a word of small letters, digits and underscores.";
        }
        CString product;
        if (quote >= 0) {
            std::vector<CString> fields;
            const CString complaint = ParseAnswerValue(title.Mid(quote), fields);
            if (!complaint.IsEmpty()) {
                return complaint;
            }
            if (fields.size() != 1 || fields[0].IsEmpty()) {
                return L"Behind the page one product stands in quotes, such as [notices \"Product\"].";
            }
            product = fields[0];
        }
        const auto [place, isNew] = m_sectionLines.emplace(SectionTitle(name, product), m_nLine);
        if (!isNew) {
            return L"The section " + SectionTitle(name, product) + L" stands in line " +
                   NumberText(place->second) + L" already. Keep all answers of a page together.";
        }
        m_file.sections.push_back({name, product, m_nLine, {}, std::move(m_comments), {}});
        m_comments.clear();
        return CString();
    }

    CString ParseAnswer(const CString& line)
    {
        const int equals = line.Find(L'=');
        if (equals < 0) {
            return L"The line is neither a comment (#), a section ([page]) nor an answer (key = value).";
        }
        const CString key = TrimBlanks(line.Left(equals));
        if (!IsKey(key)) {
            return L"\"" + key +
                   L"\" is not a key: words of small letters, digits and underscores, joined by dots.";
        }
        if (m_file.sections.empty()) {
            return L"The answer \"" + key +
                   L"\" stands before the first section, so no page is named for it.";
        }
        AnswerSection& section = m_file.sections.back();
        m_strKey = section.strName + L'.' + key;
        AnswerLine answer{key, {}, m_nLine, std::move(m_comments)};
        m_comments.clear();
        const CString complaint = ParseAnswerValue(line.Mid(equals + 1), answer.fields);
        if (complaint.IsEmpty()) {
            section.answers.push_back(std::move(answer));
        }
        return complaint;
    }

    AnswersFile& m_file;
    std::map<CString, int, CompareNoCaseLess> m_sectionLines;
    std::vector<CString> m_comments; // above what comes next
    CString m_strKey;                // of the line being read
    int m_nLine = 0;
    bool m_bHeaderSeen = false;
};

// Reads the quoted field that begins at `index`, which then stands behind it. The empty text, or a complaint.
CString ParseQuoted(const CString& text, int& index, CString& field)
{
    int run = ++index; // of characters that stand for themselves
    for (; index < text.GetLength(); ++index) {
        if (text[index] != L'"') {
            continue;
        }
        field.Append(text.GetString() + run, index - run);
        if (text[index + 1] != L'"') { // the closing zero ends the look-ahead
            ++index;
            return CString();
        }
        run = ++index; // two quotes stand for one
    }
    return L"The closing quote is missing.";
}

} // namespace

CString AnswersError::Text() const
{
    CString text = strSource;
    if (nLine > 0) {
        text += L"(" + NumberText(nLine) + L")";
    }
    if (!strKey.IsEmpty()) {
        text += (text.IsEmpty() ? CString() : CString(L": ")) + strKey;
    }
    return (text.IsEmpty() ? CString() : text + L": ") + strReason;
}

bool ParseAnswersFile(const char* bytes, std::size_t length, AnswersFile& file, AnswersError& error)
{
    file = AnswersFile();
    error = AnswersError();
    return CAnswersParser(file).Parse({bytes, length}, error);
}

CString ParseAnswerValue(const CString& text, std::vector<CString>& fields)
{
    const CString value = TrimBlanks(text);
    fields.clear();
    if (value.IsEmpty() || value[0] != L'"') {
        fields.push_back(value);
        return CString();
    }
    for (int index = 0;;) {
        CString field;
        const CString complaint = ParseQuoted(value, index, field);
        if (!complaint.IsEmpty()) {
            return complaint;
        }
        fields.push_back(field);
        const CString rest = TrimBlanks(value.Mid(index));
        if (rest.IsEmpty()) {
            return CString();
        }
        index = value.Find(L'"', index);
        if (rest[0] != L',' || TrimBlanks(rest.Mid(1)).Find(L'"') != 0) {
            return L"Text stands behind the closing quote. A quote inside a quoted value is written twice, "
                   L"and "
                   L"several values are quoted each, with commas between them.";
        }
    }
}

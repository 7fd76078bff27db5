#include "base/number_text.h"
#include "setup/answers_file.h"

#include <algorithm>

namespace {

constexpr wchar_t LINE_END[] = L"\r\n";

bool IsSurrogate(wchar_t character, wchar_t first)
{
    return (character & 0xFC00) == first;
}

// What UTF-8 or a line can't hold; -1 when all of the text can stand in a file.
int FindUnwritable(const CString& text)
{
    for (int index = 0; index < text.GetLength(); ++index) {
        const wchar_t character = text[index];
        if ((character < 0x20 && character != L'\t') || character == 0x7F) {
            return index;
        }
        if (IsSurrogate(character, 0xD800) && IsSurrogate(text[index + 1], 0xDC00)) {
            ++index; // the closing zero ends the look-ahead
        } else if (IsSurrogate(character, 0xD800) || IsSurrogate(character, 0xDC00)) {
            return index;
        }
    }
    return -1;
}

CString Quoted(const CString& field)
{
    CString text = field;
    text.Replace(L"\"", L"\"\"");
    return L"\"" + text + L"\"";
}

CString WrittenValue(const std::vector<CString>& fields)
{
    const CString& first = fields.front();
    CString trimmed = first;
    if (fields.size() == 1 && first.Find(L'"') != 0 && trimmed.Trim(L" \t") == first) {
        return first;
    }
    CString value;
    for (const CString& field : fields) {
        value += (value.IsEmpty() ? CString() : CString(L", ")) + Quoted(field);
    }
    return value;
}

// A comment is for people: what can't stand in a line becomes a blank.
CString WrittenComments(const std::vector<CString>& comments)
{
    CString lines;
    for (CString comment : comments) {
        for (int bad = FindUnwritable(comment); bad >= 0; bad = FindUnwritable(comment)) {
            comment.SetAt(bad, L' ');
        }
        comment.Trim(L" \t");
        lines += (comment.IsEmpty() ? CString(L"#") : L"# " + comment) + LINE_END;
    }
    return lines;
}

bool Refuse(const CString& key, const CString& text, AnswersError& error)
{
    const int bad = FindUnwritable(text);
    if (bad < 0) {
        return false;
    }
    CString number;
    for (unsigned int code = text[bad], digit = 0; digit < 4; ++digit, code >>= 4) {
        number.Insert(0, CString(L"0123456789ABCDEF"[code & 15]));
    }
    error = AnswersError{CString(), 0, key,
                         L"The text holds the character U+" + number +
                             L", which an answers file can't hold. Enter it without that character."};
    return true;
}

} // namespace

CString SectionTitle(const CString& section, const CString& product)
{
    return L"[" + section + (product.IsEmpty() ? CString() : L" " + Quoted(product)) + L"]";
}

bool CanBeWritten(const CString& section, const AnswerLine& answer, AnswersError& error)
{
    return std::none_of(answer.fields.begin(), answer.fields.end(), [&](const CString& field) {
        return Refuse(section + L"." + answer.strKey, field, error);
    });
}

bool WriteAnswersFile(const AnswersFile& file, CString& text, AnswersError& error)
{
    text = CString(L"rollout-answers 1") + LINE_END + WrittenComments(file.comments);
    for (const AnswerSection& section : file.sections) {
        if (Refuse(section.strName, section.strProduct, error)) {
            return false;
        }
        text += LINE_END + WrittenComments(section.comments) +
                SectionTitle(section.strName, section.strProduct) + LINE_END;
        for (const AnswerLine& answer : section.answers) {
            if (!CanBeWritten(section.strName, answer, error)) {
                return false;
            }
            const CString value = WrittenValue(answer.fields);
            text += WrittenComments(answer.comments) + answer.strKey + (value.IsEmpty() ? L" =" : L" = ") +
                    value + LINE_END;
        }
        text += WrittenComments(section.closingComments);
    }
    return true;
}

#include "slimhtml/html_tokenizer.h"

#include "slimhtml/html_entities.h"

#include <algorithm>

namespace {

bool IsAsciiLetter(wchar_t unit) noexcept
{
    return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

bool IsHtmlSpace(wchar_t unit) noexcept
{
    return unit == L' ' || unit == L'\t' || unit == L'\n' || unit == L'\r' || unit == L'\f';
}

wchar_t LowerAscii(wchar_t unit) noexcept
{
    return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + (L'a' - L'A')) : unit;
}

CString LowerText(const wchar_t* text, int length)
{
    CString name;
    for (int index = 0; index < length; ++index) {
        name += LowerAscii(text[index]);
    }
    return name;
}

void AppendPoint(CString& text, std::uint32_t point)
{
    if (point < 0x10000) {
        text += static_cast<wchar_t>(point);
        return;
    }
    text += static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
    text += static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
}

CString ResolveReferences(const wchar_t* text, int length)
{
    CString resolved;
    int plainFrom = 0;
    for (int at = 0; at < length;) {
        const HtmlReference reference =
            text[at] == L'&' ? ReadHtmlReference(text + at, length - at) : HtmlReference();
        if (reference.length == 0) {
            ++at;
            continue;
        }
        resolved.Append(text + plainFrom, at - plainFrom);
        AppendPoint(resolved, reference.point);
        at += reference.length;
        plainFrom = at;
    }
    resolved.Append(text + plainFrom, length - plainFrom);
    return resolved;
}

} // namespace

const CString* HtmlToken::FindAttribute(const wchar_t* attribute) const
{
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [attribute](const HtmlAttribute& row) { return row.name == attribute; });
    return found == attributes.end() ? nullptr : &found->value;
}

CHtmlTokenizer::CHtmlTokenizer(const wchar_t* text, int length) : m_text(text), m_length(length)
{
    for (int at = 0; at < length; ++at) {
        if (text[at] == L'>') {
            m_lastGreater = at;
        } else if (text[at] == L'"') {
            m_lastDoubleQuote = at;
        } else if (text[at] == L'\'') {
            m_lastSingleQuote = at;
        }
    }
}

HtmlToken CHtmlTokenizer::Next()
{
    while (m_at < m_length && SkipDeclaration()) {
    }
    HtmlToken token;
    if (m_at >= m_length) {
        return token;
    }
    if (BeginsTag(m_at) && ReadTag(token)) {
        return token;
    }
    const int first = m_at++;
    while (m_at < m_length && m_text[m_at] != L'<') {
        ++m_at;
    }
    token.kind = HtmlTokenKind::Text;
    token.text = m_text + first;
    token.length = m_at - first;
    return token;
}

void CHtmlTokenizer::SkipElement(const CString& name)
{
    if (std::find(m_endless.begin(), m_endless.end(), name) != m_endless.end()) {
        return;
    }
    const int nameLength = name.GetLength();
    for (int at = m_at; at + 2 + nameLength < m_length; ++at) {
        if (m_text[at] == L'<' && m_text[at + 1] == L'/' && LowerText(m_text + at + 2, nameLength) == name) {
            const int end = FindAfter(at, L'>');
            if (end >= 0) {
                m_at = end + 1;
                return;
            }
        }
    }
    m_endless.push_back(name);
}

// Leaves out a comment or declaration at the current place. False when there is none.
bool CHtmlTokenizer::SkipDeclaration()
{
    const wchar_t* here = m_text + m_at;
    const int left = m_length - m_at;
    if (left < 2 || here[0] != L'<' || (here[1] != L'!' && here[1] != L'?')) {
        return false;
    }
    if (m_bCommentsEnd && left >= 4 && here[1] == L'!' && here[2] == L'-' && here[3] == L'-') {
        // "<!-->" is a whole comment, so the search starts at the dashes that open it.
        for (int at = m_at + 2; at + 2 < m_length; ++at) {
            if (m_text[at] == L'-' && m_text[at + 1] == L'-' && m_text[at + 2] == L'>') {
                m_at = at + 3;
                return true;
            }
        }
        m_bCommentsEnd = false;
    }
    const int end = FindAfter(m_at, L'>');
    if (end < 0) {
        return false;
    }
    m_at = end + 1;
    return true;
}

bool CHtmlTokenizer::BeginsTag(int at) const
{
    if (m_text[at] != L'<' || m_lastGreater < at || at + 1 >= m_length) {
        return false;
    }
    const int name = m_text[at + 1] == L'/' ? at + 2 : at + 1;
    return name < m_length && IsAsciiLetter(m_text[name]);
}

bool CHtmlTokenizer::ReadTag(HtmlToken& token)
{
    const bool bEndTag = m_text[m_at + 1] == L'/';
    const int first = m_at + (bEndTag ? 2 : 1);
    int at = first;
    while (at < m_length && !IsHtmlSpace(m_text[at]) && m_text[at] != L'>' && m_text[at] != L'/') {
        ++at;
    }
    const int behindName = at;
    if (!ReadAttributes(at, token)) {
        // Once is enough: from here on tags end at their first ">", or pages of such quotes would take forever.
        m_bQuotesHold = false;
        token.attributes.clear();
        at = behindName;
        if (!ReadAttributes(at, token)) {
            return false;
        }
    }
    token.kind = bEndTag ? HtmlTokenKind::EndTag : HtmlTokenKind::StartTag;
    token.name = LowerText(m_text + first, behindName - first);
    m_at = at;
    return true;
}

// Reads up to and with the ">". False when there is none.
bool CHtmlTokenizer::ReadAttributes(int& at, HtmlToken& token) const
{
    for (;;) {
        while (at < m_length && (IsHtmlSpace(m_text[at]) || m_text[at] == L'/')) {
            ++at;
        }
        if (at >= m_length) {
            return false;
        }
        if (m_text[at] == L'>') {
            ++at;
            return true;
        }
        const int first = at++;
        while (at < m_length && !IsHtmlSpace(m_text[at]) && m_text[at] != L'>' && m_text[at] != L'/' &&
               m_text[at] != L'=') {
            ++at;
        }
        HtmlAttribute attribute;
        attribute.name = LowerText(m_text + first, at - first);
        while (at < m_length && IsHtmlSpace(m_text[at])) {
            ++at;
        }
        if (at < m_length && m_text[at] == L'=') {
            ++at;
            attribute.value = ReadValue(at);
        }
        token.attributes.push_back(attribute);
    }
}

CString CHtmlTokenizer::ReadValue(int& at) const
{
    while (at < m_length && IsHtmlSpace(m_text[at])) {
        ++at;
    }
    if (at < m_length && m_bQuotesHold && (m_text[at] == L'"' || m_text[at] == L'\'')) {
        const wchar_t quote = m_text[at];
        const int lastQuote = quote == L'"' ? m_lastDoubleQuote : m_lastSingleQuote;
        if (lastQuote > at) {
            const int first = at + 1;
            const int end = FindAfter(first, quote);
            at = end + 1;
            return ResolveReferences(m_text + first, end - first);
        }
    }
    int first = at;
    while (at < m_length && !IsHtmlSpace(m_text[at]) && m_text[at] != L'>') {
        ++at;
    }
    int end = at;
    // Quotes that don't hold are no part of the value.
    while (first < end && (m_text[first] == L'"' || m_text[first] == L'\'')) {
        ++first;
    }
    while (end > first && (m_text[end - 1] == L'"' || m_text[end - 1] == L'\'')) {
        --end;
    }
    return ResolveReferences(m_text + first, end - first);
}

int CHtmlTokenizer::FindAfter(int at, wchar_t unit) const
{
    if (unit == L'>' && m_lastGreater < at) {
        return -1;
    }
    while (at < m_length && m_text[at] != unit) {
        ++at;
    }
    return at < m_length ? at : -1;
}

// Cuts HTML into texts and tags. Reads on where markup is broken, and takes time linear in the length of the text.
//
//   comment  "<!--" ... "-->"          left out; also "<!" ... ">" and "<?" ... ">"
//   tag      "<" name attributes ">"   or "</" name ... ">"; the name starts with a letter
//   text     everything else, also a "<" with which no tag begins or whose tag never ends
#pragma once

#include "base/string.h"

#include <vector>

struct HtmlAttribute
{
    CString name;  // lower case
    CString value; // character references resolved; empty for a name alone
};

enum class HtmlTokenKind
{
    Text,
    StartTag,
    EndTag,
    End
};

struct HtmlToken
{
    HtmlTokenKind kind = HtmlTokenKind::End;
    CString name; // of a tag, lower case
    std::vector<HtmlAttribute> attributes;
    const wchar_t* text =
        nullptr; // of a text, character references not resolved; a part of the tokenizer's text
    int length = 0;

    // The first attribute of that lower-case name; null when there is none.
    [[nodiscard]] const CString* FindAttribute(const wchar_t* attribute) const;
};

class CHtmlTokenizer
{
public:
    // The text must outlive the tokenizer.
    CHtmlTokenizer(const wchar_t* text, int length);

    [[nodiscard]] HtmlToken Next();
    // Leaves out everything up to and with the end tag of that name. Without one, nothing is left out: a broken page
    // then shows the style sheet rather than nothing at all.
    void SkipElement(const CString& name);

private:
    bool SkipDeclaration();
    bool ReadTag(HtmlToken& token);
    bool ReadAttributes(int& at, HtmlToken& token) const;
    CString ReadValue(int& at) const;
    bool BeginsTag(int at) const;
    int FindAfter(int at, wchar_t unit) const;

    const wchar_t* m_text;
    int m_length;
    int m_at = 0;
    int m_lastGreater = -1;     // index of the last ">"; behind it no tag can end
    int m_lastDoubleQuote = -1; // likewise for a quoted value
    int m_lastSingleQuote = -1;
    bool m_bQuotesHold = true;      // false once a quote swallowed the end of its tag
    bool m_bCommentsEnd = true;     // false once no "-->" was found
    std::vector<CString> m_endless; // names of elements for which no end tag is left
};

// The text form of an answers file, read and written.
//
//   file    = [ byte order mark ] { empty | comment } header { empty | comment | section | answer }
//   header  = "rollout-answers" "1"
//   comment = "#" anything                  a line of its own; a "#" inside a value is part of the value
//   section = "[" word [ quoted ] "]"       a page, and the product that it is for; each once
//   answer  = key "=" value                 whether a key may stand several times is for the page to say
//   key     = word { "." word }
//   word    = small letter { small letter | digit | "_" }
//   value   = bare | quoted { "," quoted }  one field, or several
//   bare    = the rest of the line without blanks at its ends; doesn't begin with a quote; may be empty
//   quoted  = quote { character | two quotes } quote      two quotes stand for one
//
// Lines end in LF or CR LF. The text is UTF-8 without control characters but the tab; blanks (space, tab) may stand
// around every sign above.
#pragma once

#include "base/string.h"

#include <cstddef>
#include <vector>

struct AnswerLine
{
    CString strKey;
    std::vector<CString> fields; // at least one, which may be empty
    int nLine = 0;               // from 1; 0 when it comes from no file
    std::vector<CString> comments;

    const CString& Value() const { return fields.front(); }
};

// Comments stand without "#", above what they belong to.
struct AnswerSection
{
    CString strName;
    CString strProduct; // empty: any product
    int nLine = 0;
    std::vector<AnswerLine> answers;
    std::vector<CString> comments;
    std::vector<CString> closingComments; // behind the last answer
};

struct AnswersFile
{
    std::vector<CString> comments;       // behind the header
    std::vector<AnswerSection> sections; // in the order of the file
};

// What is wrong with answers, and where. Line 0 when no line is to blame, key empty when no key is.
struct AnswersError
{
    CString strSource; // file, or "--set"
    int nLine = 0;
    CString strKey;    // with its section: "begin.name"
    CString strReason; // a sentence: what is wrong and what to do

    // "C:\answers.txt(12): begin.platform: ..."
    [[nodiscard]] CString Text() const;
};

// Room for 100,000 lines; a larger file is not an answers file.
constexpr std::size_t LONGEST_ANSWERS_FILE = 16 * 1024 * 1024;

// Reads the bytes of a file. False with `error` (all but its source) at the first fault.
[[nodiscard]] bool ParseAnswersFile(const char* bytes, std::size_t length, AnswersFile& file,
                                    AnswersError& error);

// Reads a value as it stands behind the "=". The empty text, or a complaint.
[[nodiscard]] CString ParseAnswerValue(const CString& text, std::vector<CString>& fields);

// Writes the text of a file that reads back equal but for line numbers, and in comments for blanks at their ends and
// control characters. False with `error` for a value or product that holds a character that no file can: the name of
// section and key, and the character's number.
[[nodiscard]] bool WriteAnswersFile(const AnswersFile& file, CString& text, AnswersError& error);

// Whether a file can hold all values of the answer; false with `error` as WriteAnswersFile.
[[nodiscard]] bool CanBeWritten(const CString& section, const AnswerLine& answer, AnswersError& error);

// "[notices]", "[notices \"Zolt Viewer\"]"
[[nodiscard]] CString SectionTitle(const CString& section, const CString& product);

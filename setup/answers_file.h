// The text form of an answers file, read and written.
//
//   file    = [ byte order mark ] { empty | comment } header { empty | comment | section | answer }
//   header  = "rollout-answers" "1"
//   comment = "#" anything                  a line of its own; a "#" inside a value is part of the value
//   section = "[" word "]"                  a page; each once
//   answer  = key "=" value                 each key once a section
//   key     = word { "." word }
//   word    = small letter { small letter | digit | "_" }
//   value   = bare | quoted
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
    CString strValue;
    int nLine = 0; // from 1; 0 when it comes from no file
};

struct AnswerSection
{
    CString strName;
    int nLine = 0;
    std::vector<AnswerLine> answers;
};

struct AnswersFile
{
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

// No file that a person or the wizard writes comes near; a larger one is not an answers file.
constexpr std::size_t LONGEST_ANSWERS_FILE = 1024 * 1024;

// Reads the bytes of a file. False with `error` (all but its source) at the first fault.
[[nodiscard]] bool ParseAnswersFile(const char* bytes, std::size_t length, AnswersFile& file,
                                    AnswersError& error);

// The text of a file that reads back equal (but for line numbers). Values must hold no control character but the tab.
CString WriteAnswersFile(const AnswersFile& file);

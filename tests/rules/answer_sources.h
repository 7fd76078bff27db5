// The sources of a run's answers, built up as prose, and what comes of joining them.
#pragma once

#include "setup/answers.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <string>

// The sources of a run, built up as prose.
struct Sources : AnswerSources
{
    Sources()
    {
        strFile = L"C:\\job\\answers.txt";
        strFileFolder = L"C:\\job";
        strCurrentFolder = L"D:\\here";
    }
    Sources& File(const std::string& text)
    {
        const std::string bytes = "rollout-answers 1\n" + text;
        AnswersError error;
        EXPECT_TRUE(ParseAnswersFile(bytes.data(), bytes.size(), file, error)) << Utf8(error.Text());
        return *this;
    }
    Sources& Set(const wchar_t* page, const wchar_t* key, const wchar_t* value)
    {
        line.answers.push_back({page, L"", key, value});
        return *this;
    }
    Sources& SetFor(const wchar_t* page, const wchar_t* product, const wchar_t* key, const wchar_t* value)
    {
        line.answers.push_back({page, product, key, value});
        return *this;
    }
    Sources& Tables(AnswerTables others)
    {
        tables = others;
        return *this;
    }
    Sources& Out(const wchar_t* folder)
    {
        line.strOut = folder;
        return *this;
    }
};

inline CAnswers Joined(const Sources& sources)
{
    CAnswers answers;
    AnswersError error;
    EXPECT_TRUE(JoinAnswers(sources, answers, error)) << Utf8(error.Text());
    return answers;
}

inline CString Refused(const Sources& sources)
{
    CAnswers answers;
    AnswersError error;
    EXPECT_FALSE(JoinAnswers(sources, answers, error));
    return error.Text();
}

// What joining a file's text with a command line says; the answers come too, as far as they are good.
inline AnswersError Join(const std::string& text, CAnswers& answers, const CommandLine& line = {})
{
    Sources sources;
    sources.File(text).line = line;
    AnswersError error;
    static_cast<void>(JoinAnswers(sources, answers, error));
    return error;
}

// The answers of a page, a line each: `file="C:\a.txt"`.
inline std::string Entries(const CAnswers& answers, const wchar_t* page, const AnswerProduct& product = {})
{
    std::string text;
    for (const PageAnswer& answer : answers.Find(page, product)->entries) {
        text += Utf8(answer.pKey->word) + "=" + Utf8(answer.QuotedFields()) + "\n";
    }
    return text;
}

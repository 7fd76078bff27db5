// The command line of Setup.exe.
//
//   line    = { option }
//   option  = "--media" PATH | "--answers" FILE | "--out" DIR | "--language" LOCALE | "--pictures" DIR
//           | "--log" FILE | "--record" FILE | "--with-location" | "--quiet-limit" SECONDS | "--set" page [ product ] "." key "=" value | "--check" | "--plan" FILE | "--help" | "-h" | "/?"
//
//           | "--verify" FOLDER | "--compare" FOLDER FOLDER | "--report" FILE
//
//   product = quote { character } quote
//
// Deployments are looked at with "--verify" or "--compare", which go with "--report" and the options of every run alone.
//
// A value stands in the next argument or behind "=" in the same one. "--set" may stand several times, once a key but for those of lists;
// all others once. "--help" wins over everything else that is well formed.
#pragma once

#include "base/string.h"

#include <vector>

// One "--set": the answer of a page's key, worded as in an answers file.
struct CommandLineAnswer
{
    CString strPage;    // the section's word
    CString strProduct; // empty: any
    CString strKey;     // may hold dots
    CString strValue;
};

struct CommandLine
{
    CString strMedia;
    CString strAnswers;
    CString strOut;
    CString strLanguage;
    CString strPictures;
    CString strLog;
    CString strQuietLimit;
    CString strRecord;      // where the answers of the run go
    CString strPlan;        // where the review goes, in place of a build
    CString strVerify;      // folder of the deployment that is held against its manifest
    CString strCompare;     // folder of the deployment that is held against another one
    CString strCompareWith; // and that of the other one
    CString strReport;      // where the result of that goes
    std::vector<CommandLineAnswer> answers;
    bool bCheck = false;
    bool bWithLocation = false; // the answers that are written hold the deployment's own place
    bool bHelp = false;

    // Seconds without a sign of life after which an unattended run is ended.
    [[nodiscard]] unsigned int QuietSeconds() const;
    // Only looks at deployments that stand: no media, no page, nothing built.
    [[nodiscard]] bool IsDeploymentCommand() const { return !strVerify.IsEmpty() || !strCompare.IsEmpty(); }
    // The deployments that such a command looks at.
    [[nodiscard]] std::vector<CString> FoldersToRead() const
    {
        return !strVerify.IsEmpty()    ? std::vector<CString>{strVerify}
               : !strCompare.IsEmpty() ? std::vector<CString>{strCompare, strCompareWith}
                                       : std::vector<CString>();
    }
    // False: the run ends where the build would begin.
    [[nodiscard]] bool Builds() const { return !bCheck && strPlan.IsEmpty(); }
    // With answers from anywhere the pages are walked without a person.
    [[nodiscard]] bool IsUnattended() const
    {
        return bCheck || !strAnswers.IsEmpty() || !answers.empty() || IsDeploymentCommand();
    }
};

// Reads the arguments behind the program's name. The empty text on success, otherwise what is wrong, a sentence.
[[nodiscard]] CString ParseCommandLine(const std::vector<CString>& arguments, CommandLine& line);

// What "--help" prints, and what follows the complaint about a bad command line.
CString CommandLineUsage();

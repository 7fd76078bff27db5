#include "setup/command_line.h"

#include "base/number_text.h"
#include "setup/answer_table.h"

namespace {

// Which runs an option is for.
enum class OptionUse
{
    Wizard,
    Deployments, // commands on deployments that stand
    Both,
};

// An option with a text of its own, and where the text goes.
struct TextOption
{
    const wchar_t* name;
    CString CommandLine::*target;
    OptionUse use;
};

// Longer than any single step that was seen on the slowest share; a day is as good as no limit.
constexpr unsigned int DEFAULT_QUIET_SECONDS = 600;
constexpr unsigned int LONGEST_QUIET_SECONDS = 86400;

constexpr TextOption TEXT_OPTIONS[] = {
    {L"--media", &CommandLine::strMedia, OptionUse::Wizard},
    {L"--answers", &CommandLine::strAnswers, OptionUse::Wizard},
    {L"--out", &CommandLine::strOut, OptionUse::Wizard},
    {L"--language", &CommandLine::strLanguage, OptionUse::Both},
    {L"--pictures", &CommandLine::strPictures, OptionUse::Wizard},
    {L"--log", &CommandLine::strLog, OptionUse::Both},
    {L"--quiet-limit", &CommandLine::strQuietLimit, OptionUse::Both},
    {L"--record", &CommandLine::strRecord, OptionUse::Wizard},
    {L"--verify", &CommandLine::strVerify, OptionUse::Deployments},
    {L"--compare", &CommandLine::strCompare, OptionUse::Deployments},
    {L"--report", &CommandLine::strReport, OptionUse::Deployments},
    {L"--plan", &CommandLine::strPlan, OptionUse::Wizard},
};

const TextOption* FindTextOption(const CString& name)
{
    for (const TextOption& option : TEXT_OPTIONS) {
        if (name == option.name) {
            return &option;
        }
    }
    return nullptr;
}

bool SetsOneValue(const CommandLineAnswer& answer)
{
    const PageAnswerTable* table = FindAnswerTable(PageAnswerTables(), answer.strPage);
    return !table || !IsListKey(*table, AnswerKeyForm(answer.strKey).strWord);
}

// set = page [ product ] "." key "=" value
CString ParseSet(const CString& text, CommandLine& line)
{
    const CString complaint =
        L"--set needs page.key=value, such as --set begin.name=Office, but came with \"" + text + L"\".";
    CommandLineAnswer answer;
    const int quote = text.Find(L'"');
    const int firstDot = text.Find(L'.');
    int dot = firstDot;
    if (quote >= 0 && quote < firstDot) { // a product's name may hold dots and equals signs
        const int end = text.Find(L"\".", quote + 1);
        if (end < 0) {
            return complaint;
        }
        answer.strProduct = text.Mid(quote + 1, end - quote - 1);
        dot = end + 1;
    }
    const int equals = text.Find(L'=', dot < 0 ? 0 : dot);
    if (dot <= 0 || equals <= dot + 1) {
        return complaint;
    }
    answer.strPage = text.Left(answer.strProduct.IsEmpty() ? dot : quote).TrimRight();
    answer.strKey = text.Mid(dot + 1, equals - dot - 1);
    answer.strValue = text.Mid(equals + 1);
    for (const CommandLineAnswer& other : line.answers) {
        if (other.strPage == answer.strPage && other.strProduct == answer.strProduct &&
            other.strKey == answer.strKey && SetsOneValue(answer)) {
            return L"--set gives " + text.Left(equals) + L" twice. Keep one of the two.";
        }
    }
    line.answers.push_back(answer);
    return CString();
}

CString StoreText(const TextOption& option, const CString& text, CommandLine& line)
{
    CString& target = line.*option.target;
    if (text.IsEmpty()) {
        return CString(option.name) + L" needs a value behind it.";
    }
    if (!target.IsEmpty()) {
        return CString(option.name) + L" stands twice. Keep one of the two.";
    }
    target = text;
    return CString();
}

// 0 for a text that is no number from 1 to the longest limit.
unsigned int ParseSeconds(const CString& text)
{
    return static_cast<unsigned int>(ReadWholeNumber(text, 1, LONGEST_QUIET_SECONDS).value_or(0));
}

CString CheckQuietLimit(const CString& text)
{
    if (text.IsEmpty() || ParseSeconds(text) > 0) {
        return CString();
    }
    return L"--quiet-limit needs a number of seconds from 1 to " + NumberText(LONGEST_QUIET_SECONDS) +
           L", but came with \"" + text + L"\".";
}

// The wizard's options would be without effect for a command on deployments; the empty text when none stands beside it.
CString WizardOption(const CommandLine& line)
{
    for (const TextOption& option : TEXT_OPTIONS) {
        if (option.use == OptionUse::Wizard && !(line.*option.target).IsEmpty()) {
            return option.name;
        }
    }
    return !line.answers.empty() ? L"--set"
           : line.bCheck         ? L"--check"
           : line.bWithLocation  ? L"--with-location"
                                 : L"";
}

CString CheckCommand(const CommandLine& line)
{
    if (!line.IsDeploymentCommand()) {
        return line.strReport.IsEmpty() ? CString()
                                        : CString(L"--report needs --verify FOLDER or --compare FOLDER "
                                                  L"FOLDER, whose result it writes to the file.");
    }
    if (!line.strVerify.IsEmpty() && !line.strCompare.IsEmpty()) {
        return L"--verify and --compare are two runs. Keep one of the two.";
    }
    if (!line.strCompare.IsEmpty() && line.strCompareWith.IsEmpty()) {
        return L"--compare needs the folders of two deployments: --compare FOLDER FOLDER.";
    }
    const CString option = WizardOption(line);
    return option.IsEmpty() ? option
                            : CString(line.strVerify.IsEmpty() ? L"--compare" : L"--verify") +
                                  L" only looks at deployments, so " + option + L" has no meaning beside it.";
}

bool IsHelp(const CString& argument)
{
    return argument == L"--help" || argument == L"-h" || argument == L"/?";
}

// True when the next argument is an option and so can't be the value of this one: "--out --check" forgot a folder.
bool IsOptionName(const CString& argument)
{
    return argument.Left(2) == L"--";
}

} // namespace

CString ParseCommandLine(const std::vector<CString>& arguments, CommandLine& line)
{
    line = CommandLine();
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const CString& argument = arguments[index];
        if (IsHelp(argument)) {
            line.bHelp = true;
            continue;
        }
        if (argument == L"--check" || argument == L"--with-location") {
            (argument == L"--check" ? line.bCheck : line.bWithLocation) = true;
            continue;
        }
        const int equals = IsOptionName(argument) ? argument.Find(L'=') : -1;
        const CString name = equals < 0 ? argument : argument.Left(equals);
        const TextOption* option = FindTextOption(name);
        if (!option && name != L"--set") {
            return L"Unknown word on the command line: \"" + argument + L"\".";
        }
        CString text;
        if (equals >= 0) {
            text = argument.Mid(equals + 1);
        } else if (index + 1 < arguments.size() && !IsOptionName(arguments[index + 1])) {
            text = arguments[++index];
        }
        const CString complaint = option ? StoreText(*option, text, line) : ParseSet(text, line);
        if (option && option->target == &CommandLine::strCompare && index + 1 < arguments.size() &&
            !IsOptionName(arguments[index + 1]) && !IsHelp(arguments[index + 1])) {
            line.strCompareWith = arguments[++index];
        }
        if (!complaint.IsEmpty()) {
            return complaint;
        }
    }
    const CString complaint = CheckQuietLimit(line.strQuietLimit);
    return complaint.IsEmpty() ? CheckCommand(line) : complaint;
}

unsigned int CommandLine::QuietSeconds() const
{
    return strQuietLimit.IsEmpty() ? DEFAULT_QUIET_SECONDS : ParseSeconds(strQuietLimit);
}

CString CommandLineUsage()
{
    return L"Setup.exe [--media PATH] [--answers FILE] [--set page.key=value ...] [--out DIR]\n"
           L"          [--language LOCALE] [--pictures DIR] [--log FILE] [--quiet-limit SECONDS]\n"
           L"          [--record FILE] [--with-location] [--check] [--plan FILE] [--help]\n"
           L"Setup.exe --verify FOLDER [--report FILE] [--language LOCALE] [--log FILE]\n"
           L"          [--quiet-limit SECONDS]\n"
           L"Setup.exe --compare FOLDER FOLDER [--report FILE] [--language LOCALE] [--log FILE]\n"
           L"          [--quiet-limit SECONDS]\n"
           L"\n"
           L"  --media PATH          a folder with Setup.xml, a deployment's folder, or one .msi\n"
           L"                        (default: the folder Media beside the program, else it asks)\n"
           L"  --answers FILE        walk the pages with the answers of this file\n"
           L"  --set page.key=value  one answer, worded as in the file; wins over the file\n"
           L"  --out DIR             where the deployment goes; wins over begin.location\n"
           L"  --language LOCALE     language of the wizard, such as en-US\n"
           L"  --pictures DIR        save a picture (PNG) of every page and box shown\n"
           L"  --log FILE            where the program's log goes (default: a file\n"
           L"                        RolloutSetup-*.log in %TEMP%)\n"
           L"  --quiet-limit SECONDS end an unattended run that shows no sign of life for so long\n"
           L"                        (default: 600)\n"
           L"  --record FILE         write the answers of this run to a file, however the run ends,\n"
           L"                        unless it broke off; a deployment that was built holds them as\n"
           L"                        Answers.txt\n"
           L"  --with-location       the written answers hold the deployment's own place too\n"
           L"  --check               check all answers, and what a build would refuse; build nothing\n"
           L"  --verify FOLDER       whether the deployment in this folder is still what was built;\n"
           L"                        no window, and nothing is written into the folder\n"
           L"  --compare FOLDER FOLDER\n"
           L"                        what the deployments in these folders differ in: answers, rows of\n"
           L"                        databases, files, patches, commands; no window, nothing written there\n"
           L"  --report FILE         write the result of --verify or --compare to this file too: as\n"
           L"                        text, or as JSON when its name ends in .json\n"
           L"  --plan FILE           write what a build would do to this file, and build nothing: as text,\n"
           L"                        or as JSON when its name ends in .json\n"
           L"  --help                this text\n"
           L"\n"
           L"Without --answers, --set and --check a person goes through the pages. With one of them the\n"
           L"run is unattended: the program fills in the pages, and a question without an answer ends it.\n"
           L"A command prompt doesn't wait for Setup.exe. To wait for its end, use start /wait Setup.exe.\n"
           L"\n"
           L"Examples: Setup.exe --media D:\\Media --answers office.txt --plan office-plan.txt\n"
           L"          Setup.exe --media D:\\Media --answers office.txt --check\n"
           L"          Setup.exe --verify \\\\server\\share\\Office --report office.json\n"
           L"          Setup.exe --compare \\\\server\\share\\Office D:\\Test\\Office --report changes.txt\n"
           L"\n"
           L"Exit codes: 0 done, 1602 canceled, 1603 failed, 20 bad command line, 21 bad answers,\n"
           L"22 an answer was refused by its page, 23 a question without an answer,\n"
           L"24 answers for a page that isn't shown, 25 a page overdue,\n"
           L"26 the run broke off, 27 no sign of life, 28 the deployment is not what was built,\n"
           L"or two are not equal, 29 that can't be determined.\n";
}

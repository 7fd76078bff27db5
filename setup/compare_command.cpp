#include "setup/compare_command.h"

#include "base/files.h"
#include "base/system_text.h"
#include "builder/deployment_place.h"
#include "setup/answers_comparison.h"
#include "setup/exit_codes.h"
#include "setup/paths.h"
#include "setup/program_libraries.h"
#include "setup/resource.h"
#include "setup/texts.h"

#include <string>

namespace {

std::vector<AnswerProduct> ProductsOf(const std::vector<ComparedProductName>& names)
{
    std::vector<AnswerProduct> products;
    for (const ComparedProductName& name : names) {
        products.push_back({name.strName, name.strCode});
    }
    return products;
}

// False with `reason` when the file is there and can't be read; `exists` is false when there is none.
bool ReadDeploymentAnswers(const CString& folder, AnswersFile& file, bool& exists, CString& reason)
{
    const CString path = FolderPath(folder) + ANSWERS_FILE;
    exists = IsFile(path);
    if (!exists) {
        return true;
    }
    std::string bytes;
    if (const unsigned int code = ReadWholeFile(path, LONGEST_ANSWERS_FILE, bytes)) {
        reason = SetupText(IDS_COMPARE_ANSWERS_UNREADABLE, {path, SystemErrorText(code)});
        return false;
    }
    AnswersError error;
    if (!ParseAnswersFile(bytes.data(), bytes.size(), file, error)) {
        error.strSource = path;
        reason = error.Text();
        return false;
    }
    return true;
}

// The differences of the answers are added. The empty text, or why they can't be read.
CString AddAnswers(const CommandLine& line, const TwoDeployments& compared, DeploymentComparison& comparison)
{
    ComparedAnswers first{{}, ProductsOf(compared.firstProducts)};
    ComparedAnswers second{{}, ProductsOf(compared.secondProducts)};
    bool& hasFirst = comparison.bFirstHasAnswers;
    bool& hasSecond = comparison.bSecondHasAnswers;
    CString reason;
    if (!ReadDeploymentAnswers(line.strCompare, first.file, hasFirst, reason) ||
        !ReadDeploymentAnswers(line.strCompareWith, second.file, hasSecond, reason)) {
        return reason;
    }
    // One of an earlier version has none, so that nothing can be said of its answers.
    if (hasFirst != hasSecond) {
        comparison.differences.push_back({DifferenceKind::Answer,
                                          CString(),
                                          {ANSWERS_FILE},
                                          hasFirst ? DifferenceSide::OnlyFirst : DifferenceSide::OnlySecond,
                                          {}});
    }
    if (!hasFirst || !hasSecond) {
        return {};
    }
    for (DeploymentDifference& difference : CompareAnswers(first, second)) {
        comparison.differences.push_back(std::move(difference));
    }
    return {};
}

CommandResult Undetermined(const CString& reason)
{
    return {{SETUP_UNDETERMINED, SetupText(IDS_COMPARE_FAILED, {reason})}, {}, {}};
}

} // namespace

CommandResult RunCompareCommand(const CommandLine& line)
{
    CComparisonLibrary library;
    if (const CString complaint = library.Load(FolderOfProgram()); !complaint.IsEmpty()) {
        return {{SETUP_FAILED, complaint}, {}, {}};
    }
    TwoDeployments compared;
    OperationError error;
    if (!library.Compare(line.strCompare, line.strCompareWith, compared, error)) {
        return Undetermined(error.message);
    }
    DeploymentComparison comparison{line.strCompare, line.strCompareWith, std::move(compared.differences)};
    if (const CString reason = AddAnswers(line, compared, comparison); !reason.IsEmpty()) {
        return Undetermined(reason);
    }
    SortDifferences(comparison.differences);
    CommandResult result{{}, ComposeComparisonText(comparison), ComposeComparisonJson(comparison)};
    if (!comparison.differences.empty()) {
        result.outcome = {SETUP_DEPLOYMENT_DIFFERS,
                          SetupText(IDS_COMPARE_DIFFERENT,
                                    {NumberText(static_cast<long long>(comparison.differences.size()))})};
    }
    return result;
}

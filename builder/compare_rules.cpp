#include "builder/compare_rules.h"

#include "builder/addition_notes.h"
#include "builder/command_settings.h"
#include "builder/command_text.h"
#include "builder/deployment_place.h"
#include "builder/manifest_text.h"

#include <algorithm>

namespace {

ComparedPart Below(ComparedPart part, const CString& name)
{
    part.item.push_back(name);
    return part;
}

DeploymentDifference DescribePart(const ComparedPart& part, DifferenceSide side)
{
    return {part.kind, part.strProduct, part.item, side, {}};
}

// How often each line stands in a list.
std::map<CString, long long> CountLines(const std::vector<CString>& lines)
{
    std::map<CString, long long> counts;
    for (const CString& line : lines) {
        ++counts[line];
    }
    return counts;
}

// The lines that both lists have, in the order of the first.
std::vector<CString> CommonLines(const std::vector<CString>& lines, std::map<CString, long long> others)
{
    std::vector<CString> common;
    for (const CString& line : lines) {
        const auto other = others.find(line);
        if (other != others.end() && other->second > 0) {
            --other->second;
            common.push_back(line);
        }
    }
    return common;
}

void AddSurplus(const ComparedPart& part, const std::map<CString, long long>& counts,
                const std::map<CString, long long>& others, DifferenceSide side, Differences& differences)
{
    for (const auto& [line, count] : counts) {
        const auto other = others.find(line);
        const long long surplus = count - (other == others.end() ? 0 : other->second);
        for (long long number = 0; number < surplus; ++number) {
            differences.push_back(DescribePart(Below(part, line), side));
        }
    }
}

CString SizeText(const ComparedFile& file)
{
    return NumberText(static_cast<long long>(file.size)) + L" bytes";
}

// set "NAME=value"
bool ReadSetting(const CString& line, NamedValues& settings)
{
    static const wchar_t* const NAMES[] = {LOG_FOLDER_SETTING, KEEP_LOCAL_LOG_SETTING, DISPLAY_SETTING};
    for (const wchar_t* name : NAMES) {
        const CString head = CString(L"set \"") + name + L"=";
        // Only the first one sets it: what follows is what the script does.
        if (line.Left(head.GetLength()) == head && line.Right(1) == L"\"" && !settings.count(name)) {
            const int length = std::max(line.GetLength() - head.GetLength() - 1, 0);
            settings[name] = UnquotedBatchText(line.Mid(head.GetLength(), length));
            return true;
        }
    }
    return false;
}

bool IsRemark(const CString& line)
{
    return line.IsEmpty() || line.Left(4).CompareNoCase(L"rem ") == 0 || line.CompareNoCase(L"rem") == 0;
}

} // namespace

void CompareValue(const ComparedPart& part, const CString& first, const CString& second,
                  Differences& differences)
{
    if (!(first == second)) {
        DeploymentDifference difference = DescribePart(part, DifferenceSide::Both);
        difference.values.push_back({CString(), first, second});
        differences.push_back(std::move(difference));
    }
}

void AddMissing(const ComparedPart& part, DifferenceSide side, const CString& value, Differences& differences)
{
    DeploymentDifference difference = DescribePart(part, side);
    const bool onlyFirst = side == DifferenceSide::OnlyFirst;
    difference.values.push_back({CString(), onlyFirst ? value : CString(), onlyFirst ? CString() : value});
    differences.push_back(std::move(difference));
}

void CompareValues(const ComparedPart& part, const NamedValues& first, const NamedValues& second,
                   Differences& differences)
{
    for (const auto& [name, value] : first) {
        const auto other = second.find(name);
        if (other == second.end()) {
            AddMissing(Below(part, name), DifferenceSide::OnlyFirst, value, differences);
        } else {
            CompareValue(Below(part, name), value, other->second, differences);
        }
    }
    for (const auto& [name, value] : second) {
        if (first.count(name) == 0) {
            AddMissing(Below(part, name), DifferenceSide::OnlySecond, value, differences);
        }
    }
}

void CompareLists(const ComparedPart& part, const std::vector<CString>& first,
                  const std::vector<CString>& second, Differences& differences)
{
    const std::map<CString, long long> firstCounts = CountLines(first);
    const std::map<CString, long long> secondCounts = CountLines(second);
    AddSurplus(part, firstCounts, secondCounts, DifferenceSide::OnlyFirst, differences);
    AddSurplus(part, secondCounts, firstCounts, DifferenceSide::OnlySecond, differences);
    const std::vector<CString> before = CommonLines(first, secondCounts);
    const std::vector<CString> after = CommonLines(second, firstCounts);
    const auto [one, other] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    if (one != before.end() && other != after.end()) {
        CompareValue(Below(part, L"order"), *one, *other, differences);
    }
}

void AddRowDifferences(const CString& product, const std::vector<RowDifference>& rows,
                       Differences& differences)
{
    for (const RowDifference& row : rows) {
        ComparedPart part{DifferenceKind::Row, product, {row.strTable}};
        part.item.insert(part.item.end(), row.key.begin(), row.key.end());
        if (row.change == RowChange::Changed) {
            for (const ColumnChange& column : row.columns) {
                CompareValue(Below(part, column.strColumn), column.strOld, column.strNew, differences);
            }
            continue;
        }
        DeploymentDifference difference = DescribePart(
            part, row.change == RowChange::Removed ? DifferenceSide::OnlyFirst : DifferenceSide::OnlySecond);
        for (const ColumnChange& column : row.columns) {
            difference.values.push_back({column.strColumn, column.strOld, column.strNew});
        }
        differences.push_back(std::move(difference));
    }
}

CommandScript ReadCommandScript(const char* bytes, std::size_t length)
{
    const CString text = TextFromUtf8(bytes, length);
    CommandScript script;
    for (int begin = 0; begin < text.GetLength();) {
        const int found = text.Find(L'\n', begin);
        const int end = found < 0 ? text.GetLength() : found;
        CString line = text.Mid(begin, end - begin);
        line.Trim(L" \t\r");
        if (!IsRemark(line) && !ReadSetting(line, script.settings)) {
            script.lines.push_back(line);
        }
        begin = end + 1;
    }
    return script;
}

void CompareScripts(const CString& name, const CommandScript& first, const CommandScript& second,
                    Differences& differences)
{
    const ComparedPart part{DifferenceKind::Command, CString(), {name}};
    CompareValues(part, first.settings, second.settings, differences);
    CompareLists(part, first.lines, second.lines, differences);
}

bool IsNoteOfBuild(const CString& relativePath)
{
    static const wchar_t* const NOTES[] = {DEPLOYMENT_FILE, ANSWERS_FILE,   L"Build.log",   MANIFEST_FILE,
                                           L"ReadMe.txt",   ADDITIONS_FILE, L"Changes.txt", L"Changes.json"};
    return std::any_of(std::begin(NOTES), std::end(NOTES),
                       [&](const wchar_t* note) { return relativePath.CompareNoCase(note) == 0; });
}

void CompareFiles(const ComparedPart& part, const ComparedFile& first, const ComparedFile& second,
                  Differences& differences)
{
    if (first.size != second.size) {
        CompareValue(part, SizeText(first), SizeText(second), differences);
    } else {
        CompareValue(part, L"SHA-256 " + first.strSha256, L"SHA-256 " + second.strSha256, differences);
    }
}

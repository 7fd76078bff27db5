#include "builder/deployment_difference.h"

#include "builder/change_report.h"
#include "builder/deployment_place.h"
#include "builder/shown_text.h"

#include <algorithm>
#include <tuple>

namespace {

const wchar_t* WordOf(DifferenceKind kind)
{
    switch (kind) {
    case DifferenceKind::Setting:
        return L"setting";
    case DifferenceKind::Product:
        return L"product";
    case DifferenceKind::Answer:
        return L"answer";
    case DifferenceKind::Command:
        return L"command";
    case DifferenceKind::Row:
        return L"row";
    case DifferenceKind::Added:
        return L"added";
    case DifferenceKind::Patch:
        return L"patch";
    case DifferenceKind::File:
        break;
    }
    return L"file";
}

const wchar_t* WordOf(DifferenceSide side)
{
    return side == DifferenceSide::OnlyFirst ? L"A" : L"B";
}

CString Quoted(const CString& value)
{
    CString shown = ShownText(value);
    shown.Replace(L"\"", L"\"\"");
    return L"\"" + shown + L"\"";
}

const CString& ValueOf(const DifferenceValue& value, DifferenceSide side)
{
    return side == DifferenceSide::OnlyFirst ? value.strFirst : value.strSecond;
}

void AppendLine(CString& text, const DeploymentDifference& difference)
{
    text += WordOf(difference.kind);
    if (!difference.strProduct.IsEmpty()) {
        text += L" of " + Quoted(difference.strProduct);
    }
    for (const CString& name : difference.item) {
        text += L" " + Quoted(name);
    }
    text += L": ";
    if (difference.side == DifferenceSide::Both) {
        const DifferenceValue& value = difference.values.front();
        text += Quoted(value.strFirst) + L" -> " + Quoted(value.strSecond);
    } else {
        text += CString(L"only in ") + WordOf(difference.side);
        for (const DifferenceValue& value : difference.values) {
            text += L", ";
            if (!value.strName.IsEmpty()) {
                text += Quoted(value.strName) + L" = ";
            }
            text += Quoted(ValueOf(value, difference.side));
        }
    }
    text += L"\r\n";
}

// Null for the side that doesn't have the item.
CString JsonValue(const CString& value, bool exists)
{
    return exists ? JsonText(value) : CString(L"null");
}

void AppendJson(CString& text, const DeploymentDifference& difference)
{
    text += CString(L"\r\n    {\"kind\": \"") + WordOf(difference.kind) + L"\", \"product\": " +
            JsonValue(difference.strProduct, !difference.strProduct.IsEmpty()) + L", \"item\": [";
    for (std::size_t index = 0; index < difference.item.size(); ++index) {
        text += (index ? L", " : L"") + JsonText(difference.item[index]);
    }
    text += L"], \"only\": ";
    text += difference.side == DifferenceSide::Both ? CString(L"null")
                                                    : CString(L"\"") + WordOf(difference.side) + L"\"";
    text += L", \"values\": [";
    for (std::size_t index = 0; index < difference.values.size(); ++index) {
        const DifferenceValue& value = difference.values[index];
        text += CString(index ? L", " : L"") + L"{\"name\": " +
                JsonValue(value.strName, !value.strName.IsEmpty()) + L", \"a\": " +
                JsonValue(value.strFirst, difference.side != DifferenceSide::OnlySecond) + L", \"b\": " +
                JsonValue(value.strSecond, difference.side != DifferenceSide::OnlyFirst) + L"}";
    }
    text += L"]}";
}

// Empty when both have answers.
CString AnswersNotCompared(const DeploymentComparison& comparison)
{
    if (comparison.bFirstHasAnswers && comparison.bSecondHasAnswers) {
        return {};
    }
    const wchar_t* const which = comparison.bFirstHasAnswers    ? L"B has no"
                                 : comparison.bSecondHasAnswers ? L"A has no"
                                                                : L"neither has an";
    return CString(L"answers, as ") + which + L" " + ANSWERS_FILE;
}

} // namespace

void SortDifferences(std::vector<DeploymentDifference>& differences)
{
    std::stable_sort(differences.begin(), differences.end(),
                     [](const DeploymentDifference& left, const DeploymentDifference& right) {
                         return std::tie(left.kind, left.strProduct, left.item) <
                                std::tie(right.kind, right.strProduct, right.item);
                     });
}

CString ComposeComparisonText(const DeploymentComparison& comparison)
{
    CString text = L"What two deployments differ in\r\nA: " + ShownText(comparison.strFirst) + L"\r\nB: " +
                   ShownText(comparison.strSecond) + L"\r\nDifferences: " +
                   NumberText(static_cast<long long>(comparison.differences.size())) + L"\r\n";
    if (const CString notCompared = AnswersNotCompared(comparison); !notCompared.IsEmpty()) {
        text += L"Not compared: " + notCompared + L"\r\n";
    }
    if (!comparison.differences.empty()) {
        text += L"\r\n";
    }
    for (const DeploymentDifference& difference : comparison.differences) {
        AppendLine(text, difference);
    }
    return text;
}

CString ComposeComparisonJson(const DeploymentComparison& comparison)
{
    CString text = L"{\r\n  \"version\": 1,\r\n  \"a\": " + JsonText(comparison.strFirst) +
                   L",\r\n  \"b\": " + JsonText(comparison.strSecond) + L",\r\n";
    const CString notCompared = AnswersNotCompared(comparison);
    text += L"  \"notCompared\": [" + (notCompared.IsEmpty() ? notCompared : JsonText(notCompared)) +
            L"],\r\n  \"differences\": [";
    for (std::size_t index = 0; index < comparison.differences.size(); ++index) {
        text += index ? L"," : L"";
        AppendJson(text, comparison.differences[index]);
    }
    return text + L"\r\n  ]\r\n}\r\n";
}

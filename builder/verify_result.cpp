#include "builder/verify_result.h"

#include "base/number_text.h"
#include "builder/change_report.h"
#include "builder/shown_text.h"

#include <algorithm>

namespace {

struct KindWords
{
    FindingKind kind;
    const wchar_t* heading; // of a line
    const wchar_t* counted; // behind a number
    const wchar_t* json;
};

constexpr KindWords KIND_WORDS[] = {
    {FindingKind::Missing, L"Missing", L"missing", L"missing"},
    {FindingKind::Added, L"Added", L"added", L"added"},
    {FindingKind::Changed, L"Changed", L"changed", L"changed"},
    {FindingKind::Unreadable, L"Can't be read", L"that can't be read", L"unreadable"},
    {FindingKind::Setting, L"Setting", L"changed settings", L"setting"},
};

const KindWords& WordsOf(FindingKind kind)
{
    return *std::find_if(std::begin(KIND_WORDS), std::end(KIND_WORDS),
                         [kind](const KindWords& words) { return words.kind == kind; });
}

const wchar_t* JsonVerdict(VerifyVerdict verdict)
{
    switch (verdict) {
    case VerifyVerdict::AsBuilt:
        return L"as built";
    case VerifyVerdict::Differs:
        return L"differs";
    case VerifyVerdict::Undetermined:
        break;
    }
    return L"undetermined";
}

bool IsDamage(const VerifyFinding& finding)
{
    return finding.kind != FindingKind::Setting && finding.kind != FindingKind::Unreadable;
}

long long CountOf(const VerifyResult& result, FindingKind kind)
{
    return std::count_if(result.findings.begin(), result.findings.end(),
                         [kind](const VerifyFinding& finding) { return finding.kind == kind; });
}

// "1 missing, 2 changed"; allowed settings are nothing that differs.
CString Counts(const VerifyResult& result)
{
    CString text;
    for (const KindWords& words : KIND_WORDS) {
        const long long count = CountOf(result, words.kind);
        if (count > 0 && words.kind != FindingKind::Setting) {
            text += (text.IsEmpty() ? L"" : L", ") + NumberText(count) + L" " + words.counted;
        }
    }
    return text;
}

CString FilesText(std::uint64_t count)
{
    return NumberText(static_cast<long long>(count)) + (count == 1 ? L" file" : L" files");
}

// One finding can't be determined as well as all of them.
CString FirstUnknown(const VerifyResult& result)
{
    if (!result.unknown.empty()) {
        return result.unknown.front();
    }
    return Counts(result) + L".";
}

CString SettingText(const VerifyFinding& finding)
{
    return ShownText(finding.strSetting) + L" is \"" + ShownText(finding.strNow) + L"\", was built as \"" +
           ShownText(finding.strBuilt) + L"\"";
}

CString JsonFinding(const VerifyFinding& finding)
{
    CString text = CString(L"    {\"kind\": \"") + WordsOf(finding.kind).json + L"\", \"path\": " +
                   JsonText(finding.strPath);
    if (!finding.strDetail.IsEmpty()) {
        text += L", \"detail\": " + JsonText(finding.strDetail);
    }
    if (finding.kind == FindingKind::Setting) {
        text += L", \"setting\": " + JsonText(finding.strSetting) + L", \"built\": " +
                JsonText(finding.strBuilt) + L", \"now\": " + JsonText(finding.strNow);
    }
    return text + L"}";
}

// Each item on a line of its own between the brackets.
template <class Items, class Compose>
CString JsonList(const Items& items, Compose compose)
{
    CString text = L"[";
    for (std::size_t index = 0; index < items.size(); ++index) {
        text += CString(index ? L"," : L"") + L"\r\n" + compose(items[index]);
    }
    return text + (items.empty() ? L"]" : L"\r\n  ]");
}

} // namespace

void SortFindings(std::vector<VerifyFinding>& findings)
{
    std::stable_sort(findings.begin(), findings.end(),
                     [](const VerifyFinding& left, const VerifyFinding& right) {
                         return left.kind != right.kind ? left.kind < right.kind
                                                        : left.strPath.CompareNoCase(right.strPath) < 0;
                     });
}

VerifyVerdict VerdictOf(const VerifyResult& result)
{
    if (std::any_of(result.findings.begin(), result.findings.end(), IsDamage)) {
        return VerifyVerdict::Differs;
    }
    return result.unknown.empty() && CountOf(result, FindingKind::Unreadable) == 0
               ? VerifyVerdict::AsBuilt
               : VerifyVerdict::Undetermined;
}

CString VerdictSentence(const VerifyResult& result)
{
    const CString folder = L"\"" + ShownText(result.strFolder) + L"\"";
    if (result.bCancelled) {
        return L"The check of the deployment in " + folder + L" was canceled.";
    }
    if (!result.bIsDeployment) {
        return ShownText(FirstUnknown(result));
    }
    if (result.verdict == VerifyVerdict::Undetermined) {
        return L"Whether the deployment in " + folder + L" is what was built can't be determined: " +
               ShownText(FirstUnknown(result));
    }
    if (result.verdict == VerifyVerdict::Differs) {
        return L"The deployment in " + folder + L" is not what was built: " + Counts(result) + L".";
    }
    const long long settings = CountOf(result, FindingKind::Setting);
    return L"The deployment in " + folder + L" is what was built (" + FilesText(result.files) + L")." +
           (settings > 0
                ? CString(L" Changed settings of its commands, as is allowed: ") + NumberText(settings) + L"."
                : CString());
}

CString FindingLine(const VerifyFinding& finding)
{
    const CString path =
        finding.strPath.IsEmpty() ? CString(L"the folder itself") : ShownText(finding.strPath);
    const CString detail =
        finding.kind == FindingKind::Setting ? SettingText(finding) : ShownText(finding.strDetail);
    return CString(WordsOf(finding.kind).heading) + L": " + path +
           (detail.IsEmpty() ? L"" : L" (" + detail + L")");
}

CString UnrecordedLine(const CString& sentence)
{
    return L"Not checked: " + ShownText(sentence);
}

CString ComposeVerifyText(const VerifyResult& result)
{
    CString text = L"Deployment: " + ShownText(result.strFolder) + L"\r\n";
    if (!result.strProduct.IsEmpty()) {
        text += L"Product: " + ShownText(result.strProduct) + L"\r\n";
    }
    text += L"As they were built: " + FilesText(result.files) + L"\r\n";
    for (const VerifyFinding& finding : result.findings) {
        text += FindingLine(finding) + L"\r\n";
    }
    for (const CString& sentence : result.unrecorded) {
        text += UnrecordedLine(sentence) + L"\r\n";
    }
    for (const CString& sentence : result.unknown) {
        text += L"Can't be determined: " + ShownText(sentence) + L"\r\n";
    }
    return text + L"Result: " + VerdictSentence(result) + L"\r\n";
}

CString ComposeVerifyJson(const VerifyResult& result)
{
    CString text = L"{\r\n  \"version\": 1,\r\n  \"command\": \"verify\",\r\n";
    text += L"  \"folder\": " + JsonText(result.strFolder) + L",\r\n";
    text += L"  \"product\": " + JsonText(result.strProduct) + L",\r\n";
    text += CString(L"  \"verdict\": \"") + JsonVerdict(result.verdict) + L"\",\r\n";
    text += L"  \"filesAsBuilt\": " + NumberText(static_cast<long long>(result.files)) + L",\r\n";
    text += L"  \"findings\": " + JsonList(result.findings, JsonFinding) + L",\r\n";
    const auto jsonLine = [](const CString& sentence) { return L"    " + JsonText(sentence); };
    text += L"  \"notChecked\": " + JsonList(result.unrecorded, jsonLine) + L",\r\n";
    text += L"  \"undetermined\": " + JsonList(result.unknown, jsonLine);
    text += L",\r\n  \"result\": " + JsonText(VerdictSentence(result)) + L"\r\n}\r\n";
    return text;
}

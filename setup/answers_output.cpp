#include "setup/answers_output.h"

#include "base/files.h"
#include "base/path_text.h"
#include "base/system_text.h"
#include "builder/deployment_place.h"
#include "include/version.h"
#include "setup/product_names.h"
#include "setup/record_file.h"
#include "setup/resource.h"
#include "setup/text_forms.h"
#include "setup/texts.h"

#include <string>

namespace {

constexpr wchar_t WRITER[] = L"Setup " ROLLOUT_VERSION_TEXT;

CString FileBesideLog(const CString& log)
{
    const int dot = log.ReverseFind(L'.');
    const int name = log.ReverseFind(L'\\');
    return (dot > name ? log.Left(dot) : log) + L".answers.txt";
}

// Nothing in a deployment says where it was built.
CString WithoutFolder(CString text, const CString& folder)
{
    text.Replace(FolderPath(folder), L"");
    text.Replace(WithoutClosingBackslash(folder), L"");
    return text;
}

} // namespace

void CAnswersOutput::AddToDeployment(const std::vector<RecordedPage>& pages)
{
    CSetupManager& manager = m_host->GetSetupManager();
    const CString name = manager.m_strDeploymentName;
    RecordForm form = MakeForm(FolderPath(manager.m_strDeploymentLocation) + name);
    form.strDeployment = name;
    form.comments = {L"Answers of the deployment \"" + name + L"\" of " + CString(manager.m_strProductName) +
                         L", written by " + WRITER + L".",
                     L"The same deployment again: Setup.exe --media PATH --answers Answers.txt --out FOLDER"};
    const std::vector<RecordedPage> joined = JoinBase(pages, form);
    CString text;
    if (const CString reason = Compose(joined, form, text); !reason.IsEmpty()) {
        m_log.Line(L"Warning: the deployment gets no " + CString(ANSWERS_FILE) + L": " + reason);
    }
    m_host->SetAnswersText(text);
}

CString CAnswersOutput::KeepBesideLog(const std::vector<RecordedPage>& pages, const CString& cause)
{
    CString file = FileBesideLog(m_line.strLog);
    RecordForm form = MakeForm(FolderAbove(file));
    form.bWithLocation = true;
    form.comments = {CString(L"What ") + WRITER + L" was answered with before its build failed.",
                     L"It failed because: " + OneLine(cause)};
    CString text;
    CString failure;
    if (const CString reason = Compose(pages, form, text); !reason.IsEmpty()) {
        failure = SetupText(IDS_ANSWERS_NO_FILE, {file, reason});
    } else if (const unsigned long code = WriteFreeTextFile(file, text)) {
        failure = SetupText(IDS_KEPT_FAILED, {file, SystemErrorText(code)});
    }
    m_log.Line(failure.IsEmpty() ? L"Answers " + file : L"Warning: " + failure);
    return failure.IsEmpty() ? file : CString();
}

CString CAnswersOutput::WriteRecord(const std::vector<RecordedPage>& pages, const RunOutcome& outcome)
{
    if (m_line.strRecord.IsEmpty()) {
        return CString();
    }
    RecordForm form = MakeForm(FolderAbove(m_line.strRecord));
    form.comments = {CString(L"What ") + WRITER + L" was answered with.",
                     L"The run ended with exit code " + NumberText(outcome.exitCode) +
                         (outcome.strCause.IsEmpty() ? CString(L".") : L": " + OneLine(outcome.strCause))};
    CString text;
    if (const CString reason = Compose(pages, form, text); !reason.IsEmpty()) {
        return SetupText(IDS_ANSWERS_NO_FILE, {m_line.strRecord, reason});
    }
    if (const unsigned long code = ReplaceTextFile(m_line.strRecord, text)) {
        return SetupText(IDS_RECORD_FAILED, {m_line.strRecord, SystemErrorText(code)});
    }
    m_log.Line(L"Answers " + m_line.strRecord);
    return CString();
}

RecordForm CAnswersOutput::MakeForm(const CString& folder) const
{
    RecordForm form;
    form.folders.strBase = WithoutClosingBackslash(folder);
    if (m_host) {
        form.folders.strMedia = m_host->GetMediaFolder();
        form.products = NamesOf(m_host->GetProducts());
    }
    form.bWithLocation = m_line.bWithLocation;
    return form;
}

std::vector<RecordedPage> CAnswersOutput::JoinBase(const std::vector<RecordedPage>& pages, RecordForm& form)
{
    const CString folder = m_host->GetBaseFolder();
    if (folder.IsEmpty()) {
        return pages;
    }
    form.folders.strMedia.Empty(); // the base's image, which is gone when the deployment is built anew
    BaseAnswers base;
    CString reason;
    if (!ReadBase(folder, form, base, reason)) {
        base.warnings = {L"The answers that \"" + folder + L"\" was built from can't be used: " + reason};
        form.comments.push_back(
            L"The answers of the deployment that this one was built upon can't be used: " +
            OneLine(WithoutFolder(reason, folder)) + L" What isn't said here came from there.");
    }
    std::vector<RecordedPage> unknown;
    const std::vector<RecordedPage> merged = MergeAnswers(base, pages, unknown);
    for (const RecordedPage& page : unknown) {
        base.warnings.push_back(L"Nobody went to the page \"" + page.Title() +
                                L"\", and the base's answers don't have it.");
        form.comments.push_back(L"Not answered here: " + page.Title() + L".");
    }
    for (const CString& warning : base.warnings) {
        m_log.Line(L"Warning: " + warning + L" What the deployment has of it is not in " + ANSWERS_FILE +
                   L".");
    }
    return merged;
}

bool CAnswersOutput::ReadBase(const CString& folder, const RecordForm& form, BaseAnswers& base,
                              CString& reason) const
{
    std::string bytes;
    const CString path = FolderPath(folder) + ANSWERS_FILE;
    if (const unsigned int code = ReadWholeFile(path, LONGEST_ANSWERS_FILE, bytes)) {
        reason = path + L": " + SystemErrorText(code);
        return false;
    }
    AnswersFile file;
    AnswersError error;
    if (!ParseAnswersFile(bytes.data(), bytes.size(), file, error) ||
        !ReadBaseAnswers(file, folder, form.products, form.tables, base, error)) {
        error.strSource = path;
        reason = error.Text();
        return false;
    }
    for (RecordedPage& page : base.pages) {
        page.strTitle = PageTitle(page.Page());
    }
    return true;
}

CString CAnswersOutput::Compose(const std::vector<RecordedPage>& pages, const RecordForm& form, CString& text)
{
    std::vector<CString> warnings;
    const AnswersFile file = ComposeAnswers(pages, form, warnings);
    for (const CString& warning : warnings) {
        m_log.Line(L"Warning: left out of the answers file: " + warning);
    }
    AnswersError error;
    return WriteAnswersFile(file, text, error) ? CString() : error.Text();
}

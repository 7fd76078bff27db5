#include "tests/host/pages_on_host.h"

#include "automation/list_control.h"
#include "automation/message_box.h"
#include "automation/window_finder.h"
#include "base/path_text.h"

namespace {

CString TestProgramFolder()
{
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    return ParentFolder(program);
}

} // namespace

CSetupManager& PagesOnHost::OpenWithTexts(const CString& path)
{
    host.reset();
    HostOptions options = OptionsFor(path, work);
    options.strProgramFolder = TestProgramFolder();
    OperationError error;
    host.reset(OpenSetupHost(options, error));
    if (!host) {
        throw std::runtime_error(Utf8(error.message));
    }
    return host->GetSetupManager();
}

void PagesOnHost::Renew()
{
    m_script = std::make_unique<CScript>();
    m_script->SetFailureHandler(StartClosingWindows);
    m_page = nullptr;
}

void PagesOnHost::Add(const CString& name, CScript::Step step)
{
    m_script->Add(name, [this, step = std::move(step)] {
        const StepOutcome clear = ExpectNoMessageBox();
        if (clear.IsFailed()) {
            return clear;
        }
        if (!IsWindow(m_page)) {
            m_page = FindWindowWithControls({IDC_NEXT, IDC_CANCEL, IDC_BACK});
        }
        return m_page ? step() : StepOutcome::NotYet(L"no page is up");
    });
}

void PagesOnHost::Press(int control)
{
    Add(L"press " + NumberText(control), [this, control] { return CControl(m_page, control).Click(); });
}

void PagesOnHost::Type(int edit, const CString& text)
{
    Add(L"type \"" + text + L"\"", [this, edit, text] { return CControl(m_page, edit).SetText(text); });
}

void PagesOnHost::SelectLine(int list, const CString& line)
{
    Add(L"select \"" + line + L"\"", [this, list, line] { return CListControl(m_page, list).Select(line); });
}

void PagesOnHost::SelectEntry(int list, int index)
{
    Add(L"select line " + NumberText(index),
        [this, list, index] { return CListControl(m_page, list).Select(index); });
}

void PagesOnHost::SetChecked(int box, bool checked)
{
    Add(L"check " + NumberText(box),
        [this, box, checked] { return CControl(m_page, box).SetChecked(checked); });
    Add(L"wait for the mark", [this, box, checked] {
        return Until(CControl(m_page, box).IsChecked() == checked, L"the check mark did not change");
    });
}

void PagesOnHost::Look(std::function<void()> look)
{
    Add(L"look", [look = std::move(look)] {
        look();
        return StepOutcome::Done();
    });
}

void PagesOnHost::AnswerQuestion(int button)
{
    m_script->Add(L"answer the question", [button] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        if (!box) {
            return StepOutcome::NotYet(L"no message box is up");
        }
        return box->buttons == MB_YESNO ? AnswerMessageBox(*box, button)
                                        : StepOutcome::Failed(L"it is no question: " + box->Describe());
    });
}

void PagesOnHost::AnswerCancelQuestion(int button, std::function<void()> look)
{
    m_script->Add(L"answer whether to leave the setup", [button, look = std::move(look)] {
        const HWND question = FindWindowWithControls({IDC_CANCEL_QUESTION, IDYES, IDNO});
        if (!question) {
            return StepOutcome::NotYet(L"the cancel question isn't up");
        }
        look();
        return CControl(question, button).Click();
    });
}

int PagesOnHost::Show(PageFunction page, bool canGoBack)
{
    PageContext context = host->MakePageContext({L"Page", L""}, canGoBack);
    m_script->SetEnding(L"the page's end", [] {
        const StepOutcome clear = ExpectNoMessageBox();
        return clear.IsFailed() ? clear : StepOutcome::NotYet(L"the page is still up");
    });
    m_script->Start();
    const int result = page(&context);
    m_script->Stop();
    StopClosingWindows();
    if (m_script->HasFailed()) {
        ADD_FAILURE() << Utf8(m_script->GetFailure());
    } else if (!m_script->IsFinished()) {
        ADD_FAILURE() << "The page closed before the step \"" << Utf8(m_script->GetCurrentStep()) << "\"";
    }
    Renew();
    return result;
}

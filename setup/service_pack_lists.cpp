#include "setup/service_pack_lists.h"

#include "automation/file_picker.h"
#include "automation/list_control.h"
#include "include/patch_list_messages.h"
#include "include/resource_ids.h"
#include "setup/page_answers.h"
#include "setup/service_pack_words.h"

#include <utility>

namespace {

using AnswerLines = std::vector<const PageAnswer*>;
using ListSteps = std::vector<ListStep>;

constexpr wchar_t NOT_ACCEPTED[] = L"The page hasn't accepted it.";
constexpr wchar_t FILES_NEED_CHOICE[] = L"Patch files count only with choice = files.";

// What the page shows of the service.
enum class ServiceState
{
    Absent, // the page offers none, and doesn't say why
    UpToDate,
    Failed,
    Offered,
    Downloading,
    Downloaded,
};

class CPatchPage
{
public:
    explicit CPatchPage(HWND page) : m_page(page), m_list(page, IDC_PATCH_LIST) {}

    // By their styles: a tab that is hidden still has them.
    [[nodiscard]] bool IsShown(int id) const
    {
        const HWND control = ::GetDlgItem(m_page, id);
        return control && (GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE);
    }
    [[nodiscard]] CControl Control(int id) const { return CControl(m_page, id); }
    [[nodiscard]] bool IsChecked(int id) const { return Control(id).IsChecked(); }
    [[nodiscard]] const CListControl& List() const { return m_list; }

    [[nodiscard]] ServiceState State() const
    {
        if (IsShown(IDC_PATCH_UP_TO_DATE_MARK)) {
            return ServiceState::UpToDate;
        }
        if (IsShown(IDC_PATCH_FAILURE_MARK)) {
            return ServiceState::Failed;
        }
        if (IsShown(IDC_PATCH_PROGRESS)) {
            return ServiceState::Downloading;
        }
        if (IsShown(IDC_PATCH_DOWNLOADED_MARK)) {
            return ServiceState::Downloaded;
        }
        return IsShown(IDC_PATCH_LINK) ? ServiceState::Offered : ServiceState::Absent;
    }

    // The page's own words, where it has any.
    [[nodiscard]] CString WhyNotOffered() const
    {
        switch (State()) {
        case ServiceState::UpToDate:
            return Control(IDC_PATCH_OFFER).GetText();
        case ServiceState::Failed:
            return Control(IDC_PATCH_FAILURE).GetText();
        default:
            return L"The page offers no service pack: the update service doesn't answer for this product.";
        }
    }

    // In the list's order.
    [[nodiscard]] std::vector<CString> Paths() const
    {
        std::vector<CString> paths;
        const auto count = static_cast<int>(m_list.GetLines().size());
        std::vector<wchar_t> buffer(PATCH_PATH_CAPACITY);
        for (int line = 0; line < count; ++line) {
            buffer.front() = 0;
            SendMessageW(m_page, PATCH_MESSAGE_GET_PATH, static_cast<WPARAM>(line),
                         reinterpret_cast<LPARAM>(buffer.data()));
            paths.emplace_back(buffer.data());
        }
        return paths;
    }
    [[nodiscard]] bool HasPath(const CString& path) const
    {
        for (const CString& listed : Paths()) {
            if (listed.CompareNoCase(path) == 0) {
                return true;
            }
        }
        return false;
    }

private:
    HWND m_page;
    CListControl m_list;
};

// A step with the page.
template <class Run>
void AddStep(ListSteps& steps, const PageAnswer& answer, const wchar_t* name, Run run)
{
    steps.push_back(
        {&answer, name, [run = std::move(run)](HWND page) mutable { return run(CPatchPage(page)); }});
}

// ---- choices

StepOutcome ClickRadio(const CControl& radio)
{
    if (radio.IsChecked()) {
        return StepOutcome::Done();
    }
    if (!radio.IsVisible()) {
        return StepOutcome::Failed(L"The page doesn't offer it here. It belongs to another mode.");
    }
    return radio.IsUsable()
               ? radio.Click()
               : StepOutcome::Failed(
                     L"The page shows it but doesn't let it be changed here. Take the answer out.");
}

StepOutcome NeedChecked(const CPatchPage& page, int radio)
{
    return page.IsChecked(radio) ? StepOutcome::Done() : StepOutcome::NotYet(L"the click has no effect yet");
}

// A product that is up to date gets none, though the page lets nothing be selected then.
bool HasNone(const CPatchPage& page)
{
    return page.State() == ServiceState::UpToDate && page.List().GetLines().empty();
}

void AddNoneSteps(const PageAnswer& answer, ListSteps& steps)
{
    AddStep(steps, answer, L"select no service pack", [](const CPatchPage& page) {
        return HasNone(page) ? StepOutcome::Done() : ClickRadio(page.Control(IDC_PATCH_NONE));
    });
    AddStep(steps, answer, L"look whether it is selected", [](const CPatchPage& page) {
        return HasNone(page) ? StepOutcome::Done() : NeedChecked(page, IDC_PATCH_NONE);
    });
}

void AddFilesSteps(const PageAnswer& answer, ListSteps& steps)
{
    AddStep(steps, answer, L"select patch files", [](const CPatchPage& page) {
        return page.State() == ServiceState::UpToDate ? StepOutcome::Failed(page.WhyNotOffered())
                                                      : ClickRadio(page.Control(IDC_PATCH_LISTED));
    });
    AddStep(steps, answer, L"look whether they are selected",
            [](const CPatchPage& page) { return NeedChecked(page, IDC_PATCH_LISTED); });
}

bool IsOnOffer(const CPatchPage& page)
{
    return page.State() == ServiceState::Offered || page.State() == ServiceState::Downloaded;
}

// The download is waited for in front of the last step, as work of the page.
void AddOfferedSteps(const PageAnswer& answer, ListSteps& steps)
{
    AddStep(steps, answer, L"select what the service offers", [](const CPatchPage& page) {
        return IsOnOffer(page) ? ClickRadio(page.Control(IDC_PATCH_OFFERED))
                               : StepOutcome::Failed(page.WhyNotOffered());
    });
    AddStep(steps, answer, L"look whether it is selected",
            [](const CPatchPage& page) { return NeedChecked(page, IDC_PATCH_OFFERED); });
    AddStep(steps, answer, L"press Download", [](const CPatchPage& page) {
        return page.State() == ServiceState::Downloaded ? StepOutcome::Done()
                                                        : page.Control(IDC_PATCH_ACTION).Click();
    });
    AddStep(steps, answer, L"look whether the download has begun", [](const CPatchPage& page) {
        return page.State() == ServiceState::Offered ? StepOutcome::NotYet(L"the click has no effect yet")
                                                     : StepOutcome::Done();
    });
    AddStep(steps, answer, L"look for the service pack", [](const CPatchPage& page) {
        return page.State() == ServiceState::Downloaded ? StepOutcome::Done()
                                                        : StepOutcome::Failed(page.WhyNotOffered());
    });
}

// The way counts for patches alone.
void AddWaySteps(const PageAnswer& answer, ListSteps& steps)
{
    const auto radio = static_cast<int>(answer.pKey->control);
    const auto counts = [](const CPatchPage& page) {
        return page.IsChecked(IDC_PATCH_OFFERED) || page.IsChecked(IDC_PATCH_LISTED);
    };
    AddStep(steps, answer, L"select the way", [radio, counts](const CPatchPage& page) {
        return counts(page) ? ClickRadio(page.Control(radio)) : StepOutcome::Done();
    });
    AddStep(steps, answer, L"look whether it is selected", [radio, counts](const CPatchPage& page) {
        return counts(page) ? NeedChecked(page, radio) : StepOutcome::Done();
    });
}

// ---- files

StepOutcome NeedFile(const CString& path)
{
    const DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return StepOutcome::Failed(L"The file doesn't exist.");
    }
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? StepOutcome::Failed(L"This is a folder.")
                                                 : StepOutcome::Done();
}

// One file, by the page's button and the system's dialog.
class CFileLine
{
public:
    explicit CFileLine(CString path) : m_path(std::move(path)) {}

    StepOutcome Enter(const CPatchPage& page)
    {
        if (m_stage == Stage::Opening) {
            return FindFilePicker() ? UsePicker() : StepOutcome::NotYet(L"the file dialog isn't up");
        }
        if (FindFilePicker()) {
            return StepOutcome::NotYet(L"the file dialog is still up");
        }
        if (!page.IsChecked(IDC_PATCH_LISTED)) {
            return StepOutcome::Failed(FILES_NEED_CHOICE);
        }
        if (const StepOutcome usable = page.List().NeedUsable(); !usable.IsDone()) {
            return usable;
        }
        if (page.HasPath(m_path)) {
            return StepOutcome::Done();
        }
        return m_stage == Stage::Accepted ? StepOutcome::Failed(NOT_ACCEPTED) : OpenPicker(page);
    }

private:
    enum class Stage
    {
        Idle,
        Opening,  // the dialog
        Accepted, // what it was given
    };

    StepOutcome OpenPicker(const CPatchPage& page)
    {
        if (const StepOutcome file = NeedFile(m_path); !file.IsDone()) {
            return file;
        }
        const StepOutcome pressed = page.Control(IDC_PATCH_BROWSE).Click();
        if (!pressed.IsDone()) {
            return pressed;
        }
        m_stage = Stage::Opening;
        return StepOutcome::NotYet(L"the file dialog isn't up");
    }

    StepOutcome UsePicker()
    {
        if (const StepOutcome entered = EnterPickerFiles({m_path}); !entered.IsDone()) {
            return entered;
        }
        const StepOutcome accepted = AcceptFilePicker();
        if (!accepted.IsDone()) {
            return accepted;
        }
        m_stage = Stage::Accepted;
        return StepOutcome::NotYet(L"the file is being added");
    }

    CString m_path;
    Stage m_stage = Stage::Idle;
};

void AddFileSteps(const PageAnswer& line, ListSteps& steps)
{
    AddStep(steps, line, L"add the file",
            [file = CFileLine(line.Value())](const CPatchPage& page) mutable { return file.Enter(page); });
}

// The first line from which on the page's list is another one than the wanted; none when it is their beginning.
std::size_t FirstOther(const std::vector<CString>& listed, const std::vector<CString>& wanted)
{
    std::size_t line = 0;
    while (line < listed.size() && line < wanted.size() && listed[line].CompareNoCase(wanted[line]) == 0) {
        ++line;
    }
    return line;
}

// Removes from where the list differs from the answers, so that these come in their order. A list that doesn't count stays.
void AddClearSteps(const PageAnswer& answer, const std::vector<CString>& wanted, ListSteps& steps)
{
    AddStep(steps, answer, L"remove what isn't answered",
            [wanted, before = std::size_t(0)](const CPatchPage& page) mutable {
                const std::vector<CString> listed = page.Paths();
                const std::size_t line = FirstOther(listed, wanted);
                if (!page.IsChecked(IDC_PATCH_LISTED) || line == listed.size()) {
                    return StepOutcome::Done();
                }
                const CString& path = listed[line];
                if (std::exchange(before, listed.size()) == listed.size()) {
                    return StepOutcome::Failed(L"The page doesn't remove \"" + path + L"\".");
                }
                const StepOutcome selected = page.List().Select(static_cast<int>(line));
                if (!selected.IsDone()) {
                    return selected;
                }
                const CControl button = page.Control(IDC_PATCH_REMOVE);
                if (!button.IsUsable()) {
                    return StepOutcome::Failed(L"The page doesn't let \"" + path +
                                               L"\" be removed: it is part of the image.");
                }
                const StepOutcome pressed = button.Click();
                return pressed.IsDone() ? StepOutcome::NotYet(L"lines are left") : pressed;
            });
}

// ---- the page

AnswerLines LinesOf(const AnswerLines& answers, const wchar_t* word)
{
    AnswerLines lines;
    for (const PageAnswer* answer : answers) {
        if (CString(word) == answer->pKey->word) {
            lines.push_back(answer);
        }
    }
    return lines;
}

void AddChoiceSteps(const PageAnswer& answer, ListSteps& steps)
{
    const CString& choice = answer.Value();
    if (choice == SERVICE_PACK_OFFERED) {
        AddOfferedSteps(answer, steps);
    } else {
        choice == SERVICE_PACK_FILES ? AddFilesSteps(answer, steps) : AddNoneSteps(answer, steps);
    }
}

// The choice of the button that is checked, as far as the page shows it.
void ReadChoice(const CPatchPage& page, const wchar_t* word, std::vector<ListLine>& lines)
{
    for (const AnswerKey& key : SERVICE_PACK_ANSWERS.keys) {
        const auto radio = static_cast<int>(key.control);
        if (CString(word) == key.word && page.IsShown(radio) && page.IsChecked(radio)) {
            lines.push_back({word, {key.choice}});
        }
    }
}

class CServicePackPageLists final : public IPageLists
{
public:
    // Without patches nothing but that choice counts, and the files only count with theirs.
    [[nodiscard]] std::vector<ListLine> Read(HWND window) const override
    {
        const CPatchPage page(window);
        std::vector<ListLine> lines;
        ReadChoice(page, SERVICE_PACK_CHOICE, lines);
        if (page.IsChecked(IDC_PATCH_LISTED)) {
            for (const CString& path : page.Paths()) {
                lines.push_back({SERVICE_PACK_FILE, {path}});
            }
        }
        if (page.IsChecked(IDC_PATCH_LISTED) || page.IsChecked(IDC_PATCH_OFFERED)) {
            ReadChoice(page, SERVICE_PACK_WAY, lines);
        }
        return lines;
    }

    // The choice first, as it enables the rest, in whatever order they stand.
    [[nodiscard]] std::vector<ListStep>
    MakeSteps(const std::vector<const PageAnswer*>& answers) const override
    {
        ListSteps steps;
        for (const PageAnswer* choice : LinesOf(answers, SERVICE_PACK_CHOICE)) {
            AddChoiceSteps(*choice, steps);
        }
        const AnswerLines files = LinesOf(answers, SERVICE_PACK_FILE);
        for (const PageAnswer* answer : answers) {
            if (answer->pKey->kind == AnswerKind::Clear) {
                std::vector<CString> wanted;
                for (const PageAnswer* file : files) {
                    wanted.push_back(file->Value());
                }
                AddClearSteps(*answer, wanted, steps);
            }
        }
        for (const PageAnswer* file : files) {
            AddFileSteps(*file, steps);
        }
        for (const PageAnswer* way : LinesOf(answers, SERVICE_PACK_WAY)) {
            AddWaySteps(*way, steps);
        }
        return steps;
    }

    [[nodiscard]] bool IsAtWork(HWND page) const override
    {
        return CPatchPage(page).State() == ServiceState::Downloading;
    }
};

} // namespace

const IPageLists& ServicePackPageLists()
{
    static const CServicePackPageLists lists;
    return lists;
}

#include "tests/setup/list_page.h"

#include "automation/control.h"
#include "automation/file_picker.h"
#include "automation/list_control.h"
#include "automation/popup_menu.h"
#include "automation/tree_control.h"
#include "tests/setup/tab_pages/list_page.h"
#include "tests/setup/tab_pages/tab_page_ids.h"

#include <commctrl.h>

#include <algorithm>
#include <memory>

namespace {

constexpr wchar_t FOLDER_WORD[] = L"folder";
constexpr wchar_t FILE_WORD[] = L"file";
constexpr wchar_t DOWNLOAD_WORD[] = L"download";

constexpr AnswerNeed BANNER = {L"banner", L"yes"};
constexpr FieldKind FOLDER_FIELDS[] = {FieldKind::Text, FieldKind::Text};
constexpr FieldKind FILE_FIELDS[] = {FieldKind::Text, FieldKind::Path};
constexpr FieldKind DOWNLOAD_FIELDS[] = {FieldKind::Text};

constexpr AnswerKey KEYS[] = {
    {.word = L"caption", .kind = AnswerKind::Text, .control = IDC_LIST_CAPTION},
    {.word = L"logo", .kind = AnswerKind::Path, .control = IDC_LIST_LOGO},
    {.word = L"banner", .kind = AnswerKind::Check, .control = IDC_LIST_BANNER},
    {.word = L"banner_text", .kind = AnswerKind::Text, .control = IDC_LIST_BANNER_TEXT, .needs = BANNER},
    {.word = L"size", .kind = AnswerKind::Radio, .control = IDC_LIST_SIZE_SMALL, .choice = L"small"},
    {.word = L"size", .kind = AnswerKind::Radio, .control = IDC_LIST_SIZE_LARGE, .choice = L"large"},
    {.word = L"clear", .kind = AnswerKind::Clear},
    {.word = FOLDER_WORD, .kind = AnswerKind::List, .fields = FOLDER_FIELDS},
    {.word = FILE_WORD, .kind = AnswerKind::List, .fields = FILE_FIELDS},
    {.word = DOWNLOAD_WORD, .kind = AnswerKind::List, .fields = DOWNLOAD_FIELDS},
    {.word = L"limit", .kind = AnswerKind::WorkLimit},
};

constexpr AnswerBox BOXES[] = {
    {BoxKind::Question, L"twice", FILE_WORD, IDS_LIST_FILE_TWICE},
    {BoxKind::Question, L"delete", L"clear", IDS_LIST_DELETE},
    {BoxKind::Question, L"missing_logo", L"logo", IDS_LIST_LOGO_MISSING},
    {BoxKind::Refusal, nullptr, FILE_WORD, IDS_LIST_FILE_REFUSED},
    {BoxKind::Refusal, nullptr, FOLDER_WORD, IDS_LIST_LABEL_REFUSED},
    {BoxKind::Refusal, nullptr, DOWNLOAD_WORD, IDS_LIST_DOWNLOAD_FAILED},
    {BoxKind::Refusal, nullptr, L"caption", IDS_LIST_CAPTION_REFUSED},
};

CTreeControl TreeOf(HWND page)
{
    return CTreeControl(page, IDC_LIST_TREE);
}

CTreeControl::Path PathInTree(const CString& folder)
{
    CTreeControl::Path path;
    for (int start = 0; start >= 0;) {
        const int end = folder.Find(L'\\', start);
        path.push_back(end < 0 ? folder.Mid(start) : folder.Mid(start, end - start));
        start = end < 0 ? -1 : end + 1;
    }
    return path;
}

std::vector<CString> ReadRow(HWND page, int row)
{
    std::vector<CString> cells;
    for (int column = 0; column < 2; ++column) {
        wchar_t text[MAX_PATH] = {};
        ListView_GetItemText(GetDlgItem(page, IDC_LIST_FILES), row, column, text, MAX_PATH);
        cells.emplace_back(text);
    }
    return cells;
}

int CountRows(HWND page)
{
    return ListView_GetItemCount(GetDlgItem(page, IDC_LIST_FILES));
}

void ReadFolders(HWND page, const CString& folder, std::vector<ListLine>& lines)
{
    for (const CString& name : TreeOf(page).GetChildren(PathInTree(folder))) {
        lines.push_back({FOLDER_WORD, {folder, name}});
        ReadFolders(page, folder + L"\\" + name, lines);
    }
}

// Opens the context menu at the folder as the keyboard does.
StepOutcome OpenMenu(HWND page, const CString& folder)
{
    const StepOutcome selected = TreeOf(page).Select(PathInTree(folder));
    if (selected.IsNotYet() && TreeOf(page).IsUsable()) {
        return StepOutcome::Failed(L"There is no folder \"" + folder + L"\".");
    }
    if (selected.IsDone()) {
        const HWND tree = TreeOf(page).GetWindow();
        PostMessageW(tree, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(tree), -1);
    }
    return selected;
}

StepOutcome TypeLabel(HWND page, const CString& name)
{
    const HWND tree = TreeOf(page).GetWindow();
    const HWND edit = reinterpret_cast<HWND>(SendMessageW(tree, TVM_GETEDITCONTROL, 0, 0));
    if (!edit) {
        return StepOutcome::NotYet(L"no label is being edited");
    }
    const StepOutcome typed = CControl(edit).SetText(name);
    if (typed.IsDone()) {
        SendMessageW(tree, TVM_ENDEDITLABELNOW, FALSE, 0);
    }
    return typed;
}

// Once the page can be worked on again and shows whether it has accepted the line.
StepOutcome CheckLine(HWND page, bool isThere)
{
    if (!CControl(page, IDC_LIST_ADD).IsUsable() || FindFilePicker()) {
        return StepOutcome::NotYet(L"the page isn't done with the line");
    }
    return isThere ? StepOutcome::Done() : StepOutcome::Failed(L"The page hasn't accepted it.");
}

class CListPageLists final : public IPageLists
{
public:
    std::vector<ListLine> Read(HWND page) const override
    {
        std::vector<ListLine> lines;
        ReadFolders(page, LIST_ROOT, lines);
        for (int row = 0; row < CountRows(page); ++row) {
            lines.push_back({FILE_WORD, ReadRow(page, row)});
        }
        for (const CString& name : CListControl(page, IDC_LIST_DOWNLOADED).GetLines()) {
            lines.push_back({DOWNLOAD_WORD, {name}});
        }
        return lines;
    }

    std::vector<ListStep> MakeSteps(const std::vector<const PageAnswer*>& answers) const override
    {
        std::vector<ListStep> steps;
        for (const PageAnswer* answer : answers) {
            const CString word = answer->pKey->word;
            if (answer->pKey->kind == AnswerKind::Clear) {
                AddClearing(*answer, steps);
            } else if (word == FOLDER_WORD) {
                AddFolder(*answer, steps);
            } else if (word == FILE_WORD) {
                AddFile(*answer, steps);
            } else {
                AddDownload(*answer, steps);
            }
        }
        return steps;
    }

    bool IsAtWork(HWND page) const override { return !CControl(page, IDC_LIST_DOWNLOAD).IsEnabled(); }

private:
    static void AddClearing(const PageAnswer& answer, std::vector<ListStep>& steps)
    {
        steps.push_back({&answer, L"remove the files", [](HWND page) {
                             const CListControl files(page, IDC_LIST_FILES);
                             if (CountRows(page) == 0) {
                                 return StepOutcome::Done();
                             }
                             const StepOutcome selected = files.Select(0);
                             if (selected.IsDone()) {
                                 static_cast<void>(CControl(page, IDC_LIST_REMOVE).Click());
                                 return StepOutcome::NotYet(L"files are left");
                             }
                             return selected;
                         }});
        steps.push_back({&answer, L"delete the folders", [tried = CString()](HWND page) mutable {
                             if (FindPopupMenu()) {
                                 const StepOutcome chosen = ChooseMenuItem(ID_LIST_DELETE);
                                 return chosen.IsFailed() ? chosen : StepOutcome::NotYet(L"folders are left");
                             }
                             const std::vector<CString> folders = TreeOf(page).GetChildren({LIST_ROOT});
                             if (folders.empty()) {
                                 return StepOutcome::Done();
                             }
                             if (folders.front() == tried) {
                                 return CheckLine(page, false);
                             }
                             const StepOutcome opened =
                                 OpenMenu(page, CString(LIST_ROOT) + L"\\" + folders.front());
                             if (opened.IsDone()) {
                                 tried = folders.front();
                             }
                             return opened.IsFailed() ? opened : StepOutcome::NotYet(L"folders are left");
                         }});
    }

    static void AddFolder(const PageAnswer& answer, std::vector<ListStep>& steps)
    {
        const CString parent = answer.fields[0];
        const CString name = answer.fields[1];
        steps.push_back({&answer, L"open the menu", [parent](HWND page) { return OpenMenu(page, parent); }});
        steps.push_back(
            {&answer, L"choose New folder", [](HWND) { return ChooseMenuItem(ID_LIST_NEW_FOLDER); }});
        steps.push_back({&answer, L"type the label", [name](HWND page) { return TypeLabel(page, name); }});
        steps.push_back({&answer, L"look for the folder", [parent, name](HWND page) {
                             const std::vector<CString> names = TreeOf(page).GetChildren(PathInTree(parent));
                             return CheckLine(page, !names.empty() && names.back() == name);
                         }});
    }

    static void AddFile(const PageAnswer& answer, std::vector<ListStep>& steps)
    {
        const CString folder = answer.fields[0];
        const CString file = answer.fields[1];
        const auto rows = std::make_shared<int>(0);
        steps.push_back({&answer, L"select the folder", [folder](HWND page) {
                             const StepOutcome selected = TreeOf(page).Select(PathInTree(folder));
                             return selected.IsNotYet() && TreeOf(page).IsUsable()
                                        ? StepOutcome::Failed(L"There is no folder \"" + folder + L"\".")
                                        : selected;
                         }});
        steps.push_back({&answer, L"press Add", [rows](HWND page) {
                             *rows = CountRows(page);
                             return CControl(page, IDC_LIST_ADD).Click();
                         }});
        steps.push_back({&answer, L"pick the file", [file](HWND) { return EnterPickerFiles({file}); }});
        steps.push_back({&answer, L"press Open", [](HWND) { return AcceptFilePicker(); }});
        steps.push_back({&answer, L"look for the file",
                         [rows](HWND page) { return CheckLine(page, CountRows(page) > *rows); }});
    }

    static void AddDownload(const PageAnswer& answer, std::vector<ListStep>& steps)
    {
        const CString name = answer.fields[0];
        steps.push_back({&answer, L"type the name",
                         [name](HWND page) { return CControl(page, IDC_LIST_DOWNLOAD_NAME).SetText(name); }});
        steps.push_back({&answer, L"press Download",
                         [](HWND page) { return CControl(page, IDC_LIST_DOWNLOAD).Click(); }});
        steps.push_back({&answer, L"look for the download", [name](HWND page) {
                             const std::vector<CString> done =
                                 CListControl(page, IDC_LIST_DOWNLOADED).GetLines();
                             return CheckLine(page, !done.empty() && done.back() == name);
                         }});
    }
};

} // namespace

constexpr PageRow LIST_PAGE = {.stem = L"List",
                               .bTab = true,
                               .bOfProduct = true,
                               .section = L"things",
                               .wizardTemplate = IDD_LIST_WIZARD,
                               .tabTemplate = IDD_LIST_TAB};

constexpr PageAnswerTable LIST_PAGE_ANSWERS = {
    .page = &LIST_PAGE, .keys = KEYS, .boxes = BOXES, .workSeconds = 1};

PageListsTable ListPageLists()
{
    static const CListPageLists lists;
    static const PageListsRow ROWS[] = {{&LIST_PAGE_ANSWERS, &lists}};
    return ROWS;
}

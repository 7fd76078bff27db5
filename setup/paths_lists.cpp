#include "setup/paths_lists.h"

#include "automation/control.h"
#include "setup/path_words.h"
#include "setup/texts.h"
#include "window/controls.h"

#include <algorithm>
#include <cstddef>
#include <memory>

namespace {

using Texts = std::vector<CString>;

constexpr wchar_t NOT_ACCEPTED[] = L"The page hasn't accepted it.";

// The values of one path. Looking expands nothing.
class CPathNode
{
public:
    CPathNode(HWND page, const PathWord& path)
        : m_page(page), m_tree(::GetDlgItem(page, IDC_PATH_TREE)), m_path(path)
    {
    }

    // Neither a box nor what a box leaves behind is in the way.
    [[nodiscard]] StepOutcome NeedUsable() const { return CControl(m_tree).NeedUsable(); }

    [[nodiscard]] std::vector<HTREEITEM> Values() const
    {
        std::vector<HTREEITEM> values;
        const HTREEITEM heading = Heading();
        for (HTREEITEM value = heading ? m_tree.GetChildItem(heading) : nullptr; value;
             value = m_tree.GetNextSiblingItem(value)) {
            values.push_back(value);
        }
        return values;
    }

    [[nodiscard]] Texts GetTexts() const
    {
        Texts texts;
        for (const HTREEITEM value : Values()) {
            texts.push_back(m_tree.GetItemText(value));
        }
        return texts;
    }

    // Selects the value and presses the button, whose effect the next try of a step sees.
    [[nodiscard]] StepOutcome Press(std::size_t value, int button) const
    {
        const StepOutcome selected = Select(value);
        return selected.IsDone() ? CControl(m_page, button).Click() : selected;
    }

    [[nodiscard]] StepOutcome Select(std::size_t value) const
    {
        const std::vector<HTREEITEM> values = Values();
        if (value >= values.size()) {
            return StepOutcome::Failed(L"The page doesn't have this path.");
        }
        ::SetFocus(m_tree);
        m_tree.SelectItem(values[value]);
        return StepOutcome::Done();
    }

    [[nodiscard]] HWND GetEdit() const { return m_tree.GetEditControl(); }

    [[nodiscard]] HWND OpenEdit() const { return m_tree.EditLabel(m_tree.GetSelectedItem()); }

    // Sent, not posted: the page's boxes come up in here, and the run answers them.
    void EndEdit() const
    {
        if (const HWND edit = GetEdit()) {
            SendMessageW(edit, WM_KEYDOWN, VK_RETURN, 1);
        }
    }

    [[nodiscard]] StepOutcome Type(const CString& text) const
    {
        const StepOutcome typed = CControl(GetEdit()).SetText(text);
        if (typed.IsDone()) {
            EndEdit();
        }
        return typed;
    }

private:
    [[nodiscard]] HTREEITEM Find(HTREEITEM first, unsigned int label) const
    {
        const CString text = PageText(label);
        HTREEITEM item = first;
        while (item && m_tree.GetItemText(item) != text) {
            item = m_tree.GetNextSiblingItem(item);
        }
        return item;
    }

    [[nodiscard]] HTREEITEM Heading() const
    {
        HTREEITEM first = m_tree.GetRootItem();
        if (m_path.parent != NO_PARENT) {
            const HTREEITEM parent = Find(first, m_path.parent);
            first = parent ? m_tree.GetChildItem(parent) : nullptr;
        }
        return Find(first, m_path.heading);
    }

    HWND m_page;
    CTreeViewCtrl m_tree;
    const PathWord& m_path;
};

const PathWord& PathOf(const PageAnswer& answer)
{
    const CString word = answer.pKey->word;
    return *std::find_if(std::begin(PATH_WORDS), std::end(PATH_WORDS),
                         [&word](const PathWord& path) { return word == path.word; });
}

// The first entry that the answers don't have; of equal ones so many stay as are answered. An empty entry that is the only one
// is what the page leaves of an emptied list. None: the number of entries.
std::size_t FindUnanswered(const Texts& entries, Texts wanted)
{
    if (entries == Texts{CString()}) {
        return entries.size();
    }
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const auto found = std::find(wanted.begin(), wanted.end(), entries[index]);
        if (found == wanted.end()) {
            return index;
        }
        wanted.erase(found);
    }
    return entries.size();
}

// A step of one path that is tried only while the page can be worked on.
void AddStep(std::vector<ListStep>& steps, const PageAnswer& answer, const wchar_t* name,
             std::function<StepOutcome(const CPathNode&)> run)
{
    steps.push_back({&answer, name, [&path = PathOf(answer), run = std::move(run)](HWND page) {
                         const CPathNode node(page, path);
                         const StepOutcome usable = node.NeedUsable();
                         return usable.IsDone() ? run(node) : usable;
                     }});
}

// ---- a single value

void AddValueSteps(const PageAnswer& answer, std::vector<ListStep>& steps)
{
    const Texts wanted = {answer.Value()};
    AddStep(steps, answer, L"edit or remove the path", [wanted](const CPathNode& node) {
        if (node.GetTexts() == wanted) { // also one that the page wouldn't accept from a person
            return StepOutcome::Done();
        }
        if (wanted.front().IsEmpty()) {
            return node.Press(0, IDC_PATH_REMOVE);
        }
        const StepOutcome selected = node.Select(0);
        if (!selected.IsDone()) {
            return selected;
        }
        return node.OpenEdit() ? node.Type(wanted.front())
                               : StepOutcome::Failed(L"The page doesn't let it be edited.");
    });
    AddStep(steps, answer, L"look for the path", [wanted](const CPathNode& node) {
        if (wanted.front().IsEmpty()) {
            node.EndEdit(); // which Remove has begun
        }
        return node.GetTexts() == wanted ? StepOutcome::Done() : StepOutcome::Failed(NOT_ACCEPTED);
    });
}

// ---- a list

// Removing the only entry empties it and begins its edit.
void AddRemovalStep(const PageAnswer& answer, const Texts& wanted, std::vector<ListStep>& steps)
{
    AddStep(steps, answer, L"remove what isn't answered",
            [wanted, before = Texts()](const CPathNode& node) mutable {
                node.EndEdit();
                const Texts entries = node.GetTexts();
                const std::size_t unanswered = FindUnanswered(entries, wanted);
                if (unanswered == entries.size()) {
                    return StepOutcome::Done();
                }
                if (entries == before) {
                    return StepOutcome::Failed(L"The page doesn't remove \"" + entries[unanswered] + L"\".");
                }
                before = entries;
                const StepOutcome pressed = node.Press(unanswered, IDC_PATH_REMOVE);
                return pressed.IsFailed() ? pressed : StepOutcome::NotYet(L"entries are left");
            });
}

void AddEntrySteps(const PageAnswer& answer, std::size_t place, std::vector<ListStep>& steps)
{
    const CString text = answer.Value();
    const auto isMissing = [text, place](const Texts& entries) {
        return place >= entries.size() || std::find(entries.begin() + static_cast<std::ptrdiff_t>(place),
                                                    entries.end(), text) == entries.end();
    };
    const auto adds = std::make_shared<bool>(false);
    AddStep(steps, answer, L"press Add", [isMissing, adds](const CPathNode& node) {
        *adds = isMissing(node.GetTexts());
        return *adds ? node.Press(0, IDC_PATH_ADD) : StepOutcome::Done();
    });
    AddStep(steps, answer, L"type the entry", [text, adds](const CPathNode& node) {
        if (!*adds) {
            return StepOutcome::Done();
        }
        return node.GetEdit() ? node.Type(text) : StepOutcome::NotYet(L"no entry is being edited");
    });
    AddStep(steps, answer, L"look for the entry", [isMissing](const CPathNode& node) {
        return isMissing(node.GetTexts()) ? StepOutcome::Failed(NOT_ACCEPTED) : StepOutcome::Done();
    });
    AddStep(steps, answer, L"move the entry up",
            [text, place, before = Texts()](const CPathNode& node) mutable {
                const Texts entries = node.GetTexts();
                const auto first = entries.begin() + static_cast<std::ptrdiff_t>(place);
                const auto found = std::find(first, entries.end(), text);
                if (found == first) {
                    return StepOutcome::Done();
                }
                if (entries == before || found == entries.end()) {
                    return StepOutcome::Failed(L"The page doesn't move it to its place.");
                }
                before = entries;
                const StepOutcome pressed =
                    node.Press(static_cast<std::size_t>(found - entries.begin()), IDC_PATH_MOVE_UP);
                return pressed.IsFailed() ? pressed : StepOutcome::NotYet(L"the entry isn't at its place");
            });
}

void AddListSteps(const std::vector<const PageAnswer*>& lines, std::vector<ListStep>& steps)
{
    Texts wanted;
    for (const PageAnswer* line : lines) {
        wanted.push_back(line->Value());
    }
    AddRemovalStep(*lines.front(), wanted, steps);
    if (wanted == Texts{CString()}) {
        return;
    }
    for (std::size_t place = 0; place < lines.size(); ++place) {
        if (wanted[place].IsEmpty()) {
            AddStep(steps, *lines[place], L"refuse an empty entry", [](const CPathNode&) {
                return StepOutcome::Failed(
                    L"The page has no empty entries among others. A single empty line empties the list.");
            });
            return;
        }
        AddEntrySteps(*lines[place], place, steps);
    }
}

// ---- the page

class CPathsPageLists final : public IPageLists
{
public:
    [[nodiscard]] std::vector<ListLine> Read(HWND page) const override
    {
        std::vector<ListLine> lines;
        for (const PathWord& path : PATH_WORDS) {
            for (const CString& text : CPathNode(page, path).GetTexts()) {
                lines.push_back({path.word, {text}});
            }
        }
        return lines;
    }

    // What is so already is left alone, entry by entry: it may be what the page wouldn't accept from a person.
    [[nodiscard]] std::vector<ListStep>
    MakeSteps(const std::vector<const PageAnswer*>& answers) const override
    {
        std::vector<ListStep> steps;
        for (const PathWord& path : PATH_WORDS) {
            std::vector<const PageAnswer*> lines;
            std::copy_if(
                answers.begin(), answers.end(), std::back_inserter(lines),
                [&path](const PageAnswer* answer) { return CString(path.word) == answer->pKey->word; });
            if (lines.empty()) {
                continue;
            }
            if (path.kind == AnswerKind::List) {
                AddListSteps(lines, steps);
            } else {
                AddValueSteps(*lines.front(), steps);
            }
        }
        return steps;
    }

    [[nodiscard]] bool IsAtWork(HWND) const override { return false; }
};

} // namespace

const IPageLists& PathsPageLists()
{
    static const CPathsPageLists lists;
    return lists;
}

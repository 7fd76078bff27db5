#include "setup/files_lists.h"

#include "automation/window_finder.h"
#include "base/path_text.h"
#include "include/resource_ids.h"
#include "setup/files_steps.h"
#include "setup/files_tree.h"
#include "setup/files_words.h"

#include <algorithm>

namespace {

// ---- reading

struct LabeledItem
{
    CString label;
    HTREEITEM item = nullptr;
    CString source;
};

// By their labels: the page sorts its items only now and then.
std::vector<LabeledItem> SortedChildren(const CFilesTree& tree, HTREEITEM parent)
{
    std::vector<LabeledItem> children;
    for (const HTREEITEM item : tree.Children(parent)) {
        children.push_back({tree.LabelOf(item), item, tree.SourceOf(item)});
    }
    std::stable_sort(children.begin(), children.end(), [](const LabeledItem& left, const LabeledItem& right) {
        return left.label.CompareNoCase(right.label) < 0;
    });
    return children;
}

// A folder's files, and then each of its folders with what it contains.
void ReadFolder(const CFilesTree& tree, HTREEITEM folder, const CString& path, std::vector<ListLine>& lines)
{
    const std::vector<LabeledItem> children = SortedChildren(tree, folder);
    for (const LabeledItem& child : children) {
        if (!child.source.IsEmpty()) {
            lines.push_back({FILES_FILE, {path, child.source}});
        }
    }
    for (const LabeledItem& child : children) {
        if (child.source.IsEmpty()) {
            if (tree.IsAdded(child.item)) {
                lines.push_back({FILES_FOLDER, {path, child.label}});
            }
            ReadFolder(tree, child.item, path + L"\\" + child.label, lines);
        }
    }
}

// ---- entering

bool AreOfOneFolder(const PageAnswer& left, const PageAnswer& right)
{
    return left.fields[0].CompareNoCase(right.fields[0]) == 0 &&
           FolderAbove(left.fields[1]).CompareNoCase(FolderAbove(right.fields[1])) == 0;
}

bool IsOfWord(const PageAnswer& answer, const wchar_t* word)
{
    return CString(word) == answer.pKey->word;
}

// The file at `first` and those right behind it that can be picked with it.
AnswerLines FileGroup(const AnswerLines& lines, std::size_t first)
{
    AnswerLines group = {lines[first]};
    while (first + group.size() < lines.size()) {
        const PageAnswer* const next = lines[first + group.size()];
        if (!IsOfWord(*next, FILES_FILE) || !AreOfOneFolder(*group.front(), *next)) {
            break;
        }
        group.push_back(next);
    }
    return group;
}

void AddSteps(const PageAnswer& line, ListSteps& steps)
{
    struct Word
    {
        const wchar_t* word;
        void (*addSteps)(const PageAnswer& line, ListSteps& steps);
    };
    static constexpr Word WORDS[] = {{FILES_FOLDER, AddFolderSteps},
                                     {FILES_FOLDER_TREE, AddFolderTreeSteps},
                                     {FILES_DRIVE, AddDriveSteps},
                                     {FILES_RENAME, AddRenameSteps},
                                     {FILES_REMOVE, AddRemoveSteps}};
    for (const Word& word : WORDS) {
        if (IsOfWord(line, word.word)) {
            word.addSteps(line, steps);
        }
    }
}

class CFilesPageLists final : public IPageLists
{
public:
    // What stands at the root and is no drive can't be added there by a person: its folder isn't shown.
    [[nodiscard]] std::vector<ListLine> Read(HWND page) const override
    {
        const CFilesTree tree(page);
        std::vector<ListLine> lines;
        std::vector<LabeledItem> drives;
        for (const LabeledItem& root : SortedChildren(tree, nullptr)) {
            if (!tree.IsAdded(root.item)) {
                ReadFolder(tree, root.item, tree.PathOf(root.item), lines);
            } else if (root.source.IsEmpty() && root.label.Right(1) == L":") {
                drives.push_back(root);
            }
        }
        // From behind: the page offers the first drive of the computer that the tree doesn't have, so C: is there last.
        for (auto drive = drives.rbegin(); drive != drives.rend(); ++drive) {
            lines.push_back({FILES_DRIVE, {drive->label}});
            ReadFolder(tree, drive->item, drive->label, lines);
        }
        return lines;
    }

    [[nodiscard]] std::vector<ListStep>
    MakeSteps(const std::vector<const PageAnswer*>& answers) const override
    {
        ListSteps steps;
        for (std::size_t index = 0; index < answers.size();) {
            const PageAnswer& answer = *answers[index];
            if (IsOfWord(answer, FILES_FILE)) {
                const AnswerLines group = FileGroup(answers, index);
                AddFileSteps(group, steps);
                index += group.size();
                continue;
            }
            if (answer.pKey->kind == AnswerKind::Clear) {
                AddClearSteps(answer, answers, steps);
            }
            AddSteps(answer, steps);
            ++index;
        }
        return steps;
    }

    [[nodiscard]] bool IsAtWork(HWND) const override
    {
        return CFilesTree::IsDropping() || FindWindowWithControls({IDC_FILES_PROGRESS_BAR}) != nullptr;
    }
};

} // namespace

const IPageLists& FilesPageLists()
{
    static const CFilesPageLists lists;
    return lists;
}

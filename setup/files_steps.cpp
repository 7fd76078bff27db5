#include "setup/files_steps.h"

#include "automation/file_picker.h"
#include "base/path_text.h"
#include "include/resource_ids.h"
#include "setup/files_tree.h"
#include "setup/files_words.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

namespace {

constexpr wchar_t NOT_ACCEPTED[] = L"The page hasn't accepted it.";

// What a person picks at once; the picker's box for names has room for some 30,000 characters.
constexpr std::size_t FILES_AT_ONCE = 100;
constexpr int CHARACTERS_AT_ONCE = 8000;

// A step that is tried only while the page can be worked on.
template <class Run>
void AddStep(ListSteps& steps, const PageAnswer& answer, const wchar_t* name, Run run)
{
    steps.push_back({&answer, name, [run = std::move(run)](HWND page) mutable {
                         const CFilesTree tree(page);
                         const StepOutcome usable = tree.NeedUsable();
                         return usable.IsDone() ? run(tree) : usable;
                     }});
}

StepOutcome NotThere(const CString& path)
{
    return StepOutcome::Failed(L"The page has no \"" + path + L"\". Write a path as the tree shows it; " +
                               FILES_ROOT_MARK + L" stands for the folder of the product.");
}

// The folder or drive of that path; failed for a file.
StepOutcome FindFolder(const CFilesTree& tree, const CString& path, HTREEITEM& folder)
{
    folder = tree.Find(path);
    if (!folder) {
        return NotThere(path);
    }
    return tree.SourceOf(folder).IsEmpty() ? StepOutcome::Done()
                                           : StepOutcome::Failed(L"\"" + path + L"\" is a file.");
}

StepOutcome NeedAdded(const CFilesTree& tree, const CString& path, HTREEITEM item)
{
    if (!item) {
        return NotThere(path);
    }
    return tree.IsAdded(item) ? StepOutcome::Done()
                              : StepOutcome::Failed(L"\"" + path + L"\" came with the product.");
}

enum class EntryKind
{
    None,
    File,
    Folder,
};

EntryKind KindOnDisk(const CString& path)
{
    const DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return EntryKind::None;
    }
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? EntryKind::Folder : EntryKind::File;
}

// ---- files

// Lines of one target folder, whose sources lie in one folder.
class CFileLines
{
public:
    explicit CFileLines(const AnswerLines& lines) : m_lines(lines), m_folder(lines.front()->fields[0]) {}

    // One try to have the file of a line on the page.
    StepOutcome Enter(HWND page, std::size_t line)
    {
        if (m_stage == Stage::Opening) {
            return FindFilePicker() ? UsePicker() : StepOutcome::NotYet(L"the file dialog isn't up");
        }
        if (FindFilePicker()) {
            return StepOutcome::NotYet(L"the file dialog is still up");
        }
        const CFilesTree tree(page);
        const StepOutcome usable = tree.NeedUsable();
        if (!usable.IsDone()) {
            return usable;
        }
        const bool isPicked = std::exchange(m_stage, Stage::Idle) == Stage::Accepted;
        if (isPicked || !m_isRead) {
            const StepOutcome read = Read(tree);
            if (!read.IsDone()) {
                return read;
            }
        }
        if (IsThere(SourceOf(line))) {
            return StepOutcome::Done();
        }
        return isPicked ? StepOutcome::Failed(NOT_ACCEPTED) : OpenPicker(tree, line);
    }

private:
    enum class Stage
    {
        Idle,
        Opening,  // the picker
        Accepted, // what it was given
    };

    const CString& SourceOf(std::size_t line) const { return m_lines[line]->fields[1]; }

    StepOutcome Read(const CFilesTree& tree)
    {
        const StepOutcome folder = FindFolder(tree, m_folder, m_target);
        m_there.clear();
        if (folder.IsDone()) {
            for (const HTREEITEM child : tree.Children(m_target)) {
                m_there[tree.LabelOf(child)] = tree.SourceOf(child);
            }
        }
        m_isRead = folder.IsDone();
        return folder;
    }

    bool IsTaken(const CString& name) const { return m_there.find(name) != m_there.end(); }
    bool IsThere(const CString& source) const
    {
        const auto found = m_there.find(LastName(source));
        return found != m_there.end() && found->second.CompareNoCase(source) == 0;
    }

    StepOutcome OpenPicker(const CFilesTree& tree, std::size_t line)
    {
        const EntryKind kind = KindOnDisk(SourceOf(line));
        if (kind == EntryKind::Folder) {
            return StepOutcome::Failed(L"This is a folder. Write " + CString(FILES_FOLDER_TREE) +
                                       L" to add one with all that it contains.");
        }
        if (kind == EntryKind::None) {
            return StepOutcome::Failed(L"The file doesn't exist.");
        }
        Choose(line);
        tree.Select(m_target);
        m_stage = Stage::Opening;
        const StepOutcome pressed = tree.Press(IDC_FILES_ADD);
        return pressed.IsDone() ? StepOutcome::NotYet(L"the file dialog isn't up") : pressed;
    }

    // The line's file, and those right behind it about which the page asks nothing.
    void Choose(std::size_t line)
    {
        m_picked = {SourceOf(line)};
        std::set<CString, CompareNoCaseLess> names = {LastName(SourceOf(line))};
        const bool isAskedAbout = IsTaken(*names.begin());
        int characters = 0;
        for (std::size_t next = line + 1; next < m_lines.size() && !isAskedAbout; ++next) {
            const CString& source = SourceOf(next);
            const CString name = LastName(source);
            characters += name.GetLength();
            if (m_picked.size() == FILES_AT_ONCE || characters > CHARACTERS_AT_ONCE || IsTaken(name) ||
                !names.insert(name).second || KindOnDisk(source) != EntryKind::File) {
                return;
            }
            m_picked.push_back(source);
        }
    }

    StepOutcome UsePicker()
    {
        const StepOutcome entered = EnterPickerFiles(m_picked);
        if (!entered.IsDone()) {
            return entered;
        }
        const StepOutcome accepted = AcceptFilePicker();
        if (accepted.IsDone()) {
            m_stage = Stage::Accepted;
        }
        return accepted.IsDone() ? StepOutcome::NotYet(L"the files are being added") : accepted;
    }

    AnswerLines m_lines;
    CString m_folder;
    Stage m_stage = Stage::Idle;
    bool m_isRead = false;
    HTREEITEM m_target = nullptr;
    std::map<CString, CString, CompareNoCaseLess> m_there; // source by name; empty for folders
    std::vector<CString> m_picked;
};

// ---- labels

// Into the edit that the button pressed in the step before has opened: it opens while the button's message is handled.
void AddTypingStep(ListSteps& steps, const PageAnswer& line, const std::shared_ptr<bool>& adds,
                   const CString& label, const wchar_t* withoutEdit)
{
    AddStep(steps, line, L"type the label", [adds, label, withoutEdit](const CFilesTree& tree) {
        if (!*adds) {
            return StepOutcome::Done();
        }
        return tree.GetEdit() ? tree.Type(label) : StepOutcome::Failed(withoutEdit);
    });
}

StepOutcome Expect(bool accepted)
{
    return accepted ? StepOutcome::Done() : StepOutcome::Failed(NOT_ACCEPTED);
}

CString ChildPath(const CString& folder, const CString& name)
{
    return CString(folder).TrimRight(L"\\") + L"\\" + name;
}

CString FolderPath(const CString& path)
{
    const CString bare = CString(path).TrimRight(L"\\");
    const int last = bare.ReverseFind(L'\\');
    return last < 0 ? CString() : bare.Left(last);
}

// ---- clearing

// What the lines name by itself: the sources of files by their paths, and no source for folders and drives.
using AskedItems = std::map<CString, CString, CompareNoCaseLess>;

// In the form of CFilesTree::PathOf, as far as the tree has it.
void AddAsked(const CFilesTree& tree, const CString& folder, const CString& name, const CString& source,
              AskedItems& items)
{
    const HTREEITEM item = tree.Find(name.IsEmpty() ? folder : ChildPath(folder, name));
    if (item) {
        items[tree.PathOf(item)] = source;
    }
}

AskedItems FindAsked(const CFilesTree& tree, const AnswerLines& lines)
{
    AskedItems items;
    for (const PageAnswer* line : lines) {
        const CString word = line->pKey->word;
        if (word == FILES_DRIVE) {
            AddAsked(tree, line->fields[0], CString(), CString(), items);
        } else if (word == FILES_FOLDER) {
            AddAsked(tree, line->fields[0], line->fields[1], CString(), items);
        } else if (word == FILES_FILE) {
            AddAsked(tree, line->fields[0], LastName(line->fields[1]), line->fields[1], items);
        }
    }
    return items;
}

bool IsAsked(const CFilesTree& tree, HTREEITEM item, const CString& path, const AskedItems& asked)
{
    const auto found = asked.find(path);
    return found != asked.end() && found->second.CompareNoCase(tree.SourceOf(item)) == 0;
}

// The first added item that no line asks for, from the top; null for none.
HTREEITEM FindUnasked(const CFilesTree& tree, HTREEITEM parent, const CString& parentPath,
                      const AskedItems& asked)
{
    for (const HTREEITEM item : tree.Children(parent)) {
        const CString path = parent ? ChildPath(parentPath, tree.LabelOf(item)) : tree.PathOf(item);
        if (tree.IsAdded(item) && !IsAsked(tree, item, path, asked)) {
            return item;
        }
        if (const HTREEITEM inner = FindUnasked(tree, item, path, asked)) {
            return inner;
        }
    }
    return nullptr;
}

} // namespace

void AddFileSteps(const AnswerLines& lines, ListSteps& steps)
{
    const auto group = std::make_shared<CFileLines>(lines);
    for (std::size_t line = 0; line < lines.size(); ++line) {
        steps.push_back(
            {lines[line], L"add the file", [group, line](HWND page) { return group->Enter(page, line); }});
    }
}

void AddFolderSteps(const PageAnswer& line, ListSteps& steps)
{
    const CString parent = line.fields[0];
    const CString name = line.fields[1];
    const auto adds = std::make_shared<bool>(false);
    AddStep(steps, line, L"press Add folder", [parent, name, adds](const CFilesTree& tree) {
        HTREEITEM folder = nullptr;
        const StepOutcome found = FindFolder(tree, parent, folder);
        if (!found.IsDone()) {
            return found;
        }
        const HTREEITEM child = tree.FindChild(folder, name);
        if (child) {
            return tree.SourceOf(child).IsEmpty() ? StepOutcome::Done()
                                                  : StepOutcome::Failed(L"A file has this name.");
        }
        *adds = true;
        tree.Select(folder);
        return tree.Press(IDC_FILES_ADD_FOLDER);
    });
    AddTypingStep(steps, line, adds, name,
                  L"The page doesn't add it: its path is too long, or the database can't store it.");
    AddStep(steps, line, L"look for the folder", [parent, name](const CFilesTree& tree) {
        return Expect(tree.Find(ChildPath(parent, name)) != nullptr);
    });
}

// What is in the way is reported by the page's own box. A drive's contents come without a folder of their own.
void AddFolderTreeSteps(const PageAnswer& line, ListSteps& steps)
{
    const CString parent = line.fields[0];
    const CString source = WithoutClosingBackslash(line.fields[1]);
    AddStep(steps, line, L"drop the folder", [parent, source](const CFilesTree& tree) {
        HTREEITEM folder = nullptr;
        const StepOutcome found = FindFolder(tree, parent, folder);
        if (!found.IsDone()) {
            return found;
        }
        if (KindOnDisk(source) != EntryKind::Folder) {
            return StepOutcome::Failed(L"There is no such folder.");
        }
        tree.Select(folder);
        tree.Drop(source);
        return StepOutcome::Done();
    });
    AddStep(steps, line, L"look for the folder", [parent, source](const CFilesTree& tree) {
        const bool isDrive = source.Right(1) == L"\\";
        return Expect(isDrive || tree.Find(ChildPath(parent, LastName(source))));
    });
}

void AddDriveSteps(const PageAnswer& line, ListSteps& steps)
{
    const CString drive = CString(line.Value()).TrimRight(L"\\");
    const auto adds = std::make_shared<bool>(false);
    AddStep(steps, line, L"press Add drive", [drive, adds](const CFilesTree& tree) {
        *adds = !tree.FindChild(nullptr, drive);
        return *adds ? tree.Press(IDC_FILES_ADD_DRIVE) : StepOutcome::Done();
    });
    AddTypingStep(steps, line, adds, drive,
                  L"The page offers no drive: it offers those of this computer that it doesn't show yet. "
                  L"Write C: behind the others.");
    AddStep(steps, line, L"look for the drive",
            [drive](const CFilesTree& tree) { return Expect(tree.FindChild(nullptr, drive) != nullptr); });
}

void AddRenameSteps(const PageAnswer& line, ListSteps& steps)
{
    const CString path = line.fields[0];
    const CString name = line.fields[1];
    AddStep(steps, line, L"edit the label", [path, name](const CFilesTree& tree) {
        const HTREEITEM item = tree.Find(path);
        const StepOutcome added = NeedAdded(tree, path, item);
        if (!added.IsDone()) {
            return added;
        }
        if (!tree.SourceOf(item).IsEmpty()) {
            return StepOutcome::Failed(L"A file keeps the name of its source. Rename folders and drives.");
        }
        return tree.OpenEdit(item) ? tree.Type(name)
                                   : StepOutcome::Failed(L"The page doesn't let it be renamed.");
    });
    AddStep(steps, line, L"look for the new name", [path, name](const CFilesTree& tree) {
        const CString folder = FolderPath(path);
        return Expect(tree.Find(folder.IsEmpty() ? name : ChildPath(folder, name)) != nullptr);
    });
}

void AddRemoveSteps(const PageAnswer& line, ListSteps& steps)
{
    const CString path = line.Value();
    AddStep(steps, line, L"press Delete", [path](const CFilesTree& tree) {
        const HTREEITEM item = tree.Find(path);
        const StepOutcome added = NeedAdded(tree, path, item);
        if (!added.IsDone()) {
            return added;
        }
        tree.Select(item);
        return tree.Press(IDC_FILES_DELETE);
    });
    AddStep(steps, line, L"look whether it has gone",
            [path](const CFilesTree& tree) { return Expect(!tree.Find(path)); });
}

void AddClearSteps(const PageAnswer& answer, const AnswerLines& lines, ListSteps& steps)
{
    AddStep(steps, answer, L"remove what isn't answered",
            [lines, asked = std::optional<AskedItems>(), before = CString()](const CFilesTree& tree) mutable {
                if (!asked) {
                    asked = FindAsked(tree, lines);
                }
                const HTREEITEM item = FindUnasked(tree, nullptr, CString(), *asked);
                if (!item) {
                    return StepOutcome::Done();
                }
                const CString path = tree.PathOf(item);
                if (path == std::exchange(before, path)) {
                    return StepOutcome::Failed(L"The page doesn't remove \"" + path + L"\".");
                }
                tree.Select(item);
                const StepOutcome pressed = tree.Press(IDC_FILES_DELETE);
                return pressed.IsDone() ? StepOutcome::NotYet(L"items are left") : pressed;
            });
}

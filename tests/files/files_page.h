// The page of additional files in both shapes, on a product whose database is a real one and whose directories a map answers.
//
// Places in the tree are named by their display path; "~" stands for the root: L"~\\Fonts\\plan.txt".
#pragma once

#include "automation/popup_menu.h"
#include "automation/tree_control.h"
#include "files/add_files_tree.h"
#include "installer/handle.h"
#include "tests/files/test_directories.h"
#include "tests/installer/database_fixture.h"
#include "tests/online/online_page.h"
#include "tests/support/import_redirect.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

class FilesPage : public OnlinePage
{
protected:
    using Lines = std::vector<CString>;
    // The product's own folders, as the tree shows them when nothing was added.
    static const Lines OWN_FOLDERS;

    FilesPage();
    void TearDown() override;

    // ---- the database and the host, before the page opens
    void Run(const CString& statement);
    // True when the service ran it.
    bool TryRun(const CString& statement);
    Rows Select(const CString& query) { return ::Select(Database(), query); }
    MSIHANDLE Database() const { return m_database.get(); }
    // In the host's map and in the table; with a component of its own unless the key of one is given.
    void WithDirectory(const CString& key, const CString& parent, const CString& name, const CString& target,
                       const CString& source);
    void WithComponent(const CString& key, const CString& directory);
    void WithUsedDirectory(const CString& key, const CString& parent, const CString& name,
                           const CString& target, const CString& source);
    void WithMapRow(const CString& key, const CString& text, int flags);
    // What an earlier run wrote.
    void WithFile(const CString& key, const CString& directory, const CString& source);
    void WithFolder(const CString& key, const CString& parent, const CString& name);
    void WithDrive(const CString& key, const CString& drive);
    // Of a file that an earlier run wrote.
    void RemoveRowsOf(const CString& key);
    // Another database with the same tables and no rows of directories, and a map to match.
    void WithFreshDatabase(const wchar_t* file);
    // A file on the disk; the folder of the name is made.
    CString Source(const CString& name, const char* bytes = "12345");

    // ---- steps
    void SelectNode(const CString& path);
    void SelectNothing();
    void Expand(const CString& path);
    void FocusTo(int id);
    void AwaitEdit();
    void AwaitNoEdit();
    void TypeLabel(const CString& text);
    // F2, the text, Enter.
    void Rename(const CString& path, const CString& text);
    // Presses the button; the picker answers these without coming up. No paths: canceled.
    void AddFiles(const Lines& paths);
    // From here on the system's picker comes up.
    void UseSystemPicker() { m_picker.reset(); }
    // Presses the button, types the name, Enter.
    void AddFolder(const CString& parent, const CString& name);
    void DropOnto(const CString& path, const Lines& dropped);
    void DropAt(POINT place, const Lines& dropped);
    // As a file manager does it.
    void PostDrop(POINT place, const Lines& dropped);
    // Opens the menu of the item with the mouse; of the empty space below the tree for an empty path.
    void RightClick(const CString& path);
    // The states of the menu's four commands, an E or a D each: drive, folder, rename, delete. Closes the menu.
    void ExpectMenu(const wchar_t* states);
    void ChooseInMenu(int id);
    // After something else was done under it.
    void AnswerNameBox(unsigned int text, std::function<void()> meanwhile = nullptr);
    void ExpectTree(const Lines& lines);
    void ExpectSelected(const CString& path);
    // Add folder and Delete, an E or a D each.
    void ExpectButtons(const wchar_t* states);

    // ---- looks
    CTreeControl Tree() const { return CTreeControl(GetDlgItem(Page(), IDC_FILES_TREE)); }
    HWND EditBox() const;
    // Null when there is none.
    HTREEITEM Node(const CString& path) const;
    const FileTreeNode* Data(const CString& path) const;
    CString KeyOf(const CString& path) const { return Data(path) ? Data(path)->Key : CString(L"(no node)"); }
    HTREEITEM Selected() const { return Tree().GetSelection(); }
    HTREEITEM Relative(HTREEITEM node, UINT relation) const;
    TVITEMW Item(HTREEITEM node) const;  // images, data and state
    POINT PlaceOf(HTREEITEM node) const; // on its text, in the tree's client area
    // All nodes in the order of the view, two blanks a level; an added one with a star behind it.
    Lines TreeLines() const;
    // Calls with each node and its depth, in the order of the view.
    void WalkTree(const std::function<void(HTREEITEM, int)>& visit) const;
    CString Modified() const;
    // Number of rows of a table.
    int Count(const wchar_t* table)
    {
        return static_cast<int>(Select(CString(L"SELECT * FROM `") + table + L"`").size());
    }
    // In each table of additions, what isn't the product's own: nothing is left of them.
    void ExpectNoAdditions();
    static CString Expanded(const CString& path);

    TestProduct& product;
    TestDirectoryManager directories;
    CTestFolder folder;
    // What the service's target path of a key is; keys that aren't here fail.
    std::map<CString, CString> servicePaths;

private:
    void MakeDatabase(const wchar_t* file);
    void FillDatabase();
    void MeetTreeOnce();

    CInstallerHandle m_database;
    std::unique_ptr<CImportRedirect> m_picker;
};

// What the system hands over for files that are dropped there.
HGLOBAL MakeDrop(POINT place, const std::vector<CString>& paths);

// A warning over the tree, without a title.
ExpectedBox MissingBox(const CString& path);
ExpectedBox ReplaceBox(const CString& name, const CString& existing, const CString& added);

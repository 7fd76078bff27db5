// The page of the paths in both shapes, on a product whose installer properties lie in a real database.
#pragma once

#include "automation/tree_control.h"
#include "installer/handle.h"
#include "paths/path_table.h"
#include "tests/online/online_page.h"

#include <map>
#include <vector>

class PathsPage : public OnlinePage
{
protected:
    using Texts = std::vector<CString>;

    PathsPage();
    void TearDown() override;

    // ---- the database, before the page opens
    void Run(const CString& statement);
    void WithPath(PathProperty property, const CString& installerForm);
    // A row that is usable as a prefix.
    void WithDirectory(const wchar_t* key, const wchar_t* text);
    CString Marker() const;

    // ---- steps
    // Selects the value below the heading of the path; entries of a list count from 0.
    void SelectValue(PathProperty property, int entry = 0);
    void SelectHeading(PathProperty property);
    // Begins the label edit of the selected node by F2 and types; ends it by Enter.
    void BeginEdit();
    void TypeLabel(const CString& text);
    void EndEdit();
    void Edit(PathProperty property, const CString& text, int entry = 0);
    // With the mouse: by messages that the page's filter sees, unlike Press.
    void MouseDown(int button);
    void MousePress(int button);
    // Answers a message about that path.
    void AnswerPathBox(unsigned int text, const CString& path, int button = IDOK);
    void AwaitEdit();
    void AwaitNoEdit();
    void ExpectValues(PathProperty property, const Texts& texts);
    void ExpectSelected(PathProperty property, int entry);
    void ExpectButtons(const wchar_t* states); // Browse, Add, Remove, Move Up, Move Down
    // Picks in the system's folder picker and waits for the page; an empty folder cancels.
    void PickFolder(const CString& folder);
    void PickFile(const CString& file);

    // ---- looks
    CTreeControl Tree() const { return CTreeControl(GetDlgItem(Page(), IDC_PATH_TREE)); }
    HWND EditBox() const;
    HTREEITEM Relative(HTREEITEM node, UINT relation) const;
    HTREEITEM Heading(PathProperty property) const;
    HTREEITEM Value(PathProperty property, int entry = 0) const;
    HTREEITEM Selected() const { return Tree().GetSelection(); }
    Texts Values(PathProperty property) const;
    TVITEMW Item(HTREEITEM node) const;  // images, data and state
    POINT PlaceOf(HTREEITEM node) const; // on its text, in the tree's client area
    // What the host stored; "(none)" for nothing.
    CString Stored(PathProperty property) const;
    static const PathRow& RowOf(PathProperty property);

    TestProduct& product;
    CTestFolder folder;

private:
    void MeetTreeOnce();

    CInstallerHandle m_database;
};

// What the page says of a path that was typed, without a title of its own.
ExpectedBox PathBox(unsigned int text, const CString& path);

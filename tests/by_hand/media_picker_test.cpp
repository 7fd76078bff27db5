// A start without media: the program asks for their folder.
#include "automation/window_finder.h"
#include "base/handle.h"
#include "include/resource_ids.h"
#include "tests/by_hand/by_hand_fixture.h"
#include "tests/by_hand/foreign_tree.h"

#include <shellapi.h>
#include <shlobj.h>

namespace {

HWND FindTree(HWND picker)
{
    for (HWND child : ChildWindows(picker)) {
        if (WindowClass(child) == CString(L"SysTreeView32")) {
            return child;
        }
    }
    return nullptr;
}

// What the shell calls the folder that holds the drives.
CString NameOfDrives()
{
    ITEMIDLIST* drives = nullptr;
    SHGetSpecialFolderLocation(nullptr, CSIDL_DRIVES, &drives);
    const CTaskOwner owner(drives);
    SHFILEINFOW info = {};
    SHGetFileInfoW(reinterpret_cast<const wchar_t*>(drives), 0, &info, sizeof info,
                   SHGFI_PIDL | SHGFI_DISPLAYNAME);
    return info.szDisplayName;
}

class MediaPickerByHand : public ByHandTest
{
protected:
    // Down the tree by the arrow keys to the next line that holds `text`.
    void GoDownTo(const CForeignTree& tree, const CString& text)
    {
        for (CString line = tree.GetSelectedText(); line.Find(text) < 0; line = tree.GetSelectedText()) {
            const HTREEITEM before = tree.GetSelection();
            StrikeKey(VK_DOWN);
            WaitUntil(L"the line below \"" + line + L"\", on the way to " + text,
                      [&] { return tree.GetSelection() != before; });
        }
    }

    void OpenLine(const CForeignTree& tree)
    {
        StrikeKey(VK_RIGHT);
        WaitUntil(L"the lines below \"" + tree.GetSelectedText() + L"\"",
                  [&] { return tree.HasOpenSelection(); });
    }

    void PickFolder(HWND picker, const CString& folder)
    {
        const CForeignTree tree(FindTree(picker));
        WaitUntil(L"the focus on the tree",
                  [&] { return GetFocused(picker) == FindTree(picker) && tree.GetSelection() != nullptr; });
        StrikeKey(VK_HOME);
        WaitUntil(L"the first line", [&] { return tree.GetSelection() == tree.GetRoot(); });
        GoDownTo(tree, NameOfDrives());
        OpenLine(tree);
        CString rest = folder;
        for (int end = rest.Find(L'\\'); end >= 0; end = rest.Find(L'\\')) {
            GoDownTo(tree, rest.Left(end));
            OpenLine(tree);
            rest = rest.Mid(end + 1);
        }
        GoDownTo(tree, rest);
        StrikeKey(VK_RETURN);
    }
};

TEST_F(MediaPickerByHand, TheFolderThatIsPickedIsOpened)
{
    const CString media = CopyOfMedia();
    StartWithoutMedia();
    PickFolder(WaitFor(Shown::FolderPicker), media);
    WaitFor(Shown::FirstPage);
    StrikeKey(VK_ESCAPE);
    AnswerCancelQuestion('Y');
    EXPECT_EQ(WaitForEnd(), 1602u);
    const CString log = ReadLog();
    EXPECT_HOLDS(log, CString(L"Media <folder>\\media"));
}

TEST_F(MediaPickerByHand, CancelingEndsWithoutABox)
{
    StartWithoutMedia();
    WaitFor(Shown::FolderPicker);
    StrikeKey(VK_ESCAPE);
    ExpectEnd(1602, {LogOfCancel()}, {});
}

} // namespace

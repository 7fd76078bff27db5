#include "automation/file_picker.h"

#include "automation/control.h"
#include "automation/window_finder.h"
#include "base/handle.h"
#include "base/path_text.h"

#include <windows.h>

#include <commdlg.h>
#include <dlgs.h>

namespace {

constexpr int FILE_NAME_COMBO = cmb13;

HWND FindChildOfClass(HWND parent, const wchar_t* className)
{
    for (HWND child : ChildWindows(parent)) {
        if (WindowClass(child).CompareNoCase(className) == 0)
            return child;
    }
    return nullptr;
}

// The combo box wraps another one, whose edit it is that a person types into.
HWND FindNameEdit(HWND window)
{
    HWND combo = GetDlgItem(window, FILE_NAME_COMBO);
    return combo ? FindChildOfClass(combo, L"Edit") : nullptr;
}

StepOutcome NoPicker()
{
    return StepOutcome::NotYet(L"the file dialog isn't up");
}

bool IsFullPath(const CString& path)
{
    const bool isOnDrive = path.GetLength() > 3 && path[1] == L':' && path[2] == L'\\';
    const bool isOnServer = path.Find(L"\\\\") == 0;
    return (isOnDrive || isOnServer) && path[path.GetLength() - 1] != L'\\';
}

bool HoldsCharacterOfNoName(const CString& path)
{
    for (int index = 0; index < path.GetLength(); ++index) {
        if (path[index] < L' ')
            return true;
    }
    return path.FindOneOf(L"\"*?<>|/") >= 0;
}

StepOutcome NeedPath(const CString& path)
{
    if (!IsFullPath(path))
        return StepOutcome::Failed(L"the file dialog needs a file's full path, not \"" + path + L"\"");
    if (HoldsCharacterOfNoName(path))
        return StepOutcome::Failed(L"\"" + path + L"\" holds a character that no file's name can have");
    if (path.GetLength() >= MAX_PATH)
        return StepOutcome::Failed(L"\"" + path + L"\" is longer than the " + NumberText(MAX_PATH - 1) +
                                   L" characters that the file dialog accepts");
    return StepOutcome::Done();
}

StepOutcome NeedPathsOfOneFolder(const std::vector<CString>& files)
{
    if (files.empty())
        return StepOutcome::Failed(L"no file was named for the file dialog");
    for (const CString& file : files) {
        const StepOutcome path = NeedPath(file);
        if (!path.IsDone())
            return path;
        if (FolderAbove(file).CompareNoCase(FolderAbove(files.front())) != 0)
            return StepOutcome::Failed(L"the file dialog accepts files of one folder, not \"" +
                                       files.front() + L"\" and \"" + file + L"\"");
    }
    return StepOutcome::Done();
}

CString ShownFolder(HWND picker)
{
    wchar_t folder[MAX_PATH] = {};
    return CommDlg_OpenSave_GetFolderPathW(picker, folder, MAX_PATH) > 0 ? CString(folder) : CString();
}

bool ReadFolderIdentity(const CString& folder, BY_HANDLE_FILE_INFORMATION& identity)
{
    const CFileOwner handle(CreateFileW(folder, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                        nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return handle && GetFileInformationByHandle(handle.get(), &identity);
}

// The dialog may show a folder by another path than the one it was given: a short name, the path behind "..".
bool IsSameFolder(const CString& left, const CString& right)
{
    if (WithoutClosingBackslash(left).CompareNoCase(WithoutClosingBackslash(right)) == 0)
        return true;
    BY_HANDLE_FILE_INFORMATION one = {};
    BY_HANDLE_FILE_INFORMATION other = {};
    return ReadFolderIdentity(left, one) && ReadFolderIdentity(right, other) &&
           one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
}

bool IsFile(const CString& path)
{
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// The folder is typed like a file, and one that is a file would be what the dialog returns.
StepOutcome ShowFolder(HWND picker, const CString& folder)
{
    const CString shown = ShownFolder(picker);
    if (IsSameFolder(shown, folder))
        return StepOutcome::Done();
    if (IsFile(folder))
        return StepOutcome::Failed(L"\"" + folder + L"\" is a file, not a folder");
    const CControl edit(FindNameEdit(picker));
    // A refused folder stays in the edit; pressing Open again would only bring up the same box again.
    if (edit.GetText() != folder) {
        const StepOutcome entered = edit.SetText(folder);
        if (!entered.IsDone())
            return entered;
        const StepOutcome accepted = CControl(picker, IDOK).Click();
        if (!accepted.IsDone())
            return accepted;
    }
    return StepOutcome::NotYet(L"the file dialog shows the folder \"" + shown + L"\", not \"" + folder +
                               L"\"");
}

CString QuotedNames(const std::vector<CString>& files)
{
    CString text;
    for (const CString& file : files)
        text += (text.IsEmpty() ? L"\"" : L" \"") + LastName(file) + L"\"";
    return text;
}

} // namespace

HWND FindFilePicker()
{
    for (HWND window : TopLevelWindows()) {
        if (WindowClass(window) == CString(L"#32770") && GetDlgItem(window, IDOK) &&
            GetDlgItem(window, IDCANCEL) && FindNameEdit(window) &&
            FindChildOfClass(window, L"SHELLDLL_DefView"))
            return window;
    }
    return nullptr;
}

StepOutcome EnterPickerFiles(const std::vector<CString>& files)
{
    const StepOutcome enterable = NeedPathsOfOneFolder(files);
    if (!enterable.IsDone())
        return enterable;
    HWND picker = FindFilePicker();
    if (!picker)
        return NoPicker();
    const CControl edit(FindNameEdit(picker));
    if (files.size() == 1)
        return edit.SetText(files.front());
    const StepOutcome shown = ShowFolder(picker, FolderAbove(files.front()));
    return shown.IsDone() ? edit.SetText(QuotedNames(files)) : shown;
}

StepOutcome AcceptFilePicker()
{
    HWND picker = FindFilePicker();
    return picker ? CControl(picker, IDOK).Click() : NoPicker();
}

StepOutcome CancelFilePicker()
{
    HWND picker = FindFilePicker();
    return picker ? CControl(picker, IDCANCEL).Click() : NoPicker();
}

#include "files/node_rules.h"

#include "base/path_text.h"

namespace {

constexpr wchar_t LONG_FORM[] = L"\\\\?\\";
constexpr wchar_t NOT_IN_NAMES[] = L"\\/:*?\"<>|";
constexpr int FIRST_NUMBER = 2;
constexpr int FIRST_DRIVE = 2; // C:, as A: and B: are no place to install to
constexpr int LETTERS = 26;

} // namespace

int DriveNumberOf(const CString& path)
{
    const CString plain = path.Find(LONG_FORM) == 0 ? path.Mid(TextLength(LONG_FORM)) : path;
    const CString letter = plain.Left(1).MakeUpper();
    const int number = letter[0] - L'A';
    return plain[0] && plain[1] == L':' && number >= 0 && number < LETTERS ? number : -1;
}

bool IsDriveLabel(const CString& label)
{
    return label.Find(L':') >= 0 && DriveNumberOf(label) >= 0;
}

CString LastPartOf(const CString& path)
{
    return path.Mid(path.ReverseFind(L'\\') + 1);
}

CString ParentPathOf(const CString& path)
{
    const int backslash = path.ReverseFind(L'\\');
    return backslash < 0 ? CString() : path.Left(backslash);
}

CString ToDisplayPath(const CString& path, const CString& root, const CString& rootLabel)
{
    CString display = path;
    if (display.Right(1) == L"\\") {
        display.Delete(display.GetLength() - 1);
    }
    if (!root.IsEmpty() && display.Left(root.GetLength()).CompareNoCase(root) == 0) {
        display = rootLabel + display.Mid(root.GetLength());
    }
    return display;
}

NewNameResult CheckNewName(const CString& text, bool isDrive)
{
    if (text.Find(L'\\') >= 0 || text == L"." || text == L"..") {
        return NewNameResult::Invalid;
    }
    if (isDrive) {
        return text.GetLength() == 2 && DriveNumberOf(text) >= FIRST_DRIVE ? NewNameResult::Accepted
                                                                           : NewNameResult::InvalidDrive;
    }
    return text.FindOneOf(NOT_IN_NAMES) >= 0 ? NewNameResult::Invalid : NewNameResult::Accepted;
}

CString FirstFreeName(const std::set<CString>& names, const CString& plain,
                      const std::function<CString(int number)>& numbered)
{
    CString name = plain;
    for (int number = FIRST_NUMBER; names.count(name); ++number) {
        name = numbered(number);
    }
    return name;
}

FileCommandStates FileCommandsFor(const FileNodeKind* selected)
{
    FileCommandStates states;
    states.bAddFolder = selected != nullptr;
    states.bDelete = selected && selected->bUserItem;
    states.bRename = states.bDelete && !selected->bFile;
    return states;
}

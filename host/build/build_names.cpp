#include "host/build/build_names.h"

namespace {

const wchar_t g_reservedCharacters[] = L"<>:\"/\\|?*";
const char g_lockFileMark[] = "Deployment build ";

bool IsReserved(wchar_t character)
{
    return character < 32 || CString(g_reservedCharacters).Find(character) >= 0;
}

bool EndsBadly(const CString& name)
{
    const wchar_t last = name[name.GetLength() - 1];
    return last == L'.' || last == L' ';
}

CString WorkingName(const CString& name, const wchar_t* kind)
{
    return L"." + name + L"." + kind;
}

bool IsHexDigit(char digit)
{
    return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f');
}

} // namespace

CString RefusedName(const CString& name)
{
    if (name.IsEmpty()) {
        return L"The deployment has no name.";
    }
    for (int index = 0; index < name.GetLength(); ++index) {
        if (IsReserved(name[index])) {
            return L"The name \"" + name + L"\" holds a character that file names can't have: one of " +
                   g_reservedCharacters + L" or a control character.";
        }
    }
    if (EndsBadly(name)) {
        return L"The name \"" + name + L"\" ends in a dot or a blank, which Windows would drop.";
    }
    if (name[0] == L' ') {
        return L"The name \"" + name + L"\" starts with a blank.";
    }
    if (IsDeviceName(name)) {
        return L"The name \"" + name + L"\" is reserved for a device.";
    }
    if (IsWorkingName(name)) {
        return L"The name \"" + name + L"\" is one that the wizard uses for its own files during a build.";
    }
    if (name.GetLength() > MAX_DEPLOYMENT_NAME) {
        return L"The name has " + NumberText(name.GetLength()) + L" characters; at most " +
               NumberText(MAX_DEPLOYMENT_NAME) + L" are possible.";
    }
    return {};
}

bool IsPlainRelativePath(const CString& path)
{
    for (int start = 0; start <= path.GetLength();) {
        int end = path.Find(L'\\', start);
        end = end < 0 ? path.GetLength() : end;
        const CString name = path.Mid(start, end - start);
        if (name.IsEmpty() || EndsBadly(name) || IsDeviceName(name)) {
            return false;
        }
        for (int index = 0; index < name.GetLength(); ++index) {
            if (IsReserved(name[index])) {
                return false;
            }
        }
        start = end + 1;
    }
    return true;
}

bool IsDeviceName(const CString& name)
{
    const int dot = name.Find(L'.');
    CString base = dot < 0 ? name : name.Left(dot);
    base.TrimRight(L" ");
    for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"}) {
        if (base.CompareNoCase(device) == 0) {
            return true;
        }
    }
    const CString port = base.Left(3);
    return base.GetLength() == 4 && (port.CompareNoCase(L"COM") == 0 || port.CompareNoCase(L"LPT") == 0) &&
           CString(L"0123456789\x00B9\x00B2\x00B3").Find(base[3]) >= 0;
}

CString JoinFolder(const CString& folder, const CString& name)
{
    if (name.IsEmpty() || folder.IsEmpty()) {
        return name.IsEmpty() ? folder : name;
    }
    return folder[folder.GetLength() - 1] == L'\\' ? folder + name : folder + L"\\" + name;
}

CString WithoutClosingBackslash(const CString& path)
{
    CString bare = path;
    while (bare.GetLength() > 1 && bare[bare.GetLength() - 1] == L'\\' &&
           !(bare.GetLength() == 3 && bare[1] == L':')) {
        bare.Delete(bare.GetLength() - 1);
    }
    return bare;
}

CString WithClosingBackslash(const CString& path)
{
    const CString bare = WithoutClosingBackslash(path);
    return bare.Right(1) == L"\\" ? bare : bare + L"\\";
}

CString FolderAbove(const CString& path)
{
    const CString bare = WithoutClosingBackslash(path);
    const int slash = bare.ReverseFind(L'\\');
    if (slash < 0) {
        return {};
    }
    return slash == 2 && bare[1] == L':' ? bare.Left(3) : bare.Left(slash);
}

CString LastName(const CString& path)
{
    const CString bare = WithoutClosingBackslash(path);
    return bare.Mid(bare.ReverseFind(L'\\') + 1);
}

bool IsSameOrBelow(const CString& path, const CString& folder)
{
    const CString outer = WithClosingBackslash(folder);
    return WithClosingBackslash(path).Left(outer.GetLength()).CompareNoCase(outer) == 0;
}

CString UnlimitedPath(const CString& path)
{
    if (path.Left(4) == L"\\\\?\\" || path.Left(4) == L"\\\\.\\") {
        return path;
    }
    if (path.Left(2) == L"\\\\") {
        return L"\\\\?\\UNC\\" + path.Mid(2);
    }
    return path.GetLength() >= 3 && path[1] == L':' && path[2] == L'\\' ? L"\\\\?\\" + path : path;
}

CString StagingFolderName(const CString& name, std::uint32_t id)
{
    return WorkingName(name, L"staging-") + HexText(id);
}

CString OldFolderName(const CString& name, std::uint32_t id)
{
    return WorkingName(name, L"old-") + HexText(id);
}

CString LockFileName(const CString& name)
{
    return WorkingName(name, L"build-lock");
}

CString LockFileText(std::uint32_t id)
{
    return CString(L"Deployment build ") + HexText(id) + L"\r\n";
}

LockText ReadLockFileText(const char* text, std::size_t length, std::uint32_t& id)
{
    const std::size_t mark = sizeof(g_lockFileMark) - 1;
    for (std::size_t index = 0; index < length && index < mark + 8; ++index) {
        if (index < mark ? text[index] != g_lockFileMark[index] : !IsHexDigit(text[index])) {
            return LockText::Foreign;
        }
    }
    if (length < mark + 8) {
        return LockText::Unfinished;
    }
    id = 0;
    for (std::size_t index = mark; index < mark + 8; ++index) {
        const char digit = text[index];
        id = id * 16 + static_cast<std::uint32_t>(digit <= '9' ? digit - '0' : digit - 'a' + 10);
    }
    return LockText::Complete;
}

CString NameFromLockFile(const CString& fileName)
{
    const CString ending = L".build-lock";
    const int length = fileName.GetLength() - ending.GetLength() - 1;
    if (length < 1 || fileName[0] != L'.' || fileName.Right(ending.GetLength()) != ending) {
        return {};
    }
    return fileName.Mid(1, length);
}

bool IsWorkingName(const CString& name)
{
    if (name[0] != L'.') {
        return false;
    }
    const CString lower = CString(name).MakeLower();
    if (lower.Right(11) == L".build-lock") {
        return true;
    }
    const int id = lower.GetLength() - 8;
    for (const wchar_t* kind : {L".staging-", L".old-", L".probe-"}) {
        const int length = TextLength(kind);
        bool isId = id > length && lower.Mid(id - length, length) == kind;
        for (int index = id; isId && index < lower.GetLength(); ++index) {
            isId = lower[index] < 0x80 && IsHexDigit(static_cast<char>(lower[index]));
        }
        if (isId) {
            return true;
        }
    }
    return false;
}

CString FailedLogName(const CString& name, int number)
{
    return number < 2 ? name + L".Build.log" : name + L".Build (" + NumberText(number) + L").log";
}

CString FailedLogHead(const CString& name)
{
    return L"Failed build of \"" + name + L"\"\r\n";
}

CString KeptFolderName(const CString& name, const CString& when)
{
    return name + L" (kept files " + when + L")";
}

CString HexText(std::uint32_t value)
{
    CString text;
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += L"0123456789abcdef"[(value >> shift) & 15];
    }
    return text;
}

CString FileNamePart(const CString& text)
{
    CString part = text;
    for (int index = 0; index < part.GetLength(); ++index) {
        if (IsReserved(part[index])) {
            part.SetAt(index, L'_');
        }
    }
    part.TrimRight(L". ");
    return part;
}

bool IsAscii(const CString& text)
{
    for (int index = 0; index < text.GetLength(); ++index) {
        if (text[index] >= 0x80) {
            return false;
        }
    }
    return true;
}

LeftoverStep JudgeLeftovers(bool targetExists, bool stagingExists, bool oldExists)
{
    if (!oldExists) {
        return LeftoverStep::Nothing;
    }
    if (!targetExists) {
        return LeftoverStep::PutOldBack;
    }
    // With the staging folder still there the second rename never happened, so the folder in the old one's place
    // is somebody else's and the old one is the only copy of itself.
    return stagingExists ? LeftoverStep::KeepOld : LeftoverStep::DeleteOld;
}

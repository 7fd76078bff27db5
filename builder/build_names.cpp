#include "builder/build_names.h"

#include "base/ascii.h"
#include "base/name_rules.h"
#include "base/number_text.h"

namespace {

const char g_lockFileMark[] = "Deployment build ";

CString WorkingName(const CString& name, const wchar_t* kind)
{
    return L"." + name + L"." + kind;
}

} // namespace

CString RefusedName(const CString& name)
{
    if (name.IsEmpty()) {
        return L"The deployment has no name.";
    }
    for (int index = 0; index < name.GetLength(); ++index) {
        if (IsReservedCharacter(name[index])) {
            return L"The name \"" + name + L"\" holds a character that file names can't have: one of " +
                   RESERVED_CHARACTERS + L" or a control character.";
        }
    }
    if (EndsInDotOrBlank(name)) {
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
    std::uint32_t number = 0;
    for (std::size_t index = 0; index < length && index < mark + 8; ++index) {
        const int digit = HexDigitValue(static_cast<unsigned char>(text[index]));
        if (index < mark ? text[index] != g_lockFileMark[index] : digit < 0) {
            return LockText::Foreign;
        }
        number = index < mark ? 0 : number << 4 | static_cast<std::uint32_t>(digit);
    }
    if (length < mark + 8) {
        return LockText::Unfinished;
    }
    id = number;
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
            isId = IsHexDigit(lower[index]);
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

#include "setup/record_file.h"

#include "base/files.h"
#include "base/handle.h"
#include "base/path_text.h"
#include "base/system_text.h"
#include "builder/deployment_place.h"
#include "setup/exit_codes.h"
#include "setup/resource.h"
#include "setup/text_forms.h"
#include "setup/texts.h"

#include <string>

namespace {

constexpr char BYTE_ORDER_MARK[] =
    "\xEF\xBB\xBF"; // for editors that would take other letters for those of a code page
constexpr int MOST_NAMES = 1000;
constexpr std::size_t LONGEST_PATH = 32768;
constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A file or folder as the system knows it, not as it is spelled.
CFileOwner OpenToLook(const CString& path)
{
    return CFileOwner(CreateFileW(FilePath(path), FILE_READ_ATTRIBUTES, SHARE_ALL, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

bool IsSame(const CFileOwner& first, const CFileOwner& second)
{
    BY_HANDLE_FILE_INFORMATION left = {};
    BY_HANDLE_FILE_INFORMATION right = {};
    return first && second && GetFileInformationByHandle(first.get(), &left) &&
           GetFileInformationByHandle(second.get(), &right) &&
           left.dwVolumeSerialNumber == right.dwVolumeSerialNumber &&
           left.nFileIndexHigh == right.nFileIndexHigh && left.nFileIndexLow == right.nFileIndexLow;
}

bool IsSame(const CString& first, const CString& second)
{
    return !first.IsEmpty() && !second.IsEmpty() &&
           (first.CompareNoCase(second) == 0 || IsSame(OpenToLook(first), OpenToLook(second)));
}

// The folder in which the file lies, behind all links; as it is spelled when the system doesn't say.
CString RealFolder(const CString& file)
{
    CString folder = FolderAbove(file);
    const CFileOwner handle = OpenToLook(WithClosingBackslash(folder));
    std::wstring real(LONGEST_PATH, L'\0');
    const DWORD length =
        handle ? GetFinalPathNameByHandleW(handle.get(), real.data(), static_cast<DWORD>(real.size()), 0) : 0;
    if (length == 0 || length >= real.size()) {
        return folder;
    }
    const CString found(real.data(), static_cast<int>(length));
    if (found.Left(8) == L"\\\\?\\UNC\\") {
        return L"\\\\" + found.Mid(8);
    }
    return found.Left(4) == L"\\\\?\\" ? found.Mid(4) : found;
}

// The folder of the deployment in which the file would lie; empty when it lies in none. A build replaces such a folder as a
// whole, and looks for files that were added to it.
CString DeploymentOfFile(const CString& file)
{
    CString folder = RealFolder(file);
    while (!folder.IsEmpty() && !IsFile(WithClosingBackslash(folder) + DEPLOYMENT_FILE)) {
        const CString above = FolderAbove(folder);
        folder = above == folder ? CString() : above;
    }
    return folder;
}

RunOutcome CheckPlace(const CommandLine& line)
{
    if (IsSame(line.strRecord, line.strAnswers)) {
        return {SETUP_BAD_COMMAND_LINE, SetupText(IDS_RECORD_IS_ANSWERS, {line.strRecord})};
    }
    if (IsSame(line.strRecord, line.strLog)) {
        return {SETUP_BAD_COMMAND_LINE, SetupText(IDS_RECORD_IS_LOG, {line.strRecord})};
    }
    const CString deployment = DeploymentOfFile(line.strRecord);
    if (!deployment.IsEmpty()) {
        return {SETUP_BAD_COMMAND_LINE, SetupText(IDS_RECORD_IN_DEPLOYMENT, {line.strRecord, deployment})};
    }
    return {};
}

// Empty when it can be opened for writing; what isn't there is made.
CString OpenForTrial(const CString& file)
{
    const CFileOwner handle(CreateFileW(FilePath(file), GENERIC_WRITE, SHARE_ALL, nullptr, OPEN_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    return handle ? CString() : SystemErrorText(GetLastError());
}

bool WriteAll(HANDLE file, const std::string& bytes)
{
    DWORD written = 0;
    return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
}

RunOutcome CheckPlaceOfPlan(const CommandLine& line)
{
    for (const CString& other : {line.strAnswers, line.strLog, line.strRecord}) {
        if (IsSame(line.strPlan, other)) {
            return {SETUP_BAD_COMMAND_LINE, SetupText(IDS_PLAN_IS_OTHER, {line.strPlan})};
        }
    }
    const CString deployment = DeploymentOfFile(line.strPlan);
    if (!deployment.IsEmpty()) {
        return {SETUP_BAD_COMMAND_LINE, SetupText(IDS_PLAN_IN_DEPLOYMENT, {line.strPlan, deployment})};
    }
    return {};
}

// Makes way for a file that is written at the end. `failure`: the text of what can't be written, with path and reason.
template <class CheckItsPlace>
RunOutcome PrepareFile(const CString& file, unsigned int failure, CheckItsPlace checkPlace)
{
    if (file.IsEmpty()) {
        return {};
    }
    const bool wasThere = IsFile(file);
    if (const CString reason = OpenForTrial(file); !reason.IsEmpty()) {
        return {SETUP_FAILED, SetupText(failure, {file, reason})};
    }
    const RunOutcome refusal = checkPlace();
    if (refusal.exitCode != SETUP_DONE && wasThere) {
        return refusal;
    }
    if (!DeleteFileW(FilePath(file))) {
        return {SETUP_FAILED, SetupText(failure, {file, SystemErrorText(GetLastError())})};
    }
    return refusal;
}

// A file of a new name beside the other, with the text in it. 0, or the system's code.
unsigned long WriteBeside(const CString& file, const CString& text, bool byteOrderMark, CString& fresh)
{
    CFileOwner handle;
    for (int number = 1; !handle && number <= MOST_NAMES; ++number) {
        fresh = file + (number == 1 ? CString() : L"." + NumberText(number)) + L".tmp";
        handle.reset(CreateFileW(FilePath(fresh), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!handle && GetLastError() != ERROR_FILE_EXISTS) {
            return GetLastError();
        }
    }
    std::string bytes = byteOrderMark ? BYTE_ORDER_MARK : "";
    AppendUtf8(bytes, text);
    if (handle && WriteAll(handle.get(), bytes)) {
        return ERROR_SUCCESS;
    }
    const DWORD code = handle ? GetLastError() : ERROR_FILE_EXISTS;
    if (handle) {
        handle.reset();
        DeleteFileW(FilePath(fresh));
    }
    return code;
}

} // namespace

RunOutcome PrepareRecord(const CommandLine& line)
{
    return PrepareFile(line.strRecord, IDS_RECORD_FAILED, [&line] { return CheckPlace(line); });
}

RunOutcome CheckOutputPlaces(const CommandLine& line)
{
    const std::pair<const wchar_t*, const CString*> outputs[] = {{L"--report", &line.strReport},
                                                                 {L"--log", &line.strLog}};
    for (const CString& folder : line.FoldersToRead()) {
        for (const auto& [option, file] : outputs) {
            if (!file->IsEmpty() && IsSameOrBelow(RealFolder(*file), RealFolder(JoinFolder(folder, L"*")))) {
                return {SETUP_BAD_COMMAND_LINE, SetupText(IDS_OUTPUT_IN_DEPLOYMENT, {option, *file, folder})};
            }
        }
    }
    return {};
}

RunOutcome PrepareReport(const CommandLine& line)
{
    if (line.strReport.IsEmpty()) {
        return {};
    }
    const bool wasThere = IsFile(line.strReport);
    if (const CString reason = OpenForTrial(line.strReport); !reason.IsEmpty()) {
        return {SETUP_FAILED, SetupText(IDS_REPORT_FAILED, {line.strReport, reason})};
    }
    const bool isLog = IsSame(line.strReport, line.strLog);
    if ((!isLog || !wasThere) && !DeleteFileW(FilePath(line.strReport))) {
        return {SETUP_FAILED,
                SetupText(IDS_REPORT_FAILED, {line.strReport, SystemErrorText(GetLastError())})};
    }
    return isLog ? RunOutcome{SETUP_BAD_COMMAND_LINE, SetupText(IDS_REPORT_IS_LOG, {line.strReport})}
                 : RunOutcome{};
}

RunOutcome PreparePlan(const CommandLine& line)
{
    return PrepareFile(line.strPlan, IDS_PLAN_FAILED, [&line] { return CheckPlaceOfPlan(line); });
}

unsigned long ReplaceTextFile(const CString& file, const CString& text, bool byteOrderMark)
{
    CString fresh;
    if (const unsigned long code = WriteBeside(file, text, byteOrderMark, fresh)) {
        return code;
    }
    if (MoveFileExW(FilePath(fresh), FilePath(file), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return ERROR_SUCCESS;
    }
    const DWORD code = GetLastError();
    DeleteFileW(FilePath(fresh));
    return code;
}

unsigned long WriteFreeTextFile(CString& file, const CString& text)
{
    const CString wanted = file;
    const int dot = wanted.ReverseFind(L'.');
    const int end = dot > wanted.ReverseFind(L'\\') ? dot : wanted.GetLength();
    CString fresh;
    if (const unsigned long code = WriteBeside(wanted, text, true, fresh)) {
        return code;
    }
    DWORD code = ERROR_ALREADY_EXISTS;
    for (int number = 1; code == ERROR_ALREADY_EXISTS && number <= MOST_NAMES; ++number) {
        file = number == 1 ? wanted : wanted.Left(end) + L" (" + NumberText(number) + L")" + wanted.Mid(end);
        code = MoveFileExW(FilePath(fresh), FilePath(file), MOVEFILE_WRITE_THROUGH) ? ERROR_SUCCESS
                                                                                    : GetLastError();
    }
    if (code != ERROR_SUCCESS) {
        DeleteFileW(FilePath(fresh));
    }
    return code;
}

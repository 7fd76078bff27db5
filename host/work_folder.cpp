#include "host/work_folder.h"

#include "base/files.h"
#include "base/path_text.h"
#include "host/host_messages.h"
#include "host/system_reason.h"

namespace {

constexpr const wchar_t* PREFIX = L"RolloutSetup-";
constexpr const wchar_t* LOCK_FILE = L"InUse.lock";
constexpr int ATTEMPTS = 100;

// The lock is held as long as its owner lives; the system lets go of it when the owner dies.
bool HasOwner(const CString& folder)
{
    const CFileOwner lock(CreateFileW(FilePath(folder + LOCK_FILE), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
    // A folder without a lock may be a second before it gets one: nobody's business.
    return !lock;
}

void RemoveDeadFolders(const CString& parent)
{
    std::vector<FolderItem> items;
    if (ListFolder(parent, items) != ERROR_SUCCESS) {
        return;
    }
    for (const FolderItem& item : items) {
        const CString folder = parent + item.strName + L"\\";
        if (item.isFolder && item.strName.Find(PREFIX) == 0 && !HasOwner(folder)) {
            RemoveFolder(folder);
        }
    }
}

} // namespace

CString TemporaryFolder()
{
    wchar_t folder[MAX_PATH + 2] = {};
    const DWORD length = GetTempPathW(MAX_PATH + 2, folder);
    return FolderPath(CString(folder, static_cast<int>(length)));
}

OperationError MakeWorkFolder(const CString& parent, CString& folder)
{
    unsigned int error = MakeFolders(parent);
    RemoveDeadFolders(parent);
    for (int attempt = 0; error == ERROR_SUCCESS && attempt < ATTEMPTS; ++attempt) {
        LARGE_INTEGER now = {};
        QueryPerformanceCounter(&now);
        folder.Format(L"%s%s%08X\\", parent.GetString(), PREFIX,
                      now.LowPart ^ (GetCurrentProcessId() << 16) ^ static_cast<DWORD>(attempt));
        if (CreateDirectoryW(FilePath(folder), nullptr)) {
            return {};
        }
        const DWORD reason = GetLastError();
        error = reason == ERROR_ALREADY_EXISTS ? DWORD{ERROR_SUCCESS} : reason;
    }
    error = error == ERROR_SUCCESS ? UINT{ERROR_ALREADY_EXISTS} : error;
    return {error, HostSentence(HostText::WorkFolderFailed, {parent, SystemReason(error)})};
}

CWorkFolder::CWorkFolder(const CString& folder)
    : m_folder(folder), m_lock(CreateFileW(FilePath(folder + LOCK_FILE), GENERIC_READ | GENERIC_WRITE, 0,
                                           nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr))
{
}

CWorkFolder::~CWorkFolder()
{
    m_lock.reset();
    RemoveFolder(m_folder);
}

// The folder of the working copies: a fresh one for each opened host, gone with it. A lock file shows the next start
// which folders still have an owner.
#pragma once

#include "base/handle.h"
#include "host/setup_host.h"

[[nodiscard]] CString TemporaryFolder(); // with backslash
// Makes a folder that nobody else uses, and clears those of dead owners beside it.
[[nodiscard]] OperationError MakeWorkFolder(const CString& parent, CString& folder);

class CWorkFolder
{
public:
    explicit CWorkFolder(const CString& folder);
    ~CWorkFolder();
    CWorkFolder(const CWorkFolder&) = delete;
    CWorkFolder& operator=(const CWorkFolder&) = delete;

private:
    CString m_folder;
    CFileOwner m_lock;
};

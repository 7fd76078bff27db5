// The folder of the working copies: a fresh one for each opened host, gone with it. A lock file tells the next start
// which folders still have an owner.
#pragma once

#include "base/handle.h"
#include "host/setup_host.h"

[[nodiscard]] CString TemporaryFolder(); // with backslash
// Makes a folder that nobody else uses, and clears those of dead owners beside it.
[[nodiscard]] HostError MakeWorkFolder(const CString& parent, CString& folder);

class WorkFolder
{
public:
    explicit WorkFolder(const CString& folder);
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

private:
    CString m_folder;
    CFileOwner m_lock;
};

// The file that says a build of this name lives: held open by it, over all computers of a share. What a dead build
// left is known by it and by nothing else.
#pragma once

#include "builder/file_operations.h"

// Throws as taking the lock would when a living build has it, or when something else stands in its place. Writes
// nothing.
void RequireLockFree(const CString& location, const CString& name);

class CBuildLock
{
public:
    // Takes the lock of that deployment's name; clears what a dead holder left. Throws 170 when a living one has it.
    CBuildLock(const CString& location, const CString& name, std::uint32_t id);
    CBuildLock(const CBuildLock&) = delete;
    CBuildLock& operator=(const CBuildLock&) = delete;
    ~CBuildLock();

    // Leaves the file for the next start, which then clears this build's folders.
    void KeepForCleanup() { m_keep = true; }

private:
    void Remove();

    CString m_path;
    CFileOwner m_file;
    bool m_keep = false;
};

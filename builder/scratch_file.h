// A file of the build's own beside a working copy; gone with the object, and gone before it begins.
#pragma once

#include "builder/build_failure.h"
#include "builder/file_operations.h"

class CScratchFile
{
public:
    explicit CScratchFile(const CString& path) : m_path(path) { Remove(); }
    CScratchFile(const CScratchFile&) = delete;
    CScratchFile& operator=(const CScratchFile&) = delete;
    ~CScratchFile()
    {
        try {
            Remove();
        } catch (const BuildFailure&) {
            // It lies in the work folder, which goes as a whole.
        }
    }
    const CString& Path() const { return m_path; }

private:
    void Remove()
    {
        if (KindOfPath(m_path) == PathKind::File) {
            DeleteOneFile(m_path);
        }
    }
    CString m_path;
};

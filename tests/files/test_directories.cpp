#include "tests/files/test_directories.h"

#include <algorithm>

namespace {

bool CopyPath(const CString& path, wchar_t* buffer, unsigned int* size)
{
    const auto length = static_cast<unsigned int>(path.GetLength());
    const bool fits = length < *size;
    if (fits) {
        std::copy_n(path.GetString(), length + 1, buffer);
    }
    *size = length;
    return fits && length > 0;
}

} // namespace

void TestDirectoryManager::Set(const CString& key, const CString& parent, const CString& name,
                               const CString& target, const CString& source)
{
    DirectoryData& row = m_rows.emplace_back();
    row.Directory = key;
    row.Directory_Parent = parent;
    row.DefaultDir = name;
    m_directories[key] = {&row, target, source};
}

void TestDirectoryManager::SetWithoutRow(const CString& key, const CString& target, const CString& source)
{
    m_directories[key] = {nullptr, target, source};
}

bool TestDirectoryManager::GetTargetPath(const wchar_t* directory, wchar_t* buffer, unsigned int* size)
{
    const auto entry = m_directories.find(directory);
    return entry != m_directories.end() && CopyPath(entry->second.strTargetPath, buffer, size);
}

bool TestDirectoryManager::GetSourcePath(const wchar_t* directory, wchar_t* buffer, unsigned int* size)
{
    const auto entry = m_directories.find(directory);
    return entry != m_directories.end() && CopyPath(entry->second.strSourcePath, buffer, size);
}

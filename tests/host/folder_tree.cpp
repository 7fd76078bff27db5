#include "tests/host/folder_tree.h"

#include "builder/build_names.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

std::string ReadBytes(const CString& path)
{
    HANDLE file =
        CreateFileW(UnlimitedPath(path), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return {};
    }
    std::string bytes(GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    if (!ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) {
        ADD_FAILURE() << "can't read " << Utf8(path) << ": " << GetLastError();
    }
    CloseHandle(file);
    return bytes;
}

void VisitFolder(const CString& folder, const std::function<void(const WIN32_FIND_DATAW&)>& visit)
{
    WIN32_FIND_DATAW found = {};
    HANDLE search = FindFirstFileW(UnlimitedPath(folder + L"\\*"), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        const CString name = found.cFileName;
        if (!(name == L".") && !(name == L"..")) {
            visit(found);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
}

namespace {

void ReadTreeInto(const CString& folder, const CString& prefix, Tree& tree)
{
    VisitFolder(folder, [&](const WIN32_FIND_DATAW& found) {
        const CString name = prefix + found.cFileName;
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            tree[name + L"\\"] = "";
            ReadTreeInto(folder + L"\\" + found.cFileName, name + L"\\", tree);
        } else {
            tree[name] = ReadBytes(folder + L"\\" + found.cFileName);
        }
    });
}

} // namespace

Tree ReadTree(const CString& folder)
{
    Tree tree;
    ReadTreeInto(folder, CString(), tree);
    return tree;
}

std::string NamesOf(const Tree& tree)
{
    std::string names;
    for (const auto& entry : tree) {
        names += Utf8(entry.first) + " (" + std::to_string(entry.second.size()) + ")\n";
    }
    return names;
}

#include "builder/addition_notes.h"

#include "base/number_text.h"
#include "builder/shown_text.h"

#include <algorithm>
#include <map>

namespace {

struct FolderNotes
{
    bool bAdded = false;
    bool bDrive = false;
    std::vector<const UserFile*> files;
};

using NotesByFolder = std::map<CString, FolderNotes, CompareNoCaseLess>;

NotesByFolder GroupByFolder(const AddedItems& product)
{
    NotesByFolder folders;
    for (const CString& drive : product.drives) {
        folders[drive].bDrive = true;
    }
    for (const CString& folder : product.folders) {
        folders[folder].bAdded = true;
    }
    for (const UserFile& file : product.files) {
        folders[file.strShownFolder].files.push_back(&file);
    }
    for (auto& [name, folder] : folders) {
        std::stable_sort(folder.files.begin(), folder.files.end(), [](const auto* left, const auto* right) {
            return left->strName.CompareNoCase(right->strName) < 0;
        });
    }
    return folders;
}

std::uint64_t BytesOf(const std::vector<UserFile>& files)
{
    std::uint64_t bytes = 0;
    for (const UserFile& file : files) {
        bytes += file.size;
    }
    return bytes;
}

CString Number(std::uint64_t number)
{
    return NumberText(static_cast<long long>(number));
}

void AppendFile(CString& text, const UserFile& file)
{
    text += L"      " + ShownText(file.strName) + L", " + Number(file.size) + L" bytes, from \"" +
            ShownText(file.strSource) + L"\"";
    text += file.origin == UserFileOrigin::Source
                ? L"\r\n"
                : L", which is not on this computer; the copy in the earlier deployment was used\r\n";
}

void AppendProduct(CString& text, const AddedItems& product)
{
    text += L"\r\n" + ShownText(product.strDatabase) + L" (" + ShownText(product.strProductName) + L")\r\n";
    text += L"  Files: " + Number(product.files.size()) + L" (" + Number(BytesOf(product.files)) +
            L" bytes), folders: " + Number(product.folders.size()) + L", drives: " +
            Number(product.drives.size()) + L", left out: " + Number(product.leftOut.size()) + L"\r\n";
    for (const auto& [name, folder] : GroupByFolder(product)) {
        text += L"\r\n  " + ShownText(name) +
                (folder.bDrive   ? L" (added drive)"
                 : folder.bAdded ? L" (added folder)"
                                 : L"") +
                L"\r\n";
        for (const UserFile* file : folder.files) {
            AppendFile(text, *file);
        }
    }
    if (!product.leftOut.empty()) {
        text += L"\r\n  Left out\r\n";
    }
    for (const CString& sentence : product.leftOut) {
        text += L"      " + ShownText(sentence) + L"\r\n";
    }
}

} // namespace

CString ComposeAdditions(const std::vector<AddedItems>& products)
{
    CString text =
        L"Files, folders and drives that were added to the products of this deployment\r\n"
        L"Each file stands below its folder on a workstation, with the place that it was added from.\r\n";
    for (const AddedItems& product : products) {
        if (!product.IsEmpty()) {
            AppendProduct(text, product);
        }
    }
    return text;
}

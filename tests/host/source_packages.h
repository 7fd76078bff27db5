// Packages whose files lie in each of the ways that a package can say, real enough to be installed.
#pragma once

#include "tests/host/package_maker.h"

#include <map>
#include <vector>

// What the rows say of their own, beside the word count of the summary.
enum class RowMarks
{
    None,  // nothing: the word count decides for each file
    Mixed, // one file says nothing, one that it is loose, one that it is packed
};

// Where the files of a package are laid.
enum class Layout
{
    Documented, // where its word count and its rows say
    Folders,    // loose, in folders as the table of directories says
    Beside,     // loose, all beside the package
    Packed,     // in the cabinet
};

struct SourcePackage
{
    int wordCount = 0;
    RowMarks marks = RowMarks::None;
    Layout layout = Layout::Documented;
};

constexpr const wchar_t* SOURCE_PRODUCT_CODE = L"{2B1D6C3E-52B7-4C0B-9C8D-6D2E9C1A4F77}";
constexpr const wchar_t* SOURCE_FOLDER = L"Maker Test"; // below the folder of 64-bit programs
constexpr const wchar_t* SOURCE_CABINET = L"product.cab";

// Makes the package with its three files ("plain file.txt", and below "Support Files" "loose file.txt" and "packed
// file.txt"). Answers the loose files and the cabinet that were made for it, relative to its folder.
std::vector<CString> MakeSourcePackage(const CString& path, const SourcePackage& form);

// Media with the package in `x64\Maker\Maker.msi`.
std::vector<CString> MakeSourceMedia(const CString& folder, const SourcePackage& form);

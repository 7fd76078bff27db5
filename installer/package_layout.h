// Where the files of a package lie before they are installed, as the word count of its summary and the attributes of
// each file say. The one place where that is decided.
#pragma once

#include "base/string.h"

struct PackageLayout
{
    // Source files and folders bear their short names.
    bool bShortNames = false;
    // Files are packed where their rows don't say otherwise; those that aren't lie at the root.
    bool bCompressed = false;
    // An administrative installation made it; what the rows say held before that.
    bool bAdminImage = false;

    // All files lie loose in folders, whatever the table of media still says.
    bool IsLaidOut() const { return bAdminImage && !bCompressed; }
    // Windows' documentation has no image that is compressed. Its compressed bit is followed, but files that
    // nevertheless lie loose are taken as they lie.
    bool IsUnclear() const { return bAdminImage && bCompressed; }
};

enum class SourcePlace
{
    Cabinet,
    Folders, // loose, where the table of directories says
    Root,    // loose, beside the package
};

// Marks of a file in `File.Attributes`: what holds for the package doesn't hold for it.
inline constexpr int FILE_NONCOMPRESSED = 8192;
inline constexpr int FILE_COMPRESSED = 16384;

// Of the word count of the summary information.
[[nodiscard]] PackageLayout LayoutOf(int wordCount);
// Of a file by its `File.Attributes`; a null value counts as 0.
[[nodiscard]] SourcePlace PlaceOfFile(const PackageLayout& layout, int attributes);
// Of `short|long`; a name alone is both.
[[nodiscard]] CString SourceName(const CString& name, const PackageLayout& layout);

#include "installer/package_layout.h"

namespace {

constexpr int WORD_COUNT_SHORT_NAMES = 1;
constexpr int WORD_COUNT_COMPRESSED = 2;
constexpr int WORD_COUNT_ADMIN_IMAGE = 4;

} // namespace

PackageLayout LayoutOf(int wordCount)
{
    return {(wordCount & WORD_COUNT_SHORT_NAMES) != 0, (wordCount & WORD_COUNT_COMPRESSED) != 0,
            (wordCount & WORD_COUNT_ADMIN_IMAGE) != 0};
}

SourcePlace PlaceOfFile(const PackageLayout& layout, int attributes)
{
    if (layout.bAdminImage) {
        return layout.bCompressed ? SourcePlace::Cabinet : SourcePlace::Folders;
    }
    const SourcePlace loose = layout.bCompressed ? SourcePlace::Root : SourcePlace::Folders;
    if (attributes > 0 && (attributes & FILE_NONCOMPRESSED)) {
        return loose;
    }
    const bool packed = layout.bCompressed || (attributes > 0 && (attributes & FILE_COMPRESSED));
    return packed ? SourcePlace::Cabinet : loose;
}

CString SourceName(const CString& name, const PackageLayout& layout)
{
    const int bar = name.Find(L'|');
    return layout.bShortNames && bar >= 0 ? name.Left(bar) : name.Mid(bar + 1);
}

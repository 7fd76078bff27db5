#include "files/picked_paths_rules.h"

#include <algorithm>

namespace {

// Where the part that begins at `part` ends: at the separator, or at the closing zero.
const wchar_t* EndOfPart(const wchar_t* part, wchar_t separator)
{
    while (*part && *part != separator) {
        ++part;
    }
    return part;
}

CString TextBetween(const wchar_t* begin, const wchar_t* end)
{
    return CString(begin, static_cast<int>(end - begin));
}

// A drive's root has its backslash already. A slash counts where there is no backslash.
CString JoinPicked(const CString& folder, const CString& name)
{
    int last = folder.ReverseFind(L'\\');
    if (last < 0) {
        last = folder.ReverseFind(L'/');
    }
    const bool isClosed = last >= 0 && last == folder.GetLength() - 1;
    return isClosed ? folder + name : folder + L"\\" + name;
}

} // namespace

CString NextPickedPath(const wchar_t* buffer, PickerForm form, const wchar_t*& position)
{
    const wchar_t separator = form.bExplorer ? L'\0' : L' ';
    const wchar_t* const folderEnd = EndOfPart(buffer, separator);
    if (position == buffer) {
        const wchar_t* const first = *folderEnd == separator ? folderEnd + 1 : folderEnd;
        if (!form.bMultiple || !*first) {
            position = nullptr;
            return CString(buffer);
        }
        position = first;
    }
    const wchar_t* const end = EndOfPart(position, separator);
    const CString name = TextBetween(position, end);
    // In the old form a zero ends the walk, in the explorer's form two of them.
    const bool isLast = (!form.bExplorer && !*end) || !end[1];
    position = isLast ? nullptr : end + 1;
    return JoinPicked(TextBetween(buffer, folderEnd), name);
}

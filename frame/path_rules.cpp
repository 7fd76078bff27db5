#include "frame/path_rules.h"

#include "frame/pattern.h"
#include "frame/text_rules.h"

#include <algorithm>
#include <vector>

namespace {

// The one colon that a path may hold is that of its drive.
bool AreColonsValid(const CString& text)
{
    const int colon = text.Find(L':');
    return colon < 0 || (colon == 1 && IsDrivePath(text) && text.Find(L':', 2) < 0);
}

} // namespace

bool IsUncForm(const CString& text)
{
    if (text[0] != L'\\' || text[1] != L'\\') {
        return false;
    }
    if (text[2] != L'?') {
        return true;
    }
    return text.Left(8).CompareNoCase(L"\\\\?\\UNC\\") == 0;
}

bool IsValidFileName(const CString& text)
{
    return text.FindOneOf(L"\\/:*?\"<>|") < 0;
}

bool IsValidPath(const CString& text)
{
    CString path(text);
    path.Trim();
    if (path == L"\\" || path == L"\\\\") {
        return false;
    }
    if (path.FindOneOf(L"*?<>|\"") >= 0 || !AreColonsValid(path)) {
        return false;
    }
    if (path.Find(L"\\\\", 1) >= 0) {
        return false;
    }
    std::vector<CString> pieces;
    SplitText(path, L"\\", pieces, 0, false);
    return std::none_of(pieces.begin(), pieces.end(), [](CString piece) {
        const bool wasEmpty = piece.IsEmpty();
        piece.Trim(L" ");
        return !wasEmpty && piece.IsEmpty();
    });
}

bool IsValidUncPath(const CString& text)
{
    if (!IsUncForm(text)) {
        return false;
    }
    CString path(text);
    TrimLeft(path, L"\\ ");
    std::vector<CString> pieces;
    SplitText(path, L"\\", pieces, 0, false);
    return pieces.size() >= 2 && std::all_of(pieces.begin(), pieces.end(), [](CString piece) {
               TrimLeft(piece);
               return !piece.IsEmpty() && IsValidFileName(piece);
           });
}

CString RebuildPath(const CString& path)
{
    std::vector<CString> pieces;
    SplitText(path, L"\\", pieces, 0, true);
    CString rebuilt;
    for (const CString& piece : pieces) {
        rebuilt += piece + L'\\';
    }
    return rebuilt;
}

bool IsSubstitutedTarget(const CString& target)
{
    return target.Find(L':') > 0;
}

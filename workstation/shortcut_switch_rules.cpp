#include "workstation/shortcut_switch_rules.h"

#include "frame/text_rules.h"

#include <algorithm>
#include <iterator>

namespace {

CString SwitchName(const CString& piece)
{
    const int end = piece.FindOneOf(L" \t\n");
    return end < 0 ? piece : piece.Left(end);
}

bool IsSwitch(const CString& name)
{
    return std::any_of(std::begin(SHORTCUT_SWITCHES), std::end(SHORTCUT_SWITCHES),
                       [&name](const wchar_t* known) { return name.CompareNoCase(known) == 0; });
}

} // namespace

std::optional<CString> FindBadSwitch(const CString& command)
{
    std::vector<CString> pieces;
    SplitText(command, L"/", pieces, 0, true);
    const auto bad = std::find_if(pieces.begin(), pieces.end(),
                                  [](const CString& piece) { return !IsSwitch(SwitchName(piece)); });
    return bad == pieces.end() ? std::nullopt : std::optional(*bad);
}

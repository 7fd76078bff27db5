#include "online/location_rules.h"

#include "frame/path_rules.h"
#include "include/resource_ids.h"

#include <algorithm>

namespace {

// A longer name of a server can't be asked for: names in use are NetBIOS names.
constexpr int HOST_NAME_LIMIT = 16;

bool IsHostNameTooLong(const CString& host)
{
    return host.GetLength() >= HOST_NAME_LIMIT;
}

} // namespace

CString TextFromLastDot(const CString& path)
{
    const int dot = path.ReverseFind(L'.');
    return dot < 0 ? path : path.Mid(dot);
}

bool HasExtension(const CString& path, std::initializer_list<const wchar_t*> extensions)
{
    const CString end = TextFromLastDot(path);
    return std::any_of(extensions.begin(), extensions.end(),
                       [&end](const wchar_t* extension) { return end.CompareNoCase(extension) == 0; });
}

CString HostOfUncPath(const CString& path)
{
    CString host = path;
    host.TrimLeft(L"\\");
    const int end = host.Find(L'\\');
    return end < 0 ? host : host.Left(end);
}

bool IsListFile(const CString& path)
{
    return HasExtension(path, {L".npl"});
}

bool IsFeedFile(const CString& path)
{
    return HasExtension(path, {L".xml", L".rdf"});
}

LocationCheckResult CheckListLocation(const CString& path, const ILocationProbe& probe)
{
    if (!IsListFile(path)) {
        return LOCATION_LIST_WRONG_KIND;
    }
    if (probe.FileExists(path)) {
        return LOCATION_USABLE;
    }
    if (!IsValidPath(path) || !IsUncForm(path)) {
        return LOCATION_LIST_MISSING;
    }
    const CString host = HostOfUncPath(path);
    if (IsHostNameTooLong(host)) {
        return LOCATION_HOST_NAME_TOO_LONG;
    }
    return probe.IsHostKnown(host) ? LOCATION_USABLE : LOCATION_HOST_UNKNOWN;
}

LocationCheckResult CheckFeedLocation(const CString& path, const ILocationProbe& probe)
{
    const LocationCheckResult mark = IsFeedFile(path) ? LOCATION_USABLE : LOCATION_FEED_WRONG_KIND;
    if (TextFromLastDot(path) == L"\\") {
        return LOCATION_FEED_INVALID;
    }
    if (probe.FileExists(path)) {
        return mark;
    }
    if (!IsValidPath(path)) {
        return LOCATION_FEED_INVALID;
    }
    if (!IsUncForm(path)) {
        return LOCATION_NOT_FOUND;
    }
    if (IsHostNameTooLong(HostOfUncPath(path))) {
        return LOCATION_HOST_NAME_TOO_LONG;
    }
    return mark == LOCATION_FEED_WRONG_KIND ? mark : LOCATION_NOT_FOUND;
}

LocationVerdict JudgeList(LocationCheckResult result)
{
    switch (result) {
    case LOCATION_LIST_WRONG_KIND:
        return {LocationReaction::Refuse, IDS_LIST_WRONG_KIND};
    case LOCATION_HOST_UNKNOWN:
        return {LocationReaction::Ask, IDS_LIST_HOST_UNKNOWN};
    case LOCATION_LIST_MISSING:
        return {LocationReaction::Refuse, IDS_LIST_MISSING};
    case LOCATION_LIST_EMPTY:
        return {LocationReaction::Ask, IDS_LIST_EMPTY};
    default:
        return {}; // usable, or a server whose name is too long to be asked for
    }
}

LocationVerdict JudgeFeed(LocationCheckResult result)
{
    switch (result) {
    case LOCATION_FEED_WRONG_KIND:
        return {LocationReaction::Ask, IDS_FEED_WRONG_KIND};
    case LOCATION_NOT_FOUND:
        return {LocationReaction::Ask, IDS_FEED_NOT_FOUND};
    case LOCATION_HOST_NAME_TOO_LONG:
        return {LocationReaction::Refuse, IDS_FEED_SERVER_TOO_LONG};
    case LOCATION_FEED_INVALID:
        return {LocationReaction::Refuse, IDS_FEED_INVALID};
    default:
        return {};
    }
}

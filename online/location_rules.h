// Whether the locations of the notice and feed page can be used, and what the page says when they can't.
#pragma once

#include "base/string.h"

#include <initializer_list>

enum LocationCheckResult : int
{
    LOCATION_USABLE = 0,
    LOCATION_FEED_WRONG_KIND = 1,
    LOCATION_LIST_WRONG_KIND = 2,
    LOCATION_HOST_UNKNOWN = 3,
    LOCATION_NOT_FOUND = 4,
    LOCATION_HOST_NAME_TOO_LONG = 5,
    LOCATION_FEED_INVALID = 6,
    LOCATION_LIST_MISSING = 7,
    LOCATION_LIST_EMPTY = 8,
};

// What the checks ask of the computer.
class ILocationProbe
{
public:
    [[nodiscard]] virtual bool FileExists(const CString& path) const = 0;
    [[nodiscard]] virtual bool IsHostKnown(const CString& host) const = 0;

protected:
    ~ILocationProbe() = default;
};

// From the last "." to the end: ".npl". Without a "." the whole text.
[[nodiscard]] CString TextFromLastDot(const CString& path);

// True when the path ends in one of the extensions, given with their dot, whatever the case.
[[nodiscard]] bool HasExtension(const CString& path, std::initializer_list<const wchar_t*> extensions);

// The server of a network path: "server" for "\\server\share".
[[nodiscard]] CString HostOfUncPath(const CString& path);

[[nodiscard]] bool IsListFile(const CString& path);
[[nodiscard]] bool IsFeedFile(const CString& path);

// The location of the update list. On a server that is known, a network path needs no file yet.
[[nodiscard]] LocationCheckResult CheckListLocation(const CString& path, const ILocationProbe& probe);

// The location of the site manager's feed. Its server is never asked for.
[[nodiscard]] LocationCheckResult CheckFeedLocation(const CString& path, const ILocationProbe& probe);

enum class LocationReaction
{
    Accept,
    Ask,    // Yes accepts it anyway
    Refuse, // the page stays
};

struct LocationVerdict
{
    LocationReaction reaction = LocationReaction::Accept;
    unsigned int text = 0; // string of the box
};
[[nodiscard]] LocationVerdict JudgeList(LocationCheckResult result);
[[nodiscard]] LocationVerdict JudgeFeed(LocationCheckResult result);

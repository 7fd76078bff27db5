// The two forms of a path's text.
//
// Display form, what the administrator sees: entries between ";".
// Installer form, what the database holds: "[NULL]" for no path at all, or entries between ";", each "[KEY]rest", "[KEY]"
// or plain text. KEY is a directory of TarnDirectoryMap, which the installer resolves on the workstation; the display form
// shows the row's LocalString in its place. The installer's escapes "[\[]", "[\]]", "[\{]" and "[\}]" are undone for the
// display form and stay undone.
#pragma once

#include "base/string.h"
#include "msi/row_columns.h"

#include <map>
#include <memory>
#include <vector>

// No path at all, told apart from a property that is missing.
constexpr wchar_t NULL_PATH[] = L"[NULL]";
[[nodiscard]] bool IsNullPath(const CString& value);

// The rows by Directory_. The order of the keys, by code unit, decides which row stands for a text that several fit.
using DirectoryMap = std::map<CString, std::unique_ptr<TarnDirectoryMapColumns>>;

class CPathResolver
{
public:
    CPathResolver() = default;
    explicit CPathResolver(DirectoryMap directoryMap);
    // The rows point into the map.
    CPathResolver(CPathResolver&&) = default;
    CPathResolver& operator=(CPathResolver&&) = default;

    const DirectoryMap& GetDirectoryMap() const { return m_directoryMap; }

    // The LocalString of exactly this key; false, and an empty text, when there is none.
    bool LookupDirectoryKey(const CString& key, CString& text) const;

    // What stands for the beginning of one entry in display form. True when the path is anchored: by a drive letter
    // (empty key, the whole path as rest) or by the LocalString of a row that may be a prefix (its key, and the rest
    // without backslashes around it). Otherwise the whole path is the rest.
    bool SplitDirectoryPrefix(CString& key, CString& rest, const CString& path) const;

    // Installer form to display form; "[NULL]" is the caller's.
    [[nodiscard]] CString DecodePathList(const CString& installerForm) const;
    // Display form to installer form, in place.
    void EncodePathList(CString& value) const;

private:
    void AppendDecoded(CString& value, const CString& entry) const;

    DirectoryMap m_directoryMap;
    std::vector<const TarnDirectoryMapColumns*> m_prefixes; // rows that can match, in the map's order
};

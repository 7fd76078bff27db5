// Installer properties and the text of records, straight on an open database handle. What is written here is seen by
// every later query on the handle. Results are plain truth values: the service's codes are dropped, and what a
// failure means to the user is the caller's to say. No routine here shows a message, keeps a handle or caches.
//
// A page uses these for MC3_ENABLED, the switches of the online resources, the paths and the desktop shortcut. Most
// other values go through CProduct::SetMsiProperty, and settings that don't belong in the database through
// CProduct::SetProperty.
#pragma once

#include "base/string.h"
#include "include/setup_enums.h"

// Reads `Value` of the row of `table` whose column `Property` is `key`. `capacity`: characters that the buffer holds,
// the closing zero included. False when there is no such row, when anything failed, and when the buffer was too
// small, in which case it holds the beginning of the value. The key goes into the statement as it is.
[[nodiscard]] bool ReadTableValue(InstallerHandle database, const wchar_t* table, const wchar_t* key,
                                  wchar_t* buffer, unsigned int capacity);

// The value in the table Property, at most 1,023 characters of it. Empty when there is none.
[[nodiscard]] CString ReadProperty(InstallerHandle database, const wchar_t* name);

// Replaces the row of `name` by one with `value`, of any length. When false comes back the property may be gone.
bool WriteProperty(InstallerHandle database, const wchar_t* name, const CString& value);

// The text of a column of a fetched record, of any length; columns count from 1. An empty or null column leaves
// `target` as it was and counts as read.
[[nodiscard]] bool ReadRecordText(InstallerHandle record, unsigned int column, CString& target);

// A call that fills a buffer with a text by name, such as MsiGetPropertyW and MsiGetTargetPathW. `size`: in, the
// buffer's characters; out, the text's characters without the closing zero.
using InstallerTextGetter = unsigned int(__stdcall*)(InstallerHandle handle, const wchar_t* name,
                                                     wchar_t* buffer, unsigned long* size);
// The whole text that the getter has, whatever its length; false leaves `target` as it was.
[[nodiscard]] bool GetInstallerText(InstallerHandle handle, const wchar_t* name, CString& target,
                                    InstallerTextGetter getter);

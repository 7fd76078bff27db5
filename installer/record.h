// Texts into and out of records of the installer service.
#pragma once

#include "base/string.h"
#include "installer/handle.h"

#include <initializer_list>

// A column's text, of any length; columns count from 1. Numbers come in digits, null as the empty text. 0, or the
// service's code, and then `text` is as it was.
[[nodiscard]] unsigned int CopyRecordText(MSIHANDLE record, unsigned int column, CString& text);
// The same for callers to whom a column that can't be read is an empty one.
[[nodiscard]] CString RecordText(MSIHANDLE record, unsigned int column);

// A record whose columns hold the texts, for the `?` of a statement. 0, or a code, and then `record` is as it was.
[[nodiscard]] unsigned int MakeTextRecord(std::initializer_list<CString> texts, CInstallerHandle& record);

// An installer database as the host reads and writes it. Texts travel in records, so that an apostrophe is just a
// letter. Result 0 is success, anything else the service's code.
#pragma once

#include "base/string.h"
#include "installer/handle.h"

#include <functional>
#include <initializer_list>
#include <vector>

[[nodiscard]] unsigned int OpenDatabase(const CString& path, const wchar_t* mode, CInstallerHandle& database);

// Runs a statement with `?` filled from the parameters.
[[nodiscard]] unsigned int RunStatement(MSIHANDLE database, const wchar_t* statement,
                                        std::initializer_list<CString> parameters = {});
// Runs a query and hands out its rows; a false answer ends it.
using RowFunction = std::function<bool(MSIHANDLE record)>;
[[nodiscard]] unsigned int ForEachRow(MSIHANDLE database, const wchar_t* query,
                                      std::initializer_list<CString> parameters, const RowFunction& onRow);
// A column of a record, of any length; counted from 1.
[[nodiscard]] CString RecordText(MSIHANDLE record, unsigned int column);

[[nodiscard]] bool HasTable(MSIHANDLE database, const wchar_t* table);
// True when the Property table has the row; `value` then holds it.
[[nodiscard]] bool ReadPropertyRow(MSIHANDLE database, const CString& name, CString& value);
// Inserts or changes the row; an empty value deletes it.
[[nodiscard]] unsigned int WritePropertyRow(MSIHANDLE database, const CString& name, const CString& value);
// Properties of the summary information (the service's PID_ numbers, which mingw-w64's header lacks).
constexpr unsigned int SUMMARY_TEMPLATE = 7;
constexpr unsigned int SUMMARY_WORD_COUNT = 15;
// Empty, or 0, when it isn't there.
[[nodiscard]] CString SummaryText(MSIHANDLE database, unsigned int property);
[[nodiscard]] int SummaryNumber(MSIHANDLE database, unsigned int property);
// True when the template names a 64-bit platform.
[[nodiscard]] bool IsSixtyFourBit(MSIHANDLE database);

// Makes the tables that the pages count on and the package lacks. 0, or the code and the table that failed.
[[nodiscard]] unsigned int AddMissingTables(MSIHANDLE database, CString& failedTable);

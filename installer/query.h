// One statement of the installer service, and the walk over the rows that it gives. Results are the service's codes.
#pragma once

#include "base/string.h"
#include "installer/handle.h"

#include <functional>
#include <initializer_list>

// A view that closes with the object:
//
//     CQuery query;
//     unsigned int result = query.Run(database, L"SELECT `Directory_` FROM `Component`");
//     for (CInstallerHandle row; result == ERROR_SUCCESS;) {
//         result = query.Fetch(row);
//         ...
//
// A statement that runs many times is opened once: Open, then Execute and Close in turn.
class CQuery
{
public:
    [[nodiscard]] unsigned int Open(MSIHANDLE database, const wchar_t* statement);
    // `values`: a record for each `?`; 0 when there is none.
    [[nodiscard]] unsigned int Execute(MSIHANDLE values = 0);
    // Opens and executes.
    [[nodiscard]] unsigned int Run(MSIHANDLE database, const wchar_t* statement);
    // The next row; ERROR_NO_MORE_ITEMS behind the last. Any result but 0 leaves none.
    [[nodiscard]] unsigned int Fetch(CInstallerHandle& row);
    // Writes a row that was fetched and then changed.
    [[nodiscard]] unsigned int Update(const CInstallerHandle& row);
    // Ends the walk, so that the statement can be executed again.
    [[nodiscard]] unsigned int Close();
    // Names or types of the columns, a column each.
    [[nodiscard]] unsigned int ReadColumns(MSICOLINFO kind, CInstallerHandle& columns);

    [[nodiscard]] bool IsOpen() const { return static_cast<bool>(m_view); }

private:
    CInstallerHandle m_view;
};

// Runs a statement with `?` filled from the texts. They travel in a record, so that an apostrophe is just a letter.
[[nodiscard]] unsigned int RunStatement(MSIHANDLE database, const wchar_t* statement,
                                        std::initializer_list<CString> texts = {});
// Runs a query and hands out its rows; a false answer ends it.
using RowFunction = std::function<bool(MSIHANDLE record)>;
[[nodiscard]] unsigned int ForEachRow(MSIHANDLE database, const wchar_t* query,
                                      std::initializer_list<CString> texts, const RowFunction& onRow);

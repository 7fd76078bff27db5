// Each kind of row that can be written: how samples of it are made, what each action leaves in its table, and what it
// binds. What is true of every kind is tested over this table.
#pragma once

#include "msi/msi_rows.h"
#include "tests/installer/database_fixture.h"
#include "tests/msi/row_statement_table.h"

#include <memory>
#include <string>

struct RowKind
{
    RowStatements statements;
    // The sample; with another text in the first column of the key, or in the last, where a text is given.
    std::unique_ptr<IMsiWriter> (*make)(const wchar_t* key);
    std::unique_ptr<IMsiWriter> (*makeNeighbor)(const wchar_t* lastKey);
    // The sample's key with every other column changed.
    std::unique_ptr<IMsiWriter> (*makeChanged)();
    // The row in the table, inserted and then updated.
    Row inserted;
    Row updated;
    // What the insert and the update bind; null for no record. A delete binds nothing.
    const wchar_t* boundByInsert;
    const wchar_t* boundByUpdate;

    CString Table() const;
    // No statement, or one that the service refuses.
    bool CanUpdate() const { return !(updated == inserted); }
    bool CanDelete() const { return *statements.remove != 0; }
};

// All of them.
const std::vector<RowKind>& RowKinds();
std::string NameOf(const testing::TestParamInfo<RowKind>& information);
void PrintTo(const RowKind& kind, std::ostream* stream);

// Executes the row with the action.
bool Execute(IMsiWriter& row, MsiRowAction action, InstallerHandle database);

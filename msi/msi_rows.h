// The rows of a product's installer database, a class a table: each reads itself from a fetched record and writes itself
// by one statement. All run on the product's open database handle, which is the host's; nothing here commits, and what a
// row wrote stays until the host does something with the handle.
//
// Failures are plain truth values without a message: the caller knows what to report. Rows are made, executed and let go;
// no locks, the thread of the user interface only.
#pragma once

#include "include/setup_enums.h"
#include "installer/query.h"
#include "msi/row_columns.h"
#include "msi/row_statements.h"

struct IMsiReader
{
    // Fills the columns of the mask from a record that holds just these, in the order of the row's fields. False when a
    // text can't be read or the last number is null. An empty column leaves its field as it was: read into a fresh row
    // where that matters.
    [[nodiscard]] virtual bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) = 0;

protected:
    ~IMsiReader() = default;
};

class IMsiWriter
{
public:
    virtual ~IMsiWriter() = default;

    // The statement of the action. A shortcut also rewrites its Name and so may be built once only.
    [[nodiscard]] virtual CString BuildStatement() = 0;
    // Builds the statement and runs it: the only way of a row into the database. True when it ran.
    [[nodiscard]] virtual bool Execute(InstallerHandle database) final;
    // The record with the value of the "?"; 0 when the statement has none. The caller closes it. On false it is 0.
    [[nodiscard]] virtual bool BuildRecord(InstallerHandle& record);

    MsiRowAction m_action = MsiRowAction::Insert;
    CString m_strStatement; // the last that was built
};

// The fields stand in msi/row_columns.h. Bits of `mask` count the fields in their order: 1, 2, 4, ...

struct ComponentData : IMsiReader, IMsiWriter, ComponentColumns
{
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    CString BuildStatement() override;
};

struct DirectoryData : IMsiReader, IMsiWriter, DirectoryColumns
{
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    CString BuildStatement() override;
    bool BuildRecord(InstallerHandle& record) override;
};

struct CreateFolderData : IMsiReader, IMsiWriter, CreateFolderColumns
{
    // Crossed: bit 1 is Component_ and bit 2 Directory_.
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    CString BuildStatement() override;
};

struct FeatureData : IMsiReader, IMsiWriter, FeatureColumns
{
    // Expands the property references of Description.
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    CString BuildStatement() override;
};

struct FeatureComponentsData : IMsiReader, IMsiWriter, FeatureComponentsColumns
{
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    CString BuildStatement() override;
};

struct FileData : IMsiReader, IMsiWriter, FileColumns
{
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    CString BuildStatement() override;
    bool BuildRecord(InstallerHandle& record) override;
};

struct ShortcutData : IMsiReader, IMsiWriter, ShortcutColumns
{
    // Expands the property references of Description. The three numbers may be null.
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    // Turns Name into "short|long", for every action.
    CString BuildStatement() override;
    bool BuildRecord(InstallerHandle& record) override;
};

struct CustomFileData : IMsiReader, IMsiWriter, CustomFileColumns
{
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    CString BuildStatement() override;
    bool BuildRecord(InstallerHandle& record) override;
};

struct CustomActionData : IMsiReader, IMsiWriter, CustomActionColumns
{
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    CString BuildStatement() override;
};

struct InstallExecuteSequenceData : IMsiReader, IMsiWriter, InstallExecuteSequenceColumns
{
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    CString BuildStatement() override;
};

struct TarnDirectoryMapData : IMsiReader, TarnDirectoryMapColumns
{
    bool Read(InstallerHandle database, InstallerHandle record, unsigned int mask) override;
    virtual ~TarnDirectoryMapData() = default;
};

// Walks the rows of a query. The view is opened by the first Next and closed with the object.
//
//     MsiRowCursor cursor(database, L"SELECT DISTINCT `Directory_` FROM `Component`", 4);
//     for (ComponentData row; cursor.Next(row); row = {}) ...
class MsiRowCursor
{
public:
    // `mask` names the columns that the query selects. A null query has no rows.
    MsiRowCursor(InstallerHandle database, const CString& query, unsigned int mask)
        : m_strQuery(query), m_mask(mask), m_hDatabase(database)
    {
    }

    // False at the end, and also when the query fails or a row can't be read.
    [[nodiscard]] bool Next(IMsiReader& row);

private:
    CString m_strQuery;
    unsigned int m_mask;
    InstallerHandle m_hDatabase;
    CQuery m_query;
};

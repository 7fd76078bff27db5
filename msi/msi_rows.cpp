#include "msi/msi_rows.h"

#include "msi/msi_property.h"
#include "msi/property_references.h"
#include "msi/record_reader.h"

#include <windows.h>

namespace {

void ExpandFromDatabase(InstallerHandle database, CString& text)
{
    text = ExpandPropertyReferences(text,
                                    [database](const CString& name) { return ReadProperty(database, name); });
}

bool MakeTextRecord(const CString& text, InstallerHandle& record)
{
    record = 0;
    CInstallerHandle made(MsiCreateRecord(1));
    if (MsiRecordSetStringW(made.get(), 1, text) != ERROR_SUCCESS) {
        return false;
    }
    record = made.release();
    return true;
}

bool NoRecord(InstallerHandle& record)
{
    record = 0;
    return true;
}

// The short form of a file of that name in the current folder. There seldom is one: the name stands for itself then.
CString ShortFormOf(const CString& name)
{
    const int length = name.GetLength();
    CString shortForm;
    const DWORD result = GetShortPathNameW(name, shortForm.GetBuffer(length),
                                           static_cast<DWORD>(length)); // the zero not counted
    const bool filled = result > 0 && result < static_cast<DWORD>(length);
    shortForm.ReleaseBuffer(filled ? static_cast<int>(result) : 0);
    return filled ? shortForm : name;
}

} // namespace

// ---- what all rows share ---------------------------------------------------------------------------------------------

bool IMsiWriter::Execute(InstallerHandle database)
{
    m_strStatement = BuildStatement();
    CInstallerHandle view;
    if (MsiDatabaseOpenViewW(database, m_strStatement, view.put()) != ERROR_SUCCESS) {
        return false;
    }
    InstallerHandle made = 0;
    if (!BuildRecord(made)) {
        return false;
    }
    const CInstallerHandle record(made);
    return MsiViewExecute(view.get(), record.get()) == ERROR_SUCCESS;
}

bool IMsiWriter::BuildRecord(InstallerHandle& record)
{
    return NoRecord(record);
}

bool MsiRowCursor::Next(IMsiReader& row)
{
    if (m_strQuery.IsEmpty()) {
        return false;
    }
    if (!m_hView && (MsiDatabaseOpenViewW(m_hDatabase, m_strQuery, m_hView.put()) != ERROR_SUCCESS ||
                     MsiViewExecute(m_hView.get(), 0) != ERROR_SUCCESS)) {
        return false;
    }
    CInstallerHandle record;
    return MsiViewFetch(m_hView.get(), record.put()) == ERROR_SUCCESS &&
           row.Read(m_hDatabase, record.get(), m_mask);
}

// ---- the rows --------------------------------------------------------------------------------------------------------

CString ComponentData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool ComponentData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    RecordReader reader(record, mask);
    reader.TakeText(Component);
    reader.TakeText(ComponentId);
    reader.TakeText(Directory_);
    reader.TakeNumber(Attributes);
    reader.TakeText(Condition);
    reader.TakeText(KeyPath);
    return reader.GetResult();
}

CString DirectoryData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool DirectoryData::BuildRecord(InstallerHandle& record)
{
    return m_action == MsiRowAction::Delete ? NoRecord(record) : MakeTextRecord(DefaultDir, record);
}

bool DirectoryData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    RecordReader reader(record, mask);
    reader.TakeText(Directory);
    reader.TakeText(Directory_Parent);
    reader.TakeText(DefaultDir);
    return reader.GetResult();
}

CString CreateFolderData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool CreateFolderData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    // The other way round than the table's columns; this table is only written.
    RecordReader reader(record, mask);
    reader.TakeText(Component_);
    reader.TakeText(Directory_);
    return reader.GetResult();
}

CString FeatureData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool FeatureData::Read(InstallerHandle database, InstallerHandle record, unsigned int mask)
{
    RecordReader reader(record, mask);
    reader.TakeText(Feature);
    reader.TakeText(Feature_Parent);
    reader.TakeText(Title);
    if (reader.TakeText(Description)) {
        ExpandFromDatabase(database, Description);
    }
    reader.TakeNumber(Display);
    reader.TakeNumber(Level);
    reader.TakeText(Directory_);
    reader.TakeNumber(Attributes);
    return reader.GetResult();
}

CString FeatureComponentsData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool FeatureComponentsData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    RecordReader reader(record, mask);
    reader.TakeText(Feature_);
    reader.TakeText(Component_);
    return reader.GetResult();
}

CString FileData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool FileData::BuildRecord(InstallerHandle& record)
{
    return m_action == MsiRowAction::Insert ? MakeTextRecord(FileName, record) : NoRecord(record);
}

bool FileData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    RecordReader reader(record, mask);
    reader.TakeText(File);
    reader.TakeText(Component_);
    reader.TakeText(FileName);
    reader.TakeNumber(FileSize);
    reader.TakeText(Version);
    reader.TakeText(Language);
    reader.TakeNumber(Attributes);
    reader.TakeNumber(Sequence);
    return reader.GetResult();
}

CString ShortcutData::BuildStatement()
{
    Name = ShortFormOf(Name) + L"|" + Name;
    return BuildRowStatement(m_action, *this);
}

bool ShortcutData::BuildRecord(InstallerHandle& record)
{
    return m_action == MsiRowAction::Delete ? NoRecord(record) : MakeTextRecord(Name, record);
}

bool ShortcutData::Read(InstallerHandle database, InstallerHandle record, unsigned int mask)
{
    RecordReader reader(record, mask);
    reader.TakeText(Shortcut);
    reader.TakeText(Directory_);
    reader.TakeText(Name);
    reader.TakeText(Component_);
    reader.TakeText(Target);
    reader.TakeText(Arguments);
    if (reader.TakeText(Description)) {
        ExpandFromDatabase(database, Description);
    }
    reader.TakeOptionalNumber(Hotkey);
    reader.TakeText(Icon_);
    reader.TakeOptionalNumber(IconIndex);
    reader.TakeOptionalNumber(ShowCmd);
    reader.TakeText(WkDir);
    return reader.GetResult();
}

CString CustomFileData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool CustomFileData::BuildRecord(InstallerHandle& record)
{
    return m_action == MsiRowAction::Delete ? NoRecord(record) : MakeTextRecord(SourceFileName, record);
}

bool CustomFileData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    RecordReader reader(record, mask);
    reader.TakeText(Component_);
    reader.TakeText(SourceFileName);
    reader.TakeNumber(Flags);
    return reader.GetResult();
}

CString CustomActionData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool CustomActionData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    RecordReader reader(record, mask);
    reader.TakeText(Action);
    reader.TakeNumber(Type);
    reader.TakeText(Source);
    reader.TakeText(Target);
    return reader.GetResult();
}

CString InstallExecuteSequenceData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool InstallExecuteSequenceData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    RecordReader reader(record, mask);
    reader.TakeText(Action);
    reader.TakeText(Condition);
    reader.TakeNumber(Sequence);
    return reader.GetResult();
}

bool TarnDirectoryMapData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    RecordReader reader(record, mask);
    reader.TakeText(Directory_);
    reader.TakeText(LocalString);
    reader.TakeNumber(Flags);
    return reader.GetResult();
}

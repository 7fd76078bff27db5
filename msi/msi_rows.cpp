#include "msi/msi_rows.h"

#include "installer/record.h"
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

bool BindText(const CString& text, InstallerHandle& record)
{
    CInstallerHandle made;
    const bool isMade = MakeTextRecord({text}, made) == ERROR_SUCCESS;
    record = made.release();
    return isMade;
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
    CQuery query;
    if (query.Open(database, m_strStatement) != ERROR_SUCCESS) {
        return false;
    }
    InstallerHandle made = 0;
    if (!BuildRecord(made)) {
        return false;
    }
    const CInstallerHandle record(made);
    return query.Execute(record.get()) == ERROR_SUCCESS;
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
    if (!m_query.IsOpen() && m_query.Run(m_hDatabase, m_strQuery) != ERROR_SUCCESS) {
        return false;
    }
    CInstallerHandle record;
    return m_query.Fetch(record) == ERROR_SUCCESS && row.Read(m_hDatabase, record.get(), m_mask);
}

// ---- the rows --------------------------------------------------------------------------------------------------------

CString ComponentData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool ComponentData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    CRecordReader reader(record, mask);
    reader.ReadText(Component);
    reader.ReadText(ComponentId);
    reader.ReadText(Directory_);
    reader.ReadNumber(Attributes);
    reader.ReadText(Condition);
    reader.ReadText(KeyPath);
    return reader.GetResult();
}

CString DirectoryData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool DirectoryData::BuildRecord(InstallerHandle& record)
{
    return m_action == MsiRowAction::Delete ? NoRecord(record) : BindText(DefaultDir, record);
}

bool DirectoryData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    CRecordReader reader(record, mask);
    reader.ReadText(Directory);
    reader.ReadText(Directory_Parent);
    reader.ReadText(DefaultDir);
    return reader.GetResult();
}

CString CreateFolderData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool CreateFolderData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    // The other way round than the table's columns; this table is only written.
    CRecordReader reader(record, mask);
    reader.ReadText(Component_);
    reader.ReadText(Directory_);
    return reader.GetResult();
}

CString FeatureData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool FeatureData::Read(InstallerHandle database, InstallerHandle record, unsigned int mask)
{
    CRecordReader reader(record, mask);
    reader.ReadText(Feature);
    reader.ReadText(Feature_Parent);
    reader.ReadText(Title);
    if (reader.ReadText(Description)) {
        ExpandFromDatabase(database, Description);
    }
    reader.ReadNumber(Display);
    reader.ReadNumber(Level);
    reader.ReadText(Directory_);
    reader.ReadNumber(Attributes);
    return reader.GetResult();
}

CString FeatureComponentsData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool FeatureComponentsData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    CRecordReader reader(record, mask);
    reader.ReadText(Feature_);
    reader.ReadText(Component_);
    return reader.GetResult();
}

CString FileData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool FileData::BuildRecord(InstallerHandle& record)
{
    return m_action == MsiRowAction::Insert ? BindText(FileName, record) : NoRecord(record);
}

bool FileData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    CRecordReader reader(record, mask);
    reader.ReadText(File);
    reader.ReadText(Component_);
    reader.ReadText(FileName);
    reader.ReadNumber(FileSize);
    reader.ReadText(Version);
    reader.ReadText(Language);
    reader.ReadNumber(Attributes);
    reader.ReadNumber(Sequence);
    return reader.GetResult();
}

CString ShortcutData::BuildStatement()
{
    Name = ShortFormOf(Name) + L"|" + Name;
    return BuildRowStatement(m_action, *this);
}

bool ShortcutData::BuildRecord(InstallerHandle& record)
{
    return m_action == MsiRowAction::Delete ? NoRecord(record) : BindText(Name, record);
}

bool ShortcutData::Read(InstallerHandle database, InstallerHandle record, unsigned int mask)
{
    CRecordReader reader(record, mask);
    reader.ReadText(Shortcut);
    reader.ReadText(Directory_);
    reader.ReadText(Name);
    reader.ReadText(Component_);
    reader.ReadText(Target);
    reader.ReadText(Arguments);
    if (reader.ReadText(Description)) {
        ExpandFromDatabase(database, Description);
    }
    reader.ReadOptionalNumber(Hotkey);
    reader.ReadText(Icon_);
    reader.ReadOptionalNumber(IconIndex);
    reader.ReadOptionalNumber(ShowCmd);
    reader.ReadText(WkDir);
    return reader.GetResult();
}

CString CustomFileData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool CustomFileData::BuildRecord(InstallerHandle& record)
{
    return m_action == MsiRowAction::Delete ? NoRecord(record) : BindText(SourceFileName, record);
}

bool CustomFileData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    CRecordReader reader(record, mask);
    reader.ReadText(Component_);
    reader.ReadText(SourceFileName);
    reader.ReadNumber(Flags);
    return reader.GetResult();
}

CString CustomActionData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool CustomActionData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    CRecordReader reader(record, mask);
    reader.ReadText(Action);
    reader.ReadNumber(Type);
    reader.ReadText(Source);
    reader.ReadText(Target);
    return reader.GetResult();
}

CString InstallExecuteSequenceData::BuildStatement()
{
    return BuildRowStatement(m_action, *this);
}

bool InstallExecuteSequenceData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    CRecordReader reader(record, mask);
    reader.ReadText(Action);
    reader.ReadText(Condition);
    reader.ReadNumber(Sequence);
    return reader.GetResult();
}

bool TarnDirectoryMapData::Read(InstallerHandle, InstallerHandle record, unsigned int mask)
{
    CRecordReader reader(record, mask);
    reader.ReadText(Directory_);
    reader.ReadText(LocalString);
    reader.ReadNumber(Flags);
    return reader.GetResult();
}

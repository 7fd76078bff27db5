#include "installer/database.h"

#include "installer/query.h"
#include "installer/record.h"

unsigned int OpenDatabase(const CString& path, const wchar_t* mode, CInstallerHandle& database)
{
    return MsiOpenDatabaseW(path, mode, database.put());
}

bool HasTable(MSIHANDLE database, const wchar_t* table)
{
    return MsiDatabaseIsTablePersistentW(database, table) == MSICONDITION_TRUE;
}

bool ReadPropertyRow(MSIHANDLE database, const CString& name, CString& value)
{
    bool found = false;
    const unsigned int result = ForEachRow(database, L"SELECT `Value` FROM `Property` WHERE `Property`=?",
                                           {name}, [&](MSIHANDLE record) {
                                               value = RecordText(record, 1);
                                               found = true;
                                               return false;
                                           });
    return result == ERROR_SUCCESS && found;
}

unsigned int WritePropertyRow(MSIHANDLE database, const CString& name, const CString& value)
{
    if (value.IsEmpty()) {
        return RunStatement(database, L"DELETE FROM `Property` WHERE `Property`=?", {name});
    }
    CString old;
    if (ReadPropertyRow(database, name, old)) {
        return RunStatement(database, L"UPDATE `Property` SET `Value`=? WHERE `Property`=?", {value, name});
    }
    return RunStatement(database, L"INSERT INTO `Property` (`Property`,`Value`) VALUES (?,?)", {name, value});
}

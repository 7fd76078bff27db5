#include "installer/database.h"

#include <msiquery.h>

#include <algorithm>

unsigned int OpenDatabase(const CString& path, const wchar_t* mode, CInstallerHandle& database)
{
    return MsiOpenDatabaseW(path, mode, database.put());
}

CString RecordText(MSIHANDLE record, unsigned int column)
{
    CString text;
    DWORD length = 0;
    wchar_t none[1] = {};
    if (MsiRecordGetStringW(record, column, none, &length) != ERROR_MORE_DATA || length == 0) {
        return text;
    }
    DWORD capacity = length + 1;
    const UINT result =
        MsiRecordGetStringW(record, column, text.GetBuffer(static_cast<int>(length)), &capacity);
    text.ReleaseBuffer(result == ERROR_SUCCESS ? static_cast<int>(capacity) : 0);
    return text;
}

unsigned int ForEachRow(MSIHANDLE database, const wchar_t* query, std::initializer_list<CString> parameters,
                        const RowFunction& onRow)
{
    CInstallerHandle view;
    UINT result = MsiDatabaseOpenViewW(database, query, view.put());
    if (result != ERROR_SUCCESS) {
        return result;
    }
    const CInstallerHandle record(parameters.size() ? MsiCreateRecord(static_cast<UINT>(parameters.size()))
                                                    : 0);
    UINT field = 0;
    for (const CString& parameter : parameters) {
        MsiRecordSetStringW(record.get(), ++field, parameter);
    }
    result = MsiViewExecute(view.get(), record.get());
    while (result == ERROR_SUCCESS && onRow) {
        CInstallerHandle row;
        result = MsiViewFetch(view.get(), row.put());
        if (result == ERROR_SUCCESS && !onRow(row.get())) {
            break;
        }
    }
    MsiViewClose(view.get());
    return result == ERROR_NO_MORE_ITEMS ? UINT{ERROR_SUCCESS} : result;
}

unsigned int RunStatement(MSIHANDLE database, const wchar_t* statement,
                          std::initializer_list<CString> parameters)
{
    return ForEachRow(database, statement, parameters, nullptr);
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

CString SummaryText(MSIHANDLE database, unsigned int property)
{
    CInstallerHandle summary;
    CString text;
    if (MsiGetSummaryInformationW(database, nullptr, 0, summary.put()) != ERROR_SUCCESS) {
        return text;
    }
    UINT type = 0;
    INT number = 0;
    FILETIME time = {};
    DWORD length = 0;
    wchar_t none[1] = {};
    if (MsiSummaryInfoGetPropertyW(summary.get(), property, &type, &number, &time, none, &length) ==
        ERROR_MORE_DATA) {
        DWORD capacity = ++length;
        MsiSummaryInfoGetPropertyW(summary.get(), property, &type, &number, &time,
                                   text.GetBuffer(static_cast<int>(capacity)), &capacity);
        text.ReleaseBuffer();
    }
    return text;
}

int SummaryNumber(MSIHANDLE database, unsigned int property)
{
    CInstallerHandle summary;
    UINT type = 0;
    INT number = 0;
    FILETIME time = {};
    DWORD length = 0;
    const bool read = MsiGetSummaryInformationW(database, nullptr, 0, summary.put()) == ERROR_SUCCESS &&
                      MsiSummaryInfoGetPropertyW(summary.get(), property, &type, &number, &time, nullptr,
                                                 &length) == ERROR_SUCCESS;
    return read ? number : 0;
}

bool IsSixtyFourBit(MSIHANDLE database)
{
    const CString text = SummaryText(database, SUMMARY_TEMPLATE);
    const CString platform = text.Left(std::max(text.Find(L';'), 0));
    return platform.CompareNoCase(L"x64") == 0 || platform.CompareNoCase(L"Intel64") == 0 ||
           platform.CompareNoCase(L"Arm64") == 0;
}

unsigned int AddMissingTables(MSIHANDLE database, CString& failedTable)
{
    // The service's own column types, as its schema names them, and the two private tables.
    static const struct
    {
        const wchar_t* name;
        const wchar_t* columns;
    } TABLES[] = {
        {L"Property",
         L"`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL LOCALIZABLE PRIMARY KEY `Property`"},
        {L"Directory",
         L"`Directory` CHAR(72) NOT NULL, `Directory_Parent` CHAR(72), `DefaultDir` CHAR(255) NOT NULL "
         L"LOCALIZABLE PRIMARY KEY `Directory`"},
        {L"Component",
         L"`Component` CHAR(72) NOT NULL, `ComponentId` CHAR(38), `Directory_` CHAR(72) NOT NULL, "
         L"`Attributes` SHORT NOT NULL, `Condition` CHAR(255), `KeyPath` CHAR(72) PRIMARY KEY "
         L"`Component`"},
        {L"CreateFolder",
         L"`Directory_` CHAR(72) NOT NULL, `Component_` CHAR(72) NOT NULL PRIMARY KEY `Directory_`, "
         L"`Component_`"},
        {L"Feature",
         L"`Feature` CHAR(38) NOT NULL, `Feature_Parent` CHAR(38), `Title` CHAR(64) LOCALIZABLE, "
         L"`Description` CHAR(255) LOCALIZABLE, `Display` SHORT, `Level` SHORT NOT NULL, `Directory_` "
         L"CHAR(72), `Attributes` SHORT NOT NULL PRIMARY KEY `Feature`"},
        {L"FeatureComponents", L"`Feature_` CHAR(38) NOT NULL, `Component_` CHAR(72) NOT NULL PRIMARY KEY "
                               L"`Feature_`, `Component_`"},
        {L"File",
         L"`File` CHAR(72) NOT NULL, `Component_` CHAR(72) NOT NULL, `FileName` CHAR(255) NOT NULL "
         L"LOCALIZABLE, `FileSize` LONG NOT NULL, `Version` CHAR(72), `Language` CHAR(20), `Attributes` "
         L"SHORT, `Sequence` LONG NOT NULL PRIMARY KEY `File`"},
        {L"Media",
         L"`DiskId` SHORT NOT NULL, `LastSequence` LONG NOT NULL, `DiskPrompt` CHAR(64) LOCALIZABLE, "
         L"`Cabinet` CHAR(255), `VolumeLabel` CHAR(32), `Source` CHAR(72) PRIMARY KEY `DiskId`"},
        {L"Shortcut",
         L"`Shortcut` CHAR(72) NOT NULL, `Directory_` CHAR(72) NOT NULL, `Name` CHAR(128) NOT NULL "
         L"LOCALIZABLE, `Component_` CHAR(72) NOT NULL, `Target` CHAR(72) NOT NULL, `Arguments` "
         L"CHAR(255), `Description` CHAR(255) LOCALIZABLE, `Hotkey` SHORT, `Icon_` CHAR(72), "
         L"`IconIndex` SHORT, `ShowCmd` SHORT, `WkDir` CHAR(72) PRIMARY KEY `Shortcut`"},
        {L"CustomAction",
         L"`Action` CHAR(72) NOT NULL, `Type` SHORT NOT NULL, `Source` CHAR(72), `Target` CHAR(255) "
         L"PRIMARY KEY `Action`"},
        {L"InstallExecuteSequence",
         L"`Action` CHAR(72) NOT NULL, `Condition` CHAR(255), `Sequence` SHORT PRIMARY "
         L"KEY `Action`"},
        {L"TarnCustomFile",
         L"`Component_` CHAR(72) NOT NULL, `SourceFileName` LONGCHAR, `Flags` LONG PRIMARY KEY "
         L"`Component_`"},
        {L"TarnDirectoryMap",
         L"`Directory_` CHAR(72) NOT NULL, `LocalString` CHAR(255) LOCALIZABLE, `Flags` LONG "
         L"PRIMARY KEY `Directory_`"},
    };
    for (const auto& table : TABLES) {
        if (HasTable(database, table.name)) {
            continue;
        }
        const CString statement = CString(L"CREATE TABLE `") + table.name + L"` (" + table.columns + L")";
        const unsigned int result = RunStatement(database, statement);
        if (result != ERROR_SUCCESS) {
            failedTable = table.name;
            return result;
        }
    }
    return ERROR_SUCCESS;
}

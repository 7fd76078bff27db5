#include "installer/missing_tables.h"

#include "installer/database.h"
#include "installer/query.h"

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

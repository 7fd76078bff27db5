#include "msi/row_statements.h"

#include "msi/statement_text.h"

CString BuildRowStatement(MsiRowAction action, const ComponentColumns& row)
{
    switch (action) {
    case MsiRowAction::Insert:
        return FillTemplate(
            L"INSERT INTO `Component` "
            L"(`Component`,`ComponentId`,`Directory_`,`Attributes`,`Condition`,`KeyPath`) "
            L"VALUES ('%s','%s','%s','%d','%s','%s')",
            {row.Component, row.ComponentId, row.Directory_, row.Attributes, row.Condition, row.KeyPath});
    case MsiRowAction::Update:
        // The backquote behind KeyPath makes the service refuse it; components are written and deleted, never changed.
        return FillTemplate(
            L"UPDATE `Component` SET `ComponentId`='%s',`Directory_`='%s',`Attributes`=%d,"
            L"`Condition`='%s',`KeyPath`='%s'` WHERE `Component`='%s'",
            {row.ComponentId, row.Directory_, row.Attributes, row.Condition, row.KeyPath, row.Component});
    case MsiRowAction::Delete:
        return FillTemplate(L"DELETE FROM `Component` WHERE `Component`='%s'", {row.Component});
    }
    return CString();
}

CString BuildRowStatement(MsiRowAction action, const CreateFolderColumns& row)
{
    switch (action) {
    case MsiRowAction::Insert:
        return FillTemplate(L"INSERT INTO `CreateFolder` (`Directory_`,`Component_`) VALUES ('%s','%s')",
                            {row.Directory_, row.Component_});
    case MsiRowAction::Update:
        break; // both columns are the key
    case MsiRowAction::Delete:
        return FillTemplate(L"DELETE FROM `CreateFolder` WHERE `Directory_`='%s' AND `Component_`='%s'",
                            {row.Directory_, row.Component_});
    }
    return CString();
}

CString BuildRowStatement(MsiRowAction action, const DirectoryColumns& row)
{
    switch (action) {
    case MsiRowAction::Insert:
        return FillTemplate(
            L"INSERT INTO `Directory` (`DefaultDir`,`Directory`,`Directory_Parent`) VALUES (?,'%s','%s')",
            {row.Directory, row.Directory_Parent});
    case MsiRowAction::Update:
        return FillTemplate(
            L"UPDATE `Directory` SET `DefaultDir`=?, `Directory_Parent`='%s' WHERE `Directory` = '%s'",
            {row.Directory_Parent, row.Directory});
    case MsiRowAction::Delete:
        return FillTemplate(L"DELETE FROM `Directory` WHERE `Directory`='%s'", {row.Directory});
    }
    return CString();
}

CString BuildRowStatement(MsiRowAction action, const FeatureColumns& row)
{
    switch (action) {
    case MsiRowAction::Insert:
        return FillTemplate(L"INSERT INTO `Feature` (`Feature`, `Feature_Parent`,`Title`,`Description`,"
                            L"`Display`,`Level`,`Directory_`,`Attributes`) "
                            L"VALUES( '%s', '%s', '%s', '%s', '%d', '%d', '%s', '%d') ",
                            {row.Feature, row.Feature_Parent, row.Title, row.Description, row.Display,
                             row.Level, row.Directory_, row.Attributes});
    case MsiRowAction::Update:
        return FillTemplate(L"UPDATE `Feature` SET `Feature_Parent`='%s',`Title`='%s',`Description`='%s',"
                            L"`Display`='%d',`Level`='%d',`Directory_`='%s',`Attributes`='%d' "
                            L"WHERE `Feature`='%s'",
                            {row.Feature_Parent, row.Title, row.Description, row.Display, row.Level,
                             row.Directory_, row.Attributes, row.Feature});
    case MsiRowAction::Delete:
        break; // a feature stays
    }
    return CString();
}

CString BuildRowStatement(MsiRowAction action, const FeatureComponentsColumns& row)
{
    switch (action) {
    case MsiRowAction::Insert:
        return FillTemplate(L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES ('%s','%s')",
                            {row.Feature_, row.Component_});
    case MsiRowAction::Update:
        break; // both columns are the key
    case MsiRowAction::Delete:
        return FillTemplate(L"DELETE FROM `FeatureComponents` WHERE `Feature_`='%s' AND `Component_`='%s'",
                            {row.Feature_, row.Component_});
    }
    return CString();
}

CString BuildRowStatement(MsiRowAction action, const FileColumns& row)
{
    switch (action) {
    case MsiRowAction::Insert:
        return FillTemplate(
            L"INSERT INTO `File` "
            L"(`FileName`,`File`,`Component_`,`FileSize`,`Version`,`Language`,`Attributes`,`Sequence`) "
            L"VALUES (?, '%s','%s','%d','%s','%s','%d','%d')",
            {row.File, row.Component_, row.FileSize, row.Version, row.Language, row.Attributes,
             row.Sequence});
    case MsiRowAction::Update:
        break; // a file is removed and added again
    case MsiRowAction::Delete:
        return FillTemplate(L"DELETE FROM `File` WHERE `File`='%s'", {row.File});
    }
    return CString();
}

CString BuildRowStatement(MsiRowAction action, const ShortcutColumns& row)
{
    switch (action) {
    case MsiRowAction::Insert:
        // A shortcut that a user adds has no hot key, icon index or window state, whatever the row holds.
        return FillTemplate(L"INSERT INTO `Shortcut` (`Name`,`Shortcut`,`Directory_`,`Component_`,`Target`,"
                            L"`Arguments`,`Description`,`Hotkey`,`Icon_`,`IconIndex`,`ShowCmd`,`WkDir`) "
                            L"VALUES (?,'%s','%s','%s','%s','%s','%s',Null,'%s',Null,Null,'%s')",
                            {row.Shortcut, row.Directory_, row.Component_, row.Target, row.Arguments,
                             row.Description, row.Icon_, row.WkDir});
    case MsiRowAction::Update:
        return FillTemplate(L"UPDATE `Shortcut` SET `Name`=?,`Arguments`='%s' WHERE `Shortcut`='%s'",
                            {row.Arguments, row.Shortcut});
    case MsiRowAction::Delete:
        return FillTemplate(L"DELETE FROM `Shortcut` WHERE `Shortcut`='%s'", {row.Shortcut});
    }
    return CString();
}

CString BuildRowStatement(MsiRowAction action, const CustomFileColumns& row)
{
    switch (action) {
    case MsiRowAction::Insert:
        return FillTemplate(
            L"INSERT INTO `TarnCustomFile` (`SourceFileName`,`Component_`,`Flags`) VALUES (?,'%s','%d')",
            {row.Component_, row.Flags});
    case MsiRowAction::Update:
        return FillTemplate(
            L"UPDATE `TarnCustomFile` SET `SourceFileName`=?, `Flags`='%d' WHERE `Component_`='%s' ",
            {row.Flags, row.Component_});
    case MsiRowAction::Delete:
        return FillTemplate(L"DELETE FROM `TarnCustomFile` WHERE `Component_`='%s'", {row.Component_});
    }
    return CString();
}

CString BuildRowStatement(MsiRowAction action, const CustomActionColumns& row)
{
    switch (action) {
    case MsiRowAction::Insert:
        return FillTemplate(
            L"INSERT INTO `CustomAction` (`Action`,`Type`,`Source`,`Target`) VALUES ('%s','%d','%s','%s')",
            {row.Action, row.Type, row.Source, row.Target});
    case MsiRowAction::Update:
        return FillTemplate(
            L"UPDATE `CustomAction` SET `Type`='%d', `Source`='%s', `Target`='%s' WHERE `Action`='%s' ",
            {row.Type, row.Source, row.Target, row.Action});
    case MsiRowAction::Delete:
        return FillTemplate(L"DELETE FROM `CustomAction` WHERE `Action`='%s'", {row.Action});
    }
    return CString();
}

CString BuildRowStatement(MsiRowAction action, const InstallExecuteSequenceColumns& row)
{
    switch (action) {
    case MsiRowAction::Insert:
        return FillTemplate(
            L"INSERT INTO `InstallExecuteSequence` (`Action`,`Condition`,`Sequence`) VALUES ('%s','%s','%d')",
            {row.Action, row.Condition, row.Sequence});
    case MsiRowAction::Update:
        // Sequence stands behind a %s, unlike above; a number is written in digits there too.
        return FillTemplate(
            L"UPDATE `InstallExecuteSequence` SET `Condition`='%s',`Sequence`='%s' WHERE `Action`='%s' ",
            {row.Condition, row.Sequence, row.Action});
    case MsiRowAction::Delete:
        return FillTemplate(L"DELETE FROM `InstallExecuteSequence` WHERE `Action`='%s'", {row.Action});
    }
    return CString();
}

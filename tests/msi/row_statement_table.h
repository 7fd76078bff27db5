// Each table that the rows write: a sample of its columns, and the statement of each action as it must stand. The values
// are distinct, so that two columns that changed places show. No window header: the rules' tests compare the texts natively,
// those of the rows run them on a database.
#pragma once

#include "msi/row_statements.h"

#include <ostream>

inline const ComponentColumns COMPONENT = {L"comp", L"{GUID}", L"dir", 256, L"cond", L"kp"};
inline const DirectoryColumns DIRECTORY = {L"dir", L"parent", L"IT'S~1|It's long"};
inline const CreateFolderColumns CREATE_FOLDER = {L"dir", L"comp"};
inline const FeatureColumns FEATURE = {L"feat", L"parent", L"title", L"desc", 2, 1, L"dir", 16};
inline const FeatureComponentsColumns FEATURE_COMPONENT = {L"feat", L"comp"};
inline const FileColumns USER_FILE = {L"file", L"comp", L"IT'S~1|It's long", 1234, L"1.2.3.4", L"1033",
                                      512,     7};
inline const ShortcutColumns SHORTCUT = {
    L"cut", L"dir", L"It's a name", L"comp", L"[INSTALLDIR]z.exe", L"/a", L"tip", 11, L"icon",
    22,     33,     L"wkdir"};
inline const CustomFileColumns CUSTOM_FILE = {L"comp", L"C:\\it's\\source", 2};
inline const CustomActionColumns CUSTOM_ACTION = {L"act", 51, L"src", L"tgt"};
inline const InstallExecuteSequenceColumns SEQUENCE = {L"act", L"cond", 1};

template <const auto& SAMPLE>
CString BuildSample(MsiRowAction action)
{
    return BuildRowStatement(action, SAMPLE);
}

// An empty text: the action has no statement.
struct RowStatements
{
    const char* table;
    CString (*build)(MsiRowAction action);
    const wchar_t* insert;
    const wchar_t* update;
    const wchar_t* remove;

    const wchar_t* Of(MsiRowAction action) const
    {
        return action == MsiRowAction::Insert ? insert : action == MsiRowAction::Update ? update : remove;
    }
};

inline const RowStatements ROW_STATEMENTS[] = {
    // The update has a backquote too many, and a bare number.
    {"Component", BuildSample<COMPONENT>,
     L"INSERT INTO `Component` (`Component`,`ComponentId`,`Directory_`,`Attributes`,`Condition`,`KeyPath`) "
     L"VALUES ('comp','{GUID}','dir','256','cond','kp')",
     L"UPDATE `Component` SET `ComponentId`='{GUID}',`Directory_`='dir',`Attributes`=256,`Condition`='cond',"
     L"`KeyPath`='kp'` WHERE `Component`='comp'",
     L"DELETE FROM `Component` WHERE `Component`='comp'"},
    {"Directory", BuildSample<DIRECTORY>,
     L"INSERT INTO `Directory` (`DefaultDir`,`Directory`,`Directory_Parent`) VALUES (?,'dir','parent')",
     L"UPDATE `Directory` SET `DefaultDir`=?, `Directory_Parent`='parent' WHERE `Directory` = 'dir'",
     L"DELETE FROM `Directory` WHERE `Directory`='dir'"},
    {"CreateFolder", BuildSample<CREATE_FOLDER>,
     L"INSERT INTO `CreateFolder` (`Directory_`,`Component_`) VALUES ('dir','comp')", L"",
     L"DELETE FROM `CreateFolder` WHERE `Directory_`='dir' AND `Component_`='comp'"},
    // The insert ends in a blank.
    {"Feature", BuildSample<FEATURE>,
     L"INSERT INTO `Feature` (`Feature`, `Feature_Parent`,`Title`,`Description`,`Display`,`Level`,"
     L"`Directory_`,`Attributes`) VALUES( 'feat', 'parent', 'title', 'desc', '2', '1', 'dir', '16') ",
     L"UPDATE `Feature` SET `Feature_Parent`='parent',`Title`='title',`Description`='desc',`Display`='2',"
     L"`Level`='1',`Directory_`='dir',`Attributes`='16' WHERE `Feature`='feat'",
     L""},
    {"FeatureComponents", BuildSample<FEATURE_COMPONENT>,
     L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES ('feat','comp')", L"",
     L"DELETE FROM `FeatureComponents` WHERE `Feature_`='feat' AND `Component_`='comp'"},
    {"File", BuildSample<USER_FILE>,
     L"INSERT INTO `File` (`FileName`,`File`,`Component_`,`FileSize`,`Version`,`Language`,`Attributes`,"
     L"`Sequence`) VALUES (?, 'file','comp','1234','1.2.3.4','1033','512','7')",
     L"", L"DELETE FROM `File` WHERE `File`='file'"},
    // The numbers are never written, and the update changes the name and the arguments alone.
    {"Shortcut", BuildSample<SHORTCUT>,
     L"INSERT INTO `Shortcut` (`Name`,`Shortcut`,`Directory_`,`Component_`,`Target`,`Arguments`,"
     L"`Description`,`Hotkey`,`Icon_`,`IconIndex`,`ShowCmd`,`WkDir`) VALUES "
     L"(?,'cut','dir','comp','[INSTALLDIR]z.exe','/a','tip',Null,'icon',Null,Null,'wkdir')",
     L"UPDATE `Shortcut` SET `Name`=?,`Arguments`='/a' WHERE `Shortcut`='cut'",
     L"DELETE FROM `Shortcut` WHERE `Shortcut`='cut'"},
    // The updates from here on end in a blank.
    {"TarnCustomFile", BuildSample<CUSTOM_FILE>,
     L"INSERT INTO `TarnCustomFile` (`SourceFileName`,`Component_`,`Flags`) VALUES (?,'comp','2')",
     L"UPDATE `TarnCustomFile` SET `SourceFileName`=?, `Flags`='2' WHERE `Component_`='comp' ",
     L"DELETE FROM `TarnCustomFile` WHERE `Component_`='comp'"},
    {"CustomAction", BuildSample<CUSTOM_ACTION>,
     L"INSERT INTO `CustomAction` (`Action`,`Type`,`Source`,`Target`) VALUES ('act','51','src','tgt')",
     L"UPDATE `CustomAction` SET `Type`='51', `Source`='src', `Target`='tgt' WHERE `Action`='act' ",
     L"DELETE FROM `CustomAction` WHERE `Action`='act'"},
    // The update writes its number in digits.
    {"InstallExecuteSequence", BuildSample<SEQUENCE>,
     L"INSERT INTO `InstallExecuteSequence` (`Action`,`Condition`,`Sequence`) VALUES ('act','cond','1')",
     L"UPDATE `InstallExecuteSequence` SET `Condition`='cond',`Sequence`='1' WHERE `Action`='act' ",
     L"DELETE FROM `InstallExecuteSequence` WHERE `Action`='act'"},
};

inline void PrintTo(const RowStatements& statements, std::ostream* stream)
{
    *stream << statements.table;
}

// The columns of the installer tables that the pages read and write, a struct a table, fields spelled and ordered as the
// table's columns. The row classes of msi/msi_rows.h add reading and writing to them; what needs no database (statements,
// the host's path rules) works on these alone.
#pragma once

#include "base/string.h"

struct ComponentColumns
{
    CString Component;
    CString ComponentId;
    CString Directory_;
    int Attributes = 0;
    CString Condition;
    CString KeyPath;
};

struct DirectoryColumns
{
    CString Directory;
    CString Directory_Parent; // empty for a root
    CString DefaultDir;       // [short|]target[:[short|]source], as the table holds it
};

struct CreateFolderColumns
{
    CString Directory_;
    CString Component_;
};

struct FeatureColumns
{
    CString Feature;
    CString Feature_Parent;
    CString Title;
    CString Description;
    int Display = 0;
    int Level = 0;
    CString Directory_;
    int Attributes = 0;
};

struct FeatureComponentsColumns
{
    CString Feature_;
    CString Component_;
};

struct FileColumns
{
    CString File;
    CString Component_;
    CString FileName; // short|long
    int FileSize = 0; // bytes
    CString Version;
    CString Language;
    int Attributes = 0;
    int Sequence = 0;
};

struct ShortcutColumns
{
    CString Shortcut;
    CString Directory_;
    CString Name;
    CString Component_;
    CString Target;
    CString Arguments;
    CString Description;
    int Hotkey = 0;
    CString Icon_;
    int IconIndex = 0;
    int ShowCmd = 0;
    CString WkDir;
};

// TarnCustomFile, a private table: what a user added.
struct CustomFileColumns
{
    CString Component_;     // the key
    CString SourceFileName; // full path of a file's source; name of a folder
    int Flags = 0;          // 0 for a file, 2 for a folder
};

struct CustomActionColumns
{
    CString Action;
    int Type = 0;
    CString Source;
    CString Target;
};

struct InstallExecuteSequenceColumns
{
    CString Action;
    CString Condition;
    int Sequence = 0;
};

// A private table that comes with the product and is never written.
struct TarnDirectoryMapColumns
{
    CString Directory_;
    CString LocalString;
    int Flags = 0; // 4 hides the directory from the tree of additional files, 2 is the path table's
};

// Links for the tests, and the shares and drives that the prefix takes links for. There are none on Windows itself.
#pragma once

#include "base/string.h"

// Makes \\HOSTTEST\<name>\ another name of a folder. The path has a backslash at its end; empty where there is no such
// prefix.
CString ShareFolder(const CString& folder, const wchar_t* name);

// Makes a drive letter (`X:`) another name of a folder for as long as the object lives.
class LinkedDrive
{
public:
    LinkedDrive(const wchar_t* letter, const CString& folder);
    LinkedDrive(const LinkedDrive&) = delete;
    LinkedDrive& operator=(const LinkedDrive&) = delete;
    ~LinkedDrive();
    bool IsThere() const { return !m_link.IsEmpty(); }

private:
    CString m_letter;
    CString m_link; // outside of the prefix
};

// A link to a folder, as copies of media made elsewhere hold them, for as long as the object lives. One that outlived what
// it leads to could not be deleted from within the prefix, and would stand in the way of a later test.
class FolderLink
{
public:
    FolderLink(const CString& link, const CString& folder);
    FolderLink(const FolderLink&) = delete;
    FolderLink& operator=(const FolderLink&) = delete;
    ~FolderLink();
    bool IsThere() const { return !m_link.IsEmpty(); }

private:
    CString m_path;
    CString m_link; // outside of the prefix
};

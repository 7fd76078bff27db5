// The features and directories of a product's installer database, resolved by the host.
#pragma once

#include "base/string.h"

#include <map>

struct DirectoryData; // a row of the Directory table (msi/msi_rows.h)

class CFeature
{
public:
    virtual ~CFeature() = default;
};

class CFeatureManager
{
public:
    virtual ~CFeatureManager() = default;
    // The feature of that name, the host's; null when there is none.
    virtual CFeature* FindFeature(const CString& name) = 0;
};

// What the directory manager knows of a directory. The row is the host's and lives as long as the manager.
struct DirectoryEntry
{
    DirectoryData* pData = nullptr;
    CString strTargetPath; // ends in a backslash; empty when the service could not resolve it
    CString strSourcePath;
};

class CDirectoryManager
{
public:
    // In the order of the keys' code units.
    using DirectoryMap = std::map<CString, DirectoryEntry>;

    virtual ~CDirectoryManager() = default;

    // Target and source path of a directory key such as "INSTALLDIR". `size`: in, the buffer's characters with the
    // closing zero; out, the path's characters without it. False for an unknown key or a buffer that is too small
    // (then `size` still says what is needed).
    virtual bool GetTargetPath(const wchar_t* directory, wchar_t* buffer, unsigned int* size) = 0;
    virtual bool GetSourcePath(const wchar_t* directory, wchar_t* buffer, unsigned int* size) = 0;

    // All directories of the database by key; changes when the manager learns of new rows.
    virtual const DirectoryMap& GetDirectories() = 0;
};

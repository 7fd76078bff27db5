// The 26 paths between the page, the host and the product's database.
//
// The host holds each path in display form as it was when the page first came up: what a change is measured by, and the
// default of the paths that must not be empty. The database holds the installer form.
#pragma once

#include "include/setup_enums.h"
#include "paths/path_resolution.h"
#include "paths/path_table.h"

#include <array>

class CProduct;

class CPathProperties
{
public:
    CPathProperties(CProduct& product, InstallerHandle database) : m_product(product), m_hDatabase(database)
    {
    }

    // Display form from reading to storing; storing turns it into the installer form.
    CString& operator[](PathProperty property) { return m_values[property]; }
    const CString& operator[](PathProperty property) const { return m_values[property]; }

    // Before anything is read. Without a table, or from a row on that can't be read, keys stay unresolved.
    void LoadDirectoryMap();
    const CPathResolver& GetResolver() const { return m_resolver; }

    // The display form. With `preferHostValue` the host's value counts where it has one. Always true.
    bool ReadPathProperty(const wchar_t* name, CString& value, bool preferHostValue);
    void ReadAllPathProperties();

    // Marks the paths as changed when the value isn't the host's, and stores it. `value` is the installer form
    // afterwards. What the host makes of it isn't looked at.
    void SavePathProperty(const wchar_t* name, CString& value);
    void SaveAllPathProperties();

private:
    CProduct& m_product;         // the host's
    InstallerHandle m_hDatabase; // the host's
    CPathResolver m_resolver;
    std::array<CString, PATH_COUNT> m_values;
};

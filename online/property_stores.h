// The two stores in which the online pages keep their properties.
#pragma once

#include "include/setup_enums.h"
#include "online/online_property_rules.h"

class CProduct;

// The host's properties of a product. When they reach the database is the host's affair.
class CHostPropertyStore final : public IPropertyStore
{
public:
    explicit CHostPropertyStore(CProduct& product) : m_product(product) {}

    // A value that the page has no room for can't be read.
    [[nodiscard]] CString Read(const wchar_t* name) override;
    void Write(const wchar_t* name, const CString& value) override;

private:
    CProduct& m_product; // the host's
};

// The table Property of an open database. What is written here is seen by the next query on the handle.
class CDatabasePropertyStore final : public IPropertyStore
{
public:
    explicit CDatabasePropertyStore(InstallerHandle database) : m_hDatabase(database) {}

    // A value that the page has no room for comes back cut.
    [[nodiscard]] CString Read(const wchar_t* name) override;
    void Write(const wchar_t* name, const CString& value) override;

private:
    InstallerHandle m_hDatabase; // the host's
};

#include "online/property_stores.h"

#include "include/product.h"
#include "msi/msi_property.h"

CString CHostPropertyStore::Read(const wchar_t* name)
{
    wchar_t value[PROPERTY_CAPACITY] = {};
    int size = PROPERTY_CAPACITY;
    return m_product.GetMsiProperty(name, value, &size) ? CString(value) : CString();
}

void CHostPropertyStore::Write(const wchar_t* name, const CString& value)
{
    m_product.SetMsiProperty(name, value, false);
}

CString CDatabasePropertyStore::Read(const wchar_t* name)
{
    wchar_t value[PROPERTY_CAPACITY] = {};
    // The result doesn't matter: a missing property leaves the buffer empty, and the beginning of a long value is
    // enough to see that it is neither empty nor "#0".
    static_cast<void>(ReadTableValue(m_hDatabase, L"Property", name, value, PROPERTY_CAPACITY));
    return value;
}

void CDatabasePropertyStore::Write(const wchar_t* name, const CString& value)
{
    WriteProperty(m_hDatabase, name, value);
}

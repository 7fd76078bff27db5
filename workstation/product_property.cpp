#include "workstation/product_property.h"

#include "include/product.h"

CString ReadInstallerProperty(CProduct& product, const wchar_t* name)
{
    constexpr int CAPACITY = LONGEST_PROPERTY + 1;
    wchar_t buffer[CAPACITY] = L"";
    int size = CAPACITY;
    return product.GetMsiProperty(name, buffer, &size) ? CString(buffer) : CString();
}

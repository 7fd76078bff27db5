#include "paths/path_properties.h"

#include "include/product.h"
#include "msi/msi_property.h"
#include "msi/msi_rows.h"

#include <memory>
#include <optional>
#include <utility>

namespace {

constexpr wchar_t CHANGE_MARKER[] = L"NIW_Custom_Paths_Are_Set";
constexpr wchar_t UNCHANGED[] = L"0";
constexpr wchar_t CHANGED[] = L"1";
// Directory_, LocalString and Flags.
constexpr unsigned int ALL_COLUMNS = 7;
// Characters with the closing zero. A longer value of the host counts as none.
constexpr int HOST_VALUE_CAPACITY = 512;

std::optional<CString> HostValue(CProduct& product, const wchar_t* name)
{
    wchar_t value[HOST_VALUE_CAPACITY] = {};
    int size = HOST_VALUE_CAPACITY;
    return product.GetProperty(name, value, &size) ? std::optional<CString>(value) : std::nullopt;
}

} // namespace

void CPathProperties::LoadDirectoryMap()
{
    DirectoryMap rows;
    MsiRowCursor cursor(m_hDatabase, L"SELECT * FROM `TarnDirectoryMap`", ALL_COLUMNS);
    for (TarnDirectoryMapData row; cursor.Next(row); row = {}) {
        rows[row.Directory_] = std::make_unique<TarnDirectoryMapColumns>(row);
    }
    m_resolver = CPathResolver(std::move(rows));
}

bool CPathProperties::ReadPathProperty(const wchar_t* name, CString& value, bool preferHostValue)
{
    const std::optional<CString> hostValue = HostValue(m_product, name);
    if (hostValue && preferHostValue) {
        value = *hostValue;
        return true;
    }
    const CString stored = ReadProperty(m_hDatabase, name);
    value = IsNullPath(stored) ? CString() : m_resolver.DecodePathList(stored);
    if (!hostValue) {
        m_product.SetProperty(name, value);
    }
    return true;
}

void CPathProperties::ReadAllPathProperties()
{
    for (const PathProperty property : PATH_STORE_ORDER) {
        ReadPathProperty(PathPropertyName(property), m_values[property], false);
    }
}

void CPathProperties::SavePathProperty(const wchar_t* name, CString& value)
{
    const std::optional<CString> hostValue = HostValue(m_product, name);
    if (hostValue && hostValue->CompareNoCase(value) != 0) {
        WriteProperty(m_hDatabase, CHANGE_MARKER, CHANGED);
    }
    if (value.IsEmpty()) {
        value = NULL_PATH;
    }
    // A list of separators alone encodes to nothing, which removes the property: only the empty text asks for no path.
    if (!IsNullPath(value)) {
        m_resolver.EncodePathList(value);
    }
    m_product.SetMsiProperty(name, value, false);
}

void CPathProperties::SaveAllPathProperties()
{
    WriteProperty(m_hDatabase, CHANGE_MARKER, UNCHANGED);
    for (const PathProperty property : PATH_STORE_ORDER) {
        SavePathProperty(PathPropertyName(property), m_values[property]);
    }
}

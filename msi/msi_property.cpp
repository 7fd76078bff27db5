#include "msi/msi_property.h"

#include "installer/query.h"
#include "installer/record.h"

#include <cwchar>
#include <memory>
#include <new>

namespace {

constexpr unsigned int TEXT_CAPACITY = 1024; // characters, the closing zero included

} // namespace

bool ReadTableValue(InstallerHandle database, const wchar_t* table, const wchar_t* key, wchar_t* buffer,
                    unsigned int capacity)
{
    wchar_t statement[TEXT_CAPACITY];
    const int length =
        _snwprintf(statement, TEXT_CAPACITY, L"SELECT `Value` FROM `%ls` WHERE `Property`='%ls'", table, key);
    if (length < 0 || length >= static_cast<int>(TEXT_CAPACITY)) {
        return false; // names of this length don't exist
    }
    CQuery query;
    CInstallerHandle record;
    if (query.Run(database, statement) != ERROR_SUCCESS || query.Fetch(record) != ERROR_SUCCESS) {
        return false;
    }
    DWORD size = capacity;
    const UINT result = MsiRecordGetStringW(record.get(), 1, buffer, &size);
    if (result == ERROR_MORE_DATA && capacity > 0) {
        buffer[capacity - 1] = L'\0'; // not every version of the service ends what it cuts
    }
    return result == ERROR_SUCCESS;
}

CString ReadProperty(InstallerHandle database, const wchar_t* name)
{
    wchar_t value[TEXT_CAPACITY] = L"";
    // A missing property is an empty one, and of a longer value the beginning counts.
    static_cast<void>(ReadTableValue(database, L"Property", name, value, TEXT_CAPACITY));
    return CString(value);
}

bool WriteProperty(InstallerHandle database, const wchar_t* name, const CString& value)
{
    CString statement;
    statement.Format(L"DELETE FROM `Property` WHERE `Property`='%s'", name);
    static_cast<void>(RunStatement(database, statement)); // there may be no such row
    statement.Format(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('%s',?)", name);
    return RunStatement(database, statement, {value}) == ERROR_SUCCESS;
}

bool ReadRecordText(InstallerHandle record, unsigned int column, CString& target)
{
    if (MsiRecordDataSize(record, column) == 0) {
        return true; // a null column keeps the target's text
    }
    return CopyRecordText(record, column, target) == ERROR_SUCCESS;
}

bool GetInstallerText(InstallerHandle handle, const wchar_t* name, CString& target,
                      InstallerTextGetter getter)
{
    unsigned long size = TEXT_CAPACITY;
    std::unique_ptr<wchar_t[]> buffer(new (std::nothrow) wchar_t[size]());
    if (!buffer) {
        return false;
    }
    unsigned int result = getter(handle, name, buffer.get(), &size);
    if (result == ERROR_MORE_DATA) {
        ++size; // for the closing zero
        buffer.reset(new (std::nothrow) wchar_t[size]());
        if (!buffer) {
            return false;
        }
        result = getter(handle, name, buffer.get(), &size);
    }
    if (result != ERROR_SUCCESS) {
        return false;
    }
    target = buffer.get();
    return true;
}

#include "msi/msi_property.h"

#include "installer/handle.h"

#include <cwchar>
#include <memory>
#include <new>

namespace {

constexpr unsigned int TEXT_CAPACITY = 1024; // characters, the closing zero included

// Opens and runs a statement with the record's values, 0 for none. A view stays open for fetching.
bool RunView(InstallerHandle database, const wchar_t* statement, InstallerHandle record,
             CInstallerHandle& view)
{
    return MsiDatabaseOpenViewW(database, statement, view.put()) == ERROR_SUCCESS &&
           MsiViewExecute(view.get(), record) == ERROR_SUCCESS;
}

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
    CInstallerHandle view;
    CInstallerHandle record;
    if (!RunView(database, statement, 0, view) || MsiViewFetch(view.get(), record.put()) != ERROR_SUCCESS) {
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
    CInstallerHandle view;
    statement.Format(L"DELETE FROM `Property` WHERE `Property`='%s'", name);
    static_cast<void>(RunView(database, statement, 0, view)); // there may be no such row
    view.reset();

    statement.Format(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('%s',?)", name);
    if (MsiDatabaseOpenViewW(database, statement, view.put()) != ERROR_SUCCESS) {
        return false;
    }
    const CInstallerHandle record(MsiCreateRecord(1));
    return record && MsiRecordSetStringW(record.get(), 1, value) == ERROR_SUCCESS &&
           MsiViewExecute(view.get(), record.get()) == ERROR_SUCCESS;
}

bool ReadRecordText(InstallerHandle record, unsigned int column, CString& target)
{
    const unsigned int length = MsiRecordDataSize(record, column);
    if (length == 0) {
        return true; // a null column keeps the target's text
    }
    DWORD size = length + 1;
    const UINT result =
        MsiRecordGetStringW(record, column, target.GetBuffer(static_cast<int>(length)), &size);
    target.ReleaseBuffer();
    return result == ERROR_SUCCESS;
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

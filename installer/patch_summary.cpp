#include "installer/patch_summary.h"

#include "installer/database.h"
#include "installer/query.h"
#include "installer/summary.h"

#include <cstdint>

namespace {

constexpr std::uintptr_t OPEN_PATCH = 32; // the service's flag; alone it stands for reading
constexpr unsigned int TARGET_UNITS = 4096;
constexpr unsigned int CODE_UNITS = 1024;
constexpr int NAME_UNITS = 260;

// The size is the room of the text, and then the length that was found.
unsigned int ReadUnits(MSIHANDLE summary, unsigned int property, DWORD& size, CString& text)
{
    UINT type = 0;
    INT number = 0;
    FILETIME time = {};
    wchar_t* const buffer = text.GetBuffer(static_cast<int>(size));
    *buffer = 0; // stays so when the property is no text
    const UINT result = MsiSummaryInfoGetPropertyW(summary, property, &type, &number, &time, buffer, &size);
    text.ReleaseBuffer(result == ERROR_SUCCESS ? -1 : 0);
    return result;
}

bool OpenSummary(const CString& path, CInstallerHandle& patch, CInstallerHandle& summary)
{
    return OpenPatch(path, patch) == ERROR_SUCCESS &&
           MsiGetSummaryInformationW(patch.get(), nullptr, 0, summary.put()) == ERROR_SUCCESS;
}

// Whatever the service answers, the text is what stands in the buffer then: empty for a missing row or table, cut where the
// room ended.
CString ReadMetadata(MSIHANDLE patch, const wchar_t* statement)
{
    CQuery query;
    CInstallerHandle row;
    wchar_t text[NAME_UNITS] = {};
    DWORD size = NAME_UNITS;
    if (query.Run(patch, statement) == ERROR_SUCCESS && query.Fetch(row) == ERROR_SUCCESS) {
        MsiRecordGetStringW(row.get(), 1, text, &size);
    }
    text[NAME_UNITS - 1] = 0;
    return text;
}

} // namespace

unsigned int OpenPatch(const CString& path, CInstallerHandle& patch)
{
    return OpenDatabase(path, reinterpret_cast<const wchar_t*>(OPEN_PATCH), patch);
}

bool ReadPatchTargets(const CString& path, CString& targets)
{
    CInstallerHandle patch;
    CInstallerHandle summary;
    if (!OpenSummary(path, patch, summary)) {
        return false;
    }
    DWORD size = TARGET_UNITS;
    unsigned int result = ERROR_MORE_DATA;
    while (result == ERROR_MORE_DATA) { // as long as the answer grows
        result = ReadUnits(summary.get(), SUMMARY_TEMPLATE, size, targets);
        ++size; // the length that is reported lacks the closing zero
    }
    return result == ERROR_SUCCESS;
}

bool ReadPatchCode(const CString& path, CString& code)
{
    CInstallerHandle patch;
    CInstallerHandle summary;
    DWORD size = CODE_UNITS;
    return OpenSummary(path, patch, summary) &&
           ReadUnits(summary.get(), SUMMARY_PACKAGE_CODE, size, code) == ERROR_SUCCESS;
}

bool ReadPatchDisplayName(const CString& path, CString& name)
{
    CInstallerHandle patch;
    if (OpenPatch(path, patch) != ERROR_SUCCESS) {
        return false;
    }
    const CString product = ReadMetadata(
        patch.get(), L"SELECT `Value` FROM `MsiPatchMetadata` WHERE `Property`='TargetProductName'");
    const CString display =
        ReadMetadata(patch.get(), L"SELECT `Value` FROM `MsiPatchMetadata` WHERE `Property`='DisplayName'");
    if (product.IsEmpty() && display.IsEmpty()) {
        return false;
    }
    name = product.IsEmpty() ? display : product + L" " + display;
    return true;
}

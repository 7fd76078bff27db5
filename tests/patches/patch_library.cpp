// Each variant of the tests' FixMgr.dll and Kmd32.dll: which entry points it has is said by the compiler's definitions.
#include "tests/patches/patch_library_calls.h"

#include <cstdlib>

#define STUB_EXPORT extern "C" __declspec(dllexport)

namespace {

[[maybe_unused]] const PatchLibraryCalls& Calls()
{
    wchar_t address[32] = L"";
    GetEnvironmentVariableW(PATCH_LIBRARY_CALLS, address, ARRAYSIZE(address));
    return *reinterpret_cast<const PatchLibraryCalls*>(
        static_cast<std::uintptr_t>(_wcstoui64(address, nullptr, 10)));
}

} // namespace

#if defined(STUB_VALUE)
STUB_EXPORT void setMRFlag()
{
    Calls().setMRFlag();
}

STUB_EXPORT BSTR getKMDValue(BSTR configFile)
{
    return Calls().getKMDValue(configFile);
}
#endif

#if defined(STUB_QUERY)
STUB_EXPORT void GetPatchInfo(std::intptr_t zero, BSTR* catalogKey, BSTR* identity, BSTR* address,
                              BSTR* listFile, PatchInfoRecord* record)
{
    Calls().getPatchInfo(zero, catalogKey, identity, address, listFile, record);
}
#endif

#if defined(STUB_CHECK)
STUB_EXPORT unsigned int CheckPatchFile(BSTR* listFile, BSTR* file)
{
    return Calls().checkPatchFile(listFile, file);
}
#endif

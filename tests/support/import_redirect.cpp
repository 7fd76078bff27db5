#include "tests/support/import_redirect.h"

#include <cstring>
#include <utility>

namespace {

template <class T>
T* At(char* base, std::uintptr_t offset)
{
    return reinterpret_cast<T*>(base + offset);
}

void** FindInDescriptor(char* base, const IMAGE_IMPORT_DESCRIPTOR& descriptor, const char* function)
{
    auto* name = At<IMAGE_THUNK_DATA64>(base, descriptor.OriginalFirstThunk);
    auto* slot = At<void*>(base, descriptor.FirstThunk);
    for (; name->u1.AddressOfData; ++name, ++slot) {
        if (IMAGE_SNAP_BY_ORDINAL64(name->u1.Ordinal))
            continue;
        const auto* import = At<IMAGE_IMPORT_BY_NAME>(base, name->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(import->Name), function) == 0)
            return slot;
    }
    return nullptr;
}

void** FindSlot(HMODULE library, const char* function)
{
    char* base = reinterpret_cast<char*>(library);
    const auto* header = At<IMAGE_NT_HEADERS64>(base, At<IMAGE_DOS_HEADER>(base, 0)->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* row = At<IMAGE_IMPORT_DESCRIPTOR>(base, imports.VirtualAddress); row->FirstThunk; ++row) {
        if (void** slot = FindInDescriptor(base, *row, function))
            return slot;
    }
    return nullptr;
}

void* Exchange(void** slot, void* value)
{
    DWORD protection = 0;
    VirtualProtect(slot, sizeof(void*), PAGE_READWRITE, &protection);
    void* former = std::exchange(*slot, value);
    VirtualProtect(slot, sizeof(void*), protection, &protection);
    return former;
}

} // namespace

CImportRedirect::CImportRedirect(const wchar_t* library, const char* function, void* replacement)
{
    HMODULE module = GetModuleHandleW(library);
    m_slot = module ? FindSlot(module, function) : nullptr;
    if (m_slot)
        m_former = Exchange(m_slot, replacement);
}

CImportRedirect::~CImportRedirect()
{
    if (m_slot)
        Exchange(m_slot, m_former);
}

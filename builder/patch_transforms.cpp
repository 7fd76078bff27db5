#include "builder/patch_transforms.h"

#include "base/com_ptr.h"
#include "base/path_text.h"

#include <objbase.h>
#include <propidl.h>

namespace {

constexpr std::size_t MOST_TRANSFORMS = 1000; // that a foreign file has looked at
// Template, codes and flags, in this order.
constexpr PROPSPEC WANTED[] = {{PRSPEC_PROPID, {7}}, {PRSPEC_PROPID, {9}}, {PRSPEC_PROPID, {16}}};
constexpr ULONG WANTED_COUNT = 3;
constexpr DWORD READ_ALONE = STGM_READ | STGM_SHARE_EXCLUSIVE; // what an inner storage is opened with

struct CPropertyValues
{
    CPropertyValues() = default;
    CPropertyValues(const CPropertyValues&) = delete;
    CPropertyValues& operator=(const CPropertyValues&) = delete;
    ~CPropertyValues() { FreePropVariantArray(WANTED_COUNT, values); }
    PROPVARIANT values[WANTED_COUNT] = {};
};

CString TextOf(const PROPVARIANT& value)
{
    CString text;
    for (const char* unit = value.vt == VT_LPSTR ? value.pszVal : nullptr; unit && *unit; ++unit) {
        text += static_cast<wchar_t>(static_cast<unsigned char>(*unit)); // what isn't ASCII isn't of the form
    }
    return text;
}

} // namespace

std::optional<TransformTarget> ReadTransformTarget(IStorage* transform)
{
    // The standard's name for it; mingw-w64 has it in no library that is linked.
    static const FMTID SUMMARY = {
        0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}};
    ComPtr<IPropertySetStorage> sets;
    ComPtr<IPropertyStorage> summary;
    CPropertyValues found;
    if (FAILED(StgCreatePropSetStg(transform, 0, &sets)) ||
        FAILED(sets->Open(SUMMARY, READ_ALONE, &summary)) ||
        FAILED(summary->ReadMultiple(WANTED_COUNT, WANTED, found.values)) || found.values[2].vt != VT_I4) {
        return {};
    }
    return TransformTarget{TextOf(found.values[1]), TextOf(found.values[0]),
                           static_cast<unsigned int>(found.values[2].lVal)};
}

std::vector<PatchTransform> ReadPatchTransforms(const CString& path)
{
    std::vector<PatchTransform> transforms;
    ComPtr<IStorage> patch;
    ComPtr<IEnumSTATSTG> elements;
    if (FAILED(
            StgOpenStorage(FilePath(path), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0, &patch)) ||
        FAILED(patch->EnumElements(0, nullptr, 0, &elements))) {
        return transforms;
    }
    STATSTG element = {};
    while (transforms.size() < MOST_TRANSFORMS && elements->Next(1, &element, nullptr) == S_OK) {
        const CString name = element.pwcsName;
        CoTaskMemFree(element.pwcsName);
        ComPtr<IStorage> storage;
        if (element.type != STGTY_STORAGE || name.Left(1) == L"#" ||
            FAILED(patch->OpenStorage(name, nullptr, READ_ALONE, nullptr, 0, &storage))) {
            continue;
        }
        PatchTransform transform;
        const std::optional<TransformTarget> target = ReadTransformTarget(storage.Get());
        if (target && ReadTransformCodes(target->strCodes, target->flags, transform)) {
            transforms.push_back(transform);
        }
    }
    return transforms;
}

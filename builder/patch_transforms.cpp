#include "builder/patch_transforms.h"

#include "base/com_ptr.h"
#include "base/path_text.h"

#include <objbase.h>
#include <propidl.h>

namespace {

constexpr std::size_t MOST_TRANSFORMS = 1000; // that a foreign file has looked at
constexpr PROPID CODES = 9;
constexpr PROPID FLAGS = 16;
constexpr DWORD READ_ALONE = STGM_READ | STGM_SHARE_EXCLUSIVE; // what an inner storage is opened with

struct CPropertyValues
{
    CPropertyValues() = default;
    CPropertyValues(const CPropertyValues&) = delete;
    CPropertyValues& operator=(const CPropertyValues&) = delete;
    ~CPropertyValues() { FreePropVariantArray(2, values); }
    PROPVARIANT values[2] = {};
};

bool ReadSummary(IStorage* transform, PatchTransform& read)
{
    // The standard's name for it; mingw-w64 has it in no library that is linked.
    static const FMTID SUMMARY = {
        0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}};
    ComPtr<IPropertySetStorage> sets;
    ComPtr<IPropertyStorage> summary;
    const PROPSPEC wanted[2] = {{PRSPEC_PROPID, {CODES}}, {PRSPEC_PROPID, {FLAGS}}};
    CPropertyValues found;
    if (FAILED(StgCreatePropSetStg(transform, 0, &sets)) ||
        FAILED(sets->Open(SUMMARY, READ_ALONE, &summary)) ||
        FAILED(summary->ReadMultiple(2, wanted, found.values))) {
        return false;
    }
    if (found.values[0].vt != VT_LPSTR || !found.values[0].pszVal || found.values[1].vt != VT_I4) {
        return false;
    }
    CString codes;
    for (const char* unit = found.values[0].pszVal; *unit; ++unit) {
        codes +=
            static_cast<wchar_t>(static_cast<unsigned char>(*unit)); // what isn't ASCII isn't of the form
    }
    return ReadTransformCodes(codes, static_cast<unsigned int>(found.values[1].lVal), read);
}

} // namespace

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
        PatchTransform transform;
        if (element.type == STGTY_STORAGE && name.Left(1) != L"#" &&
            SUCCEEDED(patch->OpenStorage(name, nullptr, READ_ALONE, nullptr, 0, &storage)) &&
            ReadSummary(storage.Get(), transform)) {
            transforms.push_back(transform);
        }
    }
    return transforms;
}

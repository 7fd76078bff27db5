// What FixMgr.dll answers of the newest patch of a product: a record of the boundary between two libraries, equal to the byte
// whoever built them. The library fills it; the service pack page reads it.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr std::size_t PATCH_INFO_CHARACTERS = 260; // of each text, with its closing zero

#pragma pack(push, 1)
struct PatchInfoRecord
{
    wchar_t PatchName[PATCH_INFO_CHARACTERS];   // display name
    wchar_t PatchSize[PATCH_INFO_CHARACTERS];   // bytes, as a decimal text
    wchar_t ReadmeUrl[PATCH_INFO_CHARACTERS];   // http or https
    wchar_t DownloadUrl[PATCH_INFO_CHARACTERS]; // likewise, of the patch file
    std::int32_t PatchCount;                    // of patches available
    std::uint32_t ErrorCode;                    // 0, or an error number of the network library
};
#pragma pack(pop)

static_assert(sizeof(wchar_t) == 2);
static_assert(sizeof(PatchInfoRecord) == 2088);
static_assert(offsetof(PatchInfoRecord, PatchSize) == 520 && offsetof(PatchInfoRecord, ReadmeUrl) == 1040 &&
              offsetof(PatchInfoRecord, DownloadUrl) == 1560 &&
              offsetof(PatchInfoRecord, PatchCount) == 2080 && offsetof(PatchInfoRecord, ErrorCode) == 2084);

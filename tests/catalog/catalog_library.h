// FixMgr.dll as its callers use it: loaded for one call, found by the names of its exports, unloaded right behind it.
#pragma once

#include "base/string.h"
#include "include/patch_info_record.h"

#include <array>
#include <cstdint>
#include <string>

struct CatalogAsk
{
    CString strKey = L"ZOLT 7\x00E4&x";
    CString strProduct = L"ZOLT-7";
    CString strTemplate;
    CString strList;
};

struct CatalogSaid
{
    std::array<unsigned char, sizeof(PatchInfoRecord)> bytes = {}; // as the library left them
    bool isInBounds = false; // nothing was written in front of the record or behind it
    unsigned long long milliseconds = 0;

    // By the offsets of the contract, not by the structure.
    CString Text(std::size_t offset) const;
    std::uint32_t Number(std::size_t offset) const;
    std::int32_t Count() const { return static_cast<std::int32_t>(Number(2080)); }
    std::uint32_t Error() const { return Number(2084); }
    // All but the error number is zero.
    bool IsEmptyBeforeError() const;
};

CatalogSaid AskCatalog(const CatalogAsk& ask);
std::uint32_t CheckFile(const CString& list, const CString& file);

// The bytes of the patch file of the tests, 21 of them, and their SHA-256.
extern const char SHA256_OF_CONTENTS[];
extern const char CONTENTS[];
// An answer with one patch of one file, whose bytes are CONTENTS.
std::string GoodAnswer(const char* download = "http://127.0.0.1/updates/zolt71.msp",
                       const char* file = "zolt71.msp");

// The service's answer and the patch list that is kept of it: two documents of one form (docs/catalog.md).
//
//   <PatchAnswer version="1">
//     <Patch name="Zolt 7.1" readme="https://..." download="https://.../zolt71.exe">
//       <File name="zolt71.exe" size="1048576" sha256="..."/>
//       <File name="zolt71.msp" size="2097152" sha256="..."/>
//     </Patch>
//   </PatchAnswer>
//
// The newest patch comes first; none is an answer too. The list is a PatchList with when and for what it was asked.
#pragma once

#include "base/string.h"
#include "include/patch_info_record.h"

#include <optional>
#include <vector>

struct CatalogFile
{
    CString strName;
    long long size = 0;
    CString strSha256; // 64 hex digits, lower case
};

struct CatalogPatch
{
    CString strName;
    CString strReadme;
    CString strDownload;
    std::vector<CatalogFile> files; // what is downloaded, and behind a program what it writes
};

struct CatalogAnswer
{
    std::vector<CatalogPatch> patches;
};

// What a list says beside the answer.
struct CatalogInquiry
{
    CString strTime; // "2026-11-22T14:30:00Z"
    CString strKey;
    CString strProduct;
};

// Nothing when the document is refused in any part.
[[nodiscard]] std::optional<CatalogAnswer> ReadCatalogAnswer(const char* bytes, std::size_t length);
[[nodiscard]] std::optional<CatalogAnswer> ReadPatchList(const char* bytes, std::size_t length);
// Reads back as the same answer.
[[nodiscard]] CString ComposePatchList(const CatalogAnswer& answer, const CatalogInquiry& inquiry);

// By the file's last name, in any case; null when the list doesn't name it.
[[nodiscard]] const CatalogFile* FindListedFile(const CatalogAnswer& list, const CString& name);

// The whole record: the offer of the answer, or none, and the error number. With an error everything else is zero.
void FillPatchInfo(PatchInfoRecord& record, const CatalogAnswer& answer, unsigned int error);

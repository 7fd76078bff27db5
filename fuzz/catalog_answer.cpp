// Any bytes as the update service's answer: no crash; what is accepted fits the record and the rules of names and addresses, and
// the list that is kept of it reads back equal.
#include "catalog/catalog_answer.h"
#include "catalog/catalog_limits.h"
#include "catalog/web_address.h"

#include <cstdlib>
#include <string>

namespace {

void Require(bool claim)
{
    if (!claim) {
        std::abort();
    }
}

bool IsEqual(const CatalogPatch& left, const CatalogPatch& right)
{
    bool equal = left.strName == right.strName && left.strReadme == right.strReadme &&
                 left.strDownload == right.strDownload && left.files.size() == right.files.size();
    for (std::size_t index = 0; equal && index < left.files.size(); ++index) {
        const CatalogFile& file = left.files[index];
        const CatalogFile& other = right.files[index];
        equal = file.strName == other.strName && file.size == other.size && file.strSha256 == other.strSha256;
    }
    return equal;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::optional<CatalogAnswer> answer = ReadCatalogAnswer(reinterpret_cast<const char*>(data), size);
    if (!answer) {
        return 0;
    }
    PatchInfoRecord record;
    FillPatchInfo(record, *answer, 0);
    Require(record.PatchCount == static_cast<std::int32_t>(answer->patches.size()));
    if (!answer->patches.empty()) {
        const CatalogPatch& first = answer->patches.front();
        Require(CString(record.PatchName) == first.strName &&
                CString(record.DownloadUrl) == first.strDownload);
        Require(IsPatchFileName(DownloadName(first.strDownload)));
        Require(FindListedFile(*answer, DownloadName(first.strDownload)) == &first.files.front());
    }
    std::string bytes;
    AppendUtf8(bytes, ComposePatchList(*answer, {L"2026-01-01T00:00:00Z", L"<\"&'>", L"product"}));
    const std::optional<CatalogAnswer> list = ReadPatchList(bytes.data(), bytes.size());
    Require(list && list->patches.size() == answer->patches.size());
    for (std::size_t index = 0; index < list->patches.size(); ++index) {
        Require(IsEqual(list->patches[index], answer->patches[index]));
    }
    return 0;
}

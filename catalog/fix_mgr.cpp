// FixMgr.dll: asks the update service which patch it offers, keeps the answer as the patch list, and compares files with that.
#include "catalog/catalog_answer.h"
#include "catalog/catalog_exports.h"
#include "catalog/catalog_query.h"
#include "catalog/patch_list_file.h"
#include "catalog/service_exchange.h"
#include "include/version.h"

#include <exception>

namespace {

constexpr wchar_t CLIENT_VERSION[] = L"" ROLLOUT_VERSION_TEXT;

CString TextOf(const BSTR* text)
{
    return text && *text ? CString(*text, static_cast<int>(SysStringLen(*text))) : CString();
}

struct Question
{
    CString strKey;
    CString strProduct;
    CString strTemplate;
    CString strListPath;
};

unsigned int Ask(const Question& question, CatalogAnswer& answer)
{
    CString query;
    if (!ComposeQuery(question.strKey, question.strProduct, CLIENT_VERSION, query)) {
        return CATALOG_ADDRESS_INVALID;
    }
    CString address;
    if (const unsigned int error = ComposeRequestAddress(question.strTemplate, query, address)) {
        return error;
    }
    const ServiceAnswer service = AskService(address);
    if (service.error != 0) {
        return service.error;
    }
    const std::optional<CatalogAnswer> read = ReadCatalogAnswer(service.body.data(), service.body.size());
    if (!read) {
        return CATALOG_ANSWER_INVALID;
    }
    // An offer whose files could not be checked later is none.
    if (WritePatchList(question.strListPath, *read, question.strKey, question.strProduct) != ERROR_SUCCESS) {
        return CATALOG_INTERNAL_ERROR;
    }
    answer = *read;
    return 0;
}

} // namespace

void GetPatchInfo(std::uint32_t, BSTR* catalogKey, BSTR* identity, BSTR* addressTemplate, BSTR* patchListPath,
                  PatchInfoRecord* record)
{
    if (!record) {
        return;
    }
    CatalogAnswer answer;
    unsigned int error = CATALOG_INTERNAL_ERROR;
    try {
        error = Ask({TextOf(catalogKey), TextOf(identity), TextOf(addressTemplate), TextOf(patchListPath)},
                    answer);
        FillPatchInfo(*record, answer, error);
    } catch (const std::exception&) {
        FillPatchInfo(*record, {}, CATALOG_INTERNAL_ERROR);
    }
}

std::uint32_t CheckPatchFile(BSTR* patchListPath, BSTR* filePath)
{
    try {
        return CheckListedFile(TextOf(patchListPath), TextOf(filePath));
    } catch (const std::exception&) {
        return ERROR_OUTOFMEMORY;
    }
}

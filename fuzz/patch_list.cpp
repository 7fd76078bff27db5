// Any bytes as patchlist.npl: no crash, and what is accepted names plain files alone, each once.
#include "catalog/catalog_answer.h"
#include "catalog/web_address.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::optional<CatalogAnswer> list = ReadPatchList(reinterpret_cast<const char*>(data), size);
    if (!list) {
        return 0;
    }
    for (const CatalogPatch& patch : list->patches) {
        for (const CatalogFile& file : patch.files) {
            CString upper = file.strName;
            if (!IsPatchFileName(file.strName) || FindListedFile(*list, upper.MakeUpper()) != &file ||
                file.size < 1) {
                std::abort();
            }
        }
    }
    return 0;
}

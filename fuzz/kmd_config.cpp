// Any bytes as Kmdconfig.xml: no crash, and an identity that is read can be asked for.
#include "catalog/kmd_config.h"
#include "catalog/catalog_query.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const CString identity = ReadProductIdentity(reinterpret_cast<const char*>(data), size);
    CString query;
    CString address;
    if (!ComposeQuery(CString(), identity, L"1", query)) {
        std::abort();
    }
    const unsigned int error = ComposeRequestAddress(L"http://a/?%s", query, address);
    if (error != 0 && address.GetLength() <= 2083) {
        std::abort();
    }
    return 0;
}

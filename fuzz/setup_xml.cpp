// Any bytes as Setup.xml: no crash, and what is accepted reads back equal after it is written.
#include "host/read_again.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    CSetupDescriptionReader reader;
    if (!ReadXml(reinterpret_cast<const char*>(data), size, reader) &&
        CheckReadsAgain(reader.GetDescription())) {
        std::abort();
    }
    return 0;
}

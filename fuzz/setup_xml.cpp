// Any bytes as Setup.xml: no crash, and what is accepted reads back equal after it is written.
#include "host/setup_description.h"

#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    SetupDescriptionReader reader;
    if (ReadXml(reinterpret_cast<const char*>(data), size, reader)) {
        return 0;
    }
    const CString text = WriteSetupDescription(reader.GetDescription());
    std::string bytes;
    AppendUtf8(bytes, text);
    SetupDescriptionReader again;
    if (ReadXml(bytes.data(), bytes.size(), again) ||
        !(WriteSetupDescription(again.GetDescription()) == text)) {
        std::abort();
    }
    return 0;
}

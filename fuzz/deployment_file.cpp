// Any bytes as Deployment.xml: no crash, and what is accepted reads back equal after it is written.
#include "host/deployment_file.h"

#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    DeploymentFileReader reader;
    if (ReadXml(reinterpret_cast<const char*>(data), size, reader)) {
        return 0;
    }
    const CString text = WriteDeploymentFile(reader.GetDeployment());
    std::string bytes;
    AppendUtf8(bytes, text);
    DeploymentFileReader again;
    if (ReadXml(bytes.data(), bytes.size(), again) || !(WriteDeploymentFile(again.GetDeployment()) == text)) {
        std::abort();
    }
    return 0;
}

#include "benchmarks/sample_host.h"

std::unique_ptr<CSetupHost> OpenSampleHost(const BenchOptions& options)
{
    HostOptions hostOptions;
    hostOptions.strMedia = options.strMedia;
    hostOptions.strProgramFolder = options.strProgramFolder;
    hostOptions.strWorkFolder = options.strScratch;
    OperationError error;
    std::unique_ptr<CSetupHost> host(OpenSetupHost(hostOptions, error));
    if (!host) {
        throw CannotMeasure{error.message};
    }
    return host;
}

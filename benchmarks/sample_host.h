// The real host on the sample media.
#pragma once

#include "benchmarks/measurement.h"
#include "host/setup_host.h"

#include <memory>

// Never null; throws CannotMeasure with the host's reason.
[[nodiscard]] std::unique_ptr<CSetupHost> OpenSampleHost(const BenchOptions& options);

// Whether a deployment that stands is still what was built. Needs no media and no open host.
#pragma once

#include "base/string.h"
#include "builder/build_result.h"
#include "builder/verify_result.h"
#include "host/setup_host.h"

// The whole deployment is read, and nothing written. `folder`: full path. Any thread; `progress` is called on that one.
// Only memory can lack: then the result says so, undetermined.
extern "C" WIZCORE_API void VerifyDeploymentFolder(const CString& folder, IBuildProgress& progress,
                                                   VerifyResult& result) noexcept;

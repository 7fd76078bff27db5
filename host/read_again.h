// What the host writes it must read again: a file that can't be read would be a damaged deployment, found weeks later.
#pragma once

#include "host/deployment_file.h"
#include "host/setup_description.h"

// Writes the file's text, reads it with the reader of deployments and media, and compares. The fault is a sentence for
// the person that names the value.
[[nodiscard]] XmlFault CheckReadsAgain(const DeploymentFile& file);
[[nodiscard]] XmlFault CheckReadsAgain(const SetupDescription& description);

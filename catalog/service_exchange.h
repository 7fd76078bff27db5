// One question to the service and its answer, by WinINet.
#pragma once

#include "base/string.h"

#include <string>

struct ServiceAnswer
{
    unsigned int error = 0; // of the network library
    std::string body;       // at most ANSWER_BYTES_LIMIT bytes
};

// Comes back within EXCHANGE_TIME_LIMIT, whatever the service does. What then still waits for it is left to itself, on a thread
// that keeps this library loaded until it ends.
[[nodiscard]] ServiceAnswer AskService(const CString& address);

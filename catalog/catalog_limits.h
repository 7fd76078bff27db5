// How much the catalog's libraries accept of what others write. docs/catalog.md lists it for those.
#pragma once

#include "include/patch_info_record.h"

#include <cstddef>

constexpr int FIELD_LIMIT =
    static_cast<int>(PATCH_INFO_CHARACTERS) - 1;       // units of a text that the record carries
constexpr int FILE_NAME_LIMIT = 100;                   // so that a file has room in any folder for downloads
constexpr std::size_t ANSWER_BYTES_LIMIT = 256u << 10; // of an answer and of a patch list
constexpr std::size_t CONFIG_BYTES_LIMIT = 64u << 10;  // of Kmdconfig.xml
constexpr std::size_t OFFER_LIMIT = 32;                // patches in one answer
constexpr long long FILE_BYTES_LIMIT = 0xFFFFFFFFll;   // the network library counts no further
constexpr int IDENTITY_LIMIT = 1024;                   // units of catalog key and identity value
constexpr int REQUEST_ADDRESS_LIMIT = 2083;            // units; the network library's own

// What it waits for the service, in milliseconds.
constexpr unsigned int STEP_TIME_LIMIT = 8000;      // connecting, sending, each wait for bytes
constexpr unsigned int EXCHANGE_TIME_LIMIT = 15000; // everything, redirections included
constexpr int REDIRECT_LIMIT = 5;

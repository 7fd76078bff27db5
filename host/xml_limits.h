// How long the texts in foreign XML may be, and how many there are: one table for what writes a file and what reads it. What
// is looked at before a parser sees the file stands in base/xml_limits.h.
#pragma once

#include "base/xml_limits.h"

#include <cstddef>

// Units of a text.
constexpr int NAME_LIMIT = 200; // of a product, a maker, a step
constexpr int VERSION_LIMIT = 50;
constexpr int FOLDER_NAME_LIMIT = 255;
constexpr int FULL_PATH_LIMIT = 32767;
constexpr int TABLE_KEY_LIMIT = 72; // of an installer database
constexpr int PROPERTY_NAME_LIMIT = 1000;
constexpr int PROPERTY_VALUE_LIMIT = static_cast<int>(XML_TEXT_LIMIT);
constexpr int PATCH_NAME_LIMIT = 1000;
constexpr int PATCH_README_LIMIT = 4000;
constexpr int PATCH_SIZE_LIMIT = 100;

// Counts.
constexpr std::size_t PRODUCT_LIMIT = 1000; // language packs count too
constexpr std::size_t PROPERTY_LIMIT = 20000;
constexpr std::size_t PATCH_LIMIT = 10000;      // of all products
constexpr std::size_t ADDED_FILE_LIMIT = 40000; // more than an installer database can number

// How much of foreign XML is read, and how long the texts in it may be: one table for what writes a file and what reads
// it. The first part is looked at before a parser sees the file. With all of it used up a file takes under a second.
#pragma once

#include <cstddef>

constexpr std::size_t XML_BYTES_LIMIT = 16u
                                        << 20; // 40,000 added files with paths of 259 letters need 15 million
constexpr std::size_t XML_PIECES_LIMIT = 100000; // elements, comments and other markup; end tags don't count
constexpr std::size_t XML_ATTRIBUTES_LIMIT = 32; // of one element; ours have nine at most
constexpr int XML_DEPTH_LIMIT = 16;
// Bytes of one attribute's value, text, CDATA section or processing instruction as they stand in the file.
constexpr std::size_t XML_TEXT_LIMIT = 1u << 20;
constexpr std::size_t XML_COMMENT_LIMIT = 64u << 10; // bytes
constexpr std::size_t XML_TAG_LIMIT = 64u << 10;     // bytes of one tag beside its values: names and blanks

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

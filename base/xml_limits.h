// How much of foreign XML is looked at before a parser sees the file. With all of it used up a file takes under a second.
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

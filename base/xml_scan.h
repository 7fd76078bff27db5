// A first look at a document before a parser gets it: is its markup complete, and is there no more of anything than is
// read? Some versions of XmlLite never come back from a document that ends inside an element, and some crash on a
// comment of some hundred thousand letters.
#pragma once

#include "base/xml_reader.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

struct XmlRange
{
    std::size_t start;
    std::size_t end; // behind the last byte
};

// The fault of a document that ends too early, closes what it didn't open, holds a zero byte (it isn't UTF-8 then),
// declares a document type or another encoding, or goes beyond a limit of xml_limits.h. No fault says nothing about the
// rest: names, values and nesting are the parser's. `comments`, when asked for, gets where the comments stand.
[[nodiscard]] XmlFault CheckXmlMarkup(std::string_view document, XmlWording wording,
                                      std::vector<XmlRange>* comments = nullptr);

// The bytes of the letter that starts at `place`, and its number; 0 for a broken sequence. Parsers differ in what they
// do with broken sequences; here none is accepted.
[[nodiscard]] std::size_t ReadUtf8Letter(std::string_view text, std::size_t place, std::uint32_t& letter);
[[nodiscard]] bool IsUtf8(std::string_view text);

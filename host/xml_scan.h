// A first look at a document before a parser gets it: is its markup complete? Some versions of XmlLite never come
// back from a document that ends inside an element.
#pragma once

#include "host/xml_events.h"

#include <cstddef>

// The fault of a document that ends too early, closes what it didn't open, holds a zero byte (it isn't UTF-8 then) or
// declares a document type or another encoding. No fault says nothing about the rest: names, values and nesting are the parser's.
[[nodiscard]] XmlFault CheckXmlMarkup(const char* bytes, std::size_t length);

// Parsers differ in what they do with broken sequences; here none is accepted.
[[nodiscard]] bool IsUtf8(const char* bytes, std::size_t length);

// Foreign XML as the host reads it: the front end of base/, with the host's own sentences.
#pragma once

#include "base/xml_reader.h"

[[nodiscard]] XmlFault ReadXml(const char* bytes, std::size_t length, IXmlEvents& events);

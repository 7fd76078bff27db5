// Kmdconfig.xml, which says under which identity the product is known to the update service (docs/catalog.md):
//
//   <KmdConfig version="1">
//     <Product value="ZOLT-1"/>
//   </KmdConfig>
#pragma once

#include "base/string.h"

// Empty when the document is refused in any part.
[[nodiscard]] CString ReadProductIdentity(const char* bytes, std::size_t length);

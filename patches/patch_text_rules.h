// What the service pack page makes of the service's texts. Needs no window.
#pragma once

#include "base/string.h"

#include <cstdint>

// The decimal number at the start of the text, in bytes, as whole kilobytes; 0 for a text that is no number.
[[nodiscard]] int SizeInKilobytes(const CString& bytes) noexcept;

// How much of a download is there, in percent and cut to a whole number. More than 100 when more came than was promised.
[[nodiscard]] int DownloadPercentage(double received, std::uint32_t promised) noexcept;

// The address with the place of the query, which FixMgr.dll fills in: "<address>?%s", and "&preview=1" for a preview.
[[nodiscard]] CString CatalogUrlTemplate(const CString& address, std::uint32_t previewMode);

// True for an address that a browser opens: http or https, in any case.
[[nodiscard]] bool IsWebAddress(const CString& address) noexcept;

// Reads a deployment's Manifest.txt back. No window header.
#pragma once

#include "builder/readme_text.h"

#include <cstddef>

constexpr const wchar_t* MANIFEST_FILE = L"Manifest.txt";

// True for a SHA-256 as it is written everywhere: 64 hex digits, lower case.
[[nodiscard]] bool IsHashText(const CString& text);

// Fills `entries` from the bytes of a manifest. False when a line is not of its form: then nothing can be concluded from
// the file, as a line that is not understood may name anything.
[[nodiscard]] bool ReadManifest(const char* bytes, std::size_t length, std::vector<ManifestEntry>& entries);

// Any bytes as Manifest.txt: no crash, and what is accepted reads back equal after it is written.
#include "builder/manifest_text.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

bool IsLess(const ManifestEntry& left, const ManifestEntry& right)
{
    const int paths = left.strPath.Compare(right.strPath);
    const int hashes = left.strSha256.Compare(right.strSha256);
    return paths ? paths < 0 : hashes ? hashes < 0 : left.size < right.size;
}

bool IsEqual(const ManifestEntry& left, const ManifestEntry& right)
{
    return left.strPath == right.strPath && left.strSha256 == right.strSha256 && left.size == right.size;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    std::vector<ManifestEntry> entries;
    if (!ReadManifest(reinterpret_cast<const char*>(data), size, entries)) {
        return 0;
    }
    std::string written;
    AppendUtf8(written, ComposeManifest(entries));
    std::vector<ManifestEntry> again;
    if (!ReadManifest(written.data(), written.size(), again)) {
        std::abort();
    }
    std::sort(entries.begin(), entries.end(), IsLess);
    std::sort(again.begin(), again.end(), IsLess);
    if (!std::equal(entries.begin(), entries.end(), again.begin(), again.end(), IsEqual)) {
        std::abort();
    }
    return 0;
}

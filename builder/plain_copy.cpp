#include "builder/plain_copy.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/build_run.h"
#include "builder/copy_scan.h"
#include "builder/file_operations.h"
#include "builder/sha256.h"

namespace {

std::uint64_t CopyOne(const CString& source, const CString& target, std::vector<unsigned char>& buffer,
                      PlainCopy way)
{
    const CFileHandle from(CreateFileW(UnlimitedPath(source), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                       FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    const CFileHandle to(CreateFileW(UnlimitedPath(target), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
    Sha256 hash;
    std::uint64_t size = 0;
    for (;;) {
        DWORD read = 0;
        DWORD written = 0;
        if (!ReadFile(from.Get(), buffer.data(), static_cast<DWORD>(buffer.size()), &read, nullptr) ||
            (read != 0 && !WriteFile(to.Get(), buffer.data(), read, &written, nullptr))) {
            throw BuildFailure{GetLastError(), target};
        }
        if (read == 0) {
            return size;
        }
        if (way == PlainCopy::BytesAndHashes) {
            hash.Add(buffer.data(), read);
        }
        size += read;
    }
}

} // namespace

std::uint64_t CopyPlainly(const BuildPlan& plan, const CString& folder, PlainCopy way) noexcept
{
    try {
        const CopyList list = ScanSources(plan, {});
        std::vector<unsigned char> buffer(CHUNK_BYTES);
        MakeFolder(folder);
        for (const CString& inner : list.folders) {
            MakeFolder(JoinFolder(folder, inner));
        }
        std::uint64_t size = 0;
        for (const CopyItem& file : list.files) {
            size += CopyOne(file.strSource, JoinFolder(folder, file.strTarget), buffer, way);
        }
        for (const BuildDatabase& database : plan.databases) {
            size += CopyOne(database.strOriginal, JoinFolder(folder, database.strTarget), buffer, way);
        }
        return size;
    } catch (const BuildFailure&) {
        return 0;
    } catch (const std::exception&) {
        return 0;
    }
}

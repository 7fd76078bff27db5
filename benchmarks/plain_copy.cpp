#include "benchmarks/plain_copy.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/content_hashes.h"
#include "builder/copy_scan.h"
#include "builder/file_operations.h"

namespace {

// Copies file after file; the buffer and the hash are made once.
class CPlainCopier
{
public:
    explicit CPlainCopier(PlainCopy way) : m_way(way), m_buffer(CHUNK_BYTES) {}

    std::uint64_t Copy(const CString& source, const CString& target)
    {
        const CFileOwner from(CreateFileW(UnlimitedPath(source), GENERIC_READ,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                          FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
        const CFileOwner to(m_way == PlainCopy::Hashes
                                ? INVALID_HANDLE_VALUE
                                : CreateFileW(UnlimitedPath(target), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                              FILE_ATTRIBUTE_NORMAL, nullptr));
        std::uint64_t size = 0;
        while (const DWORD read = ReadInto(from, source)) {
            if (m_way != PlainCopy::Bytes) {
                m_hash.Add(m_buffer.data(), read);
            }
            if (m_way != PlainCopy::Hashes) {
                Write(to, read, target);
            }
            size += read;
        }
        if (m_way != PlainCopy::Bytes) {
            static_cast<void>(m_hash.Finish());
        }
        return size;
    }

private:
    DWORD ReadInto(const CFileOwner& file, const CString& path)
    {
        DWORD read = 0;
        if (!ReadFile(file.get(), m_buffer.data(), static_cast<DWORD>(m_buffer.size()), &read, nullptr)) {
            throw BuildFailure{GetLastError(), path};
        }
        return read;
    }

    void Write(const CFileOwner& file, DWORD size, const CString& path)
    {
        DWORD written = 0;
        if (!WriteFile(file.get(), m_buffer.data(), size, &written, nullptr) || written != size) {
            throw BuildFailure{GetLastError(), path};
        }
    }

    PlainCopy m_way;
    std::vector<unsigned char> m_buffer;
    CContentHash m_hash;
};

} // namespace

std::uint64_t CopyPlainly(const BuildPlan& plan, const CString& folder, PlainCopy way) noexcept
{
    try {
        const CopyList list = ScanSources(plan, {});
        CPlainCopier copier(way);
        if (way != PlainCopy::Hashes) {
            MakeFolder(folder);
            for (const CString& inner : list.folders) {
                MakeFolder(JoinFolder(folder, inner));
            }
        }
        std::uint64_t size = 0;
        for (const CopyItem& file : list.files) {
            size += copier.Copy(file.strSource, JoinFolder(folder, file.strTarget));
        }
        for (const BuildDatabase& database : plan.databases) {
            size += copier.Copy(database.strOriginal, JoinFolder(folder, database.strTarget));
        }
        return size;
    } catch (const BuildFailure&) {
        return 0;
    } catch (const std::exception&) {
        return 0;
    }
}

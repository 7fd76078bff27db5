#include "builder/patch_package.h"

#include "base/guid_text.h"
#include "base/path_text.h"
#include "builder/build_failure.h"
#include "builder/database_snapshot.h"
#include "builder/file_operations.h"
#include "builder/patch_transforms.h"
#include "builder/shown_text.h"
#include "installer/patch_summary.h"
#include "installer/query.h"
#include "installer/record.h"
#include "installer/summary.h"

#include <msiquery.h>
#include <objbase.h>

#include <set>

namespace {

constexpr unsigned int SUMMARY_TRANSFORMS = 8;
constexpr int CODE_LENGTH = 38;
constexpr std::size_t MAX_TRANSFORMS = 1000;
constexpr std::size_t MAX_SUPERSEDED = 1000;
constexpr int MAX_NAME = 200;
constexpr ULONGLONG MAX_TABLE_BYTES = 256u << 20;
constexpr DWORD CHUNK_BYTES = 1u << 20;

BuildFailure NotAPatch(const CString& path)
{
    return {BUILD_PATCH_DAMAGED, L"The file \"" + ShownText(path) +
                                     L"\" can't be read as a patch: it is damaged, or of another kind. " +
                                     RemedyOf(BUILD_PATCH_DAMAGED)};
}

void RequireStorage(HRESULT result, const CString& path)
{
    if (FAILED(result)) {
        throw NotAPatch(path);
    }
}

std::vector<CString> SplitTransforms(const CString& text)
{
    std::vector<CString> names;
    for (int start = 0; start < text.GetLength() && names.size() < MAX_TRANSFORMS;) {
        const int end = text.Find(L';', start);
        const CString part = end < 0 ? text.Mid(start) : text.Mid(start, end - start);
        start = end < 0 ? text.GetLength() : end + 1;
        if (part.Left(1) == L":" && part.GetLength() > 1 && part[1] != L'#') {
            names.push_back(part.Mid(1));
        }
    }
    return names;
}

StreamBytes ReadStream(IStorage* storage, const CString& name, const CString& path)
{
    ComPtr<IStream> stream;
    RequireStorage(storage->OpenStream(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream), path);
    STATSTG about = {};
    RequireStorage(stream->Stat(&about, STATFLAG_NONAME), path);
    if (about.cbSize.QuadPart > MAX_TABLE_BYTES) {
        throw NotAPatch(path);
    }
    StreamBytes bytes(static_cast<std::size_t>(about.cbSize.QuadPart));
    ULONG read = 0;
    RequireStorage(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read), path);
    if (read != bytes.size()) {
        throw NotAPatch(path);
    }
    return bytes;
}

} // namespace

void RefusePatch(unsigned int code, const CString& path, const CString& product, const CString& why)
{
    const CString remedy =
        code == BUILD_INSTALLER_FAILED
            ? CString(L"On the service pack page, append the patches instead of merging them, or "
                      L"remove this one from the list.")
            : RemedyOf(code);
    throw BuildFailure{code, L"The patch \"" + ShownText(path) + L"\" can't be merged into " + product +
                                 L": it " + why + L". " + remedy};
}

CPatchPackage::CPatchPackage(const CString& path) : m_path(path)
{
    static_cast<void>(OpenForReading(path)); // a missing or locked file has the system's words
    if (OpenPatch(path, m_database) != ERROR_SUCCESS ||
        FAILED(StgOpenStorage(path, nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0, &m_storage))) {
        throw NotAPatch(path);
    }
    ReadSummary();
    ReadName();
}

void CPatchPackage::ReadSummary()
{
    CSummary summary;
    CString codes;
    CString transforms;
    if (summary.Open(m_database.get()) != ERROR_SUCCESS ||
        summary.ReadText(SUMMARY_TEMPLATE, m_targets) != ERROR_SUCCESS ||
        summary.ReadText(SUMMARY_PACKAGE_CODE, codes) != ERROR_SUCCESS ||
        summary.ReadText(SUMMARY_TRANSFORMS, transforms) != ERROR_SUCCESS) {
        throw NotAPatch(m_path);
    }
    m_code = codes.Left(CODE_LENGTH).MakeUpper();
    if (!IsBracedGuid(m_code)) {
        throw NotAPatch(m_path);
    }
    for (int start = CODE_LENGTH; start < codes.GetLength() && m_superseded.size() < MAX_SUPERSEDED;
         start += CODE_LENGTH) {
        m_superseded.push_back(codes.Mid(start, CODE_LENGTH).MakeUpper());
    }
    m_transforms = SplitTransforms(transforms);
}

void CPatchPackage::ReadName()
{
    m_name = LastName(m_path);
    const unsigned int result =
        ForEachRow(m_database.get(), L"SELECT `Value` FROM `MsiPatchMetadata` WHERE `Property`='DisplayName'",
                   {}, [this](MSIHANDLE record) {
                       const CString name = PlainName(RecordText(record, 1)).Left(MAX_NAME).Trim();
                       m_name = name.IsEmpty() ? m_name : name;
                       return false;
                   });
    static_cast<void>(result); // older patches have no such table
}

bool CPatchPackage::IsForProduct(const CString& productCode) const
{
    return CString(m_targets).MakeUpper().Find(CString(productCode).MakeUpper()) >= 0;
}

ComPtr<IStorage> CPatchPackage::OpenTransform(const CString& transform) const
{
    ComPtr<IStorage> storage;
    RequireStorage(
        m_storage->OpenStorage(transform, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, nullptr, 0, &storage),
        m_path);
    return storage;
}

TransformTarget CPatchPackage::TargetOf(const CString& transform) const
{
    const std::optional<TransformTarget> target = ReadTransformTarget(OpenTransform(transform).Get());
    if (!target) {
        throw NotAPatch(m_path);
    }
    return *target;
}

void CPatchPackage::SaveTransform(const CString& transform, const CString& target) const
{
    const ComPtr<IStorage> from = OpenTransform(transform);
    ComPtr<IStorage> to;
    HRESULT result = StgCreateDocfile(target, STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, &to);
    if (SUCCEEDED(result)) {
        result = from->CopyTo(0, nullptr, nullptr, to.Get());
    }
    if (SUCCEEDED(result)) {
        result = to->Commit(STGC_DEFAULT);
    }
    RequireStorage(result, m_path);
}

TransformStreams CPatchPackage::ReadTransform(const CString& transform) const
{
    const ComPtr<IStorage> storage = OpenTransform(transform);
    ComPtr<IEnumSTATSTG> walk;
    RequireStorage(storage->EnumElements(0, nullptr, 0, &walk), m_path);
    TransformStreams streams;
    ULONGLONG bytes = 0;
    STATSTG about = {};
    while (walk->Next(1, &about, nullptr) == S_OK) {
        const CTaskOwner nameOwner(about.pwcsName);
        const CString name = about.pwcsName;
        const CString table = about.type == STGTY_STREAM ? TableOfStream(name) : CString();
        if (!table.IsEmpty()) {
            streams[table] = ReadStream(storage.Get(), name, m_path);
            bytes += streams[table].size();
        }
        if (bytes > MAX_TABLE_BYTES) {
            throw NotAPatch(m_path);
        }
    }
    return streams;
}

bool CPatchPackage::SaveCabinet(const CString& stream, const CString& target,
                                const std::function<void()>& poll) const
{
    return SaveStream(m_database.get(), m_path, stream, target, poll);
}

bool SaveStream(MSIHANDLE database, const CString& databasePath, const CString& stream, const CString& target,
                const std::function<void()>& poll)
{
    bool found = false;
    const CString what = L"Reading the cabinet " + stream + L" of";
    const unsigned int result = ForEachRow(
        database, L"SELECT `Data` FROM `_Streams` WHERE `Name`=?", {stream}, [&](MSIHANDLE record) {
            const CFileOwner file = CreateForWriting(target);
            std::vector<char> bytes(CHUNK_BYTES);
            for (DWORD read = CHUNK_BYTES; read > 0;) {
                read = CHUNK_BYTES;
                CheckInstaller(MsiRecordReadStream(record, 1, bytes.data(), &read), what, databasePath);
                WriteChunk(file, bytes.data(), read, target);
                poll();
            }
            found = true;
            return false;
        });
    CheckInstaller(result, what, databasePath);
    return found;
}

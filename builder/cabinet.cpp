// The cabinet library calls back for every operation on a file, and names files in ASCII. So it gets short names of
// ours, with files of any path behind them, and as handles the addresses of our own records.
// Nothing may be thrown through the library: a callback keeps the failure and answers -1; it is thrown afterwards.
#include "builder/cabinet.h"

#include "builder/build_failure.h"
#include "builder/content_hash.h"
#include "builder/file_operations.h"

#include <fci.h>
#include <fcntl.h>
#include <fdi.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <string>

namespace {

constexpr ULONG MAX_CABINET_BYTES = 0x7FFFFFFF;
constexpr USHORT ARCHIVE_ATTRIBUTE = 0x20;                 // what the installer sets stands in the File row
constexpr USHORT FIRST_DOS_DATE = (0 << 9) | (1 << 5) | 1; // 1 January 1980
constexpr char CABINET_NAME[] = "cabinet";
constexpr INT_PTR FAILED = -1;

// What the callbacks of one use of the library share.
class CSession
{
public:
    explicit CSession(const CabinetMeter& meter) : m_meter(meter) {}

    struct OpenedFile
    {
        CSession* session = nullptr;
        CFileOwner handle;
        CString path;
        std::uint64_t* bytesRead = nullptr; // of a source that goes in
        bool metered = false;               // what is read or written counts as progress
        CContentHash* hash = nullptr;       // of what is unpacked; nothing is written then
    };

    INT_PTR Keep(CFileOwner handle, const CString& path)
    {
        m_opened.push_back(std::make_unique<OpenedFile>());
        OpenedFile& file = *m_opened.back();
        file.session = this;
        file.handle = std::move(handle);
        file.path = path;
        return reinterpret_cast<INT_PTR>(&file);
    }
    static OpenedFile& FileOf(INT_PTR handle) { return *reinterpret_cast<OpenedFile*>(handle); }
    void Forget(const OpenedFile& file)
    {
        std::erase_if(m_opened, [&](const auto& opened) { return opened.get() == &file; });
    }
    void Count(std::uint64_t bytes) const { m_meter(bytes); }

    // The border: the first failure is kept for the end.
    template <class Result, class Step>
    Result Guard(Result failed, Step step) noexcept
    {
        try {
            return step();
        } catch (...) {
            if (!m_failure) {
                m_failure = std::current_exception();
            }
            return failed;
        }
    }
    // Throws what a callback kept, or a failure of the library itself.
    void Finish(bool done, const ERF& error, const CString& operation, const CString& path)
    {
        if (m_failure) {
            std::rethrow_exception(m_failure);
        }
        if (!done) {
            throw BuildFailure{BUILD_WRITE_FAULT, operation + L" \"" + path + L"\" failed (cabinet error " +
                                                      NumberText(error.erfOper) + L"). " +
                                                      RemedyOf(BUILD_WRITE_FAULT)};
        }
    }

private:
    const CabinetMeter& m_meter;
    std::vector<std::unique_ptr<OpenedFile>> m_opened;
    std::exception_ptr m_failure;
};

void* DIAMONDAPI Allocate(ULONG bytes)
{
    return std::malloc(bytes);
}

void DIAMONDAPI Release(void* memory)
{
    std::free(memory);
}

UINT DIAMONDAPI Read(INT_PTR handle, void* bytes, UINT size)
{
    CSession::OpenedFile& file = CSession::FileOf(handle);
    return file.session->Guard(static_cast<UINT>(FAILED), [&] {
        const DWORD read = ReadChunk(file.handle, bytes, size, file.path);
        if (file.bytesRead) {
            *file.bytesRead += read;
            file.session->Count(read);
        }
        return static_cast<UINT>(read);
    });
}

UINT DIAMONDAPI Write(INT_PTR handle, void* bytes, UINT size)
{
    CSession::OpenedFile& file = CSession::FileOf(handle);
    return file.session->Guard(static_cast<UINT>(FAILED), [&] {
        if (file.hash) {
            file.hash->Add(bytes, size);
        } else {
            WriteChunk(file.handle, bytes, size, file.path);
        }
        if (file.metered) {
            file.session->Count(size);
        }
        return size;
    });
}

int DIAMONDAPI Close(INT_PTR handle)
{
    CSession::OpenedFile& file = CSession::FileOf(handle);
    file.session->Forget(file);
    return 0;
}

__LONG32 DIAMONDAPI Seek(INT_PTR handle, __LONG32 distance, int origin)
{
    CSession::OpenedFile& file = CSession::FileOf(handle);
    return file.session->Guard(static_cast<__LONG32>(FAILED), [&] {
        return static_cast<__LONG32>(
            SeekInFile(file.handle, distance, static_cast<DWORD>(origin), file.path));
    });
}

// ---- writing ---------------------------------------------------------------------------------------------------

// Names for the library: "cabinet", "source7" for the eighth member, "scratch3".
class CCabinetMaker : public CSession
{
public:
    CCabinetMaker(const CString& path, std::vector<CabinetMember>& members, const CabinetMeter& meter)
        : CSession(meter), m_path(path), m_members(members)
    {
    }

    void Make()
    {
        CCAB form = {};
        form.cb = MAX_CABINET_BYTES;
        form.cbFolderThresh =
            MAX_CABINET_BYTES; // one run of data: the installer reads it once, from end to end
        form.iCab = 1;
        std::copy(std::begin(CABINET_NAME), std::end(CABINET_NAME), form.szCab);
        ERF error = {};
        const HFCI context = FCICreate(&error, OnPlaced, Allocate, Release, OnOpen, OnRead, OnWrite, OnClose,
                                       OnSeek, OnDelete, OnScratchName, &form, this);
        bool done = context != nullptr;
        for (std::size_t index = 0; done && index < m_members.size(); ++index) {
            done = AddMember(context, index);
        }
        done = done && FCIFlushCabinet(context, FALSE, OnNextCabinet, OnStatus);
        if (context) {
            FCIDestroy(context); // which closes and deletes the scratch files
        }
        Finish(done, error, L"Packing files into", m_path);
    }

private:
    // MSZIP: every installer and every tool reads it, and it costs little beside the reading.
    bool AddMember(HFCI context, std::size_t index)
    {
        std::string source = SOURCE_NAME + std::to_string(index);
        std::vector<char> name;
        AppendUtf8(name, m_members[index].strName);
        name.push_back('\0');
        return FCIAddFile(context, source.data(), name.data(), FALSE, OnNextCabinet, OnStatus, OnSource,
                          tcompTYPE_MSZIP) != FALSE;
    }

    CString PathOf(const char* name) const
    {
        if (std::strcmp(name, CABINET_NAME) == 0) {
            return m_path;
        }
        return m_path + L".scratch" + NumberText(std::atoi(name + std::strlen(SCRATCH_NAME)));
    }

    static CCabinetMaker& MakerOf(void* context) { return *static_cast<CCabinetMaker*>(context); }

    static INT_PTR DIAMONDAPI OnOpen(char* name, int, int, int*, void* context)
    {
        CCabinetMaker& maker = MakerOf(context);
        return maker.Guard(FAILED, [&] {
            const CString path = maker.PathOf(name);
            return maker.Keep(CreateForBoth(path), path);
        });
    }
    // A source is opened here; the library reads it to its end and closes it.
    static INT_PTR DIAMONDAPI OnSource(char* name, USHORT* date, USHORT* time, USHORT* attributes, int*,
                                       void* context)
    {
        CCabinetMaker& maker = MakerOf(context);
        return maker.Guard(FAILED, [&] {
            CabinetMember& member =
                maker.m_members[static_cast<std::size_t>(std::atoi(name + std::strlen(SOURCE_NAME)))];
            CFileOwner file = OpenForReading(member.strSource);
            ReadDosTime(file, member.strSource, *date, *time);
            *attributes = ARCHIVE_ATTRIBUTE;
            const INT_PTR handle = maker.Keep(std::move(file), member.strSource);
            FileOf(handle).bytesRead = &member.bytesRead;
            return handle;
        });
    }
    static void ReadDosTime(const CFileOwner& file, const CString& path, USHORT& date, USHORT& time)
    {
        const FILETIME written = LastWriteTime(file, path);
        FILETIME local = {};
        if (!FileTimeToLocalFileTime(&written, &local) || !FileTimeToDosDateTime(&local, &date, &time)) {
            date = FIRST_DOS_DATE; // older than a cabinet can tell
            time = 0;
        }
    }
    static UINT DIAMONDAPI OnRead(INT_PTR handle, void* bytes, UINT size, int*, void*)
    {
        return Read(handle, bytes, size);
    }
    static UINT DIAMONDAPI OnWrite(INT_PTR handle, void* bytes, UINT size, int*, void*)
    {
        return Write(handle, bytes, size);
    }
    static int DIAMONDAPI OnClose(INT_PTR handle, int*, void*) { return Close(handle); }
    static __LONG32 DIAMONDAPI OnSeek(INT_PTR handle, __LONG32 distance, int origin, int*, void*)
    {
        return Seek(handle, distance, origin);
    }
    static int DIAMONDAPI OnDelete(char* name, int*, void* context)
    {
        CCabinetMaker& maker = MakerOf(context);
        return maker.Guard(static_cast<int>(FAILED), [&] {
            DeleteOneFile(maker.PathOf(name));
            return 0;
        });
    }
    static BOOL DIAMONDAPI OnScratchName(char* name, int length, void* context)
    {
        const std::string scratch = SCRATCH_NAME + std::to_string(++MakerOf(context).m_scratchFiles);
        if (static_cast<std::size_t>(length) <= scratch.size()) {
            return FALSE;
        }
        std::copy_n(scratch.c_str(), scratch.size() + 1, name);
        return TRUE;
    }
    // The content was cut so that it fits into one.
    static BOOL DIAMONDAPI OnNextCabinet(PCCAB, ULONG, void*) { return FALSE; }
    static int DIAMONDAPI OnPlaced(PCCAB, char*, __LONG32, BOOL, void*) { return 0; }
    static __LONG32 DIAMONDAPI OnStatus(UINT kind, ULONG, ULONG size, void*)
    {
        return kind == statusCabinet ? static_cast<__LONG32>(size) : 0;
    }

    static constexpr char SOURCE_NAME[] = "source";
    static constexpr char SCRATCH_NAME[] = "scratch";
    const CString& m_path;
    std::vector<CabinetMember>& m_members;
    int m_scratchFiles = 0;
};

// ---- reading ---------------------------------------------------------------------------------------------------

class CCabinetOpener : public CSession
{
public:
    // With `hash` each file is hashed, and none is written.
    CCabinetOpener(const CString& path, const std::map<CString, CString>& targets, const CabinetMeter& meter,
                   CContentHash* hash = nullptr)
        : CSession(meter), m_path(path), m_targets(targets), m_hash(hash)
    {
    }

    void Run()
    {
        s_current = this;
        ERF error = {};
        char name[] = "cabinet";
        char folder[] = "";
        const HFDI context =
            FDICreate(Allocate, Release, OnOpen, Read, Write, Close, Seek, cpuUNKNOWN, &error);
        const bool done = context && FDICopy(context, name, folder, 0, OnNotify, nullptr, nullptr);
        if (context) {
            FDIDestroy(context);
        }
        s_current = nullptr;
        Finish(done, error, L"Reading files out of", m_path);
    }
    std::map<CString, std::uint64_t> ReleaseMembers() { return std::move(m_members); }
    std::set<CString> ReleaseFound() { return std::move(m_found); }
    std::map<CString, MemberContent> ReleaseContents() { return std::move(m_contents); }

private:
    // The library gives no context to this callback alone.
    static INT_PTR DIAMONDAPI OnOpen(char*, int, int)
    {
        CCabinetOpener& opener = *s_current;
        return opener.Guard(FAILED,
                            [&] { return opener.Keep(OpenForReading(opener.m_path), opener.m_path); });
    }

    static INT_PTR DIAMONDAPI OnNotify(FDINOTIFICATIONTYPE kind, PFDINOTIFICATION about)
    {
        CCabinetOpener& opener = *s_current;
        return opener.Guard(FAILED, [&] {
            switch (kind) {
            case fdintCOPY_FILE:
                return opener.Begin(about->psz1, static_cast<ULONG>(about->cb));
            case fdintCLOSE_FILE_INFO:
                opener.NoteContent();
                Close(about->hf);
                return INT_PTR{1};
            default:
                return INT_PTR{0};
            }
        });
    }

    // 0 passes a file over.
    INT_PTR Begin(const char* name, std::uint64_t bytes)
    {
        CString key;
        for (; *name; ++name) {
            key += static_cast<wchar_t>(static_cast<unsigned char>(*name));
        }
        m_members[key] = bytes;
        if (m_hash) {
            m_hashed = key;
            const INT_PTR handle = Keep(CFileOwner(), m_path);
            FileOf(handle).metered = true;
            FileOf(handle).hash = m_hash;
            return handle;
        }
        const auto target = m_targets.find(key);
        if (target == m_targets.end()) {
            return 0;
        }
        m_found.insert(key);
        const INT_PTR handle = Keep(CreateForBoth(target->second), target->second);
        FileOf(handle).metered = true;
        return handle;
    }

    // Of the file that was unpacked last: the library unpacks one after the other.
    void NoteContent()
    {
        if (m_hash) {
            m_contents[m_hashed] = {m_members[m_hashed], m_hash->Finish()};
        }
    }

    static thread_local CCabinetOpener* s_current;
    const CString& m_path;
    const std::map<CString, CString>& m_targets;
    CContentHash* m_hash;
    CString m_hashed; // name of the file under way
    std::map<CString, MemberContent> m_contents;
    std::map<CString, std::uint64_t> m_members;
    std::set<CString> m_found;
};

thread_local CCabinetOpener* CCabinetOpener::s_current = nullptr;

} // namespace

void WriteCabinet(const CString& path, std::vector<CabinetMember>& members, const CabinetMeter& meter)
{
    CCabinetMaker(path, members, meter).Make();
}

std::map<CString, std::uint64_t> ListCabinet(const CString& path)
{
    const std::map<CString, CString> nothingToUnpack;
    const CabinetMeter noMeter = [](std::uint64_t) {};
    CCabinetOpener opener(path, nothingToUnpack, noMeter);
    opener.Run();
    return opener.ReleaseMembers();
}

std::set<CString> ReadCabinet(const CString& path, const std::map<CString, CString>& targets,
                              const CabinetMeter& meter)
{
    CCabinetOpener opener(path, targets, meter);
    opener.Run();
    return opener.ReleaseFound();
}

bool IsPartOfCabinetSet(const CString& path)
{
    constexpr std::size_t FLAGS = 30; // where the header has them
    constexpr unsigned char LINKED = 1 | 2;
    unsigned char header[FLAGS + 2] = {};
    const DWORD read = ReadChunk(OpenForReading(path), header, sizeof(header), path);
    return read == sizeof(header) && (header[FLAGS] & LINKED) != 0;
}

std::map<CString, MemberContent> HashCabinet(const CString& path, const CabinetMeter& meter)
{
    const std::map<CString, CString> nothingToUnpack;
    CContentHash hash;
    CCabinetOpener opener(path, nothingToUnpack, meter, &hash);
    opener.Run();
    return opener.ReleaseContents();
}

// SHA-256 of the files that are copied, computed on a thread of its own while the copying goes on. All else of a build
// stays on the thread that copies.
#pragma once

#include "builder/content_hash.h"

#include <array>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

constexpr std::size_t CHUNK_BYTES = 1 << 20; // small enough to cancel between two of them
constexpr std::size_t HASH_BUFFERS = 16;     // of a chunk each
// Below this a file is hashed sooner than another thread wakes up.
constexpr std::size_t SMALL_FILE_BYTES = 64 << 10;

// Used file by file: BeginFile, then NextBuffer and AddChunk for each chunk, then EndFile; Finish once for all. What the
// hashing failed with is thrown by the next call that waits for it.
class CContentHashes
{
public:
    CContentHashes() = default;
    CContentHashes(const CContentHashes&) = delete;
    CContentHashes& operator=(const CContentHashes&) = delete;
    ~CContentHashes(); // drops what isn't hashed yet

    void BeginFile();
    // CHUNK_BYTES to read into. Waits until the hashing is done with them, so that memory stays bounded.
    [[nodiscard]] unsigned char* NextBuffer();
    // The first `size` bytes of that buffer belong to the file. Until the next NextBuffer the caller may read them, but
    // not change them.
    void AddChunk(std::size_t size);
    void EndFile();
    // Waits for the rest: the hashes in the order of the files, as CContentHash writes them.
    [[nodiscard]] std::vector<CString> Finish();

private:
    struct Chunk
    {
        std::size_t size = 0; // 0 ends the file
        std::size_t file = 0;
    };

    void Queue(std::size_t size);
    void WaitUntilQueueHolds(std::size_t chunks); // at most
    void Run() noexcept;
    void HashQueued(const Chunk& chunk, const unsigned char* bytes);
    void Note(std::size_t file, const CString& hash);

    std::array<std::unique_ptr<unsigned char[]>, HASH_BUFFERS> m_buffers;
    CContentHash m_smallFile;  // of the caller's thread
    CContentHash m_queuedFile; // of the other thread
    bool m_hasBegun = false;   // the file under way has a chunk
    bool m_isQueued = false;   // its chunks go to the other thread
    std::size_t m_file = 0;    // its number, from 1

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::array<Chunk, HASH_BUFFERS> m_chunks; // one for each buffer
    std::size_t m_queued = 0;                 // chunks so far, changed by the caller's thread alone
    std::size_t m_hashed = 0;                 // of them
    std::vector<CString> m_hashes;
    std::exception_ptr m_failure;
    bool m_isStopping = false;

    std::thread m_thread; // started for the first chunk that is queued
};

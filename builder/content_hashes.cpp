#include "builder/content_hashes.h"

#include <algorithm>

CContentHashes::~CContentHashes()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void CContentHashes::BeginFile()
{
    ++m_file;
    m_hasBegun = false;
    m_isQueued = false;
}

unsigned char* CContentHashes::NextBuffer()
{
    WaitUntilQueueHolds(HASH_BUFFERS - 1);
    std::unique_ptr<unsigned char[]>& buffer = m_buffers[m_queued % HASH_BUFFERS];
    if (!buffer) {
        buffer.reset(new unsigned char[CHUNK_BYTES]);
    }
    return buffer.get();
}

void CContentHashes::AddChunk(std::size_t size)
{
    if (!m_hasBegun) {
        m_hasBegun = true;
        m_isQueued = size >= SMALL_FILE_BYTES;
    }
    if (m_isQueued) {
        Queue(size);
    } else {
        m_smallFile.Add(m_buffers[m_queued % HASH_BUFFERS].get(), size);
    }
}

void CContentHashes::EndFile()
{
    if (m_isQueued) {
        WaitUntilQueueHolds(HASH_BUFFERS - 1);
        Queue(0);
        return;
    }
    Note(m_file, m_smallFile.Finish());
}

std::vector<CString> CContentHashes::Finish()
{
    WaitUntilQueueHolds(0);
    return m_hashes;
}

void CContentHashes::Queue(std::size_t size)
{
    {
        const std::lock_guard lock(m_mutex);
        m_chunks[m_queued % HASH_BUFFERS] = {size, m_file};
        ++m_queued;
    }
    m_changed.notify_all();
    if (!m_thread.joinable()) {
        m_thread = std::thread([this] { Run(); });
    }
}

void CContentHashes::WaitUntilQueueHolds(std::size_t chunks)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_failure || m_queued - m_hashed <= chunks; });
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
}

void CContentHashes::Run() noexcept
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [&] { return m_isStopping || m_hashed < m_queued; });
        if (m_isStopping) {
            return;
        }
        const std::size_t place = m_hashed % HASH_BUFFERS;
        const Chunk chunk = m_chunks[place];
        lock.unlock();
        std::exception_ptr failure;
        try {
            HashQueued(chunk, m_buffers[place].get());
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        ++m_hashed;
        m_failure = failure;
        m_changed.notify_all();
        if (failure) {
            return;
        }
    }
}

void CContentHashes::HashQueued(const Chunk& chunk, const unsigned char* bytes)
{
    if (chunk.size > 0) {
        m_queuedFile.Add(bytes, chunk.size);
    } else {
        Note(chunk.file, m_queuedFile.Finish());
    }
}

void CContentHashes::Note(std::size_t file, const CString& hash)
{
    const std::lock_guard lock(m_mutex);
    m_hashes.resize(std::max(m_hashes.size(), file));
    m_hashes[file - 1] = hash;
}

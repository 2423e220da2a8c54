#include <xch_api/xch_api_shared_byte_buffer.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <stdexcept>


#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_limits.h>

namespace xch {

namespace {

// Whether loaded bytes are a compressed stream: at least 3 bytes starting
// with a zlib header byte (0x78) or the gzip magic (0x1F 0x8B).
bool looksCompressed(const char* bytes, std::size_t size) {
    return Compressor::isCompressed(bytes, size) || (size >= 3 && static_cast<unsigned char>(bytes[0]) == 0x78);
}

[[noreturn]] void throwTooLarge() {
    throw std::runtime_error("Block geometry in shared memory exceeds the limit of " +
                             std::to_string(limits::kMaxBlockGeometrySize) + " bytes.");
}

} // namespace

ExcSharedByteBuffer::ExcSharedByteBuffer(const std::wstring& name, bool owner)
    : m_owner(owner), m_name(name) {}

ExcSharedByteBuffer::~ExcSharedByteBuffer() {
    if (!m_owner) return;
    try {
        mp::SharedBuffer<char>::remove(m_name);
    } catch (...) {
        // Already gone or never created under a valid name: nothing to free.
    }
}

void ExcSharedByteBuffer::write(const char* data, std::size_t size) {
    if (size == 0) return;
    if (m_stream.size() < m_writePos + size)
        m_stream.resize(m_writePos + size);
    std::memcpy(m_stream.data() + m_writePos, data, size);
    m_writePos += size;
}

std::size_t ExcSharedByteBuffer::read(char* out, std::size_t size) {
    const std::size_t count = std::min(size, m_stream.size() - std::min(m_readPos, m_stream.size()));
    if (count > 0)
        std::memcpy(out, m_stream.data() + m_readPos, count);
    m_readPos += count;
    return count;
}

void ExcSharedByteBuffer::seek(std::size_t offset) {
    m_readPos = m_writePos = std::min(offset, m_stream.size());
}

void ExcSharedByteBuffer::flush(bool compress) {
    m_sharedBuffer = std::make_unique<mp::SharedBuffer<char>>(m_name, mp::SharedBuffer<char>::OpenMode::Create);
    // Logged before the object exists, so that a log names every object a
    // process may leave behind, even when it dies while writing it.
    VX_LOG(vx_link::LevelDebug, "Writing shared memory geometry " << vx_link::utf8(m_name) << " of "
                                                                   << m_stream.size() << " bytes");
    if (m_stream.empty()) {
        // No bytes still make an object (empty), so that the consumer's
        // load finds what the producer was told it sent.
        m_sharedBuffer->write(nullptr, 0);
    } else if (compress) {
        std::vector<char> packed;
        Compressor::compress(packed, m_stream.data(), m_stream.size(), -1, Compressor::Zlib);
        m_sharedBuffer->write(packed.data(), packed.size());
    } else {
        m_sharedBuffer->write(m_stream.data(), m_stream.size());
    }
}

void ExcSharedByteBuffer::load() {
    auto shared = std::make_unique<mp::SharedBuffer<char>>(m_name, mp::SharedBuffer<char>::OpenMode::Open);
    std::vector<char> bytes;
    {
        // Inflated or copied straight from the mapping.
        mp::SharedBuffer<char>::View stored = shared->view();
        const bool compressed = looksCompressed(stored.data(), stored.size());
        // Checked before copying: the object's size is the writer's choice.
        if (!compressed && stored.size() > limits::kMaxBlockGeometrySize) throwTooLarge();
        if (compressed)
            Compressor::decompress(bytes, stored.data(), stored.size());
        else
            bytes.assign(stored.data(), stored.data() + stored.size());
        if (bytes.size() > limits::kMaxBlockGeometrySize) throwTooLarge();
    }
    m_sharedBuffer = std::move(shared);
    m_stream.swap(bytes);
    m_readPos = m_writePos = 0;
}

} // namespace xch

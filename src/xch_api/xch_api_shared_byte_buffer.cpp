#include <xch_api/xch_api_shared_byte_buffer.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <stdexcept>

#include <zlib.h>

#include <xch_api/xch_api_compressor.h>

namespace xch {

namespace {

// The zlib stream (RFC 1950, first byte 0x78) of `size` bytes at `data`, at
// zlib's default level. Works in slices so that sizes beyond zlib's 32-bit
// counters are handled.
std::vector<char> zlibCompress(const char* data, std::size_t size) {
    z_stream zs;
    std::memset(&zs, 0, sizeof(zs));
    if (deflateInit(&zs, Z_DEFAULT_COMPRESSION) != Z_OK)
        throw std::runtime_error("deflate init failed");

    constexpr std::size_t kSlice = 1u << 30;
    std::vector<char> out;
    std::size_t consumed = 0;
    int status = Z_OK;
    do {
        const std::size_t inSlice = std::min(kSlice, size - consumed);
        zs.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data + consumed));
        zs.avail_in = static_cast<uInt>(inSlice);
        const int flush = consumed + inSlice == size ? Z_FINISH : Z_NO_FLUSH;
        do {
            const std::size_t used = out.size();
            const std::size_t room = std::max<std::size_t>(
                std::min<std::size_t>(deflateBound(&zs, static_cast<uLong>(zs.avail_in)), kSlice),
                64 * 1024);
            out.resize(used + room);
            zs.next_out = reinterpret_cast<Bytef*>(out.data() + used);
            zs.avail_out = static_cast<uInt>(room);
            status = deflate(&zs, flush);
            out.resize(used + room - zs.avail_out);
            if (status == Z_STREAM_ERROR) {
                deflateEnd(&zs);
                throw std::runtime_error("deflate failed");
            }
        } while (zs.avail_out == 0 || (flush == Z_FINISH && status != Z_STREAM_END));
        consumed += inSlice;
    } while (consumed < size);
    deflateEnd(&zs);
    return out;
}

// Whether loaded bytes are a compressed stream: at least 3 bytes starting
// with a zlib header byte (0x78) or the gzip magic (0x1F 0x8B).
bool looksCompressed(const char* bytes, std::size_t size) {
    if (size < 3) return false;
    const auto b0 = static_cast<unsigned char>(bytes[0]);
    const auto b1 = static_cast<unsigned char>(bytes[1]);
    return b0 == 0x78 || (b0 == 0x1F && b1 == 0x8B);
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
    if (m_stream.empty()) return;
    if (compress) {
        const std::vector<char> packed = zlibCompress(m_stream.data(), m_stream.size());
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
        if (looksCompressed(stored.data(), stored.size()))
            Compressor::decompress(bytes, stored.data(), stored.size());
        else
            bytes.assign(stored.data(), stored.data() + stored.size());
    }
    m_sharedBuffer = std::move(shared);
    m_stream.swap(bytes);
    m_readPos = m_writePos = 0;
}

} // namespace xch

// ExcSharedByteBuffer: stages a block's geometry bytes (ACIS binary, SAB)
// and moves them to and from a named shared-memory object.
//
// The producer writes the bytes into the staging stream and flush()es them
// into a new shared-memory object, compressed or not; the consumer load()s
// them back by name. Compression is recognised from the data itself (a
// zlib or gzip header), so nothing about it travels in the JSON; a SAB
// stream never begins with such a header.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_export.h>

namespace xch {

class XCH_API ExcSharedByteBuffer {
public:
    // `name` is the shared-memory object's name (a UUID text). With `owner`
    // set, destroying this buffer removes the object.
    ExcSharedByteBuffer(const std::wstring& name, bool owner);
    // Removes the shared-memory object when owner; a failure to remove it
    // (already gone, invalid name) is ignored.
    virtual ~ExcSharedByteBuffer();
    ExcSharedByteBuffer(const ExcSharedByteBuffer&) = delete;
    ExcSharedByteBuffer& operator=(const ExcSharedByteBuffer&) = delete;

    const std::wstring& name() const { return m_name; }
    bool owner() const { return m_owner; }
    void setOwner(bool owner) { m_owner = owner; }

    // ---- the staging stream: one byte array with a read and a write position

    // The staged bytes (after load(): the bytes as decompressed).
    const std::vector<char>& data() const { return m_stream; }
    // Writes `size` bytes at the write position, overwriting or extending.
    void write(const char* data, std::size_t size);
    // Reads at most `size` bytes from the read position; returns the count.
    std::size_t read(char* out, std::size_t size);
    // Moves both positions to `offset` (clamped to the end of the data).
    void seek(std::size_t offset);
    std::size_t readPosition() const { return m_readPos; }
    std::size_t writePosition() const { return m_writePos; }

    // ---- shared memory

    // Copies the staged bytes into a new shared-memory object named name(),
    // as a zlib stream when `compress` is set. With no staged bytes the
    // object is created empty (and loads as empty). Throws mp::SharedMemoryException when the object
    // cannot be written, std::runtime_error when compression fails.
    void flush(bool compress);

    // Replaces the staged bytes by the contents of the shared-memory object
    // named name(), decompressed when they are at least 3 bytes long and
    // start with a zlib (0x78) or gzip (0x1F 0x8B) header; both positions
    // return to the start. Throws mp::SharedMemoryException when the object
    // is missing or unreadable, std::runtime_error when the compressed data
    // is corrupt, or when the geometry, as stored or decompressed, exceeds
    // limits::kMaxBlockGeometrySize; the staged bytes are then unchanged.
    void load();

private:
    std::unique_ptr<mp::SharedBuffer<char>> m_sharedBuffer;
    std::vector<char> m_stream;
    std::size_t m_readPos = 0;
    std::size_t m_writePos = 0;
    bool m_owner;
    std::wstring m_name;
};

} // namespace xch

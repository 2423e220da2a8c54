// Whole-buffer deflate and inflate through libdeflate, when the library is
// built with it (XCH_HAVE_LIBDEFLATE). It produces and reads the same
// standard gzip and zlib streams as zlib, several times faster, but only
// on whole buffers: the inflated size must be known before inflating.
// Without libdeflate, available() is false and the compressor uses zlib
// alone.
#pragma once

#include <cstddef>
#include <cstdint>

namespace xch {
namespace whole_buffer_deflate {

// Raw is deflate data without a wrapper (RFC 1951).
enum class Wrapper { Gzip, Zlib, Raw };

bool available();

// A compressor at one level (0 to 9). Throws std::runtime_error
// "deflate init failed" when it cannot be made (no memory).
class Deflater {
public:
    explicit Deflater(int level);
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;
    Deflater(Deflater&& other) noexcept : m_compressor(other.m_compressor) { other.m_compressor = nullptr; }

    // An upper bound of the stream size of `size` bytes.
    std::size_t bound(Wrapper wrapper, std::size_t size) const;
    // Compresses `size` bytes at `data` into the `room` bytes at `dest` (at
    // least bound()); returns the stream size.
    std::size_t compress(Wrapper wrapper, const char* data, std::size_t size, char* dest, std::size_t room) const;

private:
    void* m_compressor;
};

// Inflates the first stream at `data` into the `room` bytes at `dest`.
// Returns true and the inflated size in `written` when the whole stream
// was inflated and its checksum and length match; false for anything else
// (corrupt or truncated input, or more output than room), leaving `dest`
// undefined.
bool inflate(Wrapper wrapper, const char* data, std::size_t size, char* dest, std::size_t room,
             std::size_t& written);
// A decompressor kept for many inflations (on one thread at a time).
// Throws std::bad_alloc when it cannot be made.
class Inflater {
public:
    Inflater();
    ~Inflater();
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;
    Inflater(Inflater&& other) noexcept : m_decompressor(other.m_decompressor) { other.m_decompressor = nullptr; }

    // As inflate() above, also giving how many bytes of `data` the stream
    // took.
    bool inflate(Wrapper wrapper, const char* data, std::size_t size, char* dest, std::size_t room,
                 std::size_t& written, std::size_t& consumed) const;

private:
    void* m_decompressor;
};

// The CRC-32 of gzip (ISO 3309) of `size` bytes at `data`, continuing `crc`.
std::uint32_t crc32(std::uint32_t crc, const char* data, std::size_t size);

} // namespace whole_buffer_deflate
} // namespace xch

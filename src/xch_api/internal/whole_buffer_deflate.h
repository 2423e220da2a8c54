// Whole-buffer deflate and inflate through libdeflate, when the library is
// built with it (XCH_HAVE_LIBDEFLATE). It produces and reads the same
// standard gzip and zlib streams as zlib, several times faster, but only
// on whole buffers: the inflated size must be known before inflating.
// Without libdeflate, available() is false and the compressor uses zlib
// alone.
#pragma once

#include <cstddef>

namespace xch {
namespace whole_buffer_deflate {

enum class Wrapper { Gzip, Zlib };

bool available();

// A compressor at one level (0 to 9). Throws std::runtime_error
// "deflate init failed" when it cannot be made (no memory).
class Deflater {
public:
    explicit Deflater(int level);
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

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

} // namespace whole_buffer_deflate
} // namespace xch

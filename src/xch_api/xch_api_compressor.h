// Compressor: gzip compression of byte blocks, and inflation of both zlib
// and gzip streams (detected from the header).
//
// Streams are standard (RFC 1950 / 1952): zlib and the gzip tool read what
// this writes, and this reads what any conforming deflate producer writes.
// When the library is built with libdeflate (Linux), whole-buffer deflate
// and inflate go through it, several times faster than zlib; zlib remains
// the streaming fallback and defines the outcome of every stream that
// libdeflate refuses (zlib's error messages, the prefix of a truncated
// stream). Builds without libdeflate (Windows) use zlib alone.
//
// Gzip streams of more than 1 MiB are written in independent pieces of
// 1 MiB with an index of them in the gzip header's extra field: still one
// standard gzip member that any reader inflates from start to end, but one
// this class compresses and inflates on several threads (see setThreads).
// The stream depends only on the input and the level, never on the number
// of threads.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xch_api/xch_api_export.h>

namespace xch {

class XCH_API Compressor {
public:
    // The wrapper around the deflate data: gzip (RFC 1952, what the
    // exchange writes) or zlib (RFC 1950, first byte 0x78).
    enum Wrapper { Gzip, Zlib };

    // Replaces `out` by the gzip stream (RFC 1952) of `size` bytes at
    // `data`, compressed at `level` (0 none, 1 fastest to 9 smallest; -1
    // the default, 6). Throws std::runtime_error "deflate init failed" for
    // another level or when the deflater cannot start.
    static void compress(std::vector<char>& out, const char* data, std::uint64_t size, int level);
    static void compress(std::string& out, const char* data, std::uint64_t size, int level);
    // The same with the wrapper chosen.
    static void compress(std::vector<char>& out, const char* data, std::uint64_t size, int level,
                         Wrapper wrapper);

    // Replaces `out` by the inflation of the zlib or gzip stream at `data`.
    // Throws std::runtime_error with zlib's message on corrupt input,
    // "inflate init failed" when zlib cannot start, and a size message when
    // the output would exceed limits::kMaxDecompressedSize; after a throw
    // `out` is incomplete. A stream that merely ends early is not an error:
    // `out` then holds what could be inflated, and bytes after the end of
    // the (first) stream are ignored.
    //
    // `out` is allocated once, at its final size: the peak memory is the
    // output itself (and, for a stream inflated in pieces on several
    // threads, a copy of one compressed piece per thread), and a stream
    // beyond the limit fails before any of its output is allocated. The size comes from the gzip trailer when it is
    // plausible (checked while inflating, never trusted), else from a first
    // inflation that counts without keeping anything.
    static void decompress(std::vector<char>& out, const char* data, std::uint64_t size);
    static void decompress(std::string& out, const char* data, std::uint64_t size);
    // The same with a tighter limit: at most `maxSize` bytes (and never more
    // than limits::kMaxDecompressedSize).
    static void decompress(std::vector<char>& out, const char* data, std::uint64_t size, std::uint64_t maxSize);
    static void decompress(std::string& out, const char* data, std::uint64_t size, std::uint64_t maxSize);

    // How many threads compression and inflation of large gzip streams may
    // use, the calling one included: 0 (the default) for one per processor
    // core, 1 to do everything on the calling thread. Applies to calls
    // that start after it; safe to call from any thread.
    static void setThreads(unsigned count);
    // The number in effect (never 0).
    static unsigned threads();

    // Whether `data` begins with a zlib (0x78 and 0x9C, 0x01, 0xDA or 0x5E)
    // or gzip (0x1F 0x8B) header; false for fewer than 3 bytes.
    static bool isCompressed(const char* data, std::uint64_t size);
};

} // namespace xch

// Compressor: gzip compression of byte blocks, and inflation of both zlib
// and gzip streams (detected from the header).
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
    // `data`, compressed at `level` (-1: zlib's default). Throws
    // std::runtime_error "deflate init failed" when zlib cannot start.
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
    // the stream are ignored.
    static void decompress(std::vector<char>& out, const char* data, std::uint64_t size);
    static void decompress(std::string& out, const char* data, std::uint64_t size);

    // Whether `data` begins with a zlib (0x78 and 0x9C, 0x01, 0xDA or 0x5E)
    // or gzip (0x1F 0x8B) header; false for fewer than 3 bytes.
    static bool isCompressed(const char* data, std::uint64_t size);
};

} // namespace xch

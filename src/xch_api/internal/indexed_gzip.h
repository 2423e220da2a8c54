// Gzip streams made of independent pieces, so that large buffers compress
// and inflate on several threads.
//
// Such a stream is one ordinary gzip member (RFC 1952): zlib, libdeflate
// and the gzip tool read it like any other. Its deflate data is the input
// cut into pieces of one size (the last one shorter), each compressed on
// its own: every piece but the last ends with an empty stored block at a
// byte boundary (what zlib's full flush writes) and nothing in a piece
// refers to bytes before it. The header's extra field carries an index
// (subfield "XI"): the inflated size, the piece size and the compressed
// length of every piece. A reader that knows the index inflates the pieces
// side by side; any other reads the stream from start to end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace xch {
namespace indexed_gzip {

// Input bytes per piece (larger for inputs of more than kMaxPieces pieces).
constexpr std::size_t kPieceSize = std::size_t(1) << 20;
constexpr std::size_t kMaxPieces = 16379;  // what the 64 KiB extra field indexes

// Whether `size` bytes make more than one piece, the only case worth an index.
bool worthwhile(std::uint64_t size);

// A compressed stream as written: header with index, pieces, trailer.
struct Stream {
    std::string head;
    std::vector<std::vector<char>> pieces;
    unsigned char tail[8] = {};

    std::size_t size() const;
    // Writes the size() bytes of the stream to `dest`.
    void copyTo(char* dest) const;
};

// Compresses `size` bytes at `data` at `level` (0 to 9) with libdeflate
// (zlib in builds without it), on up to `threads` threads. The stream is
// the same whatever the number of threads. False (and nothing made) when
// it cannot be written in pieces: an input of one piece, or beyond what
// the index can describe. Throws std::runtime_error "deflate init failed"
// when a deflater cannot be made.
bool compress(Stream& out, const char* data, std::uint64_t size, int level, unsigned threads);

// Where the pieces of an indexed stream lie and what they inflate to.
struct Index {
    std::uint64_t total = 0;        // inflated size
    std::uint64_t pieceSize = 0;    // inflated size of each piece but the last
    std::size_t dataStart = 0;      // offset of the first piece
    std::vector<std::uint32_t> lengths;  // compressed size of each piece
    std::uint32_t crc = 0;          // CRC-32 of the whole, from the trailer
};

// Reads the index of the gzip stream at `data`. False for a stream without
// one, and for one whose index does not hold together: pieces beyond the
// input, an inflated size above `limit`, more than deflate can make of this
// input, or not matching the size in the trailer.
bool readIndex(const char* data, std::size_t size, std::uint64_t limit, Index& index);

// Inflates the pieces of the stream at `data` described by `index` into the
// index.total bytes at `dest`, on up to `threads` threads. True when every
// piece inflated to exactly its size from exactly its bytes, as reading the
// stream from the start would, and the CRC-32 of the whole matches the
// trailer. False for anything else, leaving `dest` undefined.
bool inflate(const Index& index, const char* data, char* dest, unsigned threads);

} // namespace indexed_gzip
} // namespace xch

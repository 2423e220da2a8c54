#include "indexed_gzip.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>

#include <zlib.h>

#include "byte_order.h"
#include "parallel_for.h"
#include "whole_buffer_deflate.h"

namespace xch {
namespace indexed_gzip {

namespace {

using whole_buffer_deflate::Wrapper;

// The index subfield: "XI", then a version byte, the inflated size (8
// bytes), the piece size (4 bytes) and each piece's compressed length (4
// bytes each), little-endian as everything in gzip.
constexpr unsigned char kId1 = 'X', kId2 = 'I', kVersion = 1;
constexpr std::size_t kIndexFixed = 1 + 8 + 4;
constexpr std::size_t kHeaderSize = 10;  // before the extra field
constexpr std::size_t kMinPieceSize = std::size_t(1) << 16;
constexpr std::size_t kMaxPieceSize = std::size_t(1) << 30;
// Deflate never expands more than 1032 to 1 (258 bytes from a 2-bit code).
constexpr std::uint64_t kMaxDeflateRatio = 1032;

// What ends every piece but the last: an empty stored block with BFINAL 0
// (its 3 header bits, padding to a byte boundary, then LEN 0 and NLEN).
constexpr unsigned char kSyncMarker[4] = {0x00, 0x00, 0xFF, 0xFF};
// What lets a piece be inflated on its own: an empty final block with fixed
// codes (BFINAL 1, BTYPE 01, end-of-block), appended to a copy of it.
constexpr unsigned char kFinalEmptyBlock[2] = {0x03, 0x00};

template <class T>
void putLe(std::string& out, std::uint64_t value) {
    unsigned char bytes[sizeof(T)];
    bytes::storeLE(bytes, static_cast<T>(value));
    out.append(reinterpret_cast<const char*>(bytes), sizeof bytes);
}

template <class T>
T getLe(const char* p) {
    return bytes::loadLE<T>(reinterpret_cast<const unsigned char*>(p));
}

std::uint64_t pieceCount(std::uint64_t total, std::uint64_t pieceSize) { return (total + pieceSize - 1) / pieceSize; }

// The input size of piece `i` of `total` bytes cut into pieces of `pieceSize`.
std::size_t pieceLength(std::uint64_t total, std::uint64_t pieceSize, std::size_t i) {
    return static_cast<std::size_t>(std::min<std::uint64_t>(pieceSize, total - i * pieceSize));
}

// The CRC-32 of the whole from the CRC-32 of each piece.
std::uint32_t combinedCrc(const std::vector<std::uint32_t>& crcs, std::uint64_t total, std::uint64_t pieceSize) {
    uLong crc = crcs[0];
    for (std::size_t i = 1; i < crcs.size(); ++i)
        crc = crc32_combine(crc, crcs[i], static_cast<z_off_t>(pieceLength(total, pieceSize, i)));
    return static_cast<std::uint32_t>(crc);
}

// Ends a zlib inflate stream however the scope is left.
struct ZlibInflate {
    z_stream strm{};
    ZlibInflate() {
        if (inflateInit2(&strm, -15) != Z_OK) throw std::runtime_error("inflate init failed");
    }
    ~ZlibInflate() { inflateEnd(&strm); }
    ZlibInflate(const ZlibInflate&) = delete;
    ZlibInflate& operator=(const ZlibInflate&) = delete;
};

// A raw deflate stream of one piece, as libdeflate wrote it (its last block
// final), made to go on into the next piece: zlib reads it once, stopping
// at every block boundary, to find where the last block's header and the
// stream's last bit lie; the final bit is cleared and an empty stored block
// appended. False if zlib does not read the bytes as one whole stream of
// `expected` bytes (which libdeflate's output always is).
bool continueIntoNext(std::vector<char>& piece, std::size_t expected, std::vector<char>& scratch) {
    ZlibInflate zlib;
    z_stream& strm = zlib.strm;
    scratch.resize(expected + 1);
    strm.next_in = reinterpret_cast<Bytef*>(piece.data());
    strm.avail_in = static_cast<uInt>(piece.size());
    strm.next_out = reinterpret_cast<Bytef*>(scratch.data());
    strm.avail_out = static_cast<uInt>(scratch.size());
    std::uint64_t lastHeader = 0, end = 0;
    for (;;) {
        const int result = inflate(&strm, Z_BLOCK);
        if (result == Z_STREAM_END) break;
        if (result != Z_OK) return false;
        // At a block boundary fewer than 8 bits are buffered (data_type's
        // low bits); 64 tells that the block just ended was the last.
        if (strm.data_type & 128) {
            const std::uint64_t at = std::uint64_t(piece.size() - strm.avail_in) * 8 - (strm.data_type & 7);
            if (strm.data_type & 64)
                end = at;
            else
                lastHeader = at;
        }
    }
    if (strm.total_out != expected || end == 0 || (end + 7) / 8 != piece.size()) return false;

    piece[lastHeader / 8] = static_cast<char>(piece[lastHeader / 8] & ~(1 << (lastHeader % 8)));
    const unsigned used = static_cast<unsigned>(end - (piece.size() - 1) * 8);  // 1 to 8 bits
    piece.back() = static_cast<char>(piece.back() & ((1u << used) - 1));  // the padding is zero
    if (8 - used < 3) piece.push_back(0);  // the stored block's 3 header bits spill into a new byte
    piece.insert(piece.end(), std::begin(kSyncMarker), std::end(kSyncMarker));
    return true;
}

// Compresses one piece with libdeflate, or, in builds without it, with
// zlib, whose full flush ends a piece just as the format wants.
class PieceDeflater {
public:
    explicit PieceDeflater(int level) {
        if (whole_buffer_deflate::available()) {
            m_fast.reset(new whole_buffer_deflate::Deflater(level));
            return;
        }
        m_zlib.reset(new z_stream{});
        if (deflateInit2(m_zlib.get(), level, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
            m_zlib.reset();
            throw std::runtime_error("deflate init failed");
        }
    }

    // Replaces `piece` by the deflate data of `length` bytes at `in`, made
    // to go on into the next piece unless it is the last.
    void compress(std::vector<char>& piece, const char* in, std::size_t length, bool last) {
        if (m_fast) {
            // Into memory kept for the thread (never cleared, already
            // mapped), then only what the piece took into the piece.
            const std::size_t room = m_fast->bound(Wrapper::Raw, length);
            if (m_roomSize < room) {
                m_room.reset(new char[room]);
                m_roomSize = room;
            }
            const std::size_t produced = m_fast->compress(Wrapper::Raw, in, length, m_room.get(), room);
            if (produced == 0) throw std::runtime_error("deflate failed");  // cannot happen within the bound
            piece.reserve(produced + 1 + sizeof kSyncMarker);
            piece.assign(m_room.get(), m_room.get() + produced);
            if (!last && !continueIntoNext(piece, length, m_scratch)) throw std::runtime_error("deflate failed");
            return;
        }
        z_stream& strm = *m_zlib;
        if (deflateReset(&strm) != Z_OK) throw std::runtime_error("deflate failed");
        piece.resize(deflateBound(&strm, static_cast<uLong>(length)) + 16);
        strm.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in));
        strm.avail_in = static_cast<uInt>(length);
        strm.next_out = reinterpret_cast<Bytef*>(piece.data());
        strm.avail_out = static_cast<uInt>(piece.size());
        const int result = deflate(&strm, last ? Z_FINISH : Z_FULL_FLUSH);
        if (result != (last ? Z_STREAM_END : Z_OK) || strm.avail_in != 0 || strm.avail_out == 0)
            throw std::runtime_error("deflate failed");
        piece.resize(piece.size() - strm.avail_out);
    }

private:
    struct EndDeflate {
        void operator()(z_stream* strm) const {
            deflateEnd(strm);
            delete strm;
        }
    };
    std::unique_ptr<whole_buffer_deflate::Deflater> m_fast;
    std::unique_ptr<z_stream, EndDeflate> m_zlib;  // owned apart: zlib's state points back at it
    std::unique_ptr<char[]> m_room;
    std::size_t m_roomSize = 0;
    std::vector<char> m_scratch;
};

std::string header(std::uint64_t total, std::uint64_t pieceSize, const std::vector<std::vector<char>>& pieces) {
    const std::size_t indexSize = kIndexFixed + 4 * pieces.size();
    std::string head = {'\x1F', '\x8B', '\x08', '\x04', 0, 0, 0, 0, 0, '\xFF'};  // FEXTRA; no time; OS unknown
    putLe<std::uint16_t>(head, 4 + indexSize);
    head.push_back(static_cast<char>(kId1));
    head.push_back(static_cast<char>(kId2));
    putLe<std::uint16_t>(head, indexSize);
    head.push_back(static_cast<char>(kVersion));
    putLe<std::uint64_t>(head, total);
    putLe<std::uint32_t>(head, pieceSize);
    for (const std::vector<char>& piece : pieces) putLe<std::uint32_t>(head, piece.size());
    return head;
}

// Inflates one piece into `dest`: libdeflate on a copy that ends in a final
// block (the last piece as it is), or zlib on the piece itself.
struct InflateState {
    whole_buffer_deflate::Inflater inflater;
    std::vector<char> scratch;
};

bool endsWithSyncMarker(const char* piece, std::size_t length) {
    return length >= sizeof kSyncMarker &&
           std::memcmp(piece + length - sizeof kSyncMarker, kSyncMarker, sizeof kSyncMarker) == 0;
}

bool inflatePieceFast(InflateState& state, const char* piece, std::size_t length, bool last, char* dest,
                      std::size_t expected) {
    const char* in = piece;
    std::size_t inSize = length;
    if (!last) {
        state.scratch.reserve(length + sizeof kFinalEmptyBlock);
        state.scratch.assign(piece, piece + length);
        state.scratch.insert(state.scratch.end(), std::begin(kFinalEmptyBlock), std::end(kFinalEmptyBlock));
        in = state.scratch.data();
        inSize = state.scratch.size();
    }
    std::size_t written = 0, consumed = 0;
    return state.inflater.inflate(Wrapper::Raw, in, inSize, dest, expected, written, consumed) &&
           written == expected && consumed == inSize;
}

bool inflatePieceZlib(const char* piece, std::size_t length, bool last, char* dest, std::size_t expected) {
    ZlibInflate zlib;
    z_stream& strm = zlib.strm;
    char probe = 0;
    strm.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece));
    strm.avail_in = static_cast<uInt>(length);
    strm.next_out = reinterpret_cast<Bytef*>(expected ? dest : &probe);
    strm.avail_out = static_cast<uInt>(expected);
    int result = inflate(&strm, Z_SYNC_FLUSH);
    if (strm.avail_out == 0 && result == Z_OK) {  // nothing may come beyond the piece's size
        strm.next_out = reinterpret_cast<Bytef*>(&probe);
        strm.avail_out = 1;
        result = inflate(&strm, Z_SYNC_FLUSH);
    }
    const bool ended = result == Z_STREAM_END;
    return (result == Z_OK || result == Z_BUF_ERROR || ended) && ended == last && strm.avail_in == 0 &&
           strm.total_out == expected;
}

struct PieceFailed {};

} // namespace

bool worthwhile(std::uint64_t size) { return size > kPieceSize; }

std::size_t Stream::size() const {
    std::size_t total = head.size() + sizeof tail;
    for (const std::vector<char>& piece : pieces) total += piece.size();
    return total;
}

void Stream::copyTo(char* dest) const {
    std::memcpy(dest, head.data(), head.size());
    dest += head.size();
    for (const std::vector<char>& piece : pieces) {
        if (!piece.empty()) std::memcpy(dest, piece.data(), piece.size());
        dest += piece.size();
    }
    std::memcpy(dest, tail, sizeof tail);
}

bool compress(Stream& out, const char* data, std::uint64_t size, int level, unsigned threads) {
    if (!worthwhile(size)) return false;
    std::uint64_t pieceSize = kPieceSize;
    if (pieceCount(size, pieceSize) > kMaxPieces)
        pieceSize = (size / kMaxPieces + kMinPieceSize) / kMinPieceSize * kMinPieceSize;
    if (pieceSize > kMaxPieceSize || size > std::numeric_limits<std::size_t>::max()) return false;

    const std::size_t count = static_cast<std::size_t>(pieceCount(size, pieceSize));
    std::vector<std::vector<char>> pieces(count);
    std::vector<std::uint32_t> crcs(count);
    parallelFor(
        count, threads, [&] { return PieceDeflater(level); },
        [&](PieceDeflater& deflater, std::size_t i) {
            const char* in = data + i * pieceSize;
            const std::size_t length = pieceLength(size, pieceSize, i);
            deflater.compress(pieces[i], in, length, i + 1 == count);
            crcs[i] = whole_buffer_deflate::crc32(0, in, length);
        });

    out.head = header(size, pieceSize, pieces);
    out.pieces = std::move(pieces);
    bytes::storeLE(out.tail, combinedCrc(crcs, size, pieceSize));
    bytes::storeLE(out.tail + 4, static_cast<std::uint32_t>(size));  // ISIZE: the size modulo 4 GiB
    return true;
}

bool readIndex(const char* data, std::size_t size, std::uint64_t limit, Index& index) {
    // Only what this library writes: gzip, deflate, the extra field alone.
    if (size < kHeaderSize + 2 || std::memcmp(data, "\x1F\x8B\x08\x04", 4) != 0) return false;
    const std::size_t extraSize = getLe<std::uint16_t>(data + kHeaderSize);
    const std::size_t dataStart = kHeaderSize + 2 + extraSize;
    if (dataStart > size) return false;
    const char* field = nullptr;
    std::size_t fieldSize = 0;
    for (std::size_t at = kHeaderSize + 2; at + 4 <= dataStart;) {
        const std::size_t length = getLe<std::uint16_t>(data + at + 2);
        if (at + 4 + length > dataStart) return false;
        if (static_cast<unsigned char>(data[at]) == kId1 && static_cast<unsigned char>(data[at + 1]) == kId2) {
            field = data + at + 4;
            fieldSize = length;
            break;
        }
        at += 4 + length;
    }
    if (!field || fieldSize < kIndexFixed || static_cast<unsigned char>(field[0]) != kVersion) return false;

    const std::uint64_t total = getLe<std::uint64_t>(field + 1), pieceSize = getLe<std::uint32_t>(field + 9);
    if (pieceSize < kMinPieceSize || pieceSize > kMaxPieceSize || total == 0 || total > limit ||
        total / kMaxDeflateRatio > size || total > std::numeric_limits<std::size_t>::max())
        return false;
    const std::uint64_t count = pieceCount(total, pieceSize);
    if (count > kMaxPieces || fieldSize != kIndexFixed + 4 * count) return false;

    std::vector<std::uint32_t> lengths(static_cast<std::size_t>(count));
    std::uint64_t end = dataStart;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        lengths[i] = getLe<std::uint32_t>(field + kIndexFixed + 4 * i);
        end += lengths[i];
    }
    if (end + 8 > size || getLe<std::uint32_t>(data + end + 4) != (total & 0xFFFFFFFFu)) return false;

    index.total = total;
    index.pieceSize = pieceSize;
    index.dataStart = dataStart;
    index.lengths = std::move(lengths);
    index.crc = getLe<std::uint32_t>(data + end);
    return true;
}

bool inflate(const Index& index, const char* data, char* dest, unsigned threads) {
    const std::size_t count = index.lengths.size();
    std::vector<std::size_t> offsets(count);
    for (std::size_t i = 1; i < count; ++i) offsets[i] = offsets[i - 1] + index.lengths[i - 1];
    std::vector<std::uint32_t> crcs(count);
    const bool fast = whole_buffer_deflate::available();
    try {
        parallelFor(
            count, threads, [] { return InflateState(); },
            [&](InflateState& state, std::size_t i) {
                const char* piece = data + index.dataStart + offsets[i];
                const std::size_t length = index.lengths[i];
                const bool last = i + 1 == count;
                const std::size_t expected = pieceLength(index.total, index.pieceSize, i);
                char* out = dest + i * index.pieceSize;
                if (!last && !endsWithSyncMarker(piece, length)) throw PieceFailed();
                const bool inflated = fast ? inflatePieceFast(state, piece, length, last, out, expected)
                                           : inflatePieceZlib(piece, length, last, out, expected);
                if (!inflated) throw PieceFailed();
                crcs[i] = whole_buffer_deflate::crc32(0, out, expected);
            });
    } catch (const PieceFailed&) {
        return false;
    } catch (const std::exception&) {
        return false;  // no memory for a piece: the caller reads the stream from the start
    }
    return combinedCrc(crcs, index.total, index.pieceSize) == index.crc;
}

} // namespace indexed_gzip
} // namespace xch

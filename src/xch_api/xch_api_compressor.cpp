#include <xch_api/xch_api_compressor.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

#include <zlib.h>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_limits.h>

namespace xch {

namespace {

// zlib describes its windows with uInt (32 bits), so larger inputs and
// outputs are handed over in pieces of at most this size.
constexpr std::uint64_t kMaxPiece = std::numeric_limits<uInt>::max();

// Window bits 15 (32 KiB); +16 writes a gzip wrapper, +32 reads either a
// zlib or a gzip wrapper, detected from the header.
constexpr int kZlibWindowBits = 15;
constexpr int kGzipWindowBits = 15 + 16;
constexpr int kAutoWindowBits = 15 + 32;
constexpr int kMemLevel = 8;

// Decompression grows its output by twice the input size per step, but by
// no less than this, so that an empty or tiny input still makes progress.
constexpr std::uint64_t kMinInflateChunk = 4096;

// Ends the deflate or inflate stream however the scope is left.
class StreamGuard {
public:
    enum Kind { Deflate, Inflate };
    StreamGuard(z_stream& strm, Kind kind) : m_strm(strm), m_kind(kind) {}
    ~StreamGuard() {
        if (m_kind == Deflate)
            deflateEnd(&m_strm);
        else
            inflateEnd(&m_strm);
    }
    StreamGuard(const StreamGuard&) = delete;
    StreamGuard& operator=(const StreamGuard&) = delete;

private:
    z_stream& m_strm;
    Kind m_kind;
};

// The input still to be handed to zlib.
struct Input {
    const char* next;
    std::uint64_t left;
};

// What one call of fillWindow achieved.
struct Filled {
    std::uint64_t written;  // bytes written into the window
    bool roomLeft;          // zlib stopped before the window was full
};

// Runs `step` (deflate or inflate with a flush mode) until the `room` bytes
// at `dest` are full or zlib stops with room to spare. Input is handed over
// in uInt pieces; the last piece goes with Z_FINISH, earlier ones with
// Z_NO_FLUSH, so that streams of more than 4 GiB work alike.
template <class Step>
Filled fillWindow(z_stream& strm, Input& in, char* dest, std::uint64_t room, Step step) {
    std::uint64_t written = 0;
    for (;;) {
        if (strm.avail_in == 0 && in.left != 0) {
            const std::uint64_t piece = std::min(in.left, kMaxPiece);
            strm.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in.next));
            strm.avail_in = static_cast<uInt>(piece);
            in.next += piece;
            in.left -= piece;
        }
        const uInt window = static_cast<uInt>(std::min(room - written, kMaxPiece));
        strm.next_out = reinterpret_cast<Bytef*>(dest + written);
        strm.avail_out = window;
        const int flush = in.left != 0 ? Z_NO_FLUSH : Z_FINISH;
        const int result = step(strm, flush);
        written += window - strm.avail_out;
        if (strm.avail_out != 0) {
            // With more input to come and no complaint, zlib has merely
            // used up its current piece; otherwise the stream is done.
            if (flush == Z_FINISH || result != Z_OK) return {written, true};
        } else if (written == room) {
            return {written, false};
        }
    }
}

// Makes `out` hold `size` bytes, growing its capacity geometrically but
// never beyond `cap`, so that the last step of a large output does not
// reserve twice what it needs.
template <class Buffer>
void growTo(Buffer& out, std::uint64_t size, std::uint64_t cap) {
    if (size > out.capacity()) {
        const std::uint64_t doubled = 2 * static_cast<std::uint64_t>(out.capacity());
        out.reserve(static_cast<std::size_t>(std::min(std::max(size, doubled), std::max(size, cap))));
    }
    out.resize(static_cast<std::size_t>(size));
}

template <class Buffer>
void compressInto(Buffer& out, const char* data, std::uint64_t size, int level, Compressor::Wrapper wrapper) {
    z_stream strm{};
    const int windowBits = wrapper == Compressor::Zlib ? kZlibWindowBits : kGzipWindowBits;
    if (deflateInit2(&strm, level, Z_DEFLATED, windowBits, kMemLevel, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("deflate init failed");
    StreamGuard guard(strm, StreamGuard::Deflate);

    auto step = [](z_stream& s, int flush) { return deflate(&s, flush); };
    const std::uint64_t chunk = size / 2 + 1024;
    Input in{data, size};
    std::uint64_t produced = 0;
    out.clear();
    for (;;) {
        growTo(out, produced + chunk, std::numeric_limits<std::uint64_t>::max());
        const Filled filled = fillWindow(strm, in, &out[0] + produced, chunk, step);
        produced += filled.written;
        if (filled.roomLeft) break;
    }
    out.resize(static_cast<std::size_t>(produced));
}

[[noreturn]] void throwTooLarge() {
    throw std::runtime_error("Compressor: decompressed data exceeds the limit of " +
                             std::to_string(limits::kMaxDecompressedSize) + " bytes");
}

template <class Buffer>
void decompressInto(Buffer& out, const char* data, std::uint64_t size) {
    z_stream strm{};
    if (inflateInit2(&strm, kAutoWindowBits) != Z_OK)
        throw std::runtime_error("inflate init failed");
    StreamGuard guard(strm, StreamGuard::Inflate);

    auto step = [](z_stream& s, int flush) {
        const int result = inflate(&s, flush);
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
            throw std::runtime_error(s.msg ? s.msg : zError(result));
        return result;
    };
    constexpr std::uint64_t limit = limits::kMaxDecompressedSize;
    const std::uint64_t chunk =
        std::max(size > limit ? limit : 2 * size, kMinInflateChunk);
    Input in{data, size};
    std::uint64_t produced = 0;
    out.clear();
    for (;;) {
        if (produced == limit) {
            // The output is as large as allowed: one more byte is too many.
            char probe = 0;
            if (fillWindow(strm, in, &probe, 1, step).written != 0) throwTooLarge();
            break;
        }
        const std::uint64_t room = std::min(chunk, limit - produced);
        growTo(out, produced + room, limit);
        const Filled filled = fillWindow(strm, in, &out[0] + produced, room, step);
        produced += filled.written;
        if (filled.roomLeft) break;
    }
    out.resize(static_cast<std::size_t>(produced));
}

} // namespace

void Compressor::compress(std::vector<char>& out, const char* data, std::uint64_t size, int level) {
    VX_TRACE();
    compressInto(out, data, size, level, Gzip);
}

void Compressor::compress(std::string& out, const char* data, std::uint64_t size, int level) {
    VX_TRACE();
    compressInto(out, data, size, level, Gzip);
}

void Compressor::compress(std::vector<char>& out, const char* data, std::uint64_t size, int level,
                          Wrapper wrapper) {
    VX_TRACE();
    compressInto(out, data, size, level, wrapper);
}

void Compressor::decompress(std::vector<char>& out, const char* data, std::uint64_t size) {
    VX_TRACE();
    decompressInto(out, data, size);
}

void Compressor::decompress(std::string& out, const char* data, std::uint64_t size) {
    VX_TRACE();
    decompressInto(out, data, size);
}

bool Compressor::isCompressed(const char* data, std::uint64_t size) {
    if (!data || size < 3) return false;
    const auto b0 = static_cast<unsigned char>(data[0]);
    const auto b1 = static_cast<unsigned char>(data[1]);
    if (b0 == 0x78) return b1 == 0x9C || b1 == 0x01 || b1 == 0xDA || b1 == 0x5E;
    return b0 == 0x1F && b1 == 0x8B;
}

} // namespace xch

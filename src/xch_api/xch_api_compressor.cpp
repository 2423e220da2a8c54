#include <xch_api/xch_api_compressor.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include <zlib.h>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_limits.h>

#include "internal/indexed_gzip.h"
#include "internal/whole_buffer_deflate.h"

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
    bool ended;             // ... because the stream ended (not merely the input)
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
            if (flush == Z_FINISH || result != Z_OK) return {written, true, result == Z_STREAM_END};
        } else if (written == room) {
            return {written, false, result == Z_STREAM_END};
        }
    }
}

// Makes `out` hold `size` bytes, growing its capacity geometrically (used
// for deflate output, whose size is not known in advance).
template <class Buffer>
void growTo(Buffer& out, std::uint64_t size) {
    if (size > out.capacity()) out.reserve(static_cast<std::size_t>(std::max<std::uint64_t>(size, 2 * out.capacity())));
    out.resize(static_cast<std::size_t>(size));
}

template <class Buffer>
char* bytesOf(Buffer& out) {
    static char none = 0;
    return out.empty() ? &none : &out[0];
}

// The threads compression and inflation may use; 0 for one per core.
std::atomic<unsigned> g_threads{0};

unsigned threadCount() {
    const unsigned chosen = g_threads.load(std::memory_order_relaxed);
    if (chosen != 0) return chosen;
    const unsigned cores = std::thread::hardware_concurrency();
    return cores != 0 ? cores : 1;
}

bool validLevel(int level) { return level >= -1 && level <= 9; }

whole_buffer_deflate::Wrapper fastWrapper(Compressor::Wrapper wrapper) {
    return wrapper == Compressor::Zlib ? whole_buffer_deflate::Wrapper::Zlib : whole_buffer_deflate::Wrapper::Gzip;
}

// zlib's streaming deflate: the output grows by half the input size plus
// 1 KiB per step.
template <class Buffer>
void zlibCompress(Buffer& out, const char* data, std::uint64_t size, int level, Compressor::Wrapper wrapper) {
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
        growTo(out, produced + chunk);
        const Filled filled = fillWindow(strm, in, &out[0] + produced, chunk, step);
        produced += filled.written;
        if (filled.roomLeft) break;
    }
    out.resize(static_cast<std::size_t>(produced));
}

// libdeflate's whole-buffer deflate (level -1 is 6, zlib's default, too):
// into scratch memory of the worst-case size, of which only what the stream
// uses is ever touched, then into `out` at its exact size.
template <class Buffer>
void wholeCompress(Buffer& out, const char* data, std::uint64_t size, int level, Compressor::Wrapper wrapper) {
    const whole_buffer_deflate::Deflater deflater(level < 0 ? 6 : level);
    const std::size_t room = deflater.bound(fastWrapper(wrapper), static_cast<std::size_t>(size));
    const std::unique_ptr<char[]> scratch(new char[room]);
    const std::size_t produced =
        deflater.compress(fastWrapper(wrapper), data, static_cast<std::size_t>(size), scratch.get(), room);
    if (produced == 0) throw std::runtime_error("deflate failed");  // cannot happen within the bound
    out.assign(scratch.get(), scratch.get() + produced);
}

// Large gzip streams are written in independent pieces with an index in
// the header (see indexed_gzip.h), whatever the number of threads, so that
// the same input always gives the same stream.
template <class Buffer>
bool indexedCompress(Buffer& out, const char* data, std::uint64_t size, int level) {
    indexed_gzip::Stream stream;
    if (!indexed_gzip::compress(stream, data, size, level < 0 ? 6 : level, threadCount())) return false;
    out.resize(stream.size());
    stream.copyTo(&out[0]);
    return true;
}

template <class Buffer>
void compressInto(Buffer& out, const char* data, std::uint64_t size, int level, Compressor::Wrapper wrapper) {
    if (!validLevel(level)) throw std::runtime_error("deflate init failed");
    if (wrapper == Compressor::Gzip && indexedCompress(out, data, size, level))
        return;
    if (whole_buffer_deflate::available() && size <= std::numeric_limits<std::size_t>::max())
        wholeCompress(out, data, size, level, wrapper);
    else
        zlibCompress(out, data, size, level, wrapper);
}

[[noreturn]] void throwTooLarge(std::uint64_t limit) {
    throw std::runtime_error("Compressor: decompressed data exceeds the limit of " + std::to_string(limit) +
                             " bytes");
}

bool isGzip(const char* data, std::uint64_t size) {
    return size >= 2 && static_cast<unsigned char>(data[0]) == 0x1F && static_cast<unsigned char>(data[1]) == 0x8B;
}

// Deflate never expands more than 1032 to 1 (258 bytes from a 2-bit code).
constexpr std::uint64_t kMaxDeflateRatio = 1032;
// The smallest gzip stream: 10 header bytes, one empty block, 8 trailer bytes.
constexpr std::uint64_t kMinGzipSize = 20;

// The inflated size a gzip stream announces in its last four bytes (ISIZE,
// the size modulo 4 GiB), when it is plausible: not above `limit` and not
// above what deflate can produce from this input. It is only a hint: the
// last four bytes belong to another member when members or other bytes
// follow the first one, and the size of a stream over 4 GiB is wrapped.
// Inflating checks it; a wrong hint costs one more pass, never wrong data.
bool gzipSizeHint(const char* data, std::uint64_t size, std::uint64_t limit, std::uint64_t& hint) {
    if (!isGzip(data, size) || size < kMinGzipSize) return false;
    const auto* tail = reinterpret_cast<const unsigned char*>(data + size - 4);
    hint = std::uint64_t(tail[0]) | std::uint64_t(tail[1]) << 8 | std::uint64_t(tail[2]) << 16 |
           std::uint64_t(tail[3]) << 24;
    return hint <= limit && hint / kMaxDeflateRatio <= size;
}

auto inflateStep = [](z_stream& s, int flush) {
    const int result = inflate(&s, flush);
    if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
        throw std::runtime_error(s.msg ? s.msg : zError(result));
    return result;
};

// A zlib inflate stream with automatic zlib / gzip detection.
struct Inflater {
    z_stream strm{};
    StreamGuard guard{strm, StreamGuard::Inflate};
    Input in;
    Inflater(const char* data, std::uint64_t size) : in{data, size} {
        // inflateEnd (the guard) accepts a stream whose initialisation failed.
        if (inflateInit2(&strm, kAutoWindowBits) != Z_OK) throw std::runtime_error("inflate init failed");
    }
    Filled fill(char* dest, std::uint64_t room) { return fillWindow(strm, in, dest, room, inflateStep); }
};

// What zlib inflates from `data`, counted but not kept: the size, and
// whether the stream ended (rather than the input). Throws zlib's message
// on corrupt input and the size message past `limit`, having allocated
// nothing of the output.
Filled countInflated(const char* data, std::uint64_t size, std::uint64_t limit) {
    constexpr std::uint64_t kWindow = 1 << 16;
    const std::unique_ptr<char[]> window(new char[kWindow]);
    Inflater inflater(data, size);
    Filled total{0, true, false};
    for (;;) {
        const Filled filled = inflater.fill(window.get(), kWindow);
        total.written += filled.written;
        if (total.written > limit) throwTooLarge(limit);
        if (filled.roomLeft) {
            total.ended = filled.ended;
            return total;
        }
    }
}

// Inflates into `out` sized to the hint. True when the stream fitted.
template <class Buffer>
bool inflateToHint(Buffer& out, const char* data, std::uint64_t size, std::uint64_t hint) {
    out.resize(static_cast<std::size_t>(hint));
    if (whole_buffer_deflate::available()) {
        std::size_t written = 0;
        if (!whole_buffer_deflate::inflate(fastWrapper(Compressor::Gzip), data, static_cast<std::size_t>(size),
                                           bytesOf(out), out.size(), written))
            return false;
        out.resize(written);
        return true;
    }
    Inflater inflater(data, size);
    const Filled filled = inflater.fill(bytesOf(out), hint);
    if (!filled.roomLeft) {
        char probe = 0;
        if (inflater.fill(&probe, 1).written != 0) return false;
    }
    out.resize(static_cast<std::size_t>(filled.written));
    return true;
}

// The output is allocated once, at its final size, so that the peak memory
// of an inflation is its output (and never more than `limit`): from the
// size a gzip stream announces, else from a first pass of zlib that counts
// the output without keeping it. The second pass uses libdeflate when the
// stream is complete, zlib otherwise (a truncated stream gives what it
// holds). zlib defines the outcome of anything libdeflate refuses: its
// errors, and the prefix of a stream that ends early.
template <class Buffer>
void decompressInto(Buffer& out, const char* data, std::uint64_t size, std::uint64_t limit) {
    // A stream written in pieces inflates them side by side; anything amiss
    // with it is left to the reading from the start below, which decides.
    const unsigned threads = threadCount();
    indexed_gzip::Index index;
    if (threads > 1 && size <= std::numeric_limits<std::size_t>::max() &&
        indexed_gzip::readIndex(data, static_cast<std::size_t>(size), limit, index)) {
        out.resize(static_cast<std::size_t>(index.total));
        if (indexed_gzip::inflate(index, data, bytesOf(out), threads)) return;
        Buffer().swap(out);  // what follows starts as if this had not been tried
    }

    std::uint64_t hint = 0;
    if (gzipSizeHint(data, size, limit, hint) && size <= std::numeric_limits<std::size_t>::max() &&
        inflateToHint(out, data, size, hint))
        return;

    Buffer().swap(out);  // nothing of a wrong guess stays while counting
    const Filled counted = countInflated(data, size, limit);
    out.resize(static_cast<std::size_t>(counted.written));
    if (counted.ended && whole_buffer_deflate::available() && size <= std::numeric_limits<std::size_t>::max()) {
        std::size_t written = 0;
        const auto wrapper = fastWrapper(isGzip(data, size) ? Compressor::Gzip : Compressor::Zlib);
        if (whole_buffer_deflate::inflate(wrapper, data, static_cast<std::size_t>(size), bytesOf(out), out.size(),
                                          written) &&
            written == out.size())
            return;
    }
    Inflater inflater(data, size);
    inflater.fill(bytesOf(out), out.size());
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
    decompressInto(out, data, size, limits::kMaxDecompressedSize);
}

void Compressor::decompress(std::string& out, const char* data, std::uint64_t size) {
    VX_TRACE();
    decompressInto(out, data, size, limits::kMaxDecompressedSize);
}

void Compressor::decompress(std::vector<char>& out, const char* data, std::uint64_t size, std::uint64_t maxSize) {
    VX_TRACE();
    decompressInto(out, data, size, std::min(maxSize, limits::kMaxDecompressedSize));
}

void Compressor::decompress(std::string& out, const char* data, std::uint64_t size, std::uint64_t maxSize) {
    VX_TRACE();
    decompressInto(out, data, size, std::min(maxSize, limits::kMaxDecompressedSize));
}

void Compressor::setThreads(unsigned count) { g_threads.store(count, std::memory_order_relaxed); }

unsigned Compressor::threads() { return threadCount(); }

bool Compressor::isCompressed(const char* data, std::uint64_t size) {
    if (!data || size < 3) return false;
    const auto b0 = static_cast<unsigned char>(data[0]);
    const auto b1 = static_cast<unsigned char>(data[1]);
    if (b0 == 0x78) return b1 == 0x9C || b1 == 0x01 || b1 == 0xDA || b1 == 0x5E;
    return b0 == 0x1F && b1 == 0x8B;
}

} // namespace xch

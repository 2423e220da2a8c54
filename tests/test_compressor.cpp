#include <gtest/gtest.h>
#include <zlib.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <functional>
#include <stdexcept>
#include <string>

#include <xch_api/xch_api_compressor.h>

using xch::Compressor;
using Block = std::vector<char>;

// Counts the bytes allocated through operator new that are alive at once, to check the peak memory of an
// inflation. The library's allocations come through here where the platform resolves operator new across
// shared libraries (ELF); where it does not (DLLs), or where ThreadSanitizer owns operator new, the tests that
// need it are skipped.
#if defined(__SANITIZE_THREAD__)
#  define XCH_TEST_NO_NEW_HOOK
#elif defined(__has_feature)
#  if __has_feature(thread_sanitizer)
#    define XCH_TEST_NO_NEW_HOOK
#  endif
#endif
static std::atomic<std::size_t> g_liveBytes{0}, g_peakBytes{0};
#if !defined(XCH_TEST_NO_NEW_HOOK)
void* operator new(std::size_t n) {
    void* block = std::malloc(n + 16);
    if (!block) throw std::bad_alloc();
    *static_cast<std::size_t*>(block) = n;
    const std::size_t live = g_liveBytes += n;
    for (std::size_t peak = g_peakBytes; live > peak && !g_peakBytes.compare_exchange_weak(peak, live);) {}
    return static_cast<char*>(block) + 16;
}
void* operator new[](std::size_t n) { return operator new(n); }
void operator delete(void* p) noexcept {
    if (!p) return;
    char* block = static_cast<char*>(p) - 16;
    g_liveBytes -= *reinterpret_cast<std::size_t*>(block);
    std::free(block);
}
void operator delete[](void* p) noexcept { operator delete(p); }
void operator delete(void* p, std::size_t) noexcept { operator delete(p); }
void operator delete[](void* p, std::size_t) noexcept { operator delete(p); }
#endif

// The most memory that running `f` held at once beyond what was allocated before.
template <class F> static std::size_t peakBytesOf(F f) {
    const std::size_t before = g_liveBytes;
    g_peakBytes = before;
    f();
    return g_peakBytes - before;
}

// Compressible but far from trivial: vertices of a surface as text.
static Block vertices(unsigned count) {
    std::string text;
    for (unsigned i = 0; i < count; ++i) text += "v " + std::to_string(i * i % 7) + ' ' + std::to_string(i / 9) + '\n';
    return Block(text.begin(), text.end());
}
// The library's output, written into blocks that held something before (which must not remain).
static Block compressed(const Block& data, int level, Compressor::Wrapper wrapper = Compressor::Gzip) {
    Block out{'s', 't', 'a', 'l', 'e'};
    Compressor::compress(out, data.data(), data.size(), level, wrapper);
    return out;
}
static Block decompressed(const Block& stream) {
    Block out{'s', 't', 'a', 'l', 'e'};
    Compressor::decompress(out, stream.data(), stream.size());
    return out;
}
template <class F> static std::string errorOf(F run) {
    try { run(); } catch (const std::runtime_error& e) { return e.what(); }
    return "no exception";
}
// zlib's own inflation of `gz` into `room` bytes, insisting on a gzip wrapper, a complete stream and nothing after it.
static Block zlibGunzip(const Block& gz, std::size_t room) {
    Block out(room);
    z_stream strm{};
    inflateInit2(&strm, 15 + 16);
    strm.next_in = (Bytef*)gz.data(), strm.avail_in = (uInt)gz.size();
    strm.next_out = (Bytef*)out.data(), strm.avail_out = (uInt)out.size();
    EXPECT_EQ(inflate(&strm, Z_FINISH), Z_STREAM_END);
    EXPECT_EQ(strm.avail_in, 0u) << "bytes after the gzip stream";
    inflateEnd(&strm);
    return Block(out.begin(), out.end() - strm.avail_out);
}

TEST(Compressor, WritesGzipThatZlibReadsAtTheCallersLevelAndInflatesZlibStreams) {
    const Block mesh = vertices(100000), packed = compressed(mesh, 9, Compressor::Zlib); // incompressible
    for (const Block& block : {Block(), Block(1, 'x'), mesh, packed, Block(10 << 20, '\0')}) {
        for (int level : {-1, 0, 1, 9}) {
            SCOPED_TRACE("size " + std::to_string(block.size()) + " level " + std::to_string(level));
            const Block gz = compressed(block, level);
            EXPECT_EQ(zlibGunzip(gz, block.size() + 1), block);
            EXPECT_EQ(decompressed(compressed(block, level, Compressor::Zlib)), block);
            std::string gzText = "stale", text = "stale"; // the overloads without a wrapper make gzip alike
            Compressor::compress(gzText, block.data(), block.size(), level);
            Compressor::decompress(text, gzText.data(), gzText.size());
            EXPECT_TRUE(gzText == std::string(gz.begin(), gz.end()) && text == std::string(block.begin(), block.end()));
        }
    }
    EXPECT_GT(compressed(mesh, 0).size(), mesh.size());
    EXPECT_LT(compressed(mesh, 9).size(), compressed(mesh, 1).size());
    EXPECT_EQ(compressed(mesh, -1), compressed(mesh, 6)) << "-1 is zlib's default level";
    EXPECT_EQ(errorOf([&] { compressed(mesh, 10); }), "deflate init failed");
}

TEST(Compressor, CorruptStreamsThrowZlibsMessageAndShortOnesGiveAPrefix) {
    const Block block = vertices(100000), z = compressed(block, 6, Compressor::Zlib);
    Block gz;
    Compressor::compress(gz, block.data(), block.size(), -1);
    auto errorWith = [](Block s, std::size_t at, char c) { s[at] = c; return errorOf([&] { decompressed(s); }); };
    EXPECT_EQ(errorWith(gz, gz.size() - 6, gz[gz.size() - 6] ^ 0x55), "incorrect data check"); // CRC-32
    EXPECT_EQ(errorWith(gz, 2, 7), "unknown compression method");
    EXPECT_EQ(errorWith(z, z.size() - 1, z.back() ^ 1), "incorrect data check"); // Adler-32
    EXPECT_EQ(errorWith({'p', 'l', 'a', 'i', 'n'}, 0, 'P'), "incorrect header check");
    for (std::size_t keep : {gz.size() - 4, gz.size() / 2, std::size_t(10), std::size_t(0)}) {
        const Block out = decompressed(Block(gz.begin(), gz.begin() + keep));
        EXPECT_TRUE(out.size() <= block.size() && std::equal(out.begin(), out.end(), block.begin())) << keep;
        if (keep == gz.size() - 4) { EXPECT_EQ(out, block) << "only the size trailer is missing"; }
    }
    gz.insert(gz.end(), 100, 'j');
    EXPECT_EQ(decompressed(gz), block) << "bytes after the stream are ignored";
}

TEST(Compressor, RecognisesZlibAndGzipHeaders) {
    const char heads[][3] = {"\x78\x9C", "\x78\x01", "\x78\xDA", "\x78\x5E", "\x1F\x8B", // compressed
                               "\x78\x00", "\x78\x8B", "\x1F\x9C", "\x8B\x1F", "\x9C\x78", ""};
    for (std::size_t i = 0; i < std::size(heads); ++i) // never from fewer than 3 bytes
        EXPECT_TRUE(Compressor::isCompressed(heads[i], 3) == (i < 5) && !Compressor::isCompressed(heads[i], 2)) << i;
    EXPECT_FALSE(Compressor::isCompressed(nullptr, 10));
}

// zlib's own gzip deflate of `data` at the default level (a producer other than the library).
static Block zlibGzip(const Block& data) {
    z_stream strm{};
    deflateInit2(&strm, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    Block out(deflateBound(&strm, (uLong)data.size()));
    strm.next_in = (Bytef*)data.data(), strm.avail_in = (uInt)data.size();
    strm.next_out = (Bytef*)out.data(), strm.avail_out = (uInt)out.size();
    EXPECT_EQ(deflate(&strm, Z_FINISH), Z_STREAM_END);
    out.resize(strm.total_out);
    deflateEnd(&strm);
    return out;
}

// The size a gzip stream announces in its last four bytes is a hint: members or other bytes after the first
// member make it wrong in either direction, and the first member is still what comes out.
TEST(Compressor, InflatesTheFirstMemberWhateverTheLastFourBytesAnnounce) {
    const Block small = vertices(3000), large = vertices(90000);
    auto join = [](Block a, const Block& b) { a.insert(a.end(), b.begin(), b.end()); return a; };
    const Block smallGz = zlibGzip(small), largeGz = compressed(large, -1);
    EXPECT_EQ(decompressed(smallGz), small) << "zlib's stream";
    EXPECT_EQ(decompressed(join(smallGz, largeGz)), small) << "announces more than the first member holds";
    EXPECT_EQ(decompressed(join(largeGz, smallGz)), large) << "announces less than the first member holds";
    Block claimsTooMuch = join(largeGz, {'\xff', '\xff', '\xff', '\x7f'});  // 2 GiB, implausible for this input
    EXPECT_EQ(decompressed(claimsTooMuch), large);
    Block claimsNothing = join(largeGz, {0, 0, 0, 0});
    EXPECT_EQ(decompressed(claimsNothing), large);
    Block wrongLength = largeGz;  // a stream whose own length check fails is corrupt, whoever inflates it
    wrongLength[wrongLength.size() - 4] ^= 1;
    EXPECT_EQ(errorOf([&] { decompressed(wrongLength); }), "incorrect length check");
}

TEST(Compressor, InflationAllocatesOnlyItsOutputAndRefusesBombsBeforeAllocatingThem) {
    Block data = vertices(1500000);  // ~20 MB of text
    data.resize(24 << 20, 'z');
    const Block gz = compressed(data, 1), z = compressed(data, 1, Compressor::Zlib);
    Block out;
    const std::size_t gzipPeak = peakBytesOf([&] { Compressor::decompress(out, gz.data(), gz.size()); });
    ASSERT_EQ(out, data);
    if (gzipPeak < data.size()) GTEST_SKIP() << "the library's allocations do not come through this test's hook";
    const std::size_t slack = 256 << 10;
    Block trailing = gz;  // the trailer no longer announces the size: counted by a first pass (or the index)
    trailing.insert(trailing.end(), {1, 0, 0, 0});
    for (unsigned threads : {1u, 4u}) {  // in pieces, each thread holds a copy of one compressed piece
        Compressor::setThreads(threads);
        const std::size_t allowed = data.size() + slack + (threads > 1 ? threads * (1u << 20) : 0);
        for (const Block* stream : std::initializer_list<const Block*>{&gz, &z, &trailing}) {
            Block back;
            EXPECT_LE(peakBytesOf([&] { Compressor::decompress(back, stream->data(), stream->size()); }), allowed)
                << threads << " threads, " << (stream == &z ? "zlib" : stream == &gz ? "gzip" : "trailing bytes");
            EXPECT_EQ(back, data);
        }
    }
    Compressor::setThreads(0);
    std::string text;  // the same for a string
    EXPECT_LE(peakBytesOf([&] { Compressor::decompress(text, z.data(), z.size()); }), data.size() + slack);
    EXPECT_EQ(text, std::string(data.begin(), data.end()));

    // A limit: reached exactly is fine, one byte over throws. A bomb costs no output memory when its trailer
    // tells the truth or is missing, and at most the limit when the trailer lies low (the size it claims is
    // allocated, then found wrong).
    Compressor::decompress(out, gz.data(), gz.size(), data.size());
    EXPECT_EQ(out, data);
    EXPECT_EQ(errorOf([&] { Compressor::decompress(out, gz.data(), gz.size(), data.size() - 1); }),
              "Compressor: decompressed data exceeds the limit of " + std::to_string(data.size() - 1) + " bytes");
    const std::size_t limit = data.size() / 4;
    Block liesLow = gz;
    liesLow[liesLow.size() - 2] = 0x40;  // 4 MiB instead of 24
    liesLow[liesLow.size() - 1] = 0;
    for (const Block* bomb : std::initializer_list<const Block*>{&gz, &z, &liesLow}) {
        std::string error;
        const std::size_t peak = peakBytesOf([&] {
            error = errorOf([&] { Compressor::decompress(out, bomb->data(), bomb->size(), limit); });
        });
        EXPECT_EQ(error, "Compressor: decompressed data exceeds the limit of " + std::to_string(limit) + " bytes");
        EXPECT_LE(peak, (bomb == &liesLow ? limit : 0) + slack);
    }
}

// A big input: a stretch of text, a stretch of bytes that do not compress and a run of one byte, so that pieces
// compress very differently.
static Block mixed(std::size_t size) {
    Block data = vertices(120000);
    std::uint32_t state = 12345;
    while (data.size() < size * 2 / 3) data.push_back(char((state = state * 1103515245u + 12345u) >> 24));
    data.resize(size, '#');
    return data;
}

// Large gzip streams are written in 1 MiB pieces with an index in the header's extra field; they stay one
// plain gzip member, are the same whatever the number of threads, and inflate alike in pieces or from the start.
TEST(Compressor, LargeGzipStreamsAreOneMemberInIndexedPiecesWhateverTheThreads) {
    const std::size_t MiB = 1 << 20;
    for (std::size_t size : {MiB, MiB + 1, 2 * MiB, 5 * MiB + 12345}) {
        const Block data = mixed(size);
        for (int level : {0, 1, 6, 9}) {
            SCOPED_TRACE("size " + std::to_string(size) + " level " + std::to_string(level));
            Compressor::setThreads(1);
            const Block single = compressed(data, level);
            Compressor::setThreads(4);
            const Block gz = compressed(data, level);
            EXPECT_EQ(gz, single) << "the stream does not depend on the threads";
            EXPECT_EQ(gz[3] == 4, size > MiB) << "only streams of more than one piece carry the index";
            EXPECT_EQ(zlibGunzip(gz, size + 1), data);
            EXPECT_EQ(decompressed(gz), data);
            Compressor::setThreads(1);
            EXPECT_EQ(decompressed(gz), data);
            std::string text;
            Compressor::setThreads(3);
            Compressor::decompress(text, gz.data(), gz.size());
            EXPECT_TRUE(text == std::string(data.begin(), data.end()));
        }
    }
    Compressor::setThreads(0);
    EXPECT_GE(Compressor::threads(), 1u);
}

// Whatever is done to a stream written in pieces, inflating it on several threads gives what reading it from
// the start gives: the same bytes, the same error, the same prefix of a truncated stream.
TEST(Compressor, DamagedIndexedStreamsInflateAsWhenReadFromTheStart) {
    const Block data = mixed((1 << 20) * 3 + 777);
    const Block gz = compressed(data, 6);
    ASSERT_EQ(gz[3], 4);
    const std::size_t xlen = std::uint8_t(gz[10]) | std::uint8_t(gz[11]) << 8, dataStart = 12 + xlen;
    auto outcome = [](const Block& stream, unsigned threads) {
        Compressor::setThreads(threads);
        Block out;
        const std::string error = errorOf([&] { Compressor::decompress(out, stream.data(), stream.size()); });
        return error + " / " + std::to_string(out.size()) + " / " + std::to_string(std::hash<std::string>()(std::string(out.begin(), out.end())));
    };
    std::vector<Block> damaged;
    for (std::size_t at = 0; at < dataStart; ++at) // every byte of the header and the index
        for (int bit : {0, 7}) { Block s = gz; s[at] ^= char(1 << bit); damaged.push_back(s); }
    std::uint32_t state = 99;
    for (int i = 0; i < 150; ++i) { // pieces and trailer
        Block s = gz;
        state = state * 1103515245u + 12345u;
        s[dataStart + state % (gz.size() - dataStart)] ^= char(1 << (state >> 29));
        damaged.push_back(s);
    }
    for (std::size_t keep : {gz.size() - 1, gz.size() - 9, gz.size() / 2, dataStart + 10})
        damaged.push_back(Block(gz.begin(), gz.begin() + keep));
    Block swapped = gz; // the index's lengths of the first two pieces exchanged
    std::swap_ranges(swapped.begin() + 29, swapped.begin() + 33, swapped.begin() + 33);
    damaged.push_back(swapped);
    for (std::size_t i = 0; i < damaged.size(); ++i)
        ASSERT_EQ(outcome(damaged[i], 4), outcome(damaged[i], 1)) << "damage " << i;
    EXPECT_EQ(outcome(gz, 4), outcome(gz, 1));
    Compressor::setThreads(0);
}

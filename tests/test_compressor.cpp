#include <gtest/gtest.h>
#include <zlib.h>

#include <map>
#include <stdexcept>

#include <xch_api/xch_api_compressor.h>

using xch::Compressor;
using Block = std::vector<char>;

// Compressible but far from trivial: vertices of a surface as text.
static Block vertices(unsigned count) {
    std::string text;
    for (unsigned i = 0; i < count; ++i) text += "v " + std::to_string(i * i % 7) + ' ' + std::to_string(i / 9) + '\n';
    return Block(text.begin(), text.end());
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
static Block zlibCompress(const Block& data, int level) {
    uLongf size = compressBound((uLong)data.size());
    Block out(size);
    EXPECT_EQ(compress2((Bytef*)out.data(), &size, (const Bytef*)data.data(), (uLong)data.size(), level), Z_OK);
    out.resize(size);
    return out;
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
    out.resize(out.size() - strm.avail_out);
    return out;
}

TEST(Compressor, WritesGzipThatZlibReadsAndInflatesZlibStreamsAtEveryLevel) {
    const Block mesh = vertices(100000); // and, as incompressible data, its zlib stream
    for (const Block& block : {Block(), Block(1, 'x'), mesh, zlibCompress(mesh, 9), Block(10 << 20, '\0')}) {
        for (int level : {-1, 0, 1, 9}) {
            SCOPED_TRACE("size " + std::to_string(block.size()) + " level " + std::to_string(level));
            Block gz{'s', 't', 'a', 'l', 'e'};
            Compressor::compress(gz, block.data(), block.size(), level);
            EXPECT_EQ(zlibGunzip(gz, block.size() + 1), block);
            EXPECT_EQ(decompressed(gz), block);
            const Block z = zlibCompress(block, level);
            EXPECT_EQ(decompressed(z), block);
            std::string gzText = "stale", text = "stale"; // the std::string overloads alike
            Compressor::compress(gzText, block.data(), block.size(), level);
            Compressor::decompress(text, gzText.data(), gzText.size());
            EXPECT_TRUE(gzText == std::string(gz.begin(), gz.end()) && text == std::string(block.begin(), block.end()));
        }
    }
}

TEST(Compressor, CompressesAtTheCallersLevel) {
    const Block block = vertices(50000);
    std::map<int, Block> gz;
    for (int level : {-1, 0, 1, 6, 9}) Compressor::compress(gz[level], block.data(), block.size(), level);
    EXPECT_GT(gz[0].size(), block.size());
    EXPECT_LT(gz[1].size(), block.size() / 2);
    EXPECT_LT(gz[9].size(), gz[1].size());
    EXPECT_EQ(gz[-1], gz[6]) << "-1 is zlib's default level";
    EXPECT_EQ(errorOf([&] { Compressor::compress(gz[0], block.data(), block.size(), 10); }), "deflate init failed");
}

TEST(Compressor, CorruptStreamsThrowZlibsMessageAndShortOnesGiveAPrefix) {
    const Block block = vertices(100000), z = zlibCompress(block, 6);
    Block gz;
    Compressor::compress(gz, block.data(), block.size(), -1);
    auto errorWith = [](Block s, std::size_t at, char c) { s[at] = c; return errorOf([&] { decompressed(s); }); };
    EXPECT_EQ(errorWith(gz, gz.size() - 6, gz[gz.size() - 6] ^ 0x55), "incorrect data check"); // CRC-32
    EXPECT_EQ(errorWith(gz, 2, 7), "unknown compression method");
    EXPECT_EQ(errorWith(z, z.size() - 1, z.back() ^ 1), "incorrect data check"); // Adler-32
    EXPECT_EQ(errorWith(z, 2, 0x07), "invalid block type"); // a final block of the reserved type 3
    EXPECT_EQ(errorWith({'p', 'l', 'a', 'i', 'n'}, 0, 'P'), "incorrect header check");
    for (std::size_t keep : {gz.size() - 4, gz.size() / 2, std::size_t(10), std::size_t(0)}) {
        const Block out = decompressed(Block(gz.begin(), gz.begin() + keep));
        ASSERT_LE(out.size(), block.size()) << keep;
        EXPECT_TRUE(std::equal(out.begin(), out.end(), block.begin())) << keep;
        if (keep == gz.size() - 4) { EXPECT_EQ(out, block) << "only the size trailer is missing"; }
    }
    gz.insert(gz.end(), 100, 'j');
    EXPECT_EQ(decompressed(gz), block) << "bytes after the stream are ignored";
}

TEST(Compressor, RecognisesZlibAndGzipHeaders) {
    const char samples[][3] = {"\x78\x9C", "\x78\x01", "\x78\xDA", "\x78\x5E", "\x1F\x8B", // compressed
                               "\x78\x00", "\x78\x8B", "\x1F\x9C", "\x8B\x1F", "\x9C\x78", ""};
    for (std::size_t i = 0; i < std::size(samples); ++i) {
        EXPECT_EQ(Compressor::isCompressed(samples[i], 3), i < 5) << i;
        EXPECT_FALSE(Compressor::isCompressed(samples[i], 2)) << i;
    }
    EXPECT_FALSE(Compressor::isCompressed(nullptr, 10));
}

#include <gtest/gtest.h>
#include <zlib.h>

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

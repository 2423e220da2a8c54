#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <zlib.h>

#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_limits.h>

#include "support/log_capture.h"

using xch::Compressor;

namespace {

using Block = std::vector<char>;

// Triangle-mesh-like data: vertex coordinates on a smooth surface and
// ascending indices, compressible but far from trivial.
Block meshBlock(std::size_t triangles) {
    Block block;
    block.reserve(triangles * 3 * (3 * sizeof(float) + sizeof(std::uint32_t)));
    for (std::size_t i = 0; i < triangles * 3; ++i) {
        const float xyz[3] = {float(i % 1000) * 0.01f, float(i / 1000) * 0.01f, float(i % 7) * 0.5f};
        const auto* p = reinterpret_cast<const char*>(xyz);
        block.insert(block.end(), p, p + sizeof xyz);
    }
    for (std::uint32_t i = 0; i < triangles * 3; ++i) {
        const auto* p = reinterpret_cast<const char*>(&i);
        block.insert(block.end(), p, p + sizeof i);
    }
    return block;
}

Block randomBlock(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    Block block(size);
    for (auto& c : block) c = static_cast<char>(random());
    return block;
}

// Inflates with zlib directly, insisting on a gzip wrapper and a complete
// stream.
Block gunzipWithZlib(const Block& stream) {
    z_stream strm{};
    EXPECT_EQ(inflateInit2(&strm, 15 + 16), Z_OK);
    Block out;
    strm.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(stream.data()));
    strm.avail_in = static_cast<uInt>(stream.size());
    int result = Z_OK;
    char buffer[16384];
    while (result == Z_OK) {
        strm.next_out = reinterpret_cast<Bytef*>(buffer);
        strm.avail_out = sizeof buffer;
        result = inflate(&strm, Z_NO_FLUSH);
        out.insert(out.end(), buffer, buffer + (sizeof buffer - strm.avail_out));
    }
    EXPECT_EQ(result, Z_STREAM_END) << (strm.msg ? strm.msg : "");
    EXPECT_EQ(strm.avail_in, 0u) << "bytes after the gzip stream";
    inflateEnd(&strm);
    return out;
}

Block zlibCompress(const Block& data, int level) {
    uLongf size = compressBound(static_cast<uLong>(data.size()));
    Block out(size);
    EXPECT_EQ(compress2(reinterpret_cast<Bytef*>(out.data()), &size,
                        reinterpret_cast<const Bytef*>(data.data()), static_cast<uLong>(data.size()), level),
              Z_OK);
    out.resize(size);
    return out;
}

Block decompressed(const Block& stream) {
    Block out;
    Compressor::decompress(out, stream.data(), stream.size());
    return out;
}

std::string decompressError(const Block& stream) {
    std::string out;
    try {
        Compressor::decompress(out, stream.data(), stream.size());
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    ADD_FAILURE() << "no exception";
    return {};
}


// A gzip stream that inflates to `megabytes` MiB of zeros, built without
// ever holding them: one full-flushed deflate block of 1 MiB of zeros,
// repeated, then an empty final block and the gzip trailer.
Block zeroBomb(std::uint32_t megabytes) {
    const Block zeros(1 << 20, '\0');
    z_stream strm{};
    EXPECT_EQ(deflateInit2(&strm, 9, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY), Z_OK);
    auto run = [&](const Block& in, int flush) {
        Block out(deflateBound(&strm, static_cast<uLong>(in.size())) + 64);
        strm.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in.data()));
        strm.avail_in = static_cast<uInt>(in.size());
        strm.next_out = reinterpret_cast<Bytef*>(out.data());
        strm.avail_out = static_cast<uInt>(out.size());
        deflate(&strm, flush);
        EXPECT_EQ(strm.avail_in, 0u);
        out.resize(out.size() - strm.avail_out);
        return out;
    };
    const Block piece = run(zeros, Z_FULL_FLUSH);
    const Block last = run(Block(), Z_FINISH);
    deflateEnd(&strm);

    Block bomb = {'\x1F', '\x8B', 8, 0, 0, 0, 0, 0, 0, 3};
    for (std::uint32_t i = 0; i < megabytes; ++i) bomb.insert(bomb.end(), piece.begin(), piece.end());
    bomb.insert(bomb.end(), last.begin(), last.end());
    const uLong crcOfPiece = crc32(0, reinterpret_cast<const Bytef*>(zeros.data()), static_cast<uInt>(zeros.size()));
    uLong crc = crc32(0, nullptr, 0);
    for (std::uint32_t i = 0; i < megabytes; ++i) crc = crc32_combine(crc, crcOfPiece, static_cast<z_off_t>(zeros.size()));
    const std::uint32_t trailer[2] = {static_cast<std::uint32_t>(crc), megabytes << 20};
    for (std::uint32_t word : trailer)
        for (int shift = 0; shift < 32; shift += 8) bomb.push_back(static_cast<char>(word >> shift));
    return bomb;
}

} // namespace

TEST(Compressor, WritesGzipThatZlibReadsBackForAllLevelsAndSizes) {
    const Block blocks[] = {Block(), Block(1, 'x'), meshBlock(20000), randomBlock(300000, 7)};
    for (const Block& block : blocks) {
        for (int level : {-1, 0, 1, 9}) {
            SCOPED_TRACE("size " + std::to_string(block.size()) + " level " + std::to_string(level));
            Block gz{'s', 't', 'a', 'l', 'e'};
            Compressor::compress(gz, block.data(), block.size(), level);
            ASSERT_GE(gz.size(), 18u);
            EXPECT_EQ(static_cast<unsigned char>(gz[0]), 0x1F);
            EXPECT_EQ(static_cast<unsigned char>(gz[1]), 0x8B);
            EXPECT_EQ(gz[2], 8) << "method deflated";
            EXPECT_TRUE(Compressor::isCompressed(gz.data(), gz.size()));
            EXPECT_EQ(gunzipWithZlib(gz), block);
            EXPECT_EQ(decompressed(gz), block);

            std::string gzText = "stale";
            Compressor::compress(gzText, block.data(), block.size(), level);
            EXPECT_EQ(gzText, std::string(gz.begin(), gz.end()));
            std::string text = "stale";
            Compressor::decompress(text, gzText.data(), gzText.size());
            EXPECT_EQ(text, std::string(block.begin(), block.end()));
        }
    }
}

TEST(Compressor, CompressesAtTheCallersLevel) {
    const Block block = meshBlock(10000);
    auto compressed = [&](int level) {
        Block out;
        Compressor::compress(out, block.data(), block.size(), level);
        return out;
    };
    const Block stored = compressed(0), fast = compressed(1), best = compressed(9);
    EXPECT_GT(stored.size(), block.size());
    EXPECT_LT(fast.size(), block.size() / 2);
    EXPECT_LT(best.size(), fast.size());
    EXPECT_EQ(compressed(-1), compressed(6)) << "-1 is zlib's default level";

    std::string out;
    try {
        Compressor::compress(out, block.data(), block.size(), 10);
        ADD_FAILURE() << "level 10 accepted";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "deflate init failed");
    }
}

TEST(Compressor, InflatesZlibStreamsOfEveryLevel) {
    const Block blocks[] = {meshBlock(20000), Block(10 << 20, '\0'), Block()};
    for (const Block& block : blocks) {
        for (int level : {1, 6, 9}) {
            SCOPED_TRACE("size " + std::to_string(block.size()) + " level " + std::to_string(level));
            const Block z = zlibCompress(block, level);
            EXPECT_TRUE(Compressor::isCompressed(z.data(), z.size()));
            EXPECT_EQ(decompressed(z), block);
        }
    }
}

TEST(Compressor, CorruptStreamsThrowZlibsMessage) {
    const Block block = meshBlock(5000);
    Block gz;
    Compressor::compress(gz, block.data(), block.size(), -1);

    Block badCrc = gz;
    badCrc[badCrc.size() - 6] ^= 0x55;
    EXPECT_EQ(decompressError(badCrc), "incorrect data check");

    Block badMethod = gz;
    badMethod[2] = 7;
    EXPECT_EQ(decompressError(badMethod), "unknown compression method");

    const std::string plain = "plain text, not compressed";
    EXPECT_EQ(decompressError(Block(plain.begin(), plain.end())), "incorrect header check");

    Block badZlibCheck = zlibCompress(block, 6);
    badZlibCheck.back() ^= 1;
    EXPECT_EQ(decompressError(badZlibCheck), "incorrect data check");

    // A corrupted block header: deflate's own diagnostics.
    Block badBlock = zlibCompress(block, 6);
    badBlock[2] = static_cast<char>(0x07); // final block of the reserved type 3
    EXPECT_EQ(decompressError(badBlock), "invalid block type");
}

TEST(Compressor, TruncatedStreamGivesAPrefixAndEmptyInputNothing) {
    const Block block = meshBlock(20000);
    Block gz;
    Compressor::compress(gz, block.data(), block.size(), -1);
    for (std::size_t keep : {gz.size() - 4, gz.size() / 2, std::size_t(10), std::size_t(0)}) {
        SCOPED_TRACE(keep);
        Block out{'x'};
        EXPECT_NO_THROW(Compressor::decompress(out, gz.data(), keep));
        ASSERT_LE(out.size(), block.size());
        EXPECT_TRUE(std::equal(out.begin(), out.end(), block.begin()));
        if (keep == gz.size() - 4) {
            EXPECT_EQ(out.size(), block.size()) << "only the size trailer is missing";
        }
    }
    Block out{'x'};
    Compressor::decompress(out, nullptr, 0);
    EXPECT_TRUE(out.empty());
}

TEST(Compressor, IgnoresBytesAfterTheStream) {
    const Block block = meshBlock(1000);
    Block gz;
    Compressor::compress(gz, block.data(), block.size(), -1);
    gz.insert(gz.end(), 100, 'j');
    EXPECT_EQ(decompressed(gz), block);
}

TEST(Compressor, RecognisesZlibAndGzipHeaders) {
    const unsigned char samples[][3] = {
        {0x78, 0x9C, 0}, {0x78, 0x01, 0}, {0x78, 0xDA, 0}, {0x78, 0x5E, 0}, {0x1F, 0x8B, 0},
        {0x78, 0x00, 0}, {0x78, 0x8B, 0}, {0x1F, 0x9C, 0}, {0x8B, 0x1F, 0}, {0x9C, 0x78, 0}, {0, 0, 0},
    };
    for (std::size_t i = 0; i < sizeof samples / sizeof samples[0]; ++i) {
        const char* data = reinterpret_cast<const char*>(samples[i]);
        EXPECT_EQ(Compressor::isCompressed(data, 3), i < 5) << i;
        EXPECT_FALSE(Compressor::isCompressed(data, 2)) << i;
    }
    EXPECT_FALSE(Compressor::isCompressed(nullptr, 10));
}

TEST(Compressor, TracesEntryOfCompressAndDecompress) {
    xch_test::LogCapture log(6);
    Block gz;
    Compressor::compress(gz, "abc", 3, -1);
    std::string out;
    Compressor::decompress(out, gz.data(), gz.size());
    const auto traces = log.messages(6);
    auto count = [&](const char* function) {
        int n = 0;
        for (const auto& line : traces)
            if (line.find("xch_api_compressor.cpp(") != std::string::npos && line.find(function) != std::string::npos)
                ++n;
        return n;
    };
    EXPECT_EQ(count("Compressor::compress("), 1);
    EXPECT_EQ(count("Compressor::decompress("), 1);
}

// Inflates 2 GiB before it can fail (about 7 s and 2 GiB of memory), so it
// runs only on request: --gtest_also_run_disabled_tests.
TEST(Compressor, DISABLED_RefusesToInflateBeyondTheSizeLimit) {
    constexpr std::uint64_t limitMiB = xch::limits::kMaxDecompressedSize >> 20;
    static_assert(xch::limits::kMaxDecompressedSize % (1 << 20) == 0, "the bomb is built in MiB");
    {
        // A small bomb of the same construction inflates normally.
        const Block bomb = zeroBomb(3);
        EXPECT_EQ(decompressed(bomb), Block(3 << 20, '\0'));
    }
    const Block bomb = zeroBomb(static_cast<std::uint32_t>(limitMiB) + 1);
    std::string out;
    try {
        Compressor::decompress(out, bomb.data(), bomb.size());
        ADD_FAILURE() << "inflated " << out.size() << " bytes";
    } catch (const std::runtime_error& e) {
        EXPECT_NE(std::string(e.what()).find("exceeds the limit"), std::string::npos) << e.what();
    }
}

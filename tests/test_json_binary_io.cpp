#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <sstream>
#include <string>

#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>

#include "support/hex.h"
#include "support/random_json.h"

using xch::JsonBinaryIO;
using xch::JsonDocument;
using xch_test::fromHex;
using xch_test::toHex;

namespace {

JsonDocument parse(const std::wstring& text) {
    std::wistringstream in(text);
    JsonDocument doc;
    xch::JsonTextIO::read(in, doc);
    return doc;
}

std::wstring compact(const JsonDocument& doc) {
    std::wostringstream out;
    xch::JsonTextIO::write(out, doc, false);
    return out.str();
}

std::string encode(const JsonDocument& doc) {
    std::string bytes;
    JsonBinaryIO::write(bytes, doc);
    return bytes;
}

// Golden encodings, identical on every platform (strings are UTF-16LE).
TEST(JsonBinaryIO, GoldenEncodingsBothWaysThroughBuffersAndStreams) {
    const struct {
        const wchar_t* json;
        const char* hex;
    } cases[] = {
        {L"{\"a\":1}", "03" "1000000000000000" "05" "0100000000000000" "6100" "06" "01000000"},
        {L"[]", "04" "0000000000000000"},
        {L"\"\"", "05" "0000000000000000"}, // an empty first string
        {L"[null,false,true]", "04" "0300000000000000" "000102"},
        {L"[5,3000000000,-3000000000,18446744073709551615,1.5,-1]",
         "04" "2a00000000000000" "06" "05000000" "07" "005ed0b2" "08" "00a22f4dffffffff"
         "09" "ffffffffffffffff" "0a" "000000000000f83f" "06" "ffffffff"},
        // U+00E9 is one code unit; U+1F600 a surrogate pair.
        {L"\"\u00e9\U0001F600\"", "05" "0300000000000000" "e900" "3dd8" "00de"},
        {L"{\"k\":{\"\":[]}}", "03" "2600000000000000" "05" "0100000000000000" "6b00"
                               "03" "1200000000000000" "05" "0000000000000000" "04" "0000000000000000"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.hex);
        EXPECT_EQ(toHex(encode(parse(c.json))), c.hex);
        std::string bytes = fromHex(c.hex);
        JsonDocument back;
        EXPECT_EQ(JsonBinaryIO::read(bytes.data(), bytes.size(), back), bytes.size());
        EXPECT_EQ(compact(back), c.json);
        EXPECT_EQ(encode(back), bytes); // number kinds survive decoding

        std::ostringstream out;
        JsonBinaryIO::write(out, parse(c.json));
        EXPECT_EQ(out.str(), bytes);
        std::istringstream in(bytes);
        JsonBinaryIO::read(in, back);
        EXPECT_EQ(compact(back), c.json);
    }
}

// The encoding written the plain way, value by value, byte by byte, as a
// reference for the optimised encoder.
void referenceEncode(std::string& out, const xch::JsonValue& v) {
    auto le = [&](std::uint64_t x, int n) {
        for (int i = 0; i < n; ++i) out += static_cast<char>(x >> (8 * i));
    };
    auto str = [&](const wchar_t* s, std::size_t n) {
        std::vector<std::uint16_t> units;
        for (std::size_t i = 0; i < n; ++i) {
            std::uint32_t c = static_cast<std::uint32_t>(s[i]);
            if (c > 0xFFFF) {
                c = std::min<std::uint32_t>(c, 0x10FFFF) - 0x10000;
                units.push_back(static_cast<std::uint16_t>(0xD800 + (c >> 10)));
                units.push_back(static_cast<std::uint16_t>(0xDC00 + (c & 0x3FF)));
            } else {
                units.push_back(static_cast<std::uint16_t>(c));
            }
        }
        out += '\x05';
        le(units.size(), 8);
        for (std::uint16_t u : units) le(u, 2);
    };
    auto container = [&](char tag, auto&& body) {
        out += tag;
        const std::size_t at = out.size();
        out.append(8, '\0');
        body();
        const std::uint64_t size = out.size() - at - 8;
        for (int i = 0; i < 8; ++i) out[at + i] = static_cast<char>(size >> (8 * i));
    };
    if (v.IsNull()) out += '\x00';
    else if (v.IsFalse()) out += '\x01';
    else if (v.IsTrue()) out += '\x02';
    else if (v.IsString()) str(v.GetString(), v.GetStringLength());
    else if (v.IsInt()) { out += '\x06'; le(static_cast<std::uint32_t>(v.GetInt()), 4); }
    else if (v.IsUint()) { out += '\x07'; le(v.GetUint(), 4); }
    else if (v.IsInt64()) { out += '\x08'; le(static_cast<std::uint64_t>(v.GetInt64()), 8); }
    else if (v.IsUint64()) { out += '\x09'; le(v.GetUint64(), 8); }
    else if (v.IsDouble()) { double d = v.GetDouble(); std::uint64_t bits; std::memcpy(&bits, &d, 8); out += '\x0a'; le(bits, 8); }
    else if (v.IsObject())
        container('\x03', [&] { for (const auto& m : v.GetObject()) { str(m.name.GetString(), m.name.GetStringLength()); referenceEncode(out, m.value); } });
    else
        container('\x04', [&] { for (const auto& e : v.GetArray()) referenceEncode(out, e); });
}

} // namespace

TEST(JsonBinaryIO, RandomDocumentsMatchThePlainEncodingAndRoundTrip) {
    std::mt19937_64 rng(12345);
    for (int round = 0; round < 300; ++round) {
        JsonDocument doc;
        if (round % 2) xch_test::randomJson(rng, doc, doc.GetAllocator());
        else xch_test::randomJsonDocument(rng, doc);
        std::string expected;
        referenceEncode(expected, doc);
        const std::string bytes = encode(doc);
        ASSERT_EQ(toHex(bytes), toHex(expected));
        JsonDocument back;
        ASSERT_EQ(JsonBinaryIO::read(bytes.data(), bytes.size(), back), bytes.size());
        // Decoding keeps every number's form; characters beyond U+10FFFF
        // (not characters) come back as U+10FFFF, so compare encodings.
        ASSERT_EQ(toHex(encode(back)), toHex(bytes));
        std::istringstream in(bytes);
        JsonDocument fromStream;
        JsonBinaryIO::read(in, fromStream);
        ASSERT_EQ(encode(fromStream), bytes);
    }
}

TEST(JsonBinaryIO, TruncatedAndHostileInputFailsCleanly) {
    const char* const type = "JsonBinaryIO: Failed to parse all bytes of type";
    const char* const number = "JsonBinaryIO: Failed to read all the number of bytes";
    const char* const string = "JsonBinaryIO: Failed to read all the bytes of string";
    const char* const tag = "JsonBinaryIO: Unknown value type";
    const struct {
        std::string bytes;
        const char* message; // std::length_error, or std::invalid_argument for the tag and name errors
    } cases[] = {
        {"", type},
        {fromHex("0b"), tag},
        {fromHex("ff"), tag},
        {fromHex("03" "1000"), number},
        {fromHex("06" "010000"), number},
        {fromHex("05" "0a00000000000000" "610062006300"), string},
        // 2^62 code units announced: refused before anything is allocated.
        {fromHex("05" "0000000000000040" "6100"), string},
        // An array announcing more bytes than follow runs out of input.
        {fromHex("04" "ffffffffffffff7f" "02"), type},
        {fromHex("03" "0200000000000000" "0202"), "JsonBinaryIO: Object member name is not a string"},
    };
    for (const auto& c : cases) {
        JsonDocument doc;
        try {
            JsonBinaryIO::read(c.bytes.data(), c.bytes.size(), doc);
            ADD_FAILURE() << "accepted " << toHex(c.bytes);
        } catch (const std::length_error& e) {
            EXPECT_STREQ(e.what(), c.message);
        } catch (const std::invalid_argument& e) {
            EXPECT_TRUE(c.message == tag || std::string(c.message).find("name") != std::string::npos);
            EXPECT_STREQ(e.what(), c.message);
        }
    }

    // Nesting beyond the limit: a clear exception, not a stack overflow,
    // when reading 100000 arrays each holding the next, and when writing.
    const std::size_t levels = 100000;
    std::string deep;
    for (std::size_t i = 0; i < levels; ++i) {
        std::uint64_t count = 9 * (levels - 1 - i);
        deep += '\x04';
        for (int b = 0; b < 8; ++b) deep += static_cast<char>(count >> (8 * b));
    }
    JsonDocument doc;
    EXPECT_THROW(JsonBinaryIO::read(deep.data(), deep.size(), doc), std::length_error);
    xch::JsonValue* v = &doc.SetArray();
    for (int i = 0; i < 10000; ++i) {
        v->PushBack(xch::JsonValue(rapidjson::kArrayType), doc.GetAllocator());
        v = &(*v)[0];
    }
    EXPECT_THROW(encode(doc), std::length_error);
    // A refused document leaves nothing behind in a string or on a stream.
    std::string bytes = "kept";
    EXPECT_THROW(JsonBinaryIO::write(bytes, doc), std::length_error);
    EXPECT_EQ(bytes, "kept");
    std::ostringstream out;
    EXPECT_THROW(JsonBinaryIO::write(out, doc), std::length_error);
    EXPECT_EQ(out.str(), "");
}

// A body of one-byte values must not decode into a tree many times its size:
// the tree is bounded by a multiple of the input (plus an allowance).
TEST(JsonBinaryIO, DecodedTreeIsBoundedByTheInputSize) {
    auto arrayOf = [](std::size_t count, const std::string& element) {
        std::string bytes = fromHex("04");
        const std::uint64_t size = count * element.size();
        for (int b = 0; b < 8; ++b) bytes += static_cast<char>(size >> (8 * b));
        bytes.reserve(bytes.size() + size);
        for (std::size_t i = 0; i < count; ++i) bytes += element;
        return bytes;
    };
    const std::string null = fromHex("00"), int32 = fromHex("06" "07000000");
    // Small arrays of nulls fit the allowance; ordinary values (ints at 5
    // bytes each) fit the per-byte factor at any size.
    for (const std::string& bytes : {arrayOf(1u << 20, null), arrayOf(1u << 20, int32)}) {
        JsonDocument doc;
        ASSERT_EQ(JsonBinaryIO::read(bytes.data(), bytes.size(), doc), bytes.size());
        EXPECT_EQ(doc.Size(), 1u << 20);
    }
    // 4 Mi nulls would be 64 MiB of tree from 4 MiB of input.
    const std::string bomb = arrayOf(4u << 20, null);
    JsonDocument doc;
    try {
        JsonBinaryIO::read(bomb.data(), bomb.size(), doc);
        ADD_FAILURE() << "decoded";
    } catch (const std::length_error& e) {
        EXPECT_STREQ(e.what(), "JsonBinaryIO: Decoded document larger than the limit for its encoded size");
    }
    std::istringstream in(bomb);
    EXPECT_THROW(JsonBinaryIO::read(in, doc), std::length_error);
}

// The documents' memory throws when the heap is exhausted instead of handing
// rapidjson a null pointer to write through.
TEST(JsonBinaryIO, ExhaustedMemoryThrows) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "AddressSanitizer aborts on impossible allocation sizes instead of failing them";
#else
    // The results are kept, so that no compiler may assume the allocations
    // succeed and drop them with their null checks.
    void* volatile kept = nullptr;
    JsonDocument doc;
    EXPECT_THROW(kept = doc.GetAllocator().Malloc(SIZE_MAX / 2), std::bad_alloc);
    xch::JsonHeapAllocator heap;
    EXPECT_THROW(kept = heap.Malloc(SIZE_MAX / 2), std::bad_alloc);
    void* p = heap.Malloc(16);
    EXPECT_THROW(kept = heap.Realloc(p, 16, SIZE_MAX / 2), std::bad_alloc);
    EXPECT_EQ(kept, nullptr);
    xch::JsonHeapAllocator::Free(p);
#endif
}

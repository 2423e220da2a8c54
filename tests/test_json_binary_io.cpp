#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>

using xch::JsonBinaryIO;
using xch::JsonDocument;

namespace {

JsonDocument parse(const std::wstring& text) {
    std::wistringstream in(text);
    JsonDocument doc;
    xch::JsonTextIO::read(in, doc);
    EXPECT_FALSE(doc.HasParseError()) << "test input does not parse";
    return doc;
}

std::string encode(const JsonDocument& doc) {
    std::string bytes;
    JsonBinaryIO::write(bytes, doc);
    return bytes;
}

std::string hex(const std::string& bytes) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    for (unsigned char b : bytes) {
        out += digits[b >> 4];
        out += digits[b & 15];
    }
    return out;
}

std::string unhex(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2)
        out += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
    return out;
}

std::wstring compact(const JsonDocument& doc) {
    std::wostringstream out;
    xch::JsonTextIO::write(out, doc, false);
    return out.str();
}

void expectThrowWith(const std::string& bytes, const char* message, bool lengthError) {
    JsonDocument doc;
    try {
        JsonBinaryIO::read(bytes.data(), bytes.size(), doc);
        ADD_FAILURE() << "no exception for " << hex(bytes);
    } catch (const std::length_error& e) {
        EXPECT_TRUE(lengthError) << e.what();
        EXPECT_STREQ(e.what(), message);
    } catch (const std::invalid_argument& e) {
        EXPECT_FALSE(lengthError) << e.what();
        EXPECT_STREQ(e.what(), message);
    }
    // The stream entry point behaves the same.
    std::istringstream in(bytes);
    EXPECT_ANY_THROW(JsonBinaryIO::read(in, doc));
}

} // namespace

// Golden encodings, identical on every platform (strings are UTF-16LE).
TEST(JsonBinaryIO, GoldenEncodings) {
    EXPECT_EQ(hex(encode(parse(L"{\"a\":1}"))),
              "03" "1000000000000000" "05" "0100000000000000" "6100" "06" "01000000");
    EXPECT_EQ(hex(encode(parse(L"[]"))), "04" "0000000000000000");
    EXPECT_EQ(hex(encode(parse(L"[null,false,true]"))), "04" "0300000000000000" "000102");
    EXPECT_EQ(hex(encode(parse(L"[5,3000000000,-3000000000,18446744073709551615,1.5,-1]"))),
              "04" "2a00000000000000"
              "06" "05000000" "07" "005ed0b2" "08" "00a22f4dffffffff"
              "09" "ffffffffffffffff" "0a" "000000000000f83f" "06" "ffffffff");
    // U+00E9 is one code unit; U+1F600 a surrogate pair (two units).
    EXPECT_EQ(hex(encode(parse(L"\"\u00e9\U0001F600\""))), "05" "0300000000000000" "e900" "3dd8" "00de");
    EXPECT_EQ(hex(encode(parse(L"{\"k\":{\"\":[]}}"))),
              "03" "2600000000000000" "05" "0100000000000000" "6b00"
              "03" "1200000000000000" "05" "0000000000000000" "04" "0000000000000000");
}

TEST(JsonBinaryIO, DecodesGoldenBytesAndKeepsNumberKinds) {
    JsonDocument doc;
    std::string bytes = unhex("04" "2a00000000000000" "06" "05000000" "07" "005ed0b2" "08" "00a22f4dffffffff"
                              "09" "ffffffffffffffff" "0a" "000000000000f83f" "06" "ffffffff");
    EXPECT_EQ(JsonBinaryIO::read(bytes.data(), bytes.size(), doc), bytes.size());
    ASSERT_TRUE(doc.IsArray());
    EXPECT_TRUE(doc[0].IsInt());
    EXPECT_EQ(doc[1].GetUint(), 3000000000u);
    EXPECT_EQ(doc[2].GetInt64(), -3000000000ll);
    EXPECT_EQ(doc[3].GetUint64(), 18446744073709551615ull);
    EXPECT_TRUE(doc[4].IsDouble());
    EXPECT_EQ(doc[5].GetInt(), -1);

    std::string text = unhex("05" "0300000000000000" "e900" "3dd8" "00de");
    JsonBinaryIO::read(text.data(), text.size(), doc);
    EXPECT_EQ(std::wstring(doc.GetString(), doc.GetStringLength()), L"\u00e9\U0001F600");
}

TEST(JsonBinaryIO, StreamAndBufferFormsAgree) {
    JsonDocument doc = parse(L"{\"list\":[1,2.5,\"x\",{\"deep\":[true,null]}],\"s\":\"caf\u00e9\"}");
    std::ostringstream out;
    JsonBinaryIO::write(out, doc);
    EXPECT_EQ(out.str(), encode(doc));
    std::istringstream in(out.str());
    JsonDocument back;
    JsonBinaryIO::read(in, back);
    EXPECT_EQ(compact(back), compact(doc));
}

TEST(JsonBinaryIO, RandomDocumentsRoundTrip) {
    std::mt19937_64 rng(12345);
    for (int round = 0; round < 50; ++round) {
        JsonDocument doc;
        auto& a = doc.GetAllocator();
        doc.SetObject();
        for (int i = 0; i < 20; ++i) {
            std::wstring key = L"k" + std::to_wstring(i);
            xch::JsonValue v;
            switch (rng() % 6) {
            case 0: v.SetInt(static_cast<int>(rng())); break;
            case 1: v.SetUint64(rng()); break;
            case 2: v.SetInt64(-static_cast<std::int64_t>(rng() >> 1)); break;
            case 3: v.SetDouble(std::ldexp(static_cast<double>(rng() % 1000000), static_cast<int>(rng() % 200) - 100)); break;
            case 4: {
                std::wstring s;
                for (int c = 0, n = static_cast<int>(rng() % 30); c < n; ++c)
                    s += static_cast<wchar_t>(0x20 + rng() % 0x2000);
                v.SetString(s.c_str(), static_cast<rapidjson::SizeType>(s.size()), a);
                break;
            }
            default: {
                v.SetArray();
                for (int e = 0, n = static_cast<int>(rng() % 5); e < n; ++e) v.PushBack(xch::JsonValue(e % 2 == 0), a);
            }
            }
            doc.AddMember(xch::JsonValue(key.c_str(), a), v, a);
        }
        std::string bytes = encode(doc);
        JsonDocument back;
        ASSERT_EQ(JsonBinaryIO::read(bytes.data(), bytes.size(), back), bytes.size());
        ASSERT_EQ(compact(back), compact(doc));
        ASSERT_EQ(encode(back), bytes);
    }
}

TEST(JsonBinaryIO, TruncatedAndHostileInputFailsCleanly) {
    expectThrowWith("", "JsonBinaryIO: Failed to parse all bytes of type", true);
    expectThrowWith(unhex("0b"), "JsonBinaryIO: Unknown value type", false);
    expectThrowWith(unhex("ff"), "JsonBinaryIO: Unknown value type", false);
    expectThrowWith(unhex("03" "1000"), "JsonBinaryIO: Failed to read all the number of bytes", true);
    expectThrowWith(unhex("06" "010000"), "JsonBinaryIO: Failed to read all the number of bytes", true);
    expectThrowWith(unhex("0a" "00000000000000"), "JsonBinaryIO: Failed to read all the number of bytes", true);
    expectThrowWith(unhex("05" "0a00000000000000" "610062006300"), "JsonBinaryIO: Failed to read all the bytes of string", true);
    // A string announcing 2^62 code units fails before anything is allocated.
    expectThrowWith(unhex("05" "0000000000000040" "6100"), "JsonBinaryIO: Failed to read all the bytes of string", true);
    // An array announcing more bytes than follow runs out of input.
    expectThrowWith(unhex("04" "ffffffffffffff7f" "02"), "JsonBinaryIO: Failed to parse all bytes of type", true);
    // Object member names must be strings.
    expectThrowWith(unhex("03" "0200000000000000" "0202"), "JsonBinaryIO: Object member name is not a string", false);

    // Nesting beyond the limit: a clear exception, not a stack overflow.
    // 100000 arrays, each holding the next.
    const std::size_t levels = 100000;
    std::string deep;
    for (std::size_t i = 0; i < levels; ++i) {
        std::uint64_t count = 9 * (levels - 1 - i);
        deep += '\x04';
        for (int b = 0; b < 8; ++b) deep += static_cast<char>(count >> (8 * b));
    }
    JsonDocument doc;
    EXPECT_THROW(JsonBinaryIO::read(deep.data(), deep.size(), doc), std::length_error);
    std::string fine;
    for (int i = 0; i < 100; ++i) fine += unhex("04" "0100000000000000");
    fine += unhex("00");
    EXPECT_NO_THROW(JsonBinaryIO::read(fine.data(), fine.size(), doc));
}

TEST(JsonBinaryIO, WritingTooDeepADocumentThrows) {
    JsonDocument built;
    xch::JsonValue* v = &built;
    v->SetArray();
    for (int i = 0; i < 10000; ++i) {
        v->PushBack(xch::JsonValue(rapidjson::kArrayType), built.GetAllocator());
        v = &(*v)[0];
    }
    std::string bytes;
    EXPECT_THROW(JsonBinaryIO::write(bytes, built), std::length_error);
}

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <xch_api/xch_api_base64.h>

using xch::Base64;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Pair = std::pair<std::size_t, std::size_t>;

const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

Bytes bytesOf(const std::string& s) { return Bytes(s.begin(), s.end()); }

std::wstring widen(const std::string& s) { return std::wstring(s.begin(), s.end()); }

// decodeInto over a buffer of decodedSize(n) bytes plus guard bytes that
// must stay untouched; `bytes` receives what was written.
template <class Char>
Pair decodeChecked(const std::basic_string<Char>& text, Bytes& bytes) {
    const std::size_t bound = Base64::decodedSize(text.size());
    Bytes buffer(bound + 8, 0xA5);
    const Pair result = Base64::decodeInto(buffer.data(), text.data(), text.size());
    EXPECT_LE(result.first, bound) << "text of " << text.size() << " characters";
    for (std::size_t i = bound; i < buffer.size(); ++i) EXPECT_EQ(buffer[i], 0xA5) << "written past the bound";
    bytes.assign(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(result.first));
    return result;
}

} // namespace

TEST(Base64, RfcVectorsEncodeAndDecodeInBothCharacterTypes) {
    const std::pair<std::string, std::string> vectors[] = {
        {"", ""},           {"f", "Zg=="},         {"fo", "Zm8="},        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="}, {"fooba", "Zm9vYmE="}, {"foobar", "Zm9vYmFy"},
    };
    for (const auto& [plain, text] : vectors) {
        SCOPED_TRACE(plain);
        EXPECT_EQ(Base64::encode(plain.data(), plain.size()), text);
        EXPECT_EQ(Base64::encodeWide(plain.data(), plain.size()), widen(text));
        EXPECT_EQ(Base64::decode(text), bytesOf(plain));
        EXPECT_EQ(Base64::decode(widen(text)), bytesOf(plain));

        // Decoding stops at the first "=", so padding is never consumed.
        const std::size_t unpadded = text.find('=') == std::string::npos ? text.size() : text.find('=');
        Bytes bytes;
        EXPECT_EQ(decodeChecked(text, bytes), Pair(plain.size(), unpadded));
        EXPECT_EQ(bytes, bytesOf(plain));
        EXPECT_EQ(decodeChecked(widen(text), bytes), Pair(plain.size(), unpadded));
        EXPECT_EQ(bytes, bytesOf(plain));
    }
}

TEST(Base64, EveryAlphabetCharacterHasItsSixBitValue) {
    // Pack the values 0..63 as consecutive 6-bit groups: their encoding is
    // the alphabet in order.
    Bytes packed;
    std::uint32_t bits = 0;
    int count = 0;
    for (std::uint32_t value = 0; value < 64; ++value) {
        bits = (bits << 6) | value;
        count += 6;
        while (count >= 8) {
            count -= 8;
            packed.push_back(static_cast<std::uint8_t>(bits >> count));
        }
    }
    ASSERT_EQ(packed.size(), 48u);
    EXPECT_EQ(Base64::encode(packed.data(), packed.size()), kAlphabet);
    EXPECT_EQ(Base64::decode(kAlphabet), packed);
    EXPECT_EQ(Base64::decode(widen(kAlphabet)), packed);
}

TEST(Base64, PartialGroupsAndStoppingCharacters) {
    struct Case {
        std::string text;
        std::string bytes;
        std::size_t consumed;
    };
    const Case cases[] = {
        {"TWFu", "Man", 4},
        {"TWE=", "Ma", 3},
        {"TW E=", "M", 2},        // a blank ends decoding
        {"TWE", "Ma", 3},         // unpadded final group of three
        {"TW", "M", 2},           // unpadded final group of two
        {"T", "", 1},             // a lone character gives nothing
        {"TWFu\nTWFu", "Man", 4}, // a line break ends decoding
        {"TWFuTW-u", "ManM", 6},  // URL-safe letters are not in the alphabet
        {"TWFu=TWFu", "Man", 4},
        {"=TWFu", "", 0},
        {std::string("TWF\0TWFu", 8), "Ma", 3},
        {"TWFu\xC3\x84", "Man", 4}, // bytes above 0x7F are not letters
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        Bytes bytes;
        EXPECT_EQ(decodeChecked(c.text, bytes), Pair(c.bytes.size(), c.consumed));
        EXPECT_EQ(bytes, bytesOf(c.bytes));
        EXPECT_EQ(decodeChecked(widen(c.text), bytes), Pair(c.bytes.size(), c.consumed));
        EXPECT_EQ(bytes, bytesOf(c.bytes));
        EXPECT_EQ(Base64::decode(c.text), bytesOf(c.bytes));
    }
}

TEST(Base64, WideCharactersBeyondOneByteStopDecoding) {
    // 0x154, 0x157 and 0x10057 share their low byte with 'T' and 'W'; they
    // must not be taken for those letters.
    struct Case {
        std::wstring text;
        std::string bytes;
        std::size_t consumed;
    };
    std::vector<Case> cases = {
        {std::wstring(L"TWFu") + wchar_t(0x154) + L"WFu", "Man", 4},
        {std::wstring(L"TWFuT") + wchar_t(0x157) + L"Fu", "Man", 5},
        {std::wstring(L"TWFuTW") + wchar_t(0x2B00) + L"u", "ManM", 6},
    };
    if (sizeof(wchar_t) == 4) cases.push_back({std::wstring(L"TWFuT") + wchar_t(0x10057) + L"Fu", "Man", 5});
    for (const auto& c : cases) {
        Bytes bytes;
        EXPECT_EQ(decodeChecked(c.text, bytes), Pair(c.bytes.size(), c.consumed));
        EXPECT_EQ(bytes, bytesOf(c.bytes));
    }
}

TEST(Base64, RandomBlocksOfEveryLengthRoundTrip) {
    std::mt19937 random(20240521);
    for (std::size_t length = 0; length <= 64; ++length) {
        SCOPED_TRACE(length);
        Bytes block(length);
        for (auto& b : block) b = static_cast<std::uint8_t>(random());

        const std::string text = Base64::encode(block.data(), block.size());
        ASSERT_EQ(text.size(), Base64::encodedSize(length));
        EXPECT_EQ(text.size() % 4, 0u);
        EXPECT_EQ(text.find_first_not_of(kAlphabet + "="), std::string::npos);
        const std::size_t padding = (3 - length % 3) % 3;
        EXPECT_EQ(text.find('='), padding ? text.size() - padding : std::string::npos);
        EXPECT_EQ(Base64::encodeWide(block.data(), block.size()), widen(text));

        std::string into(text.size() + 4, '#');
        EXPECT_EQ(Base64::encodeInto(&into[0], block.data(), block.size()), text.size());
        EXPECT_EQ(into, text + "####");

        Bytes bytes;
        EXPECT_EQ(decodeChecked(text, bytes), Pair(length, text.size() - padding));
        EXPECT_EQ(bytes, block);
        EXPECT_EQ(decodeChecked(widen(text), bytes), Pair(length, text.size() - padding));
        EXPECT_EQ(bytes, block);

        // Without padding the same bytes come back, and decodedSize still
        // bounds what is written.
        const std::string bare = text.substr(0, text.size() - padding);
        EXPECT_EQ(decodeChecked(bare, bytes), Pair(length, bare.size()));
        EXPECT_EQ(bytes, block);
    }
}

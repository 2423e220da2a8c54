#include <gtest/gtest.h>

#include <random>
#include <string>

#include <xch_api/xch_api_base64.h>

using xch::Base64;
using Bytes = std::vector<std::uint8_t>;

static std::wstring widen(const std::string& s) { return std::wstring(s.begin(), s.end()); }

// Expects `text` to decode to `plain` after `consumed` characters, both through decode() and through decodeInto()
// over decodedSize() bytes followed by guard bytes that must stay untouched.
template <class Char>
static void expectDecodes(const std::basic_string<Char>& text, const std::string& plain, std::size_t consumed) {
    const std::size_t bound = Base64::decodedSize(text.size());
    ASSERT_LE(plain.size(), bound) << "text of " << text.size() << " characters";
    Bytes buffer(bound + 8, 0xA5);
    EXPECT_EQ(Base64::decodeInto(buffer.data(), text.data(), text.size()), std::make_pair(plain.size(), consumed));
    EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + plain.size()), Bytes(plain.begin(), plain.end()));
    EXPECT_EQ(Bytes(buffer.begin() + bound, buffer.end()), Bytes(8, 0xA5)) << "written past decodedSize";
    EXPECT_EQ(Base64::decode(text), Bytes(plain.begin(), plain.end()));
}

TEST(Base64, EncodesExactlyAndDecodingStopsAtTheFirstNonLetter) {
    std::string sixBitValues; // the values 0..63 in order, as consecutive 6-bit groups
    for (unsigned v = 0; v < 64; v += 4)
        for (int shift : {16, 8, 0}) sixBitValues += char((v << 18 | (v + 1) << 12 | (v + 2) << 6 | (v + 3)) >> shift);
    struct Case { std::string text, plain; std::size_t consumed; bool canonical; }; // canonical: encode(plain)
    const Case cases[] = {
        {"", "", 0, true}, {"Zg==", "f", 2, true}, {"Zm8=", "fo", 3, true}, {"Zm9v", "foo", 4, true},
        {"Zm9vYg==", "foob", 6, true}, {"Zm9vYmE=", "fooba", 7, true}, {"Zm9vYmFy", "foobar", 8, true},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/", sixBitValues, 64, true},
        {"TWE", "Ma", 3, false}, {"TW", "M", 2, false}, {"T", "", 1, false},  // unpadded final groups
        {"TW E=", "M", 2, false}, {"TWFu\nTWFu", "Man", 4, false},            // blanks and line breaks stop
        {"TWFuTW-u", "ManM", 6, false}, {"TWFu\xC3\x84", "Man", 4, false}, // URL-safe or non-ASCII: no letters
        {"TWFu=TWFu", "Man", 4, false}, {"=TWFu", "", 0, false}, {std::string("TWF\0TWFu", 8), "Ma", 3, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        expectDecodes(c.text, c.plain, c.consumed);
        expectDecodes(widen(c.text), c.plain, c.consumed);
        if (!c.canonical) continue;
        EXPECT_EQ(Base64::encode(c.plain.data(), c.plain.size()), c.text);
        EXPECT_EQ(Base64::encodeWide(c.plain.data(), c.plain.size()), widen(c.text));
    }
    // Wide characters sharing their low byte with 'T' or 'W' (0x154, 0x157, 0x10057) are not those letters.
    expectDecodes(std::wstring(L"TWFu") + wchar_t(0x154) + L"WFu", "Man", 4);
    expectDecodes(std::wstring(L"TWFuT") + wchar_t(0x157) + L"Fu", "Man", 5);
    expectDecodes(std::wstring(L"TWFuTW") + wchar_t(0x2B00) + L"u", "ManM", 6);
    if (sizeof(wchar_t) == 4) expectDecodes(std::wstring(L"TWFuT") + wchar_t(0x10057) + L"Fu", "Man", 5);
}

TEST(Base64, RandomBlocksOfEveryLengthRoundTrip) {
    std::string block; // random bytes, one more for each length
    for (std::mt19937 random(20240521); block.size() <= 64; block += static_cast<char>(random())) {
        SCOPED_TRACE(block.size());
        const std::string text = Base64::encode(block.data(), block.size());
        ASSERT_EQ(text.size(), Base64::encodedSize(block.size()));
        const std::size_t padding = (3 - block.size() % 3) % 3, letters = text.size() - padding;
        EXPECT_EQ(text.find('='), padding ? letters : std::string::npos);
        std::string into(text.size() + 4, '#');
        EXPECT_EQ(Base64::encodeInto(&into[0], block.data(), block.size()), text.size());
        EXPECT_EQ(into, text + "####");
        expectDecodes(text, block, letters);
        expectDecodes(widen(text), block, letters);
        expectDecodes(text.substr(0, letters), block, letters); // unpadded
    }
}

// Reference codec, one bit group at a time: what every path of the library (vector or not) must match.
static std::string referenceEncode(const std::string& bytes) {
    static const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    std::uint32_t bits = 0;
    int held = 0;
    for (unsigned char byte : bytes) {
        bits = bits << 8 | byte, held += 8;
        for (; held >= 6; held -= 6) text += letters[(bits >> (held - 6)) & 63];
    }
    if (held) text += letters[(bits << (6 - held)) & 63];
    while (text.size() % 4) text += '=';
    return text;
}
template <class Char> static std::pair<std::string, std::size_t> referenceDecode(const std::basic_string<Char>& text) {
    static const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    std::uint32_t bits = 0;
    int held = 0;
    std::size_t used = 0;
    for (; used < text.size(); ++used) {
        const auto c = static_cast<std::make_unsigned_t<Char>>(text[used]);
        const std::size_t value = c < 128 ? letters.find(char(c)) : std::string::npos;
        if (value == std::string::npos) break;
        bits = bits << 6 | std::uint32_t(value), held += 6;
        if (held >= 8) bytes += char(bits >> (held - 8)), held -= 8;
    }
    return {bytes, used};
}

// Long texts go through the vector kernels where the processor has them, in blocks, with the rest done group by
// group: every length around the block sizes, and a non-letter at every position of a text several blocks long.
TEST(Base64, LongTextsMatchTheReferenceAtEveryLengthAndStoppingPoint) {
    std::mt19937 random(7);
    std::string block(4000, '\0');
    for (char& c : block) c = static_cast<char>(random());
    for (std::size_t size = 0; size <= block.size(); size += size < 300 ? 1 : 397) {
        SCOPED_TRACE(size);
        const std::string bytes = block.substr(0, size), text = referenceEncode(bytes);
        ASSERT_EQ(Base64::encode(bytes.data(), size), text);
        ASSERT_EQ(Base64::encodeWide(bytes.data(), size), widen(text));
        std::wstring into(text.size() + 40, L'#'); // nothing written past the text
        ASSERT_EQ(Base64::encodeInto(&into[0], bytes.data(), size), text.size());
        ASSERT_EQ(into, widen(text) + std::wstring(40, L'#'));
        expectDecodes(text, bytes, text.find('=') == std::string::npos ? text.size() : text.find('='));
        expectDecodes(widen(text), bytes, text.find('=') == std::string::npos ? text.size() : text.find('='));
    }
    const std::string text = referenceEncode(block.substr(0, 300)); // 400 characters
    const std::wstring wide = widen(text);
    std::vector<wchar_t> strangers = {L'=', L' ', L'-', L'_', L'\0', L'@', L'[', L'`', L'{', L'.', L':', wchar_t(0x7F),
                                      wchar_t(0xC1), wchar_t(0x141), wchar_t(0x2B2F), wchar_t(0xFF2F)};
    if (sizeof(wchar_t) == 4) strangers.insert(strangers.end(), {wchar_t(0x10041), wchar_t(-1), wchar_t(0x7FFFFF61)});
    for (std::size_t at = 0; at < text.size(); ++at) {
        for (wchar_t stranger : strangers) {
            SCOPED_TRACE("at " + std::to_string(at) + " U+" + std::to_string(unsigned(stranger)));
            std::wstring w = wide;
            w[at] = stranger;
            const auto expected = referenceDecode(w);
            ASSERT_EQ(expected.second, at);
            expectDecodes(w, expected.first, at);
            if (unsigned(stranger) < 256) {
                std::string n = text;
                n[at] = char(stranger);
                expectDecodes(n, expected.first, at);
            }
        }
    }
}

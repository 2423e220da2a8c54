#include <xch_api/xch_api_base64.h>

#include <type_traits>

#include "internal/base64_vector.h"

namespace xch {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kPad = '=';

// Marks a character outside the alphabet ("=" included). Its high bit lets
// one test cover a whole group of four looked-up values.
constexpr std::uint8_t kStop = 0x80;

// The 6-bit value of every byte-sized character, kStop for the others.
struct DecodeTable {
    std::uint8_t value[256];
    constexpr DecodeTable() : value() {
        for (auto& v : value) v = kStop;
        for (std::uint8_t i = 0; i < 64; ++i) value[static_cast<unsigned char>(kAlphabet[i])] = i;
    }
};
constexpr DecodeTable kDecode{};

template <class Char>
inline std::uint8_t sextet(Char c) {
    using Unsigned = std::make_unsigned_t<Char>;
    const Unsigned u = static_cast<Unsigned>(c);
    if constexpr (sizeof(Char) == 1) {
        return kDecode.value[u];
    } else {
        // Entry 255 is kStop, so clamping keeps the lookup free of branches.
        return kDecode.value[u < 255 ? u : 255];
    }
}

template <class Char>
inline Char letter(std::uint32_t bits) {
    return static_cast<Char>(kAlphabet[bits & 63]);
}

template <class Char>
std::basic_string<Char> encodeToString(const void* data, std::size_t size) {
    std::basic_string<Char> text(Base64::encodedSize(size), Char(0));
    Base64::encodeInto(text.data(), data, size);
    return text;
}

template <class Char>
std::vector<std::uint8_t> decodeToVector(const Char* text, std::size_t size) {
    std::vector<std::uint8_t> bytes(Base64::decodedSize(size));
    bytes.resize(Base64::decodeInto(bytes.data(), text, size).first);
    return bytes;
}

} // namespace

template <class Char>
std::size_t Base64::encodeImpl(Char* dest, const std::uint8_t* src, std::size_t n) {
    // The vector kernel takes the bulk where the processor has it; the
    // groups it leaves are encoded here alike.
    const std::size_t vectorBytes = base64_vector::encode(dest, src, n);
    Char* out = dest + vectorBytes / 3 * 4;
    src += vectorBytes;
    n -= vectorBytes;
    const std::uint8_t* const wholeEnd = src + (n - n % 3);
    for (; src != wholeEnd; src += 3, out += 4) {
        const std::uint32_t v = (std::uint32_t(src[0]) << 16) | (std::uint32_t(src[1]) << 8) | src[2];
        out[0] = letter<Char>(v >> 18);
        out[1] = letter<Char>(v >> 12);
        out[2] = letter<Char>(v >> 6);
        out[3] = letter<Char>(v);
    }
    const std::size_t rest = n % 3;
    if (rest != 0) {
        std::uint32_t v = std::uint32_t(src[0]) << 16;
        if (rest == 2) v |= std::uint32_t(src[1]) << 8;
        out[0] = letter<Char>(v >> 18);
        out[1] = letter<Char>(v >> 12);
        out[2] = rest == 2 ? letter<Char>(v >> 6) : static_cast<Char>(kPad);
        out[3] = static_cast<Char>(kPad);
        out += 4;
    }
    return static_cast<std::size_t>(out - dest);
}

template <class Char>
std::pair<std::size_t, std::size_t> Base64::decodeImpl(std::uint8_t* dest, const Char* src, std::size_t n) {
    // The vector kernel stops before the first block it cannot take whole;
    // from there on, decoding goes group by group and finds the exact
    // stopping point.
    std::size_t used = base64_vector::decode(dest, src, n);
    std::uint8_t* out = dest + used / 4 * 3;
    // Whole groups of four alphabet characters.
    for (; n - used >= 4; used += 4, out += 3) {
        const std::uint8_t a = sextet(src[used]);
        const std::uint8_t b = sextet(src[used + 1]);
        const std::uint8_t c = sextet(src[used + 2]);
        const std::uint8_t d = sextet(src[used + 3]);
        if ((a | b | c | d) & kStop) break;
        const std::uint32_t v = (std::uint32_t(a) << 18) | (std::uint32_t(b) << 12) | (std::uint32_t(c) << 6) | d;
        out[0] = static_cast<std::uint8_t>(v >> 16);
        out[1] = static_cast<std::uint8_t>(v >> 8);
        out[2] = static_cast<std::uint8_t>(v);
    }
    // What is left before the end or the stopping character: fewer than
    // four characters, giving one byte fewer than characters.
    std::uint32_t v = 0;
    int k = 0;
    for (; used < n && k < 3; ++used, ++k) {
        const std::uint8_t s = sextet(src[used]);
        if (s & kStop) break;
        v = (v << 6) | s;
    }
    if (k == 2) {
        *out++ = static_cast<std::uint8_t>(v >> 4);
    } else if (k == 3) {
        *out++ = static_cast<std::uint8_t>(v >> 10);
        *out++ = static_cast<std::uint8_t>(v >> 2);
    }
    return {static_cast<std::size_t>(out - dest), used};
}

std::string Base64::encode(const void* data, std::size_t size) {
    return encodeToString<char>(data, size);
}

std::wstring Base64::encodeWide(const void* data, std::size_t size) {
    return encodeToString<wchar_t>(data, size);
}

std::vector<std::uint8_t> Base64::decode(const char* text, std::size_t size) {
    return decodeToVector(text, size);
}

std::vector<std::uint8_t> Base64::decode(const wchar_t* text, std::size_t size) {
    return decodeToVector(text, size);
}

std::pair<std::size_t, std::size_t> Base64::decodeInto(std::uint8_t* dest, const char* text, std::size_t size) {
    return decodeImpl(dest, text, size);
}

std::pair<std::size_t, std::size_t> Base64::decodeInto(std::uint8_t* dest, const wchar_t* text, std::size_t size) {
    return decodeImpl(dest, text, size);
}

std::size_t Base64::encodeInto(char* dest, const void* data, std::size_t size) {
    return encodeImpl(dest, static_cast<const std::uint8_t*>(data), size);
}

std::size_t Base64::encodeInto(wchar_t* dest, const void* data, std::size_t size) {
    return encodeImpl(dest, static_cast<const std::uint8_t*>(data), size);
}

} // namespace xch

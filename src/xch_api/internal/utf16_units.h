// Wide strings to and from UTF-16LE code units, the string form of binary
// JSON on every platform. Where wchar_t is 16 bits the units are copied;
// where it is 32 bits characters beyond the basic plane become surrogate
// pairs and back.
#pragma once

#include <cstddef>
#include <cstdint>

#include <xch_api/internal/byte_order.h>

namespace xch {
namespace utf16 {

// The number of UTF-16 code units of `size` wide characters.
inline std::size_t unitCount(const wchar_t* text, std::size_t size) {
    if constexpr (sizeof(wchar_t) == 2) {
        (void)text;
        return size;
    } else {
        std::size_t pairs = 0;
        for (std::size_t i = 0; i < size; ++i) pairs += static_cast<std::uint32_t>(text[i]) > 0xFFFF;
        return size + pairs;
    }
}

// Writes `size` wide characters as one UTF-16LE code unit each at `out`
// and returns true, or returns false (having written garbage) when a
// character needs a surrogate pair; store() then writes them.
inline bool storeSingleUnits(unsigned char* out, const wchar_t* text, std::size_t size) {
    std::uint32_t beyond = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const std::uint32_t c = static_cast<std::uint32_t>(text[i]);
        bytes::storeLE(out + 2 * i, static_cast<std::uint16_t>(c));
        beyond |= c >> 16;
    }
    return sizeof(wchar_t) == 2 || beyond == 0;
}

// Writes `size` wide characters as their unitCount() UTF-16LE code units at
// `out`. A 32-bit value beyond U+10FFFF is not a character; it is written
// as the pair of U+10FFFF so that the unit count stays right.
inline void store(unsigned char* out, const wchar_t* text, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        std::uint32_t c = static_cast<std::uint32_t>(text[i]);
        if (c > 0xFFFF) {
            if (c > 0x10FFFF) c = 0x10FFFF;
            c -= 0x10000;
            bytes::storeLE(out, static_cast<std::uint16_t>(0xD800 + (c >> 10)));
            bytes::storeLE(out + 2, static_cast<std::uint16_t>(0xDC00 + (c & 0x3FF)));
            out += 4;
        } else {
            bytes::storeLE(out, static_cast<std::uint16_t>(c));
            out += 2;
        }
    }
}

// Reads `units` UTF-16LE code units from `in` into `out` (room for `units`
// characters) and returns the number of characters. Where wchar_t is 32
// bits a high surrogate followed by a low one becomes one character; any
// other surrogate is kept as it is.
inline std::size_t load(wchar_t* out, const unsigned char* in, std::size_t units) {
    std::uint32_t highSurrogates = 0; // an integer, not a bool: the loop vectorizes
    for (std::size_t i = 0; i < units; ++i) {
        const std::uint16_t u = bytes::loadLE<std::uint16_t>(in + 2 * i);
        out[i] = static_cast<wchar_t>(u);
        highSurrogates |= (u & 0xFC00) == 0xD800 ? 1u : 0u;
    }
    if (sizeof(wchar_t) == 2 || !highSurrogates) return units;
    std::size_t length = 0;
    for (std::size_t i = 0; i < units; ++i) {
        std::uint32_t c = bytes::loadLE<std::uint16_t>(in + 2 * i);
        if ((c & 0xFC00) == 0xD800 && i + 1 < units) {
            const std::uint32_t low = bytes::loadLE<std::uint16_t>(in + 2 * i + 2);
            if ((low & 0xFC00) == 0xDC00) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            }
        }
        out[length++] = static_cast<wchar_t>(c);
    }
    return length;
}

} // namespace utf16
} // namespace xch

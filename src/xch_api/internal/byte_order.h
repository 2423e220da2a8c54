// Little-endian loads and stores that compile to plain moves on
// little-endian hosts and stay correct on big-endian ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace xch {
namespace bytes {

#if defined(__BYTE_ORDER__) && defined(__ORDER_BIG_ENDIAN__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
constexpr bool kLittleEndianHost = false;
#else
constexpr bool kLittleEndianHost = true; // x86, x86-64, little-endian ARM: every target of the library
#endif

// Stores `value` (an integer or double) as sizeof(T) little-endian bytes.
template <class T>
inline void storeLE(unsigned char* out, T value) {
    if constexpr (kLittleEndianHost) {
        std::memcpy(out, &value, sizeof(T));
    } else {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof(T));
        for (std::size_t i = 0; i < sizeof(T); ++i) out[i] = static_cast<unsigned char>(bits >> (8 * i));
    }
}

// Loads sizeof(T) little-endian bytes as a T.
template <class T>
inline T loadLE(const unsigned char* in) {
    T value;
    if constexpr (kLittleEndianHost) {
        std::memcpy(&value, in, sizeof(T));
    } else {
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i) bits |= static_cast<std::uint64_t>(in[i]) << (8 * i);
        std::memcpy(&value, &bits, sizeof(T));
    }
    return value;
}

} // namespace bytes
} // namespace xch

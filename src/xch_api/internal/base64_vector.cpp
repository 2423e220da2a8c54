#include "base64_vector.h"

// AVX2 on x86-64 with GCC, Clang and MSVC. Not with MinGW: GCC cannot align
// the Windows stack to 32 bytes, so spilled vectors would fault.
#if (defined(__x86_64__) || defined(_M_X64)) && !(defined(_WIN32) && defined(__GNUC__))
#  define XCH_BASE64_AVX2 1
#  include <immintrin.h>
#  if defined(_MSC_VER) && !defined(__clang__)
#    include <intrin.h>
#    define XCH_AVX2_FUNCTION
#  else
#    define XCH_AVX2_FUNCTION __attribute__((target("avx2")))
#  endif
#endif

namespace xch {
namespace base64_vector {

#if defined(XCH_BASE64_AVX2)

namespace {

bool detectAvx2() {
#  if defined(_MSC_VER) && !defined(__clang__)
    int info[4];
    __cpuid(info, 0);
    if (info[0] < 7) return false;
    __cpuid(info, 1);
    const bool osSavesYmm = (info[2] & (1 << 27)) && (info[2] & (1 << 28)) && (_xgetbv(0) & 6) == 6;
    if (!osSavesYmm) return false;
    __cpuidex(info, 7, 0);
    return (info[1] & (1 << 5)) != 0;
#  else
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") != 0;  // includes the OS's support of the registers
#  endif
}

bool hasAvx2() {
    static const bool has = detectAvx2();
    return has;
}

// 24 bytes (of the 28 readable at src) into their 32 base64 letters.
XCH_AVX2_FUNCTION inline __m256i encodeBlock(const std::uint8_t* src) {
    const __m128i lo = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
    const __m128i hi = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 12));
    __m256i in = _mm256_inserti128_si256(_mm256_castsi128_si256(lo), hi, 1);
    // Each 32-bit lane gets its 3 bytes as b1 b0 b2 b1, so that two 16-bit
    // multiplies move the four 6-bit fields to the four bytes.
    in = _mm256_shuffle_epi8(in, _mm256_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10,  //
                                                  1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
    const __m256i ac = _mm256_mulhi_epu16(_mm256_and_si256(in, _mm256_set1_epi32(0x0fc0fc00)),
                                          _mm256_set1_epi32(0x04000040));
    const __m256i bd = _mm256_mullo_epi16(_mm256_and_si256(in, _mm256_set1_epi32(0x003f03f0)),
                                          _mm256_set1_epi32(0x01000010));
    const __m256i sextets = _mm256_or_si256(ac, bd);
    // Letter = value + offset of its range: 0..25 'A', 26..51 'a' - 26,
    // 52..61 '0' - 52, 62 '+' - 62, 63 '/' - 63. Index 0 is 26..51, 1..12
    // are 52..63, 13 is 0..25.
    __m256i range = _mm256_subs_epu8(sextets, _mm256_set1_epi8(51));
    const __m256i below26 = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), sextets);
    range = _mm256_or_si256(range, _mm256_and_si256(below26, _mm256_set1_epi8(13)));
    const __m256i offsets = _mm256_setr_epi8(
        'a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
        '+' - 62, '/' - 63, 'A', 0, 0,  //
        'a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
        '+' - 62, '/' - 63, 'A', 0, 0);
    return _mm256_add_epi8(sextets, _mm256_shuffle_epi8(offsets, range));
}

// 32 characters (as bytes) into 24 bytes at dest (32 written); false,
// writing nothing, when any of them is outside the alphabet.
XCH_AVX2_FUNCTION inline bool decodeBlock(__m256i chars, std::uint8_t* dest) {
    // Classification by nibbles: a character is in the alphabet when its
    // low-nibble class and high-nibble class share no bit; the high nibble
    // (and "/") then selects the offset back to the 6-bit value.
    const __m256i lowClass = _mm256_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1A,
                                              0x1B, 0x1B, 0x1B, 0x1A,  //
                                              0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1A,
                                              0x1B, 0x1B, 0x1B, 0x1A);
    const __m256i highClass = _mm256_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10,
                                               0x10, 0x10, 0x10, 0x10,  //
                                               0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10,
                                               0x10, 0x10, 0x10, 0x10);
    const __m256i offsets = _mm256_setr_epi8(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0,  //
                                             0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);
    const __m256i slash = _mm256_set1_epi8(0x2F);
    const __m256i highNibbles = _mm256_and_si256(_mm256_srli_epi32(chars, 4), slash);
    const __m256i lowNibbles = _mm256_and_si256(chars, slash);
    const __m256i lo = _mm256_shuffle_epi8(lowClass, lowNibbles);
    const __m256i hi = _mm256_shuffle_epi8(highClass, highNibbles);
    if (!_mm256_testz_si256(lo, hi)) return false;
    const __m256i isSlash = _mm256_cmpeq_epi8(chars, slash);
    const __m256i sextets =
        _mm256_add_epi8(chars, _mm256_shuffle_epi8(offsets, _mm256_add_epi8(isSlash, highNibbles)));
    // Four 6-bit fields into 24 bits per lane, then the 3 bytes of each lane
    // in order, packed to the front.
    const __m256i pairs = _mm256_maddubs_epi16(sextets, _mm256_set1_epi32(0x01400140));
    __m256i words = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
    words = _mm256_shuffle_epi8(words, _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1,  //
                                                        2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
    words = _mm256_permutevar8x32_epi32(words, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dest), words);
    return true;
}

// 32 wide characters as bytes; characters above 255 become 0 or 255,
// neither of which is in the alphabet.
XCH_AVX2_FUNCTION inline __m256i narrowBlock(const wchar_t* src) {
    const auto* p = reinterpret_cast<const __m256i*>(src);
    if constexpr (sizeof(wchar_t) == 4) {
        const __m256i ab = _mm256_packus_epi32(_mm256_loadu_si256(p), _mm256_loadu_si256(p + 1));
        const __m256i cd = _mm256_packus_epi32(_mm256_loadu_si256(p + 2), _mm256_loadu_si256(p + 3));
        return _mm256_permutevar8x32_epi32(_mm256_packus_epi16(ab, cd), _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
    } else {
        const __m256i ab = _mm256_packus_epi16(_mm256_loadu_si256(p), _mm256_loadu_si256(p + 1));
        return _mm256_permute4x64_epi64(ab, 0xD8);  // 0, 2, 1, 3
    }
}

XCH_AVX2_FUNCTION inline void storeWide(wchar_t* dest, __m256i letters) {
    auto* p = reinterpret_cast<__m256i*>(dest);
    const __m128i lo = _mm256_castsi256_si128(letters);
    const __m128i hi = _mm256_extracti128_si256(letters, 1);
    if constexpr (sizeof(wchar_t) == 4) {
        _mm256_storeu_si256(p, _mm256_cvtepu8_epi32(lo));
        _mm256_storeu_si256(p + 1, _mm256_cvtepu8_epi32(_mm_srli_si128(lo, 8)));
        _mm256_storeu_si256(p + 2, _mm256_cvtepu8_epi32(hi));
        _mm256_storeu_si256(p + 3, _mm256_cvtepu8_epi32(_mm_srli_si128(hi, 8)));
    } else {
        _mm256_storeu_si256(p, _mm256_cvtepu8_epi16(lo));
        _mm256_storeu_si256(p + 1, _mm256_cvtepu8_epi16(hi));
    }
}

XCH_AVX2_FUNCTION std::size_t encodeNarrow(char* dest, const std::uint8_t* src, std::size_t n) {
    std::size_t done = 0;
    for (; n - done >= 28; done += 24, dest += 32)
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(dest), encodeBlock(src + done));
    return done;
}

XCH_AVX2_FUNCTION std::size_t encodeWide(wchar_t* dest, const std::uint8_t* src, std::size_t n) {
    std::size_t done = 0;
    for (; n - done >= 28; done += 24, dest += 32) storeWide(dest, encodeBlock(src + done));
    return done;
}

XCH_AVX2_FUNCTION std::size_t decodeNarrow(std::uint8_t* dest, const char* src, std::size_t n) {
    std::size_t done = 0;
    for (; n - done >= 48; done += 32, dest += 24)
        if (!decodeBlock(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + done)), dest)) break;
    return done;
}

XCH_AVX2_FUNCTION std::size_t decodeWide(std::uint8_t* dest, const wchar_t* src, std::size_t n) {
    std::size_t done = 0;
    for (; n - done >= 48; done += 32, dest += 24)
        if (!decodeBlock(narrowBlock(src + done), dest)) break;
    return done;
}

} // namespace

std::size_t encode(char* dest, const std::uint8_t* src, std::size_t n) {
    return hasAvx2() ? encodeNarrow(dest, src, n) : 0;
}
std::size_t encode(wchar_t* dest, const std::uint8_t* src, std::size_t n) {
    return hasAvx2() ? encodeWide(dest, src, n) : 0;
}
std::size_t decode(std::uint8_t* dest, const char* src, std::size_t n) {
    return hasAvx2() ? decodeNarrow(dest, src, n) : 0;
}
std::size_t decode(std::uint8_t* dest, const wchar_t* src, std::size_t n) {
    return hasAvx2() ? decodeWide(dest, src, n) : 0;
}

#else

std::size_t encode(char*, const std::uint8_t*, std::size_t) { return 0; }
std::size_t encode(wchar_t*, const std::uint8_t*, std::size_t) { return 0; }
std::size_t decode(std::uint8_t*, const char*, std::size_t) { return 0; }
std::size_t decode(std::uint8_t*, const wchar_t*, std::size_t) { return 0; }

#endif

} // namespace base64_vector
} // namespace xch

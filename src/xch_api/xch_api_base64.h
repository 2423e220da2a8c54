// Base64: byte blocks as RFC 4648 text (alphabet A-Z a-z 0-9 + /, padded
// with "=", no line breaks), for binary data inside JSON strings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <xch_api/xch_api_export.h>

namespace xch {

class XCH_API Base64 {
public:
    // The text of `size` bytes at `data`.
    static std::string encode(const void* data, std::size_t size);
    static std::wstring encodeWide(const void* data, std::size_t size);

    // The bytes of `size` characters at `text`. Decoding stops silently at
    // "=", or at the first character outside the alphabet (whitespace
    // included); a final partial group of k characters gives k - 1 bytes.
    static std::vector<std::uint8_t> decode(const char* text, std::size_t size);
    static std::vector<std::uint8_t> decode(const wchar_t* text, std::size_t size);
    static std::vector<std::uint8_t> decode(const std::string& text) { return decode(text.data(), text.size()); }
    static std::vector<std::uint8_t> decode(const std::wstring& text) { return decode(text.data(), text.size()); }

    // Decodes into caller memory of at least decodedSize(size) bytes;
    // returns (bytes written, characters consumed).
    static std::pair<std::size_t, std::size_t> decodeInto(std::uint8_t* dest, const char* text, std::size_t size);
    static std::pair<std::size_t, std::size_t> decodeInto(std::uint8_t* dest, const wchar_t* text, std::size_t size);
    // Encodes into caller memory of at least encodedSize(size) characters;
    // returns the number of characters written.
    static std::size_t encodeInto(char* dest, const void* data, std::size_t size);
    static std::size_t encodeInto(wchar_t* dest, const void* data, std::size_t size);

    // Output sizes: exact for encoding, an upper bound for decoding.
    // decodedSize counts 3 bytes per whole group of 4 characters plus 3 for
    // a final partial group. 3 x (n / 4) alone would be too small for the
    // unpadded text that decoding accepts: "TWE" (3 characters, no "=")
    // decodes to the 2 bytes "Ma", and 3 x (3 / 4) is 0. Rounding the
    // partial group up to a whole one keeps every accepted text in bounds.
    static constexpr std::size_t encodedSize(std::size_t n) { return 4 * ((n + 2) / 3); }
    static constexpr std::size_t decodedSize(std::size_t n) { return 3 * (n / 4) + ((n % 4) ? 3 : 0); }

private:
    template <class Char>
    static std::size_t encodeImpl(Char* dest, const std::uint8_t* src, std::size_t n);
    template <class Char>
    static std::pair<std::size_t, std::size_t> decodeImpl(std::uint8_t* dest, const Char* src, std::size_t n);
};

} // namespace xch

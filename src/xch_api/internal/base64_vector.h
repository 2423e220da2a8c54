// Vector (AVX2) kernels of base64, used by Base64 where the processor has
// them (checked once, at run time). Each handles the bulk of a text in
// blocks and leaves the rest, from the first block it cannot take, to the
// portable code, which gives the same output for every input.
#pragma once

#include <cstddef>
#include <cstdint>

namespace xch {
namespace base64_vector {

// Encodes whole blocks of 24 bytes into 32 characters each, as long as 28
// input bytes remain (a block reads 4 bytes ahead); returns the number of
// bytes encoded (0 without vector support).
std::size_t encode(char* dest, const std::uint8_t* src, std::size_t n);
std::size_t encode(wchar_t* dest, const std::uint8_t* src, std::size_t n);

// Decodes whole blocks of 32 characters into 24 bytes each, as long as 48
// characters remain (a block writes 8 bytes ahead, which stays within
// Base64::decodedSize of the whole text) and every character of the block
// is in the alphabet; returns the number of characters decoded (0 without
// vector support).
std::size_t decode(std::uint8_t* dest, const char* src, std::size_t n);
std::size_t decode(std::uint8_t* dest, const wchar_t* src, std::size_t n);

} // namespace base64_vector
} // namespace xch

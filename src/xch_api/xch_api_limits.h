// Limits applied to everything that crosses the process boundary.
//
// Envelope text, command and option documents, binary JSON from shared
// memory and compressed bodies are untrusted input. These limits are shared
// by every layer so that hostile input fails with an exception or a parse
// error instead of overflowing the stack or exhausting memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace xch {
namespace limits {

// Deepest nesting of arrays and objects accepted anywhere: JSON text
// parsing, binary JSON decoding and JSON text writing. Real exchange
// documents are less than twenty levels deep.
constexpr std::size_t kMaxJsonDepth = 256;

// Largest size that decompression may produce (2 GiB). A compressed body
// that inflates beyond it is rejected as a decompression bomb.
constexpr std::uint64_t kMaxDecompressedSize = std::uint64_t(2) << 30;

// Largest JSON tree that decoding binary JSON may build, tied to the size of
// the encoding. The tree is measured as the JSON values it holds (member
// names included), each counted at sizeof(JsonValue) (16 bytes on 64-bit
// systems), plus the characters of its strings; it may not exceed
// kMaxDecodedBytesPerInputByte times the encoding's size plus
// kDecodedBytesAllowance, or decoding throws std::length_error.
//
// Real documents measure two to three times their encoding (a double takes
// 9 bytes encoded and 16 decoded). The allowance lets small documents of
// one-byte values (arrays of booleans) through, while a large body of them,
// which would decode to 16 times its size, is refused: 64 MiB of null tags
// stop at about 528 MiB of tree instead of reaching gigabytes.
constexpr std::uint64_t kMaxDecodedBytesPerInputByte = 8;
constexpr std::uint64_t kDecodedBytesAllowance = std::uint64_t(16) << 20;

// The most a binary JSON encoding of `inputSize` bytes may decode to (see
// above), saturating instead of overflowing.
constexpr std::uint64_t maxDecodedBytes(std::uint64_t inputSize) {
    return inputSize > (UINT64_MAX - kDecodedBytesAllowance) / kMaxDecodedBytesPerInputByte
               ? UINT64_MAX
               : inputSize * kMaxDecodedBytesPerInputByte + kDecodedBytesAllowance;
}

// Largest block geometry (ACIS binary) that a load copies out of shared
// memory, stored as it is or after decompression (2 GiB). A larger object
// fails to load instead of being copied.
constexpr std::uint64_t kMaxBlockGeometrySize = std::uint64_t(2) << 30;

// Longest file name or path that Format::is tests against a format's
// patterns (32,767 code units, the longest path Windows accepts). A longer
// name matches no format.
constexpr std::size_t kMaxMatchedNameLength = 32767;

} // namespace limits
} // namespace xch

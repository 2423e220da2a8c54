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

} // namespace limits
} // namespace xch

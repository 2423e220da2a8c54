// The operating-system facilities the library needs, chosen at compile time
// in platform.cpp: Windows APIs there, their portable twins elsewhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace xch {
namespace platform {

// Fills `out` with `size` bytes from the system's cryptographic random
// source (BCryptGenRandom on Windows, getrandom elsewhere). Throws
// boost::uuids::entropy_error naming the failing call and its status.
void randomBytes(std::uint8_t* out, std::size_t size);

// Converts wide text to the system's narrow code page (the ANSI code page on
// Windows, the C locale's multibyte encoding elsewhere). Characters the code
// page cannot represent become its default character.
std::string toNarrow(const wchar_t* text, std::size_t size);
inline std::string toNarrow(const std::wstring& text) { return toNarrow(text.data(), text.size()); }

} // namespace platform
} // namespace xch

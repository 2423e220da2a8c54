// Test support: bytes as hexadecimal text and back (for lines on pipes).
#pragma once

#include <string>
#include <vector>

namespace xch_test {

std::string toHex(const char* data, std::size_t size);
inline std::string toHex(const std::string& bytes) { return toHex(bytes.data(), bytes.size()); }
inline std::string toHex(const std::vector<char>& bytes) { return toHex(bytes.data(), bytes.size()); }
std::string fromHex(const std::string& text);

} // namespace xch_test

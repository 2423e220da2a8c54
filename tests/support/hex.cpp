#include "support/hex.h"

#include <stdexcept>

namespace xch_test {

std::string toHex(const char* data, std::size_t size) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    out.reserve(2 * size);
    for (std::size_t i = 0; i < size; ++i) {
        unsigned char b = static_cast<unsigned char>(data[i]);
        out += digits[b >> 4];
        out += digits[b & 15];
    }
    return out;
}

std::string fromHex(const std::string& text) {
    auto nibble = [](char c) -> int {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        throw std::invalid_argument("not hexadecimal");
    };
    std::string out;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2)
        out += static_cast<char>(nibble(text[i]) * 16 + nibble(text[i + 1]));
    return out;
}

} // namespace xch_test

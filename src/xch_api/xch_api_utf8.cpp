#include <xch_api/xch_api_utf8.h>

#include <cstdint>
#include <stdexcept>

namespace xch {

std::string toUtf8(const wchar_t* text, std::size_t size) {
    std::string out;
    out.reserve(size);
    for (std::size_t i = 0; i < size; ++i) {
        std::uint32_t c = static_cast<std::uint32_t>(text[i]);
        if (sizeof(wchar_t) == 2 && c >= 0xD800 && c <= 0xDBFF && i + 1 < size) {
            std::uint32_t low = static_cast<std::uint32_t>(text[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            }
        }
        if ((c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF)
            c = 0xFFFD;
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::wstring fromUtf8(const char* bytes, std::size_t size) {
    static const std::uint32_t kMinimum[] = {0, 0x80, 0x800, 0x10000};
    auto malformed = [](std::size_t at) {
        return std::invalid_argument("malformed UTF-8 at byte " + std::to_string(at));
    };
    std::wstring out;
    out.reserve(size);
    const unsigned char* in = reinterpret_cast<const unsigned char*>(bytes);
    std::size_t i = 0;
    if (size >= 3 && in[0] == 0xEF && in[1] == 0xBB && in[2] == 0xBF)
        i = 3;
    while (i < size) {
        unsigned char lead = in[i];
        std::uint32_t c;
        std::size_t extra;
        if (lead < 0x80) { c = lead; extra = 0; }
        else if ((lead & 0xE0) == 0xC0) { c = lead & 0x1F; extra = 1; }
        else if ((lead & 0xF0) == 0xE0) { c = lead & 0x0F; extra = 2; }
        else if ((lead & 0xF8) == 0xF0) { c = lead & 0x07; extra = 3; }
        else throw malformed(i);
        if (extra >= size - i)
            throw malformed(i);
        for (std::size_t k = 1; k <= extra; ++k) {
            if ((in[i + k] & 0xC0) != 0x80)
                throw malformed(i);
            c = (c << 6) | (in[i + k] & 0x3F);
        }
        if (c < kMinimum[extra] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
            throw malformed(i);
        i += extra + 1;
        if (sizeof(wchar_t) == 2 && c > 0xFFFF) {
            c -= 0x10000;
            out += static_cast<wchar_t>(0xD800 + (c >> 10));
            out += static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
        } else {
            out += static_cast<wchar_t>(c);
        }
    }
    return out;
}

} // namespace xch

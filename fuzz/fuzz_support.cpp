#include "fuzz_support.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <xch_api/xch_api_json_text_io.h>
#include <xch_api/xch_api_utf8.h>

namespace xch_fuzz {

namespace {

// Lenient UTF-8 decoding: a byte that does not start a well-formed
// sequence becomes U+FFFD (the library's own decoder refuses such text).
std::wstring fromUtf8(const std::uint8_t* data, std::size_t size) {
    std::wstring text;
    for (std::size_t i = 0; i < size;) {
        const std::uint8_t lead = data[i];
        std::size_t length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 0;
        std::uint32_t code = length == 1 ? lead : length == 2 ? (lead & 0x1F) : length == 3 ? (lead & 0x0F) : (lead & 0x07);
        bool valid = length > 0 && i + length <= size;
        for (std::size_t k = 1; valid && k < length; ++k) {
            valid = (data[i + k] & 0xC0) == 0x80;
            code = (code << 6) | (data[i + k] & 0x3F);
        }
        const std::uint32_t minimum[] = {0, 0, 0x80, 0x800, 0x10000};
        valid = valid && code >= minimum[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
        if (!valid) {
            text += wchar_t(0xFFFD);
            ++i;
            continue;
        }
        if (sizeof(wchar_t) == 2 && code > 0xFFFF) {
            code -= 0x10000;
            text += wchar_t(0xD800 + (code >> 10));
            text += wchar_t(0xDC00 + (code & 0x3FF));
        } else {
            text += wchar_t(code);
        }
        i += length;
    }
    return text;
}

} // namespace

std::wstring wideText(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || data[0] != kRawTextMarker) return fromUtf8(data, size);
    std::wstring text;
    for (std::size_t i = 1; i + 1 < size; i += 2) text += static_cast<wchar_t>(data[i] | (data[i + 1] << 8));
    return text;
}

void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "fuzz oracle failed: %s\n", what);
    std::abort();
}

bool parse(const std::wstring& text, xch::JsonDocument& doc) {
    std::wistringstream in(text);
    xch::JsonTextIO::read(in, doc);
    return !doc.HasParseError();
}

std::wstring text(const xch::JsonDocument& doc) {
    std::wostringstream out;
    xch::JsonTextIO::write(out, doc, false);
    return out.str();
}

std::wstring text(const xch::IJsonObject& object) {
    xch::JsonDocument doc;
    object.writeObject(doc, doc.GetAllocator());
    return text(doc);
}

std::wstring text(const mp::ISerializable& object) {
    std::wostringstream out;
    object.writeObject(out);
    return out.str();
}

void requireSameText(const xch::IJsonObject& object, xch::IJsonObject& fresh) {
    const std::wstring first = text(object);
    xch::JsonDocument doc;
    require(parse(first, doc), "the written text parses");
    fresh.readObject(doc);
    require(text(fresh) == first, "read, write, read gives the same text");
}

void requireSameText(const mp::ISerializable& object, mp::ISerializable& fresh) {
    const std::wstring first = text(object);
    std::wistringstream in(first);
    fresh.readObject(in);
    require(text(fresh) == first, "read, write, read gives the same text");
}

} // namespace xch_fuzz

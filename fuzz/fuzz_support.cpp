#include "fuzz_support.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <xch_api/xch_api_json_text_io.h>
#include <xch_api/xch_api_utf8.h>

namespace xch_fuzz {

std::wstring wideText(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || data[0] != kRawTextMarker)
        return xch::fromUtf8(reinterpret_cast<const char*>(data), size);
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

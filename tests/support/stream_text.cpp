#include "support/stream_text.h"

#include <sstream>

#include <xch_api/xch_api_json_text_io.h>

namespace xch_test {

std::wstring writtenText(const mp::ISerializable& object) {
    std::wostringstream out;
    object.writeObject(out);
    return out.str();
}

void readText(mp::ISerializable& object, const std::wstring& text) {
    std::wistringstream in(text);
    object.readObject(in);
}

std::wstring compactJson(const std::wstring& text) {
    std::wistringstream in(text);
    xch::JsonDocument doc;
    xch::JsonTextIO::read(in, doc);
    if (doc.HasParseError())
        throw std::invalid_argument("test input is not valid JSON");
    std::wostringstream out;
    xch::JsonTextIO::write(out, doc, false);
    return out.str();
}

std::wstring compactWritten(const mp::ISerializable& object) { return compactJson(writtenText(object)); }

std::string readRefusal(mp::ISerializable& object, const std::wstring& text) {
    return invalidArgumentMessage([&] { readText(object, text); });
}

} // namespace xch_test

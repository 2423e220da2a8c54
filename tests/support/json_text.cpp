#include "support/json_text.h"

#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include <xch_api/xch_api_json_text_io.h>

namespace xch_test {

std::wstring toJsonText(const xch::IJsonObject& object) {
    xch::JsonDocument doc;
    object.writeObject(doc, doc.GetAllocator());
    std::wostringstream out;
    xch::JsonTextIO::write(out, doc, false);
    return out.str();
}

void readFromJsonText(xch::IJsonObject& object, const std::wstring& text) {
    xch::JsonDocument doc;
    doc.Parse(text.c_str());
    if (doc.HasParseError())
        throw std::invalid_argument("test input is not valid JSON");
    object.readObject(doc);
}

void expectReads(xch::IJsonObject& object, const ReadSequence& reads) {
    for (const auto& read : reads) {
        readFromJsonText(object, read.first);
        EXPECT_EQ(toJsonText(object), read.second) << "after reading " << read.first;
    }
}

} // namespace xch_test

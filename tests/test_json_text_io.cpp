#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>

#include <xch_api/xch_api_json_text_io.h>

#include "support/log_capture.h"
#include "support/test_types.h"

using xch::JsonDocument;
using xch::JsonTextIO;

namespace {

JsonDocument parse(const std::wstring& text, JsonDocument doc = JsonDocument()) {
    std::wistringstream in(text);
    JsonTextIO::read(in, doc);
    return doc;
}

std::wstring render(const JsonDocument& doc, bool pretty) {
    std::wostringstream out;
    JsonTextIO::write(out, doc, pretty);
    return out.str();
}

} // namespace

TEST(JsonTextIO, ReaderAcceptsOneRootAmidWhitespaceOnly) {
    EXPECT_EQ(parse(L" \t\r\n ").GetParseError(), rapidjson::kParseErrorDocumentEmpty);
    EXPECT_EQ(parse(L"{}{}").GetParseError(), rapidjson::kParseErrorDocumentRootNotSingular);
    EXPECT_TRUE(parse(L"\r\n\t {}\n\n").IsObject());
    // Default flags: no trailing commas, NaN or comments.
    for (const wchar_t* bad : {L"{\"a\":1,}", L"[NaN]", L"{} // note"}) EXPECT_TRUE(parse(bad).HasParseError());
    // A failed parse leaves no stale root in a used document.
    JsonDocument used = parse(L"{\"a\":1}");
    EXPECT_FALSE(parse(L"{\"a\":", std::move(used)).IsObject());
}

TEST(JsonTextIO, PrettyAndCompactForms) {
    JsonDocument doc = parse(L"{\"a\":[1,2.5,-3],\"b\":{\"c\":\"x\",\"d\":true},\"e\":null}");
    EXPECT_EQ(render(doc, false), L"{\"a\":[1,2.5,-3],\"b\":{\"c\":\"x\",\"d\":true},\"e\":null}");
    EXPECT_EQ(render(doc, true),
              L"{\n  \"a\": [1, 2.5, -3],\n  \"b\": {\n    \"c\": \"x\",\n    \"d\": true\n  },\n  \"e\": null\n}");
}

TEST(JsonTextIO, DoublesAndCharactersBeyondTheBasicPlaneSurvive) {
    JsonDocument doc = parse(L"[1.0,0.1,1e-6,0.3333333333333333,-2.5e300,5e-324,\"\\ud83d\\ude00 \U0001F600 \u00e9\"]");
    std::wstring text = render(doc, false);
    EXPECT_EQ(text.substr(0, 18), L"[1.0,0.1,0.000001,");
    JsonDocument back = parse(text);
    for (rapidjson::SizeType i = 0; i < 6; ++i) EXPECT_EQ(back[i].GetDouble(), doc[i].GetDouble());
    EXPECT_EQ(std::wstring(back[6].GetString(), back[6].GetStringLength()), L"\U0001F600 \U0001F600 \u00e9");
}

TEST(JsonTextIO, DeepNestingAndBadNumbersFailCleanly) {
    xch_test::LogCapture log(2);
    // A million open brackets end in a parse error, not a stack overflow.
    EXPECT_TRUE(parse(std::wstring(1000000, L'[')).HasParseError());
    EXPECT_EQ(log.messages(2).size(), 1u);
    // Brackets inside strings do not count; moderate nesting is fine.
    EXPECT_FALSE(parse(L"[\"" + std::wstring(5000, L'[') + L"\\\"{\"]").HasParseError());
    EXPECT_FALSE(parse(std::wstring(200, L'[') + std::wstring(200, L']')).HasParseError());

    // Writing a document built deeper than the limit, or a NaN, throws.
    JsonDocument deep;
    xch::JsonValue* v = &deep.SetArray();
    for (int i = 0; i < 100000; ++i) {
        v->PushBack(xch::JsonValue(rapidjson::kArrayType), deep.GetAllocator());
        v = &(*v)[0];
    }
    JsonDocument nan;
    nan.SetArray().PushBack(std::numeric_limits<double>::quiet_NaN(), nan.GetAllocator());
    for (const JsonDocument* doc : {&deep, &nan}) {
        try {
            render(*doc, true);
            ADD_FAILURE() << "written";
        } catch (const std::runtime_error& e) {
            EXPECT_STREQ(e.what(), "Cannot write object into json document");
        }
    }
}

TEST(JsonTextIO, WriteToFileUsesTheNarrowCodePage) {
    xch_test::TestRecord record;
    record.label = L"plain \u4e2d";
    std::string path = xch_test::tempPath("record.json");
    JsonTextIO::writeToFile(record, std::wstring(path.begin(), path.end()));
    std::ifstream in(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    in.close();
    std::remove(path.c_str());
    // Pretty form; the character outside the code page became its default
    // character.
    EXPECT_EQ(bytes.substr(0, 16), "{\n  \"count\": -1,");
    EXPECT_NE(bytes.find("\"label\": \"plain ?\""), std::string::npos) << bytes;
}

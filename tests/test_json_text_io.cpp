#include <gtest/gtest.h>

#include <cmath>
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

JsonDocument parse(const std::wstring& text) {
    std::wistringstream in(text);
    JsonDocument doc;
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
    JsonDocument blank = parse(L" \t\r\n ");
    EXPECT_EQ(blank.GetParseError(), rapidjson::kParseErrorDocumentEmpty);
    EXPECT_FALSE(blank.IsObject());

    JsonDocument two = parse(L"{}{}");
    EXPECT_EQ(two.GetParseError(), rapidjson::kParseErrorDocumentRootNotSingular);
    EXPECT_FALSE(two.IsObject());

    JsonDocument one = parse(L"\r\n\t {}\n\n");
    EXPECT_FALSE(one.HasParseError());
    EXPECT_TRUE(one.IsObject());

    // Default flags: no comments, trailing commas or NaN.
    EXPECT_TRUE(parse(L"{\"a\":1,}").HasParseError());
    EXPECT_TRUE(parse(L"[NaN]").HasParseError());
    EXPECT_TRUE(parse(L"{} // note").HasParseError());
}

TEST(JsonTextIO, ReadingIntoAUsedDocumentLeavesNoStaleRoot) {
    std::wistringstream good(L"{\"a\":1}"), bad(L"{\"a\":");
    JsonDocument doc;
    JsonTextIO::read(good, doc);
    ASSERT_TRUE(doc.IsObject());
    JsonTextIO::read(bad, doc);
    EXPECT_TRUE(doc.HasParseError());
    EXPECT_FALSE(doc.IsObject());
}

TEST(JsonTextIO, PrettyAndCompactForms) {
    JsonDocument doc = parse(L"{\"a\":[1,2.5,-3],\"b\":{\"c\":\"x\",\"d\":true},\"e\":null}");
    ASSERT_FALSE(doc.HasParseError());
    EXPECT_EQ(render(doc, false), L"{\"a\":[1,2.5,-3],\"b\":{\"c\":\"x\",\"d\":true},\"e\":null}");
    EXPECT_EQ(render(doc, true),
              L"{\n"
              L"  \"a\": [1, 2.5, -3],\n"
              L"  \"b\": {\n"
              L"    \"c\": \"x\",\n"
              L"    \"d\": true\n"
              L"  },\n"
              L"  \"e\": null\n"
              L"}");
}

TEST(JsonTextIO, DoublesUseShortestExactFormAndSurvive) {
    JsonDocument doc;
    doc.SetArray();
    for (double d : {1.0, 0.1, 1e-6, 1.0 / 3.0, -2.5e300, 5e-324})
        doc.PushBack(xch::JsonValue(d), doc.GetAllocator());
    std::wstring text = render(doc, false);
    EXPECT_EQ(text.substr(0, 18), L"[1.0,0.1,0.000001,");
    JsonDocument back = parse(text);
    ASSERT_TRUE(back.IsArray());
    for (rapidjson::SizeType i = 0; i < doc.Size(); ++i) {
        ASSERT_TRUE(back[i].IsDouble());
        EXPECT_EQ(back[i].GetDouble(), doc[i].GetDouble());
    }
}

TEST(JsonTextIO, CharactersBeyondTheBasicPlaneRoundTrip) {
    std::wstring text = L"[\"\\ud83d\\ude00 and \U0001F600 and \u00e9\"]";
    JsonDocument doc = parse(text);
    ASSERT_TRUE(doc.IsArray());
    std::wstring s(doc[0].GetString(), doc[0].GetStringLength());
    EXPECT_EQ(s, L"\U0001F600 and \U0001F600 and \u00e9");
    JsonDocument back = parse(render(doc, false));
    EXPECT_EQ(std::wstring(back[0].GetString(), back[0].GetStringLength()), s);
}

TEST(JsonTextIO, WriterFailuresThrow) {
    JsonDocument doc;
    doc.SetArray();
    doc.PushBack(xch::JsonValue(std::numeric_limits<double>::quiet_NaN()), doc.GetAllocator());
    std::wostringstream out;
    try {
        JsonTextIO::write(out, doc, false);
        FAIL() << "NaN was written";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Cannot write object into json document");
    }
}

TEST(JsonTextIO, DeepNestingFailsCleanlyBothWays) {
    xch_test::LogCapture log(2);
    // Reading: a million open brackets end in a parse error, not a crash.
    JsonDocument deep = parse(std::wstring(1000000, L'['));
    EXPECT_TRUE(deep.HasParseError());
    EXPECT_FALSE(deep.IsArray());
    EXPECT_EQ(log.messages(2).size(), 1u);
    // Brackets inside strings do not count.
    std::wstring quoted = L"[\"" + std::wstring(5000, L'[') + L"\\\"{\"]";
    EXPECT_FALSE(parse(quoted).HasParseError());
    // Moderate nesting is fine.
    std::wstring ok = std::wstring(200, L'[') + std::wstring(200, L']');
    EXPECT_FALSE(parse(ok).HasParseError());

    // Writing a document built deeper than the limit throws.
    JsonDocument built;
    xch::JsonValue* v = &built;
    v->SetArray();
    for (int i = 0; i < 100000; ++i) {
        v->PushBack(xch::JsonValue(rapidjson::kArrayType), built.GetAllocator());
        v = &(*v)[0];
    }
    std::wostringstream out;
    EXPECT_THROW(JsonTextIO::write(out, built, true), std::runtime_error);
}

TEST(JsonTextIO, WriteToFileUsesTheNarrowCodePage) {
    xch_test::TestRecord record;
    record.label = L"plain \u4e2d";
    std::string path = xch_test::tempPath("record.json");
    JsonTextIO::writeToFile(record, std::wstring(path.begin(), path.end()));
    std::ifstream in(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    // Pretty form; the character outside the code page became its default
    // character.
    EXPECT_EQ(bytes.substr(0, 16), "{\n  \"count\": -1,");
    EXPECT_NE(bytes.find("\"label\": \"plain ?\""), std::string::npos) << bytes;
    in.close();
    std::remove(path.c_str());
}

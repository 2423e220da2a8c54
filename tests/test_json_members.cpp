#include <gtest/gtest.h>

#include <sstream>

#include <xch_api/xch_api_json_text_io.h>

#include "support/log_capture.h"
#include "support/test_types.h"

using xch::JsonDocument;
using xch_test::TestRecord;

namespace {

std::wstring toText(const xch::IJsonObject& object) {
    JsonDocument doc;
    object.writeObject(doc, doc.GetAllocator());
    std::wostringstream out;
    xch::JsonTextIO::write(out, doc, false);
    return out.str();
}

void fromText(xch::IJsonObject& object, const std::wstring& text) {
    std::wistringstream in(text);
    JsonDocument doc;
    xch::JsonTextIO::read(in, doc);
    object.readObject(doc);
}

} // namespace

TEST(JsonMembers, WritesEveryKeyInDeclarationOrderAndOptionalOnlyWhenSet) {
    TestRecord record;
    EXPECT_EQ(toText(record),
              L"{\"count\":-1,\"flags\":7,\"id\":0,\"ratio\":1.5,\"active\":false,\"label\":\"\","
              L"\"shape\":\"unknown\",\"tags\":[],\"items\":[]}");
    record.note = L"n";
    record.id = 18446744073709551615ull;
    record.shape = xch_test::ShapeTriangle;
    record.items.push_back(nullptr); // null elements are not written
    record.items.push_back(std::make_shared<xch_test::TestItem>());
    record.tags = {L"a", L"b"};
    EXPECT_EQ(toText(record),
              L"{\"count\":-1,\"flags\":7,\"id\":18446744073709551615,\"ratio\":1.5,\"active\":false,"
              L"\"label\":\"\",\"shape\":\"triangle\",\"note\":\"n\",\"tags\":[\"a\",\"b\"],"
              L"\"items\":[{\"label\":\"\",\"weight\":0.5}]}");
}

TEST(JsonMembers, ReadingIsLenientPerKey) {
    TestRecord record;
    // Every member has the wrong JSON type: nothing changes.
    fromText(record, L"{\"count\":\"5\",\"flags\":-1,\"id\":-2,\"ratio\":2,\"active\":1,\"label\":7,"
                     L"\"shape\":3,\"note\":false,\"tags\":{},\"items\":\"x\"}");
    EXPECT_EQ(record.count, -1);
    EXPECT_EQ(record.flags, 7u);
    EXPECT_EQ(record.id, 0u);
    EXPECT_EQ(record.ratio, 1.5); // an integer literal is not a double
    EXPECT_FALSE(record.active);
    EXPECT_TRUE(record.label.empty());
    EXPECT_EQ(record.shape, xch_test::ShapeUnknown);
    EXPECT_TRUE(record.tags.empty());

    // Widths are exact: 3000000000 is no int32, 2^32 no uint32.
    fromText(record, L"{\"count\":3000000000,\"flags\":4294967296}");
    EXPECT_EQ(record.count, -1);
    EXPECT_EQ(record.flags, 7u);

    fromText(record, L"{\"count\":-5,\"flags\":4294967295,\"id\":18446744073709551615,\"ratio\":0.25,"
                     L"\"active\":true,\"label\":\"\u00e9\",\"shape\":\"square\"}");
    EXPECT_EQ(record.count, -5);
    EXPECT_EQ(record.flags, 4294967295u);
    EXPECT_EQ(record.id, 18446744073709551615ull);
    EXPECT_EQ(record.ratio, 0.25);
    EXPECT_TRUE(record.active);
    EXPECT_EQ(record.label, L"\u00e9");
    EXPECT_EQ(record.shape, xch_test::ShapeSquare);
}

TEST(JsonMembers, ListsAppendToWhatIsHeld) {
    TestRecord record;
    record.tags = {L"kept"};
    fromText(record, L"{\"tags\":[\"a\",5,\"b\"],\"items\":[{\"label\":\"x\"},{\"weight\":2.0}]}");
    EXPECT_EQ(record.tags, (std::vector<std::wstring>{L"kept", L"a", L"b"}));
    ASSERT_EQ(record.items.size(), 2u);
    EXPECT_EQ(record.items[0]->label, L"x");
    EXPECT_EQ(record.items[0]->weight, 0.5);
    EXPECT_EQ(record.items[1]->weight, 2.0);
    fromText(record, L"{\"items\":[{}]}");
    EXPECT_EQ(record.items.size(), 3u);
}

TEST(JsonMembers, EnumerationFallbacks) {
    const auto& table = xch::enumTable<xch_test::ETestShape>();
    // Unknown strings give the value of the smallest string ("circle"),
    // case matters; unknown values write the smallest value's string.
    EXPECT_EQ(xch::enumFromString<xch_test::ETestShape>(L"hexagon"), xch_test::ShapeCircle);
    EXPECT_EQ(xch::enumFromString<xch_test::ETestShape>(L"Square"), xch_test::ShapeCircle);
    EXPECT_EQ(xch::enumFromString<xch_test::ETestShape>(L""), xch_test::ShapeCircle);
    EXPECT_EQ(xch::enumFromString<xch_test::ETestShape>(L"triangle"), xch_test::ShapeTriangle);
    EXPECT_EQ(xch::enumToString(static_cast<xch_test::ETestShape>(42)), L"unknown");
    xch_test::ETestShape found;
    EXPECT_FALSE(table.find(L"unknown ", found));
    EXPECT_TRUE(table.find(L"unknown", found));
    EXPECT_EQ(found, xch_test::ShapeUnknown);

    TestRecord record;
    fromText(record, L"{\"shape\":\"Triangle\"}");
    EXPECT_EQ(record.shape, xch_test::ShapeCircle);
}

TEST(JsonMembers, WrongShapeIsLoggedAndIgnored) {
    xch_test::LogCapture log(2);
    TestRecord record;
    record.count = 3;
    fromText(record, L"[1,2]");
    fromText(record, L"\"text\"");
    EXPECT_EQ(record.count, 3);
    EXPECT_EQ(log.count("TestRecord object should have a JSON object type."), 2);
}

// The shared member rules, shown on a test-only class with one field of
// every kind (tests/support/test_types.h).
#include <gtest/gtest.h>

#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/test_types.h"

using xch_test::readFromJsonText;
using xch_test::TestRecord;
using xch_test::toJsonText;

TEST(JsonMembers, WritesEveryKeyInDeclarationOrderAndOptionalOnlyWhenSet) {
    TestRecord record;
    EXPECT_EQ(toJsonText(record),
              L"{\"count\":-1,\"flags\":7,\"id\":0,\"ratio\":1.5,\"active\":false,\"label\":\"\","
              L"\"shape\":\"unknown\",\"tags\":[],\"items\":[]}");
    record.note = L"n";
    record.id = 18446744073709551615ull;
    record.shape = static_cast<xch_test::ETestShape>(42); // no string: the smallest value's
    record.items = {nullptr, std::make_shared<xch_test::TestItem>()}; // null is not written
    EXPECT_EQ(toJsonText(record),
              L"{\"count\":-1,\"flags\":7,\"id\":18446744073709551615,\"ratio\":1.5,\"active\":false,"
              L"\"label\":\"\",\"shape\":\"unknown\",\"note\":\"n\",\"tags\":[],"
              L"\"items\":[{\"label\":\"\",\"weight\":0.5}]}");
}

TEST(JsonMembers, ReadingIsLenientPerKeyAndStrictAboutKinds) {
    TestRecord record;
    // Every member has the wrong JSON type or width: nothing changes (an
    // integer literal is no double, 3000000000 no int32, 2^32 no uint32).
    readFromJsonText(record, L"{\"count\":3000000000,\"flags\":4294967296,\"id\":-2,\"ratio\":2,\"active\":1,"
                             L"\"label\":7,\"shape\":3,\"note\":false,\"tags\":{},\"items\":\"x\"}");
    EXPECT_EQ(toJsonText(record), toJsonText(TestRecord()));

    readFromJsonText(record, L"{\"count\":-5,\"flags\":4294967295,\"id\":18446744073709551615,\"ratio\":0.25,"
                             L"\"active\":true,\"label\":\"\u00e9\",\"shape\":\"square\"}");
    EXPECT_EQ(record.count, -5);
    EXPECT_EQ(record.flags, 4294967295u);
    EXPECT_EQ(record.id, 18446744073709551615ull);
    EXPECT_EQ(record.ratio, 0.25);
    EXPECT_TRUE(record.active);
    EXPECT_EQ(record.label, L"\u00e9");
    EXPECT_EQ(record.shape, xch_test::ShapeSquare);

    // Unknown strings read as the value of the smallest string ("circle").
    for (const wchar_t* unknown : {L"\"hexagon\"", L"\"Square\"", L"\"\""}) {
        record.shape = xch_test::ShapeSquare;
        readFromJsonText(record, std::wstring(L"{\"shape\":") + unknown + L"}");
        EXPECT_EQ(record.shape, xch_test::ShapeCircle);
    }
}

TEST(JsonMembers, ListsAppendToWhatIsHeld) {
    TestRecord record;
    record.tags = {L"kept"};
    readFromJsonText(record, L"{\"tags\":[\"a\",5,\"b\"],\"items\":[{\"label\":\"x\"},{\"weight\":2.0}]}");
    readFromJsonText(record, L"{\"items\":[{}]}");
    EXPECT_EQ(record.tags, (std::vector<std::wstring>{L"kept", L"a", L"b"}));
    ASSERT_EQ(record.items.size(), 3u);
    EXPECT_EQ(record.items[0]->label, L"x");
    EXPECT_EQ(record.items[1]->weight, 2.0);
}

TEST(JsonMembers, WrongShapeIsLoggedAndIgnored) {
    xch_test::LogCapture log(2);
    TestRecord record;
    record.count = 3;
    readFromJsonText(record, L"[1,2]");
    readFromJsonText(record, L"\"text\"");
    EXPECT_EQ(record.count, 3);
    EXPECT_EQ(log.count("TestRecord object should have a JSON object type."), 2);
}

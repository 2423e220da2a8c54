#include "support/test_types.h"

namespace xch {
template <>
const EnumTable<xch_test::ETestShape>& enumTable<xch_test::ETestShape>() {
    static const EnumTable<xch_test::ETestShape> table{{xch_test::ShapeUnknown, L"unknown"},
                                                       {xch_test::ShapeCircle, L"circle"},
                                                       {xch_test::ShapeSquare, L"square"},
                                                       {xch_test::ShapeTriangle, L"triangle"}};
    return table;
}
} // namespace xch

namespace xch_test {

void TestItem::readObject(const xch::JsonValue& value) { xch::json::readMembers(value, "TestItem", *this); }

void TestItem::writeObject(xch::JsonValue& value, xch::JsonAllocator& allocator) const {
    xch::json::writeMembers(value, allocator, *this);
}

template <>
const std::wstring& TestRecordT<false, false>::objName() {
    static const std::wstring name = L"test_record";
    return name;
}
template <>
const std::wstring& TestRecordT<true, true>::objName() {
    static const std::wstring name = L"test_packed_record";
    return name;
}
template <>
const std::wstring& TestRecordT<true, false>::objName() {
    static const std::wstring name = L"test_plain_record";
    return name;
}

void registerTestTypes() {
    static xch::StaticExchangeObject<TestRecord> record;
    static xch::StaticExchangeObject<TestPackedRecord> packed;
    static xch::StaticExchangeObject<TestPlainRecord> plain;
}

} // namespace xch_test

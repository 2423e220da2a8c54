// Exchange types that exist only in the tests: they exercise the member
// rules, the enumeration tables, the registry and the envelope before (and
// independently of) the library's own model classes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_json_members.h>

namespace xch_test {

enum ETestShape : std::int32_t { ShapeUnknown = 0, ShapeCircle = 1, ShapeSquare = 2, ShapeTriangle = 3 };

// A nested element of TestRecord lists.
class TestItem : public xch::IJsonObject {
public:
    std::wstring label;
    double weight = 0.5;

    template <class Io, class Self>
    static void members(Io& io, Self& self) {
        io(L"label", self.label);
        io(L"weight", self.weight);
    }
    void readObject(const xch::JsonValue& value) override;
    void writeObject(xch::JsonValue& value, xch::JsonAllocator& allocator) const override;
};

// One field of every kind the member rules know.
template <bool Binary, bool Compress>
class TestRecordT : public xch::ExchangeObjectImpl<TestRecordT<Binary, Compress>> {
public:
    static const std::wstring& objName();

    std::int32_t count = -1;
    std::uint32_t flags = 7;
    std::uint64_t id = 0;
    double ratio = 1.5;
    bool active = false;
    std::wstring label;
    ETestShape shape = ShapeUnknown;
    std::wstring note; // optional
    std::vector<std::wstring> tags;
    std::vector<std::shared_ptr<TestItem>> items;

    template <class Io, class Self>
    static void members(Io& io, Self& self) {
        io(L"count", self.count);
        io(L"flags", self.flags);
        io(L"id", self.id);
        io(L"ratio", self.ratio);
        io(L"active", self.active);
        io(L"label", self.label);
        io(L"shape", self.shape);
        io(L"note", self.note, xch::json::optional);
        io(L"tags", self.tags);
        io(L"items", self.items);
    }

    bool binary() const override { return Binary; }
    bool compress() const override { return Compress; }
    void readObject(const xch::JsonValue& value) override {
        VX_TRACE();
        xch::json::readMembers(value, "TestRecord", *this);
    }
    void writeObject(xch::JsonValue& value, xch::JsonAllocator& allocator) const override {
        VX_TRACE();
        xch::json::writeMembers(value, allocator, *this);
    }
};

using TestRecord = TestRecordT<false, false>;         // inline, "test_record"
using TestPackedRecord = TestRecordT<true, true>;     // binary + gzip, "test_packed_record"
using TestPlainRecord = TestRecordT<true, false>;     // binary, "test_plain_record"

// Registers the test types (once; safe to call from every test).
void registerTestTypes();

} // namespace xch_test

namespace xch {
template <>
const EnumTable<xch_test::ETestShape>& enumTable<xch_test::ETestShape>();
}

#include <gtest/gtest.h>

#include <set>
#include <string>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_json_binary_io.h>
#include <xch_api/xch_api_json_text_io.h>

#include "support/test_types.h"

using xch::ExchangeObjectRegistry;
using xch_test::TestPackedRecord;
using xch_test::TestPlainRecord;
using xch_test::TestRecord;
using Buffer = mp::SharedBuffer<char>;

namespace {

struct RegistryTest : ::testing::Test {
    void SetUp() override { xch_test::registerTestTypes(); }
};

// Places `bytes` in a new shared buffer and returns its name.
std::wstring place(const std::string& bytes) {
    std::wstring name = xch::IExchangeObject::generateUUID();
    Buffer(name, Buffer::OpenMode::Create).write(bytes.data(), bytes.size());
    return name;
}

std::string bodyOf(const xch::IJsonObject& object) {
    xch::JsonDocument doc;
    object.writeObject(doc, doc.GetAllocator());
    std::string bytes;
    xch::JsonBinaryIO::write(bytes, doc);
    return bytes;
}

} // namespace

TEST_F(RegistryTest, GetClonesThePrototypeByExactName) {
    auto& registry = ExchangeObjectRegistry::instance();
    auto a = registry.get(L"test_record");
    auto b = registry.get(L"test_record");
    ASSERT_TRUE(a && b);
    EXPECT_NE(a.get(), b.get());
    EXPECT_EQ(a->name(), L"test_record");
    EXPECT_FALSE(a->binary());
    EXPECT_TRUE(registry.get(L"test_packed_record")->compress());
    EXPECT_EQ(registry.get(L""), nullptr);
    EXPECT_EQ(registry.get(L"TEST_RECORD"), nullptr);
    EXPECT_EQ(registry.get(L"test_record "), nullptr);
}

TEST_F(RegistryTest, LaterRegistrationWinsAndRemovalIsByName) {
    auto& registry = ExchangeObjectRegistry::instance();
    {
        xch::StaticExchangeObject<TestRecord> second;
        second.label = L"second prototype";
        auto clone = std::static_pointer_cast<TestRecord>(registry.get(L"test_record"));
        ASSERT_TRUE(clone);
        EXPECT_EQ(clone->label, L"second prototype");
        // The clone is independent of the prototype.
        clone->label = L"changed";
        EXPECT_EQ(second.label, L"second prototype");
    }
    // Destroying the second prototype removed the entry of its name.
    EXPECT_EQ(registry.get(L"test_record"), nullptr);
    registry.add(nullptr);
    registry.remove(nullptr);
    // Registering again restores it for the other tests.
    static xch::StaticExchangeObject<TestRecord> again;
    EXPECT_NE(registry.get(L"test_record"), nullptr);
}

TEST(GenerateUUID, RandomVersion4Text) {
    std::set<std::wstring> seen;
    for (int i = 0; i < 500; ++i) {
        std::wstring id = xch::IExchangeObject::generateUUID();
        ASSERT_EQ(id.size(), 36u);
        EXPECT_TRUE(Buffer::isValidName(id));
        EXPECT_EQ(id[14], L'4');
        EXPECT_NE(std::wstring(L"89ab").find(id[19]), std::wstring::npos);
        for (wchar_t c : id) EXPECT_FALSE(c >= L'A' && c <= L'F');
        seen.insert(id);
    }
    EXPECT_EQ(seen.size(), 500u);
}

TEST(LazyLoading, DoesNothingWithoutSourceOrWhenInline) {
    TestPackedRecord packed;
    packed.load();
    EXPECT_FALSE(packed.isLoaded());

    TestRecord inlineRecord;
    std::wstring name = place(bodyOf(inlineRecord));
    inlineRecord.setSource(name);
    inlineRecord.load(); // not binary: the buffer is not touched
    EXPECT_FALSE(inlineRecord.isLoaded());
    EXPECT_TRUE(Buffer::remove(name));
}

TEST(LazyLoading, ReadsPlainAndCompressedBodiesOnce) {
    TestRecord source;
    source.count = 99;
    source.label = L"body \U0001F600";
    source.tags = {L"t"};
    std::string body = bodyOf(source);

    std::string gzip, zlibBody;
    xch::Compressor::compress(gzip, body.data(), body.size(), -1);
    for (const std::string& bytes : {body, gzip}) {
        TestPackedRecord target;
        std::wstring name = place(bytes);
        target.setSource(name);
        target.load();
        EXPECT_TRUE(target.isLoaded());
        EXPECT_EQ(target.count, 99);
        EXPECT_EQ(target.label, L"body \U0001F600");
        // The reader removed the body; a second load does nothing.
        EXPECT_FALSE(Buffer::exists(name));
        target.load();
        EXPECT_EQ(target.tags.size(), 1u);
        // A clone keeps source and state.
        auto copy = target.clone();
        EXPECT_TRUE(copy->isLoaded());
        EXPECT_EQ(copy->source(), name);
    }
}

TEST(LazyLoading, FailuresPropagateAndLeaveTheObjectNotLoaded) {
    TestPlainRecord target;
    // Two bytes that look like a zlib header are not taken as compressed:
    // they are decoded as binary JSON and fail as such.
    target.setSource(place(std::string("\x78\x9c", 2)));
    EXPECT_THROW(target.load(), std::invalid_argument);
    EXPECT_FALSE(target.isLoaded());

    // A corrupt compressed body (a reserved deflate block type) fails in
    // decompression.
    target.setSource(place(std::string("\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03\xff\xff", 12)));
    EXPECT_THROW(target.load(), std::runtime_error);
    EXPECT_FALSE(target.isLoaded());

    // A body that was removed cannot be loaded.
    target.setSource(xch::IExchangeObject::generateUUID());
    EXPECT_THROW(target.load(), mp::SharedMemoryException);
    EXPECT_FALSE(target.isLoaded());

    // A source that is no UUID never reaches the system.
    target.setSource(L"../escape");
    EXPECT_THROW(target.load(), mp::SharedMemoryException);
}

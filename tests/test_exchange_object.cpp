#include <gtest/gtest.h>

#include <set>
#include <string>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_compressor.h>
#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_json_binary_io.h>

#include "support/test_types.h"

using xch::ExchangeObjectRegistry;
using xch_test::TestPackedRecord;
using xch_test::TestRecord;
using Buffer = mp::SharedBuffer<char>;

namespace {

// Places `bytes` in a new shared buffer and returns its name.
std::wstring place(const std::string& bytes) {
    std::wstring name = xch::IExchangeObject::generateUUID();
    Buffer(name, Buffer::OpenMode::Create).write(bytes.data(), bytes.size());
    return name;
}

} // namespace

TEST(Registry, GetClonesThePrototypeByExactNameAndTheLaterRegistrationWins) {
    xch_test::registerTestTypes();
    auto& registry = ExchangeObjectRegistry::instance();
    auto a = registry.get(L"test_record");
    ASSERT_TRUE(a);
    EXPECT_NE(a.get(), registry.get(L"test_record").get());
    EXPECT_EQ(a->name(), L"test_record");
    for (const wchar_t* absent : {L"", L"TEST_RECORD", L"test_record "}) EXPECT_EQ(registry.get(absent), nullptr);
    {
        xch::StaticExchangeObject<TestRecord> second;
        second.label = L"second prototype";
        auto clone = std::static_pointer_cast<TestRecord>(registry.get(L"test_record"));
        EXPECT_EQ(clone->label, L"second prototype");
        clone->label = L"changed"; // the clone is independent
        EXPECT_EQ(second.label, L"second prototype");
    }
    // Destroying the second prototype removed the entry of its name.
    EXPECT_EQ(registry.get(L"test_record"), nullptr);
    static xch::StaticExchangeObject<TestRecord> again; // for the other tests
}

TEST(GenerateUUID, RandomVersion4Text) {
    std::set<std::wstring> seen;
    for (int i = 0; i < 500; ++i) {
        std::wstring id = xch::IExchangeObject::generateUUID();
        ASSERT_TRUE(Buffer::isValidName(id)) << vx_link::utf8(id);
        EXPECT_EQ(id[14], L'4');
        EXPECT_NE(std::wstring(L"89ab").find(id[19]), std::wstring::npos);
        EXPECT_EQ(id.find_first_of(L"ABCDEF"), std::wstring::npos);
        seen.insert(id);
    }
    EXPECT_EQ(seen.size(), 500u);
}

TEST(LazyLoading, ReadsPlainAndCompressedBodiesOnlyForBinaryObjects) {
    TestRecord source;
    source.count = 99;
    source.label = L"body \U0001F600";
    xch::JsonDocument doc;
    source.writeObject(doc, doc.GetAllocator());
    std::string body, gzip;
    xch::JsonBinaryIO::write(body, doc);
    xch::Compressor::compress(gzip, body.data(), body.size(), -1);

    TestRecord inlineRecord; // not binary: the buffer is not touched
    inlineRecord.setSource(place(body));
    inlineRecord.load();
    EXPECT_FALSE(inlineRecord.isLoaded());
    EXPECT_TRUE(Buffer::remove(inlineRecord.source()));

    for (const std::string& bytes : {body, gzip}) {
        TestPackedRecord target;
        target.load(); // no source: nothing happens
        EXPECT_FALSE(target.isLoaded());
        target.setSource(place(bytes));
        target.load();
        EXPECT_TRUE(target.isLoaded());
        EXPECT_EQ(target.count, 99);
        EXPECT_EQ(target.label, L"body \U0001F600");
        EXPECT_TRUE(Buffer::remove(target.source())); // the reader left the body
        target.load();                                 // and a second load does nothing
        EXPECT_TRUE(target.clone()->isLoaded());
    }
}

TEST(LazyLoading, FailuresPropagateAndLeaveTheObjectNotLoaded) {
    const struct {
        std::wstring source;
        const char* what;
    } cases[] = {
        // Two bytes that look like a zlib header are decoded as binary JSON.
        {place(std::string("\x78\x9c", 2)), "JsonBinaryIO: Unknown value type"},
        // A reserved deflate block type.
        {place(std::string("\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03\xff\xff", 12)), "invalid block type"},
        {xch::IExchangeObject::generateUUID(), nullptr}, // removed or never written
        {L"../escape", nullptr},                          // never reaches the system
    };
    for (const auto& c : cases) {
        TestPackedRecord target;
        target.setSource(c.source);
        try {
            target.load();
            ADD_FAILURE() << "loaded " << vx_link::utf8(c.source);
        } catch (const mp::SharedMemoryException&) {
            EXPECT_EQ(c.what, nullptr);
        } catch (const std::exception& e) {
            EXPECT_STREQ(e.what(), c.what);
        }
        EXPECT_FALSE(target.isLoaded());
        // A body that failed to load stays for inspection.
        if (c.what) {
            EXPECT_TRUE(Buffer::remove(c.source));
        }
    }
}

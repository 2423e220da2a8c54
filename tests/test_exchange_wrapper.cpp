#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_utf8.h>

#include "support/child_process.h"
#include "support/log_capture.h"
#include "support/shm_listing.h"
#include "support/test_types.h"

using xch::ExchangeObjectWrapper;
using xch_test::TestPackedRecord;
using xch_test::TestPlainRecord;
using xch_test::TestRecord;
using Buffer = mp::SharedBuffer<char>;

namespace {

struct WrapperTest : ::testing::Test {
    void SetUp() override { xch_test::registerTestTypes(); }
};

std::wstring envelopeOf(const std::shared_ptr<xch::IExchangeObject>& object) {
    std::wostringstream out;
    ExchangeObjectWrapper(object).writeObject(out);
    return out.str();
}

std::shared_ptr<xch::IExchangeObject> readEnvelope(const std::wstring& text, bool delayed = false) {
    ExchangeObjectWrapper wrapper;
    wrapper.setDelayedLoading(delayed);
    std::wistringstream in(text);
    wrapper.readObject(in);
    return wrapper.get();
}

template <class T>
std::shared_ptr<T> sample() {
    auto record = std::make_shared<T>();
    record->count = 12;
    record->flags = 4000000000u;
    record->ratio = 0.125;
    record->active = true;
    record->label = L"caf\u00e9 \U0001F600";
    record->shape = xch_test::ShapeSquare;
    record->tags = {L"x", L"y"};
    record->items.push_back(std::make_shared<xch_test::TestItem>());
    record->items[0]->label = L"item";
    return record;
}

template <class T>
void expectSample(const std::shared_ptr<xch::IExchangeObject>& object) {
    auto record = std::dynamic_pointer_cast<T>(object);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->count, 12);
    EXPECT_EQ(record->flags, 4000000000u);
    EXPECT_EQ(record->ratio, 0.125);
    EXPECT_TRUE(record->active);
    EXPECT_EQ(record->label, L"caf\u00e9 \U0001F600");
    EXPECT_EQ(record->shape, xch_test::ShapeSquare);
    EXPECT_EQ(record->tags, (std::vector<std::wstring>{L"x", L"y"}));
    ASSERT_EQ(record->items.size(), 1u);
    EXPECT_EQ(record->items[0]->label, L"item");
}

} // namespace

TEST_F(WrapperTest, InlineObjectsTravelAsTheirJson) {
    std::wstring text = envelopeOf(sample<TestRecord>());
    EXPECT_EQ(text.find(L"binary"), std::wstring::npos);
    EXPECT_EQ(text.substr(0, 54), L"{\"exchange_object_name\":\"test_record\",\"exchange_object");
    EXPECT_EQ(text.find(L'\n'), std::wstring::npos);
    expectSample<TestRecord>(readEnvelope(text));
}

TEST_F(WrapperTest, BinaryObjectsTravelThroughSharedMemory) {
    std::set<std::string> before = xch_test::sharedMemoryObjects();
    std::wstring text = envelopeOf(sample<TestPackedRecord>());
    const std::wstring prefix = L"{\"exchange_object_name\":\"test_packed_record\",\"binary\":true,\"exchange_object_data\":\"";
    ASSERT_EQ(text.substr(0, prefix.size()), prefix);
    std::wstring uuid = text.substr(prefix.size(), 36);
    EXPECT_EQ(text.substr(prefix.size() + 36), L"\"}");
    // The body is a gzip stream.
    std::vector<char> body = Buffer(uuid, Buffer::OpenMode::Open).read();
    ASSERT_GE(body.size(), 3u);
    EXPECT_EQ(static_cast<unsigned char>(body[0]), 0x1F);
    EXPECT_EQ(static_cast<unsigned char>(body[1]), 0x8B);

    expectSample<TestPackedRecord>(readEnvelope(text));
    // Reading took the body: nothing is left behind.
    EXPECT_FALSE(Buffer::exists(uuid));
    EXPECT_EQ(xch_test::sharedMemoryObjects(), before);

    // Without compression the body is the bare binary JSON (an object, 0x03).
    std::wstring plain = envelopeOf(sample<TestPlainRecord>());
    std::wstring plainId = plain.substr(plain.size() - 38, 36);
    EXPECT_EQ(Buffer(plainId, Buffer::OpenMode::Open).read().at(0), 0x03);
    expectSample<TestPlainRecord>(readEnvelope(plain));
}

TEST_F(WrapperTest, DelayedLoadingWaitsForLoad) {
    std::wstring text = envelopeOf(sample<TestPackedRecord>());
    auto object = readEnvelope(text, true);
    ASSERT_TRUE(object);
    EXPECT_FALSE(object->isLoaded());
    EXPECT_EQ(std::dynamic_pointer_cast<TestPackedRecord>(object)->count, -1);
    object->load();
    EXPECT_TRUE(object->isLoaded());
    expectSample<TestPackedRecord>(object);
}

TEST_F(WrapperTest, UnreadBodiesAreDiscardedByTheWriter) {
    std::set<std::string> before = xch_test::sharedMemoryObjects();
    envelopeOf(sample<TestPackedRecord>());
    envelopeOf(sample<TestPlainRecord>());
    EXPECT_EQ(xch_test::sharedMemoryObjects().size(), before.size() + 2);
    EXPECT_EQ(ExchangeObjectWrapper::discardUnreadBodies(), 2u);
    EXPECT_EQ(xch_test::sharedMemoryObjects(), before);
}

TEST_F(WrapperTest, ReaderRulesAndMessages) {
    xch_test::LogCapture log(2);
    // Unknown or missing names: no object, no message.
    EXPECT_EQ(readEnvelope(L"{\"exchange_object_name\":\"no_such_type\",\"exchange_object_data\":{}}"), nullptr);
    EXPECT_EQ(readEnvelope(L"{\"exchange_object_data\":{}}"), nullptr);
    EXPECT_EQ(readEnvelope(L"{\"exchange_object_name\":5}"), nullptr);
    EXPECT_TRUE(log.messages().empty());

    // Missing data: logged, default object.
    auto bare = std::dynamic_pointer_cast<TestRecord>(readEnvelope(L"{\"exchange_object_name\":\"test_record\"}"));
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->count, -1);
    EXPECT_TRUE(log.has("ExchangeObjectWrapper JSON object has no Exchange Object data."));

    // "binary" as a string is not binary: the data is read inline.
    auto inlineData = std::dynamic_pointer_cast<TestRecord>(readEnvelope(
        L"{\"exchange_object_name\":\"test_record\",\"binary\":\"true\",\"exchange_object_data\":{\"count\":3}}"));
    ASSERT_TRUE(inlineData);
    EXPECT_EQ(inlineData->count, 3);
    // An empty data object gives a default object.
    auto empty = std::dynamic_pointer_cast<TestRecord>(
        readEnvelope(L"{\"exchange_object_name\":\"test_record\",\"exchange_object_data\":{}}"));
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->flags, 7u);

    // Binary with data that is no UUID text.
    auto noUuid = readEnvelope(L"{\"exchange_object_name\":\"test_packed_record\",\"binary\":true,\"exchange_object_data\":{}}");
    ASSERT_TRUE(noUuid);
    EXPECT_FALSE(noUuid->isLoaded());
    EXPECT_TRUE(log.has("ExchangeObjectWrapper JSON object should have UUID in Exchange Object Data field (if binary)."));

    // A body that does not exist: the load error propagates.
    EXPECT_THROW(readEnvelope(L"{\"exchange_object_name\":\"test_packed_record\",\"binary\":true,"
                              L"\"exchange_object_data\":\"" + xch::IExchangeObject::generateUUID() + L"\"}"),
                 mp::SharedMemoryException);
}

TEST_F(WrapperTest, StreamErrorsThrow) {
    for (const wchar_t* bad : {L"", L"[]", L"\"text\"", L"{\"exchange_object_name\":", L"{}{}"}) {
        try {
            readEnvelope(bad);
            ADD_FAILURE() << "accepted " << vx_link::utf8(bad);
        } catch (const std::invalid_argument& e) {
            EXPECT_STREQ(e.what(), "ExchangeObjectWrapper::readObject: invalid json document");
        }
    }
    std::wostringstream out;
    try {
        ExchangeObjectWrapper().writeObject(out);
        ADD_FAILURE() << "wrote without an object";
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "ExchangeObjectWrapper::writeObject > m_pObject == nullptr");
    }
}

TEST_F(WrapperTest, SecondProcessReadsAndAnswersEnvelopes) {
    std::set<std::string> before = xch_test::sharedMemoryObjects();
    {
        xch_test::ChildProcess peer(xch_test::helperPath("xch_test_peer"));
        std::string line;
        for (int round = 0; round < 2; ++round) {
            for (auto object : std::vector<std::shared_ptr<xch::IExchangeObject>>{
                     sample<TestRecord>(), sample<TestPackedRecord>(), sample<TestPlainRecord>()}) {
                peer.writeLine((round ? "delayed " : "envelope ") + xch::toUtf8(envelopeOf(object)));
                if (round) {
                    ASSERT_TRUE(peer.readLine(line));
                    EXPECT_EQ(line, "pending"); // inline objects have no body to load
                }
                ASSERT_TRUE(peer.readLine(line));
                ASSERT_EQ(line.substr(0, 9), "envelope ") << line;
                auto answer = readEnvelope(xch::fromUtf8(line.substr(9)));
                ASSERT_TRUE(answer);
                EXPECT_EQ(answer->name(), object->name());
                if (object->binary()) {
                    EXPECT_TRUE(answer->isLoaded());
                }
                if (object->name() == L"test_record") expectSample<TestRecord>(answer);
                if (object->name() == L"test_packed_record") expectSample<TestPackedRecord>(answer);
                if (object->name() == L"test_plain_record") expectSample<TestPlainRecord>(answer);
            }
        }
        peer.writeLine("envelope {\"exchange_object_name\":\"nothing\"}");
        ASSERT_TRUE(peer.readLine(line));
        EXPECT_EQ(line, "none");
        peer.writeLine("envelope not json");
        ASSERT_TRUE(peer.readLine(line));
        EXPECT_EQ(line, "error ExchangeObjectWrapper::readObject: invalid json document");
        peer.writeLine("bye");
        EXPECT_EQ(peer.wait(), 0);
    }
    EXPECT_EQ(xch_test::sharedMemoryObjects(), before);
}

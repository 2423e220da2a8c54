#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_exchange_wrapper.h>

#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/test_types.h"

using xch::ExchangeObjectWrapper;
using xch_test::TestPackedRecord;
using xch_test::TestPlainRecord;
using xch_test::TestRecord;
using xch_test::toJsonText;
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
    record->label = L"caf\u00e9 \U0001F600";
    record->tags = {L"x", L"y"};
    record->items.push_back(std::make_shared<xch_test::TestItem>());
    return record;
}

} // namespace

TEST_F(WrapperTest, InlineObjectsTravelAsTheirJson) {
    std::wstring text = envelopeOf(sample<TestRecord>());
    EXPECT_EQ(text, L"{\"exchange_object_name\":\"test_record\",\"exchange_object_data\":" +
                        toJsonText(*sample<TestRecord>()) + L"}");
    EXPECT_EQ(toJsonText(*readEnvelope(text)), toJsonText(*sample<TestRecord>()));
}

TEST_F(WrapperTest, BinaryObjectsTravelThroughSharedMemory) {
    for (bool compressed : {true, false}) {
        auto object = compressed ? std::shared_ptr<xch::IExchangeObject>(sample<TestPackedRecord>())
                                 : sample<TestPlainRecord>();
        std::wstring text = envelopeOf(object);
        const std::wstring prefix =
            L"{\"exchange_object_name\":\"" + object->name() + L"\",\"binary\":true,\"exchange_object_data\":\"";
        ASSERT_EQ(text.substr(0, prefix.size()), prefix);
        std::wstring uuid = text.substr(prefix.size(), 36);
        EXPECT_EQ(text.substr(prefix.size() + 36), L"\"}");
        // The body is a gzip stream, or the bare binary JSON of an object.
        std::vector<char> body = Buffer(uuid, Buffer::OpenMode::Open).read();
        EXPECT_EQ(static_cast<unsigned char>(body.at(0)), compressed ? 0x1F : 0x03);
        if (compressed) {
            EXPECT_EQ(static_cast<unsigned char>(body.at(1)), 0x8B);
        }

        // With delayed loading the object is not loaded until load().
        auto read = readEnvelope(text, compressed);
        EXPECT_EQ(read->isLoaded(), !compressed);
        if (compressed) read->load();
        EXPECT_TRUE(read->isLoaded());
        EXPECT_EQ(toJsonText(*read), toJsonText(*object));
        EXPECT_TRUE(Buffer::remove(uuid)); // the reader left the body
    }
}

TEST_F(WrapperTest, ReaderRulesAndMessages) {
    xch_test::LogCapture log(2);
    // Unknown or missing names: no object, no message.
    for (const wchar_t* text : {L"{\"exchange_object_name\":\"no_such_type\",\"exchange_object_data\":{}}",
                                L"{\"exchange_object_data\":{}}", L"{\"exchange_object_name\":5}"})
        EXPECT_EQ(readEnvelope(text), nullptr);
    EXPECT_TRUE(log.messages().empty());

    const std::wstring defaults = toJsonText(TestRecord());
    EXPECT_EQ(toJsonText(*readEnvelope(L"{\"exchange_object_name\":\"test_record\"}")), defaults);
    EXPECT_TRUE(log.has("ExchangeObjectWrapper JSON object has no Exchange Object data."));
    EXPECT_EQ(toJsonText(*readEnvelope(L"{\"exchange_object_name\":\"test_record\",\"exchange_object_data\":{}}")),
              defaults);
    // "binary" as a string is not binary: the data is read inline.
    auto inlineData = std::static_pointer_cast<TestRecord>(readEnvelope(
        L"{\"exchange_object_name\":\"test_record\",\"binary\":\"true\",\"exchange_object_data\":{\"count\":3}}"));
    EXPECT_EQ(inlineData->count, 3);

    auto noUuid = readEnvelope(
        L"{\"exchange_object_name\":\"test_packed_record\",\"binary\":true,\"exchange_object_data\":{}}");
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
    try {
        envelopeOf(nullptr);
        ADD_FAILURE() << "wrote without an object";
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "ExchangeObjectWrapper::writeObject > m_pObject == nullptr");
    }
}

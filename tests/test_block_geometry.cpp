#include <gtest/gtest.h>

#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_compressor.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using Shared = mp::SharedBuffer<char>;
using Bytes = std::vector<char>;
using Msgs = std::vector<std::string>;

// A consumer's object after load() of the shared-memory object `name`, made to hold `bytes` first unless null.
static auto loaded(const Bytes* bytes, const std::wstring& name = IExchangeObject::generateUUID()) {
    if (bytes) Shared(name, Shared::OpenMode::Create).write(bytes->data(), bytes->size());
    auto geometry = std::make_unique<ExcBlockGeometry>();
    geometry->setSharedAcisBufferName(name);
    geometry->load();
    return geometry;
}

TEST(BlockGeometry, BytesTravelThroughSharedMemoryAndTheLastOwnerRemovesThem) {
    Bytes data(200000, 'A'); // a text-like start, then repetitive binary records that compress well
    for (std::size_t i = 4; i < data.size(); ++i) data[i] = static_cast<char>(i * 7 % 23 + (i % 1000 ? 0 : 200));
    for (bool handOver : {false, true}) { // handed over: stored compressed, and the producer gives up ownership
        SCOPED_TRACE(handOver ? "compressed, handed over" : "plain, owned");
        auto producer = std::make_unique<ExcBlockGeometry>();
        ASSERT_TRUE(producer->setBinaryData(data.data(), data.size(), handOver));
        producer->own(!handOver); // reaches the buffer that exists already
        const std::wstring name = producer->sharedAcisBufferName();
        const Bytes bytes = Shared(name, Shared::OpenMode::Open).read(); // a zlib stream when compressed
        EXPECT_TRUE(handOver ? bytes[0] == '\x78' && bytes.size() < data.size() / 4 : bytes == data);
        auto consumer = loaded(nullptr, name);
        EXPECT_EQ(consumer->binaryData(), data);
        std::shared_ptr<IExchangeObject> copy = producer->clone();
        producer.reset();
        EXPECT_TRUE(Shared::exists(name)); // the copy shares the producer's buffer
        copy.reset();
        EXPECT_EQ(Shared::exists(name), handOver);
        consumer.reset(); // the consumer owns what it loaded
        EXPECT_FALSE(Shared::exists(name));
    }
}

TEST(BlockGeometry, LoadingNeverThrowsAndRecognisesCompressionFromTheData) {
    auto failure = [](auto action) -> std::string {
        try { action(); } catch (const std::exception& e) { return e.what(); }
        return "nothing thrown";
    };
    xch_test::LogCapture log;
    ExcBlockGeometry empty; // no bytes: an empty object all the same, which loads as no bytes
    for (bool compress : {true, false}) {
        EXPECT_TRUE(empty.setBinaryData(nullptr, 0, compress));
        EXPECT_EQ(Shared(empty.sharedAcisBufferName(), Shared::OpenMode::Open).read(), Bytes());
        auto consumer = loaded(nullptr, empty.sharedAcisBufferName());
        EXPECT_TRUE(consumer->isLoaded());
        EXPECT_EQ(consumer->binaryData(), Bytes());
    }
    const std::wstring missing = IExchangeObject::generateUUID();
    for (const std::wstring& name : {missing, std::wstring()}) EXPECT_FALSE(loaded(nullptr, name)->isLoaded());
    const Bytes bad{'\x78', 'g', 'a', 'r', 'b', 'a', 'g', 'e'}; // starts like zlib, but is not
    EXPECT_FALSE(loaded(&bad)->isLoaded()); // each failure is logged with the text of its exception
    EXPECT_EQ(log.messages(2), (Msgs{failure([&] { Shared(missing, Shared::OpenMode::Open); }),
                                     failure([] { Shared(L"", Shared::OpenMode::Open); }), // an empty name
                                     failure([&] { Bytes x; Compressor::decompress(x, bad.data(), bad.size()); })}));
    Bytes gzip; // inflated too; kept as they are: bytes too short, and bytes without gzip's magic
    Compressor::compress(gzip, bad.data(), bad.size(), -1);
    EXPECT_EQ(loaded(&gzip)->binaryData(), bad);
    for (Bytes raw : {Bytes{'\x78', '\x9C'}, Bytes{'\x1F', '\x8C', '\x08'}}) EXPECT_EQ(loaded(&raw)->binaryData(), raw);
}

TEST(BlockGeometry, JsonFormAndItsFailureMessages) {
    xch_test::LogCapture log;
    ExcBlockGeometry geometry;
    geometry.setBlockId(18446744073709551615ull);
    EXPECT_EQ(xch_test::toJsonText(geometry), L"{\"block_id\":18446744073709551615,\"shared_acis_buffer_name\":\"\"}");
    for (const wchar_t* text : {L"{\"block_id\":7,\"shared_acis_buffer_name\":\"abc\"}", L"{\"block_id\":8.0}",
                                L"{\"block_id\":-1,\"shared_acis_buffer_name\":5}", L"[7,\"abc\"]"})
        xch_test::readFromJsonText(geometry, text);
    EXPECT_EQ(xch_test::toJsonText(geometry), L"{\"block_id\":7,\"shared_acis_buffer_name\":\"abc\"}"); // as read
    const std::string noBuffer = "ExcBlockGeometry: ACIS buffer was not initialized in shared memory.";
    const std::string noId = "ExcBlockGeometry: Failed to read block Id from JSON object.";
    const std::string noName = "ExcBlockGeometry: Failed to read shared memory buffer name.";
    EXPECT_EQ(log.messages(2), (Msgs{noBuffer, noId, noName, noId, noName,
                                     "ExcBlockGeometry object should have a JSON object type.", noBuffer}));
}

TEST(SharedByteBuffer, StagingStreamOverwritesAtTheWritePositionAndReadsFromTheReadPosition) {
    ExcSharedByteBuffer buffer(IExchangeObject::generateUUID(), true);
    buffer.write("abcdef", 6);
    buffer.seek(2); // moves both positions
    buffer.write("XYZ12", 5);
    EXPECT_EQ(std::string(buffer.data().begin(), buffer.data().end()), "abXYZ12");
    char out[8];
    EXPECT_EQ(std::string(out, buffer.read(out, 8)), "XYZ12");
    buffer.seek(100); // clamped to the end
    EXPECT_EQ(buffer.readPosition(), 7u);
}

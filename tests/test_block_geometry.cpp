#include <gtest/gtest.h>

#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_compressor.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using Shared = mp::SharedBuffer<char>;
using Bytes = std::vector<char>;
using Msgs = std::vector<std::string>;

// A consumer's object after load() of a new shared-memory object holding `stored`.
static std::unique_ptr<ExcBlockGeometry> loadStored(const Bytes& stored) {
    auto geometry = std::make_unique<ExcBlockGeometry>();
    geometry->setSharedAcisBufferName(IExchangeObject::generateUUID());
    Shared(geometry->sharedAcisBufferName(), Shared::OpenMode::Create).write(stored.data(), stored.size());
    EXPECT_NO_THROW(geometry->load());
    return geometry;
}

TEST(BlockGeometry, BytesTravelThroughSharedMemoryAndTheLastOwnerRemovesThem) {
    Bytes data(200000, 'A'); // a text-like start, then repetitive binary records that compress well
    for (std::size_t i = 4; i < data.size(); ++i) data[i] = static_cast<char>(i * 7 % 23 + (i % 1000 ? 0 : 200));
    for (bool handOver : {false, true}) { // handed over: stored compressed, and the producer gives up ownership
        SCOPED_TRACE(handOver ? "compressed, handed over" : "plain, owned");
        auto producer = std::make_unique<ExcBlockGeometry>();
        producer->setBlockId(42);
        ASSERT_TRUE(producer->setBinaryData(data.data(), data.size(), handOver));
        producer->own(!handOver); // reaches the buffer that exists already
        const std::wstring name = producer->sharedAcisBufferName();
        const Bytes stored = Shared(name, Shared::OpenMode::Open).read(); // a zlib stream when compressed
        EXPECT_TRUE(handOver ? stored[0] == '\x78' && stored.size() < data.size() / 4 : stored == data);
        const std::wstring json = L"{\"block_id\":42,\"shared_acis_buffer_name\":\"" + name + L"\"}";
        EXPECT_EQ(xch_test::toJsonText(*producer), json);
        auto consumer = std::dynamic_pointer_cast<ExcBlockGeometry>( // made as a host makes it
            ExchangeObjectRegistry::instance().get(L"exc_block_geometry"));
        ASSERT_TRUE(consumer);
        xch_test::readFromJsonText(*consumer, json);
        consumer->load();
        ASSERT_TRUE(consumer->isLoaded());
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
    ExcBlockGeometry empty; // no bytes: nothing is put into shared memory
    EXPECT_TRUE(empty.setBinaryData(nullptr, 0, true));
    ExcBlockGeometry missing, unnamed; // an empty name is refused before the system is asked
    missing.setSharedAcisBufferName(empty.sharedAcisBufferName());
    for (ExcBlockGeometry* geometry : {&missing, &unnamed}) {
        EXPECT_NO_THROW(geometry->load());
        EXPECT_FALSE(geometry->isLoaded());
    }
    const Bytes bad{'\x78', 'g', 'a', 'r', 'b', 'a', 'g', 'e'}; // starts like zlib, but is not
    EXPECT_FALSE(loadStored(bad)->isLoaded()); // each failure is logged with the text of its exception
    EXPECT_EQ(log.messages(2), (Msgs{failure([&] { Shared(missing.sharedAcisBufferName(), Shared::OpenMode::Open); }),
                                     failure([] { Shared(L"", Shared::OpenMode::Open); }),
                                     failure([&] { Bytes x; Compressor::decompress(x, bad.data(), bad.size()); })}));
    const std::string text(5000, 'q');
    Bytes gzip;
    Compressor::compress(gzip, text.data(), text.size(), -1, Compressor::Gzip);
    EXPECT_EQ(loadStored(gzip)->binaryData(), Bytes(text.begin(), text.end()));
    for (const Bytes& kept : {Bytes{'\x78', '\x9C'}, Bytes{'\x1F', '\x8C', '\x08'}}) // too short; not gzip's magic
        EXPECT_EQ(loadStored(kept)->binaryData(), kept);
}

TEST(BlockGeometry, JsonFormAndItsFailureMessages) {
    xch_test::LogCapture log;
    ExcBlockGeometry geometry;
    geometry.setBlockId(18446744073709551615ull);
    EXPECT_EQ(xch_test::toJsonText(geometry), L"{\"block_id\":18446744073709551615,\"shared_acis_buffer_name\":\"\"}");
    for (const wchar_t* text : {L"{\"block_id\":7,\"shared_acis_buffer_name\":\"abc\"}", L"{\"block_id\":8.0}", L"{}",
                                L"{\"block_id\":-1,\"shared_acis_buffer_name\":5}", L"[7,\"abc\"]"})
        xch_test::readFromJsonText(geometry, text);
    EXPECT_EQ(xch_test::toJsonText(geometry), L"{\"block_id\":7,\"shared_acis_buffer_name\":\"abc\"}"); // as read
    const std::string noBuffer = "ExcBlockGeometry: ACIS buffer was not initialized in shared memory.";
    const std::string noId = "ExcBlockGeometry: Failed to read block Id from JSON object.";
    const std::string noName = "ExcBlockGeometry: Failed to read shared memory buffer name.";
    EXPECT_EQ(log.messages(2), (Msgs{noBuffer, noId, noName, noId, noName, noId, noName,
                                     "ExcBlockGeometry object should have a JSON object type.", noBuffer}));
}

TEST(SharedByteBuffer, StagingStreamOverwritesAtTheWritePositionAndReadsFromTheReadPosition) {
    ExcSharedByteBuffer buffer(IExchangeObject::generateUUID(), true);
    buffer.write("abcdef", 6);
    buffer.seek(2); // moves both positions
    buffer.write("XYZ12", 5);
    EXPECT_EQ(std::string(buffer.data().begin(), buffer.data().end()), "abXYZ12");
    EXPECT_EQ(buffer.writePosition(), 7u);
    char out[8] = {};
    EXPECT_EQ(buffer.read(out, 8), 5u);
    EXPECT_EQ(std::string(out, 5), "XYZ12");
    EXPECT_EQ(buffer.read(out, 8), 0u);
    buffer.seek(100); // clamped to the end
    EXPECT_EQ(buffer.readPosition(), 7u);
}

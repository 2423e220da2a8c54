#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_compressor.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using xch_test::LogCapture;
using xch_test::readFromJsonText;
using xch_test::toJsonText;

namespace {

using Shared = mp::SharedBuffer<char>;

// Bytes shaped like a SAB stream: a text header, then repetitive binary
// records that compress well.
std::vector<char> sabLikeBytes(std::size_t size) {
    const std::string header = "ACIS BinaryFile";
    std::vector<char> bytes(header.begin(), header.end());
    for (std::size_t i = 0; bytes.size() < size; ++i)
        bytes.push_back(static_cast<char>((i * 7) % 23 + (i % 1000 == 0 ? 200 : 0)));
    bytes.resize(size);
    return bytes;
}

std::vector<char> sharedContents(const std::wstring& name) {
    return Shared(name, Shared::OpenMode::Open).read();
}

// The text of the exception that opening a missing object raises.
std::string missingObjectText(const std::wstring& name) {
    try {
        Shared shared(name, Shared::OpenMode::Open);
    } catch (const mp::SharedMemoryException& e) {
        return e.what();
    }
    return "object unexpectedly exists";
}

// A consumer's object made the way a host makes it: from the producer's JSON.
std::shared_ptr<ExcBlockGeometry> consumerOf(const ExcBlockGeometry& producer) {
    auto consumer = std::dynamic_pointer_cast<ExcBlockGeometry>(
        ExchangeObjectRegistry::instance().get(L"exc_block_geometry"));
    if (consumer) readFromJsonText(*consumer, toJsonText(producer));
    return consumer;
}

} // namespace

TEST(BlockGeometry, BytesTravelThroughSharedMemoryPlainAndCompressed) {
    const std::vector<char> data = sabLikeBytes(200000);
    for (bool compress : {false, true}) {
        SCOPED_TRACE(compress ? "compressed" : "plain");
        ExcBlockGeometry producer;
        producer.setBlockId(42);
        ASSERT_TRUE(producer.setBinaryData(data.data(), data.size(), compress));
        const std::wstring name = producer.sharedAcisBufferName();
        ASSERT_TRUE(Shared::isValidName(name));
        EXPECT_FALSE(producer.isLoaded());
        EXPECT_EQ(producer.binaryData(), data);

        const std::vector<char> stored = sharedContents(name);
        if (compress) {
            EXPECT_EQ(static_cast<unsigned char>(stored[0]), 0x78); // a zlib stream
            EXPECT_LT(stored.size(), data.size() / 4);
        } else {
            EXPECT_EQ(stored, data);
        }
        EXPECT_EQ(toJsonText(producer),
                  L"{\"block_id\":42,\"shared_acis_buffer_name\":\"" + name + L"\"}");

        std::shared_ptr<ExcBlockGeometry> consumer = consumerOf(producer);
        ASSERT_TRUE(consumer);
        EXPECT_EQ(consumer->blockId(), 42u);
        EXPECT_EQ(consumer->sharedAcisBufferName(), name);
        EXPECT_FALSE(consumer->isLoaded());
        EXPECT_TRUE(consumer->binaryData().empty());
        consumer->load();
        ASSERT_TRUE(consumer->isLoaded());
        EXPECT_EQ(consumer->binaryData(), data);

        // The consumer's object owns what it loaded: destroying it removes
        // the object even though the producer is still alive.
        consumer.reset();
        EXPECT_FALSE(Shared::exists(name));
    }
}

TEST(BlockGeometry, ProducerRemovesItsObjectUnlessOwnershipIsHandedOver) {
    LogCapture log;
    const std::vector<char> data = sabLikeBytes(1000);
    std::wstring name;
    std::shared_ptr<ExcBlockGeometry> consumer;
    std::shared_ptr<IExchangeObject> copy;
    {
        ExcBlockGeometry producer;
        EXPECT_TRUE(producer.own());
        producer.setBinaryData(data.data(), data.size(), false);
        name = producer.sharedAcisBufferName();
        consumer = consumerOf(producer);
        copy = producer.clone();
    }
    EXPECT_TRUE(Shared::exists(name)); // the copy shares the buffer
    copy.reset();
    EXPECT_FALSE(Shared::exists(name));
    ASSERT_TRUE(consumer);
    EXPECT_NO_THROW(consumer->load());
    EXPECT_FALSE(consumer->isLoaded());
    EXPECT_EQ(log.messages(2), std::vector<std::string>{missingObjectText(name)});

    {
        ExcBlockGeometry producer;
        producer.own(false);
        producer.setBinaryData(data.data(), data.size(), true);
        name = producer.sharedAcisBufferName();
        consumer = consumerOf(producer);
    }
    ASSERT_TRUE(Shared::exists(name));
    consumer->load();
    EXPECT_TRUE(consumer->isLoaded());
    EXPECT_EQ(consumer->binaryData(), data);
    consumer.reset();
    EXPECT_FALSE(Shared::exists(name));

    // own() also reaches a buffer that exists already.
    {
        ExcBlockGeometry producer;
        producer.setBinaryData(data.data(), data.size(), false);
        producer.own(false);
        name = producer.sharedAcisBufferName();
    }
    EXPECT_TRUE(Shared::exists(name));
    EXPECT_TRUE(Shared::remove(name));
}

TEST(BlockGeometry, LoadingNeverThrows) {
    LogCapture log;
    ExcBlockGeometry missing;
    const std::wstring name = IExchangeObject::generateUUID();
    missing.setSharedAcisBufferName(name);
    EXPECT_NO_THROW(missing.load());
    EXPECT_FALSE(missing.isLoaded());
    EXPECT_TRUE(missing.buffer() != nullptr);

    ExcBlockGeometry unnamed; // empty name: refused before the system is asked
    EXPECT_NO_THROW(unnamed.load());
    EXPECT_FALSE(unnamed.isLoaded());

    // Data that starts like zlib but is not: the inflation failure is logged.
    const std::wstring corruptName = IExchangeObject::generateUUID();
    Shared(corruptName, Shared::OpenMode::Create).write("\x78garbage", 8);
    ExcBlockGeometry corrupt;
    corrupt.setSharedAcisBufferName(corruptName);
    EXPECT_NO_THROW(corrupt.load());
    EXPECT_FALSE(corrupt.isLoaded());

    const std::vector<std::string> errors = log.messages(2);
    ASSERT_EQ(errors.size(), 3u);
    EXPECT_EQ(errors[0], missingObjectText(name));
    EXPECT_FALSE(errors[1].empty());
    EXPECT_FALSE(errors[2].empty());
}

TEST(BlockGeometry, CompressionIsRecognisedFromTheData) {
    const std::string text(5000, 'q');
    std::vector<char> gzip;
    Compressor::compress(gzip, text.data(), text.size(), -1);
    ASSERT_EQ(static_cast<unsigned char>(gzip[1]), 0x8B);

    struct Case {
        std::vector<char> stored;
        std::vector<char> expected;
    };
    const std::vector<Case> cases = {
        {gzip, std::vector<char>(text.begin(), text.end())},
        {{'\x78', '\x9C'}, {'\x78', '\x9C'}}, // too short to be a stream
        {{'\x1F', '\x8C', '\x08'}, {'\x1F', '\x8C', '\x08'}},
    };
    for (const Case& c : cases) {
        const std::wstring name = IExchangeObject::generateUUID();
        Shared(name, Shared::OpenMode::Create).write(c.stored.data(), c.stored.size());
        ExcBlockGeometry consumer;
        consumer.setSharedAcisBufferName(name);
        consumer.load();
        EXPECT_TRUE(consumer.isLoaded());
        EXPECT_EQ(consumer.binaryData(), c.expected);
    }
}

TEST(BlockGeometry, JsonFormAndItsFailureMessages) {
    LogCapture log;
    ExcBlockGeometry geometry;
    geometry.setBlockId(18446744073709551615ull);
    EXPECT_EQ(toJsonText(geometry), L"{\"block_id\":18446744073709551615,\"shared_acis_buffer_name\":\"\"}");
    EXPECT_EQ(log.messages(2),
              std::vector<std::string>{"ExcBlockGeometry: ACIS buffer was not initialized in shared memory."});

    log.clear();
    ExcBlockGeometry read;
    readFromJsonText(read, L"{\"block_id\": 7, \"shared_acis_buffer_name\": \"abc\"}");
    EXPECT_EQ(read.blockId(), 7u);
    EXPECT_EQ(read.sharedAcisBufferName(), L"abc");
    EXPECT_TRUE(log.messages(2).empty());

    const std::string noId = "ExcBlockGeometry: Failed to read block Id from JSON object.";
    const std::string noName = "ExcBlockGeometry: Failed to read shared memory buffer name.";
    readFromJsonText(read, L"{\"block_id\": -1, \"shared_acis_buffer_name\": 5}");
    readFromJsonText(read, L"{\"block_id\": 8.0}");
    readFromJsonText(read, L"{}");
    readFromJsonText(read, L"[7, \"abc\"]");
    EXPECT_EQ(read.blockId(), 7u);
    EXPECT_EQ(read.sharedAcisBufferName(), L"abc");
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{noId, noName, noId, noName, noId, noName,
                                                         "ExcBlockGeometry object should have a JSON object type."}));

    // Written back as read, the name field standing in for the missing buffer.
    EXPECT_EQ(toJsonText(read), L"{\"block_id\":7,\"shared_acis_buffer_name\":\"abc\"}");
}

TEST(BlockGeometry, CloneCopiesFieldsAndSharesTheBuffer) {
    const std::vector<char> data = sabLikeBytes(64);
    ExcBlockGeometry producer;
    producer.setBlockId(5);
    producer.setBinaryData(data.data(), data.size(), false);
    producer.load();
    auto copy = std::dynamic_pointer_cast<ExcBlockGeometry>(producer.clone());
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->name(), L"exc_block_geometry");
    EXPECT_EQ(copy->blockId(), 5u);
    EXPECT_TRUE(copy->isLoaded());
    EXPECT_EQ(copy->buffer(), producer.buffer());
    EXPECT_FALSE(copy->binary());

    // No bytes: nothing is put into shared memory.
    ExcBlockGeometry empty;
    EXPECT_TRUE(empty.setBinaryData(nullptr, 0, true));
    EXPECT_FALSE(Shared::exists(empty.sharedAcisBufferName()));
}

TEST(SharedByteBuffer, StagingStreamReadsWritesAndSeeks) {
    ExcSharedByteBuffer buffer(IExchangeObject::generateUUID(), true);
    buffer.write("abcdef", 6);
    buffer.seek(2);
    buffer.write("XY", 2);
    buffer.write("Z12", 3);
    EXPECT_EQ(std::string(buffer.data().begin(), buffer.data().end()), "abXYZ12");
    EXPECT_EQ(buffer.writePosition(), 7u);

    char out[8] = {};
    EXPECT_EQ(buffer.read(out, 3), 3u); // read position was moved by seek
    EXPECT_EQ(std::string(out, 3), "XYZ");
    EXPECT_EQ(buffer.read(out, 8), 2u);
    EXPECT_EQ(std::string(out, 2), "12");
    EXPECT_EQ(buffer.read(out, 8), 0u);
    buffer.seek(100);
    EXPECT_EQ(buffer.readPosition(), 7u);

    buffer.flush(false);
    ExcSharedByteBuffer reader(buffer.name(), false);
    reader.load();
    EXPECT_EQ(reader.data(), buffer.data());
    EXPECT_EQ(reader.readPosition(), 0u);
    EXPECT_EQ(reader.read(out, 2), 2u);
    EXPECT_EQ(std::string(out, 2), "ab");
}

// Block geometry through the ACIS binding: entities saved by setGeometry,
// restored by getGeometry in this and in a second process, and the
// failures on the way.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "fileinfo.hxx"
#include "kernapi.hxx"

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_geometry_kernel.h>
#include <xch_api_acis/xch_api_acis_attrib_id.h>
#include <xch_api_acis/xch_api_shared_acis_buffer.h>

#include "acis/acis_models.h"
#include "support/child_process.h"
#include "support/log_capture.h"
#include "support/peer_echo.h"

using namespace xch;
using xch_test::faceIds;
using xch_test::idRange;
using xch_test::OwnedEntities;
using Shared = mp::SharedBuffer<char>;
using Bytes = std::vector<char>;

namespace {

const std::string WriteFailed = "Failed to write geometry into shared ACIS buffer: ";
const std::string GetFailed = "Failed to get geometry from shared memory buffer: ";

// A consumer's object for the shared-memory object `name`, loaded.
std::unique_ptr<ExcBlockGeometry> consumerOf(const std::wstring& name) {
    auto geometry = std::make_unique<ExcBlockGeometry>();
    geometry->setSharedAcisBufferName(name);
    geometry->load();
    return geometry;
}

// The kernel's own message when it restores `bytes` (empty when it can).
std::string kernelError(const Bytes& bytes) {
    ExcSharedAcisBuffer file(L"unused", false);
    file.ExcSharedByteBuffer::write(bytes.data(), bytes.size());
    file.goto_mark(0);
    OwnedEntities restored;
    const outcome result = api_restore_entity_list_file(&file, restored.list);
    return result.ok() ? std::string() : find_err_mess(result.error_number());
}

} // namespace

TEST(AcisBlockGeometry, EntitiesAndTheirIdsTravelThroughSharedMemory) {
    for (bool compress : {false, true}) {
        SCOPED_TRACE(compress ? "compressed" : "plain");
        OwnedEntities saved;
        saved.list.add(xch_test::makeTaggedBox(100));
        saved.list.add(xch_test::makeTaggedBox(200));
        ExcBlockGeometry producer;
        ASSERT_TRUE(producer.setGeometry(saved.list, compress));
        const Bytes stored = Shared(producer.sharedAcisBufferName(), Shared::OpenMode::Open).read();
        EXPECT_EQ(stored.at(0) == '\x78', compress); // the kernel's own data never starts like zlib
        EXPECT_EQ(stored.size() < producer.binaryData().size(), compress);

        auto consumer = consumerOf(producer.sharedAcisBufferName());
        ASSERT_TRUE(consumer->isLoaded());
        EXPECT_EQ(consumer->binaryData(), producer.binaryData());
        OwnedEntities restored;
        ASSERT_TRUE(consumer->getGeometry(restored.list));
        ASSERT_EQ(restored.list.count(), 2);
        EXPECT_EQ(faceIds(restored.list[0]), idRange(100, 6));
        EXPECT_EQ(faceIds(restored.list[1]), idRange(200, 6));
        EXPECT_TRUE(is_ATTRIB_VARNEX(restored.list[0]->attrib()));
        EXPECT_FALSE(is_ATTRIB_VARNEX_ID(restored.list[0]->attrib()));

        // Restoring again makes new entities; the producer reads back what it saved.
        OwnedEntities again;
        ASSERT_TRUE(consumer->getGeometry(again.list));
        ASSERT_TRUE(producer.getGeometry(again.list));
        ASSERT_EQ(again.list.count(), 4);
        EXPECT_NE(again.list[0], restored.list[0]);
        EXPECT_EQ(faceIds(again.list[3]), idRange(200, 6));
    }

    OwnedEntities nothing; // an empty list is still a valid file in shared memory
    ExcBlockGeometry empty;
    ASSERT_TRUE(empty.setGeometry(nothing.list, false));
    EXPECT_TRUE(Shared::exists(empty.sharedAcisBufferName()));
    EXPECT_TRUE(consumerOf(empty.sharedAcisBufferName())->getGeometry(nothing.list));
    EXPECT_EQ(nothing.list.count(), 0);
}

TEST(AcisBlockGeometry, FailuresAreLoggedWithTheirMessagesAndRestoreNothing) {
    xch_test::LogCapture log;
    std::vector<std::string> expected;
    OwnedEntities out;

    EXPECT_FALSE(ExcBlockGeometry().getGeometry(out.list));
    expected.push_back(GetFailed + "Invalid buffer object.");

    // Data the kernel cannot restore: foreign bytes, and files cut short.
    OwnedEntities saved;
    saved.list.add(xch_test::makeTaggedBox(1));
    ExcBlockGeometry producer;
    ASSERT_TRUE(producer.setGeometry(saved.list, false));
    const Bytes valid = producer.binaryData();
    const Bytes foreign{'n', 'o', 't', ' ', 'a', ' ', 'm', 'o', 'd', 'e', 'l'};
    for (const Bytes& bytes : {foreign, Bytes(valid.begin(), valid.begin() + 3),
                               Bytes(valid.begin(), valid.begin() + valid.size() / 2),
                               Bytes(valid.begin(), valid.end() - 1)}) {
        const std::wstring name = IExchangeObject::generateUUID();
        Shared(name, Shared::OpenMode::Create).write(bytes.data(), bytes.size());
        auto consumer = consumerOf(name);
        ASSERT_TRUE(consumer->isLoaded());
        EXPECT_FALSE(consumer->getGeometry(out.list));
        expected.push_back(GetFailed + kernelError(bytes));
    }
    EXPECT_EQ(out.list.count(), 0);

    // A shared object that does not exist: load() logs why; there is then
    // nothing for the kernel to read.
    const std::wstring missing = IExchangeObject::generateUUID();
    auto consumer = consumerOf(missing);
    EXPECT_FALSE(consumer->isLoaded());
    try {
        Shared(missing, Shared::OpenMode::Open);
        ADD_FAILURE() << "the object exists";
    } catch (const mp::SharedMemoryException& e) {
        expected.push_back(e.what());
    }
    EXPECT_FALSE(consumer->getGeometry(out.list));
    expected.push_back(GetFailed + kernelError(Bytes()));

    // Without the binding's kernel; data loaded meanwhile restores once it is back.
    const GeometryKernel* kernel = GeometryKernel::installed();
    ASSERT_NE(kernel, nullptr);
    GeometryKernel::install(nullptr);
    ExcBlockGeometry unbound;
    EXPECT_FALSE(unbound.setGeometry(saved.list, false));
    auto early = consumerOf(producer.sharedAcisBufferName());
    EXPECT_FALSE(early->getGeometry(out.list));
    GeometryKernel::install(kernel);
    expected.push_back(WriteFailed + "no ACIS kernel binding (xch_api_acis) is loaded.");
    expected.push_back(GetFailed + "no ACIS kernel binding (xch_api_acis) is loaded.");
    ASSERT_TRUE(early->getGeometry(out.list));
    EXPECT_EQ(faceIds(out.list[0]), idRange(1, 6));

    EXPECT_EQ(log.messages(2), expected);
}

TEST(AcisBlockGeometry, DamagedFilesFailCleanlyAtEveryByte) {
    OwnedEntities saved;
    saved.list.add(xch_test::makeTaggedBox(1));
    ExcBlockGeometry producer;
    ASSERT_TRUE(producer.setGeometry(saved.list, false));
    const Bytes valid = producer.binaryData();
    ASSERT_EQ(kernelError(valid), "");
    for (std::size_t i = 0; i < valid.size(); ++i) {
        EXPECT_NE(kernelError(Bytes(valid.begin(), valid.begin() + i)), "") << "cut at " << i;
        Bytes damaged = valid; // restored or refused, never a crash or a half-made model
        damaged[i] = static_cast<char>(damaged[i] ^ 0x5A);
        kernelError(damaged);
    }
}

TEST(AcisBlockGeometry, AnotherProcessRestoresTheSameIds) {
    xch_test::ChildProcess peer(xch_test::helperPath("xch_acis_peer"));
    std::string line;
    for (bool compress : {false, true}) {
        OwnedEntities saved;
        saved.list.add(xch_test::makeTaggedBox(300));
        saved.list.add(xch_test::makeTaggedBox(-5));
        auto producer = std::make_shared<ExcBlockGeometry>();
        producer->setBlockId(77);
        ASSERT_TRUE(producer->setGeometry(saved.list, compress));
        peer.writeLine(xch_test::envelopeLine("geometry", producer));
        ASSERT_TRUE(peer.readLine(line));
        EXPECT_EQ(line, "block 77 product Quillaro Varnex units 1 ids 300 301 302 303 304 305 | -5 -4 -3 -2 -1 0");
    }

    // The owning producer is gone before the host loads: nothing to load.
    OwnedEntities saved;
    saved.list.add(xch_test::makeTaggedBox(1));
    auto producer = std::make_shared<ExcBlockGeometry>();
    ASSERT_TRUE(producer->setGeometry(saved.list, true));
    const std::string sent = xch_test::envelopeLine("geometry", producer);
    producer.reset();
    peer.writeLine(sent);
    ASSERT_TRUE(peer.readLine(line));
    EXPECT_EQ(line, "not loaded");

    peer.writeLine("bye");
    EXPECT_EQ(peer.wait(), 0);
}

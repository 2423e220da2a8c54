// A host and a worker in two processes: envelopes travel through pipes in
// both directions, bodies and block geometry through shared memory, and the
// exchange leaves no shared-memory objects behind.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_legacy_maps.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_utf8.h>

#include "support/child_process.h"
#include "support/hex.h"
#include "support/json_text.h"
#include "support/peer_echo.h"
#include "support/shm_listing.h"
#include "support/test_types.h"

using namespace xch;
using xch_test::echo;
using xch_test::envelopeLine;
using xch_test::readAnswer;

namespace {

struct TwoProcessTest : ::testing::Test {
    void SetUp() override {
        xch_test::registerTestTypes();
        before = xch_test::sharedMemoryObjects();
    }
    void TearDown() override { EXPECT_EQ(xch_test::sharedMemoryObjects(), before); }
    std::set<std::string> before;
};

} // namespace

TEST_F(TwoProcessTest, MessagesAndBodiesTravelBothWays) {
    xch_test::ChildProcess peer(xch_test::helperPath("xch_test_peer"));

    EXPECT_EQ(echo(peer, std::make_shared<ExcMessage>(L"Fichier \u00ab pi\u00e8ce \u00bb \U0001F600"))->message(),
              L"Fichier \u00ab pi\u00e8ce \u00bb \U0001F600");
    EXPECT_EQ(echo(peer, std::make_shared<ExcLog>(L"line \"quoted\"\nnext"))->message(), L"line \"quoted\"\nnext");
    ExcProgress progress(-7, 2147483647, true, L"step \t 3");
    EXPECT_EQ(*echo(peer, std::make_shared<ExcProgress>(progress)), progress);
    EXPECT_EQ(echo(peer, std::make_shared<ExcStageFinished>(ExcStageFinished::RootMechanical))->stage(),
              ExcStageFinished::RootMechanical);

    auto names = std::make_shared<LegacyComponentInstanceNames>();
    names->addInstanceName(OdDbHandle(18446744073709551615ull), L"last");
    names->addInstanceName(OdDbHandle(1), L"first");
    EXPECT_EQ(echo(peer, names)->map(), names->map());
    auto materials = std::make_shared<LegacyMaterialMap>();
    materials->addMaterial(OdDbHandle(77), LegacyMaterialMap::Material{true, L"Stahl", 7.85e-6, 50.2, 0.49});
    EXPECT_EQ(echo(peer, materials)->map(), materials->map());

    // A binary, compressed body: the peer loads it from shared memory (at
    // once, then with delayed loading) and answers with a body of its own.
    auto record = std::make_shared<xch_test::TestPackedRecord>();
    record->label = L"body";
    record->tags.assign(1000, L"tag \u00e9");
    EXPECT_EQ(xch_test::toJsonText(*echo(peer, record)), xch_test::toJsonText(*record));
    peer.writeLine(envelopeLine("delayed", record));
    std::string line;
    ASSERT_TRUE(peer.readLine(line));
    EXPECT_EQ(line, "pending");
    auto delayed = readAnswer(peer);
    EXPECT_TRUE(delayed->isLoaded());
    EXPECT_EQ(xch_test::toJsonText(*delayed), xch_test::toJsonText(*record));

    // The worker's own reports.
    peer.writeLine("report");
    EXPECT_EQ(std::dynamic_pointer_cast<ExcMessage>(readAnswer(peer))->message(),
              L"Import of \u00e9t\u00e9.stp started");
    EXPECT_EQ(std::dynamic_pointer_cast<ExcLog>(readAnswer(peer))->message(), L"reading 3 bodies");
    EXPECT_EQ(*std::dynamic_pointer_cast<ExcProgress>(readAnswer(peer)), ExcProgress(42, 200, true, L"tessellation"));
    EXPECT_EQ(std::dynamic_pointer_cast<ExcStageFinished>(readAnswer(peer))->stage(), ExcStageFinished::VisuAndMech);
    ASSERT_TRUE(peer.readLine(line));
    EXPECT_EQ(line, "end");

    peer.writeLine("bye");
    EXPECT_EQ(peer.wait(), 0);
}

TEST_F(TwoProcessTest, BlockGeometryBytesCrossInBothDirections) {
    // Stand-in SAB bytes: never starting with 0x78, with every byte value.
    std::string sab = "ACIS BinaryFile";
    for (int i = 0; i < 5000; ++i) sab += static_cast<char>(i % 256);

    xch_test::ChildProcess peer(xch_test::helperPath("xch_test_peer"));
    for (bool compress : {false, true}) {
        auto geometry = std::make_shared<ExcBlockGeometry>();
        geometry->setBlockId(12345678901234ull);
        ASSERT_TRUE(geometry->setBinaryData(sab.data(), sab.size(), compress));
        // Compressed data is a zlib stream in shared memory.
        std::vector<char> stored =
            mp::SharedBuffer<char>(geometry->sharedAcisBufferName(), mp::SharedBuffer<char>::OpenMode::Open).read();
        EXPECT_EQ(static_cast<unsigned char>(stored.at(0)), compress ? 0x78 : 'A');

        peer.writeLine(envelopeLine(compress ? "block 1" : "block 0", geometry));
        std::string line;
        ASSERT_TRUE(peer.readLine(line));
        EXPECT_EQ(line, "bytes " + xch_test::toHex(sab));

        auto answer = std::dynamic_pointer_cast<ExcBlockGeometry>(readAnswer(peer));
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->blockId(), 12345678901234ull + 1000);
        EXPECT_FALSE(answer->isLoaded()); // block geometry is loaded on demand
        answer->load();
        ASSERT_TRUE(answer->isLoaded());
        std::string reversed(sab.rbegin(), sab.rend());
        EXPECT_EQ(std::string(answer->binaryData().begin(), answer->binaryData().end()), reversed);
    }
    peer.writeLine("bye");
    EXPECT_EQ(peer.wait(), 0);
}

TEST_F(TwoProcessTest, ProgressEnvelopesNeedNoSharedMemory) {
    std::wostringstream out;
    ExchangeObjectWrapper(std::make_shared<ExcProgress>(5, 10)).writeObject(out);
    EXPECT_EQ(out.str(),
              L"{\"exchange_object_name\":\"exc_progress\",\"exchange_object_data\":"
              L"{\"progress\":5,\"progress_max\":10,\"pulse\":false,\"stage\":\"\"}}");
    EXPECT_EQ(xch_test::sharedMemoryObjects(), before);
}

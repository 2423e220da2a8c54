#include <gtest/gtest.h>

#include <limits>

#include <xch_api/xch_api_exchange_structure.h>

#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/peer_echo.h"

using namespace xch;
using namespace xch_test;

namespace {

std::shared_ptr<ExcBlockReference> reference(std::uint64_t blockId, const std::wstring& name) {
    return std::make_shared<ExcBlockReference>(blockId, name);
}

// "name@depth" per visited reference, "!" marking an unresolved block.
std::vector<std::wstring> walk(const ExcProductStructure& structure, std::size_t limit = 1000) {
    std::vector<std::wstring> seen;
    structure.visit([&](const ExcBlockReference& ref, const ExcBlock* block, std::size_t depth) {
        seen.push_back(ref.name() + L"@" + std::to_wstring(depth) + (block ? L"" : L"!"));
        return seen.size() < limit;
    });
    return seen;
}

} // namespace

TEST(ProductStructure, WritesKeysInOrderWithTheBlockIdFirst) {
    ExcProductStructure structure;
    structure.setProductName(L"Bracket");
    structure.setUnits(LengthMillimeter);
    auto block = std::make_shared<ExcBlock>(7, L"Plate", true);
    auto group = std::make_shared<ExcMiscPropertiesGroup>(L"Pset", true);
    group->addProperty(ExcMiscProperty(L"Mass", ExcMiscProperty::TypeDouble, L"1.5"));
    block->miscData().addGroup(group);
    structure.addBlock(block);
    structure.addBlock(nullptr);
    EXPECT_EQ(toJsonText(structure),
              L"{\"product_name\":\"Bracket\",\"product_configuration_name\":\"\",\"misc_data\":[],"
              L"\"units\":\"millimeter\",\"world_orientation\":\"unknown\",\"blocks\":[{\"block_id\":7,"
              L"\"name\":\"Plate\",\"storage_name\":\"\",\"world_orientation\":\"unknown\",\"misc_data\":"
              L"[{\"name\":\"Pset\",\"is_bim\":true,\"properties\":[{\"name\":\"Mass\",\"type\":\"double\","
              L"\"value\":\"1.5\"}]}],\"is_part\":true,\"block_references\":[]}]}");

    ExcBlockReference ref(7, L"Plate:1");
    ref.setColor(ExcColor(255, 0, 0));
    ref.setHidden(true);
    ref.setConfigurationName(L"Default");
    EXPECT_EQ(toJsonText(ref),
              L"{\"guid\":\"\",\"persistent_id\":\"\",\"persistent_name\":\"\",\"block_id\":7,\"name\":\"Plate:1\","
              L"\"hidden\":true,\"suppressed\":false,\"configuration_name\":\"Default\",\"transformation\":"
              L"{\"affine\":[[1.0,0.0,0.0],[0.0,1.0,0.0],[0.0,0.0,1.0]],\"translation\":[0.0,0.0,0.0]},"
              L"\"color\":{\"rgb\":[255,0,0]},\"misc_data\":[]}");

    // An unset colour travels as null and reads back silently as unset.
    LogCapture log;
    ExcBlockReference plain(3, L"x");
    ExcBlockReference back;
    readFromJsonText(back, toJsonText(plain));
    EXPECT_EQ(toJsonText(back), toJsonText(plain));
    EXPECT_TRUE(log.messages(3).empty());
}

TEST(ProductStructure, BlockIdsStayDistinctAndLaterBlocksReplaceEarlierOnes) {
    LogCapture log;
    ExcProductStructure structure;
    structure.addBlock(std::make_shared<ExcBlock>(1, L"first"));
    structure.addBlock(std::make_shared<ExcBlock>(2, L"second"));
    structure.addBlock(std::make_shared<ExcBlock>(1, L"again"));
    ASSERT_EQ(structure.blocks().size(), 2u);
    EXPECT_EQ(structure.blocks().back()->name(), L"again");
    EXPECT_EQ(structure.getBlockById(1)->name(), L"again");
    EXPECT_FALSE(structure.getBlockById(3));

    // Blocks without an id get the smallest id above every held id, each its own.
    readFromJsonText(structure, L"{\"blocks\":[{\"name\":\"n1\"},{\"name\":\"n2\",\"block_id\":\"9\"},"
                                L"{\"name\":\"big\",\"block_id\":18446744073709551615},{\"name\":\"n3\"}]}");
    ASSERT_EQ(structure.blocks().size(), 6u);
    EXPECT_EQ(structure.getBlockById(3)->name(), L"n1");
    EXPECT_EQ(structure.getBlockById(4)->name(), L"n2");
    EXPECT_EQ(structure.getBlockById(UINT64_MAX)->name(), L"big");
    EXPECT_EQ(structure.getBlockById(0)->name(), L"n3"); // nothing above 2^64-1: the first free id
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{
                                   "ExcProductStructure: block 'n1' has no block_id, it was given the id 3.",
                                   "ExcProductStructure: block 'n2' has no block_id, it was given the id 4.",
                                   "ExcProductStructure: block 'n3' has no block_id, it was given the id 0."}));

    // Through JSON and back, every block keeps its id.
    ExcProductStructure copy;
    readFromJsonText(copy, toJsonText(structure));
    EXPECT_EQ(toJsonText(copy), toJsonText(structure));
}

TEST(ProductStructure, RemovalRulesAndDummyAssemblies) {
    LogCapture log;
    ExcProductStructure structure;
    structure.addRootBlockReference(reference(1, L"a"));
    structure.addRootBlockReference(reference(2, L"b"));
    structure.addRootBlockReference(nullptr);
    structure.removeRootBlockReference(2);
    structure.removeRootBlockReference(-1);
    ASSERT_EQ(structure.rootBlockReferences().size(), 2u);
    structure.removeRootBlockReference(0);
    ASSERT_EQ(structure.rootBlockReferences().size(), 1u);
    EXPECT_EQ(structure.rootBlockReferences()[0]->name(), L"b");

    ExcBlock block(5);
    block.addBlockReference(reference(8, L"x"));
    block.addBlockReference(reference(9, L"y"));
    block.addBlockReference(reference(8, L"z"));
    block.addBlockReference(nullptr);
    EXPECT_EQ(block.removeBlockReference(8), 2u);
    ASSERT_EQ(block.blockReferences().size(), 1u);
    EXPECT_EQ(block.blockReferences()[0]->name(), L"y");
    EXPECT_EQ(log.messages(3),
              (std::vector<std::string>{
                  "ExcProductStructure: attempt to add null Block Reference object.",
                  "ExcProductStructure::removeRootBlockReference: index 2 is out of range, nothing removed.",
                  "ExcProductStructure::removeRootBlockReference: index -1 is out of range, nothing removed.",
                  "ExcBlock: attempt to add null Block Reference object."}));

    EXPECT_FALSE(structure.isPart());
    structure.rootBlockReferences()[0]->setName(L"SPAXIopPSProductDummyInstance");
    EXPECT_TRUE(structure.isPart());
    structure.addRootBlockReference(reference(3, L"c"));
    EXPECT_FALSE(structure.isPart()); // only a single dummy instance marks a part
    structure.setProductName(L"SPAXIopPSProductDummyReference");
    EXPECT_TRUE(structure.isPart());
    structure.setProductName(L"spaxiopPSProductDummyReference");
    EXPECT_FALSE(structure.isPart());
}

TEST(ProductStructure, HostileInputReadsWithoutThrowingAndWalksStopAtCycles) {
    LogCapture log;
    ExcProductStructure structure;
    readFromJsonText(structure, L"[1]");
    EXPECT_TRUE(log.has("ExcProductStructure object should have a JSON object type."));
    readFromJsonText(structure,
                     L"{\"product_name\":5,\"units\":\"furlong\",\"misc_data\":{},\"blocks\":[7,{\"block_id\":1,"
                     L"\"name\":\"A\",\"block_references\":[{\"block_id\":2,\"name\":\"A>B\"},\"junk\"]},"
                     L"{\"block_id\":2,\"name\":\"B\",\"is_part\":\"yes\",\"block_references\":[{\"block_id\":1,"
                     L"\"name\":\"B>A\"},{\"block_id\":404,\"name\":\"B>missing\"}]}],"
                     L"\"root_block_references\":[{\"block_id\":1,\"name\":\"root\",\"color\":[1,2,3]},null]}");
    EXPECT_EQ(structure.units(), LengthCentimeter);
    EXPECT_TRUE(log.has("ExcBlock object should have a JSON object type."));
    EXPECT_TRUE(log.has("ExcBlockReference object should have a JSON object type."));
    EXPECT_TRUE(log.has("ExcMiscData::readObject: input JsonValue is not an array."));
    ASSERT_TRUE(structure.getBlockById(2));
    EXPECT_FALSE(structure.getBlockById(2)->isPart());
    // A uses B uses A: each block is entered once per path, the cycle is reported but not followed.
    // The non-object block and root entries were read as default objects (block id 0, reference to 0).
    EXPECT_EQ(walk(structure), (std::vector<std::wstring>{L"root@0", L"A>B@1", L"B>A@2", L"B>missing@2!", L"@1",
                                                          L"@0"}));
    EXPECT_EQ(walk(structure, 2).size(), 2u);
}

TEST(ProductStructure, LargeAssemblyCrossesProcessesIntact) {
    // 20,000 blocks, 100,000 references (five per block), a property group per block.
    auto structure = std::make_shared<ExcProductStructure>();
    structure->setProductName(L"Plant \u00e9tage 3");
    const std::uint64_t blocks = 20000;
    for (std::uint64_t id = 1; id <= blocks; ++id) {
        auto block = std::make_shared<ExcBlock>(id * 3 + (1ull << 40), L"Block " + std::to_wstring(id), id % 7 == 0);
        auto group = std::make_shared<ExcMiscPropertiesGroup>(L"Identity");
        group->addProperty(ExcMiscProperty(L"Number", ExcMiscProperty::TypeInteger, std::to_wstring(id)));
        block->miscData().addGroup(group);
        for (std::uint64_t k = 1; k <= 5; ++k) {
            auto ref = reference((id * 7919 + k * 104729) % blocks * 3 + 3 + (1ull << 40), L"i");
            ExcTransformation placement;
            placement.translation().set(double(id), double(k), -0.125 * double(id));
            ref->setTransformation(placement);
            block->addBlockReference(ref);
        }
        structure->addBlock(block);
    }
    structure->addRootBlockReference(reference(3 + (1ull << 40), L"top"));

    xch_test::ChildProcess peer(xch_test::helperPath("xch_test_peer"));
    auto back = echo(peer, structure);
    peer.writeLine("bye");
    ASSERT_EQ(back->blocks().size(), blocks);
    std::size_t references = 0;
    for (const auto& block : back->blocks())
        for (const auto& ref : block->blockReferences()) {
            ++references;
            ASSERT_TRUE(back->getBlockById(ref->blockId())) << ref->blockId();
        }
    EXPECT_EQ(references, 100000u);
    EXPECT_EQ(toJsonText(*back), toJsonText(*structure));
}

#include <gtest/gtest.h>

#include <functional>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_exchange_mechanical.h>
#include <xch_api/xch_api_utf8.h>

#include "support/json_mutation.h"
#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/peer_echo.h"
#include "support/pmi_sample.h"

using namespace xch;
using namespace xch_test;

namespace {

std::shared_ptr<ExcEntity> entity(ExcEntity::EType type, const std::wstring& id) {
    return std::make_shared<ExcEntity>(type, id);
}

std::shared_ptr<ExcEntity> fspEntity(std::uint64_t subentId) {
    auto path = std::make_shared<ExcFullSubentPath>(subentId);
    path->setSubentType(ExcFullSubentPath::Face);
    path->refs() = {L"R1", L"R2"};
    return std::make_shared<ExcEntity>(path);
}

// A block of `features` manufacturing features of every kind, with the
// other parts of the block's mechanical data filled as well.
std::shared_ptr<ExcBlockMechanicalData> largeBlock(int features) {
    auto block = std::make_shared<ExcBlockMechanicalData>(0xFFFFFFFFFFFFFFFFull);
    block->setLogFile(L"C:\\temp\\m\u00e9ca.log");
    auto mfg = std::make_shared<ExcMfgData>();
    mfg->setHasData(true);
    auto mapping = std::make_shared<ExcMappingData>();
    auto entities = std::make_shared<ExcEntityData>();
    for (int i = 0; i < features; ++i) {
        const std::wstring id = L"H" + std::to_wstring(i);
        switch (i % 4) {
        case 0: {
            auto hole = std::make_shared<ExcMfgFeatureCounterBoreHole>();
            hole->setName(id);
            auto data = std::make_shared<ExcMfgCounterBoreHole>();
            data->setPrimaryDiameter(6.6 + i * 1e-3);
            data->setCenter(ExcVector3d(i * 0.5, -i * 0.25, 1.0 / (i + 1)));
            data->setDepth(6.5);
            hole->setHoleData(data);
            auto pattern = std::make_shared<ExcMfgPatternCircular>();
            pattern->setAxialInstCount(6);
            pattern->addVisibleInstance({i, -i});
            hole->setPattern(pattern);
            hole->addDefiningGeometry(fspEntity(static_cast<std::uint64_t>(i) << 32));
            mfg->addCounterBoreHole(hole);
            break;
        }
        case 1: {
            auto thread = std::make_shared<ExcMfgFeatureInternalThread>();
            thread->setName(id);
            auto data = std::make_shared<ExcMfgThread>();
            data->setDesignation(L"M" + std::to_wstring(i % 24 + 3));
            data->setPitch(0.25 * (i % 7));
            thread->setThread(data);
            thread->addSideFace(entity(ExcEntity::Mfg, id));
            mfg->addInternalThread(thread);
            break;
        }
        case 2: {
            auto hole = std::make_shared<ExcMfgFeatureSimpleHole>();
            auto pattern = std::make_shared<ExcMfgPatternUserDefined>();
            pattern->addInstancePosition(ExcVector3d(i, i, i));
            hole->setPattern(pattern);
            hole->setHoleData(std::make_shared<ExcMfgSimpleHole>());
            mfg->addSimpleHole(hole);
            break;
        }
        default: {
            auto feature = std::make_shared<ExcMfgFeatureUnclassified>();
            feature->setName(id + L" \u00fcbrig \U0001F529");
            feature->addLinkedElement(entity(ExcEntity::Original, id));
            mfg->addUnclassifiedFeature(feature);
        }
        }
        mapping->add(entity(ExcEntity::Mfg, id), entity(ExcEntity::Original, L"#" + std::to_wstring(i)));
        auto info = std::make_shared<ExcTopologicalEntityInformation>(*fspEntity(i));
        info->addPersistentName(L"pn" + std::to_wstring(i));
        info->setLineType(ExcTopologicalEntityInformation::ELineType(i % 28));
        entities->addData(info);
    }
    block->setManufacturingData(mfg);
    block->setMappingData(mapping);
    block->setEntityData(entities);
    auto misc = std::make_shared<ExcMechanicalMiscData>();
    auto material = std::make_shared<ExcMiscMaterial>(L"Steel");
    material->set(ExcMiscMaterial::Density, std::make_shared<ExcMiscMaterialProperty>(7850.0));
    misc->addMaterial(material);
    misc->addLayer(std::make_shared<ExcMiscLayer>(L"L1", L"Holes"));
    block->setMiscData(misc);
    return block;
}

} // namespace

TEST(MechanicalData, ReadingAnyMutationOfABlockNeverThrows) {
    auto block = largeBlock(4);
    JsonDocument doc;
    block->writeObject(doc, doc.GetAllocator());
    int reads = 0;
    LogCapture quiet(1);
    forEachMutation(doc, doc, [&] {
        ExcBlockMechanicalData read;
        EXPECT_NO_THROW(read.readObject(doc));
        // What was read writes and reads back to the same text.
        ExcBlockMechanicalData again;
        readFromJsonText(again, toJsonText(read));
        EXPECT_EQ(toJsonText(again), toJsonText(read));
        ++reads;
    });
    EXPECT_GT(reads, 2000);
}

TEST(MechanicalData, MappingPairsSkipItemsThatAreNotObjects) {
    ExcMappingData mapping;
    mapping.add(entity(ExcEntity::Mfg, L"A"), entity(ExcEntity::Original, L"S"));
    EXPECT_EQ(toJsonText(mapping), L"[{\"imported\":{\"type\":\"mfg\",\"id\":\"A\"},\"original\":"
                                   L"{\"type\":\"original\",\"description\":\"\",\"id\":\"S\"}}]");

    LogCapture log;
    mapping.add(nullptr, entity(ExcEntity::Mfg, L"B"));
    mapping.add(entity(ExcEntity::Mfg, L"B"), nullptr);
    ExcMappingData read;
    readFromJsonText(read, L"[1,{\"imported\":{\"type\":\"mfg\",\"id\":\"A\"},\"original\":{\"type\":\"original\","
                           L"\"id\":\"S\"}}]");
    ASSERT_EQ(read.pairs().size(), 1u);
    EXPECT_EQ(read.pairs()[0].first->id(), L"A");
    EXPECT_EQ(read.pairs()[0].second->type(), ExcEntity::Original);
    // A missing or mistyped side reads as an empty entity; reading appends.
    readFromJsonText(read, L"[{\"original\":{\"type\":\"original\",\"id\":\"T\"}},{\"imported\":[]}]");
    ASSERT_EQ(read.pairs().size(), 3u);
    EXPECT_EQ(read.pairs()[1].first->type(), ExcEntity::Unknown);
    EXPECT_EQ(read.pairs()[1].second->id(), L"T");
    EXPECT_EQ(toJsonText(*read.pairs()[2].second), L"{\"type\":\"unknown\"}");
    readFromJsonText(read, L"{\"imported\":{}}");
    EXPECT_EQ(read.pairs().size(), 3u);
    EXPECT_EQ(mapping.pairs().size(), 1u);
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{
                                   "ExcMappingData: attempt to add null Entity object or null Original Entity object.",
                                   "ExcMappingData: attempt to add null Entity object or null Original Entity object.",
                                   "ExcMappingData JSON array should have objects as items."}));
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{"ExcMappingData object should have a JSON array type."}));
}

TEST(MechanicalData, EntityInformationKeysAndReadingRules) {
    ExcTopologicalEntityInformation info(*entity(ExcEntity::Mfg, L"E1"));
    info.setPersistentNames({L"Face<1>", L"Extrude1/Face2"});
    info.setName(L"Top");
    info.setHidden(true);
    info.setLineType(ExcTopologicalEntityInformation::DashDotDot);
    info.setLineThickness(0.35);
    ExcEntityData data;
    data.addData(std::make_shared<ExcTopologicalEntityInformation>(info));
    EXPECT_EQ(toJsonText(data),
              L"[{\"entity\":{\"type\":\"mfg\",\"id\":\"E1\"},\"pnames\":[\"Face<1>\",\"Extrude1/Face2\"],\"name\":\"Top\","
              L"\"hidden\":true,\"line_type\":\"dash_dot_dot\",\"line_thickness\":0.35}]");

    LogCapture log(3);
    ExcTopologicalEntityInformation read;
    readFromJsonText(read, L"{\"entity\":\"E1\",\"pnames\":[\"a\",2,\"b\"],\"hidden\":1,\"line_type\":\"Dash\","
                           L"\"line_thickness\":2}");
    readFromJsonText(read, L"{\"pnames\":[\"c\"],\"line_type\":\"tracks\"}");
    EXPECT_EQ(read.persistentNames(), (std::vector<std::wstring>{L"a", L"b", L"c"}));
    EXPECT_EQ(read.entity().type(), ExcEntity::Unknown);
    EXPECT_FALSE(read.isHidden());
    EXPECT_EQ(read.lineThickness(), 2.0);
    EXPECT_EQ(read.lineType(), ExcTopologicalEntityInformation::Tracks);
    readFromJsonText(read, L"{\"line_type\":\"Dash\"}");
    EXPECT_EQ(read.lineType(), ExcTopologicalEntityInformation::CurveBatting);

    ExcEntityData readData;
    readFromJsonText(readData, L"[{\"name\":\"x\"},\"y\",[],{}]");
    readFromJsonText(readData, L"{\"name\":\"x\"}");
    readFromJsonText(read, L"[]");
    readData.addData(nullptr);
    EXPECT_EQ(readData.data().size(), 2u);
    EXPECT_EQ(readData.data()[0]->name(), L"x");
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "ExcEntityData object should have a JSON array type.",
                                  "ExcTopologicalEntityInformation object should have a JSON object type.",
                                  "ExcEntityData: attempt to add null Topological Entity Information Data object."}));
}

TEST(MechanicalData, RootsAreRegisteredBinaryObjectsWhoseClonesShareTheirData) {
    for (const wchar_t* name : {L"exc_root_mechanical_data", L"exc_block_mechanical_data"}) {
        auto object = ExchangeObjectRegistry::instance().get(name);
        ASSERT_TRUE(object) << name;
        EXPECT_EQ(object->name(), name);
        EXPECT_TRUE(object->binary());
        EXPECT_TRUE(object->compress());
    }
    EXPECT_TRUE(std::dynamic_pointer_cast<ExcBlockMechanicalData>(
        ExchangeObjectRegistry::instance().get(L"exc_block_mechanical_data")));

    ExcRootMechanicalData root;
    root.setLogFile(L"root.log");
    EXPECT_EQ(toJsonText(root), L"{\"pmi_data\":null,\"log_file\":\"root.log\"}");
    auto rootPMI = samplePMIData(2);
    root.setPMIData(rootPMI);
    EXPECT_EQ(toJsonText(root), L"{\"pmi_data\":" + toJsonText(*rootPMI) + L",\"log_file\":\"root.log\"}");
    EXPECT_EQ(std::dynamic_pointer_cast<ExcRootMechanicalData>(root.clone())->pmiData(), rootPMI);

    ExcBlockMechanicalData block(42);
    EXPECT_EQ(toJsonText(block), L"{\"block_id\":42,\"log_file\":\"\",\"pmi_data\":null,\"misc_data\":null,\"mapping_data\":null,"
                                 L"\"mfg_data\":null,\"entity_data\":null}");
    auto mfg = std::make_shared<ExcMfgData>();
    block.setManufacturingData(mfg);
    block.setMiscData(std::make_shared<ExcMechanicalMiscData>());
    block.setMappingData(std::make_shared<ExcMappingData>());
    block.setEntityData(std::make_shared<ExcEntityData>());
    block.setPMIData(std::make_shared<ExcPMIData>());
    EXPECT_EQ(toJsonText(block),
              L"{\"block_id\":42,\"log_file\":\"\",\"pmi_data\":[],\"misc_data\":" + toJsonText(ExcMechanicalMiscData()) +
                  L",\"mapping_data\":[],\"mfg_data\":" + toJsonText(ExcMfgData()) + L",\"entity_data\":[]}");

    auto clone = std::dynamic_pointer_cast<ExcBlockMechanicalData>(block.clone());
    ASSERT_TRUE(clone);
    EXPECT_EQ(clone->mfgData(), mfg);
    EXPECT_EQ(clone->miscData(), block.miscData());
    EXPECT_EQ(clone->mappingData(), block.mappingData());
    EXPECT_EQ(clone->entityData(), block.entityData());
    EXPECT_EQ(clone->pmiData(), block.pmiData());
    EXPECT_EQ(clone->blockId(), 42u);

    // Members of the wrong kind, and absent ones, leave the pointers as they are.
    LogCapture log(3);
    ExcBlockMechanicalData read;
    readFromJsonText(read, L"{\"block_id\":-1,\"misc_data\":[],\"mapping_data\":{},\"entity_data\":{},"
                           L"\"mfg_data\":null,\"log_file\":7,\"pmi_data\":{}}");
    EXPECT_EQ(toJsonText(read), toJsonText(ExcBlockMechanicalData()));
    readFromJsonText(read, L"{\"block_id\":18446744073709551615,\"misc_data\":{},\"entity_data\":[],"
                           L"\"pmi_data\":[{\"block_id\":7}]}");
    EXPECT_EQ(read.blockId(), 18446744073709551615ull);
    EXPECT_TRUE(read.miscData() && read.entityData());
    ASSERT_TRUE(read.pmiData());
    EXPECT_EQ(read.pmiData()->annotationSets().at(0)->blockId(), 7u);
    EXPECT_EQ(read.mfgData(), nullptr);
    EXPECT_TRUE(log.messages().empty());

    readFromJsonText(read, L"[]");
    readFromJsonText(root, L"\"root.log\"");
    EXPECT_EQ(root.logFile(), L"root.log");
    readFromJsonText(root, L"{\"pmi_data\":{\"block_id\":1}}");
    EXPECT_EQ(root.pmiData(), rootPMI);
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "ExcBlockMechanicalData object should have a JSON object type.",
                                  "ExcRootMechanicalData object should have a JSON object type."}));
}

TEST(MechanicalData, BlockOfFiveThousandFeaturesAndItsPMICrossesProcessesIntact) {
    auto block = largeBlock(5000);
    block->setPMIData(samplePMIData(1, 11));
    const std::string line = envelopeLine("envelope", block);
    EXPECT_NE(line.find("\"binary\":true"), std::string::npos);
    EXPECT_LT(line.size(), 200u); // only the buffer's name travels inline
    // That body is not sent: remove it (bodies outlive their writer).
    EXPECT_TRUE(mp::SharedBuffer<char>::remove(xch::fromUtf8(line.substr(line.size() - 38, 36))));

    ChildProcess peer(helperPath("xch_test_peer"));
    auto back = echo(peer, block);
    peer.writeLine("bye");
    EXPECT_EQ(peer.wait(), 0);
    ASSERT_TRUE(back->isLoaded());
    ASSERT_TRUE(back->mfgData());
    EXPECT_EQ(back->mfgData()->counterBoreHoles().size(), 1250u);
    EXPECT_EQ(back->mappingData()->pairs().size(), 5000u);
    ASSERT_TRUE(back->pmiData());
    EXPECT_EQ(back->pmiData()->annotationSets().at(0)->views().size(), 11u);
    EXPECT_EQ(toJsonText(*back), toJsonText(*block));
}

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_exchange_visualization.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_utf8.h>

#include "support/child_process.h"
#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/peer_echo.h"

using namespace xch;
using namespace xch_test;

namespace {

const std::wstring kDefaultCamera = L"{\"type\":\"undefined\",\"name\":\"\",\"eye\":[0.0,0.0,1.0],"
                                    L"\"target\":[0.0,0.0,0.0],\"up\":[0.0,1.0,0.0]}";

std::shared_ptr<ExcVisuFace> face(float offset) {
    auto face = std::make_shared<ExcVisuFace>();
    face->setVertices({offset, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0});
    face->setNormals({0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    face->setPolygons({{ExcVisuFace::Triangles, {0, 1, 2}}, {ExcVisuFace::TriangleStrip, {1, 3, 2}}});
    face->setColor(ExcColor(10, 20, 30));
    face->setMechanicalId(L"face " + std::to_wstring(offset));
    return face;
}

// A block's display model with something of every kind.
std::shared_ptr<ExcBlockVisualization> blockVisualization(std::uint64_t blockId) {
    auto mesh = std::make_shared<ExcVisuMesh>();
    mesh->setDisplayName(L"Body \u00e9");
    mesh->setGeometryType(VisuGeometrySolid);
    mesh->addFaces({face(static_cast<float>(blockId)), face(0.5f)});
    auto edge = std::make_shared<ExcVisuEdge>();
    edge->setPoints({0, 0, 0, 1, 0, 0});
    edge->setLineIndices({0, 1});
    edge->setLineType(ExcVisuEdge::LineStrip);
    mesh->addEdge(edge);

    auto material = std::make_shared<ExcVisuMaterial>();
    material->setName(L"Steel");
    material->setColor(ExcVisuMaterial::Diffuse, {0.6, 0.6, 0.65, 1.0});
    auto attributes = std::make_shared<ExcVisuAttributes>();
    attributes->addMaterial(material);
    attributes->setColor(ExcColor(200, 200, 210));

    auto part = std::make_shared<ExcVisuNode>();
    part->setLeaf(true);
    part->setType(ExcVisuNode::Mesh);
    part->setMesh(mesh);
    part->setAttributes(attributes);
    auto transformation = std::make_shared<ExcTransformation>();
    transformation->translation().set(0, 0, static_cast<double>(blockId));
    part->setTransformation(transformation);

    auto pmi = std::make_shared<ExcVisuPMI>();
    pmi->setMechanicalId(L"PMI-1");
    pmi->addEdge(edge);
    auto text = std::make_shared<ExcVisuText>();
    text->setText(L"\u2300 10 H7");
    pmi->addText(text);
    auto note = std::make_shared<ExcVisuNode>();
    note->setType(ExcVisuNode::Note);
    note->setPMI(pmi);

    auto points = std::make_shared<ExcVisuPoints>();
    points->setPoint({1, 2, 3});
    points->setMarkerStyle(VisuMarkerCross);
    auto pointSet = std::make_shared<ExcVisuPointSet>();
    pointSet->addPoints(points);
    auto markers = std::make_shared<ExcVisuNode>();
    markers->setType(ExcVisuNode::PointSet);
    markers->setPointSet(pointSet);

    auto root = std::make_shared<ExcVisuNode>();
    root->setType(ExcVisuNode::Root);
    root->setGroupName(L"block " + std::to_wstring(blockId));
    root->addChildNodes({part, note, markers});
    auto data = std::make_shared<ExcVisualizationData>();
    data->addSceneRootNode(root);
    data->setUnits(LengthMillimeter);
    return std::make_shared<ExcBlockVisualization>(blockId, data);
}

std::shared_ptr<ExcRootAssemblyVisualization> rootVisualization() {
    auto view = std::make_shared<ExcVisuView>();
    view->setDisplayName(L"Front");
    view->addAnnotationId(L"PMI-1");
    auto capture = std::make_shared<ExcVisuCapture>();
    capture->setDisplayName(L"Section A-A");
    capture->setActive(true);
    ExcCamera camera;
    camera.setType(ExcCamera::Orthographic);
    camera.setOrthographicZoomFactor(2.0);
    capture->setCamera(camera);
    ExcClippingPlane plane;
    plane.setOrigin(ExcVector3d(0, 0, 5));
    capture->setClippingPlane(plane);
    capture->addLinkedElement(std::make_shared<ExcEntity>(ExcEntity::Mfg, L"B1"));
    auto data = std::make_shared<ExcVisualizationData>();
    data->addSceneRootNode(std::make_shared<ExcVisuNode>());
    data->addView(view);
    data->addCapture(capture);
    return std::make_shared<ExcRootAssemblyVisualization>(data);
}

} // namespace

TEST(VisuNode, KeysAreWrittenWhenSetAndNestedObjectsAreReadIntoNewInstances) {
    ExcVisuNode node;
    node.setLeaf(true);
    node.setType(ExcVisuNode::Mesh);
    node.setMesh(std::make_shared<ExcVisuMesh>());
    EXPECT_EQ(toJsonText(node), L"{\"is_leaf\":true,\"type\":\"MESH\",\"group_name\":\"\",\"mesh\":{\"display_name\":"
                                L"\"\",\"mechanical_id\":\"\",\"geometry_type\":0,\"faces\":[],\"edges\":[]}}");
    auto child = std::make_shared<ExcVisuNode>();
    child->setType(ExcVisuNode::DrawingSheets);
    node.addChildNode(child);
    node.setTransformation(std::make_shared<ExcTransformation>());
    EXPECT_EQ(toJsonText(node), L"{\"is_leaf\":true,\"type\":\"MESH\",\"group_name\":\"\",\"transformation\":{\"affine\":"
                                L"[[1.0,0.0,0.0],[0.0,1.0,0.0],[0.0,0.0,1.0]],\"translation\":[0.0,0.0,0.0]},\"mesh\":"
                                L"{\"display_name\":\"\",\"mechanical_id\":\"\",\"geometry_type\":0,\"faces\":[],\"edges\":[]},"
                                L"\"child_nodes\":[{\"is_leaf\":false,\"type\":\"DRAWINGSHEETS\",\"group_name\":\"\"}]}");

    const auto& types = enumTable<ExcVisuNode::EType>();
    EXPECT_EQ(types.toString(ExcVisuNode::FtaConstructedGeometry), L"FTA_CONSTRUCTED_GEOMETRY");
    EXPECT_EQ(types.toString(ExcVisuNode::DimensionCoordinate3d), L"DIMENSION_COORDINATE_3D");
    EXPECT_EQ(types.toString(ExcVisuNode::GeomTolCompProfileSurface), L"GEOMTOL_COMP_PROFILE_SURFACE");
    EXPECT_EQ(types.toString(ExcVisuNode::ActiveDrawingSheet), L"ACTIVEDRAWINGSHEET");

    auto mesh = node.mesh();
    readFromJsonText(node, L"{\"type\":\"group\",\"mesh\":{\"display_name\":\"M\"},\"wire\":[],\"pmi\":null,"
                           L"\"point_set\":{},\"child_nodes\":[{\"type\":\"GROUP\"},1]}");
    EXPECT_EQ(node.type(), ExcVisuNode::ActiveDrawingSheet);
    ASSERT_TRUE(node.mesh());
    EXPECT_NE(node.mesh(), mesh);  // a new mesh replaces the one held
    EXPECT_EQ(node.mesh()->displayName(), L"M");
    EXPECT_FALSE(node.wire());
    EXPECT_FALSE(node.pmi());
    EXPECT_TRUE(node.pointSet());
    ASSERT_EQ(node.childNodes().size(), 2u);
    EXPECT_EQ(node.childNodes()[1]->type(), ExcVisuNode::Group);
}

TEST(VisuViewsAndCaptures, DefaultsKeyOrderAndPlaneRoundTrip) {
    ExcVisuView view;
    EXPECT_EQ(toJsonText(view), L"{\"display_name\":\"\",\"id\":\"\",\"mechanical_id\":\"\",\"hidden\":false,"
                                L"\"origin\":[0.0,0.0,0.0],\"direction_u\":[1.0,0.0,0.0],\"direction_v\":[0.0,1.0,0.0],"
                                L"\"annotation_ids\":[]}");
    ExcVisuCapture capture;
    EXPECT_EQ(toJsonText(capture), L"{\"display_name\":\"\",\"id\":\"\",\"mechanical_id\":\"\",\"hidden\":false,"
                                   L"\"active\":false,\"hidden_text\":\"\",\"clipping_plane\":null,\"camera\":" +
                                       kDefaultCamera + L",\"annotation_ids\":[],\"fta_constructed_geometry_ids\":[]}");

    auto root = rootVisualization();
    const auto& full = root->visualizationData()->captures()[0];
    full->addFtaConstructedGeometryIds(L"C1");
    LogCapture log;
    ExcVisuCapture back;
    readFromJsonText(back, toJsonText(*full));
    EXPECT_EQ(toJsonText(back), toJsonText(*full));
    EXPECT_TRUE(back.clippingPlane().hasPlane());
    EXPECT_EQ(back.camera().orthographicZoomFactor(), 2.0);
    ASSERT_EQ(back.linkedElements().size(), 1u);
    EXPECT_EQ(back.linkedElements()[0]->id(), L"B1");
    // A null plane leaves the plane held, quietly; lists append.
    readFromJsonText(back, L"{\"clipping_plane\":null,\"annotation_ids\":[\"A\",3],\"bodies\":[{},\"x\"]}");
    EXPECT_TRUE(back.clippingPlane().hasPlane());
    EXPECT_EQ(back.annotationIds(), std::vector<std::wstring>{L"A"});
    EXPECT_EQ(back.linkedElements().size(), 2u);
    EXPECT_TRUE(log.messages(2).empty());
    EXPECT_TRUE(log.messages(3).empty());
}

TEST(VisualizationData, OptionalListsCountsAndTheRegisteredObjects) {
    ExcVisualizationData empty;
    EXPECT_EQ(toJsonText(empty), L"{\"scene_root_nodes\":[],\"units\":\"unknown\"}");

    auto block = blockVisualization(7);
    const auto counts = block->visualizationData()->counts();
    EXPECT_EQ(counts.nodes, 4u);
    EXPECT_EQ(counts.meshes, 1u);
    EXPECT_EQ(counts.faces, 2u);
    EXPECT_EQ(counts.triangles, 4u);
    EXPECT_EQ(counts.edges, 2u);  // one of the mesh, one of the PMI
    const auto rootCounts = rootVisualization()->visualizationData()->counts();
    EXPECT_EQ(rootCounts.views, 1u);
    EXPECT_EQ(rootCounts.captures, 1u);

    for (const wchar_t* name : {L"exc_block_visualization", L"exc_root_assembly_visualization"}) {
        auto prototype = ExchangeObjectRegistry::instance().get(name);
        ASSERT_TRUE(prototype) << toUtf8(name);
        EXPECT_EQ(prototype->name(), name);
        EXPECT_TRUE(prototype->binary());
        EXPECT_TRUE(prototype->compress());
    }
    EXPECT_EQ(toJsonText(ExcBlockVisualization()), L"{\"block_id\":0}");
    EXPECT_EQ(toJsonText(ExcRootAssemblyVisualization()), L"{}");
    auto clone = std::dynamic_pointer_cast<ExcBlockVisualization>(block->clone());
    EXPECT_EQ(clone->visualizationData(), block->visualizationData());  // clones share their data

    LogCapture log;
    ExcBlockVisualization read;
    readFromJsonText(read, L"{\"block_id\":-1,\"visualization_data\":[]}");
    EXPECT_EQ(read.blockId(), 0u);
    EXPECT_FALSE(read.visualizationData());
    auto data = std::make_shared<ExcVisualizationData>();
    data->addSceneRootNode(nullptr);
    data->addView(nullptr);
    data->addCaptures({nullptr});
    ExcVisuNode node;
    node.addChildNode(nullptr);
    ExcVisuCapture capture;
    capture.addLinkedElement(nullptr);
    EXPECT_EQ(log.messages(3),
              (std::vector<std::string>{"ExcVisualizationData: attempt to add null Scene Root Node object.",
                                        "ExcVisualizationData: attempt to add null View object.",
                                        "ExcVisualizationData: attempt to add null Capture object.",
                                        "ExcVisuNode: attempt to add null Child Node object.",
                                        "ExcVisuCapture: attempt to add null Linked Element object."}));

    ExcVisuView view;
    ExcCamera camera;
    ExcRootAssemblyVisualization root;
    for (IJsonObject* object :
         std::initializer_list<IJsonObject*>{&node, &view, &camera, &capture, data.get(), &read, &root})
        readFromJsonText(*object, L"1");
    EXPECT_EQ(log.messages(2),
              (std::vector<std::string>{"ExcVisuNode object should have a JSON object type.",
                                        "ExcVisuView object should have a JSON object type.",
                                        "ExcCamera object should have a JSON object type.",
                                        "ExcVisuCapture object should have a JSON object type.",
                                        "ExcVisualizationData object should have a JSON object type.",
                                        "ExcBlockVisualization object should have a JSON object type.",
                                        "ExcRootAssemblyVisualization object should have a JSON object type."}));
}

TEST(VisualizationExchange, CompressedBodyInSharedMemoryReadsBackTheSameModel) {
    auto block = blockVisualization(42);
    std::wostringstream envelope;
    ExchangeObjectWrapper(block).writeObject(envelope);
    const std::wstring text = envelope.str();
    ASSERT_EQ(text.compare(0, 69, L"{\"exchange_object_name\":\"exc_block_visualization\",\"binary\":true,\"exch"), 0);
    const std::wstring uuid = text.substr(text.size() - 38, 36);
    std::vector<char> body = mp::SharedBuffer<char>(uuid, mp::SharedBuffer<char>::OpenMode::Open).read();
    ASSERT_GE(body.size(), 2u);
    EXPECT_EQ(static_cast<unsigned char>(body[0]), 0x1F);  // a gzip stream
    EXPECT_EQ(static_cast<unsigned char>(body[1]), 0x8B);

    ExchangeObjectWrapper in;
    in.setReleaseAfterLoad(true);
    std::wistringstream stream(text);
    in.readObject(stream);
    EXPECT_FALSE(mp::SharedBuffer<char>::exists(uuid));
    auto back = std::dynamic_pointer_cast<ExcBlockVisualization>(in.get());
    ASSERT_TRUE(back && back->isLoaded());
    EXPECT_EQ(back->blockId(), 42u);
    EXPECT_EQ(toJsonText(*back), toJsonText(*block));
    const auto& backFace = back->visualizationData()->sceneRootNodes()[0]->childNodes()[0]->mesh()->faces()[0];
    EXPECT_EQ(backFace->vertices()[0], 42.0f);
}

TEST(VisualizationExchange, SeveralBlocksAndTheRootCrossToASecondProcessAndBack) {
    ChildProcess peer(helperPath("xch_test_peer"));
    for (std::uint64_t id : {1ull, 2ull, 18446744073709551615ull}) {
        auto block = blockVisualization(id);
        auto back = echo(peer, block);
        EXPECT_EQ(back->blockId(), id);
        EXPECT_EQ(toJsonText(*back), toJsonText(*block)) << id;
    }
    auto root = rootVisualization();
    EXPECT_EQ(toJsonText(*echo(peer, root)), toJsonText(*root));
    peer.writeLine("bye");
    EXPECT_EQ(peer.wait(), 0);
}

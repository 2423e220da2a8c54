#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <xch_api/xch_api_base64.h>
#include <xch_api/xch_api_exchange_visualization.h>
#include <xch_api/xch_api_utf8.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Polygon = ExcVisuFace::Polygon;

// The bytes of the base64 string under `key` in `object`'s JSON.
Bytes payload(const IJsonObject& object, const wchar_t* key) {
    JsonDocument doc;
    object.writeObject(doc, doc.GetAllocator());
    const JsonValue& text = doc[key];
    return Base64::decode(std::wstring(text.GetString(), text.GetStringLength()));
}

std::shared_ptr<ExcVisuFace> triangleFace() {
    auto face = std::make_shared<ExcVisuFace>();
    face->setVertices({1.0f, 0.0f, -2.0f});
    face->setNormals({0.0f, 0.0f, 1.0f});
    face->setPolygons({Polygon(ExcVisuFace::Triangles, {0, 1, 2}), Polygon(ExcVisuFace::Lines, {})});
    face->setColor(ExcColor(255, 0, 0));
    face->setMechanicalId(L"F1");
    return face;
}

} // namespace

TEST(VisuFace, GoldenTextWithLittleEndianPayloads) {
    auto face = triangleFace();
    EXPECT_EQ(toJsonText(*face), L"{\"vertices\":\"AACAPwAAAAAAAADA\",\"normals\":\"AAAAAAAAAAAAAIA/\","
                                 L"\"polygons\":\"BAAAAAMAAAAAAAAAAQAAAAIAAAABAAAAAAAAAA==\","
                                 L"\"color\":{\"rgb\":[255,0,0]},\"mechanical_id\":\"F1\"}");
    // 1.0f = 0x3F800000, -2.0f = 0xC0000000, least significant byte first.
    EXPECT_EQ(payload(*face, L"vertices"), (Bytes{0, 0, 0x80, 0x3F, 0, 0, 0, 0, 0, 0, 0, 0xC0}));
    // Packed: type 4, 3 indices 0 1 2; then type 1 with no index at all.
    EXPECT_EQ(payload(*face, L"polygons"), (Bytes{4, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0,
                                                  1, 0, 0, 0, 0, 0, 0, 0}));

    ExcVisuFace back;
    readFromJsonText(back, toJsonText(*face));
    EXPECT_EQ(back.vertices(), face->vertices());
    EXPECT_EQ(back.normals(), face->normals());
    EXPECT_EQ(back.polygons(), face->polygons());
    EXPECT_EQ(toJsonText(back), toJsonText(*face));

    // Empty vertices and normals are left out; polygons and the (unset) colour are always there, and the
    // null colour reads back quietly.
    LogCapture log;
    ExcVisuFace empty;
    EXPECT_EQ(toJsonText(empty), L"{\"polygons\":\"\",\"color\":null,\"mechanical_id\":\"\"}");
    readFromJsonText(back, toJsonText(empty));
    EXPECT_TRUE(back.polygons().empty());
    EXPECT_EQ(back.vertices(), face->vertices()); // absent key: unchanged
    EXPECT_TRUE(back.color().hasRGB());
    EXPECT_TRUE(log.messages(3).empty());
}

TEST(VisuFace, ArrayAndBase64FormsReadToTheSameVectors) {
    LogCapture log;
    ExcVisuFace fromArrays;
    readFromJsonText(fromArrays,
                     L"{\"vertices\":[1,0.0,-2],\"normals\":[0,0,1.0],"
                     L"\"polygons\":[{\"type\":4,\"indices\":[0,1,2]},7,{\"type\":1,\"indices\":[]},"
                     L"{\"indices\":[2,\"x\",1.5,3000000000]}]}");
    ExcVisuFace fromBase64;
    readFromJsonText(fromBase64, toJsonText(*triangleFace()));
    EXPECT_EQ(fromArrays.vertices(), fromBase64.vertices());
    EXPECT_EQ(fromArrays.normals(), fromBase64.normals());
    ASSERT_EQ(fromArrays.polygons().size(), 3u);
    EXPECT_EQ(fromArrays.polygons()[0], fromBase64.polygons()[0]);
    EXPECT_EQ(fromArrays.polygons()[1], fromBase64.polygons()[1]);
    // No type: a triangle list; indices that are not int32 read as 0.
    EXPECT_EQ(fromArrays.polygons()[2], Polygon(ExcVisuFace::Triangles, {2, 0, 0, 0}));
    EXPECT_EQ(log.messages(3), std::vector<std::string>{"ExcVisuFace: polygons array item should be an object."});

    // Either form replaces what was held.
    readFromJsonText(fromArrays, L"{\"vertices\":[0,1,2.5],\"polygons\":\"\"}");
    EXPECT_EQ(fromArrays.vertices(), (std::vector<float>{0.0f, 1.0f, 2.5f}));
    EXPECT_TRUE(fromArrays.polygons().empty());
    readFromJsonText(fromArrays, L"{\"vertices\":\"AAAAPwAAgD4=\"}");
    EXPECT_EQ(fromArrays.vertices(), (std::vector<float>{0.5f, 0.25f}));
}

TEST(VisuFace, BadBulkDataIsLoggedAndLeavesTheFieldAsItWas) {
    auto face = triangleFace();
    const std::vector<float> vertices = face->vertices();
    const std::vector<Polygon> polygons = face->polygons();
    LogCapture log;
    struct Case {
        const wchar_t* json;
        const char* message;
    };
    const Case cases[] = {
        {L"{\"vertices\":5}", "ExcVisuFace: unknown type of vertices data (not array, not base64 string)"},
        {L"{\"normals\":{}}", "ExcVisuFace: unknown type of normals data (not array, not base64 string)"},
        {L"{\"polygons\":true}", "ExcVisuFace: unknown type of polygons data (not array, not base64 string)"},
        // 10 bytes.
        {L"{\"vertices\":\"AAAAAAAAAAAAAA==\"}", "ExcVisuFace: vertices data decodes to 10 bytes, not a multiple of 4"},
        {L"{\"vertices\":\"AAAAAAAA AAAAAAA\"}",
         "ExcVisuFace: vertices data is not a valid base64 string (unexpected character at 8)"},
        {L"{\"normals\":\"AAAAA\"}", "ExcVisuFace: normals data is not a valid base64 string (a lone character ends it)"},
        {L"{\"normals\":\"AAAAAA=\"}", "ExcVisuFace: normals data is not a valid base64 string (misplaced padding)"},
        // 4, -1, 0.
        {L"{\"polygons\":\"BAAAAP////8AAAAA\"}",
         "ExcVisuFace: polygons data declares a negative number of indices (-1) for polygon 0"},
        // 4, 100000000, 1, 2: a huge count in a short string.
        {L"{\"polygons\":\"BAAAAADh9QUBAAAAAgAAAA==\"}",
         "ExcVisuFace: polygons data declares 100000000 indices for polygon 0, but 2 remain"},
        // 4, 1, 7, then 5, 2, 0: the second polygon runs past the end.
        {L"{\"polygons\":\"BAAAAAEAAAAHAAAABQAAAAIAAAAAAAAA\"}",
         "ExcVisuFace: polygons data declares 2 indices for polygon 1, but 1 remain"},
        // 4, 1, 7, then 5 alone.
        {L"{\"polygons\":\"BAAAAAEAAAAHAAAABQAAAA==\"}",
         "ExcVisuFace: polygons data ends inside polygon 1, before its number of indices"},
        {L"{\"polygons\":\"BAAAAAEAAAAH*AAABQAAAA==\"}",
         "ExcVisuFace: polygons data is not a valid base64 string (unexpected character at 12)"},
    };
    for (const Case& c : cases) {
        log.clear();
        readFromJsonText(*face, c.json);
        EXPECT_EQ(log.messages(2), std::vector<std::string>{c.message}) << toUtf8(c.json);
        EXPECT_EQ(face->vertices(), vertices);
        EXPECT_EQ(face->normals(), (std::vector<float>{0.0f, 0.0f, 1.0f}));
        EXPECT_EQ(face->polygons(), polygons);
    }
}

TEST(VisuFace, IndicesAreKeptAsReadAndCheckedOnlyOnRequest) {
    ExcVisuFace face;
    readFromJsonText(face, L"{\"vertices\":[0,0,0,1,0,0,0,1,0,1,1,0],"
                           L"\"polygons\":[{\"type\":4,\"indices\":[0,1,2,2,1,3,0]},"
                           L"{\"type\":5,\"indices\":[0,1,2,3]},{\"type\":6,\"indices\":[0,1]},{\"type\":9,\"indices\":[3]}]}");
    EXPECT_EQ(face.vertexCount(), 4u);
    EXPECT_EQ(face.triangleCount(), 2u + 2u);  // a list of 7 indices makes 2; a 4-strip 2; a 2-fan none
    EXPECT_EQ(face.polygons()[3].type, 9);     // an unknown kind travels unchanged
    EXPECT_TRUE(face.indicesInRange());
    readFromJsonText(face, L"{\"polygons\":[{\"indices\":[0,4]}]}");
    EXPECT_FALSE(face.indicesInRange());
    readFromJsonText(face, L"{\"polygons\":[{\"indices\":[-1]}]}");
    EXPECT_EQ(face.polygons()[0].indices, std::vector<std::int32_t>{-1});
    EXPECT_FALSE(face.indicesInRange());
}

TEST(VisuFace, LargeArraysCrossTheCodecChunksIntact) {
    // Sizes around the encoder's and decoder's chunk sizes (3072 values).
    std::mt19937 random(7);
    std::uniform_int_distribution<std::int32_t> anyInt(INT32_MIN, INT32_MAX);
    std::uniform_real_distribution<float> anyFloat(-1e6f, 1e6f);
    for (std::size_t size : {3071u, 3072u, 3073u, 9217u, 20000u}) {
        ExcVisuFace face;
        std::vector<float> vertices(size);
        for (float& v : vertices) v = anyFloat(random);
        face.setVertices(vertices);
        std::vector<Polygon> polygons;
        for (std::size_t n : {size, std::size_t(0), std::size_t(1), size / 3, std::size_t(3070)}) {
            Polygon polygon(anyInt(random), {});
            for (std::size_t i = 0; i < n; ++i) polygon.indices.push_back(anyInt(random));
            polygons.push_back(polygon);
        }
        face.setPolygons(polygons);
        ExcVisuFace back;
        readFromJsonText(back, toJsonText(face));
        EXPECT_EQ(back.vertices(), vertices) << size;
        EXPECT_EQ(back.polygons(), polygons) << size;
    }
}

TEST(VisuEdgeAndPoints, BulkKeysAndEnumerations) {
    ExcVisuEdge edge;
    EXPECT_EQ(toJsonText(edge), L"{\"points\":\"\",\"line_indices\":\"\",\"line_type\":\"unknown\",\"color\":null,"
                                L"\"mechanical_id\":\"\"}");
    edge.setPoints({0.5f, 0.25f});
    edge.setLineIndices({0, 1, -1});
    edge.setLineType(ExcVisuEdge::LineLoopFilled);
    EXPECT_EQ(toJsonText(edge), L"{\"points\":\"AAAAPwAAgD4=\",\"line_indices\":\"AAAAAAEAAAD/////\","
                                L"\"line_type\":\"line_loop_filled\",\"color\":null,\"mechanical_id\":\"\"}");
    EXPECT_EQ(payload(edge, L"line_indices"), (Bytes{0, 0, 0, 0, 1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}));

    LogCapture log;
    ExcVisuEdge read;
    readFromJsonText(read, L"{\"points\":[1,2,3],\"line_indices\":[0,1.5,2],\"line_type\":\"LINE_STRIP\"}");
    EXPECT_EQ(read.points(), (std::vector<float>{1, 2, 3}));
    EXPECT_EQ(read.lineIndices(), (std::vector<std::int32_t>{0, 0, 2}));
    EXPECT_EQ(read.lineType(), ExcVisuEdge::LineLoop); // the smallest string
    readFromJsonText(read, L"{\"points\":null,\"line_indices\":7}");
    readFromJsonText(read, L"[]");
    EXPECT_EQ(read.points(), (std::vector<float>{1, 2, 3}));
    EXPECT_EQ(log.messages(2),
              (std::vector<std::string>{"ExcVisuEdge: unknown type of points data (not array, not base64 string)",
                                        "ExcVisuEdge: unknown type of line indices data (not array, not base64 string)",
                                        "ExcVisuEdge object should have a JSON object type."}));

    // Marker points stay plain arrays; the style is a number, kept even when not a known one.
    ExcVisuPoints points;
    points.setPoint({0.5f, 1.0f, 0.1f});
    points.setPointIndices({0});
    points.setMarkerStyle(VisuMarkerStar);
    points.setColor(ExcColor(1, 2, 3, 4));
    EXPECT_EQ(toJsonText(points), L"{\"points\":[0.5,1.0,0.10000000149011612],\"point_indices\":[0],"
                                  L"\"marker_style\":4,\"color\":{\"rgb\":[1,2,3],\"alpha\":4}}");
    ExcVisuPoints pointsBack;
    readFromJsonText(pointsBack, toJsonText(points));
    EXPECT_EQ(pointsBack.points(), points.points());
    readFromJsonText(pointsBack, L"{\"points\":\"AAAAPwAAgD4=\",\"marker_style\":42}");
    EXPECT_EQ(pointsBack.points(), (std::vector<float>{0.5f, 0.25f}));
    EXPECT_EQ(pointsBack.markerStyle(), 42);
}

TEST(VisuMeshWirePointSet, KeyOrderListsAndClones) {
    ExcVisuMesh mesh;
    mesh.setDisplayName(L"Body 1");
    mesh.setMechanicalId(L"B1");
    mesh.setGeometryType(VisuGeometrySolid);
    auto face = triangleFace();
    mesh.addFace(face);
    mesh.addEdge(std::make_shared<ExcVisuEdge>());
    EXPECT_EQ(toJsonText(mesh), L"{\"display_name\":\"Body 1\",\"mechanical_id\":\"B1\",\"geometry_type\":1,\"faces\":["
                                + toJsonText(*face) + L"],\"edges\":[" + toJsonText(ExcVisuEdge()) + L"]}");

    // Copies share the faces, clone() copies them.
    ExcVisuMesh copy(mesh);
    EXPECT_EQ(copy.faces()[0], face);
    auto clone = mesh.clone();
    EXPECT_NE(clone->faces()[0], face);
    EXPECT_EQ(toJsonText(*clone), toJsonText(mesh));

    // Reading appends one element per object and skips the rest.
    LogCapture log;
    readFromJsonText(*clone, L"{\"faces\":[{},3,{\"mechanical_id\":\"F9\"}],\"edges\":{},\"geometry_type\":2.0}");
    ASSERT_EQ(clone->faces().size(), 3u);
    EXPECT_EQ(clone->faces()[2]->mechanicalId(), L"F9");
    EXPECT_EQ(clone->edges().size(), 1u);
    EXPECT_EQ(clone->geometryType(), VisuGeometrySolid);

    mesh.addFace(nullptr);
    mesh.addEdges({nullptr});
    ExcVisuWire wire;
    wire.setEdges({std::make_shared<ExcVisuEdge>(), nullptr});
    ExcVisuPointSet pointSet;
    pointSet.addPoints(std::shared_ptr<ExcVisuPoints>());
    EXPECT_EQ(mesh.faces().size(), 1u);
    EXPECT_EQ(wire.edges().size(), 1u);
    EXPECT_TRUE(pointSet.points().empty());
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{"ExcVisuMesh: attempt to add null Face object.",
                                                         "ExcVisuMesh: attempt to add null Edge object.",
                                                         "ExcVisuWire: attempt to add null Edge object.",
                                                         "ExcVisuPointSet: attempt to add null Points object."}));

    wire.setGeometryType(VisuGeometryWire);
    EXPECT_EQ(toJsonText(wire), L"{\"display_name\":\"\",\"mechanical_id\":\"\",\"geometry_type\":3,\"edges\":[{\"points\":"
                                L"\"\",\"line_indices\":\"\",\"line_type\":\"unknown\",\"color\":null,\"mechanical_id\":\"\"}]}");
    EXPECT_NE(wire.clone()->edges()[0], wire.edges()[0]);
    pointSet.addPoints({std::make_shared<ExcVisuPoints>()});
    EXPECT_EQ(toJsonText(pointSet), L"{\"display_name\":\"\",\"mechanical_id\":\"\",\"geometry_type\":0,\"points\":"
                                    L"[{\"points\":[],\"point_indices\":[],\"marker_style\":0,\"color\":null}]}");

    log.clear();
    for (IJsonObject* object : std::initializer_list<IJsonObject*>{&mesh, &wire, &pointSet, face.get()})
        readFromJsonText(*object, L"\"x\"");
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{"ExcVisuMesh object should have a JSON object type.",
                                                         "ExcVisuWire object should have a JSON object type.",
                                                         "ExcVisuPointSet object should have a JSON object type.",
                                                         "ExcVisuFace object should have a JSON object type."}));
}

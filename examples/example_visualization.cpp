#include "example_visualization.h"

#include <array>

using namespace xch;

namespace example {

namespace {

using Point = std::array<float, 3>;

// One side of the box: four corners (counter-clockwise seen from outside)
// drawn as a strip of two triangles, with the side's normal at each corner.
std::shared_ptr<ExcVisuFace> side(const std::array<Point, 4>& corners, const Point& normal, const std::wstring& id) {
    std::vector<float> vertices;
    std::vector<float> normals;
    for (const Point& corner : corners) {
        vertices.insert(vertices.end(), corner.begin(), corner.end());
        normals.insert(normals.end(), normal.begin(), normal.end());
    }
    auto face = std::make_shared<ExcVisuFace>();
    face->setVertices(std::move(vertices));
    face->setNormals(std::move(normals));
    face->addPolygon({ExcVisuFace::TriangleStrip, {0, 1, 3, 2}});
    face->setMechanicalId(id);
    return face;
}

} // namespace

std::shared_ptr<ExcBlockVisualization> makeBlockVisualization(std::uint64_t blockId, float w, float d, float h) {
    const Point c[8] = {{0, 0, 0}, {w, 0, 0}, {w, d, 0}, {0, d, 0}, {0, 0, h}, {w, 0, h}, {w, d, h}, {0, d, h}};
    auto mesh = std::make_shared<ExcVisuMesh>();
    mesh->setDisplayName(L"Solid " + std::to_wstring(blockId));
    mesh->setMechanicalId(L"body-" + std::to_wstring(blockId));
    mesh->setGeometryType(VisuGeometrySolid);
    mesh->addFace(side({c[0], c[3], c[2], c[1]}, {0, 0, -1}, L"bottom"));
    mesh->addFace(side({c[4], c[5], c[6], c[7]}, {0, 0, 1}, L"top"));
    mesh->addFace(side({c[0], c[1], c[5], c[4]}, {0, -1, 0}, L"front"));
    mesh->addFace(side({c[2], c[3], c[7], c[6]}, {0, 1, 0}, L"back"));
    mesh->addFace(side({c[1], c[2], c[6], c[5]}, {1, 0, 0}, L"right"));
    mesh->addFace(side({c[3], c[0], c[4], c[7]}, {-1, 0, 0}, L"left"));
    // The twelve edges: two loops and four verticals.
    const int edges[12][2] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
    for (const auto& e : edges) {
        auto edge = std::make_shared<ExcVisuEdge>();
        edge->setPoints({c[e[0]][0], c[e[0]][1], c[e[0]][2], c[e[1]][0], c[e[1]][1], c[e[1]][2]});
        edge->setLineIndices({0, 1});
        edge->setLineType(ExcVisuEdge::LineStrip);
        edge->setColor(ExcColor(20, 20, 20));
        mesh->addEdge(edge);
    }

    auto material = std::make_shared<ExcVisuMaterial>();
    material->setName(L"Brushed steel");
    material->setColor(ExcVisuMaterial::Diffuse, {0.62, 0.63, 0.66, 1.0});
    material->setColor(ExcVisuMaterial::Specular, {0.9, 0.9, 0.9, 1.0});
    material->setShininess(0.6);
    auto attributes = std::make_shared<ExcVisuAttributes>();
    attributes->addMaterial(material);
    attributes->setColor(ExcColor(160, 162, 170));

    auto part = std::make_shared<ExcVisuNode>();
    part->setLeaf(true);
    part->setType(ExcVisuNode::Mesh);
    part->setMesh(mesh);
    part->setAttributes(attributes);
    auto root = std::make_shared<ExcVisuNode>();
    root->setType(ExcVisuNode::Root);
    root->setGroupName(L"block " + std::to_wstring(blockId));
    root->addChildNode(part);

    auto data = std::make_shared<ExcVisualizationData>();
    data->setUnits(LengthMillimeter);
    data->addSceneRootNode(root);
    return std::make_shared<ExcBlockVisualization>(blockId, data);
}

std::shared_ptr<ExcRootAssemblyVisualization> makeRootVisualization() {
    auto view = std::make_shared<ExcVisuView>();
    view->setDisplayName(L"Front view");
    view->setId(L"view-1");
    view->setDirectionU(ExcVector3d(1, 0, 0));
    view->setDirectionV(ExcVector3d(0, 0, 1));

    ExcCamera camera;
    camera.setType(ExcCamera::Perspective);
    camera.setName(L"Section camera");
    camera.setPerspectiveViewAngle(0.7854);
    camera.setEye(ExcVector3d(250, -300, 200));
    camera.setTarget(ExcVector3d(50, 20, 6));
    camera.setUp(ExcVector3d(0, 0, 1));
    ExcClippingPlane plane;
    plane.setOrigin(ExcVector3d(50, 20, 0));
    plane.setVectorU(ExcVector3d(1, 0, 0));
    plane.setVectorV(ExcVector3d(0, 0, 1));
    auto capture = std::make_shared<ExcVisuCapture>();
    capture->setDisplayName(L"Section A-A");
    capture->setId(L"capture-1");
    capture->setActive(true);
    capture->setCamera(camera);
    capture->setClippingPlane(plane);
    capture->addLinkedElement(std::make_shared<ExcEntity>(ExcEntity::Original, L"#12", L"bracket body"));

    auto root = std::make_shared<ExcVisuNode>();
    root->setType(ExcVisuNode::Root);
    root->setGroupName(L"Bracket assembly");
    auto data = std::make_shared<ExcVisualizationData>();
    data->setUnits(LengthMillimeter);
    data->addSceneRootNode(root);
    data->addView(view);
    data->addCapture(capture);
    return std::make_shared<ExcRootAssemblyVisualization>(data);
}

std::wstring summarizeVisualization(const std::shared_ptr<ExcVisualizationData>& data) {
    if (!data) return L"no visualization data";
    const ExcVisualizationData::Counts n = data->counts();
    return std::to_wstring(n.nodes) + L" nodes, " + std::to_wstring(n.faces) + L" faces, " +
           std::to_wstring(n.triangles) + L" triangles, " + std::to_wstring(n.edges) + L" edges, " +
           std::to_wstring(n.views) + L" views, " + std::to_wstring(n.captures) + L" captures";
}

} // namespace example

#include "occt_visualization.h"

#include <algorithm>
#include <cmath>

#include <BRepAdaptor_Curve.hxx>
#include <BRepBndLib.hxx>
#include <BRepGProp_Face.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GCPnts_TangentialDeflection.hxx>
#include <Poly.hxx>
#include <Poly_Polygon3D.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_ListOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>

using namespace xch;

namespace occt_worker {

namespace {

void addPoint(std::vector<float>& out, const gp_Pnt& p) {
    out.push_back(static_cast<float>(p.X()));
    out.push_back(static_cast<float>(p.Y()));
    out.push_back(static_cast<float>(p.Z()));
}

std::shared_ptr<ExcVisuFace> displayFace(const TopoDS_Face& face, int number) {
    auto out = std::make_shared<ExcVisuFace>();
    out->setMechanicalId(std::to_wstring(number));
    TopLoc_Location location;
    Handle(Poly_Triangulation) triangles = BRep_Tool::Triangulation(face, location);
    if (triangles.IsNull() || triangles->NbTriangles() == 0)
        return out;
    const gp_Trsf placement = location.Transformation();
    const int nodes = triangles->NbNodes();
    std::vector<float> vertices, normals;
    vertices.reserve(3 * static_cast<std::size_t>(nodes));
    normals.reserve(3 * static_cast<std::size_t>(nodes));
    // Normals from the surface where the mesher left the nodes' (u, v)
    // (BRepGProp_Face turns them for a reversed face), otherwise averaged
    // over the triangles.
    const bool reversed = face.Orientation() == TopAbs_REVERSED;
    BRepGProp_Face surface(face);
    if (!triangles->HasUVNodes() && !triangles->HasNormals())
        Poly::ComputeNormals(triangles);
    for (int i = 1; i <= nodes; ++i) {
        addPoint(vertices, triangles->Node(i).Transformed(placement));
        gp_Vec normal(0, 0, 1);
        if (triangles->HasUVNodes()) {
            gp_Pnt2d uv = triangles->UVNode(i);
            gp_Pnt at;
            surface.Normal(uv.X(), uv.Y(), at, normal);
        } else {
            normal = gp_Vec(triangles->Normal(i));
            if (reversed) normal.Reverse();
        }
        if (normal.SquareMagnitude() > 1e-24) normal.Normalize();
        normal.Transform(placement);
        normals.push_back(static_cast<float>(normal.X()));
        normals.push_back(static_cast<float>(normal.Y()));
        normals.push_back(static_cast<float>(normal.Z()));
    }
    std::vector<std::int32_t> indices;
    indices.reserve(3 * static_cast<std::size_t>(triangles->NbTriangles()));
    for (int t = 1; t <= triangles->NbTriangles(); ++t) {
        int a, b, c;
        triangles->Triangle(t).Get(a, b, c);
        if (reversed) std::swap(b, c);
        indices.insert(indices.end(), {a - 1, b - 1, c - 1});
    }
    out->setVertices(std::move(vertices));
    out->setNormals(std::move(normals));
    out->addPolygon({ExcVisuFace::Triangles, std::move(indices)});
    return out;
}

// The polyline of an edge: its own polygon, or its polygon on the
// triangulation of a face it bounds, or points along its curve.
std::vector<float> edgePoints(const TopoDS_Edge& edge, const TopTools_ListOfShape* faces, double deviation) {
    std::vector<float> points;
    TopLoc_Location location;
    Handle(Poly_Polygon3D) polygon = BRep_Tool::Polygon3D(edge, location);
    if (!polygon.IsNull()) {
        const gp_Trsf placement = location.Transformation();
        for (int i = 1; i <= polygon->NbNodes(); ++i) addPoint(points, polygon->Nodes().Value(i).Transformed(placement));
        return points;
    }
    if (faces) {
        for (TopTools_ListOfShape::Iterator it(*faces); it.More(); it.Next()) {
            TopLoc_Location faceLocation;
            Handle(Poly_Triangulation) triangles = BRep_Tool::Triangulation(TopoDS::Face(it.Value()), faceLocation);
            if (triangles.IsNull()) continue;
            Handle(Poly_PolygonOnTriangulation) onTriangles =
                BRep_Tool::PolygonOnTriangulation(edge, triangles, faceLocation);
            if (onTriangles.IsNull()) continue;
            const gp_Trsf placement = faceLocation.Transformation();
            for (int i = 1; i <= onTriangles->NbNodes(); ++i)
                addPoint(points, triangles->Node(onTriangles->Node(i)).Transformed(placement));
            return points;
        }
    }
    if (BRep_Tool::IsGeometric(edge)) {
        BRepAdaptor_Curve curve(edge);
        GCPnts_TangentialDeflection sampler(curve, 0.5, deviation);
        for (int i = 1; i <= sampler.NbPoints(); ++i) addPoint(points, sampler.Value(i));
    }
    return points;
}

bool hasSolid(const TopoDS_Shape& shape) {
    return TopExp_Explorer(shape, TopAbs_SOLID).More();
}

} // namespace

double defaultChordalDeviation(const TopoDS_Shape& shape) {
    Bnd_Box box;
    BRepBndLib::Add(shape, box);
    if (box.IsVoid()) return 0.1;
    return std::max(std::sqrt(box.SquareExtent()) * 0.001, 1e-6);
}

std::shared_ptr<ExcVisualizationData> makePartVisualization(const TopoDS_Shape& shape, const PartDisplay& display) {
    const double deviation =
        display.chordalDeviation > 0 ? display.chordalDeviation : defaultChordalDeviation(shape);
    if (display.tessellate)
        BRepMesh_IncrementalMesh(shape, deviation, Standard_False, 0.5, Standard_True);

    auto mesh = std::make_shared<ExcVisuMesh>();
    mesh->setDisplayName(display.name);
    mesh->setGeometryType(hasSolid(shape) ? VisuGeometrySolid : VisuGeometrySurface);

    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    for (int i = 1; i <= faces.Extent(); ++i) {
        auto face = display.tessellate ? displayFace(TopoDS::Face(faces(i)), i) : std::make_shared<ExcVisuFace>();
        face->setMechanicalId(std::to_wstring(i));
        const std::size_t slot = static_cast<std::size_t>(i - 1);
        if (slot < display.faceColours.size() && display.faceColours[slot].hasRGB())
            face->setColor(display.faceColours[slot]);
        else if (display.partColour.hasRGB())
            face->setColor(display.partColour);
        mesh->addFace(face);
    }

    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    TopTools_IndexedDataMapOfShapeListOfShape edgeFaces;
    TopExp::MapShapesAndAncestors(shape, TopAbs_EDGE, TopAbs_FACE, edgeFaces);
    for (int i = 1; i <= edges.Extent(); ++i) {
        const TopoDS_Edge& edge = TopoDS::Edge(edges(i));
        if (BRep_Tool::Degenerated(edge)) continue;
        const TopTools_ListOfShape* adjacent = edgeFaces.Seek(edge);
        std::vector<float> points = edgePoints(edge, adjacent, deviation);
        if (points.size() < 6) continue;
        std::vector<std::int32_t> order(points.size() / 3);
        for (std::size_t k = 0; k < order.size(); ++k) order[k] = static_cast<std::int32_t>(k);
        auto line = std::make_shared<ExcVisuEdge>();
        line->setPoints(std::move(points));
        line->setLineIndices(std::move(order));
        line->setLineType(ExcVisuEdge::LineStrip);
        line->setMechanicalId(std::to_wstring(i));
        mesh->addEdge(line);
    }

    auto node = std::make_shared<ExcVisuNode>();
    node->setLeaf(true);
    node->setType(ExcVisuNode::Mesh);
    node->setMesh(mesh);
    if (display.partColour.hasRGB()) {
        auto attributes = std::make_shared<ExcVisuAttributes>();
        attributes->setColor(display.partColour);
        node->setAttributes(attributes);
    }
    auto root = std::make_shared<ExcVisuNode>();
    root->setType(ExcVisuNode::Root);
    root->setGroupName(display.name);
    root->addChildNode(node);
    auto data = std::make_shared<ExcVisualizationData>();
    data->setUnits(display.units);
    data->addSceneRootNode(root);
    return data;
}

} // namespace occt_worker

// Tessellation primitives: the display geometry of a translated model.
// Triangulated faces, polyline edges and marker points, grouped into
// meshes, wires and point sets that a scene node holds.
//
// Bulk arrays (coordinates, normals, indices) of faces and edges are
// written as one base64 string of the array's raw little-endian 32-bit
// values; readers also accept a plain JSON array of numbers. Marker points
// are written as plain arrays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// What a mesh, wire or point set stands for in the source model. Travels
// as its number.
enum EVisuGeometryType : std::int32_t {
    VisuGeometryUnknown = 0,
    VisuGeometrySolid = 1,         // the skin of a closed body
    VisuGeometrySurface = 2,       // an open sheet or face set
    VisuGeometryWire = 3,          // curves that bound no face
    VisuGeometryPoint = 4,         // free points
    VisuGeometryFaceted = 5,       // a mesh body of the source (no exact geometry)
    VisuGeometryConstruction = 6   // construction or reference geometry
};

// How a marker point is drawn. Travels as its number.
enum EVisuMarkerStyle : std::int32_t {
    VisuMarkerUndefined = 0,
    VisuMarkerDot = 1,
    VisuMarkerPlus = 2,      // "+"
    VisuMarkerCross = 3,     // "x"
    VisuMarkerStar = 4,      // "*"
    VisuMarkerCircle = 5,
    VisuMarkerSquare = 6,
    VisuMarkerTriangle = 7,
    VisuMarkerDiamond = 8
};

// A triangulated face.
//
// JSON: {"vertices", "normals", "polygons", "color", "mechanical_id"}.
// "vertices" and "normals" (x, y, z per vertex, 32-bit floats) are base64
// strings written only when not empty. "polygons" is always written: one
// base64 int32 array packing, per polygon in order, its type, its number
// n of indices and its n indices. "color" is the ExcColor form (null when
// unset, which reads back as "no change").
//
// Reading a bulk key: a JSON array replaces the vector with its elements
// (for "polygons" an array of {"type", "indices"} objects; an item that is
// not an object is logged at level 3 and skipped, a non-integer index reads
// as 0); a base64 string replaces it with the decoded values. Anything
// else, base64 that is not whole 4-byte values, or packed polygons whose
// count is negative or runs past the end, is logged at level 2 and leaves
// the vector as it was. Indices are kept as read, in range or not; use
// indicesInRange() before indexing the vertices with them.
class XCH_API ExcVisuFace : public IJsonObject {
public:
    // The primitive kinds, numbered as OpenGL numbers its primitives so
    // that a renderer can pass the value on as is.
    enum EPolygonType : std::int32_t {
        Points = 0,
        Lines = 1,
        LineLoop = 2,
        LineStrip = 3,
        Triangles = 4,
        TriangleStrip = 5,
        TriangleFan = 6
    };

    // One primitive: its kind (an EPolygonType value as a rule, copied
    // through unchanged whatever it is) and its 0-based vertex indices.
    struct Polygon {
        std::int32_t type = Triangles;
        std::vector<std::int32_t> indices;

        Polygon() = default;
        Polygon(std::int32_t type, std::vector<std::int32_t> indices)
            : type(type), indices(std::move(indices)) {}
        bool operator==(const Polygon& other) const { return type == other.type && indices == other.indices; }
        bool operator!=(const Polygon& other) const { return !(*this == other); }
    };

    ExcVisuFace();
    ExcVisuFace(const ExcVisuFace&);
    ExcVisuFace(ExcVisuFace&&) noexcept;
    ExcVisuFace& operator=(const ExcVisuFace&);
    ExcVisuFace& operator=(ExcVisuFace&&) noexcept;
    ~ExcVisuFace() override;

    const std::vector<float>& vertices() const { return m_vertices; }
    void setVertices(std::vector<float> vertices) { m_vertices = std::move(vertices); }
    const std::vector<float>& normals() const { return m_normals; }
    void setNormals(std::vector<float> normals) { m_normals = std::move(normals); }
    const std::vector<Polygon>& polygons() const { return m_polygons; }
    void setPolygons(std::vector<Polygon> polygons) { m_polygons = std::move(polygons); }
    void addPolygon(Polygon polygon) { m_polygons.push_back(std::move(polygon)); }
    const ExcColor& color() const { return m_color; }
    void setColor(const ExcColor& color) { m_color = color; }
    const std::wstring& mechanicalId() const { return m_mechanicalId; }
    void setMechanicalId(const std::wstring& id) { m_mechanicalId = id; }
    // An id of the producer's own; not part of the JSON form.
    const std::wstring& id() const { return m_id; }
    void setId(const std::wstring& id) { m_id = id; }

    // Vertices held (a trailing incomplete x, y, z triple is not counted).
    std::size_t vertexCount() const { return m_vertices.size() / 3; }
    // Triangles the polygons describe: n / 3 for a triangle list, n - 2 for
    // a strip or a fan, none for point and line kinds.
    std::size_t triangleCount() const;
    // Whether every index of every polygon names a held vertex.
    bool indicesInRange() const;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::vector<float> m_vertices;
    std::vector<float> m_normals;
    std::vector<Polygon> m_polygons;
    ExcColor m_color;
    std::wstring m_mechanicalId;
    std::wstring m_id;
};

// A polyline edge.
//
// JSON: {"points" (base64 floats, x, y, z per point), "line_indices"
// (base64 int32), "line_type", "color", "mechanical_id"}, all always
// written; the bulk keys are read as a face's are. An unknown "line_type"
// string reads as "line_loop" (the table's smallest string).
class XCH_API ExcVisuEdge : public IJsonObject {
public:
    enum ELineType : std::int32_t {
        LineTypeUnknown = 0,     // "unknown"
        LineStrip = 1,           // "line_strip"
        LineLoop = 2,            // "line_loop"
        LineLoopFilled = 3       // "line_loop_filled"
    };

    ExcVisuEdge();
    ExcVisuEdge(const ExcVisuEdge&);
    ExcVisuEdge& operator=(const ExcVisuEdge&);
    ~ExcVisuEdge() override;

    const std::vector<float>& points() const { return m_points; }
    void setPoints(std::vector<float> points) { m_points = std::move(points); }
    const std::vector<std::int32_t>& lineIndices() const { return m_lineIndices; }
    void setLineIndices(std::vector<std::int32_t> indices) { m_lineIndices = std::move(indices); }
    ELineType lineType() const { return m_lineType; }
    void setLineType(ELineType type) { m_lineType = type; }
    const ExcColor& color() const { return m_color; }
    void setColor(const ExcColor& color) { m_color = color; }
    const std::wstring& mechanicalId() const { return m_mechanicalId; }
    void setMechanicalId(const std::wstring& id) { m_mechanicalId = id; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::vector<float> m_points;
    std::vector<std::int32_t> m_lineIndices;
    ELineType m_lineType = LineTypeUnknown;
    ExcColor m_color;
    std::wstring m_mechanicalId;
};

template <> XCH_API const EnumTable<ExcVisuEdge::ELineType>& enumTable<ExcVisuEdge::ELineType>();

// Marker points.
//
// JSON: {"points" (array of numbers, x, y, z per point), "point_indices"
// (array of integers), "marker_style" (number), "color"}, all always
// written, the arrays always as plain JSON arrays (a base64 string is
// accepted on reading, as for faces).
class XCH_API ExcVisuPoints : public IJsonObject {
public:
    ExcVisuPoints();
    ExcVisuPoints(const ExcVisuPoints&);
    ExcVisuPoints& operator=(const ExcVisuPoints&);
    ~ExcVisuPoints() override;

    const std::vector<float>& points() const { return m_points; }
    void setPoint(std::vector<float> points) { m_points = std::move(points); }
    const std::vector<std::int32_t>& pointIndices() const { return m_pointIndices; }
    void setPointIndices(std::vector<std::int32_t> indices) { m_pointIndices = std::move(indices); }
    EVisuMarkerStyle markerStyle() const { return m_markerStyle; }
    void setMarkerStyle(EVisuMarkerStyle style) { m_markerStyle = style; }
    const ExcColor& color() const { return m_color; }
    void setColor(const ExcColor& color) { m_color = color; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::vector<float> m_points;
    std::vector<std::int32_t> m_pointIndices;
    EVisuMarkerStyle m_markerStyle = VisuMarkerUndefined;
    ExcColor m_color;
};

// What meshes, wires and point sets have in common: a name to show, the id
// of the mechanical entity they display, what kind of geometry that is,
// and an id of the producer's own (not in JSON). Their JSON starts with
// "display_name", "mechanical_id", "geometry_type" (number).
class XCH_API ExcVisuGeometry : public IJsonObject {
public:
    const std::wstring& displayName() const { return m_displayName; }
    void setDisplayName(const std::wstring& name) { m_displayName = name; }
    const std::wstring& mechanicalId() const { return m_mechanicalId; }
    void setMechanicalId(const std::wstring& id) { m_mechanicalId = id; }
    EVisuGeometryType geometryType() const { return m_geometryType; }
    void setGeometryType(EVisuGeometryType type) { m_geometryType = type; }
    const std::wstring& id() const { return m_id; }
    void setId(const std::wstring& id) { m_id = id; }

    template <class Io, class Self>
    static void members(Io& io, Self& self);

protected:
    ExcVisuGeometry();
    ExcVisuGeometry(const ExcVisuGeometry&);
    ExcVisuGeometry& operator=(const ExcVisuGeometry&);
    ~ExcVisuGeometry() override;

    std::wstring m_displayName;
    std::wstring m_mechanicalId;
    EVisuGeometryType m_geometryType = VisuGeometryUnknown;
    std::wstring m_id;
};

// A set of faces and edges (a body's display form).
//
// JSON: the ExcVisuGeometry keys, then "faces" and "edges" (arrays of face
// and edge objects, always written; reading appends one new element per
// object element). Copies share the faces and edges; clone() copies them.
class XCH_API ExcVisuMesh : public ExcVisuGeometry {
public:
    ExcVisuMesh();
    ExcVisuMesh(const ExcVisuMesh&);
    ExcVisuMesh& operator=(const ExcVisuMesh&);
    ~ExcVisuMesh() override;

    const std::vector<std::shared_ptr<ExcVisuFace>>& faces() const { return m_faces; }
    // A null face is not added (logged at level 3).
    void addFace(const std::shared_ptr<ExcVisuFace>& face);
    void addFaces(const std::vector<std::shared_ptr<ExcVisuFace>>& faces);
    void setFaces(const std::vector<std::shared_ptr<ExcVisuFace>>& faces);
    const std::vector<std::shared_ptr<ExcVisuEdge>>& edges() const { return m_edges; }
    void addEdge(const std::shared_ptr<ExcVisuEdge>& edge);
    void addEdges(const std::vector<std::shared_ptr<ExcVisuEdge>>& edges);
    void setEdges(const std::vector<std::shared_ptr<ExcVisuEdge>>& edges);

    // A new mesh with copies of the faces and edges.
    std::shared_ptr<ExcVisuMesh> clone() const;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::vector<std::shared_ptr<ExcVisuFace>> m_faces;
    std::vector<std::shared_ptr<ExcVisuEdge>> m_edges;
};

// A set of edges that bound no face.
//
// JSON: the ExcVisuGeometry keys, then "edges". clone() copies the edges.
class XCH_API ExcVisuWire : public ExcVisuGeometry {
public:
    ExcVisuWire();
    ExcVisuWire(const ExcVisuWire&);
    ExcVisuWire& operator=(const ExcVisuWire&);
    ~ExcVisuWire() override;

    const std::vector<std::shared_ptr<ExcVisuEdge>>& edges() const { return m_edges; }
    void addEdge(const std::shared_ptr<ExcVisuEdge>& edge);
    void addEdges(const std::vector<std::shared_ptr<ExcVisuEdge>>& edges);
    void setEdges(const std::vector<std::shared_ptr<ExcVisuEdge>>& edges);

    std::shared_ptr<ExcVisuWire> clone() const;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::vector<std::shared_ptr<ExcVisuEdge>> m_edges;
};

// A set of marker point groups.
//
// JSON: the ExcVisuGeometry keys, then "points" (array of ExcVisuPoints
// objects).
class XCH_API ExcVisuPointSet : public ExcVisuGeometry {
public:
    ExcVisuPointSet();
    ExcVisuPointSet(const ExcVisuPointSet&);
    ExcVisuPointSet& operator=(const ExcVisuPointSet&);
    ~ExcVisuPointSet() override;

    const std::vector<std::shared_ptr<ExcVisuPoints>>& points() const { return m_points; }
    void addPoints(const std::shared_ptr<ExcVisuPoints>& points);
    void addPoints(const std::vector<std::shared_ptr<ExcVisuPoints>>& points);
    void setPoints(const std::vector<std::shared_ptr<ExcVisuPoints>>& points);

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::vector<std::shared_ptr<ExcVisuPoints>> m_points;
};

} // namespace xch

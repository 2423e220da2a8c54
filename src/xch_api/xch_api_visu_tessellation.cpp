// Tessellation primitives.
#include <xch_api/xch_api_visu_tessellation.h>

#include <limits>
#include <stdexcept>
#include <string>

#include <xch_api/internal/checked_add.h>
#include <xch_api/internal/visu_bulk.h>
#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcVisuEdge::ELineType>& enumTable<ExcVisuEdge::ELineType>() {
    static const EnumTable<ExcVisuEdge::ELineType> table{
        {ExcVisuEdge::LineTypeUnknown, L"unknown"},
        {ExcVisuEdge::LineStrip, L"line_strip"},
        {ExcVisuEdge::LineLoop, L"line_loop"},
        {ExcVisuEdge::LineLoopFilled, L"line_loop_filled"},
    };
    return table;
}

namespace {

using visu_bulk::Key;

// "polygons": the packed int32 array (type, n, n indices per polygon) as
// base64, or on reading also an array of {"type", "indices"} objects. The
// packed form is written and read through a small stage, never as a whole
// intermediate array.
struct PolygonsRule {
    using Polygons = std::vector<ExcVisuFace::Polygon>;
    static constexpr Key key{"ExcVisuFace", "polygons"};

    bool write(JsonValue& v, JsonAllocator& a, const Polygons& polygons) const {
        std::size_t words = 0;
        for (const auto& polygon : polygons) {
            if (polygon.indices.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
                throw std::length_error("ExcVisuFace: a polygon has too many indices to pack");
            words += 2 + polygon.indices.size();
        }
        visu_bulk::WordWriter out(v, a, words, key);
        for (const auto& polygon : polygons) {
            out.put(polygon.type);
            out.put(static_cast<std::int32_t>(polygon.indices.size()));
            out.put(polygon.indices.data(), polygon.indices.size());
        }
        out.finish();
        return true;
    }

    void read(const JsonValue& v, Polygons& polygons) const {
        if (v.IsArray())
            readObjects(v, polygons);
        else if (v.IsString())
            readPacked(v, polygons);
        else
            visu_bulk::logUnknownType(key);
    }

private:
    static void readObjects(const JsonValue& v, Polygons& polygons) {
        Polygons read;
        read.reserve(v.Size());
        for (const JsonValue& item : v.GetArray()) {
            if (!item.IsObject()) {
                VX_LOG(vx_link::LevelWarning, "ExcVisuFace: polygons array item should be an object.");
                continue;
            }
            ExcVisuFace::Polygon polygon;
            json::Reader members(item);
            members(L"type", polygon.type);
            if (const JsonValue* indices = members.find(L"indices"); indices && indices->IsArray()) {
                polygon.indices.reserve(indices->Size());
                for (const JsonValue& index : indices->GetArray())
                    polygon.indices.push_back(index.IsInt() ? index.GetInt() : 0);
            }
            read.push_back(std::move(polygon));
        }
        polygons = std::move(read);
    }

    // Each polygon's count is checked against what the string holds before
    // its indices are allocated; any fault leaves `polygons` as it was.
    static void readPacked(const JsonValue& v, Polygons& polygons) {
        visu_bulk::WordReader in(v.GetString(), v.GetStringLength());
        Polygons read;
        while (in.ok() && in.remaining() > 0) {
            const std::size_t number = read.size();
            if (in.remaining() < 2)
                return visu_bulk::logBadData(key, "ends inside polygon " + std::to_string(number) +
                                                      ", before its number of indices");
            std::int32_t header[2];
            if (!in.take(header, 2)) break;
            if (header[1] < 0)
                return visu_bulk::logBadData(key, "declares a negative number of indices (" +
                                                      std::to_string(header[1]) + ") for polygon " +
                                                      std::to_string(number));
            const auto count = static_cast<std::size_t>(header[1]);
            if (count > in.remaining())
                return visu_bulk::logBadData(key, "declares " + std::to_string(count) + " indices for polygon " +
                                                      std::to_string(number) + ", but " +
                                                      std::to_string(in.remaining()) + " remain");
            ExcVisuFace::Polygon polygon;
            polygon.type = header[0];
            polygon.indices.resize(count);
            if (!in.take(polygon.indices.data(), count)) break;
            read.push_back(std::move(polygon));
        }
        if (!in.ok())
            return visu_bulk::logBadData(key, in.error());
        polygons = std::move(read);
    }
};

constexpr PolygonsRule polygonsRule{};

} // namespace

// ---- ExcVisuFace ---------------------------------------------------------------------

ExcVisuFace::ExcVisuFace() = default;
ExcVisuFace::ExcVisuFace(const ExcVisuFace&) = default;
ExcVisuFace::ExcVisuFace(ExcVisuFace&&) noexcept = default;
ExcVisuFace& ExcVisuFace::operator=(const ExcVisuFace&) = default;
ExcVisuFace& ExcVisuFace::operator=(ExcVisuFace&&) noexcept = default;
ExcVisuFace::~ExcVisuFace() = default;

std::size_t ExcVisuFace::triangleCount() const {
    std::size_t triangles = 0;
    for (const Polygon& polygon : m_polygons) {
        const std::size_t n = polygon.indices.size();
        if (polygon.type == Triangles)
            triangles += n / 3;
        else if ((polygon.type == TriangleStrip || polygon.type == TriangleFan) && n >= 3)
            triangles += n - 2;
    }
    return triangles;
}

bool ExcVisuFace::indicesInRange() const {
    const std::size_t vertices = vertexCount();
    for (const Polygon& polygon : m_polygons)
        for (std::int32_t index : polygon.indices)
            if (index < 0 || static_cast<std::size_t>(index) >= vertices)
                return false;
    return true;
}

template <class Io, class Self>
void ExcVisuFace::members(Io& io, Self& self) {
    io(L"vertices", self.m_vertices, visu_bulk::Base64Rule{{"ExcVisuFace", "vertices"}, true});
    io(L"normals", self.m_normals, visu_bulk::Base64Rule{{"ExcVisuFace", "normals"}, true});
    io(L"polygons", self.m_polygons, polygonsRule);
    io(L"color", self.m_color, json::nullAsUnset);
    io(L"mechanical_id", self.m_mechanicalId);
}

XCH_JSON_IO(ExcVisuFace)

// ---- ExcVisuEdge ---------------------------------------------------------------------

ExcVisuEdge::ExcVisuEdge() = default;
ExcVisuEdge::ExcVisuEdge(const ExcVisuEdge&) = default;
ExcVisuEdge& ExcVisuEdge::operator=(const ExcVisuEdge&) = default;
ExcVisuEdge::~ExcVisuEdge() = default;

template <class Io, class Self>
void ExcVisuEdge::members(Io& io, Self& self) {
    io(L"points", self.m_points, visu_bulk::Base64Rule{{"ExcVisuEdge", "points"}, false});
    io(L"line_indices", self.m_lineIndices, visu_bulk::Base64Rule{{"ExcVisuEdge", "line indices"}, false});
    io(L"line_type", self.m_lineType);
    io(L"color", self.m_color, json::nullAsUnset);
    io(L"mechanical_id", self.m_mechanicalId);
}

XCH_JSON_IO(ExcVisuEdge)

// ---- ExcVisuPoints -------------------------------------------------------------------

ExcVisuPoints::ExcVisuPoints() = default;
ExcVisuPoints::ExcVisuPoints(const ExcVisuPoints&) = default;
ExcVisuPoints& ExcVisuPoints::operator=(const ExcVisuPoints&) = default;
ExcVisuPoints::~ExcVisuPoints() = default;

template <class Io, class Self>
void ExcVisuPoints::members(Io& io, Self& self) {
    io(L"points", self.m_points, visu_bulk::ArrayRule{{"ExcVisuPoints", "points"}});
    io(L"point_indices", self.m_pointIndices, visu_bulk::ArrayRule{{"ExcVisuPoints", "point indices"}});
    io(L"marker_style", self.m_markerStyle, json::asNumber);
    io(L"color", self.m_color, json::nullAsUnset);
}

XCH_JSON_IO(ExcVisuPoints)

// ---- ExcVisuGeometry -----------------------------------------------------------------

ExcVisuGeometry::ExcVisuGeometry() = default;
ExcVisuGeometry::ExcVisuGeometry(const ExcVisuGeometry&) = default;
ExcVisuGeometry& ExcVisuGeometry::operator=(const ExcVisuGeometry&) = default;
ExcVisuGeometry::~ExcVisuGeometry() = default;

template <class Io, class Self>
void ExcVisuGeometry::members(Io& io, Self& self) {
    io(L"display_name", self.m_displayName);
    io(L"mechanical_id", self.m_mechanicalId);
    io(L"geometry_type", self.m_geometryType, json::asNumber);
}

// ---- ExcVisuMesh ---------------------------------------------------------------------

ExcVisuMesh::ExcVisuMesh() = default;
ExcVisuMesh::ExcVisuMesh(const ExcVisuMesh&) = default;
ExcVisuMesh& ExcVisuMesh::operator=(const ExcVisuMesh&) = default;
ExcVisuMesh::~ExcVisuMesh() = default;

namespace {
const char* const kMeshNullFace = "ExcVisuMesh: attempt to add null Face object.";
const char* const kMeshNullEdge = "ExcVisuMesh: attempt to add null Edge object.";
const char* const kWireNullEdge = "ExcVisuWire: attempt to add null Edge object.";
const char* const kPointSetNullPoints = "ExcVisuPointSet: attempt to add null Points object.";
} // namespace

void ExcVisuMesh::addFace(const std::shared_ptr<ExcVisuFace>& face) { addChecked(m_faces, face, kMeshNullFace); }
void ExcVisuMesh::addFaces(const std::vector<std::shared_ptr<ExcVisuFace>>& faces) {
    addAllChecked(m_faces, faces, kMeshNullFace);
}
void ExcVisuMesh::setFaces(const std::vector<std::shared_ptr<ExcVisuFace>>& faces) {
    setAllChecked(m_faces, faces, kMeshNullFace);
}
void ExcVisuMesh::addEdge(const std::shared_ptr<ExcVisuEdge>& edge) { addChecked(m_edges, edge, kMeshNullEdge); }
void ExcVisuMesh::addEdges(const std::vector<std::shared_ptr<ExcVisuEdge>>& edges) {
    addAllChecked(m_edges, edges, kMeshNullEdge);
}
void ExcVisuMesh::setEdges(const std::vector<std::shared_ptr<ExcVisuEdge>>& edges) {
    setAllChecked(m_edges, edges, kMeshNullEdge);
}

std::shared_ptr<ExcVisuMesh> ExcVisuMesh::clone() const {
    auto copy = std::make_shared<ExcVisuMesh>(*this);
    copy->m_faces = copiesOf(m_faces);
    copy->m_edges = copiesOf(m_edges);
    return copy;
}

template <class Io, class Self>
void ExcVisuMesh::members(Io& io, Self& self) {
    ExcVisuGeometry::members(io, self);
    io(L"faces", self.m_faces, json::objectsOnly);
    io(L"edges", self.m_edges, json::objectsOnly);
}

XCH_JSON_IO(ExcVisuMesh)

// ---- ExcVisuWire ---------------------------------------------------------------------

ExcVisuWire::ExcVisuWire() = default;
ExcVisuWire::ExcVisuWire(const ExcVisuWire&) = default;
ExcVisuWire& ExcVisuWire::operator=(const ExcVisuWire&) = default;
ExcVisuWire::~ExcVisuWire() = default;

void ExcVisuWire::addEdge(const std::shared_ptr<ExcVisuEdge>& edge) { addChecked(m_edges, edge, kWireNullEdge); }
void ExcVisuWire::addEdges(const std::vector<std::shared_ptr<ExcVisuEdge>>& edges) {
    addAllChecked(m_edges, edges, kWireNullEdge);
}
void ExcVisuWire::setEdges(const std::vector<std::shared_ptr<ExcVisuEdge>>& edges) {
    setAllChecked(m_edges, edges, kWireNullEdge);
}

std::shared_ptr<ExcVisuWire> ExcVisuWire::clone() const {
    auto copy = std::make_shared<ExcVisuWire>(*this);
    copy->m_edges = copiesOf(m_edges);
    return copy;
}

template <class Io, class Self>
void ExcVisuWire::members(Io& io, Self& self) {
    ExcVisuGeometry::members(io, self);
    io(L"edges", self.m_edges, json::objectsOnly);
}

XCH_JSON_IO(ExcVisuWire)

// ---- ExcVisuPointSet -----------------------------------------------------------------

ExcVisuPointSet::ExcVisuPointSet() = default;
ExcVisuPointSet::ExcVisuPointSet(const ExcVisuPointSet&) = default;
ExcVisuPointSet& ExcVisuPointSet::operator=(const ExcVisuPointSet&) = default;
ExcVisuPointSet::~ExcVisuPointSet() = default;

void ExcVisuPointSet::addPoints(const std::shared_ptr<ExcVisuPoints>& points) {
    addChecked(m_points, points, kPointSetNullPoints);
}
void ExcVisuPointSet::addPoints(const std::vector<std::shared_ptr<ExcVisuPoints>>& points) {
    addAllChecked(m_points, points, kPointSetNullPoints);
}
void ExcVisuPointSet::setPoints(const std::vector<std::shared_ptr<ExcVisuPoints>>& points) {
    setAllChecked(m_points, points, kPointSetNullPoints);
}

template <class Io, class Self>
void ExcVisuPointSet::members(Io& io, Self& self) {
    ExcVisuGeometry::members(io, self);
    io(L"points", self.m_points, json::objectsOnly);
}

XCH_JSON_IO(ExcVisuPointSet)

} // namespace xch

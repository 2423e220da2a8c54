// Scene tree, saved views and captures, and the two visualization objects.
#include <xch_api/xch_api_visu_scene.h>

#include <xch_api/internal/checked_add.h>
#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcVisuNode::EType>& enumTable<ExcVisuNode::EType>() {
    static const wchar_t* const names[] = {
        L"UNDEFINED", L"ROOT", L"GROUP", L"GEOMETRY", L"MESHES", L"MESH", L"WIRES", L"WIRE", L"POINTS",
        L"POINTSET", L"PMI", L"FTA_CONSTRUCTED_GEOMETRY", L"NOTES", L"NOTE", L"FLAGNOTE", L"NOA", L"DATUMS",
        L"DATUM_SIMPLE", L"DATUM_TARGET", L"DATUM_UNKNOWN", L"DIMENSIONS", L"DIMENSION_BASIC",
        L"DIMENSION_LENGTH", L"DIMENSION_DISTANCE", L"DIMENSION_LINEAR", L"DIMENSION_ORIENTED_LINEAR",
        L"DIMENSION_DIAMETER", L"DIMENSION_RADIUS", L"DIMENSION_ANGLE", L"DIMENSION_ORIENTED_ANGLE",
        L"DIMENSION_COORDINATE_3D", L"DIMENSION_CHAMFER", L"DIMENSION_UNKNOWN", L"GEOMTOLS",
        L"GEOMTOL_STRAIGHTNESS", L"GEOMTOL_FLATNESS", L"GEOMTOL_CIRCULARITY", L"GEOMTOL_CYLINDRICITY",
        L"GEOMTOL_PROFILE_LINE", L"GEOMTOL_PROFILE_SURFACE", L"GEOMTOL_COMP_PROFILE_SURFACE",
        L"GEOMTOL_PATTERN_LOCATION", L"GEOMTOL_PARALLELISM", L"GEOMTOL_ANGULARITY", L"GEOMTOL_PERPENDICULARITY",
        L"GEOMTOL_POSITION", L"GEOMTOL_POSITION_LINE", L"GEOMTOL_POSITION_SURFACE", L"GEOMTOL_COMP_POSITION",
        L"GEOMTOL_TOLERANCE", L"GEOMTOL_CONCENTRICITY", L"GEOMTOL_SYMMETRY", L"GEOMTOL_RUNOUT_CIRCULAR",
        L"GEOMTOL_RUNOUT_TOTAL", L"GEOMTOL_NOTE_ONLY", L"GEOMTOL_UNKNOWN", L"ROUGHNESSES", L"ROUGHNESS",
        L"DRAWINGSHEET", L"ACTIVEDRAWINGSHEET", L"DRAWINGSHEETS",
    };
    static_assert(sizeof names / sizeof names[0] == ExcVisuNode::DrawingSheets + 1, "one name per node kind");
    static const EnumTable<ExcVisuNode::EType> table([] {
        std::vector<EnumTable<ExcVisuNode::EType>::Entry> entries;
        for (std::int32_t value = 0; value <= ExcVisuNode::DrawingSheets; ++value)
            entries.emplace_back(static_cast<ExcVisuNode::EType>(value), names[value]);
        return entries;
    }());
    return table;
}

namespace {
const char* const kNodeNullChild = "ExcVisuNode: attempt to add null Child Node object.";
const char* const kCaptureNullElement = "ExcVisuCapture: attempt to add null Linked Element object.";
const char* const kDataNullNode = "ExcVisualizationData: attempt to add null Scene Root Node object.";
const char* const kDataNullView = "ExcVisualizationData: attempt to add null View object.";
const char* const kDataNullCapture = "ExcVisualizationData: attempt to add null Capture object.";

// A nested object held by pointer: written when set, read into a new
// object when the member is a JSON object.
const auto optionalObject = json::optionalWith(json::newObject);
// A list of nested objects written only when not empty.
const auto optionalObjects = json::optionalWith(json::objectsOnly);
} // namespace

// ---- ExcVisuNode ---------------------------------------------------------------------

ExcVisuNode::ExcVisuNode() = default;
ExcVisuNode::ExcVisuNode(const ExcVisuNode&) = default;
ExcVisuNode& ExcVisuNode::operator=(const ExcVisuNode&) = default;
ExcVisuNode::~ExcVisuNode() = default;

void ExcVisuNode::addChildNode(const std::shared_ptr<ExcVisuNode>& node) {
    addChecked(m_childNodes, node, kNodeNullChild);
}
void ExcVisuNode::addChildNodes(const std::vector<std::shared_ptr<ExcVisuNode>>& nodes) {
    addAllChecked(m_childNodes, nodes, kNodeNullChild);
}
void ExcVisuNode::setChildNodes(const std::vector<std::shared_ptr<ExcVisuNode>>& nodes) {
    setAllChecked(m_childNodes, nodes, kNodeNullChild);
}

template <class Io, class Self>
void ExcVisuNode::members(Io& io, Self& self) {
    io(L"is_leaf", self.m_leaf);
    io(L"type", self.m_type);
    io(L"group_name", self.m_groupName);
    io(L"attributes", self.m_attributes, optionalObject);
    io(L"transformation", self.m_transformation, optionalObject);
    io(L"mesh", self.m_mesh, optionalObject);
    io(L"wire", self.m_wire, optionalObject);
    io(L"pmi", self.m_pmi, optionalObject);
    io(L"point_set", self.m_pointSet, optionalObject);
    io(L"child_nodes", self.m_childNodes, optionalObjects);
}

XCH_JSON_IO(ExcVisuNode)

// ---- ExcVisuViewItem, ExcVisuView ----------------------------------------------------

ExcVisuViewItem::ExcVisuViewItem() = default;
ExcVisuViewItem::ExcVisuViewItem(const ExcVisuViewItem&) = default;
ExcVisuViewItem& ExcVisuViewItem::operator=(const ExcVisuViewItem&) = default;
ExcVisuViewItem::~ExcVisuViewItem() = default;

template <class Io, class Self>
void ExcVisuViewItem::members(Io& io, Self& self) {
    io(L"display_name", self.m_displayName);
    io(L"id", self.m_id);
    io(L"mechanical_id", self.m_mechanicalId);
    io(L"hidden", self.m_hidden);
}

ExcVisuView::ExcVisuView() = default;
ExcVisuView::ExcVisuView(const ExcVisuView&) = default;
ExcVisuView& ExcVisuView::operator=(const ExcVisuView&) = default;
ExcVisuView::~ExcVisuView() = default;

template <class Io, class Self>
void ExcVisuView::members(Io& io, Self& self) {
    ExcVisuViewItem::members(io, self);
    io(L"origin", self.m_origin);
    io(L"direction_u", self.m_directionU);
    io(L"direction_v", self.m_directionV);
    io(L"annotation_ids", self.m_annotationIds);
}

XCH_JSON_IO(ExcVisuView)

// ---- ExcVisuCapture ------------------------------------------------------------------

ExcVisuCapture::ExcVisuCapture() = default;
ExcVisuCapture::ExcVisuCapture(const ExcVisuCapture&) = default;
ExcVisuCapture& ExcVisuCapture::operator=(const ExcVisuCapture&) = default;
ExcVisuCapture::~ExcVisuCapture() = default;

void ExcVisuCapture::addLinkedElement(const std::shared_ptr<ExcEntity>& element) {
    addChecked(m_linkedElements, element, kCaptureNullElement);
}
void ExcVisuCapture::setLinkedElements(const std::vector<std::shared_ptr<ExcEntity>>& elements) {
    setAllChecked(m_linkedElements, elements, kCaptureNullElement);
}

template <class Io, class Self>
void ExcVisuCapture::members(Io& io, Self& self) {
    ExcVisuViewItem::members(io, self);
    io(L"active", self.m_active);
    io(L"hidden_text", self.m_hiddenText);
    io(L"clipping_plane", self.m_clippingPlane, json::nullAsUnset);
    io(L"camera", self.m_camera);
    io(L"annotation_ids", self.m_annotationIds);
    io(L"fta_constructed_geometry_ids", self.m_ftaConstructedGeometryIds);
    io(L"bodies", self.m_linkedElements, optionalObjects);
}

XCH_JSON_IO(ExcVisuCapture)

// ---- ExcVisualizationData ------------------------------------------------------------

ExcVisualizationData::ExcVisualizationData() = default;
ExcVisualizationData::ExcVisualizationData(const ExcVisualizationData&) = default;
ExcVisualizationData& ExcVisualizationData::operator=(const ExcVisualizationData&) = default;
ExcVisualizationData::~ExcVisualizationData() = default;

void ExcVisualizationData::addSceneRootNode(const std::shared_ptr<ExcVisuNode>& node) {
    addChecked(m_sceneRootNodes, node, kDataNullNode);
}
void ExcVisualizationData::addSceneRootNodes(const std::vector<std::shared_ptr<ExcVisuNode>>& nodes) {
    addAllChecked(m_sceneRootNodes, nodes, kDataNullNode);
}
void ExcVisualizationData::setSceneRootNodes(const std::vector<std::shared_ptr<ExcVisuNode>>& nodes) {
    setAllChecked(m_sceneRootNodes, nodes, kDataNullNode);
}
void ExcVisualizationData::addView(const std::shared_ptr<ExcVisuView>& view) {
    addChecked(m_views, view, kDataNullView);
}
void ExcVisualizationData::addViews(const std::vector<std::shared_ptr<ExcVisuView>>& views) {
    addAllChecked(m_views, views, kDataNullView);
}
void ExcVisualizationData::setViews(const std::vector<std::shared_ptr<ExcVisuView>>& views) {
    setAllChecked(m_views, views, kDataNullView);
}
void ExcVisualizationData::addCapture(const std::shared_ptr<ExcVisuCapture>& capture) {
    addChecked(m_captures, capture, kDataNullCapture);
}
void ExcVisualizationData::addCaptures(const std::vector<std::shared_ptr<ExcVisuCapture>>& captures) {
    addAllChecked(m_captures, captures, kDataNullCapture);
}
void ExcVisualizationData::setCaptures(const std::vector<std::shared_ptr<ExcVisuCapture>>& captures) {
    setAllChecked(m_captures, captures, kDataNullCapture);
}

ExcVisualizationData::Counts ExcVisualizationData::counts() const {
    Counts counts;
    counts.views = m_views.size();
    counts.captures = m_captures.size();
    std::vector<const ExcVisuNode*> pending;
    for (const auto& node : m_sceneRootNodes)
        if (node) pending.push_back(node.get());
    while (!pending.empty()) {
        const ExcVisuNode* node = pending.back();
        pending.pop_back();
        ++counts.nodes;
        if (const auto& mesh = node->mesh()) {
            ++counts.meshes;
            counts.edges += mesh->edges().size();
            for (const auto& face : mesh->faces()) {
                ++counts.faces;
                counts.triangles += face->triangleCount();
            }
        }
        if (node->wire()) counts.edges += node->wire()->edges().size();
        if (node->pmi()) counts.edges += node->pmi()->edges().size();
        for (const auto& child : node->childNodes())
            if (child) pending.push_back(child.get());
    }
    return counts;
}

template <class Io, class Self>
void ExcVisualizationData::members(Io& io, Self& self) {
    io(L"scene_root_nodes", self.m_sceneRootNodes, json::objectsOnly);
    io(L"units", self.m_units);
    io(L"views", self.m_views, optionalObjects);
    io(L"captures", self.m_captures, optionalObjects);
}

XCH_JSON_IO(ExcVisualizationData)

// ---- ExcBlockVisualization -----------------------------------------------------------

ExcBlockVisualization::ExcBlockVisualization() = default;
ExcBlockVisualization::ExcBlockVisualization(std::uint64_t blockId, const std::shared_ptr<ExcVisualizationData>& data)
    : m_blockId(blockId), m_visualizationData(data) {}
ExcBlockVisualization::ExcBlockVisualization(const ExcBlockVisualization&) = default;
ExcBlockVisualization& ExcBlockVisualization::operator=(const ExcBlockVisualization&) = default;
ExcBlockVisualization::~ExcBlockVisualization() = default;

const std::wstring& ExcBlockVisualization::objName() {
    static const std::wstring name = L"exc_block_visualization";
    return name;
}

bool ExcBlockVisualization::binary() const { return true; }
bool ExcBlockVisualization::compress() const { return true; }

template <class Io, class Self>
void ExcBlockVisualization::members(Io& io, Self& self) {
    io(L"block_id", self.m_blockId);
    io(L"visualization_data", self.m_visualizationData, optionalObject);
}

XCH_JSON_IO(ExcBlockVisualization)

// ---- ExcRootAssemblyVisualization ----------------------------------------------------

ExcRootAssemblyVisualization::ExcRootAssemblyVisualization() = default;
ExcRootAssemblyVisualization::ExcRootAssemblyVisualization(const std::shared_ptr<ExcVisualizationData>& data)
    : m_visualizationData(data) {}
ExcRootAssemblyVisualization::ExcRootAssemblyVisualization(const ExcRootAssemblyVisualization&) = default;
ExcRootAssemblyVisualization& ExcRootAssemblyVisualization::operator=(const ExcRootAssemblyVisualization&) = default;
ExcRootAssemblyVisualization::~ExcRootAssemblyVisualization() = default;

const std::wstring& ExcRootAssemblyVisualization::objName() {
    static const std::wstring name = L"exc_root_assembly_visualization";
    return name;
}

bool ExcRootAssemblyVisualization::binary() const { return true; }
bool ExcRootAssemblyVisualization::compress() const { return true; }

template <class Io, class Self>
void ExcRootAssemblyVisualization::members(Io& io, Self& self) {
    io(L"visualization_data", self.m_visualizationData, optionalObject);
}

XCH_JSON_IO(ExcRootAssemblyVisualization)

static StaticExchangeObject<ExcBlockVisualization> s_blockVisualizationPrototype;
static StaticExchangeObject<ExcRootAssemblyVisualization> s_rootAssemblyVisualizationPrototype;

} // namespace xch

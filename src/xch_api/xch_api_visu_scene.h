// The scene of a translated model: a tree of nodes that place tessellation
// primitives with their appearance, the saved views and captures of the
// source model, and the two registered top-level objects that carry them:
// ExcBlockVisualization ("exc_block_visualization", one block) and
// ExcRootAssemblyVisualization ("exc_root_assembly_visualization", the
// assembly as a whole). Both travel as compressed binary JSON in shared
// memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_entity.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_visu_appearance.h>
#include <xch_api/xch_api_visu_camera.h>
#include <xch_api/xch_api_visu_tessellation.h>

namespace xch {

// One node of the scene tree.
//
// JSON: {"is_leaf", "type", "group_name"} always, then "attributes",
// "transformation", "mesh", "wire", "pmi", "point_set" each only when set,
// and "child_nodes" only when there are children. Each nested object is
// read, when it is a JSON object, into a new instance that replaces the
// pointer; "child_nodes" appends one new node per object element. Node
// kinds travel as upper-case strings; an unknown string (such as "group")
// reads as ActiveDrawingSheet (the table's smallest string).
class XCH_API ExcVisuNode : public IJsonObject {
public:
    enum EType : std::int32_t {
        Undefined = 0, Root, Group, Geometry, Meshes, Mesh, Wires, Wire, Points, PointSet, Pmi,
        FtaConstructedGeometry, Notes, Note, FlagNote, Noa, Datums, DatumSimple, DatumTarget, DatumUnknown,
        Dimensions, DimensionBasic, DimensionLength, DimensionDistance, DimensionLinear,
        DimensionOrientedLinear, DimensionDiameter, DimensionRadius, DimensionAngle, DimensionOrientedAngle,
        DimensionCoordinate3d, DimensionChamfer, DimensionUnknown, GeomTols, GeomTolStraightness,
        GeomTolFlatness, GeomTolCircularity, GeomTolCylindricity, GeomTolProfileLine, GeomTolProfileSurface,
        GeomTolCompProfileSurface, GeomTolPatternLocation, GeomTolParallelism, GeomTolAngularity,
        GeomTolPerpendicularity, GeomTolPosition, GeomTolPositionLine, GeomTolPositionSurface,
        GeomTolCompPosition, GeomTolTolerance, GeomTolConcentricity, GeomTolSymmetry, GeomTolRunoutCircular,
        GeomTolRunoutTotal, GeomTolNoteOnly, GeomTolUnknown, Roughnesses, Roughness, DrawingSheet,
        ActiveDrawingSheet, DrawingSheets  // 0 "UNDEFINED" .. 60 "DRAWINGSHEETS", in this order
    };

    ExcVisuNode();
    // Copies share the nested objects and the children.
    ExcVisuNode(const ExcVisuNode&);
    ExcVisuNode& operator=(const ExcVisuNode&);
    ~ExcVisuNode() override;

    bool isLeaf() const { return m_leaf; }
    void setLeaf(bool leaf) { m_leaf = leaf; }
    const std::shared_ptr<ExcVisuAttributes>& attributes() const { return m_attributes; }
    void setAttributes(const std::shared_ptr<ExcVisuAttributes>& attributes) { m_attributes = attributes; }
    // The placement relative to the parent node.
    const std::shared_ptr<ExcTransformation>& transformation() const { return m_transformation; }
    void setTransformation(const std::shared_ptr<ExcTransformation>& t) { m_transformation = t; }
    const std::shared_ptr<ExcVisuMesh>& mesh() const { return m_mesh; }
    void setMesh(const std::shared_ptr<ExcVisuMesh>& mesh) { m_mesh = mesh; }
    const std::shared_ptr<ExcVisuWire>& wire() const { return m_wire; }
    void setWire(const std::shared_ptr<ExcVisuWire>& wire) { m_wire = wire; }
    const std::shared_ptr<ExcVisuPMI>& pmi() const { return m_pmi; }
    void setPMI(const std::shared_ptr<ExcVisuPMI>& pmi) { m_pmi = pmi; }
    const std::shared_ptr<ExcVisuPointSet>& pointSet() const { return m_pointSet; }
    void setPointSet(const std::shared_ptr<ExcVisuPointSet>& pointSet) { m_pointSet = pointSet; }
    EType type() const { return m_type; }
    void setType(EType type) { m_type = type; }
    const std::wstring& groupName() const { return m_groupName; }
    void setGroupName(const std::wstring& name) { m_groupName = name; }
    const std::vector<std::shared_ptr<ExcVisuNode>>& childNodes() const { return m_childNodes; }
    // A null child is not added (logged at level 3).
    void addChildNode(const std::shared_ptr<ExcVisuNode>& node);
    void addChildNodes(const std::vector<std::shared_ptr<ExcVisuNode>>& nodes);
    void setChildNodes(const std::vector<std::shared_ptr<ExcVisuNode>>& nodes);

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    bool m_leaf = false;
    std::shared_ptr<ExcVisuAttributes> m_attributes;
    std::shared_ptr<ExcTransformation> m_transformation;
    std::shared_ptr<ExcVisuMesh> m_mesh;
    std::shared_ptr<ExcVisuWire> m_wire;
    std::shared_ptr<ExcVisuPMI> m_pmi;
    std::shared_ptr<ExcVisuPointSet> m_pointSet;
    EType m_type = Undefined;
    std::wstring m_groupName;
    std::vector<std::shared_ptr<ExcVisuNode>> m_childNodes;
};

template <> XCH_API const EnumTable<ExcVisuNode::EType>& enumTable<ExcVisuNode::EType>();

// What saved views and captures have in common: the name shown, an id, the
// id of the source object, whether it is hidden, and the ids of the PMI
// annotations shown. Their JSON starts with "display_name", "id",
// "mechanical_id", "hidden"; each places "annotation_ids" itself.
class XCH_API ExcVisuViewItem : public IJsonObject {
public:
    const std::wstring& displayName() const { return m_displayName; }
    void setDisplayName(const std::wstring& name) { m_displayName = name; }
    const std::wstring& id() const { return m_id; }
    void setId(const std::wstring& id) { m_id = id; }
    const std::wstring& mechanicalId() const { return m_mechanicalId; }
    void setMechanicalId(const std::wstring& id) { m_mechanicalId = id; }
    bool hidden() const { return m_hidden; }
    void setHidden(bool hidden) { m_hidden = hidden; }
    const std::vector<std::wstring>& annotationIds() const { return m_annotationIds; }
    void addAnnotationId(const std::wstring& id) { m_annotationIds.push_back(id); }
    void setAnnotationIds(const std::vector<std::wstring>& ids) { m_annotationIds = ids; }

    template <class Io, class Self>
    static void members(Io& io, Self& self);

protected:
    ExcVisuViewItem();
    ExcVisuViewItem(const ExcVisuViewItem&);
    ExcVisuViewItem& operator=(const ExcVisuViewItem&);
    ~ExcVisuViewItem() override;

    std::wstring m_displayName;
    std::wstring m_id;
    std::wstring m_mechanicalId;
    bool m_hidden = false;
    std::vector<std::wstring> m_annotationIds;
};

// A saved view of the source model: a plane (origin and two axes) and the
// annotations shown on it.
//
// JSON: the ExcVisuViewItem keys, then "origin", "direction_u",
// "direction_v" (vector arrays) and "annotation_ids" (strings; reading
// appends), all always written. Defaults: the XY plane through the origin.
class XCH_API ExcVisuView : public ExcVisuViewItem {
public:
    ExcVisuView();
    ExcVisuView(const ExcVisuView&);
    ExcVisuView& operator=(const ExcVisuView&);
    ~ExcVisuView() override;

    const ExcVector3d& origin() const { return m_origin; }
    void setOrigin(const ExcVector3d& origin) { m_origin = origin; }
    const ExcVector3d& directionU() const { return m_directionU; }
    void setDirectionU(const ExcVector3d& u) { m_directionU = u; }
    const ExcVector3d& directionV() const { return m_directionV; }
    void setDirectionV(const ExcVector3d& v) { m_directionV = v; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ExcVector3d m_origin;
    ExcVector3d m_directionU{1.0, 0.0, 0.0};
    ExcVector3d m_directionV{0.0, 1.0, 0.0};
};

// A captured state of the model: camera, clipping, the annotations and the
// bodies shown.
//
// JSON: the ExcVisuViewItem keys, then "active", "hidden_text",
// "clipping_plane" (null when the plane is empty; null reads back as "no
// change"), "camera", "annotation_ids", "fta_constructed_geometry_ids",
// all always written, and "bodies" (the linked elements, entity objects)
// only when there are some. Reading the string lists and "bodies" appends.
class XCH_API ExcVisuCapture : public ExcVisuViewItem {
public:
    ExcVisuCapture();
    // Copies share the linked elements.
    ExcVisuCapture(const ExcVisuCapture&);
    ExcVisuCapture& operator=(const ExcVisuCapture&);
    ~ExcVisuCapture() override;

    bool isActive() const { return m_active; }
    void setActive(bool active) { m_active = active; }
    const std::wstring& hiddenText() const { return m_hiddenText; }
    void setHiddenText(const std::wstring& text) { m_hiddenText = text; }
    const ExcClippingPlane& clippingPlane() const { return m_clippingPlane; }
    void setClippingPlane(const ExcClippingPlane& plane) { m_clippingPlane = plane; }
    const ExcCamera& camera() const { return m_camera; }
    void setCamera(const ExcCamera& camera) { m_camera = camera; }
    // Ids of the construction geometry shown with the functional tolerancing
    // annotations.
    const std::vector<std::wstring>& ftaConstructedGeometryIds() const { return m_ftaConstructedGeometryIds; }
    void addFtaConstructedGeometryIds(const std::wstring& id) { m_ftaConstructedGeometryIds.push_back(id); }
    void setFtaConstructedGeometryIds(const std::vector<std::wstring>& ids) { m_ftaConstructedGeometryIds = ids; }
    // The bodies shown.
    const std::vector<std::shared_ptr<ExcEntity>>& linkedElements() const { return m_linkedElements; }
    // A null element is not added (logged at level 3).
    void addLinkedElement(const std::shared_ptr<ExcEntity>& element);
    void setLinkedElements(const std::vector<std::shared_ptr<ExcEntity>>& elements);

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    bool m_active = false;
    std::wstring m_hiddenText;
    ExcClippingPlane m_clippingPlane;
    ExcCamera m_camera;
    std::vector<std::wstring> m_ftaConstructedGeometryIds;
    std::vector<std::shared_ptr<ExcEntity>> m_linkedElements;
};

// The display model of one block or of the whole assembly.
//
// JSON: {"scene_root_nodes", "units"} always, "views" and "captures" only
// when not empty. Reading the arrays appends one new element per object
// element. Units default to unknown.
class XCH_API ExcVisualizationData : public IJsonObject {
public:
    // What a scene holds, counted over the whole tree.
    struct Counts {
        std::size_t nodes = 0;
        std::size_t meshes = 0;
        std::size_t faces = 0;
        std::size_t triangles = 0;
        std::size_t edges = 0;      // of meshes, wires and PMI
        std::size_t views = 0;
        std::size_t captures = 0;
    };

    ExcVisualizationData();
    // Copies share the nodes, views and captures.
    ExcVisualizationData(const ExcVisualizationData&);
    ExcVisualizationData& operator=(const ExcVisualizationData&);
    ~ExcVisualizationData() override;

    const std::vector<std::shared_ptr<ExcVisuNode>>& sceneRootNodes() const { return m_sceneRootNodes; }
    // Null nodes, views and captures are not added (logged at level 3).
    void addSceneRootNode(const std::shared_ptr<ExcVisuNode>& node);
    void addSceneRootNodes(const std::vector<std::shared_ptr<ExcVisuNode>>& nodes);
    void setSceneRootNodes(const std::vector<std::shared_ptr<ExcVisuNode>>& nodes);
    // The length unit of every coordinate in the scene.
    ELengthUnitType units() const { return m_units; }
    void setUnits(ELengthUnitType units) { m_units = units; }
    const std::vector<std::shared_ptr<ExcVisuView>>& views() const { return m_views; }
    void addView(const std::shared_ptr<ExcVisuView>& view);
    void addViews(const std::vector<std::shared_ptr<ExcVisuView>>& views);
    void setViews(const std::vector<std::shared_ptr<ExcVisuView>>& views);
    const std::vector<std::shared_ptr<ExcVisuCapture>>& captures() const { return m_captures; }
    void addCapture(const std::shared_ptr<ExcVisuCapture>& capture);
    void addCaptures(const std::vector<std::shared_ptr<ExcVisuCapture>>& captures);
    void setCaptures(const std::vector<std::shared_ptr<ExcVisuCapture>>& captures);

    // Counts the scene (iteratively: deep trees do not deepen the stack; a
    // node reachable twice is counted twice).
    Counts counts() const;

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::vector<std::shared_ptr<ExcVisuNode>> m_sceneRootNodes;
    ELengthUnitType m_units = LengthUnknown;
    std::vector<std::shared_ptr<ExcVisuView>> m_views;
    std::vector<std::shared_ptr<ExcVisuCapture>> m_captures;
};

// The display model of one block ("exc_block_visualization"): binary,
// compressed.
//
// JSON: {"block_id"} always, "visualization_data" when set (read into new
// data when a JSON object). Copies and clones share the data.
class XCH_API ExcBlockVisualization : public ExchangeObjectImpl<ExcBlockVisualization> {
public:
    ExcBlockVisualization();
    explicit ExcBlockVisualization(std::uint64_t blockId,
                                   const std::shared_ptr<ExcVisualizationData>& data = nullptr);
    ExcBlockVisualization(const ExcBlockVisualization&);
    ExcBlockVisualization& operator=(const ExcBlockVisualization&);
    ~ExcBlockVisualization() override;

    static const std::wstring& objName();
    const std::wstring& objectName() const { return objName(); }
    bool binary() const override;
    bool compress() const override;

    // The id of the ExcBlock this displays.
    std::uint64_t blockId() const { return m_blockId; }
    void setBlockId(std::uint64_t blockId) { m_blockId = blockId; }
    const std::shared_ptr<ExcVisualizationData>& visualizationData() const { return m_visualizationData; }
    void setVisualizationData(const std::shared_ptr<ExcVisualizationData>& data) { m_visualizationData = data; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::uint64_t m_blockId = 0;
    std::shared_ptr<ExcVisualizationData> m_visualizationData;
};

// The display model of the assembly as a whole
// ("exc_root_assembly_visualization"): binary, compressed.
//
// JSON: {"visualization_data"} when set.
class XCH_API ExcRootAssemblyVisualization : public ExchangeObjectImpl<ExcRootAssemblyVisualization> {
public:
    ExcRootAssemblyVisualization();
    explicit ExcRootAssemblyVisualization(const std::shared_ptr<ExcVisualizationData>& data);
    ExcRootAssemblyVisualization(const ExcRootAssemblyVisualization&);
    ExcRootAssemblyVisualization& operator=(const ExcRootAssemblyVisualization&);
    ~ExcRootAssemblyVisualization() override;

    static const std::wstring& objName();
    const std::wstring& objectName() const { return objName(); }
    bool binary() const override;
    bool compress() const override;

    const std::shared_ptr<ExcVisualizationData>& visualizationData() const { return m_visualizationData; }
    void setVisualizationData(const std::shared_ptr<ExcVisualizationData>& data) { m_visualizationData = data; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::shared_ptr<ExcVisualizationData> m_visualizationData;
};

} // namespace xch

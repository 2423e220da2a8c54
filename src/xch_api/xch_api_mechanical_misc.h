// The non-PMI side data of a block: working coordinate systems, layers and
// layer filters, note parameters, materials, symmetries and display sets,
// collected in ExcMechanicalMiscData (the block mechanical data's
// "misc_data").
//
// Every key is always written, in the order given per class. Reading is
// lenient: a missing key, or one of another JSON type, leaves the field as
// it is; vectors and transformations are taken only in their own JSON form,
// "active", "shown" and "current" only as JSON booleans; lists of objects
// append one new element per object item and skip the other items. A value
// that is not an object logs "<Class> object should have a JSON object
// type." at error level and changes nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_entity.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>
#include <xch_api/xch_api_mechanical_material.h>
#include <xch_api/xch_api_misc_data.h>

namespace xch {

// A working (world) coordinate system of the source model.
// JSON: "origin", "x", "y", "z" (vector arrays), "color" (ExcColor), "active",
// "name", "id", "shown", "layer_id".
class XCH_API ExcMiscWCS : public IJsonObject {
public:
    ExcMiscWCS();
    ~ExcMiscWCS() override;

    const ExcVector3d& origin() const { return m_origin; }
    void setOrigin(const ExcVector3d& origin) { m_origin = origin; }
    const ExcVector3d& x() const { return m_x; }
    void setX(const ExcVector3d& x) { m_x = x; }
    const ExcVector3d& y() const { return m_y; }
    void setY(const ExcVector3d& y) { m_y = y; }
    const ExcVector3d& z() const { return m_z; }
    void setZ(const ExcVector3d& z) { m_z = z; }
    const ExcColor& color() const { return m_color; }
    void setColor(const ExcColor& color) { m_color = color; }
    bool isActive() const { return m_active; }
    void setActive(bool active) { m_active = active; }
    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    const std::wstring& id() const { return m_id; }
    void setId(const std::wstring& id) { m_id = id; }
    bool isShown() const { return m_shown; }
    void setShown(bool shown) { m_shown = shown; }
    const std::wstring& layerId() const { return m_layerId; }
    void setLayerId(const std::wstring& layerId) { m_layerId = layerId; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ExcVector3d m_origin;
    ExcVector3d m_x;
    ExcVector3d m_y;
    ExcVector3d m_z;
    ExcColor m_color;
    bool m_active = false;
    std::wstring m_name;
    std::wstring m_id;
    bool m_shown = false;
    std::wstring m_layerId;
};

// A layer and the entities on it.
// JSON: "id", "name", "current", "color", "entities" (entity objects).
class XCH_API ExcMiscLayer : public IJsonObject {
public:
    ExcMiscLayer();
    ExcMiscLayer(const std::wstring& id, const std::wstring& name);
    ~ExcMiscLayer() override;

    const std::wstring& id() const { return m_id; }
    void setId(const std::wstring& id) { m_id = id; }
    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    bool isCurrent() const { return m_current; }
    void setCurrent(bool current) { m_current = current; }
    const ExcColor& color() const { return m_color; }
    void setColor(const ExcColor& color) { m_color = color; }
    const std::vector<std::shared_ptr<ExcEntity>>& entities() const { return m_entities; }
    // A null entity is not added (logged as a warning).
    void addEntity(const std::shared_ptr<ExcEntity>& entity);
    void setEntities(const std::vector<std::shared_ptr<ExcEntity>>& entities) { m_entities = entities; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_id;
    std::wstring m_name;
    bool m_current = false;
    ExcColor m_color;
    std::vector<std::shared_ptr<ExcEntity>> m_entities;
};

// A named layer filter. JSON: "name", "type", "current", "layer_id"; a
// "type" string outside the table (other case included) reads as All.
class XCH_API ExcMiscLayerFilter : public IJsonObject {
public:
    enum EType : std::int32_t {
        All = 0,     // "all": every layer
        LayCur = 1,  // "laycur": the current layer
        Other = 2    // "other"
    };

    ExcMiscLayerFilter();
    ExcMiscLayerFilter(const std::wstring& name, EType type);
    ~ExcMiscLayerFilter() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    EType type() const { return m_type; }
    void setType(EType type) { m_type = type; }
    bool isCurrent() const { return m_current; }
    void setCurrent(bool current) { m_current = current; }
    const std::wstring& layerId() const { return m_layerId; }
    void setLayerId(const std::wstring& layerId) { m_layerId = layerId; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    EType m_type = All;
    bool m_current = false;
    std::wstring m_layerId;
};

template <> XCH_API const EnumTable<ExcMiscLayerFilter::EType>& enumTable<ExcMiscLayerFilter::EType>();

// Named parameters of the notes of a model, as property groups.
// JSON: "name", "properties" (the property group array form).
class XCH_API ExcMiscNoteParameters : public IJsonObject {
public:
    ExcMiscNoteParameters();
    explicit ExcMiscNoteParameters(const std::wstring& name);
    ~ExcMiscNoteParameters() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    const ExcMiscData& properties() const { return m_properties; }
    ExcMiscData& properties() { return m_properties; }
    void setProperties(const ExcMiscData& properties) { m_properties = properties; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    ExcMiscData m_properties;
};

// A symmetry of the part: the transformation that maps the linked entity
// onto its mirror image, and which side(s) it applies to.
// JSON: "transform_mode", "transformation", "linked_entity"; an unknown
// "transform_mode" string reads as Both.
class XCH_API ExcMiscSymmetry : public IJsonObject {
public:
    enum ETransformMode : std::int32_t {
        None = 0,      // "none"
        Opposite = 1,  // "opposite"
        Both = 2       // "both"
    };

    ExcMiscSymmetry();
    ~ExcMiscSymmetry() override;

    ETransformMode transformMode() const { return m_transformMode; }
    void setTransformMode(ETransformMode mode) { m_transformMode = mode; }
    const ExcTransformation& transformation() const { return m_transformation; }
    void setTransformation(const ExcTransformation& transformation) { m_transformation = transformation; }
    const ExcEntity& linkedEntity() const { return m_linkedEntity; }
    void setLinkedEntity(const ExcEntity& entity) { m_linkedEntity = entity; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ETransformMode m_transformMode = None;
    ExcTransformation m_transformation;
    ExcEntity m_linkedEntity;
};

template <> XCH_API const EnumTable<ExcMiscSymmetry::ETransformMode>& enumTable<ExcMiscSymmetry::ETransformMode>();

// A named set of entities shown together. JSON: "name", "entities".
class XCH_API ExcMiscDisplaySet : public IJsonObject {
public:
    ExcMiscDisplaySet();
    explicit ExcMiscDisplaySet(const std::wstring& name);
    ~ExcMiscDisplaySet() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    const std::vector<std::shared_ptr<ExcEntity>>& entities() const { return m_entities; }
    // A null entity is not added (logged as a warning).
    void addEntity(const std::shared_ptr<ExcEntity>& entity);
    void setEntities(const std::vector<std::shared_ptr<ExcEntity>>& entities) { m_entities = entities; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    std::vector<std::shared_ptr<ExcEntity>> m_entities;
};

// All the miscellaneous mechanical data of a block.
// JSON: "misc_data" (property groups), then the arrays "wcs", "layers",
// "layer_filters", "materials", "note_parameters", "symmetries",
// "display_sets". Copies share the list elements.
class XCH_API ExcMechanicalMiscData : public IJsonObject {
public:
    ExcMechanicalMiscData();
    ~ExcMechanicalMiscData() override;

    const ExcMiscData& miscData() const { return m_miscData; }
    ExcMiscData& miscData() { return m_miscData; }
    void setMiscData(const ExcMiscData& miscData) { m_miscData = miscData; }

    // Each adder appends one element; a null one is not added (logged as a
    // warning).
    void addWorldCoordinateSystem(const std::shared_ptr<ExcMiscWCS>& wcs);
    void addLayer(const std::shared_ptr<ExcMiscLayer>& layer);
    void addLayerFilter(const std::shared_ptr<ExcMiscLayerFilter>& filter);
    void addMaterial(const std::shared_ptr<ExcMiscMaterial>& material);
    void addNoteParameters(const std::shared_ptr<ExcMiscNoteParameters>& parameters);
    void addSymmetry(const std::shared_ptr<ExcMiscSymmetry>& symmetry);
    void addDisplaySet(const std::shared_ptr<ExcMiscDisplaySet>& displaySet);

    const std::vector<std::shared_ptr<ExcMiscWCS>>& worldCoordinateSystems() const { return m_worldCoordinateSystems; }
    const std::vector<std::shared_ptr<ExcMiscLayer>>& layers() const { return m_layers; }
    const std::vector<std::shared_ptr<ExcMiscLayerFilter>>& layerFilters() const { return m_layerFilters; }
    const std::vector<std::shared_ptr<ExcMiscMaterial>>& materials() const { return m_materials; }
    const std::vector<std::shared_ptr<ExcMiscNoteParameters>>& noteParameters() const { return m_noteParameters; }
    const std::vector<std::shared_ptr<ExcMiscSymmetry>>& symmetries() const { return m_symmetries; }
    const std::vector<std::shared_ptr<ExcMiscDisplaySet>>& displaySets() const { return m_displaySets; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ExcMiscData m_miscData;
    std::vector<std::shared_ptr<ExcMiscWCS>> m_worldCoordinateSystems;
    std::vector<std::shared_ptr<ExcMiscLayer>> m_layers;
    std::vector<std::shared_ptr<ExcMiscLayerFilter>> m_layerFilters;
    std::vector<std::shared_ptr<ExcMiscMaterial>> m_materials;
    std::vector<std::shared_ptr<ExcMiscNoteParameters>> m_noteParameters;
    std::vector<std::shared_ptr<ExcMiscSymmetry>> m_symmetries;
    std::vector<std::shared_ptr<ExcMiscDisplaySet>> m_displaySets;
};

} // namespace xch

// Miscellaneous mechanical data of a block.
#include <xch_api/xch_api_mechanical_misc.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcMiscLayerFilter::EType>& enumTable<ExcMiscLayerFilter::EType>() {
    static const EnumTable<ExcMiscLayerFilter::EType> table{
        {ExcMiscLayerFilter::All, L"all"},
        {ExcMiscLayerFilter::LayCur, L"laycur"},
        {ExcMiscLayerFilter::Other, L"other"},
    };
    return table;
}

template <>
const EnumTable<ExcMiscSymmetry::ETransformMode>& enumTable<ExcMiscSymmetry::ETransformMode>() {
    static const EnumTable<ExcMiscSymmetry::ETransformMode> table{
        {ExcMiscSymmetry::None, L"none"},
        {ExcMiscSymmetry::Opposite, L"opposite"},
        {ExcMiscSymmetry::Both, L"both"},
    };
    return table;
}

// ---- ExcMiscWCS -------------------------------------------------------------------

ExcMiscWCS::ExcMiscWCS() = default;
ExcMiscWCS::~ExcMiscWCS() = default;

template <class Io, class Self>
void ExcMiscWCS::members(Io& io, Self& self) {
    io(L"origin", self.m_origin, json::whenArray);
    io(L"x", self.m_x, json::whenArray);
    io(L"y", self.m_y, json::whenArray);
    io(L"z", self.m_z, json::whenArray);
    io(L"color", self.m_color, json::whenObject);
    io(L"active", self.m_active);
    io(L"name", self.m_name);
    io(L"id", self.m_id);
    io(L"shown", self.m_shown);
    io(L"layer_id", self.m_layerId);
}

XCH_JSON_IO(ExcMiscWCS)

// ---- ExcMiscLayer -------------------------------------------------------------------

ExcMiscLayer::ExcMiscLayer() = default;
ExcMiscLayer::ExcMiscLayer(const std::wstring& id, const std::wstring& name) : m_id(id), m_name(name) {}
ExcMiscLayer::~ExcMiscLayer() = default;

void ExcMiscLayer::addEntity(const std::shared_ptr<ExcEntity>& entity) {
    json::appendNonNull(m_entities, entity, "ExcMiscLayer: attempt to add null Entity object.");
}

template <class Io, class Self>
void ExcMiscLayer::members(Io& io, Self& self) {
    io(L"id", self.m_id);
    io(L"name", self.m_name);
    io(L"current", self.m_current);
    io(L"color", self.m_color, json::whenObject);
    io(L"entities", self.m_entities, json::objectsOnly);
}

XCH_JSON_IO(ExcMiscLayer)

// ---- ExcMiscLayerFilter -----------------------------------------------------------------

ExcMiscLayerFilter::ExcMiscLayerFilter() = default;
ExcMiscLayerFilter::ExcMiscLayerFilter(const std::wstring& name, EType type) : m_name(name), m_type(type) {}
ExcMiscLayerFilter::~ExcMiscLayerFilter() = default;

template <class Io, class Self>
void ExcMiscLayerFilter::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"type", self.m_type);
    io(L"current", self.m_current);
    io(L"layer_id", self.m_layerId);
}

XCH_JSON_IO(ExcMiscLayerFilter)

// ---- ExcMiscNoteParameters --------------------------------------------------------------

ExcMiscNoteParameters::ExcMiscNoteParameters() = default;
ExcMiscNoteParameters::ExcMiscNoteParameters(const std::wstring& name) : m_name(name) {}
ExcMiscNoteParameters::~ExcMiscNoteParameters() = default;

template <class Io, class Self>
void ExcMiscNoteParameters::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"properties", self.m_properties, json::whenArray);
}

XCH_JSON_IO(ExcMiscNoteParameters)

// ---- ExcMiscSymmetry ----------------------------------------------------------------------

ExcMiscSymmetry::ExcMiscSymmetry() = default;
ExcMiscSymmetry::~ExcMiscSymmetry() = default;

template <class Io, class Self>
void ExcMiscSymmetry::members(Io& io, Self& self) {
    io(L"transform_mode", self.m_transformMode);
    io(L"transformation", self.m_transformation, json::whenObject);
    io(L"linked_entity", self.m_linkedEntity, json::whenObject);
}

XCH_JSON_IO(ExcMiscSymmetry)

// ---- ExcMiscDisplaySet ----------------------------------------------------------------------

ExcMiscDisplaySet::ExcMiscDisplaySet() = default;
ExcMiscDisplaySet::ExcMiscDisplaySet(const std::wstring& name) : m_name(name) {}
ExcMiscDisplaySet::~ExcMiscDisplaySet() = default;

void ExcMiscDisplaySet::addEntity(const std::shared_ptr<ExcEntity>& entity) {
    json::appendNonNull(m_entities, entity, "ExcMiscDisplaySet: attempt to add null Entity object.");
}

template <class Io, class Self>
void ExcMiscDisplaySet::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"entities", self.m_entities, json::objectsOnly);
}

XCH_JSON_IO(ExcMiscDisplaySet)

// ---- ExcMechanicalMiscData ----------------------------------------------------------------------

ExcMechanicalMiscData::ExcMechanicalMiscData() = default;
ExcMechanicalMiscData::~ExcMechanicalMiscData() = default;

void ExcMechanicalMiscData::addWorldCoordinateSystem(const std::shared_ptr<ExcMiscWCS>& wcs) {
    json::appendNonNull(m_worldCoordinateSystems, wcs, "ExcMechanicalMiscData: attempt to add null WCS object.");
}

void ExcMechanicalMiscData::addLayer(const std::shared_ptr<ExcMiscLayer>& layer) {
    json::appendNonNull(m_layers, layer, "ExcMechanicalMiscData: attempt to add null Layer object.");
}

void ExcMechanicalMiscData::addLayerFilter(const std::shared_ptr<ExcMiscLayerFilter>& filter) {
    json::appendNonNull(m_layerFilters, filter, "ExcMechanicalMiscData: attempt to add null Layer Filter object.");
}

void ExcMechanicalMiscData::addMaterial(const std::shared_ptr<ExcMiscMaterial>& material) {
    json::appendNonNull(m_materials, material, "ExcMechanicalMiscData: attempt to add null Material object.");
}

void ExcMechanicalMiscData::addNoteParameters(const std::shared_ptr<ExcMiscNoteParameters>& parameters) {
    json::appendNonNull(m_noteParameters, parameters,
                        "ExcMechanicalMiscData: attempt to add null Note Parameters object.");
}

void ExcMechanicalMiscData::addSymmetry(const std::shared_ptr<ExcMiscSymmetry>& symmetry) {
    json::appendNonNull(m_symmetries, symmetry, "ExcMechanicalMiscData: attempt to add null Symmetry object.");
}

void ExcMechanicalMiscData::addDisplaySet(const std::shared_ptr<ExcMiscDisplaySet>& displaySet) {
    json::appendNonNull(m_displaySets, displaySet, "ExcMechanicalMiscData: attempt to add null Display Set object.");
}

template <class Io, class Self>
void ExcMechanicalMiscData::members(Io& io, Self& self) {
    io(L"misc_data", self.m_miscData, json::whenArray);
    io(L"wcs", self.m_worldCoordinateSystems, json::objectsOnly);
    io(L"layers", self.m_layers, json::objectsOnly);
    io(L"layer_filters", self.m_layerFilters, json::objectsOnly);
    io(L"materials", self.m_materials, json::objectsOnly);
    io(L"note_parameters", self.m_noteParameters, json::objectsOnly);
    io(L"symmetries", self.m_symmetries, json::objectsOnly);
    io(L"display_sets", self.m_displaySets, json::objectsOnly);
}

XCH_JSON_IO(ExcMechanicalMiscData)

} // namespace xch

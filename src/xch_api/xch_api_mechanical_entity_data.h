// Per-entity side data of a block's mechanical data: the mapping from
// entities of the translated model to the entities of the source model
// they came from (ExcMappingData), and display information and persistent
// names of topological entities (ExcEntityData).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <xch_api/xch_api_entity.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// Pairs (imported entity, original entity), in order: the entity as it
// stands in the translated model and the source model's entity it came
// from.
//
// JSON: an array of {"imported": entity object, "original": entity
// object}. Reading appends one pair per object item; an item that is not
// an object is skipped with the warning "ExcMappingData JSON array should
// have objects as items.". A side that is missing (or not an object) reads
// as an empty entity (a default ExcEntity, type "unknown"), so that every
// pair read holds two entities. A value that is not an array logs
// "ExcMappingData object should have a JSON array type." at error level
// and changes nothing.
class XCH_API ExcMappingData : public IJsonObject {
public:
    using Pair = std::pair<std::shared_ptr<ExcEntity>, std::shared_ptr<ExcEntity>>;

    ExcMappingData();
    ~ExcMappingData() override;

    // Appends the pair; when either entity is null nothing is appended and
    // a warning is logged.
    void add(const std::shared_ptr<ExcEntity>& entity, const std::shared_ptr<ExcEntity>& original);
    const std::vector<Pair>& pairs() const { return m_pairs; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    // The two members of one pair's object.
    template <class Io, class Self>
    static void pairMembers(Io& io, Self& pair);

private:
    std::vector<Pair> m_pairs;
};

// How one topological entity is known and shown: its source system's
// persistent names, its name, visibility and line style.
//
// JSON: "entity" (entity object), "pnames" (array of strings), "name",
// "hidden", "line_type", "line_thickness". Reading takes "entity" only from
// an object, appends each string of "pnames", takes "hidden" only from a
// JSON bool and "line_thickness" from any number; a "line_type" string
// outside the table reads as CurveBatting (the table's smallest string). A
// value that is not an object logs "ExcTopologicalEntityInformation object
// should have a JSON object type." at error level and changes nothing.
class XCH_API ExcTopologicalEntityInformation : public IJsonObject {
public:
    enum ELineType : std::int32_t {
        Unknown = 0,                    // "unknown"
        Solid,                          // "solid"
        Dash,                           // "dash"
        Dot,                            // "dot"
        DashDot,                        // "dash_dot"
        DashDotDot,                     // "dash_dot_dot"
        DashDotDotDot,                  // "dash_dot_dot_dot"
        DashDashDot,                    // "dash_dash_dot"
        DashDashDotDot,                 // "dash_dash_dot_dot"
        DashDashDotDotDot,              // "dash_dash_dot_dot_dot"
        ShortDash,                      // "short_dash"
        LongDash,                       // "long_dash"
        MediumDashLongDash,             // "medium_dash_long_dash"
        MediumDashShortDashShortDash,   // "medium_dash_short_dash_short_dash"
        LongDashShortDash,              // "long_dash_short_dash"
        LongDashShortDashShortDash,     // "long_dash_short_dash_short_dash"
        LongDashDotDot,                 // "long_dash_dot_dot"
        LongDashDot,                    // "long_dash_dot"
        MediumDashDotShortDashDot,      // "medium_dash_dot_short_dash_dot"
        SparseDot,                      // "sparse_dot"
        VisibleInvisible,               // "visible_invisible"
        Zigzag,                         // "zigzag"
        CurveBatting,                   // "curve_batting"
        FenceCircle,                    // "fence_circle"
        FenceSquare,                    // "fence_square"
        SupplyLineGas,                  // "supply_line_gas"
        SupplyLineHotWater,             // "supply_line_hot_water"
        Tracks                          // "tracks"
    };

    ExcTopologicalEntityInformation();
    explicit ExcTopologicalEntityInformation(const ExcEntity& entity);
    ~ExcTopologicalEntityInformation() override;

    const ExcEntity& entity() const { return m_entity; }
    void setEntity(const ExcEntity& entity) { m_entity = entity; }
    const std::vector<std::wstring>& persistentNames() const { return m_persistentNames; }
    void addPersistentName(const std::wstring& name) { m_persistentNames.push_back(name); }
    void setPersistentNames(const std::vector<std::wstring>& names) { m_persistentNames = names; }
    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }
    bool isHidden() const { return m_hidden; }
    void setHidden(bool hidden) { m_hidden = hidden; }
    ELineType lineType() const { return m_lineType; }
    void setLineType(ELineType lineType) { m_lineType = lineType; }
    double lineThickness() const { return m_lineThickness; }
    void setLineThickness(double thickness) { m_lineThickness = thickness; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    ExcEntity m_entity;
    std::vector<std::wstring> m_persistentNames;
    std::wstring m_name;
    bool m_hidden = false;
    ELineType m_lineType = Unknown;
    double m_lineThickness = 0.0;
};

template <> XCH_API const EnumTable<ExcTopologicalEntityInformation::ELineType>&
enumTable<ExcTopologicalEntityInformation::ELineType>();

// The entity information of a block, in order. JSON: an array of
// ExcTopologicalEntityInformation objects; reading appends one per object
// item and skips the others. A value that is not an array logs
// "ExcEntityData object should have a JSON array type." at error level and
// changes nothing. Copies share the elements.
class XCH_API ExcEntityData : public IJsonObject {
public:
    using List = std::vector<std::shared_ptr<ExcTopologicalEntityInformation>>;

    ExcEntityData();
    ~ExcEntityData() override;

    // Appends `info`; a null one is not added (logged as a warning).
    void addData(const std::shared_ptr<ExcTopologicalEntityInformation>& info);
    const List& data() const { return m_data; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

private:
    List m_data;
};

} // namespace xch

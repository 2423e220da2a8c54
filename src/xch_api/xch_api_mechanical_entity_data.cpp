// Mapping and entity information of a block's mechanical data.
#include <xch_api/xch_api_mechanical_entity_data.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

// ---- ExcMappingData -------------------------------------------------------------------

namespace {

// The list of pairs as an array of {"imported", "original"} objects.
struct MappingPairs {
    using Pair = ExcMappingData::Pair;

    bool write(JsonValue& v, JsonAllocator& a, const std::vector<Pair>& pairs) const {
        v.SetArray();
        v.Reserve(static_cast<rapidjson::SizeType>(pairs.size()), a);
        for (const Pair& pair : pairs) {
            JsonValue item(rapidjson::kObjectType);
            json::Writer writer(item, a);
            ExcMappingData::pairMembers(writer, pair);
            v.PushBack(item, a);
        }
        return true;
    }
    void read(const JsonValue& v, std::vector<Pair>& pairs) const {
        for (const JsonValue& item : v.GetArray()) {
            if (!item.IsObject()) {
                VX_LOG(vx_link::LevelWarning, "ExcMappingData JSON array should have objects as items.");
                continue;
            }
            Pair pair(std::make_shared<ExcEntity>(), std::make_shared<ExcEntity>());
            json::Reader reader(item);
            ExcMappingData::pairMembers(reader, pair);
            pairs.push_back(std::move(pair));
        }
    }
};
constexpr MappingPairs mappingPairs{};

} // namespace

ExcMappingData::ExcMappingData() = default;
ExcMappingData::~ExcMappingData() = default;

void ExcMappingData::add(const std::shared_ptr<ExcEntity>& entity, const std::shared_ptr<ExcEntity>& original) {
    if (!entity || !original) {
        VX_LOG(vx_link::LevelWarning,
               "ExcMappingData: attempt to add null Entity object or null Original Entity object.");
        return;
    }
    m_pairs.emplace_back(entity, original);
}

template <class Io, class Self>
void ExcMappingData::pairMembers(Io& io, Self& pair) {
    io(L"imported", pair.first, json::newObject);
    io(L"original", pair.second, json::newObject);
}

XCH_JSON_IO_ARRAY(ExcMappingData, m_pairs, mappingPairs)

// ---- ExcTopologicalEntityInformation ----------------------------------------------------

template <>
const EnumTable<ExcTopologicalEntityInformation::ELineType>& enumTable<ExcTopologicalEntityInformation::ELineType>() {
    using T = ExcTopologicalEntityInformation;
    static const EnumTable<T::ELineType> table{
        {T::Unknown, L"unknown"},
        {T::Solid, L"solid"},
        {T::Dash, L"dash"},
        {T::Dot, L"dot"},
        {T::DashDot, L"dash_dot"},
        {T::DashDotDot, L"dash_dot_dot"},
        {T::DashDotDotDot, L"dash_dot_dot_dot"},
        {T::DashDashDot, L"dash_dash_dot"},
        {T::DashDashDotDot, L"dash_dash_dot_dot"},
        {T::DashDashDotDotDot, L"dash_dash_dot_dot_dot"},
        {T::ShortDash, L"short_dash"},
        {T::LongDash, L"long_dash"},
        {T::MediumDashLongDash, L"medium_dash_long_dash"},
        {T::MediumDashShortDashShortDash, L"medium_dash_short_dash_short_dash"},
        {T::LongDashShortDash, L"long_dash_short_dash"},
        {T::LongDashShortDashShortDash, L"long_dash_short_dash_short_dash"},
        {T::LongDashDotDot, L"long_dash_dot_dot"},
        {T::LongDashDot, L"long_dash_dot"},
        {T::MediumDashDotShortDashDot, L"medium_dash_dot_short_dash_dot"},
        {T::SparseDot, L"sparse_dot"},
        {T::VisibleInvisible, L"visible_invisible"},
        {T::Zigzag, L"zigzag"},
        {T::CurveBatting, L"curve_batting"},
        {T::FenceCircle, L"fence_circle"},
        {T::FenceSquare, L"fence_square"},
        {T::SupplyLineGas, L"supply_line_gas"},
        {T::SupplyLineHotWater, L"supply_line_hot_water"},
        {T::Tracks, L"tracks"},
    };
    return table;
}

ExcTopologicalEntityInformation::ExcTopologicalEntityInformation() = default;
ExcTopologicalEntityInformation::ExcTopologicalEntityInformation(const ExcEntity& entity) : m_entity(entity) {}
ExcTopologicalEntityInformation::~ExcTopologicalEntityInformation() = default;

template <class Io, class Self>
void ExcTopologicalEntityInformation::members(Io& io, Self& self) {
    io(L"entity", self.m_entity, json::whenObject);
    io(L"pnames", self.m_persistentNames);
    io(L"name", self.m_name);
    io(L"hidden", self.m_hidden);
    io(L"line_type", self.m_lineType);
    io(L"line_thickness", self.m_lineThickness, json::anyNumber);
}

XCH_JSON_IO(ExcTopologicalEntityInformation)

// ---- ExcEntityData -------------------------------------------------------------------------

ExcEntityData::ExcEntityData() = default;
ExcEntityData::~ExcEntityData() = default;

void ExcEntityData::addData(const std::shared_ptr<ExcTopologicalEntityInformation>& info) {
    json::appendNonNull(m_data, info, "ExcEntityData: attempt to add null Topological Entity Information Data object.");
}

XCH_JSON_IO_ARRAY(ExcEntityData, m_data, json::objectsOnly)

} // namespace xch

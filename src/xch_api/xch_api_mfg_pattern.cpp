// Patterns of manufacturing features.
#include <xch_api/xch_api_mfg_pattern.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcMfgPattern::EType>& enumTable<ExcMfgPattern::EType>() {
    static const EnumTable<ExcMfgPattern::EType> table{
        {ExcMfgPattern::Unknown, L"unknown"},         {ExcMfgPattern::None, L"none"},
        {ExcMfgPattern::Rectangular, L"rectangular"}, {ExcMfgPattern::Circular, L"circular"},
        {ExcMfgPattern::UserDefined, L"user_defined"},
    };
    return table;
}

namespace {

// A list of index pairs, each written as [first, second]. On reading, items
// that are not arrays of exactly two 32-bit integers are skipped and
// `invalidItem` is logged as a warning for each; valid pairs are appended.
struct IndexPairs {
    const char* invalidItem;

    using Index = ExcMfgPatternIndexedInstances::Index;

    bool write(JsonValue& v, JsonAllocator& a, const std::vector<Index>& pairs) const {
        v.SetArray();
        v.Reserve(static_cast<rapidjson::SizeType>(pairs.size()), a);
        for (const Index& pair : pairs) {
            JsonValue item(rapidjson::kArrayType);
            item.PushBack(JsonValue(pair.first), a).PushBack(JsonValue(pair.second), a);
            v.PushBack(item, a);
        }
        return true;
    }
    void read(const JsonValue& v, std::vector<Index>& pairs) const {
        if (!v.IsArray()) return;
        for (const JsonValue& item : v.GetArray()) {
            if (item.IsArray() && item.Size() == 2 && item[0].IsInt() && item[1].IsInt())
                pairs.emplace_back(item[0].GetInt(), item[1].GetInt());
            else
                VX_LOG(vx_link::LevelWarning, invalidItem);
        }
    }
};

} // namespace

// ---- ExcMfgPattern::Instance -------------------------------------------------------------

ExcMfgPattern::Instance::Instance() = default;
ExcMfgPattern::Instance::~Instance() = default;

void ExcMfgPattern::Instance::addLimiting(const std::shared_ptr<ExcEntity>& entity) {
    json::appendNonNull(m_limiting, entity, "ExcMfgPattern::Instance: attempt to add null Limiting Entity object.");
}

void ExcMfgPattern::Instance::addDefining(const std::shared_ptr<ExcEntity>& entity) {
    json::appendNonNull(m_defining, entity, "ExcMfgPattern::Instance: attempt to add null Defining Entity object.");
}

template <class Io, class Self>
void ExcMfgPattern::Instance::members(Io& io, Self& self) {
    io(L"is_base", self.m_isBase);
    io(L"limiting", self.m_limiting, json::objectsOnly);
    io(L"defining", self.m_defining, json::objectsOnly);
}

XCH_JSON_IO(ExcMfgPattern::Instance)

// ---- ExcMfgPattern --------------------------------------------------------------------------

ExcMfgPattern::ExcMfgPattern() = default;
ExcMfgPattern::ExcMfgPattern(const ExcMfgPattern&) = default;
ExcMfgPattern& ExcMfgPattern::operator=(const ExcMfgPattern&) = default;
ExcMfgPattern::~ExcMfgPattern() = default;

template <class Io, class Self>
void ExcMfgPattern::members(Io& io, Self& self) {
    if constexpr (!Io::reading)
        io(L"type", self.type());
}

XCH_JSON_IO(ExcMfgPattern)

std::shared_ptr<ExcMfgPattern> ExcMfgPattern::readPattern(const JsonValue& value) {
    if (!json::expectObject(value, "ExcMfgPattern"))
        return nullptr;
    auto type = value.FindMember(L"type");
    if (type == value.MemberEnd() || !type->value.IsString()) {
        VX_LOG(vx_link::LevelError, "ExcMfgPattern should have a type.");
        return nullptr;
    }
    EType kind = Unknown;
    enumTable<EType>().find(std::wstring(type->value.GetString(), type->value.GetStringLength()), kind);
    std::shared_ptr<ExcMfgPattern> pattern;
    switch (kind) {
    case Rectangular: pattern = std::make_shared<ExcMfgPatternRectangular>(); break;
    case Circular: pattern = std::make_shared<ExcMfgPatternCircular>(); break;
    case UserDefined: pattern = std::make_shared<ExcMfgPatternUserDefined>(); break;
    default:
        VX_LOG(vx_link::LevelError, "ExcMfgPattern: unknown type.");
        return nullptr;
    }
    pattern->readObject(value);
    return pattern;
}

// ---- ExcMfgPatternRectangular ----------------------------------------------------------------

ExcMfgPatternRectangular::ExcMfgPatternRectangular() = default;
ExcMfgPatternRectangular::~ExcMfgPatternRectangular() = default;

template <class Io, class Self>
void ExcMfgPatternRectangular::members(Io& io, Self& self) {
    io(L"anchor_point", self.m_anchorPoint, json::whenArray);
    io(L"align_primary_dir", self.m_alignPrimaryDir, json::whenArray);
    io(L"align_secondary_dir", self.m_alignSecondaryDir, json::whenArray);
    io(L"primary_inst_count", self.m_primaryInstCount);
    io(L"secondary_inst_count", self.m_secondaryInstCount);
    io(L"primary_spacing", self.m_primarySpacing, json::anyNumber);
    io(L"secondary_spacing", self.m_secondarySpacing, json::anyNumber);
    io(L"base_instance", self.m_baseInstance, json::newObject);
    io(L"simplified", self.m_simplified);
    io(L"visible_instances", self.m_visibleInstances,
       IndexPairs{"ExcMfgPatternRectangular: invalid size of visible_instances array item (pair)."});
    io(L"deactivated_instances", self.m_deactivatedInstances,
       IndexPairs{"ExcMfgPatternRectangular: invalid size of deactivated instances array item (pair)."});
}

XCH_JSON_IO_DERIVED(ExcMfgPatternRectangular, ExcMfgPattern)

// ---- ExcMfgPatternCircular ------------------------------------------------------------------------

ExcMfgPatternCircular::ExcMfgPatternCircular() = default;
ExcMfgPatternCircular::~ExcMfgPatternCircular() = default;

template <class Io, class Self>
void ExcMfgPatternCircular::members(Io& io, Self& self) {
    io(L"anchor_point", self.m_anchorPoint, json::whenArray);
    io(L"center_of_rotation", self.m_centerOfRotation, json::whenArray);
    io(L"axis_of_rotation", self.m_axisOfRotation, json::whenArray);
    io(L"axial_inst_count", self.m_axialInstCount);
    io(L"radial_inst_count", self.m_radialInstCount);
    io(L"axial_dist_degrees", self.m_axialDistDegrees, json::anyNumber);
    io(L"radial_dist", self.m_radialDist, json::anyNumber);
    io(L"fixed_rot_orient", self.m_fixedRotOrient);
    io(L"base_instance", self.m_baseInstance, json::newObject);
    io(L"simplified", self.m_simplified);
    io(L"visible_instances", self.m_visibleInstances,
       IndexPairs{"ExcMfgPatternCircular: invalid size of visible_instances array item (pair)."});
    io(L"deactivated_instances", self.m_deactivatedInstances,
       IndexPairs{"ExcMfgPatternCircular: invalid size of deactivated_instances array item (pair)."});
}

XCH_JSON_IO_DERIVED(ExcMfgPatternCircular, ExcMfgPattern)

// ---- ExcMfgPatternUserDefined ------------------------------------------------------------------------

ExcMfgPatternUserDefined::ExcMfgPatternUserDefined() = default;
ExcMfgPatternUserDefined::~ExcMfgPatternUserDefined() = default;

template <class Io, class Self>
void ExcMfgPatternUserDefined::members(Io& io, Self& self) {
    io(L"anchor_point", self.m_anchorPoint, json::whenArray);
    io(L"base_instance", self.m_baseInstance, json::newObject);
    io(L"instance_positions", self.m_instancePositions, json::arraysOnly);
    io(L"deactivated_positions", self.m_deactivatedPositions, json::arraysOnly);
}

XCH_JSON_IO_DERIVED(ExcMfgPatternUserDefined, ExcMfgPattern)

} // namespace xch

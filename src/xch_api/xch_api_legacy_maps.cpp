// Component instance names and component materials by drawing handle.
#include <xch_api/xch_api_legacy_maps.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <class Io, class Self>
void LegacyMaterialMap::Material::members(Io& io, Self& self) {
    io(L"has_material", self.hasMaterial);
    io(L"name", self.name);
    io(L"density", self.density, json::anyNumber);
    io(L"thermal_conductivity", self.thermalConductivity, json::anyNumber);
    io(L"specific_heat", self.specificHeat, json::anyNumber);
}

bool LegacyMaterialMap::Material::operator==(const Material& other) const {
    return hasMaterial == other.hasMaterial && name == other.name && density == other.density &&
           thermalConductivity == other.thermalConductivity && specificHeat == other.specificHeat;
}

namespace json {

// A material is a JSON object; a value of another kind leaves it as it is.
template <>
struct Codec<LegacyMaterialMap::Material> {
    static void write(JsonValue& v, JsonAllocator& a, const LegacyMaterialMap::Material& x) {
        writeMembers(v, a, x);
    }
    static bool read(const JsonValue& v, LegacyMaterialMap::Material& x) {
        Reader reader(v);
        LegacyMaterialMap::Material::members(reader, x);
        return true;
    }
};

} // namespace json

namespace {

constexpr const wchar_t* kHandleKey = L"component_handle";

// The "component_handle" of an element, from any JSON number: an unsigned
// 64-bit integer as it is, a negative integer as its 64-bit pattern, a
// double truncated when it lies in the unsigned 64-bit range. False when
// the element has no such number.
bool readHandle(const JsonValue& element, OdDbHandle& handle) {
    const JsonValue* member = json::Reader(element).find(kHandleKey);
    if (!member || !member->IsNumber()) return false;
    if (member->IsUint64()) {
        handle = member->GetUint64();
    } else if (member->IsInt64()) {
        handle = static_cast<std::uint64_t>(member->GetInt64());
    } else {
        const double d = member->GetDouble();
        if (!(d >= 0.0 && d < 18446744073709551616.0)) return false;
        handle = static_cast<std::uint64_t>(d);
    }
    return true;
}

// Writes `map` as an array of {"component_handle", <valueKey>} objects in
// ascending handle order.
template <class Value>
void writeHandleMap(JsonValue& value, JsonAllocator& allocator,
                    const std::map<OdDbHandle, Value>& map, const wchar_t* valueKey) {
    value.SetArray();
    value.Reserve(static_cast<rapidjson::SizeType>(map.size()), allocator);
    for (const auto& entry : map) {
        JsonValue item;
        json::Writer writer(item, allocator);
        writer(kHandleKey, static_cast<std::uint64_t>(entry.first));
        writer(valueKey, entry.second);
        value.PushBack(item, allocator);
    }
}

// Reads the array written by writeHandleMap into `map`, inserting or
// overwriting entry by entry.
template <class Value>
void readHandleMap(const JsonValue& value, const char* notArray,
                   std::map<OdDbHandle, Value>& map, const wchar_t* valueKey) {
    if (!json::expectArray(value, notArray)) return;
    for (const JsonValue& element : value.GetArray()) {
        OdDbHandle handle;
        if (!element.IsObject() || !readHandle(element, handle)) continue;
        Value entry{};
        json::Reader reader(element);
        reader(valueKey, entry);
        map[handle] = std::move(entry);
    }
}

// Adds the entries of `from` whose handles `to` does not hold yet.
template <class Map>
void mergeMissing(Map& to, const Map& from) {
    to.insert(from.begin(), from.end());
}

} // namespace

// ---- LegacyComponentInstanceNames ------------------------------------------------

LegacyComponentInstanceNames::LegacyComponentInstanceNames() = default;
LegacyComponentInstanceNames::LegacyComponentInstanceNames(const LegacyComponentInstanceNames&) = default;
LegacyComponentInstanceNames& LegacyComponentInstanceNames::operator=(
    const LegacyComponentInstanceNames&) = default;
LegacyComponentInstanceNames::~LegacyComponentInstanceNames() = default;

const std::wstring& LegacyComponentInstanceNames::objName() {
    static const std::wstring name = L"legacy_component_instance_names";
    return name;
}

bool LegacyComponentInstanceNames::addInstanceName(OdDbHandle handle, const std::wstring& name) {
    m_map[handle] = name;
    return true;
}

void LegacyComponentInstanceNames::merge(const LegacyComponentInstanceNames& other) {
    mergeMissing(m_map, other.m_map);
}

void LegacyComponentInstanceNames::readObject(const JsonValue& value) {
    VX_TRACE();
    readHandleMap(value, "LegacyComponentInstanceNames::readObject(): Input json object is not an array",
                  m_map, L"component_name");
}

void LegacyComponentInstanceNames::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    writeHandleMap(value, allocator, m_map, L"component_name");
}

// ---- LegacyMaterialMap -----------------------------------------------------------------

LegacyMaterialMap::LegacyMaterialMap() = default;
LegacyMaterialMap::LegacyMaterialMap(const LegacyMaterialMap&) = default;
LegacyMaterialMap& LegacyMaterialMap::operator=(const LegacyMaterialMap&) = default;
LegacyMaterialMap::~LegacyMaterialMap() = default;

const std::wstring& LegacyMaterialMap::objName() {
    static const std::wstring name = L"legacy_component_material_map";
    return name;
}

bool LegacyMaterialMap::addMaterial(OdDbHandle handle, const Material& material) {
    m_map[handle] = material;
    return true;
}

void LegacyMaterialMap::merge(const LegacyMaterialMap& other) {
    mergeMissing(m_map, other.m_map);
}

void LegacyMaterialMap::readObject(const JsonValue& value) {
    VX_TRACE();
    readHandleMap(value, "LegacyMaterialMap::readObject(): Input json object is not an array", m_map,
                  L"component_material");
}

void LegacyMaterialMap::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    writeHandleMap(value, allocator, m_map, L"component_material");
}

// ---- registered prototypes ---------------------------------------------------------------

static StaticExchangeObject<LegacyComponentInstanceNames> s_instanceNamesPrototype;
static StaticExchangeObject<LegacyMaterialMap> s_materialMapPrototype;

} // namespace xch

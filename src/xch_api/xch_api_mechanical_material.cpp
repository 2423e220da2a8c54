// Materials and their physical properties.
#include <xch_api/xch_api_mechanical_material.h>

#include <stdexcept>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcMiscMaterialPropertyUnit::EUnitSystem>& enumTable<ExcMiscMaterialPropertyUnit::EUnitSystem>() {
    using U = ExcMiscMaterialPropertyUnit;
    static const EnumTable<U::EUnitSystem> table{
        {U::Unknown, L"unknown"}, {U::Mks, L"mks"},         {U::Cgs, L"cgs"},
        {U::Fps, L"fps"},         {U::Ips, L"ips"},         {U::Mmks, L"mmks"},
        {U::Mmns, L"mmns"},       {U::IpsCreo, L"ipscreo"}, {U::Si, L"si"},
        {U::NotApplicable, L"not_applicable"},              {U::Custom, L"custom"},
    };
    return table;
}

template <>
const EnumTable<ExcMiscMaterial::EProperty>& enumTable<ExcMiscMaterial::EProperty>() {
    using M = ExcMiscMaterial;
    static const EnumTable<M::EProperty> table{
        {M::Unknown, L"unknown"},
        {M::Density, L"density"},
        {M::YoungsModulus, L"youngs_modulus"},
        {M::PoissonsRatio, L"poissons_ratio"},
        {M::YieldStrength, L"yield_strength"},
        {M::TensileStrength, L"tensile_strength"},
        {M::ThermalConductivity, L"thermal_conductivity"},
        {M::ThermalExpansionCoefficient, L"thermal_expansion_coefficient"},
        {M::SpecificHeat, L"specific_heat"},
        {M::ShearModulus, L"shear_modulus"},
    };
    return table;
}

// ---- ExcMiscMaterialPropertyUnit ---------------------------------------------------

namespace {

// "units": the nested object of the four unit components.
struct UnitsObject {
    bool write(JsonValue& v, JsonAllocator& a, const ExcMiscMaterialPropertyUnit& unit) const {
        v.SetObject();
        json::Writer writer(v, a);
        ExcMiscMaterialPropertyUnit::unitMembers(writer, unit);
        return true;
    }
    void read(const JsonValue& v, ExcMiscMaterialPropertyUnit& unit) const {
        if (!v.IsObject()) return;
        json::Reader reader(v);
        ExcMiscMaterialPropertyUnit::unitMembers(reader, unit);
    }
};
constexpr UnitsObject unitsObject{};

} // namespace

ExcMiscMaterialPropertyUnit::ExcMiscMaterialPropertyUnit() = default;
ExcMiscMaterialPropertyUnit::~ExcMiscMaterialPropertyUnit() = default;

template <class Io, class Self>
void ExcMiscMaterialPropertyUnit::members(Io& io, Self& self) {
    io(L"unit_system", self.m_unitSystem);
    io(L"units", self, unitsObject);
}

template <class Io, class Self>
void ExcMiscMaterialPropertyUnit::unitMembers(Io& io, Self& self) {
    io(L"mass", self.m_mass, json::whenObject);
    io(L"length", self.m_length, json::whenObject);
    io(L"time", self.m_time, json::whenObject);
    io(L"temperature", self.m_temperature, json::whenObject);
}

XCH_JSON_IO(ExcMiscMaterialPropertyUnit)

// ---- ExcMiscMaterialProperty ----------------------------------------------------------

ExcMiscMaterialProperty::ExcMiscMaterialProperty() = default;
ExcMiscMaterialProperty::ExcMiscMaterialProperty(double value, const ExcMiscMaterialPropertyUnit& unit)
    : m_value(value), m_unit(unit) {}
ExcMiscMaterialProperty::~ExcMiscMaterialProperty() = default;

template <class Io, class Self>
void ExcMiscMaterialProperty::members(Io& io, Self& self) {
    io(L"value", self.m_value, json::anyNumber);
    io(L"unit", self.m_unit, json::whenObject);
}

XCH_JSON_IO(ExcMiscMaterialProperty)

// ---- ExcMiscMaterial --------------------------------------------------------------------

namespace {

bool isPropertyKind(ExcMiscMaterial::EProperty id) {
    return id > ExcMiscMaterial::Unknown && id <= ExcMiscMaterial::ShearModulus;
}

void checkPropertyKind(ExcMiscMaterial::EProperty id) {
    if (!isPropertyKind(id))
        throw std::invalid_argument("Invalid material property id.");
}

// One property kind, under the key of its own string: written only when the
// material holds it, read into a new property when the member is an object.
struct PropertyOfKind {
    ExcMiscMaterial::EProperty id;
    bool write(JsonValue& v, JsonAllocator& a, const ExcMiscMaterial& material) const {
        auto property = material.get(id);
        if (!property) return false;
        property->writeObject(v, a);
        return true;
    }
    void read(const JsonValue& v, ExcMiscMaterial& material) const {
        if (!v.IsObject()) return;
        auto property = std::make_shared<ExcMiscMaterialProperty>();
        property->readObject(v);
        material.set(id, property);
    }
};

} // namespace

ExcMiscMaterial::ExcMiscMaterial() = default;
ExcMiscMaterial::ExcMiscMaterial(const std::wstring& name) : m_name(name) {}
ExcMiscMaterial::~ExcMiscMaterial() = default;

std::shared_ptr<ExcMiscMaterialProperty> ExcMiscMaterial::get(EProperty id) const {
    checkPropertyKind(id);
    auto it = m_properties.find(id);
    return it == m_properties.end() ? nullptr : it->second;
}

void ExcMiscMaterial::set(EProperty id, const std::shared_ptr<ExcMiscMaterialProperty>& value) {
    checkPropertyKind(id);
    if (!value)
        throw std::invalid_argument("Invalid material property value.");
    m_properties[id] = value;
}

void ExcMiscMaterial::addLinkedElement(const std::shared_ptr<ExcEntity>& element) {
    json::appendNonNull(m_linkedElements, element, "ExcMiscMaterial: attempt to add null Linked Element object.");
}

template <class Io, class Self>
void ExcMiscMaterial::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    for (int id = Density; id <= ShearModulus; ++id)
        io(enumToString(EProperty(id)).c_str(), self, PropertyOfKind{EProperty(id)});
    io(L"linked_elements", self.m_linkedElements, json::objectsOnly);
    io(L"is_part_level_material", self.m_isPartLevelMaterial);
}

XCH_JSON_IO(ExcMiscMaterial)

} // namespace xch

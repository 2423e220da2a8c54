// Materials of a part: physical properties (density, moduli, ...) each with
// its value and the unit it is expressed in, and the entities the material
// is applied to. Part of the miscellaneous mechanical data of a block.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_entity.h>
#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// The unit of a material property: the unit system it was given in and the
// mass, length, time and temperature units it is made of (a density is
// mass^1 length^-3). Nothing is converted; the units travel as given.
//
// JSON: {"unit_system": string, "units": {"mass", "length", "time",
// "temperature"}}, each unit an ExcUnitComponent object. An unknown
// "unit_system" string reads as Cgs (the table's smallest string); "units"
// and each of its four members are read only when they are objects.
class XCH_API ExcMiscMaterialPropertyUnit : public IJsonObject {
public:
    enum EUnitSystem : std::int32_t {
        Unknown = 0,    // "unknown"
        Mks,            // "mks": metre, kilogram, second
        Cgs,            // "cgs": centimetre, gram, second
        Fps,            // "fps": foot, pound, second
        Ips,            // "ips": inch, pound, second
        Mmks,           // "mmks": millimetre, kilogram, second
        Mmns,           // "mmns": millimetre, newton, second
        IpsCreo,        // "ipscreo": inch, pound, second as Creo defines it
        Si,             // "si"
        NotApplicable,  // "not_applicable"
        Custom          // "custom"
    };

    ExcMiscMaterialPropertyUnit();
    ~ExcMiscMaterialPropertyUnit() override;

    EUnitSystem unitSystem() const { return m_unitSystem; }
    void setUnitSystem(EUnitSystem unitSystem) { m_unitSystem = unitSystem; }
    const ExcUnitComponent<EMassUnitType>& mass() const { return m_mass; }
    void setMass(const ExcUnitComponent<EMassUnitType>& mass) { m_mass = mass; }
    const ExcUnitComponent<ELengthUnitType>& length() const { return m_length; }
    void setLength(const ExcUnitComponent<ELengthUnitType>& length) { m_length = length; }
    const ExcUnitComponent<ETimeUnitType>& time() const { return m_time; }
    void setTime(const ExcUnitComponent<ETimeUnitType>& time) { m_time = time; }
    const ExcUnitComponent<ETemperatureUnitType>& temperature() const { return m_temperature; }
    void setTemperature(const ExcUnitComponent<ETemperatureUnitType>& temperature) { m_temperature = temperature; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);
    // The four members of "units".
    template <class Io, class Self>
    static void unitMembers(Io& io, Self& self);

private:
    EUnitSystem m_unitSystem = Unknown;
    ExcUnitComponent<EMassUnitType> m_mass;
    ExcUnitComponent<ELengthUnitType> m_length;
    ExcUnitComponent<ETimeUnitType> m_time;
    ExcUnitComponent<ETemperatureUnitType> m_temperature;
};

template <> XCH_API const EnumTable<ExcMiscMaterialPropertyUnit::EUnitSystem>&
enumTable<ExcMiscMaterialPropertyUnit::EUnitSystem>();

// One physical property of a material. JSON: {"value": number, "unit":
// object}; "value" is read from any JSON number, "unit" only from an object.
class XCH_API ExcMiscMaterialProperty : public IJsonObject {
public:
    ExcMiscMaterialProperty();
    explicit ExcMiscMaterialProperty(double value,
                                     const ExcMiscMaterialPropertyUnit& unit = ExcMiscMaterialPropertyUnit());
    ~ExcMiscMaterialProperty() override;

    double value() const { return m_value; }
    void setValue(double value) { m_value = value; }
    const ExcMiscMaterialPropertyUnit& unit() const { return m_unit; }
    ExcMiscMaterialPropertyUnit& unit() { return m_unit; }
    void setUnit(const ExcMiscMaterialPropertyUnit& unit) { m_unit = unit; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    double m_value = 0.0;
    ExcMiscMaterialPropertyUnit m_unit;
};

// A material with its physical properties, at most one per kind.
//
// JSON: "name", then each stored property in ascending EProperty order,
// directly in the material object under the property's string (for example
// "density": {...}), then "linked_elements" (entity objects) and
// "is_part_level_material". Reading looks up the string of every property
// kind and stores a new property for each that is an object; reading
// appends linked elements.
class XCH_API ExcMiscMaterial : public IJsonObject {
public:
    enum EProperty : std::int32_t {
        Unknown = 0,                  // "unknown": no property; refused by get and set
        Density,                      // "density"
        YoungsModulus,                // "youngs_modulus"
        PoissonsRatio,                // "poissons_ratio"
        YieldStrength,                // "yield_strength"
        TensileStrength,              // "tensile_strength"
        ThermalConductivity,          // "thermal_conductivity"
        ThermalExpansionCoefficient,  // "thermal_expansion_coefficient"
        SpecificHeat,                 // "specific_heat"
        ShearModulus                  // "shear_modulus"
    };
    using Properties = std::map<EProperty, std::shared_ptr<ExcMiscMaterialProperty>>;

    ExcMiscMaterial();
    explicit ExcMiscMaterial(const std::wstring& name);
    ~ExcMiscMaterial() override;

    const std::wstring& name() const { return m_name; }
    void setName(const std::wstring& name) { m_name = name; }

    // The property of kind `id`, or null when none is stored. Throws
    // std::invalid_argument "Invalid material property id." for Unknown
    // and for a value that names no property kind.
    std::shared_ptr<ExcMiscMaterialProperty> get(EProperty id) const;
    // Stores or replaces the property of kind `id`. Throws
    // std::invalid_argument "Invalid material property id." as get does,
    // and "Invalid material property value." for a null property.
    void set(EProperty id, const std::shared_ptr<ExcMiscMaterialProperty>& value);
    const Properties& properties() const { return m_properties; }

    const std::vector<std::shared_ptr<ExcEntity>>& linkedElements() const { return m_linkedElements; }
    // A null element is not added (logged as a warning).
    void addLinkedElement(const std::shared_ptr<ExcEntity>& element);
    void setLinkedElements(const std::vector<std::shared_ptr<ExcEntity>>& elements) { m_linkedElements = elements; }

    bool isPartLevelMaterial() const { return m_isPartLevelMaterial; }
    void setPartLevelMaterial(bool partLevel) { m_isPartLevelMaterial = partLevel; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    std::wstring m_name;
    Properties m_properties;
    std::vector<std::shared_ptr<ExcEntity>> m_linkedElements;
    bool m_isPartLevelMaterial = false;
};

template <> XCH_API const EnumTable<ExcMiscMaterial::EProperty>& enumTable<ExcMiscMaterial::EProperty>();

} // namespace xch

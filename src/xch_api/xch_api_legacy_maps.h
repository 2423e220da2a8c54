// Maps kept for the older exchange path, keyed by the host drawing's
// component handles: component instance names, and component materials.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_export.h>

#ifndef XCH_HAVE_ODA_HANDLE
// The host's drawing-database handle: an unsigned 64-bit value, ordered
// numerically. A build against the host's DWG library defines
// XCH_HAVE_ODA_HANDLE and declares that library's own OdDbHandle before
// including this header; this stand-in is used otherwise.
class OdDbHandle {
public:
    constexpr OdDbHandle(std::uint64_t value = 0) : m_value(value) {}
    // Comparison goes through this conversion, so handles order as numbers.
    constexpr operator std::uint64_t() const { return m_value; }

private:
    std::uint64_t m_value;
};
#endif

namespace xch {

// Component handle -> instance name ("legacy_component_instance_names").
// JSON: an array of {"component_handle": <uint64>, "component_name": "..."}
// in ascending handle order.
class XCH_API LegacyComponentInstanceNames
    : public ExchangeObjectImpl<LegacyComponentInstanceNames> {
public:
    using Map = std::map<OdDbHandle, std::wstring>;

    LegacyComponentInstanceNames();
    LegacyComponentInstanceNames(const LegacyComponentInstanceNames&);
    LegacyComponentInstanceNames& operator=(const LegacyComponentInstanceNames&);
    ~LegacyComponentInstanceNames() override;

    static const std::wstring& objName();

    const Map& map() const { return m_map; }
    void setMap(const Map& map) { m_map = map; }
    // Sets the name of `handle`, replacing an earlier one. Returns true.
    bool addInstanceName(OdDbHandle handle, const std::wstring& name);
    // Adds the entries of `other` whose handles are not here yet; entries
    // already present keep their names.
    void merge(const LegacyComponentInstanceNames& other);

    // Elements that are not objects or lack a numeric "component_handle"
    // are skipped; a later element with the same handle wins.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

private:
    Map m_map;
};

// Component handle -> material ("legacy_component_material_map").
// JSON: an array of {"component_handle": <uint64>, "component_material":
// {"has_material", "name", "density", "thermal_conductivity",
// "specific_heat"}} in ascending handle order.
class XCH_API LegacyMaterialMap : public ExchangeObjectImpl<LegacyMaterialMap> {
public:
    // A component's material. On reading, "has_material" is taken only from
    // a boolean, "name" from a string, the numbers from any JSON number;
    // missing keys keep false, empty and 0.
    struct XCH_API Material {
        bool hasMaterial = false;
        std::wstring name;
        double density = 0.0;
        double thermalConductivity = 0.0;
        double specificHeat = 0.0;

        bool operator==(const Material& other) const;
        bool operator!=(const Material& other) const { return !(*this == other); }

        template <class Io, class Self>
        static void members(Io& io, Self& self);
    };
    using Map = std::map<OdDbHandle, Material>;

    LegacyMaterialMap();
    LegacyMaterialMap(const LegacyMaterialMap&);
    LegacyMaterialMap& operator=(const LegacyMaterialMap&);
    ~LegacyMaterialMap() override;

    static const std::wstring& objName();

    const Map& map() const { return m_map; }
    void setMap(const Map& map) { m_map = map; }
    // Sets the material of `handle`, replacing an earlier one. Returns true.
    bool addMaterial(OdDbHandle handle, const Material& material);
    // Adds the entries of `other` whose handles are not here yet; entries
    // already present keep their materials.
    void merge(const LegacyMaterialMap& other);

    // Elements that are not objects or lack a numeric "component_handle"
    // are skipped; a later element with the same handle wins.
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

private:
    Map m_map;
};

} // namespace xch

#include <gtest/gtest.h>

#include <memory>

#include <xch_api/xch_api_legacy_maps.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using xch_test::LogCapture;
using xch_test::readFromJsonText;
using xch_test::toJsonText;

namespace {

constexpr std::uint64_t kHighHandle = 18446744073709551557ull; // above 2^63

LegacyMaterialMap::Material material(const wchar_t* name, double density) {
    LegacyMaterialMap::Material m;
    m.hasMaterial = true;
    m.name = name;
    m.density = density;
    m.thermalConductivity = 0.5;
    m.specificHeat = 2.25;
    return m;
}

} // namespace

TEST(LegacyMaps, HandlesOrderNumerically) {
    EXPECT_LT(OdDbHandle(2), OdDbHandle(10));
    EXPECT_LT(OdDbHandle(0x7fffffffffffffffull), OdDbHandle(kHighHandle));
    EXPECT_EQ(static_cast<std::uint64_t>(OdDbHandle(kHighHandle)), kHighHandle);
    EXPECT_EQ(OdDbHandle(), OdDbHandle(0));
}

TEST(LegacyMaps, InstanceNamesWriteAnArrayInHandleOrder) {
    LegacyComponentInstanceNames names;
    EXPECT_EQ(toJsonText(names), L"[]");
    EXPECT_TRUE(names.addInstanceName(kHighHandle, L"high"));
    EXPECT_TRUE(names.addInstanceName(10, L"ten"));
    EXPECT_TRUE(names.addInstanceName(2, L"two"));
    EXPECT_TRUE(names.addInstanceName(10, L"TEN")); // overwrites, still true
    const std::wstring text = toJsonText(names);
    EXPECT_EQ(text, L"[{\"component_handle\":2,\"component_name\":\"two\"},"
                    L"{\"component_handle\":10,\"component_name\":\"TEN\"},"
                    L"{\"component_handle\":18446744073709551557,\"component_name\":\"high\"}]");

    LegacyComponentInstanceNames read;
    readFromJsonText(read, text);
    EXPECT_EQ(read.map(), names.map());

    auto copy = std::dynamic_pointer_cast<LegacyComponentInstanceNames>(names.clone());
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->map(), names.map());
    EXPECT_EQ(copy->name(), L"legacy_component_instance_names");
}

TEST(LegacyMaps, ReadingSkipsBadElementsAndLaterDuplicatesWin) {
    LogCapture log;
    LegacyComponentInstanceNames names;
    names.addInstanceName(1, L"kept");
    readFromJsonText(names, L"[5, \"x\", {\"component_name\":\"no handle\"},"
                            L" {\"component_handle\":\"7\",\"component_name\":\"string handle\"},"
                            L" {\"component_handle\":3,\"component_name\":\"first\"},"
                            L" {\"component_handle\":3,\"component_name\":\"second\"},"
                            L" {\"component_handle\":4.0,\"component_name\":7},"
                            L" {\"component_handle\":1,\"component_name\":\"replaced\"}]");
    const LegacyComponentInstanceNames::Map expected{{1, L"replaced"}, {3, L"second"}, {4, L""}};
    EXPECT_EQ(names.map(), expected);
    EXPECT_TRUE(log.messages(2).empty());

    readFromJsonText(names, L"{\"component_handle\":9,\"component_name\":\"object\"}");
    EXPECT_EQ(names.map(), expected);
    LegacyMaterialMap materials;
    readFromJsonText(materials, L"null");
    EXPECT_EQ(log.messages(2),
              (std::vector<std::string>{
                  "LegacyComponentInstanceNames::readObject(): Input json object is not an array",
                  "LegacyMaterialMap::readObject(): Input json object is not an array"}));
}

TEST(LegacyMaps, MaterialMapRoundTripsAndReadsNumbersOfAnyForm) {
    LegacyMaterialMap map;
    map.addMaterial(kHighHandle, material(L"Steel", 7.85));
    map.addMaterial(3, LegacyMaterialMap::Material());
    const std::wstring text = toJsonText(map);
    EXPECT_EQ(text, L"[{\"component_handle\":3,\"component_material\":{\"has_material\":false,\"name\":\"\","
                    L"\"density\":0.0,\"thermal_conductivity\":0.0,\"specific_heat\":0.0}},"
                    L"{\"component_handle\":18446744073709551557,\"component_material\":{\"has_material\":true,"
                    L"\"name\":\"Steel\",\"density\":7.85,\"thermal_conductivity\":0.5,\"specific_heat\":2.25}}]");
    LegacyMaterialMap read;
    readFromJsonText(read, text);
    EXPECT_EQ(read.map(), map.map());

    LegacyMaterialMap loose;
    readFromJsonText(loose, L"[{\"component_handle\":8,\"component_material\":{\"has_material\":1,\"name\":5,"
                            L"\"density\":7,\"thermal_conductivity\":-2,\"specific_heat\":18446744073709551615}},"
                            L" {\"component_handle\":9,\"component_material\":\"none\"},"
                            L" {\"component_handle\":10}]");
    ASSERT_EQ(loose.map().size(), 3u);
    const LegacyMaterialMap::Material& m = loose.map().at(8);
    EXPECT_FALSE(m.hasMaterial);
    EXPECT_EQ(m.name, L"");
    EXPECT_EQ(m.density, 7.0);
    EXPECT_EQ(m.thermalConductivity, -2.0);
    EXPECT_EQ(m.specificHeat, 18446744073709551615.0);
    EXPECT_EQ(loose.map().at(9), LegacyMaterialMap::Material());
    EXPECT_EQ(loose.map().at(10), LegacyMaterialMap::Material());

    auto copy = std::dynamic_pointer_cast<LegacyMaterialMap>(map.clone());
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->map(), map.map());
    EXPECT_EQ(copy->name(), L"legacy_component_material_map");
}

TEST(LegacyMaps, MergeKeepsExistingEntries) {
    LegacyComponentInstanceNames target;
    target.setMap({{1, L"Right"}, {2, L"Two"}});
    LegacyComponentInstanceNames other;
    other.setMap({{1, L"Left"}, {3, L"Three"}});
    target.merge(other);
    EXPECT_EQ(target.map(), (LegacyComponentInstanceNames::Map{{1, L"Right"}, {2, L"Two"}, {3, L"Three"}}));
    EXPECT_EQ(other.map().size(), 2u);

    LegacyMaterialMap materials;
    materials.addMaterial(1, material(L"Right", 1));
    LegacyMaterialMap more;
    more.addMaterial(1, material(L"Left", 2));
    more.addMaterial(kHighHandle, material(L"New", 3));
    materials.merge(more);
    ASSERT_EQ(materials.map().size(), 2u);
    EXPECT_EQ(materials.map().at(1).name, L"Right");
    EXPECT_EQ(materials.map().at(kHighHandle).name, L"New");
    materials.setMap({});
    EXPECT_TRUE(materials.map().empty());
}

TEST(LegacyMaps, RegisteredUnderTheirTypeNames) {
    auto names = ExchangeObjectRegistry::instance().get(L"legacy_component_instance_names");
    auto materials = ExchangeObjectRegistry::instance().get(L"legacy_component_material_map");
    EXPECT_TRUE(std::dynamic_pointer_cast<LegacyComponentInstanceNames>(names));
    EXPECT_TRUE(std::dynamic_pointer_cast<LegacyMaterialMap>(materials));
    EXPECT_FALSE(ExchangeObjectRegistry::instance().get(L"legacy_material_map"));
    ASSERT_TRUE(materials);
    EXPECT_FALSE(materials->binary());
}

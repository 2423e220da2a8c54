#include <gtest/gtest.h>

#include <xch_api/xch_api_legacy_maps.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;
using Names = LegacyComponentInstanceNames::Map;
using Material = LegacyMaterialMap::Material;

constexpr std::uint64_t kHigh = 18446744073709551557ull; // above 2^63: handles order as unsigned numbers

TEST(LegacyMaps, InstanceNamesWriteInHandleOrderMergeAndReadSkippingBadElements) {
    LegacyComponentInstanceNames names;
    names.setMap({{kHigh, L"high"}, {10, L"ten"}, {2, L"two"}});
    EXPECT_TRUE(names.addInstanceName(10, L"TEN")); // overwrites, still true
    const std::wstring text = toJsonText(names);
    EXPECT_EQ(text, L"[{\"component_handle\":2,\"component_name\":\"two\"},"
                    L"{\"component_handle\":10,\"component_name\":\"TEN\"},"
                    L"{\"component_handle\":18446744073709551557,\"component_name\":\"high\"}]");
    LegacyComponentInstanceNames read;
    read.setMap({{2, L"kept"}, {3, L"three"}});
    read.merge(names); // adds only the handles not held yet
    EXPECT_EQ(read.map(), (Names{{2, L"kept"}, {3, L"three"}, {10, L"TEN"}, {kHigh, L"high"}}));
    readFromJsonText(read, text); // overwrites entry by entry
    EXPECT_EQ(read.map(), (Names{{2, L"two"}, {3, L"three"}, {10, L"TEN"}, {kHigh, L"high"}}));
    LogCapture log; // elements that are not objects or lack a numeric handle are skipped; later duplicates win
    names.setMap({{1, L"kept"}});
    readFromJsonText(names, L"[5, \"x\", {\"component_name\":\"no handle\"},"
                            L" {\"component_handle\":\"7\",\"component_name\":\"string handle\"},"
                            L" {\"component_handle\":3,\"component_name\":\"first\"},"
                            L" {\"component_handle\":3,\"component_name\":\"second\"},"
                            L" {\"component_handle\":4.0,\"component_name\":7},"
                            L" {\"component_handle\":1,\"component_name\":\"replaced\"}]");
    readFromJsonText(names, L"{\"component_handle\":9,\"component_name\":\"object\"}");
    EXPECT_EQ(names.map(), (Names{{1, L"replaced"}, {3, L"second"}, {4, L""}}));
    LegacyMaterialMap materials;
    readFromJsonText(materials, L"null");
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{
                                   "LegacyComponentInstanceNames::readObject(): Input json object is not an array",
                                   "LegacyMaterialMap::readObject(): Input json object is not an array"}));
}

TEST(LegacyMaps, MaterialMapWritesEveryFieldAndReadsNumbersOfAnyForm) {
    const Material steel{true, L"Steel", 7.85, 0.5, 2.25};
    LegacyMaterialMap map;
    map.setMap({{kHigh, steel}, {3, Material()}});
    EXPECT_EQ(toJsonText(map),
              L"[{\"component_handle\":3,\"component_material\":{\"has_material\":false,\"name\":\"\",\"density\":0.0,"
              L"\"thermal_conductivity\":0.0,\"specific_heat\":0.0}},{\"component_handle\":18446744073709551557,"
              L"\"component_material\":{\"has_material\":true,\"name\":\"Steel\",\"density\":7.85,"
              L"\"thermal_conductivity\":0.5,\"specific_heat\":2.25}}]");
    readFromJsonText(map, L"[{\"component_handle\":3,\"component_material\":{\"has_material\":1,\"name\":5,"
                          L"\"density\":7,\"thermal_conductivity\":-2,\"specific_heat\":18446744073709551615}},"
                          L" {\"component_handle\":9,\"component_material\":\"none\"}, {\"component_handle\":10}]");
    EXPECT_EQ(map.map(), (LegacyMaterialMap::Map{{3, Material{false, L"", 7, -2, 18446744073709551615.0}},
                                                  {9, Material()}, {10, Material()}, {kHigh, steel}}));
}

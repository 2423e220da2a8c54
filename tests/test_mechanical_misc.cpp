#include <gtest/gtest.h>

#include <stdexcept>

#include <xch_api/xch_api_exchange_mechanical.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

namespace {

std::shared_ptr<ExcEntity> face(const std::wstring& id) { return std::make_shared<ExcEntity>(ExcEntity::Mfg, id); }

const wchar_t* const kFace7 = L"{\"type\":\"mfg\",\"id\":\"F7\"}";

std::wstring withFace7(const std::wstring& text) {
    std::wstring out = text;
    for (auto at = out.find(L"$F"); at != std::wstring::npos; at = out.find(L"$F"))
        out.replace(at, 2, kFace7);
    return out;
}

} // namespace

TEST(MechanicalMisc, EveryClassWritesItsKeysInOrder) {
    ExcMiscWCS wcs;
    wcs.setOrigin(ExcVector3d(1.0, 2.0, 3.0));
    wcs.setZ(ExcVector3d(0.0, 0.0, 1.0));
    wcs.setColor(ExcColor(0, 128, 255));
    wcs.setActive(true);
    wcs.setName(L"Top");
    wcs.setId(L"W1");
    wcs.setLayerId(L"L1");
    EXPECT_EQ(toJsonText(wcs),
              L"{\"origin\":[1.0,2.0,3.0],\"x\":[0.0,0.0,0.0],\"y\":[0.0,0.0,0.0],\"z\":[0.0,0.0,1.0],"
              L"\"color\":{\"rgb\":[0,128,255]},\"active\":true,\"name\":\"Top\",\"id\":\"W1\",\"shown\":false,"
              L"\"layer_id\":\"L1\"}");

    ExcMiscLayer layer(L"L1", L"Holes");
    layer.setCurrent(true);
    layer.addEntity(face(L"F7"));
    EXPECT_EQ(toJsonText(layer),
              withFace7(L"{\"id\":\"L1\",\"name\":\"Holes\",\"current\":true,\"color\":null,\"entities\":[$F]}"));

    ExcMiscLayerFilter filter(L"Current only", ExcMiscLayerFilter::LayCur);
    filter.setLayerId(L"L1");
    EXPECT_EQ(toJsonText(filter),
              L"{\"name\":\"Current only\",\"type\":\"laycur\",\"current\":false,\"layer_id\":\"L1\"}");

    ExcMiscNoteParameters notes(L"Drafting");
    auto group = std::make_shared<ExcMiscPropertiesGroup>(L"Font");
    group->addProperty(ExcMiscProperty(L"Height", ExcMiscProperty::TypeDouble, L"3.5", L"mm"));
    notes.properties().addGroup(group);
    EXPECT_EQ(toJsonText(notes),
              L"{\"name\":\"Drafting\",\"properties\":[{\"name\":\"Font\",\"is_bim\":false,\"properties\":"
              L"[{\"name\":\"Height\",\"type\":\"double\",\"unit\":\"mm\",\"value\":\"3.5\"}]}]}");

    // Properties go directly into the material, in property order whatever
    // the order they were set in.
    ExcMiscMaterial steel(L"Steel");
    ExcMiscMaterialPropertyUnit density;
    density.setUnitSystem(ExcMiscMaterialPropertyUnit::Mmks);
    density.setMass(ExcUnitComponent<EMassUnitType>(1, MassKilogram));
    density.setLength(ExcUnitComponent<ELengthUnitType>(-3, LengthMillimeter));
    steel.set(ExcMiscMaterial::ShearModulus, std::make_shared<ExcMiscMaterialProperty>(79300.0));
    steel.set(ExcMiscMaterial::Density, std::make_shared<ExcMiscMaterialProperty>(7.85e-6, density));
    steel.addLinkedElement(face(L"F7"));
    steel.setPartLevelMaterial(true);
    const std::wstring unknownUnits =
        L"{\"mass\":{\"dimension\":0,\"units\":\"unknown\"},\"length\":{\"dimension\":0,\"units\":\"unknown\"},"
        L"\"time\":{\"dimension\":0,\"units\":\"unknown\"},\"temperature\":{\"dimension\":0,\"units\":\"unknown\"}}";
    EXPECT_EQ(toJsonText(steel),
              withFace7(L"{\"name\":\"Steel\",\"density\":{\"value\":0.00000785,\"unit\":{\"unit_system\":\"mmks\","
                        L"\"units\":{\"mass\":{\"dimension\":1,\"units\":\"kilogram\"},\"length\":{\"dimension\":-3,"
                        L"\"units\":\"millimeter\"},\"time\":{\"dimension\":0,\"units\":\"unknown\"},\"temperature\":"
                        L"{\"dimension\":0,\"units\":\"unknown\"}}}},\"shear_modulus\":{\"value\":79300.0,\"unit\":"
                        L"{\"unit_system\":\"unknown\",\"units\":" +
                        unknownUnits + L"}},\"linked_elements\":[$F],\"is_part_level_material\":true}"));

    ExcMiscSymmetry symmetry;
    symmetry.setTransformMode(ExcMiscSymmetry::Opposite);
    symmetry.setLinkedEntity(*face(L"F7"));
    EXPECT_EQ(toJsonText(symmetry),
              withFace7(L"{\"transform_mode\":\"opposite\",\"transformation\":{\"affine\":[[1.0,0.0,0.0],"
                        L"[0.0,1.0,0.0],[0.0,0.0,1.0]],\"translation\":[0.0,0.0,0.0]},\"linked_entity\":$F}"));

    ExcMiscDisplaySet set(L"Review");
    set.addEntity(face(L"F7"));
    EXPECT_EQ(toJsonText(set), withFace7(L"{\"name\":\"Review\",\"entities\":[$F]}"));

    ExcMechanicalMiscData empty;
    EXPECT_EQ(toJsonText(empty),
              L"{\"misc_data\":[],\"wcs\":[],\"layers\":[],\"layer_filters\":[],\"materials\":[],"
              L"\"note_parameters\":[],\"symmetries\":[],\"display_sets\":[]}");
}

TEST(MechanicalMisc, ReadingTakesOnlyRightKindsAndAppendsToLists) {
    LogCapture log(3);
    ExcMiscWCS wcs;
    wcs.setName(L"Keep");
    wcs.setActive(true);
    // Mistyped members leave every field as it was, silently (an unset
    // colour travels as null).
    readFromJsonText(wcs, L"{\"origin\":{\"x\":1},\"x\":[1,2,3],\"color\":null,\"active\":1,\"name\":5,"
                          L"\"shown\":\"true\",\"layer_id\":[]}");
    EXPECT_EQ(toJsonText(wcs),
              L"{\"origin\":[0.0,0.0,0.0],\"x\":[0.0,0.0,0.0],\"y\":[0.0,0.0,0.0],\"z\":[0.0,0.0,0.0],"
              L"\"color\":null,\"active\":true,\"name\":\"Keep\",\"id\":\"\",\"shown\":false,\"layer_id\":\"\"}");
    readFromJsonText(wcs, L"{\"y\":[0.5,0.25,2.0],\"color\":{\"rgb\":[1,2,3],\"alpha\":4},\"active\":false}");
    EXPECT_EQ(wcs.y().z(), 2.0);
    EXPECT_EQ(wcs.color()[ExcColor::Alpha], 4);
    EXPECT_FALSE(wcs.isActive());

    // Enumeration strings outside their tables read as the value of the
    // table's smallest string.
    ExcMiscLayerFilter filter;
    expectReads(filter, {{L"{\"type\":\"other\"}", L"{\"name\":\"\",\"type\":\"other\",\"current\":false,\"layer_id\":\"\"}"},
                         {L"{\"type\":\"LAYCUR\"}", L"{\"name\":\"\",\"type\":\"all\",\"current\":false,\"layer_id\":\"\"}"}});
    ExcMiscMaterialPropertyUnit unit;
    readFromJsonText(unit, L"{\"unit_system\":\"imperial\",\"units\":{\"time\":{\"dimension\":-1,\"units\":\"second\"},"
                           L"\"mass\":7}}");
    EXPECT_EQ(unit.unitSystem(), ExcMiscMaterialPropertyUnit::Cgs);
    EXPECT_EQ(unit.time().dimension(), -1);
    EXPECT_EQ(unit.time().units(), TimeSecond);
    EXPECT_EQ(unit.mass().units(), MassUnknown);
    ExcMiscSymmetry symmetry;
    readFromJsonText(symmetry, L"{\"transform_mode\":\"mirror\",\"transformation\":[1],"
                               L"\"linked_entity\":{\"type\":\"original\",\"id\":\"S1\"}}");
    EXPECT_EQ(symmetry.transformMode(), ExcMiscSymmetry::Both);
    EXPECT_EQ(symmetry.linkedEntity().id(), L"S1");

    // Lists append one element per object item; reading twice doubles them.
    ExcMechanicalMiscData data;
    const std::wstring input =
        L"{\"misc_data\":[{\"name\":\"G\"}],\"wcs\":[{\"name\":\"A\"},1,null],\"layers\":[{\"id\":\"L\","
        L"\"entities\":[{\"type\":\"mfg\",\"id\":\"F\"},\"F2\"]}],\"layer_filters\":[{}],\"materials\":[{\"name\":\"M\"}],"
        L"\"note_parameters\":[{}],\"symmetries\":{},\"display_sets\":[[],{}]}";
    readFromJsonText(data, input);
    readFromJsonText(data, input);
    EXPECT_EQ(data.worldCoordinateSystems().size(), 2u);
    ASSERT_EQ(data.layers().size(), 2u);
    EXPECT_EQ(data.layers()[0]->entities().size(), 1u);
    EXPECT_EQ(data.layerFilters().size(), 2u);
    EXPECT_EQ(data.materials().size(), 2u);
    EXPECT_EQ(data.noteParameters().size(), 2u);
    EXPECT_EQ(data.symmetries().size(), 0u);
    EXPECT_EQ(data.displaySets().size(), 2u);
    EXPECT_EQ(data.miscData().groups().size(), 1u);
    // The second "G" group is refused by the property groups; nothing else is logged.
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "ExcMiscData::addGroup: properties group 'G' already exist, some properties can be lost."}));
}

TEST(MechanicalMisc, MaterialHoldsOnePropertyPerKind) {
    ExcMiscMaterial material;
    EXPECT_EQ(material.get(ExcMiscMaterial::Density), nullptr);
    for (auto id : {ExcMiscMaterial::Unknown, ExcMiscMaterial::EProperty(10), ExcMiscMaterial::EProperty(-1)}) {
        try {
            material.get(id);
            ADD_FAILURE() << "get accepted " << id;
        } catch (const std::invalid_argument& e) {
            EXPECT_STREQ(e.what(), "Invalid material property id.");
        }
        EXPECT_THROW(material.set(id, std::make_shared<ExcMiscMaterialProperty>()), std::invalid_argument);
    }
    try {
        material.set(ExcMiscMaterial::Density, nullptr);
        ADD_FAILURE() << "set accepted a null property";
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "Invalid material property value.");
    }
    material.set(ExcMiscMaterial::Density, std::make_shared<ExcMiscMaterialProperty>(1.0));
    auto second = std::make_shared<ExcMiscMaterialProperty>(2.0);
    material.set(ExcMiscMaterial::Density, second);
    EXPECT_EQ(material.properties().size(), 1u);
    EXPECT_EQ(material.get(ExcMiscMaterial::Density), second);

    // Reading: only property kinds, only objects; "value" from any number.
    ExcMiscMaterial read;
    readFromJsonText(read, L"{\"name\":\"Al\",\"unknown\":{\"value\":9},\"density\":{\"value\":2700},"
                           L"\"youngs_modulus\":70,\"Poissons_ratio\":{\"value\":0.33},\"specific_heat\":{\"value\":\"x\"},"
                           L"\"is_part_level_material\":\"yes\"}");
    EXPECT_EQ(read.properties().size(), 2u);
    EXPECT_EQ(read.get(ExcMiscMaterial::Density)->value(), 2700.0);
    EXPECT_EQ(read.get(ExcMiscMaterial::SpecificHeat)->value(), 0.0);
    EXPECT_FALSE(read.isPartLevelMaterial());
    // What a material writes reads back to the same text.
    ExcMiscMaterial again;
    readFromJsonText(again, toJsonText(read));
    EXPECT_EQ(toJsonText(again), toJsonText(read));
}

TEST(MechanicalMisc, NullElementsAndWrongKindsAreLogged) {
    LogCapture log;
    ExcMiscLayer layer;
    layer.addEntity(nullptr);
    ExcMiscDisplaySet set;
    set.addEntity(nullptr);
    ExcMiscMaterial material;
    material.addLinkedElement(nullptr);
    ExcMechanicalMiscData data;
    data.addWorldCoordinateSystem(nullptr);
    data.addLayer(nullptr);
    data.addLayerFilter(nullptr);
    data.addMaterial(nullptr);
    data.addNoteParameters(nullptr);
    data.addSymmetry(nullptr);
    data.addDisplaySet(nullptr);
    EXPECT_TRUE(layer.entities().empty() && set.entities().empty() && material.linkedElements().empty());
    EXPECT_EQ(toJsonText(data), toJsonText(ExcMechanicalMiscData()));
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{
                                   "ExcMiscLayer: attempt to add null Entity object.",
                                   "ExcMiscDisplaySet: attempt to add null Entity object.",
                                   "ExcMiscMaterial: attempt to add null Linked Element object.",
                                   "ExcMechanicalMiscData: attempt to add null WCS object.",
                                   "ExcMechanicalMiscData: attempt to add null Layer object.",
                                   "ExcMechanicalMiscData: attempt to add null Layer Filter object.",
                                   "ExcMechanicalMiscData: attempt to add null Material object.",
                                   "ExcMechanicalMiscData: attempt to add null Note Parameters object.",
                                   "ExcMechanicalMiscData: attempt to add null Symmetry object.",
                                   "ExcMechanicalMiscData: attempt to add null Display Set object."}));

    ExcMiscWCS wcs;
    ExcMiscLayerFilter filter;
    ExcMiscNoteParameters notes;
    ExcMiscMaterialPropertyUnit unit;
    ExcMiscMaterialProperty property;
    ExcMiscSymmetry symmetry;
    IJsonObject* objects[] = {&wcs, &layer, &filter, &notes, &unit, &property, &material, &symmetry, &set, &data};
    const std::wstring wrongKinds[] = {L"[]", L"1", L"\"x\"", L"null", L"true", L"[{}]", L"2.5", L"false", L"[1]", L"\"\""};
    std::vector<std::wstring> before;
    for (IJsonObject* object : objects) before.push_back(toJsonText(*object));
    for (std::size_t i = 0; i < std::size(objects); ++i) readFromJsonText(*objects[i], wrongKinds[i]);
    for (std::size_t i = 0; i < std::size(objects); ++i) EXPECT_EQ(toJsonText(*objects[i]), before[i]);
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{
                                   "ExcMiscWCS object should have a JSON object type.",
                                   "ExcMiscLayer object should have a JSON object type.",
                                   "ExcMiscLayerFilter object should have a JSON object type.",
                                   "ExcMiscNoteParameters object should have a JSON object type.",
                                   "ExcMiscMaterialPropertyUnit object should have a JSON object type.",
                                   "ExcMiscMaterialProperty object should have a JSON object type.",
                                   "ExcMiscMaterial object should have a JSON object type.",
                                   "ExcMiscSymmetry object should have a JSON object type.",
                                   "ExcMiscDisplaySet object should have a JSON object type.",
                                   "ExcMechanicalMiscData object should have a JSON object type."}));
}

// Geometric tolerance frames: key order of the frame and its nested rows,
// datum reference frames and zone modifiers; reading rules, tables and
// messages.
#include <gtest/gtest.h>

#include <xch_api/xch_api_exchange_pmi.h>

#include "support/enum_table_check.h"
#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

namespace {

using GDT = ExcPMIGDT;

const std::wstring kGdtBase = L"\"name\":\"Position 1\",\"id\":\"G1\",\"hidden\":false,\"type\":\"GDT\","
                              L"\"orientation\":\"horizontal\",\"angle\":0.0,\"z_depth\":0.0,\"position\":[40.0,25.0],"
                              L"\"linked_elements\":[{\"type\":\"mfg\",\"id\":\"hole-1\"}],\"leaders\":[]";

const std::wstring kDefaultRow = L"{\"tolerance_value_type\":\"none\",\"tolerance_value\":0.0,\"refine_tolerance\":0.0,"
                                 L"\"rate_unit\":[0.0,0.0],\"zone_modifiers\":[],\"ref_frame\":null}";

// A position tolerance of diameter 0.1 at maximum material condition
// against the datum reference frame A|B(M)|C.
ExcPMIGDT positionTolerance() {
    GDT gdt;
    gdt.setName(L"Position 1");
    gdt.setId(L"G1");
    gdt.setPosition(ExcVector2d(40.0, 25.0));
    gdt.addLinkedElement(std::make_shared<ExcEntity>(ExcEntity::Mfg, L"hole-1"));
    gdt.setToleranceType(GDT::LocationTruePosition);
    gdt.setAllAround(0.0);
    auto note = std::make_shared<ExcPMIText>();
    note->setTextPrefix(L"4X");
    gdt.setNote(note);

    auto frame = std::make_shared<GDT::Frame>(L"A|B|C");
    for (const wchar_t* label : {L"A", L"B", L"C"}) {
        GDT::DatumRef ref(label);
        GDT::ModifiedDatum datum(std::wstring(L"D-") + label);
        if (label == std::wstring(L"B")) {
            datum.addZoneModifier(GDT::MaterialConditionMaximum);
            auto text = std::make_shared<ExcPMIText>();
            text->setTextSuffix(L"(M)");
            ref.setText(text);
        }
        ref.addModifiedDatum(datum);
        frame->addDatumRef(ref);
    }
    auto row = std::make_shared<GDT::Row>();
    row->setToleranceValueType(GDT::ValueDiameter);
    row->setToleranceValue(0.1);
    row->addZoneModifier(GDT::MaterialConditionMaximum);
    row->addZoneModifier(GDT::ProjectedStateProjected, 12.5);
    row->setReferenceFrame(frame);
    gdt.addGdtRow(row);
    return gdt;
}

} // namespace

TEST(PMIGDT, FrameWritesEveryKeyInOrderAndReadsItBack) {
    GDT empty;
    EXPECT_EQ(toJsonText(empty),
              L"{\"name\":\"\",\"id\":\"\",\"hidden\":false,\"type\":\"GDT\",\"orientation\":\"horizontal\",\"angle\":0.0,"
              L"\"z_depth\":0.0,\"position\":[0.0,0.0],\"linked_elements\":[],\"leaders\":[],\"tolerance_type\":\"unknown\","
              L"\"all_around\":0.0,\"pmi_gdt_note\":null,\"pmi_gdt_rows\":[]}");
    EXPECT_EQ(toJsonText(GDT::Row()), kDefaultRow);
    EXPECT_EQ(toJsonText(GDT::Frame()), L"{\"label\":\"\",\"datum_refs\":[]}");
    EXPECT_EQ(toJsonText(GDT::DatumRef()), L"{\"label\":\"\",\"pmi_gdt_datum_ref_text\":null,\"modified_datums\":[]}");
    EXPECT_EQ(toJsonText(GDT::ModifiedDatum()), L"{\"datum_id\":\"\",\"zone_modifiers\":[]}");

    const GDT gdt = positionTolerance();
    const std::wstring text = L"\"text_after\":\"\",\"text_before\":\"\",\"text_below\":\"\",\"text_lower\":\"\",";
    const std::wstring expected =
        L"{" + kGdtBase + L",\"tolerance_type\":\"location_true_position\",\"all_around\":0.0,\"pmi_gdt_note\":{" + text +
        L"\"text_prefix\":\"4X\",\"text_suffix\":\"\",\"text_upper\":\"\"},\"pmi_gdt_rows\":[{\"tolerance_value_type\":"
        L"\"diameter\",\"tolerance_value\":0.1,\"refine_tolerance\":0.0,\"rate_unit\":[0.0,0.0],\"zone_modifiers\":["
        L"{\"zone_modifier_zone\":\"material_condition_maximum\"},{\"zone_modifier_zone\":\"projected_state_projected\","
        L"\"zone_modifier_magnitude\":12.5}],\"ref_frame\":{\"label\":\"A|B|C\",\"datum_refs\":["
        L"{\"label\":\"A\",\"pmi_gdt_datum_ref_text\":null,\"modified_datums\":[{\"datum_id\":\"D-A\",\"zone_modifiers\":[]}]},"
        L"{\"label\":\"B\",\"pmi_gdt_datum_ref_text\":{" + text +
        L"\"text_prefix\":\"\",\"text_suffix\":\"(M)\",\"text_upper\":\"\"},\"modified_datums\":[{\"datum_id\":\"D-B\","
        L"\"zone_modifiers\":[{\"zone_modifier_zone\":\"material_condition_maximum\"}]}]},"
        L"{\"label\":\"C\",\"pmi_gdt_datum_ref_text\":null,\"modified_datums\":[{\"datum_id\":\"D-C\",\"zone_modifiers\":[]}]}"
        L"]}}]}";
    EXPECT_EQ(toJsonText(gdt), expected);
    EXPECT_EQ(gdt.type(), PMIGDT);

    GDT read;
    readFromJsonText(read, expected);
    EXPECT_EQ(toJsonText(read), expected);
    ASSERT_EQ(read.gdtRows().size(), 1u);
    const auto& modifiers = read.gdtRows()[0]->zoneModifiers();
    ASSERT_EQ(modifiers.size(), 2u);
    EXPECT_FALSE(modifiers[0].hasMagnitude);
    EXPECT_EQ(modifiers[0].magnitude, 0.0);
    EXPECT_TRUE(modifiers[1].hasMagnitude);
    EXPECT_EQ(modifiers[1].magnitude, 12.5);
    const auto& refs = read.gdtRows()[0]->referenceFrame()->datumRefs();
    ASSERT_EQ(refs.size(), 3u);
    EXPECT_EQ(refs[1].modifiedDatums().at(0).zoneModifiers().at(0).modifier, GDT::MaterialConditionMaximum);
    EXPECT_EQ(refs[1].text()->textSuffix(), L"(M)");

    // Copies share the rows; frames and datum references are values.
    GDT copy(gdt);
    EXPECT_EQ(copy.gdtRows()[0], gdt.gdtRows()[0]);
    GDT::Frame frameCopy = *gdt.gdtRows()[0]->referenceFrame();
    frameCopy.addDatumRef(GDT::DatumRef(L"D"));
    EXPECT_EQ(gdt.gdtRows()[0]->referenceFrame()->datumRefs().size(), 3u);
    GDT::DatumRef moved(L"E");
    GDT::ModifiedDatum datum(L"D-E");
    moved.addModifiedDatum(std::move(datum));
    moved.addModifiedDatum(GDT::ModifiedDatum(L"D-F"));
    EXPECT_EQ(moved.modifiedDatums().size(), 2u);
    EXPECT_EQ(moved.modifiedDatums()[0].datumId(), L"D-E");
}

TEST(PMIGDT, ZoneModifiersRateUnitsAndNestedObjects) {
    LogCapture log(3);
    GDT::Row row;
    row.setRateUnit(0.1, 100.0);
    expectReads(row, {
        // Only object elements whose zone is a string make entries; a
        // magnitude read as any number sets hasMagnitude.
        {L"{\"zone_modifiers\":[1,{\"zone_modifier_magnitude\":2.0},{\"zone_modifier_zone\":5},"
         L"{\"zone_modifier_zone\":\"common_zone\"},{\"zone_modifier_zone\":\"free_state_free\","
         L"\"zone_modifier_magnitude\":3},{\"zone_modifier_zone\":\"separate_zone\",\"zone_modifier_magnitude\":\"4\"},"
         L"{\"zone_modifier_zone\":\"Common_Zone\"}]}",
         L"{\"tolerance_value_type\":\"none\",\"tolerance_value\":0.0,\"refine_tolerance\":0.0,\"rate_unit\":[0.1,100.0],"
         L"\"zone_modifiers\":[{\"zone_modifier_zone\":\"common_zone\"},{\"zone_modifier_zone\":\"free_state_free\","
         L"\"zone_modifier_magnitude\":3.0},{\"zone_modifier_zone\":\"separate_zone\"},{\"zone_modifier_zone\":"
         L"\"circle_u\"}],\"ref_frame\":null}"},
        // "rate_unit" needs exactly two elements, each taken only as a double.
        {L"{\"rate_unit\":[0.5],\"zone_modifiers\":{}}",
         L"{\"tolerance_value_type\":\"none\",\"tolerance_value\":0.0,\"refine_tolerance\":0.0,\"rate_unit\":[0.1,100.0],"
         L"\"zone_modifiers\":[{\"zone_modifier_zone\":\"common_zone\"},{\"zone_modifier_zone\":\"free_state_free\","
         L"\"zone_modifier_magnitude\":3.0},{\"zone_modifier_zone\":\"separate_zone\"},{\"zone_modifier_zone\":"
         L"\"circle_u\"}],\"ref_frame\":null}"},
    });
    row = GDT::Row();
    row.setRateUnit(0.1, 100.0);
    readFromJsonText(row, L"{\"rate_unit\":[0.5,1.0,2.0]}");
    readFromJsonText(row, L"{\"rate_unit\":[]}");
    readFromJsonText(row, L"{\"rate_unit\":\"0.5,200\"}"); // not an array: ignored silently
    double first = 0, second = 0;
    row.rateUnits(first, second);
    EXPECT_EQ(first, 0.1);
    EXPECT_EQ(second, 100.0);
    readFromJsonText(row, L"{\"rate_unit\":[0.05,200],\"tolerance_value\":1,\"refine_tolerance\":\"x\","
                          L"\"tolerance_value_type\":\"Square\"}");
    row.rateUnits(first, second);
    EXPECT_EQ(first, 0.05);
    EXPECT_EQ(second, 100.0);
    EXPECT_EQ(row.toleranceValue(), 1.0);
    EXPECT_EQ(row.toleranceValueType(), GDT::ValueDiameter);
    EXPECT_EQ(log.messages(3), std::vector<std::string>(3, "ExcPMIGDT::Row: invalid size of rate_unit array"));

    // Nested objects held by pointer are replaced by new ones read from an
    // object member; any other kind leaves them as they are.
    auto frame = std::make_shared<GDT::Frame>(L"A");
    row.setReferenceFrame(frame);
    readFromJsonText(row, L"{\"ref_frame\":null}");
    EXPECT_EQ(row.referenceFrame(), frame);
    readFromJsonText(row, L"{\"ref_frame\":{\"datum_refs\":[{\"label\":\"B\"},3,{\"label\":\"C\","
                          L"\"pmi_gdt_datum_ref_text\":[],\"modified_datums\":[{\"datum_id\":\"D\"},\"E\"]}]}}");
    ASSERT_NE(row.referenceFrame(), frame);
    EXPECT_EQ(frame->label(), L"A");
    EXPECT_EQ(row.referenceFrame()->label(), L"");
    ASSERT_EQ(row.referenceFrame()->datumRefs().size(), 2u);
    EXPECT_EQ(row.referenceFrame()->datumRefs()[1].text(), nullptr);
    EXPECT_EQ(row.referenceFrame()->datumRefs()[1].modifiedDatums().size(), 1u);

    GDT gdt = positionTolerance();
    auto note = gdt.note();
    readFromJsonText(gdt, L"{\"pmi_gdt_note\":\"4X\",\"all_around\":1,\"pmi_gdt_rows\":[[],{},null]}");
    EXPECT_EQ(gdt.note(), note);
    EXPECT_EQ(gdt.allAround(), 1.0);
    ASSERT_EQ(gdt.gdtRows().size(), 2u); // appended
    EXPECT_EQ(toJsonText(*gdt.gdtRows()[1]), kDefaultRow);
    readFromJsonText(gdt, L"{\"pmi_gdt_note\":{\"text_upper\":\"U\"}}");
    EXPECT_EQ(gdt.note()->textUpper(), L"U");
    EXPECT_EQ(gdt.note()->textPrefix(), L"");
    EXPECT_EQ(note->textPrefix(), L"4X");
}

TEST(PMIGDT, EnumerationTablesAndFallBacks) {
    expectEnumTable<GDT::EToleranceType>(
        {L"unknown", L"form_straightness", L"form_flatness", L"form_circularity", L"form_cylindricity",
         L"form_profile_any_line", L"form_profile_any_surface", L"orientation_parallelism",
         L"orientation_perpendicularity", L"orientation_angularity", L"location_true_position",
         L"location_concentricity", L"location_coaxiality", L"location_symmetry", L"location_position_of_any_line",
         L"Location_position_of_a_surface", L"run_out_circular", L"run_out_total"});
    expectEnumTable<GDT::EToleranceModifier>(
        {L"no_modifier", L"material_condition_unsupported", L"material_condition_no_modifier",
         L"material_condition_maximum", L"material_condition_least", L"material_condition_regardless_of_feature_size",
         L"tangent_plane_unsupported", L"tangent_plane_non_tangent", L"tangent_plane_tangent",
         L"free_state_unsupported", L"free_state_free", L"free_state_not_free", L"statistical_symbol", L"common_zone",
         L"unequally_disposed_zone", L"projected_state_projected", L"projected_state_not_projected", L"circle_u",
         L"maximum", L"minimax_feature", L"derived_feature", L"dynamic_profile", L"least_square_feature",
         L"maximum_inscribed_feature", L"minimum_circumscribed_feature", L"separate_zone", L"offset_zone",
         L"variable_angle", L"orientation_constraint", L"minimax_association",
         L"minimax_association_with_external_constraint", L"minimax_association_with_internal_constraint",
         L"least_square_association", L"least_square_association_with_external_constraint",
         L"least_square_association_with_internal_constraint", L"minimum_circumscribed_association",
         L"maximum_inscribed_association", L"total_range_of_deviations", L"peak_height", L"valley_depth",
         L"standard_deviation"});
    expectEnumTable<GDT::EToleranceValueType>({L"none", L"diameter", L"radius", L"spherical", L"square"});

    GDT gdt;
    readFromJsonText(gdt, L"{\"tolerance_type\":\"location_position_of_a_surface\"}");
    EXPECT_EQ(gdt.toleranceType(), GDT::LocationPositionOfASurface);
    readFromJsonText(gdt, L"{\"tolerance_type\":\"form_flatness\"}");
    EXPECT_EQ(gdt.toleranceType(), GDT::FormFlatness);
    readFromJsonText(gdt, L"{\"tolerance_type\":\"\"}");
    EXPECT_EQ(gdt.toleranceType(), GDT::LocationPositionOfASurface);
    EXPECT_EQ(enumFromString<GDT::EToleranceModifier>(L"Circle_u"), GDT::CircleU);
    EXPECT_EQ(enumFromString<GDT::EToleranceModifier>(L"zzz"), GDT::CircleU);
    EXPECT_EQ(enumFromString<GDT::EToleranceValueType>(L"NONE"), GDT::ValueDiameter);

    // Values outside a table write as its first string.
    gdt.setToleranceType(static_cast<GDT::EToleranceType>(18));
    EXPECT_NE(toJsonText(gdt).find(L"\"tolerance_type\":\"unknown\""), std::wstring::npos);
    GDT::Row row;
    row.setToleranceValueType(static_cast<GDT::EToleranceValueType>(-1));
    row.addZoneModifier(static_cast<GDT::EToleranceModifier>(41), 1.0);
    EXPECT_EQ(toJsonText(row), L"{\"tolerance_value_type\":\"none\",\"tolerance_value\":0.0,\"refine_tolerance\":0.0,"
                               L"\"rate_unit\":[0.0,0.0],\"zone_modifiers\":[{\"zone_modifier_zone\":\"no_modifier\","
                               L"\"zone_modifier_magnitude\":1.0}],\"ref_frame\":null}");
}

TEST(PMIGDT, ObjectShapeMessages) {
    LogCapture log(3);
    GDT gdt;
    GDT::Row row;
    GDT::Frame frame;
    GDT::DatumRef ref;
    GDT::ModifiedDatum datum;
    for (IJsonObject* object : std::vector<IJsonObject*>{&gdt, &row, &frame, &ref, &datum})
        readFromJsonText(*object, L"\"A\"");
    gdt.addGdtRow(nullptr);
    EXPECT_TRUE(gdt.gdtRows().empty());
    EXPECT_EQ(log.messages(2), (std::vector<std::string>{
                                   "ExcPMIGDT object should have a JSON object type.",
                                   "ExcPMIGDT object should have a JSON object type.",
                                   "ExcPMIGDT::Frame object should have a JSON object type.",
                                   "ExcPMIGDT::DatumRef object should have a JSON object type.",
                                   "ExcPMIGDT::ModifiedDatum object should have a JSON object type.",
                               }));
    EXPECT_EQ(log.messages(3), std::vector<std::string>{"ExcPMIGDT: attempt to add null GDT Row object."});
}

// Dimensions and roughness symbols: key order, the fixed-size pairs, the
// fake-value flags, tables, fall-backs and messages.
#include <gtest/gtest.h>

#include <cwchar>

#include <xch_api/xch_api_exchange_pmi.h>

#include "support/enum_table_check.h"
#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

namespace {

using Dim = ExcPMIDimension;

std::wstring annotationKeys(const std::wstring& type) {
    return L"\"name\":\"\",\"id\":\"\",\"hidden\":false,\"type\":\"" + type +
           L"\",\"orientation\":\"horizontal\",\"angle\":0.0,\"z_depth\":0.0,\"position\":[0.0,0.0],"
           L"\"linked_elements\":[],\"leaders\":[]";
}

const std::wstring kDefaultDimensionKeys =
    L"\"main_type\":\"unknown\",\"sub_type\":\"no_dim\",\"callout_feature_annotation_type\":\"hole_unknown\","
    L"\"coord\":[0.0,0.0,0.0],\"value\":0.0,\"unit\":\"none\",\"value_precision\":0.0,\"tolerance_precision_value\":0.0,"
    L"\"numerical_tolerance\":[0.0,0.0],\"alphanumerical_tolerance\":[\"\",\"\"],\"pmi_dimension_note\":null,"
    L"\"text_callout\":\"\",\"fake_numerical_value\":0.0,\"fake_alphanumerical_value\":\"\",\"is_driving\":false,"
    L"\"line\":[[0.0,0.0],[0.0,0.0]],\"arrows\":[\"not_used\",\"not_used\"],\"is_symbol_outside\":false";

} // namespace

TEST(PMIDimension, WritesEveryKeyInOrderAndReadsItBack) {
    Dim dimension;
    EXPECT_EQ(toJsonText(dimension), L"{" + annotationKeys(L"dimension") + L"," + kDefaultDimensionKeys + L"}");

    dimension.setMainType(Dim::MainTolerance);
    dimension.setSubType(Dim::SubDiameter);
    dimension.setCalloutFeatureAnnotationType(Dim::CalloutHoleDiameter);
    dimension.setCoord(ExcVector3d(1.0, 2.0, 3.0));
    dimension.setValue(12.0);
    dimension.setUnit(Dim::UnitMm);
    dimension.setValuePrecision(2.0);
    dimension.setTolerancePrecisionValue(3.0);
    dimension.setNumericalToleranceUpper(0.05);
    dimension.setNumericalToleranceLower(-0.05);
    dimension.setAlphanumericalToleranceUpper(L"H7");
    dimension.setAlphanumericalToleranceLower(L"g6");
    auto note = std::make_shared<ExcPMIText>();
    note->setTextPrefix(L"\u2300");
    dimension.setNote(note);
    dimension.setCalloutText(L"\u230012 \u00b10.05");
    dimension.setHasFakeNumericalValue(true);
    dimension.setFakeNumericalValue(12.5);
    dimension.setFakeAlphanumericalValue(L"TYP");
    dimension.setDriving(true);
    dimension.setLineStart(ExcVector2d(-6.0, 0.0));
    dimension.setLineEnd(ExcVector2d(6.0, 0.5));
    dimension.setArrowSymbolStart(Dim::ArrowFilledArrow);
    dimension.setArrowSymbolEnd(Dim::ArrowOpenArrow);
    dimension.setSymbolOutside(true);
    const std::wstring expected =
        L"{" + annotationKeys(L"dimension") +
        L",\"main_type\":\"tolerance\",\"sub_type\":\"diameter\",\"callout_feature_annotation_type\":"
        L"\"hole_callout_diameter\",\"coord\":[1.0,2.0,3.0],\"value\":12.0,\"unit\":\"mm\",\"value_precision\":2.0,"
        L"\"tolerance_precision_value\":3.0,\"numerical_tolerance\":[0.05,-0.05],\"alphanumerical_tolerance\":"
        L"[\"H7\",\"g6\"],\"pmi_dimension_note\":{\"text_after\":\"\",\"text_before\":\"\",\"text_below\":\"\","
        L"\"text_lower\":\"\",\"text_prefix\":\"\u2300\",\"text_suffix\":\"\",\"text_upper\":\"\"},\"text_callout\":"
        L"\"\u230012 \u00b10.05\",\"fake_numerical_value\":12.5,\"fake_alphanumerical_value\":\"TYP\","
        L"\"is_driving\":true,\"line\":[[-6.0,0.0],[6.0,0.5]],\"arrows\":[\"filled_arrow\",\"open_arrow\"],"
        L"\"is_symbol_outside\":true}";
    EXPECT_EQ(toJsonText(dimension), expected);
    EXPECT_EQ(dimension.type(), PMIDimension);

    Dim read;
    readFromJsonText(read, expected);
    EXPECT_EQ(toJsonText(read), expected);
    EXPECT_TRUE(read.hasFakeNumericalValue());
    EXPECT_TRUE(read.hasFakeAlphanumericalValue()); // the key was there, so it was given
    EXPECT_EQ(read.numericalToleranceLower(), -0.05);
    EXPECT_EQ(read.arrowSymbolEnd(), Dim::ArrowOpenArrow);
    EXPECT_EQ(read.lineEnd().y(), 0.5);
    EXPECT_EQ(read.note()->textPrefix(), L"\u2300");
}

TEST(PMIDimension, PairsNeedExactlyTwoElementsOfTheirKind) {
    LogCapture log(3);
    Dim dimension;
    dimension.setNumericalToleranceUpper(0.3);
    dimension.setNumericalToleranceLower(-0.3);
    dimension.setAlphanumericalToleranceUpper(L"H7");
    dimension.setAlphanumericalToleranceLower(L"h6");
    dimension.setLineStart(ExcVector2d(1.0, 1.0));
    dimension.setLineEnd(ExcVector2d(2.0, 2.0));
    dimension.setArrowSymbolStart(Dim::ArrowDot);
    dimension.setArrowSymbolEnd(Dim::ArrowWave);

    // Wrong sizes: logged, nothing taken.
    readFromJsonText(dimension, L"{\"numerical_tolerance\":[0.1],\"alphanumerical_tolerance\":[\"a\",\"b\",\"c\"],"
                                L"\"line\":[[5.0,5.0]],\"arrows\":[]}");
    EXPECT_EQ(dimension.numericalToleranceUpper(), 0.3);
    EXPECT_EQ(dimension.alphanumericalToleranceUpper(), L"H7");
    EXPECT_EQ(dimension.lineStart().x(), 1.0);
    EXPECT_EQ(dimension.arrowSymbolStart(), Dim::ArrowDot);
    EXPECT_EQ(log.messages(3), (std::vector<std::string>{
                                   "ExcPMIDimension: invalid size of numerical_tolerance array.",
                                   "ExcPMIDimension: invalid size of alphanumerical_tolerance array.",
                                   "ExcPMIDimension: invalid size of line array.",
                                   "ExcPMIDimension: invalid size of arrows array.",
                               }));
    log.clear();

    // The right size: each element only when of its kind (an integer is not
    // a double here); values that are not arrays at all are ignored silently.
    readFromJsonText(dimension, L"{\"numerical_tolerance\":[0.1,1],\"alphanumerical_tolerance\":[7,\"f7\"],"
                                L"\"line\":[[5.0,5.0],{}],\"arrows\":[\"Cross\",3]}");
    readFromJsonText(dimension, L"{\"numerical_tolerance\":0.2,\"alphanumerical_tolerance\":\"H8\","
                                L"\"line\":{},\"arrows\":\"dot\"}");
    EXPECT_EQ(dimension.numericalToleranceUpper(), 0.1);
    EXPECT_EQ(dimension.numericalToleranceLower(), -0.3);
    EXPECT_EQ(dimension.alphanumericalToleranceUpper(), L"H7");
    EXPECT_EQ(dimension.alphanumericalToleranceLower(), L"f7");
    EXPECT_EQ(dimension.lineStart().x(), 5.0);
    EXPECT_EQ(dimension.lineEnd().x(), 2.0);
    EXPECT_EQ(dimension.arrowSymbolStart(), Dim::ArrowBlankedArrow);
    EXPECT_EQ(dimension.arrowSymbolEnd(), Dim::ArrowWave);
    EXPECT_TRUE(log.messages().empty());
}

TEST(PMIDimension, FakeValueFlagsFollowWhatWasRead) {
    Dim dimension;
    dimension.setHasFakeNumericalValue(true);
    dimension.setFakeNumericalValue(4.0);
    dimension.setHasFakeAlphanumericalValue(true);
    dimension.setFakeAlphanumericalValue(L"REF");
    readFromJsonText(dimension, L"{\"value\":3}");
    EXPECT_FALSE(dimension.hasFakeNumericalValue());
    EXPECT_FALSE(dimension.hasFakeAlphanumericalValue());
    EXPECT_EQ(dimension.fakeNumericalValue(), 4.0); // the value itself stays
    EXPECT_EQ(dimension.fakeAlphanumericalValue(), L"REF");
    EXPECT_EQ(dimension.value(), 3.0);

    readFromJsonText(dimension, L"{\"fake_numerical_value\":7,\"fake_alphanumerical_value\":\"\"}");
    EXPECT_TRUE(dimension.hasFakeNumericalValue());
    EXPECT_EQ(dimension.fakeNumericalValue(), 7.0);
    EXPECT_TRUE(dimension.hasFakeAlphanumericalValue());
    EXPECT_EQ(dimension.fakeAlphanumericalValue(), L"");

    readFromJsonText(dimension, L"{\"fake_numerical_value\":\"7\",\"fake_alphanumerical_value\":7}");
    EXPECT_FALSE(dimension.hasFakeNumericalValue());
    EXPECT_FALSE(dimension.hasFakeAlphanumericalValue());
    EXPECT_EQ(dimension.fakeNumericalValue(), 7.0);

    // A value that is not an object reads nothing, the flags included.
    dimension.setHasFakeNumericalValue(true);
    LogCapture log(2);
    readFromJsonText(dimension, L"[]");
    EXPECT_TRUE(dimension.hasFakeNumericalValue());
    EXPECT_EQ(log.messages(2), std::vector<std::string>{"ExcPMIDimension object should have a JSON object type."});
}

TEST(PMIDimension, EnumerationTablesAndFallBacks) {
    expectEnumTable<Dim::EMainType>({L"unknown", L"basic", L"reference", L"tolerance", L"coord_dim", L"hole_callout"});
    expectEnumTable<Dim::ESubType>(
        {L"distance", L"distance_offset", L"length", L"length_or_distance", L"length_curvilinear", L"angle",
         L"radius", L"radius_tangent", L"radius_cylinder", L"radius_edge", L"diameter", L"diameter_tangent",
         L"diameter_cylinder", L"diameter_edge", L"diameter_cone", L"chamfer", L"slope", L"dim_gdt",
         L"dim_datum_feature", L"dim_datum_target", L"dim_balloon", L"no_dim", L"angle_arc", L"length_circular",
         L"fillet", L"coord_dimension_2d", L"coord_dimension_3d"});
    expectEnumTable<Dim::EDimUnit>({L"none", L"mm", L"inch", L"meter", L"cm", L"km", L"foot", L"f_i_f64", L"f_i_f16",
                                    L"f_i_dec", L"degree", L"minute", L"second", L"radian", L"grade"});
    expectEnumTable<Dim::EArrowSymbol>(
        {L"not_used", L"cross", L"plus", L"concentric", L"coincident", L"full_circle", L"full_square", L"full_star",
         L"dot", L"small_dot", L"misc1", L"misc2", L"full_circle2", L"full_square2", L"open_arrow", L"unfilled_arrow",
         L"blanked_arrow", L"filled_arrow", L"unfilled_circle", L"blanked_circle", L"filled_circle",
         L"crossed_circle", L"blanked_square", L"filled_square", L"blanked_triangle", L"filled_triangle",
         L"manipulator_square", L"manipulator_diamond", L"manipulator_circle", L"manipulator_triangle",
         L"double_open_arrow", L"wave"});
    expectEnumTable<Dim::ECalloutFeatureAnnotationType>(
        {L"unknown", L"hole_unknown", L"hole_callout_fit", L"hole_callout_depth", L"hole_callout_diameter",
         L"hole_callout_screw_size", L"hole_callout_counter_bore_depth", L"hole_callout_counter_bore_diameter",
         L"hole_callout_pattern_count", L"hole_callout_pitch", L"hole_callout_angle", L"hole_callout_pat_taper_angle",
         L"hole_callout_counter_sink_diameter", L"hole_callout_counter_sink_angle", L"hole_callout_thread_depth",
         L"hole_callout_thread_size", L"hole_callout_thread_minor_dia", L"hole_callout_thread_major_dia",
         L"hole_callout_tap_drill_dia"});
    expectEnumTable<ExcPMIRoughness::EObtentionType>(
        {L"unsupported", L"not_defined", L"matching_mandatory", L"matching_forbidden"});
    expectEnumTable<ExcPMIRoughness::EApplicabilityType>(
        {L"unsupported", L"specified_surface_only", L"all_part_surfaces", L"basic_surface"});

    Dim dimension;
    readFromJsonText(dimension, L"{\"main_type\":\"Basic\",\"sub_type\":\"ANGLE\",\"unit\":\"MM\","
                                L"\"callout_feature_annotation_type\":\"hole\",\"arrows\":[\"x\",\"\"]}");
    EXPECT_EQ(dimension.mainType(), Dim::MainBasic);
    EXPECT_EQ(dimension.subType(), Dim::SubAngle);
    EXPECT_EQ(dimension.unit(), Dim::UnitCm);
    EXPECT_EQ(dimension.calloutFeatureAnnotationType(), Dim::CalloutHoleAngle);
    EXPECT_EQ(dimension.arrowSymbolStart(), Dim::ArrowBlankedArrow);
    EXPECT_EQ(dimension.arrowSymbolEnd(), Dim::ArrowBlankedArrow);

    ExcPMIRoughness roughness;
    readFromJsonText(roughness, L"{\"obtention_type\":\"mandatory\",\"applicability_type\":\"All_part_surfaces\"}");
    EXPECT_EQ(roughness.obtentionType(), ExcPMIRoughness::MatchingForbidden);
    EXPECT_EQ(roughness.applicabilityType(), ExcPMIRoughness::AllPartSurfaces);

    // Values outside the tables write as the first strings.
    dimension.setMainType(static_cast<Dim::EMainType>(6));
    dimension.setSubType(static_cast<Dim::ESubType>(27));
    dimension.setUnit(static_cast<Dim::EDimUnit>(15));
    dimension.setCalloutFeatureAnnotationType(static_cast<Dim::ECalloutFeatureAnnotationType>(19));
    dimension.setArrowSymbolStart(static_cast<Dim::EArrowSymbol>(32));
    dimension.setArrowSymbolEnd(static_cast<Dim::EArrowSymbol>(-1));
    const std::wstring text = toJsonText(dimension);
    for (const wchar_t* key : {L"\"main_type\":\"unknown\"", L"\"sub_type\":\"distance\"", L"\"unit\":\"none\"",
                               L"\"callout_feature_annotation_type\":\"unknown\"",
                               L"\"arrows\":[\"not_used\",\"not_used\"]"})
        EXPECT_NE(text.find(key), std::wstring::npos) << std::string(key, key + std::wcslen(key));
    roughness.setObtentionType(static_cast<ExcPMIRoughness::EObtentionType>(4));
    roughness.setApplicabilityType(static_cast<ExcPMIRoughness::EApplicabilityType>(9));
    EXPECT_EQ(toJsonText(roughness), L"{" + annotationKeys(L"roughness") +
                                         L",\"obtention_type\":\"unsupported\",\"applicability_type\":\"unsupported\","
                                         L"\"fields\":[]}");
}

TEST(PMIRoughness, KeysAndAppendedFields) {
    ExcPMIRoughness roughness;
    roughness.setObtentionType(ExcPMIRoughness::MatchingMandatory);
    roughness.setApplicabilityType(ExcPMIRoughness::SpecifiedSurfaceOnly);
    roughness.addField(L"Ra 1.6");
    roughness.addField(L"");
    roughness.addField(L"\u22a5");
    const std::wstring expected = L"{" + annotationKeys(L"roughness") +
                                  L",\"obtention_type\":\"matching_mandatory\",\"applicability_type\":"
                                  L"\"specified_surface_only\",\"fields\":[\"Ra 1.6\",\"\",\"\u22a5\"]}";
    EXPECT_EQ(toJsonText(roughness), expected);
    EXPECT_EQ(roughness.type(), PMIRoughness);

    ExcPMIRoughness read;
    readFromJsonText(read, expected);
    EXPECT_EQ(toJsonText(read), expected);
    readFromJsonText(read, L"{\"fields\":[\"Rz 6.3\",1.6,null,\"milled\"],\"obtention_type\":2}");
    EXPECT_EQ(read.fields(), (std::vector<std::wstring>{L"Ra 1.6", L"", L"\u22a5", L"Rz 6.3", L"milled"}));
    EXPECT_EQ(read.obtentionType(), ExcPMIRoughness::MatchingMandatory);
    read.setFields({L"N7"});
    EXPECT_EQ(read.fields(), std::vector<std::wstring>{L"N7"});

    LogCapture log(2);
    readFromJsonText(read, L"null");
    EXPECT_EQ(log.messages(2), std::vector<std::string>{"ExcPMIRoughness object should have a JSON object type."});
}

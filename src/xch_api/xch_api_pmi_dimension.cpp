// Dimensions.
#include <xch_api/xch_api_pmi_dimension.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcPMIDimension::EMainType>& enumTable<ExcPMIDimension::EMainType>() {
    using T = ExcPMIDimension;
    static const EnumTable<T::EMainType> table{
        {T::MainUnknown, L"unknown"},
        {T::MainBasic, L"basic"},
        {T::MainReference, L"reference"},
        {T::MainTolerance, L"tolerance"},
        {T::MainCoordDim, L"coord_dim"},
        {T::MainHoleCallout, L"hole_callout"},
    };
    return table;
}

template <>
const EnumTable<ExcPMIDimension::ESubType>& enumTable<ExcPMIDimension::ESubType>() {
    using T = ExcPMIDimension;
    static const EnumTable<T::ESubType> table{
        {T::SubDistance, L"distance"},
        {T::SubDistanceOffset, L"distance_offset"},
        {T::SubLength, L"length"},
        {T::SubLengthOrDistance, L"length_or_distance"},
        {T::SubLengthCurvilinear, L"length_curvilinear"},
        {T::SubAngle, L"angle"},
        {T::SubRadius, L"radius"},
        {T::SubRadiusTangent, L"radius_tangent"},
        {T::SubRadiusCylinder, L"radius_cylinder"},
        {T::SubRadiusEdge, L"radius_edge"},
        {T::SubDiameter, L"diameter"},
        {T::SubDiameterTangent, L"diameter_tangent"},
        {T::SubDiameterCylinder, L"diameter_cylinder"},
        {T::SubDiameterEdge, L"diameter_edge"},
        {T::SubDiameterCone, L"diameter_cone"},
        {T::SubChamfer, L"chamfer"},
        {T::SubSlope, L"slope"},
        {T::SubDimGdt, L"dim_gdt"},
        {T::SubDimDatumFeature, L"dim_datum_feature"},
        {T::SubDimDatumTarget, L"dim_datum_target"},
        {T::SubDimBalloon, L"dim_balloon"},
        {T::SubNoDim, L"no_dim"},
        {T::SubAngleArc, L"angle_arc"},
        {T::SubLengthCircular, L"length_circular"},
        {T::SubFillet, L"fillet"},
        {T::SubCoordDimension2d, L"coord_dimension_2d"},
        {T::SubCoordDimension3d, L"coord_dimension_3d"},
    };
    return table;
}

template <>
const EnumTable<ExcPMIDimension::EDimUnit>& enumTable<ExcPMIDimension::EDimUnit>() {
    using T = ExcPMIDimension;
    static const EnumTable<T::EDimUnit> table{
        {T::UnitNone, L"none"},
        {T::UnitMm, L"mm"},
        {T::UnitInch, L"inch"},
        {T::UnitMeter, L"meter"},
        {T::UnitCm, L"cm"},
        {T::UnitKm, L"km"},
        {T::UnitFoot, L"foot"},
        {T::UnitFIF64, L"f_i_f64"},
        {T::UnitFIF16, L"f_i_f16"},
        {T::UnitFIDec, L"f_i_dec"},
        {T::UnitDegree, L"degree"},
        {T::UnitMinute, L"minute"},
        {T::UnitSecond, L"second"},
        {T::UnitRadian, L"radian"},
        {T::UnitGrade, L"grade"},
    };
    return table;
}

template <>
const EnumTable<ExcPMIDimension::EArrowSymbol>& enumTable<ExcPMIDimension::EArrowSymbol>() {
    using T = ExcPMIDimension;
    static const EnumTable<T::EArrowSymbol> table{
        {T::ArrowNotUsed, L"not_used"},
        {T::ArrowCross, L"cross"},
        {T::ArrowPlus, L"plus"},
        {T::ArrowConcentric, L"concentric"},
        {T::ArrowCoincident, L"coincident"},
        {T::ArrowFullCircle, L"full_circle"},
        {T::ArrowFullSquare, L"full_square"},
        {T::ArrowFullStar, L"full_star"},
        {T::ArrowDot, L"dot"},
        {T::ArrowSmallDot, L"small_dot"},
        {T::ArrowMisc1, L"misc1"},
        {T::ArrowMisc2, L"misc2"},
        {T::ArrowFullCircle2, L"full_circle2"},
        {T::ArrowFullSquare2, L"full_square2"},
        {T::ArrowOpenArrow, L"open_arrow"},
        {T::ArrowUnfilledArrow, L"unfilled_arrow"},
        {T::ArrowBlankedArrow, L"blanked_arrow"},
        {T::ArrowFilledArrow, L"filled_arrow"},
        {T::ArrowUnfilledCircle, L"unfilled_circle"},
        {T::ArrowBlankedCircle, L"blanked_circle"},
        {T::ArrowFilledCircle, L"filled_circle"},
        {T::ArrowCrossedCircle, L"crossed_circle"},
        {T::ArrowBlankedSquare, L"blanked_square"},
        {T::ArrowFilledSquare, L"filled_square"},
        {T::ArrowBlankedTriangle, L"blanked_triangle"},
        {T::ArrowFilledTriangle, L"filled_triangle"},
        {T::ArrowManipulatorSquare, L"manipulator_square"},
        {T::ArrowManipulatorDiamond, L"manipulator_diamond"},
        {T::ArrowManipulatorCircle, L"manipulator_circle"},
        {T::ArrowManipulatorTriangle, L"manipulator_triangle"},
        {T::ArrowDoubleOpenArrow, L"double_open_arrow"},
        {T::ArrowWave, L"wave"},
    };
    return table;
}

template <>
const EnumTable<ExcPMIDimension::ECalloutFeatureAnnotationType>& enumTable<ExcPMIDimension::ECalloutFeatureAnnotationType>() {
    using T = ExcPMIDimension;
    static const EnumTable<T::ECalloutFeatureAnnotationType> table{
        {T::CalloutUnknown, L"unknown"},
        {T::CalloutHoleUnknown, L"hole_unknown"},
        {T::CalloutHoleFit, L"hole_callout_fit"},
        {T::CalloutHoleDepth, L"hole_callout_depth"},
        {T::CalloutHoleDiameter, L"hole_callout_diameter"},
        {T::CalloutHoleScrewSize, L"hole_callout_screw_size"},
        {T::CalloutHoleCounterBoreDepth, L"hole_callout_counter_bore_depth"},
        {T::CalloutHoleCounterBoreDiameter, L"hole_callout_counter_bore_diameter"},
        {T::CalloutHolePatternCount, L"hole_callout_pattern_count"},
        {T::CalloutHolePitch, L"hole_callout_pitch"},
        {T::CalloutHoleAngle, L"hole_callout_angle"},
        {T::CalloutHolePatTaperAngle, L"hole_callout_pat_taper_angle"},
        {T::CalloutHoleCounterSinkDiameter, L"hole_callout_counter_sink_diameter"},
        {T::CalloutHoleCounterSinkAngle, L"hole_callout_counter_sink_angle"},
        {T::CalloutHoleThreadDepth, L"hole_callout_thread_depth"},
        {T::CalloutHoleThreadSize, L"hole_callout_thread_size"},
        {T::CalloutHoleThreadMinorDia, L"hole_callout_thread_minor_dia"},
        {T::CalloutHoleThreadMajorDia, L"hole_callout_thread_major_dia"},
        {T::CalloutHoleTapDrillDia, L"hole_callout_tap_drill_dia"},
    };
    return table;
}

ExcPMIDimension::ExcPMIDimension() = default;
ExcPMIDimension::ExcPMIDimension(const ExcPMIDimension&) = default;
ExcPMIDimension& ExcPMIDimension::operator=(const ExcPMIDimension&) = default;
ExcPMIDimension::~ExcPMIDimension() = default;

template <class Io, class Self>
void ExcPMIDimension::members(Io& io, Self& self) {
    io(L"main_type", self.m_mainType);
    io(L"sub_type", self.m_subType);
    io(L"callout_feature_annotation_type", self.m_calloutFeatureAnnotationType);
    io(L"coord", self.m_coord, json::whenArray);
    io(L"value", self.m_value, json::anyNumber);
    io(L"unit", self.m_unit);
    io(L"value_precision", self.m_valuePrecision, json::anyNumber);
    io(L"tolerance_precision_value", self.m_tolerancePrecisionValue, json::anyNumber);
    io(L"numerical_tolerance", self.m_numericalTolerance,
       json::exactSize("ExcPMIDimension: invalid size of numerical_tolerance array."));
    io(L"alphanumerical_tolerance", self.m_alphanumericalTolerance,
       json::exactSize("ExcPMIDimension: invalid size of alphanumerical_tolerance array."));
    io(L"pmi_dimension_note", self.m_note, json::newObject);
    io(L"text_callout", self.m_calloutText);
    io(L"fake_numerical_value", self.m_fakeNumericalValue,
       json::setsFlag(self.m_hasFakeNumericalValue, json::anyNumber));
    io(L"fake_alphanumerical_value", self.m_fakeAlphanumericalValue,
       json::setsFlag(self.m_hasFakeAlphanumericalValue));
    io(L"is_driving", self.m_isDriving);
    io(L"line", self.m_line, json::exactSize("ExcPMIDimension: invalid size of line array.", json::whenArray));
    io(L"arrows", self.m_arrows, json::exactSize("ExcPMIDimension: invalid size of arrows array."));
    io(L"is_symbol_outside", self.m_isSymbolOutside);
}

XCH_JSON_IO_DERIVED(ExcPMIDimension, ExcPMIAnnotation)

} // namespace xch

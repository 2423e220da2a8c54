// Dimensions: a measured value with its kind, unit, tolerances, text,
// dimension line and arrows.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include <xch_api/xch_api_pmi_annotation.h>

namespace xch {

// JSON: the annotation keys (xch_api_pmi_annotation.h), then "main_type",
// "sub_type", "callout_feature_annotation_type", "coord" ([x, y, z]),
// "value", "unit", "value_precision", "tolerance_precision_value",
// "numerical_tolerance" ([upper, lower]), "alphanumerical_tolerance"
// ([upper, lower]), "pmi_dimension_note" (ExcPMIText object, null when
// there is none), "text_callout", "fake_numerical_value",
// "fake_alphanumerical_value", "is_driving", "line" ([start, end], each an
// [x, y] array), "arrows" ([start symbol, end symbol]), "is_symbol_outside".
//
// Reading: the four pairs are taken only from arrays of exactly two
// elements, each element only when of its kind (a JSON double for the
// numerical tolerances: an integer literal is skipped; a string; a point
// array; a symbol string); another size logs "ExcPMIDimension: invalid
// size of <key> array." as a warning and changes nothing.
// hasFakeNumericalValue becomes whether "fake_numerical_value" was read as
// a number, so a missing key clears it; hasFakeAlphanumericalValue likewise
// from "fake_alphanumerical_value" and a string. Unknown enumeration
// strings read as MainBasic, SubAngle, UnitCm, CalloutHoleAngle and
// ArrowBlankedArrow (each table's smallest string).
class XCH_API ExcPMIDimension : public ExcPMIAnnotation {
public:
    enum EMainType : std::int32_t {
        MainUnknown = 0,   // "unknown"
        MainBasic,         // "basic"
        MainReference,     // "reference"
        MainTolerance,     // "tolerance"
        MainCoordDim,      // "coord_dim"
        MainHoleCallout    // "hole_callout"
    };

    enum ESubType : std::int32_t {
        SubDistance = 0,          // "distance"
        SubDistanceOffset,        // "distance_offset"
        SubLength,                // "length"
        SubLengthOrDistance,      // "length_or_distance"
        SubLengthCurvilinear,     // "length_curvilinear"
        SubAngle,                 // "angle"
        SubRadius,                // "radius"
        SubRadiusTangent,         // "radius_tangent"
        SubRadiusCylinder,        // "radius_cylinder"
        SubRadiusEdge,            // "radius_edge"
        SubDiameter,              // "diameter"
        SubDiameterTangent,       // "diameter_tangent"
        SubDiameterCylinder,      // "diameter_cylinder"
        SubDiameterEdge,          // "diameter_edge"
        SubDiameterCone,          // "diameter_cone"
        SubChamfer,               // "chamfer"
        SubSlope,                 // "slope"
        SubDimGdt,                // "dim_gdt"
        SubDimDatumFeature,       // "dim_datum_feature"
        SubDimDatumTarget,        // "dim_datum_target"
        SubDimBalloon,            // "dim_balloon"
        SubNoDim,                 // "no_dim"
        SubAngleArc,              // "angle_arc"
        SubLengthCircular,        // "length_circular"
        SubFillet,                // "fillet"
        SubCoordDimension2d,      // "coord_dimension_2d"
        SubCoordDimension3d       // "coord_dimension_3d"
    };

    // The unit the value is shown in. The three feet-and-inches forms have
    // fractions in 64ths, in 16ths and in decimals.
    enum EDimUnit : std::int32_t {
        UnitNone = 0,     // "none"
        UnitMm,           // "mm"
        UnitInch,         // "inch"
        UnitMeter,        // "meter"
        UnitCm,           // "cm"
        UnitKm,           // "km"
        UnitFoot,         // "foot"
        UnitFIF64,        // "f_i_f64"
        UnitFIF16,        // "f_i_f16"
        UnitFIDec,        // "f_i_dec"
        UnitDegree,       // "degree"
        UnitMinute,       // "minute"
        UnitSecond,       // "second"
        UnitRadian,       // "radian"
        UnitGrade         // "grade"
    };

    enum EArrowSymbol : std::int32_t {
        ArrowNotUsed = 0,           // "not_used"
        ArrowCross,                 // "cross"
        ArrowPlus,                  // "plus"
        ArrowConcentric,            // "concentric"
        ArrowCoincident,            // "coincident"
        ArrowFullCircle,            // "full_circle"
        ArrowFullSquare,            // "full_square"
        ArrowFullStar,              // "full_star"
        ArrowDot,                   // "dot"
        ArrowSmallDot,              // "small_dot"
        ArrowMisc1,                 // "misc1"
        ArrowMisc2,                 // "misc2"
        ArrowFullCircle2,           // "full_circle2"
        ArrowFullSquare2,           // "full_square2"
        ArrowOpenArrow,             // "open_arrow"
        ArrowUnfilledArrow,         // "unfilled_arrow"
        ArrowBlankedArrow,          // "blanked_arrow"
        ArrowFilledArrow,           // "filled_arrow"
        ArrowUnfilledCircle,        // "unfilled_circle"
        ArrowBlankedCircle,         // "blanked_circle"
        ArrowFilledCircle,          // "filled_circle"
        ArrowCrossedCircle,         // "crossed_circle"
        ArrowBlankedSquare,         // "blanked_square"
        ArrowFilledSquare,          // "filled_square"
        ArrowBlankedTriangle,       // "blanked_triangle"
        ArrowFilledTriangle,        // "filled_triangle"
        ArrowManipulatorSquare,     // "manipulator_square"
        ArrowManipulatorDiamond,    // "manipulator_diamond"
        ArrowManipulatorCircle,     // "manipulator_circle"
        ArrowManipulatorTriangle,   // "manipulator_triangle"
        ArrowDoubleOpenArrow,       // "double_open_arrow"
        ArrowWave                   // "wave"
    };

    // What a hole callout's value is.
    enum ECalloutFeatureAnnotationType : std::int32_t {
        CalloutUnknown = 0,                   // "unknown"
        CalloutHoleUnknown,                   // "hole_unknown"
        CalloutHoleFit,                       // "hole_callout_fit"
        CalloutHoleDepth,                     // "hole_callout_depth"
        CalloutHoleDiameter,                  // "hole_callout_diameter"
        CalloutHoleScrewSize,                 // "hole_callout_screw_size"
        CalloutHoleCounterBoreDepth,          // "hole_callout_counter_bore_depth"
        CalloutHoleCounterBoreDiameter,       // "hole_callout_counter_bore_diameter"
        CalloutHolePatternCount,              // "hole_callout_pattern_count"
        CalloutHolePitch,                     // "hole_callout_pitch"
        CalloutHoleAngle,                     // "hole_callout_angle"
        CalloutHolePatTaperAngle,             // "hole_callout_pat_taper_angle"
        CalloutHoleCounterSinkDiameter,       // "hole_callout_counter_sink_diameter"
        CalloutHoleCounterSinkAngle,          // "hole_callout_counter_sink_angle"
        CalloutHoleThreadDepth,               // "hole_callout_thread_depth"
        CalloutHoleThreadSize,                // "hole_callout_thread_size"
        CalloutHoleThreadMinorDia,            // "hole_callout_thread_minor_dia"
        CalloutHoleThreadMajorDia,            // "hole_callout_thread_major_dia"
        CalloutHoleTapDrillDia                // "hole_callout_tap_drill_dia"
    };

    ExcPMIDimension();
    ExcPMIDimension(const ExcPMIDimension&);
    ExcPMIDimension& operator=(const ExcPMIDimension&);
    ~ExcPMIDimension() override;

    EPMIAnnotationType type() const override { return PMIDimension; }

    EMainType mainType() const { return m_mainType; }
    void setMainType(EMainType type) { m_mainType = type; }
    ESubType subType() const { return m_subType; }
    void setSubType(ESubType type) { m_subType = type; }
    ECalloutFeatureAnnotationType calloutFeatureAnnotationType() const { return m_calloutFeatureAnnotationType; }
    void setCalloutFeatureAnnotationType(ECalloutFeatureAnnotationType type) { m_calloutFeatureAnnotationType = type; }
    // A coordinate dimension's point.
    const ExcVector3d& coord() const { return m_coord; }
    void setCoord(const ExcVector3d& coord) { m_coord = coord; }
    double value() const { return m_value; }
    void setValue(double value) { m_value = value; }
    EDimUnit unit() const { return m_unit; }
    void setUnit(EDimUnit unit) { m_unit = unit; }
    double valuePrecision() const { return m_valuePrecision; }
    void setValuePrecision(double precision) { m_valuePrecision = precision; }
    double tolerancePrecisionValue() const { return m_tolerancePrecisionValue; }
    void setTolerancePrecisionValue(double precision) { m_tolerancePrecisionValue = precision; }
    double numericalToleranceUpper() const { return m_numericalTolerance[0]; }
    void setNumericalToleranceUpper(double tolerance) { m_numericalTolerance[0] = tolerance; }
    double numericalToleranceLower() const { return m_numericalTolerance[1]; }
    void setNumericalToleranceLower(double tolerance) { m_numericalTolerance[1] = tolerance; }
    // Tolerances given as text (e.g. a fit class "H7").
    const std::wstring& alphanumericalToleranceUpper() const { return m_alphanumericalTolerance[0]; }
    void setAlphanumericalToleranceUpper(const std::wstring& tolerance) { m_alphanumericalTolerance[0] = tolerance; }
    const std::wstring& alphanumericalToleranceLower() const { return m_alphanumericalTolerance[1]; }
    void setAlphanumericalToleranceLower(const std::wstring& tolerance) { m_alphanumericalTolerance[1] = tolerance; }
    // The text around the value, or null.
    const std::shared_ptr<ExcPMIText>& note() const { return m_note; }
    void setNote(const std::shared_ptr<ExcPMIText>& note) { m_note = note; }
    const std::wstring& calloutText() const { return m_calloutText; }
    void setCalloutText(const std::wstring& text) { m_calloutText = text; }
    // A value shown instead of the measured one.
    bool hasFakeNumericalValue() const { return m_hasFakeNumericalValue; }
    void setHasFakeNumericalValue(bool has) { m_hasFakeNumericalValue = has; }
    double fakeNumericalValue() const { return m_fakeNumericalValue; }
    void setFakeNumericalValue(double value) { m_fakeNumericalValue = value; }
    bool hasFakeAlphanumericalValue() const { return m_hasFakeAlphanumericalValue; }
    void setHasFakeAlphanumericalValue(bool has) { m_hasFakeAlphanumericalValue = has; }
    const std::wstring& fakeAlphanumericalValue() const { return m_fakeAlphanumericalValue; }
    void setFakeAlphanumericalValue(const std::wstring& value) { m_fakeAlphanumericalValue = value; }
    bool isDriving() const { return m_isDriving; }
    void setDriving(bool driving) { m_isDriving = driving; }
    // The dimension line and the symbols at its ends.
    const ExcVector2d& lineStart() const { return m_line[0]; }
    void setLineStart(const ExcVector2d& point) { m_line[0] = point; }
    const ExcVector2d& lineEnd() const { return m_line[1]; }
    void setLineEnd(const ExcVector2d& point) { m_line[1] = point; }
    EArrowSymbol arrowSymbolStart() const { return m_arrows[0]; }
    void setArrowSymbolStart(EArrowSymbol symbol) { m_arrows[0] = symbol; }
    EArrowSymbol arrowSymbolEnd() const { return m_arrows[1]; }
    void setArrowSymbolEnd(EArrowSymbol symbol) { m_arrows[1] = symbol; }
    bool isSymbolOutside() const { return m_isSymbolOutside; }
    void setSymbolOutside(bool outside) { m_isSymbolOutside = outside; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    EMainType m_mainType = MainUnknown;
    ESubType m_subType = SubNoDim;
    ECalloutFeatureAnnotationType m_calloutFeatureAnnotationType = CalloutHoleUnknown;
    ExcVector3d m_coord;
    double m_value = 0.0;
    EDimUnit m_unit = UnitNone;
    double m_valuePrecision = 0.0;
    double m_tolerancePrecisionValue = 0.0;
    std::array<double, 2> m_numericalTolerance{};           // upper, lower
    std::array<std::wstring, 2> m_alphanumericalTolerance;  // upper, lower
    std::shared_ptr<ExcPMIText> m_note;
    std::wstring m_calloutText;
    bool m_hasFakeNumericalValue = false;
    double m_fakeNumericalValue = 0.0;
    bool m_hasFakeAlphanumericalValue = false;
    std::wstring m_fakeAlphanumericalValue;
    bool m_isDriving = false;
    std::array<ExcVector2d, 2> m_line;                      // start, end
    std::array<EArrowSymbol, 2> m_arrows{ArrowNotUsed, ArrowNotUsed};
    bool m_isSymbolOutside = false;
};

template <> XCH_API const EnumTable<ExcPMIDimension::EMainType>& enumTable<ExcPMIDimension::EMainType>();
template <> XCH_API const EnumTable<ExcPMIDimension::ESubType>& enumTable<ExcPMIDimension::ESubType>();
template <> XCH_API const EnumTable<ExcPMIDimension::EDimUnit>& enumTable<ExcPMIDimension::EDimUnit>();
template <> XCH_API const EnumTable<ExcPMIDimension::EArrowSymbol>& enumTable<ExcPMIDimension::EArrowSymbol>();
template <> XCH_API const EnumTable<ExcPMIDimension::ECalloutFeatureAnnotationType>&
enumTable<ExcPMIDimension::ECalloutFeatureAnnotationType>();

} // namespace xch

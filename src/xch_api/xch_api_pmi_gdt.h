// Geometric tolerance frames (GD&T): the tolerance kind, the rows of the
// frame with their tolerance values, zone modifiers and datum reference
// frames (datum references with their modified datums).
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_pmi_annotation.h>

namespace xch {

// JSON: the annotation keys (xch_api_pmi_annotation.h), then
// "tolerance_type" (string), "all_around" (number), "pmi_gdt_note"
// (ExcPMIText object), "pmi_gdt_rows" (array of Row objects). An unknown
// "tolerance_type" string reads as LocationPositionOfASurface.
class XCH_API ExcPMIGDT : public ExcPMIAnnotation {
public:
    // The geometric characteristic the frame controls.
    enum EToleranceType : std::int32_t {
        Unknown = 0,                     // "unknown"
        FormStraightness,                // "form_straightness"
        FormFlatness,                    // "form_flatness"
        FormCircularity,                 // "form_circularity"
        FormCylindricity,                // "form_cylindricity"
        FormProfileAnyLine,              // "form_profile_any_line"
        FormProfileAnySurface,           // "form_profile_any_surface"
        OrientationParallelism,          // "orientation_parallelism"
        OrientationPerpendicularity,     // "orientation_perpendicularity"
        OrientationAngularity,           // "orientation_angularity"
        LocationTruePosition,            // "location_true_position"
        LocationConcentricity,           // "location_concentricity"
        LocationCoaxiality,              // "location_coaxiality"
        LocationSymmetry,                // "location_symmetry"
        LocationPositionOfAnyLine,       // "location_position_of_any_line"
        LocationPositionOfASurface,      // "Location_position_of_a_surface" (capital L on the wire)
        RunOutCircular,                  // "run_out_circular"
        RunOutTotal                      // "run_out_total"
    };

    // Modifiers of a tolerance zone or of a datum. An unknown string reads
    // as CircleU.
    enum EToleranceModifier : std::int32_t {
        NoModifier = 0,                                   // "no_modifier"
        MaterialConditionUnsupported,                     // "material_condition_unsupported"
        MaterialConditionNoModifier,                      // "material_condition_no_modifier"
        MaterialConditionMaximum,                         // "material_condition_maximum"
        MaterialConditionLeast,                           // "material_condition_least"
        MaterialConditionRegardlessOfFeatureSize,         // "material_condition_regardless_of_feature_size"
        TangentPlaneUnsupported,                          // "tangent_plane_unsupported"
        TangentPlaneNonTangent,                           // "tangent_plane_non_tangent"
        TangentPlaneTangent,                              // "tangent_plane_tangent"
        FreeStateUnsupported,                             // "free_state_unsupported"
        FreeStateFree,                                    // "free_state_free"
        FreeStateNotFree,                                 // "free_state_not_free"
        StatisticalSymbol,                                // "statistical_symbol"
        CommonZone,                                       // "common_zone"
        UnequallyDisposedZone,                            // "unequally_disposed_zone"
        ProjectedStateProjected,                          // "projected_state_projected"
        ProjectedStateNotProjected,                       // "projected_state_not_projected"
        CircleU,                                          // "circle_u"
        Maximum,                                          // "maximum"
        MinimaxFeature,                                   // "minimax_feature"
        DerivedFeature,                                   // "derived_feature"
        DynamicProfile,                                   // "dynamic_profile"
        LeastSquareFeature,                               // "least_square_feature"
        MaximumInscribedFeature,                          // "maximum_inscribed_feature"
        MinimumCircumscribedFeature,                      // "minimum_circumscribed_feature"
        SeparateZone,                                     // "separate_zone"
        OffsetZone,                                       // "offset_zone"
        VariableAngle,                                    // "variable_angle"
        OrientationConstraint,                            // "orientation_constraint"
        MinimaxAssociation,                               // "minimax_association"
        MinimaxAssociationWithExternalConstraint,         // "minimax_association_with_external_constraint"
        MinimaxAssociationWithInternalConstraint,         // "minimax_association_with_internal_constraint"
        LeastSquareAssociation,                           // "least_square_association"
        LeastSquareAssociationWithExternalConstraint,     // "least_square_association_with_external_constraint"
        LeastSquareAssociationWithInternalConstraint,     // "least_square_association_with_internal_constraint"
        MinimumCircumscribedAssociation,                  // "minimum_circumscribed_association"
        MaximumInscribedAssociation,                      // "maximum_inscribed_association"
        TotalRangeOfDeviations,                           // "total_range_of_deviations"
        PeakHeight,                                       // "peak_height"
        ValleyDepth,                                      // "valley_depth"
        StandardDeviation                                 // "standard_deviation"
    };

    // The symbol in front of a tolerance value. An unknown string reads as
    // ValueDiameter.
    enum EToleranceValueType : std::int32_t {
        ValueNone = 0,      // "none"
        ValueDiameter,      // "diameter"
        ValueRadius,        // "radius"
        ValueSpherical,     // "spherical"
        ValueSquare         // "square"
    };

    // A zone modifier with its optional magnitude (e.g. a projected zone's
    // height). JSON: {"zone_modifier_zone": string} plus
    // "zone_modifier_magnitude" (number) only when hasMagnitude. Reading a
    // list takes only object elements whose "zone_modifier_zone" is a
    // string; hasMagnitude says whether a magnitude was read as a number.
    struct ZoneModifier {
        EToleranceModifier modifier = NoModifier;
        double magnitude = 0.0;
        bool hasMagnitude = false;
    };
    using ZoneModifierList = std::vector<ZoneModifier>;

    // A datum as referenced in a frame, with its modifiers.
    // JSON: "datum_id" (string), "zone_modifiers" (array).
    class XCH_API ModifiedDatum : public IJsonObject {
    public:
        ModifiedDatum();
        explicit ModifiedDatum(const std::wstring& datumId);
        ModifiedDatum(const ModifiedDatum&);
        ModifiedDatum(ModifiedDatum&&) noexcept;
        ModifiedDatum& operator=(const ModifiedDatum&);
        ModifiedDatum& operator=(ModifiedDatum&&) noexcept;
        ~ModifiedDatum() override;

        const std::wstring& datumId() const { return m_datumId; }
        void setDatumId(const std::wstring& datumId) { m_datumId = datumId; }
        const ZoneModifierList& zoneModifiers() const { return m_zoneModifiers; }
        // Appends {modifier, 0, no magnitude}.
        void addZoneModifier(EToleranceModifier modifier);
        // Appends {modifier, magnitude, with magnitude}.
        void addZoneModifier(EToleranceModifier modifier, double magnitude);

        void readObject(const JsonValue& value) override;
        void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

        template <class Io, class Self>
        static void members(Io& io, Self& self);

    private:
        std::wstring m_datumId;
        ZoneModifierList m_zoneModifiers;
    };

    // One compartment of a datum reference frame: the datum letter(s) as
    // shown, the text around them and the datums with their modifiers (a
    // common datum such as A-B has two).
    // JSON: "label" (string), "pmi_gdt_datum_ref_text" (ExcPMIText object,
    // null when there is none; read into a new text when an object),
    // "modified_datums" (array of ModifiedDatum objects).
    class XCH_API DatumRef : public IJsonObject {
    public:
        DatumRef();
        explicit DatumRef(const std::wstring& label);
        DatumRef(const DatumRef&);
        DatumRef(DatumRef&&) noexcept;
        DatumRef& operator=(const DatumRef&);
        DatumRef& operator=(DatumRef&&) noexcept;
        ~DatumRef() override;

        const std::wstring& label() const { return m_label; }
        void setLabel(const std::wstring& label) { m_label = label; }
        const std::shared_ptr<ExcPMIText>& text() const { return m_text; }
        void setText(const std::shared_ptr<ExcPMIText>& text) { m_text = text; }
        const std::vector<ModifiedDatum>& modifiedDatums() const { return m_modifiedDatums; }
        void addModifiedDatum(const ModifiedDatum& datum) { m_modifiedDatums.push_back(datum); }
        void addModifiedDatum(ModifiedDatum&& datum) { m_modifiedDatums.push_back(std::move(datum)); }

        void readObject(const JsonValue& value) override;
        void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

        template <class Io, class Self>
        static void members(Io& io, Self& self);

    private:
        std::wstring m_label;
        std::shared_ptr<ExcPMIText> m_text;
        std::vector<ModifiedDatum> m_modifiedDatums;
    };

    // A datum reference frame (e.g. A|B|C): its compartments in order.
    // JSON: "label" (string), "datum_refs" (array of DatumRef objects).
    class XCH_API Frame : public IJsonObject {
    public:
        Frame();
        explicit Frame(const std::wstring& label);
        Frame(const Frame&);
        Frame& operator=(const Frame&);
        ~Frame() override;

        const std::wstring& label() const { return m_label; }
        void setLabel(const std::wstring& label) { m_label = label; }
        const std::vector<DatumRef>& datumRefs() const { return m_datumRefs; }
        // Appends a copy of `datumRef`.
        void addDatumRef(const DatumRef& datumRef) { m_datumRefs.push_back(datumRef); }

        void readObject(const JsonValue& value) override;
        void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

        template <class Io, class Self>
        static void members(Io& io, Self& self);

    private:
        std::wstring m_label;
        std::vector<DatumRef> m_datumRefs;
    };

    // One line of the tolerance frame.
    // JSON: "tolerance_value_type" (string), "tolerance_value" (number),
    // "refine_tolerance" (number), "rate_unit" ([first, second]; taken only
    // as an array of exactly two elements, each element only when it is a
    // JSON double; another size logs "ExcPMIGDT::Row: invalid size of
    // rate_unit array" as a warning and changes nothing), "zone_modifiers"
    // (array), "ref_frame" (Frame object, null when there is none; read
    // into a new frame when an object). A value that is not an object logs
    // "ExcPMIGDT object should have a JSON object type.".
    class XCH_API Row : public IJsonObject {
    public:
        Row();
        Row(const Row&);
        Row& operator=(const Row&);
        ~Row() override;

        EToleranceValueType toleranceValueType() const { return m_toleranceValueType; }
        void setToleranceValueType(EToleranceValueType type) { m_toleranceValueType = type; }
        double toleranceValue() const { return m_toleranceValue; }
        void setToleranceValue(double value) { m_toleranceValue = value; }
        // The refinement tolerance of a per-unit tolerance (e.g. 0.1 per
        // 100), carried through unchanged.
        double refineTolerance() const { return m_refineTolerance; }
        void setRefineTolerance(double value) { m_refineTolerance = value; }
        // The two numbers of the unit area or length of a per-unit
        // tolerance, carried through unchanged.
        void rateUnits(double& first, double& second) const;
        void setRateUnit(double first, double second);
        const ZoneModifierList& zoneModifiers() const { return m_zoneModifiers; }
        void addZoneModifier(EToleranceModifier modifier);
        void addZoneModifier(EToleranceModifier modifier, double magnitude);
        // The datum reference frame of this line, or null.
        const std::shared_ptr<Frame>& referenceFrame() const { return m_referenceFrame; }
        void setReferenceFrame(const std::shared_ptr<Frame>& frame) { m_referenceFrame = frame; }

        void readObject(const JsonValue& value) override;
        void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

        template <class Io, class Self>
        static void members(Io& io, Self& self);

    private:
        EToleranceValueType m_toleranceValueType = ValueNone;
        double m_toleranceValue = 0.0;
        double m_refineTolerance = 0.0;
        std::array<double, 2> m_rateUnit{};
        ZoneModifierList m_zoneModifiers;
        std::shared_ptr<Frame> m_referenceFrame;
    };

    using RowList = std::vector<std::shared_ptr<Row>>;

    ExcPMIGDT();
    ExcPMIGDT(const ExcPMIGDT&);
    ExcPMIGDT& operator=(const ExcPMIGDT&);
    ~ExcPMIGDT() override;

    EPMIAnnotationType type() const override { return PMIGDT; }

    EToleranceType toleranceType() const { return m_toleranceType; }
    void setToleranceType(EToleranceType type) { m_toleranceType = type; }
    // The lines of the frame, top down. A null row is not added (logged as
    // a warning).
    const RowList& gdtRows() const { return m_gdtRows; }
    void addGdtRow(const std::shared_ptr<Row>& row);
    // The all-around flag, carried as a number (non-zero: all around).
    double allAround() const { return m_allAround; }
    void setAllAround(double allAround) { m_allAround = allAround; }
    // The text around the frame, or null.
    const std::shared_ptr<ExcPMIText>& note() const { return m_note; }
    void setNote(const std::shared_ptr<ExcPMIText>& note) { m_note = note; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    EToleranceType m_toleranceType = Unknown;
    RowList m_gdtRows;
    double m_allAround = 0.0;
    std::shared_ptr<ExcPMIText> m_note;
};

template <> XCH_API const EnumTable<ExcPMIGDT::EToleranceType>& enumTable<ExcPMIGDT::EToleranceType>();
template <> XCH_API const EnumTable<ExcPMIGDT::EToleranceModifier>& enumTable<ExcPMIGDT::EToleranceModifier>();
template <> XCH_API const EnumTable<ExcPMIGDT::EToleranceValueType>& enumTable<ExcPMIGDT::EToleranceValueType>();

} // namespace xch

// Geometric tolerance frames.
#include <xch_api/xch_api_pmi_gdt.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcPMIGDT::EToleranceType>& enumTable<ExcPMIGDT::EToleranceType>() {
    using T = ExcPMIGDT;
    static const EnumTable<T::EToleranceType> table{
        {T::Unknown, L"unknown"},
        {T::FormStraightness, L"form_straightness"},
        {T::FormFlatness, L"form_flatness"},
        {T::FormCircularity, L"form_circularity"},
        {T::FormCylindricity, L"form_cylindricity"},
        {T::FormProfileAnyLine, L"form_profile_any_line"},
        {T::FormProfileAnySurface, L"form_profile_any_surface"},
        {T::OrientationParallelism, L"orientation_parallelism"},
        {T::OrientationPerpendicularity, L"orientation_perpendicularity"},
        {T::OrientationAngularity, L"orientation_angularity"},
        {T::LocationTruePosition, L"location_true_position"},
        {T::LocationConcentricity, L"location_concentricity"},
        {T::LocationCoaxiality, L"location_coaxiality"},
        {T::LocationSymmetry, L"location_symmetry"},
        {T::LocationPositionOfAnyLine, L"location_position_of_any_line"},
        {T::LocationPositionOfASurface, L"Location_position_of_a_surface"},
        {T::RunOutCircular, L"run_out_circular"},
        {T::RunOutTotal, L"run_out_total"},
    };
    return table;
}

template <>
const EnumTable<ExcPMIGDT::EToleranceModifier>& enumTable<ExcPMIGDT::EToleranceModifier>() {
    using T = ExcPMIGDT;
    static const EnumTable<T::EToleranceModifier> table{
        {T::NoModifier, L"no_modifier"},
        {T::MaterialConditionUnsupported, L"material_condition_unsupported"},
        {T::MaterialConditionNoModifier, L"material_condition_no_modifier"},
        {T::MaterialConditionMaximum, L"material_condition_maximum"},
        {T::MaterialConditionLeast, L"material_condition_least"},
        {T::MaterialConditionRegardlessOfFeatureSize, L"material_condition_regardless_of_feature_size"},
        {T::TangentPlaneUnsupported, L"tangent_plane_unsupported"},
        {T::TangentPlaneNonTangent, L"tangent_plane_non_tangent"},
        {T::TangentPlaneTangent, L"tangent_plane_tangent"},
        {T::FreeStateUnsupported, L"free_state_unsupported"},
        {T::FreeStateFree, L"free_state_free"},
        {T::FreeStateNotFree, L"free_state_not_free"},
        {T::StatisticalSymbol, L"statistical_symbol"},
        {T::CommonZone, L"common_zone"},
        {T::UnequallyDisposedZone, L"unequally_disposed_zone"},
        {T::ProjectedStateProjected, L"projected_state_projected"},
        {T::ProjectedStateNotProjected, L"projected_state_not_projected"},
        {T::CircleU, L"circle_u"},
        {T::Maximum, L"maximum"},
        {T::MinimaxFeature, L"minimax_feature"},
        {T::DerivedFeature, L"derived_feature"},
        {T::DynamicProfile, L"dynamic_profile"},
        {T::LeastSquareFeature, L"least_square_feature"},
        {T::MaximumInscribedFeature, L"maximum_inscribed_feature"},
        {T::MinimumCircumscribedFeature, L"minimum_circumscribed_feature"},
        {T::SeparateZone, L"separate_zone"},
        {T::OffsetZone, L"offset_zone"},
        {T::VariableAngle, L"variable_angle"},
        {T::OrientationConstraint, L"orientation_constraint"},
        {T::MinimaxAssociation, L"minimax_association"},
        {T::MinimaxAssociationWithExternalConstraint, L"minimax_association_with_external_constraint"},
        {T::MinimaxAssociationWithInternalConstraint, L"minimax_association_with_internal_constraint"},
        {T::LeastSquareAssociation, L"least_square_association"},
        {T::LeastSquareAssociationWithExternalConstraint, L"least_square_association_with_external_constraint"},
        {T::LeastSquareAssociationWithInternalConstraint, L"least_square_association_with_internal_constraint"},
        {T::MinimumCircumscribedAssociation, L"minimum_circumscribed_association"},
        {T::MaximumInscribedAssociation, L"maximum_inscribed_association"},
        {T::TotalRangeOfDeviations, L"total_range_of_deviations"},
        {T::PeakHeight, L"peak_height"},
        {T::ValleyDepth, L"valley_depth"},
        {T::StandardDeviation, L"standard_deviation"},
    };
    return table;
}

template <>
const EnumTable<ExcPMIGDT::EToleranceValueType>& enumTable<ExcPMIGDT::EToleranceValueType>() {
    using T = ExcPMIGDT;
    static const EnumTable<T::EToleranceValueType> table{
        {T::ValueNone, L"none"},
        {T::ValueDiameter, L"diameter"},
        {T::ValueRadius, L"radius"},
        {T::ValueSpherical, L"spherical"},
        {T::ValueSquare, L"square"},
    };
    return table;
}

namespace {

using ZoneModifier = ExcPMIGDT::ZoneModifier;

// "zone_modifiers": an array of {"zone_modifier_zone", and when the entry
// has one, "zone_modifier_magnitude"}. Reading appends one entry per object
// element whose zone is a string; the entry has a magnitude when one was
// read as a number.
struct ZoneModifiers {
    template <class Io, class Self>
    static void entryMembers(Io& io, Self& entry) {
        io(L"zone_modifier_zone", entry.modifier);
        io(L"zone_modifier_magnitude", entry.magnitude,
           json::writtenIf(entry.hasMagnitude, json::setsFlag(entry.hasMagnitude, json::anyNumber)));
    }

    bool write(JsonValue& v, JsonAllocator& a, const std::vector<ZoneModifier>& entries) const {
        v.SetArray();
        v.Reserve(static_cast<rapidjson::SizeType>(entries.size()), a);
        for (const ZoneModifier& entry : entries) {
            JsonValue item(rapidjson::kObjectType);
            json::Writer writer(item, a);
            entryMembers(writer, entry);
            v.PushBack(item, a);
        }
        return true;
    }
    void read(const JsonValue& v, std::vector<ZoneModifier>& entries) const {
        if (!v.IsArray()) return;
        for (const JsonValue& item : v.GetArray()) {
            json::Reader reader(item);
            const JsonValue* zone = reader.find(L"zone_modifier_zone");
            if (!zone || !zone->IsString()) continue;
            ZoneModifier entry;
            entryMembers(reader, entry);
            entries.push_back(entry);
        }
    }
};
constexpr ZoneModifiers zoneModifierList{};

void appendZoneModifier(std::vector<ZoneModifier>& entries, ExcPMIGDT::EToleranceModifier modifier,
                        double magnitude, bool hasMagnitude) {
    ZoneModifier entry;
    entry.modifier = modifier;
    entry.magnitude = magnitude;
    entry.hasMagnitude = hasMagnitude;
    entries.push_back(entry);
}

} // namespace

// ---- ExcPMIGDT::ModifiedDatum ------------------------------------------------------------------

ExcPMIGDT::ModifiedDatum::ModifiedDatum() = default;
ExcPMIGDT::ModifiedDatum::ModifiedDatum(const std::wstring& datumId) : m_datumId(datumId) {}
ExcPMIGDT::ModifiedDatum::ModifiedDatum(const ModifiedDatum&) = default;
ExcPMIGDT::ModifiedDatum::ModifiedDatum(ModifiedDatum&&) noexcept = default;
ExcPMIGDT::ModifiedDatum& ExcPMIGDT::ModifiedDatum::operator=(const ModifiedDatum&) = default;
ExcPMIGDT::ModifiedDatum& ExcPMIGDT::ModifiedDatum::operator=(ModifiedDatum&&) noexcept = default;
ExcPMIGDT::ModifiedDatum::~ModifiedDatum() = default;

void ExcPMIGDT::ModifiedDatum::addZoneModifier(EToleranceModifier modifier) {
    appendZoneModifier(m_zoneModifiers, modifier, 0.0, false);
}

void ExcPMIGDT::ModifiedDatum::addZoneModifier(EToleranceModifier modifier, double magnitude) {
    appendZoneModifier(m_zoneModifiers, modifier, magnitude, true);
}

template <class Io, class Self>
void ExcPMIGDT::ModifiedDatum::members(Io& io, Self& self) {
    io(L"datum_id", self.m_datumId);
    io(L"zone_modifiers", self.m_zoneModifiers, zoneModifierList);
}

XCH_JSON_IO(ExcPMIGDT::ModifiedDatum)

// ---- ExcPMIGDT::DatumRef -------------------------------------------------------------------------

ExcPMIGDT::DatumRef::DatumRef() = default;
ExcPMIGDT::DatumRef::DatumRef(const std::wstring& label) : m_label(label) {}
ExcPMIGDT::DatumRef::DatumRef(const DatumRef&) = default;
ExcPMIGDT::DatumRef::DatumRef(DatumRef&&) noexcept = default;
ExcPMIGDT::DatumRef& ExcPMIGDT::DatumRef::operator=(const DatumRef&) = default;
ExcPMIGDT::DatumRef& ExcPMIGDT::DatumRef::operator=(DatumRef&&) noexcept = default;
ExcPMIGDT::DatumRef::~DatumRef() = default;

template <class Io, class Self>
void ExcPMIGDT::DatumRef::members(Io& io, Self& self) {
    io(L"label", self.m_label);
    io(L"pmi_gdt_datum_ref_text", self.m_text, json::newObject);
    io(L"modified_datums", self.m_modifiedDatums, json::objectsOnly);
}

XCH_JSON_IO(ExcPMIGDT::DatumRef)

// ---- ExcPMIGDT::Frame ------------------------------------------------------------------------------

ExcPMIGDT::Frame::Frame() = default;
ExcPMIGDT::Frame::Frame(const std::wstring& label) : m_label(label) {}
ExcPMIGDT::Frame::Frame(const Frame&) = default;
ExcPMIGDT::Frame& ExcPMIGDT::Frame::operator=(const Frame&) = default;
ExcPMIGDT::Frame::~Frame() = default;

template <class Io, class Self>
void ExcPMIGDT::Frame::members(Io& io, Self& self) {
    io(L"label", self.m_label);
    io(L"datum_refs", self.m_datumRefs, json::objectsOnly);
}

XCH_JSON_IO(ExcPMIGDT::Frame)

// ---- ExcPMIGDT::Row -------------------------------------------------------------------------------

ExcPMIGDT::Row::Row() = default;
ExcPMIGDT::Row::Row(const Row&) = default;
ExcPMIGDT::Row& ExcPMIGDT::Row::operator=(const Row&) = default;
ExcPMIGDT::Row::~Row() = default;

void ExcPMIGDT::Row::rateUnits(double& first, double& second) const {
    first = m_rateUnit[0];
    second = m_rateUnit[1];
}

void ExcPMIGDT::Row::setRateUnit(double first, double second) { m_rateUnit = {first, second}; }

void ExcPMIGDT::Row::addZoneModifier(EToleranceModifier modifier) {
    appendZoneModifier(m_zoneModifiers, modifier, 0.0, false);
}

void ExcPMIGDT::Row::addZoneModifier(EToleranceModifier modifier, double magnitude) {
    appendZoneModifier(m_zoneModifiers, modifier, magnitude, true);
}

template <class Io, class Self>
void ExcPMIGDT::Row::members(Io& io, Self& self) {
    io(L"tolerance_value_type", self.m_toleranceValueType);
    io(L"tolerance_value", self.m_toleranceValue, json::anyNumber);
    io(L"refine_tolerance", self.m_refineTolerance, json::anyNumber);
    io(L"rate_unit", self.m_rateUnit, json::exactSize("ExcPMIGDT::Row: invalid size of rate_unit array"));
    io(L"zone_modifiers", self.m_zoneModifiers, zoneModifierList);
    io(L"ref_frame", self.m_referenceFrame, json::newObject);
}

// A row that is not an object is reported under its frame's name.
XCH_JSON_IO_CHECKED(ExcPMIGDT::Row, ::xch::json::expectObject(value, "ExcPMIGDT"))

// ---- ExcPMIGDT -------------------------------------------------------------------------------------

ExcPMIGDT::ExcPMIGDT() = default;
ExcPMIGDT::ExcPMIGDT(const ExcPMIGDT&) = default;
ExcPMIGDT& ExcPMIGDT::operator=(const ExcPMIGDT&) = default;
ExcPMIGDT::~ExcPMIGDT() = default;

void ExcPMIGDT::addGdtRow(const std::shared_ptr<Row>& row) {
    json::appendNonNull(m_gdtRows, row, "ExcPMIGDT: attempt to add null GDT Row object.");
}

template <class Io, class Self>
void ExcPMIGDT::members(Io& io, Self& self) {
    io(L"tolerance_type", self.m_toleranceType);
    io(L"all_around", self.m_allAround, json::anyNumber);
    io(L"pmi_gdt_note", self.m_note, json::newObject);
    io(L"pmi_gdt_rows", self.m_gdtRows, json::objectsOnly);
}

XCH_JSON_IO_DERIVED(ExcPMIGDT, ExcPMIAnnotation)

} // namespace xch

// Datums and datum targets.
#include <xch_api/xch_api_pmi_datum.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

// ---- ExcPMIDatum -----------------------------------------------------------------------------

ExcPMIDatum::ExcPMIDatum() = default;
ExcPMIDatum::ExcPMIDatum(const std::wstring& label) : m_label(label) {}
ExcPMIDatum::ExcPMIDatum(const ExcPMIDatum&) = default;
ExcPMIDatum& ExcPMIDatum::operator=(const ExcPMIDatum&) = default;
ExcPMIDatum::~ExcPMIDatum() = default;

template <class Io, class Self>
void ExcPMIDatum::members(Io& io, Self& self) {
    io(L"label", self.m_label);
    io(L"target_ids", self.m_targetIds);
}

XCH_JSON_IO_DERIVED(ExcPMIDatum, ExcPMIAnnotation)

// ---- ExcPMIDatumTarget -----------------------------------------------------------------------

template <>
const EnumTable<ExcPMIDatumTarget::ETargetType>& enumTable<ExcPMIDatumTarget::ETargetType>() {
    using T = ExcPMIDatumTarget;
    static const EnumTable<T::ETargetType> table{
        {T::Unknown, L"unknown"},
        {T::Point, L"point"},
        {T::Line, L"line"},
        {T::AreaCircular, L"area_circular"},
        {T::AreaRectangular, L"area_rectangular"},
        {T::AreaFace, L"area_face"},
        {T::Feature, L"feature"},
        {T::UserDefined, L"user_defined"},
    };
    return table;
}

ExcPMIDatumTarget::ExcPMIDatumTarget() = default;
ExcPMIDatumTarget::ExcPMIDatumTarget(const ExcPMIDatumTarget&) = default;
ExcPMIDatumTarget& ExcPMIDatumTarget::operator=(const ExcPMIDatumTarget&) = default;
ExcPMIDatumTarget::~ExcPMIDatumTarget() = default;

template <class Io, class Self>
void ExcPMIDatumTarget::members(Io& io, Self& self) {
    io(L"label", self.m_label);
    io(L"target_type", self.m_targetType);
    io(L"has_diameter", self.m_hasDiameter);
    io(L"upper_text", self.m_upperText);
    io(L"lower_text", self.m_lowerText);
    io(L"target_zone", self.m_zone, json::positional(json::whenArray));
}

XCH_JSON_IO_DERIVED(ExcPMIDatumTarget, ExcPMIAnnotation)

} // namespace xch

// Surface roughness symbols.
#include <xch_api/xch_api_pmi_roughness.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<ExcPMIRoughness::EObtentionType>& enumTable<ExcPMIRoughness::EObtentionType>() {
    using T = ExcPMIRoughness;
    static const EnumTable<T::EObtentionType> table{
        {T::ObtentionUnsupported, L"unsupported"},
        {T::NotDefined, L"not_defined"},
        {T::MatchingMandatory, L"matching_mandatory"},
        {T::MatchingForbidden, L"matching_forbidden"},
    };
    return table;
}

template <>
const EnumTable<ExcPMIRoughness::EApplicabilityType>& enumTable<ExcPMIRoughness::EApplicabilityType>() {
    using T = ExcPMIRoughness;
    static const EnumTable<T::EApplicabilityType> table{
        {T::ApplicabilityUnsupported, L"unsupported"},
        {T::SpecifiedSurfaceOnly, L"specified_surface_only"},
        {T::AllPartSurfaces, L"all_part_surfaces"},
        {T::BasicSurface, L"basic_surface"},
    };
    return table;
}

ExcPMIRoughness::ExcPMIRoughness() = default;
ExcPMIRoughness::ExcPMIRoughness(const ExcPMIRoughness&) = default;
ExcPMIRoughness& ExcPMIRoughness::operator=(const ExcPMIRoughness&) = default;
ExcPMIRoughness::~ExcPMIRoughness() = default;

template <class Io, class Self>
void ExcPMIRoughness::members(Io& io, Self& self) {
    io(L"obtention_type", self.m_obtentionType);
    io(L"applicability_type", self.m_applicabilityType);
    io(L"fields", self.m_fields);
}

XCH_JSON_IO_DERIVED(ExcPMIRoughness, ExcPMIAnnotation)

} // namespace xch

// Surface roughness symbols: how the surface is obtained, where the symbol
// applies, and the texts in the symbol's fields.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xch_api/xch_api_pmi_annotation.h>

namespace xch {

// JSON: the annotation keys (xch_api_pmi_annotation.h), then
// "obtention_type", "applicability_type" (strings), "fields" (array of
// strings; reading appends each string). Unknown strings read as
// MatchingForbidden and AllPartSurfaces (each table's smallest string).
class XCH_API ExcPMIRoughness : public ExcPMIAnnotation {
public:
    // Whether material removal is required, forbidden or not said.
    enum EObtentionType : std::int32_t {
        ObtentionUnsupported = 0,  // "unsupported"
        NotDefined,                // "not_defined"
        MatchingMandatory,         // "matching_mandatory"
        MatchingForbidden          // "matching_forbidden"
    };

    enum EApplicabilityType : std::int32_t {
        ApplicabilityUnsupported = 0,  // "unsupported"
        SpecifiedSurfaceOnly,          // "specified_surface_only"
        AllPartSurfaces,               // "all_part_surfaces"
        BasicSurface                   // "basic_surface"
    };

    ExcPMIRoughness();
    ExcPMIRoughness(const ExcPMIRoughness&);
    ExcPMIRoughness& operator=(const ExcPMIRoughness&);
    ~ExcPMIRoughness() override;

    EPMIAnnotationType type() const override { return PMIRoughness; }

    EObtentionType obtentionType() const { return m_obtentionType; }
    void setObtentionType(EObtentionType type) { m_obtentionType = type; }
    EApplicabilityType applicabilityType() const { return m_applicabilityType; }
    void setApplicabilityType(EApplicabilityType type) { m_applicabilityType = type; }
    // The texts of the symbol's fields (e.g. "Ra 1.6"), in field order.
    const std::vector<std::wstring>& fields() const { return m_fields; }
    void addField(const std::wstring& field) { m_fields.push_back(field); }
    void setFields(const std::vector<std::wstring>& fields) { m_fields = fields; }

    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    template <class Io, class Self>
    static void members(Io& io, Self& self);

private:
    EObtentionType m_obtentionType = ObtentionUnsupported;
    EApplicabilityType m_applicabilityType = ApplicabilityUnsupported;
    std::vector<std::wstring> m_fields;
};

template <> XCH_API const EnumTable<ExcPMIRoughness::EObtentionType>& enumTable<ExcPMIRoughness::EObtentionType>();
template <> XCH_API const EnumTable<ExcPMIRoughness::EApplicabilityType>&
enumTable<ExcPMIRoughness::EApplicabilityType>();

} // namespace xch

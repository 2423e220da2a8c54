// The PMI base classes: objects, texts, leaders and annotations.
#include <xch_api/xch_api_pmi_annotation.h>

#include <xch_api/xch_api_json_members.h>

namespace xch {

template <>
const EnumTable<EPMIAnnotationType>& enumTable<EPMIAnnotationType>() {
    static const EnumTable<EPMIAnnotationType> table{
        {PMIUnknown, L"unknown"},
        {PMIDatum, L"datum"},
        {PMIDatumTarget, L"datum_target"},
        {PMINote, L"note"},
        {PMIFlagNote, L"flag_note"},
        {PMINOA, L"NOA"},
        {PMIRoughness, L"roughness"},
        {PMIGDT, L"GDT"},
        {PMIDimension, L"dimension"},
    };
    return table;
}

template <>
const EnumTable<ExcPMIAnnotation::EOrientation>& enumTable<ExcPMIAnnotation::EOrientation>() {
    using T = ExcPMIAnnotation;
    static const EnumTable<T::EOrientation> table{
        {T::Horizontal, L"horizontal"},
        {T::Vertical, L"vertical"},
        {T::Parallel, L"parallel"},
        {T::Perpendicular, L"perpendicular"},
        {T::DimAngle, L"dim_angle"},
    };
    return table;
}

// ---- ExcPMIObject ------------------------------------------------------------------------

ExcPMIObject::ExcPMIObject() = default;
ExcPMIObject::ExcPMIObject(const ExcPMIObject&) = default;
ExcPMIObject& ExcPMIObject::operator=(const ExcPMIObject&) = default;
ExcPMIObject::~ExcPMIObject() = default;

template <class Io, class Self>
void ExcPMIObject::members(Io& io, Self& self) {
    io(L"name", self.m_name);
    io(L"id", self.m_id);
    io(L"hidden", self.m_hidden);
}

XCH_JSON_IO(ExcPMIObject)

// ---- ExcPMIText ------------------------------------------------------------------------------

ExcPMIText::ExcPMIText() = default;
ExcPMIText::ExcPMIText(const ExcPMIText&) = default;
ExcPMIText& ExcPMIText::operator=(const ExcPMIText&) = default;
ExcPMIText::~ExcPMIText() = default;

template <class Io, class Self>
void ExcPMIText::members(Io& io, Self& self) {
    io(L"text_after", self.m_textAfter);
    io(L"text_before", self.m_textBefore);
    io(L"text_below", self.m_textBelow);
    io(L"text_lower", self.m_textLower);
    io(L"text_prefix", self.m_textPrefix);
    io(L"text_suffix", self.m_textSuffix);
    io(L"text_upper", self.m_textUpper);
}

XCH_JSON_IO(ExcPMIText)

// ---- ExcPMILeader ----------------------------------------------------------------------------

ExcPMILeader::ExcPMILeader() = default;
ExcPMILeader::ExcPMILeader(const ExcPMILeader&) = default;
ExcPMILeader& ExcPMILeader::operator=(const ExcPMILeader&) = default;
ExcPMILeader::~ExcPMILeader() = default;

template <class Io, class Self>
void ExcPMILeader::members(Io& io, Self& self) {
    io(L"points", self.m_points, json::arraysOnly);
}

XCH_JSON_IO(ExcPMILeader)

// ---- ExcPMIAnnotation ------------------------------------------------------------------------

ExcPMIAnnotation::ExcPMIAnnotation() = default;
ExcPMIAnnotation::ExcPMIAnnotation(const ExcPMIAnnotation&) = default;
ExcPMIAnnotation& ExcPMIAnnotation::operator=(const ExcPMIAnnotation&) = default;
ExcPMIAnnotation::~ExcPMIAnnotation() = default;

void ExcPMIAnnotation::addLinkedElement(const std::shared_ptr<ExcEntity>& element) {
    json::appendNonNull(m_linkedElements, element, "ExcPMIAnnotation: attempt to add null linked element");
}

void ExcPMIAnnotation::addLinkedElements(const ExcEntityList& elements) {
    for (const auto& element : elements) addLinkedElement(element);
}

void ExcPMIAnnotation::addLeader(const std::shared_ptr<ExcPMILeader>& leader) {
    json::appendNonNull(m_leaders, leader, "ExcPMIAnnotation: attempt to add null PMI leader.");
}

void ExcPMIAnnotation::addLeaders(const std::vector<std::shared_ptr<ExcPMILeader>>& leaders) {
    for (const auto& leader : leaders) addLeader(leader);
}

template <class Io, class Self>
void ExcPMIAnnotation::members(Io& io, Self& self) {
    if constexpr (!Io::reading) // the reader knows the kind from where the object stands
        io(L"type", self.type());
    io(L"orientation", self.m_orientation);
    io(L"angle", self.m_angle, json::anyNumber);
    io(L"z_depth", self.m_zDepth, json::anyNumber);
    io(L"position", self.m_position, json::whenArray);
    io(L"linked_elements", self.m_linkedElements, json::objectsOnly);
    io(L"leaders", self.m_leaders, json::objectsOnly);
}

XCH_JSON_IO_DERIVED(ExcPMIAnnotation, ExcPMIObject)

} // namespace xch

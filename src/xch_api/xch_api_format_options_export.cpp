// The export option sets and their enumeration tables.
#include <xch_api/xch_api_format_options_export.h>

#include <string>
#include <vector>

#include <logging/vx_link_logger.h>
#include <xch_api/internal/protocol_io.h>

namespace xch {

// ---- enumeration tables ---------------------------------------------------------

template <>
const EnumTable<exp::EDefaultColorMode>& enumTable<exp::EDefaultColorMode>() {
    static const EnumTable<exp::EDefaultColorMode> table{
        {exp::DefaultColorUnknown, L"unknown"}, {exp::DefaultColorFalse, L"false"},
        {exp::DefaultColorCatiaV5, L"catiav5"}};
    return table;
}

template <>
const EnumTable<exp::EAcisVersion>& enumTable<exp::EAcisVersion>() {
    static const EnumTable<exp::EAcisVersion> table{
        {exp::AcisVersionUnknown, L"unknown"}, {exp::AcisVersionCurrent, L"current"},
        {exp::AcisVersionR18, L"R18"},         {exp::AcisVersionR19, L"R19"},
        {exp::AcisVersionR20, L"R20"},         {exp::AcisVersionR21, L"R21"},
        {exp::AcisVersionR22, L"R22"},         {exp::AcisVersionR23, L"R23"},
        {exp::AcisVersionR24, L"R24"},         {exp::AcisVersionR25, L"R25"},
        {exp::AcisVersion2016, L"2016_1_0"},   {exp::AcisVersion2017, L"2017_1_0"},
        {exp::AcisVersion2018, L"2018_1_0"},   {exp::AcisVersion2019, L"2019_1_0"},
        {exp::AcisVersion2020, L"2020_1_0"},   {exp::AcisVersion2021, L"2021_1_0"},
        {exp::AcisVersion2022, L"2022_1_0"},   {exp::AcisVersion2023, L"2023_1_0"},
        {exp::AcisVersion2024, L"2024_1_0"},   {exp::AcisVersion2025, L"2025_1_0"}};
    return table;
}

// "unknown", "current", then the numbered releases "r12" .. "r37".
template <>
const EnumTable<exp::EParasolidVersion>& enumTable<exp::EParasolidVersion>() {
    using Table = EnumTable<exp::EParasolidVersion>;
    static const Table table([] {
        std::vector<Table::Entry> entries{{exp::ParasolidVersionUnknown, L"unknown"},
                                          {exp::ParasolidVersionCurrent, L"current"}};
        for (int v = exp::ParasolidVersionFirst; v <= exp::ParasolidVersionLast; ++v)
            entries.emplace_back(static_cast<exp::EParasolidVersion>(v), L"r" + std::to_wstring(v + 10));
        return entries;
    }());
    return table;
}

template <>
const EnumTable<exp::ECatiaV5Version>& enumTable<exp::ECatiaV5Version>() {
    static const EnumTable<exp::ECatiaV5Version> table{
        {exp::CatiaV5VersionUnknown, L"unknown"}, {exp::CatiaV5VersionCurrent, L"current"},
        {exp::CatiaV5VersionR16, L"V5_R16"},      {exp::CatiaV5VersionR17, L"V5_R17"},
        {exp::CatiaV5VersionR18, L"V5_R18"},      {exp::CatiaV5VersionR19, L"V5_R19"},
        {exp::CatiaV5VersionR20, L"V5_R20"},      {exp::CatiaV5VersionR21, L"V5_R21"},
        {exp::CatiaV5VersionR2012, L"V5_6_R2012"}, {exp::CatiaV5VersionR2013, L"V5_6_R2013"},
        {exp::CatiaV5VersionR2014, L"V5_6_R2014"}, {exp::CatiaV5VersionR2015, L"V5_6_R2015"},
        {exp::CatiaV5VersionR2016, L"V5_6_R2016"}, {exp::CatiaV5VersionR2017, L"V5_6_R2017"},
        {exp::CatiaV5VersionR2018, L"V5_6_R2018"}, {exp::CatiaV5VersionR2019, L"V5_6_R2019"},
        {exp::CatiaV5VersionR2020, L"V5_6_R2020"}, {exp::CatiaV5VersionR2021, L"V5_6_R2021"},
        {exp::CatiaV5VersionR2022, L"V5_6_R2022"}, {exp::CatiaV5VersionR2023, L"V5_6_R2023"},
        {exp::CatiaV5VersionR2024, L"V5_6_R2024"}, {exp::CatiaV5VersionR2025, L"V5_6_R2025"}};
    return table;
}

template <>
const EnumTable<exp::EXcgmVersion>& enumTable<exp::EXcgmVersion>() {
    static const EnumTable<exp::EXcgmVersion> table{
        {exp::XcgmVersionUnknown, L"unknown"},
        {exp::XcgmVersionCurrent, L"current"},
        {exp::XcgmVersionR2013x, L"CGM_R2013x"},
        {exp::XcgmVersionR2014, L"CGM_R2014"},
        {exp::XcgmVersionR2014x, L"CGM_R2014x"},
        {exp::XcgmVersionR2015xB1, L"CGM_R2015x_B1"},
        {exp::XcgmVersionR2015xB5, L"CGM_R2015x_B5"},
        {exp::XcgmVersionR2015xB5SP1, L"CGM_R2015x_B5_SP1"},
        {exp::XcgmVersionR2016_1_0, L"CGM_R2016_1_0"},
        {exp::XcgmVersionR2016_1_1, L"CGM_R2016_1_1"},
        {exp::XcgmVersionR2017_1_0, L"CGM_R2017_1_0"},
        {exp::XcgmVersionR2017_1_1, L"CGM_R2017_1_1"},
        {exp::XcgmVersionR2018_1_0, L"CGM_R2018_1_0"},
        {exp::XcgmVersionR2018_1_1, L"CGM_R2018_1_1"},
        {exp::XcgmVersionR2019, L"CGM_R2019_1_0"},
        {exp::XcgmVersionR2020, L"CGM_R2020_1_0"},
        {exp::XcgmVersionR2021, L"CGM_R2021_1_0"},
        {exp::XcgmVersionR2022, L"CGM_R2022_1_0"},
        {exp::XcgmVersionR2023, L"CGM_R2023_1_0"},
        {exp::XcgmVersionR2024, L"CGM_R2024_1_0"},
        {exp::XcgmVersionR2025, L"CGM_R2025_1_0"}};
    return table;
}

template <>
const EnumTable<exp::ECatiaV4Version>& enumTable<exp::ECatiaV4Version>() {
    static const EnumTable<exp::ECatiaV4Version> table{
        {exp::CatiaV4VersionUnknown, L"unknown"}, {exp::CatiaV4Version419, L"4.1.9"},
        {exp::CatiaV4Version420, L"4.2.0"},       {exp::CatiaV4Version421, L"4.2.1"},
        {exp::CatiaV4Version422, L"4.2.2"},       {exp::CatiaV4Version423, L"4.2.3"},
        {exp::CatiaV4Version424, L"4.2.4"}};
    return table;
}

template <>
const EnumTable<exp::EEdgeCurveMode>& enumTable<exp::EEdgeCurveMode>() {
    static const EnumTable<exp::EEdgeCurveMode> table{
        {exp::EdgeCurveUnknown, L"unknown"}, {exp::EdgeCurve2d3d, L"2d+3d"},
        {exp::EdgeCurve2d, L"2d"}};
    return table;
}

template <>
const EnumTable<exp::ECgrCompatibilityMode>& enumTable<exp::ECgrCompatibilityMode>() {
    static const EnumTable<exp::ECgrCompatibilityMode> table{
        {exp::CgrCompatibilityUnknown, L"unknown"}, {exp::CgrCompatibilityCatiaV5, L"catia_v5"},
        {exp::CgrCompatibility3DExperience, L"catia_3dexperience"}};
    return table;
}

template <>
const EnumTable<exp::EStepVersion>& enumTable<exp::EStepVersion>() {
    static const EnumTable<exp::EStepVersion> table{
        {exp::StepVersionUnknown, L"unknown"}, {exp::StepVersionAP203, L"AP203"},
        {exp::StepVersionAP214, L"AP214"},     {exp::StepVersionAP242, L"AP242"}};
    return table;
}

template <>
const EnumTable<exp::EStepLayerNameMode>& enumTable<exp::EStepLayerNameMode>() {
    static const EnumTable<exp::EStepLayerNameMode> table{
        {exp::LayerNameUnknown, L"unknown"}, {exp::LayerNameAsmRep, L"asm_rep"},
        {exp::LayerNameSavedVisuRep, L"saved_visu_rep"}};
    return table;
}

template <>
const EnumTable<exp::EStlSaveMode>& enumTable<exp::EStlSaveMode>() {
    static const EnumTable<exp::EStlSaveMode> table{
        {exp::StlSaveUnknown, L"unknown"}, {exp::StlSaveText, L"text"},
        {exp::StlSaveBinaryLE, L"binary_le"}};
    return table;
}

namespace exp {

// ---- option sets -------------------------------------------------------------------
//
// Each class: its key list, its format type, and readObject/writeObject
// through the shared option-set order (shape check under the class's
// message name, base type keys, own keys).

template <class Io, class Self>
void Options3DXML::members(Io& io, Self& self) {
    io(L"default_color_mode", self.m_defaultColorMode);
    io(L"graphical_pmi_container_mode", self.m_graphicalPMIContainerMode);
}

Options3DXML::~Options3DXML() = default;
EFormatType Options3DXML::formatType() const { return Format3DXML; }

void Options3DXML::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "Options3DXML", *this);
}

void Options3DXML::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsAcis::members(Io& io, Self& self) {
    io(L"version", self.m_version);
    io(L"units", self.m_units);
}

OptionsAcis::~OptionsAcis() = default;
EFormatType OptionsAcis::formatType() const { return FormatACIS; }

void OptionsAcis::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsAcis", *this);
}

void OptionsAcis::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsCatiaV4::members(Io& io, Self& self) {
    io(L"author_name", self.m_authorName);
    io(L"model_name", self.m_modelName);
    io(L"version", self.m_version);
    io(L"edge_curve_mode", self.m_edgeCurveMode);
}

OptionsCatiaV4::~OptionsCatiaV4() = default;
EFormatType OptionsCatiaV4::formatType() const { return FormatCatiaV4; }

void OptionsCatiaV4::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsCatiaV4", *this);
}

void OptionsCatiaV4::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsCatiaV5::members(Io& io, Self& self) {
    io(L"version", self.m_version);
    io(L"default_color_mode", self.m_defaultColorMode);
    io(L"cgr_compatibility_mode", self.m_cgrCompatibilityMode);
}

OptionsCatiaV5::~OptionsCatiaV5() = default;
EFormatType OptionsCatiaV5::formatType() const { return FormatCatiaV5; }

void OptionsCatiaV5::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsCatiaV5", *this);
}

void OptionsCatiaV5::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsIGES::members(Io& io, Self& self) {
    io(L"units", self.m_units);
}

OptionsIGES::~OptionsIGES() = default;
EFormatType OptionsIGES::formatType() const { return FormatIGES; }

void OptionsIGES::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsIges", *this);
}

void OptionsIGES::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsParasolid::members(Io& io, Self& self) {
    io(L"version", self.m_version);
}

OptionsParasolid::~OptionsParasolid() = default;
EFormatType OptionsParasolid::formatType() const { return FormatParasolid; }

void OptionsParasolid::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsParasolid", *this);
}

void OptionsParasolid::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsSTEP::members(Io& io, Self& self) {
    io(L"units", self.m_units);
    io(L"version", self.m_version);
    io(L"tolerance", self.m_tolerance, json::anyNumber);
    io(L"layer_name_mode", self.m_layerNameMode);
}

OptionsSTEP::~OptionsSTEP() = default;
EFormatType OptionsSTEP::formatType() const { return FormatSTEP; }

void OptionsSTEP::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsStep", *this);
}

void OptionsSTEP::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsXCGM::members(Io& io, Self& self) {
    io(L"version", self.m_version);
    io(L"default_color_mode", self.m_defaultColorMode);
    io(L"graphical_pmi_container_mode", self.m_graphicalPMIContainerMode);
}

OptionsXCGM::~OptionsXCGM() = default;
EFormatType OptionsXCGM::formatType() const { return FormatXCGM; }

void OptionsXCGM::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsXCGM", *this);
}

void OptionsXCGM::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsSTL::members(Io& io, Self& self) {
    io(L"save_mode", self.m_saveMode);
}

OptionsSTL::~OptionsSTL() = default;
EFormatType OptionsSTL::formatType() const { return FormatSTL; }

void OptionsSTL::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsSTL", *this);
}

void OptionsSTL::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsPDF::members(Io& io, Self& self) {
    io(L"color", self.m_backgroundColor);
}

OptionsPDF::~OptionsPDF() = default;
EFormatType OptionsPDF::formatType() const { return Format3DPDF; }

void OptionsPDF::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsPDF", *this);
}

void OptionsPDF::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

} // namespace exp
} // namespace xch

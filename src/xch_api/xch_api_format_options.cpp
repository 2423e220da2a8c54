// The format options base, the dispatch by operation and format type, and
// the four common option groups.
#include <xch_api/xch_api_format_options.h>

#include <map>
#include <utility>

#include <logging/vx_link_logger.h>
#include <xch_api/internal/protocol_io.h>
#include <xch_api/xch_api_format_options_export.h>
#include <xch_api/xch_api_format_options_import.h>

namespace xch {

// ---- enumeration tables ---------------------------------------------------------

template <>
const EnumTable<EOperationType>& enumTable<EOperationType>() {
    static const EnumTable<EOperationType> table{
        {OperationOptions, L"options"}, {OperationImport, L"import"}, {OperationExport, L"export"}};
    return table;
}

template <>
const EnumTable<EFormatType>& enumTable<EFormatType>() {
    static const EnumTable<EFormatType> table{
        {FormatUnknown, L"unknown"},
        {FormatGeneral, L"general"},
        {FormatCGM, L"CGM"},
        {FormatACIS, L"ACIS"},
        {FormatParasolid, L"parasolid"},
        {FormatCatiaV5, L"CatiaV5"},
        {FormatCatiaV5Drawing, L"CatiaV5Drawing"},
        {FormatCatiaV4, L"CatiaV4"},
        {FormatIGES, L"IGES"},
        {FormatSTEP, L"STEP"},
        {FormatSTL, L"STL"},
        {FormatCreo, L"Creo"},
        {FormatNX, L"NX"},
        {FormatSolidWorks, L"SolidWorks"},
        {FormatSolidWorksDrawing, L"SolidWorksDrawing"},
        {FormatSolidEdge, L"SolidEdge"},
        {FormatJT, L"JT"},
        {FormatInventor, L"Inventor"},
        {Format3DPDF, L"3D_PDF"},
        {Format3DXML, L"3D_XML"},
        {FormatAutocad, L"autocad"},
        {FormatU3D, L"U3D"},
        {FormatVDAFS, L"VDA_FS"},
        {FormatXMLEBOM, L"XML_EBOM"},
        {FormatXCGM, L"XCGM"},
        {FormatGraphical, L"graphical"},
        {FormatMechanical, L"mechanical"},
        {FormatModeler, L"modeler"},
        {FormatPicture, L"picture"},
        {FormatIFC, L"IFC"},
        {FormatEDrawings, L"EDrawings"},
        {FormatUDL, L"UDL"}};
    return table;
}

template <>
const EnumTable<ELogEventLevel>& enumTable<ELogEventLevel>() {
    static const EnumTable<ELogEventLevel> table{
        {LogEventUnknown, L"unknown"}, {LogEventNone, L"none"},
        {LogEventAbort, L"abort"},     {LogEventError, L"error"},
        {LogEventWarning, L"warning"}, {LogEventInformation, L"information"},
        {LogEventVerbose, L"verbose"}};
    return table;
}

template <>
const EnumTable<ELogFileEncoding>& enumTable<ELogFileEncoding>() {
    static const EnumTable<ELogFileEncoding> table{
        {LogEncodingUnknown, L"unknown"}, {LogEncodingUsAscii, L"us_ascii"},
        {LogEncodingMbcs, L"mbcs"},       {LogEncodingUtf8, L"utf8"},
        {LogEncodingUtf16, L"utf16"}};
    return table;
}

template <>
const EnumTable<ELoggingMode>& enumTable<ELoggingMode>() {
    static const EnumTable<ELoggingMode> table{
        {LoggingUnknown, L"unknown"}, {LoggingAtomic, L"atomic"}, {LoggingAppend, L"append"}};
    return table;
}

template <>
const EnumTable<EMemoryManagementModeFlags>& enumTable<EMemoryManagementModeFlags>() {
    static const EnumTable<EMemoryManagementModeFlags> table{
        {MemoryUnknown, L"unknown"},           {MemoryKeepNone, L"keep_none"},
        {MemoryKeepPartVisu, L"keep_part_visu"}, {MemoryKeepPartMech, L"keep_part_mech"},
        {MemoryKeepAsmVisu, L"keep_asm_visu"},   {MemoryKeepAsmMech, L"keep_asm_mech"}};
    return table;
}

template <>
const EnumTable<ETriState>& enumTable<ETriState>() {
    static const EnumTable<ETriState> table{
        {TriStateUnknown, L"unknown"}, {TriStateTrue, L"true"}, {TriStateFalse, L"false"}};
    return table;
}

template <>
const EnumTable<EVisuBrepTesselationMode>& enumTable<EVisuBrepTesselationMode>() {
    static const EnumTable<EVisuBrepTesselationMode> table{
        {BrepTesselationUnknown, L"unknown"},
        {BrepTesselationAuto, L"auto"},
        {BrepTesselationNever, L"never"},
        {BrepTesselationNeverAtLeastNativePMI, L"never_at_least_native_pmi"}};
    return table;
}

template <>
const EnumTable<EVisuTextDataMode>& enumTable<EVisuTextDataMode>() {
    static const EnumTable<EVisuTextDataMode> table{
        {TextDataUnknown, L"unknown"}, {TextDataAsString, L"as_string"},
        {TextDataAsStroked, L"as_stroked"}};
    return table;
}

template <>
const EnumTable<EVisuTextStrokingMode>& enumTable<EVisuTextStrokingMode>() {
    static const EnumTable<EVisuTextStrokingMode> table{
        {TextStrokingUnknown, L"unknown"},
        {TextStrokingFromSourceNative, L"from_source_native"},
        {TextStrokingFromSourceGenerated, L"from_source_generated"},
        {TextStrokingFromSourceGeneratedWithoutInnerLoops, L"from_source_generated_without_inner_loops"},
        {TextStrokingFromSourceGeneratedWithInnerLoops, L"from_source_generated_with_inner_loops"},
        {TextStrokingFromIop, L"from_iop"}};
    return table;
}

template <>
const EnumTable<EProcessingMode>& enumTable<EProcessingMode>() {
    static const EnumTable<EProcessingMode> table{
        {ProcessingUnknown, L"unknown"}, {ProcessingAll, L"all"}, {ProcessingNone, L"none"}};
    return table;
}

template <>
const EnumTable<EAcisSplineResurfacingMode>& enumTable<EAcisSplineResurfacingMode>() {
    static const EnumTable<EAcisSplineResurfacingMode> table{
        {ResurfacingUnknown, L"unknown"},
        {ResurfacingNone, L"none"},
        {ResurfacingErroneousSurfacesOnly, L"erroneous_surfaces_only"},
        {ResurfacingErroneousAndShortSurfaces, L"erroneous_and_short_surfaces"}};
    return table;
}

template <>
const EnumTable<EAcisHealType>& enumTable<EAcisHealType>() {
    static const EnumTable<EAcisHealType> table{
        {AcisHealUnknown, L"unknown"}, {AcisHealNone, L"none"},
        {AcisHealMinimal, L"minimal"}, {AcisHealStandard, L"standard"}};
    return table;
}

template <>
const EnumTable<EPreserveMfgModeType>& enumTable<EPreserveMfgModeType>() {
    static const EnumTable<EPreserveMfgModeType> table{
        {PreserveMfgUnknown, L"unknown"}, {PreserveMfgDisabled, L"disabled"},
        {PreserveMfgDecorateAll, L"decorate_all_mfg"}};
    return table;
}

template <>
const EnumTable<EPreserveModelAssociativityMode>& enumTable<EPreserveModelAssociativityMode>() {
    static const EnumTable<EPreserveModelAssociativityMode> table{
        {AssociativityUnknown, L"unknown"}, {AssociativityDisabled, L"disabled"},
        {AssociativityDecorateAll, L"decorate_all"}};
    return table;
}

template <>
const EnumTable<EPreservePMIModeType>& enumTable<EPreservePMIModeType>() {
    static const EnumTable<EPreservePMIModeType> table{
        {PreservePMIUnknown, L"unknown"}, {PreservePMIDisabled, L"disabled"},
        {PreservePMIDecorateAll, L"decorate_all_pmi"}};
    return table;
}

template <>
const EnumTable<ETopologicalEntityInspectorMode>& enumTable<ETopologicalEntityInspectorMode>() {
    static const EnumTable<ETopologicalEntityInspectorMode> table{
        {InspectorUnknown, L"unknown"}, {InspectorProcess, L"process"},
        {InspectorDisabled, L"disabled"}};
    return table;
}

// ---- the base ------------------------------------------------------------------------

IFormatOptions::~IFormatOptions() = default;

void IFormatOptions::readObject(const JsonValue& value) {
    VX_TRACE();
    if (!json::expectObject(value, "FormatOptions")) return;
    json::Reader reader(value);
    // A missing key leaves the object's own type in place, so it matches.
    EOperationType operation = operationType();
    reader(L"operation_type", operation);
    if (operation != operationType()) {
        VX_LOG(2, "FormatOptions operation type doesn't match.");
        return;
    }
    EFormatType format = formatType();
    reader(L"format_type", format);
    if (format != formatType()) {
        VX_LOG(2, "FormatOptions format type doesn't match.");
        return;
    }
}

void IFormatOptions::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    value.SetObject();
    json::Writer writer(value, allocator);
    writer(L"operation_type", operationType());
    writer(L"format_type", formatType());
}

namespace {

using OptionsFactory = std::shared_ptr<IFormatOptions> (*)();

template <class T>
std::shared_ptr<IFormatOptions> make() {
    return std::make_shared<T>();
}

// The class of every (operation, format) pair that has options.
const std::map<std::pair<EOperationType, EFormatType>, OptionsFactory>& optionClasses() {
    static const std::map<std::pair<EOperationType, EFormatType>, OptionsFactory> classes{
        {{OperationOptions, FormatGeneral}, make<OptionsGeneral>},
        {{OperationOptions, FormatGraphical}, make<OptionsGraphical>},
        {{OperationOptions, FormatMechanical}, make<OptionsMechanical>},
        {{OperationOptions, FormatModeler}, make<OptionsModeler>},

        {{OperationImport, FormatParasolid}, make<imp::OptionsParasolid>},
        {{OperationImport, FormatCatiaV5}, make<imp::OptionsCatiaV5>},
        {{OperationImport, FormatCatiaV5Drawing}, make<imp::OptionsCatiaV5Drawing>},
        {{OperationImport, FormatCatiaV4}, make<imp::OptionsCatiaV4>},
        {{OperationImport, FormatIGES}, make<imp::OptionsIGES>},
        {{OperationImport, FormatSTEP}, make<imp::OptionsSTEP>},
        {{OperationImport, FormatCreo}, make<imp::OptionsCreo>},
        {{OperationImport, FormatNX}, make<imp::OptionsNX>},
        {{OperationImport, FormatSolidWorks}, make<imp::OptionsSolidWorks>},
        {{OperationImport, FormatSolidWorksDrawing}, make<imp::OptionsSolidWorksDrawing>},
        {{OperationImport, FormatSolidEdge}, make<imp::OptionsSolidEdge>},
        {{OperationImport, FormatJT}, make<imp::OptionsJT>},
        {{OperationImport, FormatInventor}, make<imp::OptionsInventor>},
        {{OperationImport, Format3DXML}, make<imp::Options3DXML>},
        {{OperationImport, FormatXCGM}, make<imp::OptionsXCGM>},

        {{OperationExport, FormatACIS}, make<exp::OptionsAcis>},
        {{OperationExport, FormatParasolid}, make<exp::OptionsParasolid>},
        {{OperationExport, FormatCatiaV5}, make<exp::OptionsCatiaV5>},
        {{OperationExport, FormatCatiaV4}, make<exp::OptionsCatiaV4>},
        {{OperationExport, FormatIGES}, make<exp::OptionsIGES>},
        {{OperationExport, FormatSTEP}, make<exp::OptionsSTEP>},
        {{OperationExport, FormatSTL}, make<exp::OptionsSTL>},
        {{OperationExport, Format3DPDF}, make<exp::OptionsPDF>},
        {{OperationExport, Format3DXML}, make<exp::Options3DXML>},
        {{OperationExport, FormatXCGM}, make<exp::OptionsXCGM>}};
    return classes;
}

// What is logged when an operation has no class for a format.
const char* noClassMessage(EOperationType operation) {
    switch (operation) {
    case OperationOptions: return "FormatOptions: Unknown common options type.";
    case OperationImport: return "FormatOptions: No options for given import format.";
    case OperationExport: return "FormatOptions: No options for given export format.";
    }
    return nullptr;
}

} // namespace

std::shared_ptr<IFormatOptions> IFormatOptions::readOptions(const JsonValue& value) {
    VX_TRACE();
    if (!json::expectObject(value, "FormatOptions")) return nullptr;
    json::Reader reader(value);
    const JsonValue* operationMember = reader.find(L"operation_type");
    if (!operationMember || !operationMember->IsString()) {
        VX_LOG(2, "FormatOptions object should contain operation type.");
        return nullptr;
    }
    EOperationType operation = OperationOptions;
    json::Codec<EOperationType>::read(*operationMember, operation);

    const JsonValue* formatMember = reader.find(L"format_type");
    if (!formatMember || !formatMember->IsString()) {
        VX_LOG(2, "FormatOptions object should contain format type.");
        return nullptr;
    }
    EFormatType format = FormatUnknown;
    json::Codec<EFormatType>::read(*formatMember, format);

    auto it = optionClasses().find({operation, format});
    if (it == optionClasses().end()) {
        if (const char* message = noClassMessage(operation))
            VX_LOG(4, message);
        return nullptr;
    }
    std::shared_ptr<IFormatOptions> options = it->second();
    options->readObject(value);
    return options;
}

namespace imp {
FormatOptions::~FormatOptions() = default;
EOperationType FormatOptions::operationType() const { return OperationImport; }
} // namespace imp

namespace exp {
FormatOptions::~FormatOptions() = default;
EOperationType FormatOptions::operationType() const { return OperationExport; }
} // namespace exp

CommonOptions::~CommonOptions() = default;
EOperationType CommonOptions::operationType() const { return OperationOptions; }

// ---- the common groups -------------------------------------------------------------

template <class Io, class Self>
void OptionsGeneral::members(Io& io, Self& self) {
    io(L"log_event_level_type", self.m_logEventLevel);
    io(L"log_file_encoding_type", self.m_logFileEncoding);
    io(L"log_file_name", self.m_logFileName);
    io(L"logging_mode_type", self.m_loggingMode);
    io(L"logging_output_directory", self.m_loggingOutputDirectory);
    io(L"memory_management_mode", self.m_memoryManagementMode);
}

OptionsGeneral::~OptionsGeneral() = default;
EFormatType OptionsGeneral::formatType() const { return FormatGeneral; }

void OptionsGeneral::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsGeneral", *this);
}

void OptionsGeneral::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsGraphical::members(Io& io, Self& self) {
    io(L"tesselation_max_chordal_deviation", self.m_tesselationMaxChordalDeviation, json::anyNumber);
    io(L"translate_reference_geometry_mode", self.m_translateReferenceGeometryMode);
    io(L"visu_brep_tesselation_mode", self.m_visuBrepTesselationMode);
    io(L"visu_text_data_mode", self.m_visuTextDataMode);
    io(L"visu_text_stroking_mode", self.m_visuTextStrokingMode);
}

OptionsGraphical::~OptionsGraphical() = default;
EFormatType OptionsGraphical::formatType() const { return FormatGraphical; }

void OptionsGraphical::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsGraphical", *this);
}

void OptionsGraphical::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsMechanical::members(Io& io, Self& self) {
    io(L"feature_tolerance_processing_mode", self.m_featureToleranceProcessingMode);
    io(L"misc_data_processing_mode", self.m_miscDataProcessingMode);
}

OptionsMechanical::~OptionsMechanical() = default;
EFormatType OptionsMechanical::formatType() const { return FormatMechanical; }

void OptionsMechanical::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsMechanical", *this);
}

void OptionsMechanical::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

template <class Io, class Self>
void OptionsModeler::members(Io& io, Self& self) {
    io(L"acis_spline_resurfacing_mode", self.m_acisSplineResurfacingMode);
    io(L"acis_spline_resurfacing_tolerance", self.m_acisSplineResurfacingTolerance, json::anyNumber);
    io(L"attribute_processing_mode", self.m_attributeProcessingMode);
    io(L"acis_heal_type", self.m_acisHealType);
    io(L"length_unit_type", self.m_lengthUnitType);
    io(L"preserve_mfg_mode", self.m_preserveMfgMode);
    io(L"preserve_model_associativity_mode", self.m_preserveModelAssociativityMode);
    io(L"preserve_pmi_mode", self.m_preservePMIMode);
    io(L"topological_entity_inspector_mode", self.m_topologicalEntityInspectorMode);
}

OptionsModeler::~OptionsModeler() = default;
EFormatType OptionsModeler::formatType() const { return FormatModeler; }

void OptionsModeler::readObject(const JsonValue& value) {
    VX_TRACE();
    json::readOptionMembers(value, "OptionsModeler", *this);
}

void OptionsModeler::writeObject(JsonValue& value, JsonAllocator& allocator) const {
    VX_TRACE();
    json::writeOptionMembers(value, allocator, *this);
}

} // namespace xch

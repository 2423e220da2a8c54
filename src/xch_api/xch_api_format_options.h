// Format options: the typed option sets that travel with a translation job.
//
// Every option set is an IFormatOptions: one JSON object that starts with
// its operation type ("options" for the four common groups, "import",
// "export") and its format type, followed by its own keys. The common
// groups (general, graphical, mechanical, modeler) apply to every job; the
// per-format sets live in xch::imp (xch_api_format_options_import.h) and
// xch::exp (xch_api_format_options_export.h). IFormatOptions::readOptions
// reads one such object and makes the class that its two type fields name.
//
// Every option enumeration travels as a string of its table. Reading a
// string that is not in the table gives the value of the table's smallest
// string in code-unit order (so an unknown "operation_type" reads as
// "export", an unknown "format_type" as "3D_PDF"); writing a value that is
// not in the table gives the string of the table's smallest value. A
// missing or mistyped key leaves its field unchanged.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <xch_api/xch_api_enum_table.h>
#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_export.h>
#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>

namespace xch {

// Which kind of job an option set belongs to (key "operation_type").
enum EOperationType : std::int32_t {
    OperationOptions = 0,  // "options": the common groups
    OperationImport = 1,   // "import"
    OperationExport = 2    // "export"
};

// The format an option set belongs to (key "format_type"). Values 1, 25,
// 26 and 27 name the common groups rather than file formats.
enum EFormatType : std::int32_t {
    FormatUnknown = 0,            // "unknown"
    FormatGeneral = 1,            // "general"
    FormatCGM = 2,                // "CGM"
    FormatACIS = 3,               // "ACIS"
    FormatParasolid = 4,          // "parasolid"
    FormatCatiaV5 = 5,            // "CatiaV5"
    FormatCatiaV5Drawing = 6,     // "CatiaV5Drawing"
    FormatCatiaV4 = 7,            // "CatiaV4"
    FormatIGES = 8,               // "IGES"
    FormatSTEP = 9,               // "STEP"
    FormatSTL = 10,               // "STL"
    FormatCreo = 11,              // "Creo"
    FormatNX = 12,                // "NX"
    FormatSolidWorks = 13,        // "SolidWorks"
    FormatSolidWorksDrawing = 14, // "SolidWorksDrawing"
    FormatSolidEdge = 15,         // "SolidEdge"
    FormatJT = 16,                // "JT"
    FormatInventor = 17,          // "Inventor"
    Format3DPDF = 18,             // "3D_PDF"
    Format3DXML = 19,             // "3D_XML"
    FormatAutocad = 20,           // "autocad"
    FormatU3D = 21,               // "U3D"
    FormatVDAFS = 22,             // "VDA_FS"
    FormatXMLEBOM = 23,           // "XML_EBOM"
    FormatXCGM = 24,              // "XCGM"
    FormatGraphical = 25,         // "graphical"
    FormatMechanical = 26,        // "mechanical"
    FormatModeler = 27,           // "modeler"
    FormatPicture = 28,           // "picture"
    FormatIFC = 29,               // "IFC"
    FormatEDrawings = 30,         // "EDrawings"
    FormatUDL = 31                // "UDL"
};

// ---- enumerations of the common groups ---------------------------------------

enum ELogEventLevel : std::int32_t {
    LogEventUnknown = 0,     // "unknown"
    LogEventNone,            // "none"
    LogEventAbort,           // "abort"
    LogEventError,           // "error"
    LogEventWarning,         // "warning"
    LogEventInformation,     // "information"
    LogEventVerbose          // "verbose"
};

enum ELogFileEncoding : std::int32_t {
    LogEncodingUnknown = 0,  // "unknown"
    LogEncodingUsAscii,      // "us_ascii"
    LogEncodingMbcs,         // "mbcs"
    LogEncodingUtf8,         // "utf8"
    LogEncodingUtf16         // "utf16"
};

enum ELoggingMode : std::int32_t {
    LoggingUnknown = 0,      // "unknown"
    LoggingAtomic,           // "atomic"
    LoggingAppend            // "append"
};

// What the worker keeps in memory after a part or an assembly is done. The
// values are powers of two; the JSON form carries exactly one of them.
enum EMemoryManagementModeFlags : std::int32_t {
    MemoryKeepNone = 0,      // "keep_none"
    MemoryKeepPartVisu = 1,  // "keep_part_visu"
    MemoryKeepPartMech = 2,  // "keep_part_mech"
    MemoryKeepAsmVisu = 4,   // "keep_asm_visu"
    MemoryKeepAsmMech = 8,   // "keep_asm_mech"
    MemoryUnknown = 255      // "unknown"
};

// A switch that may also be left open ("unknown", "true", "false").
enum ETriState : std::int32_t {
    TriStateUnknown = 0,     // "unknown"
    TriStateTrue,            // "true"
    TriStateFalse            // "false"
};

enum EVisuBrepTesselationMode : std::int32_t {
    BrepTesselationUnknown = 0,              // "unknown"
    BrepTesselationAuto,                     // "auto"
    BrepTesselationNever,                    // "never"
    BrepTesselationNeverAtLeastNativePMI     // "never_at_least_native_pmi"
};

enum EVisuTextDataMode : std::int32_t {
    TextDataUnknown = 0,     // "unknown"
    TextDataAsString,        // "as_string"
    TextDataAsStroked        // "as_stroked"
};

enum EVisuTextStrokingMode : std::int32_t {
    TextStrokingUnknown = 0,                          // "unknown"
    TextStrokingFromSourceNative,                     // "from_source_native"
    TextStrokingFromSourceGenerated,                  // "from_source_generated"
    TextStrokingFromSourceGeneratedWithoutInnerLoops, // "from_source_generated_without_inner_loops"
    TextStrokingFromSourceGeneratedWithInnerLoops,    // "from_source_generated_with_inner_loops"
    TextStrokingFromIop                               // "from_iop"
};

// Whether a kind of data is processed ("unknown", "all", "none").
enum EProcessingMode : std::int32_t {
    ProcessingUnknown = 0,   // "unknown"
    ProcessingAll,           // "all"
    ProcessingNone           // "none"
};

enum EAcisSplineResurfacingMode : std::int32_t {
    ResurfacingUnknown = 0,                // "unknown"
    ResurfacingNone,                       // "none"
    ResurfacingErroneousSurfacesOnly,      // "erroneous_surfaces_only"
    ResurfacingErroneousAndShortSurfaces   // "erroneous_and_short_surfaces"
};

enum EAcisHealType : std::int32_t {
    AcisHealUnknown = 0,     // "unknown"
    AcisHealNone,            // "none"
    AcisHealMinimal,         // "minimal"
    AcisHealStandard         // "standard"
};

enum EPreserveMfgModeType : std::int32_t {
    PreserveMfgUnknown = 0,  // "unknown"
    PreserveMfgDisabled,     // "disabled"
    PreserveMfgDecorateAll   // "decorate_all_mfg"
};

enum EPreserveModelAssociativityMode : std::int32_t {
    AssociativityUnknown = 0, // "unknown"
    AssociativityDisabled,    // "disabled"
    AssociativityDecorateAll  // "decorate_all"
};

enum EPreservePMIModeType : std::int32_t {
    PreservePMIUnknown = 0,  // "unknown"
    PreservePMIDisabled,     // "disabled"
    PreservePMIDecorateAll   // "decorate_all_pmi"
};

enum ETopologicalEntityInspectorMode : std::int32_t {
    InspectorUnknown = 0,    // "unknown"
    InspectorProcess,        // "process"
    InspectorDisabled        // "disabled"
};

template <> XCH_API const EnumTable<EOperationType>& enumTable<EOperationType>();
template <> XCH_API const EnumTable<EFormatType>& enumTable<EFormatType>();
template <> XCH_API const EnumTable<ELogEventLevel>& enumTable<ELogEventLevel>();
template <> XCH_API const EnumTable<ELogFileEncoding>& enumTable<ELogFileEncoding>();
template <> XCH_API const EnumTable<ELoggingMode>& enumTable<ELoggingMode>();
template <> XCH_API const EnumTable<EMemoryManagementModeFlags>& enumTable<EMemoryManagementModeFlags>();
template <> XCH_API const EnumTable<ETriState>& enumTable<ETriState>();
template <> XCH_API const EnumTable<EVisuBrepTesselationMode>& enumTable<EVisuBrepTesselationMode>();
template <> XCH_API const EnumTable<EVisuTextDataMode>& enumTable<EVisuTextDataMode>();
template <> XCH_API const EnumTable<EVisuTextStrokingMode>& enumTable<EVisuTextStrokingMode>();
template <> XCH_API const EnumTable<EProcessingMode>& enumTable<EProcessingMode>();
template <> XCH_API const EnumTable<EAcisSplineResurfacingMode>& enumTable<EAcisSplineResurfacingMode>();
template <> XCH_API const EnumTable<EAcisHealType>& enumTable<EAcisHealType>();
template <> XCH_API const EnumTable<EPreserveMfgModeType>& enumTable<EPreserveMfgModeType>();
template <> XCH_API const EnumTable<EPreserveModelAssociativityMode>& enumTable<EPreserveModelAssociativityMode>();
template <> XCH_API const EnumTable<EPreservePMIModeType>& enumTable<EPreservePMIModeType>();
template <> XCH_API const EnumTable<ETopologicalEntityInspectorMode>& enumTable<ETopologicalEntityInspectorMode>();

// ---- the base -------------------------------------------------------------------

// One option set: a JSON object naming its operation and format type.
class XCH_API IFormatOptions : public IJsonObject {
public:
    IFormatOptions() = default;
    IFormatOptions(const IFormatOptions&) = default;
    IFormatOptions& operator=(const IFormatOptions&) = default;
    ~IFormatOptions() override;

    // Checks the shape and the two type keys: a non-object value, or an
    // "operation_type" / "format_type" that differs from this object's
    // own, is logged at error level. A missing type key counts as matching.
    // Derived classes read their own keys afterwards in any case.
    void readObject(const JsonValue& value) override;
    // Makes `value` an object holding "operation_type" and "format_type";
    // derived classes append their own keys.
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    virtual EFormatType formatType() const = 0;
    virtual EOperationType operationType() const = 0;

    // Reads one option set: picks the class from "operation_type" and
    // "format_type" and lets it read `value`. Returns null (and logs why)
    // for a non-object, a missing or non-string type key, or a pair of
    // types without a class. Never throws on bad input.
    static std::shared_ptr<IFormatOptions> readOptions(const JsonValue& value);
};

namespace imp {
// Base of the import option sets (operation type "import").
class XCH_API FormatOptions : public IFormatOptions {
public:
    ~FormatOptions() override;
    EOperationType operationType() const override;
};
} // namespace imp

namespace exp {
// Base of the export option sets (operation type "export").
class XCH_API FormatOptions : public IFormatOptions {
public:
    ~FormatOptions() override;
    EOperationType operationType() const override;
};
} // namespace exp

// Base of the four common groups (operation type "options").
class XCH_API CommonOptions : public IFormatOptions {
public:
    ~CommonOptions() override;
    EOperationType operationType() const override;
};

// ---- the common groups ---------------------------------------------------------

// How the worker logs and how much it keeps in memory ("general").
class XCH_API OptionsGeneral : public CommonOptions {
public:
    ~OptionsGeneral() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    // "log_event_level_type", "log_file_encoding_type", "log_file_name",
    // "logging_mode_type", "logging_output_directory",
    // "memory_management_mode".
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    ELogEventLevel logEventLevel() const { return m_logEventLevel; }
    void setLogEventLevel(ELogEventLevel level) { m_logEventLevel = level; }
    ELogFileEncoding logFileEncoding() const { return m_logFileEncoding; }
    void setLogFileEncoding(ELogFileEncoding encoding) { m_logFileEncoding = encoding; }
    const std::wstring& logFileName() const { return m_logFileName; }
    void setLogFileName(const std::wstring& name) { m_logFileName = name; }
    ELoggingMode loggingMode() const { return m_loggingMode; }
    void setLoggingMode(ELoggingMode mode) { m_loggingMode = mode; }
    const std::wstring& loggingOutputDirectory() const { return m_loggingOutputDirectory; }
    void setLoggingOutputDirectory(const std::wstring& dir) { m_loggingOutputDirectory = dir; }
    EMemoryManagementModeFlags memoryManagementMode() const { return m_memoryManagementMode; }
    void setMemoryManagementMode(EMemoryManagementModeFlags mode) { m_memoryManagementMode = mode; }

private:
    ELogEventLevel m_logEventLevel = LogEventUnknown;
    ELogFileEncoding m_logFileEncoding = LogEncodingUnknown;
    std::wstring m_logFileName;
    ELoggingMode m_loggingMode = LoggingUnknown;
    std::wstring m_loggingOutputDirectory;
    EMemoryManagementModeFlags m_memoryManagementMode = MemoryUnknown;
};

// Tessellation and text display ("graphical"). The keys keep the spelling
// "tesselation".
class XCH_API OptionsGraphical : public CommonOptions {
public:
    ~OptionsGraphical() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    // "tesselation_max_chordal_deviation", "translate_reference_geometry_mode",
    // "visu_brep_tesselation_mode", "visu_text_data_mode",
    // "visu_text_stroking_mode".
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    double tesselationMaxChordalDeviation() const { return m_tesselationMaxChordalDeviation; }
    void setTesselationMaxChordalDeviation(double d) { m_tesselationMaxChordalDeviation = d; }
    ETriState translateReferenceGeometryMode() const { return m_translateReferenceGeometryMode; }
    void setTranslateReferenceGeometryMode(ETriState mode) { m_translateReferenceGeometryMode = mode; }
    EVisuBrepTesselationMode visuBrepTesselationMode() const { return m_visuBrepTesselationMode; }
    void setVisuBrepTesselationMode(EVisuBrepTesselationMode mode) { m_visuBrepTesselationMode = mode; }
    EVisuTextDataMode visuTextDataMode() const { return m_visuTextDataMode; }
    void setVisuTextDataMode(EVisuTextDataMode mode) { m_visuTextDataMode = mode; }
    EVisuTextStrokingMode visuTextStrokingMode() const { return m_visuTextStrokingMode; }
    void setVisuTextStrokingMode(EVisuTextStrokingMode mode) { m_visuTextStrokingMode = mode; }

private:
    double m_tesselationMaxChordalDeviation = 0.0;
    ETriState m_translateReferenceGeometryMode = TriStateUnknown;
    EVisuBrepTesselationMode m_visuBrepTesselationMode = BrepTesselationUnknown;
    EVisuTextDataMode m_visuTextDataMode = TextDataAsString;
    EVisuTextStrokingMode m_visuTextStrokingMode = TextStrokingUnknown;
};

// Which mechanical data is translated ("mechanical").
class XCH_API OptionsMechanical : public CommonOptions {
public:
    ~OptionsMechanical() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    // "feature_tolerance_processing_mode", "misc_data_processing_mode".
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    EProcessingMode featureToleranceProcessingMode() const { return m_featureToleranceProcessingMode; }
    void setFeatureToleranceProcessingMode(EProcessingMode mode) { m_featureToleranceProcessingMode = mode; }
    EProcessingMode miscDataProcessingMode() const { return m_miscDataProcessingMode; }
    void setMiscDataProcessingMode(EProcessingMode mode) { m_miscDataProcessingMode = mode; }

private:
    EProcessingMode m_featureToleranceProcessingMode = ProcessingUnknown;
    EProcessingMode m_miscDataProcessingMode = ProcessingUnknown;
};

// How the geometric modeler treats the translated model ("modeler").
class XCH_API OptionsModeler : public CommonOptions {
public:
    ~OptionsModeler() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;

    // "acis_spline_resurfacing_mode", "acis_spline_resurfacing_tolerance",
    // "attribute_processing_mode", "acis_heal_type", "length_unit_type",
    // "preserve_mfg_mode", "preserve_model_associativity_mode",
    // "preserve_pmi_mode", "topological_entity_inspector_mode".
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    EAcisSplineResurfacingMode acisSplineResurfacingMode() const { return m_acisSplineResurfacingMode; }
    void setAcisSplineResurfacingMode(EAcisSplineResurfacingMode mode) { m_acisSplineResurfacingMode = mode; }
    double acisSplineResurfacingTolerance() const { return m_acisSplineResurfacingTolerance; }
    void setAcisSplineResurfacingTolerance(double tolerance) { m_acisSplineResurfacingTolerance = tolerance; }
    EProcessingMode attributeProcessingMode() const { return m_attributeProcessingMode; }
    void setAttributeProcessingMode(EProcessingMode mode) { m_attributeProcessingMode = mode; }
    EAcisHealType acisHealType() const { return m_acisHealType; }
    void setAcisHealType(EAcisHealType type) { m_acisHealType = type; }
    ELengthUnitType lengthUnitType() const { return m_lengthUnitType; }
    void setLengthUnitType(ELengthUnitType unit) { m_lengthUnitType = unit; }
    EPreserveMfgModeType preserveMfgMode() const { return m_preserveMfgMode; }
    void setPreserveMfgMode(EPreserveMfgModeType mode) { m_preserveMfgMode = mode; }
    EPreserveModelAssociativityMode preserveModelAssociativityMode() const { return m_preserveModelAssociativityMode; }
    void setPreserveModelAssociativityMode(EPreserveModelAssociativityMode mode) { m_preserveModelAssociativityMode = mode; }
    EPreservePMIModeType preservePMIMode() const { return m_preservePMIMode; }
    void setPreservePMIMode(EPreservePMIModeType mode) { m_preservePMIMode = mode; }
    ETopologicalEntityInspectorMode topologicalEntityInspectorMode() const { return m_topologicalEntityInspectorMode; }
    void setTopologicalEntityInspectorMode(ETopologicalEntityInspectorMode mode) { m_topologicalEntityInspectorMode = mode; }

private:
    EAcisSplineResurfacingMode m_acisSplineResurfacingMode = ResurfacingUnknown;
    double m_acisSplineResurfacingTolerance = 0.0;
    EProcessingMode m_attributeProcessingMode = ProcessingUnknown;
    EAcisHealType m_acisHealType = AcisHealUnknown;
    ELengthUnitType m_lengthUnitType = LengthUnknown;
    EPreserveMfgModeType m_preserveMfgMode = PreserveMfgUnknown;
    EPreserveModelAssociativityMode m_preserveModelAssociativityMode = AssociativityUnknown;
    EPreservePMIModeType m_preservePMIMode = PreservePMIUnknown;
    ETopologicalEntityInspectorMode m_topologicalEntityInspectorMode = InspectorUnknown;
};

} // namespace xch

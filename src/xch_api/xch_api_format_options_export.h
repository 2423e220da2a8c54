// Export option sets: one class per target format in xch::exp.
//
// Each class writes "operation_type" "export" and its "format_type", then
// all of its own keys (always, in the order listed at the class). Reading a
// value that is not an object logs "<Name> object should have a JSON
// object type." with the name given at the class and changes nothing;
// otherwise each key is read on its own, a missing or mistyped key keeping
// the field's value. Enumerations follow the table rules described in
// xch_api_format_options.h, so an unknown version string reads as the
// version whose string sorts first (e.g. "2016_1_0" for ACIS).
#pragma once

#include <cstdint>
#include <string>

#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_format_options.h>

namespace xch {
namespace exp {

// ---- enumerations ---------------------------------------------------------------

enum EDefaultColorMode : std::int32_t {
    DefaultColorUnknown = 0,   // "unknown"
    DefaultColorFalse,         // "false"
    DefaultColorCatiaV5        // "catiav5"
};

enum EAcisVersion : std::int32_t {
    AcisVersionUnknown = 0,    // "unknown"
    AcisVersionCurrent,        // "current"
    AcisVersionR18,            // "R18"
    AcisVersionR19,            // "R19"
    AcisVersionR20,            // "R20"
    AcisVersionR21,            // "R21"
    AcisVersionR22,            // "R22"
    AcisVersionR23,            // "R23"
    AcisVersionR24,            // "R24"
    AcisVersionR25,            // "R25"
    AcisVersion2016,           // "2016_1_0"
    AcisVersion2017,           // "2017_1_0"
    AcisVersion2018,           // "2018_1_0"
    AcisVersion2019,           // "2019_1_0"
    AcisVersion2020,           // "2020_1_0"
    AcisVersion2021,           // "2021_1_0"
    AcisVersion2022,           // "2022_1_0"
    AcisVersion2023,           // "2023_1_0"
    AcisVersion2024,           // "2024_1_0"
    AcisVersion2025            // "2025_1_0"
};

// Parasolid releases: value v from ParasolidVersionFirst to
// ParasolidVersionLast is release v + 10, written "r<v + 10>" ("r12" ..
// "r37"). Use static_cast<EParasolidVersion>(release - 10) for a release.
enum EParasolidVersion : std::int32_t {
    ParasolidVersionUnknown = 0,   // "unknown"
    ParasolidVersionCurrent = 1,   // "current"
    ParasolidVersionFirst = 2,     // "r12"
    ParasolidVersionLast = 27      // "r37"
};

enum ECatiaV5Version : std::int32_t {
    CatiaV5VersionUnknown = 0, // "unknown"
    CatiaV5VersionCurrent,     // "current"
    CatiaV5VersionR16,         // "V5_R16"
    CatiaV5VersionR17,         // "V5_R17"
    CatiaV5VersionR18,         // "V5_R18"
    CatiaV5VersionR19,         // "V5_R19"
    CatiaV5VersionR20,         // "V5_R20"
    CatiaV5VersionR21,         // "V5_R21"
    CatiaV5VersionR2012,       // "V5_6_R2012"
    CatiaV5VersionR2013,       // "V5_6_R2013"
    CatiaV5VersionR2014,       // "V5_6_R2014"
    CatiaV5VersionR2015,       // "V5_6_R2015"
    CatiaV5VersionR2016,       // "V5_6_R2016"
    CatiaV5VersionR2017,       // "V5_6_R2017"
    CatiaV5VersionR2018,       // "V5_6_R2018"
    CatiaV5VersionR2019,       // "V5_6_R2019"
    CatiaV5VersionR2020,       // "V5_6_R2020"
    CatiaV5VersionR2021,       // "V5_6_R2021"
    CatiaV5VersionR2022,       // "V5_6_R2022"
    CatiaV5VersionR2023,       // "V5_6_R2023"
    CatiaV5VersionR2024,       // "V5_6_R2024"
    CatiaV5VersionR2025        // "V5_6_R2025"
};

enum EXcgmVersion : std::int32_t {
    XcgmVersionUnknown = 0,    // "unknown"
    XcgmVersionCurrent,        // "current"
    XcgmVersionR2013x,         // "CGM_R2013x"
    XcgmVersionR2014,          // "CGM_R2014"
    XcgmVersionR2014x,         // "CGM_R2014x"
    XcgmVersionR2015xB1,       // "CGM_R2015x_B1"
    XcgmVersionR2015xB5,       // "CGM_R2015x_B5"
    XcgmVersionR2015xB5SP1,    // "CGM_R2015x_B5_SP1"
    XcgmVersionR2016_1_0,      // "CGM_R2016_1_0"
    XcgmVersionR2016_1_1,      // "CGM_R2016_1_1"
    XcgmVersionR2017_1_0,      // "CGM_R2017_1_0"
    XcgmVersionR2017_1_1,      // "CGM_R2017_1_1"
    XcgmVersionR2018_1_0,      // "CGM_R2018_1_0"
    XcgmVersionR2018_1_1,      // "CGM_R2018_1_1"
    XcgmVersionR2019,          // "CGM_R2019_1_0"
    XcgmVersionR2020,          // "CGM_R2020_1_0"
    XcgmVersionR2021,          // "CGM_R2021_1_0"
    XcgmVersionR2022,          // "CGM_R2022_1_0"
    XcgmVersionR2023,          // "CGM_R2023_1_0"
    XcgmVersionR2024,          // "CGM_R2024_1_0"
    XcgmVersionR2025           // "CGM_R2025_1_0"
};

enum ECatiaV4Version : std::int32_t {
    CatiaV4VersionUnknown = 0, // "unknown"
    CatiaV4Version419,         // "4.1.9"
    CatiaV4Version420,         // "4.2.0"
    CatiaV4Version421,         // "4.2.1"
    CatiaV4Version422,         // "4.2.2"
    CatiaV4Version423,         // "4.2.3"
    CatiaV4Version424          // "4.2.4"
};

enum EEdgeCurveMode : std::int32_t {
    EdgeCurveUnknown = 0,      // "unknown"
    EdgeCurve2d3d,             // "2d+3d"
    EdgeCurve2d                // "2d"
};

enum ECgrCompatibilityMode : std::int32_t {
    CgrCompatibilityUnknown = 0,       // "unknown"
    CgrCompatibilityCatiaV5,           // "catia_v5"
    CgrCompatibility3DExperience       // "catia_3dexperience"
};

enum EStepVersion : std::int32_t {
    StepVersionUnknown = 0,    // "unknown"
    StepVersionAP203,          // "AP203"
    StepVersionAP214,          // "AP214"
    StepVersionAP242           // "AP242"
};

enum EStepLayerNameMode : std::int32_t {
    LayerNameUnknown = 0,      // "unknown"
    LayerNameAsmRep,           // "asm_rep"
    LayerNameSavedVisuRep      // "saved_visu_rep"
};

enum EStlSaveMode : std::int32_t {
    StlSaveUnknown = 0,        // "unknown"
    StlSaveText,               // "text"
    StlSaveBinaryLE            // "binary_le"
};

} // namespace exp

template <> XCH_API const EnumTable<exp::EDefaultColorMode>& enumTable<exp::EDefaultColorMode>();
template <> XCH_API const EnumTable<exp::EAcisVersion>& enumTable<exp::EAcisVersion>();
template <> XCH_API const EnumTable<exp::EParasolidVersion>& enumTable<exp::EParasolidVersion>();
template <> XCH_API const EnumTable<exp::ECatiaV5Version>& enumTable<exp::ECatiaV5Version>();
template <> XCH_API const EnumTable<exp::EXcgmVersion>& enumTable<exp::EXcgmVersion>();
template <> XCH_API const EnumTable<exp::ECatiaV4Version>& enumTable<exp::ECatiaV4Version>();
template <> XCH_API const EnumTable<exp::EEdgeCurveMode>& enumTable<exp::EEdgeCurveMode>();
template <> XCH_API const EnumTable<exp::ECgrCompatibilityMode>& enumTable<exp::ECgrCompatibilityMode>();
template <> XCH_API const EnumTable<exp::EStepVersion>& enumTable<exp::EStepVersion>();
template <> XCH_API const EnumTable<exp::EStepLayerNameMode>& enumTable<exp::EStepLayerNameMode>();
template <> XCH_API const EnumTable<exp::EStlSaveMode>& enumTable<exp::EStlSaveMode>();

namespace exp {

// ---- option sets -------------------------------------------------------------------

// 3D XML ("3D_XML"; named "Options3DXML" in messages).
// Keys: "default_color_mode", "graphical_pmi_container_mode".
class XCH_API Options3DXML : public FormatOptions {
public:
    ~Options3DXML() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    EDefaultColorMode defaultColorMode() const { return m_defaultColorMode; }
    void setDefaultColorMode(EDefaultColorMode mode) { m_defaultColorMode = mode; }
    ETriState graphicalPMIContainerMode() const { return m_graphicalPMIContainerMode; }
    void setGraphicalPMIContainerMode(ETriState mode) { m_graphicalPMIContainerMode = mode; }

private:
    EDefaultColorMode m_defaultColorMode = DefaultColorUnknown;
    ETriState m_graphicalPMIContainerMode = TriStateUnknown;
};

// ACIS SAT/SAB ("ACIS"; "OptionsAcis"). Keys: "version", "units".
class XCH_API OptionsAcis : public FormatOptions {
public:
    ~OptionsAcis() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    EAcisVersion version() const { return m_version; }
    void setVersion(EAcisVersion version) { m_version = version; }
    ELengthUnitType units() const { return m_units; }
    void setUnits(ELengthUnitType units) { m_units = units; }

private:
    EAcisVersion m_version = AcisVersionCurrent;
    ELengthUnitType m_units = LengthMillimeter;
};

// CATIA V4 ("CatiaV4"; "OptionsCatiaV4").
// Keys: "author_name", "model_name", "version", "edge_curve_mode".
class XCH_API OptionsCatiaV4 : public FormatOptions {
public:
    ~OptionsCatiaV4() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    const std::wstring& authorName() const { return m_authorName; }
    void setAuthorName(const std::wstring& name) { m_authorName = name; }
    const std::wstring& modelName() const { return m_modelName; }
    void setModelName(const std::wstring& name) { m_modelName = name; }
    ECatiaV4Version version() const { return m_version; }
    void setVersion(ECatiaV4Version version) { m_version = version; }
    EEdgeCurveMode edgeCurveMode() const { return m_edgeCurveMode; }
    void setEdgeCurveMode(EEdgeCurveMode mode) { m_edgeCurveMode = mode; }

private:
    std::wstring m_authorName;
    std::wstring m_modelName;
    ECatiaV4Version m_version = CatiaV4VersionUnknown;
    EEdgeCurveMode m_edgeCurveMode = EdgeCurveUnknown;
};

// CATIA V5 ("CatiaV5"; "OptionsCatiaV5").
// Keys: "version", "default_color_mode", "cgr_compatibility_mode".
class XCH_API OptionsCatiaV5 : public FormatOptions {
public:
    ~OptionsCatiaV5() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    ECatiaV5Version version() const { return m_version; }
    void setVersion(ECatiaV5Version version) { m_version = version; }
    EDefaultColorMode defaultColorMode() const { return m_defaultColorMode; }
    void setDefaultColorMode(EDefaultColorMode mode) { m_defaultColorMode = mode; }
    ECgrCompatibilityMode cgrCompatibilityMode() const { return m_cgrCompatibilityMode; }
    void setCgrCompatibilityMode(ECgrCompatibilityMode mode) { m_cgrCompatibilityMode = mode; }

private:
    ECatiaV5Version m_version = CatiaV5VersionCurrent;
    EDefaultColorMode m_defaultColorMode = DefaultColorCatiaV5;
    ECgrCompatibilityMode m_cgrCompatibilityMode = CgrCompatibilityUnknown;
};

// IGES ("IGES"; named "OptionsIges" in messages). Keys: "units".
class XCH_API OptionsIGES : public FormatOptions {
public:
    ~OptionsIGES() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    ELengthUnitType units() const { return m_units; }
    void setUnits(ELengthUnitType units) { m_units = units; }

private:
    ELengthUnitType m_units = LengthMillimeter;
};

// Parasolid ("parasolid"; "OptionsParasolid"). Keys: "version".
class XCH_API OptionsParasolid : public FormatOptions {
public:
    ~OptionsParasolid() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    EParasolidVersion version() const { return m_version; }
    void setVersion(EParasolidVersion version) { m_version = version; }

private:
    EParasolidVersion m_version = ParasolidVersionCurrent;
};

// STEP ("STEP"; named "OptionsStep" in messages).
// Keys: "units", "version", "tolerance", "layer_name_mode".
class XCH_API OptionsSTEP : public FormatOptions {
public:
    ~OptionsSTEP() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    ELengthUnitType units() const { return m_units; }
    void setUnits(ELengthUnitType units) { m_units = units; }
    EStepVersion version() const { return m_version; }
    void setVersion(EStepVersion version) { m_version = version; }
    double tolerance() const { return m_tolerance; }
    void setTolerance(double tolerance) { m_tolerance = tolerance; }
    EStepLayerNameMode layerNameMode() const { return m_layerNameMode; }
    void setLayerNameMode(EStepLayerNameMode mode) { m_layerNameMode = mode; }

private:
    ELengthUnitType m_units = LengthMillimeter;
    EStepVersion m_version = StepVersionAP242;
    double m_tolerance = 1e-6;
    EStepLayerNameMode m_layerNameMode = LayerNameAsmRep;
};

// 3DEXPERIENCE CGM ("XCGM"; "OptionsXCGM").
// Keys: "version", "default_color_mode", "graphical_pmi_container_mode".
class XCH_API OptionsXCGM : public FormatOptions {
public:
    ~OptionsXCGM() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    EXcgmVersion version() const { return m_version; }
    void setVersion(EXcgmVersion version) { m_version = version; }
    EDefaultColorMode defaultColorMode() const { return m_defaultColorMode; }
    void setDefaultColorMode(EDefaultColorMode mode) { m_defaultColorMode = mode; }
    ETriState graphicalPMIContainerMode() const { return m_graphicalPMIContainerMode; }
    void setGraphicalPMIContainerMode(ETriState mode) { m_graphicalPMIContainerMode = mode; }

private:
    EXcgmVersion m_version = XcgmVersionCurrent;
    EDefaultColorMode m_defaultColorMode = DefaultColorUnknown;
    ETriState m_graphicalPMIContainerMode = TriStateUnknown;
};

// STL ("STL"; "OptionsSTL"). Keys: "save_mode".
class XCH_API OptionsSTL : public FormatOptions {
public:
    ~OptionsSTL() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    EStlSaveMode saveMode() const { return m_saveMode; }
    void setSaveMode(EStlSaveMode mode) { m_saveMode = mode; }

private:
    EStlSaveMode m_saveMode = StlSaveUnknown;
};

// 3D PDF ("3D_PDF"; "OptionsPDF"). Keys: "color", the page background in
// the ExcColor form. The default colour has no flags set (channels 0, 0, 0,
// alpha 255) and is therefore written as null.
class XCH_API OptionsPDF : public FormatOptions {
public:
    ~OptionsPDF() override;
    EFormatType formatType() const override;
    void readObject(const JsonValue& value) override;
    void writeObject(JsonValue& value, JsonAllocator& allocator) const override;
    template <class Io, class Self>
    static void members(Io& io, Self& self);

    const ExcColor& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const ExcColor& color) { m_backgroundColor = color; }

private:
    ExcColor m_backgroundColor;
};

} // namespace exp
} // namespace xch

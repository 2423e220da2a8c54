#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_format_options.h>
#include <xch_api/xch_api_format_options_export.h>
#include <xch_api/xch_api_format_options_import.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using xch_test::LogCapture;
using xch_test::readFromJsonText;
using xch_test::toJsonText;

namespace {

std::shared_ptr<IFormatOptions> readOptionsText(const std::wstring& text) {
    JsonDocument doc;
    doc.Parse(text.c_str());
    EXPECT_FALSE(doc.HasParseError());
    return IFormatOptions::readOptions(doc);
}

std::wstring typeJson(const std::wstring& operation, const std::wstring& format) {
    return L"{\"operation_type\":\"" + operation + L"\",\"format_type\":\"" + format + L"\"}";
}

// The messages logged above trace level.
std::vector<std::string> reported(const LogCapture& log) {
    std::vector<std::string> out;
    for (int level = 1; level <= 5; ++level)
        for (const std::string& m : log.messages(level)) out.push_back(m);
    return out;
}

// Every format string, in value order, as the exchange names them.
const wchar_t* const kFormatStrings[] = {
    L"unknown", L"general", L"CGM", L"ACIS", L"parasolid", L"CatiaV5", L"CatiaV5Drawing",
    L"CatiaV4", L"IGES", L"STEP", L"STL", L"Creo", L"NX", L"SolidWorks", L"SolidWorksDrawing",
    L"SolidEdge", L"JT", L"Inventor", L"3D_PDF", L"3D_XML", L"autocad", L"U3D", L"VDA_FS",
    L"XML_EBOM", L"XCGM", L"graphical", L"mechanical", L"modeler", L"picture", L"IFC",
    L"EDrawings", L"UDL"};

// One enum field of an export set, read through the set's own getter.
struct FallbackCase {
    const char* what;
    std::function<std::shared_ptr<IFormatOptions>()> make;
    const wchar_t* key;
    std::function<int(const IFormatOptions&)> get;
    int expected;
};

template <class T, class V>
FallbackCase fallbackCase(const char* what, const wchar_t* key, V (T::*getter)() const, int expected) {
    return {what, [] { return std::make_shared<T>(); }, key,
            [getter](const IFormatOptions& o) { return static_cast<int>((dynamic_cast<const T&>(o).*getter)()); },
            expected};
}

} // namespace

TEST(FormatOptions, DispatchCoversExactlyTheListedPairs) {
    struct Expected {
        const wchar_t* operation;
        const char* noClassMessage;
        std::vector<std::pair<int, const std::type_info*>> classes;
    };
    const Expected table[] = {
        {L"options", "FormatOptions: Unknown common options type.",
         {{1, &typeid(OptionsGeneral)}, {25, &typeid(OptionsGraphical)},
          {26, &typeid(OptionsMechanical)}, {27, &typeid(OptionsModeler)}}},
        {L"import", "FormatOptions: No options for given import format.",
         {{4, &typeid(imp::OptionsParasolid)}, {5, &typeid(imp::OptionsCatiaV5)},
          {6, &typeid(imp::OptionsCatiaV5Drawing)}, {7, &typeid(imp::OptionsCatiaV4)},
          {8, &typeid(imp::OptionsIGES)}, {9, &typeid(imp::OptionsSTEP)},
          {11, &typeid(imp::OptionsCreo)}, {12, &typeid(imp::OptionsNX)},
          {13, &typeid(imp::OptionsSolidWorks)}, {14, &typeid(imp::OptionsSolidWorksDrawing)},
          {15, &typeid(imp::OptionsSolidEdge)}, {16, &typeid(imp::OptionsJT)},
          {17, &typeid(imp::OptionsInventor)}, {19, &typeid(imp::Options3DXML)},
          {24, &typeid(imp::OptionsXCGM)}}},
        {L"export", "FormatOptions: No options for given export format.",
         {{3, &typeid(exp::OptionsAcis)}, {4, &typeid(exp::OptionsParasolid)},
          {5, &typeid(exp::OptionsCatiaV5)}, {7, &typeid(exp::OptionsCatiaV4)},
          {8, &typeid(exp::OptionsIGES)}, {9, &typeid(exp::OptionsSTEP)},
          {10, &typeid(exp::OptionsSTL)}, {18, &typeid(exp::OptionsPDF)},
          {19, &typeid(exp::Options3DXML)}, {24, &typeid(exp::OptionsXCGM)}}},
    };

    for (int operation = 0; operation < 3; ++operation) {
        const Expected& row = table[operation];
        for (int format = 0; format < 32; ++format) {
            SCOPED_TRACE(vx_link::utf8(row.operation) + " / " + vx_link::utf8(kFormatStrings[format]));
            const std::type_info* expected = nullptr;
            for (const auto& entry : row.classes)
                if (entry.first == format) expected = entry.second;

            LogCapture log;
            std::wstring text = typeJson(row.operation, kFormatStrings[format]);
            std::shared_ptr<IFormatOptions> options = readOptionsText(text);
            if (!expected) {
                EXPECT_FALSE(options);
                EXPECT_EQ(log.messages(4), std::vector<std::string>{row.noClassMessage});
                continue;
            }
            ASSERT_TRUE(options);
            EXPECT_TRUE(typeid(*options) == *expected) << typeid(*options).name();
            EXPECT_EQ(options->operationType(), operation);
            EXPECT_EQ(options->formatType(), format);
            EXPECT_TRUE(reported(log).empty());
            // Every class writes its two type keys first, with the same strings.
            std::wstring written = toJsonText(*options);
            EXPECT_EQ(written.compare(0, text.size() - 1, text, 0, text.size() - 1), 0)
                << vx_link::utf8(written);
        }
    }
}

TEST(FormatOptions, FactoryRefusesIncompleteObjectsAndFollowsTheStringFallback) {
    struct Case {
        const wchar_t* json;
        const char* message;
    };
    const Case refused[] = {
        {L"[1, 2]", "FormatOptions object should have a JSON object type."},
        {L"null", "FormatOptions object should have a JSON object type."},
        {L"{\"format_type\": \"STEP\"}", "FormatOptions object should contain operation type."},
        {L"{\"operation_type\": 1, \"format_type\": \"STEP\"}",
         "FormatOptions object should contain operation type."},
        {L"{\"operation_type\": \"export\"}", "FormatOptions object should contain format type."},
        {L"{\"operation_type\": \"export\", \"format_type\": null}",
         "FormatOptions object should contain format type."},
        {L"{\"operation_type\": \"import\", \"format_type\": \"STL\"}",
         "FormatOptions: No options for given import format."},
    };
    for (const Case& c : refused) {
        SCOPED_TRACE(vx_link::utf8(c.json));
        LogCapture log;
        EXPECT_FALSE(readOptionsText(c.json));
        EXPECT_EQ(reported(log), std::vector<std::string>{c.message});
    }

    // Unknown strings read as the table's first string in code-unit order:
    // "Import" is export, a misspelt format is 3D_PDF.
    auto stl = readOptionsText(typeJson(L"Import", L"STL"));
    ASSERT_TRUE(stl);
    EXPECT_TRUE(std::dynamic_pointer_cast<exp::OptionsSTL>(stl));
    auto pdf = readOptionsText(typeJson(L"export", L"step"));
    ASSERT_TRUE(pdf);
    EXPECT_TRUE(std::dynamic_pointer_cast<exp::OptionsPDF>(pdf));
    EXPECT_EQ(enumFromString<EOperationType>(L"Options"), OperationExport);
    EXPECT_EQ(enumFromString<EFormatType>(L""), Format3DPDF);
    // A value outside the table writes as the smallest value's string.
    EXPECT_EQ(enumToString(static_cast<EFormatType>(99)), L"unknown");
    EXPECT_EQ(enumToString(static_cast<EOperationType>(-1)), L"options");
}

TEST(FormatOptions, CommonGroupsWriteEveryKeyInOrder) {
    EXPECT_EQ(toJsonText(OptionsGraphical()),
              L"{\"operation_type\":\"options\",\"format_type\":\"graphical\","
              L"\"tesselation_max_chordal_deviation\":0.0,"
              L"\"translate_reference_geometry_mode\":\"unknown\","
              L"\"visu_brep_tesselation_mode\":\"unknown\",\"visu_text_data_mode\":\"as_string\","
              L"\"visu_text_stroking_mode\":\"unknown\"}");
    EXPECT_EQ(toJsonText(OptionsGeneral()),
              L"{\"operation_type\":\"options\",\"format_type\":\"general\","
              L"\"log_event_level_type\":\"unknown\",\"log_file_encoding_type\":\"unknown\","
              L"\"log_file_name\":\"\",\"logging_mode_type\":\"unknown\","
              L"\"logging_output_directory\":\"\",\"memory_management_mode\":\"unknown\"}");
    EXPECT_EQ(toJsonText(OptionsMechanical()),
              L"{\"operation_type\":\"options\",\"format_type\":\"mechanical\","
              L"\"feature_tolerance_processing_mode\":\"unknown\","
              L"\"misc_data_processing_mode\":\"unknown\"}");

    OptionsModeler modeler;
    modeler.setAcisSplineResurfacingMode(ResurfacingErroneousAndShortSurfaces);
    modeler.setAcisSplineResurfacingTolerance(0.25);
    modeler.setAttributeProcessingMode(ProcessingNone);
    modeler.setAcisHealType(AcisHealStandard);
    modeler.setLengthUnitType(LengthInch);
    modeler.setPreserveMfgMode(PreserveMfgDecorateAll);
    modeler.setPreserveModelAssociativityMode(AssociativityDecorateAll);
    modeler.setPreservePMIMode(PreservePMIDecorateAll);
    modeler.setTopologicalEntityInspectorMode(InspectorDisabled);
    const std::wstring text =
        L"{\"operation_type\":\"options\",\"format_type\":\"modeler\","
        L"\"acis_spline_resurfacing_mode\":\"erroneous_and_short_surfaces\","
        L"\"acis_spline_resurfacing_tolerance\":0.25,\"attribute_processing_mode\":\"none\","
        L"\"acis_heal_type\":\"standard\",\"length_unit_type\":\"inch\","
        L"\"preserve_mfg_mode\":\"decorate_all_mfg\","
        L"\"preserve_model_associativity_mode\":\"decorate_all\","
        L"\"preserve_pmi_mode\":\"decorate_all_pmi\","
        L"\"topological_entity_inspector_mode\":\"disabled\"}";
    EXPECT_EQ(toJsonText(modeler), text);
    auto read = std::dynamic_pointer_cast<OptionsModeler>(readOptionsText(text));
    ASSERT_TRUE(read);
    EXPECT_EQ(toJsonText(*read), text);

    // Values outside a table write as its smallest value's string.
    OptionsGeneral general;
    general.setMemoryManagementMode(static_cast<EMemoryManagementModeFlags>(3));
    general.setLogEventLevel(static_cast<ELogEventLevel>(255));
    const std::wstring generalText = toJsonText(general);
    EXPECT_NE(generalText.find(L"\"memory_management_mode\":\"keep_none\""), std::wstring::npos);
    EXPECT_NE(generalText.find(L"\"log_event_level_type\":\"unknown\""), std::wstring::npos);
}

TEST(FormatOptions, CommonGroupsReadKeysIndependently) {
    auto graphical = std::dynamic_pointer_cast<OptionsGraphical>(
        readOptionsText(typeJson(L"options", L"graphical")));
    ASSERT_TRUE(graphical);
    EXPECT_EQ(graphical->visuTextDataMode(), TextDataAsString);
    EXPECT_EQ(graphical->tesselationMaxChordalDeviation(), 0.0);
    EXPECT_EQ(graphical->visuTextStrokingMode(), TextStrokingUnknown);

    OptionsGeneral general;
    readFromJsonText(general, L"{\"memory_management_mode\":\"keep_asm_visu\",\"log_file_name\":7,"
                              L"\"logging_output_directory\":\"C:\\\\logs\","
                              L"\"log_file_encoding_type\":\"UTF8\"}");
    EXPECT_EQ(general.memoryManagementMode(), MemoryKeepAsmVisu);
    EXPECT_EQ(general.logFileName(), L"");
    EXPECT_EQ(general.loggingOutputDirectory(), L"C:\\logs");
    // "UTF8" is not "utf8": the first string in code-unit order is "mbcs".
    EXPECT_EQ(general.logFileEncoding(), LogEncodingMbcs);

    OptionsGraphical numbers;
    readFromJsonText(numbers, L"{\"tesselation_max_chordal_deviation\": 2}");
    EXPECT_EQ(numbers.tesselationMaxChordalDeviation(), 2.0);
    readFromJsonText(numbers, L"{\"tesselation_max_chordal_deviation\": \"0.5\"}");
    EXPECT_EQ(numbers.tesselationMaxChordalDeviation(), 2.0);

    // A type mismatch is logged, but the group's own keys are still read.
    LogCapture log;
    OptionsModeler modeler;
    readFromJsonText(modeler, L"{\"operation_type\":\"options\",\"format_type\":\"general\","
                              L"\"acis_heal_type\":\"Standard\",\"length_unit_type\":\"meter\"}");
    EXPECT_EQ(reported(log), std::vector<std::string>{"FormatOptions format type doesn't match."});
    EXPECT_EQ(modeler.acisHealType(), AcisHealMinimal);
    EXPECT_EQ(modeler.lengthUnitType(), LengthMeter);

    log.clear();
    OptionsMechanical mechanical;
    readFromJsonText(mechanical, L"{\"operation_type\":\"export\",\"format_type\":\"general\","
                                 L"\"misc_data_processing_mode\":\"all\"}");
    EXPECT_EQ(reported(log), std::vector<std::string>{"FormatOptions operation type doesn't match."});
    EXPECT_EQ(mechanical.miscDataProcessingMode(), ProcessingAll);

    // Without type keys nothing is reported.
    log.clear();
    readFromJsonText(mechanical, L"{\"feature_tolerance_processing_mode\":\"none\"}");
    EXPECT_TRUE(reported(log).empty());
    EXPECT_EQ(mechanical.featureToleranceProcessingMode(), ProcessingNone);
}

TEST(FormatOptions, EveryClassNamesItselfWhenGivenANonObject) {
    struct Case {
        std::function<std::shared_ptr<IFormatOptions>()> make;
        const char* message;
    };
    const Case cases[] = {
        {[] { return std::make_shared<OptionsGeneral>(); }, "OptionsGeneral object should have a JSON object type."},
        {[] { return std::make_shared<OptionsGraphical>(); }, "OptionsGraphical object should have a JSON object type."},
        {[] { return std::make_shared<OptionsMechanical>(); }, "OptionsMechanical object should have a JSON object type."},
        {[] { return std::make_shared<OptionsModeler>(); }, "OptionsModeler object should have a JSON object type."},
        {[] { return std::make_shared<exp::Options3DXML>(); }, "Options3DXML object should have a JSON object type."},
        {[] { return std::make_shared<exp::OptionsAcis>(); }, "OptionsAcis object should have a JSON object type."},
        {[] { return std::make_shared<exp::OptionsCatiaV4>(); }, "OptionsCatiaV4 object should have a JSON object type."},
        {[] { return std::make_shared<exp::OptionsCatiaV5>(); }, "OptionsCatiaV5 object should have a JSON object type."},
        {[] { return std::make_shared<exp::OptionsIGES>(); }, "OptionsIges object should have a JSON object type."},
        {[] { return std::make_shared<exp::OptionsParasolid>(); }, "OptionsParasolid object should have a JSON object type."},
        {[] { return std::make_shared<exp::OptionsSTEP>(); }, "OptionsStep object should have a JSON object type."},
        {[] { return std::make_shared<exp::OptionsXCGM>(); }, "OptionsXCGM object should have a JSON object type."},
        {[] { return std::make_shared<exp::OptionsSTL>(); }, "OptionsSTL object should have a JSON object type."},
        {[] { return std::make_shared<exp::OptionsPDF>(); }, "OptionsPDF object should have a JSON object type."},
        {[] { return std::make_shared<imp::OptionsJT>(); }, "FormatOptions object should have a JSON object type."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        std::shared_ptr<IFormatOptions> options = c.make();
        const std::wstring before = toJsonText(*options);
        LogCapture log;
        readFromJsonText(*options, L"[{\"version\": \"current\", \"units\": \"inch\"}]");
        EXPECT_EQ(reported(log), std::vector<std::string>{c.message});
        EXPECT_EQ(toJsonText(*options), before);
    }
}

TEST(FormatOptions, ExportDefaultsAndKeyOrder) {
    const std::wstring head = L"{\"operation_type\":\"export\",\"format_type\":";
    EXPECT_EQ(toJsonText(exp::OptionsSTEP()),
              head + L"\"STEP\",\"units\":\"millimeter\",\"version\":\"AP242\",\"tolerance\":0.000001,"
                     L"\"layer_name_mode\":\"asm_rep\"}");
    EXPECT_EQ(toJsonText(exp::OptionsCatiaV5()),
              head + L"\"CatiaV5\",\"version\":\"current\",\"default_color_mode\":\"catiav5\","
                     L"\"cgr_compatibility_mode\":\"unknown\"}");
    EXPECT_EQ(toJsonText(exp::OptionsAcis()),
              head + L"\"ACIS\",\"version\":\"current\",\"units\":\"millimeter\"}");
    EXPECT_EQ(toJsonText(exp::OptionsCatiaV4()),
              head + L"\"CatiaV4\",\"author_name\":\"\",\"model_name\":\"\",\"version\":\"unknown\","
                     L"\"edge_curve_mode\":\"unknown\"}");
    EXPECT_EQ(toJsonText(exp::OptionsIGES()), head + L"\"IGES\",\"units\":\"millimeter\"}");
    EXPECT_EQ(toJsonText(exp::OptionsParasolid()), head + L"\"parasolid\",\"version\":\"current\"}");
    EXPECT_EQ(toJsonText(exp::OptionsXCGM()),
              head + L"\"XCGM\",\"version\":\"current\",\"default_color_mode\":\"unknown\","
                     L"\"graphical_pmi_container_mode\":\"unknown\"}");
    EXPECT_EQ(toJsonText(exp::Options3DXML()),
              head + L"\"3D_XML\",\"default_color_mode\":\"unknown\","
                     L"\"graphical_pmi_container_mode\":\"unknown\"}");
    EXPECT_EQ(toJsonText(exp::OptionsSTL()), head + L"\"STL\",\"save_mode\":\"unknown\"}");
    // The default background has no flags set, so the colour is null.
    EXPECT_EQ(toJsonText(exp::OptionsPDF()), head + L"\"3D_PDF\",\"color\":null}");
    exp::OptionsPDF pdf;
    EXPECT_EQ(pdf.backgroundColor()[ExcColor::Alpha], 255);
    pdf.setBackgroundColor(ExcColor(255, 255, 240));
    EXPECT_EQ(toJsonText(pdf), head + L"\"3D_PDF\",\"color\":{\"rgb\":[255,255,240]}}");

    // Import sets carry only the base keys.
    EXPECT_EQ(toJsonText(imp::OptionsSTEP()), typeJson(L"import", L"STEP"));
    EXPECT_EQ(toJsonText(imp::OptionsSolidWorksDrawing()), typeJson(L"import", L"SolidWorksDrawing"));
}

TEST(FormatOptions, ParasolidVersionsAreNumberedReleases) {
    exp::OptionsParasolid parasolid;
    const std::wstring head = typeJson(L"export", L"parasolid");
    const std::pair<int, const wchar_t*> releases[] = {{2, L"r12"}, {3, L"r13"}, {15, L"r25"}, {27, L"r37"}};
    for (const auto& release : releases) {
        parasolid.setVersion(static_cast<exp::EParasolidVersion>(release.first));
        EXPECT_EQ(toJsonText(parasolid),
                  head.substr(0, head.size() - 1) + L",\"version\":\"" + release.second + L"\"}");
        exp::OptionsParasolid read;
        readFromJsonText(read, L"{\"version\":\"" + std::wstring(release.second) + L"\"}");
        EXPECT_EQ(read.version(), release.first);
    }
    EXPECT_EQ(enumTable<exp::EParasolidVersion>().entries().size(), 28u);
    // Unknown strings read as "current", the first string in code-unit order.
    for (const wchar_t* text : {L"R12", L"r11", L"r38", L"", L"unknown "}) {
        exp::OptionsParasolid read;
        read.setVersion(exp::ParasolidVersionUnknown);
        readFromJsonText(read, L"{\"version\":\"" + std::wstring(text) + L"\"}");
        EXPECT_EQ(read.version(), exp::ParasolidVersionCurrent) << vx_link::utf8(text);
    }
    parasolid.setVersion(static_cast<exp::EParasolidVersion>(28));
    EXPECT_NE(toJsonText(parasolid).find(L"\"version\":\"unknown\""), std::wstring::npos);
}

TEST(FormatOptions, ExportEnumFallbacksFollowCodeUnitOrder) {
    // Each export enum read from a string outside its table: the value of
    // the table's first string in code-unit order.
    const FallbackCase cases[] = {
        fallbackCase("ACIS version", L"version", &exp::OptionsAcis::version, 10),
        fallbackCase("ACIS units", L"units", &exp::OptionsAcis::units, 5),
        fallbackCase("CATIA V5 version", L"version", &exp::OptionsCatiaV5::version, 8),
        fallbackCase("default color mode", L"default_color_mode", &exp::OptionsCatiaV5::defaultColorMode, 2),
        fallbackCase("CGR compatibility", L"cgr_compatibility_mode", &exp::OptionsCatiaV5::cgrCompatibilityMode, 2),
        fallbackCase("XCGM version", L"version", &exp::OptionsXCGM::version, 2),
        fallbackCase("graphical PMI container", L"graphical_pmi_container_mode",
                     &exp::OptionsXCGM::graphicalPMIContainerMode, 2),
        fallbackCase("3D XML color mode", L"default_color_mode", &exp::Options3DXML::defaultColorMode, 2),
        fallbackCase("STEP version", L"version", &exp::OptionsSTEP::version, 1),
        fallbackCase("layer name mode", L"layer_name_mode", &exp::OptionsSTEP::layerNameMode, 1),
        fallbackCase("CATIA V4 version", L"version", &exp::OptionsCatiaV4::version, 1),
        fallbackCase("edge curve mode", L"edge_curve_mode", &exp::OptionsCatiaV4::edgeCurveMode, 2),
        fallbackCase("STL save mode", L"save_mode", &exp::OptionsSTL::saveMode, 2),
    };
    for (const FallbackCase& c : cases) {
        SCOPED_TRACE(c.what);
        auto options = c.make();
        // "3d" is in no table; the edge curve table's first string is "2d".
        readFromJsonText(*options, L"{\"" + std::wstring(c.key) + L"\":\"3d\"}");
        EXPECT_EQ(c.get(*options), c.expected);
        // A mistyped value keeps what is held.
        readFromJsonText(*options, L"{\"" + std::wstring(c.key) + L"\":1}");
        EXPECT_EQ(c.get(*options), c.expected);
    }
}

TEST(FormatOptions, ExportSetsReadBackWhatTheyWrite) {
    exp::OptionsCatiaV4 catia4;
    catia4.setAuthorName(L"J\u00f6rg");
    catia4.setModelName(L"housing");
    catia4.setVersion(exp::CatiaV4Version423);
    catia4.setEdgeCurveMode(exp::EdgeCurve2d3d);
    exp::OptionsSTEP step;
    step.setUnits(LengthInch);
    step.setVersion(exp::StepVersionAP214);
    step.setTolerance(0.001);
    step.setLayerNameMode(exp::LayerNameSavedVisuRep);
    exp::OptionsXCGM xcgm;
    xcgm.setVersion(exp::XcgmVersionR2015xB5SP1);
    xcgm.setDefaultColorMode(exp::DefaultColorFalse);
    xcgm.setGraphicalPMIContainerMode(TriStateTrue);
    exp::OptionsPDF pdf;
    pdf.setBackgroundColor(ExcColor(10, 20, 30, 40));

    for (const IFormatOptions* options : std::vector<const IFormatOptions*>{&catia4, &step, &xcgm, &pdf}) {
        const std::wstring text = toJsonText(*options);
        SCOPED_TRACE(vx_link::utf8(text));
        LogCapture log;
        auto read = readOptionsText(text);
        ASSERT_TRUE(read);
        EXPECT_TRUE(typeid(*read) == typeid(*options));
        EXPECT_EQ(toJsonText(*read), text);
        EXPECT_TRUE(reported(log).empty());
    }
    EXPECT_NE(toJsonText(catia4).find(L"\"edge_curve_mode\":\"2d+3d\""), std::wstring::npos);
    EXPECT_NE(toJsonText(xcgm).find(L"\"version\":\"CGM_R2015x_B5_SP1\""), std::wstring::npos);

    // The tolerance takes any JSON number; a string keeps the value.
    exp::OptionsSTEP numbers;
    readFromJsonText(numbers, L"{\"tolerance\": 0}");
    EXPECT_EQ(numbers.tolerance(), 0.0);
    readFromJsonText(numbers, L"{\"tolerance\": \"1e-3\", \"units\": \"Inch\"}");
    EXPECT_EQ(numbers.tolerance(), 0.0);
    EXPECT_EQ(numbers.units(), LengthCentimeter);

    // A colour that is not an object is refused by the colour and kept.
    LogCapture log;
    readFromJsonText(pdf, L"{\"color\": null}");
    EXPECT_EQ(pdf.backgroundColor()[ExcColor::Blue], 30);
    EXPECT_TRUE(pdf.backgroundColor().hasAlpha());
}

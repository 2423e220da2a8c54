#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_format_options_export.h>
#include <xch_api/xch_api_format_options_import.h>

#include "support/json_text.h"
#include "support/log_capture.h"

using namespace xch;
using namespace xch_test;

namespace {
std::shared_ptr<IFormatOptions> readOptionsText(const std::wstring& text) {
    JsonDocument doc;
    doc.Parse(text.c_str());
    EXPECT_FALSE(doc.HasParseError());
    return IFormatOptions::readOptions(doc);
}

// An option set's text: its two type keys, then `rest` (the format string and what follows).
std::wstring typed(const std::wstring& operation, const std::wstring& rest) {
    return L"{\"operation_type\":\"" + operation + L"\",\"format_type\":\"" + rest;
}

// The messages logged above trace level, each after its level.
std::vector<std::string> reported(const LogCapture& log) {
    std::vector<std::string> out;
    for (int level = 1; level <= 5; ++level)
        for (const std::string& m : log.messages(level)) out.push_back(std::to_string(level) + " " + m);
    return out;
}
} // namespace

TEST(FormatOptions, DispatchCoversExactlyTheListedPairs) {
    const wchar_t* const formats[] = {
        L"unknown", L"general", L"CGM", L"ACIS", L"parasolid", L"CatiaV5", L"CatiaV5Drawing", L"CatiaV4", L"IGES",
        L"STEP", L"STL", L"Creo", L"NX", L"SolidWorks", L"SolidWorksDrawing", L"SolidEdge", L"JT", L"Inventor",
        L"3D_PDF", L"3D_XML", L"autocad", L"U3D", L"VDA_FS", L"XML_EBOM", L"XCGM", L"graphical", L"mechanical",
        L"modeler", L"picture", L"IFC", L"EDrawings", L"UDL"};
    // Per operation: what is logged for a format without a class, and which formats (by value) have one.
    const std::tuple<const wchar_t*, const char*, const char*> table[] = {
        {L"options", "4 FormatOptions: Unknown common options type.", ".x.......................xxx...."},
        {L"import", "4 FormatOptions: No options for given import format.", "....xxxxxx.xxxxxxx.x....x......."},
        {L"export", "4 FormatOptions: No options for given export format.", "...xxx.xxxx.......xx....x......."}};
    for (int operation = 0; operation < 3; ++operation) {
        for (int format = 0; format < 32; ++format) {
            const std::wstring text = typed(std::get<0>(table[operation]), formats[format]) + L"\"}";
            SCOPED_TRACE(vx_link::utf8(text));
            LogCapture log;
            std::shared_ptr<IFormatOptions> options = readOptionsText(text);
            if (std::get<2>(table[operation])[format] == '.') {
                EXPECT_FALSE(options);
                EXPECT_EQ(reported(log), std::vector<std::string>{std::get<1>(table[operation])});
                continue;
            }
            // Each class has its own pair of types, so the pair names the class.
            ASSERT_TRUE(options);
            EXPECT_EQ(options->operationType(), operation);
            EXPECT_EQ(options->formatType(), format);
            EXPECT_TRUE(reported(log).empty());
            EXPECT_EQ(toJsonText(*options).compare(0, text.size() - 1, text, 0, text.size() - 1), 0);
        }
    }
}

TEST(FormatOptions, TypeKeysThatAreMissingMismatchedOrUnknown) {
    const std::pair<const wchar_t*, const char*> refused[] = {
        {L"[1, 2]", "have a JSON object"}, {L"{\"operation_type\":1,\"format_type\":\"STEP\"}", "contain operation"},
        {L"{\"format_type\":\"STEP\"}", "contain operation"}, {L"{\"operation_type\":\"export\"}", "contain format"},
        {L"{\"operation_type\":\"export\",\"format_type\":null}", "contain format"}};
    for (const auto& c : refused) {
        LogCapture log;
        EXPECT_FALSE(readOptionsText(c.first));
        const std::string message = "2 FormatOptions object should " + std::string(c.second) + " type.";
        EXPECT_EQ(reported(log), std::vector<std::string>{message}) << vx_link::utf8(c.first);
    }
    // Unknown strings read as the table's first string in code-unit order ("Import" is export, "step" 3D_PDF).
    auto stl = readOptionsText(typed(L"Import", L"STL\"}"));
    EXPECT_TRUE(stl && stl->operationType() == OperationExport && stl->formatType() == FormatSTL);
    EXPECT_TRUE(std::dynamic_pointer_cast<exp::OptionsPDF>(readOptionsText(typed(L"export", L"step\"}"))));

    // A set told another type logs it, but reads its own keys all the same.
    const std::pair<std::wstring, std::vector<std::string>> mismatched[] = {
        {typed(L"options", L"general\","), {"2 FormatOptions format type doesn't match."}},
        {typed(L"export", L"mechanical\","), {"2 FormatOptions operation type doesn't match."}}, {L"{", {}}};
    for (const auto& c : mismatched) {
        LogCapture log;
        OptionsMechanical mechanical;
        readFromJsonText(mechanical, c.first + L"\"misc_data_processing_mode\":\"all\"}");
        EXPECT_EQ(reported(log), c.second);
        EXPECT_EQ(mechanical.miscDataProcessingMode(), ProcessingAll);
    }
}

TEST(FormatOptions, EverySetWritesItsKeysInOrderReadsThemBackAndNamesItselfOnNonObjects) {
    const struct { const char* name; const wchar_t* operation; const wchar_t* rest; } sets[] = {
        {"OptionsGeneral", L"options",
         L"general\",\"log_event_level_type\":\"verbose\",\"log_file_encoding_type\":\"utf8\",\"log_file_name\":"
         L"\"import.log\",\"logging_mode_type\":\"append\",\"logging_output_directory\":\"C:\\\\logs\","
         L"\"memory_management_mode\":\"keep_asm_visu\"}"},
        {"OptionsGraphical", L"options",
         L"graphical\",\"tesselation_max_chordal_deviation\":0.25,\"translate_reference_geometry_mode\":\"false\","
         L"\"visu_brep_tesselation_mode\":\"never_at_least_native_pmi\",\"visu_text_data_mode\":\"as_stroked\","
         L"\"visu_text_stroking_mode\":\"from_source_generated_with_inner_loops\"}"},
        {"OptionsMechanical", L"options",
         L"mechanical\",\"feature_tolerance_processing_mode\":\"all\",\"misc_data_processing_mode\":\"none\"}"},
        {"OptionsModeler", L"options",
         L"modeler\",\"acis_spline_resurfacing_mode\":\"erroneous_and_short_surfaces\","
         L"\"acis_spline_resurfacing_tolerance\":0.25,\"attribute_processing_mode\":\"none\",\"acis_heal_type\":"
         L"\"standard\",\"length_unit_type\":\"inch\",\"preserve_mfg_mode\":\"decorate_all_mfg\","
         L"\"preserve_model_associativity_mode\":\"decorate_all\",\"preserve_pmi_mode\":\"decorate_all_pmi\","
         L"\"topological_entity_inspector_mode\":\"disabled\"}"},
        {"Options3DXML", L"export",
         L"3D_XML\",\"default_color_mode\":\"catiav5\",\"graphical_pmi_container_mode\":\"true\"}"},
        {"OptionsAcis", L"export", L"ACIS\",\"version\":\"2021_1_0\",\"units\":\"meter\"}"},
        {"OptionsCatiaV4", L"export", L"CatiaV4\",\"author_name\":\"J\u00f6rg\",\"model_name\":\"housing\","
                                      L"\"version\":\"4.2.3\",\"edge_curve_mode\":\"2d+3d\"}"},
        {"OptionsCatiaV5", L"export", L"CatiaV5\",\"version\":\"V5_6_R2019\",\"default_color_mode\":\"false\","
                                      L"\"cgr_compatibility_mode\":\"catia_3dexperience\"}"},
        {"OptionsIges", L"export", L"IGES\",\"units\":\"inch\"}"},
        {"OptionsSTL", L"export", L"STL\",\"save_mode\":\"binary_le\"}"},
        {"OptionsStep", L"export", L"STEP\",\"units\":\"inch\",\"version\":\"AP214\",\"tolerance\":0.5,"
                                   L"\"layer_name_mode\":\"saved_visu_rep\"}"},
        {"OptionsXCGM", L"export", L"XCGM\",\"version\":\"CGM_R2015x_B5_SP1\",\"default_color_mode\":\"false\","
                                   L"\"graphical_pmi_container_mode\":\"true\"}"},
        {"OptionsPDF", L"export", L"3D_PDF\",\"color\":{\"rgb\":[10,20,30],\"alpha\":40}}"},
        {"OptionsParasolid", L"export", L"parasolid\",\"version\":\"r36\"}"}, {"FormatOptions", L"import", L"JT\"}"}};
    for (const auto& set : sets) {
        const std::wstring text = typed(set.operation, set.rest);
        LogCapture log;
        std::shared_ptr<IFormatOptions> options = readOptionsText(text);
        ASSERT_TRUE(options) << set.name;
        readFromJsonText(*options, L"[{\"version\": \"current\", \"units\": \"inch\"}]");
        EXPECT_EQ(reported(log), std::vector<std::string>{"2 " + std::string(set.name) +
                                                          " object should have a JSON object type."});
        log.clear();
        readFromJsonText(*options, L"{\"color\": null}");  // refused by the PDF colour, which is kept
        EXPECT_EQ(toJsonText(*options), text);
    }
}

TEST(FormatOptions, UnknownStringsTakeTheSmallestStringAndMistypedKeysAreKept) {
    // A set read from the first text (two common groups, then export sets) ends its written text with the second.
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"general\",\"memory_management_mode\":\"Keep\"}", L"\"keep_asm_mech\"}"},
        {L"graphical\",\"visu_text_stroking_mode\":\"x\"}", L"\"from_iop\"}"},
        {L"ACIS\",\"version\":\"3d\",\"units\":\"Inch\"}", L"\"version\":\"2016_1_0\",\"units\":\"centimeter\"}"},
        {L"STEP\",\"version\":\"3d\",\"tolerance\":\"1e-3\",\"layer_name_mode\":\"3d\"}",
         L"\"version\":\"AP203\",\"tolerance\":0.000001,\"layer_name_mode\":\"asm_rep\"}"},
        {L"STEP\",\"tolerance\":2}", L"\"tolerance\":2.0,\"layer_name_mode\":\"asm_rep\"}"},
        {L"parasolid\",\"version\":\"r12\"}", L"\"r12\"}"}, {L"parasolid\",\"version\":\"r37\"}", L"\"r37\"}"},
        {L"parasolid\",\"version\":\"R12\"}", L"\"current\"}"}, {L"parasolid\",\"version\":\"r38\"}", L"\"current\"}"}};
    for (const auto& c : cases) {
        auto options = readOptionsText(typed(&c - cases < 2 ? L"options" : L"export", c.first));
        ASSERT_TRUE(options) << vx_link::utf8(c.first);
        const std::wstring text = toJsonText(*options), tail = c.second;
        EXPECT_EQ(text.substr(text.size() - std::min(text.size(), tail.size())), tail) << vx_link::utf8(c.first);
    }
    OptionsGeneral general;  // A value outside a table writes as its smallest value's string.
    general.setMemoryManagementMode(static_cast<EMemoryManagementModeFlags>(3));
    EXPECT_NE(toJsonText(general).find(L"\"memory_management_mode\":\"keep_none\""), std::wstring::npos);
    // The default background has no flags set, so the colour is null.
    EXPECT_EQ(toJsonText(exp::OptionsPDF()), typed(L"export", L"3D_PDF\",\"color\":null}"));
}

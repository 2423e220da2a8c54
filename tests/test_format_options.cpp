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
            // Each class has its own pair of types, so the pair it writes names the class.
            ASSERT_TRUE(options);
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

TEST(FormatOptions, SetsNameThemselvesReadLenientlyAndWriteTheirKeysInOrder) {
    // What each set writes after reading its text: that text, or text ending in `tail`. Unknown strings take the
    // smallest string (parasolid's take "current"), mistyped keys are kept, integers are read as doubles.
    const struct { std::string name; const wchar_t* operation; const wchar_t* rest; const wchar_t* tail; } sets[] = {
        {"OptionsGraphical", L"options", L"graphical\",\"visu_text_stroking_mode\":\"x\"}", L"\"from_iop\"}"},
        {"OptionsGeneral", L"options", L"general\"}", L""}, {"OptionsMechanical", L"options", L"mechanical\"}", L""},
        {"OptionsModeler", L"options",
         L"modeler\",\"acis_spline_resurfacing_mode\":\"erroneous_and_short_surfaces\","
         L"\"acis_spline_resurfacing_tolerance\":0.25,\"attribute_processing_mode\":\"none\",\"acis_heal_type\":"
         L"\"standard\",\"length_unit_type\":\"inch\",\"preserve_mfg_mode\":\"decorate_all_mfg\","
         L"\"preserve_model_associativity_mode\":\"decorate_all\",\"preserve_pmi_mode\":\"decorate_all_pmi\","
         L"\"topological_entity_inspector_mode\":\"disabled\"}", nullptr},
        {"Options3DXML", L"export", L"3D_XML\"}", L""}, {"OptionsXCGM", L"export", L"XCGM\"}", L""},
        {"OptionsAcis", L"export", L"ACIS\",\"version\":\"3d\",\"units\":\"Inch\"}",
         L"\"version\":\"2016_1_0\",\"units\":\"centimeter\"}"},
        {"OptionsCatiaV4", L"export", L"CatiaV4\",\"author_name\":\"J\u00f6rg\",\"model_name\":\"housing\","
                                      L"\"version\":\"4.2.3\",\"edge_curve_mode\":\"2d+3d\"}", nullptr},
        {"OptionsCatiaV5", L"export", L"CatiaV5\"}", L""},
        {"OptionsIges", L"export", L"IGES\",\"units\":\"inch\"}", nullptr},
        {"OptionsSTL", L"export", L"STL\",\"save_mode\":\"binary_le\"}", nullptr},
        {"OptionsStep", L"export", L"STEP\",\"version\":\"3d\",\"tolerance\":\"1e-3\",\"layer_name_mode\":\"3d\"}",
         L"\"version\":\"AP203\",\"tolerance\":0.000001,\"layer_name_mode\":\"asm_rep\"}"},
        {"OptionsStep", L"export", L"STEP\",\"tolerance\":2}", L"\"tolerance\":2.0,\"layer_name_mode\":\"asm_rep\"}"},
        {"OptionsPDF", L"export", L"3D_PDF\",\"color\":{\"rgb\":[10,20,30],\"alpha\":40}}", nullptr},
        {"OptionsParasolid", L"export", L"parasolid\",\"version\":\"r12\"}", L"\"r12\"}"},
        {"OptionsParasolid", L"export", L"parasolid\",\"version\":\"R12\"}", L"\"current\"}"},
        {"OptionsParasolid", L"export", L"parasolid\",\"version\":\"r38\"}", L"\"current\"}"},
        {"FormatOptions", L"import", L"JT\"}", nullptr}};
    for (const auto& set : sets) {
        const std::wstring text = typed(set.operation, set.rest);
        LogCapture log;
        std::shared_ptr<IFormatOptions> options = readOptionsText(text);
        ASSERT_TRUE(options) << vx_link::utf8(text);
        readFromJsonText(*options, L"[{\"version\": \"current\", \"units\": \"inch\"}]");
        EXPECT_EQ(reported(log), std::vector<std::string>{"2 " + set.name + " object should have a JSON object type."});
        readFromJsonText(*options, L"{\"color\": null}");  // refused by the PDF colour, which is kept
        const std::wstring written = toJsonText(*options), tail = set.tail ? set.tail : text;
        EXPECT_EQ(set.tail ? written.substr(written.size() - std::min(written.size(), tail.size())) : written, tail);
    }
    // The default background has no flags set, so the colour is null.
    EXPECT_EQ(toJsonText(exp::OptionsPDF()), typed(L"export", L"3D_PDF\",\"color\":null}"));
}

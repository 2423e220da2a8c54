#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_format_options_export.h>
#include <xch_api/xch_api_format_options_import.h>

#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/stream_text.h"

using namespace xch;
using namespace xch_test;
using Messages = std::vector<std::string>;

TEST(Command, WritesOptionsOnlyForImportAndExport) {
    Command command;
    EXPECT_EQ(writtenText(command), L"{\n  \"varnex_interface\": \"uconnect\",\n  \"command\": \"unknown\",\n"
                                    L"  \"mt_mode\": false\n}");
    command.setType(Command::Info);
    command.setInternalInterface(ConnectInterface);
    command.setUseMultiThreading(true);
    command.setImportOptions(Command::newImportOptions());
    EXPECT_EQ(compactWritten(command), L"{\"varnex_interface\":\"connect\",\"command\":\"info\",\"mt_mode\":true}");
    command.setType(static_cast<Command::EType>(9));
    command.setInternalInterface(static_cast<EVarnexInterface>(3));
    EXPECT_EQ(compactWritten(command), L"{\"varnex_interface\":\"uconnect\",\"command\":\"unknown\",\"mt_mode\":true}");
}

TEST(Command, ReadingStartsAfreshAndMatchesExactly) {
    const struct { const wchar_t* json; Command::EType type; EVarnexInterface interface; bool mt; } cases[] = {
        {L"{\"varnex_interface\":\"legacy\",\"command\":\"ping\"}", Command::Ping, LegacyInterface, false},
        {L"{\"command\":\"Import\",\"mt_mode\":1}", Command::Unknown, UConnectInterface, false},
        {L"{\"varnex_interface\":\"Legacy\",\"command\":2}", Command::Unknown, UConnectInterface, false},
        {L"{\"command\":\"unknown\",\"mt_mode\":true}", Command::Unknown, UConnectInterface, true},
        {L"{\"varnex_interface\":2,\"command\":\"ping\",\"options\":{}}", Command::Ping, UConnectInterface, false}};
    Command read;  // one command for all: each document starts afresh
    for (const auto& c : cases) {
        SCOPED_TRACE(vx_link::utf8(c.json));
        readText(read, c.json);
        EXPECT_EQ(read.type(), c.type);
        EXPECT_EQ(read.internalInterface(), c.interface);
        EXPECT_EQ(read.useMultiThreading(), c.mt);
    }
    EXPECT_FALSE(read.importOptions() || read.legacyImportOptions());
}

TEST(Command, RefusesCommandsWithoutTheirOptionsAndNullOptions) {
    Command command;
    auto writing = [&] { return invalidArgumentMessage([&] { writtenText(command); }); };
    command.setType(Command::Import);
    command.setLegacyImportOptions(Command::newLegacyImportOptions());
    EXPECT_EQ(writing(), "Import command should contain import options");
    command.setInternalInterface(LegacyInterface);
    EXPECT_EQ(writing(), "(nothing thrown)");
    command.setLegacyImportOptions(nullptr);
    command.setImportOptions(Command::newImportOptions());
    EXPECT_EQ(writing(), "Import(LEGACY) command should contain import options(LEGACY)");
    command.setType(Command::Export);
    EXPECT_EQ(writing(), "Export(LEGACY) command should contain export options(LEGACY)");
    command.setInternalInterface(ConnectInterface);
    EXPECT_EQ(writing(), "Export command should contain export options");

    const std::pair<const wchar_t*, const char*> refused[] = {
        {L"[]", "Command::readObject: invalid json document"},
        {L"{\"varnex_interface\": \"connect\"}", "Command::readObject: json document has no command type."},
        {L"{\"command\": \"import\"}", "Import command should contain options."},
        {L"{\"command\":\"export\",\"varnex_interface\":\"connect\"}", "Export command should contain options."},
        {L"{\"command\":\"import\",\"varnex_interface\":\"legacy\"}", "Legacy Import command should contain options."},
        {L"{\"command\":\"export\",\"varnex_interface\":\"legacy\"}", "Legacy Export command should contain options."},
        {L"{\"command\":\"import\",\"options\":{\"file\":5}}",
         "ImportOptionsImpl::readObject: json document has no valid file path."},
        {L"{\"command\":\"import\",\"options\":\"a.stp\"}", "ImportOptionsImpl::readObject: !object.IsObject()"},
        {L"{\"command\": \"export\", \"options\": []}", "ExportOptionsImpl::readObject: !object.IsObject()"}};
    for (const auto& c : refused) EXPECT_EQ(readRefusal(command, c.first), c.second) << vx_link::utf8(c.first);
    EXPECT_EQ(invalidArgumentMessage([&] { command.setImportOptions(nullptr); }),
              "Command::setImportOptions: wrong implementation of ImportOptions interface.");
    EXPECT_EQ(invalidArgumentMessage([&] { command.setExportOptions(nullptr); }),
              "Command::setExportOptions: wrong implementation of ExportOptions interface");
}

TEST(Command, JobOptionsLogWhatTheyReadAndSkipUnusableSets) {
    LogCapture log(5);
    ImportOptionsImpl options;
    options.setModelerVersion(12);
    options.setForceMpMode(true);
    readFromJsonText(options, L"{\"file\":\"C:\\\\in\\\\b\u00e4r.stp\",\"force_mp_mode\":\"no\",\"modeler_version\":-1,"
                              L"\"format_options\":[{\"operation_type\":\"import\",\"format_type\":\"STL\"},"
                              L"{\"operation_type\":\"import\",\"format_type\":\"STEP\"}]}");
    EXPECT_EQ(options.modelerVersion(), 12u);
    readFromJsonText(options, L"{\"file\":\"b.stp\",\"translate_misc_data\":true,\"modeler_version\":4294967295,"
                              L"\"format_options\":[{\"operation_type\":\"import\",\"format_type\":\"JT\"}]}");
    options.addFormatOptions(nullptr);
    EXPECT_EQ(toJsonText(options),
              L"{\"file\":\"b.stp\",\"force_mp_mode\":true,\"translate_world_orientation\":false,"
              L"\"translate_misc_data\":true,\"format_options\":[{\"operation_type\":\"import\",\"format_type\":"
              L"\"STEP\"},{\"operation_type\":\"import\",\"format_type\":\"JT\"}],\"modeler_version\":4294967295}");
    EXPECT_EQ(log.messages(2), Messages{"Specific format options cannot be read, file: C:\\in\\b\xc3\xa4r.stp."});
    EXPECT_EQ(log.messages(3), Messages{"ImportOptionsImpl: attempt to add null format options object."});
    EXPECT_EQ(log.messages(4), Messages{"FormatOptions: No options for given import format."});
    // Reading logs each value taken; writing logs the path again.
    EXPECT_EQ(log.messages(5), (Messages{"ImportOptions.file = C:\\in\\b\xc3\xa4r.stp", "ImportOptions.file = b.stp",
                                         "ImportOptions.file = b.stp"}));
    log.clear();
    ExportOptionsImpl exported;
    exported.setGeometryFlags(3);
    readFromJsonText(exported, L"{\"file\": \"out.igs\", \"format_version\": \"5.3\", \"geometry_flags\": -2}");
    EXPECT_EQ(invalidArgumentMessage([&] { readFromJsonText(exported, L"{\"format_version\": \"x\"}"); }),
              "ExportOptionsImpl::readObject: json document has no valid file path.");
    exported.setFormatOptions({nullptr, std::make_shared<exp::OptionsIGES>()});
    EXPECT_EQ(toJsonText(exported),
              L"{\"file\":\"out.igs\",\"format_version\":\"5.3\",\"geometry_flags\":3,\"format_options\":"
              L"[{\"operation_type\":\"export\",\"format_type\":\"IGES\",\"units\":\"millimeter\"}]}");
    // The null set is refused when set, not when written.
    EXPECT_EQ(log.messages(3), Messages{"ExportOptionsImpl: attempt to add null format options object."});
    EXPECT_TRUE(log.messages(2).empty());
    ExportOptionsImpl again(exported);
    again.setFormatOptions(again.formatOptions()); // its own list: kept
    again.setFormatOptions({nullptr});
    EXPECT_TRUE(again.formatOptions().empty());
    EXPECT_EQ(exported.formatOptions().size(), 1u);
}

TEST(Command, CommandsRoundTripWithTheirOptions) {
    const std::wstring texts[] = {
        L"{\"varnex_interface\":\"connect\",\"command\":\"import\",\"options\":{\"file\":\"C:\\\\\u00e4\\\"A\\\".stp\","
        L"\"force_mp_mode\":true,\"translate_world_orientation\":false,\"translate_misc_data\":false,"
        L"\"format_options\":[{\"operation_type\":\"options\",\"format_type\":\"mechanical\","
        L"\"feature_tolerance_processing_mode\":\"all\",\"misc_data_processing_mode\":\"none\"},"
        L"{\"operation_type\":\"import\",\"format_type\":\"STEP\"}],\"modeler_version\":34},\"mt_mode\":true}",
        L"{\"varnex_interface\":\"uconnect\",\"command\":\"export\","
        L"\"options\":{\"file\":\"b.stp\",\"format_version\":\"AP203\",\"geometry_flags\":2147483653,"
        L"\"format_options\":[{\"operation_type\":\"export\",\"format_type\":\"3D_PDF\","
        L"\"color\":{\"rgb\":[250,250,250],\"alpha\":128}}]},\"mt_mode\":false}",
        L"{\"varnex_interface\":\"legacy\",\"command\":\"export\",\"options\":{\"file\":\"\","
        L"\"insertion_unit\":\"centimeter\",\"mode\":\"selection\"},\"mt_mode\":false}"};
    for (const std::wstring& text : texts) {
        LogCapture log;
        Command read;
        readText(read, text);
        EXPECT_EQ(compactWritten(read), text);
        for (int level = 1; level <= 4; ++level) EXPECT_TRUE(log.messages(level).empty()) << level;
        EXPECT_EQ(read.internalInterface() == LegacyInterface, !read.importOptions() && !read.exportOptions());
    }
}

TEST(Command, LegacyOptionsAreLenient) {
    // Unknown strings fall back to the smallest string, a mistyped file is kept.
    const std::wstring head = L"{\"varnex_interface\":\"legacy\",\"command\":";
    Command read;
    readText(read, head + L"\"import\",\"options\":{\"mode\":\"Replace\",\"insertion_unit\":\"inches\",\"file\":1}}");
    EXPECT_EQ(compactWritten(read), head + L"\"import\",\"options\":{\"file\":\"\",\"insertion_unit\":\"centimeter\","
                                           L"\"mode\":\"insert\"},\"mt_mode\":false}");
    LogCapture log;
    readText(read, head + L"\"export\",\"options\":7}");
    ASSERT_TRUE(read.legacyExportOptions());
    EXPECT_EQ(read.legacyExportOptions()->mode(), LegacyExportUnknown);
    EXPECT_EQ(log.messages(2), Messages{"LegacyExportOptionsImpl object should have a JSON object type."});
}

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>
#include <vector>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_varnex_info.h>

#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/stream_text.h"

using namespace xch;
using namespace xch_test;

TEST(VarnexInfo, WritesEveryKeyInOrderAndReadsItBack) {
    VarnexInfo info;  // empty lists are left out
    EXPECT_EQ(writtenText(info).substr(0, 4), L"{\n  ") << "written pretty";
    EXPECT_EQ(compactWritten(info), L"{\"name\":\"\",\"version\":\"\",\"varnex_interface\":\"uconnect\","
                                    L"\"parasolid_mode\":\"direct\",\"modeler_version\":31}");
    const std::wstring text =
        L"{\"name\":\"Varnex \u00e9dition\",\"version\":\"4.2 \\\"17\\\"\",\"varnex_interface\":\"connect\","
        L"\"thirdparty_cores\":[{\"name\":\"Reader\",\"version\":\"R37\"}],\"parasolid_mode\":\"kernel\","
        L"\"import_formats\":[{\"description\":\"Creo\",\"extensions\":[\"prt\"],\"filters\":[\"*.prt;*.prt.*\","
        L"\"*.asm\"]}],\"export_formats\":[{\"description\":\"PDF\",\"extensions\":[\"pdf\"],\"filters\":[]}],"
        L"\"modeler_version\":-4}";
    readText(info, text);
    info.importFormats()[0]->addRegex(L"never written");
    EXPECT_EQ(compactWritten(info), text);
}

TEST(VarnexInfo, ReadingMatchesExactlyAndKeepsWhatIsMissingOrMistyped) {
    VarnexInfo info;
    // The table alone falls back to its first string; the document reads anything unknown as 0.
    EXPECT_EQ(enumFromString<EVarnexInterface>(L"Connect"), ConnectInterface);
    readText(info, L"{\"varnex_interface\": \"legacy\", \"parasolid_mode\": \"kernel\", \"name\": \"V\"}");
    readText(info, L"{\"varnex_interface\": 1, \"parasolid_mode\": null, \"name\": 3, \"modeler_version\": 12.5}");
    readText(info, L"{\"modeler_version\": 4294967296}");
    EXPECT_EQ(compactWritten(info), L"{\"name\":\"V\",\"version\":\"\",\"varnex_interface\":\"legacy\","
                                    L"\"parasolid_mode\":\"kernel\",\"modeler_version\":31}");
    readText(info, L"{\"varnex_interface\": \"Connect\", \"parasolid_mode\": \"Kernel\"}");
    EXPECT_EQ(info.requestedInterface(), UConnectInterface);
    EXPECT_EQ(info.parasolidMode(), ParasolidDirect);
    for (const wchar_t* text : {L"[]", L"\"name\"", L"{\"name\": \"x\"", L""})
        EXPECT_EQ(readRefusal(info, text), "VarnexInfo::readObject: invalid json document");
    EXPECT_EQ(info.name(), L"V");
}

TEST(VarnexInfo, ListsAppendShareAndRefuseOrSkipWhatIsNotAnObject) {
    Format format;
    EXPECT_EQ(invalidArgumentMessage([&] { readFromJsonText(format, L"[\"*.stp\"]"); }),
              "Format::readFrom > !jsonObject.IsObject()");
    EXPECT_EQ(invalidArgumentMessage([] { ThirdpartyCore core; readFromJsonText(core, L"\"Kernel\""); }),
              "ThirdpartyCore::readFrom > !jsonObject.IsObject()");
    readFromJsonText(format, L"{\"description\": \"STEP\", \"extensions\": [\"stp\", 1], \"filters\": [\"*.stp\"]}");
    readFromJsonText(format, L"{\"description\": 5, \"extensions\": [\"stpz\"], \"filters\": \"*.x\"}");
    EXPECT_EQ(toJsonText(format),
              L"{\"description\":\"STEP\",\"extensions\":[\"stp\",\"stpz\"],\"filters\":[\"*.stp\"]}");
    VarnexInfo info;
    readText(info, L"{\"import_formats\": [{\"description\": \"STEP\"}, 5, null, {\"description\": \"IGES\"}],"
                   L" \"thirdparty_cores\": [\"core\", {\"name\": \"Kernel\"}]}");
    readText(info, L"{\"import_formats\": [{\"description\": \"JT\"}], \"export_formats\": {}}");
    auto shared = std::make_shared<Format>();
    xch_test::LogCapture log(3);
    info.addImportFormat(nullptr);
    info.addThirdpartyCore(nullptr);
    info.addExportFormats({nullptr, shared, nullptr});
    info.addImportFormats(info.importFormats());
    info.addExportFormat(nullptr);
    info.addImportFormats({nullptr});
    // Each null adds nothing and is logged.
    const std::string nullFormat = "VarnexInfo: attempt to add null Export Format object.";
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "VarnexInfo: attempt to add null Import Format object.",
                                  "VarnexInfo: attempt to add null Thirdparty Core object.", nullFormat, nullFormat,
                                  nullFormat, "VarnexInfo: attempt to add null Import Format object."}));
    std::wstring descriptions;
    for (const auto& f : info.importFormats()) descriptions += f->description() + L" ";
    EXPECT_EQ(descriptions, L"STEP IGES JT STEP IGES JT ");
    ASSERT_EQ(info.thirdpartyCores().size(), 1u);
    EXPECT_EQ(info.thirdpartyCores()[0]->name(), L"Kernel");
    // Copies share their formats.
    VarnexInfo copy(info);
    copy.newExportFormat();
    shared->setDescription(L"seen by both");
    ASSERT_EQ(info.exportFormats().size(), 1u);
    EXPECT_EQ(copy.exportFormats()[0]->description(), L"seen by both");
}

TEST(VarnexInfo, FormatMatchesFileNamesAndListsDialogFilters) {
    Format step;
    step.setDescription(L"STEP files").addFilterExtensions(L"*.stp;*.step").addFilterExtensions(L"part?.x_t");
    EXPECT_EQ(step.getFilters(), (std::vector<std::wstring>{L"STEP files|*.stp;*.step", L"STEP files|part?.x_t"}));
    const std::pair<const wchar_t*, bool> names[] = {
        {L"a.step", true},     {L"a.stp", true},    {L"a.STEP", false},  {L"astp", false},
        {L"dir/x.stp", true},  {L".stp", true},     {L"x.stp.bak", false}, {L"x.stpx", false},
        {L"", false},          {L"par.x_t", true},  {L"part.x_t", true}, {L"part1.x_t", false}};
    for (const auto& name : names) EXPECT_EQ(step.is(name.first), name.second) << vx_link::utf8(name.first);

    // Regular expressions first, then the filters; the extensions play no part.
    Format catia;
    catia.addExtension(L"CATPart").addRegex(L"[A-Z]+_[0-9]{3}\\.model").addFilterExtensions(L"*.CATPart");
    EXPECT_TRUE(catia.is(L"HULL_001.model") && catia.is(L"a.CATPart"));
    EXPECT_FALSE(catia.is(L"HULL_001.model.old") || catia.is(L"a.catpart"));
    EXPECT_FALSE(Format().addExtension(L"jt").is(L"a.jt"));
    EXPECT_THROW(Format().addRegex(L"(").addFilterExtensions(L"*.x").is(L"a.x"), std::regex_error);
}

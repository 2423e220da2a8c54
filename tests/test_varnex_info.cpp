#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_json_text_io.h>
#include <xch_api/xch_api_varnex_info.h>

#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/stream_text.h"

using namespace xch;
using xch_test::LogCapture;
using xch_test::readFromJsonText;
using xch_test::toJsonText;
using xch_test::compactJson;
using xch_test::invalidArgumentMessage;
using xch_test::readText;
using xch_test::writtenText;

namespace {
// The description as compact JSON text.
std::wstring compactOf(const VarnexInfo& info) { return compactJson(writtenText(info)); }
} // namespace

TEST(VarnexInfo, FreshDescriptionAndEnumerationStrings) {
    VarnexInfo info;
    const std::wstring text = writtenText(info);
    EXPECT_EQ(text.substr(0, 4), L"{\n  ") << "written pretty";
    EXPECT_EQ(compactJson(text), L"{\"name\":\"\",\"version\":\"\",\"varnex_interface\":\"uconnect\","
                             L"\"parasolid_mode\":\"direct\",\"modeler_version\":31}");

    info.setRequestedInterface(LegacyInterface);
    info.setParasolidMode(ParasolidKernel);
    EXPECT_NE(compactOf(info).find(L"\"varnex_interface\":\"legacy\",\"parasolid_mode\":\"kernel\""),
              std::wstring::npos);
    info.setRequestedInterface(static_cast<EVarnexInterface>(7));
    info.setParasolidMode(static_cast<EParasolidMode>(-1));
    EXPECT_NE(compactOf(info).find(L"\"varnex_interface\":\"uconnect\",\"parasolid_mode\":\"direct\""),
              std::wstring::npos);

    // The table alone falls back to its first string ("connect"); the
    // description reads anything unknown as 0.
    EXPECT_EQ(enumFromString<EVarnexInterface>(L"Connect"), ConnectInterface);
    VarnexInfo read;
    read.setRequestedInterface(LegacyInterface);
    readText(read, L"{\"varnex_interface\": \"Connect\", \"parasolid_mode\": \"Kernel\"}");
    EXPECT_EQ(read.requestedInterface(), UConnectInterface);
    EXPECT_EQ(read.parasolidMode(), ParasolidDirect);
    readText(read, L"{\"varnex_interface\": \"legacy\", \"parasolid_mode\": \"kernel\"}");
    EXPECT_EQ(read.requestedInterface(), LegacyInterface);
    EXPECT_EQ(read.parasolidMode(), ParasolidKernel);
    readText(read, L"{\"varnex_interface\": 1, \"parasolid_mode\": null}");
    EXPECT_EQ(read.requestedInterface(), LegacyInterface);
    EXPECT_EQ(read.parasolidMode(), ParasolidKernel);
    readText(read, L"{\"varnex_interface\": \"connect\"}");
    EXPECT_EQ(read.requestedInterface(), ConnectInterface);
}

TEST(VarnexInfo, ReadingKeepsWhatTheDocumentDoesNotSay) {
    VarnexInfo info;
    readText(info, L"{\"name\": \"Varnex\"}");
    EXPECT_EQ(info.name(), L"Varnex");
    EXPECT_EQ(info.modelerMajorVersion(), 31);
    readText(info, L"{\"name\": 3, \"version\": \"2.1\", \"modeler_version\": 12.5}");
    EXPECT_EQ(info.name(), L"Varnex");
    EXPECT_EQ(info.version(), L"2.1");
    EXPECT_EQ(info.modelerMajorVersion(), 31);
    readText(info, L"{\"modeler_version\": -4}");
    EXPECT_EQ(info.modelerMajorVersion(), -4);
    readText(info, L"{\"modeler_version\": 4294967296}");
    EXPECT_EQ(info.modelerMajorVersion(), -4);

    const std::string invalid = "VarnexInfo::readObject: invalid json document";
    EXPECT_EQ(invalidArgumentMessage([&] { readText(info, L"[]"); }), invalid);
    EXPECT_EQ(invalidArgumentMessage([&] { readText(info, L"\"name\""); }), invalid);
    EXPECT_EQ(invalidArgumentMessage([&] { readText(info, L"{\"name\": \"x\""); }), invalid);
    EXPECT_EQ(invalidArgumentMessage([&] { readText(info, L""); }), invalid);
    EXPECT_EQ(info.name(), L"Varnex");
}

TEST(VarnexInfo, ListsAppendAndSkipWhatIsNotAnObject) {
    VarnexInfo info;
    readText(info, L"{\"import_formats\": [{\"description\": \"STEP\"}, 5, null,"
                   L" {\"description\": \"IGES\"}],"
                   L" \"thirdparty_cores\": [\"core\", {\"name\": \"Kernel\", \"version\": \"7\"}]}");
    readText(info, L"{\"import_formats\": [{\"description\": \"JT\"}], \"export_formats\": {}}");
    ASSERT_EQ(info.importFormats().size(), 3u);
    EXPECT_EQ(info.importFormats()[0]->description(), L"STEP");
    EXPECT_EQ(info.importFormats()[1]->description(), L"IGES");
    EXPECT_EQ(info.importFormats()[2]->description(), L"JT");
    EXPECT_TRUE(info.exportFormats().empty());
    ASSERT_EQ(info.thirdpartyCores().size(), 1u);
    EXPECT_EQ(info.thirdpartyCores()[0]->name(), L"Kernel");
    EXPECT_EQ(info.thirdpartyCores()[0]->version(), L"7");

    auto shared = std::make_shared<Format>();
    info.addImportFormat(nullptr);
    info.addExportFormat(shared);
    info.addExportFormats({nullptr, shared, nullptr});
    info.addThirdpartyCore(nullptr);
    info.addImportFormats(info.importFormats());
    EXPECT_EQ(info.importFormats().size(), 6u);
    ASSERT_EQ(info.exportFormats().size(), 2u);
    EXPECT_EQ(info.exportFormats()[0], shared);
    EXPECT_EQ(info.exportFormats()[1], shared);
    EXPECT_EQ(info.thirdpartyCores().size(), 1u);

    // Copies share their formats.
    VarnexInfo copy(info);
    copy.newExportFormat().setDescription(L"only in the copy");
    shared->setDescription(L"seen by both");
    EXPECT_EQ(info.exportFormats().size(), 2u);
    EXPECT_EQ(copy.exportFormats()[0]->description(), L"seen by both");

    // Null entries are not written.
    VarnexInfo sparse;
    sparse.addImportFormats({nullptr});
    EXPECT_EQ(compactOf(sparse).find(L"import_formats"), std::wstring::npos);
}

TEST(VarnexInfo, FormatAndCoreReadersThrowOnNonObjects) {
    Format format;
    EXPECT_EQ(invalidArgumentMessage([&] { readFromJsonText(format, L"[\"*.stp\"]"); }),
              "Format::readFrom > !jsonObject.IsObject()");
    ThirdpartyCore core;
    EXPECT_EQ(invalidArgumentMessage([&] { readFromJsonText(core, L"\"Kernel\""); }),
              "ThirdpartyCore::readFrom > !jsonObject.IsObject()");

    readFromJsonText(format, L"{\"description\": \"STEP\", \"extensions\": [\"stp\", 1, \"step\"],"
                             L" \"filters\": [\"*.stp;*.step\"]}");
    readFromJsonText(format, L"{\"description\": 5, \"extensions\": [\"stpz\"], \"filters\": \"*.x\"}");
    EXPECT_EQ(format.description(), L"STEP");
    EXPECT_EQ(format.extensions(), (std::vector<std::wstring>{L"stp", L"step", L"stpz"}));
    EXPECT_EQ(format.filterExtensions(), std::vector<std::wstring>{L"*.stp;*.step"});

    format.setRegex({L".*\\.stp"});
    EXPECT_EQ(toJsonText(format), L"{\"description\":\"STEP\",\"extensions\":[\"stp\",\"step\",\"stpz\"],"
                                  L"\"filters\":[\"*.stp;*.step\"]}");
    EXPECT_EQ(toJsonText(Format()), L"{\"description\":\"\",\"extensions\":[],\"filters\":[]}");
    EXPECT_EQ(toJsonText(ThirdpartyCore().setName(L"Kernel").setVersion(L"R33")),
              L"{\"name\":\"Kernel\",\"version\":\"R33\"}");
}

TEST(VarnexInfo, FormatMatchesFileNames) {
    Format step;
    step.setDescription(L"STEP files").addFilterExtensions(L"*.stp;*.step");
    struct Case {
        const wchar_t* name;
        bool matches;
    };
    const Case stepCases[] = {
        {L"a.step", true},        {L"a.stp", true},         {L"a.STEP", false},
        {L"astp", false},         {L"dir/x.stp", true},     {L"C:\\models\\x.stp", true},
        {L"x.stp.bak", false},    {L".stp", true},          {L"x.stpx", false},
        {L"", false},
    };
    for (const Case& c : stepCases)
        EXPECT_EQ(step.is(c.name), c.matches) << vx_link::utf8(c.name);

    // Only '.' and '*' are translated; '?' keeps its regular-expression meaning.
    Format parasolid;
    parasolid.addFilterExtensions(L"part?.x_t");
    EXPECT_TRUE(parasolid.is(L"part.x_t"));
    EXPECT_TRUE(parasolid.is(L"par.x_t"));
    EXPECT_FALSE(parasolid.is(L"part1.x_t"));

    // Regular expressions first, then the filters; the extensions play no part.
    Format catia;
    catia.addExtension(L"CATPart").addRegex(L"[A-Z]+_[0-9]{3}\\.model").addFilterExtensions(L"*.CATPart");
    EXPECT_TRUE(catia.is(L"HULL_001.model"));
    EXPECT_FALSE(catia.is(L"HULL_001.model.old"));
    EXPECT_FALSE(catia.is(L"x.model"));
    EXPECT_TRUE(catia.is(L"x.CATPart"));
    EXPECT_FALSE(catia.is(L"x.catpart"));

    Format onlyExtensions;
    onlyExtensions.addExtension(L"jt");
    EXPECT_FALSE(onlyExtensions.is(L"a.jt"));
    EXPECT_FALSE(Format().is(L""));

    Format broken;
    broken.addRegex(L"(").addFilterExtensions(L"*.x");
    EXPECT_THROW(broken.is(L"a.x"), std::regex_error);
}

TEST(VarnexInfo, FiltersForFileDialogs) {
    Format format;
    format.setDescription(L"STEP files");
    EXPECT_TRUE(format.getFilters().empty());
    format.addFilterExtensions(L"*.stp;*.step").addFilterExtensions(L"*.stpz");
    EXPECT_EQ(format.getFilters(),
              (std::vector<std::wstring>{L"STEP files|*.stp;*.step", L"STEP files|*.stpz"}));
    Format unnamed;
    unnamed.addFilterExtensions(L" *.x_t ");
    EXPECT_EQ(unnamed.getFilters(), std::vector<std::wstring>{L"| *.x_t "});
}

TEST(VarnexInfo, TranslatorDescriptionRoundTrip) {
    struct FormatRow {
        const wchar_t* description;
        std::vector<std::wstring> extensions;
        std::vector<std::wstring> filters;
    };
    const FormatRow imports[] = {
        {L"STEP", {L"stp", L"step"}, {L"*.stp;*.step", L"*.STP;*.STEP"}},
        {L"IGES", {L"igs", L"iges"}, {L"*.igs;*.iges"}},
        {L"Parasolid", {L"x_t", L"x_b"}, {L"*.x_t;*.x_b"}},
        {L"CATIA V5 part", {L"CATPart"}, {L"*.CATPart"}},
        {L"CATIA V5 product", {L"CATProduct"}, {L"*.CATProduct"}},
        {L"CATIA V4", {L"model", L"exp"}, {L"*.model;*.exp"}},
        {L"Creo", {L"prt", L"asm"}, {L"*.prt;*.prt.*", L"*.asm;*.asm.*"}},
        {L"NX", {L"prt"}, {L"*.prt"}},
        {L"SolidWorks", {L"sldprt", L"sldasm"}, {L"*.sldprt;*.sldasm"}},
        {L"Solid Edge", {L"par", L"asm", L"psm"}, {L"*.par;*.asm;*.psm"}},
        {L"JT", {L"jt"}, {L"*.jt"}},
        {L"Inventor \u00e9dition", {L"ipt", L"iam"}, {L"*.ipt;*.iam"}},
    };
    VarnexInfo info;
    info.setName(L"Varnex translator");
    info.setVersion(L"4.2.0 (build 17)");
    info.setRequestedInterface(ConnectInterface);
    info.setParasolidMode(ParasolidKernel);
    info.setModelerMajorVersion(33);
    info.newThirdpartyCore().setName(L"Modeler").setVersion(L"2025.1");
    info.newThirdpartyCore().setName(L"Reader \"core\"").setVersion(L"R37");
    for (const FormatRow& row : imports) {
        Format& format = info.newImportFormat().setDescription(row.description).setExtensions(row.extensions);
        for (const auto& filter : row.filters) format.addFilterExtensions(filter);
        format.addRegex(L"never written");
    }
    info.newExportFormat().setDescription(L"STEP AP242").addExtension(L"stp").addFilterExtensions(L"*.stp");
    info.newExportFormat().setDescription(L"3D PDF").addExtension(L"pdf").addFilterExtensions(L"*.pdf");

    const std::wstring text = writtenText(info);
    VarnexInfo read;
    readText(read, text);
    EXPECT_EQ(read.name(), info.name());
    EXPECT_EQ(read.version(), info.version());
    EXPECT_EQ(read.requestedInterface(), ConnectInterface);
    EXPECT_EQ(read.parasolidMode(), ParasolidKernel);
    EXPECT_EQ(read.modelerMajorVersion(), 33);
    ASSERT_EQ(read.thirdpartyCores().size(), 2u);
    EXPECT_EQ(read.thirdpartyCores()[1]->name(), L"Reader \"core\"");
    EXPECT_EQ(read.thirdpartyCores()[1]->version(), L"R37");
    ASSERT_EQ(read.importFormats().size(), 12u);
    for (std::size_t i = 0; i < read.importFormats().size(); ++i) {
        const Format& format = *read.importFormats()[i];
        EXPECT_EQ(format.description(), imports[i].description);
        EXPECT_EQ(format.extensions(), imports[i].extensions);
        EXPECT_EQ(format.filterExtensions(), imports[i].filters);
        EXPECT_TRUE(format.regex().empty());
    }
    ASSERT_EQ(read.exportFormats().size(), 2u);
    EXPECT_EQ(read.exportFormats()[1]->getFilters(), std::vector<std::wstring>{L"3D PDF|*.pdf"});
    EXPECT_EQ(compactOf(read), compactJson(text));

    // The host picks the import format of a file by matching its name.
    std::vector<std::wstring> matching;
    for (const auto& format : read.importFormats())
        if (format->is(L"D:\\work\\gear.prt.3")) matching.push_back(format->description());
    EXPECT_EQ(matching, std::vector<std::wstring>{L"Creo"});

    // Key order of the whole document.
    const std::wstring keys = compactJson(text);
    std::size_t last = 0;
    for (const wchar_t* key : {L"\"name\"", L"\"version\"", L"\"varnex_interface\"", L"\"thirdparty_cores\"",
                               L"\"parasolid_mode\"", L"\"import_formats\"", L"\"export_formats\"",
                               L"\"modeler_version\""}) {
        std::size_t at = keys.find(key, last);
        ASSERT_NE(at, std::wstring::npos) << vx_link::utf8(key);
        last = at;
    }
}

TEST(VarnexInfo, StreamObjectsTraceTheirEntry) {
    LogCapture log(6);
    VarnexInfo info;
    info.newImportFormat().setDescription(L"JT");
    const std::wstring text = writtenText(info);
    readText(info, text);
    const std::vector<std::string> traces = log.messages(6);
    auto traced = [&](const char* function) {
        for (const std::string& line : traces)
            if (line.find("xch_api_varnex_info.cpp(") != std::string::npos &&
                line.find(function) != std::string::npos)
                return true;
        return false;
    };
    EXPECT_TRUE(traced("VarnexInfo::writeObject"));
    EXPECT_TRUE(traced("VarnexInfo::readObject"));
    EXPECT_TRUE(traced("Format::writeObject"));
    EXPECT_TRUE(traced("Format::readObject"));
}

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_format_options_export.h>
#include <xch_api/xch_api_format_options_import.h>
#include <xch_api/xch_api_json_text_io.h>

#include "support/json_text.h"
#include "support/log_capture.h"
#include "support/stream_text.h"

using namespace xch;
using xch_test::LogCapture;
using xch_test::readFromJsonText;
using xch_test::toJsonText;
using xch_test::invalidArgumentMessage;
using xch_test::readText;
using xch_test::writtenText;

namespace {

// An ImportOptions that is not the library's.
class ForeignImportOptions : public ImportOptions {
public:
    const std::wstring& file() const override { return m_file; }
    void setFile(const std::wstring& file) override { m_file = file; }
    bool forceMpMode() const override { return false; }
    void setForceMpMode(bool) override {}
    bool translateWorldOrientation() const override { return false; }
    void setTranslateWorldOrientation(bool) override {}
    bool translateMiscData() const override { return false; }
    void setTranslateMiscData(bool) override {}
    const FormatOptionsList& formatOptions() const override { return m_list; }
    void setFormatOptions(const FormatOptionsList&) override {}
    void addFormatOptions(const std::shared_ptr<IFormatOptions>&) override {}
    std::uint32_t modelerVersion() const override { return 0; }
    void setModelerVersion(std::uint32_t) override {}
    void readObject(const JsonValue&) override {}
    void writeObject(JsonValue& value, JsonAllocator&) const override { value.SetObject(); }

private:
    std::wstring m_file;
    FormatOptionsList m_list;
};

// An ExportOptions that is not the library's.
class ForeignExportOptions : public ExportOptions {
public:
    const std::wstring& file() const override { return m_text; }
    void setFile(const std::wstring&) override {}
    const std::wstring& formatVersion() const override { return m_text; }
    void setFormatVersion(const std::wstring&) override {}
    std::uint32_t geometryFlags() const override { return 0; }
    void setGeometryFlags(std::uint32_t) override {}
    const FormatOptionsList& formatOptions() const override { return m_list; }
    void setFormatOptions(const FormatOptionsList&) override {}
    void addFormatOptions(const std::shared_ptr<IFormatOptions>&) override {}
    void readObject(const JsonValue&) override {}
    void writeObject(JsonValue& value, JsonAllocator&) const override { value.SetObject(); }

private:
    std::wstring m_text;
    FormatOptionsList m_list;
};

// The option sets of two lists are of the same classes and write the same.
void expectSameOptions(const FormatOptionsList& read, const FormatOptionsList& sent) {
    ASSERT_EQ(read.size(), sent.size());
    for (std::size_t i = 0; i < read.size(); ++i) {
        ASSERT_TRUE(read[i]);
        EXPECT_TRUE(typeid(*read[i]) == typeid(*sent[i])) << i;
        EXPECT_EQ(toJsonText(*read[i]), toJsonText(*sent[i]));
    }
}

template <class T>
std::shared_ptr<T> optionsAt(const FormatOptionsList& list, std::size_t i) {
    return i < list.size() ? std::dynamic_pointer_cast<T>(list[i]) : nullptr;
}

} // namespace

TEST(Command, DefaultAndOptionFreeCommands) {
    Command command;
    const std::wstring text = writtenText(command);
    EXPECT_EQ(text, L"{\n  \"varnex_interface\": \"uconnect\",\n  \"command\": \"unknown\",\n"
                    L"  \"mt_mode\": false\n}");

    command.setType(Command::Ping);
    command.setInternalInterface(ConnectInterface);
    command.setUseMultiThreading(true);
    EXPECT_EQ(xch_test::compactJson(writtenText(command)), L"{\"varnex_interface\":\"connect\",\"command\":\"ping\",\"mt_mode\":true}");
    // Options are written only for import and export.
    command.setImportOptions(Command::newImportOptions());
    command.setType(Command::Info);
    EXPECT_EQ(xch_test::compactJson(writtenText(command)), L"{\"varnex_interface\":\"connect\",\"command\":\"info\",\"mt_mode\":true}");

    command.setType(static_cast<Command::EType>(9));
    command.setInternalInterface(static_cast<EVarnexInterface>(3));
    EXPECT_EQ(xch_test::compactJson(writtenText(command)), L"{\"varnex_interface\":\"uconnect\",\"command\":\"unknown\",\"mt_mode\":true}");

    Command ping;
    readText(ping, L"{\"command\": \"ping\", \"options\": {\"file\": \"ignored\"}}");
    EXPECT_EQ(ping.type(), Command::Ping);
    EXPECT_FALSE(ping.importOptions());
    EXPECT_FALSE(ping.exportOptions());
}

TEST(Command, ReadingResetsAndMatchesExactly) {
    Command command;
    command.setType(Command::Export);
    command.setInternalInterface(LegacyInterface);
    command.setUseMultiThreading(true);
    readText(command, L"{\"command\": \"info\"}");
    EXPECT_EQ(command.type(), Command::Info);
    EXPECT_EQ(command.internalInterface(), UConnectInterface);
    EXPECT_FALSE(command.useMultiThreading());

    struct Case {
        const wchar_t* json;
        Command::EType type;
        EVarnexInterface interface;
        bool mt;
    };
    const Case cases[] = {
        {L"{\"command\": \"Import\"}", Command::Unknown, UConnectInterface, false},
        {L"{\"command\": 2}", Command::Unknown, UConnectInterface, false},
        {L"{\"command\": \"unknown\", \"mt_mode\": true}", Command::Unknown, UConnectInterface, true},
        {L"{\"command\": \"ping\", \"mt_mode\": \"true\"}", Command::Ping, UConnectInterface, false},
        {L"{\"command\": \"ping\", \"mt_mode\": 1}", Command::Ping, UConnectInterface, false},
        {L"{\"varnex_interface\": \"connect\", \"command\": \"info\"}", Command::Info, ConnectInterface, false},
        {L"{\"varnex_interface\": \"Legacy\", \"command\": \"info\"}", Command::Info, UConnectInterface, false},
        {L"{\"varnex_interface\": \"legacy\", \"command\": \"ping\"}", Command::Ping, LegacyInterface, false},
        {L"{\"varnex_interface\": 2, \"command\": \"ping\"}", Command::Ping, UConnectInterface, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(vx_link::utf8(c.json));
        Command read;
        read.setUseMultiThreading(true);
        readText(read, c.json);
        EXPECT_EQ(read.type(), c.type);
        EXPECT_EQ(read.internalInterface(), c.interface);
        EXPECT_EQ(read.useMultiThreading(), c.mt);
    }
}

TEST(Command, RefusesCommandsWithoutTheirOptions) {
    Command command;
    command.setType(Command::Import);
    EXPECT_EQ(invalidArgumentMessage([&] { writtenText(command); }), "Import command should contain import options");
    command.setLegacyImportOptions(Command::newLegacyImportOptions());
    EXPECT_EQ(invalidArgumentMessage([&] { writtenText(command); }), "Import command should contain import options");
    command.setInternalInterface(LegacyInterface);
    EXPECT_NO_THROW(writtenText(command));
    command.setLegacyImportOptions(nullptr);
    command.setImportOptions(Command::newImportOptions());
    EXPECT_EQ(invalidArgumentMessage([&] { writtenText(command); }),
              "Import(LEGACY) command should contain import options(LEGACY)");

    command.setType(Command::Export);
    EXPECT_EQ(invalidArgumentMessage([&] { writtenText(command); }),
              "Export(LEGACY) command should contain export options(LEGACY)");
    command.setInternalInterface(ConnectInterface);
    EXPECT_EQ(invalidArgumentMessage([&] { writtenText(command); }), "Export command should contain export options");

    struct Case {
        const wchar_t* json;
        const char* message;
    };
    const Case refused[] = {
        {L"[]", "Command::readObject: invalid json document"},
        {L"{\"command\": ", "Command::readObject: invalid json document"},
        {L"{\"varnex_interface\": \"connect\"}", "Command::readObject: json document has no command type."},
        {L"{\"command\": \"import\"}", "Import command should contain options."},
        {L"{\"command\": \"export\", \"varnex_interface\": \"connect\"}", "Export command should contain options."},
        {L"{\"command\": \"import\", \"varnex_interface\": \"legacy\"}", "Legacy Import command should contain options."},
        {L"{\"command\": \"export\", \"varnex_interface\": \"legacy\"}", "Legacy Export command should contain options."},
        {L"{\"command\": \"import\", \"options\": {\"file\": 5}}",
         "ImportOptionsImpl::readObject: json document has no valid file path."},
        {L"{\"command\": \"export\", \"options\": []}", "ExportOptionsImpl::readObject: !object.IsObject()"},
    };
    for (const Case& c : refused) {
        Command read;
        EXPECT_EQ(invalidArgumentMessage([&] { readText(read, c.json); }), c.message) << vx_link::utf8(c.json);
    }
}

TEST(Command, AcceptsOnlyTheLibrarysOptionClasses) {
    Command command;
    const std::string importMessage = "Command::setImportOptions: wrong implementation of ImportOptions interface.";
    const std::string exportMessage = "Command::setExportOptions: wrong implementation of ExportOptions interface";
    EXPECT_EQ(invalidArgumentMessage([&] { command.setImportOptions(nullptr); }), importMessage);
    EXPECT_EQ(invalidArgumentMessage([&] { command.setImportOptions(std::make_shared<ForeignImportOptions>()); }),
              importMessage);
    EXPECT_EQ(invalidArgumentMessage([&] { command.setExportOptions(nullptr); }), exportMessage);
    EXPECT_EQ(invalidArgumentMessage([&] { command.setExportOptions(std::make_shared<ForeignExportOptions>()); }),
              exportMessage);
    EXPECT_FALSE(command.importOptions());
    EXPECT_FALSE(command.exportOptions());

    auto import = Command::newImportOptions();
    command.setImportOptions(import);
    EXPECT_EQ(command.importOptions(), import);
    EXPECT_TRUE(std::dynamic_pointer_cast<ImportOptionsImpl>(import));
    EXPECT_TRUE(std::dynamic_pointer_cast<ExportOptionsImpl>(Command::newExportOptions()));
    EXPECT_TRUE(std::dynamic_pointer_cast<LegacyImportOptionsImpl>(Command::newLegacyImportOptions()));
    EXPECT_TRUE(std::dynamic_pointer_cast<LegacyExportOptionsImpl>(Command::newLegacyExportOptions()));
    EXPECT_NE(Command::newImportOptions(), Command::newImportOptions());
}

TEST(Command, ImportOptionsRequireAFileAndSkipUnreadableOptionSets) {
    ImportOptionsImpl options;
    EXPECT_EQ(invalidArgumentMessage([&] { readFromJsonText(options, L"{\"file\": 5}"); }),
              "ImportOptionsImpl::readObject: json document has no valid file path.");
    EXPECT_EQ(invalidArgumentMessage([&] { readFromJsonText(options, L"{}"); }),
              "ImportOptionsImpl::readObject: json document has no valid file path.");
    EXPECT_EQ(invalidArgumentMessage([&] { readFromJsonText(options, L"\"a.stp\""); }),
              "ImportOptionsImpl::readObject: !object.IsObject()");

    LogCapture log(5);
    options.setModelerVersion(12);
    options.setForceMpMode(true);
    readFromJsonText(options,
                     L"{\"file\": \"C:\\\\in\\\\b\u00e4r.stp\", \"force_mp_mode\": \"no\","
                     L" \"translate_misc_data\": true, \"modeler_version\": -1,"
                     L" \"format_options\": [{\"operation_type\": \"import\", \"format_type\": \"STL\"},"
                     L" {\"operation_type\": \"import\", \"format_type\": \"STEP\"}]}");
    EXPECT_EQ(options.file(), L"C:\\in\\b\u00e4r.stp");
    EXPECT_TRUE(options.forceMpMode());
    EXPECT_TRUE(options.translateMiscData());
    EXPECT_FALSE(options.translateWorldOrientation());
    EXPECT_EQ(options.modelerVersion(), 12u);
    ASSERT_EQ(options.formatOptions().size(), 1u);
    EXPECT_TRUE(optionsAt<imp::OptionsSTEP>(options.formatOptions(), 0));
    EXPECT_EQ(log.messages(2), std::vector<std::string>{"Specific format options cannot be read, file: C:\\in\\b\xc3\xa4r.stp."});
    EXPECT_EQ(log.messages(4), std::vector<std::string>{"FormatOptions: No options for given import format."});
    EXPECT_EQ(log.messages(5), std::vector<std::string>{"ImportOptions.file = C:\\in\\b\xc3\xa4r.stp"});

    // A second document appends its sets.
    readFromJsonText(options, L"{\"file\": \"b.stp\", \"modeler_version\": 4294967295,"
                              L" \"format_options\": [{\"operation_type\": \"options\", \"format_type\": \"general\"}]}");
    EXPECT_EQ(options.formatOptions().size(), 2u);
    EXPECT_EQ(options.modelerVersion(), 4294967295u);

    log.clear();
    options.addFormatOptions(nullptr);
    EXPECT_EQ(options.formatOptions().size(), 2u);
    EXPECT_EQ(log.messages(3), std::vector<std::string>{"ImportOptionsImpl: attempt to add null format options object."});
}

TEST(Command, ExportOptionsLogWhatTheyReadAndLeaveOutNullSets) {
    LogCapture log(5);
    ExportOptionsImpl options;
    options.setFormatVersion(L"AP214");
    options.setGeometryFlags(3);
    readFromJsonText(options, L"{\"file\": \"out.stp\", \"geometry_flags\": -2}");
    EXPECT_EQ(options.formatVersion(), L"AP214");
    EXPECT_EQ(options.geometryFlags(), 3u);
    EXPECT_EQ(log.messages(5), std::vector<std::string>{"ExportOptions.file = out.stp"});

    log.clear();
    readFromJsonText(options, L"{\"file\": \"out.igs\", \"format_version\": \"5.3\", \"geometry_flags\": 4096}");
    EXPECT_EQ(options.formatVersion(), L"5.3");
    EXPECT_EQ(options.geometryFlags(), 4096u);
    EXPECT_EQ(log.messages(5), (std::vector<std::string>{"ExportOptions.file = out.igs",
                                                         "ExportOptions.formatVersion = 5.3",
                                                         "ExportOptions.geometryFlags = 4096"}));
    EXPECT_EQ(invalidArgumentMessage([&] { readFromJsonText(options, L"{\"format_version\": \"x\"}"); }),
              "ExportOptionsImpl::readObject: json document has no valid file path.");
    EXPECT_EQ(options.formatVersion(), L"5.3");

    log.clear();
    options.setFormatOptions({nullptr, std::make_shared<exp::OptionsIGES>()});
    EXPECT_EQ(toJsonText(options),
              L"{\"file\":\"out.igs\",\"format_version\":\"5.3\",\"geometry_flags\":4096,\"format_options\":"
              L"[{\"operation_type\":\"export\",\"format_type\":\"IGES\",\"units\":\"millimeter\"}]}");
    EXPECT_EQ(log.messages(2), std::vector<std::string>{"Invalid specific format options object, file out.igs"});
    EXPECT_EQ(log.messages(5), std::vector<std::string>{"ExportOptions.file = out.igs"});
    EXPECT_EQ(toJsonText(ImportOptionsImpl()),
              L"{\"file\":\"\",\"force_mp_mode\":false,\"translate_world_orientation\":false,"
              L"\"translate_misc_data\":false,\"format_options\":[],\"modeler_version\":0}");
}

TEST(Command, RealisticImportRoundTrip) {
    auto general = std::make_shared<OptionsGeneral>();
    general->setLogEventLevel(LogEventVerbose);
    general->setLogFileEncoding(LogEncodingUtf8);
    general->setLogFileName(L"import.log");
    general->setLoggingMode(LoggingAppend);
    general->setLoggingOutputDirectory(L"C:\\Users\\m\u00fcller\\AppData\\Local\\Temp");
    general->setMemoryManagementMode(MemoryKeepAsmVisu);
    auto graphical = std::make_shared<OptionsGraphical>();
    graphical->setTesselationMaxChordalDeviation(0.05);
    graphical->setTranslateReferenceGeometryMode(TriStateFalse);
    graphical->setVisuBrepTesselationMode(BrepTesselationNeverAtLeastNativePMI);
    graphical->setVisuTextDataMode(TextDataAsStroked);
    graphical->setVisuTextStrokingMode(TextStrokingFromSourceGeneratedWithInnerLoops);
    auto mechanical = std::make_shared<OptionsMechanical>();
    mechanical->setFeatureToleranceProcessingMode(ProcessingAll);
    mechanical->setMiscDataProcessingMode(ProcessingNone);
    auto modeler = std::make_shared<OptionsModeler>();
    modeler->setAcisHealType(AcisHealStandard);
    modeler->setLengthUnitType(LengthMillimeter);
    modeler->setPreservePMIMode(PreservePMIDecorateAll);
    modeler->setAcisSplineResurfacingTolerance(1e-4);

    auto options = Command::newImportOptions();
    options->setFile(L"C:\\Projekte\\Getriebe\\Geh\u00e4use \"A\".stp");
    options->setForceMpMode(true);
    options->setTranslateWorldOrientation(true);
    options->setModelerVersion(34);
    for (const std::shared_ptr<IFormatOptions>& set :
         FormatOptionsList{general, graphical, mechanical, modeler, std::make_shared<imp::OptionsSTEP>()})
        options->addFormatOptions(set);

    Command command;
    command.setType(Command::Import);
    command.setInternalInterface(ConnectInterface);
    command.setUseMultiThreading(true);
    command.setImportOptions(options);

    std::wstringstream stream;
    command.writeObject(stream);
    LogCapture log;
    Command read;
    read.readObject(stream);
    for (int level = 1; level <= 4; ++level) EXPECT_TRUE(log.messages(level).empty()) << level;

    EXPECT_EQ(read.type(), Command::Import);
    EXPECT_EQ(read.internalInterface(), ConnectInterface);
    EXPECT_TRUE(read.useMultiThreading());
    EXPECT_FALSE(read.legacyImportOptions());
    ASSERT_TRUE(read.importOptions());
    const ImportOptions& got = *read.importOptions();
    EXPECT_EQ(got.file(), options->file());
    EXPECT_TRUE(got.forceMpMode());
    EXPECT_TRUE(got.translateWorldOrientation());
    EXPECT_FALSE(got.translateMiscData());
    EXPECT_EQ(got.modelerVersion(), 34u);
    expectSameOptions(got.formatOptions(), options->formatOptions());
    auto readGeneral = optionsAt<OptionsGeneral>(got.formatOptions(), 0);
    ASSERT_TRUE(readGeneral);
    EXPECT_EQ(readGeneral->loggingOutputDirectory(), general->loggingOutputDirectory());
    EXPECT_EQ(readGeneral->memoryManagementMode(), MemoryKeepAsmVisu);
    auto readGraphical = optionsAt<OptionsGraphical>(got.formatOptions(), 1);
    ASSERT_TRUE(readGraphical);
    EXPECT_EQ(readGraphical->tesselationMaxChordalDeviation(), 0.05);
    EXPECT_EQ(readGraphical->visuTextStrokingMode(), TextStrokingFromSourceGeneratedWithInnerLoops);
    auto readModeler = optionsAt<OptionsModeler>(got.formatOptions(), 3);
    ASSERT_TRUE(readModeler);
    EXPECT_EQ(readModeler->acisHealType(), AcisHealStandard);
    EXPECT_EQ(readModeler->acisSplineResurfacingTolerance(), 1e-4);
    EXPECT_TRUE(optionsAt<imp::OptionsSTEP>(got.formatOptions(), 4));
    EXPECT_EQ(writtenText(read), writtenText(command));
}

TEST(Command, RealisticExportRoundTripWithEveryExportFormat) {
    auto acis = std::make_shared<exp::OptionsAcis>();
    acis->setVersion(exp::AcisVersion2021);
    acis->setUnits(LengthMeter);
    auto parasolid = std::make_shared<exp::OptionsParasolid>();
    parasolid->setVersion(static_cast<exp::EParasolidVersion>(36 - 10));
    auto catia5 = std::make_shared<exp::OptionsCatiaV5>();
    catia5->setVersion(exp::CatiaV5VersionR2019);
    catia5->setDefaultColorMode(exp::DefaultColorFalse);
    catia5->setCgrCompatibilityMode(exp::CgrCompatibility3DExperience);
    auto catia4 = std::make_shared<exp::OptionsCatiaV4>();
    catia4->setAuthorName(L"QA");
    catia4->setModelName(L"Bracket");
    catia4->setVersion(exp::CatiaV4Version424);
    catia4->setEdgeCurveMode(exp::EdgeCurve2d);
    auto iges = std::make_shared<exp::OptionsIGES>();
    iges->setUnits(LengthInch);
    auto step = std::make_shared<exp::OptionsSTEP>();
    step->setVersion(exp::StepVersionAP203);
    step->setTolerance(0.0005);
    step->setLayerNameMode(exp::LayerNameSavedVisuRep);
    auto stl = std::make_shared<exp::OptionsSTL>();
    stl->setSaveMode(exp::StlSaveBinaryLE);
    auto pdf = std::make_shared<exp::OptionsPDF>();
    pdf->setBackgroundColor(ExcColor(250, 250, 250, 128));
    auto xml = std::make_shared<exp::Options3DXML>();
    xml->setDefaultColorMode(exp::DefaultColorCatiaV5);
    xml->setGraphicalPMIContainerMode(TriStateTrue);
    auto xcgm = std::make_shared<exp::OptionsXCGM>();
    xcgm->setVersion(exp::XcgmVersionR2016_1_1);
    xcgm->setGraphicalPMIContainerMode(TriStateFalse);

    auto options = Command::newExportOptions();
    options->setFile(L"/srv/out/bracket.stp");
    options->setFormatVersion(L"AP203");
    options->setGeometryFlags(0x80000005u);
    options->setFormatOptions({std::make_shared<OptionsGeneral>(), acis, parasolid, catia5, catia4, iges,
                               step, stl, pdf, xml, xcgm});
    Command command;
    command.setType(Command::Export);
    command.setExportOptions(options);

    std::wstringstream stream;
    command.writeObject(stream);
    const std::wstring text = stream.str();
    EXPECT_NE(xch_test::compactJson(text).find(L"\"version\":\"r36\""), std::wstring::npos);
    EXPECT_NE(xch_test::compactJson(text).find(L"\"color\":{\"rgb\":[250,250,250],\"alpha\":128}"), std::wstring::npos);

    LogCapture log;
    Command read;
    read.readObject(stream);
    for (int level = 1; level <= 4; ++level) EXPECT_TRUE(log.messages(level).empty()) << level;
    EXPECT_EQ(read.type(), Command::Export);
    EXPECT_EQ(read.internalInterface(), UConnectInterface);
    ASSERT_TRUE(read.exportOptions());
    EXPECT_FALSE(read.importOptions());
    const ExportOptions& got = *read.exportOptions();
    EXPECT_EQ(got.file(), L"/srv/out/bracket.stp");
    EXPECT_EQ(got.formatVersion(), L"AP203");
    EXPECT_EQ(got.geometryFlags(), 0x80000005u);
    expectSameOptions(got.formatOptions(), options->formatOptions());
    auto readParasolid = optionsAt<exp::OptionsParasolid>(got.formatOptions(), 2);
    ASSERT_TRUE(readParasolid);
    EXPECT_EQ(readParasolid->version(), 26);
    auto readCatia4 = optionsAt<exp::OptionsCatiaV4>(got.formatOptions(), 4);
    ASSERT_TRUE(readCatia4);
    EXPECT_EQ(readCatia4->modelName(), L"Bracket");
    EXPECT_EQ(readCatia4->edgeCurveMode(), exp::EdgeCurve2d);
    auto readStep = optionsAt<exp::OptionsSTEP>(got.formatOptions(), 6);
    ASSERT_TRUE(readStep);
    EXPECT_EQ(readStep->tolerance(), 0.0005);
    EXPECT_EQ(readStep->units(), LengthMillimeter);
    auto readPdf = optionsAt<exp::OptionsPDF>(got.formatOptions(), 8);
    ASSERT_TRUE(readPdf);
    EXPECT_EQ(readPdf->backgroundColor()[ExcColor::Alpha], 128);
    EXPECT_EQ(writtenText(read), text);
}

TEST(Command, LegacyCommandsCarryTheLegacyOptions) {
    auto legacyImport = Command::newLegacyImportOptions();
    legacyImport->setFile(L"C:\\tmp\\job.dwg");
    legacyImport->setInsertionUnit(LengthInch);
    legacyImport->setMode(LegacyImportReplace);
    Command command;
    command.setType(Command::Import);
    command.setInternalInterface(LegacyInterface);
    command.setLegacyImportOptions(legacyImport);
    EXPECT_EQ(xch_test::compactJson(writtenText(command)),
              L"{\"varnex_interface\":\"legacy\",\"command\":\"import\",\"options\":{\"file\":\"C:\\\\tmp\\\\job.dwg\","
              L"\"insertion_unit\":\"inch\",\"mode\":\"replace\"},\"mt_mode\":false}");
    Command read;
    readText(read, writtenText(command));
    EXPECT_FALSE(read.importOptions());
    ASSERT_TRUE(read.legacyImportOptions());
    EXPECT_EQ(read.legacyImportOptions()->file(), L"C:\\tmp\\job.dwg");
    EXPECT_EQ(read.legacyImportOptions()->insertionUnit(), LengthInch);
    EXPECT_EQ(read.legacyImportOptions()->mode(), LegacyImportReplace);

    auto legacyExport = Command::newLegacyExportOptions();
    legacyExport->setFile(L"/tmp/out.dwg");
    legacyExport->setMode(LegacyExportSelection);
    command.setType(Command::Export);
    command.setLegacyExportOptions(legacyExport);
    readText(read, writtenText(command));
    ASSERT_TRUE(read.legacyExportOptions());
    EXPECT_EQ(read.legacyExportOptions()->file(), L"/tmp/out.dwg");
    EXPECT_EQ(read.legacyExportOptions()->insertionUnit(), LengthUnknown);
    EXPECT_EQ(read.legacyExportOptions()->mode(), LegacyExportSelection);

    // Legacy options are lenient: unknown strings fall back, non-objects are logged.
    LegacyImportOptionsImpl options;
    readFromJsonText(options, L"{\"mode\": \"Replace\", \"insertion_unit\": \"inches\", \"file\": 1}");
    EXPECT_EQ(options.mode(), LegacyImportInsert);
    EXPECT_EQ(options.insertionUnit(), LengthCentimeter);
    EXPECT_EQ(options.file(), L"");
    LegacyExportOptionsImpl exported;
    readFromJsonText(exported, L"{\"mode\": \"everything\"}");
    EXPECT_EQ(exported.mode(), LegacyExportAll);

    LogCapture log;
    Command lenient;
    readText(lenient, L"{\"varnex_interface\": \"legacy\", \"command\": \"export\", \"options\": 7}");
    ASSERT_TRUE(lenient.legacyExportOptions());
    EXPECT_EQ(lenient.legacyExportOptions()->mode(), LegacyExportUnknown);
    EXPECT_EQ(log.messages(2), std::vector<std::string>{"LegacyExportOptionsImpl object should have a JSON object type."});
}

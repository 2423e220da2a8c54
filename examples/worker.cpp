// An example translator worker. It reads commands from standard input and
// answers on standard output (frames/xch_frames.h), as a real worker would
// after the host started it:
//   info   -> the translator description, then a Result
//   ping   -> a Result
//   import -> messages, progress, the product structure and the geometry
//             of two blocks in shared memory, instance names, finished-stage notices, a Result
//   export -> a Result with a warning (this worker does not write files)
// It translates nothing: the block geometry is made-up bytes standing in
// for the ACIS data of a real import.
//
//   xch_worker [--log FILE]   with a debug log (names every shared-memory
//                             object before it is created)
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <sstream>
#include <vector>

#include <logging/vx_link_logger.h>
#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_format_options.h>
#include <xch_api/xch_api_legacy_maps.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_result.h>
#include <xch_api/xch_api_utf8.h>
#include <xch_api/xch_api_varnex_info.h>

#include <frames/xch_frames.h>
#include <frames/xch_worker_loop.h>

#include "example_mechanical.h"
#include "example_pmi.h"
#include "example_structure.h"
#include "example_visualization.h"

using namespace xch;

namespace {

void send(const std::shared_ptr<IExchangeObject>& object) {
    std::wostringstream text;
    ExchangeObjectWrapper(object).writeObject(text);
    frames::writeFrame(stdout, "envelope", text.str());
}

void sendResult(Result::ECode code, const std::wstring& message) {
    Result result;
    result.setCode(code);
    result.setMessage(message);
    result.setFinished(true);
    std::wostringstream text;
    result.writeObject(text);
    frames::writeFrame(stdout, "result", text.str());
}

void sendInfo() {
    VarnexInfo info;
    info.setName(L"Example worker");
    info.setVersion(L"26.0");
    info.setRequestedInterface(ConnectInterface);
    info.newThirdpartyCore().setName(L"Example STEP core").setVersion(L"4.2");
    info.newImportFormat().setDescription(L"STEP files").addExtension(L"stp").addExtension(L"step")
        .addFilterExtensions(L"*.stp;*.step;*.STP;*.STEP");
    info.newImportFormat().setDescription(L"IGES files").addExtension(L"igs").addFilterExtensions(L"*.igs;*.iges");
    info.newExportFormat().setDescription(L"ACIS files").addExtension(L"sat").addFilterExtensions(L"*.sat;*.sab");
    std::wostringstream text;
    info.writeObject(text);
    frames::writeFrame(stdout, "info", text.str());
}

// Keeps the block geometry alive until the host is done: its shared memory
// lives as long as these objects.
std::vector<std::shared_ptr<ExcBlockGeometry>> g_geometry;

void runImport(const ImportOptions& options) {
    send(std::make_shared<ExcMessage>(L"Importing " + options.file()));
    for (const auto& set : options.formatOptions())
        send(std::make_shared<ExcLog>(L"format options: " + enumToString(set->operationType()) + L" " +
                                      enumToString(set->formatType())));
    send(example::makeProductStructure());
    const std::wstring names[] = {L"Bracket", L"Bolt M6\u00d720"};
    auto instances = std::make_shared<LegacyComponentInstanceNames>();
    for (std::uint64_t block = 1; block <= 2; ++block) {
        send(std::make_shared<ExcProgress>(static_cast<std::int32_t>(block * 40), 100, false,
                                           L"reading block " + std::to_wstring(block)));
        // Stand-in for the block's ACIS binary data.
        std::string sab = "ACIS BinaryFile block " + std::to_string(block) + "\n";
        for (int i = 0; i < 20000; ++i) sab += static_cast<char>('a' + (i * block) % 26);
        auto geometry = std::make_shared<ExcBlockGeometry>();
        geometry->setBlockId(block);
        geometry->setBinaryData(sab.data(), sab.size(), true);
        g_geometry.push_back(geometry);
        send(geometry);
        auto mechanical = example::makeBlockMechanicalData(block);
        if (block == 1) mechanical->setPMIData(example::makeBlockPMI(block)); // the bracket carries PMI
        send(mechanical);
        send(example::makeBlockVisualization(block, block == 1 ? 100.0f : 6.0f, block == 1 ? 40.0f : 6.0f, 20.0f));
        instances->addInstanceName(OdDbHandle(0x1A0 + block), names[block - 1]);
    }
    send(instances);
    send(example::makeRootMechanicalData());
    send(example::makeRootVisualization());
    send(std::make_shared<ExcStageFinished>(ExcStageFinished::ProductStructure));
    send(std::make_shared<ExcProgress>(100, 100, false, L"done"));
    send(std::make_shared<ExcStageFinished>(ExcStageFinished::VisuAndMech));
    sendResult(Result::Ok, L"Imported 2 blocks from " + options.file());
}

} // namespace

int main(int argc, char** argv) {
    frames::prepareStandardStreams();
    if (argc == 3 && std::strcmp(argv[1], "--log") == 0) {
        // Debug level: the log names every shared-memory object this worker
        // creates, before it creates it.
        vx_link::LoggerHolder::initLogger(vx_link::LevelDebug, argv[2]);
    } else if (argc != 1) {
        std::fprintf(stderr, "usage: xch_worker [--log FILE]\n");
        return 2;
    }
    frames::WorkerHandlers handlers;
    handlers.describe = sendInfo;
    handlers.import = runImport;
    handlers.result = sendResult;
    handlers.exportCode = Result::Warning;
    try {
        frames::serveCommands(stdin, handlers);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "worker: %s\n", e.what());
        return 1;
    }
    return 0; // the geometry objects go now, and their shared memory with them
}

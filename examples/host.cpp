// An example CAD host. It asks a translator worker for its description,
// then to import a file, and reports on standard error what comes back:
//
//   xch_host [FILE] > to-worker < from-worker
//
// Commands go out on standard output, answers come in on standard input
// (frames/xch_frames.h); scripts/demo.sh connects it to xch_worker through
// two named pipes. Every body is loaded from shared memory as it arrives and then
// released; the geometry of each block is loaded while the worker still
// holds it, and removed when the host's copy goes.
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_format_options.h>
#include <xch_api/xch_api_format_options_import.h>
#include <xch_api/xch_api_legacy_maps.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_result.h>
#include <xch_api/xch_api_utf8.h>
#include <xch_api/xch_api_varnex_info.h>

#include <frames/xch_frames.h>

#include "example_mechanical.h"
#include "example_pmi.h"
#include "example_structure.h"
#include "example_visualization.h"

using namespace xch;

namespace {

void say(const std::wstring& text) { std::fprintf(stderr, "host: %s\n", toUtf8(text).c_str()); }

void sendCommand(const Command& command) {
    std::wostringstream text;
    command.writeObject(text);
    frames::writeFrame(stdout, "command", text.str());
}

void report(const std::shared_ptr<IExchangeObject>& object) {
    if (auto message = std::dynamic_pointer_cast<ExcMessage>(object)) {
        say(L"message: " + message->message());
    } else if (auto log = std::dynamic_pointer_cast<ExcLog>(object)) {
        say(L"log: " + log->message());
    } else if (auto progress = std::dynamic_pointer_cast<ExcProgress>(object)) {
        say(L"progress " + std::to_wstring(progress->progress()) + L"/" + std::to_wstring(progress->progressMax()) +
            L" " + progress->stage());
    } else if (auto stage = std::dynamic_pointer_cast<ExcStageFinished>(object)) {
        say(L"stage finished: " + enumToString(stage->stage()));
    } else if (auto geometry = std::dynamic_pointer_cast<ExcBlockGeometry>(object)) {
        geometry->load();
        say(L"block " + std::to_wstring(geometry->blockId()) + L": " +
            (geometry->isLoaded() ? std::to_wstring(geometry->binaryData().size()) + L" bytes of geometry loaded"
                                  : std::wstring(L"geometry could not be loaded")));
    } else if (auto structure = std::dynamic_pointer_cast<ExcProductStructure>(object)) {
        structure->load();
        example::printProductStructure(*structure, say);
    } else if (auto mechanical = std::dynamic_pointer_cast<ExcBlockMechanicalData>(object)) {
        mechanical->load();
        example::printBlockMechanicalData(*mechanical, say);
        if (mechanical->pmiData()) example::printPMI(*mechanical->pmiData(), say);
    } else if (auto root = std::dynamic_pointer_cast<ExcRootMechanicalData>(object)) {
        root->load();
        example::printRootMechanicalData(*root, say);
        if (root->pmiData()) example::printPMI(*root->pmiData(), say);
    } else if (auto block = std::dynamic_pointer_cast<ExcBlockVisualization>(object)) {
        block->load();
        say(L"block " + std::to_wstring(block->blockId()) + L" display: " +
            example::summarizeVisualization(block->visualizationData()));
    } else if (auto assembly = std::dynamic_pointer_cast<ExcRootAssemblyVisualization>(object)) {
        assembly->load();
        say(L"assembly display: " + example::summarizeVisualization(assembly->visualizationData()));
    } else if (auto names = std::dynamic_pointer_cast<LegacyComponentInstanceNames>(object)) {
        for (const auto& entry : names->map())
            say(L"instance " + std::to_wstring(static_cast<std::uint64_t>(entry.first)) + L" is " + entry.second);
    } else if (object) {
        say(L"received " + object->name());
    }
}

// Reads answers until the worker's final Result; returns whether it is Ok.
// Throws std::runtime_error when the worker's output ends before it.
bool receiveUntilFinished() {
    std::string kind;
    std::wstring text;
    while (frames::readFrame(stdin, kind, text)) {
        std::wistringstream in(text);
        if (kind == "envelope") {
            ExchangeObjectWrapper wrapper;
            // Each body is read once here: remove it from shared memory as
            // soon as it has been loaded (a body that fails to load stays,
            // for `xch shm list` to show).
            wrapper.setReleaseAfterLoad(true);
            wrapper.readObject(in);
            report(wrapper.get());
        } else if (kind == "info") {
            VarnexInfo info;
            info.readObject(in);
            say(L"worker: " + info.name() + L" " + info.version());
            for (const auto& format : info.importFormats())
                for (const std::wstring& filter : format->getFilters()) say(L"  imports " + filter);
            for (const auto& format : info.exportFormats())
                for (const std::wstring& filter : format->getFilters()) say(L"  exports " + filter);
        } else if (kind == "result") {
            Result result;
            result.readObject(in);
            say(L"result: " + enumToString(result.code()) +
                (result.message().empty() ? std::wstring() : L" (" + result.message() + L")"));
            if (result.isFinished())
                return result.code() == Result::Ok;
        }
    }
    throw std::runtime_error("the worker ended without a result");
}

} // namespace

int main(int argc, char** argv) {
    frames::prepareStandardStreams();
    const std::wstring file = argc > 1 ? fromUtf8(argv[1], std::strlen(argv[1])) : L"bracket.stp";
    try {
        Command info;
        info.setType(Command::Info);
        sendCommand(info);
        bool ok = receiveUntilFinished();

        auto options = Command::newImportOptions();
        options->setFile(file);
        auto general = std::make_shared<OptionsGeneral>();
        general->setLogEventLevel(LogEventWarning);
        options->addFormatOptions(general);
        auto modeler = std::make_shared<OptionsModeler>();
        modeler->setLengthUnitType(LengthMillimeter);
        options->addFormatOptions(modeler);
        options->addFormatOptions(std::make_shared<imp::OptionsSTEP>());
        Command import;
        import.setType(Command::Import);
        import.setInternalInterface(ConnectInterface);
        import.setImportOptions(options);
        sendCommand(import);
        ok = receiveUntilFinished() && ok;
        return ok ? 0 : 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "host: %s\n", e.what());
        return 1;
    }
}

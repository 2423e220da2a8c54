// xch_occt_worker: a translator worker that imports STEP files through Open
// CASCADE. The host starts it and talks to it through its standard input
// and output in frames (frames/xch_frames.h):
//   info   -> the translator description, then a Result
//   ping   -> a Result
//   import -> progress, messages and log lines, the product structure, per
//             part its geometry (Open CASCADE binary B-rep in shared
//             memory), display model and mechanical data, the root objects,
//             finished-stage notices, then a Result
//   export -> an error Result (this worker writes no files)
// The shared memory of what the worker sends lives until the worker ends:
// a host loads what it wants before it closes the worker's input.
// Open CASCADE prints its reports on standard output; the frames therefore
// go to a private copy of the original output, and standard output is
// pointed at standard error.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <regex>
#include <sstream>
#include <vector>

#include <unistd.h>

#include <frames/xch_frames.h>
#include <frames/xch_worker_loop.h>
#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_format_options.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_result.h>
#include <xch_api/xch_api_utf8.h>
#include <xch_api/xch_api_varnex_info.h>

#include "occt_import.h"

using namespace xch;

namespace {

std::FILE* g_out = stdout;

void sendFrame(const char* kind, const mp::ISerializable& document) {
    std::wostringstream text;
    document.writeObject(text);
    frames::writeFrame(g_out, kind, text.str());
}

void sendResult(Result::ECode code, const std::wstring& message) {
    Result result;
    result.setCode(code);
    result.setMessage(message);
    result.setFinished(true);
    sendFrame("result", result);
}

// The name of the shared-memory body an envelope carries (its
// "exchange_object_data" string), or empty.
std::wstring bodyName(const std::wstring& envelope) {
    static const std::wregex uuid(L"\"exchange_object_data\":\"([0-9a-fA-F-]{36})\"");
    std::wsmatch match;
    return std::regex_search(envelope, match, uuid) ? match[1].str() : std::wstring();
}

// Sends the objects of a job to the host. The shared memory of everything
// sent lives as long as the worker: the block geometry through the objects
// kept here, the envelope bodies until the channel goes. So whichever way
// the session ends (the host closes the worker's input, or goes away and
// the next write fails), nothing the host did not take is left behind.
class PipeChannel : public occt_worker::Channel {
public:
    ~PipeChannel() override {
        for (const std::wstring& name : m_bodies) mp::SharedBuffer<char>::remove(name);
    }

    void send(const std::shared_ptr<IExchangeObject>& object) override {
        const auto start = std::chrono::steady_clock::now();
        std::wostringstream text;
        ExchangeObjectWrapper(object).writeObject(text);
        if (object->binary()) {
            std::wstring name = bodyName(text.str());
            if (!name.empty()) m_bodies.push_back(std::move(name));
        }
        frames::writeFrame(g_out, "envelope", text.str());
        m_exchange += std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }
    void keep(const std::shared_ptr<IExchangeObject>& object) override { m_kept.push_back(object); }
    void stageTime(const std::wstring& stage, double milliseconds) override {
        if (m_times.find(stage) == m_times.end()) m_order.push_back(stage);
        m_times[stage] += milliseconds;
    }

    // A new job: its times start again. What earlier jobs sent stays until
    // the session ends (a host may load it late).
    void startJob() {
        m_times.clear();
        m_order.clear();
        m_exchange = 0;
    }

    // "stage times (ms): read=12.5 transfer=40.1 ... exchange=3.2", the line
    // a host reads the worker's share of the time from.
    std::wstring timesLine() const {
        std::wstring line = L"stage times (ms):";
        wchar_t value[64];
        for (const std::wstring& stage : m_order) {
            std::swprintf(value, 64, L" %ls=%.1f", stage.c_str(), m_times.at(stage));
            line += value;
        }
        std::swprintf(value, 64, L" exchange=%.1f", m_exchange);
        return line + value;
    }

private:
    std::vector<std::shared_ptr<IExchangeObject>> m_kept;
    std::vector<std::wstring> m_bodies;
    std::map<std::wstring, double> m_times;
    std::vector<std::wstring> m_order;
    double m_exchange = 0;
};

void sendInfo() {
    VarnexInfo info;
    info.setName(L"Open CASCADE STEP translator");
    info.setVersion(L"1.0");
    info.setRequestedInterface(ConnectInterface);
    info.newThirdpartyCore().setName(L"Open CASCADE Technology").setVersion(occt_worker::occtVersion());
    info.newImportFormat()
        .setDescription(L"STEP files (AP203, AP214, AP242)")
        .addExtension(L"stp")
        .addExtension(L"step")
        .addExtension(L"p21")
        .addFilterExtensions(L"*.stp;*.step;*.p21;*.STP;*.STEP;*.P21")
        // Any case of the extensions, in a bare name or a path.
        .addRegex(L".*\\.([sS][tT][pP]|[sS][tT][eE][pP]|[pP]21)");
    sendFrame("info", info);
}

occt_worker::ImportSettings settingsOf(const ImportOptions& options) {
    occt_worker::ImportSettings settings;
    settings.file = options.file();
    for (const auto& set : options.formatOptions()) {
        if (auto graphical = std::dynamic_pointer_cast<OptionsGraphical>(set)) {
            if (graphical->tesselationMaxChordalDeviation() > 0)
                settings.chordalDeviation = graphical->tesselationMaxChordalDeviation();
            const EVisuBrepTesselationMode mode = graphical->visuBrepTesselationMode();
            if (mode == BrepTesselationNever || mode == BrepTesselationNeverAtLeastNativePMI)
                settings.tessellate = false;
        } else if (auto modeler = std::dynamic_pointer_cast<OptionsModeler>(set)) {
            if (modeler->preservePMIMode() == PreservePMIDisabled) settings.pmi = false;
        } else if (auto mechanical = std::dynamic_pointer_cast<OptionsMechanical>(set)) {
            if (mechanical->featureToleranceProcessingMode() == ProcessingNone) settings.pmi = false;
        }
    }
    return settings;
}

void runImport(const ImportOptions& options, PipeChannel& channel) {
    channel.startJob();
    Result result;
    try {
        result = occt_worker::importStep(settingsOf(options), channel);
    } catch (const std::bad_alloc&) {
        result.setCode(Result::Error);
        result.setMessage(L"Cannot import " + options.file() + L": out of memory");
    }
    channel.send(std::make_shared<ExcLog>(channel.timesLine()));
    result.setFinished(true);
    sendFrame("result", result);
}

} // namespace

int main() {
    // A host that has gone away makes writes fail (no SIGPIPE); the worker
    // then ends normally, removing the shared memory it still holds.
    frames::prepareStandardStreams();
    // Frames go to a copy of the original output; what Open CASCADE prints
    // lands on standard error.
    const int frameFd = dup(1);
    if (frameFd < 0 || dup2(2, 1) < 0 || !(g_out = fdopen(frameFd, "w"))) {
        std::perror("xch_occt_worker: cannot set up its output");
        return 1;
    }
    // An interrupt from the terminal is the host's to handle.
    std::signal(SIGINT, SIG_IGN);
    PipeChannel channel;
    frames::WorkerHandlers handlers;
    handlers.describe = sendInfo;
    handlers.import = [&channel](const ImportOptions& options) { runImport(options, channel); };
    handlers.result = sendResult;
    try {
        frames::serveCommands(stdin, handlers);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "xch_occt_worker: %s\n", e.what());
        return 1;
    }
    return 0;
}

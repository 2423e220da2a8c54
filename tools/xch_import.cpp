#include "xch_import.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>

#include <frames/xch_frames.h>
#include <frames/xch_worker_process.h>
#include <mp/mp_shared_buffer.h>
#include <xch_api/xch_api_command.h>
#include <xch_api/xch_api_exchange_wrapper.h>
#include <xch_api/xch_api_format_options.h>
#include <xch_api/xch_api_format_options_import.h>
#include <xch_api/xch_api_messages.h>
#include <xch_api/xch_api_utf8.h>
#include <xch_api/xch_api_varnex_info.h>

#include "xch_gltf.h"

#if defined(_WIN32)
#  include <windows.h>
#else
#  include <unistd.h>
#endif

using namespace xch;

namespace xch_tool {

const char* const kImportUsage =
    "  xch import FILE [--out MODEL.glb] [--json] [--worker PATH] [--deviation D]\n"
    "             [--no-pmi] [--no-mesh] [--verbose]\n"
    "      Imports the CAD file FILE through a translator worker (by default\n"
    "      xch_occt_worker beside xch), shows its progress on standard error and\n"
    "      prints a summary of what arrived: blocks, references, faces, triangles,\n"
    "      PMI by kind, views, time per stage, bytes through shared memory.\n"
    "      --json prints the summary as one JSON object on standard output;\n"
    "      --out writes the display model as binary glTF 2.0; --deviation sets the\n"
    "      largest chordal deviation of the triangles (model units); --no-pmi\n"
    "      skips GD&T and saved views; --no-mesh skips triangulating faces;\n"
    "      --verbose also shows the worker's log lines.\n";

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::string narrow(const std::wstring& text) { return toUtf8(text); }
std::wstring wide(const std::string& text) { return fromUtf8(text.data(), text.size()); }

std::string selfPath(const std::string& fallback) {
#if defined(_WIN32)
    char self[MAX_PATH + 1] = {0};
    DWORD n = GetModuleFileNameA(nullptr, self, MAX_PATH);
    return n ? std::string(self, n) : fallback;
#else
    char self[4096];
    ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
    return n > 0 ? std::string(self, static_cast<std::size_t>(n)) : fallback;
#endif
}

std::string defaultWorker(const std::string& self) {
    std::filesystem::path dir = std::filesystem::path(selfPath(self)).parent_path();
#if defined(_WIN32)
    return (dir / "xch_occt_worker.exe").string();
#else
    return (dir / "xch_occt_worker").string();
#endif
}

// The names of shared-memory objects in a piece of envelope text: every
// UUID in it (an envelope names its body, a block geometry its buffer;
// nothing else in an envelope's own text is a UUID).
std::vector<std::wstring> namesIn(const std::string& text) {
    static const std::regex uuid("[0-9a-fA-F]{8}-[0-9a-fA-F]{4}-[0-9a-fA-F]{4}-[0-9a-fA-F]{4}-[0-9a-fA-F]{12}");
    std::vector<std::wstring> out;
    for (std::sregex_iterator it(text.begin(), text.end(), uuid), end; it != end; ++it) out.push_back(wide(it->str()));
    return out;
}

std::uint64_t sharedSize(const std::wstring& name) {
    try {
        mp::SharedBuffer<char> buffer(name, mp::SharedBuffer<char>::OpenMode::Open);
        return buffer.view().size();
    } catch (const std::exception&) {
        return 0;
    }
}

class Session : public WorkerControl {
public:
    Session(const ImportRequest& request, ImportedModel& model, std::ostream& progress, const ImportObserver& observer,
            ImportSummary& summary)
        : m_request(request), m_model(model), m_progress(progress), m_observer(observer), m_summary(summary) {}

    void kill() override {
        if (m_worker) m_worker->kill();
    }

    void run(const std::string& workerPath) {
        const Clock::time_point start = Clock::now();
        try {
            m_worker.reset(new frames::WorkerProcess(workerPath));
            Command info;
            info.setType(Command::Info);
            send(info);
            if (!receive() || !m_described) {
                if (m_summary.error.empty()) fail(L"the worker " + wide(workerPath) + L" gave no description");
                return;
            }
            if (!m_accepts) {
                fail(L"the worker " + m_summary.worker + L" imports no files like " + wide(m_request.file));
                return;
            }
            send(importCommand());
            if (receive() && m_result) {
                m_model.result = *m_result;
                const Result::ECode code = m_result->code();
                m_summary.ok = m_summary.error.empty() && (code == Result::Ok || code == Result::Warning);
                if (!m_summary.ok && m_summary.error.empty())
                    m_summary.error = m_result->message().empty() ? L"the import failed (" + enumToString(code) + L")"
                                                                   : m_result->message();
            }
        } catch (const std::exception& e) {
            fail(wide(e.what()));
        }
        m_summary.times.emplace_back("receive", m_receiveMs);
        m_summary.times.emplace_back("total", millisecondsSince(start));
        finish();
    }

    void finish() {
        if (!m_worker) return;
        bool normal = false;
        const std::string end = m_worker->wait(normal);
        if (!m_result && m_summary.error.empty()) fail(L"the worker ended without a result");
        if (!m_result || !normal) {
            if (!normal) {
                m_summary.ok = false;
                m_summary.error += L" (the worker ended unexpectedly: " + wide(end) + L")";
            }
        }
        m_worker.reset();
        cleanUp();
    }

private:
    void fail(const std::wstring& error) {
        m_summary.ok = false;
        if (m_summary.error.empty()) m_summary.error = error;
    }

    void send(const Command& command) {
        std::wostringstream text;
        command.writeObject(text);
        frames::writeFrame(m_worker->input(), "command", text.str());
    }

    std::shared_ptr<Command> importCommand() const {
        auto options = Command::newImportOptions();
        std::error_code error;
        std::filesystem::path absolute = std::filesystem::absolute(m_request.file, error);
        options->setFile(wide(error ? m_request.file : absolute.string()));
        auto graphical = std::make_shared<OptionsGraphical>();
        graphical->setTesselationMaxChordalDeviation(m_request.chordalDeviation);
        graphical->setVisuBrepTesselationMode(m_request.tessellate ? BrepTesselationAuto : BrepTesselationNever);
        options->addFormatOptions(graphical);
        auto modeler = std::make_shared<OptionsModeler>();
        modeler->setPreservePMIMode(m_request.pmi ? PreservePMIDecorateAll : PreservePMIDisabled);
        options->addFormatOptions(modeler);
        options->addFormatOptions(std::make_shared<imp::OptionsSTEP>());
        auto command = std::make_shared<Command>();
        command->setType(Command::Import);
        command->setInternalInterface(ConnectInterface);
        command->setImportOptions(options);
        return command;
    }

    void send(const std::shared_ptr<Command>& command) { send(*command); }

    // Reads frames up to a finished Result; false when the worker's output
    // ended first (or broke off in the middle of a frame).
    bool receive() {
        m_result.reset();
        std::string kind, bytes;
        for (;;) {
            try {
                if (!frames::readFrameBytes(m_worker->output(), kind, bytes)) break;
            } catch (const std::runtime_error&) {
                // The worker stopped in the middle of a frame: whatever
                // shared memory it names is still to be removed.
                forget(namesIn(bytes));
                break;
            }
            std::wistringstream in(wide(bytes));
            if (kind == "envelope") {
                envelope(bytes, in);
            } else if (kind == "info") {
                VarnexInfo info;
                info.readObject(in);
                describe(info);
            } else if (kind == "result") {
                auto result = std::make_shared<Result>();
                result->readObject(in);
                if (result->isFinished()) {
                    m_result = result;
                    return true;
                }
            }
        }
        fail(L"the worker ended before it finished");
        return false;
    }

    void describe(const VarnexInfo& info) {
        m_described = true;
        m_summary.worker = info.name() + (info.version().empty() ? L"" : L" " + info.version());
        for (const auto& format : info.importFormats())
            if (format && format->is(wide(m_request.file))) m_accepts = true;
    }

    void envelope(const std::string& bytes, std::wistream& in) {
        const std::vector<std::wstring> names = namesIn(bytes);
        const Clock::time_point start = Clock::now();
        std::shared_ptr<IExchangeObject> object;
        try {
            ExchangeObjectWrapper wrapper;
            wrapper.setDelayedLoading(true);
            wrapper.readObject(in);
            object = wrapper.get();
            for (const std::wstring& name : names) {
                const std::uint64_t size = sharedSize(name);
                if (size) {
                    ++m_summary.sharedMemoryObjects;
                    m_summary.sharedMemoryBytes += size;
                }
            }
            if (object) object->load();
        } catch (const std::exception& e) {
            fail(L"cannot read an object from the worker: " + wide(e.what()));
            object.reset();
        }
        m_receiveMs += millisecondsSince(start);
        // Loaded (or not loadable): the shared memory is not needed any more.
        forget(names);
        if (!object) return;
        take(object);
        if (m_observer) m_observer(*object, *this);
    }

    void forget(const std::vector<std::wstring>& names) {
        for (const std::wstring& name : names) {
            m_summary.sharedMemoryNames.push_back(name);
            mp::SharedBuffer<char>::remove(name);
        }
    }

    void cleanUp() {
        for (const std::wstring& name : m_summary.sharedMemoryNames) mp::SharedBuffer<char>::remove(name);
    }

    void take(const std::shared_ptr<IExchangeObject>& object) {
        if (auto message = std::dynamic_pointer_cast<ExcMessage>(object)) {
            ++m_summary.messages;
            m_progress << "  " << narrow(message->message()) << '\n';
        } else if (auto log = std::dynamic_pointer_cast<ExcLog>(object)) {
            workerTimes(log->message());
            if (m_request.verbose) m_progress << "  log: " << narrow(log->message()) << '\n';
        } else if (auto progress = std::dynamic_pointer_cast<ExcProgress>(object)) {
            if (progress->stage() != m_lastStage) {
                m_lastStage = progress->stage();
                m_progress << "  [" << (progress->pulse() ? std::string("...")
                                                           : std::to_string(progress->progress()) + "/" +
                                                                 std::to_string(progress->progressMax()))
                           << "] " << narrow(progress->stage()) << '\n';
            }
        } else if (auto structure = std::dynamic_pointer_cast<ExcProductStructure>(object)) {
            m_model.structure = structure;
        } else if (auto geometry = std::dynamic_pointer_cast<ExcBlockGeometry>(object)) {
            if (!geometry->isLoaded()) fail(L"the geometry of block " + std::to_wstring(geometry->blockId()) +
                                            L" could not be loaded");
            m_model.geometry[geometry->blockId()] = geometry;
        } else if (auto visualization = std::dynamic_pointer_cast<ExcBlockVisualization>(object)) {
            m_model.visualization[visualization->blockId()] = visualization;
        } else if (auto mechanical = std::dynamic_pointer_cast<ExcBlockMechanicalData>(object)) {
            m_model.mechanical[mechanical->blockId()] = mechanical;
        } else if (auto rootVisualization = std::dynamic_pointer_cast<ExcRootAssemblyVisualization>(object)) {
            m_model.rootVisualization = rootVisualization;
        } else if (auto rootMechanical = std::dynamic_pointer_cast<ExcRootMechanicalData>(object)) {
            m_model.rootMechanical = rootMechanical;
        }
    }

    // "stage times (ms): read=12.5 transfer=40.1 ..." from the worker.
    void workerTimes(const std::wstring& line) {
        const std::wstring prefix = L"stage times (ms):";
        if (line.compare(0, prefix.size(), prefix) != 0) return;
        std::istringstream words(narrow(line.substr(prefix.size())));
        std::string word;
        while (words >> word) {
            const std::size_t equals = word.find('=');
            if (equals == std::string::npos) continue;
            try {
                m_summary.times.emplace_back(word.substr(0, equals), std::stod(word.substr(equals + 1)));
            } catch (const std::exception&) {
            }
        }
    }

    const ImportRequest& m_request;
    ImportedModel& m_model;
    std::ostream& m_progress;
    const ImportObserver& m_observer;
    ImportSummary& m_summary;
    std::unique_ptr<frames::WorkerProcess> m_worker;
    std::shared_ptr<Result> m_result;
    bool m_described = false;
    bool m_accepts = false;
    std::wstring m_lastStage;
    double m_receiveMs = 0;
};

void count(const ImportedModel& model, ImportSummary& summary) {
    if (model.structure) {
        const ExcProductStructure& structure = *model.structure;
        summary.blocks = structure.blocks().size();
        summary.references = structure.rootBlockReferences().size();
        for (const auto& block : structure.blocks()) {
            summary.parts += block->isPart() ? 1 : 0;
            summary.references += block->blockReferences().size();
        }
        // Part occurrences; a hostile tree could be huge when expanded.
        structure.visit([&](const ExcBlockReference&, const ExcBlock* block, std::size_t) {
            if (block && block->isPart()) ++summary.instances;
            return summary.instances < 100000000;
        });
    }
    auto countPmi = [&](const std::shared_ptr<ExcPMIData>& data) {
        if (!data) return;
        for (const auto& set : data->annotationSets()) {
            if (!set) continue;
            for (const auto& view : set->views()) {
                if (!view) continue;
                summary.dimensions += view->dimensions().size();
                summary.tolerances += view->gdts().size();
                summary.datums += view->datums().size() + view->datumTargets().size();
            }
        }
    };
    for (const auto& entry : model.mechanical) countPmi(entry.second->pmiData());
    if (model.rootMechanical) countPmi(model.rootMechanical->pmiData());
    for (const auto& entry : model.visualization) {
        if (!entry.second->visualizationData()) continue;
        const ExcVisualizationData::Counts n = entry.second->visualizationData()->counts();
        summary.faces += n.faces;
        summary.triangles += n.triangles;
        summary.edges += n.edges;
    }
    if (model.rootVisualization && model.rootVisualization->visualizationData())
        summary.views = model.rootVisualization->visualizationData()->captures().size();
}

std::string jsonString(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
            out += escaped;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

std::string milliseconds(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

} // namespace

ImportSummary importFile(const ImportRequest& request, ImportedModel& model, std::ostream& progress,
                         const ImportObserver& observer) {
    ImportSummary summary;
    const std::string worker = request.worker.empty() ? defaultWorker("xch") : request.worker;
    std::error_code error;
    if (!std::filesystem::is_regular_file(request.file, error)) {
        summary.error = L"cannot import " + wide(request.file) + L": no such file";
        return summary;
    }
    if (!std::filesystem::is_regular_file(worker, error)) {
        summary.error = L"no translator worker at " + wide(worker) + L" (name one with --worker)";
        return summary;
    }
    Session session(request, model, progress, observer, summary);
    session.run(worker);
    count(model, summary);
    return summary;
}

std::string summaryJson(const ImportSummary& s, const std::string& file, const std::string& out) {
    std::string json = "{\"file\":" + jsonString(file) + ",\"ok\":" + (s.ok ? "true" : "false");
    if (!s.error.empty()) json += ",\"error\":" + jsonString(narrow(s.error));
    json += ",\"worker\":" + jsonString(narrow(s.worker));
    const std::pair<const char*, std::uint64_t> counts[] = {
        {"blocks", s.blocks},       {"parts", s.parts},
        {"references", s.references}, {"instances", s.instances},
        {"faces", s.faces},         {"triangles", s.triangles},
        {"edges", s.edges},         {"dimensions", s.dimensions},
        {"tolerances", s.tolerances}, {"datums", s.datums},
        {"views", s.views},         {"messages", s.messages},
        {"shared_memory_objects", s.sharedMemoryObjects}, {"shared_memory_bytes", s.sharedMemoryBytes}};
    for (const auto& c : counts) json += ",\"" + std::string(c.first) + "\":" + std::to_string(c.second);
    json += ",\"times_ms\":{";
    for (std::size_t i = 0; i < s.times.size(); ++i)
        json += (i ? "," : "") + jsonString(s.times[i].first) + ":" + milliseconds(s.times[i].second);
    json += "}";
    if (!out.empty()) json += ",\"out\":" + jsonString(out);
    return json + "}";
}

std::string summaryText(const ImportSummary& s, const std::string& file, const std::string& out) {
    std::ostringstream text;
    text << file << (s.ok ? "" : " (failed)") << " through " << narrow(s.worker) << "\n"
         << "  blocks " << s.blocks << " (" << s.parts << " parts), references " << s.references << ", part instances "
         << s.instances << "\n"
         << "  faces " << s.faces << ", triangles " << s.triangles << ", edges " << s.edges << "\n"
         << "  PMI: dimensions " << s.dimensions << ", geometric tolerances " << s.tolerances << ", datums "
         << s.datums << "; views " << s.views << "\n"
         << "  shared memory: " << s.sharedMemoryObjects << " objects, " << s.sharedMemoryBytes << " bytes\n"
         << "  time (ms):";
    for (const auto& t : s.times) text << " " << t.first << " " << milliseconds(t.second);
    text << "\n";
    if (!out.empty()) text << "  wrote " << out << "\n";
    return text.str();
}

int runImportCommand(const std::vector<std::string>& args, const std::string& self) {
    ImportRequest request;
    std::string out;
    bool json = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--json") {
            json = true;
        } else if (a == "--out" && hasValue) {
            out = args[++i];
        } else if (a == "--worker" && hasValue) {
            request.worker = args[++i];
        } else if (a == "--deviation" && hasValue) {
            char* end = nullptr;
            request.chordalDeviation = std::strtod(args[++i].c_str(), &end);
            if (!end || *end || !(request.chordalDeviation > 0)) {
                std::cerr << "xch: --deviation wants a positive number\n";
                return 2;
            }
        } else if (a == "--no-pmi") {
            request.pmi = false;
        } else if (a == "--no-mesh") {
            request.tessellate = false;
        } else if (a == "--verbose") {
            request.verbose = true;
        } else if (!a.empty() && a[0] != '-' && request.file.empty()) {
            request.file = a;
        } else {
            std::cerr << "xch: usage:\n" << kImportUsage;
            return 2;
        }
    }
    if (request.file.empty()) {
        std::cerr << "xch: usage:\n" << kImportUsage;
        return 2;
    }
    if (request.worker.empty()) request.worker = defaultWorker(self);

    ImportedModel model;
    ImportSummary summary = importFile(request, model, std::cerr);
    if (summary.ok && !out.empty()) {
        std::string error;
        if (!writeGlb(model, out, error)) {
            summary.ok = false;
            summary.error = L"cannot write " + wide(out) + L": " + wide(error);
        }
    }
    if (!summary.ok) std::cerr << "xch: " << narrow(summary.error) << '\n';
    const std::string written = summary.ok ? out : std::string();
    if (json)
        std::cout << summaryJson(summary, request.file, written) << std::endl;
    else
        std::cout << summaryText(summary, request.file, written);
    return summary.ok ? 0 : 1;
}

} // namespace xch_tool

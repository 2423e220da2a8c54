// `xch import`: a host that imports one CAD file through a translator
// worker process and reports what arrived.
//
// It starts the worker, asks for its description, checks that the worker
// imports files of that name, sends the import command and receives every
// object up to the final Result, loading each one from shared memory as it
// arrives and removing the shared memory after it. Progress and messages
// are shown on standard error while it runs. A worker that ends before its
// Result is reported as such; the shared memory named in what it had sent
// is removed.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <xch_api/xch_api_block_geometry.h>
#include <xch_api/xch_api_exchange_mechanical.h>
#include <xch_api/xch_api_exchange_structure.h>
#include <xch_api/xch_api_exchange_visualization.h>
#include <xch_api/xch_api_result.h>

namespace xch_tool {

struct ImportRequest {
    std::string file;
    // The worker program; empty: xch_occt_worker beside the running xch.
    std::string worker;
    // Largest chordal deviation of the display triangles (model units);
    // 0 lets the worker choose.
    double chordalDeviation = 0.0;
    bool pmi = true;
    bool tessellate = true;
    // Print Open CASCADE's report lines (ExcLog) too.
    bool verbose = false;
};

// Everything received, by block id.
struct ImportedModel {
    std::shared_ptr<xch::ExcProductStructure> structure;
    std::map<std::uint64_t, std::shared_ptr<xch::ExcBlockGeometry>> geometry;
    std::map<std::uint64_t, std::shared_ptr<xch::ExcBlockVisualization>> visualization;
    std::map<std::uint64_t, std::shared_ptr<xch::ExcBlockMechanicalData>> mechanical;
    std::shared_ptr<xch::ExcRootAssemblyVisualization> rootVisualization;
    std::shared_ptr<xch::ExcRootMechanicalData> rootMechanical;
    xch::Result result;
};

struct ImportSummary {
    bool ok = false;            // a finished Result of Ok or Warning
    std::wstring error;         // why not, when not ok
    std::wstring worker;        // name and version from its description
    std::size_t blocks = 0;     // parts and assemblies
    std::size_t parts = 0;
    std::size_t references = 0; // root references and references in blocks
    std::size_t instances = 0;  // part occurrences in the expanded tree
    std::size_t faces = 0;
    std::size_t triangles = 0;
    std::size_t edges = 0;
    std::size_t dimensions = 0;
    std::size_t tolerances = 0;
    std::size_t datums = 0;
    std::size_t views = 0;
    std::size_t messages = 0;
    std::size_t sharedMemoryObjects = 0;
    std::uint64_t sharedMemoryBytes = 0;
    // The worker's time per stage, as it reported it ("read", "transfer",
    // "mesh", "brep", "exchange"), then the host's: "receive" (reading
    // envelopes, shared memory, decompression, decoding) and "total".
    std::vector<std::pair<std::string, double>> times;
    // Every shared-memory object named in what the worker sent.
    std::vector<std::wstring> sharedMemoryNames;
};

class WorkerControl {
public:
    virtual ~WorkerControl() = default;
    // Ends the worker at once.
    virtual void kill() = 0;
};

// Called with each object received (after loading it).
using ImportObserver = std::function<void(const xch::IExchangeObject& object, WorkerControl& worker)>;

// Runs one import; `progress` receives the lines shown while it runs.
ImportSummary importFile(const ImportRequest& request, ImportedModel& model, std::ostream& progress,
                         const ImportObserver& observer = ImportObserver());

// The summary as one JSON object (UTF-8 text, one line).
std::string summaryJson(const ImportSummary& summary, const std::string& file, const std::string& out);
// The summary as text for a person.
std::string summaryText(const ImportSummary& summary, const std::string& file, const std::string& out);

// The `xch import` command: `args` are the words after "import".
int runImportCommand(const std::vector<std::string>& args, const std::string& self);

extern const char* const kImportUsage;

} // namespace xch_tool

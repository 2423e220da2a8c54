// The STEP import of the Open CASCADE worker: reads a file into an XCAF
// document and sends the exchange model built from it. Open CASCADE types
// stay inside the .cpp files; this header is what the worker's command
// loop sees.
//
// Face numbering. A block's faces are numbered 1..n in the order in which
// TopExp::MapShapes(shape, TopAbs_FACE, map) visits them, shape being the
// block's shape as restored from its ExcBlockGeometry bytes
// (BinTools::Read): face i is map.FindKey(i). The display faces carry that
// number as their mechanical id, and PMI links to faces name it as the
// sub-entity id of their path. Edges are numbered the same way with
// TopAbs_EDGE.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <xch_api/xch_api_exchange_object.h>
#include <xch_api/xch_api_result.h>

namespace occt_worker {

// What one import is asked to do, taken from the command's options.
struct ImportSettings {
    std::wstring file;
    // Largest distance between a face and its triangles, in model units;
    // 0 chooses one from each part's size.
    double chordalDeviation = 0.0;
    // Whether faces are triangulated for display.
    bool tessellate = true;
    // Whether GD&T and saved views are read.
    bool pmi = true;
};

// Where the import sends its objects. send() returns after the object's
// envelope is on its way; keep() holds an object whose shared memory must
// outlive the send (block geometry) until the host has had the chance to
// load it.
class Channel {
public:
    virtual ~Channel() = default;
    virtual void send(const std::shared_ptr<xch::IExchangeObject>& object) = 0;
    virtual void keep(const std::shared_ptr<xch::IExchangeObject>& object) = 0;
    // Time spent in one stage of the translation ("read", "transfer",
    // "mesh", "brep"), added up over calls.
    virtual void stageTime(const std::wstring& stage, double milliseconds) = 0;
};

// Runs one import and returns the Result to send last. Never throws for a
// bad file: a file that is missing, is not STEP or cannot be translated
// gives an error Result with a message. Errors of the channel (the host has
// gone away) propagate.
xch::Result importStep(const ImportSettings& settings, Channel& channel);

// The versions of Open CASCADE this worker was built with and runs on.
std::wstring occtVersion();

} // namespace occt_worker

// Product and manufacturing information of an XCAF document: its GD&T
// (dimensions, geometric tolerances, datums) and its saved views.
#pragma once

#include <cstddef>
#include <memory>

#include <TDocStd_Document.hxx>

#include <xch_api/xch_api_exchange_visualization.h>

namespace occt_worker {

// One PMI object per XCAF label.
struct PmiCounts {
    std::size_t dimensions = 0;
    std::size_t tolerances = 0;
    std::size_t datums = 0;
    std::size_t views = 0;
};

PmiCounts countPmi(const Handle(TDocStd_Document)& document);

// The saved views of the document as captures (camera, clipping, name) of
// the assembly's display model.
void addSavedViews(const Handle(TDocStd_Document)& document, xch::ExcVisualizationData& data);

} // namespace occt_worker

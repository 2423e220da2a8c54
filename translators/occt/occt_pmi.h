// Product and manufacturing information of an XCAF document: its semantic
// GD&T (dimensions, geometric tolerances, datums and datum targets) mapped
// into the PMI of the parts' mechanical data, and its saved views.
//
// Each GD&T label gives one annotation, whose id is the label's entry
// ("0:1:4:2"). It belongs to the part whose faces (or edges, vertices) it
// is attached to, and links to each of them through an ExcEntity whose
// full sub-entity path names the sub-entity by its number in the part's
// shape (see occt_import.h), with an empty chain of references: the path
// starts at the part's own block. A label attached to nothing goes to the
// first part.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>

#include <xch_api/xch_api_exchange_common.h>
#include <xch_api/xch_api_exchange_pmi.h>
#include <xch_api/xch_api_exchange_visualization.h>

namespace occt_worker {

// A part of the document and the block it became.
struct PmiPart {
    TDF_Label label;
    std::uint64_t blockId = 0;
    TopoDS_Shape shape;
};

struct PmiMapping {
    // The PMI data of each part that has any.
    std::map<std::uint64_t, std::shared_ptr<xch::ExcPMIData>> byBlock;
    std::size_t dimensions = 0;
    std::size_t tolerances = 0;
    std::size_t datums = 0;       // datums and datum targets
    std::size_t unattached = 0;   // labels that name no sub-entity of a part
};

// Maps every GD&T label of `document`; saved views become captures of the
// part whose annotations they show. `units` is the model's length unit.
PmiMapping mapPmi(const Handle(TDocStd_Document)& document, const std::vector<PmiPart>& parts,
                  xch::ELengthUnitType units);

// The saved views of the document as captures (camera, name) of the
// assembly's display model.
void addSavedViews(const Handle(TDocStd_Document)& document, xch::ExcVisualizationData& data);

} // namespace occt_worker

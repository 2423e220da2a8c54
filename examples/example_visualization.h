// The example's display model: what the worker sends for each block and
// for the assembly, and the host's one-line summary of what it received.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <xch_api/xch_api_exchange_visualization.h>

namespace example {

// A tessellated box part for block `blockId` (width x depth x height in
// millimetres): six faces with normals, its twelve edges, a material and a
// colour, under a root node.
std::shared_ptr<xch::ExcBlockVisualization> makeBlockVisualization(std::uint64_t blockId, float width, float depth,
                                                                   float height);

// The assembly's display model: a saved view and a section capture.
std::shared_ptr<xch::ExcRootAssemblyVisualization> makeRootVisualization();

// "<nodes> nodes, <faces> faces, <triangles> triangles, <edges> edges,
// <views> views, <captures> captures" (or "no visualization data").
std::wstring summarizeVisualization(const std::shared_ptr<xch::ExcVisualizationData>& data);

} // namespace example

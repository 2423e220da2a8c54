// Writing an imported model's display data as binary glTF 2.0 (.glb), so
// that any viewer can show what arrived.
//
// The glTF scene follows the product structure: one node per block
// reference (its name, its placement as the node matrix), children below
// it, and for a part the part's triangles as a mesh shared by all its
// instances. Faces are grouped by colour into one primitive per colour;
// a face without a colour takes the nearest colour set on the instance
// path, or a neutral grey. Coordinates are scaled from the model's unit to
// metres at the root node. Edges and views are not written.
#pragma once

#include <string>

namespace xch_tool {

struct ImportedModel;

// Whether this build can write glTF (it needs tinygltf).
bool canWriteGlb();

// Writes `model` to `path`; false with `error` set when it cannot.
bool writeGlb(const ImportedModel& model, const std::string& path, std::string& error);

} // namespace xch_tool

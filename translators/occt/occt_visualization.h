// The display model of one part: its faces triangulated by Open CASCADE's
// incremental mesher, with normals and colours, and its edges as
// polylines. Faces and edges carry their number in the part's shape (see
// occt_import.h) as their mechanical id.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <TopoDS_Shape.hxx>

#include <xch_api/xch_api_exchange_visualization.h>

namespace occt_worker {

struct PartDisplay {
    std::wstring name;
    // Colour of each face by face number - 1; an unset colour takes the
    // part's colour.
    std::vector<xch::ExcColor> faceColours;
    xch::ExcColor partColour;
    xch::ELengthUnitType units = xch::LengthUnknown;
    // Whether faces are triangulated (otherwise only the edges are drawn,
    // from their curves).
    bool tessellate = true;
    // Largest distance between the shape and its triangles; 0 picks one
    // from the part's size.
    double chordalDeviation = 0.0;
};

// Chooses the chordal deviation for a part of this shape when none is
// given: a thousandth of its bounding box's diagonal.
double defaultChordalDeviation(const TopoDS_Shape& shape);

// Meshes `shape` (when asked to) and builds its display model: a root node
// holding one mesh node with one face per B-rep face, in face-number order
// (a face the mesher could not triangulate is there without triangles),
// and one edge per non-degenerate B-rep edge.
std::shared_ptr<xch::ExcVisualizationData> makePartVisualization(const TopoDS_Shape& shape,
                                                                   const PartDisplay& display);

} // namespace occt_worker

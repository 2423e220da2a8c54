// Visualization data: the display form of a translated model.
//
//   xch_api_visu_tessellation.h  faces, edges, marker points and the meshes,
//                                wires and point sets that group them
//   xch_api_visu_appearance.h    fonts, line attributes, textures,
//                                materials, node attributes, 3D texts and
//                                the display form of PMI
//   xch_api_visu_camera.h        the camera and the clipping plane of a
//                                saved presentation state
//   xch_api_visu_scene.h         the scene tree, saved views and captures,
//                                and the registered top-level objects
//                                ExcBlockVisualization and
//                                ExcRootAssemblyVisualization
#pragma once

#include <xch_api/xch_api_visu_appearance.h>
#include <xch_api/xch_api_visu_camera.h>
#include <xch_api/xch_api_visu_scene.h>
#include <xch_api/xch_api_visu_tessellation.h>

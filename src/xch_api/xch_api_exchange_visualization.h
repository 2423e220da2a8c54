// Visualization data: the display form of a translated model.
//
// Saved presentation states are made of a camera and a clipping plane
// (xch_api_visu_camera.h).
#pragma once

#include <xch_api/xch_api_visu_camera.h>

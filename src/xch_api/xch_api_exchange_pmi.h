// Product and manufacturing information (PMI): annotations (notes, datums,
// datum targets, GD&T frames, dimensions, roughness symbols), the views
// that hold them, captures, annotation sets and the PMI data that the
// mechanical data objects carry.
#pragma once

#include <xch_api/xch_api_pmi_annotation.h>
#include <xch_api/xch_api_pmi_datum.h>
#include <xch_api/xch_api_pmi_note.h>
#include <xch_api/xch_api_pmi_dimension.h>
#include <xch_api/xch_api_pmi_gdt.h>
#include <xch_api/xch_api_pmi_roughness.h>
#include <xch_api/xch_api_pmi_set.h>
#include <xch_api/xch_api_pmi_view.h>

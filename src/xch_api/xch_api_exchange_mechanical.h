// The mechanical data of the exchange model: PMI (annotations, views,
// captures, annotation sets), miscellaneous CAD data
// (coordinate systems, layers, materials, symmetries, display sets),
// manufacturing features (holes, threads, patterns), the mapping between
// imported and source entities, per-entity information, and the two
// registered mechanical objects that carry them.
#pragma once

#include <xch_api/xch_api_exchange_pmi.h>
#include <xch_api/xch_api_mechanical_data.h>
#include <xch_api/xch_api_mechanical_entity_data.h>
#include <xch_api/xch_api_mechanical_material.h>
#include <xch_api/xch_api_mechanical_misc.h>
#include <xch_api/xch_api_mfg_data.h>
#include <xch_api/xch_api_mfg_feature.h>
#include <xch_api/xch_api_mfg_hole.h>
#include <xch_api/xch_api_mfg_pattern.h>
#include <xch_api/xch_api_mfg_thread.h>

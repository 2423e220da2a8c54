// Test support: PMI with every annotation kind and every nested class
// filled, for round trips, mutation and cross-process tests.
#pragma once

#include <cstdint>
#include <memory>

#include <xch_api/xch_api_exchange_pmi.h>

namespace xch_test {

// One annotation set for block `blockId` with `views` views, each holding
// a note, datums A, B and C with a datum target, a position tolerance
// against A|B|C, a flatness tolerance, a diameter dimension with a
// plus/minus tolerance and a roughness symbol (ids unique per view), and a
// capture showing them with a camera and a clipping plane.
std::shared_ptr<xch::ExcPMIAnnotationSet> sampleAnnotationSet(std::uint64_t blockId, int views = 1);

// PMI data holding one sample set per block id in [0, blocks).
std::shared_ptr<xch::ExcPMIData> samplePMIData(int blocks = 1, int viewsPerSet = 1);

} // namespace xch_test

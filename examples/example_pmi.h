// The example's PMI: what the worker attaches to a block's mechanical data
// and how the host prints what it received.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include <xch_api/xch_api_exchange_pmi.h>

namespace example {

// The PMI of one block: one annotation set (ASME Y14.5) with a front view
// holding the datum system A|B|C, a position tolerance of the bolt holes
// against the datum reference frame A|B|C, a diameter dimension with a
// plus/minus tolerance, a flatness tolerance on datum face A, a general
// note and a roughness symbol; and a capture that shows the datums and the
// position tolerance.
std::shared_ptr<xch::ExcPMIData> makeBlockPMI(std::uint64_t blockId);

// One line per annotation (and per capture) received.
void printPMI(const xch::ExcPMIData& pmi, const std::function<void(const std::wstring&)>& say);

} // namespace example

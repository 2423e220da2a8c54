// The example's mechanical data: what the worker sends per block and for
// the whole model, and how the host summarises what it received.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include <xch_api/xch_api_exchange_mechanical.h>

namespace example {

// The mechanical data of one block: a counterbored M6 hole repeated in a
// circular pattern of 6, an internal thread, a layer with a layer filter, a
// steel material with its density and unit, a working coordinate system,
// the mapping of the imported faces to the source file's entities and the
// persistent names of two faces.
std::shared_ptr<xch::ExcBlockMechanicalData> makeBlockMechanicalData(std::uint64_t blockId);

// The mechanical data of the whole model (its PMI travels per block, see
// example_pmi.h).
std::shared_ptr<xch::ExcRootMechanicalData> makeRootMechanicalData();

// One line per part of the data received (features, layers, materials, ...).
void printBlockMechanicalData(const xch::ExcBlockMechanicalData& data,
                              const std::function<void(const std::wstring&)>& say);
void printRootMechanicalData(const xch::ExcRootMechanicalData& data,
                             const std::function<void(const std::wstring&)>& say);

} // namespace example

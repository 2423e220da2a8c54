// The example's assembly tree: what the worker sends, and how the host
// prints what it received.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <xch_api/xch_api_exchange_structure.h>

namespace example {

// A small bracket assembly: a plate and two bolt kits (each a bolt and a
// nut), placed by transformations, with colours and property groups (one of
// them a BIM property set).
std::shared_ptr<xch::ExcProductStructure> makeProductStructure();

// Prints the tree, one line per reference, indented by depth, with instance
// names and block ids; stops at reference cycles and after `maxLines`.
void printProductStructure(const xch::ExcProductStructure& structure,
                           const std::function<void(const std::wstring&)>& say, std::size_t maxLines = 200);

} // namespace example

// Every exchange type a received tree can be read into: the registered
// top-level types (made through the registry, as a receiver makes them) and
// the nested model classes (structure, visualization, mechanical).
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <xch_api/xch_api_json_object.h>

namespace xch_fuzz {

struct ModelClass {
    std::string name;
    std::function<std::shared_ptr<xch::IJsonObject>()> make;
    // Job options and description parts refuse malformed input with
    // std::invalid_argument; every other reader logs and keeps its state.
    bool refusesMalformed = false;
};

// In a fixed order: the fuzz target selects a class by index.
const std::vector<ModelClass>& modelClasses();

} // namespace xch_fuzz

// Test support: hostile variants of a valid JSON document, for checking
// that readers never throw and keep what they can read.
#pragma once

#include <functional>

#include <xch_api/xch_api_json.h>

namespace xch_test {

// Replaces each value of the tree under `node` (inside `doc`) in turn by
// each of null, -1, 2.5, "x", [], {}, [[1,2]] and true, and calls `check`
// on the whole document after each replacement; the tree is restored
// afterwards.
void forEachMutation(xch::JsonValue& node, xch::JsonDocument& doc, const std::function<void()>& check);

} // namespace xch_test

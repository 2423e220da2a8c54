// Test support: an exchange object's JSON as compact text, and reading an
// object from JSON text, so that tests state inputs and expected outputs as
// literal JSON.
#pragma once

#include <string>

#include <xch_api/xch_api_json_object.h>

namespace xch_test {

// The compact JSON text of what `object.writeObject` produces.
std::wstring toJsonText(const xch::IJsonObject& object);

// Parses `text` (which must be valid JSON) and calls `object.readObject`
// on its root.
void readFromJsonText(xch::IJsonObject& object, const std::wstring& text);

} // namespace xch_test

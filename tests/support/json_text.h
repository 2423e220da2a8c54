// Test support: an exchange object's JSON as compact text, and reading an
// object from JSON text, so that tests state inputs and expected outputs as
// literal JSON.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <xch_api/xch_api_json_object.h>

namespace xch_test {

// The compact JSON text of what `object.writeObject` produces.
std::wstring toJsonText(const xch::IJsonObject& object);

// Parses `text` (which must be valid JSON) and calls `object.readObject`
// on its root.
void readFromJsonText(xch::IJsonObject& object, const std::wstring& text);

// Pairs of {JSON text to read, JSON text the object writes afterwards}.
using ReadSequence = std::vector<std::pair<std::wstring, std::wstring>>;

// Reads each input into `object` in turn and expects the object to write
// the paired text after each read (a gtest expectation per pair).
void expectReads(xch::IJsonObject& object, const ReadSequence& reads);

} // namespace xch_test

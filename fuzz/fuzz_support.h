// Shared helpers of the fuzz targets: turning the fuzzer's bytes into text,
// JSON text in and out, and the round-trip oracles.
//
// Every target defines LLVMFuzzerTestOneInput with XCH_FUZZ_TARGET. Built
// with libFuzzer (-DXCH_FUZZ=ON, clang) it is a fuzzer; built with any
// compiler and replay_main.cpp it is a program that runs the files and
// directories named on its command line through the same function. A
// broken oracle aborts, so both report it as a crash.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include <xch_api/xch_api_json.h>
#include <xch_api/xch_api_json_object.h>
#include <mp/mp_serializable.h>

#define XCH_FUZZ_TARGET extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)

namespace xch_fuzz {

// A leading byte of 0xFF selects the raw form of wideText.
constexpr std::uint8_t kRawTextMarker = 0xFF;

// The input as wide text: UTF-8 (each byte of an invalid sequence
// becomes U+FFFD), or,
// after a leading 0xFF byte, little-endian 16-bit code units taken as they
// are, so that the fuzzer also reaches unpaired surrogates.
std::wstring wideText(const std::uint8_t* data, std::size_t size);

// Aborts with `what` on stderr when `condition` is false.
void require(bool condition, const char* what);

// Runs `action`; returns false if it threw one of the exceptions that the
// library documents for bad input (std::invalid_argument,
// std::length_error, std::runtime_error). Anything else propagates and is
// a finding.
template <class Action>
bool acceptedBy(Action&& action) {
    try {
        action();
        return true;
    } catch (const std::invalid_argument&) {
    } catch (const std::length_error&) {
    } catch (const std::runtime_error&) {
    }
    return false;
}

// Parses `text`; false when it is not JSON (the library's reader).
bool parse(const std::wstring& text, xch::JsonDocument& doc);
// Compact JSON text of `doc` (the library's writer).
std::wstring text(const xch::JsonDocument& doc);
// Compact JSON text of what `object` writes.
std::wstring text(const xch::IJsonObject& object);
// The text a stream-level object writes.
std::wstring text(const mp::ISerializable& object);

// Read-write-read: `object`'s text read into `fresh` must write the same
// text again.
void requireSameText(const xch::IJsonObject& object, xch::IJsonObject& fresh);
void requireSameText(const mp::ISerializable& object, mp::ISerializable& fresh);

} // namespace xch_fuzz

// The JSON text parser behind JsonTextIO::read: wide text in memory to a
// document, in one pass, with the library's limits.
#pragma once

#include <cstddef>

#include <xch_api/xch_api_json.h>

namespace xch {
namespace json {

struct TextParseResult {
    rapidjson::ParseErrorCode code = rapidjson::kParseErrorNone;
    std::size_t offset = 0; // of the error, in characters
    bool tooDeep = false;   // the error is nesting beyond limits::kMaxJsonDepth
};

// Parses the `size` characters of JSON text at `text` into `doc`: strict
// JSON (no comments, trailing commas, NaN or infinity), whitespace around
// the root only. text[size] must be a NUL character; the text ends at its
// first NUL (as rapidjson's reader ends there).
//
// Doubles are correctly rounded; a number beyond the range of a double
// fails with kParseErrorNumberTooBig, one below the smallest subnormal
// reads as zero. Integers take the narrowest of int, unsigned, int64 and
// uint64 that holds them, as rapidjson's own parser does.
//
// On success the document holds the root and no parse error. On failure
// the root is null and the document carries the error code and offset (as
// rapidjson's reader reports them, so that doc.GetParseError() reads as
// usual); nesting beyond limits::kMaxJsonDepth fails with
// kParseErrorValueInvalid at the bracket that would open the next level.
TextParseResult parseText(const wchar_t* text, std::size_t size, JsonDocument& doc);

} // namespace json
} // namespace xch

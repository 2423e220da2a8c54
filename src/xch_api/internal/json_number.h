// Reading JSON numbers from wide text exactly.
#pragma once

#include <cstddef>

namespace xch {
namespace json {

// The value of the JSON number text [begin, end) (strict JSON grammar,
// already validated by the caller), correctly rounded to the nearest double.
// Values below the smallest subnormal become zero of the number's sign.
// Returns false when the value lies beyond the range of a double.
bool parseDouble(const wchar_t* begin, const wchar_t* end, double& value);

// True when a JSON number starts at `p` (strict grammar) and its value lies
// beyond the range of a double. False for anything that is not a number.
bool numberOverflows(const wchar_t* p, const wchar_t* end);

} // namespace json
} // namespace xch

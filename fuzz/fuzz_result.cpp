// Result reading: refused with std::invalid_argument, or read into a result
// whose text reads back to the same text.
#include <sstream>

#include <xch_api/xch_api_result.h>

#include "fuzz_support.h"

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    std::wistringstream in(wideText(data, size));
    xch::Result result;
    if (!acceptedBy([&] { result.readObject(in); })) return 0;
    xch::Result fresh;
    requireSameText(result, fresh);
    return 0;
}

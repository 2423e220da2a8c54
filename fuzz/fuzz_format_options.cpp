// Format-options dispatch: any JSON tree gives no options or an option set
// whose text dispatches to an option set of the same text.
#include <xch_api/xch_api_format_options.h>

#include "fuzz_support.h"

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    xch::JsonDocument doc;
    if (!parse(wideText(data, size), doc)) return 0;
    std::shared_ptr<xch::IFormatOptions> options = xch::IFormatOptions::readOptions(doc);
    if (!options) return 0;
    const std::wstring written = text(*options);
    xch::JsonDocument again;
    require(parse(written, again), "written options parse");
    std::shared_ptr<xch::IFormatOptions> dispatched = xch::IFormatOptions::readOptions(again);
    require(dispatched != nullptr, "written options dispatch again");
    require(dispatched->formatType() == options->formatType() &&
                dispatched->operationType() == options->operationType(),
            "written options dispatch to the same class");
    require(text(*dispatched) == written, "read, write, read gives the same text");
    return 0;
}

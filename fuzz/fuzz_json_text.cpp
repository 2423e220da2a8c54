// JSON text reading: any text either fails to parse or yields a document
// whose compact and pretty texts both read back to the same compact text.
#include <sstream>

#include <xch_api/xch_api_json_text_io.h>

#include "fuzz_support.h"

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    xch::JsonDocument doc;
    if (!parse(wideText(data, size), doc)) return 0;
    const std::wstring compact = text(doc);
    std::wostringstream pretty;
    xch::JsonTextIO::write(pretty, doc, true);
    for (const std::wstring& written : {compact, pretty.str()}) {
        xch::JsonDocument again;
        require(parse(written, again), "written JSON text parses");
        require(text(again) == compact, "read, write, read gives the same text");
    }
    return 0;
}

// Binary JSON decoding: any bytes either fail with the documented
// exceptions or decode to a document whose encoding decodes and encodes
// to the same bytes.
#include <xch_api/xch_api_json_binary_io.h>

#include "fuzz_support.h"

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    xch::JsonDocument doc;
    std::size_t used = 0;
    if (!acceptedBy([&] { used = xch::JsonBinaryIO::read(reinterpret_cast<const char*>(data), size, doc); }))
        return 0;
    require(used <= size, "decoding uses no more than the input");
    std::string encoded;
    xch::JsonBinaryIO::write(encoded, doc);
    xch::JsonDocument again;
    require(xch::JsonBinaryIO::read(encoded.data(), encoded.size(), again) == encoded.size(),
            "an encoding decodes completely");
    std::string reencoded;
    xch::JsonBinaryIO::write(reencoded, again);
    require(reencoded == encoded, "decode then encode gives the same bytes");
    return 0;
}

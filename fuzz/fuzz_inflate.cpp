// Inflation: any bytes either fail with std::runtime_error (corrupt data or
// more than the decompressed size limit) or inflate to bytes that compress
// and inflate back to themselves.
#include <vector>

#include <xch_api/xch_api_compressor.h>

#include "fuzz_support.h"

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    const char* bytes = reinterpret_cast<const char*>(data);
    std::vector<char> inflated;
    if (!acceptedBy([&] { xch::Compressor::decompress(inflated, bytes, size); })) return 0;
    std::vector<char> packed, again;
    xch::Compressor::compress(packed, inflated.data(), inflated.size(), -1);
    require(xch::Compressor::isCompressed(packed.data(), packed.size()), "compressed output has a gzip header");
    xch::Compressor::decompress(again, packed.data(), packed.size());
    require(again == inflated, "compress then inflate gives the same bytes");
    return 0;
}

// Inflation: any bytes either fail with std::runtime_error (corrupt data or
// more than the decompressed size limit) or inflate to bytes that compress
// and inflate back to themselves (checked up to 1 MiB). On several threads (a stream indexed in
// pieces) and on one, the outcome is the same.
#include <string>
#include <vector>

#include <xch_api/xch_api_compressor.h>

#include "fuzz_support.h"

namespace {

// The error of inflating `bytes` with `threads` threads ("" for none),
// the inflated bytes in `inflated`.
std::string outcome(const char* bytes, std::size_t size, unsigned threads, std::vector<char>& inflated) {
    xch::Compressor::setThreads(threads);
    std::string error;
    try {
        xch::Compressor::decompress(inflated, bytes, size);
    } catch (const std::runtime_error& e) {
        error = e.what();
        error += '.';  // never empty
    }
    xch::Compressor::setThreads(0);
    return error;
}

} // namespace

XCH_FUZZ_TARGET {
    using namespace xch_fuzz;
    const char* bytes = reinterpret_cast<const char*>(data);
    std::vector<char> inflated, single;
    const std::string error = outcome(bytes, size, 2, inflated);
    require(outcome(bytes, size, 1, single) == error && single == inflated, "one thread and several inflate alike");
    // Compressing again is checked on outputs of up to 1 MiB, which keeps
    // the fuzzer fast; larger round trips are the unit tests' work.
    if (!error.empty() || inflated.size() > (1u << 20)) return 0;
    std::vector<char> packed, again;
    xch::Compressor::compress(packed, inflated.data(), inflated.size(), -1);
    require(xch::Compressor::isCompressed(packed.data(), packed.size()), "compressed output has a gzip header");
    xch::Compressor::decompress(again, packed.data(), packed.size());
    require(again == inflated, "compress then inflate gives the same bytes");
    return 0;
}

#!/bin/sh
# The sanitizer leg (clang-14):
#  1. the whole test suite under AddressSanitizer and UndefinedBehaviorSanitizer
#     (build/linux-asan, which also holds the libFuzzer targets);
#  2. the logger and the other shared state from eight threads, and the
#     compressor working on several threads, under
#     ThreadSanitizer (build/linux-tsan: the library and those suites only);
#  3. every fuzz target for XCH_FUZZ_SECONDS seconds (default 15), which
#     fails on any finding (scripts/fuzz.sh).
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh sanitizers

cmake --preset linux-asan
cmake --build --preset linux-asan
ctest --preset linux-asan -j2

cmake --preset linux-tsan
cmake --build --preset linux-tsan
# ThreadSanitizer of clang 14 cannot map its shadow memory under the
# address-space randomisation of recent kernels; run without it there.
tsan_run=""
if command -v setarch >/dev/null 2>&1 && setarch "$(uname -m)" -R true 2>/dev/null; then
  tsan_run="setarch $(uname -m) -R"
fi
$tsan_run ctest --preset linux-tsan

scripts/fuzz.sh "${XCH_FUZZ_SECONDS:-15}"

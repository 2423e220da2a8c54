#!/bin/sh
# Sets up, builds and runs every test.
#   scripts/test.sh             Linux tests, the Windows cross build under Wine, then the
#                               sanitizer leg (XCH_SANITIZER_LEG=0 leaves it out)
#   scripts/test.sh linux       Linux only
#   scripts/test.sh sanitizers  ASan+UBSan suite, TSan shared-state suites, short fuzzing (scripts/test-sanitizers.sh)
#   scripts/test.sh windows     Windows only
set -eu
cd "$(dirname "$0")/.."
leg="${1:-all}"

if [ "$leg" = "all" ] || [ "$leg" = "linux" ]; then
  scripts/install-deps.sh
  cmake --preset linux-debug
  cmake --build --preset linux-debug
  ctest --preset linux-debug -j2
fi

if [ "$leg" = "all" ] || [ "$leg" = "windows" ]; then
  if [ -x scripts/test-windows.sh ]; then
    scripts/test-windows.sh
  fi
fi

if { [ "$leg" = "all" ] && [ "${XCH_SANITIZER_LEG:-1}" = "1" ]; } || [ "$leg" = "sanitizers" ]; then
  scripts/test-sanitizers.sh
fi

#!/bin/sh
# Sets up, builds and runs every test.
#   scripts/test.sh          Linux tests, then the Windows cross build under Wine
#   scripts/test.sh linux    Linux only
#   scripts/test.sh windows  Windows only
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

#!/bin/sh
# Windows leg: the MinGW-w64 cross build of the library, the tools and the
# tests (preset windows-cross), then every test through Wine with ctest.
# A failing build or test fails the script.
#   XCH_WINDOWS_BUILD_DIR=<dir>   build there instead of build/windows-cross
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh windows

start=$(date +%s)
dir="${XCH_WINDOWS_BUILD_DIR:-build/windows-cross}"
cmake --preset windows-cross -B "$dir"
cmake --build "$dir"
ctest --test-dir "$dir" --output-on-failure --no-tests=error -j2
echo "Windows leg: $(( $(date +%s) - start )) s"

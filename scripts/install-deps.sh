#!/bin/sh
# Installs the Debian packages the build needs, when they are missing.
#   scripts/install-deps.sh            Linux build, tests, tools, benchmarks
#   scripts/install-deps.sh windows    also the MinGW-w64 cross build and Wine
#   scripts/install-deps.sh sanitizers also clang and libFuzzer (sanitizer builds, fuzzing)
set -eu

packages="cmake ninja-build g++ rapidjson-dev zlib1g-dev libdeflate-dev libboost-dev libgtest-dev libbenchmark-dev gzip"
# The Open CASCADE translator worker and the glTF output of `xch import`.
packages="$packages libocct-data-exchange-dev libocct-modeling-algorithms-dev libocct-modeling-data-dev libocct-ocaf-dev libocct-foundation-dev libtbb-dev libtinygltf-dev"
if [ "${1:-}" = "windows" ]; then
  packages="$packages googletest g++-mingw-w64-x86-64 libz-mingw-w64-dev wine wine64"
fi
if [ "${1:-}" = "sanitizers" ]; then
  packages="$packages clang-14 libfuzzer-14-dev libclang-rt-14-dev"
fi

missing=""
for p in $packages; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
[ -z "$missing" ] && exit 0

SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
echo "Installing:$missing"
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends $missing >/dev/null

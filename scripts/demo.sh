#!/bin/sh
# Sets up, builds and runs the library's main job on the shipped sample:
# the sample JSON document is encoded to binary JSON (gzip-compressed), then
# decoded and printed again.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset linux-release -DXCH_BUILD_BENCH=OFF >/dev/null
cmake --build --preset linux-release --target xch
out=build/linux-release/demo
mkdir -p "$out"
xch=build/linux-release/bin/xch
$xch encode --gzip samples/sample_model.json "$out/sample_model.bin.gz"
echo "samples/sample_model.json ($(wc -c < samples/sample_model.json) bytes of JSON text)"
echo "  -> $out/sample_model.bin.gz ($(wc -c < "$out/sample_model.bin.gz") bytes of gzip-compressed binary JSON)"
echo "Decoded again:"
$xch decode "$out/sample_model.bin.gz"

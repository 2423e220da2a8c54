#!/bin/sh
# Sets up, builds and runs the library's main job: an example CAD host asks
# an example translator worker (a second process) to import a file; the
# worker answers with messages, progress, block geometry in shared memory
# and a result. Then the xch tool encodes the sample document into gzip-
# compressed binary JSON and decodes it again.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset linux-release -DXCH_BUILD_BENCH=OFF >/dev/null
cmake --build --preset linux-release --target xch xch_host xch_worker
bin=build/linux-release/bin

echo "== host and worker =="
examples/run_host_worker.sh "$bin" parts/bracket.stp

echo
echo "== binary JSON with the xch tool =="
out=build/linux-release/demo
mkdir -p "$out"
"$bin/xch" encode --gzip samples/sample_model.json "$out/sample_model.bin.gz"
echo "samples/sample_model.json ($(wc -c < samples/sample_model.json) bytes of JSON text)"
echo "  -> $out/sample_model.bin.gz ($(wc -c < "$out/sample_model.bin.gz") bytes of gzip-compressed binary JSON)"
echo "Decoded again:"
"$bin/xch" decode "$out/sample_model.bin.gz"

#!/bin/sh
# Sets up, builds and runs the library's main job: an example CAD host asks
# an example translator worker (a second process) to import a file; the
# worker answers with messages, progress, block geometry in shared memory
# and a result. Then the xch tool encodes the sample document into gzip-
# compressed binary JSON and decodes it again. Last, real CAD data: two
# STEP files written by the project's generator (an assembly, a part with
# GD&T) are imported through the Open CASCADE worker with `xch import`,
# which writes what arrived as binary glTF (.glb) files.
set -eu
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset linux-release -DXCH_BUILD_BENCH=OFF >/dev/null
cmake --build --preset linux-release --target xch xch_host xch_worker xch_occt_worker xch_step_generator
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

echo
echo "== STEP files through the Open CASCADE worker =="
"$bin/xch_step_generator" "$out"
"$bin/xch" import "$out/bracket_assembly.stp" --out "$out/bracket_assembly.glb"
"$bin/xch" import "$out/plate_with_pmi.stp" --out "$out/plate_with_pmi.glb"
echo "Open $out/bracket_assembly.glb and $out/plate_with_pmi.glb in any glTF viewer."

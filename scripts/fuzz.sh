#!/bin/sh
# Runs every fuzz target (fuzz/fuzz_<target>.cpp) under AddressSanitizer and
# UndefinedBehaviorSanitizer with libFuzzer for SECONDS each (default 60),
# one after the other, starting from the seeds the library generates, the
# regression corpus and the corpus kept from earlier runs in the build
# directory. Fails when any target finds something: the input is
# minimised and added to fuzz/regressions/<target>/, which the ordinary
# test run replays.
#   scripts/fuzz.sh [SECONDS] [TARGET...]
set -eu
cd "$(dirname "$0")/.."
seconds="${1:-60}"
[ $# -gt 0 ] && shift
targets="$*"
[ -z "$targets" ] && targets=$(ls fuzz/fuzz_*.cpp | grep -v fuzz_support | sed 's|fuzz/fuzz_\(.*\)\.cpp|\1|')

scripts/install-deps.sh sanitizers
cmake --preset linux-asan >/dev/null
build=build/linux-asan
build_targets="fuzz_seed_generator"
for t in $targets; do build_targets="$build_targets fuzz_$t"; done
cmake --build --preset linux-asan --target $build_targets

export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1:suppressions=$PWD/scripts/ubsan-suppressions.txt}"
seeds="$build/fuzz-seeds"
"$build/bin/fuzz_seed_generator" "$seeds" >/dev/null

failed=""
printf '%-16s %12s %8s %8s  %s\n' target executions cov ft result
for t in $targets; do
  corpus="$build/fuzz-corpus/$t"
  artifacts="$build/fuzz-artifacts/$t"
  log="$build/fuzz-logs/$t.log"
  mkdir -p "$corpus" "$artifacts" "$(dirname "$log")" "fuzz/regressions/$t"
  rm -f "$artifacts"/*
  dict=""
  case "$t" in
    json_binary|inflate|base64) ;;
    *) dict="-dict=$seeds/json.dict" ;;
  esac
  status=0
  nice "$build/bin/fuzz_$t" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2560 -malloc_limit_mb=2560 \
    -max_len=16384 -print_final_stats=1 -artifact_prefix="$artifacts/" $dict \
    "$corpus" "$seeds/$t" "fuzz/regressions/$t" >"$log" 2>&1 || status=$?
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1 | cut -d' ' -f2)
  ft=$(grep -o 'ft: [0-9]*' "$log" | tail -1 | cut -d' ' -f2)
  result=ok
  if [ "$status" -ne 0 ]; then
    result="FAILED (log: $log)"
    failed="$failed $t"
    for artifact in "$artifacts"/crash-* "$artifacts"/leak-* "$artifacts"/timeout-* "$artifacts"/oom-* \
                    "$artifacts"/slow-unit-*; do
      [ -f "$artifact" ] || continue
      kind=$(basename "$artifact" | cut -d- -f1)
      minimised="$artifacts/minimised-$(basename "$artifact")"
      nice "$build/bin/fuzz_$t" -minimize_crash=1 -max_total_time=60 -timeout=10 -rss_limit_mb=2560 \
        -exact_artifact_path="$minimised" "$artifact" >"$log.minimise" 2>&1 || true
      [ -s "$minimised" ] || cp "$artifact" "$minimised"
      sum=$(sha1sum "$minimised" | cut -c1-16)
      cp "$minimised" "fuzz/regressions/$t/$kind-$sum"
      result="$result, input: fuzz/regressions/$t/$kind-$sum"
    done
  fi
  printf '%-16s %12s %8s %8s  %s\n' "$t" "${executions:-?}" "${cov:-?}" "${ft:-?}" "$result"
done

if [ -n "$failed" ]; then
  echo "fuzzing found problems in:$failed" >&2
  exit 1
fi

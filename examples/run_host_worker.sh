#!/bin/sh
# Runs the example host against the example worker, connected through two
# named pipes, and checks that the exchange left no shared memory behind.
#   examples/run_host_worker.sh BIN_DIR [FILE]
set -eu
bin="$1"
file="${2:-bracket.stp}"
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
mkfifo "$dir/to_worker" "$dir/to_host"
before=$(ls /dev/shm 2>/dev/null | wc -l)
"$bin/xch_worker" < "$dir/to_worker" > "$dir/to_host" &
worker=$!
"$bin/xch_host" "$file" > "$dir/to_worker" < "$dir/to_host"
wait "$worker"
after=$(ls /dev/shm 2>/dev/null | wc -l)
if [ "$after" -ne "$before" ]; then
  echo "shared memory left behind: $before objects before, $after after" >&2
  exit 1
fi
echo "host and worker done; no shared memory left behind"

#!/bin/sh
# Runs the example host against the example worker, connected through two
# named pipes, and checks that the exchange left no shared memory behind:
# the worker's debug log names every shared-memory object it created, and
# none of them may exist afterwards (objects of other processes running at
# the same time are not looked at).
#   examples/run_host_worker.sh BIN_DIR [FILE]
set -eu
bin="$1"
file="${2:-bracket.stp}"
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
mkfifo "$dir/to_worker" "$dir/to_host"
"$bin/xch_worker" --log "$dir/worker.log" < "$dir/to_worker" > "$dir/to_host" &
worker=$!
"$bin/xch_host" "$file" > "$dir/to_worker" < "$dir/to_host"
wait "$worker"
created=$(sed -n 's/.*Writing shared memory [a-z]* \([0-9a-f-]\{36\}\) .*/\1/p' "$dir/worker.log")
if [ -z "$created" ]; then
  echo "the worker's log names no shared-memory objects" >&2
  exit 1
fi
left=0
for name in $created; do
  if [ -e "/dev/shm/$name" ]; then
    echo "shared memory left behind: $name" >&2
    left=$((left + 1))
  fi
done
[ "$left" -eq 0 ] || exit 1
echo "host and worker done; none of the $(echo "$created" | wc -l) shared-memory objects used is left behind"

#!/usr/bin/env bash
# Builds the fuzz targets with clang and libFuzzer and runs each for a while
# over its seed corpus:
#   scripts/fuzz.sh [SECONDS_PER_TARGET [TARGET...]]
# e.g. scripts/fuzz.sh 600 dxf_reader_fuzz script_reader_fuzz for ten minutes
# on each of the two. New inputs that grew coverage stay in
# build-fuzz/corpus/TARGET; inputs that crashed go to build-fuzz/crashes/
# (fix the fault, then copy the input into the target's seed corpus under
# fuzz/ so the test suite replays it). A summary line per target ends the run.
set -euo pipefail
cd "$(dirname "$0")/.."
secs=${1:-60}
shift || true
build=build-fuzz
CC=clang CXX=clang++ cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCORVANE_FUZZ=ON -DCORVANE_TESTS=OFF -DCORVANE_BENCH=OFF >/dev/null
cmake --build "$build" -j "$(nproc)"
mkdir -p "$build/crashes"
mapfile -t built < <(find "$build/fuzz" -maxdepth 2 -type f -executable -name '*_fuzz' | sort)
targets=()
for target in "${built[@]}"; do
  name=$(basename "$target")
  if (($# == 0)) || [[ " $* " == *" $name "* || " $* " == *" ${name%_fuzz} "* ]]; then targets+=("$target"); fi
done
((${#targets[@]})) || { echo "no fuzz target named: $*" >&2; exit 2; }
summary=()
for target in "${targets[@]}"; do
  name=$(basename "$target")
  corpus=$(find fuzz -type d -name "${name%_fuzz}_corpus" | head -n 1)
  work="$build/corpus/$name"
  mkdir -p "$work"
  log="$build/$name.log"
  echo "== $name for ${secs}s over $corpus (log: $log)"
  status=0
  "$target" -max_total_time="$secs" -timeout=10 -rss_limit_mb=4096 -print_final_stats=1 \
    -artifact_prefix="$build/crashes/$name-" "$work" "$corpus" >"$log" 2>&1 || status=$?
  runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$' || echo "?")
  summary+=("$name: $runs executions in ${secs}s, exit $status")
done
printf '%s\n' "${summary[@]}"
ls "$build/crashes"

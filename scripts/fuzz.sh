#!/usr/bin/env bash
# Builds the fuzz targets with clang and libFuzzer and runs each for a while
# over its seed corpus: scripts/fuzz.sh [SECONDS_PER_TARGET]
set -euo pipefail
cd "$(dirname "$0")/.."
secs=${1:-60}
build=build-fuzz
CC=clang CXX=clang++ cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCORVANE_FUZZ=ON -DCORVANE_TESTS=OFF -DCORVANE_BENCH=OFF
cmake --build "$build" -j "$(nproc)"
for target in $(find "$build/fuzz" -maxdepth 2 -type f -executable -name '*_fuzz'); do
  name=$(basename "$target")
  corpus=$(find fuzz -type d -name "${name%_fuzz}_corpus" | head -n 1)
  work="$build/corpus/$name"
  mkdir -p "$work"
  echo "== $name for ${secs}s over $corpus"
  "$target" -max_total_time="$secs" -timeout=10 -rss_limit_mb=4096 "$work" "$corpus"
done

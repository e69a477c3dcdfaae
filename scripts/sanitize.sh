#!/usr/bin/env bash
# Builds a Debug tree under AddressSanitizer and UndefinedBehaviorSanitizer
# (asserts on, benchmarks left out) and runs the whole test suite in it. Any
# finding stops the program that meets it, so its test fails and so does this.
# Run after scripts/setup.sh, which installs the packages.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${CORVANE_SANITIZE_BUILD_DIR:-build-asan}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCORVANE_SANITIZE=ON -DCORVANE_BENCH=OFF
cmake --build "$build" -j "$(nproc)"
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1:check_initialization_order=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
ctest --test-dir "$build" --output-on-failure -j "$(nproc)"

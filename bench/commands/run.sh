#!/bin/sh
# Runs each benchmark of the polyline commands in its own process.
# usage: bench/commands/run.sh BUILD_DIR
set -e
bin="${1:-build}/bench/commands/commands_bench"
"$bin" plyh
"$bin" pldf

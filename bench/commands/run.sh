#!/bin/sh
# Runs each benchmark of the polyline commands in its own process.
# usage: bench/commands/run.sh BUILD_DIR
set -e
bin="${1:-build}/bench/commands/commands_bench"
"$bin" plyh
"$bin" pldf
"${1:-build}/bench/commands/offset_array_bench" ploffset
"${1:-build}/bench/commands/offset_array_bench" zb2pl
"${1:-build}/bench/commands/offset_array_bench" plarr

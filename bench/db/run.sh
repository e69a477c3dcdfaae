#!/bin/sh
# Runs the DXF benchmark comparison; builds nothing.
#   bench/db/run.sh [BUILD_DIR]   (default: build-db beside this repository's root)
# Needs db_bench and dxflib_count built in BUILD_DIR/bench/db, and
# /usr/bin/python3 with ezdxf for the reference figures.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../../build-db}
bin=$build/bench/db
data=$bin/data
"$bin/db_bench" generate "$data"
echo "== corvane (load, save, peak memory of a child process; second of two runs)"
"$bin/db_bench" "$data/mixed_100k_r2010.dxf" "$data/polyline_1m_r2010.dxf"
for f in mixed_100k_r2010 polyline_1m_r2010; do
  echo "== $f"
  if [ -x "$bin/dxflib_count" ]; then "$bin/dxflib_count" "$data/$f.dxf"; fi
  /usr/bin/python3 "$here/ezdxf_load_save.py" "$data/$f.dxf" "$data/$f.ezdxf-out.dxf"
  rm -f "$data/$f.ezdxf-out.dxf"
done

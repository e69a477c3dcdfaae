#!/usr/bin/env bash
# Installs the Debian packages the project needs, builds it, and then either
# runs the main job on the sample drawing ("demo") or the whole test suite ("test").
# Run as root (or through sudo) on Debian 12.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=${1:-test}
build=${CORVANE_BUILD_DIR:-build}

missing=()
while read -r pkg; do
  [[ -z "$pkg" || "$pkg" == \#* ]] && continue
  dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
done < scripts/debian-packages.txt
if ((${#missing[@]})); then
  echo "Installing: ${missing[*]}"
  sudo_cmd=""
  [[ $(id -u) -ne 0 ]] && sudo_cmd=sudo
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$build" -j "$(nproc)"

case "$mode" in
  demo)
    out="$build/demo"
    mkdir -p "$out"
    "$build/apps/corvane/corvane" samples/demo.dxf -s samples/demo.scr -o "$out/demo-out.dxf" --png "$out/demo-out.png"
    echo "Result drawing: $out/demo-out.dxf, picture: $out/demo-out.png"
    ;;
  test)
    ctest --test-dir "$build" --output-on-failure -j "$(nproc)"
    ;;
  *)
    echo "usage: scripts/setup.sh demo|test" >&2
    exit 2
    ;;
esac

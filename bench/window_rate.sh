#!/usr/bin/env bash
# The main window at the simulated instrument's full rate, with every meter, the spectrum and the
# histogram open: the instrument is zorvik-sim on a Unix socket (so that its work is not counted in the
# window's share of the processor), and zorvik prints its figures after SECONDS. Needs a display: run it
# under xvfb-run.
#   xvfb-run -a bench/window_rate.sh [BUILD_DIR] [SECONDS] [SIM_OPTIONS] [ZORVIK_OPTION ...]
# e.g. the longest records: xvfb-run -a bench/window_rate.sh build 10 rate=max --set Sampling/MemoDepth=3
set -euo pipefail
build=$(cd "${1:-build}" && pwd)
seconds=${2:-10}
sim_options=${3:-rate=max}
shift $(($# < 3 ? $# : 3))
dir=$(mktemp -d)
sim=
cleanup() {
  [ -n "$sim" ] && kill "$sim" 2>/dev/null || true
  rm -rf "$dir"
}
trap cleanup EXIT
"$build/zorvik-sim" --listen "unix:$dir/z.sock" --sim "$sim_options" &
sim=$!
for _ in $(seq 50); do [ -S "$dir/z.sock" ] && break; sleep 0.1; done
# Every meter by its index (character 48 + index), both analysis windows.
meters='0678;<=@ABCJKLMOPQR'
cd "$dir"
ZORVIK_REGISTRY="$dir/registry.sqlite" ZORVIK_LOCK_DIR="$dir" "$build/zorvik" first \
  --device "unix:$dir/z.sock" --set "Meters/On=$meters" --set Spectrum/Visible=True --set Stat/Visible=True \
  --report-after "$seconds" "$@"

#!/usr/bin/env bash
# Installs what is missing, builds, and starts the GUI on the simulated instrument.
# Extra arguments go to zorvik, e.g. ./run.sh --sim signal=square,freq=5000
set -euo pipefail
cd "$(dirname "$0")"
bash scripts/deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j "$(nproc)" --target zorvik
mkdir -p build/start
[ -f data/default.zrv ] && cp -f data/default.zrv build/start/default.zrv
cd build/start
exec ../zorvik "$@"

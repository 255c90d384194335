#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: the normal build (unit, widget and CLI tests),
# its Debian package and the desktop's checks of it, the core tests again under ASan+UBSan, and a short
# run of each libFuzzer target.
set -euo pipefail
cd "$(dirname "$0")"
bash scripts/deps.sh
JOBS=${JOBS:-$(nproc)}
FUZZ_SECONDS=${FUZZ_SECONDS:-15}

echo "== format =="
# Every source file as .clang-format lays it out; a file that differs fails the run.
find src tests bench fuzz \( -name '*.cpp' -o -name '*.h' \) -print0 | xargs -0 clang-format --dry-run --Werror

echo "== build (release with asserts) =="
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j "$JOBS"
echo "== tests =="
(cd build && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j "$JOBS")

echo "== package =="
rm -f build/zorvik_*.deb
(cd build && cpack -G DEB >/dev/null)
bash data/desktop/check_package.sh build

echo "== core tests under ASan+UBSan =="
cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DZORVIK_SANITIZE=ON -DZORVIK_GUI=OFF -DZORVIK_BENCH=OFF >/dev/null
cmake --build build-asan -j "$JOBS" --target zorvik_core_tests
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 QT_QPA_PLATFORM=offscreen \
  build-asan/zorvik_core_tests --gtest_brief=1

echo "== fuzz (${FUZZ_SECONDS}s a target) =="
CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZORVIK_FUZZ=ON \
  -DZORVIK_GUI=OFF -DZORVIK_BENCH=OFF >/dev/null
cmake --build build-fuzz -j "$JOBS"
for f in fuzz/*.cpp; do
  name=$(basename "$f" .cpp)
  corpus="build-fuzz/corpus/$name"
  mkdir -p "$corpus"
  [ -d "fuzz/seeds/$name" ] && cp -n fuzz/seeds/"$name"/* "$corpus"/ 2>/dev/null || true
  echo "-- $name"
  "build-fuzz/$name" -max_total_time="$FUZZ_SECONDS" -print_final_stats=0 "$corpus" 2>&1 | tail -n 2
done
echo "all test stages passed"

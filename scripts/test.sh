#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: the unit, program and
# window tests (debug, then under the address and undefined-behaviour
# sanitizers), the fuzz targets for a while, and the benchmarks for their
# figures. Window tests run on Qt's offscreen platform: no display is needed.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

# Stale caches from older checkouts must not switch options off.
options=(-DRM8_WERROR=ON -DRM8_BUILD_TESTS=ON -DRM8_BUILD_PROGRAMS=ON)

# Each stage says how long it took, so that a slow CI run shows where.
stage() {
  [[ -n ${stage_start:-} ]] && echo "   ($((SECONDS - stage_start)) s)"
  stage_start=$SECONDS
  [[ $# -gt 0 ]] && echo "== $*"
  return 0
}

stage "debug build and tests"
cmake --preset dev "${options[@]}" -DRM8_BUILD_BENCH=ON >/dev/null
cmake --build --preset dev
ctest --preset dev -j2

stage "sanitizer build and tests"
cmake --preset asan "${options[@]}" >/dev/null
cmake --build --preset asan
ctest --preset asan -j2

stage "windows build and tests under Wine"
bash scripts/windows-stage.sh

stage "fuzzing"
FUZZ_SECONDS="${FUZZ_SECONDS:-30}" bash scripts/fuzz.sh

stage "benchmarks (figures only)"
# Warnings are errors in the debug build, which builds the benchmarks too; the
# optimiser's -Wrestrict false alarms in std::string (GCC 12) stay warnings here.
cmake --preset release -DRM8_WERROR=OFF -DRM8_BUILD_TESTS=OFF -DRM8_BUILD_BENCH=ON -DRM8_BUILD_PROGRAMS=ON >/dev/null
cmake --build --preset release --target codec_bench check_bench link_bench gui_bench report_bench
./build/release/bench/codec_bench --benchmark_min_time=0.2
# The line-rate part (a) takes minutes at 9,600 baud; run it by hand.
./build/release/bench/link_bench --only b
./build/release/bench/link_bench --only c
./build/release/bench/link_bench --only d
./build/release/bench/link_bench --only e
./build/release/bench/link_bench --only f
QT_QPA_PLATFORM=offscreen ./build/release/bench/gui_bench
./build/release/bench/check_bench --benchmark_min_time=0.2
QT_QPA_PLATFORM=offscreen ./build/release/bench/report_bench
stage

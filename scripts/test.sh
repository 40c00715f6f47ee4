#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: the unit and program
# tests (debug, then under the address and undefined-behaviour sanitizers),
# the fuzz target for a while, and the codec benchmark for its figures.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

# Stale caches from older checkouts must not switch options off.
options=(-DRM8_WERROR=ON -DRM8_BUILD_TESTS=ON -DRM8_BUILD_PROGRAMS=ON)

echo "== debug build and tests"
cmake --preset dev "${options[@]}" -DRM8_BUILD_BENCH=ON >/dev/null
cmake --build --preset dev
ctest --preset dev -j2

echo "== sanitizer build and tests"
cmake --preset asan "${options[@]}" >/dev/null
cmake --build --preset asan
ctest --preset asan -j2

echo "== fuzzing"
FUZZ_SECONDS="${FUZZ_SECONDS:-30}" bash scripts/fuzz.sh

echo "== benchmark (figures only)"
cmake --preset release -DRM8_BUILD_TESTS=OFF -DRM8_BUILD_BENCH=ON >/dev/null
cmake --build --preset release --target codec_bench
./build/release/bench/codec_bench --benchmark_min_time=0.2

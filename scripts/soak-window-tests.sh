#!/usr/bin/env bash
# Runs the window and controller tests many times in a row, so that a test
# that hangs or fails now and then shows itself. With --busy, a sanitizer
# build of the core library is compiled over and over beside the tests, as
# other work would load a CI machine.
#
#   scripts/soak-window-tests.sh [--runs N] [--busy] [--build DIR]
#
# Prints one line a run and a closing count; exits 1 if any run failed.
set -uo pipefail
cd "$(dirname "$0")/.."

runs=30 busy=0 build=build/dev
while (($#)); do
  case "$1" in
    --runs) runs="$2"; shift 2 ;;
    --busy) busy=1; shift ;;
    --build) build="$2"; shift 2 ;;
    *) echo "usage: $0 [--runs N] [--busy] [--build DIR]" >&2; exit 2 ;;
  esac
done

tests='^(main_window_test|tst_qt_interaction|tst_port_settings|tst_main_controller|tst_demo_station|tst_rm8config_program)$'
cmake --build "$build" >/dev/null || exit 1

load_pid=
if ((busy)); then
  cmake -S . -B build/soak-load -G Ninja -DCMAKE_BUILD_TYPE=Debug -DRM8_BUILD_GUI=OFF -DRM8_BUILD_TESTS=OFF \
    -DRM8_BUILD_BENCH=OFF -DRM8_BUILD_PROGRAMS=OFF \
    "-DCMAKE_CXX_FLAGS=-fsanitize=address,undefined -fno-omit-frame-pointer" >/dev/null || exit 1
  set -m # the load runs in its own process group, so that it can be ended whole
  (while true; do cmake --build build/soak-load --target rm8core --clean-first -j2 >/dev/null 2>&1; done) &
  load_pid=$!
  set +m
  trap 'kill -- -$load_pid 2>/dev/null' EXIT
fi

passed=0 failed=0
for ((run = 1; run <= runs; ++run)); do
  start=$SECONDS
  if ctest --test-dir "$build" -R "$tests" --timeout 120 --output-on-failure >"/tmp/soak-run-$run.log" 2>&1; then
    passed=$((passed + 1)); verdict=pass
  else
    failed=$((failed + 1)); verdict="FAIL (see /tmp/soak-run-$run.log)"
  fi
  echo "run $run: $verdict in $((SECONDS - start)) s$( ((busy)) && echo ", load $(cut -d' ' -f1 /proc/loadavg)")"
done
echo "soak: $passed passed, $failed failed"
((failed == 0))

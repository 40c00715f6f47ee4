#!/usr/bin/env bash
# Installs what is missing, builds the programs and starts rm8config in demo
# mode: a simulated station (rm8sim) stands behind "COM 1", so activating,
# reading, writing, loading and saving all work without a station.
# Without a display it shows the same station through rm8ctl instead.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset release -DRM8_BUILD_PROGRAMS=ON -DRM8_BUILD_GUI=ON >/dev/null
cmake --build --preset release --target rm8config rm8ctl rm8sim

bin=./build/release/src
if [[ -n ${DISPLAY:-} || -n ${WAYLAND_DISPLAY:-} ]]; then
  exec "$bin/rm8config" --demo
fi

echo "No display found: rm8config needs a desktop session (or run: xvfb-run -a $bin/rm8config --demo)."
echo "Meanwhile the same simulated station through rm8ctl:"
work=$(mktemp -d)
trap 'kill "$sim" 2>/dev/null || true; rm -rf "$work"' EXIT
"$bin/rm8sim" --link "$work/station" >"$work/sim.out" &
sim=$!
for _ in $(seq 50); do [[ -e $work/station ]] && break; sleep 0.1; done
set -x
"$bin/rm8ctl" write --port "$work/station" examples/pumping_station.eep --verify
"$bin/rm8ctl" identify --port "$work/station"
"$bin/rm8ctl" read --port "$work/station" --out "$work/read.eep"
"$bin/rm8ctl" diff "$work/read.eep" examples/pumping_station.eep

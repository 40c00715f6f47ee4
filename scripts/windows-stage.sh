#!/usr/bin/env bash
# The Windows build, proved under Wine: builds the windows preset (the core,
# rm8ctl.exe, the core's unit tests, and with the Qt of scripts/windows-qt.sh
# rm8config.exe and the window tests), runs the unit tests under Wine, the
# serial-line contract for the Win32 line, and rm8ctl.exe against rm8sim on a
# pseudo-terminal that the run's own Wine prefix maps as COM5. Needs the dev
# build's rm8sim (the debug stage makes it; built here when missing). No
# display: Wine runs console programs without one.
set -euo pipefail
cd "$(dirname "$0")/.."

build=build/windows
cmake --preset windows >/dev/null
cmake --build --preset windows

export WINEDEBUG=-all
export WINEPREFIX=$PWD/$build/wine-prefix
run=$(mktemp -d)
sim_pid=
cleanup() {
  [[ -n $sim_pid ]] && kill "$sim_pid" 2>/dev/null
  rm -rf "$run" "$WINEPREFIX/dosdevices/com5"
  sh cmake/wine-session.sh stop
}
trap cleanup EXIT

ctest --preset windows -j2
if [[ -f $build/src/rm8config.exe ]]; then
  echo "rm8config.exe built; the window tests ran under Wine with the rest"
else
  echo "rm8config.exe and the window tests under Wine: skipped, no Qt for Windows in the cache (bash scripts/windows-qt.sh makes it, about an hour)"
fi

# The same session for what follows: ctest has stopped its own.
sh cmake/wine-session.sh start

cmake --build --preset dev --target rm8sim win32_line_contract_test
RM8_WIN32_LINE_AGENT=$build/tests/wine/win32_line_agent.exe ./build/dev/tests/wine/win32_line_contract_test

# rm8ctl.exe and a station: rm8sim links its pseudo-terminal as COM5.
./build/dev/src/rm8sim --eeprom "$run/station.eep" --link "$WINEPREFIX/dosdevices/com5" >"$run/sim.out" &
sim_pid=$!
for _ in $(seq 50); do [[ -e $WINEPREFIX/dosdevices/com5 ]] && break; sleep 0.1; done
rm8ctl() { wine "$build/src/rm8ctl.exe" "$@"; }
rm8ctl identify --port "COM 5" --search-timeout 10
rm8ctl write --port "COM 5" --search-timeout 10 examples/pumping_station.eep
rm8ctl read --port "COM 5" --search-timeout 10 --raw --out "$run/read.eep"
rm8ctl diff examples/pumping_station.eep "$run/read.eep"
# What rm8ctl.exe read is what the station holds, byte for byte: its whole
# memory (rm8sim keeps 64 KiB, the station type has 8,128 bytes).
kill -INT "$sim_pid"
wait "$sim_pid" || true
sim_pid=
test "$(stat -c %s "$run/read.eep")" -eq 8128
cmp -n 8128 "$run/read.eep" "$run/station.eep"
echo "rm8ctl.exe under Wine: identify, write with read-back, read and diff against rm8sim on COM5 passed"

#!/bin/sh
# Starts or stops the Wine session the Windows tests run in: the prefix made
# when missing, one wineserver kept alive across all the test programs (a
# fresh one costs seconds per program), and Wine's own background programs
# started here with their output going nowhere. Started by the first test
# program instead, they would inherit its output pipe and hold it open, and
# ctest would wait for that pipe to close as long as the server lives.
set -u
: "${WINEPREFIX:?WINEPREFIX must name the prefix}"
export WINEDEBUG=-all
case "${1:-}" in
start)
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    mkdir -p "$WINEPREFIX"
    env -u DISPLAY wineboot -i >/dev/null 2>&1 </dev/null
    wineserver -w # the prefix's first server is not the lasting one
  fi
  wineserver -p >/dev/null 2>&1 </dev/null
  env -u DISPLAY wine cmd /c exit >/dev/null 2>&1 </dev/null
  ;;
stop)
  wineserver -k >/dev/null 2>&1 || true
  ;;
*)
  echo "usage: wine-session.sh start|stop" >&2
  exit 2
  ;;
esac

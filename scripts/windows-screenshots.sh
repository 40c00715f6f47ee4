#!/usr/bin/env bash
# Pictures of the Windows build for the README, into
# docs/screenshots/windows-*.png: the window of rm8config.exe as it opens a
# settings file, and rm8shots.exe (the same window, controller and dialogs,
# driven by a script) reading a station through COM5, one of its row dialogs,
# the print preview and the print dialog. Everything runs under Wine on a
# virtual screen (Xvfb); COM5 is rm8sim's pseudo-terminal.
#
# Needs the Qt for Windows from scripts/windows-qt.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
source scripts/lib/packages.sh
ensure_packages x11-apps netpbm xdotool cups cups-bsd printer-driver-cups-pdf || exit 1

# A printer for the print dialog: Wine offers the printers of CUPS, and
# cups-pdf is one that needs no paper.
pgrep -x cupsd >/dev/null || { /usr/sbin/cupsd && sleep 2; }
lpstat -p PDF >/dev/null 2>&1 || lpadmin -p PDF -E -v cups-pdf:/ -m lsb/usr/cups-pdf/CUPS-PDF_opt.ppd 2>/dev/null

build=build/windows
cmake --preset windows >/dev/null
cmake --build --preset windows --target rm8config rm8shots
[[ -f $build/src/rm8config.exe ]] || { echo "windows-screenshots: no rm8config.exe: make Qt for Windows with scripts/windows-qt.sh" >&2; exit 1; }
cmake --build --preset dev --target rm8sim

export WINEDEBUG=-all
export WINEPREFIX=$PWD/$build/wine-screens
run=$(mktemp -d)
sim_pid=
xvfb_pid=
cleanup() {
  [[ -n $sim_pid ]] && kill "$sim_pid" 2>/dev/null
  wineserver -k >/dev/null 2>&1 || true
  [[ -n $xvfb_pid ]] && kill "$xvfb_pid" 2>/dev/null
  rm -rf "$run"
}
trap cleanup EXIT

[[ -d $WINEPREFIX ]] || wineboot -i >/dev/null 2>&1
# A screen of our own; Wine draws each window as an X window on it.
display=:$((90 + RANDOM % 100))
Xvfb "$display" -screen 0 1600x1000x24 -nolisten tcp &
xvfb_pid=$!
export DISPLAY=$display
sleep 2

cp examples/water_tower.eep "$run/station.eep"
./build/dev/src/rm8sim --eeprom "$run/station.eep" --link "$WINEPREFIX/dosdevices/com5" >"$run/sim.out" &
sim_pid=$!
for _ in $(seq 50); do [[ -e $WINEPREFIX/dosdevices/com5 ]] && break; sleep 0.1; done

out=docs/screenshots
rm -f "$out"/windows-*.png

# Wine's GDI draws no text inside entry fields and message boxes for Qt;
# Qt's own FreeType engine does. A real Windows needs no such option.
engine="-platform windows:fontengine=freetype"

# rm8config.exe itself, opening a settings file as the Explorer would, on a
# Wine desktop of its own (Wine then draws the frames as Windows does); the
# message after the load is answered with Enter.
shot() { xwd -root -silent | xwdtopnm 2>/dev/null | pnmtopng > "$1"; }
wine explorer /desktop=rm8,1280x900 "$build/src/rm8config.exe" $engine "Z:$(realpath examples/water_tower.eep | tr / '\\')" &
program=$!
sleep 10
xdotool key Return
sleep 2
shot "$out/windows-02-rm8config-nacteno.png"
wineserver -k >/dev/null 2>&1 || true
wait "$program" 2>/dev/null || true

# The scripted technician on COM5.
# Should a picture fail (the print dialog without a printer, say), rm8shots
# says so and the run goes on with the others.
wine "$build/src/rm8shots.exe" $engine --out "$run/shots" --device COM5 --faulty examples/faulty_station.eep \
  || echo "windows-screenshots: rm8shots.exe missed some pictures (above)"
pick() { [[ -f $run/shots/$1.png ]] && cp "$run/shots/$1.png" "$out/windows-$2.png" || echo "no picture $1"; }
pick 10-nacteno 03-nacteno-z-COM5
pick 19-dialog-vstup 04-dialog-vstup
pick 21-dialog-analog 05-dialog-analog
pick 31-nahled-tisku 06-nahled-tisku
pick 32-tiskovy-dialog 07-tiskovy-dialog
ls -l "$out"/windows-*.png

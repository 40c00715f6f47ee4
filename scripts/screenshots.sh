#!/usr/bin/env bash
# Pictures of rm8config for the README, into docs/screenshots/: every tab
# page, the about box, the port dialog and the window after a read from the
# demo station, at the window's own size and at 1024x768, and the first page
# of a settings report. The program is drawn by the real X11 platform on a
# virtual screen (Xvfb), as a user sees it; the report page is a PDF page.
#
#   bash scripts/screenshots.sh
#   BUILD_DIR=build/other JOBS=2 bash scripts/screenshots.sh
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

build=${BUILD_DIR:-build/release}
# A build folder of another preset (build/dev) is used as it is.
[[ -f $build/CMakeCache.txt ]] || cmake --preset release -B "$build" -DRM8_BUILD_GUI=ON >/dev/null
cmake --build "$build" --parallel "${JOBS:-$(nproc)}" --target rm8shots rm8sim rm8config

out=docs/screenshots
mkdir -p "$out"
# Pictures whose names are no longer made must not stay behind.
rm -f "$out"/*.png

runtime=$(mktemp -d)
trap 'rm -rf "$runtime"' EXIT
XDG_RUNTIME_DIR=$runtime QT_QPA_PLATFORM=xcb \
  xvfb-run -a -s "-screen 0 1600x1000x24" \
  "$build/src/rm8shots" --out "$out" --simulator "$build/src/rm8sim"

# The first page of the settings report of the example station, as
# rm8config --print-pdf renders it, at about the size of a screen page.
report=$(mktemp --suffix=.pdf)
"$build/src/rm8config" --print-pdf "$report" examples/water_tower.eep
pdftoppm -png -r 110 -f 1 -l 1 -singlefile "$report" "$out/18-tiskova-sestava"
rm -f "$report"

echo "Pictures in $out:"
ls -l "$out"

#!/usr/bin/env bash
# Installs what is missing, builds the programs and runs rm8ctl on a sample
# settings file: what it holds, and its settings as JSON.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset release -DRM8_BUILD_PROGRAMS=ON >/dev/null
cmake --build --preset release --target rm8ctl
./build/release/src/rm8ctl info tests/data/full.eep
./build/release/src/rm8ctl decode tests/data/full.eep | head -n 40
echo "..."
echo "Further: ./build/release/src/rm8ctl --help"

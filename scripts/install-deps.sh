#!/usr/bin/env bash
# Installs the Debian packages that the build and the tests need, and only
# those that are missing. Safe to run again: a complete machine is left alone.
set -euo pipefail

packages=(
  cmake ninja-build g++ pkg-config
  libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev
  clang-14 libclang-rt-14-dev
  qt6-base-dev qt6-serialport-dev qt6-qpa-plugins qt6-translations-l10n libgl-dev fonts-dejavu-core
  fonts-liberation2 poppler-utils
  xvfb xauth
  g++-mingw-w64-x86-64-posix wine wine64
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if ((${#missing[@]})); then
  echo "Installing missing packages: ${missing[*]}"
  if [[ $(id -u) -ne 0 ]]; then
    echo "error: packages are missing and this is not root; run as root or install: ${missing[*]}" >&2
    exit 1
  fi
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -q
  apt-get install -y -q --no-install-recommends "${missing[@]}"
fi

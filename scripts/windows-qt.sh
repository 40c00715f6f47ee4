#!/usr/bin/env bash
# Cross-builds the Qt modules the window needs (Core, Gui, Widgets,
# PrintSupport, Test and the Windows platform plugin) for 64-bit Windows with
# Debian's MinGW-w64, from the sources of the very Qt the distribution ships,
# so the host's moc, rcc and uic serve as the build's host tools.
#
# The result goes into a cache outside the tree and is reused by later runs:
#   RM8_QT_WINDOWS_DIR   where the finished Qt lives
#                        (default ~/.cache/rm8config/qt-<version>-mingw64)
#   RM8_QT_WORK_DIR      sources and build tree (default beside it, "-work")
#   RM8_QT_JOBS          parallel compile jobs (default: all cores)
#
# Takes about an hour on two cores. Run as root on a fresh machine: it
# installs what it needs first.
set -euo pipefail
# Read whole before it runs: the hour-long run must not pick up an edit of
# this file made meanwhile.
{
root=$(cd "$(dirname "$0")/.." && pwd)
started=$SECONDS

say() { printf '[windows-qt %4ds] %s\n' $((SECONDS - started)) "$*"; }
die() { printf 'windows-qt: %s\n' "$*" >&2; exit 1; }

# The host's Qt decides the version: its tools generate code for the target.
# shellcheck source=lib/packages.sh
source "$root/scripts/lib/packages.sh"
ensure_packages qt6-base-dev qt6-base-dev-tools qt6-translations-l10n g++-mingw-w64-x86-64-posix cmake ninja-build xz-utils ca-certificates || exit 1

debian_version=$(dpkg-query -W -f='${Version}' qt6-base-dev)   # e.g. 6.4.2+dfsg-10
qt_version=${debian_version%%+*}
qt_version=${qt_version%%-*}
cache=${RM8_QT_WINDOWS_DIR:-$HOME/.cache/rm8config/qt-$qt_version-mingw64}
work=${RM8_QT_WORK_DIR:-$cache-work}
jobs=${RM8_QT_JOBS:-$(nproc)}

if [[ -f $cache/.complete ]]; then
  say "Qt $qt_version for MinGW-w64 is already in $cache"
  exit 0
fi
mkdir -p "$work"

# --- the sources, from the distribution's archive -------------------------
# A private source list and package lists, so the machine's own apt set-up is
# left exactly as it was.
fetch_source() { # package -> directory holding the unpacked sources
  local package=$1 dir=$work/src/$1
  if [[ -f $dir/.unpacked ]]; then echo "$dir"; return; fi
  local apt_dir=$work/apt
  mkdir -p "$apt_dir/lists/partial" "$apt_dir/archives/partial" "$work/download"
  if [[ ! -f $apt_dir/sources.list ]]; then
    local uri
    uri=$(awk '/^URIs:/ {print $2; exit}' /etc/apt/sources.list.d/debian.sources 2>/dev/null || true)
    [[ -n $uri ]] || uri=$(awk '/^deb / {print $2; exit}' /etc/apt/sources.list 2>/dev/null || true)
    [[ -n $uri ]] || die "no Debian archive address in /etc/apt/sources.list(.d)"
    echo "deb-src $uri bookworm main" > "$apt_dir/sources.list.new"
    mv "$apt_dir/sources.list.new" "$apt_dir/sources.list"
  fi
  local apt_opts=(-o "Dir::Etc::SourceList=$apt_dir/sources.list" -o "Dir::Etc::SourceParts=/dev/null"
    -o "Dir::State::Lists=$apt_dir/lists" -o "Dir::Cache::Archives=$apt_dir/archives"
    -o "APT::Sandbox::User=root")
  if ! compgen -G "$apt_dir/lists/*Sources*" >/dev/null; then
    say "reading the archive's source index" >&2
    apt-get "${apt_opts[@]}" update -q >/dev/null || die "could not read the source index of the Debian archive"
  fi
  say "fetching the sources of $package" >&2
  (cd "$work/download" && apt-get "${apt_opts[@]}" source --download-only -q "$package" >/dev/null 2>&1) || return 1
  local tarball
  tarball=$(ls "$work/download/${package}_"*.orig.tar.* 2>/dev/null | head -n1)
  [[ -n $tarball ]] || return 1
  rm -rf "$dir" && mkdir -p "$dir"
  tar -xf "$tarball" -C "$dir" --strip-components=1
  touch "$dir/.unpacked"
  echo "$dir"
}

qtbase=$(fetch_source qt6-base) || die "the sources of qt6-base could not be fetched from the archive"
say "qtbase sources in $qtbase"

# --- configure and build ------------------------------------------------------
build=$work/build-qtbase
# Configured on every run: with unchanged options it changes nothing, with
# changed ones the build takes them up.
say "configuring (Release, shared, the window's modules only)"
# Debian's sources lack the Wintab header (not free), which tablet input on
# Windows needs; the window has no use for a drawing tablet. Without OpenGL
# the choice of an OpenGL library at run time (dynamicgl) must go too, or the
# Windows platform plugin does not compile.
cmake -G Ninja -S "$qtbase" -B "$build" \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64-x86_64-qt.cmake" \
    -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR=/usr/lib/x86_64-linux-gnu/cmake \
    -DCMAKE_INSTALL_PREFIX="$cache" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON \
    -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF -DQT_BUILD_BENCHMARKS=OFF \
    -DFEATURE_sql=OFF -DFEATURE_network=OFF -DFEATURE_dbus=OFF -DFEATURE_opengl=OFF \
    -DFEATURE_vulkan=OFF -DFEATURE_concurrent=OFF -DFEATURE_xml=OFF \
    -DFEATURE_system_zlib=OFF -DFEATURE_system_pcre2=OFF -DFEATURE_system_freetype=OFF \
    -DFEATURE_system_harfbuzz=OFF -DFEATURE_system_png=OFF -DFEATURE_system_jpeg=OFF \
    -DFEATURE_system_doubleconversion=OFF -DFEATURE_system_md4c=OFF \
    -DFEATURE_tabletevent=OFF -DFEATURE_dynamicgl=OFF \
    > "$work/configure.log" 2>&1 || { tail -n 30 "$work/configure.log" >&2; die "configure failed (log: $work/configure.log)"; }

say "building with $jobs jobs (log: $work/build.log)"
# Ninja's own progress line, one line every hundred steps, keeps the log short.
set +e
cmake --build "$build" --parallel "$jobs" 2>&1 | tee "$work/build.log" \
  | awk '/^\[[0-9]+\/[0-9]+\]/ { gsub(/[][]/, "", $1); split($1, n, "/"); if (n[1] % 100 == 0 || n[1] == n[2]) { print "  step " n[1] " of " n[2]; fflush() } }'
status=${PIPESTATUS[0]}
set -e
if ((status != 0)); then
  grep -m 5 -B 2 -A 8 'error' "$work/build.log" >&2 || tail -n 30 "$work/build.log" >&2
  die "the build failed (log: $work/build.log)"
fi

say "installing into $cache"
cmake --install "$build" > "$work/install.log" 2>&1 || die "install failed (log: $work/install.log)"

# The serial port module, when the archive has its sources; without it the
# window talks to the port through the program's own Win32 serial line.
if serialport=$(fetch_source qt6-serialport); then
  sp_build=$work/build-qtserialport
  say "configuring and building Qt Serial Port"
  "$cache/bin/qt-cmake" -G Ninja -S "$serialport" -B "$sp_build" -DCMAKE_BUILD_TYPE=Release \
    -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF > "$work/serialport.log" 2>&1 \
    && cmake --build "$sp_build" --parallel "$jobs" >> "$work/serialport.log" 2>&1 \
    && cmake --install "$sp_build" >> "$work/serialport.log" 2>&1 \
    || { tail -n 20 "$work/serialport.log" >&2; die "Qt Serial Port failed (log: $work/serialport.log)"; }
else
  say "note: the archive has no sources of qt6-serialport; the window uses the Win32 serial line"
fi

# Qt's own Czech texts (buttons of the standard dialogs) are the same files
# on every platform: take the host's.
mkdir -p "$cache/translations"
cp /usr/share/qt6/translations/qtbase_cs.qm "$cache/translations/" 2>/dev/null \
  || say "note: the host has no qtbase_cs.qm; the standard dialogs stay in English"

echo "$debian_version" > "$cache/.complete"
say "done: Qt $qt_version for MinGW-w64 in $cache"
exit 0
}

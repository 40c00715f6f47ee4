#!/usr/bin/env bash
# Packs the Windows build for a technician's laptop:
#   dist/rm8config-<version>-win64.zip        the program folder, to unpack and run
#   dist/rm8config-<version>-win64-setup.exe  the same folder as an installer
#                                             (packaging/windows/rm8config.nsi)
# The folder holds rm8config.exe, rm8ctl.exe, every DLL they load that
# Windows itself does not have (found by walking the import tables), the Qt
# plugins a window and printing need, Qt's Czech texts, qt.conf and CTIMNE.txt.
#
# Builds rm8config and rm8ctl in the windows preset first; rm8config needs
# the Qt from scripts/windows-qt.sh. Variables:
#   RM8_WINDOWS_BUILD_DIR  the build to pack (default build/windows; a folder
#                          given here is packed as it is, never built)
#   RM8_QT_WINDOWS_DIR     the Qt to take DLLs and plugins from (default: the
#                          one the build was configured with)
#   RM8_DIST_DIR           where the two files go (default dist)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
started=$SECONDS

say() { printf '[windows-package %3ds] %s\n' $((SECONDS - started)) "$*"; }
die() { printf 'windows-package: %s\n' "$*" >&2; exit 1; }

# shellcheck source=lib/packages.sh
source "$root/scripts/lib/packages.sh"
ensure_packages zip nsis binutils-mingw-w64-x86-64 g++-mingw-w64-x86-64-posix cmake ninja-build || exit 1

version=$(sed -n 's/^project(rm8config VERSION \([0-9][0-9.]*\).*/\1/p' CMakeLists.txt)
[[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || die "no version x.y.z in project(rm8config VERSION ...) of CMakeLists.txt"
name=rm8config-$version-win64
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'exit 130' INT TERM

# --- the build ------------------------------------------------------------------
if [[ -n ${RM8_WINDOWS_BUILD_DIR:-} ]]; then
  build=$(cd "$RM8_WINDOWS_BUILD_DIR" 2>/dev/null && pwd) || die "RM8_WINDOWS_BUILD_DIR $RM8_WINDOWS_BUILD_DIR is not a folder"
  [[ -f $build/src/rm8config.exe ]] || die "no src/rm8config.exe in $build"
else
  # Built every time, so the package holds what the sources say; with
  # nothing changed that takes a second.
  build=$root/build/windows
  if [[ ! -f $build/build.ninja ]]; then
    say "configuring the windows preset"
    cmake --preset windows > "$work/configure.log" 2>&1 \
      || { tail -n 30 "$work/configure.log" >&2; die "cmake --preset windows failed"; }
  fi
  say "building rm8config.exe and rm8ctl.exe (windows preset)"
  cmake --build --preset windows --target rm8config rm8ctl > "$work/build.log" 2>&1 \
    || { tail -n 30 "$work/build.log" >&2; die "the windows build failed"; }
  say "built: $(tail -n 1 "$work/build.log")"
  [[ -f $build/src/rm8config.exe ]] \
    || die "the windows build made no rm8config.exe: it needs the Qt of scripts/windows-qt.sh"
fi
[[ -f $build/src/rm8ctl.exe ]] || die "no rm8ctl.exe in $build/src"

# The Qt the program was linked against, as the build's cache names it.
qt=${RM8_QT_WINDOWS_DIR:-}
if [[ -z $qt && -f $build/CMakeCache.txt ]]; then
  qt_cmake=$(sed -n 's/^Qt6_DIR:[A-Z]*=//p' "$build/CMakeCache.txt")
  [[ -n $qt_cmake ]] && qt=${qt_cmake%/lib/cmake/Qt6}
fi
if [[ -z $qt ]]; then
  qt=$(ls -d "$HOME"/.cache/rm8config/qt-*-mingw64 2>/dev/null | sort | tail -n 1 || true)
fi
[[ -n $qt && -f $qt/.complete ]] || die "no finished Qt for Windows (${qt:-none found}): make it with scripts/windows-qt.sh"

# --- the DLLs -------------------------------------------------------------------
# Where a DLL may come from: Qt, and the MinGW runtime the compiler links.
gxx=x86_64-w64-mingw32-g++-posix
declare -A library=()
for dir in "$qt/bin" "$(dirname "$($gxx -print-file-name=libstdc++-6.dll)")" \
           "$(dirname "$($gxx -print-file-name=libwinpthread-1.dll)")"; do
  [[ -d $dir ]] || continue
  for dll in "$dir"/*.dll; do
    [[ -f $dll ]] || continue
    key=$(basename "$dll"); key=${key,,}
    [[ -n ${library[$key]:-} ]] || library[$key]=$(realpath "$dll")
  done
done
# What Windows itself has: the DLLs Wine reimplements, and the API sets.
wine_system=/usr/lib/x86_64-linux-gnu/wine/x86_64-windows
[[ -d $wine_system ]] || die "no $wine_system to tell Windows' own DLLs from others (install wine64)"
declare -A system=()
for dll in "$wine_system"/*; do
  key=$(basename "$dll"); system[${key,,}]=1
done

imports() { # PE file -> the DLL names it imports, one a line
  x86_64-w64-mingw32-objdump -p "$1" | sed -n 's/^[[:space:]]*DLL Name: //p' | tr -d '\r'
}

# The plugins: the Windows platform, the offscreen platform (--print-pdf
# draws the report without a screen), the native look, printing.
plugin_files=()
[[ -f $qt/plugins/platforms/qwindows.dll ]] || die "no plugins/platforms/qwindows.dll in $qt"
plugin_files+=(platforms/qwindows.dll)
[[ -f $qt/plugins/platforms/qoffscreen.dll ]] || die "no plugins/platforms/qoffscreen.dll in $qt (rm8config --print-pdf needs it)"
plugin_files+=(platforms/qoffscreen.dll)
[[ -f $qt/plugins/styles/qwindowsvistastyle.dll ]] && plugin_files+=(styles/qwindowsvistastyle.dll)
if [[ -d $qt/plugins/printsupport ]]; then
  for dll in "$qt"/plugins/printsupport/*.dll; do
    [[ -f $dll ]] && plugin_files+=("printsupport/$(basename "$dll")")
  done
fi

declare -A needed=() seen=()
queue=("$build/src/rm8config.exe" "$build/src/rm8ctl.exe")
for plugin in "${plugin_files[@]}"; do queue+=("$qt/plugins/$plugin"); done
while ((${#queue[@]})); do
  file=${queue[0]}; queue=("${queue[@]:1}")
  [[ -n ${seen[$file]:-} ]] && continue
  seen[$file]=1
  imported=$(imports "$file") || die "objdump cannot read $file"
  while IFS= read -r dll; do
    [[ -n $dll ]] || continue
    key=${dll,,}
    if [[ -n ${library[$key]:-} ]]; then
      if [[ -z ${needed[$key]:-} ]]; then
        needed[$key]=${library[$key]}
        queue+=("${library[$key]}")
      fi
    elif [[ -n ${system[$key]:-} || $key == api-ms-win-* || $key == ext-ms-win-* ]]; then
      :
    else
      die "$(basename "$file") needs $dll, which is neither in Qt ($qt/bin), the MinGW runtime nor Windows"
    fi
  done <<< "$imported"
done

# --- the folder -----------------------------------------------------------------
stage=$work/$name
mkdir -p "$stage"
cp "$build/src/rm8config.exe" "$build/src/rm8ctl.exe" "$stage/"
for key in "${!needed[@]}"; do
  cp "${needed[$key]}" "$stage/$(basename "${needed[$key]}")"
done
for plugin in "${plugin_files[@]}"; do
  mkdir -p "$stage/plugins/$(dirname "$plugin")"
  cp "$qt/plugins/$plugin" "$stage/plugins/$plugin"
done
mkdir -p "$stage/translations"
[[ -f $qt/translations/qtbase_cs.qm ]] || die "no translations/qtbase_cs.qm in $qt"
cp "$qt/translations/qtbase_cs.qm" "$stage/translations/"
while IFS= read -r -d '' qm; do
  cp "$qm" "$stage/translations/"
done < <(find "$build" -path "$build/wine-prefix" -prune -o -name 'rm8config_*.qm' -print0)
# The windows preset is a debug build, and Debian's MinGW runtime DLLs carry
# their symbols: without them the folder is a quarter of the size and runs
# the same.
while IFS= read -r -d '' binary; do
  x86_64-w64-mingw32-strip --strip-unneeded "$binary" || die "could not strip $binary"
done < <(find "$stage" -type f \( -name '*.exe' -o -name '*.dll' \) -print0)
# Qt finds its plugins and texts beside the program by a guess (its Core DLL
# beside the .exe and no import library one folder up); qt.conf says it
# outright.
printf '[Paths]\r\nPrefix = .\r\nPlugins = plugins\r\nTranslations = translations\r\n' > "$stage/qt.conf"
# Notepad shows Czech letters and line breaks only with a BOM and CRLF.
{ printf '\xef\xbb\xbf'; sed -e "s/@VERSION@/$version/g" -e 's/$/\r/' packaging/windows/CTIMNE.txt; } > "$stage/CTIMNE.txt"
grep -q '@[A-Z]*@' "$stage/CTIMNE.txt" && die "CTIMNE.txt has a placeholder this script does not fill"

# makensis takes the list of files, so the uninstaller deletes just these.
(cd "$stage" && find . -type f | LC_ALL=C sort) > "$work/files.txt"
if grep -v '^\./[A-Za-z0-9._+/-]*$' "$work/files.txt"; then
  die "a staged file name has characters the installer's list cannot carry"
fi
{
  echo '!macro InstallFiles'
  previous=
  while IFS= read -r file; do
    dir=$(dirname "${file#./}")
    if [[ $dir != "$previous" ]]; then
      if [[ $dir == . ]]; then echo '  SetOutPath "$INSTDIR"'; else echo "  SetOutPath \"\$INSTDIR\\${dir//\//\\}\""; fi
      previous=$dir
    fi
    echo "  File \"\${STAGE}/${file#./}\""
  done < "$work/files.txt"
  echo '  SetOutPath "$INSTDIR"'
  echo '!macroend'
  echo '!macro UninstallFiles'
  while IFS= read -r file; do
    rel=${file#./}
    echo "  Delete \"\$INSTDIR\\${rel//\//\\}\""
  done < "$work/files.txt"
  # Deepest folders first, each only if it is empty by now.
  (cd "$stage" && find . -mindepth 1 -type d | awk '{ print gsub("/", "/") "\t" $0 }' | sort -rn | cut -f2-) \
    | while IFS= read -r dir; do rel=${dir#./}; echo "  RMDir \"\$INSTDIR\\${rel//\//\\}\""; done
  echo '!macroend'
} > "$work/files.nsh"

# --- the zip and the installer ------------------------------------------------
# Both are made under temporary names and moved into place together: dist/
# never holds a half-made file, nor a zip and an installer of two runs.
dist=${RM8_DIST_DIR:-$root/dist}
mkdir -p "$dist"
zip_file=$dist/$name.zip
setup_file=$dist/$name-setup.exe
zip_part=$dist/.$name.zip.part
setup_part=$dist/.$name-setup.exe.part
trap 'rm -rf "$work" "$zip_part" "$setup_part"' EXIT
trap 'exit 130' INT TERM
rm -f "$zip_part" "$setup_part"

zip_started=$SECONDS
(cd "$work" && zip -q -r -X -9 "$zip_part" "$name") || die "zip failed"
zip_seconds=$((SECONDS - zip_started))

nsis_started=$SECONDS
# -INPUTCHARSET: the script's Czech strings are UTF-8 without a BOM.
makensis -V2 -INPUTCHARSET UTF8 -DVERSION="$version" -DSTAGE="$stage" -DFILES="$work/files.nsh" \
  -DOUTFILE="$setup_part" packaging/windows/rm8config.nsi > "$work/makensis.log" 2>&1 \
  || { tail -n 20 "$work/makensis.log" >&2; die "makensis failed"; }
nsis_seconds=$((SECONDS - nsis_started))

mv -f "$zip_part" "$zip_file"
mv -f "$setup_part" "$setup_file"

# --- what was made ---------------------------------------------------------------
say "packed $build with Qt from $qt"
echo "The program folder ($(wc -l < "$work/files.txt") files):"
(cd "$stage" && find . -type f -printf '%s\t%P\n' | LC_ALL=C sort -k2) | awk -F'\t' '{ printf "  %10d  %s\n", $1, $2 }'
printf '  %10d  bytes in all\n' "$(cd "$stage" && find . -type f -printf '%s\n' | awk '{ s += $1 } END { print s }')"
echo "Made:"
printf '  %10d  %s  (%d s)\n' "$(stat -c %s "$zip_file")" "${zip_file#"$root"/}" "$zip_seconds"
printf '  %10d  %s  (%d s)\n' "$(stat -c %s "$setup_file")" "${setup_file#"$root"/}" "$nsis_seconds"
say "done"

#!/usr/bin/env bash
# The Windows installer proved under Wine, in a Wine prefix of its own that
# is thrown away afterwards. Two rounds:
#   1. the default folder: a silent install; the files (exactly the zip's
#      folder plus the uninstaller), the Start-menu entries, the .eep type
#      and the uninstall entry in the registry; the installed programs run
#      (versions, Qt's Czech texts, a report printed into a PDF); then the
#      uninstaller as Windows' Apps list starts it (its QuietUninstallString)
#      and everything is gone again.
#   2. /D= a folder with a space and Czech letters, with .eep already owned
#      by another program; installed a second time without /D, as an update
#      is, into the same folder; the program runs from there; a settings
#      file with a space and Czech letters in its path, opened as the
#      Explorer opens it, is loaded into the window; the uninstaller (run in
#      place with _?=) hands the extension back.
# Takes the files scripts/windows-package.sh made in dist/ (or RM8_DIST_DIR).
# Needs no display (the window's step brings a virtual one). Exits non-zero
# with one line saying what failed.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
started=$SECONDS
step_started=$SECONDS

say() { printf '[installer-check %3ds] %s\n' $((SECONDS - started)) "$*"; }
die() { printf 'windows-installer-check: %s\n' "$*" >&2; exit 1; }
# Closes a step: its name and how long it took.
done_step() { say "$1 ($((SECONDS - step_started)) s)"; step_started=$SECONDS; }

# shellcheck source=lib/packages.sh
source "$root/scripts/lib/packages.sh"
ensure_packages wine wine64 unzip poppler-utils fonts-liberation2 xvfb xdotool || exit 1

version=$(sed -n 's/^project(rm8config VERSION \([0-9][0-9.]*\).*/\1/p' CMakeLists.txt)
[[ -n $version ]] || die "no version in project(rm8config VERSION ...) of CMakeLists.txt"
dist=${RM8_DIST_DIR:-$root/dist}
setup=$dist/rm8config-$version-win64-setup.exe
zip_file=$dist/rm8config-$version-win64.zip
[[ -f $setup && -f $zip_file ]] || die "no $setup or $zip_file: make them with scripts/windows-package.sh"

# Wine reads the arguments and prints in the locale's code: Czech letters
# in a folder name must arrive whole.
export LC_ALL=C.UTF-8
export WINEDEBUG=-all
run=$(mktemp -d)
export WINEPREFIX=$run/prefix
xvfb_pid=
cleanup() {
  wineserver -k 2>/dev/null || true
  [[ -z $xvfb_pid ]] || kill "$xvfb_pid" 2>/dev/null || true
  rm -rf "$run"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

wine_run() { # a Windows program; its output without the CRs of the console
  wine "$@" 2>&1 | tr -d '\r'
  return "${PIPESTATUS[0]}"
}
# The data of one registry value ("" for the key's default), or status 1
# when the key or value is not there. Through an export, which is UTF-16:
# reg query prints in the console's code page, which has no Czech letters.
reg_value() {
  local want=@ line
  [[ -n $2 ]] && want="\"$2\""
  rm -f "$drive_c/rm8-check.reg"
  wine reg export "$1" 'C:\rm8-check.reg' /y >/dev/null 2>&1 || return 1
  # The exported key's own section is the first; its subkeys follow.
  line=$(iconv -f UTF-16 -t UTF-8 "$drive_c/rm8-check.reg" | tr -d '\r' \
    | awk -v want="$want=" '/^\[/ { sections++ } sections == 1 && index($0, want) == 1 { print substr($0, length(want) + 1); exit }')
  [[ -n $line ]] || return 1
  # A string is quoted, with \\ and \" inside.
  if [[ $line == \"*\" ]]; then
    line=${line:1:${#line}-2}
    line=$(sed 's/\\\(.\)/\1/g' <<< "$line")
  fi
  printf '%s\n' "$line"
}
# Wine quotes an argument that holds a space, and NSIS takes /D= and _?=
# only unquoted: a folder goes to an installer as separate words.
as_words() { local words; read -r -a words <<< "$1"; printf '%s\0' "${words[@]}"; }
key_exists() { wine reg query "$1" >/dev/null 2>&1; }
# Whether a shortcut leads to this target: a shell link holds its target as
# a list of items, one per folder and the file, each name in UTF-16.
lnk_points_to() { # .lnk file, Windows path
  local rest part needle parts
  rest=$(od -An -tx1 -v "$1" | tr -s ' \n' ' ')
  # shellcheck disable=SC2141 # the backslash is the separator
  IFS='\' read -r -a parts <<< "${2#?:\\}"
  for part in "${parts[@]}"; do
    needle=$(printf '%s' "$part" | iconv -f UTF-8 -t UTF-16LE | od -An -tx1 -v | tr -s ' \n' ' ')
    needle=${needle% }
    [[ $rest == *"$needle"* ]] || return 1
    rest=${rest#*"$needle"}
  done
}
expect_value() { # key name expected
  local got
  got=$(reg_value "$1" "$2") || die "registry: no value ${2:-(default)} under $1"
  [[ $got == "$3" ]] || die "registry: $1 ${2:-(default)} is '$got', expected '$3'"
}

say "a fresh Wine prefix in $WINEPREFIX"
wineboot -i >/dev/null 2>&1 || die "wineboot could not make the prefix"
wineserver -w
drive_c=$WINEPREFIX/drive_c
[[ -d $drive_c/windows/syswow64 ]] || die "the prefix is not 64-bit (no windows/syswow64)"
done_step "prefix ready"

# What must land: the zip's folder, file for file, plus the uninstaller.
unzip -q "$zip_file" -d "$run/zip"
expected=$run/zip/rm8config-$version-win64
[[ -d $expected ]] || die "the zip holds no folder rm8config-$version-win64"

uninstall_key='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\rm8config'
start_menu=$drive_c/ProgramData/Microsoft/Windows/Start\ Menu/Programs/rm8config
example=$root/examples/water_tower.eep
example_station=$(sed -n 's/^ *"tabJmenoStanice": "\(.*\)",$/\1/p' "$root/examples/water_tower.json")
[[ -n $example_station ]] || die "no station name in examples/water_tower.json"
fonts=/usr/share/fonts/truetype/liberation2
[[ -f $fonts/LiberationSans-Regular.ttf ]] || die "no $fonts/LiberationSans-Regular.ttf (fonts-liberation2)"

check_installed() { # unix folder, windows folder
  local dir=$1 win=$2
  [[ -f $dir/uninstall.exe ]] || die "no uninstall.exe in $win"
  diff -r -x uninstall.exe "$expected" "$dir" >/dev/null \
    || die "$win differs from the zip's folder: $(diff -rq -x uninstall.exe "$expected" "$dir" | head -n 1)"
  [[ -f $start_menu/rm8config.lnk ]] || die "no Start-menu entry rm8config"
  [[ -f $start_menu/Odinstalovat\ rm8config.lnk ]] || die "no Start-menu entry 'Odinstalovat rm8config'"
  lnk_points_to "$start_menu/rm8config.lnk" "$win\rm8config.exe" \
    || die "the Start-menu entry rm8config does not start $win\rm8config.exe"
  lnk_points_to "$start_menu/Odinstalovat rm8config.lnk" "$win\uninstall.exe" \
    || die "the Start-menu entry 'Odinstalovat rm8config' does not start $win\uninstall.exe"

  expect_value 'HKCR\.eep' '' rm8config.eep
  expect_value 'HKCR\rm8config.eep\shell\open\command' '' "\"$win\\rm8config.exe\" \"%1\""
  expect_value 'HKCR\rm8config.eep\DefaultIcon' '' "\"$win\\rm8config.exe\",0"
  expect_value 'HKCR\rm8config.eep' '' 'Soubor nastavení stanice RM8'
  expect_value "$uninstall_key" DisplayName rm8config
  expect_value "$uninstall_key" DisplayVersion "$version"
  expect_value "$uninstall_key" UninstallString "\"$win\\uninstall.exe\""
  expect_value "$uninstall_key" QuietUninstallString "\"$win\\uninstall.exe\" /S"
  expect_value "$uninstall_key" InstallLocation "$win"
  # The 64-bit view, where Windows lists a program in Program Files.
  ! key_exists 'HKLM\Software\WOW6432Node\Microsoft\Windows\CurrentVersion\Uninstall\rm8config' \
    || die "the uninstall entry went into the 32-bit view (WOW6432Node)"
}

check_programs() { # unix folder, windows folder
  local dir=$1 win=$2 out
  out=$(wine_run "$dir/rm8ctl.exe" --version) || die "rm8ctl.exe --version failed: $out"
  [[ $out == "rm8ctl $version" ]] || die "rm8ctl.exe --version printed '$out'"
  out=$(wine_run "$dir/rm8config.exe" --version) || die "rm8config.exe --version failed: $out"
  [[ $out == *" $version" ]] || die "rm8config.exe --version printed '$out'"
  say "  $win: rm8ctl.exe --version: $(wine_run "$dir/rm8ctl.exe" --version); rm8config.exe --version: $out"
  # Qt's own Czech texts, found through qt.conf in translations/.
  out=$(wine_run "$dir/rm8config.exe" --help) || die "rm8config.exe --help failed"
  grep -q 'Zobrazit informace o verzi' <<< "$out" \
    || die "rm8config.exe --help is not in Czech: translations/qtbase_cs.qm was not found"
  # A report drawn without a screen: the offscreen platform plugin from
  # plugins/, Qt's PDF printer, the Czech letters in the PDF's fonts. Qt's
  # offscreen platform on Windows takes its fonts from one folder, and the
  # Windows folder of a Wine prefix has none: it gets the Liberation fonts.
  # Wine passes QT_ variables to Windows programs only under a WINE prefix.
  rm -f "$drive_c/report.pdf"
  out=$(WINEQT_QPA_FONTDIR="$(winepath -w "$fonts")" wine_run "$dir/rm8config.exe" --print-pdf 'C:\report.pdf' "$(winepath -w "$example")") \
    || die "rm8config.exe --print-pdf failed: $out"
  [[ $(head -c 5 "$drive_c/report.pdf" 2>/dev/null) == %PDF- ]] || die "rm8config.exe --print-pdf wrote no PDF"
  pdftotext "$drive_c/report.pdf" - | grep -qx "Nastavení stanice: $example_station" \
    || die "the PDF rm8config.exe printed has no line 'Nastavení stanice: $example_station'"
  say "  $win: --help in Czech; --print-pdf wrote $(stat -c %s "$drive_c/report.pdf") bytes"
}

# The files the program keeps as recently opened, one a line: a string
# list in its settings, which Qt stores as REG_MULTI_SZ (hex(7) in UTF-16
# in an export, over lines that end in a backslash).
recent_files() {
  rm -f "$drive_c/rm8-check.reg"
  wine reg export 'HKCU\Software\RM8\rm8config' 'C:\rm8-check.reg' /y >/dev/null 2>&1 || return 0
  iconv -f UTF-16 -t UTF-8 "$drive_c/rm8-check.reg" | tr -d '\r' \
    | awk '/^"recentFiles"=hex\(7\):/ { on = 1; sub(/^[^:]*:/, "") } on { line = $0; sub(/\\$/, "", line); printf "%s", line; if ($0 !~ /\\$/) exit }' \
    | tr -d ' ' | tr ',' '\n' | sed -n 's/^\([0-9a-f][0-9a-f]\)$/\\x\1/p' | tr -d '\n' \
    | { IFS= read -r escaped || true; printf '%b' "$escaped"; } | iconv -f UTF-16LE -t UTF-8 | tr '\0' '\n'
}

# A settings file opened as the Explorer opens it: Windows' shell looks up
# .eep and starts the command of its type. The program then says in a box
# titled RM8 whether it read the file, and keeps a file it read among the
# recent ones; that entry in its settings is the proof. A window needs a
# display: a virtual one, for this step only.
check_association_opens() { # the file's Windows path
  local file_win=$1 file_qt display entries=
  file_qt=${file_win//\\//}
  Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3> "$run/display" 2>/dev/null &
  xvfb_pid=$!
  for _ in $(seq 100); do [[ -s $run/display ]] && break; sleep 0.1; done
  display=$(cat "$run/display") && [[ -n $display ]] || die "Xvfb did not start"
  # Wine's desktop lives as long as its session, and one begun without a
  # display shows no window: a new session for the display.
  wineserver -k 2>/dev/null || true
  wineserver -w
  DISPLAY=:$display wine start "$file_win" >/dev/null 2>&1 || die "wine start '$file_win' failed"
  DISPLAY=:$display timeout 60 xdotool search --sync --onlyvisible --name '^RM8$' >/dev/null \
    || die "opening $file_win showed no box of rm8config within 60 s"
  # OK, until the box is gone: a key pressed before the box has the focus
  # goes nowhere.
  for _ in $(seq 30); do
    DISPLAY=:$display xdotool search --onlyvisible --name '^RM8$' >/dev/null 2>&1 || break
    DISPLAY=:$display xdotool key Return
    sleep 1
  done
  for _ in $(seq 50); do
    entries=$(recent_files)
    grep -qxF "$file_qt" <<< "$entries" && break
    sleep 0.2
  done
  wineserver -k 2>/dev/null || true
  kill "$xvfb_pid" 2>/dev/null; wait "$xvfb_pid" 2>/dev/null || true
  xvfb_pid=
  grep -qxF "$file_qt" <<< "$entries" \
    || die "opening $file_win did not load it into rm8config (recent files: ${entries:-none})"
}

check_removed() { # unix folder, windows folder
  local dir=$1 win=$2
  [[ ! -e $dir ]] || die "$win is still there after the uninstall: $(find "$dir" -mindepth 1 | head -n 3 | tr '\n' ' ')"
  [[ ! -e $start_menu ]] || die "the Start-menu folder rm8config is still there"
  ! key_exists 'HKCR\rm8config.eep' || die "HKCR\\rm8config.eep is still there"
  ! key_exists "$uninstall_key" || die "the uninstall entry is still there"
}

# --- round 1: the default folder ---------------------------------------------------
step_started=$SECONDS
win='C:\Program Files\rm8config'
dir=$drive_c/Program\ Files/rm8config
wine_run "$setup" /S >/dev/null || die "the installer failed (status $?)"
[[ -d $dir ]] || die "the installer put nothing into $win"
done_step "round 1: silent install into $win"
check_installed "$dir" "$win"
done_step "round 1: files, Start menu, .eep type and uninstall entry checked"
check_programs "$dir" "$win"
done_step "round 1: installed programs ran"

# As Windows' list of programs does it: the quiet command from the registry.
# The uninstaller copies itself to the temporary folder and returns at
# once; the copy does the work, so wait for every Wine process to end.
quiet=$(reg_value "$uninstall_key" QuietUninstallString)
quiet_exe=${quiet#\"}; quiet_exe=${quiet_exe%%\"*}
wine_run "$(winepath -u "$quiet_exe")" /S >/dev/null || die "the uninstaller failed"
timeout 120 wineserver -w || die "the uninstaller did not end within 120 s"
check_removed "$dir" "$win"
! key_exists 'HKCR\.eep' || die "HKCR\\.eep is still there though nothing owned it before"
done_step "round 1: uninstalled; files, Start menu, .eep type and uninstall entry gone"

# --- round 2: a folder of the technician's choice; .eep owned before --------------
win='C:\Nástroje\rm8 config'
dir=$drive_c/Nástroje/rm8\ config
owner=AtmelStudio.eep
wine reg add 'HKCR\.eep' /ve /d "$owner" /f >/dev/null 2>&1 || die "could not give .eep an owner"
mapfile -d '' -t words < <(as_words "/D=$win")
wine_run "$setup" /S "${words[@]}" >/dev/null || die "the installer failed with /D=$win"
[[ -d $dir ]] || die "the installer with /D put nothing into $win"
check_installed "$dir" "$win"
expect_value 'HKCR\.eep' rm8config.previous "$owner"
done_step "round 2: silent install into $win checked"
# Installed again without /D, as an update would be: into the same folder,
# over the uninstalled earlier one, and the extension's owner still known.
wine_run "$setup" /S >/dev/null || die "the second install failed"
[[ ! -e $drive_c/Program\ Files/rm8config ]] || die "the second install went to C:\Program Files\rm8config, not $win"
check_installed "$dir" "$win"
expect_value 'HKCR\.eep' rm8config.previous "$owner"
done_step "round 2: installed again, over the first, in $win"
check_programs "$dir" "$win"
done_step "round 2: installed programs ran"
mkdir -p "$drive_c/Moje stanice"
cp "$example" "$drive_c/Moje stanice/Vodárna Kopanina.eep"
check_association_opens 'C:\Moje stanice\Vodárna Kopanina.eep'
done_step "round 2: C:\Moje stanice\Vodárna Kopanina.eep opened through the .eep type loaded into rm8config"

# In place: the uninstaller waits for its own work and stays itself.
mapfile -d '' -t words < <(as_words "_?=$win")
wine_run "$dir/uninstall.exe" /S "${words[@]}" >/dev/null || die "the uninstaller failed in $win"
[[ -f $dir/uninstall.exe ]] || die "with _?= the uninstaller removed itself"
rm "$dir/uninstall.exe"
rmdir "$dir" 2>/dev/null || die "$win still holds files after the uninstall: $(find "$dir" -mindepth 1 | head -n 3 | tr '\n' ' ')"
check_removed "$dir" "$win"
expect_value 'HKCR\.eep' '' "$owner"
! reg_value 'HKCR\.eep' rm8config.previous >/dev/null || die "HKCR\\.eep keeps rm8config's note of its owner"
done_step "round 2: uninstalled; .eep handed back to $owner"

say "the installer passed both rounds under Wine"

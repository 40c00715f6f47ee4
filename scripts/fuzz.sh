#!/usr/bin/env bash
# Builds the libFuzzer target and runs it for FUZZ_SECONDS (default 30).
# The corpus lives under build/fuzz so that the golden files in tests/data are
# only ever read. Exits non-zero when the fuzzer reports a crash, a leak, a
# timeout or a sanitizer finding; the reproducer is left in build/fuzz/artifacts.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

seconds=${FUZZ_SECONDS:-30}
if ! [[ $seconds =~ ^[0-9]+$ ]] || ((seconds < 1)); then
  echo "error: FUZZ_SECONDS must be a positive whole number, not '$seconds'" >&2
  exit 2
fi

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

build=$root/build/fuzz
target=$build/fuzz/fuzz_settings_file
corpus=$build/corpus/settings_file
artifacts=$build/artifacts
log=$build/fuzz_settings_file.log
mkdir -p "$corpus" "$artifacts"

# The seeds are copied, not linked: libFuzzer adds and rewrites corpus files.
shopt -s nullglob
seeds=("$root"/tests/data/*.eep "$root"/tests/data/*.json)
shopt -u nullglob
if ((${#seeds[@]})); then
  cp -f -- "${seeds[@]}" "$corpus"/
fi

echo "fuzzing for ${seconds}s; corpus $corpus; log $log"
status=0
"$target" "$corpus" \
  -max_total_time="$seconds" -max_len=70000 -timeout=10 -rss_limit_mb=2048 \
  -print_final_stats=1 -artifact_prefix="$artifacts/" >"$log" 2>&1 || status=$?

# The last lines carry the coverage and the final statistics.
grep -E '^#[0-9]+[[:space:]]+DONE|^stat::' "$log" || tail -n 5 "$log"

if ((status != 0)) || grep -qE 'ERROR: (AddressSanitizer|LeakSanitizer|libFuzzer)|runtime error:|invariant violated' "$log"; then
  echo "fuzzing found a fault (exit status $status); see $log" >&2
  grep -E 'ERROR:|runtime error:|invariant violated|Test unit written to' "$log" >&2 || tail -n 30 "$log" >&2
  exit 1
fi
echo "no faults found"

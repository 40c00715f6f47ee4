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
failed=0

# fuzz TARGET SECONDS MAX_LEN SEED_GLOB...
fuzz() {
  local name=$1 time=$2 maxlen=$3
  shift 3
  local target=$build/fuzz/$name corpus=$build/corpus/$name artifacts=$build/artifacts/$name
  local log=$build/$name.log
  mkdir -p "$corpus" "$artifacts"
  # The seeds are copied, not linked: libFuzzer adds and rewrites corpus files.
  shopt -s nullglob
  local seeds=("$@")
  shopt -u nullglob
  if ((${#seeds[@]})); then
    cp -f -- "${seeds[@]}" "$corpus"/
  fi

  echo "fuzzing $name for ${time}s; corpus $corpus; log $log"
  local status=0
  "$target" "$corpus" \
    -max_total_time="$time" -max_len="$maxlen" -timeout=10 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$artifacts/" >"$log" 2>&1 || status=$?

  # The last lines carry the coverage and the final statistics.
  grep -E '^#[0-9]+[[:space:]]+DONE|^stat::(number_of_executed_units|average_exec_per_sec)' "$log" || tail -n 5 "$log"

  if ((status != 0)) || grep -qE 'ERROR: (AddressSanitizer|LeakSanitizer|libFuzzer)|runtime error:|invariant violated' "$log"; then
    echo "fuzzing $name found a fault (exit status $status); see $log" >&2
    grep -E 'ERROR:|runtime error:|invariant violated|Test unit written to' "$log" >&2 || tail -n 30 "$log" >&2
    failed=1
  fi
}

fuzz fuzz_settings_file "$seconds" 70000 "$root"/tests/data/*.eep "$root"/tests/data/*.json
fuzz fuzz_field_rules "${FUZZ_RULES_SECONDS:-15}" 512
fuzz fuzz_frame_receiver "${FUZZ_FRAME_SECONDS:-15}" 256

if ((failed)); then
  exit 1
fi
echo "no faults found"
